#pragma once

#include <cstring>
#include <functional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

/// Runs \p act in a process of its own, and returns what it returns: a process may give up rights and change what is
/// mounted, but not take it back. Without an answer the process has crashed.
inline std::string inOwnProcess(const std::function<std::string()> &act)
{
    int ends[2];
    if (::pipe(ends) != 0) {
        return "no pipe";
    }
    const ::pid_t child = ::fork();
    if (child == 0) {
        std::string answer;
        try {
            answer = act();
        } catch (const std::exception &failure) {
            answer = std::string("thrown: ") + failure.what();
        }
        answer += '.';
        const bool isWritten = ::write(ends[1], answer.data(), answer.size()) == static_cast<::ssize_t>(answer.size());
        ::_exit(isWritten ? 0 : 1);
    }
    ::close(ends[1]);
    std::string answer;
    char part[4096];
    for (::ssize_t size = 0; (size = ::read(ends[0], part, sizeof part)) > 0;) {
        answer.append(part, static_cast<std::size_t>(size));
    }
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    if (answer.empty()) {
        return "the process ended without an answer";
    }
    answer.pop_back();
    return answer;
}
