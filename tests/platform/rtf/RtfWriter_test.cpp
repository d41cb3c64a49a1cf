#include "platform/rtf/RtfObjectFormat.h"
#include "platform/rtf/RtfWriter.h"
#include "tests/platform/rtf/RtfDocuments.h"

#include <QTextCursor>

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace {

const std::string head = "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fnil\\fcharset0 House Sans;}";
const std::string body = "}\r\n\\viewkind4\\uc1\\pard";
const std::string bodyWithColors = "\r\n\\viewkind4\\uc1\\pard";

struct WriterRow
{
    const char *name;
    std::function<void(QTextCursor &)> make;
    std::string expected; ///< behind the head
};

void PrintTo(const WriterRow &row, std::ostream *out)
{
    *out << row.name;
}

class RtfWriting : public testing::TestWithParam<WriterRow>
{
};

TEST_P(RtfWriting, GivesTheExpectedBytes)
{
    const auto document = emptyDocument();
    QTextCursor cursor(document.get());
    GetParam().make(cursor);
    EXPECT_EQ(writeRtf(*document), head + GetParam().expected);
    EXPECT_EQ(writeRtf(*document), head + GetParam().expected) << "written again";
}

const auto rowName = [](const auto &info) { return info.param.name; };

/// A row that inserts \p text as it is.
WriterRow text(const char *name, const QString &inserted, const std::string &expected)
{
    return {name, [inserted](QTextCursor &cursor) { cursor.insertText(inserted); },
            body + "\\f0\\fs16 " + expected + "\\par\r\n}\r\n"};
}

/// A row that inserts "a", then "b" in a format of its own, then "c" as "a".
WriterRow run(const char *name, const std::function<void(QTextCharFormat &)> &change, const std::string &expected)
{
    return {name,
            [change](QTextCursor &cursor) {
                QTextCharFormat format;
                cursor.insertText(QStringLiteral("a"), format);
                change(format);
                cursor.insertText(QStringLiteral("b"), format);
                cursor.insertText(QStringLiteral("c"), QTextCharFormat());
            },
            expected};
}

/// A row of one paragraph "a" in a format of its own.
WriterRow paragraph(const char *name, const std::function<void(QTextBlockFormat &)> &change,
                    const std::string &expected)
{
    return {name,
            [change](QTextCursor &cursor) {
                QTextBlockFormat format;
                change(format);
                cursor.setBlockFormat(format);
                cursor.insertText(QStringLiteral("a"));
            },
            body + expected + "\\f0\\fs16 a\\par\r\n}\r\n"};
}

INSTANTIATE_TEST_SUITE_P(
    Text, RtfWriting,
    testing::Values(WriterRow{"OfNothingIsAnEmptyParagraph", [](QTextCursor &) {}, body + "\\f0\\fs16\\par\r\n}\r\n"},
                    text("IsWrittenAsItIs", QStringLiteral("a b"), "a b"),
                    text("KeepsItsFirstBlank", QStringLiteral(" a"), " a"),
                    text("EscapesStructure", QStringLiteral("{a}\\"), "\\{a\\}\\\\"),
                    text("HasAWordForATab", QStringLiteral("a\tb"), "a\\tab b"),
                    text("HasAWordForALineSeparator", QStringLiteral("a\u2028b"), "a\\line\r\nb"),
                    text("HasParagraphs", QStringLiteral("a\n\nb"), "a\\par\r\n\\par\r\nb"),
                    text("IsInBytesOfItsFont", QStringLiteral("café €"), "caf\\'e9 \\'80"),
                    text("IsUnicodeBeyondItsFont", QStringLiteral("π1"), "\\u960?1"),
                    text("IsSignedUnicodeInTheUpperHalf", QStringLiteral("\U0001f60a"), "\\u-10179?\\u-8694?"),
                    text("IsUnicodeForHalfAPair", QString(QChar(0xd83d)), "\\u-10179?"),
                    text("HasWordsForJoinersAndHardHyphens", QStringLiteral("a\u200db\u2011c"), "a\\zwj b\\_c"),
                    text("IsUnicodeForControlCharacters", QStringLiteral("a\u0001\u007f"), "a\\u1?\\u127?")),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Runs, RtfWriting,
    testing::Values(
        run(
            "MayBeBold", [](QTextCharFormat &format) { format.setFontWeight(QFont::Bold); },
            body + "\\f0\\fs16 a\\b b\\b0 c\\par\r\n}\r\n"),
        run(
            "MayBeItalic", [](QTextCharFormat &format) { format.setFontItalic(true); },
            body + "\\f0\\fs16 a\\i b\\i0 c\\par\r\n}\r\n"),
        run(
            "MayBeUnderlined", [](QTextCharFormat &format) { format.setFontUnderline(true); },
            body + "\\f0\\fs16 a\\ul b\\ulnone c\\par\r\n}\r\n"),
        run(
            "MayBeStruckOut", [](QTextCharFormat &format) { format.setFontStrikeOut(true); },
            body + "\\f0\\fs16 a\\strike b\\strike0 c\\par\r\n}\r\n"),
        run(
            "MayStandAboveTheLine",
            [](QTextCharFormat &format) { format.setVerticalAlignment(QTextCharFormat::AlignSuperScript); },
            body + "\\f0\\fs16 a\\super b\\nosupersub c\\par\r\n}\r\n"),
        run(
            "MayStandBelowTheLine",
            [](QTextCharFormat &format) { format.setVerticalAlignment(QTextCharFormat::AlignSubScript); },
            body + "\\f0\\fs16 a\\sub b\\nosupersub c\\par\r\n}\r\n"),
        run(
            "MayBeOfAnotherSize", [](QTextCharFormat &format) { format.setFontPointSize(8.5); },
            body + "\\f0\\fs16 a\\fs17 b\\fs16 c\\par\r\n}\r\n"),
        run(
            "MayBeSizedInPixels", [](QTextCharFormat &format) { format.setProperty(QTextFormat::FontPixelSize, 16); },
            body + "\\f0\\fs16 a\\fs24 b\\fs16 c\\par\r\n}\r\n"),
        run(
            "MayBeInAnotherFont", [](QTextCharFormat &format) { format.setFontFamilies({QStringLiteral("Arial")}); },
            "{\\f1\\fnil\\fcharset0 Arial;}" + body + "\\f0\\fs16 a\\f1 b\\f0 c\\par\r\n}\r\n"),
        run(
            "MayBeColoured", [](QTextCharFormat &format) { format.setForeground(QColor(1, 2, 3)); },
            "}\r\n{\\colortbl ;\\red1\\green2\\blue3;}" + bodyWithColors + "\\f0\\fs16 a\\cf1 b\\cf0 c\\par\r\n}\r\n"),
        run(
            "MayBeMarked", [](QTextCharFormat &format) { format.setBackground(QColor(255, 255, 0)); },
            "}\r\n{\\colortbl ;\\red255\\green255\\blue0;}" + bodyWithColors +
                "\\f0\\fs16 a\\highlight1 b\\highlight0 c\\par\r\n}\r\n"),
        run(
            "AreWrittenByTheirDifferences",
            [](QTextCharFormat &format) {
                format.setForeground(Qt::red);
                format.setFontUnderline(true);
                format.setFontWeight(QFont::Bold);
                format.setFontItalic(true);
                format.setFontPointSize(10);
            },
            "}\r\n{\\colortbl ;\\red255\\green0\\blue0;}" + bodyWithColors +
                "\\f0\\fs16 a\\cf1\\ul\\b\\i\\fs20 b\\cf0\\ulnone\\b0\\i0\\fs16 c\\par\r\n}\r\n")),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Paragraphs, RtfWriting,
    testing::Values(
        paragraph(
            "MayBeCentred", [](QTextBlockFormat &format) { format.setAlignment(Qt::AlignHCenter); }, "\\qc"),
        paragraph(
            "MayBeAlignedRight", [](QTextBlockFormat &format) { format.setAlignment(Qt::AlignRight); }, "\\qr"),
        paragraph(
            "MayBeJustifiedWhichIsLeft", [](QTextBlockFormat &format) { format.setAlignment(Qt::AlignJustify); }, ""),
        paragraph(
            "MayBeWrittenFromTheRight",
            [](QTextBlockFormat &format) {
                format.setLayoutDirection(Qt::RightToLeft);
                format.setAlignment(Qt::AlignLeft); // the leading side
            },
            "\\rtlpar\\qr"),
        paragraph(
            "MayBeIndented",
            [](QTextBlockFormat &format) {
                format.setTextIndent(-10);
                format.setLeftMargin(20);
                format.setRightMargin(30);
            },
            "\\fi-150\\li300\\ri450"),
        paragraph(
            "MayBeIndentedInSteps",
            [](QTextBlockFormat &format) {
                format.setIndent(2);
                format.setLeftMargin(1);
            },
            "\\li1215"),
        paragraph(
            "MayHaveSpaceAroundThem",
            [](QTextBlockFormat &format) {
                format.setTopMargin(10);
                format.setBottomMargin(20);
            },
            "\\sb150\\sa300"),
        paragraph(
            "MayHaveWideLines",
            [](QTextBlockFormat &format) { format.setLineHeight(150, QTextBlockFormat::ProportionalHeight); },
            "\\sl360\\slmult1"),
        paragraph(
            "MayHaveHighLines",
            [](QTextBlockFormat &format) { format.setLineHeight(20, QTextBlockFormat::MinimumHeight); },
            "\\sl300\\slmult0"),
        paragraph(
            "MayHaveFixedLines",
            [](QTextBlockFormat &format) { format.setLineHeight(20, QTextBlockFormat::FixedHeight); },
            "\\sl-300\\slmult0"),
        paragraph(
            "MayHaveTabs",
            [](QTextBlockFormat &format) {
                format.setTabPositions({{10, QTextOption::LeftTab},
                                        {20, QTextOption::RightTab},
                                        {30, QTextOption::CenterTab},
                                        {40, QTextOption::DelimiterTab}});
            },
            "\\tx150\\tqr\\tx300\\tqc\\tx450\\tqdec\\tx600")),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    ManyParagraphs, RtfWriting,
    testing::Values(
        WriterRow{"ShareTheirFormat",
                  [](QTextCursor &cursor) {
                      QTextBlockFormat centered;
                      centered.setAlignment(Qt::AlignHCenter);
                      cursor.setBlockFormat(centered);
                      cursor.insertText(QStringLiteral("a\nb\n"));
                      cursor.setBlockFormat(QTextBlockFormat());
                      cursor.insertText(QStringLiteral("c"));
                  },
                  body + "\\qc\\f0\\fs16 a\\par\r\nb\\par\r\n\\pard c\\par\r\n}\r\n"},
        WriterRow{"MayBeMarkedByBullets",
                  [](QTextCursor &cursor) {
                      cursor.createList(QTextListFormat::ListDisc);
                      cursor.insertText(QStringLiteral("one\ntwo\n"));
                      cursor.setBlockFormat(QTextBlockFormat());
                      cursor.insertText(QStringLiteral("three"));
                  },
                  "{\\f1\\fnil\\fcharset2 Symbol;}" + body +
                      "{\\pntext\\f1\\'B7\\tab}{\\*\\pn\\pnlvlblt\\pnf1\\pnindent0{\\pntxtb\\'B7}}"
                      "\\f0\\fs16 one\\par\r\n{\\pntext\\f1\\'B7\\tab}two\\par\r\n\\pard three\\par\r\n}\r\n"},
        WriterRow{"HaveTheirCharactersBeforeTheBullet",
                  [](QTextCursor &cursor) {
                      QTextCharFormat bold;
                      bold.setFontWeight(QFont::Bold);
                      cursor.createList(QTextListFormat::ListDisc);
                      cursor.insertText(QStringLiteral("one\n"));
                      cursor.insertText(QStringLiteral("two"), bold);
                  },
                  "{\\f1\\fnil\\fcharset2 Symbol;}" + body +
                      "{\\pntext\\f1\\'B7\\tab}{\\*\\pn\\pnlvlblt\\pnf1\\pnindent0{\\pntxtb\\'B7}}"
                      "\\f0\\fs16 one\\par\r\n\\b{\\pntext\\f1\\'B7\\tab}two\\b0\\par\r\n}\r\n"},
        WriterRow{"MayBeNumbered",
                  [](QTextCursor &cursor) {
                      cursor.createList(QTextListFormat::ListUpperRoman);
                      cursor.insertText(QStringLiteral("one\ntwo"));
                  },
                  body + "{\\pntext\\f0 I.\\tab}{\\*\\pn\\pnlvlbody\\pnf0\\pnindent0\\pnstart1\\pnucrm{\\pntxta .}}"
                         "\\f0\\fs16 one\\par\r\n{\\pntext\\f0 II.\\tab}two\\par\r\n}\r\n"}),
    rowName);

TEST(RtfWriter, AFontHasABytesWorthOfItsCharset)
{
    const auto document = documentOf(R"({\rtf1{\fonttbl{\f0\fcharset204 Arial;}{\f1\fcharset0 Arial;}})"
                                     R"(\fs20\f0\'ef\f1\'ef\par})");
    EXPECT_EQ(writeRtf(*document),
              "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fnil\\fcharset204 Arial;}"
              "{\\f1\\fnil\\fcharset0 Arial;}}\r\n\\viewkind4\\uc1\\pard\\f0\\fs20 \\'ef\\f1 \\'ef\\par\r\n}\r\n");
}

TEST(RtfWriter, ACharsetIsForgottenWithItsFont)
{
    const auto document = documentOf(R"({\rtf1{\fonttbl{\f0\fcharset204 Arial CYR;}}\fs20\f0\'ef\par})");
    QTextCursor cursor(document.get());
    cursor.select(QTextCursor::Document);
    QTextCharFormat format;
    format.setFontFamilies({QStringLiteral("Times")});
    cursor.mergeCharFormat(format);
    EXPECT_NE(writeRtf(*document).find("\\fcharset0 Times;"), std::string::npos);
    EXPECT_NE(writeRtf(*document).find("\\u1087?"), std::string::npos);
}

TEST(RtfWriter, TheBulletsFontIsTheLast)
{
    const auto document = documentOf(R"({\rtf1{\fonttbl{\f0 A;}{\f1 B;}}{\*\pn\pnlvlblt{\pntxtb\'B7}}\f1 b\f0 a\par})");
    const std::string rtf = writeRtf(*document);
    EXPECT_NE(rtf.find("{\\f0\\fnil\\fcharset0 B;}{\\f1\\fnil\\fcharset0 A;}{\\f2\\fnil\\fcharset2 Symbol;}}"),
              std::string::npos)
        << rtf;
}

TEST(RtfWriter, AListDoesNotCountBeyondTheLastNumber)
{
    const std::string rtf =
        writeRtf(*documentOf(R"({\rtf1{\*\pn\pnlvlbody\pnstart2147483646\pndec}a\par b\par c\par})"));
    EXPECT_NE(rtf.find("2147483647\\tab}b"), std::string::npos) << rtf;
    EXPECT_NE(rtf.find("2147483647\\tab}c"), std::string::npos) << rtf;
}

TEST(RtfWriter, FontNamesMayBeAnything)
{
    const auto document = emptyDocument();
    QTextCursor cursor(document.get());
    QTextCharFormat format;
    format.setFontFamilies({QStringLiteral("A{b}\\c;d é 明朝")});
    cursor.insertText(QStringLiteral("x"), format);
    const auto back = documentOf(writeRtf(*document));
    EXPECT_EQ(back->firstBlock().begin().fragment().charFormat().fontFamilies().toStringList(),
              QStringList{QStringLiteral("A{b}\\cd é 明朝")});
}

class RtfSelection : public testing::Test
{
protected:
    RtfSelection()
        : m_document(
              documentOf(R"({\rtf1{\fonttbl{\f0 A;}{\f1 B;}{\f2 C;}}\fs20\f0 one\par\qc\f1 two\par\f2 three\par})"))
    {
    }

    [[nodiscard]] std::string write(int from, int to) const
    {
        QTextCursor cursor(m_document.get());
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        return writeRtf(cursor);
    }

    /// The text that \p from to \p to has when it is inserted elsewhere.
    [[nodiscard]] QString inserted(int from, int to) const
    {
        const auto other = emptyDocument();
        QTextCursor cursor(other.get());
        insertRtf(write(from, to), cursor);
        return textOf(*other);
    }

    const std::unique_ptr<QTextDocument> m_document;
};

TEST_F(RtfSelection, HasTheFontsThatItUses)
{
    EXPECT_EQ(write(5, 6), "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fnil\\fcharset0 B;}}\r\n"
                           "\\viewkind4\\uc1\\pard\\qc\\f0\\fs20 w}\r\n");
}

TEST_F(RtfSelection, EndsAParagraphOnlyWithItsMark)
{
    EXPECT_EQ(inserted(0, 3), QStringLiteral("one"));
    EXPECT_EQ(inserted(0, 4), QStringLiteral("one\n"));
    EXPECT_EQ(inserted(1, 5), QStringLiteral("ne\nt"));
    EXPECT_EQ(inserted(3, 8), QStringLiteral("\ntwo\n"));
    EXPECT_EQ(inserted(0, 13), QStringLiteral("one\ntwo\nthree"));
}

TEST_F(RtfSelection, IsTheSameInEitherDirection)
{
    EXPECT_EQ(write(1, 6), write(6, 1));
}

TEST_F(RtfSelection, OfNothingHasNoText)
{
    EXPECT_EQ(inserted(2, 2), QString());
    EXPECT_TRUE(writeRtf(QTextCursor()).empty());
}

TEST_F(RtfSelection, OfAnObjectIsItsSource)
{
    QTextCursor cursor(m_document.get());
    cursor.setPosition(1);
    insertObject(cursor, "{\\pict\\pngblip 0042}");
    EXPECT_EQ(inserted(0, 4), QStringLiteral("o\ufffcne"));
    cursor.setPosition(1);
    cursor.setPosition(2, QTextCursor::KeepAnchor);
    EXPECT_NE(writeRtf(cursor).find("{\\pict\\pngblip 0042}"), std::string::npos);
}

TEST(RtfWriter, WritesSevenBitsOnly)
{
    const auto document = emptyDocument();
    QTextCursor cursor(document.get());
    QString all;
    for (int code = 1; code < 0x10000; ++code) {
        const QChar c(static_cast<char16_t>(code));
        if (c != QChar::ParagraphSeparator && c != u'\n' && c != u'\r' && (code < 0xfdd0 || code > 0xfdd1)) {
            all += c;
        }
    }
    cursor.insertText(all);
    const std::string rtf = writeRtf(*document);
    EXPECT_TRUE(std::ranges::all_of(rtf, [](char c) { return (c >= ' ' && c <= '~') || c == '\r' || c == '\n'; }));
    const QString back = textOf(*documentOf(rtf));
    all.replace(QLatin1Char('\v'), QChar(QChar::LineSeparator));
    EXPECT_EQ(back == all, true) << "every character comes back";
}

} // namespace
