#pragma once

#include "platform/rtf/RtfFormats.h"

#include <QString>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>

#include <string>
#include <vector>

class QFont;

/// A paragraph before it is written. Pictures are object replacement characters in their format.
struct PastedParagraph
{
    struct Run
    {
        qsizetype start = 0;
        QTextCharFormat format;
    };

    void append(QChar c, const QTextCharFormat &look);

    QString text;
    std::vector<Run> runs; ///< each to the start of the next
    RtfParagraph format;
    bool isBlock = false; ///< stands in an element of its own
};

/// Writes paragraphs one after the other, set in one font, and makes RTF of them.
class PastedText
{
public:
    explicit PastedText(const QFont &font);

    /// Blank ones at the start and the end are left out.
    void write(const PastedParagraph &paragraph);
    /// All of them, at the end; empty if there are none. The last one is closed only if there are
    /// several and it is a block.
    [[nodiscard]] std::string rtf();

private:
    void start(const RtfParagraph &format);

    QTextDocument m_document;
    QTextCursor m_cursor;
    const RtfUnits m_units;
    int m_paragraphs = 0;
    int m_blankParagraphs = 0; ///< not written yet; they are only if another follows
    bool m_lastIsBlock = false;
};
