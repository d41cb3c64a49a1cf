#pragma once

#include <QObject>
#include <QPointer>

#include <chrono>
#include <functional>

class QProgressBar;
class QLabel;
class QWidget;

/// Shows that work on the user-interface thread takes long: a busy pointer after half a
/// second and, after two, a panel with a progress bar in the active window.
///
/// The work calls goesOn() again and again. Then the windows are painted too, but no key or
/// click is taken, and timers' commands are to be left out (see isLettingPaint()). What is
/// shown goes away when the event loop has its turn again.
class LongWork final : public QObject
{
public:
    using Clock = std::function<std::chrono::milliseconds()>;
    [[nodiscard]] static std::chrono::milliseconds steadyTime();

    /// \p now is a clock that only goes forwards.
    explicit LongWork(Clock now);
    ~LongWork() override;

    /// The work goes on: \p done steps of \p total are behind it, or nobody knows if \p total is 0.
    void goesOn(const QString &what, int done, int total);
    /// How long work takes that cannot say anything on the way.
    enum class Silence {
        Noticeable, ///< half a second and more: the pointer is busy at once
        Long,       ///< two seconds and more: the panel is there at once, too
    };
    void willBeSilent(const QString &what, Silence silence);
    /// The same for whoever does not know the display, if there is one.
    static void announce(const QString &what, Silence silence);

    /// Whether the event loop runs inside of work: no command may begin then.
    [[nodiscard]] static bool isLettingPaint();

private:
    void loopTurned();
    void showPointer();
    void showPanel(const QString &what, int done, int total);
    static void letPaint();

    const Clock m_now;
    std::chrono::milliseconds m_since{};   ///< first sign of this piece of work
    std::chrono::milliseconds m_painted{}; ///< last turn of the windows
    bool m_isNew = true;                   ///< no sign of it yet
    bool m_showsPointer = false;
    QPointer<QWidget> m_panel; ///< goes with its window
    QLabel *m_text = nullptr;
    QProgressBar *m_bar = nullptr;
};
