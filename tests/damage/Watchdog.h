#pragma once

#include <string>

/// Ends the program if a piece of work takes longer than \p seconds, and says of every
/// crash which piece of work it was: \p work goes to stderr. One at a time.
class Watchdog
{
public:
    Watchdog(const std::string &work, unsigned seconds);
    Watchdog(const Watchdog &) = delete;
    Watchdog &operator=(const Watchdog &) = delete;
    ~Watchdog();
};
