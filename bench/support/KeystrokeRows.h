#pragma once

#include "bench/support/Measure.h"
#include "bench/support/PairTable.h"

#include <string>
#include <utility>

/// What happens within this time seems to happen with the key.
inline constexpr double millisecondsOfKeystroke = 16;

/// The median and the 99th percentile of what a key does, in milliseconds; both are bound.
inline void addKeystrokeRows(PairTable &table, const Pair &pair, const PairOfTimes &times)
{
    for (const auto &[name, share] : {std::pair{"", 0.5}, {", 99th percentile", 0.99}}) {
        table.row({pair.thing + name, pair.floor}, quantile(times.ours, share), quantile(times.floor, share),
                  atMost(millisecondsOfKeystroke));
    }
}
