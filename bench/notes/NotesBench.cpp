// Times what a reader and writer of notes waits for in the main window: another
// topic's tab, from the key to the painted notes, beside reading and counting the
// same through the engine's C API and showing the same text in a bare text box;
// and storing the notes. Both sides run in turn; the table shows medians. Exits
// with 1 if a bound is broken.

#include "app/Module1.h"
#include "bench/support/BareEngine.h"
#include "bench/support/FreshHome.h"
#include "bench/support/KeystrokeRows.h"
#include "bench/support/Measure.h"
#include "bench/support/PaintWatch.h"
#include "bench/support/PairTable.h"
#include "bench/support/RtfSamples.h"
#include "bench/support/TopicsSubject.h"
#include "forms/frmNotes/frmNotes.h"
#include "platform/RichTextBox.h"
#include "platform/TabStrip.h"
#include "store/SubjectReading.h"

#include <QApplication>
#include <QLabel>
#include <QTest>

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr double switchingBesideBare = 1.5;

constexpr int topicsOfLarge = 100;
constexpr int cardsOfLargeTopic = 1'000;
constexpr std::size_t bytesOfPage = 3'000;

constexpr int switchesOfSample = 201;
constexpr int switchesOfLarge = 41;
constexpr int savings = 41;

constexpr QSize windowSize(900, 620);

/// What the window shows of a topic.
struct ShownTopic
{
    int key;
    int cards;
    std::string rtf;
    QString plain;
    QString html;
};

std::vector<ShownTopic> shownTopics(const fs::path &subject)
{
    std::vector<ShownTopic> shown;
    RichTextBox box;
    for (const TopicEntry &entry : listTopics(subject)) {
        TopicContents topic = readTopic(subject, entry.index);
        box.setRtf(topic.notes);
        require(topic.cardCount > 0 && box.plainText().size() > 200, "a topic is empty");
        shown.push_back({entry.index, topic.cardCount, std::move(topic.notes), box.plainText(), box.toHtml()});
    }
    return shown;
}

/// Leafs to the last topic, and back again.
class Leafing
{
public:
    explicit Leafing(const std::vector<ShownTopic> &topics)
        : m_topics(topics)
    {
    }

    const ShownTopic &next()
    {
        if (m_position + 1 == m_topics.size()) {
            m_key = Qt::Key_Left;
        } else if (m_position == 0) {
            m_key = Qt::Key_Right;
        }
        m_key == Qt::Key_Right ? ++m_position : --m_position;
        return m_topics.at(m_position);
    }
    [[nodiscard]] Qt::Key key() const { return m_key; } ///< that led to the topic

private:
    const std::vector<ShownTopic> &m_topics;
    std::size_t m_position = 0;
    Qt::Key m_key = Qt::Key_Right;
};

/// The main window, shown, that is driven by keys.
class KeyedNotes
{
public:
    explicit KeyedNotes(Module1 &module)
        : m_window(module)
        , m_box(*m_window.findChild<RichTextBox *>(QStringLiteral("RichTextBox1")))
    {
        m_window.show();
        require(QTest::qWaitForWindowActive(&m_window), "the window does not come to the front");
        m_window.resize(windowSize); // not before: the window then takes the size that is kept for it
        QCoreApplication::processEvents();
    }

    /// Milliseconds from the arrow key to the painted notes of \p topic.
    double timeTab(Qt::Key key, const ShownTopic &topic)
    {
        require(qobject_cast<TabStrip *>(m_window.focusWidget()) != nullptr, "the tabs have no focus");
        const double time = timeKey(key);
        require(m_box.plainText() == topic.plain, "other notes are shown");
        const auto *status = m_window.findChild<QLabel *>(QStringLiteral("StatusBar1"));
        require(status->isVisible() && status->text().contains(QStringLiteral(" %1 ").arg(topic.cards)),
                "the cards are not counted");
        return time;
    }

    /// Types a letter into the notes; milliseconds from Escape to the stored notes without the tools.
    double timeSaving()
    {
        QTest::keyClick(m_window.focusWidget(), Qt::Key_E, Qt::AltModifier);
        require(!m_box.isLocked() && m_box.hasFocus(), "the notes cannot be edited");
        QTest::keyClick(&m_box, Qt::Key_X);
        const double time = timeKey(Qt::Key_Escape);
        require(m_box.isLocked(), "the notes are still edited");
        return time;
    }

    [[nodiscard]] const RichTextBox &box() const { return m_box; }

private:
    double timeKey(Qt::Key key)
    {
        return millisecondsUntilPainted(*m_box.viewport(), [&] { QTest::keyClick(m_window.focusWidget(), key); });
    }

    frmNotes m_window;
    RichTextBox &m_box;
};

/// The floor: a bare text box beside the engine's C API.
class BareNotes
{
public:
    BareNotes(fs::path subject, const RichTextBox &ours)
        : m_subject(std::move(subject))
    {
        m_box.setFont(ours.font());
        m_box.setFrameShape(QFrame::NoFrame);
        m_box.setReadOnly(true);
        m_box.resize(ours.size());
        m_box.setAttribute(Qt::WA_ShowWithoutActivating);
        m_box.show();
    }

    double timeTopic(const ShownTopic &topic)
    {
        return millisecondsUntilPainted(*m_box.viewport(), [&] {
            const BareEngine engine(m_subject);
            BareStatement notes(engine, R"(SELECT Notes FROM Topics WHERE "Index" = ?)");
            sqlite3_bind_int(notes, 1, topic.key);
            require(sqlite3_step(notes) == SQLITE_ROW &&
                        sqlite3_column_bytes(notes, 0) == static_cast<int>(topic.rtf.size()),
                    "notes are missing");
            BareStatement cards(engine, "SELECT count(*) FROM FlashCards WHERE NIndex = ?");
            sqlite3_bind_int(cards, 1, topic.key);
            require(sqlite3_step(cards) == SQLITE_ROW && sqlite3_column_int(cards, 0) == topic.cards,
                    "cards are missing");
            m_box.setHtml(topic.html);
        });
    }

private:
    fs::path m_subject;
    QTextEdit m_box;
};

PairOfTimes timesOfSwitching(const fs::path &subject, int switches)
{
    const std::vector<ShownTopic> topics = shownTopics(subject);
    Module1 module;
    module.subject = subjectAt(QString::fromStdString(subject.string()));
    KeyedNotes notes(module);
    BareNotes bare(subject, notes.box());
    Leafing ours(topics);
    Leafing floor(topics);
    return inTurn(
        switches,
        [&] {
            const ShownTopic &topic = ours.next();
            return notes.timeTab(ours.key(), topic);
        },
        [&] { return bare.timeTopic(floor.next()); });
}

std::string pageOfNotes(int topic)
{
    std::string text = longNotes(bytesOfPage);
    const std::string_view headEnd = "\\fs20 ";
    return text.insert(text.find(headEnd) + headEnd.size(), "Topic " + std::to_string(topic) + ": ");
}

void benchSwitching(PairTable &table, const fs::path &folder, const fs::path &sample)
{
    table.row({"tab switch, sample", "bare read, count and box"}, timesOfSwitching(sample, switchesOfSample),
              atMost(millisecondsOfKeystroke));
    const fs::path large = folder / "Large.crl";
    makeSubjectOfTopics(large, topicsOfLarge, cardsOfLargeTopic, pageOfNotes);
    table.row({"tab switch, 100 topics, 100,000 cards", "bare read, count and box"},
              timesOfSwitching(large, switchesOfLarge), timesFloor(switchingBesideBare));
}

/// Stores \p rtf as a topic's notes, in a transaction of its own.
double millisecondsOfBareSaving(const fs::path &subject, int topic, const std::string &rtf)
{
    return microseconds([&] {
               BareEngine engine(subject);
               engine.run("PRAGMA synchronous = FULL");
               BareStatement update(engine, R"(UPDATE Topics SET Notes = ? WHERE "Index" = ?)");
               sqlite3_bind_text(update, 1, rtf.data(), static_cast<int>(rtf.size()), SQLITE_STATIC);
               sqlite3_bind_int(update, 2, topic);
               require(sqlite3_step(update) == SQLITE_DONE, "the notes cannot be stored");
           }) /
           1000;
}

void benchSaving(PairTable &table, const fs::path &folder, const fs::path &sample)
{
    const fs::path bareSubject = folder / "Bare.crl";
    fs::copy_file(sample, bareSubject);
    const ShownTopic topic = shownTopics(sample).front();
    RichTextBox writer; // of what the bare side stores
    writer.setRtf(topic.rtf);
    Module1 module;
    module.subject = subjectAt(QString::fromStdString(sample.string()));
    KeyedNotes notes(module);
    const PairOfTimes times = inTurn(
        savings, [&] { return notes.timeSaving(); },
        [&] {
            QTest::keyClick(&writer, Qt::Key_X);
            return millisecondsOfBareSaving(bareSubject, topic.key, writer.rtf());
        });
    require(readTopic(sample, topic.key).notes == readTopic(bareSubject, topic.key).notes,
            "the two sides stored different notes");
    table.row({"save a page of notes", "bare update"}, times, moreThanFloor(millisecondsOfKeystroke));
}

} // namespace

int main(int argc, char **argv)
{
    const FreshHome home;
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const fs::path sample = home.path() / "States and Capitals.crl";
    fs::copy_file(fs::path(SAMPLE_SUBJECTS) / sample.filename(), sample);

    PairTable table("Main window", "ms");
    benchSwitching(table, home.path(), sample);
    benchSaving(table, home.path(), sample);
    return table.everyBoundHolds() ? 0 : 1;
}
