#include "bench/process/Visit.h"

#include "bench/process/ProcessFiles.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sstream>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::milliseconds patience{60'000};

constexpr std::chrono::milliseconds betweenLooks{50};
constexpr int looksAtRest = 10;
constexpr double mebibytesOfOthers = 0.1; ///< by so much others change what is shared with them

double now()
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// This process's environment without its desktop, and the journey's instead.
std::vector<std::string> environmentOf(const Journey &journey)
{
    const std::string home = journey.home.string();
    const std::vector<std::pair<std::string, std::string>> own{
        {"XDG_CONFIG_HOME", home},
        {"XDG_DATA_HOME", home},
        {"XDG_RUNTIME_DIR", home},
        {"DBUS_SESSION_BUS_ADDRESS", "disabled:"},
        {"CANBERRA_DRIVER", "null"},
        {"LC_ALL", "C.UTF-8"},
        {"QT_QPA_PLATFORM", "xcb"},
        {"QT_PLUGIN_PATH", CRAMLET_PLUGINS},
        {"QT_QPA_GENERIC_PLUGINS", "visitor"},
        {"CRAMLET_VISIT", journey.destination},
    };
    std::vector<std::string> environment;
    for (const auto &[name, value] : own) {
        environment.push_back(name + '=' + value);
    }
    for (char **variable = ::environ; *variable != nullptr; ++variable) {
        const std::string_view name = std::string_view(*variable).substr(0, std::string_view(*variable).find('='));
        if (!name.starts_with("QT_") && !name.starts_with("XDG_") &&
            std::ranges::find(own, name, &std::pair<std::string, std::string>::first) == own.end()) {
            environment.emplace_back(*variable);
        }
    }
    return environment;
}

} // namespace

Visit::Visit(const Journey &journey)
    : m_destination(journey.destination)
{
    std::vector<std::string> environment = environmentOf(journey);
    std::vector<char *> variables;
    for (std::string &variable : environment) {
        variables.push_back(variable.data());
    }
    variables.push_back(nullptr);
    std::string program = journey.program.string();
    const std::array<char *, 2> arguments{program.data(), nullptr};

    std::array<int, 2> ends{};
    require(::pipe2(ends.data(), O_CLOEXEC) == 0, "there are no pipes left");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    m_start = now();
    const int failure = posix_spawn(&m_process, program.c_str(), &actions, nullptr, arguments.data(), variables.data());
    require(failure == 0, ("cannot start " + program).c_str());
    posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    m_stream = ends[0];
}

Visit::~Visit()
{
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
    ::close(m_stream);
}

double Visit::until(const std::string &event)
{
    while (!m_told.contains(event)) {
        hear();
    }
    return m_told.at(event) - m_start;
}

double Visit::between(const std::string &event, const std::string &later)
{
    const double end = until(later);
    return end - until(event);
}

/// Waits for the next that the program says.
void Visit::hear()
{
    pollfd input{m_stream, POLLIN, 0};
    require(::poll(&input, 1, static_cast<int>(patience.count())) > 0, "a program on its way hangs");
    std::array<char, 4096> piece{};
    const ssize_t size = ::read(m_stream, piece.data(), piece.size());
    require(size > 0, "a program on its way has ended");
    m_heard.append(piece.data(), static_cast<std::size_t>(size));
    for (std::size_t end = 0; (end = m_heard.find('\n')) != std::string::npos; m_heard.erase(0, end + 1)) {
        std::istringstream line(m_heard.substr(0, end));
        std::string window;
        std::string what;
        double time = 0;
        line >> window >> what >> time;
        require(!line.fail(), "a program on its way says something else");
        m_told.emplace(window.append(1, ' ').append(what), time);
    }
}

void Visit::settle()
{
    (void)until(m_destination + " shown");
    const double end = now() + static_cast<double>(patience.count());
    double before = mebibytes();
    for (int looks = 0; looks < looksAtRest; ++looks) {
        require(now() < end, "a program does not come to rest");
        std::this_thread::sleep_for(betweenLooks);
        const double after = mebibytes();
        if (std::abs(after - before) > mebibytesOfOthers) {
            before = after;
            looks = 0;
        }
    }
}

double Visit::mebibytes() const
{
    return numberIn(filesOf(m_process) / "smaps_rollup", "Pss:") / 1024;
}
