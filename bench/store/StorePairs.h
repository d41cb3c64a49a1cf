#pragma once

#include "bench/support/Growth.h"
#include "bench/support/Measure.h"
#include "bench/support/PairTable.h"

#include <algorithm>
#include <functional>
#include <utility>

/// Every operation of the store takes at most so many times the bare API's time on the same statements.
inline constexpr double storeBesideBare = 1.5;

/// Things that do not depend on the number of cards may grow with it by this exponent: only the
/// engine's way to a row gets longer, and more of the file lies outside the page cache.
inline constexpr double steadyExponent = 0.5;

/// What the sizes have in common.
struct StoreGrowth
{
    Growth work;
    Growth steady{steadyExponent};
    Growth waiting; ///< how long the disk makes a commit wait moves by more than steadyExponent would bear
};

/// Does a thing once and returns its microseconds; what it prepares does not count.
using Timed = std::function<double()>;

inline Timed timed(Action action)
{
    return [action = std::move(action)] { return microseconds(action); };
}

/// Times pairs over one subject: a row each in the table of its size, and a point of their growth.
class StorePairs
{
public:
    StorePairs(PairTable &table, StoreGrowth &growth, int cards)
        : m_table(table)
        , m_growth(growth)
        , m_cards(cards)
    {
    }

    [[nodiscard]] int cards() const { return m_cards; }

    /// Work over all cards, \p pieces of which the row shows one.
    void work(const Pair &pair, int pieces, const Timed &ours, const Timed &floor)
    {
        const Medians medians = row(pair, pieces, ours, floor);
        m_growth.work.add(pair, m_cards, medians.ours, medians.floor);
    }

    /// \p pieces of work that does not depend on the number of cards.
    void steady(const Pair &pair, int pieces, const Timed &ours, const Timed &floor)
    {
        const Medians medians = row(pair, pieces, ours, floor);
        m_growth.steady.add(pair, m_cards, medians.ours, medians.floor);
    }

    /// The same that ends with a commit.
    void waiting(const Pair &pair, int pieces, const Timed &ours, const Timed &floor)
    {
        const Medians medians =
            row(pair, pieces, measure(ours, floor, timeForWaitingSide), timesFloor(storeBesideBare));
        m_growth.waiting.add(pair, m_cards, medians.ours, medians.floor);
    }

    struct Medians
    {
        double ours;
        double floor;
    };

    /// A row alone. Returns what all pieces took.
    Medians row(const Pair &pair, int pieces, const Timed &ours, const Timed &floor,
                const Bound &bound = timesFloor(storeBesideBare))
    {
        return row(pair, pieces, measure(ours, floor, timeForSide), bound);
    }

private:
    // Many short samples in turn: what disturbs the machine meets few of them.
    static constexpr double shortestSample = 5'000; // microseconds
    static constexpr double timeForSide = 300'000;
    static constexpr double timeForWaitingSide = 1'000'000;
    /// A second: too long for turns enough that a disturbance meets both sides alike. Beyond the bound sizes
    /// nothing is promised of it. It needs no round for nothing either.
    static constexpr double longWork = 1'000'000;
    static constexpr int mostRepeats = 100;
    static constexpr int mostRounds = 51;

    Medians row(const Pair &pair, int pieces, const Medians &medians, const Bound &bound)
    {
        const bool isBound = m_cards <= largestBoundSize || medians.floor < longWork;
        m_table.row(pair, medians.ours / pieces, medians.floor / pieces, isBound ? bound : Bound{});
        return medians;
    }

    [[nodiscard]] Medians measure(const Timed &ours, const Timed &floor, double time) const
    {
        const double once = floor();
        const int repeats = std::clamp(static_cast<int>(shortestSample / once), 1, mostRepeats);
        const int fewestRounds = m_cards > largestBoundSize ? 3 : 9;
        const int rounds = std::clamp(static_cast<int>(time / (once * repeats)), fewestRounds, mostRounds);
        const auto mean = [repeats](const Timed &timed) {
            double sum = 0;
            for (int i = 0; i < repeats; ++i) {
                sum += timed();
            }
            return sum / repeats;
        };
        const PairOfTimes times = inTurn(
            rounds, [&] { return mean(ours); }, [&] { return mean(floor); }, once < longWork ? 1 : 0);
        return {median(times.ours), median(times.floor)};
    }

    PairTable &m_table;
    StoreGrowth &m_growth;
    int m_cards;
};
