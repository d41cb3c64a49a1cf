#pragma once

#include <QWidget>

#include <concepts>
#include <functional>
#include <utility>

/// Runs one command of a window: a button, a key, a tick, a load, a close.
///
/// A failure ends the command, and no more: it is reported over \p window, and
/// never reaches Qt's signal code. Returns whether the command ran to its end.
/// While another command shows that it takes long (LongWork), none begins: \p command is left out. Nor does one in
/// a window that has closed or gone away: a double click or a key held down may reach it there still.
/// The command may close and destroy the window.
bool runGuarded(QWidget *window, const std::function<void()> &command);

/// A slot that runs \p method of \p window under the guard.
template <class Window, class... Arguments>
[[nodiscard]] auto guarded(Window *window, void (Window::*method)(Arguments...))
{
    return [window, method](Arguments... arguments) { runGuarded(window, [&] { (window->*method)(arguments...); }); };
}

/// A slot that runs \p command under the guard.
template <std::invocable Command>
[[nodiscard]] auto guarded(QWidget *window, Command command)
{
    return [window, command = std::move(command)] { runGuarded(window, command); };
}
