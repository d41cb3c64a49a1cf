#pragma once

#include <QColor>

/// \p ink, made lighter or darker until it has a contrast of 4.5 or more on \p ground.
[[nodiscard]] QColor inkOn(const QColor &ground, const QColor &ink);
