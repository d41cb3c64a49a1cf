#include "platform/help/InkContrast.h"

#include <cmath>

namespace {

/// Of one colour channel, 0 to 1, its share of the light.
double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

double contrast(const QColor &ground, const QColor &ink)
{
    const double one = luminance(ground) + 0.05;
    const double other = luminance(ink) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

QColor inkOn(const QColor &ground, const QColor &ink)
{
    constexpr double readable = 4.5;
    const int step = contrast(ground, Qt::white) > contrast(ground, Qt::black) ? 4 : -4;
    QColor tried = ink.toHsl();
    while (contrast(ground, tried.toRgb()) < readable && tried.lightness() + step >= 0 &&
           tried.lightness() + step <= 255) {
        tried.setHsl(tried.hslHue(), tried.hslSaturation(), tried.lightness() + step);
    }
    return tried.toRgb();
}
