#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <string>

// Texts of cards to measure with, in two markups that look the same.

enum class Markup : std::uint8_t { Rtf, Html };

/// One side of \p card: two or three lines with bold words and a colour, of which
/// the first begins with headOf().
[[nodiscard]] std::string sideText(Markup markup, int card, bool front);

/// The same with a picture below it.
[[nodiscard]] std::string sideWithPicture(Markup markup, int card, bool front);

/// The file of that picture: a PNG of 800x600 pixels, another one for each card.
[[nodiscard]] QByteArray pictureOf(int card);
/// By this name HTML asks for it.
inline const QString pictureName = QStringLiteral("picture");

[[nodiscard]] QString headOf(int card, bool front);
