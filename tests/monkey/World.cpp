#undef _FORTIFY_SOURCE // under which the headers define some of the functions that are defined here

#include "tests/monkey/World.h"

#include "tests/study/NoDiskWaits.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
constexpr std::int64_t monotonicStart = 100 * nanosecondsPerSecond; // earlier than of any machine
constexpr std::int64_t dayStart = 1'715'000'000 * nanosecondsPerSecond;

std::int64_t passed = 0; ///< nanoseconds since the program's start; of the main thread
int slowLooks = 0;
std::chrono::nanoseconds slowness{};

bool isMainThread()
{
    static thread_local const bool isMain = syscall(SYS_gettid) == getpid();
    return isMain;
}

std::array<char, 4096> fenced{}; ///< the folder with "/", or empty
std::atomic<int> refused = 0;

bool startsWith(const char *text, const char *beginning)
{
    return std::strncmp(text, beginning, std::strlen(beginning)) == 0;
}

/// Whether \p path may be changed. If not, errno says so.
bool isInside(const char *path)
{
    const bool climbs = std::strstr(path, "/../") != nullptr || startsWith(path, "../");
    const bool isInFolder = path[0] != '/' || startsWith(path, fenced.data()) || startsWith(path, "/dev/");
    if (fenced[0] == '\0' || (isInFolder && !climbs)) {
        return true;
    }
    ++refused;
    errno = EACCES;
    return false;
}

int openFile(int folder, const char *path, int flags, mode_t mode)
{
    const bool changes = (flags & O_ACCMODE) != O_RDONLY || (flags & (O_CREAT | O_TRUNC)) != 0;
    if (changes && !isInside(path)) {
        return -1;
    }
    return static_cast<int>(syscall(SYS_openat, folder, path, flags, mode));
}

void really(std::chrono::nanoseconds time)
{
    const timespec wait{0, time.count()};
    syscall(SYS_nanosleep, &wait, nullptr);
}

/// The state of a thread as the system writes it: "R" for running, "S" for sleeping...
char stateOf(const char *thread)
{
    std::array<char, 300> path{};
    std::snprintf(path.data(), path.size(), "/proc/self/task/%s/stat", thread);
    std::array<char, 512> line{};
    const int file = openFile(AT_FDCWD, path.data(), O_RDONLY, 0);
    if (file < 0) {
        return 'S'; // it has just ended
    }
    const ssize_t length = read(file, line.data(), line.size() - 1);
    ::close(file);
    const char *name = length > 0 ? std::strrchr(line.data(), ')') : nullptr;
    return name != nullptr && name[1] == ' ' ? name[2] : 'S';
}

bool allOthersSleep()
{
    const std::string self = std::to_string(getpid());
    DIR *threads = opendir("/proc/self/task");
    if (threads == nullptr) {
        return true;
    }
    bool sleeping = true;
    for (const dirent *entry = readdir(threads); entry != nullptr && sleeping; entry = readdir(threads)) {
        sleeping = entry->d_name[0] == '.' || self == entry->d_name || stateOf(entry->d_name) == 'S';
    }
    closedir(threads);
    return sleeping;
}

} // namespace

std::chrono::milliseconds worldClock::now()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::nanoseconds(monotonicStart + passed));
}

void worldClock::pass(std::chrono::milliseconds time)
{
    passed += std::chrono::nanoseconds(time).count();
}

void worldClock::beSlow(int looks, std::chrono::milliseconds each)
{
    slowLooks = looks;
    slowness = each;
}

std::chrono::milliseconds worldClock::realNow()
{
    timespec time{};
    syscall(SYS_clock_gettime, CLOCK_MONOTONIC, &time);
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::seconds(time.tv_sec) +
                                                                 std::chrono::nanoseconds(time.tv_nsec));
}

void waitForOtherThreads()
{
    for (int looks = 0; looks < 20'000 && !allOthersSleep(); ++looks) {
        really(200us);
    }
}

void fence::close(const std::string &folder)
{
    std::snprintf(fenced.data(), fenced.size(), "%s/", folder.c_str());
}

void fence::open()
{
    fenced[0] = '\0';
}

int fence::refusals()
{
    return refused;
}

// The system's functions. The names and parameters are theirs.
// NOLINTBEGIN(readability-identifier-naming,cert-dcl50-cpp)

extern "C" int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    const bool isOurs = (clock == CLOCK_MONOTONIC || clock == CLOCK_REALTIME) && isMainThread();
    if (!isOurs) {
        return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    }
    if (slowLooks > 0) {
        --slowLooks;
        passed += slowness.count();
    }
    const std::int64_t now = (clock == CLOCK_MONOTONIC ? monotonicStart : dayStart) + passed;
    time->tv_sec = now / nanosecondsPerSecond;
    time->tv_nsec = now % nanosecondsPerSecond;
    return 0;
}

extern "C" int gettimeofday(timeval *time, void * /*zone*/) noexcept
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    *time = {now.tv_sec, now.tv_nsec / 1000};
    return 0;
}

extern "C" time_t time(time_t *time) noexcept
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return time != nullptr ? *time = now.tv_sec : now.tv_sec;
}

/// Waits for a lock take no time.
extern "C" int usleep(useconds_t time)
{
    if (isMainThread()) {
        passed += std::int64_t{time} * 1000;
    } else {
        really(std::chrono::microseconds(time % 1'000'000));
    }
    return 0;
}

extern "C" int nanosleep(const timespec *time, timespec *left)
{
    if (!isMainThread()) {
        return static_cast<int>(syscall(SYS_nanosleep, time, left));
    }
    passed += time->tv_sec * nanosecondsPerSecond + time->tv_nsec;
    return 0;
}

extern "C" int open(const char *path, int flags, ...)
{
    std::va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    return openFile(AT_FDCWD, path, flags, mode);
}

extern "C" int open64(const char *path, int flags, ...)
{
    std::va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    return openFile(AT_FDCWD, path, flags | O_LARGEFILE, mode);
}

extern "C" int unlink(const char *path) noexcept
{
    return isInside(path) ? static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, path, 0)) : -1;
}

extern "C" int unlinkat(int folder, const char *path, int flags) noexcept
{
    return isInside(path) ? static_cast<int>(syscall(SYS_unlinkat, folder, path, flags)) : -1;
}

extern "C" int rmdir(const char *path) noexcept
{
    return isInside(path) ? static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, path, AT_REMOVEDIR)) : -1;
}

extern "C" int remove(const char *path) noexcept
{
    return unlink(path) == 0 || (errno == EISDIR && rmdir(path) == 0) ? 0 : -1;
}

extern "C" int mkdir(const char *path, mode_t mode) noexcept
{
    return isInside(path) ? static_cast<int>(syscall(SYS_mkdirat, AT_FDCWD, path, mode)) : -1;
}

extern "C" int rename(const char *from, const char *to) noexcept
{
    const bool may = isInside(from) && isInside(to);
    return may ? static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0)) : -1;
}

extern "C" int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags) noexcept
{
    return isInside(to) ? static_cast<int>(syscall(SYS_linkat, fromFolder, from, toFolder, to, flags)) : -1;
}

extern "C" int renameat2(int fromFolder, const char *from, int toFolder, const char *to, unsigned flags) noexcept
{
    const bool may = isInside(from) && isInside(to);
    return may ? static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags)) : -1;
}

// NOLINTEND(readability-identifier-naming,cert-dcl50-cpp)
