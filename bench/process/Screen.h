#pragma once

struct xcb_connection_t;

/// Holds the X screen that DISPLAY names, on which the measured programs show their windows: while one of
/// these lives, the X server does not start anew when a measured program leaves it.
///
/// Ends this program if there is no such screen.
class Screen
{
public:
    Screen();
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;
    ~Screen();

private:
    xcb_connection_t *m_connection;
};
