#pragma once

#include "platform/rtf/RtfSymbolFonts.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string_view>

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

class RtfConverter;

/// Text to bytes and back in one code page. The lower half is ASCII but in the
/// symbol fonts that are known; what is not known of a symbol font are private
/// characters.
class RtfCodePage
{
public:
    /// A code page that nobody on this machine knows works as windows-1252.
    explicit RtfCodePage(int number);
    ~RtfCodePage();
    Q_DISABLE_COPY_MOVE(RtfCodePage)

    /// Whether ASCII characters are the bytes of the same numbers and all such bytes
    /// at the beginning of a text are these characters.
    [[nodiscard]] bool keepsAscii() const { return m_keepsAscii; }

    /// The text of \p bytes; U+FFFD for what is no character of the page.
    [[nodiscard]] QString decode(std::string_view bytes) const;

    /// What \p character stands for in text of this page: itself, but for the private
    /// characters that programs take for the bytes of a symbol font.
    [[nodiscard]] char32_t shown(char32_t character) const;

    /// The bytes of \p character, empty if the page does not have it.
    [[nodiscard]] QByteArray encode(char32_t character) const;

    /// True if \p bytes ends in the middle of a character that the byte \p next may
    /// belong to.
    [[nodiscard]] bool isCutBefore(char next, std::string_view bytes) const;

private:
    void setSymbols(int number);
    void setUpperHalf(RtfConverter &converter);
    [[nodiscard]] QString decodeDamaged(std::string_view bytes) const;
    [[nodiscard]] std::size_t lengthOfCharacter(std::string_view bytes) const;
    [[nodiscard]] bool isCharacter(std::string_view bytes) const;
    [[nodiscard]] QByteArray encodeUncached(char32_t character) const;

    bool m_keepsAscii = true;
    bool m_isSymbolPage = false;
    bool m_isUnicode = false;                  ///< has all of it
    std::unique_ptr<RtfConverter> m_converter; ///< of a page with characters of several bytes
    std::array<char32_t, 256> m_characters{};  ///< of a page of single bytes
    mutable QHash<char32_t, QByteArray> m_encoded;
    mutable QHash<std::uint32_t, bool> m_isCharacter; ///< of bytes, the last one lowest
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
