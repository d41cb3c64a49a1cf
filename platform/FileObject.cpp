#include "platform/FileObject.h"

#include "platform/FileIcon.h"
#include "platform/PastedPicture.h"
#include "platform/rtf/OleObject.h"
#include "platform/rtf/RtfObject.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QLocale>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qsizetype longestShownName = 40;

FileObject refused(FileObject object, const QString &why)
{
    object.source.clear();
    object.refusal = QStringLiteral("\"%1\" %2").arg(shownFileName(object.name), why);
    return object;
}

FileObject refusedUnreadable(FileObject object, const QString &error)
{
    return refused(std::move(object), QStringLiteral("cannot be read: %1.").arg(error));
}

FileObject refusedEmpty(FileObject object)
{
    return refused(std::move(object), QStringLiteral("is empty: there is nothing to insert."));
}

FileObject refusedTooLarge(FileObject object)
{
    QString size = humanSize(object.size);
    QString most = humanSize(maxInsertedFile);
    if (size == most) {
        const auto exactly = [](qint64 bytes) {
            return QLocale(QLocale::English).toString(bytes) + QStringLiteral(" bytes");
        };
        size = exactly(object.size);
        most = exactly(maxInsertedFile);
    }
    return refused(std::move(object),
                   QStringLiteral("is too large: it has %1, and at most %2 can be inserted.").arg(size, most));
}

/// Opens only what is a file, also if something else takes its place meanwhile. Returns
/// why it failed, or an empty text.
QString openRegularFile(QFile &file)
{
    const QByteArray path = QFile::encodeName(file.fileName());
    const int descriptor = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    struct stat status = {};
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0) {
        QString error = qt_error_string(errno);
        ::close(descriptor);
        return error;
    }
    if (!S_ISREG(status.st_mode)) {
        ::close(descriptor);
        return QStringLiteral("it is no file any more");
    }
    return file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle) ? QString() : file.errorString();
}

/// Opens \p file; what becomes of it as far as it can be told from outside.
FileObject opened(QFile &file)
{
    const QFileInfo info(file.fileName());
    FileObject object;
    object.name = info.fileName();
    if (info.isDir()) {
        object.name = info.absoluteFilePath();
        return refused(object, QStringLiteral("is a folder. Only files can be inserted."));
    }
    if (!info.exists()) {
        return refused(object, QStringLiteral("was not found in \"%1\".").arg(shownFileName(info.absolutePath())));
    }
    // Opening a device can be felt by it.
    if (!info.isFile()) {
        return refused(object, QStringLiteral("is a device or a pipe. Only files can be inserted."));
    }
    if (const QString error = openRegularFile(file); !error.isEmpty()) {
        return refusedUnreadable(object, error);
    }
    object.size = file.size();
    if (object.size > maxInsertedFile) {
        return refusedTooLarge(object);
    }
    return object.size == 0 ? refusedEmpty(object) : object;
}

/// Notes in \p object whether \p file begins like a picture that can be shown.
void lookForPicture(QIODevice &file, FileObject &object)
{
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead() || isDrawing(reader.format())) {
        return;
    }
    const QSize pixels = reader.size();
    if (!pixels.isValid()) {
        object.isPicture = !reader.supportsOption(QImageIOHandler::Size); // otherwise its head is damaged
        return;
    }
    object.isPicture = qint64{pixels.width()} * pixels.height() <= maxPicturePixels;
    if (object.isPicture) {
        const bool isTurned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
        object.pixels = isTurned ? pixels.transposed() : pixels;
    }
}

QByteArray packageSource(const QString &fileName, const QByteArray &data)
{
    const QByteArray stream = writeOlePackage(fileName, data);
    const auto object = readOleObject({stream.constData(), static_cast<std::size_t>(stream.size())});
    const auto package = object ? readOlePackage(object->native) : std::nullopt;
    // The name as the package has it, without marks that would make it look like another one.
    const FileIcon icon = iconOfFile(package ? package->fileName : QString(), data);
    return objectSource(QString::fromLatin1(packageClassName.data(), packageClassName.size()), stream, icon.png,
                        icon.pixels, icon.twips);
}

} // namespace

FileObject lookAtFile(const QString &path)
{
    QFile file(path);
    FileObject object = opened(file);
    if (object.refusal.isEmpty()) {
        lookForPicture(file, object);
    }
    return object;
}

FileObject objectOfFile(const QString &path, QSize pictureLimit)
{
    QFile file(path);
    FileObject object = opened(file);
    if (!object.refusal.isEmpty()) {
        return object;
    }
    lookForPicture(file, object);
    file.seek(0);
    file.unsetError();
    const std::optional<QByteArray> data = readUpTo(file, maxInsertedFile);
    if (!data) {
        object.size = file.size();
        return file.error() == QFile::NoError ? refusedTooLarge(object) : refusedUnreadable(object, file.errorString());
    }
    object.size = data->size();
    if (data->isEmpty()) {
        return refusedEmpty(object);
    }
    object.source = sourceOfPictureFile(*data, pictureLimit);
    object.isPicture = !object.source.isEmpty();
    if (!object.isPicture) {
        object.pixels = {};
        object.source = packageSource(object.name, *data);
    }
    return object;
}

std::optional<QByteArray> readUpTo(QIODevice &device, qint64 most)
{
    constexpr qint64 piece = qint64{1024} * 1024;
    QByteArray data;
    while (data.size() <= most) {
        QByteArray more(static_cast<qsizetype>(std::min(piece, most + 1 - data.size())), Qt::Uninitialized);
        const qint64 count = device.read(more.data(), more.size());
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            return data;
        }
        data.append(more.constData(), static_cast<qsizetype>(count));
    }
    return std::nullopt;
}

QStringList pictureEndings()
{
    QStringList endings;
    const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    for (const QByteArray &format : formats) {
        if (!isDrawing(format)) {
            endings << QString::fromLatin1(format);
        }
    }
    return endings;
}

QString shownFileName(const QString &name)
{
    if (name.size() <= longestShownName) {
        return name;
    }
    qsizetype left = longestShownName / 2;
    qsizetype right = name.size() - longestShownName / 2;
    left -= name.at(left - 1).isHighSurrogate() ? 1 : 0;
    right += name.at(right).isLowSurrogate() ? 1 : 0;
    return name.left(left) + QChar(0x2026) + name.mid(right);
}

QString humanSize(qint64 bytes)
{
    constexpr qint64 mebibyte = qint64{1024} * 1024;
    return QLocale::c().formattedDataSize(bytes, bytes < mebibyte ? 0 : 1).remove(QStringLiteral(".0"));
}
