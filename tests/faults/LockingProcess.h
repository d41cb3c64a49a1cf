#pragma once

#include <filesystem>
#include <sqlite3.h>
#include <string>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

/// Another process that takes and gives back locks on a subject. Make it before the test opens any subject.
class LockingProcess
{
public:
    explicit LockingProcess(const std::filesystem::path &subject)
    {
        int ends[2] = {-1, -1};
        m_isReady = ::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) == 0;
        m_child = ::fork();
        if (m_child == 0) {
            ::close(ends[0]);
            serve(subject, ends[1]);
        }
        ::close(ends[1]);
        m_socket = ends[0];
    }
    LockingProcess(const LockingProcess &) = delete;
    LockingProcess &operator=(const LockingProcess &) = delete;
    ~LockingProcess()
    {
        ::close(m_socket); // ends it
        ::waitpid(m_child, nullptr, 0);
    }

    enum Lock : char { Shared = 'S', Reserved = 'R', Exclusive = 'E', None = '-' };

    /// Takes the lock, or with None gives it back. False if it is not to be had.
    [[nodiscard]] bool hold(Lock lock) const
    {
        const char command = lock;
        char answer = 0;
        return m_isReady && ::write(m_socket, &command, 1) == 1 && ::read(m_socket, &answer, 1) == 1 && answer == 'y';
    }

private:
    [[noreturn]] static void serve(const std::filesystem::path &subject, int socket)
    {
        sqlite3 *engine = nullptr;
        for (char command = 0; ::read(socket, &command, 1) == 1;) {
            sqlite3_close(engine);
            engine = nullptr;
            const char *begin = command == Shared     ? "BEGIN; SELECT count(*) FROM Topics"
                                : command == Reserved ? "BEGIN IMMEDIATE"
                                                      : "BEGIN EXCLUSIVE";
            const bool isHeld =
                command == None ||
                (sqlite3_open_v2(subject.c_str(), &engine, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK &&
                 sqlite3_exec(engine, begin, nullptr, nullptr, nullptr) == SQLITE_OK);
            const char answer = isHeld ? 'y' : 'n';
            if (::write(socket, &answer, 1) != 1) {
                break;
            }
        }
        ::_exit(0);
    }

    bool m_isReady = false;
    ::pid_t m_child = -1;
    int m_socket = -1;
};
