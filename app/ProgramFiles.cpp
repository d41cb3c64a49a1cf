#include "app/ProgramFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace {

/// Whether the program's files lie beside it, as in a build tree.
bool runsFromBuildTree()
{
    return QFile::exists(QCoreApplication::applicationDirPath() + QStringLiteral("/Click.wav"));
}

void copyUnlessThere(const QString &from, const QString &to)
{
    if (!QFile::exists(to) && QFile::copy(from, to)) {
        QFile::setPermissions(to, QFile::permissions(to) | QFile::WriteOwner);
    }
}

} // namespace

QString programFolder()
{
    const QString beside = QCoreApplication::applicationDirPath();
    return runsFromBuildTree() ? beside : QDir::cleanPath(beside + QStringLiteral("/" CRAMLET_DATA_DIR));
}

QString helpBook()
{
    return programFolder() + QStringLiteral("/Cramlet.qch");
}

QString helpPlugin()
{
    const QString beside = QCoreApplication::applicationDirPath();
    const QString folder =
        runsFromBuildTree() ? beside : QDir::cleanPath(beside + QStringLiteral("/" CRAMLET_PLUGIN_DIR));
    return folder + QStringLiteral("/cramlet-help.so");
}

QString provideSamples()
{
    if (runsFromBuildTree()) {
        return QCoreApplication::applicationDirPath();
    }
    QString own = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Cramlet");
    QDir().mkpath(own);
    const QDir installed(programFolder());
    const QStringList samples = installed.entryList({QStringLiteral("*.crl")}, QDir::Files);
    for (const QString &sample : samples) {
        copyUnlessThere(installed.filePath(sample), own + QLatin1Char('/') + sample);
    }
    return own;
}
