#pragma once

#include <QByteArray>
#include <QSize>

#include <cstdint>
#include <optional>
#include <string_view>

enum class MetafileKind : std::uint8_t { None, Wmf, Emf };

/// What \p data begins as; MetafileKind::None if it is no metafile.
[[nodiscard]] MetafileKind metafileKindOf(std::string_view data);

/// The size in twips that the head of \p metafile tells: that of an EMF, or the
/// placeable header of a WMF. Its sides are at least 1.
[[nodiscard]] std::optional<QSize> sizeOfMetafile(std::string_view metafile);

/// The bitmap that the metafile \p wmf (with or without a placeable header)
/// paints, as a file of the format "bmp"; empty if it has none. Old programs
/// stored a pasted picture so. Of several the one of most pixels counts; one that
/// fills less than half of a side of what is painted is a detail and counts as none.
[[nodiscard]] QByteArray bitmapOfMetafile(std::string_view wmf);

/// A bitmap without a file's header, as the clipboard has it ("DIB"), as a file
/// of the format "bmp"; empty if \p dib is none.
[[nodiscard]] QByteArray bitmapFileOfDib(std::string_view dib);
