#include "app/Chance.h"

#include <chrono>
#include <random>

RandomDraw generatorSeededFromClock()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    return [generator = std::mt19937(static_cast<std::mt19937::result_type>(now))]() mutable {
        return std::uniform_real_distribution<float>(0, 1)(generator);
    };
}
