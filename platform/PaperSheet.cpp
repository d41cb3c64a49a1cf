#include "platform/PaperSheet.h"

#include "platform/DevicePixels.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr qreal cornerRadius = 8;
constexpr int focusLine = 2; // hairlines

/// Lines of what is seen through: from 96 device pixels on, Qt would wake threads for it, which takes longer.
constexpr double pieceHeight = 32;

/// Of an \p area on device pixels, for which nothing has to be smooth.
void fillSquare(QPainter &painter, const QRectF &area, const QBrush &brush)
{
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(area, brush);
    painter.setRenderHint(QPainter::Antialiasing);
}

void fillRounded(QPainter &painter, const QRectF &area, qreal radius, const QBrush &brush)
{
    QPainterPath path;
    path.addRoundedRect(area, radius, radius);
    painter.fillPath(path, brush);
}

/// The same with an \p area on device pixels, of which only the ends are smooth shapes: those take the longer
/// the higher they are.
void fillSheet(QPainter &painter, const QRectF &area, qreal radius, const QBrush &brush)
{
    const double end = std::ceil(radius);
    for (const double top : {area.top(), area.bottom() - end}) {
        painter.setClipRect(QRectF(area.left(), top, area.width(), end));
        fillRounded(painter, area, radius, brush);
    }
    painter.setClipping(false);
    fillSquare(painter, area.adjusted(0, end, 0, -end), brush);
}

/// Draws what is seen of the shadow of \p paper, whose corners have \p radius. A
/// smooth shape takes the longer the higher it is, so only the corners are some.
void drawShadow(QPainter &painter, const QRectF &paper, qreal radius)
{
    constexpr qreal end = cornerRadius + PaperSheet::shadowDepth;
    const auto colorOf = [](int depth) { return QColor(0, 0, 0, 8 + 5 * (PaperSheet::shadowDepth - depth)); };
    const QRectF belowHalf(paper.left(), paper.bottom() - end, paper.width() + end, 2 * end);
    const QRectF below(paper.left(), paper.bottom() - 2 * end, paper.width(), 2 * end);
    const QRectF cornerHalf(paper.right() - end, paper.top(), 2 * end, end);
    const QRectF corner(paper.right() - 2 * end, paper.top(), 2 * end, 2 * end);
    for (const auto &[half, shape] : {std::pair(belowHalf, below), std::pair(cornerHalf, corner)}) {
        painter.setClipRect(half);
        for (int depth = PaperSheet::shadowDepth; depth > 0; --depth) {
            fillRounded(painter, shape.translated(depth / 2.0, depth), radius, colorOf(depth));
        }
    }
    painter.setClipping(false);
    for (int depth = PaperSheet::shadowDepth; depth > 0; --depth) {
        for (double top = cornerHalf.bottom(); top < belowHalf.top(); top += pieceHeight) {
            const QRectF piece(paper.right(), top, depth / 2.0, std::min(pieceHeight, belowHalf.top() - top));
            fillSquare(painter, onDevicePixels(painter, piece), colorOf(depth));
        }
    }
}

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

void PaperSheet::showFocusOf(QWidget &content)
{
    content.installEventFilter(this);
}

bool PaperSheet::eventFilter(QObject *content, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        m_showsFocus = event->type() == QEvent::FocusIn;
        update();
    }
    return QWidget::eventFilter(content, event);
}

void PaperSheet::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double line = hairline(painter) * (m_showsFocus ? focusLine : 1);
    const QRectF sheet = onDevicePixels(painter, rect().adjusted(0, 0, -shadowDepth, -shadowDepth));
    const bool isCard = m_shape == Shape::IndexCard;
    const qreal radius = isCard ? cornerRadius : 0;
    drawShadow(painter, sheet, radius);
    fillSheet(painter, sheet, radius, m_showsFocus ? palette().highlight() : palette().dark());
    const bool hasLineAbove = isCard || m_showsFocus; // the tabs draw the one under them
    const QRectF withinBorder = sheet.adjusted(line, hasLineAbove ? line : 0, -line, -line);
    fillSheet(painter, withinBorder, std::max(0.0, radius - line), palette().base());
}
