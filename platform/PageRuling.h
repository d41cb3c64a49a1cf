#pragma once

#include <QColor>
#include <QRectF>
#include <QVector>

/// Where a notebook page has its lines and holes, in twips. No painting here.
struct PageRuling
{
    enum class Binding { ThreeHoles, Spiral };

    static constexpr int lineSpacing = 360;
    static constexpr int marginAt = 960; ///< from the left edge
    static constexpr int spiralHoles = 19;
    static constexpr int spiralHoleSize = 135;
    static constexpr int ringHoleSize = 375;
    static constexpr QColor lineColor() { return QColor(0x00, 0x00, 0xff); }
    static constexpr QColor marginColor() { return QColor(0xff, 0x80, 0x80); }

    int firstLine = 1180; ///< twips from the top of the page
    bool marginLine = true;
    Binding binding = Binding::ThreeHoles;
    int toolbarHeight = 0; ///< twips; the top hole keeps clear of it
};

/// The number of ruled lines below \p firstLine on a page of \p height twips:
/// (height - firstLine) / 360, rounded to the nearest whole number, halves to
/// even; never negative.
[[nodiscard]] int countRuledLines(double firstLine, double height);

/// The bounds of the holes down the left edge of a page of \p height twips, in twips.
[[nodiscard]] QVector<QRectF> holePlaces(const PageRuling &ruling, double height);
