#include "store/SubjectWriting.h"

#include "store/Schema.h"
#include "store/Statements.h"
#include "store/SubjectStore.h"
#include "store/TopicRow.h"

namespace {

void setTopicText(const std::filesystem::path &subject, int topic, TopicField::Position field, std::string_view value)
{
    SubjectStore store(subject);
    TopicSet row = openTopic(store, subject, topic);
    row.edit();
    row.setText(field, value);
    row.update();
}

} // namespace

std::string newTopicNotes(std::string_view name)
{
    // The closing \f1 names no font of the table; a reader keeps the one in use.
    return R"({\rtf1\ansi\deff0\deflang1033{\fonttbl{\f0\fscript\fprq2\fcharset0 Comic Sans MS;}}\pard\f0\fs20 )" +
           std::string(name) + R"( notes...\f1\par})";
}

int createTopic(const std::filesystem::path &subject, std::string_view name)
{
    SubjectStore store(subject);
    TopicSet topics = store.openRecordSet(allTopics());
    Transaction whole(store); // a topic whose key cannot be read is not left behind
    topics.addNew();
    topics.setText(TopicField::Name, name);
    topics.setText(TopicField::Notes, newTopicNotes(name));
    topics.update();
    topics.setBookmark(topics.lastModified());
    const int topic = topics.number(TopicField::Index);
    whole.commit();
    return topic;
}

void renameTopic(const std::filesystem::path &subject, int topic, std::string_view name)
{
    setTopicText(subject, topic, TopicField::Name, name);
}

void saveNotes(const std::filesystem::path &subject, int topic, std::string_view rtf)
{
    setTopicText(subject, topic, TopicField::Notes, rtf);
}

void deleteTopic(const std::filesystem::path &subject, int topic)
{
    SubjectStore store(subject);
    store.execute(deleteTopicRow(topic));
    store.execute(deleteTopicCards(topic));
}
