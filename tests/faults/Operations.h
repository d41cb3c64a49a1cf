#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

// Everything that the program does with a subject file, as commands that can be given to a file in any trouble.

/// A command that has what it needs, an open session included, which is closed when this is destroyed. It can be given
/// again. Returns what the learner would see of it.
using Command = std::function<std::string()>;

struct Operation
{
    const char *name;
    /// What the subject is before, if it is not a subject with cards. Null: that one.
    std::function<void(const std::filesystem::path &subject)> prepare;
    /// Makes the command ready: opens what is open before it.
    std::function<Command(const std::filesystem::path &subject)> begin;
    /// Does the first change of a command that makes two, each of them whole. Null: it makes one, or none.
    std::function<void(const std::filesystem::path &subject)> firstChange;
    bool isPass = false; ///< writes many rows in one transaction
};

/// What kind of subject the operations work on.
struct SubjectSize
{
    int cards;
    int textLength; ///< of a side of a card, and of notes
};

/// Makes the subject with cards.
void makeSubject(const std::filesystem::path &subject, const SubjectSize &size);

[[nodiscard]] const std::vector<Operation> &allOperations();

/// All that the file holds, read by another program on the disk \p diskName; what is wrong with it if it is not
/// intact. A journal that needs to be rolled back is.
[[nodiscard]] std::string contentsOf(const std::filesystem::path &subject, const char *diskName);
