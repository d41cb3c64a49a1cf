#pragma once

#include <functional>

class QWidget;

/// Does \p work once after \p window has been painted for the first time: what the learner need not
/// wait for. Never, if the window goes before.
void afterFirstPaint(QWidget &window, std::function<void()> work);
