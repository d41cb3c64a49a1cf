#include "platform/rtf/RtfGroups.h"

#include <gtest/gtest.h>

namespace {

constexpr int maxDepth = 3;

TEST(RtfGroups, NoneIsOpenAtFirst)
{
    RtfGroups groups(maxDepth);
    EXPECT_FALSE(groups.isAnyOpen());
    EXPECT_TRUE(groups.open());
    EXPECT_TRUE(groups.isAnyOpen());
    EXPECT_TRUE(groups.close());
    EXPECT_FALSE(groups.isAnyOpen());
}

TEST(RtfGroups, AGroupInheritsAndItsChangesEndWithIt)
{
    RtfGroups groups(maxDepth);
    groups.open();
    groups.current().character.bold = true;
    groups.current().fallbackLength = 2;
    groups.open();
    EXPECT_TRUE(groups.current().character.bold);
    EXPECT_EQ(groups.current().fallbackLength, 2);
    groups.current().character.bold = false;
    groups.current().fallbackLength = 0;
    groups.begin(RtfDestination::FontTable);
    groups.close();
    EXPECT_TRUE(groups.current().character.bold);
    EXPECT_EQ(groups.current().fallbackLength, 2);
    EXPECT_EQ(groups.destination(), RtfDestination::Body);
}

struct NestingRow
{
    const char *name;
    RtfDestination outer;
    RtfDestination inner;
    bool allowed;
    RtfDestination result;
};

void PrintTo(const NestingRow &row, std::ostream *out)
{
    *out << row.name;
}

class RtfNesting : public testing::TestWithParam<NestingRow>
{
};

TEST_P(RtfNesting, FollowsTheRules)
{
    RtfGroups groups(maxDepth);
    groups.open();
    groups.current().destination = GetParam().outer;
    groups.open();
    EXPECT_EQ(groups.begin(GetParam().inner), GetParam().allowed);
    EXPECT_EQ(groups.destination(), GetParam().result);
    groups.close();
    EXPECT_EQ(groups.destination(), GetParam().outer);
}

const auto rowName = [](const auto &info) { return info.param.name; };

using enum RtfDestination;

INSTANTIATE_TEST_SUITE_P(
    OfDestinations, RtfNesting,
    testing::Values(
        NestingRow{"ATableInTheBody", Body, ColorTable, true, ColorTable},
        NestingRow{"ATableInATable", FontTable, ColorTable, true, ColorTable},
        NestingRow{"NothingInWhatIsSkipped", Skipped, ColorTable, false, Skipped},
        NestingRow{"TheTextBeforeANumberInANumbering", Numbering, NumberingTextBefore, true, NumberingTextBefore},
        NestingRow{"TheTextAfterANumberInANumbering", Numbering, NumberingTextAfter, true, NumberingTextAfter},
        NestingRow{"NoTextBeforeANumberElsewhere", Body, NumberingTextBefore, false, Skipped},
        NestingRow{"NoTextAfterANumberElsewhere", NumberingTextBefore, NumberingTextAfter, false, Skipped},
        NestingRow{"NoTableAmongAlternatives", Alternatives, FontTable, false, Alternatives},
        NestingRow{"TheAlternativeToRead", Alternatives, UnicodeAlternative, true, Body},
        NestingRow{"AnAlternativeToNothing", FontTable, UnicodeAlternative, true, FontTable}),
    rowName);

TEST(RtfGroups, AnAlternativeIsForWhatTheAlternativesStandIn)
{
    RtfGroups groups(maxDepth);
    groups.open();
    groups.begin(FontTable);
    groups.open();
    groups.begin(Alternatives);
    groups.open();
    groups.begin(UnicodeAlternative);
    EXPECT_EQ(groups.destination(), FontTable);
}

TEST(RtfGroups, BeyondTheDepthTheyShareOneState)
{
    RtfGroups groups(maxDepth);
    for (int depth = 0; depth < maxDepth; ++depth) {
        EXPECT_TRUE(groups.open());
    }
    EXPECT_FALSE(groups.open());
    EXPECT_FALSE(groups.open());
    groups.current().character.bold = true;
    EXPECT_FALSE(groups.close());
    EXPECT_FALSE(groups.close());
    EXPECT_TRUE(groups.current().character.bold);
    EXPECT_TRUE(groups.close());
    EXPECT_FALSE(groups.current().character.bold);
}

TEST(RtfGroups, BeyondTheDepthADestinationEndsWithItsGroup)
{
    RtfGroups groups(1);
    groups.open();
    groups.begin(FontTable);
    groups.open();
    groups.open();
    groups.skip();
    groups.open();
    EXPECT_FALSE(groups.begin(ColorTable));
    groups.close();
    EXPECT_EQ(groups.destination(), Skipped);
    groups.close();
    EXPECT_EQ(groups.destination(), FontTable);
    groups.open();
    groups.skip();
    groups.close();
    EXPECT_EQ(groups.destination(), FontTable) << "a second one";
    groups.close();
    EXPECT_TRUE(groups.isAnyOpen());
    groups.close();
    EXPECT_FALSE(groups.isAnyOpen());
}

} // namespace
