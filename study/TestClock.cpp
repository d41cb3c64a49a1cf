#include "study/TestClock.h"

namespace {

std::string clockText(int seconds, bool padded)
{
    return std::to_string(seconds / 60) + (padded ? ":0" : ":") + std::to_string(seconds % 60);
}

} // namespace

TestClock::TestClock(int minutes)
    : m_isLimited(minutes != 0)
    , m_secondsLeft(minutes * 60)
{
}

bool TestClock::tick()
{
    return m_secondsLeft > 0 && --m_secondsLeft == 0;
}

std::string TestClock::firstDisplay() const
{
    return clockText(m_secondsLeft, m_secondsLeft % 7 == 0);
}

std::string TestClock::display() const
{
    return clockText(m_secondsLeft, m_secondsLeft % 60 <= 9);
}
