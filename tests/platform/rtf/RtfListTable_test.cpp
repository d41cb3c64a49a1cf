#include "platform/rtf/RtfListTable.h"

#include <gtest/gtest.h>
#include <string>

namespace {

constexpr auto maxLevels = 9;

std::string levelOf(const std::string &words, const std::string &text)
{
    return "{\\listlevel" + words + "{\\leveltext" + text + ";}{\\levelnumbers\\'01;}\\fi-360\\li720}";
}

std::string listOf(const std::string &levels, int id = 7)
{
    return "{\\list\\listtemplateid3\\listhybrid" + levels + "{\\listname Mine;}\\listid" + std::to_string(id) + "}";
}

RtfListTable tableOf(const std::string &lists, const std::string &overrides = "{\\listoverride\\listid7\\ls1}")
{
    RtfListTable table;
    table.readLists("{\\*\\listtable" + lists + "}");
    table.readOverrides("{\\*\\listoverridetable" + overrides + "}");
    return table;
}

/// The list 1 on its outermost level, whose only level is of \p words and \p text.
std::optional<RtfList> listOfLevel(const std::string &words, const std::string &text)
{
    return tableOf(listOf(levelOf(words, text))).find(1, 0);
}

RtfList numbers(RtfListStyle style, const QString &before, const QString &after, int start = 1)
{
    return {style, start, before, after};
}

const RtfList bullets{RtfListStyle::Bullet, 1, {}, {}};
const RtfList noMarks{};

TEST(RtfListTable, ALevelHasItsStyleStartAndText)
{
    EXPECT_EQ(listOfLevel("\\levelnfc4\\levelstartat3", "\\'03(\\'00)"),
              numbers(RtfListStyle::LowerLetter, QStringLiteral("("), QStringLiteral(")"), 3));
}

TEST(RtfListTable, EachNumberFormatHasItsStyle)
{
    using enum RtfListStyle;
    for (const auto &[format, style] :
         {std::pair(0, Decimal), std::pair(1, UpperRoman), std::pair(2, LowerRoman), std::pair(3, UpperLetter),
          std::pair(4, LowerLetter), std::pair(5, Decimal), std::pair(22, Decimal), std::pair(-1, Decimal)}) {
        const std::string number = std::to_string(format);
        EXPECT_EQ(listOfLevel("\\levelnfc" + number, "\\'01\\'00"), numbers(style, {}, {})) << number;
        EXPECT_EQ(listOfLevel("\\levelnfcn" + number, "\\'01\\'00"), numbers(style, {}, {})) << number;
    }
}

TEST(RtfListTable, BulletsAllLookTheSame)
{
    EXPECT_EQ(listOfLevel("\\levelnfc23\\levelstartat4", "\\'01\\u-3913 ?"), bullets);
    EXPECT_EQ(listOfLevel("\\levelnfc23", "\\'01\\'b7"), bullets);
    EXPECT_EQ(listOfLevel("\\levelnfc23", "\\'01o"), bullets);
}

TEST(RtfListTable, AListMayHaveNoMarks)
{
    EXPECT_EQ(listOfLevel("\\levelnfc255", "\\'01\\'00"), noMarks);
    EXPECT_EQ(listOfLevel("\\levelnfc0", "\\'00"), noMarks);
    EXPECT_EQ(listOfLevel("\\levelnfc23", "\\'00"), noMarks);
}

TEST(RtfListTable, ATextWithoutANumberIsABullet)
{
    EXPECT_EQ(listOfLevel("\\levelnfc0", "\\'02->"), bullets);
}

TEST(RtfListTable, ALevelWithoutATextIsItsNumberAlone)
{
    EXPECT_EQ(tableOf(listOf("{\\listlevel\\levelnfc2}")).find(1, 0), numbers(RtfListStyle::LowerRoman, {}, {}));
}

TEST(RtfListTable, OfSeveralNumbersInAMarkTheLastCounts)
{
    EXPECT_EQ(listOfLevel("\\levelnfc0", "\\'07(\\'00.\\'01.\\'02)"),
              numbers(RtfListStyle::Decimal, QStringLiteral("("), QStringLiteral(")")));
}

TEST(RtfListTable, TheCountCutsTheTextAndMayBeWrong)
{
    const auto dotted = numbers(RtfListStyle::Decimal, {}, QStringLiteral("."));
    EXPECT_EQ(listOfLevel("", "\\'02\\'00.more"), dotted);
    EXPECT_EQ(listOfLevel("", "\\'03\\'00."), dotted) << "the semicolon that ends it is not text";
    EXPECT_EQ(listOfLevel("", "\\'03\\'00.;"), numbers(RtfListStyle::Decimal, {}, QStringLiteral(".;")))
        << "but one within the count is";
}

TEST(RtfListTable, ATextMayLackItsCount)
{
    EXPECT_EQ(listOfLevel("", " No. \\'00:"),
              numbers(RtfListStyle::Decimal, QStringLiteral("No. "), QStringLiteral(":")));
}

TEST(RtfListTable, TextOfAMarkIsDecoded)
{
    EXPECT_EQ(listOfLevel("", "\\leveltemplateid5\\'05\\'a7\\u945?\\endash \\'00\\u8364 ?"),
              numbers(RtfListStyle::Decimal, QStringLiteral("\u00a7\u03b1\u2013"), QStringLiteral("\u20ac")));
    EXPECT_EQ(listOfLevel("", "\\uc2\\'02\\'00\\u945 xy"),
              numbers(RtfListStyle::Decimal, {}, QStringLiteral("\u03b1")));
}

TEST(RtfListTable, LevelsCountFromTheOutermost)
{
    const auto table = tableOf(listOf(levelOf("\\levelnfc0", "\\'02\\'00.") + levelOf("\\levelnfc4", "\\'02\\'01)") +
                                      levelOf("\\levelnfc23", "\\'01\\'b7")));
    EXPECT_EQ(table.find(1, 0), numbers(RtfListStyle::Decimal, {}, QStringLiteral(".")));
    EXPECT_EQ(table.find(1, 1), numbers(RtfListStyle::LowerLetter, {}, QStringLiteral(")")));
    EXPECT_EQ(table.find(1, 2), bullets);
}

TEST(RtfListTable, ALevelThatTheListLacksIsTheNearestOne)
{
    const auto table = tableOf(listOf(levelOf("\\levelnfc1", "\\'01\\'00") + levelOf("\\levelnfc2", "\\'01\\'01")));
    EXPECT_EQ(table.find(1, -1), numbers(RtfListStyle::UpperRoman, {}, {}));
    EXPECT_EQ(table.find(1, 2'000'000'000), numbers(RtfListStyle::LowerRoman, {}, {}));
}

TEST(RtfListTable, ANumberThatNothingDefinesIsNoList)
{
    EXPECT_FALSE(RtfListTable{}.find(1, 0).has_value());
    const auto table = tableOf(listOf(levelOf("", "\\'01\\'00")));
    EXPECT_FALSE(table.find(2, 0).has_value());
    EXPECT_FALSE(tableOf(listOf(levelOf("", "\\'01\\'00"), 8)).find(1, 0).has_value());
    EXPECT_FALSE(tableOf(listOf("")).find(1, 0).has_value()) << "a list without a level";
}

TEST(RtfListTable, LaterListsOfANumberReplaceEarlierOnes)
{
    RtfListTable table = tableOf(listOf(levelOf("\\levelnfc0", "\\'01\\'00")));
    table.readLists("{\\listtable" + listOf(levelOf("\\levelnfc1", "\\'01\\'00")) + "}");
    EXPECT_EQ(table.find(1, 0), numbers(RtfListStyle::UpperRoman, {}, {}));
}

TEST(RtfListTable, OverridesMayChangeWhereALevelStarts)
{
    const auto table =
        tableOf(listOf(levelOf("", "\\'01\\'00") + levelOf("", "\\'01\\'01") + levelOf("", "\\'01\\'02")),
                "{\\listoverride\\listid7\\listoverridecount0\\ls1}"
                "{\\listoverride\\listid7\\listoverridecount2{\\lfolevel}{\\lfolevel\\listoverridestartat"
                "\\levelstartat5}\\ls2}");
    EXPECT_EQ(table.find(1, 1)->start, 1);
    EXPECT_EQ(table.find(2, 0)->start, 1);
    EXPECT_EQ(table.find(2, 1)->start, 5);
    EXPECT_EQ(table.find(2, 2)->start, 1);
}

TEST(RtfListTable, OverridesOfTheFormatDoNotCount)
{
    const auto table = tableOf(listOf(levelOf("\\levelnfc0", "\\'02\\'00.")),
                               "{\\listoverride\\listid7{\\lfolevel\\listoverrideformat" +
                                   levelOf("\\levelnfc1\\levelstartat4", "\\'02\\'00)") + "}\\ls1}");
    EXPECT_EQ(table.find(1, 0), numbers(RtfListStyle::Decimal, {}, QStringLiteral("."), 4));
}

TEST(RtfListTable, AStartOutsideTheRangeIsTheNearestOne)
{
    EXPECT_EQ(listOfLevel("\\levelstartat-3", "\\'01\\'00")->start, 0);
    EXPECT_EQ(listOfLevel("\\levelstartat2147483647", "\\'01\\'00")->start, 32'767);
}

TEST(RtfListTable, ALevelBeyondTheNinthIsLeftOut)
{
    std::string levels;
    for (int level = 1; level <= maxLevels + 1; ++level) {
        levels += levelOf("\\levelstartat" + std::to_string(level), "\\'01\\'00");
    }
    EXPECT_EQ(tableOf(listOf(levels)).find(1, maxLevels)->start, maxLevels);
}

TEST(RtfListTable, AMarksTextHasAtMost64Characters)
{
    const auto list = listOfLevel("", "\\'00" + std::string(70, 'x'));
    EXPECT_EQ(list, noMarks) << "it says that it has none";
    EXPECT_EQ(listOfLevel("", "\\'7f\\'00" + std::string(70, 'x'))->after.size(), 63);
}

TEST(RtfListTable, ListsBeyondFiveThousandAreLeftOut)
{
    std::string lists;
    std::string overrides;
    for (int id = 1; id <= 5'001; ++id) {
        lists += listOf(levelOf("", "\\'01\\'00"), id);
        overrides += "{\\listoverride\\listid" + std::to_string(id) + "\\ls" + std::to_string(id) + "}";
    }
    const auto table = tableOf(lists, overrides);
    EXPECT_TRUE(table.find(5'000, 0).has_value());
    EXPECT_FALSE(table.find(5'001, 0).has_value());
}

TEST(RtfListTable, EveryPrefixAndEveryTailOfATableIsRead)
{
    const std::string lists = "{\\*\\listtable" + listOf(levelOf("\\levelnfc2", "\\'03(\\'00)")) + "}";
    const std::string overrides = "{\\*\\listoverridetable{\\listoverride\\listid7{\\lfolevel\\levelstartat2}\\ls1}}";
    for (std::size_t cut = 0; cut <= lists.size(); ++cut) {
        RtfListTable table;
        table.readLists(lists.substr(0, cut));
        table.readLists(lists.substr(cut));
        table.readOverrides(overrides.substr(std::min(cut, overrides.size())));
        table.readOverrides(overrides.substr(0, cut));
        const auto list = table.find(1, 0);
        if (cut == lists.size()) {
            EXPECT_EQ(list, numbers(RtfListStyle::LowerRoman, QStringLiteral("("), QStringLiteral(")"), 2));
        } else if (list) {
            EXPECT_GE(list->start, 0);
        }
    }
}

TEST(RtfListTable, WhatFollowsTheGroupIsNotPartOfIt)
{
    RtfListTable table = tableOf("");
    table.readLists("{\\*\\listtable}" + listOf(levelOf("", "\\'01\\'00")));
    table.readLists("}}}}" + listOf(levelOf("", "\\'01\\'00")));
    EXPECT_FALSE(table.find(1, 0).has_value());
}

TEST(RtfListTable, GroupsThatStandInTheWrongOnesAreNotRead)
{
    const std::string level = levelOf("\\levelnfc1", "\\'01\\'00");
    EXPECT_EQ(tableOf(listOf("{\\leveltext {\\listlevel x}y}" + level)).find(1, 0),
              numbers(RtfListStyle::UpperRoman, {}, {}));
    EXPECT_EQ(tableOf(listOf("{\\listlevel{\\leveltext\\'02\\'00.{\\list\\listlevel\\leveltext x}}}")).find(1, 0),
              numbers(RtfListStyle::Decimal, {}, QStringLiteral(".")));
    EXPECT_FALSE(tableOf(level + listOf("")).find(1, 0).has_value());
}

TEST(RtfListTable, GroupsInGroupsMayBeAnyDepth)
{
    const std::string open(1'000'000, '{');
    RtfListTable table;
    table.readLists(open + "\\list{\\listlevel{\\leveltext\\'01" + open + "\\'00");
    table.readOverrides(open + "\\listoverride\\ls1\\listid1{\\lfolevel" + open);
    EXPECT_FALSE(table.find(1, 0).has_value());
}

} // namespace
