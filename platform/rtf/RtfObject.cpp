#include "platform/rtf/RtfObject.h"

#include "platform/rtf/Metafile.h"
#include "platform/rtf/OleObject.h"
#include "platform/rtf/RtfCodePages.h"
#include "platform/rtf/RtfObjectParts.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>

namespace {

constexpr int twipsPerPixel = 15;
constexpr int defaultTwips = 480;
/// Of an object that nothing tells the size of: there is room for its kind and its name.
constexpr QSize objectTwips(1440, 960);

std::string_view viewOf(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

QByteArray bytesOf(std::string_view view)
{
    return {view.data(), static_cast<qsizetype>(view.size())};
}

/// A picture's data, made such that it can be drawn.
struct Drawing
{
    const char *kind = "picture";
    QSize pixels;     ///< as its head claims
    QByteArray image; ///< empty if it cannot be drawn
};

/// \p image of the format \p format, unless its head claims too many pixels.
Drawing checkedDrawing(const char *kind, const QByteArray &image, const char *format)
{
    QBuffer buffer;
    buffer.setData(image);
    const QSize claimed = QImageReader(&buffer, format).size();
    // A bitmap whose rows run from the top has a negative height.
    const qint64 width = claimed.width();
    const qint64 height = std::abs(qint64{claimed.height()});
    if (width <= 0 || height == 0 || height > std::numeric_limits<int>::max()) {
        return {kind, {}, {}};
    }
    const QSize pixels(claimed.width(), static_cast<int>(height));
    return {kind, pixels, width * height <= maxPicturePixels ? image : QByteArray()};
}

/// Goes by what \p data is; \p kind is what it is said to be.
Drawing drawingOf(const QByteArray &data, const char *kind)
{
    const std::string_view bytes = viewOf(data);
    if (bytes.starts_with("\x89PNG\r\n\x1a\n")) {
        return checkedDrawing("PNG", data, "png");
    }
    if (bytes.starts_with("\xff\xd8\xff")) {
        return checkedDrawing("JPEG", data, "jpg");
    }
    switch (metafileKindOf(bytes)) {
    case MetafileKind::Wmf: return checkedDrawing("WMF", bitmapOfMetafile(bytes), "bmp");
    case MetafileKind::Emf: return {"EMF", {}, {}};
    case MetafileKind::None: break;
    }
    if (bytes.starts_with("BM")) {
        return checkedDrawing("bitmap", data, "bmp");
    }
    if (const QByteArray file = bitmapFileOfDib(bytes); !file.isEmpty()) {
        return checkedDrawing("bitmap", file, "bmp");
    }
    return {kind, {}, {}};
}

const RtfPicture *firstPicture(const RtfObjectParts &parts)
{
    const auto picture = std::ranges::find_if(parts.pictures, [](const auto &each) { return each.has_value(); });
    return picture != parts.pictures.end() ? &**picture : nullptr;
}

/// What the words of a picture tell of one of its sides: twips, 0 if nothing.
qint64 toldTwips(int goal, int side, bool isMetafile)
{
    const qint64 length = std::abs(qint64{goal != 0 ? goal : side});
    if (goal != 0) {
        return length;
    }
    return isMetafile ? length * 1440 / 2540 : length * twipsPerPixel;
}

int scaled(qint64 twips, int percent)
{
    // What is larger is too large even at 1 %.
    constexpr qint64 large = qint64{maxObjectTwips} * 100;
    const qint64 product = std::min(twips, large) * (percent > 0 ? percent : 100) / 100;
    return static_cast<int>(std::clamp<qint64>(product, minObjectTwips, maxObjectTwips));
}

/// The size that the picture's data tells.
QSize ownTwips(const RtfPicture &picture)
{
    const QByteArray data = decodeRtfData(picture.data);
    if (const auto size = sizeOfMetafile(viewOf(data))) {
        return *size;
    }
    const QSize pixels = drawingOf(data, picture.kind).pixels;
    const QSize limit(maxObjectTwips, maxObjectTwips);
    return pixels.isEmpty() ? QSize(defaultTwips, defaultTwips) : pixels.boundedTo(limit) * twipsPerPixel;
}

QSize sizeOfPicture(const RtfPicture &picture)
{
    const RtfExtent &extent = picture.extent;
    qint64 width = toldTwips(extent.goalWidth, extent.width, picture.isMetafile);
    qint64 height = toldTwips(extent.goalHeight, extent.height, picture.isMetafile);
    if (width == 0 || height == 0) {
        const QSize own = ownTwips(picture);
        width = width != 0 ? width : own.width();
        height = height != 0 ? height : own.height();
    }
    return {scaled(width, extent.scaleX), scaled(height, extent.scaleY)};
}

QSize sizeOf(const RtfObjectParts &parts)
{
    const RtfExtent &extent = parts.extent;
    const bool isTold = extent.goalWidth != 0 && extent.goalHeight != 0;
    const RtfPicture *picture = firstPicture(parts);
    QSize size = parts.isPicture ? QSize(defaultTwips, defaultTwips) : objectTwips;
    if (picture != nullptr && !isTold) {
        size = sizeOfPicture(*picture);
    }
    if (extent.goalWidth != 0) {
        size.setWidth(scaled(toldTwips(extent.goalWidth, 0, false), extent.scaleX));
    }
    if (extent.goalHeight != 0) {
        size.setHeight(scaled(toldTwips(extent.goalHeight, 0, false), extent.scaleY));
    }
    return size;
}

/// The first of the pictures that can be drawn; if none can, what the first is.
Drawing drawingOf(const RtfObjectParts &parts)
{
    std::optional<Drawing> first;
    for (const auto &picture : parts.pictures) {
        if (!picture) {
            continue;
        }
        Drawing drawing = drawingOf(decodeRtfData(picture->data), picture->kind);
        if (!drawing.image.isEmpty()) {
            return drawing;
        }
        first = first.value_or(drawing);
    }
    return first.value_or(Drawing());
}

/// What stands for the object in its own data, if its text has no picture of it.
QByteArray imageOf(const OleObject &object)
{
    QByteArray image;
    if (object.presentation.kind == OlePresentation::Kind::Metafile) {
        image = bitmapOfMetafile(object.presentation.data);
    } else if (object.presentation.kind == OlePresentation::Kind::Dib) {
        image = bitmapFileOfDib(object.presentation.data);
    }
    if (image.isEmpty() && object.native.starts_with("BM")) {
        image = bytesOf(object.native);
    }
    return image.isEmpty() ? image : checkedDrawing("bitmap", image, "bmp").image;
}

QString baseName(const QString &path)
{
    return path.mid(std::max(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\'))) + 1);
}

void readData(std::string_view content, RtfObject &object)
{
    const QByteArray stream = decodeRtfData(content);
    const auto ole = readOleObject(viewOf(stream));
    if (!ole) {
        return;
    }
    if (object.kind.isEmpty()) {
        object.kind = ole->className;
    }
    if (object.image.isEmpty()) {
        object.image = imageOf(*ole);
    }
    const QString className = ole->className.isEmpty() ? object.kind : ole->className;
    const bool isPackage = className.compare(QLatin1String(packageClassName), Qt::CaseInsensitive) == 0;
    const auto package = isPackage ? readOlePackage(ole->native) : std::nullopt;
    object.native = bytesOf(package ? package->data : ole->native);
    if (package) {
        object.name = package->fileName.isEmpty() ? package->label : package->fileName;
    } else if (ole->isLinked) {
        object.name = baseName(ole->linkedFile);
    }
}

void appendHex(QByteArray &out, const QByteArray &data)
{
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr qsizetype bytesPerLine = 39;
    out.reserve(out.size() + data.size() * 2 + (data.size() / bytesPerLine + 1) * 2);
    for (qsizetype index = 0; index < data.size(); ++index) {
        const auto byte = static_cast<unsigned char>(data[index]);
        out += digits[byte >> 4U];
        out += digits[byte & 0x0fU];
        if ((index + 1) % bytesPerLine == 0 || index + 1 == data.size()) {
            out += "\r\n";
        }
    }
}

QByteArray escaped(const QString &text)
{
    const RtfCodePage codePage(defaultCodePage);
    QByteArray bytes;
    for (const QChar character : text) {
        const QByteArray encoded = codePage.encode(character.unicode());
        for (const char byte : encoded) {
            const bool isPlain = byte >= ' ' && byte < '\x7f' && byte != '\\' && byte != '{' && byte != '}';
            bytes += isPlain ? QByteArray(1, byte) : "\\'" + QByteArray(1, byte).toHex();
        }
    }
    return bytes;
}

} // namespace

RtfObject readRtfObject(std::string_view source)
{
    const RtfObjectParts parts = findObjectParts(source);
    const Drawing drawing = drawingOf(parts);
    RtfObject object;
    object.isPicture = parts.isPicture;
    object.size = sizeOf(parts);
    object.image = drawing.image;
    if (object.isPicture) {
        object.kind = QLatin1String(drawing.kind);
        return object;
    }
    object.kind = RtfCodePage(defaultCodePage).decode(viewOf(parts.className)).simplified();
    object.text = parts.text;
    readData(parts.data, object);
    return object;
}

QSize rtfObjectSize(std::string_view source)
{
    return sizeOf(findObjectParts(source));
}

QByteArray pictureSource(const QByteArray &image, QSize pixels, QSize twips)
{
    const bool isJpeg = image.startsWith("\xff\xd8\xff");
    QByteArray source = isJpeg ? "{\\pict\\jpegblip" : "{\\pict\\pngblip";
    source += "\\picw" + QByteArray::number(pixels.width()) + "\\pich" + QByteArray::number(pixels.height());
    source += "\\picwgoal" + QByteArray::number(twips.width()) + "\\pichgoal" + QByteArray::number(twips.height());
    source += "\r\n";
    appendHex(source, image);
    return source + '}';
}

QByteArray objectSource(const QString &className, const QByteArray &stream, const QByteArray &icon, QSize pixels,
                        QSize twips)
{
    QByteArray source =
        "{\\object\\objemb\\objw" + QByteArray::number(twips.width()) + "\\objh" + QByteArray::number(twips.height());
    source += "{\\*\\objclass " + escaped(className) + "}{\\*\\objdata\r\n";
    appendHex(source, stream);
    source += "}{\\result" + pictureSource(icon, pixels, twips) + "}}";
    return source;
}
