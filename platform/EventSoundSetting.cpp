#include "platform/EventSoundSetting.h"

#include "platform/EventSoundPortal.h"
#include "platform/EventSoundXSettings.h"

#include <QGuiApplication>

#include <cstdlib>
#include <memory>
#include <utility>

namespace {

std::vector<EventSoundSetting::Source> desktopSources()
{
    // Without an address, only a bus that runs already: left to itself, the bus library would start one.
    const char *bus = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    const auto portal = std::make_shared<EventSoundPortal>(bus != nullptr ? bus : "unix:runtime=yes");

    std::vector<EventSoundSetting::Source> sources;
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        sources.emplace_back(&eventSoundsByXSettings);
    }
    sources.emplace_back([portal] { return portal->eventSounds(); });
    return sources;
}

} // namespace

EventSoundSetting::EventSoundSetting()
    : EventSoundSetting(desktopSources())
{
}

EventSoundSetting::EventSoundSetting(std::vector<Source> sources)
    : m_sources(std::move(sources))
{
}

bool EventSoundSetting::isOn()
{
    for (const Source &source : m_sources) {
        if (const std::optional<bool> said = source()) {
            m_last = *said;
            break;
        }
    }
    return m_last;
}
