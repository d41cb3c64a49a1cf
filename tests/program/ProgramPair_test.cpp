#include "store/SubjectWriting.h"
#include "tests/program/DrivenProgram.h"
#include "tests/program/Ledger.h"
#include "tests/study/NoDiskWaits.h" // in the test, not in the programs
#include "tests/support/LongRun.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <algorithm>
#include <array>
#include <chrono>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <poll.h>
#include <set>
#include <string>
#include <sys/wait.h>
#include <utility>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

/// What two programs on one subject may report: that the other is writing, or has deleted what this one shows.
constexpr std::array reports{"Another program is busy with this subject", "This was deleted meanwhile",
                             "fewer than 5 of the selected flash cards are left",
                             "none of the selected flash cards are left"};

/// One of the two programs, and what is in the topics that only it writes in.
class Side
{
public:
    Side(const ProgramHome &home, char letter, const std::string &character, const std::filesystem::path &subject)
        : letters(1, letter)
        , program(home, character)
        , ledger(letters, Studied::Ignored)
        , m_subject(subject)
    {
        ledger.open(own());
    }

    [[nodiscard]] Contents own() const { return readContents(m_subject).ofTopics(letters); }

    const std::string letters;
    DrivenProgram program;
    Ledger ledger;
    Message command;
    bool isAnswerable = false; ///< only the ledger's topics are written by the command
    int commands = 0;
    bool isInCommand = false;
    Clock::time_point heard = Clock::now(); ///< when it said something last
    bool hasEnded = false;

private:
    const std::filesystem::path m_subject;
};

/// Two programs on one subject, with topics of the one (A), of the other (B) and of both (S).
class ProgramPair : public testing::Test
{
protected:
    void SetUp() override
    {
        std::filesystem::create_directory(subject.parent_path());
        SubjectStore::create(subject);
        for (const char *name : {"A1", "B1", "S1", "S2", "S3", "S4"}) {
            addCards(subject, addTopic(subject, name), 12);
        }
        const Contents first = readContents(subject);
        for (const Topic &topic : first.topics) {
            notes.insert(topic.notes);
        }
        for (const Card &card : first.cards) {
            written.insert({card.front, card.back});
        }
    }

    /// Until each has given so many commands; \p diligence is of the one and of the other.
    void work(int commands, unsigned firstSeed, std::pair<int, int> diligence, const char *bWritesIn)
    {
        const auto character = [&](unsigned number, const std::string &letters, int writing) {
            return std::to_string(firstSeed + number) + ' ' + letters + ' ' + std::to_string(writing);
        };
        std::array<Side, 2> sides{Side(home, 'A', character(0, "ASS", diligence.first), subject),
                                  Side(home, 'B', character(1, bWritesIn, diligence.second), subject)};
        const auto hasEnded = [](const Side &side) { return side.hasEnded; };
        while (!std::ranges::all_of(sides, hasEnded)) {
            std::array<pollfd, 2> inputs{};
            for (std::size_t i = 0; i < sides.size(); ++i) {
                inputs.at(i) = {sides.at(i).hasEnded ? -1 : sides.at(i).program.descriptor(), POLLIN, 0};
            }
            ::poll(inputs.data(), inputs.size(), patience);
            const bool areDone = std::ranges::all_of(sides, [&](const Side &s) { return s.commands >= commands; });
            for (std::size_t i = 0; i < sides.size(); ++i) {
                Side &side = sides.at(i);
                if (inputs.at(i).revents != 0) {
                    side.heard = Clock::now();
                    ASSERT_NO_FATAL_FAILURE(listen(side, sides, areDone ? Answer::finish : Answer::go));
                }
                ASSERT_TRUE(side.hasEnded || Clock::now() - side.heard < std::chrono::milliseconds(patience))
                    << "the program of " << side.letters << " hangs after " << lineOf(side.command);
            }
        }
        for (const Side &side : sides) {
            EXPECT_EQ(side.ledger.compare(side.own()), "") << "nobody else writes in the topics of " << side.letters;
            given += side.commands;
        }
        expectWhole();
    }

    std::map<std::string, int> reported; ///< by their first words
    int given = 0;
    int meetings = 0; ///< commands that were given while the other program was in one
    int trouble = 0;  ///< reports of commands that store nothing

private:
    void listen(Side &side, const std::array<Side, 2> &sides, char answer)
    {
        if (!side.program.read()) {
            side.hasEnded = true;
            const int status = side.program.wait();
            ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0)
                << "the program of " << side.letters << " ended with the status " << status << " after "
                << lineOf(side.command);
            return;
        }
        while (const std::optional<Message> message = side.program.take()) {
            const Message rest{message->begin() + 1, message->end()};
            if (message->front() == "begin") {
                begin(side, rest);
                meetings += std::ranges::all_of(sides, &Side::isInCommand) ? 1 : 0;
                side.program.answer(answer);
            } else if (message->front() == "done") {
                side.isInCommand = false;
                ASSERT_NO_FATAL_FAILURE(finish(side, rest));
                expectNoOrphan(sides);
            } else if (message->front() == "failed") {
                side.isInCommand = false;
                ASSERT_NO_FATAL_FAILURE(fail(side, rest.front()));
            } else {
                ++trouble;
                noteReport(rest.front());
            }
        }
    }

    void begin(Side &side, const Message &command)
    {
        side.command = command;
        side.isInCommand = true;
        ++side.commands;
        side.isAnswerable = side.ledger.answersFor(command);
        if (side.isAnswerable) {
            side.ledger.begin(command);
        }
        if (command.front() == "card") {
            written.insert({command.at(5), command.at(6)});
        } else if (command.front() == "notes") {
            notes.insert(command.at(2));
        } else if (command.front() == "create") {
            notes.insert(newTopicNotes(command.at(1)));
        }
    }

    void finish(Side &side, const Message &shown)
    {
        if (side.command.front() == "card" && side.command.at(1) == "new" && shown.size() == 2) {
            written.insert({shown[0], shown[1]});
        }
        if (side.isAnswerable) {
            const std::string wrong = side.ledger.finish(shown, side.own());
            ASSERT_EQ(wrong, "") << "after the end of " << lineOf(side.command);
        }
    }

    void fail(Side &side, const std::string &report)
    {
        noteReport(report);
        if (side.isAnswerable) {
            std::string wrong;
            ASSERT_GE(side.ledger.breakOff(side.own(), wrong), 0)
                << "after the failure of " << lineOf(side.command) << wrong << '\n'
                << report;
        }
    }

    /// Between the two halves of a topic's deletion its cards have none.
    void expectNoOrphan(const std::array<Side, 2> &sides) const
    {
        const auto isDeleting = [](const Side &side) { return side.isInCommand && side.command.front() == "delete"; };
        if (std::ranges::any_of(sides, isDeleting)) {
            return;
        }
        const Contents now = readContents(subject);
        for (const Card &card : now.cards) {
            EXPECT_TRUE(now.hasTopic(card.topic)) << "card " << card.key << " has lost its topic " << card.topic;
        }
    }

    void noteReport(const std::string &report)
    {
        const auto isIn = [&](const char *words) { return report.find(words) != std::string::npos; };
        const auto *known = std::ranges::find_if(reports, isIn);
        EXPECT_NE(known, reports.end()) << report;
        if (known != reports.end()) {
            ++reported[*known];
        }
    }

    void expectWhole() const
    {
        for (const auto &file : std::filesystem::directory_iterator(subject.parent_path())) {
            EXPECT_EQ(file.path(), subject) << "one file is the whole subject";
        }
        SQLite::Database engine(subject.string(), SQLite::OPEN_READWRITE);
        EXPECT_EQ(engine.execAndGet("PRAGMA integrity_check").getString(), "ok");
        const Contents left = readContents(subject);
        for (const Card &card : left.cards) {
            EXPECT_TRUE(left.hasTopic(card.topic)) << "card " << card.key << " has lost its topic " << card.topic;
            EXPECT_TRUE(written.contains({card.front, card.back})) << "nobody wrote card " << card.key;
        }
        for (const Topic &topic : left.topics) {
            EXPECT_TRUE(notes.contains(topic.notes)) << "nobody wrote the notes of " << topic.name;
        }
    }

    static constexpr int patience = 60'000; // milliseconds

    TestFolder folder;
    const std::filesystem::path subject = folder.file("subject") / "World History.crl";
    const ProgramHome home{folder.file("home"), subject};
    std::set<std::pair<std::string, std::string>> written; ///< the two sides of every card that ever was
    std::set<std::string> notes;                           ///< all that were written

protected:
    const unsigned seed = seedOr(73);
};

} // namespace

TEST_F(ProgramPair, TwoProgramsOnOneSubjectLoseNothingOfEachOther)
{
    const int commands = roundsOf(60, 1000);
    ASSERT_NO_FATAL_FAILURE(work(commands, seed, {90, 10}, "B"));
    ASSERT_NO_FATAL_FAILURE(work(commands, seed + 2, {80, 80}, "BSS"));
    std::cout << "two programs, seed " << seed << ": " << given << " commands that store, " << meetings
              << " in the middle of one of the other;";
    int reportCount = 0;
    for (const auto &[words, count] : reported) {
        std::cout << " \"" << words << "\" " << count << " times;";
        reportCount += count;
    }
    std::cout << " of the reports " << trouble << " of commands that store nothing\n";
    EXPECT_GE(given, 4 * commands);
    EXPECT_GT(meetings, commands / 4) << "the programs hardly met";
}
