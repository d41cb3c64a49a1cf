#include "platform/RichTextBox.h"

#include "platform/NotebookPage.h"
#include "platform/PaperFrame.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfWriter.h"

#include <QAbstractTextDocumentLayout>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTextDocument>
#include <QtMath>

namespace {

bool looksLikeRtf(const QString &text)
{
    QStringView start(text);
    if (start.startsWith(QChar::ByteOrderMark)) {
        start = start.mid(1);
    }
    start = start.trimmed();
    return start.startsWith(QLatin1String("{\\rtf")) || start.startsWith(QLatin1String("{\\urtf"));
}

/// RTF is 7-bit; a letter beyond that, as in a topic's name put into a
/// template, becomes a control word.
std::string sevenBit(const QString &rtf)
{
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(rtf.size()));
    for (const QChar letter : rtf) {
        const char16_t code = letter.unicode();
        if (code < 0x80) {
            bytes += static_cast<char>(code);
        } else if (code != QChar::ByteOrderMark) {
            bytes += "{\\uc0\\u" + std::to_string(static_cast<std::int16_t>(code)) + " }";
        }
    }
    return bytes;
}

} // namespace

RichTextBox::RichTextBox(QWidget *parent)
    : QTextEdit(parent)
{
    setFont(notebookFont(10));
    setAcceptRichText(true);
    givePaperFrame(*this);
    connect(document(), &QTextDocument::contentsChanged, this, [this] { m_rtf.clear(); });
}

QString RichTextBox::textRtf() const
{
    return m_rtf.isNull() ? QString::fromStdString(writeRtf(*document())) : m_rtf;
}

void RichTextBox::setTextRtf(const QString &rtf)
{
    if (looksLikeRtf(rtf)) {
        readRtf(sevenBit(rtf), *document());
    } else {
        setPlainText(rtf);
    }
    document()->clearUndoRedoStacks();
    setTextCursor(QTextCursor(document()));
    verticalScrollBar()->setValue(0);
    m_rtf = looksLikeRtf(rtf) ? rtf : QString();
}

QString RichTextBox::selRtf() const
{
    return QString::fromStdString(writeRtf(textCursor()));
}

void RichTextBox::setSelRtf(const QString &rtf)
{
    QTextCursor cursor = textCursor();
    if (looksLikeRtf(rtf)) {
        insertRtf(sevenBit(rtf), cursor);
    } else {
        cursor.insertText(rtf);
    }
    setTextCursor(cursor);
}

void RichTextBox::setLocked(bool locked)
{
    setReadOnly(locked);
}

bool RichTextBox::isLocked() const
{
    return isReadOnly();
}

void RichTextBox::setCentered(bool centered)
{
    m_centered = centered;
    if (centered) {
        connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
                &RichTextBox::center, Qt::UniqueConnection);
    }
    center();
}

void RichTextBox::center()
{
    const int room = contentsRect().height() - qCeil(document()->size().height());
    setViewportMargins(0, m_centered ? qMax(0, room / 2) : 0, 0, 0);
}

void RichTextBox::resizeEvent(QResizeEvent *event)
{
    QTextEdit::resizeEvent(event);
    if (m_centered) {
        center();
    }
}

void RichTextBox::mousePressEvent(QMouseEvent *event)
{
    QTextEdit::mousePressEvent(event);
    Q_EMIT clicked();
}

void RichTextBox::keyPressEvent(QKeyEvent *event)
{
    // Alt with a letter is a command, and no letter to be typed.
    if (!isLocked() && event->modifiers() == Qt::AltModifier && !event->text().isEmpty()) {
        return;
    }
    QTextEdit::keyPressEvent(event);
}

void RichTextBox::wheelEvent(QWheelEvent *event)
{
    // Zooming would change the font of text that has none of its own, and store it.
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        event->ignore();
    } else {
        QTextEdit::wheelEvent(event);
    }
}
