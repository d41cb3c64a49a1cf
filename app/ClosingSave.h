#pragma once

#include <functional>

class QWidget;

/// Keeps a window open until its work is stored, or the learner gives it up.
///
/// When storing fails, the learner is told and the window stays; from then on an
/// attempt that fails too offers to leave without saving.
class ClosingSave
{
public:
    /// Runs \p save. Returns whether \p window may close.
    [[nodiscard]] bool mayClose(QWidget *window, const std::function<void()> &save);

    /// Runs \p save, and says nothing if it fails: mayClose() will.
    void tryAgain(const std::function<void()> &save);

    /// Whether the last attempt failed and the learner has been told.
    [[nodiscard]] bool hasFailed() const { return m_hasFailed; }
    /// The work was stored on another way.
    void forgetFailure() { m_hasFailed = false; }

private:
    bool m_hasFailed = false;
};
