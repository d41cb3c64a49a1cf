#pragma once

#include "tests/monkey/Random.h"

#include <QString>
#include <Qt>

#include <array>

class QMimeData;

// What the monkey presses, types and copies.

inline constexpr std::array plainKeys{
    Qt::Key_Tab,      Qt::Key_Backtab, Qt::Key_Left,   Qt::Key_Right,  Qt::Key_Up,        Qt::Key_Down,
    Qt::Key_Return,   Qt::Key_Enter,   Qt::Key_Space,  Qt::Key_Home,   Qt::Key_End,       Qt::Key_PageUp,
    Qt::Key_PageDown, Qt::Key_Delete,  Qt::Key_Insert, Qt::Key_Escape, Qt::Key_Backspace, Qt::Key_F1,
    Qt::Key_Menu,     Qt::Key_F2,      Qt::Key_F4,     Qt::Key_F6,     Qt::Key_F10};

// Letters and keys that mean something somewhere in the program.
inline constexpr std::array letterKeys{Qt::Key_A, Qt::Key_B, Qt::Key_C, Qt::Key_F, Qt::Key_J, Qt::Key_M,
                                       Qt::Key_P, Qt::Key_Q, Qt::Key_S, Qt::Key_T, Qt::Key_1, Qt::Key_2,
                                       Qt::Key_3, Qt::Key_7, Qt::Key_Y, Qt::Key_N};
inline constexpr std::array altKeys{
    Qt::Key_N,    Qt::Key_R,     Qt::Key_D,  Qt::Key_S,    Qt::Key_E,    Qt::Key_F,   Qt::Key_A,      Qt::Key_O,
    Qt::Key_P,    Qt::Key_T,     Qt::Key_M,  Qt::Key_Y,    Qt::Key_Home, Qt::Key_End, Qt::Key_Insert, Qt::Key_Delete,
    Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_C,    Qt::Key_B,   Qt::Key_L,      Qt::Key_I};
inline constexpr std::array controlKeys{
    Qt::Key_C,    Qt::Key_X,    Qt::Key_V,      Qt::Key_Z,      Qt::Key_A,     Qt::Key_Y, Qt::Key_B,        Qt::Key_I,
    Qt::Key_U,    Qt::Key_L,    Qt::Key_E,      Qt::Key_R,      Qt::Key_M,     Qt::Key_T, Qt::Key_K,        Qt::Key_F,
    Qt::Key_H,    Qt::Key_Home, Qt::Key_End,    Qt::Key_Left,   Qt::Key_Right, Qt::Key_1, Qt::Key_3,        Qt::Key_0,
    Qt::Key_Plus, Qt::Key_Tab,  Qt::Key_Return, Qt::Key_Delete, Qt::Key_D,     Qt::Key_O, Qt::Key_Backspace};

/// What is typed at a stretch. Without "/", which could lead anywhere in a file dialog.
[[nodiscard]] const std::array<QString, 12> &sayings();

/// Something for the clipboard, which may be damaged; \p what says what it is. The caller owns it.
[[nodiscard]] QMimeData *someContents(Random &random, QString &what);
