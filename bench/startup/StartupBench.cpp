#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// From the start of the process to the first painted window: the program's
// chooser beside an empty window of its size, taking turns. On a real display
// (xvfb-run will do): without one Qt leaves out what both have to pay for.

namespace {

constexpr int rounds = 31;
constexpr double allowedRatio = 1.5;

double millisecondsOf(const char *program)
{
    const auto start = std::chrono::steady_clock::now();
    std::string name = program;
    char *arguments[] = {name.data(), nullptr};
    pid_t child = 0;
    if (posix_spawn(&child, program, nullptr, nullptr, arguments, environ) != 0) {
        throw std::runtime_error("cannot start " + name);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error(name + " failed");
    }
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values)
{
    std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
    return values[values.size() / 2];
}

} // namespace

int main()
{
    const auto home = std::filesystem::temp_directory_path() / ("cramlet-bench-" + std::to_string(getpid()));
    std::filesystem::create_directories(home);
    setenv("XDG_CONFIG_HOME", home.c_str(), 1);
    setenv("XDG_DATA_HOME", home.c_str(), 1);
    setenv("QT_QPA_PLATFORM", "xcb", 0);
    setenv("QT_PLUGIN_PATH", PLUGINS, 1);
    setenv("QT_QPA_GENERIC_PLUGINS", "firstpaint", 1);
    try {
        std::vector<double> program;
        std::vector<double> floor;
        for (int warmUp = 0; warmUp < 3; ++warmUp) {
            millisecondsOf(PROGRAM);
            millisecondsOf(FLOOR);
        }
        for (int round = 0; round < rounds; ++round) {
            program.push_back(millisecondsOf(PROGRAM));
            floor.push_back(millisecondsOf(FLOOR));
        }
        const double ratio = median(program) / median(floor);
        std::printf("start to the first painted window, medians of %d, platform %s\n", rounds,
                    getenv("QT_QPA_PLATFORM"));
        std::printf("  chooser       %6.1f ms\n  empty window  %6.1f ms\n  ratio         %6.2f (at most %.1f)\n",
                    median(program), median(floor), ratio, allowedRatio);
        std::filesystem::remove_all(home);
        return ratio <= allowedRatio ? 0 : 1;
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        std::filesystem::remove_all(home);
        return 2;
    }
}
