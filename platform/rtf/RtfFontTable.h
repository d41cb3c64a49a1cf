#pragma once

#include "platform/rtf/RtfCodePages.h"
#include "platform/rtf/RtfControlWords.h"

#include <QString>

#include <deque>
#include <string>
#include <unordered_map>

/// A face in one character set.
struct RtfFont
{
    QString family; ///< empty: the document's default font
    int charset = ansiCharset;
    int codePage = defaultCodePage; ///< that of a symbol font is told by its name, too

    bool operator==(const RtfFont &) const = default;
};

/// What a font table can hold of the name \p family: at most 127 units, without
/// control characters and without a semicolon, which would end the entry.
[[nodiscard]] QString fontTableName(const QString &family);

/// The fonts of a document while it is read. An entry is begun by its number,
/// gets its properties and its name in pieces, and ends by ';' or by whatever
/// begins or closes next.
class RtfFontTable
{
public:
    /// \p pages must outlive the table.
    explicit RtfFontTable(RtfCodePages &pages);

    /// \p codePage is what a font without a character set of its own is in. A number
    /// that cannot be one is ignored.
    void setDocumentCodePage(int codePage);

    /// \p number is what the document calls its default font, negative for none.
    /// It need not be defined yet.
    void setDefault(int number) { m_default = number; }

    /// A word of the table.
    void apply(RtfEffect effect, int value);
    /// Text of the table, in the code page of the entry.
    void append(std::string_view bytes);
    /// One character of a name.
    void append(char16_t character);
    /// The end of an entry, if one is begun.
    void endEntry();

    // A place stays valid when the number is defined anew. -1 is the place of the
    // font that a document has by itself.

    /// The place of the font that the document calls \p number; \p otherwise if
    /// there is none.
    [[nodiscard]] int find(int number, int otherwise) const;
    /// The place of the default font; \p otherwise if none is named or it is not
    /// defined.
    [[nodiscard]] int findDefault(int otherwise) const
    {
        return m_default >= 0 ? find(m_default, otherwise) : otherwise;
    }
    /// The font at \p place, which is not -1.
    [[nodiscard]] const RtfFont &at(int place) const { return m_fonts[static_cast<std::size_t>(place)]; }
    /// What bytes in the font at \p place are to be decoded by.
    [[nodiscard]] const RtfCodePage &codePage(int place) const;

private:
    struct Entry
    {
        int number = 0;
        int charset = defaultCharset;
        int codePage = 0;  ///< 0: of the charset
        QString name;      ///< decoded so far
        std::string bytes; ///< of the name, not yet decoded
    };

    void beginEntry(int number);
    void decodeName();
    [[nodiscard]] RtfFont fontOf(const Entry &entry) const;
    [[nodiscard]] const RtfCodePage &namePage() const;
    [[nodiscard]] bool isInsideCharacter(char byte) const;
    [[nodiscard]] int codePageOf(const Entry &entry) const;

    RtfCodePages &m_pages;
    int m_documentCodePage = defaultCodePage;
    int m_default = -1;
    bool m_inEntry = false;
    Entry m_entry;
    std::deque<RtfFont> m_fonts;
    std::unordered_map<int, int> m_placeOfNumber;
};
