#include "platform/rtf/RtfHeader.h"
#include "platform/rtf/RtfWriter.h"
#include "tests/platform/rtf/RtfDocuments.h"

#include <gtest/gtest.h>

namespace {

/// A document with a run for each of \p families, in the default font "House Sans".
std::unique_ptr<QTextDocument> documentIn(const QStringList &families)
{
    auto document = emptyDocument();
    QTextCursor cursor(document.get());
    for (const QString &family : families) {
        QTextCharFormat format;
        format.setFontFamilies({family});
        if (family == families.first()) {
            cursor.setBlockCharFormat(format);
        }
        cursor.insertText(QStringLiteral("x"), format);
    }
    return document;
}

std::string headOf(const std::string &rtf)
{
    return rtf.substr(0, rtf.find("\\viewkind4"));
}

struct NameRow
{
    const char *name;
    QString family;
    std::string written;
};

void PrintTo(const NameRow &row, std::ostream *out)
{
    *out << row.family.toStdString();
}

class RtfFontName : public testing::TestWithParam<NameRow>
{
};

const auto rowName = [](const auto &info) { return info.param.name; };

TEST_P(RtfFontName, IsWritten)
{
    EXPECT_EQ(headOf(writeRtf(*documentIn({GetParam().family}))),
              "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fnil\\fcharset0 " + GetParam().written +
                  ";}}\r\n");
}

TEST_P(RtfFontName, IsTheSameWhenItIsReadAndWrittenAgain)
{
    const std::string first = writeRtf(*documentIn({GetParam().family}));
    EXPECT_EQ(writeRtf(*documentOf(first)), first);
}

INSTANTIATE_TEST_SUITE_P(
    Of, RtfFontName,
    testing::Values(NameRow{"AsciiAsItStands", QStringLiteral("Comic Sans MS"), "Comic Sans MS"},
                    NameRow{"ManyBlanksWithSingleOnes", QStringLiteral("  A\t\n B "), "A B"},
                    NameRow{"SemicolonsWithoutThem", QStringLiteral("A;B ; C;"), "AB C"},
                    NameRow{"OnlySemicolonsAsTheDefaultFont", QStringLiteral(";;"), "House Sans"},
                    NameRow{"NothingAsTheDefaultFont", QString(), "House Sans"},
                    NameRow{"QuotesAsTheyStand", QStringLiteral("\"A\" 'B'"), "\"A\" 'B'"},
                    NameRow{"AFamilyListAsItStands", QStringLiteral("Arial, Helvetica, sans-serif"),
                            "Arial, Helvetica, sans-serif"},
                    NameRow{"StructureEscaped", QStringLiteral("{A}\\par"), "\\{A\\}\\\\par"},
                    NameRow{"LettersOfThePage", QStringLiteral("Schrift für Übung"), "Schrift f\\'fcr \\'dcbung"},
                    NameRow{"LettersBeyondThePage", QStringLiteral("Шрифт"),
                            "\\u1064?\\u1088?\\u1080?\\u1092?\\u1090?"},
                    NameRow{"EmojiAsPairs", QStringLiteral("A\U0001f60a B"), "A\\u-10179?\\u-8694? B"},
                    NameRow{"ControlCharactersWithoutThem",
                            QStringLiteral("A") + QChar(0) + QChar(1) + QChar(127) + QStringLiteral("B"), "AB"},
                    NameRow{"LineSeparatorsAsBlanks", QStringLiteral("A\u2028B\u2029C"), "A B C"},
                    NameRow{"AVerticalFont", QStringLiteral("@Gothic"), "@Gothic"},
                    NameRow{"TooManyLettersCutOff", QString(100000, QLatin1Char('x')), std::string(127, 'x')},
                    NameRow{"TooManyLettersWithoutABlankAtTheEnd",
                            QString(126, QLatin1Char('x')) + QStringLiteral(" yyy"), std::string(126, 'x')},
                    NameRow{"TooManyLettersWithoutHalfAPair",
                            QString(126, QLatin1Char('x')) + QStringLiteral("\U0001f60a"), std::string(126, 'x')}),
    rowName);

TEST(RtfHeader, NamesThatAreWrittenAlikeAreOneFont)
{
    const std::string rtf = writeRtf(*documentIn({QStringLiteral("A"), QStringLiteral("A;"), QStringLiteral(" A ")}));
    EXPECT_EQ(headOf(rtf), "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fnil\\fcharset0 A;}}\r\n");
}

TEST(RtfHeader, TheOrderOfFontsIsThatOfTheirFirstUse)
{
    const QStringList families{QStringLiteral("B"), QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")};
    const std::string rtf = writeRtf(*documentIn(families));
    EXPECT_NE(rtf.find("{\\f0\\fnil\\fcharset0 B;}{\\f1\\fnil\\fcharset0 A;}{\\f2\\fnil\\fcharset0 C;}}"),
              std::string::npos)
        << rtf;
    EXPECT_EQ(writeRtf(*documentIn(families)), rtf);
}

TEST(RtfHeader, ASymbolFontHasTheCodePageOfItsName)
{
    const auto document = emptyDocument();
    RtfHeader header(*document);
    header.collectSymbolFont();
    EXPECT_EQ(header.codePage(header.symbolFont()).encode(U'•'), QByteArray("\xb7"));
    EXPECT_EQ(header.codePage(header.symbolFont()).encode(U'α'), QByteArray("a"));
}

} // namespace
