#include "platform/rtf/RtfWriter.h"
#include "tests/platform/rtf/RtfDocuments.h"

#include <gtest/gtest.h>
#include <string>

namespace {

const auto rowName = [](const auto &info) { return info.param.name; };

struct FormatRow
{
    const char *name;
    std::string rtf;
    QString seen; ///< runs, separated by '|'
};

void PrintTo(const FormatRow &row, std::ostream *out)
{
    *out << row.rtf;
}

class RtfCharacterFormat : public testing::TestWithParam<FormatRow>
{
};

TEST_P(RtfCharacterFormat, IsRead)
{
    const auto document = documentOf(GetParam().rtf);
    QStringList runs;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        for (auto run = block.begin(); !run.atEnd(); ++run) {
            runs += run.fragment().text() + QStringLiteral(": ") +
                    seen(run.fragment().charFormat(), document->defaultFont());
        }
    }
    EXPECT_EQ(runs.join(QStringLiteral(" | ")), GetParam().seen);
}

INSTANTIATE_TEST_SUITE_P(
    Fonts, RtfCharacterFormat,
    testing::Values(
        FormatRow{"AreTheDocumentsBeforeTheFirstFontWord", R"({\rtf1 a})", QStringLiteral("a: House Sans 8")},
        FormatRow{"AreTheNamedDefaultOne", R"({\rtf1\deff1{\fonttbl{\f0 A;}{\f1 B;}}a})", QStringLiteral("a: B 8")},
        FormatRow{"OfAnUndefinedDefaultAreTheDocuments", R"({\rtf1\deff7{\fonttbl{\f0 A;}}a})",
                  QStringLiteral("a: House Sans 8")},
        FormatRow{"ThatAreUndefinedChangeNothing", wholeRtf(R"(a\f9 b\f99999999999 c\f-1 d)"),
                  QStringLiteral("abcd: Arial 10")},
        FormatRow{"MayLackTheirSemicolon", R"({\rtf1{\fonttbl{\f0\fnil A}{\f1 B}}\f0 a\f1 b})",
                  QStringLiteral("a: A 8 | b: B 8")},
        FormatRow{"MayLackTheirBraces", R"({\rtf1{\fonttbl\f0\fnil A;\f1\fswiss B;}\f0 a\f1 b})",
                  QStringLiteral("a: A 8 | b: B 8")},
        FormatRow{"MayHaveGroupsBesideTheirName",
                  R"({\rtf1{\fonttbl{\f0{\*\panose 020b}A{\*\falt X};}{\f1 B{\*\fname Y;};}}\f0 a\f1 b})",
                  QStringLiteral("a: A 8 | b: B 8")},
        FormatRow{"MayHaveNamesInTheirCharset", R"({\rtf1{\fonttbl{\f0\fcharset129 \'b1\'bc\'b8\'b2;}}\f0 a})",
                  QStringLiteral("a: 굴림 8")},
        FormatRow{"MayHaveNamesInUnicode", R"({\rtf1{\fonttbl{\f0\fcharset0 MS \u26126?\u26397?;}}\f0 a})",
                  QStringLiteral("a: MS 明朝 8")},
        FormatRow{"OfAnUnusedTemplateAreIgnored",
                  R"({\rtf1\ansi\deff0\deflang1033{\fonttbl{\f0\fscript\fprq2\fcharset0 Comic Sans MS;}})"
                  R"(\pard\f0\fs20 Biology notes...\f1\par})",
                  QStringLiteral("Biology notes...: Comic Sans MS 10")},
        FormatRow{"HaveHalfPoints", wholeRtf(R"(\fs17 a\fs b)"), QStringLiteral("a: Arial 8.5 | b: Arial 12")},
        FormatRow{"HaveASizeAboveZeroThatIsNoPoster", wholeRtf(R"(\fs0 a\fs-4 b\fs99999999999 c)"),
                  QStringLiteral("ab: Arial 10 | c: Arial 1638")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Characters, RtfCharacterFormat,
    testing::Values(
        FormatRow{"MayBeBold", wholeRtf(R"(\b a\b0 b\b2 c)"),
                  QStringLiteral("a: Arial 10 bold | b: Arial 10 | c: Arial 10 bold")},
        FormatRow{"MayBeItalic", wholeRtf(R"(\i a\i0 b)"), QStringLiteral("a: Arial 10 italic | b: Arial 10")},
        FormatRow{"MayBeUnderlined", wholeRtf(R"(\ul a\ulnone b\ul c\ul0 d)"),
                  QStringLiteral("a: Arial 10 underline | b: Arial 10 | c: Arial 10 underline | d: Arial 10")},
        FormatRow{"MayBeUnderlinedInManyWays",
                  wholeRtf(R"(\uld a\ul0\uldb b\ul0\ulw c\ul0\ulwave d\ul0\ulth e\ul0\uldash f\uldash0 g)"),
                  QStringLiteral("abcdef: Arial 10 underline | g: Arial 10")},
        FormatRow{"MayBeStruckOut", wholeRtf(R"(\strike a\strike0\striked1 b\striked0 c)"),
                  QStringLiteral("ab: Arial 10 strike | c: Arial 10")},
        FormatRow{
            "MayStandAboveOrBelowTheLine", wholeRtf(R"(\super a\sub b\nosupersub c\super d\super0 e)"),
            QStringLiteral("a: Arial 10 super | b: Arial 10 sub | c: Arial 10 | d: Arial 10 super | e: Arial 10")},
        FormatRow{"MayBeShifted", wholeRtf(R"(\up6 a\dn6 b\up0 c\dn d)"),
                  QStringLiteral("a: Arial 10 super | b: Arial 10 sub | c: Arial 10 | d: Arial 10 sub")},
        FormatRow{"MayBeColoured", wholeRtf(R"(\cf1 a\cf2 b)"),
                  QStringLiteral("a: Arial 10 ink#ff0000 | b: Arial 10 ink#008000")},
        FormatRow{"AreInTheAutomaticColourBeyondTheTable",
                  wholeRtf(R"(a\cf1\cf3 b\cf1\cf99999 c\cf1\cf-1 d\cf1\cf0 e)"), QStringLiteral("abcde: Arial 10")},
        FormatRow{"MayBeMarked", wholeRtf(R"(\highlight1 a\highlight0 b\cb2 c)"),
                  QStringLiteral("a: Arial 10 marker#ff0000 | b: Arial 10 | c: Arial 10 marker#008000")},
        FormatRow{"ArePlainAgainAfterPlain", wholeRtf(R"(\f2\b\i\ul\strike\cf1\highlight2\super\fs40 a\plain b)"),
                  QStringLiteral("a: Arial CYR 20 bold italic underline strike super ink#ff0000 marker#008000"
                                 " | b: Arial 12")},
        FormatRow{"AreWhatTheyWereBehindAGroup", wholeRtf(R"(a{\b b{\i c}d}e)"),
                  QStringLiteral("a: Arial 10 | b: Arial 10 bold | c: Arial 10 bold italic"
                                 " | d: Arial 10 bold | e: Arial 10")},
        FormatRow{"KeepTheirFormatOverPardAndPar", wholeRtf(R"(\b a\par\pard b)"),
                  QStringLiteral("a: Arial 10 bold | b: Arial 10 bold")},
        FormatRow{"TakeNoFormatFromSkippedGroups", wholeRtf(R"({\*\foo\b x}a{\info\i}b)"),
                  QStringLiteral("ab: Arial 10")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    ColourTables, RtfCharacterFormat,
    testing::Values(
        FormatRow{"MayHaveEmptyEntries", R"({\rtf1{\colortbl;\red1\green2\blue3;;\red4;}\cf1 a\cf2 b\cf3 c})",
                  QStringLiteral("a: House Sans 8 ink#010203 | b: House Sans 8 | c: House Sans 8 ink#040000")},
        FormatRow{"HaveAnAutomaticFirstEntryWhateverItSays", R"({\rtf1{\colortbl\red9\green9\blue9;}\cf0 a})",
                  QStringLiteral("a: House Sans 8")},
        FormatRow{"LimitTheirComponents", R"({\rtf1{\colortbl;\red300\green-1\blue99999999999;}\cf1 a})",
                  QStringLiteral("a: House Sans 8 ink#ff00ff")},
        FormatRow{"MayLackTheirLastSemicolon", R"({\rtf1{\colortbl;\red1\green2\blue3}\cf1 a})",
                  QStringLiteral("a: House Sans 8 ink#010203")},
        FormatRow{"MayBeMissing", R"({\rtf1\cf1 a})", QStringLiteral("a: House Sans 8")}),
    rowName);

class RtfParagraphFormat : public testing::TestWithParam<FormatRow>
{
};

TEST_P(RtfParagraphFormat, IsRead)
{
    const auto document = documentOf(GetParam().rtf);
    QStringList paragraphs;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        paragraphs += block.text() + QStringLiteral(": ") + seen(block);
    }
    EXPECT_EQ(paragraphs.join(QStringLiteral(" | ")), GetParam().seen);
}

// 15 twips are one unit.
INSTANTIATE_TEST_SUITE_P(
    Paragraphs, RtfParagraphFormat,
    testing::Values(
        FormatRow{"AreAligned", wholeRtf(R"(\qc a\par\qr b\par\ql c\par\qr\qj d)"),
                  QStringLiteral("a: center | b: right | c:  | d: ")},
        FormatRow{"AreIndented", wholeRtf(R"(\li300\fi-150\ri450 a)"),
                  QStringLiteral("a: left20 first-10 rightmargin30")},
        FormatRow{"ThatBeginLeftOfThePageAreShownAtItsEdge", wholeRtf(R"(\li-495 a)"), QStringLiteral("a: ")},
        FormatRow{"HaveSpaceAroundThem", wholeRtf(R"(\sb150\sa300 a)"), QStringLiteral("a: above10 below20")},
        FormatRow{"HaveNoNegativeSpaceAroundThem", wholeRtf(R"(\sb-150\sa-300 a)"), QStringLiteral("a: ")},
        FormatRow{"HaveLinesOfALeastHeight", wholeRtf(R"(\sl300\slmult0 a)"), QStringLiteral("a: atleast20")},
        FormatRow{"HaveLinesOfAnExactHeight", wholeRtf(R"(\sl-300 a)"), QStringLiteral("a: exactly20")},
        FormatRow{"HaveLinesOfAMultipleHeight", wholeRtf(R"(\sl360\slmult1 a)"), QStringLiteral("a: percent150")},
        FormatRow{"HaveTabsOfManyKinds", wholeRtf(R"(\tx150\tqr\tx300\tqc\tx450\tqdec\tx600 a)"),
                  QStringLiteral("a: tab0@10 tab1@20 tab2@30 tab3@40")},
        FormatRow{"AreWrittenFromTheRight", wholeRtf(R"(\rtlpar a\par\ltrpar b)"), QStringLiteral("a: rtl | b: ")},
        FormatRow{"TakeTheFormatThatStandsAtTheirEnd", wholeRtf(R"(a\qc\par b\par\pard c)"),
                  QStringLiteral("a: center | b: center | c: ")},
        FormatRow{"AreFormattedWithoutAParToo", wholeRtf(R"(\qc a)"), QStringLiteral("a: center")},
        FormatRow{"KeepTheirFormatBehindAGroup", wholeRtf(R"({\qc a}\par b)"), QStringLiteral("a: center | b: center")},
        FormatRow{"AreReset", wholeRtf(R"(\qc\li150\fi150\ri150\sb150\sa150\sl300\tx150\rtlpar a\par\pard b)"),
                  QStringLiteral("a: center rtl left10 first10 rightmargin10 above10 below10 atleast20 tab0@10 | b: ")},
        FormatRow{"HaveIndentsThatSomePageCanHave", wholeRtf(R"(\li2147483648\ri-2147483649 a)"),
                  QStringLiteral("a: left66666.7 rightmargin-66666.7")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Lists, RtfParagraphFormat,
    testing::Values(
        FormatRow{"OfBulletsAreLists",
                  wholeRtf(R"({\pntext\f1\'B7\tab}{\*\pn\pnlvlblt\pnf1\pnindent0{\pntxtb\'B7}}one\par)"
                           "\r\n"
                           R"({\pntext\f1\'B7\tab}two\par \pard three\par)"),
                  QStringLiteral("one: bullet | two: bullet | three: ")},
        FormatRow{"BeginTheirMarkAtTheFirstLineIndent",
                  wholeRtf(R"({\*\pn\pnlvlblt{\pntxtb\'B7}}\fi-300\li750 one\par)"),
                  QStringLiteral("one: left30 bullet")},
        FormatRow{"OfNumbersCount", wholeRtf(R"({\*\pn\pnlvlbody\pnstart1\pndec{\pntxta.}}a\par b\par)"),
                  QStringLiteral("a: 1. | b: 2.")},
        FormatRow{"OfLettersCount", wholeRtf(R"({\*\pn\pnlvlbody\pnucltr{\pntxtb (}{\pntxta )}}a\par b\par)"),
                  QStringLiteral("a: (A) | b: (B)")},
        FormatRow{"OfRomanNumbersCount", wholeRtf(R"({\*\pn\pnlvlbody\pnlcrm{\pntxta.}}a\par b\par)"),
                  QStringLiteral("a: i. | b: ii.")},
        FormatRow{"ContinueOverAChangeOfAlignment",
                  wholeRtf(R"({\*\pn\pnlvlbody\pndec{\pntxta.}}a\par\pard{\*\pn\pnlvlbody\pndec{\pntxta.}}\qc b\par)"),
                  QStringLiteral("a: 1. | b: center 2.")},
        FormatRow{
            "BeginAnewBehindAParagraph",
            wholeRtf(R"({\*\pn\pnlvlbody\pndec{\pntxta.}}a\par\pard b\par{\*\pn\pnlvlbody\pndec{\pntxta.}}c\par)"),
            QStringLiteral("a: 1. | b:  | c: 1.")},
        FormatRow{"AreNoneOfATypedBullet", wholeRtf(R"(\bullet a)"), QStringLiteral("•a: ")},
        FormatRow{"AreNoneOfAnUnmarkedParagraph", wholeRtf(R"({\*\pn\pnlvlcont}a)"), QStringLiteral("a: ")}),
    rowName);

TEST(RtfBody, AListOfAnyLengthIsMarkedToItsEnd)
{
    std::string body = R"({\*\pn\pnlvlblt{\pntxtb\'B7}})";
    constexpr int items = 3000;
    for (int item = 0; item < items; ++item) {
        body += "item\\par\r\n";
    }
    const auto document = documentOf(wholeRtf(body));
    ASSERT_EQ(document->blockCount(), items);
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        ASSERT_NE(block.textList(), nullptr) << block.blockNumber();
    }
}

TEST(RtfBody, ANumberedListOfThousandsCountsToItsEnd)
{
    std::string body = R"({\*\pn\pnlvlbody\pndec{\pntxta.}})";
    constexpr int items = 3000;
    for (int item = 0; item < items; ++item) {
        body += "\\li" + std::to_string(item % 100 == 0 ? 300 : 450) + " item\\par\r\n";
    }
    const auto document = documentOf(wholeRtf(body));
    const QTextBlock last = document->lastBlock();
    ASSERT_NE(last.textList(), nullptr);
    EXPECT_EQ(last.textList()->itemText(last), QString::number(items) + QLatin1Char('.'));
    EXPECT_NE(writeRtf(*document).find("{\\pntext\\f0 3000.\\tab}"), std::string::npos);
}

TEST(RtfBody, ANumberedListOfAnyLengthIsMarkedToItsEnd)
{
    std::string body = R"({\*\pn\pnlvlbody\pndec{\pntxta.}})";
    constexpr int items = 20'000;
    for (int item = 0; item < items; ++item) {
        body += "item\\par\r\n";
    }
    const auto document = documentOf(wholeRtf(body));
    ASSERT_EQ(document->blockCount(), items);
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        ASSERT_NE(block.textList(), nullptr) << block.blockNumber();
    }
    EXPECT_NE(writeRtf(*document).find("{\\pntext\\f0 20000.\\tab}"), std::string::npos) << "written on";
}

TEST(RtfBody, AParagraphMarkHasAFormatOfItsOwn)
{
    const auto document = documentOf(wholeRtf(R"(\fs24 a\fs40\par\fs30\par\fs20 b\fs50)"));
    EXPECT_EQ(document->findBlockByNumber(0).charFormat().fontPointSize(), 20);
    EXPECT_EQ(document->findBlockByNumber(1).charFormat().fontPointSize(), 15);
    EXPECT_EQ(document->findBlockByNumber(2).charFormat().fontPointSize(), 10) << "of its last run";
}

TEST(RtfBody, AutomaticInkIsNoInkAtAll)
{
    const auto document = documentOf(wholeRtf(R"(a\cf1 b\cf0 c)"));
    const QTextBlock block = document->firstBlock();
    EXPECT_FALSE(block.begin().fragment().charFormat().hasProperty(QTextFormat::ForegroundBrush));
    EXPECT_FALSE(block.charFormat().hasProperty(QTextFormat::ForegroundBrush));
}

} // namespace
