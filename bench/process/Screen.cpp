#include "bench/process/Screen.h"

#include "bench/support/Measure.h"

#include <xcb/xcb.h>

Screen::Screen()
    : m_connection(xcb_connect(nullptr, nullptr))
{
    require(xcb_connection_has_error(m_connection) == 0,
            "there is no X screen: DISPLAY names none that answers (bench/run starts one)");
}

Screen::~Screen()
{
    xcb_disconnect(m_connection);
}
