// Times what a learner waits for when the program is there for the first time:
// the chooser, the main window, the first session, each in a process of its own
// that was just started, from the command to the painted window. Both sides of
// a pair run in turn; the table shows medians. Exits with 1 if a bound is broken.

#include "bench/process/BareNotes.h"
#include "bench/process/Screen.h"
#include "bench/process/Subjects.h"
#include "bench/process/Visit.h"
#include "bench/support/BareEngine.h"
#include "bench/support/FreshHome.h"
#include "bench/support/PairTable.h"
#include "platform/rtf/RtfReader.h"
#include "store/SubjectReading.h"

#include <QGuiApplication>
#include <QTextDocument>

#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr int starts = 31;
constexpr int openings = 21;
constexpr int openingsOfMany = 11;
constexpr int sessions = 11;

constexpr int fewCards = 10;
constexpr int someCards = 10'000;
constexpr int manyCards = 100'000;

double millisecondsToStart(const Journey &journey)
{
    return Visit(journey).until(journey.destination + " shown");
}

PairOfTimes timesOfStart(const Home &home, const Home &bare)
{
    return inTurn(
        starts, [&] { return millisecondsToStart(through(home, "frmOpen")); },
        [&] { return millisecondsToStart(toEmptyWindow(bare)); });
}

/// The X server, which starts anew after each program, is busy at first.
void benchFirstStart(PairTable &table, const Home &home, const Home &bare)
{
    table.row({"start to the painted chooser", "empty window"}, timesOfStart(home, bare), timesFloor(1.3));
}

/// The X server answers at once.
void benchLaterStart(PairTable &table, const Home &home, const Home &bare)
{
    table.row({"the same on an X server in use", "empty window"}, timesOfStart(home, bare));
}

// The main window.

/// What the main window shows of \p subject.
BareNotes notesOf(const fs::path &subject)
{
    BareNotes notes;
    for (const TopicEntry &topic : listTopics(subject)) {
        notes.tabs << QString::fromStdString(topic.name);
    }
    QTextDocument document;
    readRtf(firstNotesOf(subject), document);
    notes.html = document.toHtml();
    return notes;
}

double millisecondsToNotes(const Home &home)
{
    return Visit(through(home, "frmNotes")).between("frmOpen left", "frmNotes shown");
}

double millisecondsToBareNotes(const Home &home)
{
    return Visit(toBareNotes(home)).between("window left", "bareNotes shown");
}

/// In a connection of its own.
double millisecondsToCount(const fs::path &subject, int count)
{
    return microseconds([&] {
               const BareEngine engine(subject);
               const BareStatement statement(engine, "SELECT count(*) FROM FlashCards WHERE NIndex = 1");
               require(sqlite3_step(statement) == SQLITE_ROW && sqlite3_column_int(statement, 0) == count,
                       "cards are missing");
           }) /
           1000;
}

void benchNotes(PairTable &table, const Home &home, const Home &bare)
{
    const PairOfTimes times = inTurn(
        openings, [&] { return millisecondsToNotes(home); }, [&] { return millisecondsToBareNotes(bare); });
    table.row({"OK to the main window, sample", "bare window with the same text"}, times, timesFloor(2));
}

/// The notes of \p sample: both sides show the same text.
void benchManyTopics(PairTable &table, const Home &sample, const std::string &notes, const fs::path &folder)
{
    const fs::path subject = makeManyTopics(folder, notes);
    const Home home(folder / "many", subject);
    const PairOfTimes times = inTurn(
        openingsOfMany, [&] { return millisecondsToNotes(home); },
        [&] { return millisecondsToCount(subject, cardsOfEachTopic) + millisecondsToNotes(sample); });
    table.row({"OK to the main window, 100 topics, 100,000 cards", "bare count + sample's window"}, times,
              timesFloor(1.5));
}

// The first session.

double millisecondsToSession(const Home &home)
{
    return Visit(through(home, "frmFlashCard")).between("frmOptions left", "frmFlashCard shown");
}

/// From the start to the first card; the learner takes no time to choose.
double millisecondsInAll(const Home &home)
{
    Visit visit(through(home, "frmFlashCard"));
    return visit.until("frmOpen shown") + visit.between("frmOpen left", "frmNotes shown") +
           visit.between("frmNotes left", "frmOptions shown") + visit.between("frmOptions left", "frmFlashCard shown");
}

/// What the wizard and the session need to know of the cards.
double millisecondsToCountAndScan(const fs::path &subject, int count)
{
    return millisecondsToCount(subject, count) +
           millisecondsToScan(subject, R"(SELECT "Index" FROM FlashCards WHERE NIndex = 1 ORDER BY "Index" ASC)",
                              static_cast<std::size_t>(count));
}

void benchSessions(PairTable &table, const fs::path &folder)
{
    const Home few(folder / "few", makeCards(folder, fewCards));
    for (const auto &[count, name] : {std::pair{someCards, "10,000"}, std::pair{manyCards, "100,000"}}) {
        const fs::path subject = makeCards(folder, count);
        const Home home(folder / std::to_string(count), subject);
        const PairOfTimes times = inTurn(
            sessions, [&] { return millisecondsToSession(home); },
            [&] { return millisecondsToCountAndScan(subject, count) + millisecondsToSession(few); });
        table.row({std::string("wizard's Study to the first card of ") + name, "bare count and scan + same of 10"},
                  times, timesFloor(1.5));
    }
}

void benchWholeWay(PairTable &table, const fs::path &folder)
{
    const Home home(folder / std::to_string(someCards));
    const Home few(folder / "few");
    const PairOfTimes times = inTurn(
        sessions, [&] { return millisecondsInAll(home); }, [&] { return millisecondsInAll(few); });
    table.row({"start to the first card of 10,000, no pauses", "same of 10"}, times);
}

} // namespace

int main(int argc, char **argv)
{
    const FreshHome folder;
    const QGuiApplication application(argc, argv); // for the text that the bare window shows
    static_cast<void>(Screen());                   // ends it here if there is none
    const fs::path subject = copyOfSample(folder.path());
    const Home sample(folder.path() / "sample", subject);
    const Home bare(folder.path() / "bare");
    keepBareNotes(bare.folder(), notesOf(subject));

    PairTable table("a fresh process", "ms");
    benchFirstStart(table, sample, bare);
    const Screen inUse;
    benchLaterStart(table, sample, bare);
    benchNotes(table, sample, bare);
    benchManyTopics(table, sample, firstNotesOf(subject), folder.path());
    benchSessions(table, folder.path());
    benchWholeWay(table, folder.path());
    return table.everyBoundHolds() ? 0 : 1;
}
