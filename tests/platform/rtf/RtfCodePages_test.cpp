#include "platform/rtf/RtfCodePages.h"

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
    for (const QChar c : GetParam().text) {
        back += page.encode(c.unicode());
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

TEST(RtfCodePages, ACharacterThatAPageDoesNotHaveHasNoBytes)
{
    EXPECT_TRUE(RtfCodePage(1252).encode(u'П').isEmpty());
    EXPECT_TRUE(RtfCodePage(932).encode(0xd83d).isEmpty()) << "half a surrogate pair";
    EXPECT_TRUE(RtfCodePage(437).encode(u'\u2022').isEmpty()) << "a look-alike does not count";
}

TEST(RtfCodePages, APageThatNobodyKnowsIsWestern)
{
    EXPECT_EQ(RtfCodePage(31337).decode("\xe9"), QStringLiteral("é"));
    EXPECT_EQ(RtfCodePage(-1).decode("\xe9"), QStringLiteral("é"));
}

TEST(RtfCodePages, ACharsetOfItsPageIsTheCharsetAgain)
{
    for (const int charset : {0, 2, 77, 128, 129, 134, 136, 161, 162, 163, 177, 178, 186, 204, 222, 238, 255}) {
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
