#include "SampleReading.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextBlock>

#include <map>
#include <set>

namespace {

const std::string tourName = "Using Cramlet";
const std::string statesName = "States and Capitals";

class EverySample : public testing::TestWithParam<std::string>
{
protected:
    FreshSample sample{GetParam()};
    std::vector<Topic> topics = sample.topics();
};

INSTANTIATE_TEST_SUITE_P(Of, EverySample, testing::Values(tourName, statesName), [](const auto &sample) {
    return QString::fromStdString(sample.param).remove(QLatin1Char(' ')).toStdString();
});

TEST_P(EverySample, LiesBesideTheProgramInTheBuildTree)
{
    EXPECT_FALSE(readSubject(QString::fromStdString(SAMPLE_SUBJECTS "/" + GetParam() + ".crl")).empty());
}

TEST_P(EverySample, HasNotesWorthReadingInEveryTopic)
{
    for (const Topic &topic : topics) {
        EXPECT_GE(plainText(topic.notes).trimmed().size(), 200) << topic.name;
    }
}

TEST_P(EverySample, HasEnoughCardsInEveryTopicToStudyItAlone)
{
    for (const Topic &topic : topics) {
        EXPECT_GE(topic.cards.size(), 5U) << topic.name;
    }
}

TEST_P(EverySample, HasTextOnBothSidesOfEveryCard)
{
    for (const Topic &topic : topics) {
        for (const Card &card : topic.cards) {
            EXPECT_FALSE(plainText(card.front).trimmed().isEmpty()) << topic.name;
            EXPECT_FALSE(plainText(card.back).trimmed().isEmpty()) << plainText(card.front).toStdString();
        }
    }
}

// Else a wrong choice of a test could be right as well.
TEST_P(EverySample, HasNoSideTwice)
{
    std::set<QString> fronts;
    std::set<QString> backs;
    for (const Topic &topic : topics) {
        for (const Card &card : topic.cards) {
            EXPECT_TRUE(fronts.insert(plainText(card.front)).second) << plainText(card.front).toStdString();
            EXPECT_TRUE(backs.insert(plainText(card.back)).second) << plainText(card.back).toStdString();
        }
    }
}

TEST_P(EverySample, UsesBoldColorAndBulletsInItsNotes)
{
    for (const Topic &topic : topics) {
        const auto notes = shown(topic.notes);
        EXPECT_GT(countFragments(*notes, isBold), 0) << topic.name;
        EXPECT_GT(countFragments(*notes, isColored), 0) << topic.name;
        EXPECT_GT(countBullets(*notes), 0) << topic.name;
    }
}

TEST_P(EverySample, UsesBoldColorAndBulletsOnItsCards)
{
    int bold = 0;
    int colored = 0;
    int bullets = 0;
    for (const Topic &topic : topics) {
        for (const Card &card : topic.cards) {
            const auto back = shown(card.back);
            bold += countFragments(*back, isBold);
            colored += countFragments(*back, isColored);
            bullets += countBullets(*back);
        }
    }
    EXPECT_GT(bold, 0);
    EXPECT_GT(colored, 0);
    EXPECT_GT(bullets, 0);
}

TEST_P(EverySample, LeavesTextWithoutAColorToTheWindow)
{
    const auto isAutomatic = [](const QTextCharFormat &format) { return !isColored(format); };
    for (const Topic &topic : topics) {
        EXPECT_GT(countFragments(*shown(topic.notes), isAutomatic), 0) << topic.name;
        for (const Card &card : topic.cards) {
            EXPECT_EQ(countFragments(*shown(card.front), isColored), 0) << plainText(card.front).toStdString();
        }
    }
}

TEST_P(EverySample, AsksForComicSansMsByName)
{
    forEachText(topics, [](const std::string &rtf) {
        EXPECT_EQ(countFragments(*shown(rtf),
                                 [](const QTextCharFormat &format) {
                                     return format.font().family() != QLatin1String("Comic Sans MS");
                                 }),
                  0)
            << rtf;
    });
}

TEST_P(EverySample, HasNoBlanksAtTheEndsOfParagraphs)
{
    forEachText(topics, [](const std::string &rtf) {
        for (const QString &paragraph : plainText(rtf).split(QLatin1Char('\n'))) {
            EXPECT_EQ(paragraph.toStdString(), paragraph.trimmed().toStdString());
        }
    });
}

TEST_P(EverySample, HasCardsToReadFromAnArmsLength)
{
    for (const Topic &topic : topics) {
        for (const Card &card : topic.cards) {
            for (const std::string &side : {card.front, card.back}) {
                const auto document = shown(side);
                const QTextBlock first = document->firstBlock();
                EXPECT_EQ(first.blockFormat().alignment(), Qt::AlignHCenter) << side;
                EXPECT_EQ(first.begin().fragment().charFormat().fontPointSize(), 20) << side;
            }
        }
    }
}

TEST_P(EverySample, IsTheSameBytesForTheSameSource)
{
    EXPECT_EQ(sample.bytes(), FreshSample(GetParam()).bytes());
}

TEST(UsingCramlet, ToursTheProgramInAtLeastSixTopicsAndThirtyCards)
{
    const std::vector<Topic> topics = FreshSample(tourName).topics();
    std::size_t cards = 0;
    for (const Topic &topic : topics) {
        cards += topic.cards.size();
    }
    EXPECT_GE(topics.size(), 6U);
    EXPECT_GE(cards, 30U);
}

const std::map<QString, QString> capitals{
    {QStringLiteral("Alabama"), QStringLiteral("Montgomery")},
    {QStringLiteral("Alaska"), QStringLiteral("Juneau")},
    {QStringLiteral("Arizona"), QStringLiteral("Phoenix")},
    {QStringLiteral("Arkansas"), QStringLiteral("Little Rock")},
    {QStringLiteral("California"), QStringLiteral("Sacramento")},
    {QStringLiteral("Colorado"), QStringLiteral("Denver")},
    {QStringLiteral("Connecticut"), QStringLiteral("Hartford")},
    {QStringLiteral("Delaware"), QStringLiteral("Dover")},
    {QStringLiteral("Florida"), QStringLiteral("Tallahassee")},
    {QStringLiteral("Georgia"), QStringLiteral("Atlanta")},
    {QStringLiteral("Hawaii"), QStringLiteral("Honolulu")},
    {QStringLiteral("Idaho"), QStringLiteral("Boise")},
    {QStringLiteral("Illinois"), QStringLiteral("Springfield")},
    {QStringLiteral("Indiana"), QStringLiteral("Indianapolis")},
    {QStringLiteral("Iowa"), QStringLiteral("Des Moines")},
    {QStringLiteral("Kansas"), QStringLiteral("Topeka")},
    {QStringLiteral("Kentucky"), QStringLiteral("Frankfort")},
    {QStringLiteral("Louisiana"), QStringLiteral("Baton Rouge")},
    {QStringLiteral("Maine"), QStringLiteral("Augusta")},
    {QStringLiteral("Maryland"), QStringLiteral("Annapolis")},
    {QStringLiteral("Massachusetts"), QStringLiteral("Boston")},
    {QStringLiteral("Michigan"), QStringLiteral("Lansing")},
    {QStringLiteral("Minnesota"), QStringLiteral("Saint Paul")},
    {QStringLiteral("Mississippi"), QStringLiteral("Jackson")},
    {QStringLiteral("Missouri"), QStringLiteral("Jefferson City")},
    {QStringLiteral("Montana"), QStringLiteral("Helena")},
    {QStringLiteral("Nebraska"), QStringLiteral("Lincoln")},
    {QStringLiteral("Nevada"), QStringLiteral("Carson City")},
    {QStringLiteral("New Hampshire"), QStringLiteral("Concord")},
    {QStringLiteral("New Jersey"), QStringLiteral("Trenton")},
    {QStringLiteral("New Mexico"), QStringLiteral("Santa Fe")},
    {QStringLiteral("New York"), QStringLiteral("Albany")},
    {QStringLiteral("North Carolina"), QStringLiteral("Raleigh")},
    {QStringLiteral("North Dakota"), QStringLiteral("Bismarck")},
    {QStringLiteral("Ohio"), QStringLiteral("Columbus")},
    {QStringLiteral("Oklahoma"), QStringLiteral("Oklahoma City")},
    {QStringLiteral("Oregon"), QStringLiteral("Salem")},
    {QStringLiteral("Pennsylvania"), QStringLiteral("Harrisburg")},
    {QStringLiteral("Rhode Island"), QStringLiteral("Providence")},
    {QStringLiteral("South Carolina"), QStringLiteral("Columbia")},
    {QStringLiteral("South Dakota"), QStringLiteral("Pierre")},
    {QStringLiteral("Tennessee"), QStringLiteral("Nashville")},
    {QStringLiteral("Texas"), QStringLiteral("Austin")},
    {QStringLiteral("Utah"), QStringLiteral("Salt Lake City")},
    {QStringLiteral("Vermont"), QStringLiteral("Montpelier")},
    {QStringLiteral("Virginia"), QStringLiteral("Richmond")},
    {QStringLiteral("Washington"), QStringLiteral("Olympia")},
    {QStringLiteral("West Virginia"), QStringLiteral("Charleston")},
    {QStringLiteral("Wisconsin"), QStringLiteral("Madison")},
    {QStringLiteral("Wyoming"), QStringLiteral("Cheyenne")},
};

/// The state that a front asks about: the longest name in it, for Virginia is in West Virginia.
QString stateAskedFor(const QString &front)
{
    QString found;
    for (const auto &[state, capital] : capitals) {
        const QRegularExpression whole(QStringLiteral("\\b%1\\b").arg(state));
        if (front.contains(whole) && state.size() > found.size()) {
            found = state;
        }
    }
    return found;
}

TEST(StatesAndCapitals, AsksForEachOfTheFiftyStatesOnceAndKnowsItsCapital)
{
    ASSERT_EQ(capitals.size(), 50U);
    std::set<QString> asked;
    for (const Topic &topic : FreshSample(statesName).topics()) {
        for (const Card &card : topic.cards) {
            const QString front = plainText(card.front);
            const QString state = stateAskedFor(front);
            ASSERT_FALSE(state.isEmpty()) << front.toStdString();
            EXPECT_TRUE(asked.insert(state).second) << state.toStdString();
            EXPECT_TRUE(front.endsWith(QLatin1Char('?'))) << front.toStdString();
            EXPECT_EQ(shown(card.back)->firstBlock().text(), capitals.at(state)) << state.toStdString();
        }
    }
    EXPECT_EQ(asked.size(), 50U);
}

TEST(StatesAndCapitals, GroupsTheStatesIntoAtLeastFourTopics)
{
    EXPECT_GE(FreshSample(statesName).topics().size(), 4U);
}

} // namespace
