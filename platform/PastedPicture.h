#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

/// Whether pictures of \p format (as QImageReader names it) are programs of a kind, and may
/// name files to be drawn in them. Such a picture is not shown.
[[nodiscard]] bool isDrawing(const QByteArray &format);

/// The source (RtfObject.h) of \p image, scaled down to fit in \p limit (document
/// units, 96 to the inch) if it is larger; an empty \p limit is none. Kept as png,
/// or as jpg where nothing is transparent and that is much smaller. Empty if
/// \p image is null.
[[nodiscard]] QByteArray sourceOfImage(const QImage &image, QSize limit);

/// The same of a picture file's bytes. One that needs no scaling nor turning keeps
/// its bytes if it is a png or jpg. \p shown is the size that it is to have in the
/// text, in document units, as far as its sides are positive; otherwise a pixel is
/// a unit. Empty if it cannot be decoded, claims more than maxPicturePixels, or is
/// a drawing that may refer to other files.
[[nodiscard]] QByteArray sourceOfPictureFile(const QByteArray &file, QSize limit, QSize shown = {});
