#pragma once

#include "tests/damage/FileBytes.h"
#include "tests/support/TestSubject.h"

#include <gtest/gtest.h>
#include <string>

inline constexpr std::size_t subjectPageSize = 4096;

/// A text of several pages of its own, with \p middle on one of those in between.
inline std::string textAcrossPages(const std::string &middle)
{
    return rtfOf(std::string(3 * subjectPageSize, 'a') + middle + std::string(3 * subjectPageSize, 'z'));
}

/// Damages the one text of \p subject that holds \p middle, and nothing else: the page on which that
/// stands leads nowhere.
inline void cutTextAfter(const std::filesystem::path &subject, const std::string &middle)
{
    std::string bytes = bytesOf(subject);
    std::size_t at = bytes.find(middle);
    ASSERT_NE(at, std::string::npos);
    for (; at != std::string::npos; at = bytes.find(middle, at + 1)) { // pages that are free now hold it too
        bytes.replace(at / subjectPageSize * subjectPageSize, 4, 4, '\xff');
    }
    ++bytes.at(27); // a change, for who has the file open
    writeBytes(subject, bytes);
}
