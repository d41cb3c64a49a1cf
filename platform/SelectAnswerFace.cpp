#include "platform/SelectAnswerFace.h"

#include "platform/ContrastRatio.h"
#include "platform/DevicePixels.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace {

using Part = SelectAnswerFace::Part;
using Focus = SelectAnswerFace::Focus;

constexpr double readable = 4.5;
constexpr double smallestCircle = 28; // across
constexpr double gap = 4;             // between circles
constexpr double edge = 6;            // above and below them
constexpr double smallestNumber = 40; // width
constexpr double numberEdge = 8;      // left and right of the number
constexpr double tabEdge = 3;         // between the number's tab and the first choice
constexpr double flagEdge = 2;        // between the flag and the frame
constexpr double roundness = 6;
constexpr double boldLine = 2.5;

struct Inks
{
    QColor ground;
    QColor ink;
    QColor faint;
    QColor right;
    QColor wrong;
    QColor flag;
    QColor lit;
};

enum class Sign : std::uint8_t { Letter, Check, Cross };

struct ChoiceLook
{
    QColor color;
    bool isFilled = false;
    Sign sign = Sign::Letter;
    double line = 1.5;
    bool isDashed = false;
    QColor letter = color;
};

/// Against the paper and against the ground of the current question, whichever is less.
double contrastOnPaper(const QPalette &palette, const QColor &color)
{
    return std::min(contrastRatio(color, palette.color(QPalette::Window)),
                    contrastRatio(color, palette.color(QPalette::Base)));
}

QColor clearer(const QPalette &palette, const QColor &one, const QColor &other)
{
    return contrastOnPaper(palette, one) >= contrastOnPaper(palette, other) ? one : other;
}

/// The clearer of two shades, with as much ink in it as it takes to be readable.
QColor readableShade(const QPalette &palette, const QColor &deep, const QColor &bright)
{
    const QColor ink = palette.color(QPalette::WindowText);
    const QColor wish = clearer(palette, deep, bright);
    QColor color = wish;
    for (double share = 0.1; share <= 1 && contrastOnPaper(palette, color) < readable; share += 0.1) {
        const auto channel = [share](int from, int to) { return qRound(from + (to - from) * share); };
        color = {channel(wish.red(), ink.red()), channel(wish.green(), ink.green()), channel(wish.blue(), ink.blue())};
    }
    return color;
}

Inks inksFor(const QPalette &palette, Focus focus)
{
    return {
        .ground = palette.color(focus == Focus::None ? QPalette::Window : QPalette::Base),
        .ink = palette.color(QPalette::WindowText),
        .faint = palette.color(QPalette::PlaceholderText),
        .right = readableShade(palette, QColor(0x15, 0x74, 0x2f), QColor(0x86, 0xe0, 0x9a)),
        .wrong = readableShade(palette, QColor(0xb7, 0x1c, 0x1c), QColor(0xff, 0xa6, 0x9e)),
        .flag = clearer(palette, QColor(0xd0, 0x3a, 0x12), QColor(0xff, 0xa2, 0x4d)),
        .lit = palette.color(QPalette::Button),
    };
}

double circleFor(const QFont &font)
{
    return std::max(smallestCircle, std::ceil(2.2 * QFontMetricsF(font).capHeight()));
}

/// Letters of one line stand on one line, capitals and digits in the middle of \p area.
void drawCentred(QPainter &painter, const QRectF &area, const QString &text)
{
    const QFontMetricsF metrics(painter.font());
    painter.drawText(area.center() + QPointF(-metrics.horizontalAdvance(text) / 2, metrics.capHeight() / 2), text);
}

QPen roundPen(const QColor &color, double width)
{
    return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void drawSign(QPainter &painter, const QRectF &circle, Sign sign, const QColor &color)
{
    const auto at = [&circle](double x, double y) { return circle.center() + QPointF(x, y) * circle.width() / 28; };
    painter.setPen(roundPen(color, circle.width() / 28 * 3));
    painter.setBrush(Qt::NoBrush);
    if (sign == Sign::Check) {
        painter.drawPolyline(QPolygonF({at(-6, 0.5), at(-2, 5), at(6, -5)}));
    } else {
        painter.drawLine(at(-5, -5), at(5, 5));
        painter.drawLine(at(-5, 5), at(5, -5));
    }
}

void drawChoice(QPainter &painter, const QRectF &circle, const ChoiceLook &look, const QBrush &inside, int choice,
                const QColor &ground)
{
    const double inset = look.line / 2;
    QPen pen(look.color, look.line);
    if (look.isDashed) {
        pen.setDashPattern({1.8, 1.5});
    }
    painter.setPen(pen);
    painter.setBrush(look.isFilled ? QBrush(look.color) : inside);
    painter.drawEllipse(circle.adjusted(inset, inset, -inset, -inset));

    const QColor color = look.isFilled ? ground : look.letter;
    if (look.sign == Sign::Letter) {
        painter.setPen(color);
        drawCentred(painter, circle, QString(QChar(u'A' + choice - 1)));
    } else {
        drawSign(painter, circle, look.sign, color);
    }
}

ChoiceLook lookOf(const SelectAnswerFace &face, int choice, const Inks &inks)
{
    const bool isGiven = face.selected == choice;
    if (!face.graded) {
        return {.color = inks.ink, .isFilled = isGiven};
    }
    if (choice == face.correct) {
        return {.color = inks.right, .isFilled = isGiven, .sign = Sign::Check, .line = boldLine};
    }
    if (isGiven) {
        return {.color = inks.wrong, .isFilled = true, .sign = Sign::Cross};
    }
    if (face.selected == 0) {
        return {.color = inks.wrong, .line = 2, .isDashed = true, .letter = inks.faint};
    }
    return {.color = inks.faint, .line = 1};
}

/// Raised and filled, or lowered and a mere outline.
void drawFlag(QPainter &painter, const QRectF &area, bool isRaised, const Inks &inks, bool isLit)
{
    const double scale = area.height() / 28;
    painter.save();
    painter.translate(area.center());
    painter.scale(scale, scale);
    QPainterPath cloth(QPointF(-8, 0));
    cloth.cubicTo({-3, -4}, {2, 4}, {8, 0});
    cloth.lineTo(8, 11);
    cloth.cubicTo({2, 15}, {-3, 7}, {-8, 11});
    cloth.closeSubpath();
    cloth.translate(0, isRaised ? -11 : -4.5);

    const QColor line = isRaised || isLit ? inks.ink : inks.faint;
    const double width = isRaised ? 1.75 : 1.25;
    painter.setPen(roundPen(line, width));
    painter.setBrush(isRaised ? QBrush(inks.flag) : isLit ? QBrush(inks.lit) : Qt::NoBrush);
    painter.drawPath(cloth);
    painter.setPen(roundPen(line, isRaised ? 2.25 : 1.5));
    painter.drawLine(QPointF(-8, -12), QPointF(-8, 12));
    painter.restore();
}

/// The frame of the current question, with its number on a tab of the same colour.
void drawFocus(QPainter &painter, const QRectF &area, double numberWidth, Focus focus, const QPalette &palette)
{
    const QRectF whole = onDevicePixels(painter, area);
    const double line = 2 * hairline(painter);
    const QRectF frame = whole.adjusted(line / 2, line / 2, -line / 2, -line / 2);
    QPainterPath path;
    path.addRoundedRect(frame, roundness, roundness);
    painter.fillPath(path, palette.base());
    if (focus == Focus::Here) {
        QPainterPath tab;
        tab.addRect(onDevicePixels(painter, QRectF(area.topLeft(), QSizeF(numberWidth, area.height()))));
        painter.fillPath(path.intersected(tab), palette.highlight());
    }
    painter.strokePath(path, QPen(palette.color(focus == Focus::Here ? QPalette::Highlight : QPalette::PlaceholderText),
                                  focus == Focus::Here ? line : hairline(painter)));
}

QRectF middleOf(const QRectF &area, double across)
{
    return {area.center() - QPointF(across, across) / 2, QSizeF(across, across)};
}

} // namespace

int choiceOf(SelectAnswerFace::Part part)
{
    switch (part) {
    case Part::A: return 1;
    case Part::B: return 2;
    case Part::C: return 3;
    case Part::Number:
    case Part::Flag: break;
    }
    return 0;
}

QSize SelectAnswerFace::size(const QFont &font)
{
    const double circle = circleFor(font);
    const double number = QFontMetricsF(font).horizontalAdvance(QStringLiteral("50")) + 2 * numberEdge + tabEdge;
    const double width = std::max(smallestNumber, std::ceil(number)) + 4 * (circle + gap) + flagEdge;
    return QSizeF(width, circle + 2 * edge).toSize();
}

QRectF SelectAnswerFace::area(Part part, const QSizeF &size, const QFont &font)
{
    const double cell = circleFor(font) + gap;
    const double flag = size.width() - cell - flagEdge;
    const double first = flag - 3 * cell;
    switch (part) {
    case Part::Number: break;
    case Part::A:
    case Part::B:
    case Part::C: return {first + (choiceOf(part) - 1) * cell, 0, cell, size.height()};
    case Part::Flag: return {flag, 0, cell + flagEdge, size.height()};
    }
    return {0, 0, first, size.height()};
}

SelectAnswerFace::Part SelectAnswerFace::partAt(const QPointF &place, const QSizeF &size, const QFont &font)
{
    for (const Part part : {Part::A, Part::B, Part::C, Part::Flag}) {
        if (const QRectF there = area(part, size, font); place.x() >= there.left() && place.x() < there.right()) {
            return part;
        }
    }
    return Part::Number;
}

void SelectAnswerFace::paint(QPainter &painter, const QSizeF &size, const QFont &font, const QPalette &palette) const
{
    const Inks inks = inksFor(palette, focus);
    const QRectF numberArea = area(Part::Number, size, font);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(font);
    const QRectF tab = numberArea.adjusted(0, 0, -tabEdge, 0);
    if (focus != Focus::None) {
        drawFocus(painter, {QPointF(), size}, tab.width(), focus, palette);
    }

    painter.setPen(palette.color(focus == Focus::Here ? QPalette::HighlightedText : QPalette::WindowText));
    drawCentred(painter, tab, number);

    const double across = circleFor(font);
    for (const Part part : choices) {
        const int choice = choiceOf(part);
        const QRectF circle = onDevicePixels(painter, middleOf(area(part, size, font), across));
        ChoiceLook look = lookOf(*this, choice, inks);
        const bool isLit = hovered == part && !graded;
        look.line = isLit ? boldLine : look.line;
        drawChoice(painter, circle, look, isLit ? QBrush(inks.lit) : Qt::NoBrush, choice, inks.ground);
    }
    const QRectF flag = area(Part::Flag, size, font).adjusted(0, 0, -flagEdge, 0);
    drawFlag(painter, middleOf(flag, across), marked, inks, hovered == Part::Flag && !graded);
}
