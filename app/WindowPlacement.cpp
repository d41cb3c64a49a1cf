#include "app/WindowPlacement.h"

#include "app/CommandGuard.h"
#include "platform/SettingsStore.h"
#include "platform/Twips.h"

#include <QEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>

namespace {

enum WindowState { Normal = 0, Minimised = 1, Maximised = 2 };

const QString stateKey = QStringLiteral("WindowState");
const QString widthKey = QStringLiteral("Width");
const QString heightKey = QStringLiteral("Height");

WindowState stateOf(const QWidget &window)
{
    if (window.isMinimized()) {
        return Minimised;
    }
    return window.isMaximized() ? Maximised : Normal;
}

/// Gives a window its outer size when it is first seen: only then is it known
/// how thick the frame is that the desktop puts around it.
class FrameFitter final : public QObject
{
public:
    FrameFitter(QWidget &window, QSize outer)
        : QObject(&window)
        , m_window(window)
        , m_outer(outer)
    {
        fit();
        window.installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        // The first activation comes after the frame, and before the learner can resize.
        if (event->type() == QEvent::WindowActivate) {
            if (m_window.windowState() == Qt::WindowNoState || m_window.windowState() == Qt::WindowActive) {
                fit();
            }
            m_window.removeEventFilter(this);
            deleteLater();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    void fit()
    {
        m_window.winId(); // makes the native window, which has the frame
        const QMargins frame = m_window.windowHandle()->frameMargins();
        m_window.resize(m_outer.shrunkBy(frame));
    }

    QWidget &m_window;
    QSize m_outer;
};

} // namespace

void restorePlacement(QWidget &window, const SettingsStore &settings, const QString &section)
{
    const QSize screen = window.screen()->size();
    QSize outer(screen.width() / 2, qRound(screen.height() * 0.7));
    runGuarded(&window, [&] {
        if (settings.number(section, stateKey, Normal) == double{Maximised}) {
            window.setWindowState(Qt::WindowMaximized);
            return;
        }
        const double width = settings.number(section, widthKey, toTwips(outer.width()));
        const double height = settings.number(section, heightKey, toTwips(outer.height()));
        outer = {toPixels(width), toPixels(height)};
    });
    window.resize(outer);
    if (!window.isMaximized()) {
        new FrameFitter(window, outer); // the window's own child
    }
}

void savePlacement(const QWidget &window, SettingsStore &settings, const QString &section)
{
    const QSize outer = window.frameGeometry().size();
    settings.write(section, {{stateKey, QString::number(stateOf(window))},
                             {widthKey, QString::number(qRound(toTwips(outer.width())))},
                             {heightKey, QString::number(qRound(toTwips(outer.height())))}});
}
