#include "platform/EventSoundXSettings.h"

#include <array>
#include <cstdlib>
#include <memory>
#include <string>
#include <xcb/xcb.h>

namespace {

/// Takes values off the front of bytes. Past their end it is cut(), and every number is 0.
class Bytes
{
public:
    explicit Bytes(std::span<const std::byte> bytes)
        : m_rest(bytes)
    {
    }

    void setBigEndian(bool bigEndian) { m_bigEndian = bigEndian; }
    bool cut() const { return m_cut; }

    std::uint32_t number(std::size_t size)
    {
        const std::span<const std::byte> digits = take(size);
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < digits.size(); ++i) {
            value = value << 8 | std::to_integer<std::uint32_t>(digits[m_bigEndian ? i : digits.size() - 1 - i]);
        }
        return value;
    }

    /// A text and what fills it up to a multiple of 4 bytes.
    std::string_view text(std::uint64_t length)
    {
        const std::span<const std::byte> padded = take((length + 3) / 4 * 4);
        return m_cut ? std::string_view() : std::string_view(reinterpret_cast<const char *>(padded.data()), length);
    }

    std::span<const std::byte> take(std::uint64_t size)
    {
        if (size > m_rest.size()) {
            m_cut = true;
            m_rest = {};
            return {};
        }
        const auto taken = m_rest.first(size);
        m_rest = m_rest.subspan(size);
        return taken;
    }

private:
    std::span<const std::byte> m_rest;
    bool m_bigEndian = false;
    bool m_cut = false;
};

// The kinds of value, by their number in the property.
constexpr std::uint32_t integer = 0;
constexpr std::uint32_t string = 1;
constexpr std::uint32_t color = 2;

constexpr std::size_t colorSize = 8;

using Connection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;

struct Free
{
    void operator()(void *reply) const { std::free(reply); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Free>;

/// The number of a name that some program has given one to; else none.
xcb_atom_t atom(xcb_connection_t *connection, const std::string &name)
{
    const auto cookie = xcb_intern_atom(connection, true, static_cast<std::uint16_t>(name.size()), name.data());
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_window_t selectionOwner(xcb_connection_t *connection, xcb_atom_t selection)
{
    const auto cookie = xcb_get_selection_owner(connection, selection);
    const Owned<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(connection, cookie, nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

} // namespace

std::optional<std::int32_t> integerXSetting(std::span<const std::byte> property, std::string_view name)
{
    Bytes bytes(property);
    bytes.setBigEndian(bytes.number(1) == 1);
    bytes.take(3);   // unused
    bytes.number(4); // how often the settings have changed
    const std::uint32_t count = bytes.number(4);
    for (std::uint32_t i = 0; i < count && !bytes.cut(); ++i) {
        const std::uint32_t kind = bytes.number(1);
        bytes.take(1); // unused
        const std::string_view itsName = bytes.text(bytes.number(2));
        bytes.number(4); // when it changed last
        if (kind == integer) {
            const auto value = static_cast<std::int32_t>(bytes.number(4));
            if (itsName == name && !bytes.cut()) {
                return value;
            }
        } else if (kind == string) {
            bytes.text(bytes.number(4));
        } else if (kind == color) {
            bytes.take(colorSize);
        } else {
            return std::nullopt; // of unknown length, so nothing behind it can be read
        }
    }
    return std::nullopt;
}

std::optional<bool> eventSoundsByXSettings()
{
    int screen = 0;
    const Connection connection(xcb_connect(nullptr, &screen), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0) {
        return std::nullopt;
    }
    const xcb_atom_t manager = atom(connection.get(), "_XSETTINGS_S" + std::to_string(screen));
    const xcb_atom_t settings = atom(connection.get(), "_XSETTINGS_SETTINGS");
    if (manager == XCB_ATOM_NONE || settings == XCB_ATOM_NONE) {
        return std::nullopt;
    }
    const xcb_window_t owner = selectionOwner(connection.get(), manager);
    if (owner == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    constexpr std::uint32_t mostWords = 1 << 16; // a desktop's settings are a few KiB
    const auto cookie = xcb_get_property(connection.get(), false, owner, settings, settings, 0, mostWords);
    const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection.get(), cookie, nullptr));
    if (!reply || reply->type != settings || reply->format != 8) {
        return std::nullopt;
    }
    const std::span bytes(static_cast<const std::byte *>(xcb_get_property_value(reply.get())),
                          static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
    const std::optional<std::int32_t> value = integerXSetting(bytes, "Net/EnableEventSounds");
    return value ? std::optional(*value != 0) : std::nullopt;
}
