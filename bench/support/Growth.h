#pragma once

#include "bench/support/Measure.h"
#include "bench/support/PairTable.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

/// More than this exponent of the time over the size is more than linear work.
inline constexpr double largestExponent = 1.1;

/// Up to so many cards the exponents are bound: beyond, what the machine keeps in memory decides.
inline constexpr double largestBoundSize = 100'000;

/// Collects what the same things take at growing sizes, and tells how fast it grows.
class Growth
{
public:
    /// No exponent of ours may be above \p allowed. Things that should not grow at all get a smaller one.
    explicit Growth(double allowed = largestExponent)
        : m_allowed(allowed)
    {
    }

    /// \p ours and \p floor are what the whole thing took at \p size, not a piece of it.
    void add(const Pair &pair, double size, double ours, double floor)
    {
        Points &points = pointsOf(pair);
        points.sizes.push_back(size);
        points.ours.push_back(ours);
        points.floor.push_back(floor);
    }

    /// A row for each thing with the exponents of the power laws through its points, of which
    /// ours is bound; and one without a bound if there are points beyond largestBoundSize.
    /// One point alone has no exponent.
    void addRows(PairTable &table) const
    {
        for (const auto &[pair, points] : m_things) {
            const Points bound = points.upTo(largestBoundSize);
            addRow(table, pair, bound, atMost(m_allowed));
            if (bound.sizes.size() < points.sizes.size()) {
                addRow(table, {pair.thing + ", to the largest", pair.floor}, points, {});
            }
        }
    }

private:
    struct Points
    {
        std::vector<double> sizes;
        std::vector<double> ours;
        std::vector<double> floor;

        [[nodiscard]] Points upTo(double size) const
        {
            Points some;
            for (std::size_t point = 0; point < sizes.size(); ++point) {
                if (sizes[point] <= size) {
                    some.sizes.push_back(sizes[point]);
                    some.ours.push_back(ours[point]);
                    some.floor.push_back(floor[point]);
                }
            }
            return some;
        }
    };

    static void addRow(PairTable &table, const Pair &pair, const Points &points, const Bound &bound)
    {
        if (points.sizes.size() < 2) {
            return;
        }
        table.row(pair, fittedExponent(points.sizes, points.ours), fittedExponent(points.sizes, points.floor), bound);
    }

    Points &pointsOf(const Pair &pair)
    {
        for (auto &[known, points] : m_things) {
            if (known.thing == pair.thing && known.floor == pair.floor) {
                return points;
            }
        }
        return m_things.emplace_back(pair, Points{}).second;
    }

    double m_allowed;
    std::vector<std::pair<Pair, Points>> m_things; ///< in the order in which they came
};
