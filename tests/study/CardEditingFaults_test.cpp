#include "CardEditingTest.h"
#include "FaultyEngine.h"

#include <algorithm>
#include <map>
#include <random>

namespace fs = std::filesystem;

namespace {

using enum Command;

/// Every command, in every situation, with every statement failing once.
class EveryFault : public CardEditingTest, public testing::WithParamInterface<bool>
{
protected:
    struct Situation
    {
        int at;
        const char *typed; ///< null: what is there
        Command command;
    };

    static std::vector<Situation> situations(int count)
    {
        std::vector<Situation> all;
        for (int at = 0; at < count; ++at) {
            for (const char *typed : {static_cast<const char *>(nullptr), "x", ""}) {
                for (const Command command : allCommands) {
                    all.push_back({at, typed, command});
                }
            }
        }
        return all;
    }

    static void type(Boxes &boxes, const Situation &situation)
    {
        boxes.goTo(situation.at);
        if (situation.typed != nullptr) {
            boxes.type(situation.typed, "");
        }
    }

    /// The cards after the command and a save, without a fault.
    Cards undisturbed(const Situation &situation, const fs::path &file)
    {
        replaceByCopyOf(file);
        Boxes boxes = open();
        type(boxes, situation);
        boxes.give(situation.command);
        boxes.give(Save);
        return cards();
    }

    /// Returns false if the command needs fewer statements.
    bool failAt(int statement, const Situation &situation, const fs::path &file, const Cards &expected)
    {
        replaceByCopyOf(file);
        FaultyEngine engine;
        Boxes boxes = open();
        type(boxes, situation);
        const std::string before = boxes.shown();
        if (GetParam()) {
            replaceByCopyOf(subject);
        }
        engine.failAt(statement);
        const std::optional<Reason> failure = boxes.failureOf(situation.command);
        if (!engine.hasFailed()) {
            EXPECT_FALSE(failure);
            return false;
        }
        EXPECT_EQ(failure, Reason::Engine);
        if (situation.command != Remove) {
            EXPECT_TRUE(boxes.shown() == before || isInFile(before) || situation.typed == std::string());
        }
        EXPECT_FALSE(boxes.failureOf(situation.command)) << "the second time";
        EXPECT_FALSE(boxes.failureOf(Save));
        EXPECT_EQ(cards(), expected);
        return true;
    }
};

TEST_P(EveryFault, LosesNothingAndTheCommandSucceedsTheSecondTime)
{
    int faults = 0;
    for (const int count : GetParam() ? std::vector{2} : std::vector{1, 2, 3}) {
        otherProgram().exec("DELETE FROM FlashCards WHERE NIndex = " + std::to_string(topic));
        addCardsNamed(std::string("abc").substr(0, static_cast<std::size_t>(count)));
        const fs::path file = folder.file("template");
        fs::copy_file(subject, file, fs::copy_options::overwrite_existing);
        for (const Situation &situation : situations(count)) {
            const Cards expected = undisturbed(situation, file);
            for (int statement = 1; failAt(statement, situation, file, expected); ++statement) {
                ++faults;
            }
            ASSERT_FALSE(HasFailure()) << count << " cards, at " << situation.at << ", typed "
                                       << (situation.typed != nullptr ? situation.typed : "nothing") << ", command "
                                       << static_cast<int>(situation.command);
        }
    }
    EXPECT_GT(faults, 100);
}

INSTANTIATE_TEST_SUITE_P(Table, EveryFault, testing::Bool(),
                         [](const auto &row) { return row.param ? "InAFileThatWasReplaced" : "InTheFile"; });

/// One walk with all troubles at once, watched from outside.
class ATroubledWalk : public CardEditingTest
{
protected:
    /// The topic's cards by key.
    [[nodiscard]] std::map<int, std::string> cardsByKey() const
    {
        std::map<int, std::string> found;
        SQLite::Database other = otherProgram();
        SQLite::Statement select(other, "SELECT \"Index\", Front, Back FROM FlashCards WHERE NIndex = ?");
        select.bind(1, topic);
        while (select.executeStep()) {
            found[select.getColumn(0)] =
                textOf(select.getColumn(1).getString()) + "/" + textOf(select.getColumn(2).getString());
        }
        return found;
    }

    void deleteOneInFile() const
    {
        otherProgram().exec("DELETE FROM FlashCards WHERE \"Index\" = (SELECT \"Index\" FROM FlashCards "
                            "WHERE NIndex = " +
                            std::to_string(topic) + " ORDER BY \"Index\" * 7919 % 101 LIMIT 1)");
    }

    /// Gives the command while that statement of it fails (0: none), and checks what it did to
    /// the file: at most one card was changed or deleted, and that was the one in the boxes;
    /// nothing that was typed is lost.
    std::optional<Reason> giveWatched(Boxes &boxes, Command command, int faultyStatement)
    {
        const bool hasFile = fs::exists(subject);
        const std::map<int, std::string> before = hasFile ? cardsByKey() : std::map<int, std::string>();
        const std::string typed = boxes.shown();
        const bool isBlank = boxes.isBlank();
        const std::string current = textOf(boxes.editing.sides().front) + "/" + textOf(boxes.editing.sides().back);
        const bool hadCurrent = boxes.editing.position() >= 0;

        engine.failAt(faultyStatement);
        const std::optional<Reason> failure = boxes.failureOf(command);
        engine.hasFailed();
        if (!hasFile) {
            EXPECT_EQ(boxes.shown(), typed);
            EXPECT_FALSE(fs::exists(subject));
            return failure;
        }

        const std::map<int, std::string> after = cardsByKey();
        int touched = 0;
        for (const auto &[key, card] : before) {
            const auto now = after.find(key);
            if (now == after.end() || now->second != card) {
                ++touched;
                EXPECT_TRUE(hadCurrent && card == current) << card << " was not the card in the boxes, " << current;
                EXPECT_TRUE(now != after.end() ? now->second == typed : isBlank || command == Remove) << card;
            }
        }
        EXPECT_LE(touched, 1);
        int added = 0;
        for (const auto &[key, card] : after) {
            if (!before.contains(key)) {
                ++added;
                EXPECT_TRUE(card == "/" || card == typed) << card;
            }
        }
        EXPECT_LE(added, 2);
        if (!isBlank && command != Remove) {
            const bool isStored = std::ranges::any_of(after, [&](const auto &row) { return row.second == typed; });
            EXPECT_TRUE(isStored || boxes.shown() == typed) << typed << " is lost";
        }
        return failure;
    }

    FaultyEngine engine;
};

TEST_F(ATroubledWalk, LosesNothingAndTouchesNoOtherCard)
{
    addCardsNamed("abcdef");
    Boxes boxes = open();
    std::mt19937 random(11); // always the same walk
    std::map<std::optional<Reason>, int> failures;
    for (int step = 0; step < 2000; ++step) {
        if (random() % 3 == 0) {
            boxes.type(random() % 4 == 0 ? " " : std::to_string(step), "");
        }
        const Command command = allCommands[random() % allCommands.size()];
        const auto trouble = random() % 10;
        if (trouble == 0) {
            deleteOneInFile();
        } else if (trouble == 1) {
            replaceByCopyOf(subject);
        } else if (trouble == 2) {
            fs::rename(subject, folder.file("elsewhere"));
            ++failures[giveWatched(boxes, command, 0)];
            fs::rename(folder.file("elsewhere"), subject);
        }
        int faultyStatement = trouble == 1 || trouble > 6 ? 1 + static_cast<int>(random() % 8) : 0;
        int times = 0;
        for (std::optional<Reason> failure = Reason::Engine; failure && times < 4; ++times) {
            failure = giveWatched(boxes, command, std::exchange(faultyStatement, 0));
            ++failures[failure];
            if (failure && random() % 2 == 0) {
                break; // and the next command is another one
            }
        }
        ASSERT_LT(times, 4) << "step " << step << ": the command fails again and again";
        ASSERT_FALSE(HasFailure()) << "step " << step << ", command " << static_cast<int>(command);
    }
    EXPECT_GT(failures[Reason::RowGone], 50);
    EXPECT_GT(failures[Reason::NotFound], 50);
    EXPECT_GT(failures[Reason::Engine], 50);
}

} // namespace
