#include <QAbstractButton>
#include <QCoreApplication>
#include <QEvent>
#include <QGenericPlugin>
#include <QListWidget>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <sys/prctl.h>

// Goes through a program that knows nothing of it, as a learner would, and tells when what is there.

namespace {

/// Presses \p name, which the window has.
QAbstractButton &buttonOf(const QWidget &window, const char *name)
{
    auto *button = window.findChild<QAbstractButton *>(QLatin1String(name));
    if (button == nullptr) {
        std::fprintf(stderr, "%s has no %s\n", qPrintable(window.objectName()), name);
        std::_Exit(EXIT_FAILURE);
    }
    return *button;
}

void doNothing(QWidget & /*window*/) {}

void chooseAllTopics(QWidget &wizard)
{
    wizard.findChild<QListWidget *>(QStringLiteral("List1"))->selectAll();
    buttonOf(wizard, "cmdOK(2)").click();
}

void chooseTestOfAllTopics(QWidget &wizard)
{
    buttonOf(wizard, "Option1(1)").click();
    chooseAllTopics(wizard);
}

/// What is done in a window to come to the next.
struct Leg
{
    std::string_view window;
    void (*prepare)(QWidget &window);
    const char *button; ///< leads on
};

struct Way
{
    std::string_view destination;
    std::span<const Leg> legs;
};

constexpr std::array toNotes{Leg{"frmOpen", doNothing, "Image1(2)"}};
constexpr std::array toEditor{toNotes[0], Leg{"frmNotes", doNothing, "Image1(3)"}};
constexpr std::array toSession{toNotes[0], Leg{"frmNotes", doNothing, "Image1(4)"},
                               Leg{"frmOptions", chooseAllTopics, "cmdOK(2)"}};
constexpr std::array toTest{toSession[0], toSession[1], Leg{"frmOptions", chooseTestOfAllTopics, "cmdOK(2)"}};
constexpr std::array toBareNotes{Leg{"window", doNothing, "open"}};

constexpr std::array<Way, 5> ways{{
    {"frmNotes", toNotes},
    {"frmEditCards", toEditor},
    {"frmFlashCard", toSession},
    {"frmTest", toTest},
    {"bareNotes", toBareNotes}, // in the empty window's program
}};

/// No legs: the first window is the destination.
std::span<const Leg> legsTo(std::string_view destination)
{
    const auto *way = std::ranges::find(ways, destination, &Way::destination);
    return way == ways.end() ? std::span<const Leg>() : way->legs;
}

std::string nameOf(const QWidget &window)
{
    return window.objectName().isEmpty() ? "window" : window.objectName().toStdString();
}

void tell(const QWidget &window, const char *what)
{
    const std::chrono::duration<double, std::milli> now = std::chrono::steady_clock::now().time_since_epoch();
    std::printf("%s %s %.3f\n", nameOf(window).c_str(), what, now.count());
    std::fflush(stdout);
}

class Visitor final : public QObject
{
public:
    explicit Visitor(std::span<const Leg> legs)
        : m_legs(legs)
    {
        QCoreApplication::instance()->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && watched->isWidgetType()) {
            auto *window = static_cast<QWidget *>(watched);
            if (window->isWindow() && m_seen.insert(nameOf(*window)).second) {
                QTimer::singleShot(0, window, [this, window] { arriveIn(*window); }); // after the paint
            }
        }
        return false;
    }

private:
    void arriveIn(QWidget &window)
    {
        tell(window, "shown");
        if (m_legs.empty()) {
            QCoreApplication::instance()->removeEventFilter(this);
            window.activateWindow(); // where no window manager does it
            return;
        }
        const Leg leg = m_legs.front();
        if (leg.window == nameOf(window)) {
            m_legs = m_legs.subspan(1);
            leg.prepare(window);
            QCoreApplication::processEvents(); // what is due already is no part of what comes
            tell(window, "left");
            buttonOf(window, leg.button).click();
        }
    }

    std::span<const Leg> m_legs;  ///< that lie ahead
    std::set<std::string> m_seen; ///< names of the windows that were painted
};

} // namespace

/// CRAMLET_VISIT names the window to go to.
class VisitorPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "visitor.json")

public:
    QObject *create(const QString & /*name*/, const QString & /*specification*/) override
    {
        prctl(PR_SET_PDEATHSIG, SIGKILL); // nobody is left to hear it
        return new Visitor(legsTo(qgetenv("CRAMLET_VISIT").toStdString()));
    }
};

#include "VisitorPlugin.moc"
