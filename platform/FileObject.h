#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

class QIODevice;

/// A file that is larger, in bytes, is not inserted into a text.
inline constexpr qint64 maxInsertedFile = qint64{16} * 1024 * 1024;

/// What becomes of a file that is to be inserted into a text.
struct FileObject
{
    QByteArray source; ///< RtfObject.h; empty if the file is refused, or was only looked at
    QString refusal;   ///< then why, as a sentence for the learner; empty if it is not refused
    QString name;      ///< of the file, without its folder
    qint64 size = -1;  ///< of the file in bytes; -1 unknown
    bool isPicture = false;
    QSize pixels; ///< of a picture as its file has it; empty if its head does not tell
};

/// What objectOfFile() will make of the file at \p path, by its head: without a source,
/// and without noticing that a picture is damaged further on.
[[nodiscard]] FileObject lookAtFile(const QString &path);

/// Reads the file at \p path: a picture that can be shown becomes a picture, everything
/// else a package with the desktop's icon and the file's name. See askObject() for \p pictureLimit.
///
/// Refused are what is no file (a folder, a pipe, a device), what cannot be read, an empty file and
/// one above maxInsertedFile, which is not read.
[[nodiscard]] FileObject objectOfFile(const QString &path, QSize pictureLimit);

/// All that is left in \p device; nothing if that is more than \p most bytes, of which
/// one more is read at most, or if reading fails.
[[nodiscard]] std::optional<QByteArray> readUpTo(QIODevice &device, qint64 most);

/// Of files that can be shown as pictures: "png", "jpg", ...
[[nodiscard]] QStringList pictureEndings();

/// \p name with its middle left out if it is too long for a sentence.
[[nodiscard]] QString shownFileName(const QString &name);

/// "12 bytes", "182 KiB", "1.2 MiB".
[[nodiscard]] QString humanSize(qint64 bytes);
