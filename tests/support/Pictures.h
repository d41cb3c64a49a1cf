#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QImage>

inline QImage redPicture(QSize size = {20, 10})
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

/// The file of a red picture.
inline QByteArray pngFile(QSize size)
{
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    redPicture(size).save(&file, "png");
    return file.data();
}
