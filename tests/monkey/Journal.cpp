#include "tests/monkey/Journal.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak)); // NOLINT: the sanitizers'
/// A finding of this sanitizer is heard of as a signal.
extern "C" const char *__ubsan_default_options() // NOLINT: the same
{
    return "print_stacktrace=1:abort_on_error=1";
}

namespace {

constexpr std::size_t kept = 60;
constexpr std::size_t longest = 240;
constexpr unsigned secondsOfAnEvent = 20;

// Read in a signal handler: no memory is asked for there.
std::array<std::array<char, longest>, kept> lastEvents{};
std::size_t eventCount = 0;
std::array<char, 512> replay{};

void write(const char *text)
{
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text, std::strlen(text));
}

void tellHang(int /*signal*/)
{
    write("\nAn event takes longer than 20 seconds.\n");
    std::abort();
}

void tellCrash(int signal)
{
    std::signal(signal, SIG_DFL);
    Journal::tell();
    std::raise(signal);
}

} // namespace

Journal::Journal(unsigned seed, int events)
{
    eventCount = 0;
    std::snprintf(replay.data(), replay.size(), "Replay: CRAMLET_SEED=%u CRAMLET_EVENTS=%d Monkey_test\n", seed,
                  events);
    if (&__sanitizer_set_death_callback != nullptr) {
        __sanitizer_set_death_callback(&Journal::tell);
    } else {
        std::signal(SIGSEGV, tellCrash); // else the sanitizer's
    }
    std::signal(SIGABRT, tellCrash);
    std::signal(SIGALRM, tellHang);
}

Journal::~Journal()
{
    alarm(0);
    std::signal(SIGABRT, SIG_DFL);
    if (&__sanitizer_set_death_callback != nullptr) {
        __sanitizer_set_death_callback([] {});
    }
}

void Journal::add(const QString &event)
{
    alarm(secondsOfAnEvent);
    ++m_count;
    const std::string line = std::to_string(m_count) + ": " + event.toStdString();
    for (const char byte : line) {
        m_hash = (m_hash ^ static_cast<unsigned char>(byte)) * 1099511628211U;
    }
    std::array<char, longest> &place = lastEvents.at(eventCount++ % kept);
    std::snprintf(place.data(), place.size(), "%s\n", line.c_str());
    static const bool tellsAll = std::getenv("CRAMLET_TELL") != nullptr;
    if (tellsAll) {
        write(place.data());
    }
}

void Journal::tell()
{
    write("\nThe monkey's last events:\n");
    for (std::size_t event = eventCount - std::min(eventCount, kept); event < eventCount; ++event) {
        write(lastEvents.at(event % kept).data());
    }
    write(replay.data());
}
