#include "store/StoreError.h"
#include "store/SubjectReading.h"
#include "store/SubjectWriting.h"
#include "study/CardEditing.h"
#include "study/FlashCardSession.h"
#include "study/TestSession.h"
#include "tests/damage/FileBytes.h"
#include "tests/damage/LongText.h"
#include "tests/damage/SampleSubjects.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <optional>
#include <sqlite3.h>

using Reason = StoreError::Reason;

namespace {

constexpr int cardCount = 6;

std::optional<Reason> reasonOf(const std::function<void()> &action)
{
    try {
        action();
    } catch (const StoreError &failure) {
        return failure.reason();
    }
    return std::nullopt;
}

#define EXPECT_DAMAGED(action) EXPECT_EQ(reasonOf([&] { static_cast<void>(action); }), Reason::Damaged)

/// Three topics: two of six cards with long texts, one of long notes.
class DamagedPart : public testing::Test
{
protected:
    void SetUp() override
    {
        SubjectStore::create(subject);
        history = addTopic(subject, "History");
        rivers = addTopic(subject, "Rivers", textAcrossPages("the notes of Rivers"));
        lakes = addTopic(subject, "Lakes");
        addLongCards(history);
        addLongCards(lakes);
    }

    void addLongCards(int topic) const
    {
        SubjectStore store(subject);
        CardSet cards = store.openRecordSet(cardsOfTopic(topic));
        for (int card = 1; card <= cardCount; ++card) {
            cards.addNew();
            cards.setNumber(CardField::NIndex, topic);
            cards.setText(CardField::Front, textAcrossPages(sideOf(topic, card, "front")));
            cards.setText(CardField::Back, textAcrossPages(sideOf(topic, card, "back")));
            cards.update();
        }
    }
    static std::string sideOf(int topic, int card, const std::string &side)
    {
        return "topic " + std::to_string(topic) + " card " + std::to_string(card) + " " + side;
    }

    void damage(const std::string &middle) const { cutTextAfter(subject, middle); }
    void damageCard(int card, const std::string &side) const { damage(sideOf(history, card, side)); }

    [[nodiscard]] FlashCardSession sessionOf(int topic) const
    {
        return {subject, {.cardQuery = cardQuery(std::array{topic})}, [] { return 0.5F; }};
    }
    [[nodiscard]] TestSession testOf(int topic) const
    {
        return {subject, {.questionCount = cardCount, .cardQuery = cardQuery(std::array{topic})}, [this] {
                    draws = (draws + 7) % 32;
                    return static_cast<float>(draws) / 32;
                }};
    }
    [[nodiscard]] CardEditing editorOf(int topic) const
    {
        return {subject, cardsOfTopic(topic), topic, {"{\\rtf1}", "{\\rtf1}"}};
    }
    static EditedCard shownBy(const CardEditing &editing)
    {
        return {{editing.sides().front, "text"}, {editing.sides().back, "text"}};
    }

    TestFolder folder;
    std::filesystem::path subject = folder.file("Subject.crl");
    int history = 0;
    int rivers = 0;
    int lakes = 0;
    mutable int draws = 0;
};

TEST_F(DamagedPart, OfOneCardIsReportedWhereItIsReadAndTheSessionMovesOn)
{
    damageCard(3, "back");
    const std::string before = bytesOf(subject);
    FlashCardSession session = sessionOf(history);
    ASSERT_EQ(session.count(), cardCount);
    for (int card = 1; card <= cardCount; ++card) {
        EXPECT_NE(session.text(Side::Front).find(sideOf(history, card, "front")), std::string::npos);
        if (card == 3) {
            EXPECT_DAMAGED(session.text(Side::Back));
        } else {
            EXPECT_NE(session.text(Side::Back).find(sideOf(history, card, "back")), std::string::npos);
            EXPECT_FALSE(session.isMarked());
        }
        EXPECT_EQ(session.next(), card < cardCount);
    }
    EXPECT_TRUE(session.previous());
    EXPECT_TRUE(bytesOf(subject) == before);
}

TEST_F(DamagedPart, OfOneCardLeavesTheOthersToBeMarkedAndCannotBeMarkedItself)
{
    damageCard(2, "front");
    FlashCardSession session = sessionOf(history);
    session.toggleMark();
    EXPECT_TRUE(session.next());
    const std::string before = bytesOf(subject);
    EXPECT_DAMAGED((session.toggleMark(), 0));
    EXPECT_TRUE(bytesOf(subject) == before);
    EXPECT_TRUE(session.next());
    session.toggleMark();
    EXPECT_TRUE(session.isMarked());
}

TEST_F(DamagedPart, OfOneCardIsPassedOverByTheEditorBothWays)
{
    damageCard(3, "front");
    damageCard(4, "back");
    CardEditing editing = editorOf(history);
    editing.next(shownBy(editing));
    ASSERT_EQ(editing.position(), 1);
    EXPECT_DAMAGED(editing.next(shownBy(editing)));
    EXPECT_EQ(editing.position(), 4);
    EXPECT_NE(editing.sides().front.find(sideOf(history, 5, "front")), std::string::npos);
    editing.next({{rtfOf("changed"), "changed"}, {rtfOf("too"), "too"}});
    EXPECT_EQ(editing.position(), 5);
    editing.previous(shownBy(editing));
    EXPECT_EQ(editing.sides().front, rtfOf("changed"));
    EXPECT_DAMAGED(editing.previous(shownBy(editing)));
    EXPECT_EQ(editing.position(), 1);
    EXPECT_EQ(editing.count(), cardCount);
}

TEST_F(DamagedPart, AtBothEndsOfATopicLeavesTheEditorToTheCardsBetween)
{
    damageCard(1, "front");
    damageCard(cardCount, "front");
    CardEditing editing = editorOf(history);
    EXPECT_EQ(editing.position(), 1);
    EXPECT_DAMAGED(editing.last(shownBy(editing)));
    EXPECT_EQ(editing.position(), cardCount - 2);
    EXPECT_DAMAGED(editing.next(shownBy(editing)));
    EXPECT_EQ(editing.position(), cardCount - 2);
    EXPECT_DAMAGED(editing.first(shownBy(editing)));
    EXPECT_EQ(editing.position(), 1);
    EXPECT_DAMAGED(editing.previous(shownBy(editing)));
    EXPECT_EQ(editing.position(), 1);
    EXPECT_EQ(editing.add(shownBy(editing)), CardEditing::Outcome::Added);
}

TEST_F(DamagedPart, OfEveryCardIsReportedWhenTheEditorOpens)
{
    for (int card = 1; card <= cardCount; ++card) {
        damageCard(card, "back");
    }
    EXPECT_DAMAGED(editorOf(history));
}

TEST_F(DamagedPart, OfOneCardRefusesATestOfItsTopicWholeAndNoOther)
{
    damageCard(4, "back");
    const std::string before = bytesOf(subject);
    EXPECT_DAMAGED(testOf(history));
    EXPECT_TRUE(bytesOf(subject) == before);
    TestSession test = testOf(lakes);
    for (int question = 0; question < test.questionCount(); ++question) {
        test.goTo(question);
        EXPECT_FALSE(test.shown(false).text.empty());
    }
}

TEST_F(DamagedPart, OfOneQuestionIsReportedAndTheTestGoesOn)
{
    TestSession test = testOf(history);
    damageCard(3, "front");
    damageCard(3, "back");
    int damaged = 0;
    int shown = 0;
    for (int question = 0; question < test.questionCount(); ++question) {
        test.goTo(question);
        const auto reason = reasonOf([&] { static_cast<void>(test.shown(false)); });
        ++(reason ? damaged : shown);
        EXPECT_EQ(reason.value_or(Reason::Damaged), Reason::Damaged);
        EXPECT_EQ(test.current(), question);
    }
    EXPECT_GT(damaged, 0);
    EXPECT_GT(shown, 0);
}

TEST_F(DamagedPart, OfOneTopicsNotesLeavesAllTheRestReadable)
{
    damage("the notes of Rivers");
    const std::string before = bytesOf(subject);
    std::string names;
    for (const TopicEntry &topic : listTopics(subject)) {
        names += topic.name + ".";
    }
    EXPECT_EQ(names, "History.Rivers.Lakes.");
    EXPECT_DAMAGED(readTopic(subject, rivers));
    EXPECT_EQ(readTopic(subject, history).cardCount, cardCount);
    EXPECT_EQ(readTopic(subject, lakes).notes, rtfOf("Lakes notes..."));
    EXPECT_TRUE(bytesOf(subject) == before);
    saveNotes(subject, lakes, rtfOf("new"));
    EXPECT_EQ(readTopic(subject, lakes).notes, rtfOf("new"));
}

TEST_F(DamagedPart, OfACardIsCountedWithItsTopic)
{
    damageCard(4, "front");
    EXPECT_EQ(readTopic(subject, history).cardCount, cardCount);
    EXPECT_EQ(countCards(subject, cardQueryCheck(cardQuery(std::array{history, lakes}))), 2 * cardCount);
}

/// A journal whose header gives the file a length that it never had.
class DamagedJournal : public testing::TestWithParam<std::string>
{
};

TEST_P(DamagedJournal, NeitherCutsNorLengthensTheFile)
{
    const auto sample = std::ranges::find_if(
        sampleSubjects(), [](const SampleSubject &each) { return std::string(each.sideSuffix) == "-journal"; });
    ASSERT_NE(sample, sampleSubjects().end());
    const TestFolder folder;
    const std::filesystem::path subject = folder.file("Subject.crl");
    const std::filesystem::path journal = folder.file("Subject.crl-journal");
    const std::string spoiled = std::string(sample->sideBytes).replace(16, 4, GetParam());
    writeBytes(subject, sample->bytes);
    writeBytes(journal, spoiled);
    EXPECT_DAMAGED(listTopics(subject));
    EXPECT_TRUE(bytesOf(subject) == sample->bytes);
    EXPECT_TRUE(bytesOf(journal) == spoiled);

    writeBytes(journal, sample->sideBytes);
    EXPECT_FALSE(listTopics(subject).empty()) << "the sound journal is not played back";
    EXPECT_FALSE(std::filesystem::exists(journal));
}

INSTANTIATE_TEST_SUITE_P(Lengths, DamagedJournal,
                         testing::Values(std::string("\0\0\0\1", 4), std::string("\0\0\0\7", 4),
                                         std::string("\0\0\x7f\x01", 4), std::string("\x7f\xff\xff\xff", 4)));

TEST(JournalInUse, IsNobodyElsesToJudge)
{
    const TestFolder folder;
    const std::filesystem::path subject = folder.file("Subject.crl");
    const std::filesystem::path journal = folder.file("Subject.crl-journal");
    writeBytes(subject, sampleSubjects().front().bytes);
    SQLite::Database other(subject.string(), SQLite::OPEN_READWRITE);
    other.exec("BEGIN; UPDATE FlashCards SET Marked = 1");
    ASSERT_EQ(sqlite3_db_cacheflush(other.getHandle()), SQLITE_OK);
    const std::string inUse = bytesOf(journal);
    writeBytes(journal, std::string(inUse).replace(16, 4, "\x7f\xff\xff\xff"));
    EXPECT_EQ(reasonOf([&] { static_cast<void>(listTopics(subject)); }), Reason::Locked);
    writeBytes(journal, inUse);
    other.exec("COMMIT");
    EXPECT_FALSE(listTopics(subject).empty());
}

/// One byte of the file's header, and what it makes of the file.
struct HeaderByte
{
    const char *name;
    std::size_t at;
    char value;
    Reason reason;
};

class DamagedHeader : public DamagedPart, public testing::WithParamInterface<HeaderByte>
{
};

TEST_P(DamagedHeader, IsReportedForWhatItIs)
{
    std::string bytes = bytesOf(subject);
    bytes.at(GetParam().at) = GetParam().value;
    writeBytes(subject, bytes);
    EXPECT_EQ(reasonOf([&] { static_cast<void>(listTopics(subject)); }), GetParam().reason);
    EXPECT_EQ(reasonOf([&] { renameTopic(subject, history, "Renamed"); }), GetParam().reason);
    EXPECT_TRUE(bytesOf(subject) == bytes);
}

INSTANTIATE_TEST_SUITE_P(Bytes, DamagedHeader,
                         testing::Values(HeaderByte{"Magic", 5, 'X', Reason::NotASubject},
                                         HeaderByte{"FormatForWriting", 18, 3, Reason::Damaged},
                                         HeaderByte{"FormatForReading", 19, 3, Reason::NotASubject},
                                         HeaderByte{"FormatOfTheSchema", 47, 9, Reason::Damaged},
                                         HeaderByte{"VersionOfTheSubject", 63, 9, Reason::TooNew}),
                         [](const auto &row) { return std::string(row.param.name); });

} // namespace
