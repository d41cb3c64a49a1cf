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

struct MarkRow
{
    const char *name;
    const char *text; ///< UTF-8
    RtfListStyle hint;
    RtfListStyle style;
    int number;
    const char *before;
    const char *after;
};

void PrintTo(const MarkRow &row, std::ostream *out)
{
    *out << '"' << row.text << '"';
}

class RtfListMarkText : public testing::TestWithParam<MarkRow>
{
};

TEST_P(RtfListMarkText, IsRead)
{
    const MarkRow &row = GetParam();
    const auto mark = readListMark(QString::fromUtf8(row.text), row.hint);
    ASSERT_TRUE(mark.has_value());
    EXPECT_EQ(static_cast<int>(mark->list.style), static_cast<int>(row.style));
    EXPECT_EQ(mark->number, row.number);
    EXPECT_EQ(mark->list.start, row.number);
    EXPECT_EQ(mark->list.before.toStdString(), row.before);
    EXPECT_EQ(mark->list.after.toStdString(), row.after);
}

const auto markName = [](const auto &info) { return info.param.name; };

using enum RtfListStyle;

INSTANTIATE_TEST_SUITE_P(
    Numbers, RtfListMarkText,
    testing::Values(MarkRow{"ADigit", "1.", None, Decimal, 1, "", "."},
                    MarkRow{"DigitsAlone", "12", None, Decimal, 12, "", ""},
                    MarkRow{"DigitsInBrackets", "(7)\t", Bullet, Decimal, 7, "(", ")"},
                    MarkRow{"Zero", "0.", None, Decimal, 0, "", "."},
                    MarkRow{"ALeadingZero", "01.", None, Decimal, 1, "", "."},
                    MarkRow{"BlanksAround", " \t3) \t ", None, Decimal, 3, "", ")"},
                    MarkRow{"AWordBefore", "Chapter 4:", None, Decimal, 4, "Chapter ", ":"},
                    MarkRow{"SeveralNumbers", "2.1.", None, Decimal, 1, "", "."},
                    MarkRow{"SeveralNumbersInBrackets", "(2-b)", None, LowerLetter, 2, "(", ")"},
                    MarkRow{"AWordBeforeSeveralNumbers", "Part 3.12", None, Decimal, 12, "Part ", ""},
                    MarkRow{"OtherLettersAround", "\u7b2c9\u7ae0", None, Decimal, 9, "\u7b2c", "\u7ae0"},
                    MarkRow{"TheLargest", "999999999", None, Decimal, 999'999'999, "", ""}),
    markName);

INSTANTIATE_TEST_SUITE_P(Letters, RtfListMarkText,
                         testing::Values(MarkRow{"ALetter", "(a)", None, LowerLetter, 1, "(", ")"},
                                         MarkRow{"ACapital", "B.", None, UpperLetter, 2, "", "."},
                                         MarkRow{"TwoLetters", "ab)", None, LowerLetter, 28, "", ")"},
                                         MarkRow{"ARoman", "iv)", None, LowerRoman, 4, "", ")"},
                                         MarkRow{"ACapitalRoman", "IX.", None, UpperRoman, 9, "", "."},
                                         MarkRow{"TheLongestRoman", "mmmdccclxxxviii", None, LowerRoman, 3888, "", ""},
                                         MarkRow{"IByItselfIsRoman", "i.", None, LowerRoman, 1, "", "."},
                                         MarkRow{"IAmongLetters", "i.", LowerLetter, LowerLetter, 9, "", "."},
                                         MarkRow{"IAmongCapitals", "i.", UpperLetter, LowerLetter, 9, "", "."},
                                         MarkRow{"IAmongRomans", "i.", LowerRoman, LowerRoman, 1, "", "."},
                                         MarkRow{"VByItselfIsALetter", "v.", None, LowerLetter, 22, "", "."},
                                         MarkRow{"VAmongRomans", "v.", LowerRoman, LowerRoman, 5, "", "."},
                                         MarkRow{"XAmongRomans", "X.", UpperRoman, UpperRoman, 10, "", "."},
                                         MarkRow{"CAfterNumbersIsALetter", "c.", Decimal, LowerLetter, 3, "", "."},
                                         MarkRow{"TwoAmongLetters", "ii", LowerLetter, LowerLetter, 243, "", ""},
                                         MarkRow{"ALetterAmongRomans", "b.", LowerRoman, LowerLetter, 2, "", "."},
                                         MarkRow{"NoRomanOfItsLetters", "iix", None, Bullet, 1, "", ""},
                                         MarkRow{"OAmongLetters", "o", LowerLetter, LowerLetter, 15, "", ""},
                                         MarkRow{"ODotted", "o.", None, LowerLetter, 15, "", "."}),
                         markName);

INSTANTIATE_TEST_SUITE_P(Bullets, RtfListMarkText,
                         testing::Values(MarkRow{"ABullet", "\u2022\t", None, Bullet, 1, "", ""},
                                         MarkRow{"ACenteredDot", "\u00b7", Decimal, Bullet, 1, "", ""},
                                         MarkRow{"ACharacterOfASymbolFont", "\uf0b7\t", None, Bullet, 1, "", ""},
                                         MarkRow{"ADash", "-", None, Bullet, 1, "", ""},
                                         MarkRow{"AHollowOne", "o\t", None, Bullet, 1, "", ""},
                                         MarkRow{"AGreekLetter", "\u03b1)", None, Bullet, 1, "", ""},
                                         MarkRow{"ADigitOfAnotherScript", "\u0663.", None, Bullet, 1, "", ""},
                                         MarkRow{"AWord", "Note:", None, Bullet, 1, "", ""},
                                         MarkRow{"LettersAndDigits", "1st", None, Bullet, 1, "", ""},
                                         MarkRow{"MixedCase", "Ab.", None, Bullet, 1, "", ""},
                                         MarkRow{"TooManyDigits", "1234567890", None, Bullet, 1, "", ""}),
                         markName);

TEST(RtfListMark, OfNothingIsNone)
{
    EXPECT_FALSE(readListMark({}, RtfListStyle::Decimal).has_value());
    EXPECT_FALSE(readListMark(QStringLiteral(" \t "), RtfListStyle::Decimal).has_value());
}

TEST(RtfListMark, OfALongTextIsABullet)
{
    const QString text = QString(64, QLatin1Char('.')) + QLatin1Char('1');
    EXPECT_EQ(readListMark(text, RtfListStyle::None)->list, bullets);
    EXPECT_EQ(readListMark(text.mid(1), RtfListStyle::None)->number, 1);
}

} // namespace
