#include "platform/PastedPicture.h"

#include "platform/rtf/RtfObject.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <array>

namespace {

constexpr int twipsPerUnit = 15;
constexpr int jpegQuality = 90;
/// From this many bytes on a png is compared with the jpg of the same picture, ...
constexpr qsizetype largePng = qsizetype{256} * 1024;
/// ... which is taken if it is this many times smaller, as it is for photographs only.
constexpr qsizetype photoRatio = 4;

/// Lets pictures of up to maxPicturePixels be decoded as long as it lives.
class AllocationLimit
{
public:
    AllocationLimit()
        : m_before(QImageReader::allocationLimit())
    {
        constexpr qint64 bytesPerPixel = 4;
        constexpr qint64 mebibyte = qint64{1024} * 1024;
        QImageReader::setAllocationLimit(static_cast<int>(maxPicturePixels * bytesPerPixel / mebibyte + 1));
    }
    ~AllocationLimit() { QImageReader::setAllocationLimit(m_before); }
    Q_DISABLE_COPY_MOVE(AllocationLimit)

private:
    const int m_before;
};

QSize atLeastOne(QSize size)
{
    return size.expandedTo({1, 1});
}

/// \p limit, but never more than a text may hold.
QSize effective(QSize limit)
{
    constexpr QSize most(maxObjectTwips / twipsPerUnit, maxObjectTwips / twipsPerUnit);
    return limit.isEmpty() ? most : limit.boundedTo(most);
}

QSize fitted(QSize size, QSize limit)
{
    const bool fits = size.width() <= limit.width() && size.height() <= limit.height();
    return fits ? size : atLeastOne(size.scaled(limit, Qt::KeepAspectRatio));
}

/// The size that is asked for by one side or both.
QSize shownSize(QSize natural, QSize asked)
{
    const double ratio = static_cast<double>(natural.width()) / natural.height();
    if (asked.width() > 0 && asked.height() > 0) {
        return asked;
    }
    if (asked.width() > 0) {
        return atLeastOne({asked.width(), static_cast<int>(std::min(1e6, asked.width() / ratio))});
    }
    if (asked.height() > 0) {
        return atLeastOne({static_cast<int>(std::min(1e6, asked.height() * ratio)), asked.height()});
    }
    return natural;
}

bool isOpaque(const QImage &image)
{
    if (!image.hasAlphaChannel()) {
        return true;
    }
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < pixels.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(pixels.constScanLine(y));
        if (std::any_of(line, line + pixels.width(), [](QRgb pixel) { return qAlpha(pixel) != 0xff; })) {
            return false;
        }
    }
    return true;
}

QByteArray encoded(const QImage &image, const char *format, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, format, quality) ? bytes : QByteArray();
}

QByteArray jpgOf(const QImage &image)
{
    return encoded(image.convertToFormat(QImage::Format_RGB32), "jpg", jpegQuality);
}

/// \p isPhoto: it was a jpg before.
QByteArray encoded(const QImage &image, bool isPhoto)
{
    const bool opaque = isOpaque(image);
    if (isPhoto && opaque) {
        return jpgOf(image);
    }
    QByteArray png = encoded(image, "png", -1);
    if (opaque && png.size() >= largePng) {
        QByteArray jpg = jpgOf(image);
        if (!jpg.isEmpty() && jpg.size() * photoRatio < png.size()) {
            return jpg;
        }
    }
    return png;
}

QByteArray sourceOf(const QByteArray &file, QSize pixels, QSize units)
{
    return file.isEmpty() ? QByteArray() : pictureSource(file, pixels, units * twipsPerUnit);
}

QByteArray sourceOfPixels(const QImage &image, QSize limit, QSize shown, bool isPhoto)
{
    const QSize pixels = fitted(image.size(), limit);
    const QImage scaled =
        pixels == image.size() ? image : image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return sourceOf(encoded(scaled, isPhoto), pixels, shown);
}

} // namespace

bool isDrawing(const QByteArray &format)
{
    constexpr auto drawings = std::to_array<std::string_view>({"svg", "svgz", "pdf"});
    return std::ranges::find(drawings, std::string_view(format.constData(), static_cast<std::size_t>(format.size()))) !=
           drawings.end();
}

QByteArray sourceOfImage(const QImage &image, QSize limit)
{
    if (image.isNull()) {
        return {};
    }
    const QSize most = effective(limit);
    const QSize natural = atLeastOne(image.deviceIndependentSize().toSize());
    const QSize shown = fitted(natural, most);
    // A picture for a dense screen keeps its density as long as its size is right.
    return sourceOfPixels(image, shown == natural ? image.size() : most, shown, false);
}

QByteArray sourceOfPictureFile(const QByteArray &file, QSize limit, QSize shown)
{
    const AllocationLimit allocationLimit;
    QByteArray bytes = file;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    const QByteArray format = reader.canRead() ? reader.format() : QByteArray();
    const QSize claimed = reader.size();
    if (format.isEmpty() || isDrawing(format) || qint64{claimed.width()} * claimed.height() > maxPicturePixels) {
        return {};
    }
    const bool isTurned = reader.transformation() != QImageIOHandler::TransformationNone;
    const QImage image = reader.read();
    if (image.isNull()) {
        return {};
    }
    const QSize most = effective(limit);
    const QSize size = fitted(shownSize(image.size(), shown), most);
    const bool isJpg = format == "jpeg" || format == "jpg";
    if ((isJpg || format == "png") && !isTurned && fitted(image.size(), most) == image.size()) {
        return sourceOf(file, image.size(), size);
    }
    return sourceOfPixels(image, most, size, isJpg);
}
