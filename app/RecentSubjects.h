#pragma once

#include "app/Subject.h"
#include "platform/SettingsStore.h"

#include <array>
#include <functional>

/// The ten subjects that were opened last, the most recent first. A slot may be empty.
class RecentSubjects
{
public:
    static constexpr int slotCount = 10;

    /// On the first run, that is while slot 0 has no path, writes the two sample
    /// subjects into the settings. Only then \p samples is asked for their folder.
    static void offerSamples(SettingsStore &settings, const std::function<QString()> &samples);

    [[nodiscard]] static RecentSubjects load(const SettingsStore &settings);
    void save(SettingsStore &settings) const;

    [[nodiscard]] const Subject &slot(int position) const { return m_slots.at(static_cast<std::size_t>(position)); }

    /// Puts \p subject into slot 0. Its path, letter case included, tells
    /// whether it is in the table already; if not, slot 9 is dropped.
    void moveToTop(const Subject &subject);

private:
    std::array<Subject, slotCount> m_slots;
};
