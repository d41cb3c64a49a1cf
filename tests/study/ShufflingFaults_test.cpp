#include "FaultyEngine.h"
#include "store/StoreError.h"
#include "study/FlashCardSession.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

constexpr int cardCount = 6;
constexpr int currentCard = 2;

/// The numbers 1/16, 2/16...
RandomDraw countingDraw()
{
    return [draws = 0]() mutable { return static_cast<float>(++draws) / 16; };
}

/// A session on its third card, whose engine can fail.
class SessionFaults : public testing::Test
{
protected:
    SessionFaults()
    {
        SubjectStore::create(subject);
        const int topic = addTopic(subject, "Topic");
        addCards(subject, topic, cardCount);
        otherProgram().exec("UPDATE FlashCards SET Shuffle = 0.25");
        settings.cardQuery = cardQuery(std::array{topic});
        settings.timeSetting = 9;
    }

    [[nodiscard]] SQLite::Database otherProgram() const { return {subject.string(), SQLite::OPEN_READWRITE}; }
    [[nodiscard]] std::string inFile(const std::string &field) const
    {
        return otherProgram().execAndGet("SELECT group_concat(" + field + ", ' ') FROM FlashCards").getString();
    }

    /// The fronts from the current card to the last and back, with what else the learner sees.
    static std::vector<std::string> seenIn(FlashCardSession &session)
    {
        const int position = session.position();
        std::vector<std::string> seen;
        while (session.previous()) {
        }
        do {
            seen.push_back(session.text(Side::Front) + (session.isMarked() ? " marked" : ""));
        } while (session.next());
        while (session.position() > position) {
            (void)session.previous();
        }
        return seen;
    }

    struct Place
    {
        int position;
        Side side;
        AutoFlipper::State flipper;
        int secondsLeft;
        bool operator==(const Place &) const = default;
    };
    static Place placeOf(const FlashCardSession &session)
    {
        return {session.position(), session.side(), session.flipper().state(), session.flipper().secondsLeft()};
    }

    /// Makes one statement of \p command after the other fail until none does, and expects every time that nothing
    /// is changed and that the command does its work when it is given again. \p field is what it changes.
    /// Returns the number of failures.
    int failEveryStatement(const std::string &field, const std::function<void(FlashCardSession &)> &command)
    {
        const std::string before = inFile(field);
        std::filesystem::copy_file(subject, folder.file("template"));
        std::string after;
        int failures = 0;
        bool isDue = true;
        for (int statement = 1; isDue; ++statement) {
            std::filesystem::copy_file(folder.file("template"), subject,
                                       std::filesystem::copy_options::overwrite_existing);
            FaultyEngine engine;
            FlashCardSession session(subject, settings, [] { return 0.0F; });
            const std::vector<std::string> seen = seenIn(session);
            while (session.position() < currentCard) {
                EXPECT_TRUE(session.next());
            }
            session.showSide(Side::Back);
            session.armFlipper();
            session.tick();
            const Place place = placeOf(session);

            engine.failAt(statement);
            bool failed = false;
            try {
                command(session);
            } catch (const StoreError &failure) {
                failed = true;
                EXPECT_EQ(failure.reason(), StoreError::Reason::Engine) << failure.what();
            }
            isDue = engine.hasFailed();
            EXPECT_EQ(failed, isDue) << "statement " << statement;
            if (failed) {
                ++failures;
                EXPECT_EQ(inFile(field), before) << "statement " << statement;
                EXPECT_EQ(placeOf(session), place) << "statement " << statement;
                EXPECT_EQ(seenIn(session), seen) << "statement " << statement;
                command(session);
            }
            EXPECT_NE(inFile(field), before);
            EXPECT_TRUE(after.empty() || inFile(field) == after);
            after = inFile(field);
        }
        return failures;
    }

    TestFolder folder;
    std::filesystem::path subject = folder.file("subject.crl");
    StudySettings settings;
};

TEST_F(SessionFaults, AShuffleWithAFaultChangesNothingAndSucceedsTheSecondTime)
{
    const int failures =
        failEveryStatement("Shuffle", [](FlashCardSession &session) { EXPECT_TRUE(session.shuffle(countingDraw())); });
    EXPECT_EQ(failures, cardCount + 4); // the last card is written twice; begin, select, commit
}

TEST_F(SessionFaults, AMarkWithAFaultChangesNothingAndSucceedsTheSecondTime)
{
    const int failures = failEveryStatement("Marked", [](FlashCardSession &session) { session.toggleMark(); });
    EXPECT_EQ(failures, 2); // a reading and a writing
}

} // namespace
