#include "bench/test/GradingBench.h"

#include "bench/support/Measure.h"
#include "bench/support/PairTable.h"
#include "bench/support/SeededDraw.h"
#include "bench/test/BareTest.h"
#include "store/Statements.h"
#include "study/TestSession.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace fs = std::filesystem;

namespace {

constexpr int questions = 50;
constexpr int gradings = 101;

/// The engine writes nothing where a card is marked already.
void unmark(const fs::path &path)
{
    BareEngine engine(path);
    engine.run("UPDATE FlashCards SET Marked = 0 WHERE Marked <> 0");
}

double timeAfterUnmarking(const fs::path &path, const Action &mark)
{
    unmark(path);
    return microseconds(mark) / 1000;
}

void requireMarked(const std::vector<StoredCard> &cards)
{
    for (std::size_t card = 0; card < cards.size(); ++card) {
        require(cards[card].isMarked == (card < questions), "the wrong cards are marked");
    }
}

} // namespace

void benchGrading(PairTable &table, const fs::path &path)
{
    const StudySettings settings{.questionCount = questions,
                                 .multipleChoicePercent = multipleChoicePercent,
                                 .cardQuery = cardQuery(std::array{1})};
    TestSession session(path, settings, seededDraw(1));
    std::array<int, questions> wrong{};
    std::iota(wrong.begin(), wrong.end(), 0);

    const fs::path barePath = path.parent_path() / "Graded.crl";
    fs::copy_file(path, barePath);
    BareTest bare(barePath);
    std::array<int, questions> keys{};
    const std::vector<StoredCard> cards = storedCards(barePath);
    std::ranges::transform(cards.begin(), cards.begin() + questions, keys.begin(), &StoredCard::key);

    const PairOfTimes times = inTurn(
        gradings, [&] { return timeAfterUnmarking(path, [&] { session.markCards(wrong); }); },
        [&] { return timeAfterUnmarking(barePath, [&] { bare.mark(keys); }); });
    requireMarked(storedCards(path));
    require(storedCards(path) == storedCards(barePath), "the two sides did not mark the same");
    table.row("mark the cards of 50 wrong questions | updates", median(times.ours), median(times.floor));
    unmark(path);
}
