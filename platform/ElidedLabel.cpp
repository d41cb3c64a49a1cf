#include "platform/ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

ElidedLabel::ElidedLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {fontMetrics().horizontalAdvance(QStringLiteral("...")), QLabel::minimumSizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    const QRect place = contentsRect();
    painter.drawText(place, static_cast<int>(alignment()) | static_cast<int>(Qt::TextSingleLine),
                     fontMetrics().elidedText(text(), Qt::ElideRight, place.width()));
}

bool ElidedLabel::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const bool fits = fontMetrics().horizontalAdvance(text()) <= contentsRect().width();
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), fits ? QString() : text(), this);
        return true;
    }
    return QLabel::event(event);
}
