#pragma once

#include <functional>
#include <optional>
#include <vector>

/// Whether the user lets programs make event sounds: the desktop's own switch.
class EventSoundSetting
{
public:
    /// One that may know: nothing if it does not.
    using Source = std::function<std::optional<bool>()>;

    /// Asks the sources of the desktop that the application runs on; later, so this touches none of them.
    EventSoundSetting();
    /// Asks \p sources, the first first.
    explicit EventSoundSetting(std::vector<Source> sources);

    /// What the first source that knows says now, since it may change at any time. If none knows, what was said last;
    /// on if nobody ever said anything. Waits for the sources: not for a thread that has to answer the user.
    [[nodiscard]] bool isOn();

private:
    std::vector<Source> m_sources;
    bool m_last = true;
};
