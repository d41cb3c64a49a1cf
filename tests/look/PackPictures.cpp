#include "tests/look/PictureFolder.h"
#include "tests/look/PicturePacking.h"

#include <QDir>
#include <QSaveFile>

#include <cstdio>

// packpictures FROM TO
//
// Writes the pictures of one folder, packed, to another, and removes the
// pictures there that the first does not have. Other files stay.

namespace {

bool pack(const QString &from, const QString &to)
{
    const QImage picture(from);
    QSaveFile file(to);
    constexpr int smallest = 0; // of the packing, which loses nothing
    return !picture.isNull() && file.open(QFile::WriteOnly) && packed(picture).save(&file, "png", smallest) &&
           file.commit();
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: packpictures FROM TO\n");
        return 2;
    }
    const QString from = QString::fromLocal8Bit(argv[1]);
    const QString to = QString::fromLocal8Bit(argv[2]);
    const QStringList names = picturesIn(from);
    for (const QString &name : names) {
        if (!pack(from + QLatin1Char('/') + name, placeFor(to, name))) {
            std::fprintf(stderr, "%s cannot be packed\n", qPrintable(name));
            return 1;
        }
    }
    const QStringList there = picturesIn(to);
    for (const QString &name : there) {
        if (!names.contains(name)) {
            QFile::remove(to + QLatin1Char('/') + name);
        }
    }
    std::printf("%lld pictures in %s\n", static_cast<long long>(names.size()), qPrintable(to));
    return names.isEmpty() ? 1 : 0;
}
