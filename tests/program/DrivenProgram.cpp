#include "tests/program/DrivenProgram.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <stdexcept>
#include <string_view>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

constexpr int learnersEar = 9; // the descriptor in the program
constexpr std::chrono::minutes patience{1};

/// This process's environment without its desktop, and \p home instead.
std::vector<std::string> environmentIn(const std::filesystem::path &home, const std::string &learner)
{
    const std::vector<std::pair<std::string, std::string>> own{
        {"HOME", home.string()},
        {"XDG_CONFIG_HOME", (home / "config").string()},
        {"XDG_DATA_HOME", (home / "data").string()},
        {"XDG_CACHE_HOME", (home / "cache").string()},
        {"XDG_RUNTIME_DIR", (home / "run").string()},
        {"DBUS_SESSION_BUS_ADDRESS", "disabled:"},
        {"CANBERRA_DRIVER", "null"},
        {"LC_ALL", "C.UTF-8"},
        {"QT_QPA_PLATFORM", "offscreen"},
        {"QT_LOGGING_RULES", "default.warning=false"}, // this platform's, about each window
        {"QT_PLUGIN_PATH", CRAMLET_PLUGINS},
        {"QT_QPA_GENERIC_PLUGINS", "learner"},
        {"CRAMLET_LEARNER", std::to_string(learnersEar) + ' ' + learner},
    };
    std::vector<std::string> environment;
    for (const auto &[name, value] : own) {
        environment.push_back(name + '=' + value);
    }
    for (char **variable = ::environ; *variable != nullptr; ++variable) {
        const std::string_view name = std::string_view(*variable).substr(0, std::string_view(*variable).find('='));
        if (!name.starts_with("QT_") && !name.starts_with("XDG_") && name != "DISPLAY" && name != "WAYLAND_DISPLAY" &&
            std::ranges::find(own, name, &std::pair<std::string, std::string>::first) == own.end()) {
            environment.emplace_back(*variable);
        }
    }
    return environment;
}

} // namespace

ProgramHome::ProgramHome(std::filesystem::path folder, const std::filesystem::path &subject)
    : m_folder(std::move(folder))
{
    std::filesystem::create_directories(m_folder / "config/Cramlet");
    std::filesystem::create_directories(m_folder / "run");
    std::filesystem::permissions(m_folder / "run", std::filesystem::perms::owner_all);
    std::ofstream settings(m_folder / "config/Cramlet/Cramlet.conf");
    settings << "[Recent]\nName0=" << subject.stem().string() << "\nPath0=" << subject.string() << '\n';
}

DrivenProgram::DrivenProgram(const ProgramHome &home, const std::string &learner)
{
    std::vector<std::string> environment = environmentIn(home.folder(), learner);
    std::vector<char *> variables;
    for (std::string &variable : environment) {
        variables.push_back(variable.data());
    }
    variables.push_back(nullptr);
    std::string program = CRAMLET_PROGRAM;
    const std::array<char *, 2> arguments{program.data(), nullptr};

    std::array<int, 2> streams{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, streams.data()) != 0 || (m_process = ::fork()) < 0) {
        throw std::runtime_error("no process can be started");
    }
    if (m_process == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::dup2(streams[1], learnersEar) == learnersEar) {
            ::execve(arguments[0], arguments.data(), variables.data());
        }
        ::_exit(127);
    }
    ::close(streams[1]);
    m_stream = streams[0];
}

DrivenProgram::~DrivenProgram()
{
    if (m_process > 0) {
        ::kill(m_process, SIGKILL);
        (void)wait();
    }
    ::close(m_stream);
}

std::optional<Message> DrivenProgram::next()
{
    for (;;) {
        if (std::optional<Message> message = take()) {
            return message;
        }
        if (!waitForInput(patience)) {
            throw std::runtime_error("the program hangs");
        }
        if (!read()) {
            return std::nullopt;
        }
    }
}

std::optional<Message> DrivenProgram::take()
{
    const std::size_t end = m_read.find('\n');
    if (end == std::string::npos) {
        return std::nullopt; // a line that the kill cut off stays behind
    }
    Message message = messageOf(std::string_view(m_read).substr(0, end));
    m_read.erase(0, end + 1);
    return message;
}

bool DrivenProgram::read()
{
    std::array<char, 65536> piece{};
    const ssize_t size = ::read(m_stream, piece.data(), piece.size());
    if (size > 0) {
        m_read.append(piece.data(), static_cast<std::size_t>(size));
    }
    return size > 0;
}

void DrivenProgram::answer(char answer) const
{
    (void)::send(m_stream, &answer, 1, MSG_NOSIGNAL); // whether it has ended, reading tells
}

void DrivenProgram::killAfter(std::chrono::nanoseconds moment)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(moment);
    const timespec limit{seconds.count(), (moment - seconds).count()};
    pollfd onlyTheEnd{m_stream, 0, 0};
    if (::ppoll(&onlyTheEnd, 1, &limit, nullptr) != 0) {
        throw std::runtime_error("the program ended by itself");
    }
    ::kill(m_process, SIGKILL);
    if (!WIFSIGNALED(wait())) {
        throw std::runtime_error("the program ended by itself");
    }
}

int DrivenProgram::wait()
{
    int status = 0;
    ::waitpid(std::exchange(m_process, -1), &status, 0);
    return status;
}

bool DrivenProgram::waitForInput(std::chrono::nanoseconds limit) const
{
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(limit);
    pollfd input{m_stream, POLLIN, 0};
    return ::poll(&input, 1, static_cast<int>(milliseconds.count())) > 0;
}
