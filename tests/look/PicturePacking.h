#pragma once

#include <QImage>

/// Makes a picture small in the repository: one byte a pixel, with a palette of
/// at most 256 colours.
///
/// The most frequent colours stay exact; of the others, a channel is at most
/// packingError off. A picture with too many colours for that stays as it is,
/// as does one with transparency.
[[nodiscard]] QImage packed(const QImage &picture);

/// Out of 255; invisible, and well within the tolerance of comparing.
inline constexpr int packingError = 16;
