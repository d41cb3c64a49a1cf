#pragma once

#include "tests/program/Message.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>

/// A folder that is all the home a program has, with a subject to begin with.
class ProgramHome
{
public:
    /// \p subject is the one that the program offers first.
    ProgramHome(std::filesystem::path folder, const std::filesystem::path &subject);

    [[nodiscard]] const std::filesystem::path &folder() const { return m_folder; }

private:
    std::filesystem::path m_folder;
};

/// The program itself, in a process of its own, with a learner in it. Never outlives the test.
class DrivenProgram
{
public:
    /// Seed, letters and diligence of a learner, between blanks.
    DrivenProgram(const ProgramHome &home, const std::string &learner);
    DrivenProgram(const DrivenProgram &) = delete;
    DrivenProgram &operator=(const DrivenProgram &) = delete;
    ~DrivenProgram();

    /// Waits for the next message. None: the program has ended.
    /// Throws std::runtime_error if it says nothing for a minute.
    [[nodiscard]] std::optional<Message> next();
    /// A message that is here already.
    [[nodiscard]] std::optional<Message> take();
    /// Reads what has come. False: the program has ended.
    bool read();
    void answer(char answer) const;
    [[nodiscard]] int descriptor() const { return m_stream; }

    /// Kills the program when this time is over. What it has told before can still be read.
    void killAfter(std::chrono::nanoseconds moment);
    /// Waits for the end. Returns the status of waitpid().
    [[nodiscard]] int wait();

private:
    [[nodiscard]] bool waitForInput(std::chrono::nanoseconds limit) const;

    ::pid_t m_process = -1; ///< -1 once it has been waited for
    int m_stream = -1;
    std::string m_read; ///< and not taken
};
