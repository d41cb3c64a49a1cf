#pragma once

#include <cstddef>
#include <random>
#include <vector>

/// The same choices for the same seed, on every machine.
class Random
{
public:
    explicit Random(unsigned seed)
        : m_generator(seed)
    {
    }

    /// From 0 to below \p end, which is above 0.
    int below(int end) { return static_cast<int>(m_generator() % static_cast<unsigned>(end)); }
    int between(int least, int most) { return least + below(most - least + 1); }
    /// True in \p percent of 100 cases.
    bool chance(int percent) { return below(100) < percent; }

    template <class List>
    auto &oneOf(List &list)
    {
        return list[static_cast<std::size_t>(below(static_cast<int>(std::size(list))))];
    }

private:
    std::mt19937 m_generator;
};
