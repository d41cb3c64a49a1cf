#pragma once

#include "platform/rtf/RtfCodePages.h"

#include <QString>

#include <deque>
#include <string>
#include <unordered_map>

/// A face in one character set.
struct RtfFont
{
    QString family; ///< empty: the document's default font
    int charset = ansiCharset;
    int codePage = defaultCodePage;

    bool operator==(const RtfFont &) const = default;
};

/// The fonts of a document while it is read. An entry is begun by its number,
/// gets its properties and its name in pieces, and ends by ';' or by whatever
/// begins or closes next.
class RtfFontTable
{
public:
    /// \p codePage is what a font without a character set of its own is in.
    void setDocumentCodePage(int codePage) { m_documentCodePage = codePage; }
    [[nodiscard]] int documentCodePage() const { return m_documentCodePage; }

    void beginEntry(int number);
    void setCharset(int charset);
    void setCodePage(int codePage);
    void appendName(std::string_view bytes);
    void appendName(char16_t character, RtfCodePages &pages);
    void endEntry(RtfCodePages &pages);

    /// The place of the font that the document calls \p number, or -1. A place
    /// stays valid when the number is defined anew.
    [[nodiscard]] int find(int number) const;

    /// \p place is one that find() returned.
    [[nodiscard]] const RtfFont &at(int place) const { return m_fonts[static_cast<std::size_t>(place)]; }

private:
    struct Entry
    {
        int number = 0;
        int charset = defaultCharset;
        int codePage = 0;  ///< 0: of the charset
        QString name;      ///< decoded so far
        std::string bytes; ///< of the name, not yet decoded
    };

    void decodeName(RtfCodePages &pages);
    [[nodiscard]] int codePageOf(const Entry &entry) const;

    int m_documentCodePage = defaultCodePage;
    bool m_inEntry = false;
    Entry m_entry;
    std::deque<RtfFont> m_fonts;
    std::unordered_map<int, int> m_placeOfNumber;
};
