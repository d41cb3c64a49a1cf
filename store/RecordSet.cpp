#include "store/RecordSet.h"

#include "store/RecordSetState.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

using Reason = StoreError::Reason;
using Kind = FieldValue::Kind;

namespace {

constexpr FieldMask bitOf(std::size_t position)
{
    return FieldMask{1} << position;
}

double toReal(const FieldValue &value)
{
    switch (value.kind) {
    case Kind::Null: return 0;
    case Kind::Integer: return static_cast<double>(value.integer);
    case Kind::Real: return value.real;
    case Kind::Text: break;
    }
    double number = 0;
    std::from_chars(value.text.data(), value.text.data() + value.text.size(), number);
    return number;
}

int toNumber(const FieldValue &value)
{
    constexpr int lowest = std::numeric_limits<int>::min();
    constexpr int highest = std::numeric_limits<int>::max();
    if (value.kind == Kind::Integer) {
        return static_cast<int>(std::clamp<std::int64_t>(value.integer, lowest, highest));
    }
    const double number = toReal(value);
    return number == number ? static_cast<int>(std::clamp<double>(number, lowest, highest)) : 0;
}

std::string toText(const FieldValue &value)
{
    switch (value.kind) {
    case Kind::Null: return {};
    case Kind::Integer: return std::to_string(value.integer);
    case Kind::Real: break;
    case Kind::Text: return value.text;
    }
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value.real).ptr;
    return {text.data(), end};
}

const FieldValue nullValue;

} // namespace

RecordSet::State::State(std::shared_ptr<Connection> openConnection, Connection::TableId setTable,
                        std::vector<Key> selectedKeys)
    : connection(std::move(openConnection))
    , table(setTable)
    , keys(std::move(selectedKeys))
    , place(keys.empty() ? Place::Begin : Place::OnRow)
{
}

void RecordSet::State::moveTo(Place newPlace, int newPosition) noexcept
{
    place = newPlace;
    position = newPosition;
    isRowRead = false;
    dropPending();
}

void RecordSet::State::dropPending() noexcept
{
    pending = Pending::None;
    setFields = 0;
}

void RecordSet::State::refuse(Reason reason, const std::string &text) const
{
    throw StoreError(reason, 0, connection->path(), text);
}

void RecordSet::State::refuseGone() const
{
    refuse(Reason::RowGone, "the row was deleted");
}

Key RecordSet::State::currentKey() const
{
    if (place != Place::OnRow) {
        refuse(Reason::NoCurrentRow, "no current row");
    }
    return keys[static_cast<std::size_t>(position)];
}

std::size_t RecordSet::State::fieldAt(const FieldRef &field) const
{
    const auto fields = subjectTables[table].fields;
    if (field.isPosition()) {
        const auto at = static_cast<std::size_t>(field.position());
        if (at < fields.size()) {
            return at;
        }
        refuse(Reason::OutOfRange, "no field number " + std::to_string(field.position()));
    }
    const auto named = std::ranges::find_if(
        fields, [&](const FieldDefinition &definition) { return sameName(definition.name, field.name()); });
    if (named == fields.end()) {
        refuse(Reason::OutOfRange, "no field \"" + std::string(field.name()) + "\"");
    }
    return static_cast<std::size_t>(named - fields.begin());
}

/// Reads the row, or the field alone that is \p wanted if the row is damaged.
bool RecordSet::State::readRow(Key key, std::size_t wanted)
{
    try {
        isRowRead = connection->readRow(table, key, row);
        generation = connection->generation();
        return isRowRead;
    } catch (const StoreError &failure) {
        if (failure.reason() != Reason::Damaged) {
            throw;
        }
    }
    return connection->readField(table, key, wanted, row[wanted]);
}

const FieldValue &RecordSet::State::valueOf(const FieldRef &field)
{
    requireOpen();
    const std::size_t at = fieldAt(field);
    if ((setFields & bitOf(at)) != 0) {
        return edited[at];
    }
    if (pending == Pending::Add) {
        return nullValue;
    }
    const Key key = currentKey();
    if (!isRowRead || generation != connection->generation()) {
        isRowRead = false;
        if (!readRow(key, at)) {
            refuseGone();
        }
    }
    return row[at];
}

FieldValue &RecordSet::State::newValueOf(const FieldRef &field, std::initializer_list<FieldType> acceptedBy)
{
    requireOpen();
    const std::size_t at = fieldAt(field);
    if (pending == Pending::None) {
        refuse(Reason::NotNow, "a field is set without edit or add");
    }
    const FieldDefinition &definition = subjectTables[table].fields[at];
    if (definition.type == FieldType::Key) {
        refuse(Reason::Refused, "keys are given by the engine");
    }
    if (std::ranges::find(acceptedBy, definition.type) == acceptedBy.end()) {
        refuse(Reason::Refused, "wrong kind of value for " + std::string(definition.name));
    }
    setFields |= bitOf(at);
    return edited[at];
}

RecordSet::RecordSet(std::unique_ptr<State> state) noexcept
    : m_state(std::move(state))
{
}

RecordSet::RecordSet(RecordSet &&) noexcept = default;
RecordSet &RecordSet::operator=(RecordSet &&) noexcept = default;
RecordSet::~RecordSet() = default;

void RecordSet::moveFirst()
{
    m_state->requireOpen();
    if (m_state->count() > 0) {
        m_state->moveTo(State::Place::OnRow, 0);
    } else {
        m_state->dropPending();
    }
}

void RecordSet::moveLast()
{
    m_state->requireOpen();
    if (m_state->count() > 0) {
        m_state->moveTo(State::Place::OnRow, m_state->count() - 1);
    } else {
        m_state->dropPending();
    }
}

void RecordSet::moveNext()
{
    m_state->requireOpen();
    if (isEndOfSet()) {
        m_state->refuse(Reason::NoCurrentRow, "there is no row after the end");
    }
    int next = m_state->position;
    switch (m_state->place) {
    case State::Place::Begin: next = 0; break;
    case State::Place::OnRow: ++next; break;
    case State::Place::InGap:
    case State::Place::End: break;
    }
    m_state->moveTo(next < m_state->count() ? State::Place::OnRow : State::Place::End, next);
}

void RecordSet::movePrevious()
{
    m_state->requireOpen();
    if (isBeginOfSet()) {
        m_state->refuse(Reason::NoCurrentRow, "there is no row before the begin");
    }
    const int next = m_state->place == State::Place::End ? m_state->count() - 1 : m_state->position - 1;
    m_state->moveTo(next >= 0 ? State::Place::OnRow : State::Place::Begin, next);
}

int RecordSet::recordCount() const noexcept
{
    return m_state->isOpen() ? m_state->count() : 0;
}

bool RecordSet::isBeginOfSet() const noexcept
{
    return m_state->place == State::Place::Begin || recordCount() == 0;
}

bool RecordSet::isEndOfSet() const noexcept
{
    return m_state->place == State::Place::End || recordCount() == 0;
}

int RecordSet::absolutePosition() const noexcept
{
    return isBeginOfSet() || isEndOfSet() ? -1 : m_state->position;
}

void RecordSet::setAbsolutePosition(int position)
{
    m_state->requireOpen();
    if (position < 0 || position >= m_state->count()) {
        m_state->refuse(Reason::OutOfRange, "no row at position " + std::to_string(position));
    }
    m_state->moveTo(State::Place::OnRow, position);
}

std::string RecordSet::text(FieldRef field) const
{
    return toText(m_state->valueOf(field));
}

int RecordSet::number(FieldRef field) const
{
    return toNumber(m_state->valueOf(field));
}

float RecordSet::single(FieldRef field) const
{
    return static_cast<float>(toReal(m_state->valueOf(field)));
}

bool RecordSet::flag(FieldRef field) const
{
    return toReal(m_state->valueOf(field)) != 0;
}

void RecordSet::edit()
{
    m_state->requireOpen();
    static_cast<void>(m_state->currentKey());
    m_state->dropPending();
    m_state->pending = State::Pending::Edit;
    m_state->isRowRead = false; // an edit starts from what the file holds now
}

void RecordSet::addNew()
{
    m_state->requireOpen();
    m_state->dropPending();
    m_state->pending = State::Pending::Add;
}

void RecordSet::setText(FieldRef field, std::string_view value)
{
    FieldValue &target = m_state->newValueOf(field, {FieldType::Name, FieldType::Text});
    target.kind = Kind::Text;
    target.text.assign(value);
}

void RecordSet::setNumber(FieldRef field, int value)
{
    FieldValue &target = m_state->newValueOf(field, {FieldType::Number, FieldType::Flag});
    target.kind = Kind::Integer;
    target.integer = value;
}

void RecordSet::setSingle(FieldRef field, float value)
{
    FieldValue &target = m_state->newValueOf(field, {FieldType::Single});
    target.kind = Kind::Real;
    target.real = static_cast<double>(value);
}

void RecordSet::setFlag(FieldRef field, bool value)
{
    setNumber(field, value ? 1 : 0);
}

void RecordSet::update()
{
    State &state = *m_state;
    state.requireOpen();
    if (state.pending == State::Pending::None) {
        state.refuse(Reason::NotNow, "update without edit or add");
    }
    if (state.pending == State::Pending::Add) {
        if (state.keys.size() == state.keys.capacity()) {
            state.keys.reserve(std::max<std::size_t>(16, state.keys.size() * 2)); // nothing may fail once it is stored
        }
        state.keys.push_back(state.connection->insertRow(state.table, state.edited, state.setFields));
        state.lastModified = state.keys.back();
    } else {
        const Key key = state.currentKey();
        if (state.setFields != 0 && !state.connection->updateRow(state.table, key, state.edited, state.setFields)) {
            state.refuseGone();
        }
        state.lastModified = key;
    }
    state.hasLastModified = true;
    state.dropPending();
}

void RecordSet::cancelUpdate() noexcept
{
    m_state->dropPending();
}

void RecordSet::forgetAdded() noexcept
{
    if (m_state->hasLastModified) {
        m_state->keys.pop_back();
        m_state->hasLastModified = false;
    }
}

RecordSet::Bookmark RecordSet::bookmark() const
{
    m_state->requireOpen();
    return m_state->currentKey();
}

RecordSet::Bookmark RecordSet::lastModified() const
{
    m_state->requireOpen();
    if (!m_state->hasLastModified) {
        m_state->refuse(Reason::NotNow, "nothing was updated yet");
    }
    return m_state->lastModified;
}

void RecordSet::setBookmark(Bookmark row)
{
    State &state = *m_state;
    state.requireOpen();
    // From the end: the row wanted is mostly the one just added.
    const auto found = std::find(state.keys.rbegin(), state.keys.rend(), row);
    if (found == state.keys.rend()) {
        state.refuseGone();
    }
    state.moveTo(State::Place::OnRow, static_cast<int>(state.keys.rend() - found) - 1);
}

void RecordSet::remove()
{
    State &state = *m_state;
    state.requireOpen();
    if (!state.connection->deleteRow(state.table, state.currentKey())) {
        state.refuseGone();
    }
    state.keys.erase(state.keys.begin() + state.position);
    state.moveTo(State::Place::InGap, state.position);
}
