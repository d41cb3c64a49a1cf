// Times what a writer waits for: the card editor to open on a large topic, beside
// reading the topic's keys through the engine's C API; the next and a new card,
// beside bare text boxes and the same writes; and a letter to appear in long notes,
// beside the same letter in a bare text box with the same document. Both sides run
// in turn; the table shows medians, and for what happens at every key the 99th
// percentile too. Exits with 1 if a bound is broken.

#include "app/Module1.h"
#include "bench/support/BareEngine.h"
#include "bench/support/FreshHome.h"
#include "bench/support/KeystrokeRows.h"
#include "bench/support/LargeSubject.h"
#include "bench/support/Measure.h"
#include "bench/support/PaintWatch.h"
#include "bench/support/PairTable.h"
#include "bench/support/RtfSamples.h"
#include "bench/support/SampleCards.h"
#include "forms/frmEditCards/frmEditCards.h"
#include "forms/frmNotes/frmNotes.h"
#include "platform/RichTextBox.h"
#include "store/SubjectWriting.h"

#include <QApplication>
#include <QTest>
#include <QTextDocument>

#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr double openingBesideScan = 1.3;

constexpr int cardsOfLargeTopic = 100'000;
constexpr int cardsOfTexts = 10'000;
constexpr int bytesOfNotes = 1'000'000;
constexpr int openings = 61;
constexpr int moves = 1'000;
constexpr int changedMoves = 100;
constexpr int newCards = 100;
constexpr int keystrokes = 101;

constexpr QSize windowSize(900, 620);

void choose(Module1 &module, const fs::path &path)
{
    module.subject = subjectAt(QString::fromStdString(path.string()));
    module.study.cardQuery = cardsOfTopic(1);
}

// Opening.

std::unique_ptr<frmEditCards> makeEditor(Module1 &module)
{
    auto editor = std::make_unique<frmEditCards>(module, EditedTopic{1, QStringLiteral("Plants")}, nullptr);
    editor->setAttribute(Qt::WA_DeleteOnClose, false);
    return editor;
}

double millisecondsToOpenEditor(Module1 &module)
{
    std::unique_ptr<frmEditCards> editor;
    const double time = microseconds([&] {
        editor = makeEditor(module);
        const PaintWatch watch(*editor);
        editor->show();
        watch.waitForPaint();
    });
    editor->close();
    return time / 1000;
}

void benchOpening(PairTable &table, const fs::path &folder)
{
    const fs::path path = folder / "Large.crl";
    makeLargeSubject(path, cardsOfLargeTopic);
    Module1 module;
    choose(module, path);
    const PairOfTimes times = inTurn(
        openings, [&] { return millisecondsToOpenEditor(module); },
        [&] {
            return millisecondsToScan(path, "SELECT \"Index\" FROM FlashCards WHERE NIndex = 1", cardsOfLargeTopic);
        });
    table.row({"open the editor on 100,000 cards", "key scan"}, times, timesFloor(openingBesideScan));
}

// From card to card.

struct Sides
{
    std::string front;
    std::string back;
};

Sides sidesOf(Markup markup, int card)
{
    return {sideText(markup, card, true), sideText(markup, card, false)};
}

/// Milliseconds from the start of \p action until both boxes are painted.
double millisecondsUntilBothPainted(const std::array<QTextEdit *, 2> &boxes, const Action &action)
{
    QCoreApplication::processEvents(); // what is due already is no part of it
    const PaintWatch front(*boxes[0]->viewport());
    const PaintWatch back(*boxes[1]->viewport());
    return microseconds([&] {
               action();
               front.waitForPaint();
               back.waitForPaint();
           }) /
           1000;
}

/// The editor, shown, that is driven by keys.
class KeyedEditor
{
public:
    explicit KeyedEditor(Module1 &module)
        : m_editor(makeEditor(module))
        , m_boxes{m_editor->findChild<RichTextBox *>(QStringLiteral("RichTextBox1(0)")),
                  m_editor->findChild<RichTextBox *>(QStringLiteral("RichTextBox1(1)"))}
    {
        m_editor->show();
        require(QTest::qWaitForWindowActive(m_editor.get()), "the editor does not come to the front");
        m_editor->resize(windowSize); // not before: the editor then takes the size that is kept for it
        QCoreApplication::processEvents();
        requireShown();
    }
    KeyedEditor(const KeyedEditor &) = delete;
    KeyedEditor &operator=(const KeyedEditor &) = delete;
    ~KeyedEditor() { m_editor->close(); }

    void typeLetter() { QTest::keyClick(m_editor->focusWidget(), Qt::Key_X); }

    // Milliseconds from the key to the painted card.

    double timeNext()
    {
        const double time = timeKey(Qt::Key_Right);
        ++m_card;
        requireShown();
        return time;
    }
    double timeNew()
    {
        const double time = timeKey(Qt::Key_Insert);
        require(m_boxes[0]->document()->isEmpty() && m_boxes[1]->document()->isEmpty(), "the new card is not blank");
        return time;
    }

    [[nodiscard]] const RichTextBox &front() const { return *m_boxes[0]; }

private:
    double timeKey(Qt::Key key)
    {
        return millisecondsUntilBothPainted({m_boxes[0], m_boxes[1]},
                                            [&] { QTest::keyClick(m_editor->focusWidget(), key, Qt::AltModifier); });
    }

    void requireShown() const
    {
        require(m_boxes[0]->toPlainText().startsWith(headOf(m_card, true)) &&
                    m_boxes[1]->toPlainText().startsWith(headOf(m_card, false)),
                "the wrong card is shown");
    }

    std::unique_ptr<frmEditCards> m_editor;
    std::array<RichTextBox *, 2> m_boxes;
    int m_card = 0;
};

/// The floor: two bare text boxes, one above the other.
class BareBoxes
{
public:
    explicit BareBoxes(const RichTextBox &ours)
    {
        for (QTextEdit *box : {&m_front, &m_back}) {
            box->setFont(ours.font());
            box->setFrameShape(QFrame::NoFrame);
            box->setGeometry(ours.rect());
        }
        m_back.move(0, ours.height());
        m_holder.resize(ours.width(), 2 * ours.height());
        m_holder.setAttribute(Qt::WA_ShowWithoutActivating);
        m_holder.show();
    }

    /// Milliseconds to \p write, to show the two texts, which are HTML, and to paint them.
    double time(const Sides &html, const Action &write)
    {
        return millisecondsUntilBothPainted({&m_front, &m_back}, [&] {
            write();
            m_front.setHtml(QString::fromStdString(html.front));
            m_back.setHtml(QString::fromStdString(html.back));
        });
    }

private:
    QWidget m_holder;
    QTextEdit m_front{&m_holder};
    QTextEdit m_back{&m_holder};
};

/// The editor's writes through the engine's C API, each in a transaction of its own.
class BareWriter
{
public:
    explicit BareWriter(const fs::path &path)
        : m_engine(path)
        , m_update(m_engine, R"(UPDATE FlashCards SET Front = ?, Back = ? WHERE "Index" = ?)")
        , m_insert(m_engine, "INSERT INTO FlashCards (Front, Back, NIndex) VALUES (?, ?, 1)")
    {
        m_engine.run("PRAGMA synchronous = FULL");
    }

    void update(int key, const Sides &rtf)
    {
        sqlite3_bind_int(m_update, 3, key);
        write(m_update, rtf);
    }

    /// Returns the new card's key.
    int insert(const Sides &rtf)
    {
        write(m_insert, rtf);
        return static_cast<int>(sqlite3_last_insert_rowid(m_engine));
    }

private:
    static void write(const BareStatement &statement, const Sides &rtf)
    {
        sqlite3_bind_text(statement, 1, rtf.front.data(), static_cast<int>(rtf.front.size()), SQLITE_STATIC);
        sqlite3_bind_text(statement, 2, rtf.back.data(), static_cast<int>(rtf.back.size()), SQLITE_STATIC);
        require(sqlite3_step(statement) == SQLITE_DONE, "the card cannot be written");
        sqlite3_reset(statement);
    }

    BareEngine m_engine;
    BareStatement m_update;
    BareStatement m_insert;
};

/// What stands in the file when the front of \p rtf was begun with a letter.
Sides withLetter(const Sides &rtf)
{
    RichTextBox box;
    box.setRtf(rtf.front);
    QTest::keyClick(&box, Qt::Key_X);
    return {box.rtf(), rtf.back};
}

std::vector<std::string> writtenTexts(const fs::path &path)
{
    SubjectStore store(path);
    std::vector<std::string> texts;
    for (RecordSet cards = store.openRecordSet(cardsOfTopic(1)); !cards.isEndOfSet(); cards.moveNext()) {
        texts.push_back(cards.text(CardField::Front));
        texts.push_back(cards.text(CardField::Back));
    }
    return texts;
}

/// A subject in two copies: each side has its own to write into.
class TwoSubjects
{
public:
    TwoSubjects(const fs::path &original, const fs::path &folder, const std::string &name)
        : m_ours(folder / (name + ", ours.crl"))
        , m_floor(folder / (name + ", floor.crl"))
    {
        fs::copy_file(original, m_ours);
        fs::copy_file(original, m_floor);
    }

    [[nodiscard]] const fs::path &ours() const { return m_ours; }
    [[nodiscard]] const fs::path &floor() const { return m_floor; }

    void requireEqual() const
    {
        require(writtenTexts(m_ours) == writtenTexts(m_floor), "the two sides wrote different cards");
    }

private:
    fs::path m_ours;
    fs::path m_floor;
};

/// Leaving a card stores it, changed or not; of an unchanged one the engine writes nothing to the disk.
PairOfTimes timesOfNext(const TwoSubjects &subjects, bool changed, int rounds)
{
    Module1 module;
    choose(module, subjects.ours());
    KeyedEditor editor(module);
    BareBoxes bare(editor.front());
    BareWriter writer(subjects.floor());
    int card = 0;
    return inTurn(
        rounds,
        [&] {
            if (changed) {
                editor.typeLetter();
            }
            return editor.timeNext();
        },
        [&] {
            const Sides rtf = sidesOf(Markup::Rtf, card);
            const Sides left = changed ? withLetter(rtf) : rtf;
            const int key = ++card;
            return bare.time(sidesOf(Markup::Html, card), [&] { writer.update(key, left); });
        });
}

/// Each card that is left has a letter more.
PairOfTimes timesOfNew(const TwoSubjects &subjects)
{
    Module1 module;
    choose(module, subjects.ours());
    KeyedEditor editor(module);
    BareBoxes bare(editor.front());
    BareWriter writer(subjects.floor());
    const std::string blankText = RichTextBox().rtf();
    const Sides blank{blankText, blankText};
    int key = 1;
    Sides left = withLetter(sidesOf(Markup::Rtf, 0));
    PairOfTimes times = inTurn(
        newCards,
        [&] {
            editor.typeLetter();
            return editor.timeNew();
        },
        [&] {
            const double time = bare.time({}, [&] {
                writer.update(key, left);
                key = writer.insert(blank);
            });
            left = withLetter(blank);
            return time;
        });
    editor.typeLetter(); // a blank card would vanish with the editor
    writer.update(key, left);
    return times;
}

void benchMoves(PairTable &table, const fs::path &folder)
{
    const fs::path original = folder / "Cards.crl";
    makeSubject(original, cardsOfTexts, [](int card, bool front) { return sideText(Markup::Rtf, card, front); });
    require(createTopic(original, "Plants") == 1, "the cards belong to another topic");

    const char *updateAndBoxes = "bare update and boxes";
    const TwoSubjects unchanged(original, folder, "unchanged");
    addKeystrokeRows(table, {"next card", updateAndBoxes}, timesOfNext(unchanged, false, moves));
    unchanged.requireEqual();
    const TwoSubjects changed(original, folder, "changed");
    table.row({"next card, after a change", updateAndBoxes}, timesOfNext(changed, true, changedMoves),
              moreThanFloor(millisecondsOfKeystroke));
    changed.requireEqual();
    const TwoSubjects longer(original, folder, "longer");
    table.row({"new card, after a change", "bare update, insert and boxes"}, timesOfNew(longer),
              moreThanFloor(millisecondsOfKeystroke));
    longer.requireEqual();
}

// Typing.

double millisecondsOfLetter(QTextEdit &box)
{
    return millisecondsUntilPainted(*box.viewport(), [&] { QTest::keyClick(&box, Qt::Key_X); });
}

void benchTyping(PairTable &table, const fs::path &folder)
{
    const fs::path path = folder / "Notes.crl";
    SubjectStore::create(path);
    saveNotes(path, createTopic(path, "Long"), longNotes(bytesOfNotes));
    Module1 module;
    module.subject = subjectAt(QString::fromStdString(path.string()));
    frmNotes window(module);
    window.show();
    require(QTest::qWaitForWindowActive(&window), "the window does not come to the front");
    window.resize(windowSize);
    QTest::keyClick(&window, Qt::Key_E, Qt::AltModifier);
    auto &box = *window.findChild<RichTextBox *>(QStringLiteral("RichTextBox1"));
    require(!box.isLocked(), "the notes cannot be edited");

    QTextEdit bare;
    bare.resize(box.size());
    const std::unique_ptr<QTextDocument> document(box.document()->clone());
    bare.setDocument(document.get());
    bare.show();

    for (const auto &[where, share] : {std::pair{"start", 0.0}, {"middle", 0.5}, {"end", 1.0}}) {
        for (QTextEdit *edit : {static_cast<QTextEdit *>(&box), &bare}) {
            QTextCursor cursor = edit->textCursor();
            cursor.setPosition(static_cast<int>(share * (edit->document()->characterCount() - 1)));
            edit->setTextCursor(cursor);
            edit->ensureCursorVisible();
        }
        const PairOfTimes times = inTurn(
            keystrokes, [&] { return millisecondsOfLetter(box); }, [&] { return millisecondsOfLetter(bare); });
        table.row({std::string("letter at the ") + where + " of 1 MB of notes", "bare box"}, times,
                  atMost(millisecondsOfKeystroke));
    }
}

} // namespace

int main(int argc, char **argv)
{
    const FreshHome home;
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    PairTable table("Editors", "ms");
    benchOpening(table, home.path());
    benchMoves(table, home.path());
    benchTyping(table, home.path());
    return table.everyBoundHolds() ? 0 : 1;
}
