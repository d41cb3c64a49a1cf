#pragma once

#include "platform/rtf/RtfFormats.h"
#include "platform/rtf/RtfLinkTable.h"

#include <QPointer>
#include <QString>
#include <QTextCursor>
#include <QTextList>

#include <cstdint>
#include <deque>
#include <vector>

/// Writes paragraphs into a document at a cursor.
///
/// A paragraph is kept until it ends: only then is its format known, and a
/// document is quicker to make than to change. The last one has no end of its
/// own in the document.
///
/// The limits on what a text may ask for are kept here: where there are too many
/// formats the last one goes on, and where there are too many paragraphs they
/// become lines of one. No text is lost.
class RtfDocumentBuilder
{
public:
    /// \p fonts and \p links are the ones that the formats refer to; they must outlive
    /// the builder.
    RtfDocumentBuilder(QTextCursor &cursor, const RtfFontTable &fonts, const RtfLinkTable &links);

    /// \p text has no paragraph separators of any kind.
    void append(QStringView text, const RtfCharacter &format);
    void append(QLatin1StringView text, const RtfCharacter &format);
    void appendObject(const QByteArray &source, const RtfCharacter &format);

    /// Ends the paragraph, which is of the format \p paragraph; \p mark is the
    /// format of its mark.
    void endParagraph(const RtfParagraph &paragraph, const RtfCharacter &mark);

    /// The end of a whole document: a paragraph that is still open is ended.
    void endDocument(const RtfParagraph &paragraph, const RtfCharacter &mark);

    /// The end of an insertion: what stands behind the cursor goes on in the
    /// paragraph that is open, which gets the format that it had.
    void endInsertion();

private:
    struct Run
    {
        qsizetype end; ///< of the paragraph's text
        const QTextCharFormat *format;
    };

    /// The formats of a document that formats of characters became, found by a
    /// hash of those.
    class CharFormats
    {
    public:
        [[nodiscard]] const QTextCharFormat *find(const RtfCharacter &character) const;
        /// \p character is not yet known.
        void add(const RtfCharacter &character, const QTextCharFormat &format);
        /// The one that was added last; nothing in particular if none was.
        [[nodiscard]] const QTextCharFormat &last() const { return m_entries.back().format; }

    private:
        struct Entry
        {
            RtfCharacter character;
            QTextCharFormat format;
        };

        [[nodiscard]] std::size_t slotOf(const RtfCharacter &character) const;
        void grow();

        std::deque<Entry> m_entries = std::deque<Entry>(1);                    ///< the first is none
        std::vector<std::int32_t> m_slots = std::vector<std::int32_t>(64, -1); ///< places of entries; a power of two
    };

    [[nodiscard]] bool isRoomForFormats() const;
    void prepare(const RtfCharacter &format);
    void insertRuns();
    void beginBlock(const RtfParagraph &paragraph, const RtfCharacter &mark);
    void joinList(const RtfList &list);
    [[nodiscard]] bool listMayGrow() const;
    const QTextCharFormat &charFormat(const RtfCharacter &format);

    QTextCursor &m_cursor;
    const RtfFontTable &m_fonts;
    const RtfLinkTable &m_links;
    const RtfUnits m_units;
    const QTextBlockFormat m_formatBefore; ///< of the paragraph that is inserted into
    const QTextCharFormat m_markBefore;    ///< of its mark

    // The paragraph that is open.
    QString m_text;
    std::vector<Run> m_runs;
    std::deque<QTextCharFormat> m_objects; ///< the formats of its objects
    RtfCharacter m_runFormat;              ///< of the last run
    bool m_mayJoinRun = false;             ///< text of that format belongs to it
    int m_newFormats = 0;                  ///< that the document may not have yet
    bool m_breakIsDue = false;             ///< before it

    // The paragraph before it.
    int m_paragraphs = 0;
    RtfParagraph m_paragraph;
    QTextBlockFormat m_paragraphFormat;

    QPointer<QTextList> m_list;
    RtfList m_listFormat;
    int m_listOffset = 0; ///< items of the list in lists of the document before this one
    int m_listLength = 0;
    std::int64_t m_listVisits = 0; ///< of paragraphs, by all lists

    CharFormats m_charFormats;
};
