#pragma once

#include "platform/rtf/RtfColorTable.h"
#include "platform/rtf/RtfDocumentBuilder.h"
#include "platform/rtf/RtfListTable.h"

#include <map>
#include <optional>
#include <utility>
#include <vector>

/// The text of a document while it is read: what its words do to characters,
/// paragraphs and the rows of tables, and which characters of the input are
/// characters of the document.
///
/// A row becomes one paragraph, its cells end in tabs. A note becomes words
/// where its mark stands, the text of a box paragraphs of their own. The format
/// of characters belongs to the group that they stand in, so the caller has it;
/// that of paragraphs does not.
class RtfBody
{
public:
    /// The tables are read as they fill; they must outlive the body.
    RtfBody(QTextCursor &cursor, RtfFontTable &fonts, const RtfColorTable &colors, const RtfLinkTable &links,
            const RtfListTable &lists);

    /// A word of the text. \p character is the format where it stands, which it
    /// may change.
    void apply(RtfEffect effect, int value, RtfCharacter &character);

    /// Any text.
    void append(QStringView text, const RtfCharacter &format);
    void append(char16_t character, const RtfCharacter &format);
    /// Printable ASCII and tabs.
    void appendAscii(std::string_view text, const RtfCharacter &format);

    /// A picture or an object (RtfObject.h).
    void appendObject(const QByteArray &source, const RtfCharacter &format);

    /// How the paragraphs from here on are marked.
    void setList(const RtfList &list);
    /// The mark of the paragraph as it is written beside it. \p isInTable: it stands
    /// in a row, where it can only be text.
    void setMark(const QString &mark, bool isInTable, const RtfCharacter &format);

    /// What comes until the end of the note is words within the paragraph.
    void beginNote();
    void endNote();

    /// What comes until the end of the box is paragraphs beside the ones around it.
    void beginBox(const RtfCharacter &format);
    void endBox(const RtfCharacter &format);

    [[nodiscard]] bool isInTable() const { return m_paragraph.isInTable; }
    /// Pieces of text and objects so far.
    [[nodiscard]] std::size_t count() const { return m_count; }

    /// As of RtfDocumentBuilder; \p last is the format at the end of the text.
    void endDocument(const RtfCharacter &last) { m_builder.endDocument(currentParagraph(), last); }
    void endInsertion() { m_builder.endInsertion(); }

private:
    /// The words of a paragraph that are no format of a document's.
    struct Paragraph : RtfParagraph
    {
        int listNumber = 0; ///< \ls: 0 is none
        int listLevel = 0;
        bool isInTable = false;
    };

    void prepare(const RtfCharacter &format, QChar first);
    void endParagraph(const RtfCharacter &mark);
    void endRow(const RtfCharacter &mark);
    void resetCharacter(RtfCharacter &character) const;
    void resetParagraph();
    void addTab(int position);
    const RtfParagraph &currentParagraph();
    [[nodiscard]] RtfList listHere();

    RtfFontTable &m_fonts;
    const RtfColorTable &m_colors;
    const RtfListTable &m_lists;
    RtfDocumentBuilder m_builder;
    std::size_t m_count = 0;

    Paragraph m_paragraph;
    RtfParagraph m_marked;                   ///< m_paragraph with the list that it stands in
    RtfTabKind m_tabKind = RtfTabKind::Left; ///< of the next tab stop
    bool m_paragraphIsOpen = false;          ///< something stands in it

    int m_cellsOfRow = 0;          ///< seen so far
    std::vector<int> m_edgesOfRow; ///< announced: where cells end, in twips
    RtfParagraph m_row;

    // Marks of word processors: each paragraph has its own, which goes on from the last.
    QString m_mark;
    using Place = std::pair<int, int>; ///< number and level of a list
    std::optional<Place> m_lastPlace;  ///< of the paragraph before, if it was in a list
    RtfList m_lastList;                ///< and that list
    std::map<Place, int> m_lastNumbers;

    int m_notes = 0;               ///< that are open
    bool m_noteBreakIsDue = false; ///< between two paragraphs of a note
    bool m_blankIsDue = false;     ///< between a note and the words beside it
    bool m_endsInBlank = true;     ///< the paragraph so far
    std::vector<Paragraph> m_aroundBoxes;
};
