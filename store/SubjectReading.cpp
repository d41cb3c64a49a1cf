#include "store/SubjectReading.h"

#include "store/Schema.h"
#include "store/Statements.h"
#include "store/SubjectStore.h"
#include "store/TopicRow.h"

namespace {

int countOf(SubjectStore &store, std::string_view statement)
{
    RecordSet cards = store.openRecordSet(statement);
    cards.moveLast();
    return cards.recordCount();
}

} // namespace

std::vector<TopicEntry> listTopics(const std::filesystem::path &subject)
{
    SubjectStore store(subject);
    TopicSet topics = store.openRecordSet(allTopics());
    std::vector<TopicEntry> entries;
    entries.reserve(static_cast<std::size_t>(topics.recordCount()));
    for (; !topics.isEndOfSet(); topics.moveNext()) {
        entries.push_back({topics.number(TopicField::Index), topics.text(TopicField::Name)});
    }
    return entries;
}

TopicContents readTopic(const std::filesystem::path &subject, int topic)
{
    SubjectStore store(subject);
    const TopicSet row = openTopic(store, subject, topic);
    return {row.text(TopicField::Name), row.text(TopicField::Notes), countOf(store, cardsOfTopic(topic))};
}

int countCards(const std::filesystem::path &subject, std::string_view statement)
{
    SubjectStore store(subject);
    return countOf(store, statement);
}
