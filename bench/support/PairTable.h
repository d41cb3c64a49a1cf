#pragma once

#include <cstdio>
#include <optional>
#include <string>

/// Prints what we take beside the floor, a row as soon as it is known, and remembers whether every bound held.
class PairTable
{
public:
    explicit PairTable(const char *unit)
    {
        std::printf("\n| %-*s | %9s | %9s | %5s | %-4s |\n", widthOfThing, unit, "ours", "floor", "ratio", "");
        std::printf("|%s|%s:|%s:|%s:|%s|\n", std::string(widthOfThing + 2, '-').c_str(), std::string(10, '-').c_str(),
                    std::string(10, '-').c_str(), std::string(6, '-').c_str(), std::string(6, '-').c_str());
    }

    /// \p holds is empty in a row without a bound.
    void row(const std::string &thing, double ours, double floor, std::optional<bool> holds = std::nullopt)
    {
        m_everyBoundHolds = m_everyBoundHolds && holds.value_or(true);
        const char *verdict = !holds ? "" : *holds ? "ok" : "OVER";
        std::printf("| %-*s | %9.2f | %9.2f | %5.2f | %-4s |\n", widthOfThing, thing.c_str(), ours, floor, ours / floor,
                    verdict);
        std::fflush(stdout);
    }

    [[nodiscard]] bool everyBoundHolds() const { return m_everyBoundHolds; }

private:
    static constexpr int widthOfThing = 58;

    bool m_everyBoundHolds = true;
};
