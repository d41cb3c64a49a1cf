#pragma once

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <sqlite3.h>
#include <string>
#include <sys/resource.h>
#include <utility>

/// Another program that has the subject open.
class OtherProgram
{
public:
    explicit OtherProgram(const std::filesystem::path &subject)
    {
        EXPECT_EQ(sqlite3_open_v2(subject.c_str(), &m_database, SQLITE_OPEN_READWRITE, nullptr), SQLITE_OK);
    }
    OtherProgram(const OtherProgram &) = delete;
    OtherProgram &operator=(const OtherProgram &) = delete;
    ~OtherProgram() { sqlite3_close(m_database); } // what it began is undone

    void run(const std::string &statements)
    {
        EXPECT_EQ(sqlite3_exec(m_database, statements.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(m_database);
    }

private:
    sqlite3 *m_database = nullptr;
};

/// Why a subject cannot be written, for as long as this lives.
class Trouble
{
public:
    Trouble() = default;
    Trouble(const Trouble &) = delete;
    Trouble &operator=(const Trouble &) = delete;
    virtual ~Trouble() = default;
};

/// Another program holds the file.
class Locked final : public Trouble
{
public:
    explicit Locked(const std::filesystem::path &subject)
        : m_other(subject)
    {
        m_other.run("BEGIN EXCLUSIVE");
    }

private:
    OtherProgram m_other;
};

/// No file of this process can grow or be written.
class FullDisk final : public Trouble
{
public:
    explicit FullDisk(const std::filesystem::path & /*subject*/)
    {
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &m_before), 0);
        const rlimit full{0, m_before.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
    }
    ~FullDisk() override
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    void (*m_handler)(int) = SIG_DFL;
    rlimit m_before{};
};

/// The file lies elsewhere.
class MovedAway final : public Trouble
{
public:
    explicit MovedAway(std::filesystem::path subject)
        : m_subject(std::move(subject))
        , m_elsewhere(m_subject.string() + ".moved")
    {
        std::filesystem::rename(m_subject, m_elsewhere);
    }
    ~MovedAway() override { std::filesystem::rename(m_elsewhere, m_subject); }

private:
    std::filesystem::path m_subject;
    std::filesystem::path m_elsewhere;
};

/// The file is deleted; a copy is brought back.
class Deleted final : public Trouble
{
public:
    explicit Deleted(std::filesystem::path subject)
        : m_subject(std::move(subject))
        , m_copy(m_subject.string() + ".copy")
    {
        std::filesystem::copy_file(m_subject, m_copy);
        std::filesystem::remove(m_subject);
    }
    ~Deleted() override { std::filesystem::rename(m_copy, m_subject); }

private:
    std::filesystem::path m_subject;
    std::filesystem::path m_copy;
};

/// A trouble, and what the learner is told of it.
struct Cause
{
    const char *name;
    std::unique_ptr<Trouble> (*begin)(const std::filesystem::path &subject);
    const char *report; ///< what the learner reads of it
};

inline void PrintTo(const Cause &cause, std::ostream *out)
{
    *out << cause.name;
}

template <class Kind>
std::unique_ptr<Trouble> begin(const std::filesystem::path &subject)
{
    return std::make_unique<Kind>(subject);
}

inline constexpr Cause locked{"Locked", begin<Locked>, "Another program is busy"};
inline constexpr Cause fullDisk{"FullDisk", begin<FullDisk>, "The disk is full"};
inline constexpr Cause movedAway{"MovedAway", begin<MovedAway>, "cannot be found"};
inline constexpr Cause deleted{"Deleted", begin<Deleted>, "cannot be found"};

inline std::string nameOfCause(const testing::TestParamInfo<Cause> &row)
{
    return row.param.name;
}
