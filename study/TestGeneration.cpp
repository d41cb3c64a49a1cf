#include "study/TestGeneration.h"

#include "store/Statements.h"
#include "study/CardSelection.h"
#include "study/FileOrder.h"
#include "study/KeptPosition.h"
#include "study/Shuffling.h"
#include "study/TestQuestion.h"

#include <vector>

CardSet generateTest(SubjectStore &store, CardSet &cards, std::string_view cardQuery, int multipleChoicePercent,
                     const RandomDraw &draw)
{
    Transaction pass(store);
    WorkPass work("Making the test...", 2 * cards.recordCount()); // a key and a question for each card
    {
        const KeptPosition kept(cards);
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
