#include "study/TestGeneration.h"

#include "store/Statements.h"
#include "study/CardSelection.h"
#include "study/KeptPosition.h"
#include "study/Shuffling.h"
#include "study/TestQuestion.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace {

/// The positions of \p cards in the order in which the rows lie in the file, in which they are
/// written several times faster than in a random one.
std::vector<int> positionsInFile(CardSet &cards)
{
    std::vector<CardSet::Bookmark> rows;
    rows.reserve(static_cast<std::size_t>(cards.recordCount()));
    for (cards.moveFirst(); !cards.isEndOfSet(); cards.moveNext()) {
        rows.push_back(cards.bookmark());
    }
    std::vector<int> positions(rows.size());
    std::iota(positions.begin(), positions.end(), 0);
    std::ranges::sort(positions, {}, [&](int position) { return rows[static_cast<std::size_t>(position)]; });
    return positions;
}

} // namespace

CardSet generateTest(SubjectStore &store, CardSet &cards, std::string_view cardQuery, int multipleChoicePercent,
                     const RandomDraw &draw)
{
    Transaction pass(store);
    WorkPass work("Making the test...", 2 * cards.recordCount()); // a key and a question for each card
    {
        const KeptPosition kept(cards);
        cards.moveLast();
        drawSortKeys(cards, draw, work);
    }
    CardSet shuffled = store.openRecordSet(cardsShuffled(cardQuery));
    const int count = shuffled.recordCount();
    if (count < minStudyCards) {
        throw CardsGone("fewer than 5 of the selected flash cards are left, too few for a test");
    }
    std::vector<TestQuestion> questions(static_cast<std::size_t>(count));
    for (int position = count - 1; position >= 0; --position) {
        questions[static_cast<std::size_t>(position)] = drawQuestion(position, count, multipleChoicePercent, draw);
    }
    for (const int position : positionsInFile(shuffled)) {
        shuffled.setAbsolutePosition(position);
        shuffled.edit();
        setQuestion(shuffled, questions[static_cast<std::size_t>(position)]);
        shuffled.update();
        work.step();
    }
    shuffled.moveLast();
    shuffled.moveFirst();
    pass.commit();
    return shuffled;
}
