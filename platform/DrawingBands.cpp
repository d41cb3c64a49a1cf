#include "platform/DrawingBands.h"

#include <QPainter>

namespace {

constexpr int bandHeight = 8; // device pixels

} // namespace

void drawInBands(QPainter &painter, int height, const std::function<void()> &draw)
{
    for (int top = 0; top < height; top += bandHeight) {
        painter.save();
        const QTransform transform = painter.transform();
        painter.resetTransform();
        painter.setClipRect(0, top, painter.device()->width(), bandHeight);
        painter.setTransform(transform);
        draw();
        painter.restore();
    }
}
