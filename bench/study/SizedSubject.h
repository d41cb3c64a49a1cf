#pragma once

#include "bench/support/Growth.h"
#include "bench/support/PairTable.h"
#include "store/Statements.h"
#include "study/StudySettings.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <vector>

/// A subject to measure with. The file stays as it is: who writes, writes to a copy.
struct SizedSubject
{
    std::filesystem::path path;
    std::string name; ///< "10,000 cards"
    int cards;        ///< all of topic 1; every tenth is marked
    int scans;        ///< how often in a lap to do what reads all cards
    int passes;       ///< how often in a lap to do what writes all cards
    bool isLargest;

    [[nodiscard]] StudySettings settings() const { return {.cardQuery = cardQuery(std::array{1})}; }

    /// A copy beside it, made by copyToDisk().
    [[nodiscard]] std::filesystem::path copyOf(const char *fileName) const;
};

/// The keys of its cards in the order in which they were made.
inline const std::string keysInOrder = R"(SELECT "Index" FROM FlashCards WHERE NIndex = 1 ORDER BY "Index" ASC)";

/// Collects what things take at each size, and makes rows of it.
class SizedRows
{
public:
    SizedRows(PairTable &table, Growth &growth)
        : m_table(table)
        , m_growth(growth)
    {
    }

    /// Adds \p times to those of the same pair and size. The \p bound is that of the largest size.
    void add(const SizedSubject &subject, const Pair &pair, const PairOfTimes &times, const Bound &bound = {})
    {
        Row &row = rowOf(subject, pair);
        row.bound = bound;
        row.times.ours.insert(row.times.ours.end(), times.ours.begin(), times.ours.end());
        row.times.floor.insert(row.times.floor.end(), times.floor.begin(), times.floor.end());
    }

    /// Makes the rows, and begins anew.
    void tell()
    {
        for (const Row &row : m_rows) {
            const SizedSubject &subject = *row.subject;
            m_table.row({row.pair.thing + ", " + subject.name, row.pair.floor}, row.times,
                        subject.isLargest ? row.bound : Bound{});
            m_growth.add(row.pair, subject.cards, median(row.times.ours), median(row.times.floor));
        }
        m_rows.clear();
    }

private:
    struct Row
    {
        const SizedSubject *subject;
        Pair pair;
        PairOfTimes times{};
        Bound bound{};
    };

    Row &rowOf(const SizedSubject &subject, const Pair &pair)
    {
        const auto known = std::ranges::find_if(
            m_rows, [&](const Row &row) { return row.subject == &subject && row.pair.thing == pair.thing; });
        return known != m_rows.end() ? *known : m_rows.emplace_back(Row{&subject, pair});
    }

    PairTable &m_table;
    Growth &m_growth;
    std::vector<Row> m_rows; ///< in the order in which they came
};
