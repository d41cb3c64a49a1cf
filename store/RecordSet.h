#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

/// Names a field of a row by its position (TopicField, CardField) or by its
/// name, whose letter case does not count.
class FieldRef
{
public:
    FieldRef(int position) noexcept
        : m_position(position)
    {
    }
    FieldRef(std::string_view name) noexcept
        : m_name(name)
    {
    }
    FieldRef(const char *name) noexcept
        : m_name(name)
    {
    }

    [[nodiscard]] bool isPosition() const noexcept { return m_position >= 0; }
    [[nodiscard]] int position() const noexcept { return m_position; }
    [[nodiscard]] std::string_view name() const noexcept { return m_name; }

private:
    int m_position = -1;
    std::string_view m_name;
};

/// A navigable, updatable set of rows of one table.
///
/// It holds the keys that its statement selected when it was opened, and rows
/// added through it; it reads a row when the row's first field is asked for,
/// and holds no lock in between. Positions count from 0.
///
/// Between the rows of a set there are three places without a current row:
/// before the first (isBeginOfSet), after the last (isEndOfSet), and the gap
/// that a deleted row leaves. From a gap, previous and next go to its two
/// neighbours. An empty set is at its begin and its end at once.
///
/// Every operation throws StoreError; a failed one leaves position, buffer and
/// file as they were. Closing the store closes its sets: they then answer
/// NotNow, and look empty. Of a damaged row, every field is read that can be.
class RecordSet
{
public:
    /// Names a row for good: its key.
    using Bookmark = std::int64_t;

    RecordSet(RecordSet &&) noexcept;
    RecordSet &operator=(RecordSet &&) noexcept;
    ~RecordSet();

    // Moving. A move drops an edit that was not updated.
    void moveFirst();    ///< on an empty set: nothing happens
    void moveLast();     ///< on an empty set: nothing happens
    void moveNext();     ///< from the last row to the end; from there NoCurrentRow
    void movePrevious(); ///< from the first row to the begin; from there NoCurrentRow

    [[nodiscard]] int recordCount() const noexcept;
    [[nodiscard]] bool isBeginOfSet() const noexcept;
    [[nodiscard]] bool isEndOfSet() const noexcept;

    /// The current row's position; in a gap that of the row after it, recordCount() if
    /// there is none; -1 at begin and end.
    [[nodiscard]] int absolutePosition() const noexcept;
    /// OutOfRange outside 0 to recordCount() - 1.
    void setAbsolutePosition(int position);

    // The current row, or the edit buffer while editing. NULL reads as "", 0, false.
    // NoCurrentRow where there is none, RowGone if it was deleted meanwhile.
    [[nodiscard]] std::string text(FieldRef field) const;
    [[nodiscard]] int number(FieldRef field) const;
    [[nodiscard]] float single(FieldRef field) const;
    [[nodiscard]] bool flag(FieldRef field) const;

    // Changing: edit() or addNew(), then set...(), then update().
    void edit(); ///< NoCurrentRow where there is none
    void addNew();
    void setText(FieldRef field, std::string_view value);
    void setNumber(FieldRef field, int value);
    void setSingle(FieldRef field, float value);
    void setFlag(FieldRef field, bool value);
    /// Writes the fields that were set, and nothing else. A row added becomes
    /// the set's last, but not its current one: see lastModified().
    void update();
    void cancelUpdate() noexcept;
    /// Takes the row that the last update() added, and that is not current, out of the set
    /// again: for a transaction that could not be committed.
    void forgetAdded() noexcept;

    /// The current row. NoCurrentRow where there is none.
    [[nodiscard]] Bookmark bookmark() const;
    /// The row that the last update() wrote.
    [[nodiscard]] Bookmark lastModified() const;
    /// Makes the row current; RowGone if it is not in the set.
    void setBookmark(Bookmark row);

    /// Deletes the current row from the file and from the set; the position is then the gap.
    void remove();

private:
    friend class SubjectStore;
    struct State;
    explicit RecordSet(std::unique_ptr<State> state) noexcept;

    std::unique_ptr<State> m_state;
};

/// A set of rows of FlashCards.
using CardSet = RecordSet;
/// A set of rows of Topics.
using TopicSet = RecordSet;
