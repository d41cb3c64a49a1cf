#pragma once

#include <thread>

/// Reads which fonts the system has, on a thread that ends by itself.
///
/// Qt would read them when the first text is laid out, which takes milliseconds of every start. Begun before
/// the application object is made, it is done while that one talks to the display. If no thread is to be had,
/// the result is not joinable, and Qt reads them after all.
[[nodiscard]] std::jthread readFontConfiguration();
