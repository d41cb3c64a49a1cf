#include "platform/PaperSheet.h"

#include "platform/DevicePixels.h"

#include <QPainter>
#include <QPainterPath>

namespace {

constexpr qreal cornerRadius = 8;

} // namespace

PaperSheet::PaperSheet(QWidget *parent)
    : QWidget(parent)
{
    setShape(Shape::UnderTabs);
}

void PaperSheet::setShape(Shape shape)
{
    m_shape = shape;
    const int inset = shape == Shape::IndexCard ? 14 : 2;
    setContentsMargins(inset, inset, inset + shadowDepth, inset + shadowDepth);
    update();
}

void PaperSheet::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double line = hairline(painter);
    const QRectF sheet = onDevicePixels(painter, rect().adjusted(0, 0, -shadowDepth, -shadowDepth));
    const QRectF outline = sheet.adjusted(line / 2, line / 2, -line / 2, -line / 2);

    QPainterPath paper;
    QPainterPath border;
    if (m_shape == Shape::IndexCard) {
        paper.addRoundedRect(outline, cornerRadius, cornerRadius);
        border = paper;
    } else {
        paper.addRect(sheet);
        border.moveTo(outline.left(), sheet.top()); // the tabs draw the line above
        border.lineTo(outline.bottomLeft());
        border.lineTo(outline.bottomRight());
        border.lineTo(outline.right(), sheet.top());
    }

    painter.setPen(Qt::NoPen);
    for (int depth = shadowDepth; depth > 0; --depth) {
        painter.setBrush(QColor(0, 0, 0, 8 + 5 * (shadowDepth - depth)));
        painter.drawPath(paper.translated(depth / 2.0, depth));
    }
    painter.fillPath(paper, palette().base());
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::Dark), line));
    painter.drawPath(border);
}
