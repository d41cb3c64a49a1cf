#pragma once

#include <QColor>

#include <algorithm>
#include <cmath>

/// The light that an opaque colour gives, 0 to 1, as accessibility guidelines compute it.
[[nodiscard]] inline double relativeLuminance(const QColor &color)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// The contrast of two opaque colours, 1 to 21.
[[nodiscard]] inline double contrastRatio(const QColor &one, const QColor &other)
{
    const double first = relativeLuminance(one) + 0.05;
    const double second = relativeLuminance(other) + 0.05;
    return std::max(first, second) / std::min(first, second);
}
