#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

/// Returns the integer \p name among the settings that a desktop's settings manager publishes under X, as the
/// bytes of its property, in the byte order they name.
///
/// Nothing if it is not among them, is not an integer, or the bytes end before it: they come from another program.
[[nodiscard]] std::optional<std::int32_t> integerXSetting(std::span<const std::byte> property, std::string_view name);

/// What the settings manager of the X display in DISPLAY says about event sounds; nothing if there is no such
/// display, no manager, or it does not say. Waits for the display.
[[nodiscard]] std::optional<bool> eventSoundsByXSettings();
