// Times what a learner waits for in a flash-card session, each beside its floor: opening
// the session, the next card, turning a card, marking it, and shuffling. Both sides
// run in turn; the table shows medians, and for what happens at every card the
// 99th percentile too. Exits with 1 if a bound is broken.

#include "app/Module1.h"
#include "bench/study/BareShuffler.h"
#include "bench/support/BareEngine.h"
#include "bench/support/FreshHome.h"
#include "bench/support/KeystrokeRows.h"
#include "bench/support/LargeSubject.h"
#include "bench/support/Measure.h"
#include "bench/support/PaintWatch.h"
#include "bench/support/PairTable.h"
#include "bench/support/SampleCards.h"
#include "forms/frmFlashCard/frmFlashCard.h"
#include "platform/ImageButton.h"
#include "platform/RichTextBox.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTextDocument>
#include <QTimer>
#include <QUrl>

#include <array>
#include <memory>
#include <string>

namespace fs = std::filesystem;

namespace {

constexpr double markBesideUpdate = 2;
constexpr double shuffleBesideUpdates = 2;
constexpr double pictureBesideBox = 3; // the picture alone may take longer than a keystroke seems to
constexpr double openingBesideScan = 2;

constexpr int someCards = 10'000;
constexpr int manyCards = 100'000;
constexpr int moves = 1'000;
constexpr int movesToPictures = 50;
constexpr int turns = 500;
constexpr int marks = 51;
constexpr int shuffles = 11;

constexpr QSize windowSize(900, 620);

void choose(Module1 &module, const fs::path &path)
{
    module.subject = subjectAt(QString::fromStdString(path.string()));
    module.study.cardQuery = cardQuery(std::array{1});
    module.study.cancelled = false;
}

std::unique_ptr<frmFlashCard> makeWindow(Module1 &module)
{
    auto window = std::make_unique<frmFlashCard>(module);
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    return window;
}

/// The control of the window that has the \p name.
template <class Control>
Control &controlOf(const frmFlashCard &window, const QString &name)
{
    auto *control = window.findChild<Control *>(name);
    require(control != nullptr, "a control is missing");
    return *control;
}

RichTextBox &paneOf(const frmFlashCard &window, int side)
{
    return controlOf<RichTextBox>(window, QStringLiteral("RichTextBox1(%1)").arg(side));
}

/// A session's window, shown, that is driven by keys.
class KeyedSession
{
public:
    explicit KeyedSession(Module1 &module)
        : m_window(makeWindow(module))
    {
        m_window->show();
        require(QTest::qWaitForWindowActive(m_window.get()), "the window does not come to the front");
        m_window->resize(windowSize); // not before: the window then takes the size that is kept for it
        QCoreApplication::processEvents();
        requireShown(true);
    }
    KeyedSession(const KeyedSession &) = delete;
    KeyedSession &operator=(const KeyedSession &) = delete;
    ~KeyedSession() { m_window->close(); }

    // Milliseconds from the key to the painted card.

    double timeNext()
    {
        ++m_card;
        return timeKey(Qt::Key_Right, true);
    }
    double timeTurn(bool toFront) { return timeKey(toFront ? Qt::Key_Up : Qt::Key_Down, toFront); }

    /// To the painted button that tells whether the card is marked.
    double timeMark()
    {
        const bool wasMarked = isMarked();
        const double time = millisecondsUntilPainted(markButton(), [&] { press(Qt::Key_M); });
        require(isMarked() != wasMarked, "the card is not marked");
        return time;
    }

    /// With the question, which is answered at once, to the first card of the new order.
    double timeShuffle()
    {
        const double time = millisecondsUntilPainted(*pane(true).viewport(), [&] {
            QTimer::singleShot(0, m_window.get(), [] {
                auto *question = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
                require(question != nullptr, "shuffling does not ask");
                question->button(QMessageBox::Yes)->click();
            });
            press(Qt::Key_S);
        });
        require(!pane(true).toPlainText().isEmpty(), "no card is shown");
        return time;
    }

    [[nodiscard]] ImageButton &markButton() const
    {
        return controlOf<ImageButton>(*m_window, QStringLiteral("Image1(0)"));
    }
    [[nodiscard]] RichTextBox &pane(bool front) const { return paneOf(*m_window, front ? 0 : 1); }
    [[nodiscard]] int card() const { return m_card; } ///< from 0

private:
    void press(Qt::Key key) const { QTest::keyClick(m_window->focusWidget(), key); }
    [[nodiscard]] bool isMarked() const
    {
        return controlOf<QLabel>(*m_window, QStringLiteral("Label1(1)")).isVisible();
    }

    double timeKey(Qt::Key key, bool showsFront)
    {
        const double time = millisecondsUntilPainted(*pane(showsFront).viewport(), [&] { press(key); });
        requireShown(showsFront);
        return time;
    }

    void requireShown(bool front) const
    {
        require(pane(front).isVisible() && !pane(!front).isVisible(), "the wrong side is shown");
        require(pane(front).toPlainText().startsWith(headOf(m_card, front)), "the wrong card is shown");
    }

    std::unique_ptr<frmFlashCard> m_window;
    int m_card = 0;
};

/// The floor: two bare text boxes, one of which is visible.
class BareCard
{
public:
    explicit BareCard(const KeyedSession &session)
    {
        for (const bool front : {true, false}) {
            QTextEdit &box = boxOf(front);
            box.setFont(session.pane(front).font());
            box.setFrameShape(QFrame::NoFrame);
            box.setReadOnly(true);
            box.setFocusPolicy(Qt::NoFocus);
            box.setGeometry(session.pane(true).rect());
        }
        boxOf(false).hide();
        m_holder.resize(boxOf(true).size());
        m_holder.setAttribute(Qt::WA_ShowWithoutActivating);
        m_holder.show();
    }

    double timeText(const QString &html)
    {
        return millisecondsUntilPainted(*m_front.viewport(), [&] { m_front.setHtml(html); });
    }

    /// \p file is a picture that the text shows.
    double timeTextWithPicture(const QString &html, const QByteArray &file)
    {
        return millisecondsUntilPainted(*m_front.viewport(), [&] {
            m_front.document()->addResource(QTextDocument::ImageResource, QUrl(pictureName), QImage::fromData(file));
            m_front.setHtml(html);
        });
    }

    void setBack(const QString &html) { m_back.setHtml(html); }

    double timeTurn(bool toFront)
    {
        return millisecondsUntilPainted(*boxOf(toFront).viewport(), [&] {
            boxOf(toFront).show();
            boxOf(!toFront).hide();
        });
    }

private:
    QTextEdit &boxOf(bool front) { return front ? m_front : m_back; }

    QWidget m_holder;
    QTextEdit m_front{&m_holder};
    QTextEdit m_back{&m_holder};
};

QString bareText(int card, bool front)
{
    return QString::fromStdString(sideText(Markup::Html, card, front));
}

void benchMoves(PairTable &table, Module1 &module)
{
    KeyedSession session(module);
    BareCard bare(session);
    int card = 0;
    const PairOfTimes times = inTurn(
        moves, [&] { return session.timeNext(); }, [&] { return bare.timeText(bareText(++card, true)); });
    addKeystrokeRows(table, {"next card", "bare box"}, times);
}

void benchPictures(PairTable &table, const fs::path &folder)
{
    const fs::path path = folder / "Pictures.crl";
    makeSubject(path, movesToPictures + 2,
                [](int card, bool front) { return (front ? sideWithPicture : sideText)(Markup::Rtf, card, front); });
    Module1 module;
    choose(module, path);
    KeyedSession session(module);
    BareCard bare(session);
    int card = 0;
    const PairOfTimes times = inTurn(
        movesToPictures, [&] { return session.timeNext(); },
        [&] {
            const QString html = QString::fromStdString(sideWithPicture(Markup::Html, ++card, true));
            return bare.timeTextWithPicture(html, pictureOf(card));
        });
    table.row({"next card, with a picture", "bare box"}, times, timesFloor(pictureBesideBox));
}

/// Each card is turned to its back, which was never painted, and to its front again.
void benchTurning(PairTable &table, Module1 &module)
{
    KeyedSession session(module);
    BareCard bare(session);
    PairOfTimes toBack;
    PairOfTimes toFront;
    for (int turn = 0; turn < turns; ++turn) {
        session.timeNext();
        bare.timeText(bareText(session.card(), true));
        bare.setBack(bareText(session.card(), false));
        toBack.ours.push_back(session.timeTurn(false));
        toBack.floor.push_back(bare.timeTurn(false));
        toFront.ours.push_back(session.timeTurn(true));
        toFront.floor.push_back(bare.timeTurn(true));
    }
    addKeystrokeRows(table, {"turn to the back", "two bare boxes"}, toBack);
    addKeystrokeRows(table, {"turn to the front again", "two bare boxes"}, toFront);
}

/// The floor: an update by itself, which waits for the disk, and a small picture.
void benchMarking(PairTable &table, Module1 &module, const fs::path &path)
{
    const fs::path barePath = path.parent_path() / "Marked.crl";
    fs::copy_file(path, barePath);
    BareEngine engine(barePath);
    engine.run("PRAGMA journal_mode = DELETE; PRAGMA synchronous = FULL");
    BareStatement update(engine, "UPDATE FlashCards SET Marked = 1 - Marked WHERE rowid = 1");
    KeyedSession session(module);
    QWidget button;
    button.setAttribute(Qt::WA_ShowWithoutActivating);
    button.resize(session.markButton().size());
    button.show();
    const PairOfTimes times = inTurn(
        marks, [&] { return session.timeMark(); },
        [&] {
            return millisecondsUntilPainted(button, [&] {
                require(sqlite3_step(update) == SQLITE_DONE, "a write failed");
                sqlite3_reset(update);
                button.update();
            });
        });
    table.row({"mark a card", "one update and a widget"}, times, timesFloor(markBesideUpdate));
}

void benchShuffling(PairTable &table, Module1 &module, const fs::path &path)
{
    const fs::path barePath = path.parent_path() / "Shuffled.crl";
    fs::copy_file(path, barePath);
    BareShuffler bare(barePath);
    KeyedSession session(module);
    unsigned seed = 0;
    const PairOfTimes times = inTurn(
        shuffles, [&] { return session.timeShuffle(); },
        [&] {
            const double time = bare.timeUpdates(++seed);
            bare.readOrder();
            return time;
        });
    table.row({"shuffle 10,000 cards, with its question", "updates"}, times, timesFloor(shuffleBesideUpdates));
}

double millisecondsToOpen(Module1 &module)
{
    std::unique_ptr<frmFlashCard> window;
    const double time = microseconds([&] {
        window = makeWindow(module);
        const PaintWatch watch(*paneOf(*window, 0).viewport());
        window->show();
        watch.waitForPaint();
    });
    window->close();
    return time / 1000;
}

struct Opening
{
    const char *thing;
    int cards;
    int rounds;
    Bound bound;
};

void benchOpening(PairTable &table, Module1 &module, const fs::path &path, const Opening &opening)
{
    const PairOfTimes times = inTurn(
        opening.rounds, [&] { return millisecondsToOpen(module); },
        [&] {
            return millisecondsToScan(path, R"(SELECT "Index" FROM FlashCards WHERE NIndex = 1 ORDER BY "Index" ASC)",
                                      static_cast<std::size_t>(opening.cards));
        });
    table.row({opening.thing, "key scan in order"}, times, opening.bound);
}

std::string rtfText(int card, bool front)
{
    return sideText(Markup::Rtf, card, front);
}

} // namespace

int main(int argc, char **argv)
{
    const FreshHome home;
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    PairTable table("Flash-card session", "ms");
    const fs::path path = home.path() / "Cards.crl";
    makeSubject(path, someCards, rtfText);
    Module1 module;
    choose(module, path);
    benchMoves(table, module);
    benchPictures(table, home.path());
    benchTurning(table, module);
    benchMarking(table, module, path);
    benchOpening(table, module, path, {"open a session of 10,000 cards", someCards, 21, {}});
    benchShuffling(table, module, path);

    const fs::path longPath = home.path() / "ManyCards.crl";
    makeSubject(longPath, manyCards, rtfText);
    choose(module, longPath);
    benchOpening(table, module, longPath,
                 {"open a session of 100,000 cards", manyCards, 11, timesFloor(openingBesideScan)});
    return table.everyBoundHolds() ? 0 : 1;
}
