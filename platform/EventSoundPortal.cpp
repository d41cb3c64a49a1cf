#include "platform/EventSoundPortal.h"

#include <chrono>
#include <dbus/dbus.h>
#include <memory>
#include <utility>

namespace {

struct Unref
{
    void operator()(DBusMessage *message) const { dbus_message_unref(message); }
};
using Message = std::unique_ptr<DBusMessage, Unref>;

struct Forget
{
    void operator()(DBusPendingCall *call) const
    {
        dbus_pending_call_cancel(call);
        dbus_pending_call_unref(call);
    }
};
using Call = std::unique_ptr<DBusPendingCall, Forget>;

Message hello()
{
    return Message(dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Hello"));
}

Message question()
{
    Message message(dbus_message_new_method_call("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                                                 "org.freedesktop.portal.Settings", "Read"));
    const char *group = "org.gnome.desktop.sound";
    const char *key = "event-sounds";
    if (!message ||
        !dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &group, DBUS_TYPE_STRING, &key, DBUS_TYPE_INVALID)) {
        return nullptr;
    }
    // A desktop that has this setting runs its portal anyway.
    dbus_message_set_auto_start(message.get(), false);
    return message;
}

/// Sees to the connection until the call has its answer, the bus goes away, or it takes too long.
void waitFor(DBusConnection *bus, DBusPendingCall *call, std::chrono::milliseconds patience)
{
    using std::chrono::steady_clock;
    const auto end = steady_clock::now() + patience;
    bool there = true;
    while (there && !dbus_pending_call_get_completed(call)) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - steady_clock::now());
        there = left.count() > 0 && dbus_connection_read_write_dispatch(bus, static_cast<int>(left.count()));
    }
}

/// The truth value in an answer. The portal wraps it, and older ones wrap it twice.
std::optional<bool> truth(DBusMessage *message)
{
    DBusMessageIter place;
    dbus_message_iter_init(message, &place);
    while (dbus_message_iter_get_arg_type(&place) == DBUS_TYPE_VARIANT) {
        DBusMessageIter inside;
        dbus_message_iter_recurse(&place, &inside);
        place = inside;
    }
    if (dbus_message_iter_get_arg_type(&place) != DBUS_TYPE_BOOLEAN) {
        return std::nullopt;
    }
    dbus_bool_t value = 0;
    dbus_message_iter_get_basic(&place, &value);
    return value != 0;
}

} // namespace

EventSoundPortal::EventSoundPortal(std::string busAddress, std::chrono::milliseconds patience)
    : m_busAddress(std::move(busAddress))
    , m_patience(patience)
{
}

EventSoundPortal::~EventSoundPortal()
{
    disconnect();
}

std::optional<bool> EventSoundPortal::eventSounds()
{
    if (m_bus != nullptr && !dbus_connection_get_is_connected(m_bus)) {
        disconnect();
    }
    if (m_bus == nullptr && !m_hangs) {
        connect();
    }
    if (m_bus == nullptr || m_hangs) {
        return std::nullopt;
    }
    const Message answer(reply(question().get()));
    return answer ? truth(answer.get()) : std::nullopt;
}

// The library's own way of waiting for a reply has no end while the bus does not take the message.
DBusMessage *EventSoundPortal::reply(DBusMessage *message)
{
    DBusPendingCall *made = nullptr;
    if (message == nullptr || !dbus_connection_send_with_reply(m_bus, message, &made, DBUS_TIMEOUT_INFINITE) ||
        made == nullptr) {
        return nullptr;
    }
    const Call call(made);
    waitFor(m_bus, call.get(), m_patience);
    if (!dbus_pending_call_get_completed(call.get())) {
        m_hangs = dbus_connection_get_is_connected(m_bus);
        return nullptr;
    }
    Message answer(dbus_pending_call_steal_reply(call.get()));
    const bool isError = dbus_message_get_type(answer.get()) == DBUS_MESSAGE_TYPE_ERROR;
    return isError ? nullptr : answer.release();
}

void EventSoundPortal::connect()
{
    m_bus = dbus_connection_open_private(m_busAddress.c_str(), nullptr);
    if (m_bus != nullptr && !Message(reply(hello().get()))) {
        disconnect();
    }
}

void EventSoundPortal::disconnect()
{
    if (m_bus != nullptr) {
        dbus_connection_close(m_bus);
        dbus_connection_unref(m_bus);
        m_bus = nullptr;
    }
}
