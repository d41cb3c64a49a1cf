#include "study/CardSelection.h"

#include "store/Statements.h"

std::string selectionQuery(std::span<const int> topics, bool withMarked)
{
    if (!withMarked) {
        return cardQuery(topics);
    }
    return topics.empty() ? markedCardQuery() : withMarkedCards(cardQuery(topics));
}

std::optional<SelectionRefusal> checkCardCount(int count)
{
    if (count == 0) {
        return SelectionRefusal::NoCards;
    }
    if (count < minStudyCards) {
        return SelectionRefusal::UnderFiveCards;
    }
    return std::nullopt;
}
