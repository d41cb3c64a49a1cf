#pragma once

#include "app/Module1.h"
#include "platform/NotebookPage.h"
#include "study/TestClock.h"
#include "study/TestSession.h"

#include <array>

class AnswerColumn;
class ImageButton;
class QLabel;
class QTimer;
class QuestionSheet;
class RichTextBox;

/// The test's window: one question at a time, an answer selector for each of them, the clock, grading.
///
/// Made with the cards of the program's study settings, which become a test; throws if that
/// fails. Deletes itself when it closes. Closing an ungraded test asks whether to grade it.
class frmTest final : public NotebookPage
{
    Q_OBJECT

public:
    explicit frmTest(Module1 &module);

Q_SIGNALS:
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void layOut();
    void connectCommands();
    void connectSelector(int question);

    // Questions.
    void goToQuestion(int question);
    void reachQuestion(int question);
    void takeFocusBack();
    void actOnKey(int question, int key);
    void ShowQuestion();
    void tellQuestion();

    // The commands.
    void findNextOpen();
    void help();
    void goToPrevious();
    void goToNext();
    [[nodiscard]] bool pressButtonOf(int key);

    // The clock, and the end.
    void tick();
    void showTimeOfDay();
    [[nodiscard]] bool isGraded() const;
    void GradeTest();
    [[nodiscard]] bool mayLeave();

    Module1 &m_module;
    TestSession m_session;
    TestClock m_clock;
    int m_timesShown = 0; ///< how often a question was shown, or tried to be

    std::array<ImageButton *, 5> Image1;       ///< the commands, see Command in the source
    std::array<QLabel *, 6> Label1;            ///< clock, question number, (a), (b), (c), type
    std::array<RichTextBox *, 4> RichTextBox1; ///< the question, and the choices (a), (b), (c)
    QuestionSheet *m_sheet;                    ///< holds the question and the choices
    AnswerColumn *m_column;                    ///< holds the answer selectors
    QTimer *Timer1;                            ///< a second
};
