#include "platform/ReadableColors.h"

#include "platform/ContrastRatio.h"
#include "platform/PaperPalette.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace {

constexpr double readableContrast = 3;
/// The difference of a colour's channels from which on it is more than a tint of grey.
constexpr int clearChroma = 0x30;

int chroma(const QColor &color)
{
    const auto [low, high] = std::minmax({color.red(), color.green(), color.blue()});
    return high - low;
}

/// What is seen of \p color on \p ground.
QColor over(const QColor &color, const QColor &ground)
{
    const auto channel = [share = color.alphaF()](int above, int below) {
        return qRound(below + (above - below) * static_cast<double>(share));
    };
    return {channel(color.red(), ground.red()), channel(color.green(), ground.green()),
            channel(color.blue(), ground.blue())};
}

} // namespace

ReadableColors::ReadableColors(const QColor &paper)
    : m_paper(paper)
    , m_ink(paperPalette(paper).color(QPalette::Text))
{
}

bool ReadableColors::clean(QTextCharFormat &format) const
{
    const QTextCharFormat before = format;
    QColor ink = m_ink;
    if (format.hasProperty(QTextFormat::ForegroundBrush)) {
        const QColor color = over(format.foreground().color(), m_paper);
        if (isInk(color) || contrastRatio(color, m_paper) < readableContrast) {
            format.clearForeground();
        } else {
            format.setForeground(color);
            ink = color;
        }
    }
    if (format.hasProperty(QTextFormat::BackgroundBrush)) {
        const QColor mark = over(format.background().color(), m_paper);
        if (chroma(mark) < clearChroma || contrastRatio(ink, mark) < readableContrast) {
            format.clearBackground();
        } else {
            format.setBackground(mark);
        }
    }
    return format != before;
}

/// Whether \p color is what a page writes plain text in: black, the dark greys, and
/// what our own ink looks like.
bool ReadableColors::isInk(const QColor &color) const
{
    constexpr int nearBlack = 0x50;
    constexpr int darkGray = 0x78;
    constexpr int tint = 0x20;
    constexpr int sameInk = 0x20;
    const int brightest = std::max({color.red(), color.green(), color.blue()});
    const bool isDark = brightest < nearBlack || (brightest < darkGray && chroma(color) < tint);
    return isDark || std::max({std::abs(color.red() - m_ink.red()), std::abs(color.green() - m_ink.green()),
                               std::abs(color.blue() - m_ink.blue())}) < sameInk;
}

bool ReadableColors::clean(QTextDocument &document) const
{
    struct Run
    {
        int start;
        int end;
        QTextCharFormat format;
    };
    std::vector<Run> runs;
    bool hasChanged = false;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto run = block.begin(); !run.atEnd(); ++run) {
            const QTextFragment fragment = run.fragment();
            QTextCharFormat format = fragment.charFormat();
            if (clean(format)) {
                runs.push_back({fragment.position(), fragment.position() + fragment.length(), format});
            }
        }
        if (QTextCharFormat mark = block.charFormat(); clean(mark)) {
            QTextCursor(block).setBlockCharFormat(mark);
            hasChanged = true;
        }
    }
    QTextCursor cursor(&document);
    for (const Run &run : runs) {
        cursor.setPosition(run.start);
        cursor.setPosition(run.end, QTextCursor::KeepAnchor);
        cursor.setCharFormat(run.format);
    }
    return hasChanged || !runs.empty();
}
