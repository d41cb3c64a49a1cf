#pragma once

#include "bench/process/Journey.h"

#include <map>
#include <string>
#include <sys/types.h>

/// A program on its way through its windows, in a process of its own. It is killed at the end.
///
/// What goes wrong with it ends this program too.
class Visit
{
public:
    explicit Visit(const Journey &journey);
    Visit(const Visit &) = delete;
    Visit &operator=(const Visit &) = delete;
    ~Visit();

    /// Waits, up to a minute, until the program has told \p event: a window's object name and
    /// "shown" or "left". Returns the milliseconds from its start until then.
    [[nodiscard]] double until(const std::string &event);

    /// Milliseconds from one event to another.
    [[nodiscard]] double between(const std::string &event, const std::string &later);

    /// Waits until the destination is shown and the program has come to rest: its memory then
    /// stays the same for half a second.
    void settle();

    /// Its proportional set size in MiB: memory that it shares with others counts in part.
    [[nodiscard]] double mebibytes() const;

    [[nodiscard]] ::pid_t process() const { return m_process; }

private:
    void hear();

    std::string m_destination;
    ::pid_t m_process = -1;
    int m_stream = -1;
    double m_start = 0;                   ///< milliseconds, on the clock of the program
    std::string m_heard;                  ///< and not understood
    std::map<std::string, double> m_told; ///< milliseconds, on the same clock
};
