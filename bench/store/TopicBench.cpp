#include "bench/store/TopicBench.h"

#include "bench/store/ChangingValues.h"
#include "bench/support/BareEngine.h"
#include "bench/support/LargeSubject.h"
#include "store/Schema.h"
#include "store/Statements.h"
#include "store/SubjectReading.h"
#include "store/SubjectStore.h"
#include "store/SubjectWriting.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr int topics = 100;
constexpr std::size_t bytesOfNotes = 4'000;

/// Of all cards, one in so many belongs to the topic that is deleted.
constexpr int shareOfDeleted = 10;

std::string text(sqlite3_stmt *select, int column)
{
    const char *bytes = static_cast<const char *>(sqlite3_column_blob(select, column));
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(select, column))};
}

/// A subject as each command opens it, without the store.
class BareSubject : public BareEngine
{
public:
    explicit BareSubject(const fs::path &path)
        : BareEngine(path)
    {
        askWhetherSubject(*this);
    }
};

constexpr const char *selectTopic = "SELECT \"Index\", Name, Notes FROM Topics WHERE rowid = ?";

/// The key of topic 1, found in the way of the store.
int findTopic(const BareSubject &subject)
{
    const std::vector<int> found = keysOf(BareStatement(subject, "SELECT rowid FROM Topics WHERE \"Index\" = 1"));
    require(found.size() == 1, "a topic is missing");
    return found.front();
}

TopicContents readTopicBare(const fs::path &path)
{
    BareSubject subject(path);
    BareStatement select(subject, selectTopic);
    sqlite3_bind_int(select, 1, findTopic(subject));
    require(sqlite3_step(select) == SQLITE_ROW, "a topic is missing");
    BareStatement cards(subject, "SELECT rowid FROM FlashCards WHERE NIndex = 1");
    return {text(select, TopicField::Name), text(select, TopicField::Notes), countRows(cards)};
}

std::vector<TopicEntry> listTopicsBare(const fs::path &path)
{
    BareSubject subject(path);
    BareStatement select(subject, selectTopic);
    std::vector<TopicEntry> entries;
    for (const int key : keysOf(BareStatement(subject, "SELECT rowid FROM Topics"))) {
        sqlite3_bind_int(select, 1, key);
        require(sqlite3_step(select) == SQLITE_ROW, "a topic is missing");
        entries.push_back({sqlite3_column_int(select, TopicField::Index), text(select, TopicField::Name)});
        sqlite3_reset(select);
    }
    return entries;
}

std::vector<TopicEntry> listTopicsAtOnce(const fs::path &path)
{
    BareSubject subject(path);
    BareStatement select(subject, "SELECT \"Index\", Name FROM Topics");
    std::vector<TopicEntry> entries;
    while (sqlite3_step(select) == SQLITE_ROW) {
        entries.push_back({sqlite3_column_int(select, TopicField::Index), text(select, TopicField::Name)});
    }
    return entries;
}

void saveNotesBare(const fs::path &path, const std::string &notes)
{
    BareSubject subject(path);
    BareStatement update(subject, "UPDATE Topics SET Notes = ? WHERE rowid = ?");
    sqlite3_bind_text(update, 1, notes.data(), static_cast<int>(notes.size()), SQLITE_STATIC);
    sqlite3_bind_int(update, 2, findTopic(subject));
    require(sqlite3_step(update) == SQLITE_DONE && sqlite3_changes(subject) == 1, "the notes are not saved");
}

void deleteTopicBare(const fs::path &path, int topic)
{
    BareSubject subject(path);
    subject.run("DELETE FROM Topics WHERE \"Index\" = " + std::to_string(topic));
    subject.run("DELETE FROM FlashCards WHERE NIndex = " + std::to_string(topic));
}

void benchSavingNotes(StorePairs &pairs, const fs::path &path, const fs::path &barePath)
{
    ChangingText ours(bytesOfNotes);
    ChangingText bare(bytesOfNotes);
    pairs.waiting({"save a topic's notes", "opening, a key, an update"}, 1,
                  timed([&] { saveNotes(path, 1, ours.next()); }),
                  timed([&] { saveNotesBare(barePath, bare.next()); }));
    require(readTopic(path, 1).notes == ours.latest() && readTopic(barePath, 1).notes == bare.latest(),
            "the notes are not saved");
}

/// A topic with cards behind all others, which can be deleted again and again.
class DoomedTopic
{
public:
    DoomedTopic(const fs::path &path, int cards)
        : m_engine(path)
        , m_cards(cards)
    {
    }

    /// Makes it and returns its key.
    int make()
    {
        m_engine.run("BEGIN IMMEDIATE; INSERT INTO Topics (Name) VALUES ('Doomed')");
        const auto topic = static_cast<int>(sqlite3_last_insert_rowid(m_engine));
        const std::string side(bytesPerSide, 'x');
        BareStatement add(m_engine, "INSERT INTO FlashCards (NIndex, Front, Back) VALUES (?, ?, ?)");
        for (int card = 0; card < m_cards; ++card) {
            sqlite3_bind_int(add, 1, topic);
            sqlite3_bind_text(add, 2, side.data(), bytesPerSide, SQLITE_STATIC);
            sqlite3_bind_text(add, 3, side.data(), bytesPerSide, SQLITE_STATIC);
            require(sqlite3_step(add) == SQLITE_DONE, "a write failed");
            sqlite3_reset(add);
        }
        m_engine.run("COMMIT");
        require(rows(topic) == m_cards + 1, "the topic is not whole");
        return topic;
    }

    /// The topic and its cards.
    int rows(int topic)
    {
        BareStatement select(m_engine, "SELECT rowid FROM Topics WHERE \"Index\" = ?1 UNION ALL "
                                       "SELECT rowid FROM FlashCards WHERE NIndex = ?1");
        sqlite3_bind_int(select, 1, topic);
        return countRows(select);
    }

private:
    BareEngine m_engine;
    int m_cards;
};

void benchDeleting(StorePairs &pairs, const fs::path &path, const fs::path &barePath)
{
    const int cards = pairs.cards() / shareOfDeleted;
    DoomedTopic ours(path, cards);
    DoomedTopic bare(barePath, cards);
    const auto timeToDelete = [](DoomedTopic &doomed, const std::function<void(int)> &remove) {
        const int topic = doomed.make();
        const double time = microseconds([&] { remove(topic); });
        require(doomed.rows(topic) == 0, "the topic is not deleted");
        return time;
    };
    pairs.work(
        {"delete a topic with a tenth more cards", "opening, two deletes"}, 1,
        [&] { return timeToDelete(ours, [&](int topic) { deleteTopic(path, topic); }); },
        [&] { return timeToDelete(bare, [&](int topic) { deleteTopicBare(barePath, topic); }); });
}

} // namespace

void addTopics(const fs::path &path)
{
    SubjectStore store(path);
    Transaction transaction(store);
    TopicSet set = store.openRecordSet(allTopics());
    for (int topic = 1; topic <= topics; ++topic) {
        set.addNew();
        set.setText(TopicField::Name, "Topic " + std::to_string(topic));
        set.setText(TopicField::Notes, std::string(bytesOfNotes, 'n'));
        set.update();
    }
    transaction.commit();
}

void benchTopics(StorePairs &pairs, const fs::path &path, const fs::path &barePath)
{
    pairs.steady({"open and close", "the same questions"}, 1, timed([&] { SubjectStore store(path); }),
                 timed([&] { openBare(barePath); }));

    const auto requireTopic = [&](const TopicContents &contents) {
        require(contents.notes.size() == bytesOfNotes && contents.cardCount == pairs.cards(), "a topic is not whole");
    };
    pairs.work({"read a topic: notes and number of cards", "opening, a row, stepping"}, 1,
               timed([&] { requireTopic(readTopic(path, 1)); }), timed([&] { requireTopic(readTopicBare(barePath)); }));

    const auto requireAll = [](const std::vector<TopicEntry> &entries) {
        require(entries.size() == topics && entries.back().name == "Topic 100", "topics are missing");
    };
    const Timed list = timed([&] { requireAll(listTopics(path)); });
    pairs.steady({"list 100 topics", "opening, keys, rows by key"}, 1, list,
                 timed([&] { requireAll(listTopicsBare(barePath)); }));
    pairs.row({"list 100 topics", "opening, one select"}, 1, list,
              timed([&] { requireAll(listTopicsAtOnce(barePath)); }), {});

    benchSavingNotes(pairs, path, barePath);
    benchDeleting(pairs, path, barePath);
}
