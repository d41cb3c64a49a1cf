#include "study/AutoFlipper.h"

void AutoFlipper::arm(int seconds)
{
    begin(seconds, State::Running);
}

void AutoFlipper::armPaused(int seconds)
{
    begin(seconds, State::Paused);
}

void AutoFlipper::begin(int seconds, State state)
{
    m_state = seconds >= 1 ? state : State::Off;
    m_secondsLeft = isOn() ? seconds : 0;
}

void AutoFlipper::end()
{
    if (isOn()) {
        m_state = State::Ended;
    }
}

void AutoFlipper::togglePause()
{
    if (canTogglePause()) {
        m_state = isRunning() ? State::Paused : State::Running;
    }
}

bool AutoFlipper::tick()
{
    if (!isRunning()) {
        return false;
    }
    --m_secondsLeft;
    if (m_secondsLeft > 0) {
        return false;
    }
    end();
    return true;
}
