#include "platform/SettingsStore.h"

#include <QRegularExpression>
#include <QStandardPaths>
#include <QStringList>

namespace {

QString settingsPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Cramlet/Cramlet.conf");
}

QString keyPath(const QString &section, const QString &key)
{
    return section + QLatin1Char('/') + key;
}

// A text with commas that was written by hand, without quotation marks, comes as a list.
QString storedText(const QVariant &value)
{
    const bool isList = value.typeId() == QMetaType::QStringList;
    return isList ? value.toStringList().join(QLatin1Char(',')) : value.toString();
}

std::string mismatchText(const QString &section, const QString &key, const QString &value, const QString &file)
{
    return QStringLiteral("The setting \"%1\" of section \"%2\" should be a number, but it reads \"%3\".\n"
                          "It stands in the file \"%4\".")
        .arg(key, section, value, file)
        .toStdString();
}

} // namespace

SettingTypeMismatch::SettingTypeMismatch(const QString &inSection, const QString &atKey, const QString &stored,
                                         const QString &inFile)
    : std::runtime_error(mismatchText(inSection, atKey, stored, inFile))
    , section(inSection)
    , key(atKey)
    , value(stored)
    , file(inFile)
{
}

SettingsStore::SettingsStore()
    : m_file(settingsPath(), QSettings::IniFormat)
{
}

QString SettingsStore::text(const QString &section, const QString &key, const QString &absent) const
{
    const QVariant value = m_file.value(keyPath(section, key));
    return value.isValid() ? storedText(value) : absent;
}

double SettingsStore::number(const QString &section, const QString &key, double absent) const
{
    const QVariant value = m_file.value(keyPath(section, key));
    if (!value.isValid()) {
        return absent;
    }

    static const QRegularExpression decimal(QStringLiteral(R"(^\s*[+-]?(\d+\.?\d*|\.\d+)\s*$)"));
    const QString stored = storedText(value);
    bool isNumber = decimal.match(stored).hasMatch();
    const double number = isNumber ? stored.trimmed().toDouble(&isNumber) : 0;
    if (!isNumber) {
        throw SettingTypeMismatch(section, key, stored, m_file.fileName());
    }
    return number;
}

void SettingsStore::write(const QString &section, const QString &key, const QString &value)
{
    write(section, {{key, value}});
}

void SettingsStore::write(const QString &section, const std::vector<KeyValue> &values)
{
    // An access error sticks to its QSettings for good, so each write has one of its own.
    QSettings file(m_file.fileName(), QSettings::IniFormat);
    for (const auto &[key, value] : values) {
        file.setValue(keyPath(section, key), value);
    }
    file.sync();
    if (file.status() == QSettings::AccessError) {
        throw std::runtime_error(QStringLiteral("The settings could not be written to the file \"%1\".\n"
                                                "Is its folder writable, and is there room on the disk?")
                                     .arg(file.fileName())
                                     .toStdString());
    }
}
