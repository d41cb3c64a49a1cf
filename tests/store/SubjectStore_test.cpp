#include "StoreTest.h"
#include "store/Schema.h"
#include "store/SubjectStore.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <sqlite3.h>
#include <string_view>

namespace fs = std::filesystem;

namespace {

int waitsForTheDisk = 0;

} // namespace

// Stands in for the system's, and counts. Nothing of these tests need survive a power failure.
extern "C" int fdatasync(int /*descriptor*/)
{
    ++waitsForTheDisk;
    return 0;
}

namespace {

class CreatingASubject : public StoreTest
{
protected:
    [[nodiscard]] std::string columnsOf(const std::string &table) const
    {
        return askOther("SELECT group_concat(name || ':' || type, ' ') FROM pragma_table_info('" + table + "')");
    }
};

TEST_F(CreatingASubject, MakesBothTablesInTheirFieldOrder)
{
    SubjectStore::create(path);
    EXPECT_EQ(columnsOf("Topics"), "Index:INTEGER Name:TEXT Notes:TEXT");
    EXPECT_EQ(columnsOf("FlashCards"),
              "Index:INTEGER NIndex:INTEGER Front:TEXT Back:TEXT Marked:INTEGER Shuffle:REAL isTrueFalse:INTEGER "
              "isFront:INTEGER Answer:INTEGER Wrong1:INTEGER Wrong2:INTEGER");
}

TEST_F(CreatingASubject, LeavesBothTablesEmptyAndTheFirstKeysAreOne)
{
    SubjectStore::create(path);
    SubjectStore store(path);
    for (const std::string &statement : {allTopics(), cardsOfTopic(1)}) {
        RecordSet set = store.openRecordSet(statement);
        EXPECT_EQ(set.recordCount(), 0);
        set.addNew();
        set.update();
        EXPECT_EQ(set.lastModified(), 1);
    }
}

TEST_F(CreatingASubject, MakesTablesThatTakeNoNullsAndNoKeysOfMoreThan32BitsFromOthersEither)
{
    createCards(1);
    SQLite::Database other = otherProgram();
    for (const std::string field :
         {"NIndex", "Front", "Back", "Marked", "Shuffle", "isTrueFalse", "isFront", "Answer", "Wrong1", "Wrong2"}) {
        EXPECT_THROW(other.exec("UPDATE FlashCards SET " + field + " = NULL"), SQLite::Exception) << field;
    }
    for (const std::string key : {"2147483648", "0", "-1"}) {
        EXPECT_THROW(other.exec("UPDATE FlashCards SET \"Index\" = " + key), SQLite::Exception) << key;
        EXPECT_THROW(other.exec("INSERT INTO Topics (\"Index\") VALUES (" + key + ")"), SQLite::Exception) << key;
    }
    EXPECT_THROW(other.exec("INSERT INTO Topics (Name) VALUES (NULL)"), SQLite::Exception);
    EXPECT_THROW(other.exec("INSERT INTO Topics (Notes) VALUES (NULL)"), SQLite::Exception);
}

TEST_F(CreatingASubject, MarksTheFileAsOurs)
{
    SubjectStore::create(path);
    EXPECT_EQ(otherProgram().execAndGet("PRAGMA application_id").getInt(), subjectApplicationId);
    EXPECT_EQ(otherProgram().execAndGet("PRAGMA user_version").getInt(), 1);
    EXPECT_EQ(bytesOf(path).substr(68, 4), "Crml");
    EXPECT_EQ(askOther("PRAGMA integrity_check"), "ok");
}

TEST_F(CreatingASubject, LeavesOneClosedFile)
{
    SubjectStore::create(path);
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"Subject.crl"});
    otherProgram().exec("BEGIN EXCLUSIVE; COMMIT");
}

TEST_F(CreatingASubject, ReplacesTheFileThatStandsThere)
{
    createCards(3);
    SubjectStore::create(path);
    SubjectStore store(path);
    EXPECT_EQ(store.openRecordSet(cardsOfTopic(1)).recordCount(), 0);
}

TEST_F(CreatingASubject, ReplacesAFileOfAnyKind)
{
    writeBytes(path, "no database at all");
    SubjectStore::create(path);
    EXPECT_EQ(SubjectStore(path).openRecordSet(allTopics()).recordCount(), 0);
}

TEST_F(CreatingASubject, RemovesStaleSideFiles)
{
    for (const char *suffix : {"-journal", "-wal", "-shm"})
        writeBytes(path.string() + suffix, "stale");
    SubjectStore::create(path);
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"Subject.crl"});
}

TEST_F(CreatingASubject, DeletesTheOldFileBeforeTheJournalThatMakesItWhole)
{
    createCards(1);
    fs::create_directories(folder / "Subject.crl-journal" / "that cannot be deleted");
    EXPECT_STORE_ERROR(Engine, SubjectStore::create(path));
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"Subject.crl-journal"});
}

TEST_F(CreatingASubject, TakesNamesWithAnyCharacters)
{
    for (const char *name : {"Größe %41 ?mode=ro#x.crl", ":memory:", "file:x.crl", "it's.crl"}) {
        const fs::path odd = folder / name;
        SubjectStore::create(odd);
        EXPECT_TRUE(fs::exists(odd)) << name;
        EXPECT_EQ(SubjectStore(odd).openRecordSet(allTopics()).recordCount(), 0);
    }
}

TEST_F(CreatingASubject, TakesNamesRelativeToTheWorkingFolder)
{
    const fs::path before = fs::current_path();
    fs::current_path(folder);
    for (const char *name : {"plain.crl", ":memory:", "file:x.crl"}) {
        SubjectStore::create(name);
        EXPECT_TRUE(fs::exists(folder / name)) << name;
        EXPECT_EQ(SubjectStore(name).openRecordSet(allTopics()).recordCount(), 0);
    }
    fs::current_path(before);
}

TEST_F(CreatingASubject, RefusesAFolderAndLeavesIt)
{
    fs::create_directory(path);
    writeBytes(path / "inside", "kept");
    EXPECT_STORE_ERROR(NotAFile, SubjectStore::create(path));
    EXPECT_STORE_ERROR(NotAFile, SubjectStore::create(path / ""));
    EXPECT_EQ(bytesOf(path / "inside"), "kept");
}

TEST_F(CreatingASubject, RefusesAnEmptyName)
{
    EXPECT_STORE_ERROR(NotAFile, SubjectStore::create({}));
}

TEST_F(CreatingASubject, RefusesAFolderThatIsMissing)
{
    EXPECT_STORE_ERROR(NotFound, SubjectStore::create(folder / "missing" / "Subject.crl"));
    EXPECT_EQ(filesInFolder(), std::vector<std::string>());
}

TEST_F(CreatingASubject, RefusesAWriteProtectedFolderAndDestroysNothing)
{
    createCards(1);
    const std::string before = bytesOf(path);
    fs::permissions(path, fs::perms(0666));
    fs::permissions(folder, fs::perms(0555));
    EXPECT_STORE_ERROR_AS_NOBODY(ReadOnly, SubjectStore::create(path));
    EXPECT_STORE_ERROR_AS_NOBODY(ReadOnly, SubjectStore::create(folder / "New.crl"));
    EXPECT_TRUE(bytesOf(path) == before);
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"Subject.crl"});
}

TEST_F(CreatingASubject, RefusesAWriteProtectedFileAndDestroysNothing)
{
    createCards(1);
    const std::string before = bytesOf(path);
    fs::permissions(path, fs::perms(0444));
    fs::permissions(folder, fs::perms(0777));
    EXPECT_STORE_ERROR_AS_NOBODY(ReadOnly, SubjectStore::create(path));
    EXPECT_TRUE(bytesOf(path) == before);
}

TEST_F(CreatingASubject, WorksForTheOneToWhomTheFolderBelongs)
{
    fs::permissions(folder, fs::perms(0777));
    EXPECT_EQ(reasonAsNobody([&] { SubjectStore::create(path); }), -1);
    EXPECT_TRUE(fs::exists(path));
}

class ASubjectStore : public StoreTest
{
};

TEST_F(ASubjectStore, CountsTheCardsOfATopic)
{
    createCards(3);
    SubjectStore store(path);
    RecordSet cards = store.openRecordSet(cardsOfTopic(1));
    cards.moveLast();
    EXPECT_EQ(cards.recordCount(), 3);
    RecordSet none = store.openRecordSet(cardsOfTopic(2));
    none.moveLast();
    EXPECT_EQ(none.recordCount(), 0);
}

TEST_F(ASubjectStore, DeletesATopicWithItsCardsAndNoOthers)
{
    SubjectStore::create(path);
    otherProgram().exec("INSERT INTO Topics (Name) VALUES ('a'), ('b');"
                        "INSERT INTO FlashCards (NIndex, Front) VALUES (1, 'x'), (2, 'y'), (1, 'z')");
    SubjectStore store(path);
    EXPECT_EQ(store.execute(deleteTopicRow(1)), 1);
    EXPECT_EQ(store.execute(deleteTopicCards(1)), 2);
    EXPECT_EQ(askOther("SELECT group_concat(Name) FROM Topics"), "b");
    EXPECT_EQ(askOther("SELECT group_concat(Front) FROM FlashCards"), "y");
}

TEST_F(ASubjectStore, AddsATopicAndReadsItsKeyAtOnce)
{
    SubjectStore::create(path);
    SubjectStore store(path);
    RecordSet topics = store.openRecordSet(allTopics());
    topics.addNew();
    topics.setText("Name", "Birds");
    topics.setText("notes", "{\\rtf1}");
    topics.update();
    topics.setBookmark(topics.lastModified());
    EXPECT_EQ(topics.number(TopicField::Index), 1);
    EXPECT_EQ(topics.text(TopicField::Name), "Birds");
    EXPECT_EQ(topics.text(TopicField::Notes), "{\\rtf1}");
}

TEST_F(ASubjectStore, TakesStringsInStatementsAsTheyAre)
{
    createCards(1);
    otherProgram().exec("UPDATE FlashCards SET Front = 'it''s Yes, Index'");
    SubjectStore store(path);
    EXPECT_EQ(store.openRecordSet("SELECT * FROM FlashCards WHERE Front = 'it''s Yes, Index';").recordCount(), 1);
    EXPECT_EQ(store.execute("DELETE * FROM FlashCards WHERE Front = 'it''s 1, Index';"), 0);
    EXPECT_EQ(store.execute("DELETE * FROM FlashCards WHERE Front = 'it''s Yes, Index';"), 1);
}

TEST_F(ASubjectStore, ReportsAMalformedStatementWithTheEnginesText)
{
    createCards(1);
    SubjectStore store(path);
    const auto error = errorOf([&] { static_cast<void>(store.openRecordSet("SELECT * FROM Topics WHERE;")); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->reason(), Reason::Engine);
    EXPECT_EQ(error->engineCode(), SQLITE_ERROR);
    EXPECT_EQ(error->path(), path.string());
    EXPECT_NE(std::string(error->what()).find("syntax error"), std::string::npos) << error->what();
    EXPECT_STORE_ERROR(Engine, store.openRecordSet("nonsense"));
    EXPECT_STORE_ERROR(Engine, store.openRecordSet("SELECT * FROM Cards;"));
    EXPECT_STORE_ERROR(Engine, store.openRecordSet("SELECT * FROM Topics WHERE Colour = 1;"));
    EXPECT_STORE_ERROR(Engine, store.execute("DELETE * FROM Cards;"));
    EXPECT_STORE_ERROR(Engine, store.execute(""));
}

TEST_F(ASubjectStore, ClosesTwiceAndThenAnswersNotNow)
{
    createCards(1);
    SubjectStore store(path);
    store.close();
    store.close();
    EXPECT_STORE_ERROR(NotNow, store.openRecordSet(allTopics()));
    EXPECT_STORE_ERROR(NotNow, store.execute(deleteTopicRow(1)));
    EXPECT_STORE_ERROR(NotNow, store.isInPlace());
    EXPECT_STORE_ERROR(NotNow, Transaction(store));
}

TEST_F(ASubjectStore, IsInPlaceWhileItsFileIs)
{
    createCards(1);
    const SubjectStore store(path);
    EXPECT_TRUE(store.isInPlace());
    fs::rename(path, folder / "Elsewhere.crl");
    EXPECT_FALSE(store.isInPlace());
    fs::rename(folder / "Elsewhere.crl", path);
    EXPECT_TRUE(store.isInPlace());
    otherProgram().exec("UPDATE FlashCards SET Front = 'Z'");
    EXPECT_TRUE(store.isInPlace()) << "other contents are no other file";
}

TEST_F(ASubjectStore, IsNotInPlaceWhenItsFileWasDeletedOrReplaced)
{
    createCards(1);
    SubjectStore store(path);
    fs::copy_file(path, folder / "Copy.crl");
    fs::remove(path);
    EXPECT_FALSE(store.isInPlace());
    fs::rename(folder / "Copy.crl", path);
    EXPECT_FALSE(store.isInPlace()) << "a copy is another file";
    EXPECT_STORE_ERROR(NotFound, store.execute(deleteTopicCards(1)));
    EXPECT_EQ(askOther("SELECT count(*) FROM FlashCards"), "1");
    EXPECT_TRUE(SubjectStore(path).isInPlace());
}

TEST_F(ASubjectStore, IsInPlaceBehindASymbolicLink)
{
    createCards(1);
    fs::create_symlink("Subject.crl", folder / "Link.crl");
    const SubjectStore store(folder / "Link.crl");
    EXPECT_TRUE(store.isInPlace());
    fs::remove(path);
    EXPECT_FALSE(store.isInPlace());
}

TEST_F(ASubjectStore, CanBeMovedAndClosesWhatItHeldBefore)
{
    createCards(1);
    SubjectStore first(path);
    const RecordSet set = first.openRecordSet(cardsOfTopic(1));
    SubjectStore second(std::move(first));
    EXPECT_EQ(set.text("Front"), "A");
    second = SubjectStore(path);
    EXPECT_STORE_ERROR(NotNow, set.text("Front"));
    EXPECT_EQ(second.openRecordSet(cardsOfTopic(1)).text("Front"), "A");
}

TEST_F(ASubjectStore, SurvivesBeingAssignedToItself)
{
    createCards(1);
    SubjectStore store(path);
    SubjectStore &itself = store;
    store = std::move(itself);
    EXPECT_EQ(store.openRecordSet(cardsOfTopic(1)).text("Front"), "A");
}

TEST_F(ASubjectStore, LeavesNoSideFileBehind)
{
    createCards(2);
    {
        SubjectStore store(path);
        RecordSet set = store.openRecordSet(cardsOfTopic(1));
        set.edit();
        set.setText("Front", "Z");
        set.update();
        EXPECT_EQ(filesInFolder(), std::vector<std::string>{"Subject.crl"});
        Transaction undone(store);
        set.remove();
    }
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"Subject.crl"});
}

TEST_F(ASubjectStore, WritesSafelyWithARollbackJournal)
{
    createCards(1);
    EXPECT_EQ(askOther("PRAGMA journal_mode"), "delete");
    SubjectStore store(path);
    RecordSet set = store.openRecordSet(cardsOfTopic(1));
    const Transaction transaction(store);
    set.edit();
    set.setText("Front", "Z");
    set.update();
    EXPECT_EQ(filesInFolder(), (std::vector<std::string>{"Subject.crl", "Subject.crl-journal"}));
}

TEST_F(ASubjectStore, WaitsForTheDiskAsOftenAsAPowerFailureNeeds)
{
    createCards(1);
    const auto waitsOf = [](const std::function<void()> &action) {
        waitsForTheDisk = 0;
        action();
        return waitsForTheDisk;
    };
    SQLite::Database other = otherProgram();
    const auto otherWaits = [&](const std::string &synchronous) {
        other.exec("PRAGMA synchronous = " + synchronous);
        return waitsOf([&] { other.exec("UPDATE FlashCards SET Front = Front || 'x'"); });
    };
    const int full = otherWaits("FULL");
    ASSERT_GT(full, otherWaits("NORMAL"));

    SubjectStore store(path);
    RecordSet set = store.openRecordSet(cardsOfTopic(1));
    set.edit();
    set.setText("Front", "Z");
    EXPECT_EQ(waitsOf([&] { set.update(); }), full);
    EXPECT_GE(waitsOf([&] { SubjectStore::create(folder / "New.crl"); }), full);
}

TEST_F(ASubjectStore, HoldsNoLockBetweenTwoOperations)
{
    createCards(3);
    SubjectStore store(path);
    RecordSet set = store.openRecordSet(cardsInOrder(cardQuery(std::array{1})));
    SQLite::Database other = otherProgram();
    const auto otherMayWrite = [&] { other.exec("BEGIN EXCLUSIVE; COMMIT"); };
    otherMayWrite();
    static_cast<void>(set.text("Front"));
    otherMayWrite();
    set.edit();
    set.setText("Front", "Z");
    otherMayWrite();
    set.update();
    otherMayWrite();
    set.addNew();
    set.update();
    otherMayWrite();
    set.moveNext();
    set.remove();
    otherMayWrite();
    store.execute(deleteTopicCards(1));
    otherMayWrite();
    set.moveFirst();
    EXPECT_STORE_ERROR(RowGone, set.text("Front"));
    otherMayWrite();
}

/// A store, and the engine's own name for it.
class AnOpenedEngine : public StoreTest
{
protected:
    AnOpenedEngine()
    {
        createCards(1);
        const auto extension = reinterpret_cast<void (*)()>(&remember);
        sqlite3_auto_extension(extension);
        store.emplace(path);
        sqlite3_cancel_auto_extension(extension);
    }

    static int tell(const char *pragma)
    {
        int told = -1;
        const auto read = [](void *result, int /*columns*/, char **values, char ** /*names*/) {
            *static_cast<int *>(result) = std::atoi(values[0]);
            return 0;
        };
        EXPECT_EQ(sqlite3_exec(opened, pragma, read, &told, nullptr), SQLITE_OK);
        return told;
    }

    std::optional<SubjectStore> store;

private:
    static int remember(sqlite3 *engine, char ** /*error*/, const sqlite3_api_routines * /*api*/)
    {
        opened = engine;
        return SQLITE_OK;
    }

    static inline sqlite3 *opened = nullptr;
};

TEST_F(AnOpenedEngine, WaitsHalfASecondForALock)
{
    EXPECT_EQ(tell("PRAGMA busy_timeout"), 500);
}

TEST_F(AnOpenedEngine, ReportsAFullDisk)
{
    EXPECT_GT(tell("PRAGMA max_page_count = 1"), 1); // what it has already is the least
    RecordSet set = store->openRecordSet(cardsOfTopic(1));
    set.edit();
    set.setText("Front", std::string(100'000, 'x'));
    EXPECT_STORE_ERROR(DiskFull, set.update());
    set.cancelUpdate();
    EXPECT_EQ(set.text("Front"), "A");
}

TEST_F(ASubjectStore, ReportsALockAndWorksWhenItIsReleased)
{
    createCards(2);
    SubjectStore store(path);
    RecordSet set = store.openRecordSet(cardsOfTopic(1));
    SQLite::Database other = otherProgram();
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_STORE_ERROR(Locked, SubjectStore(path));
    EXPECT_STORE_ERROR(Locked, store.openRecordSet(allTopics()));
    EXPECT_STORE_ERROR(Locked, set.text("Front"));
    EXPECT_STORE_ERROR(Locked, set.remove());
    EXPECT_STORE_ERROR(Locked, store.execute(deleteTopicCards(1)));
    set.addNew();
    EXPECT_STORE_ERROR(Locked, set.update());
    EXPECT_EQ(set.recordCount(), 2);
    EXPECT_EQ(set.absolutePosition(), 0);
    other.exec("COMMIT");

    set.update();
    EXPECT_EQ(set.recordCount(), 3);
    EXPECT_EQ(set.text("Front"), "A");
    EXPECT_EQ(SubjectStore(path).openRecordSet(cardsOfTopic(1)).recordCount(), 2);
}

TEST_F(ASubjectStore, ReportsALockOfAnotherProcess)
{
    createCards(1);
    std::array<int, 2> ready{};
    std::array<int, 2> done{};
    ASSERT_EQ(::pipe(ready.data()) + ::pipe(done.data()), 0);
    const ::pid_t child = ::fork();
    if (child == 0) {
        SQLite::Database other = otherProgram();
        other.exec("BEGIN EXCLUSIVE");
        char byte = 'x';
        static_cast<void>(!::write(ready[1], &byte, 1));
        static_cast<void>(!::read(done[0], &byte, 1));
        ::_exit(0);
    }
    char byte = 0;
    EXPECT_EQ(::read(ready[0], &byte, 1), 1);
    EXPECT_STORE_ERROR(Locked, SubjectStore(path));
    EXPECT_EQ(::write(done[1], &byte, 1), 1);
    ::waitpid(child, nullptr, 0);
    for (const int end : {ready[0], ready[1], done[0], done[1]})
        ::close(end);
    EXPECT_EQ(SubjectStore(path).openRecordSet(cardsOfTopic(1)).recordCount(), 1);
}

TEST_F(ASubjectStore, ReportsWhatTheDiskCannotReadAnyMoreAsDamage)
{
    createCards(1);
    static int readsLeft = 0;
    const auto read = [](int file, void *bytes, std::size_t count) -> ::ssize_t {
        errno = EIO;
        return readsLeft-- > 0 ? ::read(file, bytes, count) : -1;
    };
    const auto readAt = [](int file, void *bytes, std::size_t count, ::off_t at) -> ::ssize_t {
        errno = EIO;
        return readsLeft-- > 0 ? ::pread(file, bytes, count, at) : -1;
    };
    sqlite3_vfs *system = sqlite3_vfs_find(nullptr);
    system->xSetSystemCall(system, "read", reinterpret_cast<sqlite3_syscall_ptr>(+read));
    system->xSetSystemCall(system, "pread", reinterpret_cast<sqlite3_syscall_ptr>(+readAt));
    system->xSetSystemCall(system, "pread64", reinterpret_cast<sqlite3_syscall_ptr>(+readAt));
    int reads = 0;
    for (;; ++reads) {
        readsLeft = reads;
        const auto failure = errorOf([&] { static_cast<void>(SubjectStore(path).openRecordSet(allTopics())); });
        if (!failure) {
            break;
        }
        EXPECT_EQ(failure->reason(), Reason::Damaged) << reads << ": " << failure->what();
    }
    system->xSetSystemCall(system, nullptr, nullptr); // all as before
    EXPECT_GT(reads, 1);
}

TEST_F(ASubjectStore, IsThereThoughAFileOfTheEnginesOwnIsNot)
{
    createCards(1);
    SubjectStore store(path);
    RecordSet set = store.openRecordSet(cardsOfTopic(1));
    set.edit();
    set.setText("Front", "Z");
    const auto openNoJournal = [](const char *name, int flags, int mode) {
        errno = ENOENT;
        return std::string_view(name).ends_with("-journal") ? -1 : ::open(name, flags, mode);
    };
    sqlite3_vfs *system = sqlite3_vfs_find(nullptr);
    system->xSetSystemCall(system, "open", reinterpret_cast<sqlite3_syscall_ptr>(+openNoJournal));
    EXPECT_STORE_ERROR(Engine, set.update());
    system->xSetSystemCall(system, nullptr, nullptr); // all as before
    set.update();
    EXPECT_EQ(askOther("SELECT Front FROM FlashCards"), "Z");
}

TEST_F(ASubjectStore, SeesAnotherStoreOfTheSameFile)
{
    createCards(2);
    SubjectStore first(path);
    SubjectStore second(path);
    RecordSet ofFirst = first.openRecordSet(cardsOfTopic(1));
    RecordSet ofSecond = second.openRecordSet(cardsOfTopic(1));
    ofFirst.edit();
    ofFirst.setText("Front", "Z");
    ofFirst.update();
    EXPECT_EQ(ofSecond.text("Front"), "Z");
}

} // namespace
