#include "platform/PaperPalette.h"

#include "platform/ContrastRatio.h"

#include <algorithm>
#include <array>

namespace {

constexpr double wellReadable = 7.0;
constexpr double readable = 4.5;

/// \p share 0 is \p one, 1 is \p other.
QColor mix(const QColor &one, const QColor &other, double share)
{
    const auto channel = [share](int from, int to) { return qRound(from + (to - from) * share); };
    return {channel(one.red(), other.red()), channel(one.green(), other.green()), channel(one.blue(), other.blue())};
}

/// The one of two colours that stands out more against \p ground.
QColor clearer(const QColor &ground, const QColor &one, const QColor &other)
{
    return contrastRatio(ground, one) >= contrastRatio(ground, other) ? one : other;
}

/// A soft ink if it is readable enough on \p paper, else black or white.
QColor inkFor(const QColor &paper)
{
    const QColor soft = clearer(paper, QColor(0x1c, 0x1e, 0x2b), QColor(0xf3, 0xf0, 0xe6));
    return contrastRatio(paper, soft) >= wellReadable ? soft : clearer(paper, Qt::black, Qt::white);
}

/// The ground of text boxes: paper of the same colour, a little further away
/// from the ink, and on middling paper as far as it takes to be readable.
QColor baseFor(const QColor &paper, const QColor &ink)
{
    const QColor away = relativeLuminance(ink) < relativeLuminance(paper) ? QColor(Qt::white) : QColor(Qt::black);
    QColor base = mix(paper, away, 0.45);
    for (double share = 0.5; contrastRatio(base, ink) < wellReadable && share <= 1; share += 0.05) {
        base = mix(paper, away, share);
    }
    return base;
}

/// The faintest ink that can still be read on both grounds.
QColor faintInk(const QColor &ink, const QColor &paper, const QColor &base)
{
    QColor faint = ink;
    for (double share = 0.05; share < 0.6; share += 0.05) {
        const QColor fainter = mix(ink, paper, share);
        if (contrastRatio(fainter, paper) < readable || contrastRatio(fainter, base) < readable) {
            break;
        }
        faint = fainter;
    }
    return faint;
}

/// \p wish, with as much ink in it as it takes to be readable on both grounds.
QColor readableAs(const QColor &wish, const QColor &ink, const QColor &paper, const QColor &base)
{
    QColor color = wish;
    for (double share = 0.1;
         share <= 1 && (contrastRatio(color, paper) < readable || contrastRatio(color, base) < readable);
         share += 0.1) {
        color = mix(wish, ink, share);
    }
    return color;
}

struct RoleColor
{
    QPalette::ColorRole role;
    QColor color;
};

} // namespace

QPalette paperPalette(const QColor &paper)
{
    const QColor ink = inkFor(paper);
    const QColor base = baseFor(paper, ink);
    const QColor faint = faintInk(ink, paper, base);
    const QColor button = contrastRatio(mix(paper, ink, 0.07), ink) >= wellReadable ? mix(paper, ink, 0.07) : base;
    const QColor highlight = clearer(base, QColor(0x1f, 0x4e, 0x9c), QColor(0xa9, 0xc8, 0xff));
    const QColor link = clearer(base, QColor(0x0b, 0x3f, 0xb5), QColor(0xa6, 0xc8, 0xff));
    const QColor visited = clearer(base, QColor(0x6a, 0x1b, 0x9a), QColor(0xdd, 0xb8, 0xf2));
    const QColor lit = mix(paper, Qt::white, 0.6);
    const QColor shade = Qt::black;

    const auto roles = std::to_array<RoleColor>({
        {QPalette::Window, paper},
        {QPalette::WindowText, ink},
        {QPalette::Base, base},
        {QPalette::AlternateBase, mix(base, paper, 0.5)},
        {QPalette::Text, ink},
        {QPalette::PlaceholderText, faint},
        {QPalette::BrightText, clearer(mix(paper, shade, 0.45), Qt::white, Qt::black)},
        {QPalette::Button, button},
        {QPalette::ButtonText, ink},
        {QPalette::Light, lit},
        {QPalette::Midlight, mix(button, lit, 0.5)},
        {QPalette::Mid, mix(paper, shade, 0.30)},
        {QPalette::Dark, mix(paper, shade, 0.45)},
        {QPalette::Shadow, mix(paper, shade, 0.75)},
        {QPalette::Highlight, highlight},
        {QPalette::HighlightedText, clearer(highlight, Qt::white, QColor(0x10, 0x14, 0x24))},
        {QPalette::Link, readableAs(link, ink, paper, base)},
        {QPalette::LinkVisited, readableAs(visited, ink, paper, base)},
        {QPalette::ToolTipBase, QColor(0xff, 0xf7, 0xc9)},
        {QPalette::ToolTipText, QColor(0x1c, 0x1e, 0x2b)},
    });
    constexpr auto texts = std::to_array({QPalette::WindowText, QPalette::Text, QPalette::ButtonText});

    QPalette palette;
    for (const RoleColor &entry : roles) {
        palette.setColor(QPalette::All, entry.role, entry.color);
    }
    for (const QPalette::ColorRole text : texts) {
        palette.setColor(QPalette::Disabled, text, faint);
    }
    return palette;
}

QColor colorOfNumber(int number)
{
    return {number & 0xff, number >> 8 & 0xff, number >> 16 & 0xff};
}

int numberOfColor(const QColor &color)
{
    return color.red() | color.green() << 8 | color.blue() << 16;
}
