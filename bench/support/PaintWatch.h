#pragma once

#include "bench/support/Measure.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QWidget>

/// Notices that a widget is painted.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget &widget) { widget.installEventFilter(this); }

    void waitForPaint() const
    {
        while (!m_isPainted) {
            QCoreApplication::processEvents();
        }
    }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        m_isPainted = m_isPainted || event->type() == QEvent::Paint;
        return false;
    }

private:
    bool m_isPainted = false;
};

/// Milliseconds from the start of \p action until \p widget is painted.
inline double millisecondsUntilPainted(QWidget &widget, const Action &action)
{
    QCoreApplication::processEvents(); // what is due already is no part of it
    const PaintWatch watch(widget);
    return microseconds([&] {
               action();
               watch.waitForPaint();
           }) /
           1000;
}
