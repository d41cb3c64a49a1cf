#include "Operations.h"

#include "store/Schema.h"
#include "store/Statements.h"
#include "store/SubjectReading.h"
#include "store/SubjectStore.h"
#include "store/SubjectWriting.h"
#include "study/CardEditing.h"
#include "study/FlashCardSession.h"
#include "study/TestSession.h"
#include "tests/study/StoredTest.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <array>
#include <gtest/gtest.h>
#include <memory>
#include <sqlite3.h>

namespace fs = std::filesystem;

namespace {

constexpr int firstTopic = 1;
constexpr int emptyTopic = 3;
constexpr int singleTopic = 4; ///< has one card

std::string longText(int length, char letter)
{
    return rtfOf(std::string(static_cast<std::size_t>(length), letter));
}

void addLongCards(SubjectStore &store, int topic, int count, int textLength)
{
    CardSet cards = store.openRecordSet(cardsOfTopic(topic));
    for (int card = 0; card < count; ++card) {
        cards.addNew();
        cards.setNumber(CardField::NIndex, topic);
        cards.setText(CardField::Front, longText(textLength, static_cast<char>('a' + card % 26)));
        cards.setText(CardField::Back, longText(textLength, static_cast<char>('A' + card % 26)));
        cards.update();
    }
}

std::string studyQuery()
{
    return cardQuery(std::array{firstTopic});
}

StudySettings studySettings()
{
    StudySettings settings;
    settings.cardQuery = studyQuery();
    settings.questionCount = 5;
    return settings;
}

/// A store with a set, as a window holds them.
struct OpenSet
{
    OpenSet(const fs::path &subject, const std::string &statement)
        : store(subject)
        , cards(store.openRecordSet(statement))
    {
    }

    SubjectStore store;
    CardSet cards;
};

/// Adds a command that needs nothing open.
template <typename Act>
auto onPath(Act act)
{
    return [act](const fs::path &subject) -> Command { return [act, subject] { return std::string(act(subject)); }; };
}

/// A command on a set that stands at its third card.
template <typename Act>
auto onSet(Act act)
{
    return [act](const fs::path &subject) -> Command {
        auto open = std::make_shared<OpenSet>(subject, cardsOfTopic(firstTopic));
        open->cards.setAbsolutePosition(2);
        return [act, open] { return std::string(act(*open)); };
    };
}

const CardSides blankSides{rtfOf(""), rtfOf("")};

EditedCard typed(const std::string &text)
{
    return {{rtfOf(text), text}, {rtfOf(""), ""}};
}

/// Opens the editor on the card at \p position of a topic.
std::shared_ptr<CardEditing> openEditor(const fs::path &subject, int topic, int position)
{
    auto editing = std::make_shared<CardEditing>(subject, cardsOfTopic(topic), topic, blankSides);
    for (int at = 0; at < position; ++at) {
        const CardSides sides = editing->sides();
        editing->next({{sides.front, "text"}, {sides.back, "text"}});
    }
    return editing;
}

/// "3 of 6: front/back".
std::string shownBy(const CardEditing &editing)
{
    return std::to_string(editing.position()) + " of " + std::to_string(editing.count()) + ": " +
           editing.sides().front + "/" + editing.sides().back;
}

/// A command of the editor with a changed card in it.
template <typename Act>
auto inEditor(int topic, int position, const std::string &text, Act act)
{
    return [=](const fs::path &subject) -> Command {
        auto editing = openEditor(subject, topic, position);
        return [=] {
            act(*editing, typed(text));
            return shownBy(*editing);
        };
    };
}

std::function<void(const fs::path &)> savedInEditor(int topic, int position, const std::string &text)
{
    return [=](const fs::path &subject) { openEditor(subject, topic, position)->save(typed(text)); };
}

std::string shownBy(const FlashCardSession &session)
{
    return std::to_string(session.position()) + ": " + session.text(Side::Front) + session.text(Side::Back) +
           (session.isMarked() ? " marked" : "");
}

template <typename Act>
auto inSession(Act act)
{
    return [act](const fs::path &subject) -> Command {
        auto session = std::make_shared<FlashCardSession>(subject, studySettings(), drawSeededBy(1));
        (void)session->next();
        (void)session->next();
        return [act, session] { return act(*session); };
    };
}

std::string textOf(const ShownQuestion &question)
{
    std::string text = question.text;
    for (const std::string &choice : question.choices) {
        text += "|" + choice;
    }
    return text;
}

template <typename Act>
auto inTest(Act act)
{
    return [act](const fs::path &subject) -> Command {
        auto session = std::make_shared<TestSession>(subject, studySettings(), drawSeededBy(2));
        session->goTo(2);
        return [act, session] { return act(*session); };
    };
}

/// The subject as every test finds it after the session was opened: what a test has drawn is in the file.
void generated(const fs::path &subject)
{
    TestSession(subject, studySettings(), drawSeededBy(2)).close();
}

void noFile(const fs::path &subject)
{
    fs::remove(subject);
}

/// The subject after a program was killed that had written half of a change to it.
void crashed(const fs::path &subject)
{
    const fs::path written = subject.string() + ".written";
    {
        SQLite::Database engine(subject.string(), SQLite::OPEN_READWRITE);
        engine.exec("BEGIN; UPDATE FlashCards SET Front = Front || zeroblob(9000), Marked = 1");
        ASSERT_EQ(sqlite3_db_cacheflush(engine.getHandle()), SQLITE_OK);
        fs::copy_file(subject, written);
        fs::copy_file(subject.string() + "-journal", written.string() + "-journal");
    }
    for (const char *suffix : {"", "-journal"}) {
        fs::rename(written.string() + suffix, subject.string() + suffix);
    }
}

const std::vector<Operation> operations = {
    {"create a subject",
     noFile,
     onPath([](const fs::path &subject) {
         SubjectStore::create(subject);
         return "";
     }),
     {}},
    {"replace a subject by a new one",
     {},
     onPath([](const fs::path &subject) {
         SubjectStore::create(subject);
         return "";
     }),
     noFile},
    {"open",
     {},
     onPath([](const fs::path &subject) {
         SubjectStore store(subject);
         return "";
     }),
     {}},
    {"list topics",
     {},
     onPath([](const fs::path &subject) {
         std::string list;
         for (const TopicEntry &entry : listTopics(subject)) {
             list += std::to_string(entry.index) + entry.name + "\n";
         }
         return list;
     }),
     {}},
    {"read a topic",
     {},
     onPath([](const fs::path &subject) {
         const TopicContents topic = readTopic(subject, firstTopic);
         return topic.name + topic.notes + std::to_string(topic.cardCount);
     }),
     {}},
    {"count cards",
     {},
     onPath([](const fs::path &subject) { return std::to_string(countCards(subject, cardQueryCheck(studyQuery()))); }),
     {}},
    {"create a topic",
     {},
     onPath([](const fs::path &subject) { return std::to_string(createTopic(subject, "New")); }),
     {}},
    {"rename a topic",
     {},
     onPath([](const fs::path &subject) {
         renameTopic(subject, firstTopic, "Renamed");
         return "";
     }),
     {}},
    {"save notes",
     {},
     onPath([](const fs::path &subject) {
         saveNotes(subject, firstTopic, longText(9000, 'n'));
         return "";
     }),
     {}},
    {"delete a topic",
     {},
     onPath([](const fs::path &subject) {
         deleteTopic(subject, firstTopic);
         return "";
     }),
     [](const fs::path &subject) { SubjectStore(subject).execute(deleteTopicRow(firstTopic)); }},

    {"open a set",
     {},
     onSet([](OpenSet &open) {
         return std::to_string(open.store.openRecordSet(cardsShuffled(studyQuery())).recordCount());
     }),
     {}},
    {"read a row", {}, onSet([](OpenSet &open) { return open.cards.text(CardField::Front); }), {}},
    {"change a row",
     {},
     onSet([](OpenSet &open) {
         open.cards.edit();
         open.cards.setText(CardField::Front, longText(5000, 'y'));
         open.cards.update();
         return open.cards.text(CardField::Front);
     }),
     {}},
    {"add a row",
     {},
     onSet([](OpenSet &open) {
         open.cards.addNew();
         open.cards.setNumber(CardField::NIndex, firstTopic);
         open.cards.setText(CardField::Front, longText(5000, 'z'));
         open.cards.update();
         return std::to_string(open.cards.lastModified());
     }),
     {}},
    {"remove a row",
     {},
     onSet([](OpenSet &open) {
         open.cards.remove();
         return std::to_string(open.cards.recordCount());
     }),
     {}},
    {"execute",
     {},
     onSet([](OpenSet &open) { return std::to_string(open.store.execute(deleteTopicCards(firstTopic))); }),
     {}},
    {"commit a transaction",
     {},
     onSet([](OpenSet &open) {
         Transaction whole(open.store);
         CardSet cards = open.store.openRecordSet(cardsOfTopic(firstTopic));
         for (; !cards.isEndOfSet(); cards.moveNext()) {
             cards.edit();
             cards.setText(CardField::Back, cards.text(CardField::Front) + "!");
             cards.update();
         }
         addLongCards(open.store, firstTopic, 2, 3000);
         open.store.execute(deleteTopicRow(emptyTopic));
         whole.commit();
         return std::to_string(cards.recordCount());
     }),
     {},
     true},

    {"open the editor",
     {},
     onPath([](const fs::path &subject) { return shownBy(*openEditor(subject, firstTopic, 0)); }),
     {}},
    {"open the editor on an empty topic",
     {},
     onPath([](const fs::path &subject) { return shownBy(*openEditor(subject, emptyTopic, 0)); }),
     {}},
    {"first card",
     {},
     inEditor(firstTopic, 2, "x", [](CardEditing &editing, const EditedCard &card) { editing.first(card); }),
     {}},
    {"previous card",
     {},
     inEditor(firstTopic, 2, "x", [](CardEditing &editing, const EditedCard &card) { editing.previous(card); }),
     {}},
    {"next card",
     {},
     inEditor(firstTopic, 2, "x", [](CardEditing &editing, const EditedCard &card) { editing.next(card); }),
     {}},
    {"next card behind the last one",
     {},
     inEditor(singleTopic, 0, "x", [](CardEditing &editing, const EditedCard &card) { editing.next(card); }),
     savedInEditor(singleTopic, 0, "x")},
    {"last card",
     {},
     inEditor(firstTopic, 2, "x", [](CardEditing &editing, const EditedCard &card) { editing.last(card); }),
     {}},
    {"add a card",
     {},
     inEditor(firstTopic, 2, "x", [](CardEditing &editing, const EditedCard &card) { editing.add(card); }),
     savedInEditor(firstTopic, 2, "x")},
    {"delete a card",
     {},
     inEditor(firstTopic, 2, "x", [](CardEditing &editing, const EditedCard &) { editing.remove(); }),
     {}},
    {"delete the only card",
     {},
     inEditor(singleTopic, 0, "x", [](CardEditing &editing, const EditedCard &) { editing.remove(); }),
     [](const fs::path &subject) { SubjectStore(subject).execute(deleteTopicCards(singleTopic)); }},
    {"save a card",
     {},
     inEditor(firstTopic, 2, "x", [](CardEditing &editing, const EditedCard &card) { editing.save(card); }),
     {}},
    {"save a blank card",
     {},
     [](const fs::path &subject) -> Command {
         auto editing = openEditor(subject, firstTopic, 2);
         return [editing] {
             editing->save(typed(""));
             return std::to_string(editing->count()); // the card beside it is shown if it can be read
         };
     },
     {}},

    {"open a session",
     {},
     onPath([](const fs::path &subject) {
         const FlashCardSession session(subject, studySettings(), drawSeededBy(1));
         return std::to_string(session.count());
     }),
     {}},
    {"show a flash card", {}, inSession([](FlashCardSession &session) { return shownBy(session); }), {}},
    {"mark", {}, inSession([](FlashCardSession &session) { return std::to_string(session.toggleMark()); }), {}},
    {"shuffle",
     {},
     inSession(
         [](FlashCardSession &session) {
             return std::to_string(session.shuffle(drawSeededBy(3))) + std::to_string(session.position());
         }),
     {},
     true},

    {"open a test",
     {},
     onPath(
         [](const fs::path &subject) {
             const TestSession session(subject, studySettings(), drawSeededBy(2));
             return std::to_string(session.questionCount()) + std::to_string(session.correctAnswer(3));
         }),
     {},
     true},
    {"show a question", generated, inTest([](TestSession &session) { return textOf(session.shown(true)); }), {}},
    {"grade",
     generated,
     inTest(
         [](TestSession &session) {
             session.markCards(std::array{0, 1, 3});
             return std::to_string(session.current());
         }),
     {},
     true},

    {"open after a crash",
     crashed,
     onPath([](const fs::path &subject) { return std::to_string(listTopics(subject).size()); }),
     {}},
    {"save notes after a crash",
     crashed,
     onPath(
         [](const fs::path &subject) {
             saveNotes(subject, firstTopic, longText(9000, 'n'));
             return "";
         }),
     {}},
};

} // namespace

void makeSubject(const fs::path &subject, const SubjectSize &size)
{
    SubjectStore::create(subject);
    for (const char *name : {"Topic", "Other", "Empty", "Single"}) {
        (void)addTopic(subject, name, longText(size.textLength, 'n'));
    }
    SubjectStore store(subject);
    Transaction whole(store);
    addLongCards(store, firstTopic, size.cards, size.textLength);
    addLongCards(store, firstTopic + 1, 2, size.textLength);
    addLongCards(store, singleTopic, 1, size.textLength);
    whole.commit();
}

const std::vector<Operation> &allOperations()
{
    return operations;
}

std::string contentsOf(const fs::path &subject, const char *diskName)
{
    if (!fs::exists(subject)) {
        return "no file";
    }
    const SQLite::Database engine(subject.string(), SQLite::OPEN_READWRITE, 0, diskName);
    SQLite::Statement check(engine, "PRAGMA integrity_check");
    check.executeStep();
    std::string contents = check.getColumn(0).getString();
    check.reset();
    for (const char *table : {"Topics", "FlashCards", "sqlite_sequence"}) {
        SQLite::Statement select(engine, std::string("SELECT * FROM ") + table + " ORDER BY rowid");
        while (select.executeStep()) {
            contents += "\n";
            for (int column = 0; column < select.getColumnCount(); ++column) {
                contents += select.getColumn(column).getString() + ",";
            }
        }
    }
    return contents;
}
