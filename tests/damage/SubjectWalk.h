#pragma once

#include "store/StoreError.h"

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

/// What came of the commands of some walks.
struct WalkTally
{
    int commands = 0;
    int refused = 0; ///< of those, by a report
    int writes = 0;  ///< commands that changed the subject and came to their end
    std::map<StoreError::Reason, int> reasons;
};

/// Does with a subject, command after command, all that a learner can do, whatever state its file is in.
///
/// A command may fail, but only by a StoreError, and its report must name the file. The test fails otherwise.
class SubjectWalk
{
public:
    /// \p seed decides which topic is written to, and what chance decides.
    SubjectWalk(std::filesystem::path subject, unsigned seed, WalkTally &tally);

    /// Shows topics, cards and a session. Writes nothing.
    void read();
    /// Studies, edits, and deletes. A command that is whole or nothing must leave the file's bytes
    /// and the files beside it as they were if it fails.
    void write();

private:
    using Command = std::function<void()>;

    bool attempt(const char *what, const Command &command);
    bool attemptWhole(const char *what, const Command &command);
    void expectReport(const char *what, const StoreError &failure);

    void readSession();
    void studySession();
    void takeTest();
    void editCards(int topic);
    [[nodiscard]] std::string allCards() const;
    [[nodiscard]] int cardsToStudy();

    std::filesystem::path m_subject;
    unsigned m_seed;
    WalkTally &m_tally;
    std::vector<int> m_topics;
};
