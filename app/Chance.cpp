#include "app/Chance.h"

#include <chrono>
#include <random>

float drawSeededFromClock()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    std::mt19937 generator(static_cast<std::mt19937::result_type>(now));
    return std::uniform_real_distribution<float>(0, 1)(generator);
}
