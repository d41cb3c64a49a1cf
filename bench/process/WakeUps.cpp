#include "bench/process/WakeUps.h"

#include "bench/process/ProcessFiles.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

long sleepsOfThread(const fs::path &files)
{
    return std::lround(numberIn(files / "status", "voluntary_ctxt_switches:"));
}

} // namespace

Sleeps sleepsOf(::pid_t process)
{
    Sleeps sleeps;
    for (const fs::directory_entry &thread : fs::directory_iterator(filesOf(process) / "task")) {
        sleeps.emplace(std::stoi(thread.path().filename().string()), sleepsOfThread(thread.path()));
    }
    return sleeps;
}

bool hasPaintingThreads(::pid_t process)
{
    return std::ranges::any_of(fs::directory_iterator(filesOf(process) / "task"), [](const auto &thread) {
        std::string name;
        std::getline(std::ifstream(thread.path() / "comm"), name);
        return name == "Thread (pooled)";
    });
}

Sleeper::Sleeper()
    : m_thread([this] {
        std::unique_lock lock(m_mutex);
        m_number = ::gettid();
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_isOver; });
    })
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_number != 0; });
}

Sleeper::~Sleeper()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isOver = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

long Sleeper::sleeps() const
{
    return sleepsOfThread(filesOf(::getpid()) / "task" / std::to_string(m_number));
}

long wakeUpsBetween(const Sleeps &before, const Sleeps &after, long ofSleeper)
{
    long wakeUps = 0;
    for (const auto &[thread, sleeps] : after) {
        const auto known = before.find(thread);
        wakeUps += known == before.end() ? sleeps : std::max(0L, sleeps - known->second - ofSleeper);
    }
    return wakeUps + std::ranges::count_if(before, [&](const auto &known) { return !after.contains(known.first); });
}
