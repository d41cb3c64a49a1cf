#pragma once

#include <QImage>

/// How far a picture may be from the approved one.
///
/// Text is one or two pixels thin, and in a large picture a lost letter is
/// nothing beside all the pixels. Hence two limits: few different pixels in
/// any place of the picture, and few in the whole.
namespace Tolerance {
/// A pixel counts as different if one of its channels (0 to 255) is further off.
/// What is nearer, no eye sees; packing the approved pictures takes some of it.
inline constexpr int channel = 24;
/// The picture is cut into squares with this edge; those at the right and at the bottom may be smaller.
inline constexpr int squareEdge = 8;
/// Different pixels that a square may have.
inline constexpr int pixelsOfSquare = 2;
/// Share of different pixels that the picture may have.
inline constexpr double ofPicture = 0.0005;
} // namespace Tolerance

/// What is different between two pictures.
struct PictureDifference
{
    bool hasOtherSize = false; ///< then the pixels were not compared
    qint64 pixels = 0;         ///< that are different
    double share = 0;          ///< of all pixels, 0 to 1
    int inWorstSquare = 0;     ///< different pixels of the square with the most

    /// Whether the picture is still the approved one.
    [[nodiscard]] bool isTolerable() const;
};

/// Whether the eye could tell two colours apart, as far as Tolerance goes.
[[nodiscard]] bool areDifferent(QRgb one, QRgb other);

/// Compares pictures of any format; transparency counts as a channel.
[[nodiscard]] PictureDifference compare(const QImage &approved, const QImage &taken);

/// Shows the approved picture, the new one, and where they differ, side by side.
[[nodiscard]] QImage sideBySide(const QImage &approved, const QImage &taken);
