#pragma once

#include "study/RandomDraw.h"

#include <memory>
#include <random>

/// Numbers in [0, 1) that a seed decides. The program and its model get the same ones.
class Draws
{
public:
    explicit Draws(unsigned seed)
        : m_generator(seed)
    {
    }

    /// Half of them are one of a few, so that they repeat; the smallest and the greatest number are among them.
    float next()
    {
        static constexpr float few[] = {0, 0.25F, 0.5F, 0.75F, 0x1.fffffep-1F};
        ++m_drawn;
        const auto raw = static_cast<unsigned>(m_generator());
        return raw % 2 == 0 ? few[raw / 2 % std::size(few)] : static_cast<float>(raw >> 8) * 0x1p-24F;
    }
    [[nodiscard]] int drawn() const { return m_drawn; }

private:
    std::mt19937 m_generator;
    int m_drawn = 0;
};

/// The numbers as the program takes them. \p draws counts them.
inline RandomDraw drawFrom(std::shared_ptr<Draws> draws)
{
    return [draws = std::move(draws)] { return draws->next(); };
}
