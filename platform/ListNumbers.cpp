#include "platform/ListNumbers.h"

#include "platform/rtf/RtfFormats.h"
#include "platform/rtf/RtfListWriter.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetrics>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextEdit>
#include <QTextLayout>
#include <QTextList>

namespace {

/// Counts the paragraphs of lists without looking through the whole list each time.
class ListCounter
{
public:
    int numberOf(const QTextList &list, const QTextBlock &block)
    {
        const bool isNext = m_list == &list && m_number + 1 < list.count() && list.item(m_number + 1) == block;
        m_number = isNext ? m_number + 1 : list.itemNumber(block);
        m_list = &list;
        return m_number;
    }

private:
    const QTextList *m_list = nullptr;
    int m_number = 0;
};

bool isLeftOut(const QTextList *list)
{
    return list != nullptr && list->format().style() == QTextListFormat::ListStyleUndefined &&
           list->format().hasProperty(RtfListStyleShown);
}

/// \p number counts from 0.
QString markOf(const QTextBlock &block, int number, const RtfUnits &units)
{
    const RtfList list = paragraphOf(block, units).list;
    const QString counted = QString::fromStdString(rtfListNumber(list.style, list.start + number));
    // From right to left a document puts what is behind the number first.
    return block.textDirection() == Qt::RightToLeft ? list.after + counted + list.before
                                                    : list.before + counted + list.after;
}

/// Paints \p mark beside the first line of \p block: a blank away from it, on the
/// side where the line begins.
void paintMark(QPainter &painter, const QTextBlock &block, const QString &mark, const QColor &ink)
{
    const QTextLayout &paragraph = *block.layout();
    if (paragraph.lineCount() == 0) {
        return;
    }
    const QTextCharFormat format = block.charFormat();
    QPaintDevice *device = block.document()->documentLayout()->paintDevice();
    const QFont font(format.font().resolve(block.document()->defaultFont()), device);
    // Whole units, as the document's layout reckons.
    const QFontMetrics metrics(font, device);
    const QRectF line = paragraph.lineAt(0).naturalTextRect();
    const QPoint start = paragraph.position().toPoint() + line.topLeft().toPoint();
    const int gap = metrics.horizontalAdvance(QLatin1Char(' '));
    const bool toTheRight = block.textDirection() == Qt::RightToLeft;
    const double left = toTheRight ? start.x() + line.width() + gap : start.x() - gap - metrics.horizontalAdvance(mark);

    QTextLayout layout(mark, font, device);
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setTextDirection(block.textDirection());
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine only = layout.createLine();
    only.setLeadingIncluded(true);
    layout.endLayout();
    painter.setPen(format.foreground().style() == Qt::NoBrush ? ink : format.foreground().color());
    layout.draw(&painter, QPointF(left, start.y()));
}

} // namespace

void paintListNumbers(QPainter &painter, const QTextEdit &box, const QRect &clip)
{
    const QPoint scrolled(box.horizontalScrollBar()->value(), box.verticalScrollBar()->value());
    const RtfUnits units(*box.document());
    const int bottom = clip.bottom() + scrolled.y();
    ListCounter counter;
    painter.save();
    painter.setClipRect(clip);
    painter.translate(-scrolled);
    for (QTextBlock block = box.cursorForPosition(clip.topLeft()).block();
         block.isValid() && block.layout()->position().y() <= bottom; block = block.next()) {
        const QTextList *list = block.textList();
        if (isLeftOut(list)) {
            const int number = counter.numberOf(*list, block);
            paintMark(painter, block, markOf(block, number, units), box.palette().color(QPalette::Text));
        }
    }
    painter.restore();
}
