#include "platform/PastedText.h"

#include "platform/rtf/RtfWriter.h"

#include <QFont>

#include <algorithm>

namespace {

/// \p text as it is to be typed: without the characters that a page needs for its
/// layout only. Others keep their places; those that go become null characters.
QString tidied(QString text)
{
    const auto isEmpty = [](QChar c) { return c == u' ' || c == QChar::Nbsp; };
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == QChar::Nbsp) {
            const bool isAlone = (i == 0 || !isEmpty(text[i - 1])) && (i + 1 == text.size() || !isEmpty(text[i + 1]));
            text[i] = isAlone ? QLatin1Char(' ') : text[i];
        }
    }
    qsizetype end = text.size();
    const auto trim = [&] {
        while (end > 0 && (isEmpty(text[end - 1]) || text[end - 1] == u'\t')) {
            text[--end] = QChar::Null;
        }
    };
    trim();
    if (end > 0 && text[end - 1] == QChar::LineSeparator) { // one that ends a paragraph is not seen
        text[--end] = QChar::Null;
        trim();
    }
    return text;
}

} // namespace

void PastedParagraph::append(QChar c, const QTextCharFormat &look)
{
    if (runs.empty() || runs.back().format != look) {
        runs.push_back({text.size(), look});
    }
    text += c;
}

PastedText::PastedText(const QFont &font)
    : m_cursor(&m_document)
    , m_units(m_document)
{
    m_document.setDefaultFont(font);
    m_document.setUndoRedoEnabled(false);
    m_cursor.beginEditBlock();
}

void PastedText::write(const PastedParagraph &paragraph)
{
    const QString text = tidied(paragraph.text);
    if (std::ranges::all_of(text, [](QChar c) { return c.isNull() || c.isSpace(); })) {
        m_blankParagraphs += m_paragraphs > 0 ? 1 : 0;
        return;
    }
    for (; m_blankParagraphs > 0; --m_blankParagraphs) {
        start({});
    }
    start(paragraph.format);
    for (std::size_t i = 0; i < paragraph.runs.size(); ++i) {
        const qsizetype begin = paragraph.runs[i].start;
        const qsizetype end = i + 1 < paragraph.runs.size() ? paragraph.runs[i + 1].start : text.size();
        QString run = text.mid(begin, end - begin);
        m_cursor.insertText(run.remove(QChar::Null), paragraph.runs[i].format);
    }
    m_lastIsBlock = paragraph.isBlock;
}

void PastedText::start(const RtfParagraph &format)
{
    if (m_paragraphs++ == 0) {
        m_cursor.setBlockFormat(toBlockFormat(format, m_units));
    } else {
        m_cursor.insertBlock(toBlockFormat(format, m_units), QTextCharFormat());
    }
    if (format.list.style != RtfListStyle::None) {
        m_cursor.createList(toListFormat(format.list)); // a list of its own is written the same, and faster
    }
}

std::string PastedText::rtf()
{
    if (m_paragraphs == 0) {
        return {};
    }
    if (m_paragraphs > 1 && m_lastIsBlock) {
        m_cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
    }
    m_cursor.endEditBlock();
    m_cursor.select(QTextCursor::Document);
    return writeRtf(m_cursor);
}
