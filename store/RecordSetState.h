#pragma once

#include "store/Connection.h"
#include "store/RecordSet.h"
#include "store/StoreError.h"

#include <initializer_list>
#include <memory>
#include <vector>

// Private to store/: what a set remembers between its operations.

struct RecordSet::State
{
    enum class Place : std::uint8_t {
        Begin,
        OnRow, ///< on the row at position
        InGap, ///< before the row at position, after the one before it
        End,
    };
    enum class Pending : std::uint8_t { None, Edit, Add };

    State(std::shared_ptr<Connection> openConnection, Connection::TableId setTable, std::vector<Key> selectedKeys);

    [[nodiscard]] int count() const noexcept { return static_cast<int>(keys.size()); }
    [[nodiscard]] bool isOpen() const noexcept { return connection->isOpen(); }
    void moveTo(Place newPlace, int newPosition) noexcept;
    void dropPending() noexcept;

    [[noreturn]] void refuse(StoreError::Reason reason, const std::string &text) const;
    [[noreturn]] void refuseGone() const;
    void requireOpen() const { connection->requireOpen(); }
    [[nodiscard]] Key currentKey() const;

    [[nodiscard]] std::size_t fieldAt(const FieldRef &field) const;
    [[nodiscard]] bool readRow(Key key, std::size_t wanted);
    [[nodiscard]] const FieldValue &valueOf(const FieldRef &field);
    [[nodiscard]] FieldValue &newValueOf(const FieldRef &field, std::initializer_list<FieldType> acceptedBy);

    std::shared_ptr<Connection> connection;
    Connection::TableId table;
    std::vector<Key> keys;
    Place place = Place::Begin;
    int position = 0;
    Pending pending = Pending::None;
    bool isRowRead = false;  ///< row holds the current row as of generation
    FieldMask setFields = 0; ///< fields of the edit buffer that count
    std::uint32_t generation = 0;
    bool hasLastModified = false;
    Key lastModified = 0;
    Row row;
    Row edited;
};
