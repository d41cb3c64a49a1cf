#pragma once

#include <QAccessible>
#include <QPointer>
#include <QStringList>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

#include <algorithm>
#include <private/qguiapplication_p.h>
#include <vector>

/// What assistive technology is told while this lives. Needs Qt6::GuiPrivate.
class Heard
{
public:
    struct Event
    {
        QAccessible::Event type;
        QPointer<QObject> object;
        QString name; ///< of the object when it was told
    };

    Heard()
    {
        s_events.clear();
        listen(true);
        m_before = QAccessible::installUpdateHandler([](QAccessibleEvent *event) {
            QAccessibleInterface *access = event->accessibleInterface();
            s_events.push_back(
                {event->type(), event->object(), access != nullptr ? access->text(QAccessible::Name) : QString()});
        });
    }
    Heard(const Heard &) = delete;
    Heard &operator=(const Heard &) = delete;
    ~Heard()
    {
        QAccessible::installUpdateHandler(m_before);
        listen(false);
    }

    /// The names that \p object was told to have got, in the order in which that happened.
    [[nodiscard]] static QStringList namesOf(const QObject &object)
    {
        QStringList names;
        for (const Event &event : s_events) {
            if (event.object == &object && event.type == QAccessible::NameChanged) {
                names << event.name;
            }
        }
        return names;
    }
    [[nodiscard]] static int count(const QObject &object, QAccessible::Event type)
    {
        return static_cast<int>(std::ranges::count_if(
            s_events, [&](const Event &event) { return event.object == &object && event.type == type; }));
    }
    [[nodiscard]] static const std::vector<Event> &events() { return s_events; }

private:
    /// Qt tells nothing as long as no assistive technology runs.
    static void listen(bool active)
    {
        QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(active);
    }

    static inline std::vector<Event> s_events;
    QAccessible::UpdateHandler m_before;
};
