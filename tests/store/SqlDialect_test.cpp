#include "store/SqlDialect.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

namespace {

struct Translation
{
    const char *name;
    const char *statement;
    const char *translated;
};

class SqlDialect : public testing::TestWithParam<Translation>
{
};

TEST_P(SqlDialect, Translates)
{
    EXPECT_EQ(translateSql(GetParam().statement), GetParam().translated);
}

INSTANTIATE_TEST_SUITE_P(
    EachOf, SqlDialect,
    testing::Values(
        Translation{"DeleteLosesItsStar", "DELETE * FROM Topics Where NIndex = 3;",
                    "DELETE FROM Topics Where NIndex = 3;"},
        Translation{"DeleteInLowerCase", "delete * from Topics;", "delete from Topics;"},
        Translation{"DeleteWithoutBlanks", "DELETE*FROM Topics;", "DELETE FROM Topics;"},
        Translation{"DeleteWithABlankBeforeTheStar", "DELETE *FROM Topics;", "DELETE  FROM Topics;"},
        Translation{"DeleteWithABlankAfterTheStar", "DELETE* FROM Topics;", "DELETE  FROM Topics;"},
        Translation{"DeleteOverLines", "DELETE\n*\tFROM Topics;", "DELETE\nFROM Topics;"},
        Translation{"DeleteOverLinesOfAnotherSystem", "DELETE\r\n*\r\nFROM Topics;", "DELETE\r\nFROM Topics;"},
        Translation{"DeleteOfSomethingElseKeepsItsStar", "DELETE * Topics", "DELETE * Topics"},
        Translation{"DeleteWithComments", "DELETE /*a*/ * /*b*/ FROM t", "DELETE /*a*/ /*b*/ FROM t"},
        Translation{"PlainDeleteStays", "DELETE FROM Topics;", "DELETE FROM Topics;"},
        Translation{"OtherStarsStay", "SELECT * FROM t WHERE 2 * 3 = 6", "SELECT * FROM t WHERE 2 * 3 = 6"},
        Translation{"IndexIsQuoted", "WHERE Index = 3", "WHERE \"Index\" = 3"},
        Translation{"IndexKeepsItsCase", "index INDEX iNdEx", "\"index\" \"INDEX\" \"iNdEx\""},
        Translation{"IndexWithoutBlanks", "(Index=3)AND(Index>1)", "(\"Index\"=3)AND(\"Index\">1)"},
        Translation{"IndexOfATable", "Topics.Index = 1", "Topics.\"Index\" = 1"},
        Translation{"AChainOfNumbersIsAList", "Where NIndex = 3 OR NIndex = 12 OR NIndex = 7;",
                    "Where NIndex IN (3, 12, 7);"},
        Translation{"AChainInAnyCaseWithoutBlanks", "where NIndex=1 or\nnindex=2", "where NIndex IN (1, 2)"},
        Translation{"AChainOfIndex", "WHERE Index = 3 OR Index = 4 ORDER BY Shuffle",
                    "WHERE \"Index\" IN (3, 4) ORDER BY Shuffle"},
        Translation{"AChainWithAnotherConditionAtItsEnd", "WHERE NIndex = 1 OR NIndex = 2 OR Marked = Yes",
                    "WHERE NIndex IN (1, 2) OR Marked = 1"},
        Translation{"AChainWithoutACondition", "WHERE", "WHERE"},
        Translation{"AChainOfOneStays", "WHERE NIndex = 1;", "WHERE NIndex = 1;"},
        Translation{"AChainOfTwoColumnsStays", "WHERE NIndex = 1 OR Marked = 1", "WHERE NIndex = 1 OR Marked = 1"},
        Translation{"AChainThatAnAndDividesStays", "WHERE NIndex = 1 OR NIndex = 2 AND Marked = 1",
                    "WHERE NIndex = 1 OR NIndex = 2 AND Marked = 1"},
        Translation{"AChainThatGoesOnCountingStays", "WHERE NIndex = 1 OR NIndex = 2 + 3",
                    "WHERE NIndex = 1 OR NIndex = 2 + 3"},
        Translation{"AChainOfNegativeNumbersStays", "WHERE NIndex = 1 OR NIndex = -2",
                    "WHERE NIndex = 1 OR NIndex = -2"},
        Translation{"AChainOfNamesStays", "WHERE NIndex = 1 OR NIndex = Answer", "WHERE NIndex = 1 OR NIndex = Answer"},
        Translation{"AChainOfOtherComparisonsStays", "WHERE NIndex > 1 OR NIndex > 2",
                    "WHERE NIndex > 1 OR NIndex > 2"},
        Translation{"AChainThatDoesNotStartTheConditionStays", "WHERE Marked = Yes AND NIndex = 1 OR NIndex = 2",
                    "WHERE Marked = 1 AND NIndex = 1 OR NIndex = 2"},
        Translation{"AChainThatBreaksOffStays", "WHERE NIndex = 1 OR NIndex =", "WHERE NIndex = 1 OR NIndex ="},
        Translation{"YesIsOne", "Marked = Yes", "Marked = 1"}, Translation{"NoIsZero", "Marked = No", "Marked = 0"},
        Translation{"FlagsInAnyCase", "yes YES yEs no NO nO", "1 1 1 0 0 0"},
        Translation{"FlagsWithoutBlanks", "(Marked=Yes)", "(Marked=1)"},
        Translation{"AFieldNamedLikeAFlagStays", "t.Yes = t.No", "t.Yes = t.No"},
        Translation{"LongerWordsStay", "Indexes NIndex Index1 _Index Yesterday Nothing Yes_ No2 Indéx Indexé",
                    "Indexes NIndex Index1 _Index Yesterday Nothing Yes_ No2 Indéx Indexé"},
        Translation{"NumbersWithLettersStay", "1Index 0xNo", "1Index 0xNo"},
        Translation{"ParametersStay", ":Index @Yes $No ?1 #Index", ":Index @Yes $No ?1 #Index"},
        Translation{"StringsStay", "Front = 'Yes' OR Front = 'Index'", "Front = 'Yes' OR Front = 'Index'"},
        Translation{"DoubledApostrophesStayInTheString", "'it''s Yes' = Yes", "'it''s Yes' = 1"},
        Translation{"AnEmptyStringEnds", "'' = No", "'' = 0"},
        Translation{"ADeleteInAStringStays", "'DELETE * FROM t'", "'DELETE * FROM t'"},
        Translation{"QuotedNamesStay", R"("Index" = "Yes" AND "a ""No" = No)", R"("Index" = "Yes" AND "a ""No" = 0)"},
        Translation{"BracketedNamesStay", "[Index] = [Yes] AND [a'b] = Yes", "[Index] = [Yes] AND [a'b] = 1"},
        Translation{"ADoubledBracketClosesTheName", "[a]]Index", "[a]]\"Index\""},
        Translation{"BacktickedNamesStay", "`Index` = `Yes` AND `a``No` = No", "`Index` = `Yes` AND `a``No` = 0"},
        Translation{"LineCommentsStay", "1 -- Index is Yes\n= Yes", "1 -- Index is Yes\n= 1"},
        Translation{"BlockCommentsStay", "/* Index 'Yes */ Index", "/* Index 'Yes */ \"Index\""},
        Translation{"ASlashThatOpensACommentDoesNotCloseIt", "/*/ Index */ Index", "/*/ Index */ \"Index\""},
        Translation{"AMinusIsNoComment", "1 - Index", "1 - \"Index\""},
        Translation{"ASlashIsNoComment", "1 / Index", "1 / \"Index\""},
        Translation{"AnOpenStringReachesToTheEnd", "Index = 'Yes", "\"Index\" = 'Yes"},
        Translation{"AnOpenBracketReachesToTheEnd", "Index = [Yes", "\"Index\" = [Yes"},
        Translation{"AnOpenCommentReachesToTheEnd", "Index /* Yes", "\"Index\" /* Yes"},
        Translation{"NothingIsNothing", "", ""}, Translation{"BlanksStay", "  \t ", "  \t "},
        Translation{"ADeleteAtTheEnd", "DELETE", "DELETE"},
        Translation{"ADeleteWithAStarAtTheEnd", "DELETE *", "DELETE *"}),
    [](const auto &test) { return std::string(test.param.name); });

TEST(KeySelection, SelectsTheKeyOnly)
{
    const KeySelection selection = translateKeySelection("SELECT * FROM Topics;");
    EXPECT_EQ(selection.table, "Topics");
    EXPECT_EQ(selection.sql, "SELECT rowid FROM Topics;");
}

TEST(KeySelection, KeepsConditionAndOrder)
{
    const KeySelection selection =
        translateKeySelection("Select * From Flashcards Where NIndex = 3 OR Marked = Yes ORDER BY Index ASC;");
    EXPECT_EQ(selection.table, "Flashcards");
    EXPECT_EQ(selection.sql, "SELECT rowid FROM Flashcards Where NIndex = 3 OR Marked = 1 ORDER BY \"Index\" ASC;");
}

TEST(KeySelection, TakesQuotedTables)
{
    EXPECT_EQ(translateKeySelection("SELECT * FROM [Topics]").table, "Topics");
    EXPECT_EQ(translateKeySelection("SELECT * FROM \"Topics\"").table, "Topics");
    EXPECT_EQ(translateKeySelection("SELECT * FROM `a``b`").table, "a`b");
}

TEST(KeySelection, TakesAnyBlanksAndComments)
{
    EXPECT_EQ(translateKeySelection("\n SELECT/**/*\tFROM Topics -- all\n;").sql, "SELECT rowid FROM Topics -- all\n;");
}

TEST(KeySelection, RefusesOtherStatements)
{
    for (const char *statement :
         {"", "   ", "SELECT", "SELECT *", "SELECT * FROM", "SELECT * FROM ;", "SELECT Name FROM Topics",
          "DELETE * FROM Topics", "DROP Topics;", "SELECT *, 1 FROM Topics", "SELECT * FROM 'Topics'",
          "SELECT * FROM (SELECT 1)", "nonsense"})
        EXPECT_THROW(static_cast<void>(translateKeySelection(statement)), std::invalid_argument) << statement;
}

TEST(KeySelection, RefusesMoreThanOneTableAndAliases)
{
    for (const char *statement :
         {"SELECT * FROM Topics, FlashCards", "SELECT * FROM Topics t", "SELECT * FROM Topics AS t",
          "SELECT * FROM Topics JOIN FlashCards", "SELECT * FROM main.Topics", "SELECT * FROM Topics UNION SELECT 1"})
        EXPECT_THROW(static_cast<void>(translateKeySelection(statement)), std::invalid_argument) << statement;
}

} // namespace
