#include "platform/rtf/RtfReader.h"
#include "store/Schema.h"
#include "store/Statements.h"
#include "store/SubjectStore.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>

#include <array>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace {

struct Card
{
    std::string front;
    std::string back;
};

struct Topic
{
    std::string name;
    std::string notes;
    std::vector<Card> cards;
};

struct Outcome
{
    int exitCode;
    QString complaint;
};

Outcome makeSample(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(MAKESAMPLES), arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit) {
        return {.exitCode = -1, .complaint = process.errorString()};
    }
    return {.exitCode = process.exitCode(), .complaint = QString::fromUtf8(process.readAllStandardError())};
}

std::filesystem::path nativePath(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

std::vector<Card> readCards(SubjectStore &store, int topic)
{
    std::vector<Card> cards;
    CardSet set = store.openRecordSet(cardsOfTopic(topic));
    for (; !set.isEndOfSet(); set.moveNext()) {
        cards.push_back({.front = set.text(CardField::Front), .back = set.text(CardField::Back)});
    }
    return cards;
}

std::vector<Topic> readSubject(const QString &path)
{
    SubjectStore store(nativePath(path));
    std::vector<Topic> topics;
    TopicSet set = store.openRecordSet(allTopics());
    for (; !set.isEndOfSet(); set.moveNext()) {
        topics.push_back({.name = set.text(TopicField::Name),
                          .notes = set.text(TopicField::Notes),
                          .cards = readCards(store, set.number(TopicField::Index))});
    }
    return topics;
}

/// The text as the program would show it.
std::unique_ptr<QTextDocument> shown(const std::string &rtf)
{
    auto document = std::make_unique<QTextDocument>();
    document->setDefaultFont(QFont(QStringLiteral("Sans Serif"), 7)); // unlike anything that the samples use
    EXPECT_FALSE(readRtf(rtf, *document).has_value()) << rtf;
    return document;
}

QString plainText(const std::string &rtf)
{
    return shown(rtf)->toPlainText();
}

int countFragments(const QTextDocument &document, const std::function<bool(const QTextCharFormat &)> &matches)
{
    int count = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment) {
            if (matches(fragment.fragment().charFormat())) {
                ++count;
            }
        }
    }
    return count;
}

bool isColored(const QTextCharFormat &format)
{
    return format.foreground().style() != Qt::NoBrush;
}

bool isBold(const QTextCharFormat &format)
{
    return format.fontWeight() > QFont::Normal;
}

int countBullets(const QTextDocument &document)
{
    int count = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.textList() && block.textList()->format().style() == QTextListFormat::ListDisc) {
            ++count;
        }
    }
    return count;
}

void forEachText(const std::vector<Topic> &topics, const std::function<void(const std::string &)> &visit)
{
    for (const Topic &topic : topics) {
        visit(topic.notes);
        for (const Card &card : topic.cards) {
            visit(card.front);
            visit(card.back);
        }
    }
}

/// A sample made from its source for this test, so that studying the one in the
/// build tree spoils nothing.
class FreshSample
{
public:
    explicit FreshSample(const std::string &name)
        : m_path(m_folder.filePath(QString::fromStdString(name + ".crl")))
    {
        const QString source = QString::fromStdString(SAMPLE_SOURCES "/" + name + ".xml");
        const Outcome outcome = makeSample({source, m_path});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.complaint.toStdString();
    }

    [[nodiscard]] std::vector<Topic> topics() const { return readSubject(m_path); }
    [[nodiscard]] QByteArray bytes() const
    {
        QFile file(m_path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

private:
    QTemporaryDir m_folder;
    QString m_path;
};

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

void writeFile(const QString &path, const QByteArray &contents)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(contents), contents.size());
}

const QByteArray goodSource = "<subject><topic name='T'><notes>n</notes>"
                              "<card><front>f</front><back>b</back></card></topic></subject>";

/// A folder with a source in it, and the place for its subject.
class MakeSamples : public testing::Test
{
protected:
    Outcome make(const QByteArray &contents)
    {
        writeFile(source, contents);
        return makeSample({source, subject});
    }
    [[nodiscard]] QStringList files() const { return QDir(folder.path()).entryList(QDir::Files); }

    QTemporaryDir folder;
    QString source = folder.filePath(QStringLiteral("source.xml"));
    QString subject = folder.filePath(QStringLiteral("my subject.crl"));
};

TEST_F(MakeSamples, LeavesTheSubjectAndNoOtherFile)
{
    const Outcome outcome = make(goodSource);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.complaint.toStdString();
    EXPECT_EQ(outcome.complaint.toStdString(), "");
    EXPECT_EQ(files(), (QStringList{QStringLiteral("my subject.crl"), QStringLiteral("source.xml")}));
}

TEST_F(MakeSamples, KeepsTopicsAndCardsInTheOrderOfTheSource)
{
    make("<subject><topic name='Z &amp; \xc3\xa9'><notes>first</notes>"
         "<card><front>1</front><back>one</back></card><card><front>2</front><back>two</back></card></topic>"
         "<topic name='A'><notes>second</notes><card><front>3</front><back>three</back></card></topic></subject>");
    const std::vector<Topic> topics = readSubject(subject);
    ASSERT_EQ(topics.size(), 2U);
    EXPECT_EQ(topics[0].name, "Z & \xc3\xa9");
    EXPECT_EQ(plainText(topics[0].notes).toStdString(), "first");
    ASSERT_EQ(topics[0].cards.size(), 2U);
    EXPECT_EQ(plainText(topics[0].cards[0].front).toStdString(), "1");
    EXPECT_EQ(plainText(topics[0].cards[1].back).toStdString(), "two");
    EXPECT_EQ(topics[1].name, "A");
    ASSERT_EQ(topics[1].cards.size(), 1U);
}

TEST_F(MakeSamples, GivesATextTheFormattingOfItsSource)
{
    make("<subject><topic name='T'><notes><p align='right'><i>slanted</i></p><p><u>a line below</u></p>"
         "<p align='center'><span style='color:#b02418; font-size:14pt'><b>red &lt;heading&gt;</b></span></p>"
         "<ul><li>item</li></ul></notes><card><front>f</front><back>b</back></card></topic></subject>");
    const std::vector<Topic> topics = readSubject(subject);
    ASSERT_EQ(topics.size(), 1U);
    const auto notes = shown(topics[0].notes);
    ASSERT_EQ(notes->blockCount(), 4);
    const auto format = [&notes](int block) { return notes->findBlockByNumber(block).begin().fragment().charFormat(); };
    const auto alignment = [&notes](int block) {
        return notes->findBlockByNumber(block).blockFormat().alignment() & ~Qt::AlignAbsolute;
    };
    EXPECT_EQ(notes->findBlockByNumber(2).text().toStdString(), "red <heading>");
    EXPECT_TRUE(format(0).fontItalic());
    EXPECT_EQ(format(0).fontPointSize(), 10);
    EXPECT_EQ(alignment(0), Qt::AlignRight);
    EXPECT_TRUE(format(1).fontUnderline());
    EXPECT_FALSE(format(1).fontItalic());
    EXPECT_EQ(alignment(1), Qt::AlignLeft);
    EXPECT_TRUE(isBold(format(2)));
    EXPECT_EQ(format(2).fontPointSize(), 14);
    EXPECT_EQ(format(2).foreground().color(), QColor(0xb0, 0x24, 0x18));
    EXPECT_EQ(alignment(2), Qt::AlignHCenter);
    EXPECT_EQ(countBullets(*notes), 1);
}

TEST_F(MakeSamples, KeepsTheSubjectThatStandsThereIfTheSourceIsRefused)
{
    writeFile(subject, "kept");
    EXPECT_EQ(make("<subject/>").exitCode, 1);
    QFile file(subject);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "kept");
}

TEST_F(MakeSamples, RefusesASourceThatIsNotThere)
{
    const Outcome outcome = makeSample({source, subject});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.complaint.startsWith(source)) << outcome.complaint.toStdString();
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(MakeSamples, ReportsAPlaceWhereNoSubjectCanBeMade)
{
    writeFile(source, goodSource);
    const Outcome outcome = makeSample({source, folder.filePath(QStringLiteral("missing/folder.crl"))});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_FALSE(outcome.complaint.isEmpty());
}

TEST_F(MakeSamples, SaysHowToUseItIfAnArgumentIsMissing)
{
    const Outcome outcome = makeSample({source});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.complaint.startsWith(QLatin1String("usage:"))) << outcome.complaint.toStdString();
}

struct BadSource
{
    const char *name;
    const char *contents;
    int line; ///< of the complaint, from 1
    const char *complaint;
};

void PrintTo(const BadSource &source, std::ostream *out)
{
    *out << source.name;
}

const std::string longNameSource = "<subject><topic name='" + std::string(256, 'n') + "'/></subject>";

const auto badSources = std::to_array<BadSource>({
    {"NothingAtAll", "", 1, "document"},
    {"NoXml", "Dear reader", 1, "start tag"},
    {"AnotherRoot", "<book/>", 1, "no subject"},
    {"NoTopics", "<subject>\n</subject>", 2, "no topics"},
    {"ATruncatedFile", "<subject>\n<topic name='T'>\n<notes>n", 3, "end of document"},
    {"ATruncatedTopic", "<subject>\n<topic name='T'>\n<notes>n</notes>\n", 4, "end of document"},
    {"CrossedTags", "<subject><topic name='T'>\n<notes><b>n</notes></b>", 2, "mismatch"},
    {"SomethingAfterTheSubject",
     "<subject><topic name='T'><notes>n</notes><card><front>f</front><back>b</back></card></topic></subject>\n<more/>",
     2, "content at end"},
    {"ADocumentType", "<!DOCTYPE subject>\n<subject/>", 1, "document type"},
    {"AnAttributeOfTheSubject", "<subject name='S'/>", 1, "attribute name"},
    {"AnUnknownElement", "<subject>\n<chapter/></subject>", 2, "<chapter>"},
    {"LooseText", "<subject>\nhello</subject>", 2, "text stands"},
    {"ATopicWithoutAName", "<subject>\n<topic/></subject>", 2, "has a name"},
    {"ATopicWithABlankName", "<subject>\n<topic name='  '/></subject>", 2, "has a name"},
    {"ATopicWithAnotherAttribute", "<subject>\n<topic name='T' title='t'/></subject>", 2, "has a name"},
    {"ATopicWithTooLongAName", longNameSource.c_str(), 1, "longer than 255"},
    {"ATopicWithoutNotes",
     "<subject>\n<topic name='T'>\n<card><front>f</front><back>b</back></card>\n</topic></subject>", 2,
     "'T' has no notes"},
    {"ATopicWithBlankNotes", "<subject><topic name='T'>\n<notes><p> </p></notes></topic></subject>", 2,
     "<notes> is empty"},
    {"ATopicWithNotesTwice", "<subject><topic name='T'><notes>n</notes>\n<notes>n</notes></topic></subject>", 2,
     "second <notes>"},
    {"ATopicWithoutCards", "<subject>\n<topic name='T'>\n<notes>n</notes>\n</topic></subject>", 2, "'T' has no cards"},
    {"ACardWithoutAFront", "<subject><topic name='T'><notes>n</notes>\n<card>\n<back>b</back></card></topic></subject>",
     2, "no front"},
    {"ACardWithoutABack",
     "<subject><topic name='T'><notes>n</notes>\n<card>\n<front>f</front></card></topic></subject>", 2, "no back"},
    {"ACardWithABlankFront",
     "<subject><topic name='T'><notes>n</notes><card>\n<front>\n</front><back>b</back></card></topic></subject>", 2,
     "<front> is empty"},
    {"ACardWithABlankBack",
     "<subject><topic name='T'><notes>n</notes><card><front>f</front>\n<back><b> </b></back></card></topic></subject>",
     2, "<back> is empty"},
    {"AnUnknownTextElement", "<subject><topic name='T'><notes>n\n<h1>n</h1></notes></topic></subject>", 2, "<h1>"},
    {"AnUnknownTextAttribute", "<subject><topic name='T'><notes>n\n<b class='x'>n</b></notes></topic></subject>", 2,
     "attribute class"},
    {"AnUnknownAlignment", "<subject><topic name='T'><notes>n\n<p align='middle'>n</p></notes></topic></subject>", 2,
     "middle"},
    {"AnUnknownColor", "<subject><topic name='T'><notes>n\n<span style='color:redd'>n</span></notes></topic></subject>",
     2, "redd"},
    {"AStyleThatTheTextsDoNotKnow",
     "<subject><topic name='T'><notes>n\n<span style='color:#ff0000; margin:0'>n</span></notes></topic></subject>", 2,
     "margin"},
});

class MakeSamplesRefuses : public MakeSamples, public testing::WithParamInterface<BadSource>
{
};

INSTANTIATE_TEST_SUITE_P(A, MakeSamplesRefuses, testing::ValuesIn(badSources),
                         [](const auto &bad) { return std::string(bad.param.name); });

TEST_P(MakeSamplesRefuses, WithFileAndLineAndLeavesNothing)
{
    const Outcome outcome = make(GetParam().contents);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.complaint.startsWith(QStringLiteral("%1:%2: ").arg(source).arg(GetParam().line)))
        << outcome.complaint.toStdString();
    EXPECT_TRUE(outcome.complaint.contains(QLatin1String(GetParam().complaint), Qt::CaseInsensitive))
        << outcome.complaint.toStdString();
    EXPECT_EQ(files(), QStringList{QStringLiteral("source.xml")});
}

} // namespace
