#include "bench/rtf/OwnProcess.h"

#include <QProcess>
#include <QStringList>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <malloc.h>

namespace {

constexpr int longestRun = 120'000; // ms

/// A line of the process's status in MiB, e.g. "VmRSS:".
double statusMebibytes(const std::string &name)
{
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        if (word == name) {
            double kibibytes = 0;
            status >> kibibytes;
            return kibibytes / 1024;
        }
    }
    return 0;
}

void forgetPeak()
{
    std::ofstream("/proc/self/clear_refs") << "5";
}

} // namespace

Cost costOf(const std::function<void()> &action)
{
    ::malloc_trim(0); // memory that lies idle would hide what the action takes
    forgetPeak();
    const double before = statusMebibytes("VmRSS:");
    const auto start = std::chrono::steady_clock::now();
    action();
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    return {time.count(), statusMebibytes("VmHWM:") - before};
}

void report(const Cost &cost)
{
    std::printf("%f %f\n", cost.milliseconds, cost.mebibytes);
}

std::optional<Cost> costOfChild(const std::vector<std::string> &arguments)
{
    QStringList list;
    for (const std::string &argument : arguments) {
        list << QString::fromStdString(argument);
    }
    QProcess child;
    child.start(QStringLiteral("/proc/self/exe"), list);
    Cost cost;
    if (!child.waitForFinished(longestRun) || child.exitStatus() != QProcess::NormalExit || child.exitCode() != 0 ||
        std::sscanf(child.readAllStandardOutput().constData(), "%lf %lf", &cost.milliseconds, &cost.mebibytes) != 2) {
        std::fputs(child.readAllStandardError().constData(), stderr);
        return std::nullopt;
    }
    return cost;
}
