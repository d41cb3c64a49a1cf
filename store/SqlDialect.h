#pragma once

#include <string>
#include <string_view>

// The catalogue's dialect and the engine's differ in three points: "DELETE *
// FROM" deletes rows, Yes and No are the two flags, and Index is a column name.
// Besides, a chain "Where NIndex = 1 OR NIndex = 2 ..." becomes "Where NIndex IN
// (1, 2, ...)": the engine would compare every row with each number in turn, and
// refuses a chain of a thousand.
// The translation works on tokens, so that string literals, quoted names and
// longer words are never touched. Letter case does not count.

/// Returns \p statement in the engine's dialect.
[[nodiscard]] std::string translateSql(std::string_view statement);

/// A "SELECT * FROM table ..." taken apart for a set that keeps keys only.
struct KeySelection
{
    std::string table; ///< as written, without quotes
    std::string sql;   ///< the same selection, of the rows' keys only, in the engine's dialect
};

/// Throws std::invalid_argument if \p statement is not a "SELECT * FROM" one
/// table without an alias.
[[nodiscard]] KeySelection translateKeySelection(std::string_view statement);
