#pragma once

#include "platform/ContrastRatio.h"

#include <QColor>
#include <QHash>
#include <QImage>

#include <algorithm>

constexpr double readableContrast = 4.5; ///< of a text to its ground
constexpr double visibleContrast = 3;    ///< of a sign to its ground

/// How many pixels of \p image have each of its colours.
inline QHash<QRgb, int> colorsOf(const QImage &image)
{
    const QImage plain = image.convertToFormat(QImage::Format_RGB32);
    QHash<QRgb, int> counts;
    for (int y = 0; y < plain.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(plain.constScanLine(y));
        for (int x = 0, begin = 0; x < plain.width(); ++x) {
            if (x + 1 == plain.width() || line[x + 1] != line[x]) {
                counts[line[x]] += x + 1 - begin;
                begin = x + 1;
            }
        }
    }
    return counts;
}

/// The colour that most of \p image has: the ground, where a text stands on it.
inline QColor groundOf(const QImage &image)
{
    const QHash<QRgb, int> counts = colorsOf(image);
    const auto most = std::max_element(counts.cbegin(), counts.cend());
    return most == counts.cend() ? QColor() : QColor::fromRgb(most.key());
}

/// The contrast of the clearest ink in \p image to its ground. The edges of a thin letter
/// are fainter than its ink, so a few pixels tell.
inline double inkContrast(const QImage &image)
{
    const QColor ground = groundOf(image);
    const QList<QRgb> colors = colorsOf(image).keys();
    double clearest = 1;
    for (const QRgb color : colors) {
        clearest = std::max(clearest, contrastRatio(QColor::fromRgb(color), ground));
    }
    return clearest;
}

/// How many pixels of two pictures of one place are clearly another colour.
inline int clearChanges(const QImage &one, const QImage &other)
{
    int changes = 0;
    for (int y = 0; y < std::min(one.height(), other.height()); ++y) {
        for (int x = 0; x < std::min(one.width(), other.width()); ++x) {
            const bool differs = one.pixel(x, y) != other.pixel(x, y);
            changes += differs && contrastRatio(one.pixelColor(x, y), other.pixelColor(x, y)) >= visibleContrast;
        }
    }
    return changes;
}
