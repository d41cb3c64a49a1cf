#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

// What the group of a picture or an object holds (RtfObject.h), with no data decoded.

/// What the words of a picture or an object tell of its size; 0 where they do not.
struct RtfExtent
{
    int width = 0; ///< pixels, or hundredths of a millimetre of a metafile
    int height = 0;
    int goalWidth = 0; ///< twips
    int goalHeight = 0;
    int scaleX = 100; ///< per cent
    int scaleY = 100;
};

/// A \pict group.
struct RtfPicture
{
    RtfExtent extent;
    const char *kind = "picture"; ///< by its words
    bool isMetafile = false;
    std::string_view data; ///< what follows the word, up to the group's end
};

/// Where a picture stands. Of several the first of the first kind counts.
enum class RtfPicturePlace : std::uint8_t { Preferred, Plain, ForOldReaders };

/// What one pass over a source finds, with no data decoded.
struct RtfObjectParts
{
    bool isPicture = true;
    RtfExtent extent;     ///< of an object
    QByteArray className; ///< in windows-1252
    std::string_view data;
    std::array<std::optional<RtfPicture>, 3> pictures; ///< by RtfPicturePlace
    QString text;
};

/// Looks through \p source once, whatever nests in whatever. What it finds points into it.
[[nodiscard]] RtfObjectParts findObjectParts(std::string_view source);

/// The data in \p content, which is the inside of a group: hexadecimal digits and
/// \bin. Of groups in it only \bin counts, and nothing in those that begin with \*.
[[nodiscard]] QByteArray decodeRtfData(std::string_view content);
