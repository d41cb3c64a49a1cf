#include "tests/look/PicturePacking.h"

#include <QHash>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <vector>

namespace {

constexpr int paletteSize = 256;

/// The colours of \p picture (RGB32), the most frequent first.
std::vector<QRgb> colorsOf(const QImage &picture)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        const auto *pixels = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        for (int x = 0; x < picture.width();) {
            const QRgb color = pixels[x];
            const int begin = x;
            while (x < picture.width() && pixels[x] == color) {
                ++x;
            }
            counts[color] += x - begin;
        }
    }
    std::vector<QRgb> colors(counts.keyBegin(), counts.keyEnd());
    std::ranges::sort(colors, [&counts](QRgb one, QRgb other) {
        const int more = counts.value(one) - counts.value(other);
        return more != 0 ? more > 0 : one < other;
    });
    return colors;
}

int distance(QRgb one, QRgb other)
{
    return std::max({std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)),
                     std::abs(qBlue(one) - qBlue(other))});
}

auto nearest(const QList<QRgb> &palette, QRgb color)
{
    return std::ranges::min_element(palette, {}, [color](QRgb entry) { return distance(entry, color); });
}

/// A palette in which each of \p colors is at most \p error away from an entry, if there is room for it.
std::optional<QList<QRgb>> choosePalette(const std::vector<QRgb> &colors, int error)
{
    QList<QRgb> palette;
    for (const QRgb color : colors) {
        if (!palette.isEmpty() && distance(*nearest(palette, color), color) <= error) {
            continue;
        }
        if (palette.size() == paletteSize) {
            return std::nullopt;
        }
        palette.push_back(color);
    }
    return palette;
}

QImage paint(const QImage &picture, const std::vector<QRgb> &colors, const QList<QRgb> &palette)
{
    QHash<QRgb, uchar> entries;
    for (const QRgb color : colors) {
        entries[color] = static_cast<uchar>(nearest(palette, color) - palette.begin());
    }
    QImage indexed(picture.size(), QImage::Format_Indexed8);
    indexed.setColorTable(palette);
    for (int y = 0; y < picture.height(); ++y) {
        const auto *pixels = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        std::transform(pixels, pixels + picture.width(), indexed.scanLine(y),
                       [&entries](QRgb color) { return entries.value(color); });
    }
    return indexed;
}

} // namespace

QImage packed(const QImage &picture)
{
    if (picture.hasAlphaChannel()) {
        return picture;
    }
    const QImage pixels = picture.convertToFormat(QImage::Format_RGB32);
    const std::vector<QRgb> colors = colorsOf(pixels);
    for (int error = 0; error <= packingError; error += 2) {
        if (const auto palette = choosePalette(colors, error)) {
            return paint(pixels, colors, *palette);
        }
    }
    return picture;
}
