#pragma once

#include <QSettings>
#include <QString>

#include <stdexcept>
#include <utility>
#include <vector>

/// A stored setting that should be a number and is not.
class SettingTypeMismatch : public std::runtime_error
{
public:
    SettingTypeMismatch(const QString &section, const QString &key, const QString &value, const QString &file);

    QString section;
    QString key;
    QString value; ///< the stored text
    QString file;  ///< where it stands
};

/// The learner's settings: texts by section and key, kept in
/// $XDG_CONFIG_HOME/Cramlet/Cramlet.conf. What is written is on the disk at
/// once. Keys that this program does not know stay as they are.
class SettingsStore
{
public:
    SettingsStore();

    /// Returns \p absent if the key does not exist.
    [[nodiscard]] QString text(const QString &section, const QString &key, const QString &absent = {}) const;
    /// Throws SettingTypeMismatch if the stored text is not a decimal number.
    [[nodiscard]] double number(const QString &section, const QString &key, double absent) const;

    void write(const QString &section, const QString &key, const QString &value);

    using KeyValue = std::pair<QString, QString>;
    /// Writes the values of several keys at once: all of them, or none.
    void write(const QString &section, const std::vector<KeyValue> &values);

private:
    QSettings m_file;
};
