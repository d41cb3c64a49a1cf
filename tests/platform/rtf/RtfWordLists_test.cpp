#include "platform/rtf/RtfFormats.h"
#include "platform/rtf/RtfListWriter.h"
#include "platform/rtf/RtfWriter.h"
#include "tests/platform/rtf/RtfDocuments.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

// The lists of word processors: defined at the head of a text (RtfListTable_test),
// named by its paragraphs, and written beside each as a mark.

namespace {

std::string levelOf(int format, const std::string &text, int start = 1)
{
    return "{\\listlevel\\levelnfc" + std::to_string(format) + "\\levelstartat" + std::to_string(start) +
           "{\\leveltext" + text + ";}{\\levelnumbers;}}";
}

/// A text with these lists: 1 is "1." with "a)" and "(i)" in it, 2 is bullets, 3 is
/// the first from 5 on, 4 is without marks, 5 is capitals from "D" on.
std::string rtf(const std::string &body)
{
    const std::string numbers = levelOf(0, "\\'02\\'00.") + levelOf(4, "\\'02\\'01)") + levelOf(2, "\\'03(\\'02)");
    const std::string bullets = levelOf(23, "\\'01\\u-3913 ?");
    return "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset2 Symbol;}}{\\*\\listtable"
           "{\\list" +
           numbers + "\\listid11}{\\list" + bullets + "\\listid12}{\\list" + levelOf(255, "\\'00") +
           "\\listid14}{\\list" + levelOf(3, "\\'02\\'00.", 4) +
           "\\listid15}}"
           "{\\*\\listoverridetable{\\listoverride\\listid11\\listoverridecount0\\ls1}"
           "{\\listoverride\\listid12\\listoverridecount0\\ls2}"
           "{\\listoverride\\listid11\\listoverridecount1{\\lfolevel\\listoverridestartat\\levelstartat5}\\ls3}"
           "{\\listoverride\\listid14\\ls4}{\\listoverride\\listid15\\ls5}}\\pard\\f0\\fs20 " +
           body + "}";
}

/// "•" or the number with the text around it; empty of a paragraph in no list.
QString markOf(const QTextBlock &block)
{
    const RtfList list = paragraphOf(block, RtfUnits(*block.document())).list;
    if (list.style == RtfListStyle::None) {
        return {};
    }
    if (list.style == RtfListStyle::Bullet) {
        return QStringLiteral("•");
    }
    const int number = list.start + block.textList()->itemNumber(block);
    return list.before + QString::fromStdString(rtfListNumber(list.style, number)) + list.after;
}

/// The paragraphs of \p document, each with its mark.
QString marked(const QTextDocument &document)
{
    QStringList paragraphs;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        paragraphs += markOf(block) + QLatin1Char('|') + block.text();
    }
    return paragraphs.join(QLatin1Char(' '));
}

struct ListRow
{
    const char *name;
    std::string body;
    QString marked;
};

void PrintTo(const ListRow &row, std::ostream *out)
{
    *out << row.body;
}

class RtfWordLists : public testing::TestWithParam<ListRow>
{
};

TEST_P(RtfWordLists, AreMarked)
{
    EXPECT_EQ(marked(*documentOf(rtf(GetParam().body))), GetParam().marked);
}

TEST_P(RtfWordLists, ReadTheSameWhenTheyWereWritten)
{
    const std::string written = writeRtf(*documentOf(rtf(GetParam().body)));
    const auto again = documentOf(written);
    EXPECT_EQ(marked(*again), GetParam().marked);
    EXPECT_EQ(writeRtf(*again), written);
}

TEST_P(RtfWordLists, AreWrittenWithAMarkForEachParagraph)
{
    const auto document = documentOf(rtf(GetParam().body));
    int paragraphs = 0;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        paragraphs += markOf(block).isEmpty() ? 0 : 1;
    }
    const QByteArray written = QByteArray::fromStdString(writeRtf(*document));
    EXPECT_EQ(written.count("{\\pntext"), paragraphs);
    EXPECT_EQ(written.count("\\listtext"), 0);
    EXPECT_EQ(written.count("\\ls"), 0);
}

const auto rowName = [](const auto &info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(
    OfTheTable, RtfWordLists,
    testing::Values(
        ListRow{"AreNumbered", R"(\ls1 a\par b\par\pard c\par)", QStringLiteral("1.|a 2.|b |c")},
        ListRow{"AreBullets", R"(\ls2 a\par b\par\pard c\par)", QStringLiteral("•|a •|b |c")},
        ListRow{"HaveEmptyParagraphs", R"(\ls1\par a\par\par)", QStringLiteral("1.| 2.|a 3.|")},
        ListRow{"NeedNoEnd", R"(\ls1 a)", QStringLiteral("1.|a")},
        ListRow{"GoOnBehindAParagraph", R"(\ls1 a\par b\par\pard x\par\ls1 c\par)",
                QStringLiteral("1.|a 2.|b |x 3.|c")},
        ListRow{"GoOnBehindAnotherList", R"(\ls1 a\par\pard\ls2 b\par\pard\ls1 c\par)",
                QStringLiteral("1.|a •|b 2.|c")},
        ListRow{"GoOnWithAnotherAlignment", R"(\ls1 a\par\qc b\par)", QStringLiteral("1.|a 2.|b")},
        ListRow{"HaveLevels", R"(\ls1 a\par\ilvl1 b\par c\par\ilvl2 d\par\ilvl0 e\par)",
                QStringLiteral("1.|a a)|b b)|c (i)|d 2.|e")},
        ListRow{"CountTheirInnerLevelsAnew", R"(\ls1 a\par\ilvl1 b\par c\par\ilvl0 d\par\ilvl1 e\par)",
                QStringLiteral("1.|a a)|b b)|c 2.|d a)|e")},
        ListRow{"GoOnInAnInnerLevelBehindAParagraph", R"(\ls1\ilvl1 a\par\pard x\par\ls1\ilvl1 b\par)",
                QStringLiteral("a)|a |x b)|b")},
        ListRow{"HaveNoLevelBeyondTheirLast", R"(\ls1\ilvl8 a\par\ilvl-3 b\par)", QStringLiteral("(i)|a 1.|b")},
        ListRow{"BeginWhereTheirLevelDoes", R"(\ls5 a\par b\par)", QStringLiteral("D.|a E.|b")},
        ListRow{"BeginWhereTheirOverrideDoes", R"(\ls3 a\par b\par)", QStringLiteral("5.|a 6.|b")},
        ListRow{"MayHaveNoMarks", R"(\ls4 a\par b\par)", QStringLiteral("|a |b")},
        ListRow{"AreNoneOfNumberNought", R"(\ls1 a\par\ls0 b\par)", QStringLiteral("1.|a |b")},
        ListRow{"AreNoneOfAnUnknownNumber", R"(\ls77 a\par\ls-1 b\par\ls c\par)", QStringLiteral("|a |b |c")},
        ListRow{"YieldToAnOlderNumbering", R"({\*\pn\pnlvlblt{\pntxtb\'B7}}{\listtext 1.\tab}\ls1 a\par)",
                QStringLiteral("•|a")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    WithMarks, RtfWordLists,
    testing::Values(ListRow{"HaveThemOnce", R"({\listtext\f0 1.\tab}\ls1 a\par{\listtext\f0 2.\tab}b\par)",
                            QStringLiteral("1.|a 2.|b")},
                    ListRow{"HaveBulletsOnce", R"({\listtext\f1\'b7\tab}\ls2 a\par{\listtext\f1\'b7\tab}b\par)",
                            QStringLiteral("•|a •|b")},
                    ListRow{"GoOnAsTheMarkSays",
                            R"({\listtext 1.\tab}\ls1 a\par\pard x\par{\listtext 2.\tab}\ls1 b\par)",
                            QStringLiteral("1.|a |x 2.|b")},
                    ListRow{"BeginAnewAsTheMarkSays",
                            R"({\listtext 1.\tab}\ls1 a\par\pard x\par{\listtext 1.\tab}\ls1 b\par)",
                            QStringLiteral("1.|a |x 1.|b")},
                    ListRow{"BeginWhereTheMarkDoes", R"({\listtext 4.\tab}\ls1 a\par{\listtext 5.\tab}b\par)",
                            QStringLiteral("4.|a 5.|b")},
                    ListRow{"MayLeapInTheirMidst", R"({\listtext 1.\tab}\ls1 a\par{\listtext 7.\tab}b\par c\par)",
                            QStringLiteral("1.|a 7.|b 8.|c")},
                    ListRow{"CountWhatTheLevelDoes", R"({\listtext 1.1.\tab}\ls1\ilvl1 a\par{\listtext 1.2.\tab}b\par)",
                            QStringLiteral("a)|a b)|b")},
                    ListRow{"MayLackSome", R"({\listtext 3.\tab}\ls1 a\par b\par{\listtext 5.\tab}c\par)",
                            QStringLiteral("3.|a 4.|b 5.|c")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    WithoutTheTable, RtfWordLists,
    testing::Values(ListRow{"AreNumberedAsTheirMarks", R"({\listtext 1)\tab}\ls9 a\par{\listtext 2)\tab}b\par)",
                            QStringLiteral("1)|a 2)|b")},
                    ListRow{"AreBulletsAsTheirMarks", R"({\listtext\f1\'b7\tab}\ls9 a\par{\listtext -\tab}b\par)",
                            QStringLiteral("•|a •|b")},
                    ListRow{"AreRomanAsTheirMarks", R"({\listtext i.\tab}\ls9 a\par{\listtext ii.\tab}b\par)",
                            QStringLiteral("i.|a ii.|b")},
                    ListRow{"AreLettersAsTheirMarks", R"({\listtext (a)\tab}\ls9 a\par{\listtext (b)\tab}b\par)",
                            QStringLiteral("(a)|a (b)|b")},
                    ListRow{"BeginWhereTheirMarksDo", R"({\listtext 3.\tab}\ls9 a\par{\listtext 4.\tab}b\par)",
                            QStringLiteral("3.|a 4.|b")},
                    ListRow{"NeedNoNumber", R"({\listtext 1.\tab}a\par{\listtext 2.\tab}b\par c\par)",
                            QStringLiteral("1.|a 2.|b |c")},
                    ListRow{"EndWithTheirMarks", R"({\listtext 1.\tab}\ls9 a\par b\par)", QStringLiteral("1.|a |b")},
                    ListRow{"AreNoneOfAnEmptyMark", R"({\listtext\tab}\ls9 a\par)", QStringLiteral("|a")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    InOtherPlaces, RtfWordLists,
    testing::Values(
        ListRow{"OfTablesAreText",
                R"(\trowd\cellx100\cellx200\pard\intbl{\listtext 1.\tab}\ls1 a\cell{\listtext 2.\tab}b\cell\row\pard)",
                QStringLiteral("|1. a\t2. b\t")},
        ListRow{
            "OfTablesTellSoThemselves",
            R"({\listtext\pard\plain\intbl 1.\tab}\pard\intbl\ls1 a\cell\row{\listtext\pard 1.\tab}\pard\ls1 b\par)",
            QStringLiteral("|1. a\t 1.|b")},
        ListRow{"OfTablesHaveNoMarkUnlessItIsWritten", R"(\pard\intbl\ls1 a\cell\row\pard b\par)",
                QStringLiteral("|a\t |b")},
        ListRow{"OfNotesAreText", R"(a{\footnote{\listtext 1.\tab}\ls1 n\par}\par b\par)",
                QStringLiteral("|a 1. n |b")},
        ListRow{"OfTextBoxesAreLists", R"({\shp{\*\shpinst{\shptxt{\listtext 1.\tab}\pard\ls1 a\par}}}\pard b\par)",
                QStringLiteral("1.|a |b")}),
    rowName);

TEST(RtfWordListMarks, ThatMayBeLettersOrRomanAreWhatTheListIs)
{
    for (const auto &[marks, style] : {std::pair(QStringLiteral("iii) iv) v) vi)"), RtfListStyle::LowerRoman),
                                       std::pair(QStringLiteral("u) v) w) x)"), RtfListStyle::LowerLetter),
                                       std::pair(QStringLiteral("H. I. J."), RtfListStyle::UpperLetter)}) {
        std::string body;
        for (const QString &mark : marks.split(QLatin1Char(' '))) {
            body += "{\\listtext " + mark.toStdString() + "\\tab}\\ls9 x\\par";
        }
        const auto document = documentOf(rtf(body));
        const QTextList *list = document->firstBlock().textList();
        for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
            EXPECT_EQ(block.textList(), list) << marks.toStdString();
            EXPECT_EQ(paragraphOf(block, RtfUnits(*document)).list.style, style) << marks.toStdString();
        }
    }
}

TEST(RtfWordListMarks, ThatAreCutOffAreNoText)
{
    EXPECT_EQ(textOf(*documentOf("{\\rtf1 a\\par{\\listtext 1.")), QStringLiteral("a"));
}

} // namespace
