#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <array>
#include <map>
#include <string_view>

/// Pseudo number of the code page of the symbol fonts.
inline constexpr int symbolCodePage = 42;
/// What text is in unless the document or the font says otherwise.
inline constexpr int defaultCodePage = 1252;

/// Font character sets that stand for "look elsewhere" and for symbol fonts.
inline constexpr int ansiCharset = 0;
inline constexpr int defaultCharset = 1;
inline constexpr int symbolCharset = 2;

/// The code page of the font character set \p charset, or 0 if the set does not
/// determine one.
[[nodiscard]] int codePageOfCharset(int charset);

/// The font character set of \p codePage; ansiCharset if there is none.
[[nodiscard]] int charsetOfCodePage(int codePage);

/// Text to bytes and back in one code page. The lower half is ASCII; in a symbol
/// font the byte b of the upper half is the private character U+F000 + b.
class RtfCodePage
{
public:
    /// A code page without a decoder on this machine works as windows-1252.
    explicit RtfCodePage(int number);

    [[nodiscard]] QString decode(std::string_view bytes) const;

    /// The bytes of \p character, empty if the page does not have it.
    [[nodiscard]] QByteArray encode(char16_t character) const;

private:
    [[nodiscard]] QByteArray encodeUncached(char16_t character) const;

    QByteArray m_name;
    bool m_multiByte = false;
    std::array<char16_t, 128> m_upperHalf{}; ///< of a page of single bytes
    mutable QHash<char16_t, QByteArray> m_encoded;
};

/// The code pages in use, each made once.
class RtfCodePages
{
public:
    [[nodiscard]] const RtfCodePage &page(int number);

private:
    std::map<int, RtfCodePage> m_pages;
};

/// True if \p bytes has a byte above 127 and every such byte is part of a
/// well-formed UTF-8 sequence.
[[nodiscard]] bool isMultiByteUtf8(std::string_view bytes);
