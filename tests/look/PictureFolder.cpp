#include "tests/look/PictureFolder.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

QStringList picturesIn(const QString &folder)
{
    const QDir root(folder);
    QStringList names;
    QDirIterator files(root.absolutePath(), {QStringLiteral("*.png")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        names << root.relativeFilePath(files.next());
    }
    names.sort();
    return names;
}

QString placeFor(const QString &folder, const QString &name)
{
    QString place = folder + QLatin1Char('/') + name;
    QDir().mkpath(QFileInfo(place).path());
    return place;
}
