#include "platform/FocusRing.h"

#include "platform/ContrastRatio.h"
#include "platform/DevicePixels.h"
#include "platform/ImageButton.h"
#include "platform/ReadingPlace.h"
#include "platform/SelectAnswer.h"
#include "platform/TabStrip.h"

#include <QApplication>
#include <QComboBox>
#include <QCommonStyle>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QTextEdit>

namespace {

constexpr double clear = 3; // contrast of a sign to its ground
constexpr double corner = 3;

/// Lays the ring over everything in the window: some controls fill what they lie in, and leave no room around them.
class RingStyle final : public QCommonStyle
{
public:
    using QCommonStyle::QCommonStyle;

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *answer) const override
    {
        return hint == SH_FocusFrame_AboveWidget ? 1 : QCommonStyle::styleHint(hint, option, widget, answer);
    }
};

template <class... Controls>
bool isOneOf(const QWidget &widget)
{
    return ((qobject_cast<const Controls *>(&widget) != nullptr) || ...);
}

bool showsItself(const QWidget &control)
{
    return isOneOf<ImageButton, TabStrip, SelectAnswer, ReadingPlace, QTextEdit, QLineEdit, QComboBox, QLabel>(control);
}

} // namespace

FocusRing::FocusRing(QWidget &window)
    : QFocusFrame(&window)
    , m_window(&window)
{
    auto *style = new RingStyle;
    style->setParent(this);
    setStyle(style);
    hide(); // else it would be seen in a corner until a control gets it
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *focus) { follow(focus); });
}

void FocusRing::follow(QWidget *focus)
{
    const bool isHere = focus != nullptr && focus != m_window && focus->window() == m_window;
    setWidget(isHere && !showsItself(*focus) ? focus : nullptr);
}

void FocusRing::paintEvent(QPaintEvent * /*event*/)
{
    const QPalette &colors = m_window->palette();
    const QColor highlight = colors.color(QPalette::Highlight);
    const bool isClear = contrastRatio(highlight, colors.color(QPalette::Window)) >= clear;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double line = 2 * hairline(painter);
    painter.setPen(QPen(isClear ? highlight : colors.color(QPalette::WindowText), line));
    const QRectF ring = onDevicePixels(painter, rect());
    painter.drawRoundedRect(ring.adjusted(line / 2, line / 2, -line / 2, -line / 2), corner, corner);
}
