#pragma once

#include "bench/support/Measure.h"

#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

/// Copies a subject, in place of a file that is there. The copy is on the disk: what of it was still on
/// its way there would delay the first commit.
inline void copyToDisk(const std::filesystem::path &from, const std::filesystem::path &to)
{
    std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing);
    const int file = ::open(to.c_str(), O_RDONLY);
    require(file >= 0 && ::fsync(file) == 0, "cannot write a copy");
    ::close(file);
}
