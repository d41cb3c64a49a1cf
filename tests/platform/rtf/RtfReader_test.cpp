#include "platform/rtf/RtfReader.h"
#include "tests/platform/rtf/RtfDocuments.h"

#include <QTextCursor>

#include <gtest/gtest.h>
#include <string>

namespace {

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
                    TextRow{"LosesOneClosingPar", wholeRtf(R"(hello\par)"), QStringLiteral("hello")},
                    TextRow{"MayEndWithoutPar", wholeRtf("hello"), QStringLiteral("hello")},
                    TextRow{"KeepsAllParsButTheClosingOne", wholeRtf(R"(hello\par\par)"), QStringLiteral("hello\n")},
                    TextRow{"KeepsEmptyParagraphsBeforeItsText", wholeRtf(R"(\par\par a)"), QStringLiteral("\n\na")},
                    TextRow{"EndsAtItsClosingBrace", wholeRtf("a") + " b\\par {\\b x", QStringLiteral("a")},
                    TextRow{"EndsAtASurplusBrace", wholeRtf("a}b}c"), QStringLiteral("a")},
                    TextRow{"KeepsItsTextWhenGroupsStayOpen", "{\\rtf1 a{\\b b{\\i c", QStringLiteral("abc")},
                    TextRow{"MayEndInTheMidstOfAWord", "{\\rtf1 a\\pa", QStringLiteral("a")},
                    TextRow{"MayEndInABackslash", "{\\rtf1 a\\", QStringLiteral("a")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    TheText, RtfText,
    testing::Values(
        TextRow{"OfALineBreakIsNothing", wholeRtf("a\r\nb"), QStringLiteral("ab")},
        TextRow{"OfAnEscapedLineBreakIsAParagraph", wholeRtf("a\\\r\nb\\\nc\\\rd"), QStringLiteral("a\nb\nc\nd")},
        TextRow{"OfEscapedBracesIsBraces", wholeRtf(R"(\{a\}\\b)"), QStringLiteral("{a}\\b")},
        TextRow{"HasASecondBlankBehindAWord", wholeRtf(R"(a\b  c)"), QStringLiteral("a c")},
        TextRow{"OfALineIsALineSeparator", wholeRtf(R"(a\line b)"), QStringLiteral("a\u2028b")},
        TextRow{"OfATabIsATab", wholeRtf("a\tb\\tab c\\\td"), QStringLiteral("a\tb\tc\td")},
        TextRow{"OfPagesAndSectionsIsParagraphs", wholeRtf(R"(a\page b\sect c)"), QStringLiteral("a\nb\nc")},
        TextRow{"OfDashesQuotesAndBullets", wholeRtf(R"(\emdash\endash\lquote a\rquote\ldblquote b\rdblquote\bullet)"),
                QStringLiteral("—–‘a’“b”•")},
        TextRow{"OfWideBlanksIsBlanks", wholeRtf(R"(a\emspace b\enspace c\qmspace d)"), QStringLiteral("a b cd")},
        TextRow{"OfMarksOfDirectionAndJoiners", wholeRtf(R"(\ltrmark\rtlmark\zwj\zwnj)"),
                QStringLiteral("\u200e\u200f\u200d\u200c")},
        TextRow{"OfHardBlanksAndHyphens", wholeRtf(R"(a\~b\_c\-d)"), QStringLiteral("a\u00a0b\u2011cd")},
        TextRow{"OfNulIsABlank", wholeRtf(std::string("a\0b", 3)), QStringLiteral("a b")},
        TextRow{"OfUnknownWordsIsNothing", wholeRtf(R"(a\foo b\foo12 c\FOO-3 d\| e)"), QStringLiteral("abcd e")},
        TextRow{"OfHiddenTextIsKept", wholeRtf(R"(a\v b\v0 c)"), QStringLiteral("abc")},
        TextRow{"OfBinaryDataIsSkipped", wholeRtf("a\\bin4 x}{yb"), QStringLiteral("ab")},
        TextRow{"BeforeBinaryDataWithoutEndIsKept", "{\\rtf1 a\\bin99999999 xyz}", QStringLiteral("a")},
        TextRow{"MayNotSmuggleInAFrame", wholeRtf(R"(a\u-560?\u-559?b)"), QStringLiteral("a\ufffd\ufffdb")},
        TextRow{"OfAParagraphSeparatorIsAParagraph", wholeRtf(R"(a\u8233?b)"), QStringLiteral("a\nb")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Bytes, RtfText,
    testing::Values(
        TextRow{"AreInTheCodePageOfTheirFont", wholeRtf(R"(\'e9\f2\'e9\f0\'e9)"), QStringLiteral("éйé")},
        TextRow{"OfAnUndefinedFontStayInTheCurrentOne", wholeRtf(R"(\f2\f9\'e9)"), QStringLiteral("й")},
        TextRow{"ReturnToTheCodePageOfTheOuterGroup", wholeRtf(R"({\f2\'e9}\'e9)"), QStringLiteral("йé")},
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
        TextRow{"OfTheSymbolFontAreWhatItShows", wholeRtf(R"(\f1\'b7a)"), QStringLiteral("\u2022\u03b1")},
        TextRow{"ThatStandAsTheyAreAreDecodedToo", wholeRtf("caf\xe9"), QStringLiteral("café")},
        TextRow{"ThatCanAllBeUtf8AreUtf8", wholeRtf("\xc3\x84pfel \xe2\x82\xac\\par"), QStringLiteral("Äpfel €")},
        TextRow{"OfAUtf8DocumentAreUtf8", "{\\urtf1 \xc3\xa9}", QStringLiteral("é")},
        TextRow{"OfADoubleByteMayBothBeEscaped", wholeRtf(R"(\f3\'82\'a0)"), QStringLiteral("あ")},
        TextRow{"OfADoubleByteMayBeEscapedAndRaw", wholeRtf("\\f3\\'82\xa0"), QStringLiteral("あ")},
        TextRow{"OfADoubleByteMayBeEscapedAndALetter", wholeRtf(R"(\f3\'83A)"), QStringLiteral("ア")},
        TextRow{"OfADoubleByteMayBeEscapedAndABackslash", wholeRtf(R"(\f3\'95\\x)"), QStringLiteral("表x")},
        TextRow{"OfADoubleByteMayStandOnTwoLines", wholeRtf("\\f3\\'82\r\n\\'a0"), QStringLiteral("あ")},
        TextRow{"WithBadDigitsAreDropped", wholeRtf(R"(a\'zzb)"), QStringLiteral("ab")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Unicode, RtfText,
    testing::Values(
        TextRow{"IsFollowedByOneCharacterThatStandsForIt", wholeRtf(R"(\u960?x)"), QStringLiteral("πx")},
        TextRow{"MayBeFollowedByAByteThatStandsForIt", wholeRtf(R"(\u960\'70x)"), QStringLiteral("πx")},
        TextRow{"MayBeFollowedByASymbolThatStandsForIt", wholeRtf(R"(\u160\~x)"), QStringLiteral("\u00a0x")},
        TextRow{"IsFollowedByAsManyCharactersAsAnnounced", wholeRtf(R"(\uc2\u960pix)"), QStringLiteral("πx")},
        TextRow{"MayBeFollowedByNothing", wholeRtf(R"(\uc0\u960 x)"), QStringLiteral("πx")},
        TextRow{"SkipsBytesOfADoubleByte", wholeRtf(R"(\f3\uc2\u12354\'82\'a0x)"), QStringLiteral("あx")},
        TextRow{"CountsAnewBehindTheGroup", wholeRtf(R"({\uc0\u960 x}\u960?x)"), QStringLiteral("πxπx")},
        TextRow{"SkipsNothingBeyondABrace", wholeRtf(R"({\u960}xy)"), QStringLiteral("πxy")},
        TextRow{"SkipsNothingBeyondAnUnknownWord", wholeRtf(R"(\u960\foo xy)"), QStringLiteral("πxy")},
        TextRow{"SkipsNothingBeyondAFormat", wholeRtf(R"(\u960\b xy)"), QStringLiteral("πxy")},
        TextRow{"NegativeIsTheUpperHalf", wholeRtf(R"(\uc0\u-3913 )"), QStringLiteral("\uf0b7")},
        TextRow{"ComesInSurrogatePairs", wholeRtf(R"(\u-10179?\u-8694?)"), QStringLiteral("\U0001f60a")},
        TextRow{"MayBeAWholeCodePoint", wholeRtf(R"(\u128522?)"), QStringLiteral("\U0001f60a")},
        TextRow{"WithoutANumberIsNothing", wholeRtf(R"(a\u b)"), QStringLiteral("ab")},
        TextRow{"IsPreferredOfTwoAlternatives", wholeRtf(R"({\upr{ansi}{\*\ud{unicode \u960?}}}x)"),
                QStringLiteral("unicode πx")},
        TextRow{"MayBeCutOff", "{\\rtf1 a\\u960", QStringLiteral("aπ")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Destinations, RtfText,
    testing::Values(
        TextRow{"ThatAreUnknownAndIgnorableAreSkipped", wholeRtf(R"(a{\*\foo b{c}\par d}e)"), QStringLiteral("ae")},
        TextRow{"ThatAreUnknownAreShown", wholeRtf(R"(a{\foo b}c)"), QStringLiteral("abc")},
        TextRow{"ThatAreIgnorableMustBeginTheirGroup", wholeRtf(R"({\b\*\foo b}c)"), QStringLiteral("bc")},
        TextRow{"ThatAreNotTextAreSkipped",
                wholeRtf(R"({\info{\title T}}{\stylesheet{\s1 S;}}{\header h}{\footer f}{\headerl h}{\footerr f}a)"),
                QStringLiteral("a")},
        TextRow{"OfTheIndexAreSkipped", wholeRtf(R"(a{\xe index}{\tc contents}b)"), QStringLiteral("ab")},
        TextRow{"OfPicturesAreACharacter", wholeRtf("a{\\pict\\wmetafile8 0100\r\n0900}{\\nonshppict{\\pict 00}}b"),
                QStringLiteral("a\ufffcb")},
        TextRow{"OfPicturesInTwoFormsAreACharacter",
                wholeRtf("a{\\*\\shppict{\\pict\\pngblip 00}}{\\nonshppict{\\pict\\wmetafile8 00}}b"),
                QStringLiteral("a\ufffcb")},
        TextRow{"OfObjectsAreACharacter", wholeRtf(R"(a{\object\objemb{\*\objdata 0105}{\result{\pict 00}}}b)"),
                QStringLiteral("a\ufffcb")},
        TextRow{"OfPicturesMayHoldBinaryData", wholeRtf("a{\\pict\\bin3 }}}}b"), QStringLiteral("a\ufffcb")},
        TextRow{"OfPicturesThatAreSkippedAreSkipped", wholeRtf(R"(a{\*\unknown{\pict 00}{\object}}b)"),
                QStringLiteral("ab")},
        TextRow{
            "OfFieldsShowTheirResult",
            wholeRtf(R"(a{\field{\*\fldinst HYPERLINK "x"}{\fldrslt{\ul link}}}b{\field{\fldinst PAGE}{\fldrslt 1}})"),
            QStringLiteral("alinkb1")},
        TextRow{"OfListTextAreSkipped", wholeRtf(R"({\listtext 1.\tab}one\par{\pntext\f1\'B7\tab}two)"),
                QStringLiteral("one\ntwo")},
        TextRow{"InsideSkippedOnesDoNotEndThem", wholeRtf(R"({\info{\upr{a}{\*\ud{b}}}{\fonttbl{\f0 X;}}c}d)"),
                QStringLiteral("d")},
        TextRow{"OfCommentsStandWhereTheyWereMade",
                wholeRtf(
                    R"(in{\*\atnid A}{\*\atnauthor Ann}{\*\annotation{\*\atnref 1}\pard\qc Why?\par So.\par} put\par)"),
                QStringLiteral("in A Ann Why?\u2028So. put")},
        TextRow{"OfFootNotesStandWhereTheirMarkIs", wholeRtf(R"(a{\footnote\pard Note\par}, b {\footnote x} c\par)"),
                QStringLiteral("a Note , b x c")},
        TextRow{"OfNotesInNotesAreText", wholeRtf(R"(a{\footnote b{\footnote c}d}e\par f\par)"),
                QStringLiteral("a b c d e\nf")},
        TextRow{"OfTextBoxesAreParagraphs",
                wholeRtf(R"(a{\shp{\*\shpinst{\sp{\sn x}{\sv 1}}{\shptxt\pard\qc box\par two}}{\shprslt old}}b\par)"),
                QStringLiteral("a\nbox\ntwo\nb")},
        TextRow{"OfOldTextBoxesAreParagraphs", wholeRtf(R"({\*\do\dobxcolumn{\dptxbxtext box\par}}b\par)"),
                QStringLiteral("box\nb")},
        TextRow{"OfHeadersAndFootersAreSkipped", wholeRtf(R"({\header h\par}{\footerf f\par}a\par)"),
                QStringLiteral("a")},
        TextRow{"OfHeadersAreReadWhereThereIsNothingElse", wholeRtf(R"({\header h\par}{\footer f\par})"),
                QStringLiteral("h\nf")},
        TextRow{"OfHeadersAreReadAmongEmptyParagraphs", wholeRtf(R"({\header h\par}\qc\par\par\par)"),
                QStringLiteral("h\n\n\n")},
        TextRow{"OfSymbolsAreCharacters",
                wholeRtf(R"(a{\field{\*\fldinst SYMBOL 233 \\f "Arial" \\s 10}{\fldrslt\f0}}b)"),
                QStringLiteral("a\u00e9b")},
        TextRow{"OfSymbolsWithAResultAreTheirResult", wholeRtf(R"(a{\field{\*\fldinst SYMBOL 233}{\fldrslt\f0 x}}b)"),
                QStringLiteral("axb")},
        TextRow{"OfSeveralTextsWithABraceTooManyBetween", wholeRtf("a\\par") + "}}\r\n" + wholeRtf("b\\par"),
                QStringLiteral("a\nb")},
        TextRow{"OfSeveralTextsBehindEachOther", wholeRtf("a\\par") + "\r\nand " + wholeRtf("b\\par"),
                QStringLiteral("a\nand b")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Tables, RtfText,
    testing::Values(
        TextRow{
            "AreTabsAndParagraphs",
            wholeRtf(R"(x\par\trowd\cellx100\cellx200\pard\intbl a\cell b\cell\row\trowd c\cell d\cell\row\pard y)"),
            QStringLiteral("x\na\tb\t\nc\td\t\ny")},
        TextRow{"HaveARowForAParagraph", wholeRtf(R"(\trowd\cellx1\pard\intbl a\par b\cell\row\pard c)"),
                QStringLiteral("a b\t\nc")},
        TextRow{"FillRowsThatLackCells", wholeRtf(R"(\trowd\cellx1\cellx2\cellx3\intbl a\cell\row\pard b)"),
                QStringLiteral("a\t\t\t\nb")},
        TextRow{"InTablesStayInTheirRow",
                wholeRtf(R"(\trowd\cellx1\intbl a\nestcell b\nestcell\nestrow c\cell\row\pard d)"),
                QStringLiteral("a\tb\t c\t\nd")},
        TextRow{"MayBeOutOfOrder", wholeRtf(R"(\cell a\row b\intbl\cell\row\trowd\row\par)"),
                QStringLiteral("\ta\nb\t\n\n ")}),
    rowName);

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
    EXPECT_EQ(notes("C:\\pict"), QStringLiteral("C:\ufffc"));
}

TEST(RtfReader, ReadingReplacesTheDocumentAndLeavesNothingToUndo)
{
    const auto document = documentOf(wholeRtf("old\\par old\\par"));
    readRtf(wholeRtf("new"), *document);
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
    readRtf(wholeRtf("a"), *document);
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
        wholeRtf(
            "\\qc\\li100\\fi-100{\\pntext\\f1\\'B7\\tab}{\\*\\pn\\pnlvlblt{\\pntxtb\\'B7}}a\\b "
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
        wholeRtf(R"(\qc{\*\pn\pnlvlblt{\pntxtb\'B7}}a\b b\u960?\par{\upr{x}{\*\ud{y}}}\intbl c\cell\row)");
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
        : m_document(documentOf(wholeRtf(R"(\qc one\par\qr two\par)")))
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
    EXPECT_FALSE(insertRtf(wholeRtf(R"(X\b Y)"), m_cursor).has_value());
    EXPECT_EQ(textOf(*m_document), QStringLiteral("oXYwo"));
    EXPECT_FALSE(m_cursor.hasSelection());
    EXPECT_EQ(m_cursor.position(), 3);
    EXPECT_EQ(m_cursor.charFormat().fontWeight(), QFont::Bold);
}

TEST_F(RtfInsertion, KeepsTheClosingPar)
{
    m_cursor.setPosition(1);
    insertRtf(wholeRtf(R"(X\par)"), m_cursor);
    EXPECT_EQ(textOf(*m_document), QStringLiteral("oX\nne\ntwo"));
}

TEST_F(RtfInsertion, OfARunLeavesTheParagraphAsItWas)
{
    m_cursor.setPosition(1);
    insertRtf(wholeRtf("X"), m_cursor);
    EXPECT_EQ(seen(m_document->firstBlock()), QStringLiteral("center"));
}

TEST_F(RtfInsertion, OfParagraphsLeavesTheRestOfTheParagraphAsItWas)
{
    m_cursor.setPosition(1);
    insertRtf(wholeRtf(R"(\li150 X\par\pard\qr Y\par)"), m_cursor);
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
    insertRtf(wholeRtf(R"(X\par{\*\pn\pnlvlblt{\pntxtb\'B7}}Y\par\pard\b Z)"), m_cursor);
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
    EXPECT_FALSE(insertRtf(wholeRtf("a"), nowhere).has_value());
}

} // namespace
