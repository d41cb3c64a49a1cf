#include "platform/rtf/RtfStream.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

const RtfCodePage western(defaultCodePage);
const RtfCodePage japanese(932);
const RtfCodePage symbols(symbolCodePage);
const RtfCodePage greek(codePageOfSymbolFont(u"Symbol"));
const RtfCodePage pictures(codePageOfSymbolFont(u"Wingdings"));
const RtfCodePage unicode(65001);

struct StreamRow
{
    const char *name;
    std::function<void(RtfStream &)> write;
    std::string expected;
};

void PrintTo(const StreamRow &row, std::ostream *out)
{
    *out << row.name;
}

class RtfStreams : public testing::TestWithParam<StreamRow>
{
};

TEST_P(RtfStreams, GiveTheExpectedBytes)
{
    RtfStream out;
    GetParam().write(out);
    EXPECT_EQ(out.written(), GetParam().expected);
}

const auto rowName = [](const auto &info) { return info.param.name; };

/// A row that writes \p text in \p page behind nothing.
StreamRow text(const char *name, const QString &text, const RtfCodePage &page, const std::string &expected)
{
    return {name, [text, &page](RtfStream &out) { out.text(text, page); }, expected};
}

/// A row that writes \p next between two words, the second of which is "i".
StreamRow behindAWord(const char *name, const std::function<void(RtfStream &)> &next, const std::string &expected)
{
    return {name,
            [next](RtfStream &out) {
                out.word("b");
                next(out);
                out.word("i");
            },
            expected};
}

INSTANTIATE_TEST_SUITE_P(
    Words, RtfStreams,
    testing::Values(behindAWord(
                        "NeedNoBlankBetweenThem", [](RtfStream &out) { out.word("ul"); }, "\\b\\ul\\i"),
                    behindAWord(
                        "MayHaveNumbers", [](RtfStream &out) { out.word("fs", 24); }, "\\b\\fs24\\i"),
                    behindAWord(
                        "MayHaveNegativeNumbers", [](RtfStream &out) { out.word("fi", -360); }, "\\b\\fi-360\\i"),
                    behindAWord(
                        "NeedABlankBeforeText", [](RtfStream &out) { out.text(u"a", western); }, "\\b a\\i"),
                    behindAWord(
                        "NeedABlankBeforeABlank", [](RtfStream &out) { out.text(u" ", western); }, "\\b  \\i"),
                    behindAWord(
                        "NeedABlankBeforeADigit", [](RtfStream &out) { out.ascii("1"); }, "\\b 1\\i"),
                    behindAWord(
                        "NeedOneBlankOnly", [](RtfStream &out) { out.text(u"ab", western); }, "\\b ab\\i"),
                    behindAWord(
                        "NeedNoBlankBeforeNoText", [](RtfStream &out) { out.text(u"", western); }, "\\b\\i"),
                    behindAWord(
                        "EndAtASemicolon",
                        [](RtfStream &out) {
                            out.semicolon();
                            out.ascii("a");
                        },
                        "\\b;a\\i"),
                    behindAWord(
                        "EndAtABullet",
                        [](RtfStream &out) {
                            out.symbolBullet();
                            out.ascii("a");
                        },
                        "\\b\\'B7a\\i"),
                    behindAWord(
                        "EndAtALine",
                        [](RtfStream &out) {
                            out.endLine();
                            out.ascii("a");
                        },
                        "\\b\r\na\\i"),
                    behindAWord(
                        "EndAtAGroup",
                        [](RtfStream &out) {
                            out.open();
                            out.ascii("a");
                        },
                        "\\b{a\\i"),
                    behindAWord(
                        "EndWithTheirGroup",
                        [](RtfStream &out) {
                            out.close();
                            out.ascii("a");
                        },
                        "\\b}a\\i"),
                    StreamRow{"MayBeIgnorable",
                              [](RtfStream &out) {
                                  out.open();
                                  out.ignorable();
                                  out.word("pn");
                                  out.close();
                              },
                              "{\\*\\pn}"}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Characters, RtfStreams,
    testing::Values(
        text("OfAsciiStandAsTheyAre", QStringLiteral("az AZ~"), western, "az AZ~"),
        text("OfStructureAreEscaped", QStringLiteral("{}\\"), western, "\\{\\}\\\\"),
        text("OfTabsAreWords", QStringLiteral("\t1"), western, "\\tab 1"),
        text("OfBrokenLinesAreWords", QStringLiteral("a\u2028b\vc"), western, "a\\line\r\nb\\line\r\nc"),
        text("OfThePageAreBytes", QStringLiteral("é€"), western, "\\'e9\\'80"),
        text("OfThePageMayBeTwoBytes", QStringLiteral("あa"), japanese, "\\'82\\'a0a"),
        text("OfASymbolFontAreBytes", QStringLiteral("\uf0b7"), symbols, "\\'b7"),
        text("OfAKnownSymbolFontAreBytes", QStringLiteral("αβ•"), greek, "\\'61\\'62\\'b7"),
        text("OfAKnownSymbolFontMayBeTheSame", QStringLiteral("1 {=}"), greek, "1 \\{=\\}"),
        text("OfAKnownSymbolFontMayBeABackslash", QStringLiteral("∴\\"), greek, "\\'5c\\u92?"),
        text("OfAKnownSymbolFontMayBeBeyondThePlane", QStringLiteral("\U0001f610x"), pictures, "\\'4b\\u120?"),
        text("OfAKnownSymbolFontMayBePrivate", QStringLiteral("\uf0b7\uf0f0"), greek, "\\'b7\\'f0"),
        text("OfTabsAreWordsInASymbolFont", QStringLiteral("\t\u2028"), greek, "\\tab \\line\r\n"),
        text("OfControlAreUnicodeInASymbolFont", QString(QChar(1)) + QChar(127), greek, "\\u1?\\u127?"),
        text("OfWordsAreWordsInASymbolFont", QStringLiteral("\u00a0—"), greek, "\\~\\emdash "),
        text("BeyondThePlaneMayBeBytes", QStringLiteral("\U0001f60a"), unicode, "\\'f0\\'9f\\'98\\'8a"),
        text("OfHalfAPairAreUnicode", QString(QChar(0xd83d)) + QLatin1Char('a') + QChar(0xde0a), unicode,
             "\\u-10179?a\\u-8694?"),
        text("OfTheBulletAreNoBullet", QStringLiteral("\uf0b7"), western, "\\u-3913?"),
        text("WithAWordAreTheWord", QStringLiteral("\u200d1"), western, "\\zwj 1"),
        text("WithASymbolAreTheSymbol", QStringLiteral("\u20111"), western, "\\_1"),
        text("OfThePageAreRatherBytesThanWords", QStringLiteral("\u00a0—"), western, "\\'a0\\'97"),
        text("BeyondThePageAreUnicode", QStringLiteral("π1"), western, "\\u960?1"),
        text("OfTheUpperHalfAreNegative", QStringLiteral("\uffff"), western, "\\u-1?"),
        text("BeyondThePlaneArePairs", QStringLiteral("\U0001f60a"), western, "\\u-10179?\\u-8694?"),
        text("OfControlAreUnicode", QString(QChar(0)) + QChar(31) + QChar(127), western, "\\u0?\\u31?\\u127?")),
    rowName);

} // namespace
