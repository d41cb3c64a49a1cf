#include "store/StoreError.h"
#include "store/SubjectReading.h"
#include "study/StudyWizard.h"
#include "tests/support/TestSubject.h"

#include <array>
#include <gtest/gtest.h>
#include <numeric>
#include <vector>

namespace {

class StudyWizard : public testing::Test
{
protected:
    void SetUp() override
    {
        SubjectStore::create(subject);
        small = addTopic(subject, "Small");
        addCards(subject, small, 4);
        large = addTopic(subject, "Large");
        addCards(subject, large, 12);
        empty = addTopic(subject, "Empty");
        beginStudySetup(settings);
    }

    auto confirm(const WizardChoices &choices) { return confirmStudySetup(subject, choices, settings); }

    TestFolder folder;
    std::filesystem::path subject = folder.file("subject.crl");
    int small = 0;
    int large = 0;
    int empty = 0;
    StudySettings settings;
};

TEST_F(StudyWizard, OpensCancelledAndOnFlashCardsWhateverCameBefore)
{
    settings = {.cancelled = false, .style = StudyStyle::Test, .questionCount = 7};
    beginStudySetup(settings);
    EXPECT_TRUE(settings.cancelled);
    EXPECT_EQ(settings.style, StudyStyle::FlashCards);
}

TEST_F(StudyWizard, OpensWithTheSameChoicesEveryTime)
{
    const WizardChoices opened;
    EXPECT_EQ(opened.style, StudyStyle::FlashCards);
    EXPECT_EQ(opened.viewOrder, ViewOrder::front);
    EXPECT_FALSE(opened.flipperOn);
    EXPECT_EQ(opened.flipperSeconds, 5);
    EXPECT_EQ(opened.questionCount, 20);
    EXPECT_EQ(opened.multipleChoicePercent, 60);
    EXPECT_FALSE(opened.timerOn);
    EXPECT_EQ(opened.timerMinutes, 20);
    EXPECT_FALSE(opened.withMarked);
    EXPECT_TRUE(opened.topics.empty());
}

TEST_F(StudyWizard, OffersTheTimesAndNumbersThatAStudyTakes)
{
    const auto reach = [](const SliderRange &range) { return std::array{range.least, range.start, range.most}; };
    EXPECT_EQ(reach(flipperSeconds), (std::array{1, 5, 20}));
    EXPECT_EQ(reach(questionCounts), (std::array{5, 20, 50}));
    EXPECT_EQ(reach(choicePercents), (std::array{0, 60, 100}));
    EXPECT_EQ(reach(timerMinutes), (std::array{2, 20, 50}));
}

TEST_F(StudyWizard, NeverShownLeavesTheSettingsCancelledAndOtherwiseAsItOpens)
{
    const StudySettings begun;
    EXPECT_TRUE(begun.cancelled);
    EXPECT_EQ(begun.style, StudyStyle::FlashCards);
    EXPECT_EQ(begun.timeSetting, 0);
    EXPECT_EQ(begun.viewOrder, ViewOrder::front);
    EXPECT_EQ(begun.questionCount, 20);
    EXPECT_EQ(begun.multipleChoicePercent, 60);
}

TEST_F(StudyWizard, RefusesWhenNothingIsChosen)
{
    EXPECT_EQ(confirm({}), SelectionRefusal::NothingChosen);
    EXPECT_TRUE(settings.cancelled);
}

TEST_F(StudyWizard, RefusesATopicWithoutCards)
{
    EXPECT_EQ(confirm({.topics = {empty}}), SelectionRefusal::NoCards);
    EXPECT_TRUE(settings.cancelled);
}

TEST_F(StudyWizard, RefusesFourCardsForFlashCardsAndForATest)
{
    EXPECT_EQ(confirm({.style = StudyStyle::FlashCards, .topics = {small}}), SelectionRefusal::UnderFiveCards);
    EXPECT_EQ(confirm({.style = StudyStyle::Test, .topics = {small}}), SelectionRefusal::UnderFiveCards);
    EXPECT_TRUE(settings.cancelled);
}

TEST_F(StudyWizard, RefusesMarkedCardsWhereNoneIsMarked)
{
    EXPECT_EQ(confirm({.withMarked = true}), SelectionRefusal::NoCards);
    EXPECT_EQ(settings.cardQuery, "Select * FROM Flashcards WHERE Marked = Yes");
}

TEST_F(StudyWizard, TakesFiveCards)
{
    addCards(subject, small, 1);
    EXPECT_EQ(confirm({.topics = {small}}), std::nullopt);
    EXPECT_FALSE(settings.cancelled);
}

TEST_F(StudyWizard, LowersTheNumberOfQuestionsToTheNumberOfCards)
{
    EXPECT_EQ(confirm({.style = StudyStyle::Test, .topics = {large}, .questionCount = 20}), std::nullopt);
    EXPECT_EQ(settings.questionCount, 12);
}

TEST_F(StudyWizard, KeepsANumberOfQuestionsThatTheCardsAllow)
{
    EXPECT_EQ(confirm({.style = StudyStyle::Test, .topics = {large}, .questionCount = 12}), std::nullopt);
    EXPECT_EQ(settings.questionCount, 12);
    EXPECT_EQ(confirm({.style = StudyStyle::Test, .topics = {large}, .questionCount = 5}), std::nullopt);
    EXPECT_EQ(settings.questionCount, 5);
}

TEST_F(StudyWizard, CountsACardOnceThatIsBothInATopicAndMarked)
{
    addCards(subject, large, 3, true);
    EXPECT_EQ(confirm({.topics = {large}, .withMarked = true, .questionCount = 50}), std::nullopt);
    EXPECT_EQ(settings.questionCount, 15);
}

TEST_F(StudyWizard, AddsTheMarkedCardsOfEveryTopic)
{
    addCards(subject, small, 2, true);
    EXPECT_EQ(confirm({.topics = {large}, .withMarked = true, .questionCount = 50}), std::nullopt);
    EXPECT_EQ(settings.questionCount, 14);
}

TEST_F(StudyWizard, TakesThousandsOfTopics)
{
    std::vector<int> topics(5'000);
    std::iota(topics.begin(), topics.end(), small);
    EXPECT_EQ(confirm({.style = StudyStyle::Test, .topics = topics, .withMarked = true}), std::nullopt);
    EXPECT_EQ(settings.questionCount, 16);
}

TEST_F(StudyWizard, ClosesItsQueryWithoutASemicolon)
{
    EXPECT_EQ(confirm({.topics = {small, large}}), std::nullopt);
    EXPECT_EQ(settings.cardQuery, "SELECT * FROM Flashcards WHERE NIndex = " + std::to_string(small) +
                                      " OR NIndex = " + std::to_string(large));
}

TEST_F(StudyWizard, StoresNoTimeUnlessTheBoxOfItsStyleIsChecked)
{
    struct Row
    {
        StudyStyle style;
        bool flipperOn, timerOn;
        int expected;
    };
    for (const Row &row : {Row{StudyStyle::FlashCards, false, false, 0}, Row{StudyStyle::FlashCards, true, false, 12},
                           Row{StudyStyle::FlashCards, false, true, 0}, Row{StudyStyle::Test, false, false, 0},
                           Row{StudyStyle::Test, true, false, 0}, Row{StudyStyle::Test, false, true, 30}}) {
        EXPECT_EQ(confirm({.style = row.style,
                           .topics = {large},
                           .flipperOn = row.flipperOn,
                           .flipperSeconds = 12,
                           .timerOn = row.timerOn,
                           .timerMinutes = 30}),
                  std::nullopt);
        EXPECT_EQ(settings.timeSetting, row.expected);
    }
}

TEST_F(StudyWizard, HandsOverTheOtherChoicesForEitherStyle)
{
    for (const StudyStyle style : {StudyStyle::FlashCards, StudyStyle::Test}) {
        EXPECT_EQ(confirm({.style = style,
                           .topics = {large},
                           .viewOrder = ViewOrder::random,
                           .questionCount = 9,
                           .multipleChoicePercent = 35}),
                  std::nullopt);
        EXPECT_EQ(settings.style, style);
        EXPECT_EQ(settings.viewOrder, 3);
        EXPECT_EQ(settings.questionCount, 9);
        EXPECT_EQ(settings.multipleChoicePercent, 35);
    }
}

TEST_F(StudyWizard, StaysCancelledWhenTheSubjectCannotBeRead)
{
    std::filesystem::remove(subject);
    EXPECT_THROW((void)confirm({.topics = {large}}), StoreError);
    EXPECT_TRUE(settings.cancelled);
}

TEST(SubjectReading, ListsTheTopicsInTheOrderTheyWereMade)
{
    const TestFolder folder;
    const auto subject = folder.file("s.crl");
    SubjectStore::create(subject);
    EXPECT_TRUE(listTopics(subject).empty());
    const int second = addTopic(subject, "Zebra");
    const int third = addTopic(subject, "Ant");
    const auto topics = listTopics(subject);
    ASSERT_EQ(topics.size(), 2U);
    EXPECT_EQ(topics[0].index, second);
    EXPECT_EQ(topics[0].name, "Zebra");
    EXPECT_EQ(topics[1].index, third);
}

TEST(SubjectReading, ReadsATopicWithItsNumberOfCards)
{
    const TestFolder folder;
    const auto subject = folder.file("s.crl");
    SubjectStore::create(subject);
    const int topic = addTopic(subject, "A{b}\\c", "{\\rtf1 notes}");
    EXPECT_EQ(readTopic(subject, topic).cardCount, 0);
    addCards(subject, topic, 3);
    const TopicContents read = readTopic(subject, topic);
    EXPECT_EQ(read.name, "A{b}\\c");
    EXPECT_EQ(read.notes, "{\\rtf1 notes}");
    EXPECT_EQ(read.cardCount, 3);
}

TEST(SubjectReading, SaysThatATopicWasDeletedMeanwhile)
{
    const TestFolder folder;
    const auto subject = folder.file("s.crl");
    SubjectStore::create(subject);
    try {
        (void)readTopic(subject, 7);
        FAIL() << "a topic that does not exist was read";
    } catch (const StoreError &error) {
        EXPECT_EQ(error.reason(), StoreError::Reason::RowGone);
    }
}

} // namespace
