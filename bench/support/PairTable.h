#pragma once

#include "bench/support/Measure.h"

#include <cstdint>
#include <optional>
#include <string>

/// What a row promises.
struct Bound
{
    enum class Kind : std::uint8_t {
        None,       ///< nothing: the row only tells
        Ratio,      ///< at most so many times the floor
        Value,      ///< at most so much, whatever the floor takes
        Difference, ///< at most so much more than the floor
    };

    Kind kind = Kind::None;
    double limit = 0;
};

inline Bound timesFloor(double limit)
{
    return {Bound::Kind::Ratio, limit};
}

inline Bound atMost(double limit)
{
    return {Bound::Kind::Value, limit};
}

inline Bound moreThanFloor(double limit)
{
    return {Bound::Kind::Difference, limit};
}

/// What is measured, and the least work that could do the same.
struct Pair
{
    std::string thing;
    std::string floor; ///< empty: there is none
};

/// Prints what we take beside the floor, a row as soon as it is known, and remembers whether every bound held.
///
/// If CRAMLET_BENCH_RESULTS names a file, each row is added to it as an object of JSON, one on a
/// line: `group`, `thing`, `beside`, `unit`, `ours`, `floor`, `bound` ("ratio", "value",
/// "difference" or null), `limit` and `holds`; numbers that do not apply are null.
class PairTable
{
public:
    PairTable(std::string group, std::string unit);

    /// With their medians.
    void row(const Pair &pair, const PairOfTimes &times, const Bound &bound = {});
    void row(const Pair &pair, double ours, std::optional<double> floor, const Bound &bound = {});

    [[nodiscard]] bool everyBoundHolds() const { return m_everyBoundHolds; }

private:
    std::string m_group;
    std::string m_unit;
    bool m_everyBoundHolds = true;
};
