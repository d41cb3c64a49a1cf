#include "tests/damage/Watchdog.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <unistd.h>

// Of the sanitizers' library, if the program has it: what they find ends the program without a signal.
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak));

namespace {

constexpr std::size_t longestName = 400;
std::array<char, longestName> current{}; // a handler may touch nothing that is allocated
std::size_t currentLength = 0;

struct Handled
{
    int signal;
    struct sigaction before;
};
std::array<Handled, 5> handled{{{SIGALRM, {}}, {SIGSEGV, {}}, {SIGBUS, {}}, {SIGFPE, {}}, {SIGABRT, {}}}};

void say(const char *text, std::size_t length)
{
    static_cast<void>(::write(STDERR_FILENO, text, length) != 0);
}

void sayWork()
{
    if (currentLength > 0) {
        say("\nin the middle of ", 18);
        say(current.data(), currentLength);
        say("\n", 1);
        currentLength = 0;
    }
}

void handle(int signal)
{
    if (signal == SIGALRM) {
        say("\nno end", 7);
        std::abort();
    }
    sayWork();
    for (const Handled &entry : handled) {
        if (entry.signal == signal) {
            ::sigaction(signal, &entry.before, nullptr); // the signal comes again when this returns
        }
    }
}

void handleSignals()
{
    for (Handled &entry : handled) {
        struct sigaction action = {};
        action.sa_handler = handle;
        ::sigaction(entry.signal, &action, &entry.before);
    }
    if (__sanitizer_set_death_callback != nullptr) {
        __sanitizer_set_death_callback(sayWork);
    }
}

} // namespace

Watchdog::Watchdog(const std::string &work, unsigned seconds)
{
    static const bool handles = (handleSignals(), true);
    static_cast<void>(handles);
    currentLength = std::min(work.size(), current.size());
    std::copy_n(work.begin(), currentLength, current.begin());
    ::alarm(seconds);
}

Watchdog::~Watchdog()
{
    ::alarm(0);
    currentLength = 0;
}
