#pragma once

#include <cstdint>

/// Counts down the seconds that a card is shown, and turns it over once.
///
/// It knows no clock: it is told of every second, and of every card and turn.
class AutoFlipper
{
public:
    enum class State : std::uint8_t {
        Off,
        Running,
        Paused, ///< the countdown can be resumed
        Ended,  ///< the card was turned: nothing more until the next card
    };

    /// A card is shown: its countdown begins at \p seconds. Less than 1 switches off.
    void arm(int seconds);
    /// The same, but the countdown waits for togglePause().
    void armPaused(int seconds);
    /// The card was turned, by whomever. The countdown stays where it is.
    void end();
    /// Between Running and Paused; nothing in the other states.
    void togglePause();
    /// A second has passed. True: it was the last one, turn the card over. Nothing unless Running.
    [[nodiscard]] bool tick();

    [[nodiscard]] State state() const { return m_state; }
    [[nodiscard]] bool isOn() const { return m_state != State::Off; }
    [[nodiscard]] bool isRunning() const { return m_state == State::Running; }
    [[nodiscard]] bool canTogglePause() const { return m_state == State::Running || m_state == State::Paused; }
    [[nodiscard]] int secondsLeft() const { return m_secondsLeft; } ///< 0 when off

private:
    void begin(int seconds, State state);

    State m_state = State::Off;
    int m_secondsLeft = 0;
};
