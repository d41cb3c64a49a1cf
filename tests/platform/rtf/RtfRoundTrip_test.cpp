#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfWriter.h"
#include "tests/platform/rtf/RtfDocuments.h"

#include <gtest/gtest.h>
#include <string>

namespace {

struct RoundTripRow
{
    const char *name;
    std::string body;
};

void PrintTo(const RoundTripRow &row, std::ostream *out)
{
    *out << row.body;
}

std::string rtf(const std::string &body)
{
    return R"({\rtf1\ansi\ansicpg1252\deff0{\fonttbl{\f0\fnil\fcharset0 Arial;}{\f1\fcharset2 Symbol;})"
           R"({\f2\fcharset204 Arial CYR;}{\f3\fcharset128 Gothic;}{\f4\fcharset134 Song;}{\f5\fcharset129 Batang;}})"
           R"({\colortbl ;\red255\green0\blue0;\red0\green128\blue0;;\red0\green0\blue0;}\pard\f0\fs20 )" +
           body + "}";
}

class RtfRoundTrip : public testing::TestWithParam<RoundTripRow>
{
};

TEST_P(RtfRoundTrip, ShowsTheSameDocument)
{
    const auto first = documentOf(rtf(GetParam().body));
    const auto second = documentOf(writeRtf(*first));
    EXPECT_EQ(seen(*second), seen(*first));
}

TEST_P(RtfRoundTrip, WritesTheSameBytes)
{
    const std::string first = writeRtf(*documentOf(rtf(GetParam().body)));
    EXPECT_EQ(writeRtf(*documentOf(first)), first);
}

TEST_P(RtfRoundTrip, ReadsWhatItWroteWithoutAnError)
{
    const auto document = emptyDocument();
    EXPECT_FALSE(readRtf(writeRtf(*documentOf(rtf(GetParam().body))), *document).has_value());
}

const auto rowName = [](const auto &info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(
    Of, RtfRoundTrip,
    testing::Values(
        RoundTripRow{"Nothing", ""}, RoundTripRow{"AWord", "word"},
        RoundTripRow{"TheDefaultFont", R"(\pard\f9\plain text)"},
        RoundTripRow{"Paragraphs", R"(one\par two\par\par\par four\par\par)"},
        RoundTripRow{"EmptyParagraphsOfManySizes", R"(\fs20\par\fs40\par\b\fs60\par)"},
        RoundTripRow{"MarksOfTheirOwnFormat", R"(\b one\b0\par\i two\par\i0\cf1 three\par)"},
        RoundTripRow{"EveryToggle", R"(\b a\i b\ul c\strike d\v e\b0\i0\ulnone\strike0\v0 f)"},
        RoundTripRow{"ScriptsAndShifts", R"(\super a\sub b\nosupersub c\up7 d\dn5 e\up0 f\super\up3 g)"},
        RoundTripRow{
            "FontsWithStrangeNames",
            R"({\fonttbl{\f7\fcharset0  A\tab  B\emdash\{\u26126? C;}{\f8\fcharset128 \'82\'a0\u233?;}}\f7 a\f8 b)"},
        RoundTripRow{
            "SymbolFontsWithNoughtsInTheirNames",
            "{\\fonttbl{\\f7\\fcharset2 Symb\\u0?\\'00ol;}{\\f8\\fcharset2 Wing\\'3bdings;}}\\f7 a\\'c4\\f8 b"},
        RoundTripRow{"Sizes", R"(\fs1 a\fs17 b\fs21 c\fs3276 d)"},
        RoundTripRow{"Colours", R"(\cf1 a\cf2\highlight1 b\cf0 c\cf3 d\cf4 e\highlight0 f)"},
        RoundTripRow{"Structure", R"(\{\}\\ \{\\b\})"},
        RoundTripRow{"BlanksAtEitherEnd", "\\b   a  \\b0   b \\par   c  "},
        RoundTripRow{"TabsAndLines", R"(\tab a\tab\line\line b\tab)"},
        RoundTripRow{"TypographicCharacters",
                     R"(\emdash\endash\lquote\rquote\ldblquote\rdblquote\bullet\~\_\zwj\zwnj)"},
        RoundTripRow{"MarksOfDirection", R"(a\ltrmark b\rtlmark c)"},
        RoundTripRow{"UnicodeOfManyPlanes", R"(\u960?\u-3913?\u-10179?\u-8694?\u8232?\u65279?)"},
        RoundTripRow{"HalfAPair", R"(a\u-10179?b\u-8694?c)"},
        RoundTripRow{"ControlCharacters", R"(a\u1?\u31?\u127?\u12?b)"},
        RoundTripRow{"DigitsBehindEverything", R"(\u960?1\'e92\b 3\tab 4\~5\emdash 6)"},
        RoundTripRow{"SymbolsAmongLetters", R"(a\f1\'b7b\'61\f0 c)"},
        RoundTripRow{"Cyrillic", R"(\f2\'cf\'f0\'e8\'e2\'e5\'f2, \'ec\'e8\'f0! \f0\'e9)"},
        RoundTripRow{"Japanese", R"(\f3\'93\'fa\'96\'7b\'8c\'ea ABC \'95\\ \'b1\f0 x)"},
        RoundTripRow{"Chinese", R"(\f4\'d6\'d0\'ce\'c4 text)"}, RoundTripRow{"Korean", R"(\f5\'c7\'d1\'b1\'db text)"},
        RoundTripRow{"CharactersThatTheFontDoesNotHave", R"(\f2 \u233?\u12354?\f3\u233?\u1087?)"},
        RoundTripRow{"Alignments", R"(\ql a\par\qc b\par\qr c\par\qj d\par)"},
        RoundTripRow{"Indents", R"(\li1\fi-1\ri7 a\par\pard\li720\fi-360 b\par\pard\li-500 c\par\pard\fi333 d\par)"},
        RoundTripRow{"TheLargestIndents", R"(\li2147483647\ri2147483647\fi-2147483648 a\par)"},
        RoundTripRow{"Spacing", R"(\sb120\sa61 a\par\sl360\slmult1 b\par\sl-240\slmult0 c\par\sl277\slmult0 d\par)"},
        RoundTripRow{"Tabs", R"(\tx1\tx720\tqr\tx1441\tqc\tx2000\tqdec\tx3001 a\tab b\par)"},
        RoundTripRow{"RightToLeft", R"(\rtlpar\qr a\par\ql b\par\qc c\par\ltrpar\qr d\par)"},
        RoundTripRow{"Bullets", R"({\*\pn\pnlvlblt{\pntxtb\'B7}}one\par two\par\pard three\par)"},
        RoundTripRow{"BulletsWithIndents", R"({\*\pn\pnlvlblt{\pntxtb\'B7}}\fi-200\li720 one\par\qc two\par)"},
        RoundTripRow{"BulletsBesideBullets",
                     R"({\*\pn\pnlvlblt{\pntxtb\'B7}}one\par\pard{\*\pn\pnlvlblt{\pntxtb\'B7}}\qc two\par)"},
        RoundTripRow{"BulletsInColours", R"({\*\pn\pnlvlblt{\pntxtb\'B7}}\cf1\b one\par\cf2\b0 two\par\cf0 three\par)"},
        RoundTripRow{"EmptyBullets", R"({\*\pn\pnlvlblt{\pntxtb\'B7}}\par\par\par)"},
        RoundTripRow{"Numbers", R"({\*\pn\pnlvlbody\pndec\pnstart3{\pntxta.}}a\par b\par\pard c\par)"},
        RoundTripRow{
            "NumbersInAnyStyle",
            R"({\*\pn\pnlvlbody\pnlcltr{\pntxta )}}a\par\pard{\*\pn\pnlvlbody\pnucrm{\pntxtb (}{\pntxta )}}b\par)"},
        RoundTripRow{"NumbersWithForeignSigns", R"(\f2{\*\pn\pnlvlbody\pnf2\pndec{\pntxtb\'b9}{\pntxta\'bb}}a\par)"},
        RoundTripRow{"NumbersWithSignsOfTwoBytes",
                     R"(\f3{\*\pn\pnlvlbody\pnf3\pndec{\pntxtb\'91\'e6}{\pntxta\u233?\emdash}}a\par)"},
        RoundTripRow{"NegativeIndents", R"(\li-500 a\par\pard\li200\fi-700 b\par\pard\fi-500 c\par)"},
        RoundTripRow{"NegativeIndentsOfBullets", R"({\*\pn\pnlvlblt{\pntxtb\'B7}}\li-500\fi-200 a\par)"},
        RoundTripRow{"Capitals", R"(\caps a\caps0 b\scaps c\scaps0 d)"},
        RoundTripRow{"Links",
                     R"(a {\field{\*\fldinst HYPERLINK "http://a.b/c\'e9%20d"}{\fldrslt\ul\b link\par more}} c\par)"},
        RoundTripRow{"LinksBesideLinks",
                     R"({\field{\*\fldinst HYPERLINK a}{\fldrslt x}}{\field{\*\fldinst HYPERLINK b}{\fldrslt\b y}}z)"},
        RoundTripRow{"LinksWithStrangeAddresses",
                     R"({\field{\*\fldinst HYPERLINK "\\\\\\\\s\\\\x\{\}\\"q"}{\fldrslt x}})"},
        RoundTripRow{"LinksWithControlCharacters",
                     "{\\field{\\*\\fldinst HYPERLINK \"a\vb\\line c\\tab\"}{\\fldrslt x}}"},
        RoundTripRow{"LinksInLists",
                     R"({\*\pn\pnlvlblt{\pntxtb\'B7}}{\field{\*\fldinst HYPERLINK a}{\fldrslt x\par y}}\par z)"},
        RoundTripRow{"Pictures",
                     R"(a{\pict\pngblip\picwgoal300\pichgoal400 00ff}b{\pict\wmetafile8 0}{\pict\wmetafile8 0})"},
        RoundTripRow{
            "PicturesInTwoForms",
            R"({\*\shppict{\pict\pngblip 00}}{\nonshppict{\pict\wmetafile8 01}}{\*\shppict{\pict\emfblip 02}}x)"},
        RoundTripRow{"PicturesWithDigitsBehindTheWord",
                     R"({\*\shppict 1{\pict 2 00}}{\nonshppict 3{\pict}}{\pict 4 00}{\object 5})"},
        RoundTripRow{"PicturesWithNoughtsBehindTheWord",
                     std::string("{\\*\\shppict\0001\\pict}{\\pict\0002}{\\object\000-3}", 40)},
        RoundTripRow{"PicturesInWordOnly", R"(a{\*\shppict\bin5 \pict}b{\*\shppict\'5cpict}c)"},
        RoundTripRow{"PicturesInLinks", R"({\field{\*\fldinst HYPERLINK a}{\fldrslt\b{\pict 00}}}x)"},
        RoundTripRow{"PicturesOfRawBytes", std::string(R"(a{\pict\pngblip\bin4 )") + "}\xff{\\" + "}b"},
        RoundTripRow{"Objects", R"(\i a{\object\objemb\objw100{\*\objdata 01050000}{\result words\'e9}}b)"},
        RoundTripRow{"Notes", R"(a{\footnote\i n\par m}b)"},
        RoundTripRow{"ATable", R"(\trowd\cellx1\cellx2\intbl a\cell b\cell\row\intbl c\cell\row\pard d\par)"}),
    rowName);

TEST(RtfRoundTripOfSelections, PutsAParagraphBackWhereItWas)
{
    const auto document = documentOf(rtf(R"(\qc one\par\qr\b two\b0\par\pard three\par)"));
    const QString before = seen(*document);
    QTextCursor cursor(document.get());
    cursor.setPosition(4);
    cursor.setPosition(8, QTextCursor::KeepAnchor);
    const std::string cut = writeRtf(cursor);
    cursor.removeSelectedText();
    EXPECT_NE(seen(*document), before);
    insertRtf(cut, cursor);
    EXPECT_EQ(textOf(*document), QStringLiteral("one\ntwo\nthree"));
    EXPECT_EQ(seen(*document), before);
}

TEST(RtfRoundTripOfNotes, TheFirstSavingOfATemplateIsTheLastChange)
{
    const auto document =
        documentOf(R"({\rtf1\ansi\deff0\deflang1033{\fonttbl{\f0\fscript\fprq2\fcharset0 Comic Sans MS;}})"
                   R"(\pard\f0\fs20 Biology notes...\f1\par})");
    const std::string saved = writeRtf(*document);
    EXPECT_EQ(saved,
              "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fnil\\fcharset0 Comic Sans MS;}}\r\n"
              "\\viewkind4\\uc1\\pard\\f0\\fs20 Biology notes...\\par\r\n}\r\n");
    EXPECT_EQ(writeRtf(*documentOf(saved)), saved);
}

} // namespace
