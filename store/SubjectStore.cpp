#include "store/SubjectStore.h"

#include "store/Connection.h"
#include "store/RecordSetState.h"
#include "store/SqlDialect.h"
#include "store/StoreError.h"
#include "store/SubjectFile.h"

#include <stdexcept>
#include <utility>

void SubjectStore::create(const std::filesystem::path &path)
{
    requirePlaceForSubject(path);
    removeSubject(path);
    createSubject(path);
}

SubjectStore::SubjectStore(const std::filesystem::path &path)
    : m_connection(std::make_shared<Connection>(path))
{
}

SubjectStore::SubjectStore(SubjectStore &&) noexcept = default;

SubjectStore &SubjectStore::operator=(SubjectStore &&other) noexcept
{
    if (this != &other) {
        close();
        m_connection = std::move(other.m_connection);
    }
    return *this;
}

SubjectStore::~SubjectStore()
{
    close();
}

RecordSet SubjectStore::openRecordSet(std::string_view statement)
{
    m_connection->requireOpen();
    KeySelection selection;
    try {
        selection = translateKeySelection(statement);
    } catch (const std::invalid_argument &failure) {
        throw StoreError(StoreError::Reason::Engine, 0, m_connection->path(), failure.what());
    }
    const Connection::TableId table = m_connection->tableNamed(selection.table);
    return RecordSet(std::make_unique<RecordSet::State>(m_connection, table, m_connection->keys(selection.sql)));
}

int SubjectStore::execute(std::string_view statement)
{
    return m_connection->execute(translateSql(statement));
}

bool SubjectStore::isInPlace() const
{
    return m_connection->isInPlace();
}

void SubjectStore::close() noexcept
{
    if (m_connection) {
        m_connection->close();
    }
}

Transaction::Transaction(SubjectStore &store)
    : m_connection(store.m_connection)
{
    m_connection->begin();
}

Transaction::~Transaction()
{
    if (m_connection) {
        m_connection->rollback();
    }
}

void Transaction::commit()
{
    if (!m_connection) {
        throw StoreError(StoreError::Reason::NotNow, 0, {}, "the transaction is committed already");
    }
    m_connection->commit();
    m_connection.reset();
}
