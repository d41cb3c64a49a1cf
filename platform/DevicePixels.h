#pragma once

#include <QPainter>

#include <cmath>

// Straight edges stay crisp at 125 and 150 % if they lie on whole device pixels.
// All lengths here are in the painter's own coordinates, which must not be rotated.

/// \p area with its edges moved to the nearest device pixels.
[[nodiscard]] inline QRectF onDevicePixels(const QPainter &painter, const QRectF &area)
{
    const QTransform &device = painter.deviceTransform();
    const QRectF mapped = device.mapRect(area);
    const QPoint topLeft = mapped.topLeft().toPoint();
    const QPoint bottomRight = mapped.bottomRight().toPoint();
    return device.inverted().mapRect(QRectF(topLeft, bottomRight));
}

/// The width of the thinnest line that looks like one: whole device pixels, at most one of the painter's.
[[nodiscard]] inline double hairline(const QPainter &painter)
{
    const double scale = painter.deviceTransform().m11();
    return std::max(1.0, std::floor(scale)) / scale;
}
