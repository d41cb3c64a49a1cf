#pragma once

#include <QColor>
#include <QPalette>

/// The palette of everything that lies on paper of colour \p paper, whatever
/// the desktop's theme: ink that is readable on it (contrast at least 7:1 where
/// the paper allows), and borders and disabled text that go with both.
[[nodiscard]] QPalette paperPalette(const QColor &paper);

/// A colour from its settings number: 24 bits, blue-green-red, low byte red.
[[nodiscard]] QColor colorOfNumber(int number);
[[nodiscard]] int numberOfColor(const QColor &color);
