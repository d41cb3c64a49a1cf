#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QTimer>
#include <QTimerEvent>

#include <gtest/gtest.h>

/// Keeps the real seconds from a timer: only those of the test come through.
class StoppedClock : public QObject
{
public:
    void stop(QTimer &timer)
    {
        m_timer = &timer;
        timer.installEventFilter(this);
    }
    /// Lets a second pass. A timer that does not run does nothing.
    void passSecond()
    {
        if (!m_timer->isActive()) {
            return;
        }
        ASSERT_EQ(m_timer->interval(), 1000);
        ASSERT_FALSE(m_timer->isSingleShot());
        QTimerEvent second(m_timer->timerId());
        m_isOpen = true;
        QCoreApplication::sendEvent(m_timer, &second);
        m_isOpen = false;
    }

protected:
    bool eventFilter(QObject * /*timer*/, QEvent *event) override
    {
        return event->type() == QEvent::Timer && !m_isOpen;
    }

private:
    QTimer *m_timer = nullptr;
    bool m_isOpen = false;
};
