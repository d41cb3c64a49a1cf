#pragma once

#include "bench/support/Measure.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <sys/types.h>

// What the system tells of a process.

inline std::filesystem::path filesOf(::pid_t process)
{
    return std::filesystem::path("/proc") / std::to_string(process);
}

/// The number behind \p name in a file of lines such as "Pss:   1234 kB".
inline double numberIn(const std::filesystem::path &file, const std::string &name)
{
    std::ifstream lines(file);
    std::string word;
    double number = -1;
    while (number < 0 && lines >> word) {
        if (word == name) {
            lines >> number;
        }
    }
    require(number >= 0, ("nothing is known of " + file.string()).c_str());
    return number;
}
