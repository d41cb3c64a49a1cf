#pragma once

#include "tests/monkey/Hands.h"
#include "tests/monkey/Health.h"
#include "tests/monkey/Journal.h"
#include "tests/monkey/Places.h"

#include <QObject>
#include <QTextBrowser>

#include <map>
#include <memory>

/// A learner who does things at random, for so many events, with a program that is started as main() does and
/// started again whenever it has ended. Who has not seen all the sights by then goes on for as long again.
///
/// Each event is sent when nothing is left to do of the one before, from whichever event loop runs at that time.
class Monkey final : public QObject
{
public:
    /// \p sights are names of windows, see Story.
    Monkey(unsigned seed, int events, QStringList sights);
    ~Monkey() override;

    /// Returns when all has been done, the program ended as a learner ends it.
    void play();

    /// What went wrong, a line each. The walk ends at the first.
    [[nodiscard]] const QStringList &complaints() const { return m_complaints; }

    struct Story
    {
        std::map<QString, int> visits; ///< events by the window in front: a house window's name, another one's class
        int events = 0;                ///< those that end the program at last not counted
        int starts = 0;                ///< of the program
        int damages = 0;
        int slowTimes = 0; ///< events in which the machine was slow
        int reports = 0;   ///< failures that the learner was told of
        int openings = 0;  ///< links and objects that went to the desktop
        int deepest = 0;   ///< event loops, one in the other
    };
    [[nodiscard]] const Story &story() const { return m_story; }
    [[nodiscard]] const Journal &journal() const { return m_journal; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Program;

    void goOn();
    void look();
    void step();
    void start();
    void end();
    void surround(const std::vector<QWidget *> &shown);
    [[nodiscard]] bool isQuiet();
    void happen(QWidget &front);
    void check(const QStringList &complaints);
    [[nodiscard]] bool isFinishing() const;

    Random m_random;
    Places m_places;
    Journal m_journal;
    HeardWarnings m_warnings;
    Hands m_hands;
    QTextBrowser m_desktop; ///< is told of what is opened, and opens nothing
    std::unique_ptr<Program> m_program;

    const int m_events;
    QStringList m_unseen;  ///< sights
    int m_turns = 0;       ///< of the event loop since the last event
    int m_leaving = 0;     ///< events that end the program
    bool m_isBusy = false; ///< something happened in this turn of the event loop
    Story m_story;
    QStringList m_complaints;
};
