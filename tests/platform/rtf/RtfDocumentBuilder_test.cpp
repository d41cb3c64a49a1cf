#include "platform/rtf/RtfFormats.h"
#include "platform/rtf/RtfLimits.h"
#include "platform/rtf/RtfWriter.h"
#include "tests/platform/rtf/RtfDocuments.h"

#include <QTextCursor>

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

const auto rowName = [](const auto &info) { return info.param.name; };

std::string repeated(const std::string &text, int count)
{
    std::string all;
    all.reserve(text.size() * static_cast<std::size_t>(count));
    for (; count > 0; --count) {
        all += text;
    }
    return all;
}

TEST(RtfLimits, ParagraphsBeyondTheLimitAreLinesOfTheLast)
{
    const auto document = documentOf("{\\rtf1 a" + repeated("\\\n", maxRtfParagraphs - 1) + "b\\par c\\\nd\\par}");
    EXPECT_EQ(document->blockCount(), maxRtfParagraphs + 1);
    EXPECT_EQ(document->firstBlock().text(), QStringLiteral("a"));
    EXPECT_EQ(document->lastBlock().previous().text(), QStringLiteral("b"));
    EXPECT_EQ(document->lastBlock().text(), QStringLiteral("c\u2028d\u2028"));
}

TEST(RtfLimits, FormatsBeyondTheLimitAreTheLast)
{
    constexpr int sizes = 320;
    constexpr int shifts = 320;
    static_assert(sizes * shifts > maxRtfFormats);
    std::string body;
    for (int size = 1; size <= sizes; ++size) {
        body += "\\fs" + std::to_string(size);
        for (int shift = 1; shift <= shifts; ++shift) {
            body += "\\up" + std::to_string(shift) + 'x';
        }
    }
    const auto document = documentOf("{\\rtf1 " + body + "\\par\\pard\\qc y{\\pict 00}z\\par}");
    EXPECT_EQ(textOf(*document), QString(sizes * shifts, QLatin1Char('x')) + QStringLiteral("\ny z"));
    EXPECT_EQ(document->allFormats().size(), maxRtfFormats);
    EXPECT_EQ(seen(document->lastBlock()), QString()) << "its format is the one before";
}

TEST(RtfLimits, FormatsThatAParagraphUsesAgainAreNoNewOnes)
{
    const auto document = documentOf("{\\rtf1 " + repeated("\\b x\\b0 x", maxRtfFormats) + "\\i y}");
    EXPECT_EQ(document->characterCount(), 2 * maxRtfFormats + 2);
    QTextCursor cursor(document.get());
    cursor.movePosition(QTextCursor::End);
    EXPECT_TRUE(cursor.charFormat().fontItalic());
}

TEST(RtfLimits, ALongNumberedListCountsOnThroughItsLists)
{
    constexpr int items = 6000;
    const auto document =
        documentOf(wholeRtf(R"({\*\pn\pnlvlbody\pndec{\pntxtb (}{\pntxta )}})" + repeated("\\par", items)));
    ASSERT_EQ(document->blockCount(), items);
    std::vector<QTextList *> lists;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        ASSERT_NE(block.textList(), nullptr) << block.blockNumber();
        if (lists.empty() || lists.back() != block.textList()) {
            lists.push_back(block.textList());
        }
    }
    ASSERT_GE(lists.size(), 2U);
    int next = 1;
    for (const QTextList *list : lists) {
        const QTextListFormat format = list->format();
        EXPECT_EQ(format.hasProperty(RtfListStart) ? format.intProperty(RtfListStart) : 1, next);
        EXPECT_EQ(format.numberPrefix(), QStringLiteral("("));
        next += list->count();
    }
    EXPECT_EQ(next, items + 1);
    EXPECT_GT(lists.front()->count(), 4000) << "items that are added to a list count on in it";
}

TEST(RtfLimits, AListThatStartsAtOneIsNumberedByTheDocument)
{
    const auto document = documentOf(wholeRtf(R"({\*\pn\pnlvlbody\pndec\pnstart1{\pntxta.}}a\par)"));
    const QTextListFormat format = document->firstBlock().textList()->format();
    EXPECT_EQ(format.style(), QTextListFormat::ListDecimal);
    EXPECT_FALSE(format.hasProperty(RtfListStart));
    EXPECT_FALSE(format.hasProperty(RtfListStyleShown));
}

TEST(RtfLimits, AListThatStartsElsewhereTellsHowItIsPainted)
{
    const auto document = documentOf(wholeRtf(R"({\*\pn\pnlvlbody\pnucrm\pnstart3{\pntxta.}}a\par)"));
    const QTextListFormat format = document->firstBlock().textList()->format();
    EXPECT_EQ(format.style(), QTextListFormat::ListStyleUndefined);
    EXPECT_EQ(format.intProperty(RtfListStart), 3);
    EXPECT_EQ(format.intProperty(RtfListStyleShown), QTextListFormat::ListUpperRoman);
}

struct FormatRow
{
    const char *name;
    std::string body;
    QString seen; ///< paragraphs, each with its format, separated by '|'
};

void PrintTo(const FormatRow &row, std::ostream *out)
{
    *out << row.body;
}

class RtfTableRows : public testing::TestWithParam<FormatRow>
{
};

TEST_P(RtfTableRows, HaveTheirTabStops)
{
    const auto document = documentOf(wholeRtf(GetParam().body));
    QStringList paragraphs;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        paragraphs += block.text() + QStringLiteral(": ") + seen(block);
    }
    EXPECT_EQ(paragraphs.join(QStringLiteral(" | ")), GetParam().seen);
}

// 15 twips are one unit.
INSTANTIATE_TEST_SUITE_P(
    RtfDocumentBuilder, RtfTableRows,
    testing::Values(
        FormatRow{"AreAtTheEdgesOfTheCells", R"(\trowd\cellx1500\cellx3000\pard\intbl a\cell b\cell\row\pard c\par)",
                  QStringLiteral("a\tb\t: tab0@100 tab0@200 | c: ")},
        FormatRow{"AreThoseOfTheRowBefore", R"(\trowd\cellx1500\intbl a\cell\row b\cell\row\pard c\par)",
                  QStringLiteral("a\t: tab0@100 | b\t: tab0@100 | c: ")},
        FormatRow{"AreNewOnes", R"(\trowd\cellx1500\intbl a\cell\row\trowd\cellx300\intbl b\cell\row\pard c\par)",
                  QStringLiteral("a\t: tab0@100 | b\t: tab0@20 | c: ")},
        FormatRow{"AreNoneWithoutEdges", R"(\pard\intbl a\cell b\cell\row\pard c\par)",
                  QStringLiteral("a\tb\t:  | c: ")},
        FormatRow{"AreNotTheTabsOfItsParagraphs", R"(\trowd\cellx1500\pard\intbl\tx150 a\cell\row\pard c\par)",
                  QStringLiteral("a\t: tab0@100 | c: ")},
        FormatRow{"AreNoneLeftOfTheMargin", R"(\trowd\cellx-1500\cellx0\cellx1500\pard\intbl a\cell\row\pard c\par)",
                  QStringLiteral("a\t\t\t: tab0@100 | c: ")},
        FormatRow{"LeaveTheAlignmentOfTheRow", R"(\trowd\cellx1500\pard\intbl\qc a\cell\row\pard c\par)",
                  QStringLiteral("a\t: center tab0@100 | c: ")}),
    rowName);

TEST(RtfTableRow, HasAtMost32TabStopsAnd64CellsThatWereAnnounced)
{
    std::string edges;
    for (int cell = 1; cell <= 100; ++cell) {
        edges += "\\cellx" + std::to_string(cell * 15);
    }
    const auto document = documentOf(wholeRtf("\\trowd" + edges + "\\pard\\intbl a\\cell\\row\\pard b\\par"));
    const QTextBlock row = document->firstBlock();
    EXPECT_EQ(row.blockFormat().tabPositions().size(), 32);
    EXPECT_EQ(row.text(), QLatin1Char('a') + QString(64, QLatin1Char('\t')));
}

TEST(RtfTableRow, HasAsManyCellsAsAreWritten)
{
    const auto document = documentOf(wholeRtf("\\trowd\\cellx100\\pard\\intbl" + repeated(" a\\cell", 100) + "\\row"));
    EXPECT_EQ(document->firstBlock().text().count(QLatin1Char('a')), 100);
}

struct IndentRow
{
    const char *name;
    const char *words;
    qreal left; ///< shown
    qreal first;
    const char *written;
};

void PrintTo(const IndentRow &row, std::ostream *out)
{
    *out << row.words;
}

class RtfNegativeIndents : public testing::TestWithParam<IndentRow>
{
};

TEST_P(RtfNegativeIndents, AreShownAtTheEdgeAndKept)
{
    const auto document = documentOf(wholeRtf(GetParam().words + std::string(" a\\par")));
    const QTextBlockFormat format = document->firstBlock().blockFormat();
    EXPECT_DOUBLE_EQ(format.leftMargin(), GetParam().left);
    EXPECT_DOUBLE_EQ(format.textIndent(), GetParam().first);
    EXPECT_GE(format.leftMargin() + format.textIndent(), 0);
    EXPECT_NE(writeRtf(*document).find(std::string("\\pard") + GetParam().written + "\\f0\\fs20 a"), std::string::npos)
        << writeRtf(*document);
}

INSTANTIATE_TEST_SUITE_P(RtfDocumentBuilder, RtfNegativeIndents,
                         testing::Values(IndentRow{"OfAllLines", "\\li-450", 0, 0, "\\li-450"},
                                         IndentRow{"OfTheFirstLine", "\\fi-450", 30, -30, "\\fi-450"},
                                         IndentRow{"OfAHangingFirstLine", "\\li150\\fi-450", 30, -30,
                                                   "\\fi-450\\li150"},
                                         IndentRow{"OfTheFurtherLines", "\\li-450\\fi600", 0, 40, "\\fi600\\li-450"},
                                         IndentRow{"OfBoth", "\\li-150\\fi-150", 10, -10, "\\fi-150\\li-150"},
                                         IndentRow{"ThatReachTheEdge", "\\li450\\fi-450", 30, -30, "\\fi-450\\li450"}),
                         rowName);

TEST(RtfFonts, KeepTheirCharset)
{
    const auto document = documentOf(wholeRtf(R"(\f2\'cf\f0 a\par)"));
    const QTextCharFormat format = document->begin().begin().fragment().charFormat();
    EXPECT_EQ(format.fontFamilies().toStringList(), QStringList(QStringLiteral("Arial CYR")));
    EXPECT_EQ(format.intProperty(RtfFontCharset), 204);
    const std::string written = writeRtf(*document);
    EXPECT_NE(written.find("\\fcharset204 Arial CYR;}"), std::string::npos) << written;
    EXPECT_NE(written.find("\\'cf"), std::string::npos) << written;
}

struct TextRow
{
    const char *name;
    std::string rtf;
    QString text;
};

void PrintTo(const TextRow &row, std::ostream *out)
{
    *out << row.rtf;
}

class RtfWholeTexts : public testing::TestWithParam<TextRow>
{
};

TEST_P(RtfWholeTexts, AreRead)
{
    EXPECT_EQ(textOf(*documentOf(GetParam().rtf)), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Notes, RtfWholeTexts,
    testing::Values(TextRow{"LeaveNoBlankAtTheEndOfAParagraph", wholeRtf(R"(a{\footnote n}\par b\par)"),
                            QStringLiteral("a n\nb")},
                    TextRow{"LeaveNoBlankAtTheEndOfTheText", wholeRtf(R"(a{\footnote n})"), QStringLiteral("a n")},
                    TextRow{"HaveNoBlankAtTheStartOfAParagraph", wholeRtf(R"({\footnote n}a\par{\footnote m}b)"),
                            QStringLiteral("n a\nm b")},
                    TextRow{"HaveNoSecondBlankBesideThem", wholeRtf(R"(a {\footnote n} b)"), QStringLiteral("a n b")},
                    TextRow{"LeaveNoBlankWhereTheyAreEmpty", wholeRtf(R"(a{\footnote}\par b{\footnote\par}\par)"),
                            QStringLiteral("a\nb")},
                    TextRow{"LeaveNoBlankAtTheEndOfARow", wholeRtf(R"(\trowd\cellx1\intbl a{\footnote n}\cell\row)"),
                            QStringLiteral("a n\t")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Boxes, RtfWholeTexts,
    testing::Values(
        TextRow{"InACellStayInTheirRow",
                wholeRtf(R"(\trowd\cellx1\cellx2\intbl a{\shp{\*\shpinst{\shptxt\pard box\par two\par}}}\cell b\cell)"
                         R"(\row\pard c\par)"),
                QStringLiteral("a box\u2028two\tb\t\nc")},
        TextRow{"InABoxAreParagraphs",
                wholeRtf(R"({\shp{\*\shpinst{\shptxt a{\shp{\*\shpinst{\shptxt b\par}}}c\par}}}d\par)"),
                QStringLiteral("a\nb\nc\nd")},
        TextRow{"InANoteAreItsWords", wholeRtf(R"(a{\footnote n{\shp{\*\shpinst{\shptxt b\par}}}m}c\par)"),
                QStringLiteral("a n b m c")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Margins, RtfWholeTexts,
    testing::Values(
        TextRow{"AreReadWhereTheyAreAll", wholeRtf(R"({\header h\par}{\footer f\par}\pard\par)"),
                QStringLiteral("h\nf\n")},
        TextRow{"AreReadWithTheirPictures", wholeRtf(R"({\headerf{\pict 00}\par})"), QStringLiteral("\ufffc")},
        TextRow{"AreNotReadBesideAPicture", wholeRtf(R"({\header h\par}{\pict 00}\par)"), QStringLiteral("\ufffc")},
        TextRow{"AreNotReadBesideABlank", wholeRtf(R"({\header h\par} \par)"), QStringLiteral(" ")},
        TextRow{"AreReadWhereTheirTextIsCutOff", "{\\rtf1{\\header h", QStringLiteral("h")}),
    rowName);

// What was read before the input ends, or before one brace too many, is kept.
INSTANTIATE_TEST_SUITE_P(
    Unbalanced, RtfWholeTexts,
    testing::Values(
        TextRow{"InANote", R"({\rtf1 a{\footnote n)", QStringLiteral("a n")},
        TextRow{"InTheSecondParagraphOfANote", R"({\rtf1 a{\footnote n\par m)", QStringLiteral("a n\u2028m")},
        TextRow{"InANoteOfANote", R"({\rtf1 a{\footnote n{\*\annotation m)", QStringLiteral("a n m")},
        TextRow{"BehindANote", R"({\rtf1 a{\footnote n}}b)", QStringLiteral("a n")},
        TextRow{"InABox", R"({\rtf1 a{\shp{\*\shpinst{\shptxt b\par c)", QStringLiteral("a\nb\nc")},
        TextRow{"BehindABox", R"({\rtf1 a{\shp{\*\shpinst{\shptxt b}}}}c)", QStringLiteral("a\nb")},
        TextRow{"InABoxOfACell", R"({\rtf1\trowd\cellx1\intbl a{\shp{\*\shpinst{\shptxt b)", QStringLiteral("a b")},
        TextRow{"InARow", R"({\rtf1\trowd\cellx1\cellx2\intbl a\cell b)", QStringLiteral("a\tb")},
        TextRow{"InALink", R"({\rtf1 a{\field{\*\fldinst HYPERLINK "x"}{\fldrslt b{\b c)", QStringLiteral("abc")},
        TextRow{"InAnAddress", R"({\rtf1 a{\field{\*\fldinst HYPERLINK "x)", QStringLiteral("a")},
        TextRow{"BehindALink", R"({\rtf1 a{\field{\*\fldinst HYPERLINK "x"}{\fldrslt b}}}c)", QStringLiteral("ab")},
        TextRow{"InAPicture", R"({\rtf1 a{\pict\pngblip 00)", QStringLiteral("a\ufffc")},
        TextRow{"InAPictureInTwoForms", R"({\rtf1 a{\*\shppict{\pict 00}}{\nonshppict{\pict 01)",
                QStringLiteral("a\ufffc")},
        TextRow{"InAnObject", R"({\rtf1 a{\object\objemb{\result b)", QStringLiteral("a\ufffc")},
        TextRow{"InAnAlternative", R"({\rtf1 a{\upr{b}{\*\ud{c)", QStringLiteral("ac")}),
    rowName);

TEST(RtfUnbalanced, LinksKeepTheirAddress)
{
    const auto document = documentOf(R"({\rtf1 a{\field{\*\fldinst HYPERLINK "x"}{\fldrslt b)");
    auto run = document->begin().begin();
    EXPECT_FALSE(run.fragment().charFormat().isAnchor());
    ++run;
    EXPECT_EQ(run.fragment().charFormat().anchorHref(), QStringLiteral("x"));
}

TEST(RtfSeveralTexts, HaveFontsOfTheirOwn)
{
    const auto document = documentOf("{\\rtf1{\\fonttbl{\\f0 A;}{\\f1 B;}}\\f1 a\\par}\r\n"
                                     "{\\rtf1{\\fonttbl{\\f0 C;}{\\f1\\fcharset204 D;}}\\f0 b\\f1\\'e9\\par}"
                                     "{\\rtf1 c}");
    QStringList runs;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        for (auto run = block.begin(); !run.atEnd(); ++run) {
            runs += run.fragment().text() + QLatin1Char(' ') +
                    run.fragment().charFormat().fontFamilies().toStringList().value(0, QStringLiteral("-"));
        }
    }
    EXPECT_EQ(runs.mid(0, 3), (QStringList{QStringLiteral("a B"), QStringLiteral("b C"), QStringLiteral("й D")}));
    EXPECT_EQ(textOf(*document), QStringLiteral("a\nbй\nc"));
}

} // namespace
