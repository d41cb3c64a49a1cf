#include "bench/test/BareTest.h"

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

/// The places of \p keys in the order in which they are written.
std::vector<std::size_t> placesIn(WritingOrder order, const std::vector<int> &keys)
{
    std::vector<std::size_t> places(keys.size());
    std::iota(places.rbegin(), places.rend(), 0);
    if (order == WritingOrder::ByKey) {
        std::ranges::sort(places, {}, [&](std::size_t place) { return keys[place]; });
    }
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
    , m_updateMark(m_engine, "UPDATE FlashCards SET Marked = 1 WHERE rowid = ?")
{
    m_engine.run("PRAGMA journal_mode = DELETE; PRAGMA synchronous = FULL");
    BareStatement select(m_engine, "SELECT rowid FROM FlashCards WHERE NIndex = 1 ORDER BY rowid");
    m_keys = keysOf(select);
}

void BareTest::generate(const DrawnTest &drawn, WritingOrder order)
{
    m_engine.run("BEGIN IMMEDIATE");
    for (std::size_t card = m_keys.size(); card-- > 0;) {
        sqlite3_bind_double(m_updateKey, 1, static_cast<double>(drawn.sortKeys[card]));
        writeRow(m_updateKey, 2, m_keys[card]);
    }
    const std::vector<int> keys = keysOf(m_selectShuffled);
    for (const std::size_t place : placesIn(order, keys)) {
        writeQuestion(m_updateQuestion, drawn.questions[place], keys[place]);
    }
    m_engine.run("COMMIT");
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
    const auto number = [&](int column) { return sqlite3_column_int(select, column); };
    std::vector<StoredCard> cards;
    while (sqlite3_step(select) == SQLITE_ROW) {
        cards.push_back({.key = number(0),
                         .isMarked = number(1) != 0,
                         .sortKey = static_cast<float>(sqlite3_column_double(select, 2)),
                         .question = {.type = number(3) != 0 ? QuestionType::TrueOrFalse : QuestionType::MultipleChoice,
                                      .asked = number(4) != 0 ? Side::Front : Side::Back,
                                      .answer = number(5),
                                      .wrong1 = number(6),
                                      .wrong2 = number(7)}});
    }
    return cards;
}
