#pragma once

#include <chrono>
#include <optional>
#include <string>

struct DBusConnection;
struct DBusMessage;

/// What the desktop portal says about event sounds: the place that also a program knows which sees no X display.
///
/// Knows the bus by its C library: its connection must not wait for the application's, nor the other way round.
class EventSoundPortal
{
public:
    /// Asks over the bus at \p busAddress, to which it connects when first asked. What takes longer than
    /// \p patience is not waited for.
    explicit EventSoundPortal(std::string busAddress, std::chrono::milliseconds patience = std::chrono::seconds(1));
    ~EventSoundPortal();
    EventSoundPortal(const EventSoundPortal &) = delete;
    EventSoundPortal &operator=(const EventSoundPortal &) = delete;

    /// Nothing if there is no bus, no portal runs (none is started), or it does not know. Waits for the bus and the
    /// portal, for each at most the patience; if that was in vain, they are not asked again.
    [[nodiscard]] std::optional<bool> eventSounds();

private:
    DBusMessage *reply(DBusMessage *message); ///< the caller's; nullptr: none in time, or an error
    void connect();
    void disconnect();

    const std::string m_busAddress;
    const std::chrono::milliseconds m_patience;
    DBusConnection *m_bus = nullptr; ///< its own, not shared with others in the program
    bool m_hangs = false;
};
