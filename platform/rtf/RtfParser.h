#pragma once

#include "platform/rtf/RtfBody.h"
#include "platform/rtf/RtfCodePages.h"
#include "platform/rtf/RtfColorTable.h"
#include "platform/rtf/RtfFieldReader.h"
#include "platform/rtf/RtfFontTable.h"
#include "platform/rtf/RtfGroupSource.h"
#include "platform/rtf/RtfGroups.h"
#include "platform/rtf/RtfLinkTable.h"
#include "platform/rtf/RtfListReader.h"
#include "platform/rtf/RtfListTable.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfTokenizer.h"

#include <optional>
#include <string>

/// Runs through the tokens of an RTF text and gives every word and every piece
/// of text to what its group is for: the body, a table of the head, a numbering.
///
/// What is the same in all of them is done here: groups, the choice among
/// alternatives, skipping what is unknown, decoding text, and handing over the
/// groups that have a reader of their own.
class RtfParser
{
public:
    /// \p rtf begins with its first group. The text goes to \p cursor. Both must
    /// outlive the parser. \p margins: headers and footers are part of the text.
    RtfParser(std::string_view rtf, QTextCursor &cursor, bool margins);

    /// Reads the whole text and returns the first error. To be called once, with
    /// one of the ends after it.
    [[nodiscard]] std::optional<RtfError> parse();

    /// Whether headers and footers are all the text there is, and were left out.
    [[nodiscard]] bool isAllInMargins() const { return m_leftMarginsOut && m_body.count() == 0; }

    void endDocument() { m_body.endDocument(m_lastCharacter); }
    void endInsertion() { m_body.endInsertion(); }

private:
    // Tokens.
    void openGroup(std::size_t offset);
    void closeGroup();
    void readWord(const RtfToken &token, bool isGroupStart);
    void readText(std::string_view bytes, bool isPlain);
    void readHexByte(int byte);
    [[nodiscard]] bool readNext();

    // Destinations.
    void begin(RtfDestination destination, const RtfToken &word, bool isIgnorable);
    void end(RtfDestination destination);
    void readMargin();
    void readLists(RtfDestination table);
    void readObject(const RtfToken &word, bool isIgnorable);
    void readShapePicture(const RtfToken &word);
    [[nodiscard]] std::string_view writtenAs(const RtfToken &word, const RtfTokenizer &after) const;
    void endInstruction();
    void endField(const RtfGroup &field, const RtfCharacter &result);
    void apply(RtfEffect effect, int value);
    void applyToMark(RtfEffect effect, int value);
    bool applyToText(RtfEffect effect, int value);
    void append(std::string_view bytes);
    void append(char16_t character);
    void append(QStringView text);

    void flushBytes();
    [[nodiscard]] bool skipFallback(const RtfControlWord *row);
    [[nodiscard]] RtfCharacter &character() { return m_groups.current().character; }
    [[nodiscard]] const RtfCodePage &codePage() { return m_fonts.codePage(character().font); }
    void report(RtfError::Reason reason, std::size_t offset);

    const std::string_view m_rtf;
    const bool m_rawBytesAreUtf8;
    const bool m_margins;
    RtfTokenizer m_tokenizer;
    RtfGroups m_groups;
    RtfCodePages m_codePages;
    RtfFontTable m_fonts;
    RtfColorTable m_colors;
    RtfLinkTable m_links;
    RtfListTable m_listTable;
    RtfListReader m_list;
    RtfFieldReader m_field;
    RtfBody m_body;
    std::optional<RtfError> m_error;

    std::size_t m_groupStart = 0; ///< where the group that was opened last begins
    bool m_isGroupStart = false;  ///< the last token opened a group
    bool m_isIgnorable = false;   ///< \* was the last word
    int m_fallbackToSkip = 0;     ///< characters that stand for the last \u
    std::string m_bytes;          ///< text that waits for decoding: a character may come in pieces
    RtfCharacter m_lastCharacter; ///< the format in the group that closed last
    QString m_mark;               ///< of a list's paragraph, as text
    std::optional<bool> m_markIsInTable;
    bool m_leftMarginsOut = false;
};
