#pragma once

#include "app/Module1.h"
#include "forms/frmNotes/frmNotes.h"
#include "study/StudySettings.h"

#include <QMessageBox>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <string>

/// What came of some walks.
struct WindowTally
{
    int opened = 0;   ///< subjects that the main window has shown
    int editors = 0;  ///< card editors
    int sessions = 0; ///< flash-card sessions
    int tests = 0;
    int reports = 0;  ///< of failures
    int messages = 0; ///< all others
};

/// Answers every message box and input box. A report must name the subject, and what is no report
/// must be one of the program's usual messages. The test fails otherwise.
class BoxWatch
{
public:
    BoxWatch(QString subject, WindowTally &tally);

    /// The next question whether to grade a test is answered by Yes, and those after it by No.
    void gradeOnce() { m_grades = true; }

private:
    void look();
    void judge(const QMessageBox &box);
    [[nodiscard]] QMessageBox::StandardButton answerTo(const QMessageBox &box);

    QString m_subject;
    WindowTally &m_tally;
    bool m_grades = false;
    QTimer m_watch;
};

/// Shows a subject in the program's windows as a learner would, and gives commands in each, whatever state the
/// file is in. A window that is left half open, or cannot be left, fails the test.
class WindowWalk
{
public:
    /// \p module holds the subject.
    WindowWalk(Module1 &module, WindowTally &tally);

    /// Opens the main window as the chooser does. False: it could not be shown, and the learner knows.
    bool open();
    /// Looks at topics and cards. Gives no command that writes.
    void look();
    /// Edits, studies and deletes.
    void work();
    void close();

    /// Chooses the tab at \p position. Returns "title: notes".
    QString shownTopic(int position);
    /// The fronts of the first \p count cards in a session of all.
    QStringList shownCards(int count);
    /// What the card editor shows as front, at first and after each step forward.
    QStringList editedCards(int count);

private:
    void press(QWidget &window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void run(const char *button);
    void editNotes();
    void editCards();
    template <class Window>
    Window *study(StudyStyle style);
    void session(bool marks);
    void test();
    template <class Window>
    void leave(Window &window);

    Module1 &m_module;
    WindowTally &m_tally;
    BoxWatch m_boxes;
    QPointer<frmNotes> m_notes;
};
