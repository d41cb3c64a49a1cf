#include "app/RecentSubjects.h"

#include <algorithm>

namespace {

QString nameKey(int slot)
{
    return QStringLiteral("Name%1").arg(slot);
}

QString pathKey(int slot)
{
    return QStringLiteral("Path%1").arg(slot);
}

const QString section = QStringLiteral("Recent");

using KeyValues = std::vector<SettingsStore::KeyValue>;

void addSlot(KeyValues &values, int slot, const Subject &subject)
{
    values.emplace_back(nameKey(slot), subject.name);
    values.emplace_back(pathKey(slot), subject.path);
}

void writeSamples(SettingsStore &settings, const QString &samples)
{
    // The entry says "Capitols", the file "Capitals": both are meant.
    KeyValues values;
    addSlot(values, 0, {samples + QStringLiteral("/Using Cramlet.crl"), QStringLiteral("Using Cramlet")});
    addSlot(values, 1, {samples + QStringLiteral("/States and Capitals.crl"), QStringLiteral("States and Capitols")});
    settings.write(section, values);
}

} // namespace

void RecentSubjects::offerSamples(SettingsStore &settings, const std::function<QString()> &samples)
{
    if (settings.text(section, pathKey(0)).isEmpty()) {
        writeSamples(settings, samples());
    }
}

RecentSubjects RecentSubjects::load(const SettingsStore &settings)
{
    RecentSubjects recent;
    for (int slot = 0; slot < slotCount; ++slot) {
        recent.m_slots[static_cast<std::size_t>(slot)] = {settings.text(section, pathKey(slot)),
                                                          settings.text(section, nameKey(slot))};
    }
    return recent;
}

void RecentSubjects::save(SettingsStore &settings) const
{
    KeyValues values;
    for (int position = 0; position < slotCount; ++position) {
        addSlot(values, position, slot(position));
    }
    settings.write(section, values);
}

void RecentSubjects::moveToTop(const Subject &subject)
{
    if (m_slots.front().path == subject.path) {
        return;
    }
    const auto match = std::ranges::find(m_slots, subject.path, &Subject::path);
    const auto dropped = match != m_slots.end() ? match : std::prev(m_slots.end());
    std::move_backward(m_slots.begin(), dropped, std::next(dropped));
    m_slots.front() = subject;
}
