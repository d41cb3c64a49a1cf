#pragma once

#include <QString>

#include <exception>

/// What the learner is told of a command that failed.
struct FailureReport
{
    QString text;    ///< what happened to which file, and what to do about it
    QString details; ///< the failure's number and the engine's own words
};

[[nodiscard]] FailureReport describeFailure(const std::exception &failure);
