#pragma once

#include <QColor>

/// How well an ink can be read on a ground: 1 (not at all) to 21.
[[nodiscard]] double contrast(const QColor &ground, const QColor &ink);

/// \p ink, made lighter or darker until it has a contrast of 4.5 or more on \p ground.
[[nodiscard]] QColor inkOn(const QColor &ground, const QColor &ink);
