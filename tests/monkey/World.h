#pragma once

#include <chrono>
#include <string>

// What surrounds the program while the monkey plays with it, so that a seed decides all that happens: the clock, the
// disk, the other threads and the rest of the file system. Stands in for some of the system's functions, so it may
// be linked into one program of its own only.

/// The clock of the main thread, monotonic and of the day. It stands still but for these; nobody waits for it.
namespace worldClock {
[[nodiscard]] std::chrono::milliseconds now();
void pass(std::chrono::milliseconds time);
/// The next \p looks at the clock find it later by \p each: a slow machine, on which work seems to take long.
void beSlow(int looks, std::chrono::milliseconds each);
[[nodiscard]] std::chrono::milliseconds realNow();
} // namespace worldClock

/// Waits until every other thread of this program sleeps.
void waitForOtherThreads();

/// Lets nothing be made, written, renamed or deleted outside of a folder.
namespace fence {
/// \p folder is an absolute path. From now on what leads outside is refused as if it was not permitted.
void close(const std::string &folder);
void open();
[[nodiscard]] int refusals();
} // namespace fence
