#pragma once

#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>
#include <string_view>

/// The bytes that a fuzzer is called with.
inline std::string_view fuzzedText(const unsigned char *data, std::size_t size)
{
    return {reinterpret_cast<const char *>(data), size};
}

/// Ends the run, as a finding, unless \p holds. \p what says what should be so.
inline void require(bool holds, const char *what)
{
    if (!holds) {
        std::fprintf(stderr, "This does not hold: %s.\n", what);
        std::abort();
    }
}

/// Documents and pictures need an application object. It lives as long as the process.
inline void startOffscreen()
{
    static int count = 1;
    static char name[] = "fuzz";
    static char *arguments[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QGuiApplication application(count, arguments);
}
