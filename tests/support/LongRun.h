#pragma once

#include <cstdlib>
#include <string>

// Random tests run for a short while in every build, and for long when they are asked to.

/// \p inLongRun if the environment sets CRAMLET_LONG, else \p usual: how often a random test does its thing.
inline int roundsOf(int usual, int inLongRun)
{
    return std::getenv("CRAMLET_LONG") != nullptr ? inLongRun : usual;
}

/// The seed that the environment sets in CRAMLET_SEED, else \p usual. Print it: it replays the run.
inline unsigned seedOr(unsigned usual)
{
    const char *given = std::getenv("CRAMLET_SEED");
    return given != nullptr ? static_cast<unsigned>(std::stoul(given)) : usual;
}
