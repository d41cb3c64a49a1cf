#include "platform/rtf/RtfListWriter.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr int symbolFont = 7;
const RtfCodePage western(defaultCodePage);

struct NumberRow
{
    const char *name;
    RtfListStyle style;
    int number;
    std::string expected;
};

void PrintTo(const NumberRow &row, std::ostream *out)
{
    *out << row.number;
}

class RtfListNumbers : public testing::TestWithParam<NumberRow>
{
};

TEST_P(RtfListNumbers, AreInTheirStyle)
{
    EXPECT_EQ(rtfListNumber(GetParam().style, GetParam().number), GetParam().expected);
}

const auto rowName = [](const auto &info) { return info.param.name; };

using enum RtfListStyle;

INSTANTIATE_TEST_SUITE_P(
    RtfListWriter, RtfListNumbers,
    testing::Values(NumberRow{"Digits", Decimal, 7, "7"}, NumberRow{"Zero", Decimal, 0, "0"},
                    NumberRow{"TheFirstLetter", LowerLetter, 1, "a"}, NumberRow{"TheLastLetter", UpperLetter, 26, "Z"},
                    NumberRow{"TheFirstPair", LowerLetter, 27, "aa"}, NumberRow{"TheLastPair", UpperLetter, 702, "ZZ"},
                    NumberRow{"TheFirstTriple", LowerLetter, 703, "aaa"}, NumberRow{"NoLetter", UpperLetter, 0, ""},
                    NumberRow{"ARomanYear", LowerRoman, 1994, "mcmxciv"},
                    NumberRow{"TheLastRomanNumber", UpperRoman, 3999, "MMMCMXCIX"},
                    NumberRow{"NoRomanNumber", UpperRoman, 4000, "4000"},
                    NumberRow{"TheLargestNumber", LowerRoman, std::numeric_limits<int>::max(), "2147483647"}),
    rowName);

TEST(RtfListWriter, AMarkOfABulletIsInTheSymbolFont)
{
    RtfStream out;
    writeRtfListMark(out, {.style = Bullet, .start = 1, .before = {}, .after = {}}, 3, symbolFont, western);
    EXPECT_EQ(out.written(), "{\\pntext\\f7\\'B7\\tab}");
}

TEST(RtfListWriter, AMarkOfANumberHasTheTextAroundIt)
{
    RtfStream out;
    writeRtfListMark(out,
                     {.style = UpperRoman, .start = 1, .before = QStringLiteral("§ "), .after = QStringLiteral("}")}, 4,
                     symbolFont, western);
    EXPECT_EQ(out.written(), "{\\pntext\\f0 \\'a7 IV\\}\\tab}");
}

TEST(RtfListWriter, ANumberingHasItsStartAndTheTextAroundTheNumber)
{
    RtfStream out;
    writeRtfListFormat(out,
                       {.style = LowerLetter, .start = 5, .before = QStringLiteral("("), .after = QStringLiteral(")")},
                       symbolFont, western);
    EXPECT_EQ(out.written(), "{\\*\\pn\\pnlvlbody\\pnf0\\pnindent0\\pnstart5\\pnlcltr{\\pntxtb (}{\\pntxta )}}");
}

TEST(RtfListWriter, ANumberingNeedsNoText)
{
    RtfStream out;
    writeRtfListFormat(out, {.style = Decimal, .start = 1, .before = {}, .after = {}}, symbolFont, western);
    EXPECT_EQ(out.written(), "{\\*\\pn\\pnlvlbody\\pnf0\\pnindent0\\pnstart1\\pndec}");
}

TEST(RtfListWriter, ABulletedListNamesTheSymbolFont)
{
    RtfStream out;
    writeRtfListFormat(out, {.style = Bullet, .start = 1, .before = {}, .after = {}}, symbolFont, western);
    EXPECT_EQ(out.written(), "{\\*\\pn\\pnlvlblt\\pnf7\\pnindent0{\\pntxtb\\'B7}}");
}

} // namespace
