#pragma once

#include "store/Statements.h"
#include "store/StoreError.h"
#include "store/SubjectStore.h"

#include <SQLiteCpp/Database.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

/// A test with a folder of its own and the path of a subject in it.
class StoreTest : public testing::Test
{
protected:
    using Reason = StoreError::Reason;

    StoreTest()
    {
        std::string name = (std::filesystem::temp_directory_path() / "store-XXXXXX").string();
        folder = ::mkdtemp(name.data());
        path = folder / "Subject.crl";
    }
    ~StoreTest() override
    {
        std::error_code ignored;
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(folder, ignored);
    }

    /// A connection that knows nothing of the store: another program.
    [[nodiscard]] SQLite::Database otherProgram(int flags = SQLite::OPEN_READWRITE) const
    {
        return SQLite::Database(path.string(), flags);
    }

    [[nodiscard]] std::string askOther(const std::string &sql) const
    {
        return otherProgram().execAndGet(sql).getString();
    }

    /// A subject with the cards A, B, C... of topic 1; their keys count from 1.
    void createCards(int count) const
    {
        SubjectStore::create(path);
        SubjectStore store(path);
        Transaction transaction(store);
        RecordSet cards = store.openRecordSet(cardsOfTopic(1));
        for (int card = 0; card < count; ++card) {
            cards.addNew();
            cards.setNumber("NIndex", 1);
            cards.setText("Front", std::string(1, static_cast<char>('A' + card % 26)));
            cards.update();
        }
        transaction.commit();
    }

    [[nodiscard]] std::vector<std::string> filesInFolder() const
    {
        std::vector<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator(folder))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    static std::string bytesOf(const std::filesystem::path &file)
    {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    static void writeBytes(const std::filesystem::path &file, const std::string &bytes)
    {
        std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
    }

    std::filesystem::path folder;
    std::filesystem::path path;
};

/// The error that \p action throws, if it throws one.
inline std::optional<StoreError> errorOf(const std::function<void()> &action)
{
    try {
        action();
    } catch (const StoreError &error) {
        return error;
    }
    return std::nullopt;
}

inline testing::AssertionResult failsWith(StoreError::Reason expected, const std::function<void()> &action)
{
    const std::optional<StoreError> error = errorOf(action);
    if (!error) {
        return testing::AssertionFailure() << "nothing was thrown";
    }
    if (error->reason() != expected) {
        return testing::AssertionFailure() << "reason " << static_cast<int>(error->reason()) << " (" << error->what()
                                           << ") instead of " << static_cast<int>(expected);
    }
    return testing::AssertionSuccess();
}

#define EXPECT_STORE_ERROR(expected, statement)                                                                        \
    EXPECT_TRUE(failsWith(StoreError::Reason::expected, [&] { static_cast<void>(statement); }))

/// Runs \p action in a process of its own, which no permission escapes: as
/// nobody if the test runs as root. Returns the reason of the StoreError that it
/// throws, -1 if it throws none, -2 for anything else.
inline int reasonAsNobody(const std::function<void()> &action)
{
    const ::pid_t child = ::fork();
    if (child == 0) {
        if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) {
            ::_exit(202);
        }
        try {
            action();
        } catch (const StoreError &error) {
            ::_exit(static_cast<int>(error.reason()));
        } catch (...) {
            ::_exit(202);
        }
        ::_exit(201);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 202;
    return code < 200 ? code : 200 - code;
}

#define EXPECT_STORE_ERROR_AS_NOBODY(expected, statement)                                                              \
    EXPECT_EQ(reasonAsNobody([&] { static_cast<void>(statement); }), static_cast<int>(StoreError::Reason::expected))
