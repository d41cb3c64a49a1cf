#include "store/SubjectDatabase.h"

#include "store/HotJournal.h"
#include "store/StoreError.h"
#include "store/SubjectFile.h"
#include "store/WorkSignal.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <sqlite3.h>
#include <utility>

namespace fs = std::filesystem;
using Reason = StoreError::Reason;

namespace {

/// How long a locked file is waited for.
constexpr int busyTimeoutMs = 500;

/// Steps of the engine between two signals that it works: less than a millisecond.
constexpr int stepsPerSignal = 4000;

/// Undoing a journal of this size takes a quarter of a second with a fast disk, seconds with a slow one.
constexpr std::uintmax_t longJournal = std::uintmax_t{64} << 20;

constexpr int openFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;

// A file that is not there means nothing: the engine looks for files that need not be.
Reason reasonOfDisk(int systemError)
{
    const Reason reason = reasonOfSystemError(systemError);
    return reason == Reason::NotFound ? Reason::Engine : reason;
}

Reason reasonOf(int engineCode, int systemError)
{
    switch (engineCode) {
    case SQLITE_CANTOPEN_ISDIR: return Reason::NotAFile;
    case SQLITE_READONLY_DBMOVED: return Reason::NotFound;
    case SQLITE_IOERR_CORRUPTFS: return Reason::Damaged;
    default: break;
    }
    switch (engineCode & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED: return Reason::Locked;
    case SQLITE_PERM:
    case SQLITE_AUTH: return Reason::NoPermission;
    case SQLITE_CANTOPEN:
    case SQLITE_IOERR: return reasonOfDisk(systemError);
    case SQLITE_READONLY: return Reason::ReadOnly;
    case SQLITE_CORRUPT: return Reason::Damaged;
    case SQLITE_NOTADB: return Reason::NotASubject;
    case SQLITE_FULL: return Reason::DiskFull;
    case SQLITE_CONSTRAINT:
    case SQLITE_TOOBIG:
    case SQLITE_MISMATCH: return Reason::Refused;
    default: return Reason::Engine;
    }
}

int pragma(SQLite::Database &engine, const char *name)
{
    return engine.execAndGet(std::string("PRAGMA ") + name).getInt();
}

std::string columnDefinition(const FieldDefinition &field)
{
    const std::string name = quotedName(field.name);
    switch (field.type) {
    case FieldType::Key:
        return name + " INTEGER PRIMARY KEY AUTOINCREMENT CHECK (" + name + " BETWEEN 1 AND 2147483647)";
    case FieldType::Name:
        return name + " TEXT NOT NULL DEFAULT '' CHECK (length(" + name + ") <= " + std::to_string(maxTopicNameLength) +
               ")";
    case FieldType::Text: return name + " TEXT NOT NULL DEFAULT ''";
    case FieldType::Number:
    case FieldType::Flag: return name + " INTEGER NOT NULL DEFAULT 0";
    case FieldType::Single: return name + " REAL NOT NULL DEFAULT 0";
    }
    return {};
}

std::string createTable(const TableDefinition &table)
{
    std::string sql;
    for (const FieldDefinition &field : table.fields) {
        sql.append(sql.empty() ? "(" : ", ").append(columnDefinition(field));
    }
    return "CREATE TABLE " + quotedName(table.name) + " " + sql + ")";
}

void writeSchema(SQLite::Database &engine)
{
    engine.exec("PRAGMA synchronous = FULL");
    SQLite::Transaction transaction(engine, SQLite::TransactionBehavior::EXCLUSIVE);
    engine.exec("PRAGMA application_id = " + std::to_string(subjectApplicationId));
    engine.exec("PRAGMA user_version = " + std::to_string(subjectSchemaVersion));
    for (const TableDefinition &table : subjectTables) {
        engine.exec(createTable(table));
    }
    transaction.commit();
}

bool isThere(const fs::path &file) noexcept
{
    std::error_code ignored;
    return fs::exists(file, ignored);
}

/// One opening of a file that may turn out to be no subject.
class Opening
{
public:
    explicit Opening(const fs::path &path)
        : m_path(path)
        , m_file(requireSubjectPath(path))
        , m_hasJournal(isThere(sideFile(m_file, "-journal")))
        , m_hasLog(fileSize(sideFile(m_file, "-wal")) > 0)
    {
    }

    SubjectDatabase open()
    {
        if (m_hasJournal) {
            refuseStrangerWithJournal();
        }

        m_result.engine = std::make_unique<SQLite::Database>(shownPath(m_file), openFlags, busyTimeoutMs);
        SQLite::Database &engine = *m_result.engine;
        sqlite3_progress_handler(
            engine.getHandle(), stepsPerSignal,
            [](void *) {
                signalWork();
                return 0;
            },
            nullptr);
        if (sqlite3_db_readonly(engine.getHandle(), "main") != 0) {
            refuse(Reason::ReadOnly, "the file may not be written");
        }
        sqlite3_db_config(engine.getHandle(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
        sqlite3_db_config(engine.getHandle(), SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
        if (m_hasLog) {
            keepLog(engine);
        }

        if (m_hasJournal) {
            requireSoundJournal(engine);
            if (fileSize(sideFile(m_file, "-journal")) >= longJournal) {
                signalLongWork("Undoing an interrupted change of the subject...");
            }
        }
        engine.exec("BEGIN");
        requireReadable(engine);
        const bool usesLog = engine.execAndGet("PRAGMA journal_mode").getString() == "wal";
        engine.exec("COMMIT");

        if (usesLog || m_hasLog) {
            leaveLog(engine);
        }
        engine.exec("PRAGMA synchronous = FULL");
        if (m_hasJournal) {
            clearJournal(engine);
        }
        return std::move(m_result);
    }

    /// Null until open() has made it.
    [[nodiscard]] const std::unique_ptr<SQLite::Database> &engine() const { return m_result.engine; }

private:
    [[noreturn]] void refuse(Reason reason, const std::string &text) const
    {
        throw StoreError(reason, 0, shownPath(m_path), text);
    }

    // A journal left by a killed program is rolled back by the first read. That
    // is right for a subject, but a stranger's file is to stay as it is: look
    // at it through a connection that takes no notice of the journal. If that
    // finds no readable database, the journal is what makes it whole.
    void refuseStrangerWithJournal()
    {
        std::string uri = "file:";
        for (const char c : shownPath(m_file)) {
            constexpr char digits[] = "0123456789ABCDEF";
            const auto byte = static_cast<unsigned char>(c);
            if (byte <= ' ' || byte >= 0x7f || c == '%' || c == '?' || c == '#') {
                uri.append({'%', digits[byte >> 4], digits[byte & 15]});
            } else {
                uri += c;
            }
        }
        try {
            SQLite::Database engine(uri + "?immutable=1", SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
            if (engine.execAndGet("SELECT count(*) FROM sqlite_schema").getInt() == 0) {
                return;
            }
            requireKnownVersion(engine);
            requireTables(engine);
        } catch (const SQLite::Exception &) {
        }
    }

    // Asks through the engine's own descriptor, and without a lock.
    void requireSoundJournal(SQLite::Database &engine) const
    {
        sqlite3_file *file = nullptr;
        sqlite3_file_control(engine.getHandle(), "main", SQLITE_FCNTL_FILE_POINTER, static_cast<void *>(&file));
        if (file == nullptr || file->pMethods == nullptr || isBeingWritten(*file)) {
            return;
        }
        DatabaseHeader header{};
        // Of a shorter file the rest is zeros, which tell no length.
        static_cast<void>(file->pMethods->xRead(file, header.data(), static_cast<int>(header.size()), 0));
        if (!restoresTrueLength(sideFile(m_file, "-journal"), header, fileSize(m_file))) {
            refuse(Reason::Damaged, "the journal beside the file is damaged");
        }
    }

    // Nobody plays back the journal of a program that is at work, and it changes under our eyes.
    static bool isBeingWritten(sqlite3_file &file)
    {
        int isReserved = 0;
        return file.pMethods->xCheckReservedLock(&file, &isReserved) == SQLITE_OK && isReserved != 0;
    }

    // A journal whose writer was killed before it touched the file, or even the journal,
    // undoes nothing, and reading leaves it there: only a write, of what stands there
    // already, removes it.
    void clearJournal(SQLite::Database &engine)
    {
        if (!isThere(sideFile(m_file, "-journal"))) {
            return;
        }
        try {
            SQLite::Transaction transaction(engine, SQLite::TransactionBehavior::IMMEDIATE);
            engine.exec("PRAGMA user_version = " + std::to_string(pragma(engine, "user_version")));
            transaction.commit();
        } catch (const SQLite::Exception &) {
            // It belongs to a program that is writing now, or cannot be removed: no reason not to open.
        }
    }

    // Someone's write-ahead log: neither fold it into the file nor put an index
    // of it beside the file before we know that the file is a subject.
    static void keepLog(SQLite::Database &engine)
    {
        sqlite3_db_config(engine.getHandle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
        engine.exec("PRAGMA locking_mode = EXCLUSIVE");
    }

    // Folds the log into the file for good, so that the one file is the whole subject.
    void leaveLog(SQLite::Database &engine)
    {
        if (engine.execAndGet("PRAGMA journal_mode = DELETE").getString() != "delete") {
            refuse(Reason::Locked, "the file is in use with a write-ahead log");
        }
        if (!m_hasLog) {
            return;
        }
        sqlite3_db_config(engine.getHandle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 0, nullptr);
        std::error_code ignored;
        fs::remove(sideFile(m_file, "-shm"), ignored);
        engine.exec("PRAGMA locking_mode = NORMAL");
        pragma(engine, "user_version"); // the next read gives the lock back
    }

    // Nothing of ours was asked so far: what makes no sense to the engine is in the file's header.
    void requireReadable(SQLite::Database &engine)
    {
        try {
            requireSubject(engine);
        } catch (const SQLite::Exception &failure) {
            if (failure.getErrorCode() != SQLITE_ERROR) {
                throw;
            }
            refuse(Reason::Damaged, failure.what());
        }
        if (sqlite3_db_readonly(engine.getHandle(), "main") != 0) {
            refuse(Reason::Damaged, "the header says that the file has a format that cannot be written");
        }
    }

    void requireSubject(SQLite::Database &engine)
    {
        requireKnownVersion(engine);
        if (!m_hasLog) {
            requireWholeFile(engine);
        }
        requireTables(engine);
    }

    void requireKnownVersion(SQLite::Database &engine) const
    {
        if (pragma(engine, "application_id") == subjectApplicationId &&
            pragma(engine, "user_version") > subjectSchemaVersion) {
            refuse(Reason::TooNew, "the file was written by a later version of the program");
        }
    }

    // The engine itself counts a last page that is cut off as a whole one.
    void requireWholeFile(SQLite::Database &engine) const
    {
        const auto pages = static_cast<std::uint64_t>(pragma(engine, "page_count"));
        const auto pageSize = static_cast<std::uint64_t>(pragma(engine, "page_size"));
        if (fileSize(m_file) < pages * pageSize) {
            refuse(Reason::Damaged, "the end of the file is missing");
        }
    }

    void requireTables(SQLite::Database &engine)
    {
        SQLite::Statement columns(engine,
                                  "SELECT c.name, c.type, c.pk FROM sqlite_schema AS t, pragma_table_info(t.name) AS c "
                                  "WHERE t.type = 'table' AND t.name = ? COLLATE NOCASE ORDER BY c.cid");
        for (std::size_t table = 0; table < subjectTables.size(); ++table) {
            const TableDefinition &definition = subjectTables[table];
            columns.bind(1, std::string(definition.name));
            for (const FieldDefinition &field : definition.fields) {
                if (!columns.executeStep() || !sameName(columns.getColumn(0).getString(), field.name)) {
                    refuse(Reason::NotASubject,
                           "the file has no table " + std::string(definition.name) + " with the fields of a subject");
                }
                if (field.type == FieldType::Key) {
                    m_result.keyIsRowId[table] =
                        sameName(columns.getColumn(1).getString(), "INTEGER") && columns.getColumn(2).getInt() == 1;
                }
            }
            columns.reset();
        }
    }

    const fs::path &m_path;
    fs::path m_file;
    bool m_hasJournal;
    bool m_hasLog;
    SubjectDatabase m_result{};
};

} // namespace

void createSubject(const fs::path &path)
{
    std::unique_ptr<SQLite::Database> engine;
    try {
        withStoreErrors(shownPath(path), engine, [&] {
            engine = std::make_unique<SQLite::Database>(shownPath(fs::absolute(path)), openFlags | SQLITE_OPEN_CREATE,
                                                        busyTimeoutMs);
            writeSchema(*engine);
        });
    } catch (...) {
        engine.reset();
        std::error_code ignored;
        fs::remove(path, ignored);
        fs::remove(sideFile(path, "-journal"), ignored); // or it would undo what is put in the file's place
        throw;
    }
}

SubjectDatabase openSubject(const fs::path &path)
{
    Opening opening(path);
    return withStoreErrors(shownPath(path), opening.engine(), [&] { return opening.open(); });
}

void rethrowAsStoreError(const std::string &path, const std::unique_ptr<SQLite::Database> &engine)
{
    try {
        throw;
    } catch (const SQLite::Exception &failure) {
        const int code = failure.getExtendedErrorCode() > 0 ? failure.getExtendedErrorCode() : failure.getErrorCode();
        const int systemError = engine ? sqlite3_system_errno(engine->getHandle()) : 0;
        throw StoreError(reasonOf(code, systemError), code, path, failure.what());
    }
}
