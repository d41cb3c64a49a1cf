#include "platform/FirstPaint.h"

#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <utility>

namespace {

class FirstPaint : public QObject
{
public:
    FirstPaint(QWidget &window, std::function<void()> work)
        : QObject(&window)
        , m_work(std::move(work))
    {
        window.installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            watched->removeEventFilter(this);
            QTimer::singleShot(0, this, [this] {
                deleteLater();
                m_work();
            });
        }
        return false;
    }

private:
    std::function<void()> m_work;
};

} // namespace

void afterFirstPaint(QWidget &window, std::function<void()> work)
{
    new FirstPaint(window, std::move(work)); // the window's
}
