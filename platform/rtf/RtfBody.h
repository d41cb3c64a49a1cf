#pragma once

#include "platform/rtf/RtfColorTable.h"
#include "platform/rtf/RtfDocumentBuilder.h"

/// The text of a document while it is read: what its words do to characters,
/// paragraphs and the rows of tables, and which characters of the input are
/// characters of the document.
///
/// A row becomes one paragraph, its cells end in tabs. The format of characters
/// belongs to the group that they stand in, so the caller has it; that of
/// paragraphs does not.
class RtfBody
{
public:
    /// \p fonts and \p colors are read as they fill; they must outlive the body.
    RtfBody(QTextCursor &cursor, RtfFontTable &fonts, const RtfColorTable &colors);

    /// A word of the text. \p character is the format where it stands, which it
    /// may change.
    void apply(RtfEffect effect, int value, RtfCharacter &character);

    /// Any text.
    void append(QStringView text, const RtfCharacter &format);
    void append(char16_t character, const RtfCharacter &format);
    /// Printable ASCII and tabs.
    void appendAscii(std::string_view text, const RtfCharacter &format);

    /// How the paragraphs from here on are marked.
    void setList(const RtfList &list) { m_paragraph.list = list; }

    /// As of RtfDocumentBuilder; \p last is the format at the end of the text.
    void endDocument(const RtfCharacter &last) { m_builder.endDocument(m_paragraph, last); }
    void endInsertion() { m_builder.endInsertion(); }

private:
    void endParagraph(const RtfCharacter &mark);
    void endRow(const RtfCharacter &mark);
    void resetCharacter(RtfCharacter &character) const;
    void resetParagraph();
    void addTab(int position);

    RtfFontTable &m_fonts;
    const RtfColorTable &m_colors;
    RtfDocumentBuilder m_builder;

    RtfParagraph m_paragraph;
    RtfTabKind m_tabKind = RtfTabKind::Left; ///< of the next tab stop
    bool m_inTable = false;
    int m_cellsOfRow = 0; ///< seen so far
    int m_edgesOfRow = 0; ///< announced
};
