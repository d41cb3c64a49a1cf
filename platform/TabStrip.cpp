#include "platform/TabStrip.h"

#include "platform/DevicePixels.h"
#include "platform/NotebookPage.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolButton>
#include <QWheelEvent>

#include <algorithm>

namespace {

constexpr int roundness = 6;
constexpr int sidePadding = 14;
constexpr int topPadding = 5;
constexpr int bottomPadding = 5;
constexpr int widestCaption = 220; // pixels; a longer one is cut off with "..."
constexpr int rise = 2;            // how far the selected tab stands above the others

/// A divider's outline, open at the bottom where the page is.
QPainterPath outline(const QRectF &tab)
{
    QPainterPath path(tab.bottomLeft());
    path.lineTo(tab.left(), tab.top() + roundness);
    path.quadTo(tab.topLeft(), {tab.left() + roundness, tab.top()});
    path.lineTo(tab.right() - roundness, tab.top());
    path.quadTo(tab.topRight(), {tab.right(), tab.top() + roundness});
    path.lineTo(tab.bottomRight());
    return path;
}

QString escaped(QString caption)
{
    return caption.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

TabStrip::TabStrip(QWidget *parent)
    : QTabBar(parent)
    , m_bold(font())
{
    setFont(notebookFont(10));
    m_bold = boldMetrics();
    setDrawBase(false);
    setExpanding(false);
    setElideMode(Qt::ElideNone);
    setUsesScrollButtons(true);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QTabBar::currentChanged, this, [this] {
        if (!m_quiet) {
            Q_EMIT chosen();
        }
    });
}

void TabStrip::addKeyedTab(const QString &key, const QString &caption)
{
    m_quiet = true;
    setTabData(addTab(escaped(caption)), key);
    m_quiet = false;
}

void TabStrip::setKeyedCaption(int position, const QString &caption)
{
    setTabText(position, escaped(caption));
}

QString TabStrip::keyedCaption(int position) const
{
    return tabText(position).replace(QLatin1String("&&"), QLatin1String("&"));
}

void TabStrip::removeAllTabs()
{
    m_quiet = true;
    while (count() > 0) {
        removeTab(count() - 1);
    }
    m_quiet = false;
}

void TabStrip::select(int position)
{
    if (position < 0 || position >= count()) {
        return;
    }
    if (position == currentIndex()) {
        Q_EMIT chosen();
    } else {
        setCurrentIndex(position);
    }
}

QString TabStrip::selectedKey() const
{
    return tabData(currentIndex()).toString();
}

int TabStrip::positionOf(const QString &key) const
{
    for (int position = 0; position < count(); ++position) {
        if (tabData(position).toString() == key) {
            return position;
        }
    }
    return -1;
}

void TabStrip::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange) {
        m_bold = boldMetrics();
        m_boldWidths.clear();
    }
    QTabBar::changeEvent(event);
}

void TabStrip::mousePressEvent(QMouseEvent *event)
{
    const bool again = event->button() == Qt::LeftButton && currentIndex() >= 0 &&
                       tabAt(event->position().toPoint()) == currentIndex();
    QTabBar::mousePressEvent(event);
    if (again) {
        Q_EMIT chosen();
    }
}

void TabStrip::wheelEvent(QWheelEvent *event)
{
    // The wheel turns the strip; it does not leaf through the topics.
    const QPoint turn = event->angleDelta();
    const int steps = turn.y() != 0 ? turn.y() : turn.x();
    const auto *name = steps > 0 ? "ScrollLeftButton" : "ScrollRightButton";
    auto *button = findChild<QToolButton *>(QLatin1String(name));
    if (steps != 0 && button != nullptr && button->isVisible() && button->isEnabled()) {
        button->click();
    }
    event->accept();
}

QFontMetrics TabStrip::boldMetrics() const
{
    QFont bold = font();
    bold.setBold(true);
    return QFontMetrics(bold);
}

QSize TabStrip::tabSizeHint(int position) const
{
    const QString caption = keyedCaption(position);
    auto width = m_boldWidths.constFind(caption);
    if (width == m_boldWidths.constEnd()) {
        width = m_boldWidths.insert(caption, m_bold.horizontalAdvance(caption));
    }
    return {std::min(*width, widestCaption) + 2 * sidePadding, m_bold.height() + topPadding + bottomPadding + rise};
}

QSize TabStrip::minimumTabSizeHint(int position) const
{
    return tabSizeHint(position);
}

void TabStrip::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int position = count() - 1; position >= 0; --position) {
        if (position != currentIndex()) {
            paintTab(painter, position);
        }
    }
    const double line = hairline(painter);
    const QRectF foot = onDevicePixels(painter, rect());
    painter.fillRect(QRectF(foot.left(), foot.bottom() - line, foot.width(), line), palette().color(QPalette::Dark));
    if (currentIndex() >= 0) {
        paintTab(painter, currentIndex());
    }
}

void TabStrip::paintTab(QPainter &painter, int position) const
{
    const bool selected = position == currentIndex();
    const QPalette &colors = palette();
    const QRect bounds = tabRect(position);
    const double line = hairline(painter);
    // Neighbours share a line. The selected tab covers the strip's foot: it is part of the page below.
    const QRectF whole = onDevicePixels(painter, bounds.adjusted(0, selected ? 0 : rise, 0, 0));
    const bool last = position == count() - 1;
    const QRectF tab = whole.adjusted(line / 2, line / 2, last ? -line / 2 : line / 2, selected ? 0 : -line);
    const QPainterPath path = outline(tab);

    painter.fillPath(path, selected ? colors.base() : colors.button());
    painter.setPen(QPen(colors.color(QPalette::Dark), line));
    painter.drawPath(path);

    QFont caption = font();
    caption.setBold(selected);
    painter.setFont(caption);
    painter.setPen(colors.color(isTabEnabled(position) ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    const QRect textArea = bounds.adjusted(0, rise + topPadding, 0, -bottomPadding);
    painter.drawText(textArea, Qt::AlignCenter | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(keyedCaption(position), Qt::ElideRight, widestCaption));

    if (selected && hasFocus()) {
        painter.setPen(QPen(colors.color(QPalette::Highlight), 2));
        painter.drawRoundedRect(tab.adjusted(3.5, 3.5, -3.5, -3.5), 3, 3);
    }
}
