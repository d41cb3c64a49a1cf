#include "app/WindowPlacement.h"

#include "app/CommandGuard.h"
#include "platform/SettingsStore.h"
#include "platform/Twips.h"

#include <QEvent>
#include <QGuiApplication>
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

QSize usualSize(const QScreen &screen)
{
    return {screen.size().width() / 2, qRound(screen.size().height() * 0.7)};
}

/// The frame that the desktop puts around a window, as far as it is known yet:
/// that of \p window once it is seen, before that the frame of any other.
QMargins knownFrame(const QWidget &window)
{
    if (window.isVisible() && window.windowHandle() != nullptr) {
        return window.windowHandle()->frameMargins();
    }
    for (const QWindow *other : QGuiApplication::topLevelWindows()) {
        if (other->isVisible() && !other->frameMargins().isNull()) {
            return other->frameMargins();
        }
    }
    return {};
}

/// Gives a window its outer size. How thick its frame is, is known for certain
/// only when the window is seen.
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
            if (!m_window.isMaximized() && !m_window.isMinimized()) {
                fit();
            }
            m_window.removeEventFilter(this);
            deleteLater();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    void fit() { m_window.resize(m_outer.shrunkBy(knownFrame(m_window))); }

    QWidget &m_window;
    QSize m_outer;
};

} // namespace

void restorePlacement(QWidget &window, const SettingsStore &settings, const QString &section, QSize usual)
{
    QSize outer =
        usual.isEmpty() ? usualSize(*window.screen()) : QSize(toPixels(usual.width()), toPixels(usual.height()));
    runGuarded(&window, [&] {
        if (settings.number(section, stateKey, Normal) == double{Maximised}) {
            window.setWindowState(Qt::WindowMaximized);
            return;
        }
        const double width = settings.number(section, widthKey, toTwips(outer.width()));
        const double height = settings.number(section, heightKey, toTwips(outer.height()));
        // No larger than all screens together, whatever the file says.
        const QSize most = window.screen()->virtualSize();
        outer = {toPixels(qBound(0.0, width, toTwips(most.width()))),
                 toPixels(qBound(0.0, height, toTwips(most.height())))};
    });
    new FrameFitter(window, outer); // the window's own child
}

void savePlacement(const QWidget &window, SettingsStore &settings, const QString &section)
{
    const QSize outer = window.frameGeometry().size();
    settings.write(section, {{stateKey, QString::number(stateOf(window))},
                             {widthKey, QString::number(qRound(toTwips(outer.width())))},
                             {heightKey, QString::number(qRound(toTwips(outer.height())))}});
}
