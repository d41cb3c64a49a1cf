#include "store/SubjectStore.h"
#include "store/SubjectWriting.h"
#include "tests/program/DrivenProgram.h"
#include "tests/program/Ledger.h"
#include "tests/study/NoDiskWaits.h" // in the test, not in the program
#include "tests/support/LongRun.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <algorithm>
#include <array>
#include <chrono>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::nanoseconds;

// The commands that a kill is aimed at, and none: it falls where no command stores.
constexpr std::array targets{"notes",  "create", "rename",  "delete",   "open",  "card",
                             "remove", "mark",   "shuffle", "generate", "grade", "none"};

constexpr int fewestCards = 250;
constexpr std::size_t fewestTopics = 3;

struct Figures
{
    int inCommand = 0;                 ///< kills of a program that had begun a command and not ended it
    int before = 0;                    ///< of these, none of its writes was in the file
    int between = 0;                   ///< some were, and each of them wholly
    int after = 0;                     ///< all were
    int journals = 0;                  ///< kills that left a change to be undone
    int orphans = 0;                   ///< kills between the two halves of a topic's deletion
    int commands = 0;                  ///< that ended, each compared with the file
    std::map<std::string, int> killed; ///< in which command
};

/// Starts the program again and again, kills it, and looks at what it leaves.
class ProgramKills : public testing::Test
{
protected:
    void SetUp() override
    {
        std::filesystem::create_directory(subject.parent_path());
        SubjectStore::create(subject);
        for (const int cardCount : {150, 80, 40, 0}) {
            addCards(subject, addTopic(subject, 'K' + std::to_string(cardCount)), cardCount);
        }
        ledger.open(readContents(subject));
    }

    /// Starts a program, kills it, and looks at the file or leaves that to the next program.
    void killOnce()
    {
        if (isSeen) {
            growBack();
        }
        DrivenProgram program(home, std::to_string(random() % 100'000) + " K 55");
        ASSERT_NO_FATAL_FAILURE(killAtRandom(program));
        ASSERT_NO_FATAL_FAILURE(hearLastWords(program));
        noteJournal();
        isSeen = false;
        if (random() % 2 == 0) {
            lookAtLeft();
        }
    }

    void lookAtLeft()
    {
        if (!std::exchange(isSeen, true)) {
            SubjectStore(subject).close();
            look();
        }
    }

    Figures figures;

private:
    void killAtRandom(DrivenProgram &program)
    {
        const std::string target = targets.at(static_cast<std::size_t>(below(targets.size())));
        const int patience = below(5); // commands before the one that is killed
        const int commandsBefore = figures.commands;
        while (const std::optional<Message> message = program.next()) {
            const int commands = figures.commands - commandsBefore;
            const bool isTime = ledger.knowsNewCard() && commands >= patience;
            const bool isLate = commands >= patience + 10; // the learner does not do it
            if (message->front() == "begin") {
                ASSERT_NO_FATAL_FAILURE(begin({message->begin() + 1, message->end()}));
                program.answer(Answer::go);
                if (isTime && (target == command.front() || (isLate && ledger.writes() > 0))) {
                    program.killAfter(momentIn(command.front()));
                    return;
                }
            } else if (message->front() == "done") {
                ASSERT_NO_FATAL_FAILURE(finish({message->begin() + 1, message->end()}));
                if (isTime && target == "none") {
                    program.killAfter(randomPart(std::chrono::milliseconds(20)));
                    return;
                }
            } else {
                FAIL() << lineOf(*message);
            }
        }
        FAIL() << "the program ended by itself after " << lineOf(command);
    }

    void begin(const Message &begun)
    {
        if (begun.front() == "ready") {
            ASSERT_NE(begun.at(1).find("World History"), std::string::npos) << begun.at(1);
            if (!std::exchange(isSeen, true)) {
                ASSERT_NO_FATAL_FAILURE(look());
            }
        } else if (begun.front() == "shuffle" || begun.front() == "generate") {
            forgetPasses();
        }
        command = begun;
        ledger.begin(begun);
        isInCommand = true;
        start = Clock::now();
    }

    void finish(const Message &shown)
    {
        const nanoseconds duration = Clock::now() - start;
        nanoseconds &usual = usualDurations[command.front()];
        usual = usual.count() == 0 ? duration : (usual + duration) / 2;
        ++figures.commands;
        isInCommand = false;
        const std::string wrong = ledger.finish(shown, readContents(subject));
        ASSERT_EQ(wrong, "") << "after the end of " << lineOf(command);
    }

    /// What the program told before its death, and was not read. A command that it asks leave for has not begun.
    void hearLastWords(DrivenProgram &program)
    {
        while (const std::optional<Message> message = program.next()) {
            if (message->front() == "done") {
                ASSERT_NO_FATAL_FAILURE(finish({message->begin() + 1, message->end()}));
            } else {
                ASSERT_EQ(message->front(), "begin") << lineOf(*message);
            }
        }
    }

    void noteJournal()
    {
        std::error_code isMissing;
        const auto size = std::filesystem::file_size(subject.string() + "-journal", isMissing);
        figures.journals += !isMissing && size > 0 ? 1 : 0;
    }

    /// The subject as the one finds it who was the first to open it after the kill.
    void look()
    {
        expectOneFile();
        SQLite::Database engine(subject.string(), SQLite::OPEN_READWRITE);
        ASSERT_EQ(engine.execAndGet("PRAGMA integrity_check").getString(), "ok");
        const Contents left = readContents(subject);
        if (!isInCommand) {
            ASSERT_EQ(ledger.compare(left), "") << "no command was begun after " << lineOf(command);
            return;
        }
        const int writes = ledger.writes();
        std::string wrong;
        const int written = ledger.breakOff(left, wrong);
        ASSERT_GE(written, 0) << "in the middle of " << lineOf(command) << wrong;
        if (writes > 0) {
            ++figures.inCommand;
            ++figures.killed[command.front()];
            ++(written == 0 ? figures.before : written == writes ? figures.after : figures.between);
            finishDeletion();
        }
    }

    /// Only the kill of a deletion may leave cards without their topic, and the same deletion takes them away.
    void finishDeletion()
    {
        const Contents &left = ledger.contents();
        const auto isOrphan = [&](const Card &card) { return !left.hasTopic(card.topic); };
        if (std::ranges::none_of(left.cards, isOrphan)) {
            return;
        }
        ASSERT_EQ(command.front(), "delete");
        ++figures.orphans;
        Contents expected = left;
        expected.removeCardsOf(std::stoi(command.at(1)));
        deleteTopic(subject, std::stoi(command.at(1)));
        ledger.open(readContents(subject));
        ASSERT_EQ(ledger.compare(expected), "");
        ASSERT_TRUE(std::ranges::none_of(ledger.contents().cards, isOrphan));
    }

    void expectOneFile() const
    {
        for (const auto &file : std::filesystem::directory_iterator(subject.parent_path())) {
            EXPECT_EQ(file.path(), subject) << "one file is the whole subject";
        }
    }

    /// So that each card tells by itself whether the next pass has reached it.
    void forgetPasses()
    {
        SQLite::Database(subject.string(), SQLite::OPEN_READWRITE)
            .exec("UPDATE FlashCards SET Shuffle = " + std::to_string(Card::notShuffled) +
                  " - \"Index\", Answer = " + std::to_string(Card::notAsked));
        ledger.open(readContents(subject));
    }

    void growBack()
    {
        const auto cardCount = static_cast<int>(ledger.contents().cards.size());
        while (ledger.contents().topics.size() < fewestTopics) {
            addTopic(subject, 'K' + std::to_string(random() % 1000));
            ledger.open(readContents(subject));
        }
        if (cardCount < fewestCards) {
            addCards(subject, ledger.contents().topics.back().key, fewestCards - cardCount);
            ledger.open(readContents(subject));
        }
    }

    nanoseconds momentIn(const std::string &name)
    {
        const nanoseconds usual = usualDurations[name];
        return randomPart((usual.count() > 0 ? usual : std::chrono::milliseconds(20)) / (1 + below(2)));
    }
    nanoseconds randomPart(std::chrono::duration<double, std::nano> whole)
    {
        return std::chrono::duration_cast<nanoseconds>(whole * std::uniform_real_distribution<>(0, 1)(random));
    }
    int below(std::size_t limit) { return static_cast<int>(random() % limit); }

protected:
    const unsigned seed = seedOr(73);

private:
    TestFolder folder;
    const std::filesystem::path subject = folder.file("subject") / "World History.crl";
    const ProgramHome home{folder.file("home"), subject};
    std::mt19937 random{seed};
    Ledger ledger{"K", Studied::Compared};
    Message command;
    bool isInCommand = false;
    bool isSeen = true; ///< what the last kill left
    Clock::time_point start;
    std::map<std::string, nanoseconds> usualDurations; ///< of the commands, as told
};

} // namespace

TEST_F(ProgramKills, AKilledProgramLosesAtMostTheCommandThatItWasIn)
{
    const int kills = roundsOf(30, 300);
    for (int kill = 0; kill < kills; ++kill) {
        SCOPED_TRACE(testing::Message() << "kill " << kill << " with the seed " << seed);
        try {
            ASSERT_NO_FATAL_FAILURE(killOnce());
        } catch (const std::exception &failure) {
            FAIL() << failure.what();
        }
    }
    ASSERT_NO_FATAL_FAILURE(lookAtLeft());
    std::cout << "kills: " << kills << " of the program, seed " << seed << ": " << figures.inCommand
              << " inside a command (" << figures.before << " before it was stored, " << figures.between
              << " between its writes, " << figures.after << " after), " << figures.journals << " journals left, "
              << figures.orphans << " topics half deleted; " << figures.commands << " commands ended and compared\n ";
    for (const auto &[name, count] : figures.killed) {
        std::cout << ' ' << name << ' ' << count;
    }
    std::cout << '\n';
    EXPECT_GT(figures.inCommand, kills / 4) << "too few kills fell into a command";
    EXPECT_GT(figures.journals, 0) << "no kill fell into a write";
}
