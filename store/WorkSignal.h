#pragma once

#include <functional>
#include <string_view>

// How the windows learn that work on a subject goes on, while its thread is busy with it.

/// A piece of work, and how far it is.
struct WorkState
{
    std::string_view what; ///< in words for the learner; empty if nobody said
    int done = 0;
    int total = 0;             ///< 0: unknown
    bool willTakeLong = false; ///< more than half a second from here on, without another signal
};

/// Gets a WorkState again and again, on the thread that works and in the middle of it: it must
/// neither use a subject nor throw.
using WorkObserver = std::function<void(const WorkState &)>;

/// There is one observer. An empty one, as at the start, is none.
void observeWork(WorkObserver observer);

/// Tells the observer that the work goes on. The store does it every few thousand steps of its engine.
void signalWork() noexcept;

/// Tells the observer that the engine is about to be busy without a signal for more than half a second.
void signalLongWork(std::string_view what) noexcept;

/// Work that is known beforehand, until it is destroyed. Signals carry it.
class WorkPass
{
public:
    /// \p what is kept as a view. \p total steps lie ahead.
    WorkPass(std::string_view what, int total);
    WorkPass(const WorkPass &) = delete;
    WorkPass &operator=(const WorkPass &) = delete;
    ~WorkPass();

    /// One step is done. Costs next to nothing: the engine's steps give the signals.
    void step() { ++m_state.done; }

private:
    friend void signalWork() noexcept;

    WorkState m_state;
    WorkPass *m_around;
};
