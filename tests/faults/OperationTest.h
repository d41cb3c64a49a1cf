#pragma once

#include "Operations.h"
#include "app/FailureReport.h"
#include "store/StoreError.h"
#include "tests/support/TestSubject.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <sqlite3.h>
#include <string>

/// What a command came to.
struct Came
{
    std::optional<StoreError> failure;
    std::string answer;
};

/// An operation on a file of its own, which is alone in its folder.
class OperationTest : public testing::Test
{
protected:
    static constexpr std::size_t shownLength = 400; ///< of a subject's contents

    void restore() const
    {
        std::filesystem::remove(subject.string() + "-journal");
        std::filesystem::copy_file(sample, subject, std::filesystem::copy_options::overwrite_existing);
        if (operation->prepare) {
            operation->prepare(subject);
        }
    }

    [[nodiscard]] std::string contents() const { return contentsOf(subject, systemDisk); }

    static Came give(const Command &command)
    {
        try {
            return {{}, command()};
        } catch (const StoreError &failure) {
            return {failure, {}};
        }
    }

    /// Finds out what the operation does without a fault.
    void learn(const Operation &what)
    {
        operation = &what;
        restore();
        before = contents();
        restore();
        answer = what.begin(subject)();
        after = contents();
        ASSERT_TRUE(after.starts_with("ok")) << after;
        halfDone = before;
        afterHalfDone = after;
        if (what.firstChange) {
            restore();
            what.firstChange(subject);
            halfDone = contents();
            ASSERT_NE(halfDone, after);
            (void)what.begin(subject)();
            afterHalfDone = contents();
        }
    }

    void expectOneFile() const
    {
        for (const auto &entry : std::filesystem::directory_iterator(subject.parent_path())) {
            EXPECT_EQ(entry.path(), subject) << "is left behind";
        }
    }

    static void expectFileNamed(const StoreError &failure, const std::filesystem::path &file)
    {
        const QString text = describeFailure(failure).text;
        EXPECT_TRUE(text.contains(QString::fromStdString(file.string()))) << text.toStdString();
    }
    void expectFileNamed(const StoreError &failure) const { expectFileNamed(failure, subject); }

    const char *systemDisk = sqlite3_vfs_find(nullptr)->zName;
    TestFolder folder;
    std::filesystem::path sample = folder.file("sample.crl");
    std::filesystem::path subject =
        (std::filesystem::create_directory(folder.file("own")), folder.file("own") / "subject.crl");

    const Operation *operation = nullptr;
    std::string before;
    std::string halfDone;      ///< before, if the operation makes no more than one change
    std::string after;         ///< the operation
    std::string afterHalfDone; ///< after the operation was begun once more when the first half was done
    std::string answer;        ///< of the operation
};
