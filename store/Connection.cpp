#include "store/Connection.h"

#include "store/StoreError.h"
#include "store/SubjectFile.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <limits>
#include <sqlite3.h>
#include <utility>

using Reason = StoreError::Reason;

namespace {

/// Resets a statement when it is done or fails, so that it holds no lock.
class Run
{
public:
    explicit Run(SQLite::Statement &statement)
        : m_statement(statement)
    {
    }
    Run(const Run &) = delete;
    Run &operator=(const Run &) = delete;
    ~Run() { m_statement.tryReset(); }

    bool step() { return m_statement.executeStep(); }
    void finish()
    {
        while (step()) {
            ;
        }
    }

private:
    SQLite::Statement &m_statement;
};

template <typename Function>
void forEachField(const TableDefinition &table, FieldMask fields, Function function)
{
    for (std::size_t position = 0; position < table.fields.size(); ++position) {
        if ((fields >> position & 1) != 0) {
            function(position);
        }
    }
}

std::string selectSql(const TableDefinition &table)
{
    std::string sql;
    for (const FieldDefinition &field : table.fields) {
        sql.append(sql.empty() ? "SELECT " : ", ").append(quotedName(field.name));
    }
    return sql + " FROM " + quotedName(table.name) + " WHERE rowid = ?";
}

std::string deleteSql(const TableDefinition &table)
{
    return "DELETE FROM " + quotedName(table.name) + " WHERE rowid = ?";
}

std::string updateSql(const TableDefinition &table, FieldMask fields)
{
    std::string assignments;
    forEachField(table, fields, [&](std::size_t position) {
        assignments.append(assignments.empty() ? "" : ", ")
            .append(quotedName(table.fields[position].name))
            .append(" = ?");
    });
    return "UPDATE " + quotedName(table.name) + " SET " + assignments + " WHERE rowid = ?";
}

std::string insertSql(const TableDefinition &table, FieldMask fields, bool keyIsRowId)
{
    std::string names;
    std::string values;
    const auto append = [&](std::string_view name, const std::string &value) {
        names.append(names.empty() ? "" : ", ").append(quotedName(name));
        values.append(values.empty() ? "" : ", ").append(value);
    };
    if (!keyIsRowId) {
        append("Index", "(SELECT coalesce(max(\"Index\"), 0) + 1 FROM " + quotedName(table.name) + ")");
    }
    forEachField(table, fields, [&](std::size_t position) { append(table.fields[position].name, "?"); });
    const std::string into = "INSERT INTO " + quotedName(table.name);
    return names.empty() ? into + " DEFAULT VALUES" : into + " (" + names + ") VALUES (" + values + ")";
}

void bind(SQLite::Statement &statement, int parameter, const FieldValue &value)
{
    switch (value.kind) {
    case FieldValue::Kind::Null: statement.bind(parameter); break;
    case FieldValue::Kind::Integer: statement.bind(parameter, value.integer); break;
    case FieldValue::Kind::Real: statement.bind(parameter, value.real); break;
    case FieldValue::Kind::Text: statement.bindNoCopy(parameter, value.text); break;
    }
}

// Returns the number of the next parameter.
int bindFields(SQLite::Statement &statement, const TableDefinition &table, const Row &row, FieldMask fields)
{
    int parameter = 1;
    forEachField(table, fields, [&](std::size_t position) { bind(statement, parameter++, row[position]); });
    return parameter;
}

void read(const SQLite::Column &column, FieldValue &value)
{
    switch (column.getType()) {
    case SQLITE_INTEGER:
        value.kind = FieldValue::Kind::Integer;
        value.integer = column.getInt64();
        break;
    case SQLITE_FLOAT:
        value.kind = FieldValue::Kind::Real;
        value.real = column.getDouble();
        break;
    case SQLITE_NULL: value.kind = FieldValue::Kind::Null; break;
    default:
        value.kind = FieldValue::Kind::Text;
        const char *bytes = static_cast<const char *>(column.getBlob());
        value.text.assign(bytes != nullptr ? bytes : "", static_cast<std::size_t>(column.getBytes()));
        break;
    }
}

bool isKey(std::int64_t value)
{
    return value >= std::numeric_limits<Key>::min() && value <= std::numeric_limits<Key>::max();
}

} // namespace

Connection::Connection(const std::filesystem::path &path)
    : m_path(shownPath(path))
    , m_database(openSubject(path))
{
}

Connection::~Connection()
{
    close();
}

void Connection::close() noexcept
{
    m_statements = {};
    m_database.engine.reset();
    m_inTransaction = false;
}

void Connection::requireOpen() const
{
    if (!isOpen()) {
        throw StoreError(Reason::NotNow, 0, m_path, "the subject is closed");
    }
}

bool Connection::isInPlace() const
{
    requireOpen();
    int hasMoved = 0;
    sqlite3_file_control(m_database.engine->getHandle(), "main", SQLITE_FCNTL_HAS_MOVED, &hasMoved);
    return hasMoved == 0;
}

// The engine ends a transaction by itself when the disk fails. What would be
// written after that would no longer be part of it.
void Connection::requireWritable() const
{
    requireOpen();
    if (m_inTransaction && sqlite3_get_autocommit(m_database.engine->getHandle()) != 0) {
        throw StoreError(Reason::NotNow, SQLITE_ABORT_ROLLBACK, m_path, "the transaction was undone by a failure");
    }
}

Connection::TableId Connection::tableNamed(std::string_view name) const
{
    for (TableId table = 0; table < subjectTables.size(); ++table) {
        if (sameName(name, subjectTables[table].name)) {
            return table;
        }
    }
    throw StoreError(Reason::Engine, SQLITE_ERROR, m_path, "no such table: " + std::string(name));
}

std::vector<Key> Connection::keys(const std::string &sql)
{
    requireOpen();
    return withStoreErrors(m_path, m_database.engine, [&] {
        std::vector<Key> keys;
        SQLite::Statement select(*m_database.engine, sql);
        if (!select.executeStep()) {
            return keys;
        }
        const SQLite::Column column = select.getColumn(0); // of whatever row the statement is on
        do {
            const std::int64_t key = column.getInt64();
            if (!isKey(key)) {
                throw StoreError(Reason::Damaged, 0, m_path, "a row's key is out of range");
            }
            keys.push_back(static_cast<Key>(key));
        } while (select.executeStep());
        return keys;
    });
}

int Connection::execute(const std::string &sql)
{
    requireWritable();
    ++m_generation;
    return withStoreErrors(m_path, m_database.engine, [&] {
        SQLite::Statement statement(*m_database.engine, sql);
        Run(statement).finish();
        return statement.getChanges();
    });
}

bool Connection::readRow(TableId table, Key key, Row &row)
{
    requireOpen();
    return withStoreErrors(m_path, m_database.engine, [&] {
        SQLite::Statement &select = preparedSelect(table);
        Run run(select);
        select.bind(1, key);
        if (!run.step()) {
            return false;
        }
        for (std::size_t position = 0; position < subjectTables[table].fields.size(); ++position) {
            read(select.getColumn(static_cast<int>(position)), row[position]);
        }
        return true;
    });
}

bool Connection::readField(TableId table, Key key, std::size_t position, FieldValue &value)
{
    requireOpen();
    return withStoreErrors(m_path, m_database.engine, [&] {
        const TableDefinition &definition = subjectTables[table];
        SQLite::Statement select(*m_database.engine, "SELECT " + quotedName(definition.fields[position].name) +
                                                         " FROM " + quotedName(definition.name) + " WHERE rowid = ?");
        select.bind(1, key);
        if (!select.executeStep()) {
            return false;
        }
        read(select.getColumn(0), value);
        return true;
    });
}

bool Connection::updateRow(TableId table, Key key, const Row &row, FieldMask fields)
{
    requireWritable();
    ++m_generation;
    return withStoreErrors(m_path, m_database.engine, [&] {
        SQLite::Statement &update = preparedUpdate(table, fields);
        update.bind(bindFields(update, subjectTables[table], row, fields), key);
        Run(update).finish();
        return update.getChanges() > 0;
    });
}

bool Connection::deleteRow(TableId table, Key key)
{
    requireWritable();
    ++m_generation;
    return withStoreErrors(m_path, m_database.engine, [&] {
        SQLite::Statement &remove = preparedDelete(table);
        remove.bind(1, key);
        Run(remove).finish();
        return remove.getChanges() > 0;
    });
}

Key Connection::insertRow(TableId table, const Row &row, FieldMask fields)
{
    requireWritable();
    return withStoreErrors(m_path, m_database.engine, [&] {
        SQLite::Statement &insert = preparedInsert(table, fields);
        bindFields(insert, subjectTables[table], row, fields);
        Run(insert).finish();
        const std::int64_t key = m_database.engine->getLastInsertRowid();
        if (!isKey(key)) {
            execute("DELETE FROM " + quotedName(subjectTables[table].name) + " WHERE rowid = " + std::to_string(key));
            throw StoreError(Reason::Refused, 0, m_path, "the table has no keys left");
        }
        return static_cast<Key>(key);
    });
}

void Connection::begin()
{
    requireOpen();
    if (m_inTransaction) {
        throw StoreError(Reason::NotNow, 0, m_path, "a transaction is open already");
    }
    withStoreErrors(m_path, m_database.engine, [&] { m_database.engine->exec("BEGIN IMMEDIATE"); });
    m_inTransaction = true;
}

void Connection::commit()
{
    requireWritable();
    withStoreErrors(m_path, m_database.engine, [&] { m_database.engine->exec("COMMIT"); });
    m_inTransaction = false;
}

void Connection::rollback() noexcept
{
    ++m_generation;
    m_inTransaction = false;
    if (isOpen() && sqlite3_get_autocommit(m_database.engine->getHandle()) == 0) {
        m_database.engine->tryExec("ROLLBACK");
    }
}

SQLite::Statement &Connection::preparedSelect(TableId table)
{
    StatementPtr &select = m_statements[table].select;
    if (!select) {
        select = std::make_unique<SQLite::Statement>(*m_database.engine, selectSql(subjectTables[table]));
    }
    return *select;
}

SQLite::Statement &Connection::preparedDelete(TableId table)
{
    StatementPtr &remove = m_statements[table].remove;
    if (!remove) {
        remove = std::make_unique<SQLite::Statement>(*m_database.engine, deleteSql(subjectTables[table]));
    }
    return *remove;
}

SQLite::Statement &Connection::preparedUpdate(TableId table, FieldMask fields)
{
    std::vector<PreparedWrite> &updates = m_statements[table].updates;
    for (const PreparedWrite &update : updates) {
        if (update.fields == fields) {
            return *update.statement;
        }
    }
    const std::string sql = updateSql(subjectTables[table], fields);
    updates.push_back({fields, std::make_unique<SQLite::Statement>(*m_database.engine, sql)});
    return *updates.back().statement;
}

SQLite::Statement &Connection::preparedInsert(TableId table, FieldMask fields)
{
    std::vector<PreparedWrite> &inserts = m_statements[table].inserts;
    for (const PreparedWrite &insert : inserts) {
        if (insert.fields == fields) {
            return *insert.statement;
        }
    }
    const std::string sql = insertSql(subjectTables[table], fields, m_database.keyIsRowId[table]);
    inserts.push_back({fields, std::make_unique<SQLite::Statement>(*m_database.engine, sql)});
    return *inserts.back().statement;
}
