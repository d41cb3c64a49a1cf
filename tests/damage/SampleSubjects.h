#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// A subject's bytes, to be damaged.
struct SampleSubject
{
    const char *name;
    std::size_t pageSize;
    std::string bytes;
    const char *sideSuffix = ""; ///< of the file that a killed program has left beside it; empty: none
    std::string sideBytes;       ///< of that file

    [[nodiscard]] bool hasSideFile() const { return *sideSuffix != '\0'; }
};

/// The two subjects that the program comes with; one of hundreds of cards in small pages, with long texts;
/// one with a journal that the next opening plays back, one with a write-ahead log. Made once.
[[nodiscard]] const std::vector<SampleSubject> &sampleSubjects();
