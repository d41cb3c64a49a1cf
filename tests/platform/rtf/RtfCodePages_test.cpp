#include "platform/rtf/RtfCodePages.h"

#include <climits>
#include <gtest/gtest.h>

namespace {

struct CharsetRow
{
    const char *name;
    int charset;
    const char *bytes;
    QString text;
};

void PrintTo(const CharsetRow &row, std::ostream *out)
{
    *out << row.charset;
}

class RtfCharsets : public testing::TestWithParam<CharsetRow>
{
};

TEST_P(RtfCharsets, DecodeAndEncodeTheirBytes)
{
    const RtfCodePage page(codePageOfCharset(GetParam().charset));
    EXPECT_EQ(page.decode(GetParam().bytes), GetParam().text);
    QByteArray back;
    for (const char32_t c : GetParam().text.toUcs4()) {
        back += page.encode(c);
    }
    EXPECT_EQ(back, QByteArray(GetParam().bytes));
}

const auto rowName = [](const auto &info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(RtfCodePages, RtfCharsets,
                         testing::Values(CharsetRow{"Ansi", 0, "caf\xe9 \x80", QStringLiteral("café €")},
                                         CharsetRow{"Symbol", 2, "a\xb7", QStringLiteral("a\uf0b7")},
                                         CharsetRow{"Macintosh", 77, "\x8e", QStringLiteral("é")},
                                         CharsetRow{"Japanese", 128, "\x82\xa0z", QStringLiteral("あz")},
                                         CharsetRow{"JapaneseWithABackslashForItsSecondByte", 128, "\x95\x5c",
                                                    QStringLiteral("表")},
                                         CharsetRow{"Korean", 129, "\xb0\xa1", QStringLiteral("가")},
                                         CharsetRow{"Johab", 130, "\x88\x61\xd0\x65\\", QStringLiteral("가한\\")},
                                         CharsetRow{"SimplifiedChinese", 134, "\xd6\xd0", QStringLiteral("中")},
                                         CharsetRow{"TraditionalChinese", 136, "\xa4\xa4", QStringLiteral("中")},
                                         CharsetRow{"Greek", 161, "\xe1", QStringLiteral("α")},
                                         CharsetRow{"Turkish", 162, "\xfd", QStringLiteral("ı")},
                                         CharsetRow{"Vietnamese", 163, "\xfe", QStringLiteral("₫")},
                                         CharsetRow{"Hebrew", 177, "\xe0", QStringLiteral("א")},
                                         CharsetRow{"Arabic", 178, "\xc7", QStringLiteral("ا")},
                                         CharsetRow{"Baltic", 186, "\xe0", QStringLiteral("ą")},
                                         CharsetRow{"Russian", 204, "\xcf", QStringLiteral("П")},
                                         CharsetRow{"Thai", 222, "\xa1", QStringLiteral("ก")},
                                         CharsetRow{"EastEurope", 238, "\xe8", QStringLiteral("č")},
                                         CharsetRow{"Oem", 255, "\x81", QStringLiteral("ü")}),
                         rowName);

struct PageRow
{
    int page;
    const char *bytes;
    QString text;
};

void PrintTo(const PageRow &row, std::ostream *out)
{
    *out << row.page;
}

const auto pageName = [](const auto &info) { return std::to_string(info.param.page); };

class RtfPages : public testing::TestWithParam<PageRow>
{
};

TEST_P(RtfPages, DecodeAndEncodeTheirBytes)
{
    const RtfCodePage page(GetParam().page);
    EXPECT_EQ(page.decode(GetParam().bytes), GetParam().text);
    QByteArray back;
    for (const char32_t c : GetParam().text.toUcs4()) {
        back += page.encode(c);
    }
    EXPECT_EQ(back, QByteArray(GetParam().bytes));
}

TEST_P(RtfPages, HaveAsciiInTheLowerHalf)
{
    const RtfCodePage page(GetParam().page);
    EXPECT_TRUE(page.keepsAscii());
    for (char c = ' '; c <= '~'; ++c) {
        EXPECT_EQ(page.decode({&c, 1}), QString(QLatin1Char(c)));
        EXPECT_EQ(page.encode(static_cast<char32_t>(c)), QByteArray(1, c));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Of, RtfPages,
    testing::Values(PageRow{437, "\x81\xe1\x9d", QStringLiteral("üß¥")}, PageRow{708, "\xc7", QStringLiteral("ا")},
                    PageRow{720, "\x9f", QStringLiteral("ا")}, PageRow{737, "\x98", QStringLiteral("α")},
                    PageRow{775, "\xd0", QStringLiteral("ą")}, PageRow{850, "\x9b", QStringLiteral("ø")},
                    PageRow{852, "\x9f", QStringLiteral("č")}, PageRow{855, "\xa0", QStringLiteral("а")},
                    PageRow{857, "\x8d", QStringLiteral("ı")}, PageRow{858, "\xd5", QStringLiteral("€")},
                    PageRow{860, "\x84", QStringLiteral("ã")}, PageRow{861, "\x8c", QStringLiteral("ð")},
                    PageRow{862, "\x80", QStringLiteral("א")}, PageRow{863, "\x8f", QStringLiteral("§")},
                    PageRow{864, "\xc7", QStringLiteral("\ufe8d")}, PageRow{865, "\x9b", QStringLiteral("ø")},
                    PageRow{866, "\x80", QStringLiteral("А")}, PageRow{10000, "\x8e", QStringLiteral("é")},
                    PageRow{10001, "\x82\xa0", QStringLiteral("あ")}, PageRow{10002, "\xa4\xa4", QStringLiteral("中")},
                    PageRow{10003, "\xb0\xa1", QStringLiteral("가")}, PageRow{10004, "\xc7", QStringLiteral("ا")},
                    PageRow{10005, "\xe0", QStringLiteral("א")}, PageRow{10006, "\xe1", QStringLiteral("α")},
                    PageRow{10007, "\x80", QStringLiteral("А")}, PageRow{10008, "\xd6\xd0", QStringLiteral("中")},
                    PageRow{10010, "\x8e", QStringLiteral("é")}, PageRow{10017, "\x80", QStringLiteral("А")},
                    PageRow{10021, "\xa1", QStringLiteral("ก")}, PageRow{10029, "\x8b", QStringLiteral("č")},
                    PageRow{10079, "\x8e", QStringLiteral("é")}, PageRow{10081, "\xdd", QStringLiteral("ı")},
                    PageRow{20866, "\xc1", QStringLiteral("а")}, PageRow{21866, "\xa4", QStringLiteral("є")},
                    PageRow{28591, "\xe9", QStringLiteral("é")}, PageRow{28592, "\xe8", QStringLiteral("č")},
                    PageRow{28593, "\xa1", QStringLiteral("Ħ")}, PageRow{28594, "\xe0", QStringLiteral("ā")},
                    PageRow{28595, "\xd0", QStringLiteral("а")}, PageRow{28596, "\xc7", QStringLiteral("ا")},
                    PageRow{28597, "\xe1", QStringLiteral("α")}, PageRow{28598, "\xe0", QStringLiteral("א")},
                    PageRow{28599, "\xfd", QStringLiteral("ı")}, PageRow{28603, "\xe0", QStringLiteral("ą")},
                    PageRow{28605, "\xa4", QStringLiteral("€")}, PageRow{51949, "\xb0\xa1", QStringLiteral("가")},
                    PageRow{51932, "\xa4\xa2\x8f\xb0\xa1", QStringLiteral("あ丂")},
                    PageRow{54936, "\xd6\xd0\x90\x30\x81\x30", QStringLiteral("中\U00010000")},
                    PageRow{65001, "\xc3\xa9\xf0\x9f\x98\x8a", QStringLiteral("é\U0001f60a")}),
    pageName);

TEST(RtfCodePages, OfSevenBitsIsDecodedAsAWhole)
{
    const RtfCodePage page(65000);
    EXPECT_FALSE(page.keepsAscii());
    EXPECT_EQ(page.decode("a+AOk-b+-"), QStringLiteral("aéb+"));
}

TEST(RtfCodePages, OfWhichEveryByteIsSomethingAlone)
{
    for (const int number : {437, 874, 932, 936, 949, 950, 951, 1252, 1253, 1255, 1361, 10001, 51932, 54936, 65001}) {
        const RtfCodePage page(number);
        for (int code = 1; code < 256; ++code) {
            const char byte = static_cast<char>(code);
            EXPECT_EQ(page.decode({&byte, 1}).size(), 1) << number << ' ' << code;
        }
    }
}

TEST(RtfCodePages, NeverSwallowAnAsciiCharacterWithoutACharacterForIt)
{
    for (const int number : {932, 936, 949, 950, 1361, 10001, 51932, 51949, 65001}) {
        const RtfCodePage page(number);
        for (int lead = 0x80; lead < 0x100; ++lead) {
            for (char next = ' '; next <= '~'; ++next) {
                const std::string pair{static_cast<char>(lead), next};
                const QString text = page.decode(pair);
                const bool isCharacter = text.size() == 1 && text.front() != QChar::ReplacementCharacter;
                const bool isKept = text.size() == 2 && text.back() == QLatin1Char(next);
                EXPECT_TRUE(isCharacter || isKept) << number << ' ' << lead << ' ' << next;
            }
        }
    }
}

TEST(RtfCodePages, CallsDoNotDependOnEachOther)
{
    for (const int number : {932, 1361, 54936, 65000, 65001}) {
        const RtfCodePage page(number);
        const QString whole = page.decode("abc");
        for (const char *unfinished : {"\x88", "\xe2\x82", "\x90\x30", "+AO", "\xff"}) {
            EXPECT_FALSE(page.decode(unfinished).isEmpty()) << number;
            EXPECT_EQ(page.decode("abc"), whole) << number;
        }
    }
}

TEST(RtfCodePages, BytesThatAreNoTextEndAllTheSame)
{
    std::string bytes;
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; second += 3) {
            bytes += static_cast<char>(first);
            bytes += static_cast<char>(second);
        }
    }
    for (const int number : {932, 936, 949, 950, 1361, 10017, 51932, 54936, 65000, 65001}) {
        EXPECT_FALSE(RtfCodePage(number).decode(bytes).isEmpty()) << number;
    }
}

TEST(RtfCodePages, KnowWhenACharacterIsCut)
{
    EXPECT_TRUE(RtfCodePage(932).isCutBefore('A', "x\x83"));
    EXPECT_FALSE(RtfCodePage(932).isCutBefore(';', "x\x83")) << "no second half";
    EXPECT_FALSE(RtfCodePage(932).isCutBefore('A', "\x83\x41"));
    EXPECT_FALSE(RtfCodePage(1252).isCutBefore('A', "\x83"));
    EXPECT_FALSE(RtfCodePage(932).isCutBefore('A', ""));
}

TEST(RtfCodePages, WithoutAsciiLettersAreNoneOfRtf)
{
    for (const int number : {37, 500, 1200, 1201, 12000, INT_MIN, 0, INT_MAX}) {
        const RtfCodePage page(number);
        EXPECT_EQ(page.decode("A\xe9"), QStringLiteral("Aé")) << number;
        EXPECT_TRUE(page.keepsAscii()) << number;
    }
}

TEST(RtfCodePages, ACharacterThatAPageDoesNotHaveHasNoBytes)
{
    EXPECT_TRUE(RtfCodePage(1252).encode(u'П').isEmpty());
    EXPECT_TRUE(RtfCodePage(932).encode(0xd83d).isEmpty()) << "half a surrogate pair";
    EXPECT_TRUE(RtfCodePage(65001).encode(0xdc00).isEmpty()) << "half a surrogate pair";
    EXPECT_TRUE(RtfCodePage(65001).encode(0x110000).isEmpty()) << "beyond all planes";
    EXPECT_TRUE(RtfCodePage(1361).encode(u'₩').isEmpty()) << "its place is that of the backslash";
    EXPECT_TRUE(RtfCodePage(437).encode(u'\u2022').isEmpty()) << "a look-alike does not count";
}

TEST(RtfCodePages, APageThatNobodyKnowsIsWestern)
{
    EXPECT_EQ(RtfCodePage(31337).decode("\xe9"), QStringLiteral("é"));
    EXPECT_EQ(RtfCodePage(-1).decode("\xe9"), QStringLiteral("é"));
}

TEST(RtfCodePages, ACharsetOfItsPageIsTheCharsetAgain)
{
    for (const int charset : {0, 2, 77, 128, 129, 130, 134, 136, 161, 162, 163, 177, 178, 186, 204, 222, 238, 255}) {
        EXPECT_EQ(charsetOfCodePage(codePageOfCharset(charset)), charset);
    }
}

TEST(RtfCodePages, OnlyAllBytesTogetherAreUtf8)
{
    EXPECT_FALSE(isMultiByteUtf8("ascii"));
    EXPECT_TRUE(isMultiByteUtf8("caf\xc3\xa9"));
    EXPECT_FALSE(isMultiByteUtf8("caf\xc3\xa9 caf\xe9"));
}

} // namespace
