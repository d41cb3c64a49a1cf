#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

/// The picture that stands for a file in a text: an icon with the file's name below it.
struct FileIcon
{
    QByteArray png; ///< transparent where nothing is drawn
    QSize pixels;
    QSize twips;
};

/// The desktop's icon for the kind of file that \p name and \p data tell, with \p name
/// on a label, in two pixels for each document unit. A long name loses its middle.
[[nodiscard]] FileIcon iconOfFile(const QString &name, const QByteArray &data);
