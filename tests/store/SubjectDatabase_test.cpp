#include "StoreTest.h"
#include "store/Schema.h"

#include <array>
#include <csignal>
#include <initializer_list>
#include <random>
#include <sqlite3.h>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

class OpeningAFile : public StoreTest
{
protected:
    static constexpr const char *topicsTable = "CREATE TABLE Topics (\"Index\" INTEGER PRIMARY KEY, Name, Notes);";
    static constexpr const char *cardsTable =
        "CREATE TABLE FlashCards (\"Index\" INTEGER PRIMARY KEY, NIndex, Front, Back, Marked, Shuffle, isTrueFalse, "
        "isFront, Answer, Wrong1, Wrong2);";

    struct FileState
    {
        std::string bytes;
        ::timespec modified;
        std::vector<std::string> neighbours;
    };

    [[nodiscard]] FileState state() const
    {
        struct stat status = {};
        ::stat(path.c_str(), &status);
        return {bytesOf(path), status.st_mtim, filesInFolder()};
    }

    void expectUntouched(const FileState &before) const
    {
        const FileState after = state();
        EXPECT_TRUE(after.bytes == before.bytes) << "the file was changed";
        EXPECT_EQ(after.modified.tv_sec, before.modified.tv_sec);
        EXPECT_EQ(after.modified.tv_nsec, before.modified.tv_nsec);
        EXPECT_EQ(after.neighbours, before.neighbours);
    }

    void createForeign(const std::string &sql) const
    {
        otherProgram(SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec(sql);
    }

    // Runs \p sql in a process that is killed, so that the engine leaves its side files.
    void killAfter(const std::string &sql) const
    {
        const ::pid_t child = ::fork();
        if (child == 0) {
            SQLite::Database other = otherProgram(SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
            other.exec(sql);
            ::raise(SIGKILL);
        }
        ::waitpid(child, nullptr, 0);
    }

    // Leaves the file and the journal as if another program that runs \p parts of one transaction
    // were killed within its commit. Each is a part of the journal.
    void killInCommit(std::initializer_list<std::string> parts) const
    {
        const fs::path journal = path.string() + "-journal";
        {
            SQLite::Database other = otherProgram();
            other.exec("PRAGMA cache_size = 1; BEGIN");
            for (const std::string &part : parts) {
                other.exec(part);
                sqlite3_db_cacheflush(other.getHandle());
            }
            fs::copy_file(journal, folder / "kept");
            other.exec("COMMIT");
        }
        fs::rename(folder / "kept", journal);
    }

    [[nodiscard]] int countCards() const { return SubjectStore(path).openRecordSet(cardsOfTopic(1)).recordCount(); }
};

using ARefusedFile = OpeningAFile;

TEST_F(ARefusedFile, IsNotFoundAndNotCreated)
{
    EXPECT_STORE_ERROR(NotFound, SubjectStore(path));
    EXPECT_STORE_ERROR(NotFound, SubjectStore(folder / "missing" / "Subject.crl"));
    EXPECT_STORE_ERROR(NotFound, SubjectStore(fs::path()));
    EXPECT_EQ(filesInFolder(), std::vector<std::string>());
}

TEST_F(ARefusedFile, IsNotFoundWhereNoFileCanBe)
{
    writeBytes(path, "a file");
    EXPECT_STORE_ERROR(NotFound, SubjectStore(path / "Subject.crl"));
    EXPECT_STORE_ERROR(NotFound, SubjectStore(folder / std::string(300, 'x')));
    fs::create_symlink(folder / "round", folder / "round");
    EXPECT_STORE_ERROR(NotFound, SubjectStore(folder / "round"));
}

TEST_F(ARefusedFile, IsNotFoundBehindADeadLink)
{
    fs::create_symlink(folder / "missing.crl", path);
    EXPECT_STORE_ERROR(NotFound, SubjectStore(path));
}

TEST_F(ARefusedFile, IsAFolder)
{
    EXPECT_STORE_ERROR(NotAFile, SubjectStore(folder));
}

TEST_F(ARefusedFile, IsADevice)
{
    EXPECT_STORE_ERROR(NotAFile, SubjectStore("/dev/null"));
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_STORE_ERROR(NotAFile, SubjectStore(path));
}

TEST_F(ARefusedFile, IsEmpty)
{
    writeBytes(path, "");
    const FileState before = state();
    EXPECT_STORE_ERROR(EmptyFile, SubjectStore(path));
    expectUntouched(before);
}

TEST_F(ARefusedFile, IsRandom)
{
    std::mt19937 random(7);
    for (const std::size_t size : std::initializer_list<std::size_t>{1, 15, 16, 99, 100, 511, 512, 4096, 100'000}) {
        std::string bytes(size, '\0');
        for (char &byte : bytes) {
            byte = static_cast<char>(random());
        }
        writeBytes(path, bytes);
        const FileState before = state();
        EXPECT_STORE_ERROR(NotASubject, SubjectStore(path)) << size;
        expectUntouched(before);
    }
}

TEST_F(ARefusedFile, IsADatabaseOfAnotherProgram)
{
    createForeign("CREATE TABLE Bookmarks (Url TEXT); INSERT INTO Bookmarks VALUES ('a')");
    const FileState before = state();
    EXPECT_STORE_ERROR(NotASubject, SubjectStore(path));
    expectUntouched(before);
}

TEST_F(ARefusedFile, IsADatabaseWithoutTables)
{
    createForeign("PRAGMA user_version = 5");
    const FileState before = state();
    EXPECT_STORE_ERROR(NotASubject, SubjectStore(path));
    expectUntouched(before);
}

TEST_F(ARefusedFile, HasOneOfTheTablesOnly)
{
    createForeign(topicsTable);
    EXPECT_STORE_ERROR(NotASubject, SubjectStore(path));
    fs::remove(path);
    createForeign(cardsTable);
    EXPECT_STORE_ERROR(NotASubject, SubjectStore(path));
}

TEST_F(ARefusedFile, HasTheFieldsInAnotherOrder)
{
    createForeign(std::string(cardsTable) + "CREATE TABLE Topics (\"Index\" INTEGER PRIMARY KEY, Notes, Name)");
    EXPECT_STORE_ERROR(NotASubject, SubjectStore(path));
}

TEST_F(ARefusedFile, LacksTheLastField)
{
    createForeign(std::string(cardsTable) + "CREATE TABLE Topics (\"Index\" INTEGER PRIMARY KEY, Name)");
    EXPECT_STORE_ERROR(NotASubject, SubjectStore(path));
}

TEST_F(ARefusedFile, HasViewsInsteadOfTables)
{
    createForeign(std::string(cardsTable) + "CREATE VIEW Topics AS SELECT 1 AS \"Index\", 2 AS Name, 3 AS Notes");
    EXPECT_STORE_ERROR(NotASubject, SubjectStore(path));
}

TEST_F(ARefusedFile, IsNewerThanTheProgram)
{
    createCards(1);
    otherProgram().exec("PRAGMA user_version = " + std::to_string(subjectSchemaVersion + 1));
    const FileState before = state();
    EXPECT_STORE_ERROR(TooNew, SubjectStore(path));
    expectUntouched(before);
}

TEST_F(ARefusedFile, IsTruncated)
{
    createCards(200);
    const std::string whole = bytesOf(path);
    ASSERT_GT(whole.size(), 8192U);
    for (const std::size_t size :
         {std::size_t{1}, std::size_t{15}, std::size_t{16}, std::size_t{60}, std::size_t{99}, std::size_t{100},
          std::size_t{512}, std::size_t{4095}, std::size_t{4096}, std::size_t{5000}, whole.size() / 2,
          whole.size() - 4096, whole.size() - 100, whole.size() - 1}) {
        writeBytes(path, whole.substr(0, size));
        const FileState before = state();
        if (size <= 16) {
            EXPECT_STORE_ERROR(NotASubject, SubjectStore(path)) << size;
        } else {
            EXPECT_STORE_ERROR(Damaged, SubjectStore(path)) << size;
        }
        expectUntouched(before);
    }
    writeBytes(path, whole);
    EXPECT_EQ(countCards(), 200);
}

TEST_F(ARefusedFile, HasADamagedSchema)
{
    createCards(1);
    std::string bytes = bytesOf(path);
    bytes.replace(100, 8, 8, '\xff');
    writeBytes(path, bytes);
    const FileState before = state();
    EXPECT_STORE_ERROR(Damaged, SubjectStore(path));
    expectUntouched(before);
}

TEST_F(ARefusedFile, MayNotBeRead)
{
    createCards(1);
    fs::permissions(path, fs::perms(0222));
    fs::permissions(folder, fs::perms(0777));
    EXPECT_STORE_ERROR_AS_NOBODY(NoPermission, SubjectStore(path));
}

TEST_F(ARefusedFile, LiesInAFolderThatMayNotBeEntered)
{
    createCards(1);
    fs::permissions(folder, fs::perms(0600));
    if (::geteuid() != 0) {
        fs::permissions(folder, fs::perms::none);
    }
    EXPECT_STORE_ERROR_AS_NOBODY(NoPermission, SubjectStore(path));
}

TEST_F(ARefusedFile, MayNotBeWritten)
{
    createCards(1);
    fs::permissions(path, fs::perms(0444));
    fs::permissions(folder, fs::perms(0777));
    const FileState before = state();
    EXPECT_STORE_ERROR_AS_NOBODY(ReadOnly, SubjectStore(path));
    expectUntouched(before);
}

TEST_F(ARefusedFile, LiesInAFolderInWhichNoJournalCanBeMade)
{
    createCards(1);
    fs::permissions(path, fs::perms(0666));
    fs::permissions(folder, fs::perms(0555));
    const FileState before = state();
    EXPECT_STORE_ERROR_AS_NOBODY(ReadOnly, SubjectStore(path));
    expectUntouched(before);
}

TEST_F(ARefusedFile, IsALinkIntoAFolderInWhichNoJournalCanBeMade)
{
    const fs::path guarded = folder / "guarded";
    fs::create_directory(guarded);
    path = guarded / "Subject.crl";
    createCards(1);
    fs::permissions(path, fs::perms(0666));
    fs::permissions(guarded, fs::perms(0555));
    fs::permissions(folder, fs::perms(0777));
    fs::create_symlink(path, folder / "Link.crl");
    EXPECT_STORE_ERROR_AS_NOBODY(ReadOnly, SubjectStore(folder / "Link.crl"));
    fs::permissions(guarded, fs::perms(0777));
    EXPECT_EQ(reasonAsNobody([&] { SubjectStore store(folder / "Link.crl"); }), -1);
}

TEST_F(ARefusedFile, OfAnotherProgramKeepsItsWriteAheadLog)
{
    createForeign("PRAGMA journal_mode = WAL; CREATE TABLE Bookmarks (Url TEXT)");
    const FileState closed = state();
    EXPECT_STORE_ERROR(NotASubject, SubjectStore(path));
    expectUntouched(closed);

    killAfter("INSERT INTO Bookmarks VALUES ('a')");
    const FileState killed = state();
    ASSERT_EQ(killed.neighbours, (std::vector<std::string>{"Subject.crl", "Subject.crl-shm", "Subject.crl-wal"}));
    const std::string log = bytesOf(path.string() + "-wal");
    EXPECT_STORE_ERROR(NotASubject, SubjectStore(path));
    expectUntouched(killed);
    EXPECT_TRUE(bytesOf(path.string() + "-wal") == log);

    fs::remove(path.string() + "-shm");
    const FileState copied = state();
    EXPECT_STORE_ERROR(NotASubject, SubjectStore(path));
    expectUntouched(copied);
    EXPECT_EQ(askOther("SELECT count(*) FROM Bookmarks"), "1");
}

TEST_F(ARefusedFile, OfAnotherProgramKeepsItsJournal)
{
    for (const std::string name : {"Subject.crl", "of %41.crl", "of ?mode=ro.crl", "of #1.crl", "of Größe.crl"}) {
        SCOPED_TRACE(name);
        const fs::path own = folder / ("folder " + name);
        fs::create_directory(own);
        path = own / name;
        createForeign("CREATE TABLE Bookmarks (Url TEXT); INSERT INTO Bookmarks VALUES (hex(zeroblob(100000)))");
        killAfter("PRAGMA cache_size = 1; BEGIN; UPDATE Bookmarks SET Url = hex(randomblob(100000));"
                  "INSERT INTO Bookmarks VALUES (hex(zeroblob(100000)))");
        const FileState before = state();
        const std::string journal = bytesOf(path.string() + "-journal");
        ASSERT_NE(journal, "");
        EXPECT_STORE_ERROR(NotASubject, SubjectStore(path));
        expectUntouched(before);
        EXPECT_TRUE(bytesOf(path.string() + "-journal") == journal);
    }
}

TEST_F(ARefusedFile, OfALaterVersionKeepsItsJournal)
{
    createCards(1);
    otherProgram().exec("UPDATE FlashCards SET Front = hex(zeroblob(100000)); PRAGMA user_version = " +
                        std::to_string(subjectSchemaVersion + 1));
    killAfter("PRAGMA cache_size = 1; BEGIN; UPDATE FlashCards SET Front = hex(randomblob(100000));"
              "INSERT INTO FlashCards (Front) VALUES (hex(zeroblob(100000)))");
    const FileState before = state();
    ASSERT_EQ(before.neighbours, (std::vector<std::string>{"Subject.crl", "Subject.crl-journal"}));
    EXPECT_STORE_ERROR(TooNew, SubjectStore(path));
    expectUntouched(before);
}

TEST_F(ARefusedFile, IsNamedInTheError)
{
    writeBytes(path, "no database, but long enough to be looked at as one, if anybody cared to do so");
    const auto error = errorOf([&] { SubjectStore store(path); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->path(), path.string());
    EXPECT_EQ(error->engineCode(), SQLITE_NOTADB);
    EXPECT_STREQ(error->what(), "file is not a database");
}

using AnAcceptedFile = OpeningAFile;

TEST_F(AnAcceptedFile, LosesAJournalThatItsWriterDidNotComeToUse)
{
    createCards(3);
    const std::string whole = bytesOf(path);
    killAfter("BEGIN; UPDATE FlashCards SET Marked = 1");
    ASSERT_EQ(state().neighbours, (std::vector<std::string>{"Subject.crl", "Subject.crl-journal"}));
    ASSERT_TRUE(bytesOf(path) == whole);
    SubjectStore(path).close();
    EXPECT_EQ(state().neighbours, std::vector<std::string>{"Subject.crl"});
    EXPECT_EQ(askOther("SELECT count(*) FROM FlashCards WHERE Marked = 0"), "3");
    EXPECT_EQ(askOther("PRAGMA user_version"), std::to_string(subjectSchemaVersion));
}

TEST_F(AnAcceptedFile, LosesAJournalThatItsWriterOnlyCameToMake)
{
    createCards(3);
    const std::string whole = bytesOf(path);
    writeBytes(path.string() + "-journal", "");
    SubjectStore(path).close();
    EXPECT_EQ(state().neighbours, std::vector<std::string>{"Subject.crl"});
    EXPECT_EQ(askOther("SELECT count(*) FROM FlashCards WHERE Marked = 0"), "3");
    EXPECT_EQ(bytesOf(path).size(), whole.size());
}

TEST_F(AnAcceptedFile, MayHaveItsTablesFromItsJournal)
{
    createForeign(std::string(topicsTable) + cardsTable + "INSERT INTO FlashCards (NIndex) VALUES (1), (1)");
    killInCommit({"DROP TABLE Topics; DROP TABLE FlashCards"});
    EXPECT_EQ(countCards(), 2);
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"Subject.crl"});
}

TEST_F(AnAcceptedFile, GetsItsLengthBackFromALaterPartOfItsJournal)
{
    createCards(0);
    otherProgram().exec("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 200) "
                        "INSERT INTO FlashCards (NIndex, Front) SELECT 1, hex(zeroblob(1000)) FROM n");
    const std::size_t sizeBefore = bytesOf(path).size();
    killInCommit({"UPDATE FlashCards SET Front = hex(randomblob(1000))", // does not lengthen the file yet
                  "INSERT INTO FlashCards (NIndex, Front) VALUES (1, hex(zeroblob(100000)))"});
    ASSERT_GT(bytesOf(path).size(), sizeBefore);
    EXPECT_EQ(countCards(), 200);
    EXPECT_EQ(bytesOf(path).size(), sizeBefore);
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"Subject.crl"});
}

TEST_F(AnAcceptedFile, WithAJournalMayHaveALengthInItsHeaderThatItsProgramDidNotKeep)
{
    createCards(2);
    std::string bytes = bytesOf(path);
    bytes[31] = static_cast<char>(bytes[31] + 5); // pages
    bytes[95] = static_cast<char>(bytes[95] - 1); // as of which change
    writeBytes(path, bytes);
    killInCommit({"INSERT INTO FlashCards (NIndex, Front) VALUES (1, hex(zeroblob(100000)))"});
    EXPECT_EQ(countCards(), 2);
    EXPECT_EQ(bytesOf(path).size(), bytes.size());
}

TEST_F(AnAcceptedFile, KeepsTheJournalOfAProgramThatIsWriting)
{
    createCards(3);
    SQLite::Database other = otherProgram();
    other.exec("BEGIN; UPDATE FlashCards SET Marked = 1");
    ASSERT_EQ(state().neighbours, (std::vector<std::string>{"Subject.crl", "Subject.crl-journal"}));
    SubjectStore(path).close();
    EXPECT_EQ(state().neighbours, (std::vector<std::string>{"Subject.crl", "Subject.crl-journal"}));
    other.exec("COMMIT");
    EXPECT_EQ(askOther("SELECT count(*) FROM FlashCards WHERE Marked = 1"), "3");
}

TEST_F(AnAcceptedFile, IsNotChangedByOpeningAndReading)
{
    createCards(3);
    const FileState before = state();
    {
        SubjectStore store(path);
        EXPECT_EQ(store.openRecordSet(cardsOfTopic(1)).text("Front"), "A");
    }
    expectUntouched(before);
}

TEST_F(AnAcceptedFile, MayComeFromAnotherProgram)
{
    createForeign(std::string(topicsTable) + cardsTable + "INSERT INTO FlashCards (NIndex, Front) VALUES (1, 'x')");
    EXPECT_EQ(countCards(), 1);
}

TEST_F(AnAcceptedFile, MayHaveMoreFieldsAndTablesAndOtherLetterCase)
{
    createForeign("CREATE TABLE topics (INDEX_ INTEGER);"
                  "ALTER TABLE topics RENAME COLUMN INDEX_ TO \"INDEX\";"
                  "ALTER TABLE topics ADD COLUMN NAME; ALTER TABLE topics ADD COLUMN notes;"
                  "ALTER TABLE topics ADD COLUMN Colour; CREATE TABLE Extra (a);" +
                  std::string(cardsTable) + "INSERT INTO topics VALUES (5, 'Birds', 'n', 'red')");
    SubjectStore store(path);
    RecordSet topics = store.openRecordSet(topicByKey(5));
    EXPECT_EQ(topics.text("Name"), "Birds");
    EXPECT_STORE_ERROR(OutOfRange, topics.text("Colour"));
}

TEST_F(AnAcceptedFile, MayHaveAnotherVersionIfItIsNotOurs)
{
    createForeign(std::string(topicsTable) + cardsTable + "PRAGMA user_version = 99");
    EXPECT_EQ(countCards(), 0);
}

TEST_F(AnAcceptedFile, MayHaveAPlainColumnForItsKeys)
{
    createForeign(
        "CREATE TABLE Topics (\"Index\" INTEGER, Name, Notes);"
        "CREATE TABLE FlashCards (\"Index\" INTEGER, NIndex, Front, Back, Marked, Shuffle, isTrueFalse, isFront,"
        " Answer, Wrong1, Wrong2);"
        "INSERT INTO FlashCards (\"Index\", NIndex, Front) VALUES (30, 1, 'x'), (10, 1, 'y')");
    SubjectStore store(path);
    RecordSet cards = store.openRecordSet(cardsInOrder(cardQuery(std::array{1})));
    EXPECT_EQ(cards.text("Front"), "y");
    EXPECT_EQ(cards.number("Index"), 10);
    cards.edit();
    cards.setText("Back", "back");
    cards.update();
    cards.addNew();
    cards.setNumber("NIndex", 1);
    cards.setText("Front", "z");
    cards.update();
    cards.setBookmark(cards.lastModified());
    EXPECT_EQ(cards.number("Index"), 31);
    EXPECT_EQ(store.execute("DELETE * FROM FlashCards Where Index = 30;"), 1);
    EXPECT_EQ(askOther("SELECT group_concat(Front || \"Index\" || coalesce(Back, '')) FROM FlashCards"), "y10back,z31");

    RecordSet topics = store.openRecordSet(allTopics());
    topics.addNew();
    topics.update();
    topics.setBookmark(topics.lastModified());
    EXPECT_EQ(topics.number("Index"), 1);
}

TEST_F(AnAcceptedFile, MayHaveAnyKeysOf32Bits)
{
    createForeign(
        "CREATE TABLE Topics (\"Index\" INTEGER PRIMARY KEY, Name, Notes);"
        "CREATE TABLE FlashCards (\"Index\" INTEGER PRIMARY KEY, NIndex, Front, Back, Marked, Shuffle,"
        " isTrueFalse, isFront, Answer, Wrong1, Wrong2);"
        "INSERT INTO FlashCards (\"Index\", NIndex) VALUES (-2147483648, 1), (-1, 1), (0, 1), (2147483647, 1)");
    SubjectStore store(path);
    RecordSet cards = store.openRecordSet(cardsInOrder(cardQuery(std::array{1})));
    for (const RecordSet::Bookmark key : {std::int64_t{-2147483648}, -1L, 0L, 2147483647L}) {
        EXPECT_EQ(cards.bookmark(), key);
        EXPECT_EQ(cards.number("Index"), key);
        cards.moveNext();
    }
    EXPECT_TRUE(cards.isEndOfSet());

    cards.addNew();
    cards.setNumber("NIndex", 1);
    EXPECT_STORE_ERROR(Refused, cards.update()); // no key is left
    EXPECT_EQ(cards.recordCount(), 4);
    EXPECT_EQ(askOther("SELECT count(*) FROM FlashCards"), "4");
}

TEST_F(AnAcceptedFile, IsDamagedWhereAKeyHasMoreThan32Bits)
{
    createForeign(topicsTable);
    createForeign(cardsTable);
    otherProgram().exec("INSERT INTO FlashCards (rowid, NIndex) VALUES (4294967297, 1), (2, 2), (-2147483649, 3)");
    SubjectStore store(path);
    EXPECT_STORE_ERROR(Damaged, store.openRecordSet(cardsOfTopic(1)));
    EXPECT_STORE_ERROR(Damaged, store.openRecordSet(cardsOfTopic(3)));
    EXPECT_EQ(store.openRecordSet(cardsOfTopic(2)).recordCount(), 1);
}

TEST_F(AnAcceptedFile, MayHaveAPrimaryKeyThatIsNotTheEnginesOwn)
{
    createForeign(cardsTable);
    createForeign("CREATE TABLE Topics (\"Index\" INT PRIMARY KEY, Name, Notes);"
                  "INSERT INTO Topics VALUES (30, 'old', '')");
    SubjectStore store(path);
    RecordSet topics = store.openRecordSet(allTopics());
    topics.addNew();
    topics.setText("Name", "new");
    topics.update();
    topics.setBookmark(topics.lastModified());
    EXPECT_EQ(topics.number("Index"), 31);
}

TEST_F(AnAcceptedFile, IsReachedThroughALink)
{
    createCards(2);
    const fs::path link = folder / "Link.crl";
    fs::create_symlink("Subject.crl", link);
    EXPECT_EQ(SubjectStore(link).openRecordSet(cardsOfTopic(1)).recordCount(), 2);
}

TEST_F(AnAcceptedFile, WithAWriteAheadLogGetsARollbackJournal)
{
    createCards(2);
    otherProgram().exec("PRAGMA journal_mode = WAL");
    EXPECT_EQ(countCards(), 2);
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"Subject.crl"});
    EXPECT_EQ(askOther("PRAGMA journal_mode"), "delete");
}

TEST_F(AnAcceptedFile, WithTheWriteAheadLogOfAKilledProgramBecomesOneWholeFile)
{
    createForeign("PRAGMA journal_mode = WAL");
    killAfter(std::string(topicsTable) + cardsTable + "INSERT INTO FlashCards (NIndex) VALUES (1), (1), (1)");
    ASSERT_EQ(filesInFolder().size(), 3U);
    {
        SubjectStore store(path);
        otherProgram().exec("BEGIN EXCLUSIVE; COMMIT");
        RecordSet cards = store.openRecordSet(cardsOfTopic(1));
        EXPECT_EQ(cards.recordCount(), 3);
        otherProgram().exec("BEGIN EXCLUSIVE; COMMIT");
        cards.remove();
    }
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"Subject.crl"});
    EXPECT_EQ(askOther("SELECT count(*) FROM FlashCards"), "2");
}

TEST_F(AnAcceptedFile, IsLockedWhileAnotherProgramUsesItsWriteAheadLog)
{
    createCards(2);
    {
        SQLite::Database other = otherProgram();
        other.exec("PRAGMA journal_mode = WAL; UPDATE FlashCards SET Marked = 1");
        EXPECT_STORE_ERROR(Locked, SubjectStore(path));
        EXPECT_EQ(other.execAndGet("SELECT sum(Marked) FROM FlashCards").getInt(), 2);
    }
    EXPECT_EQ(countCards(), 2);
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"Subject.crl"});
}

// Opening may not read more of a large file than of a small one.
TEST_F(AnAcceptedFile, IsOpenedWithoutReadingItThrough)
{
    createCards(1);
    otherProgram().exec("INSERT INTO FlashCards (Front) VALUES (zeroblob(30000000))");
    sqlite3_memory_highwater(1);
    const auto before = sqlite3_memory_used();
    {
        SubjectStore store(path);
    }
    EXPECT_LT(sqlite3_memory_highwater(0) - before, 500'000);
}

} // namespace
