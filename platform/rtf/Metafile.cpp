#include "platform/rtf/Metafile.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace {

/// The little-endian number at \p offset, 0 if it is not all there.
template <typename Number>
Number numberAt(std::string_view bytes, std::size_t offset)
{
    if (offset > bytes.size() || bytes.size() - offset < sizeof(Number)) {
        return 0;
    }
    return qFromLittleEndian<Number>(bytes.data() + offset);
}

constexpr std::uint32_t placeableKey = 0x9ac6cdd7;
constexpr std::size_t placeableHeaderSize = 22;
constexpr std::size_t wmfHeaderSize = 18;

bool isPlaceable(std::string_view data)
{
    return numberAt<std::uint32_t>(data, 0) == placeableKey;
}

bool beginsAsWmf(std::string_view data)
{
    const auto type = numberAt<std::uint16_t>(data, 0);
    const auto version = numberAt<std::uint16_t>(data, 4);
    return (type == 1 || type == 2) && numberAt<std::uint16_t>(data, 2) == wmfHeaderSize / 2 &&
           (version == 0x0100 || version == 0x0300);
}

bool beginsAsEmf(std::string_view data)
{
    return numberAt<std::uint32_t>(data, 0) == 1 && numberAt<std::uint32_t>(data, 40) == 0x464d4520;
}

/// One side of a rectangle in units of \p unitsPerInch, in twips; nothing for an empty one.
std::optional<int> twipsBetween(std::int64_t from, std::int64_t to, std::int64_t unitsPerInch)
{
    if (from == to || unitsPerInch <= 0) {
        return std::nullopt;
    }
    const std::int64_t units = to > from ? to - from : from - to;
    return static_cast<int>(std::clamp<std::int64_t>(units * 1440 / unitsPerInch, 1, std::numeric_limits<int>::max()));
}

std::optional<QSize> sizeOf(std::optional<int> width, std::optional<int> height)
{
    if (!width || !height) {
        return std::nullopt;
    }
    return QSize(*width, *height);
}

struct DibHead
{
    std::int64_t pixels = 0;
    int bitsPerPixel = 0;
    std::size_t dataOffset = 0; ///< from the head's first byte to the pixels
};

constexpr std::uint32_t coreHeaderSize = 12; ///< of the oldest form, with sides of 16 bits
constexpr std::array<std::uint32_t, 4> infoHeaderSizes = {40, 64, 108, 124};
constexpr std::array<int, 6> possibleDepths = {1, 4, 8, 16, 24, 32};

/// Bytes between the head and the pixels: colours, or the masks of the colours.
std::size_t paletteSize(std::string_view dib, std::uint32_t headerSize, int bitsPerPixel)
{
    const std::size_t fullPalette = bitsPerPixel <= 8 ? std::size_t{1} << bitsPerPixel : 0;
    if (headerSize == coreHeaderSize) {
        return fullPalette * 3;
    }
    constexpr std::uint32_t bitFields = 3;
    const bool hasMasks = headerSize == 40 && numberAt<std::uint32_t>(dib, 16) == bitFields;
    const std::size_t used = numberAt<std::uint32_t>(dib, 32);
    return (hasMasks ? 12 : 0) + (used > 0 ? used : fullPalette) * 4;
}

/// Nothing if \p dib is no bitmap, or ends before its pixels.
std::optional<DibHead> headOfDib(std::string_view dib)
{
    const auto headerSize = numberAt<std::uint32_t>(dib, 0);
    const bool isCore = headerSize == coreHeaderSize;
    if (!isCore && std::ranges::find(infoHeaderSizes, headerSize) == infoHeaderSizes.end()) {
        return std::nullopt;
    }
    const std::int64_t width = isCore ? numberAt<std::uint16_t>(dib, 4) : numberAt<std::int32_t>(dib, 4);
    const std::int64_t height = isCore ? numberAt<std::uint16_t>(dib, 6) : numberAt<std::int32_t>(dib, 8);
    const int planes = numberAt<std::uint16_t>(dib, isCore ? 8 : 12);
    const int bitsPerPixel = numberAt<std::uint16_t>(dib, isCore ? 10 : 14);
    if (width <= 0 || height == 0 || planes != 1 ||
        std::ranges::find(possibleDepths, bitsPerPixel) == possibleDepths.end()) {
        return std::nullopt;
    }
    const std::size_t dataOffset = headerSize + paletteSize(dib, headerSize, bitsPerPixel);
    if (dataOffset >= dib.size()) {
        return std::nullopt;
    }
    return DibHead{width * (height < 0 ? -height : height), bitsPerPixel, dataOffset};
}

/// A record of a metafile that paints a bitmap.
struct BitmapRecord
{
    std::uint16_t function;
    std::size_t dibOffset;  ///< from the record's first byte
    std::size_t sizeOffset; ///< of the height and width that it is painted in; 0: in its own pixels
};

constexpr auto bitmapRecords = std::to_array<BitmapRecord>({
    {0x0940, 22, 14}, // META_DIBBITBLT
    {0x0b41, 26, 18}, // META_DIBSTRETCHBLT
    {0x0d33, 24, 0},  // META_SETDIBTODEV
    {0x0f43, 28, 20}, // META_STRETCHDIB
});

constexpr std::uint16_t setWindowExtent = 0x020c;

/// The sides at \p offset of \p record, where the height comes first.
QSize sidesAt(std::string_view record, std::size_t offset)
{
    const int height = numberAt<std::int16_t>(record, offset);
    const int width = numberAt<std::int16_t>(record, offset + 2);
    return {width < 0 ? -width : width, height < 0 ? -height : height};
}

/// The bitmap that \p record paints, unless that is a detail of a drawing that
/// fills \p window, or an icon beside its label.
std::string_view dibOfRecord(std::string_view record, QSize window)
{
    const auto function = numberAt<std::uint16_t>(record, 4);
    const auto *row = std::ranges::find(bitmapRecords, function, &BitmapRecord::function);
    if (row == bitmapRecords.end() || row->dibOffset >= record.size()) {
        return {};
    }
    if (row->sizeOffset != 0) {
        const QSize painted = sidesAt(record, row->sizeOffset);
        if (painted.width() < window.width() / 2 || painted.height() < window.height() / 2) {
            return {};
        }
    }
    return record.substr(row->dibOffset);
}

} // namespace

MetafileKind metafileKindOf(std::string_view data)
{
    if (isPlaceable(data) || beginsAsWmf(data)) {
        return MetafileKind::Wmf;
    }
    return beginsAsEmf(data) ? MetafileKind::Emf : MetafileKind::None;
}

std::optional<QSize> sizeOfMetafile(std::string_view metafile)
{
    if (isPlaceable(metafile)) {
        const auto side = [&](std::size_t from, std::size_t to) {
            return twipsBetween(numberAt<std::int16_t>(metafile, from), numberAt<std::int16_t>(metafile, to),
                                numberAt<std::uint16_t>(metafile, 14));
        };
        return sizeOf(side(6, 10), side(8, 12));
    }
    if (beginsAsEmf(metafile)) {
        const auto side = [&](std::size_t from, std::size_t to) {
            return twipsBetween(numberAt<std::int32_t>(metafile, from), numberAt<std::int32_t>(metafile, to), 2540);
        };
        return sizeOf(side(24, 32), side(28, 36));
    }
    return std::nullopt;
}

QByteArray bitmapOfMetafile(std::string_view wmf)
{
    if (isPlaceable(wmf)) {
        wmf.remove_prefix(std::min(placeableHeaderSize, wmf.size()));
    }
    if (!beginsAsWmf(wmf)) {
        return {};
    }
    wmf.remove_prefix(std::min(wmfHeaderSize, wmf.size()));

    std::string_view best;
    DibHead bestHead;
    QSize window(0, 0);
    constexpr std::size_t smallestRecord = 6;
    while (wmf.size() >= smallestRecord) {
        const std::size_t size = std::size_t{numberAt<std::uint32_t>(wmf, 0)} * 2;
        if (size < smallestRecord) {
            break;
        }
        const std::string_view record = wmf.substr(0, size);
        if (numberAt<std::uint16_t>(record, 4) == setWindowExtent) {
            window = sidesAt(record, 6);
        }
        const std::string_view dib = dibOfRecord(record, window);
        const auto head = headOfDib(dib);
        // Of a picture and its mask, which are as large, the picture has the colours.
        if (head && std::pair(head->pixels, head->bitsPerPixel) > std::pair(bestHead.pixels, bestHead.bitsPerPixel)) {
            best = dib;
            bestHead = *head;
        }
        wmf.remove_prefix(std::min(size, wmf.size()));
    }
    return bitmapFileOfDib(best);
}

QByteArray bitmapFileOfDib(std::string_view dib)
{
    const auto head = headOfDib(dib);
    constexpr std::size_t fileHeaderSize = 14;
    if (!head || dib.size() > std::numeric_limits<std::uint32_t>::max() - fileHeaderSize) {
        return {};
    }
    std::array<char, fileHeaderSize> fileHeader{'B', 'M'};
    qToLittleEndian(static_cast<std::uint32_t>(fileHeaderSize + dib.size()), fileHeader.data() + 2);
    qToLittleEndian(static_cast<std::uint32_t>(fileHeaderSize + head->dataOffset), fileHeader.data() + 10);

    QByteArray file(fileHeader.data(), fileHeader.size());
    file.append(dib.data(), static_cast<qsizetype>(dib.size()));
    return file;
}
