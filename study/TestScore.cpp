#include "study/TestScore.h"

int TestScore::percent() const
{
    return static_cast<int>(static_cast<double>(right) / total * 100);
}

std::string TestScore::message() const
{
    return "Test results: " + std::to_string(percent()) + "% (" + std::to_string(right) + " out of " +
           std::to_string(total) + ")\n\nFlash cards for all incorrect questions have been automatically marked.";
}
