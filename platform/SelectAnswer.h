#pragma once

#include "platform/SelectAnswerFace.h"

#include <QString>
#include <QWidget>

/// The answer selector of one question of a test: its number, the choices A, B and C of which one
/// can be chosen, and a flag that marks the question for review.
///
/// It is chosen by the mouse or with A, B, C, 1, 2, 3 (the keypad's too); the flag by a click on it or
/// with Q. Every other key goes on to the window. Once graded it shows the right choice and the
/// given one, told apart by shape as well as colour, and takes no change any more. A click
/// anywhere gives it the focus. Assistive technology hears all of it: "Question 4, answered B,
/// marked for review".
class SelectAnswer : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int CorrectAnswer READ correctAnswer WRITE setCorrectAnswer)
    Q_PROPERTY(bool Graded READ isGraded WRITE setGraded)
    Q_PROPERTY(bool MarkedForReview READ isMarkedForReview WRITE setMarkedForReview)
    Q_PROPERTY(int SelectedAnswer READ selectedAnswer WRITE setSelectedAnswer)
    Q_PROPERTY(QString QuestionNumber READ questionNumber WRITE setQuestionNumber)

public:
    static constexpr int choices = 3;

    explicit SelectAnswer(QWidget *parent = nullptr);

    /// 1 to 3.
    [[nodiscard]] int correctAnswer() const { return m_correctAnswer; }
    void setCorrectAnswer(int answer);

    [[nodiscard]] bool isGraded() const { return m_isGraded; }
    void setGraded(bool graded);

    [[nodiscard]] bool isMarkedForReview() const { return m_isMarkedForReview; }
    void setMarkedForReview(bool marked); ///< nothing once graded

    /// 1 to 3; 0 is none.
    [[nodiscard]] int selectedAnswer() const { return m_selectedAnswer; }
    void setSelectedAnswer(int answer); ///< nothing once graded, or outside 0 to 3

    [[nodiscard]] QString questionNumber() const { return m_questionNumber; }
    void setQuestionNumber(const QString &number);

    /// The same for all selectors, whatever they show.
    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    void focusGained(Qt::FocusReason reason);
    void focusLost(Qt::FocusReason reason);
    /// Every key that is pressed here, before the selector or the window acts on it. Once a press: a key that is
    /// held down is not told again.
    void keyDown(int key, Qt::KeyboardModifiers modifiers);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    using Part = SelectAnswerFace::Part;

    [[nodiscard]] SelectAnswerFace face() const;
    [[nodiscard]] Part partAt(const QPointF &place) const;
    [[nodiscard]] QString verdict() const; ///< on the answer: "answered B, right"
    bool handleKey(const QKeyEvent &event);
    void press(Part part);
    void hover(Part part);
    void showHint(const QPoint &place, const QPoint &globalPlace);
    void becomeCurrent();
    void tellChange();

    QString m_questionNumber;
    int m_correctAnswer = 1;
    int m_selectedAnswer = 0;
    bool m_isMarkedForReview = false;
    bool m_isGraded = false;
    bool m_isCurrent = false; ///< had the focus last of all selectors beside it
    Part m_hovered = Part::Number;
};
