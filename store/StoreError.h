#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

/// A failure of the subject file or of its engine.
///
/// Nobody between the store and the command guard catches it: the guard ends
/// the command and reports it. what() is the engine's own text, in English.
class StoreError : public std::runtime_error
{
public:
    /// What went wrong, as far as it leads to another advice for the learner.
    enum class Reason : std::uint8_t {
        NotFound,     ///< no such file; nothing was created
        NotAFile,     ///< the path names a directory or a device
        EmptyFile,    ///< zero bytes
        NotASubject,  ///< not a database, or the database of another program
        TooNew,       ///< written by a later version, whose files we must not touch
        Damaged,      ///< the engine reports corruption
        NoPermission, ///< the file may not be read
        ReadOnly,     ///< the file or its folder may not be written
        Locked,       ///< another program holds the file for longer than we wait
        DiskFull,
        NoCurrentRow, ///< a row was asked for where the set has none
        RowGone,      ///< the row was deleted meanwhile, by this or another program
        OutOfRange,   ///< a position outside the set, or a field that does not exist
        Refused,      ///< a value that the schema does not take
        NotNow,       ///< the operation does not fit the state: update without edit, use after close
        Engine,       ///< any other failure of the engine
    };

    /// \p path is the subject file in UTF-8; \p engineCode is SQLite's extended
    /// result code, or 0 where the store itself refused.
    StoreError(Reason reason, int engineCode, std::string path, const std::string &text);

    [[nodiscard]] Reason reason() const noexcept { return m_reason; }
    [[nodiscard]] int engineCode() const noexcept { return m_engineCode; }
    [[nodiscard]] const std::string &path() const noexcept { return m_path; }

private:
    Reason m_reason;
    int m_engineCode;
    std::string m_path;
};
