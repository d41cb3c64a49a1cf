#include "platform/help/InkContrast.h"

#include "platform/ContrastRatio.h"

QColor inkOn(const QColor &ground, const QColor &ink)
{
    constexpr double readable = 4.5;
    const int step = contrastRatio(ground, Qt::white) > contrastRatio(ground, Qt::black) ? 4 : -4;
    QColor tried = ink.toHsl();
    while (contrastRatio(ground, tried.toRgb()) < readable && tried.lightness() + step >= 0 &&
           tried.lightness() + step <= 255) {
        tried.setHsl(tried.hslHue(), tried.hslSaturation(), tried.lightness() + step);
    }
    return tried.toRgb();
}
