#include "platform/PageRuling.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double holesAt = 120; // from the left edge

QVector<QRectF> ringHoles(double top, double height)
{
    constexpr double size = PageRuling::ringHoleSize;
    constexpr double clearance = 240;
    return {
        {holesAt, top + clearance, size, size},
        {holesAt, height - size - clearance, size, size},
        {holesAt, (top + height) / 2 - size / 2, size, size},
    };
}

QVector<QRectF> spiralHoles()
{
    constexpr double size = PageRuling::spiralHoleSize;
    QVector<QRectF> holes;
    for (int i = 0; i < PageRuling::spiralHoles; ++i) {
        holes.append({holesAt, 120.0 + 240.0 * i, size, size});
    }
    return holes;
}

} // namespace

int countRuledLines(double firstLine, double height)
{
    const double lines = (height - firstLine) / PageRuling::lineSpacing;
    return static_cast<int>(std::max(0.0, std::nearbyint(lines)));
}

QVector<QRectF> holePlaces(const PageRuling &ruling, double height)
{
    switch (ruling.binding) {
    case PageRuling::Binding::ThreeHoles: return ringHoles(ruling.toolbarHeight, height);
    case PageRuling::Binding::Spiral: return spiralHoles();
    }
    return {};
}
