#pragma once

#include <string>

/// The result of a graded test.
struct TestScore
{
    int right;
    int total; ///< at least 1

    /// Truncated: 29 of 50 is 57, because 29 / 50 is a little less than 0.58 in double precision.
    [[nodiscard]] int percent() const;
    /// The message that the learner reads.
    [[nodiscard]] std::string message() const;
};
