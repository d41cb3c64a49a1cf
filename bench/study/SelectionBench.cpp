#include "bench/study/SelectionBench.h"

#include "bench/study/SizedSubject.h"
#include "bench/support/BareEngine.h"
#include "store/SubjectReading.h"
#include "study/StudyWizard.h"

#include <vector>

namespace {

constexpr double countBesideEngine = 2;

struct Selection
{
    const char *name;
    std::vector<int> topics;
    bool withMarked;
    const char *condition;
};

int countOf(const std::filesystem::path &path, const Selection &selection)
{
    BareEngine engine(path);
    BareStatement count(engine, std::string("SELECT count(*) FROM FlashCards WHERE ") + selection.condition);
    require(sqlite3_step(count) == SQLITE_ROW, "the engine does not count");
    return sqlite3_column_int(count, 0);
}

void benchSelection(SizedRows &rows, const SizedSubject &subject, const Selection &selection)
{
    const WizardChoices choices{.topics = selection.topics, .withMarked = selection.withMarked};
    const int cards = countOf(subject.path, selection);
    StudySettings settings;
    const Action confirm = [&] {
        beginStudySetup(settings);
        require(!confirmStudySetup(subject.path, choices, settings), "the cards are refused");
    };
    const Action count = [&] { require(countOf(subject.path, selection) == cards, "cards are missing"); };
    const PairOfTimes times = inTurn(
        subject.scans, [&] { return microseconds(confirm) / 1000; }, [&] { return microseconds(count) / 1000; });
    require(countCards(subject.path, cardQueryCheck(settings.cardQuery)) == cards,
            "the two sides did not count the same");
    rows.add(subject, {selection.name, "count(*)"}, times, timesFloor(countBesideEngine));
}

} // namespace

void benchSelections(SizedRows &rows, const SizedSubject &subject)
{
    benchSelection(rows, subject, {"count a topic", {1}, false, "NIndex = 1"});
    benchSelection(rows, subject, {"count a topic and marked cards", {1}, true, "NIndex = 1 OR Marked <> 0"});
    benchSelection(rows, subject, {"count marked cards", {}, true, "Marked <> 0"});
}
