#include "SampleReading.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <ostream>

namespace {

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
