#pragma once

#include <string>

/// The time that is left of a test. It is told of every second.
class TestClock
{
public:
    /// \p minutes 2 to 50; 0 is no limit.
    explicit TestClock(int minutes);

    [[nodiscard]] bool isLimited() const { return m_isLimited; }
    [[nodiscard]] int secondsLeft() const { return m_secondsLeft; } ///< 0 without a limit
    /// A second has passed. True: it was the last one. Nothing without a limit, or when the time is up already.
    [[nodiscard]] bool tick();

    /// "10:0" or "14:00": what a limited test shows until its first second has passed. The number
    /// of zeros follows a rule of its own: two if the seconds are a multiple of 7.
    [[nodiscard]] std::string firstDisplay() const;
    /// "9:05": what it shows after that.
    [[nodiscard]] std::string display() const;

private:
    bool m_isLimited;
    int m_secondsLeft;
};
