#include "platform/rtf/RtfReader.h"
#include "tests/platform/rtf/RtfDocuments.h"

#include <QTextCursor>

#include <gtest/gtest.h>
#include <string>

namespace {

/// A head with the fonts that the rows use, then \p body.
std::string rtf(const std::string &body)
{
    return R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033{\fonttbl{\f0\fnil\fcharset0 Arial;})"
           R"({\f1\froman\fcharset2 Symbol;}{\f2\fnil\fcharset204 Arial CYR;}{\f3\fmodern\fcharset128 Gothic;}})"
           "\r\n"
           R"({\colortbl ;\red255\green0\blue0;\red0\green128\blue0;})"
           "\r\n\\viewkind4\\uc1\\pard\\f0\\fs20 " +
           body + "}";
}

struct TextRow
{
    const char *name;
    std::string rtf;
    QString text;
};

void PrintTo(const TextRow &row, std::ostream *out)
{
    *out << row.rtf.substr(0, 200);
}

class RtfText : public testing::TestWithParam<TextRow>
{
};

TEST_P(RtfText, IsRead)
{
    EXPECT_EQ(textOf(*documentOf(GetParam().rtf)), GetParam().text);
}

const auto rowName = [](const auto &info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(
    TheDocument, RtfText,
    testing::Values(TextRow{"MayBeEmpty", "", QString()}, TextRow{"MayBeNothingButItsHead", R"({\rtf1})", QString()},
                    TextRow{"NeedsNoVersion", R"({\rtf a})", QStringLiteral("a")},
                    TextRow{"MayBeginWithAByteOrderMark", "\xef\xbb\xbf{\\rtf1 a}", QStringLiteral("a")},
                    TextRow{"MayBeginWithWhiteSpace", " \r\n\t{\\rtf1 a}", QStringLiteral("a")},
                    TextRow{"IsPlainTextIfItIsNoRtf", "a {\\b b}\r\nc", QStringLiteral("a {\\b b}\nc")},
                    TextRow{"OfPlainTextMayBeUtf8", "caf\xc3\xa9", QStringLiteral("café")},
                    TextRow{"OfPlainTextMayBeWestern", "caf\xe9", QStringLiteral("café")},
                    TextRow{"OfPlainTextMayHaveSoftBreaks", "a\vb", QStringLiteral("a\u2028b")},
                    TextRow{"OfPlainTextJoinsLinesThatWereWrapped", "a\r\r\nb\rc\nd", QStringLiteral("a b\nc\nd")},
                    TextRow{"LosesOneClosingPar", rtf(R"(hello\par)"), QStringLiteral("hello")},
                    TextRow{"MayEndWithoutPar", rtf("hello"), QStringLiteral("hello")},
                    TextRow{"KeepsAllParsButTheClosingOne", rtf(R"(hello\par\par)"), QStringLiteral("hello\n")},
                    TextRow{"KeepsEmptyParagraphsBeforeItsText", rtf(R"(\par\par a)"), QStringLiteral("\n\na")},
                    TextRow{"EndsAtItsClosingBrace", rtf("a") + " b\\par {\\b x", QStringLiteral("a")},
                    TextRow{"EndsAtASurplusBrace", rtf("a}b}c"), QStringLiteral("a")},
                    TextRow{"KeepsItsTextWhenGroupsStayOpen", "{\\rtf1 a{\\b b{\\i c", QStringLiteral("abc")},
                    TextRow{"MayEndInTheMidstOfAWord", "{\\rtf1 a\\pa", QStringLiteral("a")},
                    TextRow{"MayEndInABackslash", "{\\rtf1 a\\", QStringLiteral("a")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    TheText, RtfText,
    testing::Values(
        TextRow{"OfALineBreakIsNothing", rtf("a\r\nb"), QStringLiteral("ab")},
        TextRow{"OfAnEscapedLineBreakIsAParagraph", rtf("a\\\r\nb\\\nc\\\rd"), QStringLiteral("a\nb\nc\nd")},
        TextRow{"OfEscapedBracesIsBraces", rtf(R"(\{a\}\\b)"), QStringLiteral("{a}\\b")},
        TextRow{"HasASecondBlankBehindAWord", rtf(R"(a\b  c)"), QStringLiteral("a c")},
        TextRow{"OfALineIsALineSeparator", rtf(R"(a\line b)"), QStringLiteral("a\u2028b")},
        TextRow{"OfATabIsATab", rtf("a\tb\\tab c\\\td"), QStringLiteral("a\tb\tc\td")},
        TextRow{"OfPagesAndSectionsIsParagraphs", rtf(R"(a\page b\sect c)"), QStringLiteral("a\nb\nc")},
        TextRow{"OfDashesQuotesAndBullets", rtf(R"(\emdash\endash\lquote a\rquote\ldblquote b\rdblquote\bullet)"),
                QStringLiteral("—–‘a’“b”•")},
        TextRow{"OfWideBlanksIsBlanks", rtf(R"(a\emspace b\enspace c\qmspace d)"), QStringLiteral("a b cd")},
        TextRow{"OfMarksOfDirectionAndJoiners", rtf(R"(\ltrmark\rtlmark\zwj\zwnj)"),
                QStringLiteral("\u200e\u200f\u200d\u200c")},
        TextRow{"OfHardBlanksAndHyphens", rtf(R"(a\~b\_c\-d)"), QStringLiteral("a\u00a0b\u2011cd")},
        TextRow{"OfNulIsABlank", rtf(std::string("a\0b", 3)), QStringLiteral("a b")},
        TextRow{"OfUnknownWordsIsNothing", rtf(R"(a\foo b\foo12 c\FOO-3 d\| e)"), QStringLiteral("abcd e")},
        TextRow{"OfHiddenTextIsKept", rtf(R"(a\v b\v0 c)"), QStringLiteral("abc")},
        TextRow{"OfBinaryDataIsSkipped", rtf("a\\bin4 x}{yb"), QStringLiteral("ab")},
        TextRow{"BeforeBinaryDataWithoutEndIsKept", "{\\rtf1 a\\bin99999999 xyz}", QStringLiteral("a")},
        TextRow{"MayNotSmuggleInAFrame", rtf(R"(a\u-560?\u-559?b)"), QStringLiteral("a\ufffd\ufffdb")},
        TextRow{"OfAParagraphSeparatorIsAParagraph", rtf(R"(a\u8233?b)"), QStringLiteral("a\nb")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Bytes, RtfText,
    testing::Values(
        TextRow{"AreInTheCodePageOfTheirFont", rtf(R"(\'e9\f2\'e9\f0\'e9)"), QStringLiteral("éйé")},
        TextRow{"OfAnUndefinedFontStayInTheCurrentOne", rtf(R"(\f2\f9\'e9)"), QStringLiteral("й")},
        TextRow{"ReturnToTheCodePageOfTheOuterGroup", rtf(R"({\f2\'e9}\'e9)"), QStringLiteral("йé")},
        TextRow{"AreInTheCodePageOfTheDocumentWithoutAFont", R"({\rtf1\ansi\ansicpg1251 \'e9})", QStringLiteral("й")},
        TextRow{
            "OfAFontWithoutCharsetAreInTheCodePageOfTheDocument",
            R"({\rtf1\ansi\ansicpg1251{\fonttbl{\f0 A;}{\f1\fcharset0 B;}{\f2\fcharset1 C;}}\f0\'e9\f1\'e9\f2\'e9})",
            QStringLiteral("йéй")},
        TextRow{"MayBeInTheCodePageOfTheFontEntry", R"({\rtf1{\fonttbl{\f0\fcharset0\cpg1251 A;}}\f0\'e9})",
                QStringLiteral("й")},
        TextRow{"OfAMac", R"({\rtf1\mac \'8e})", QStringLiteral("é")},
        TextRow{"OfAPc", R"({\rtf1\pc \'81})", QStringLiteral("ü")},
        TextRow{"OfAnInternationalPc", R"({\rtf1\pca \'9b})", QStringLiteral("ø")},
        TextRow{"OfASymbolFontArePrivateCharacters", rtf(R"(\f1\'b7)"), QStringLiteral("\uf0b7")},
        TextRow{"ThatStandAsTheyAreAreDecodedToo", rtf("caf\xe9"), QStringLiteral("café")},
        TextRow{"ThatCanAllBeUtf8AreUtf8", rtf("\xc3\x84pfel \xe2\x82\xac\\par"), QStringLiteral("Äpfel €")},
        TextRow{"OfAUtf8DocumentAreUtf8", "{\\urtf1 \xc3\xa9}", QStringLiteral("é")},
        TextRow{"OfADoubleByteMayBothBeEscaped", rtf(R"(\f3\'82\'a0)"), QStringLiteral("あ")},
        TextRow{"OfADoubleByteMayBeEscapedAndRaw", rtf("\\f3\\'82\xa0"), QStringLiteral("あ")},
        TextRow{"OfADoubleByteMayBeEscapedAndALetter", rtf(R"(\f3\'83A)"), QStringLiteral("ア")},
        TextRow{"OfADoubleByteMayBeEscapedAndABackslash", rtf(R"(\f3\'95\\x)"), QStringLiteral("表x")},
        TextRow{"OfADoubleByteMayStandOnTwoLines", rtf("\\f3\\'82\r\n\\'a0"), QStringLiteral("あ")},
        TextRow{"WithBadDigitsAreDropped", rtf(R"(a\'zzb)"), QStringLiteral("ab")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Unicode, RtfText,
    testing::Values(TextRow{"IsFollowedByOneCharacterThatStandsForIt", rtf(R"(\u960?x)"), QStringLiteral("πx")},
                    TextRow{"MayBeFollowedByAByteThatStandsForIt", rtf(R"(\u960\'70x)"), QStringLiteral("πx")},
                    TextRow{"MayBeFollowedByASymbolThatStandsForIt", rtf(R"(\u160\~x)"), QStringLiteral("\u00a0x")},
                    TextRow{"IsFollowedByAsManyCharactersAsAnnounced", rtf(R"(\uc2\u960pix)"), QStringLiteral("πx")},
                    TextRow{"MayBeFollowedByNothing", rtf(R"(\uc0\u960 x)"), QStringLiteral("πx")},
                    TextRow{"SkipsBytesOfADoubleByte", rtf(R"(\f3\uc2\u12354\'82\'a0x)"), QStringLiteral("あx")},
                    TextRow{"CountsAnewBehindTheGroup", rtf(R"({\uc0\u960 x}\u960?x)"), QStringLiteral("πxπx")},
                    TextRow{"SkipsNothingBeyondABrace", rtf(R"({\u960}xy)"), QStringLiteral("πxy")},
                    TextRow{"SkipsNothingBeyondAnUnknownWord", rtf(R"(\u960\foo xy)"), QStringLiteral("πxy")},
                    TextRow{"SkipsNothingBeyondAFormat", rtf(R"(\u960\b xy)"), QStringLiteral("πxy")},
                    TextRow{"NegativeIsTheUpperHalf", rtf(R"(\uc0\u-3913 )"), QStringLiteral("\uf0b7")},
                    TextRow{"ComesInSurrogatePairs", rtf(R"(\u-10179?\u-8694?)"), QStringLiteral("\U0001f60a")},
                    TextRow{"MayBeAWholeCodePoint", rtf(R"(\u128522?)"), QStringLiteral("\U0001f60a")},
                    TextRow{"WithoutANumberIsNothing", rtf(R"(a\u b)"), QStringLiteral("ab")},
                    TextRow{"IsPreferredOfTwoAlternatives", rtf(R"({\upr{ansi}{\*\ud{unicode \u960?}}}x)"),
                            QStringLiteral("unicode πx")},
                    TextRow{"MayBeCutOff", "{\\rtf1 a\\u960", QStringLiteral("aπ")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Destinations, RtfText,
    testing::Values(
        TextRow{"ThatAreUnknownAndIgnorableAreSkipped", rtf(R"(a{\*\foo b{c}\par d}e)"), QStringLiteral("ae")},
        TextRow{"ThatAreUnknownAreShown", rtf(R"(a{\foo b}c)"), QStringLiteral("abc")},
        TextRow{"ThatAreIgnorableMustBeginTheirGroup", rtf(R"({\b\*\foo b}c)"), QStringLiteral("bc")},
        TextRow{"ThatAreNotTextAreSkipped",
                rtf(R"({\info{\title T}}{\stylesheet{\s1 S;}}{\header h}{\footer f}{\headerl h}{\footerr f}a)"),
                QStringLiteral("a")},
        TextRow{"OfTheIndexAreSkipped", rtf(R"(a{\xe index}{\tc contents}b)"), QStringLiteral("ab")},
        TextRow{"OfPicturesAreSkipped", rtf("a{\\pict\\wmetafile8 0100\r\n0900}{\\nonshppict{\\pict 00}}b"),
                QStringLiteral("ab")},
        TextRow{"OfObjectsAreSkipped", rtf(R"(a{\object\objemb{\*\objdata 0105}{\result{\pict 00}}}b)"),
                QStringLiteral("ab")},
        TextRow{"OfPicturesMayHoldBinaryData", rtf("a{\\pict\\bin3 }}}}b"), QStringLiteral("ab")},
        TextRow{"OfFieldsShowTheirResult",
                rtf(R"(a{\field{\*\fldinst HYPERLINK "x"}{\fldrslt{\ul link}}}b{\field{\fldinst PAGE}{\fldrslt 1}})"),
                QStringLiteral("alinkb1")},
        TextRow{"OfListTextAreSkipped", rtf(R"({\listtext 1.\tab}one\par{\pntext\f1\'B7\tab}two)"),
                QStringLiteral("one\ntwo")},
        TextRow{"InsideSkippedOnesDoNotEndThem", rtf(R"({\info{\upr{a}{\*\ud{b}}}{\fonttbl{\f0 X;}}c}d)"),
                QStringLiteral("d")},
        TextRow{"OfRevisionsAndCommentsAreSkipped", rtf(R"(a{\*\annotation n}{\*\atnid x}b)"), QStringLiteral("ab")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Tables, RtfText,
    testing::Values(
        TextRow{"AreTabsAndParagraphs",
                rtf(R"(x\par\trowd\cellx100\cellx200\pard\intbl a\cell b\cell\row\trowd c\cell d\cell\row\pard y)"),
                QStringLiteral("x\na\tb\t\nc\td\t\ny")},
        TextRow{"HaveARowForAParagraph", rtf(R"(\trowd\cellx1\pard\intbl a\par b\cell\row\pard c)"),
                QStringLiteral("a b\t\nc")},
        TextRow{"FillRowsThatLackCells", rtf(R"(\trowd\cellx1\cellx2\cellx3\intbl a\cell\row\pard b)"),
                QStringLiteral("a\t\t\t\nb")},
        TextRow{"InTablesStayInTheirRow", rtf(R"(\trowd\cellx1\intbl a\nestcell b\nestcell\nestrow c\cell\row\pard d)"),
                QStringLiteral("a\tb\t c\t\nd")},
        TextRow{"MayBeOutOfOrder", rtf(R"(\cell a\row b\intbl\cell\row\trowd\row\par)"),
                QStringLiteral("\ta\nb\t\n\n ")}),
    rowName);

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
        FormatRow{"ThatAreUndefinedChangeNothing", rtf(R"(a\f9 b\f99999999999 c\f-1 d)"),
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
        FormatRow{"HaveHalfPoints", rtf(R"(\fs17 a\fs b)"), QStringLiteral("a: Arial 8.5 | b: Arial 12")},
        FormatRow{"HaveASizeAboveZeroThatIsNoPoster", rtf(R"(\fs0 a\fs-4 b\fs99999999999 c)"),
                  QStringLiteral("ab: Arial 10 | c: Arial 1638")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Characters, RtfCharacterFormat,
    testing::Values(
        FormatRow{"MayBeBold", rtf(R"(\b a\b0 b\b2 c)"),
                  QStringLiteral("a: Arial 10 bold | b: Arial 10 | c: Arial 10 bold")},
        FormatRow{"MayBeItalic", rtf(R"(\i a\i0 b)"), QStringLiteral("a: Arial 10 italic | b: Arial 10")},
        FormatRow{"MayBeUnderlined", rtf(R"(\ul a\ulnone b\ul c\ul0 d)"),
                  QStringLiteral("a: Arial 10 underline | b: Arial 10 | c: Arial 10 underline | d: Arial 10")},
        FormatRow{"MayBeUnderlinedInManyWays",
                  rtf(R"(\uld a\ul0\uldb b\ul0\ulw c\ul0\ulwave d\ul0\ulth e\ul0\uldash f\uldash0 g)"),
                  QStringLiteral("abcdef: Arial 10 underline | g: Arial 10")},
        FormatRow{"MayBeStruckOut", rtf(R"(\strike a\strike0\striked1 b\striked0 c)"),
                  QStringLiteral("ab: Arial 10 strike | c: Arial 10")},
        FormatRow{
            "MayStandAboveOrBelowTheLine", rtf(R"(\super a\sub b\nosupersub c\super d\super0 e)"),
            QStringLiteral("a: Arial 10 super | b: Arial 10 sub | c: Arial 10 | d: Arial 10 super | e: Arial 10")},
        FormatRow{"MayBeShifted", rtf(R"(\up6 a\dn6 b\up0 c\dn d)"),
                  QStringLiteral("a: Arial 10 super | b: Arial 10 sub | c: Arial 10 | d: Arial 10 sub")},
        FormatRow{"MayBeColoured", rtf(R"(\cf1 a\cf2 b)"),
                  QStringLiteral("a: Arial 10 ink#ff0000 | b: Arial 10 ink#008000")},
        FormatRow{"AreInTheAutomaticColourBeyondTheTable", rtf(R"(a\cf1\cf3 b\cf1\cf99999 c\cf1\cf-1 d\cf1\cf0 e)"),
                  QStringLiteral("abcde: Arial 10")},
        FormatRow{"MayBeMarked", rtf(R"(\highlight1 a\highlight0 b\cb2 c)"),
                  QStringLiteral("a: Arial 10 marker#ff0000 | b: Arial 10 | c: Arial 10 marker#008000")},
        FormatRow{"ArePlainAgainAfterPlain", rtf(R"(\f2\b\i\ul\strike\cf1\highlight2\super\fs40 a\plain b)"),
                  QStringLiteral("a: Arial CYR 20 bold italic underline strike super ink#ff0000 marker#008000"
                                 " | b: Arial 12")},
        FormatRow{"AreWhatTheyWereBehindAGroup", rtf(R"(a{\b b{\i c}d}e)"),
                  QStringLiteral("a: Arial 10 | b: Arial 10 bold | c: Arial 10 bold italic"
                                 " | d: Arial 10 bold | e: Arial 10")},
        FormatRow{"KeepTheirFormatOverPardAndPar", rtf(R"(\b a\par\pard b)"),
                  QStringLiteral("a: Arial 10 bold | b: Arial 10 bold")},
        FormatRow{"TakeNoFormatFromSkippedGroups", rtf(R"({\*\foo\b x}a{\info\i}b)"), QStringLiteral("ab: Arial 10")}),
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
        FormatRow{"AreAligned", rtf(R"(\qc a\par\qr b\par\ql c\par\qr\qj d)"),
                  QStringLiteral("a: center | b: right | c:  | d: ")},
        FormatRow{"AreIndented", rtf(R"(\li300\fi-150\ri450 a)"), QStringLiteral("a: left20 first-10 rightmargin30")},
        FormatRow{"MayBeginBeforeTheMargin", rtf(R"(\li-495 a)"), QStringLiteral("a: left-33")},
        FormatRow{"HaveSpaceAroundThem", rtf(R"(\sb150\sa300 a)"), QStringLiteral("a: above10 below20")},
        FormatRow{"HaveNoNegativeSpaceAroundThem", rtf(R"(\sb-150\sa-300 a)"), QStringLiteral("a: ")},
        FormatRow{"HaveLinesOfALeastHeight", rtf(R"(\sl300\slmult0 a)"), QStringLiteral("a: atleast20")},
        FormatRow{"HaveLinesOfAnExactHeight", rtf(R"(\sl-300 a)"), QStringLiteral("a: exactly20")},
        FormatRow{"HaveLinesOfAMultipleHeight", rtf(R"(\sl360\slmult1 a)"), QStringLiteral("a: percent150")},
        FormatRow{"HaveTabsOfManyKinds", rtf(R"(\tx150\tqr\tx300\tqc\tx450\tqdec\tx600 a)"),
                  QStringLiteral("a: tab0@10 tab1@20 tab2@30 tab3@40")},
        FormatRow{"AreWrittenFromTheRight", rtf(R"(\rtlpar a\par\ltrpar b)"), QStringLiteral("a: rtl | b: ")},
        FormatRow{"TakeTheFormatThatStandsAtTheirEnd", rtf(R"(a\qc\par b\par\pard c)"),
                  QStringLiteral("a: center | b: center | c: ")},
        FormatRow{"AreFormattedWithoutAParToo", rtf(R"(\qc a)"), QStringLiteral("a: center")},
        FormatRow{"KeepTheirFormatBehindAGroup", rtf(R"({\qc a}\par b)"), QStringLiteral("a: center | b: center")},
        FormatRow{"AreReset", rtf(R"(\qc\li150\fi150\ri150\sb150\sa150\sl300\tx150\rtlpar a\par\pard b)"),
                  QStringLiteral("a: center rtl left10 first10 rightmargin10 above10 below10 atleast20 tab0@10 | b: ")},
        FormatRow{"HaveIndentsThatSomePageCanHave", rtf(R"(\li2147483648\ri-2147483649 a)"),
                  QStringLiteral("a: left66666.7 rightmargin-66666.7")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Lists, RtfParagraphFormat,
    testing::Values(
        FormatRow{"OfBulletsAreLists",
                  rtf(R"({\pntext\f1\'B7\tab}{\*\pn\pnlvlblt\pnf1\pnindent0{\pntxtb\'B7}}one\par)"
                      "\r\n"
                      R"({\pntext\f1\'B7\tab}two\par \pard three\par)"),
                  QStringLiteral("one: bullet | two: bullet | three: ")},
        FormatRow{"BeginTheirMarkAtTheFirstLineIndent", rtf(R"({\*\pn\pnlvlblt{\pntxtb\'B7}}\fi-300\li750 one\par)"),
                  QStringLiteral("one: left30 bullet")},
        FormatRow{"OfNumbersCount", rtf(R"({\*\pn\pnlvlbody\pnstart1\pndec{\pntxta.}}a\par b\par)"),
                  QStringLiteral("a: 1. | b: 2.")},
        FormatRow{"OfLettersCount", rtf(R"({\*\pn\pnlvlbody\pnucltr{\pntxtb (}{\pntxta )}}a\par b\par)"),
                  QStringLiteral("a: (A) | b: (B)")},
        FormatRow{"OfRomanNumbersCount", rtf(R"({\*\pn\pnlvlbody\pnlcrm{\pntxta.}}a\par b\par)"),
                  QStringLiteral("a: i. | b: ii.")},
        FormatRow{"ContinueOverAChangeOfAlignment",
                  rtf(R"({\*\pn\pnlvlbody\pndec{\pntxta.}}a\par\pard{\*\pn\pnlvlbody\pndec{\pntxta.}}\qc b\par)"),
                  QStringLiteral("a: 1. | b: center 2.")},
        FormatRow{"BeginAnewBehindAParagraph",
                  rtf(R"({\*\pn\pnlvlbody\pndec{\pntxta.}}a\par\pard b\par{\*\pn\pnlvlbody\pndec{\pntxta.}}c\par)"),
                  QStringLiteral("a: 1. | b:  | c: 1.")},
        FormatRow{"AreNoneOfATypedBullet", rtf(R"(\bullet a)"), QStringLiteral("•a: ")},
        FormatRow{"AreNoneOfAnUnmarkedParagraph", rtf(R"({\*\pn\pnlvlcont}a)"), QStringLiteral("a: ")}),
    rowName);

TEST(RtfReader, AListOfAnyLengthIsMarkedToItsEnd)
{
    std::string body = R"({\*\pn\pnlvlblt{\pntxtb\'B7}})";
    constexpr int items = 3000;
    for (int item = 0; item < items; ++item) {
        body += "item\\par\r\n";
    }
    const auto document = documentOf(rtf(body));
    ASSERT_EQ(document->blockCount(), items);
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        ASSERT_NE(block.textList(), nullptr) << block.blockNumber();
    }
}

TEST(RtfReader, AParagraphMarkHasAFormatOfItsOwn)
{
    const auto document = documentOf(rtf(R"(\fs24 a\fs40\par\fs30\par\fs20 b\fs50)"));
    EXPECT_EQ(document->findBlockByNumber(0).charFormat().fontPointSize(), 20);
    EXPECT_EQ(document->findBlockByNumber(1).charFormat().fontPointSize(), 15);
    EXPECT_EQ(document->findBlockByNumber(2).charFormat().fontPointSize(), 10) << "of its last run";
}

TEST(RtfReader, AutomaticInkIsNoInkAtAll)
{
    const auto document = documentOf(rtf(R"(a\cf1 b\cf0 c)"));
    const QTextBlock block = document->firstBlock();
    EXPECT_FALSE(block.begin().fragment().charFormat().hasProperty(QTextFormat::ForegroundBrush));
    EXPECT_FALSE(block.charFormat().hasProperty(QTextFormat::ForegroundBrush));
}

TEST(RtfReader, ATopicNameIsReadAsItWasTyped)
{
    const auto notes = [](const std::string &name) {
        return textOf(*documentOf(
            R"({\rtf1\ansi\deff0\deflang1033{\fonttbl{\f0\fscript\fprq2\fcharset0 Comic Sans MS;}}\pard\f0\fs20 )" +
            name + R"( notes...\f1\par})"));
    };
    EXPECT_EQ(notes("Biology"), QStringLiteral("Biology notes..."));
    EXPECT_EQ(notes("\xc3\x96kologie"), QStringLiteral("Ökologie notes..."));
    EXPECT_EQ(notes("A{b}\\c"), QStringLiteral("Abnotes..."));
    EXPECT_EQ(notes("A}"), QStringLiteral("A"));
    EXPECT_EQ(notes("{"), QStringLiteral(" notes..."));
    EXPECT_EQ(notes("C:\\pict"), QStringLiteral("C:"));
}

TEST(RtfReader, ReadingReplacesTheDocumentAndLeavesNothingToUndo)
{
    const auto document = documentOf(rtf("old\\par old\\par"));
    readRtf(rtf("new"), *document);
    EXPECT_EQ(textOf(*document), QStringLiteral("new"));
    EXPECT_TRUE(document->isUndoRedoEnabled());
    EXPECT_FALSE(document->isUndoAvailable());
    EXPECT_FALSE(document->isModified());
    EXPECT_EQ(document->defaultFont().family(), QStringLiteral("House Sans"));
}

TEST(RtfReader, ReadingLeavesUndoDisabledWhereItWas)
{
    const auto document = emptyDocument();
    document->setUndoRedoEnabled(false);
    readRtf(rtf("a"), *document);
    EXPECT_FALSE(document->isUndoRedoEnabled());
}

struct ErrorRow
{
    const char *name;
    std::string rtf;
    std::optional<RtfError::Reason> reason;
    std::size_t offset;
};

void PrintTo(const ErrorRow &row, std::ostream *out)
{
    *out << row.rtf.substr(0, 80);
}

class RtfErrors : public testing::TestWithParam<ErrorRow>
{
};

TEST_P(RtfErrors, AreReportedWithTheirPlace)
{
    const auto document = emptyDocument();
    const std::optional<RtfError> error = readRtf(GetParam().rtf, *document);
    ASSERT_EQ(error.has_value(), GetParam().reason.has_value());
    if (error) {
        EXPECT_EQ(error->reason, *GetParam().reason);
        EXPECT_EQ(error->offset, GetParam().offset);
    }
}

std::string nested(int depth)
{
    const auto groups = static_cast<std::size_t>(depth - 1);
    return "{\\rtf1 " + std::string(groups, '{') + "x" + std::string(groups, '}') + "}";
}

INSTANTIATE_TEST_SUITE_P(
    RtfReader, RtfErrors,
    testing::Values(ErrorRow{"NoneOfAGoodText", R"({\rtf1 a{b}c})", std::nullopt, 0},
                    ErrorRow{"NoneOfAnEmptyText", "", std::nullopt, 0},
                    ErrorRow{"NoneOfWhatFollowsTheText", std::string("{\\rtf1 a}\r\n\0x", 12), std::nullopt, 0},
                    ErrorRow{"NotRtf", "hello", RtfError::Reason::NotRtf, 0},
                    ErrorRow{"NotRtfButAnyGroup", "{\\foo}", RtfError::Reason::NotRtf, 0},
                    ErrorRow{"AnOpenGroup", R"({\rtf1 a{b})", RtfError::Reason::UnbalancedGroups, 11},
                    ErrorRow{"ASurplusBrace", R"({\rtf1 a}b})", RtfError::Reason::UnbalancedGroups, 10},
                    ErrorRow{"APlaceBehindAByteOrderMark", "\xef\xbb\xbf{\\rtf1 a", RtfError::Reason::UnbalancedGroups,
                             11},
                    ErrorRow{"NoneOfGroupsUpToTheLimit", nested(maxRtfGroupDepth), std::nullopt, 0},
                    ErrorRow{"OneGroupTooMany", nested(maxRtfGroupDepth + 1), RtfError::Reason::TooDeep,
                             7U + maxRtfGroupDepth - 1}),
    rowName);

TEST(RtfReader, GroupsBeyondTheLimitKeepTheirText)
{
    EXPECT_EQ(textOf(*documentOf(nested(100'000))), QStringLiteral("x"));
    EXPECT_EQ(textOf(*documentOf("{\\rtf1 " + std::string(100'000, '{') + "x")), QStringLiteral("x"));
}

TEST(RtfReader, SkippingBeyondTheLimitEndsWithItsGroup)
{
    const std::string deep(1000, '{');
    EXPECT_EQ(textOf(*documentOf("{\\rtf1 " + deep + "a{\\*\\foo{\\*\\bar b}c}d" + std::string(1000, '}') + "e}")),
              QStringLiteral("ade"));
}

TEST(RtfReader, EveryPrefixOfARichTextIsRead)
{
    const std::string rich =
        rtf("\\qc\\li100\\fi-100{\\pntext\\f1\\'B7\\tab}{\\*\\pn\\pnlvlblt{\\pntxtb\\'B7}}a\\b "
            "b\\u960?\\f3\\'82\\'a0\\par"
            "{\\upr{x}{\\*\\ud{y\\u-10179?\\u-8694?}}}\\pard\\trowd\\cellx1\\intbl c\\cell\\row{\\field{\\*\\fldinst F}"
            "{\\fldrslt r}}{\\pict\\bin3 }}}00}\\tx10\\highlight1 z\\par") +
        "}";
    for (std::size_t length = 0; length <= rich.size(); ++length) {
        const auto document = emptyDocument();
        readRtf(std::string_view(rich).substr(0, length), *document);
        ASSERT_LE(textOf(*document).size(), static_cast<qsizetype>(length)) << length;
    }
}

TEST(RtfReader, EveryByteOfARichTextMayBeWrong)
{
    const std::string rich =
        rtf(R"(\qc{\*\pn\pnlvlblt{\pntxtb\'B7}}a\b b\u960?\par{\upr{x}{\*\ud{y}}}\intbl c\cell\row)");
    for (std::size_t place = 0; place < rich.size(); ++place) {
        for (const char wrong : {'{', '}', '\\', '9', '-', '*', '\0', '\xff'}) {
            std::string text = rich;
            text[place] = wrong;
            const auto document = emptyDocument();
            readRtf(text, *document);
            ASSERT_LE(textOf(*document).size(), static_cast<qsizetype>(text.size())) << place << wrong;
        }
    }
}

class RtfInsertion : public testing::Test
{
protected:
    RtfInsertion()
        : m_document(documentOf(rtf(R"(\qc one\par\qr two\par)")))
        , m_cursor(m_document.get())
    {
    }

    const std::unique_ptr<QTextDocument> m_document;
    QTextCursor m_cursor;
};

TEST_F(RtfInsertion, ReplacesTheSelection)
{
    m_cursor.setPosition(1);
    m_cursor.setPosition(5, QTextCursor::KeepAnchor);
    EXPECT_FALSE(insertRtf(rtf(R"(X\b Y)"), m_cursor).has_value());
    EXPECT_EQ(textOf(*m_document), QStringLiteral("oXYwo"));
    EXPECT_FALSE(m_cursor.hasSelection());
    EXPECT_EQ(m_cursor.position(), 3);
    EXPECT_EQ(m_cursor.charFormat().fontWeight(), QFont::Bold);
}

TEST_F(RtfInsertion, KeepsTheClosingPar)
{
    m_cursor.setPosition(1);
    insertRtf(rtf(R"(X\par)"), m_cursor);
    EXPECT_EQ(textOf(*m_document), QStringLiteral("oX\nne\ntwo"));
}

TEST_F(RtfInsertion, OfARunLeavesTheParagraphAsItWas)
{
    m_cursor.setPosition(1);
    insertRtf(rtf("X"), m_cursor);
    EXPECT_EQ(seen(m_document->firstBlock()), QStringLiteral("center"));
}

TEST_F(RtfInsertion, OfParagraphsLeavesTheRestOfTheParagraphAsItWas)
{
    m_cursor.setPosition(1);
    insertRtf(rtf(R"(\li150 X\par\pard\qr Y\par)"), m_cursor);
    EXPECT_EQ(textOf(*m_document), QStringLiteral("oX\nY\nne\ntwo"));
    EXPECT_EQ(seen(m_document->findBlockByNumber(0)), QStringLiteral("left10"));
    EXPECT_EQ(seen(m_document->findBlockByNumber(1)), QStringLiteral("right"));
    EXPECT_EQ(seen(m_document->findBlockByNumber(2)), QStringLiteral("center"));
    EXPECT_EQ(seen(m_document->findBlockByNumber(3)), QStringLiteral("right"));
}

TEST_F(RtfInsertion, IsOneStepToUndo)
{
    const QString before = seen(*m_document);
    m_cursor.setPosition(1);
    m_cursor.setPosition(5, QTextCursor::KeepAnchor);
    insertRtf(rtf(R"(X\par{\*\pn\pnlvlblt{\pntxtb\'B7}}Y\par\pard\b Z)"), m_cursor);
    const QString after = seen(*m_document);
    EXPECT_NE(after, before);
    m_document->undo();
    EXPECT_EQ(seen(*m_document), before);
    EXPECT_FALSE(m_document->isUndoAvailable());
    m_document->redo();
    EXPECT_EQ(seen(*m_document), after);
}

TEST_F(RtfInsertion, OfNothingDeletesTheSelection)
{
    m_cursor.select(QTextCursor::Document);
    EXPECT_FALSE(insertRtf("", m_cursor).has_value());
    EXPECT_EQ(textOf(*m_document), QString());
}

TEST_F(RtfInsertion, OfPlainTextTakesTheFormatAtTheCursor)
{
    const auto error = insertRtf("X\r\nY", m_cursor);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->reason, RtfError::Reason::NotRtf);
    EXPECT_EQ(textOf(*m_document), QStringLiteral("X\nYone\ntwo"));
    EXPECT_EQ(seen(m_document->findBlockByNumber(1)), QStringLiteral("center"));
}

TEST_F(RtfInsertion, AtNoCursorIsNothing)
{
    QTextCursor nowhere;
    EXPECT_FALSE(insertRtf(rtf("a"), nowhere).has_value());
}

} // namespace
