#pragma once

/// 1 inch; the screen's logical dots per inch (device-independent pixels) are an inch.
inline constexpr int twipsPerInch = 1440;

/// Returns the nearest whole number of pixels, at the primary screen's logical dots per inch.
[[nodiscard]] int toPixels(double twips);
[[nodiscard]] double toTwips(double pixels);
