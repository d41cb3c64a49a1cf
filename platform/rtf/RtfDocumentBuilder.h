#pragma once

#include "platform/rtf/RtfFormats.h"

#include <QPointer>
#include <QString>
#include <QTextCursor>
#include <QTextList>

#include <cstdint>
#include <unordered_map>

/// Writes paragraphs into a document at a cursor.
///
/// Runs of the same format go in as one insertion. The break that a closed
/// paragraph asks for is made when something follows it, so that the last one
/// can be left out.
class RtfDocumentBuilder
{
public:
    /// \p fonts are the ones that the formats refer to; it must outlive the builder.
    RtfDocumentBuilder(QTextCursor &cursor, const RtfFontTable &fonts);

    /// \p text has no paragraph separators of any kind.
    void append(QStringView text, const RtfCharacter &format);
    void append(QLatin1StringView text, const RtfCharacter &format);

    /// Ends the paragraph, which is of the format \p paragraph; \p mark is the
    /// format of its mark.
    void endParagraph(const RtfParagraph &paragraph, const RtfCharacter &mark);

    /// The end of a whole document: a paragraph that is still open is ended, a
    /// break that is due is left out.
    void endDocument(const RtfParagraph &paragraph, const RtfCharacter &mark);

    /// The end of an insertion: a break that is due is made, and what stood
    /// behind the cursor gets the paragraph format that it had.
    void endInsertion();

private:
    void prepare(const RtfCharacter &format);
    void flush();
    void breakParagraph();
    void applyParagraph(const RtfParagraph &paragraph);
    void applyMark(const RtfCharacter &mark);
    void joinList(const RtfList &list);
    [[nodiscard]] bool listMayGrow() const;
    const QTextCharFormat &charFormat(const RtfCharacter &format);

    QTextCursor &m_cursor;
    const RtfFontTable &m_fonts;
    const RtfUnits m_units;
    const QTextBlockFormat m_formatBefore; ///< of the paragraph that is inserted into
    const QTextCharFormat m_markBefore;    ///< of its mark

    QString m_text; ///< not yet in the document
    RtfCharacter m_textFormat;
    bool m_breakIsDue = false;
    bool m_hasBroken = false;
    bool m_paragraphHasText = false;

    // The formats that the document's current paragraph has, if known.
    bool m_paragraphIsKnown = false;
    RtfParagraph m_paragraph;
    QTextBlockFormat m_paragraphFormat;
    bool m_markIsKnown = false;
    RtfCharacter m_mark;

    QPointer<QTextList> m_list;
    RtfList m_listFormat;
    int m_listLength = 0;
    std::int64_t m_listVisits = 0; ///< of paragraphs, by all lists

    std::unordered_map<RtfCharacter, QTextCharFormat, RtfCharacterHash> m_charFormats;
};
