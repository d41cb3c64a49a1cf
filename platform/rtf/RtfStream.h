#pragma once

#include "platform/rtf/RtfCodePages.h"

#include <QStringView>

#include <string>
#include <string_view>

/// RTF text in the making: 7-bit whatever is put in, with CR LF at the ends of
/// lines and a blank between a word and what follows it only where it is needed.
///
/// It knows how things are written, but not which: groups are the caller's to
/// close and words are written as they are given.
class RtfStream
{
public:
    void open();
    void close();
    void endLine();

    /// A control word, \p name without the backslash.
    void word(std::string_view name);
    void word(std::string_view name, int number);
    /// \*: the next word is one that a reader need not know.
    void ignorable();

    /// Characters, each as the bytes that \p page has for it, else as a word of its
    /// own, else as \u with a question mark to stand for it. None is a paragraph
    /// separator of any kind.
    void text(QStringView text, const RtfCodePage &page);
    /// Likewise, but no character as a byte beyond ASCII.
    void text(QStringView text);
    /// Printable ASCII without backslashes and braces.
    void ascii(std::string_view text);
    /// A whole group, 7-bit, as it stands.
    void group(std::string_view source);
    /// A semicolon, which a word ends at without a blank.
    void semicolon();
    /// The bullet of the symbol font.
    void symbolBullet();

    [[nodiscard]] const std::string &written() const { return m_written; }

private:
    void endWord();
    void character(char32_t c, const RtfCodePage &page);
    void unusual(char32_t c, const RtfCodePage &page);
    void unicode(char16_t unit);
    void hexByte(char byte);

    std::string m_written;
    bool m_wordIsOpen = false; ///< a letter or a digit now would belong to the last word
};
