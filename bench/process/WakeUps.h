#pragma once

#include <condition_variable>
#include <map>
#include <mutex>
#include <sys/types.h>
#include <thread>

/// How often each thread of a process has fallen asleep, and so was woken or waits to be.
using Sleeps = std::map<::pid_t, long>;

[[nodiscard]] Sleeps sleepsOf(::pid_t process);

/// Whether there are threads that Qt paints large areas with. They end by themselves half a minute
/// after their work.
[[nodiscard]] bool hasPaintingThreads(::pid_t process);

/// A thread that nothing ever wakes but what stops and continues the whole machine.
class Sleeper
{
public:
    Sleeper();
    Sleeper(const Sleeper &) = delete;
    Sleeper &operator=(const Sleeper &) = delete;
    ~Sleeper();

    /// How often it has fallen asleep.
    [[nodiscard]] long sleeps() const;

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    ::pid_t m_number = 0; ///< of the thread; 0: it does not sleep yet
    bool m_isOver = false;
    std::thread m_thread;
};

/// How often threads were woken between two looks at a process. Each is let off what
/// \p ofSleeper, a sleeper's count of that time, says. A thread that has ended was woken to end.
[[nodiscard]] long wakeUpsBetween(const Sleeps &before, const Sleeps &after, long ofSleeper);
