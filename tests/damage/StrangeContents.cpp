#include "tests/damage/StrangeContents.h"

#include <SQLiteCpp/Database.h>
#include <string>

namespace {

/// All topics and cards are what they were, but for a text \p expression in every text field.
#define IN_ALL_TEXTS(expression)                                                                                       \
    "UPDATE Topics SET Name = " expression ", Notes = " expression ";"                                                 \
    "UPDATE FlashCards SET Front = " expression ", Back = " expression
#define IN_ALL_TEST_FIELDS(expression)                                                                                 \
    "UPDATE FlashCards SET Marked = " expression ", Shuffle = " expression ", isTrueFalse = " expression               \
    ", isFront = " expression ", Answer = " expression ", Wrong1 = " expression ", Wrong2 = " expression

} // namespace

const std::vector<StrangeContents> &strangeContents()
{
    static const std::vector<StrangeContents> all{
        // Texts.
        {"TextsThatAreNoRtf", IN_ALL_TEXTS("'plain text, {not closed'")},
        {"TextsOfThousandsOfOpenGroups", IN_ALL_TEXTS(R"('{\rtf1 ' || replace(hex(zeroblob(2000)), '00', '{\b x'))")},
        {"TextsOfThousandsOfClosingBraces", IN_ALL_TEXTS(R"('{\rtf1 x' || replace(hex(zeroblob(2000)), '00', '}'))")},
        {"NumbersThatAreTooLarge",
         IN_ALL_TEXTS(
             R"('{\rtf1\fs2147483648\li-99999999999999999999\uc99999999\u-2147483649\cf77777\f99999 x\par}')")},
        {"BinaryThatIsNotThere", IN_ALL_TEXTS(R"('{\rtf1 {\pict\wmetafile8\picw-5\pich999999999\bin2147483647 ab')")},
        {"PicturesAndObjectsOfGarbage",
         IN_ALL_TEXTS(R"('{\rtf1{\pict\pngblip\picwgoal-1 89504e470d0a1a0a' || hex(zeroblob(900)) )"
                      R"(|| '}{\object\objemb{\*\objdata 0105000002' || hex(zeroblob(90)) || 'zz}}}')")},
        {"TextsThatAreNoUtf8", IN_ALL_TEXTS("CAST(x'fffe80c3c3f4908080eda080' AS TEXT)")},
        {"TextsWithNulBytes", IN_ALL_TEXTS("CAST(x'7b5c7274663120610062007d' AS TEXT)")},
        {"TextsWithControlCharacters", IN_ALL_TEXTS("char(1, 7, 8, 9, 10, 13, 27, 8238, 8203, 65279, 65535, 1114111)")},
        {"LongTexts", IN_ALL_TEXTS("replace(hex(zeroblob(8000)), '00', 'word ')")},
        {"EmptyTexts", IN_ALL_TEXTS("''")},
        {"NullTexts", IN_ALL_TEXTS("NULL")},
        {"BlobsForTexts", IN_ALL_TEXTS("x'00ff7b5c72746631'")},
        {"NumbersForTexts", IN_ALL_TEXTS("-9223372036854775808")},
        {"RealsForTexts", IN_ALL_TEXTS("-9e999")},
        {"NamesThatLookLikePlaceholders", "UPDATE Topics SET Name = '%1 %2 %n &x [*] <b>' || \"Index\""},
        // Numbers.
        {"NullNumbers", IN_ALL_TEST_FIELDS("NULL")},
        {"TextsForNumbers", IN_ALL_TEST_FIELDS("'three'")},
        {"NumbersAsTexts", IN_ALL_TEST_FIELDS("'2'") "; UPDATE FlashCards SET NIndex = '1'"},
        {"BlobsForNumbers", IN_ALL_TEST_FIELDS("x'ffffffff'")},
        {"InfiniteNumbers", IN_ALL_TEST_FIELDS("9e999")},
        {"NegativeInfiniteNumbers", IN_ALL_TEST_FIELDS("-9e999")},
        {"LargestNumbers", IN_ALL_TEST_FIELDS("9223372036854775807")},
        {"SmallestNumbers", IN_ALL_TEST_FIELDS("-9223372036854775808")},
        {"AnswersBelowTheFirst", "UPDATE FlashCards SET Answer = -5, Wrong1 = -1, Wrong2 = -2147483648"},
        {"AnswersBeyondTheLast", "UPDATE FlashCards SET Answer = 4, Wrong1 = 1000000000, Wrong2 = 2147483647"},
        {"TestFieldsThatCannotBeWritten",
         "CREATE TRIGGER t AFTER UPDATE OF Answer ON FlashCards BEGIN UPDATE FlashCards SET Answer = -5, Wrong1 = "
         "1000000000, Wrong2 = -1, Shuffle = 9e999 WHERE \"Index\" = NEW.\"Index\"; END"},
        // Keys.
        {"NegativeKeys", "UPDATE Topics SET \"Index\" = -\"Index\"; UPDATE FlashCards SET \"Index\" = -\"Index\", "
                         "NIndex = -NIndex"},
        {"AKeyOfZero", "UPDATE Topics SET \"Index\" = 0 WHERE \"Index\" = 1; UPDATE FlashCards SET NIndex = 0 WHERE "
                       "NIndex = 1; UPDATE FlashCards SET \"Index\" = 0 WHERE \"Index\" = 1"},
        {"KeysThatAreTooLarge", "UPDATE FlashCards SET \"Index\" = \"Index\" + 2147483640"},
        {"TheLastKeys", "UPDATE FlashCards SET \"Index\" = 2147483647 WHERE \"Index\" = 24; UPDATE Topics SET "
                        "\"Index\" = 2147483647 WHERE \"Index\" = 3"},
        {"TheLargestKeyOfAll", "UPDATE Topics SET \"Index\" = 9223372036854775807 WHERE \"Index\" = 3"},
        {"CardsOfNoTopic", "UPDATE FlashCards SET NIndex = 999"},
        {"CardsOfNullTopic", "UPDATE FlashCards SET NIndex = NULL"},
        {"OneKeyForAllInAPlainColumn", "UPDATE Topics SET \"Index\" = 1; UPDATE FlashCards SET \"Index\" = 1", ""},
        {"NullKeysInAPlainColumn", "UPDATE Topics SET \"Index\" = NULL; UPDATE FlashCards SET \"Index\" = NULL", ""},
        {"TextKeysInAPlainColumn", "UPDATE Topics SET \"Index\" = 'first'; UPDATE FlashCards SET \"Index\" = 'x'", ""},
        {"HugeKeysInAPlainColumn", "UPDATE Topics SET \"Index\" = \"Index\" * 4000000000", ""},
        {"TablesWithoutRowIds", "", "INTEGER PRIMARY KEY", "WITHOUT ROWID"},
        // Tables.
        {"NoRows", "DELETE FROM Topics; DELETE FROM FlashCards"},
        {"CardsWithoutTopics", "DELETE FROM Topics"},
        {"HundredsOfTopics", "WITH RECURSIVE n(i) AS (SELECT 4 UNION ALL SELECT i + 1 FROM n WHERE i < 250) "
                             "INSERT INTO Topics SELECT i, 'Topic ' || i, 'notes' FROM n"},
        {"RowsThatVanishWhenTheyAreAdded",
         "CREATE TRIGGER t AFTER INSERT ON FlashCards BEGIN DELETE FROM FlashCards WHERE \"Index\" = NEW.\"Index\"; "
         "END; CREATE TRIGGER u AFTER INSERT ON Topics BEGIN DELETE FROM Topics WHERE \"Index\" = NEW.\"Index\"; END"},
        {"CardsThatVanishWhenOneIsChanged", "CREATE TRIGGER t AFTER UPDATE ON FlashCards BEGIN DELETE FROM FlashCards "
                                            "WHERE \"Index\" % 2 = 0; END"},
        {"RowsThatCannotBeChanged", "CREATE TRIGGER t BEFORE UPDATE ON FlashCards BEGIN SELECT RAISE(ABORT, 'no'); END;"
                                    "CREATE TRIGGER u BEFORE DELETE ON Topics BEGIN SELECT RAISE(ROLLBACK, 'no'); END;"
                                    "CREATE TRIGGER v BEFORE INSERT ON Topics BEGIN SELECT RAISE(ROLLBACK, 'no'); END"},
        {"AFieldThatOnlyOneRowMayHave",
         "UPDATE FlashCards SET Marked = \"Index\"; CREATE UNIQUE INDEX one ON FlashCards (Marked)"},
    };
    return all;
}

void makeStrangeSubject(const std::filesystem::path &file, const StrangeContents &contents)
{
    const std::string key = std::string("(\"Index\" ") + contents.keyType + ", ";
    const std::string end = std::string(") ") + contents.tableOptions + ";";
    SQLite::Database engine(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    engine.exec("PRAGMA synchronous = OFF");
    engine.exec("CREATE TABLE Topics " + key + "Name, Notes" + end + "CREATE TABLE FlashCards " + key +
                "NIndex, Front, Back, Marked, Shuffle, isTrueFalse, isFront, Answer, Wrong1, Wrong2" + end);
    engine.exec(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 24) INSERT INTO FlashCards "
        "SELECT i, 1 + i % 3, '{\\rtf1 front ' || i || '}', '{\\rtf1 back ' || i || '}', i % 2, i / 30.0, 0, 1, "
        "1, 2, 3 FROM n");
    engine.exec("INSERT INTO Topics VALUES (1, 'One', '{\\rtf1 one}'), (2, 'Two', '{\\rtf1 two}'), "
                "(3, 'Three', '{\\rtf1 three}')");
    engine.exec(contents.sql);
}
