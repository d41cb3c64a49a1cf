#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

/// One piece of an RTF text.
struct RtfToken
{
    enum class Kind : std::uint8_t {
        GroupStart,
        GroupEnd,
        Word,    ///< \word, \word12 or \~: text is the word without backslash and number, or "\n"
        Text,    ///< text is a run of bytes as they stand, at least one
        HexByte, ///< \'hh: number is the byte, 0 to 255
        Binary,  ///< the bytes that follow a \bin word: text, fewer than announced at the end of the input
        End,     ///< nothing is left; next() keeps returning it
    };

    Kind kind = Kind::End;
    std::size_t offset = 0;    ///< bytes from the start of the input to the token's first byte
    std::string_view text;     ///< points into the input
    std::optional<int> number; ///< a number outside the range of int is the nearest int
    bool isPlain = false;      ///< of Text: nothing but printable ASCII and tabs
};

/// Cuts an RTF text into tokens. It never fails: every input is some sequence
/// of tokens, and each token is at least one byte of the input.
///
/// Line breaks are no tokens, but a backslash before one is the word "\n". A
/// \'hh whose digits are no digits is dropped.
class RtfTokenizer
{
public:
    /// \p rtf must outlive the tokenizer and its tokens.
    explicit RtfTokenizer(std::string_view rtf);

    [[nodiscard]] RtfToken next();

    /// Bytes from the start of the input to the next token.
    [[nodiscard]] std::size_t offset() const { return m_next; }
    /// What is left of the input.
    [[nodiscard]] std::string_view rest() const { return m_rtf.substr(m_next); }
    /// Goes on \p length bytes further, which are at most what is left.
    void skip(std::size_t length) { m_next += length; }

private:
    RtfToken textRun();
    std::optional<RtfToken> escape();
    RtfToken word(std::size_t start);
    std::optional<RtfToken> hexByte(std::size_t start);
    std::optional<int> parameter();
    [[nodiscard]] bool atEnd() const { return m_next >= m_rtf.size(); }

    std::string_view m_rtf;
    std::size_t m_next = 0;
    std::size_t m_binaryLength = 0; ///< bytes of binary data due now
};
