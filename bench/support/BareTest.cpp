#include "bench/support/BareTest.h"

#include "bench/support/SeededDraw.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <numeric>

namespace {

void writeRow(sqlite3_stmt *update, int keyParameter, int key)
{
    sqlite3_bind_int(update, keyParameter, key);
    require(sqlite3_step(update) == SQLITE_DONE, "a write failed");
    sqlite3_reset(update);
}

void writeQuestion(sqlite3_stmt *update, const TestQuestion &question, int key)
{
    sqlite3_bind_int(update, 1, question.type == QuestionType::TrueOrFalse ? 1 : 0);
    sqlite3_bind_int(update, 2, question.asked == Side::Front ? 1 : 0);
    sqlite3_bind_int(update, 3, question.answer);
    sqlite3_bind_int(update, 4, question.wrong1);
    sqlite3_bind_int(update, 5, question.wrong2);
    writeRow(update, 6, key);
}

/// The question that begins in \p column of the row.
TestQuestion questionIn(sqlite3_stmt *row, int column)
{
    const auto number = [&](int field) { return sqlite3_column_int(row, column + field); };
    return {.type = number(0) != 0 ? QuestionType::TrueOrFalse : QuestionType::MultipleChoice,
            .asked = number(1) != 0 ? Side::Front : Side::Back,
            .answer = number(2),
            .wrong1 = number(3),
            .wrong2 = number(4)};
}

/// The places of \p keys in the order of the keys.
std::vector<std::size_t> placesByKey(const std::vector<int> &keys)
{
    std::vector<std::size_t> places(keys.size());
    std::iota(places.begin(), places.end(), 0);
    std::ranges::sort(places, {}, [&](std::size_t place) { return keys[place]; });
    return places;
}

} // namespace

DrawnTest drawTest(int cards, unsigned seed)
{
    const RandomDraw draw = seededDraw(seed);
    const auto count = static_cast<std::size_t>(cards);
    DrawnTest drawn{std::vector<float>(count), std::vector<TestQuestion>(count)};
    std::generate(drawn.sortKeys.rbegin(), drawn.sortKeys.rend(), std::ref(draw)); // a copy would repeat itself
    for (int position = cards - 1; position >= 0; --position) {
        drawn.questions[static_cast<std::size_t>(position)] =
            drawQuestion(position, cards, multipleChoicePercent, draw);
    }
    return drawn;
}

BareTest::BareTest(const std::filesystem::path &path)
    : m_engine(path)
    , m_updateKey(m_engine, "UPDATE FlashCards SET Shuffle = ? WHERE rowid = ?")
    , m_selectShuffled(m_engine, "SELECT rowid FROM FlashCards WHERE NIndex = 1 ORDER BY Shuffle ASC")
    , m_updateQuestion(m_engine, "UPDATE FlashCards SET isTrueFalse = ?, isFront = ?, Answer = ?, Wrong1 = ?, "
                                 "Wrong2 = ? WHERE rowid = ?")
    , m_selectQuestion(m_engine, "SELECT isTrueFalse, isFront, Answer, Wrong1, Wrong2 FROM FlashCards WHERE rowid = ?")
    , m_updateMark(m_engine, "UPDATE FlashCards SET Marked = 1 WHERE rowid = ?")
{
    m_engine.run("PRAGMA journal_mode = DELETE; PRAGMA synchronous = FULL");
    BareStatement select(m_engine, "SELECT rowid FROM FlashCards WHERE NIndex = 1 ORDER BY rowid");
    m_keys = keysOf(select);
}

void BareTest::generate(const DrawnTest &drawn)
{
    m_engine.run("BEGIN IMMEDIATE");
    for (std::size_t card = m_keys.size(); card-- > 0;) {
        sqlite3_bind_double(m_updateKey, 1, static_cast<double>(drawn.sortKeys[card]));
        writeRow(m_updateKey, 2, m_keys[card]);
    }
    m_shuffled = keysOf(m_selectShuffled);
    for (const std::size_t place : placesByKey(m_shuffled)) {
        writeQuestion(m_updateQuestion, drawn.questions[place], m_shuffled[place]);
    }
    m_engine.run("COMMIT");
}

std::vector<TestQuestion> BareTest::questions(int count)
{
    std::vector<TestQuestion> questions;
    for (int question = 0; question < count; ++question) {
        sqlite3_bind_int(m_selectQuestion, 1, m_shuffled.at(static_cast<std::size_t>(question)));
        require(sqlite3_step(m_selectQuestion) == SQLITE_ROW, "a card is missing");
        questions.push_back(questionIn(m_selectQuestion, 0));
        sqlite3_reset(m_selectQuestion);
    }
    return questions;
}

void BareTest::mark(std::span<const int> keys)
{
    m_engine.run("BEGIN IMMEDIATE");
    for (const int key : keys) {
        writeRow(m_updateMark, 1, key);
    }
    m_engine.run("COMMIT");
}

std::vector<StoredCard> storedCards(const std::filesystem::path &path)
{
    BareEngine engine(path);
    BareStatement select(engine, "SELECT rowid, Marked, Shuffle, isTrueFalse, isFront, Answer, Wrong1, Wrong2 "
                                 "FROM FlashCards WHERE NIndex = 1 ORDER BY Shuffle ASC");
    std::vector<StoredCard> cards;
    while (sqlite3_step(select) == SQLITE_ROW) {
        cards.push_back({.key = sqlite3_column_int(select, 0),
                         .isMarked = sqlite3_column_int(select, 1) != 0,
                         .sortKey = static_cast<float>(sqlite3_column_double(select, 2)),
                         .question = questionIn(select, 3)});
    }
    return cards;
}
