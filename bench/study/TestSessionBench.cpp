#include "bench/study/TestSessionBench.h"

#include "bench/study/SizedSubject.h"
#include "bench/support/BareTest.h"
#include "bench/support/CopyToDisk.h"
#include "bench/support/SeededDraw.h"
#include "study/TestSession.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr double openingBesideUpdates = 2;
constexpr double composingBesideReading = 5;
constexpr double gradingBesideUpdates = 2;

constexpr int questions = 50;
// In a lap.
constexpr int readings = 35;
constexpr int gradings = 9;

StudySettings settingsOf(const SizedSubject &subject)
{
    StudySettings settings = subject.settings();
    settings.questionCount = questions;
    settings.multipleChoicePercent = multipleChoicePercent;
    return settings;
}

std::vector<int> keysOfQuestions(const std::vector<StoredCard> &cards)
{
    std::vector<int> keys(questions);
    std::ranges::transform(cards.begin(), cards.begin() + questions, keys.begin(), &StoredCard::key);
    return keys;
}

// Composing questions.

using Texts = std::array<std::string, 1 + choiceCount>; // of a question and its choices

std::vector<Texts> composeAll(TestSession &session)
{
    std::vector<Texts> texts;
    for (int question = 0; question < questions; ++question) {
        session.goTo(question);
        ShownQuestion shown = session.shown(false);
        texts.push_back({std::move(shown.text), std::move(shown.choices[0]), std::move(shown.choices[1]),
                         std::move(shown.choices[2])});
    }
    return texts;
}

/// The floor: reads each card that a question is made of.
class BareReader
{
public:
    BareReader(const fs::path &path, const std::vector<StoredCard> &cards)
        : m_engine(path)
        , m_selectOwn(m_engine, "SELECT Front, Back, isTrueFalse, isFront, Answer, Wrong1, Wrong2 FROM FlashCards "
                                "WHERE rowid = ?")
        , m_selectFront(m_engine, "SELECT Front FROM FlashCards WHERE rowid = ?")
        , m_selectBack(m_engine, "SELECT Back FROM FlashCards WHERE rowid = ?")
        , m_cards(cards)
    {
    }

    std::vector<Texts> readAll()
    {
        std::vector<Texts> texts;
        for (std::size_t position = 0; position < questions; ++position) {
            texts.push_back(textsOf(m_cards[position].key));
        }
        return texts;
    }

private:
    Texts textsOf(int key)
    {
        step(m_selectOwn, key);
        const bool asksFront = sqlite3_column_int(m_selectOwn, 3) != 0;
        Texts texts;
        texts[0] = text(m_selectOwn, asksFront ? 0 : 1);
        const auto answer = static_cast<std::size_t>(sqlite3_column_int(m_selectOwn, 4));
        texts.at(answer) = text(m_selectOwn, asksFront ? 1 : 0);
        int wrong = 5; // the column
        for (std::size_t choice = 1; choice <= choiceCount; ++choice) {
            if (choice != answer) {
                texts.at(choice) = sideOf(sqlite3_column_int(m_selectOwn, wrong++), !asksFront);
            }
        }
        sqlite3_reset(m_selectOwn);
        return texts;
    }

    std::string sideOf(int position, bool front)
    {
        sqlite3_stmt *select = front ? m_selectFront : m_selectBack;
        step(select, m_cards[static_cast<std::size_t>(position)].key);
        std::string side = text(select, 0);
        sqlite3_reset(select);
        return side;
    }

    static void step(sqlite3_stmt *select, int key)
    {
        sqlite3_bind_int(select, 1, key);
        require(sqlite3_step(select) == SQLITE_ROW, "a card is missing");
    }

    static std::string text(sqlite3_stmt *select, int column)
    {
        const auto *bytes = static_cast<const char *>(sqlite3_column_blob(select, column));
        return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(select, column))};
    }

    BareEngine m_engine;
    BareStatement m_selectOwn;
    BareStatement m_selectFront;
    BareStatement m_selectBack;
    const std::vector<StoredCard> &m_cards; ///< in the order of the test
};

void benchComposing(SizedRows &rows, const SizedSubject &subject, TestSession &session, const fs::path &path,
                    const std::vector<StoredCard> &cards)
{
    BareReader bare(path, cards);
    std::vector<Texts> ours;
    std::vector<Texts> floor;
    const PairOfTimes times = inTurn(
        readings, [&] { return microseconds([&] { ours = composeAll(session); }); },
        [&] { return microseconds([&] { floor = bare.readAll(); }); });
    require(ours == floor, "the two sides did not read the same");
    rows.add(subject, {"compose 50 questions", "the same cards by key"}, times, timesFloor(composingBesideReading));
}

// Grading.

/// The engine writes nothing where a card is marked already.
void unmark(const fs::path &path)
{
    BareEngine engine(path);
    engine.run("UPDATE FlashCards SET Marked = 0 WHERE Marked <> 0");
}

double timeAfterUnmarking(const fs::path &path, const Action &mark)
{
    unmark(path);
    return microseconds(mark);
}

void requireMarked(const std::vector<StoredCard> &cards)
{
    for (std::size_t card = 0; card < cards.size(); ++card) {
        require(cards[card].isMarked == (card < questions), "the wrong cards are marked");
    }
}

void benchGrading(SizedRows &rows, const SizedSubject &subject, TestSession &session, const fs::path &path,
                  const fs::path &barePath)
{
    std::array<int, questions> wrong{};
    std::iota(wrong.begin(), wrong.end(), 0);
    BareTest bare(barePath);
    const std::vector<int> keys = keysOfQuestions(storedCards(barePath));
    const PairOfTimes times = inTurn(
        gradings, [&] { return timeAfterUnmarking(path, [&] { session.markCards(wrong); }); },
        [&] { return timeAfterUnmarking(barePath, [&] { bare.mark(keys); }); });
    requireMarked(storedCards(path));
    require(storedCards(path) == storedCards(barePath), "the two sides did not mark the same");
    rows.add(subject, {"mark the cards of 50 questions", "50 updates"}, times, timesFloor(gradingBesideUpdates));
}

} // namespace

void benchOpeningTest(SizedRows &rows, const SizedSubject &subject)
{
    const fs::path path = subject.copyOf("Opened.crl");
    const fs::path barePath = subject.copyOf("OpenedBare.crl");
    const StudySettings settings = settingsOf(subject);
    unsigned oursSeed = 1; // another one each time: the engine writes nothing where a row stays as it is
    unsigned floorSeed = 1;
    const Action open = [&] {
        const TestSession session(path, settings, seededDraw(oursSeed++));
        require(session.questionCount() == questions, "questions are missing");
    };
    const Action openFloor = [&] {
        BareTest bare(barePath);
        bare.generate(drawTest(subject.cards, floorSeed++));
        require(bare.questions(questions).size() == questions, "questions are missing");
    };
    const PairOfTimes times = inTurn(
        subject.passes, [&] { return microseconds(open) / 1000; }, [&] { return microseconds(openFloor) / 1000; });
    require(storedCards(path) == storedCards(barePath), "the two sides did not store the same");
    rows.add(subject, {"open a test of 50 questions", "updates and reading"}, times, timesFloor(openingBesideUpdates));
}

void benchQuestions(SizedRows &rows, const SizedSubject &subject)
{
    const fs::path path = subject.copyOf("Test.crl");
    TestSession session(path, settingsOf(subject), seededDraw(1));
    const fs::path barePath = path.parent_path() / "TestBare.crl";
    copyToDisk(path, barePath);
    benchComposing(rows, subject, session, barePath, storedCards(barePath));
    benchGrading(rows, subject, session, path, barePath);
}
