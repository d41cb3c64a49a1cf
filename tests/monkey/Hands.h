#pragma once

#include "tests/monkey/Random.h"

#include <QPointer>
#include <QString>
#include <QWindow>

#include <vector>

class QWidget;

/// The windows that are on the screen, without hints, in the order in which they were made.
[[nodiscard]] std::vector<QWidget *> shownWindows();
/// The one of them that a learner would turn to: a pop-up, else the modal one on top, else the active one. Null if
/// there is none.
[[nodiscard]] QWidget *windowInFront();
/// How the journal calls a widget, and how visits are counted.
[[nodiscard]] QString nameOf(const QWidget &widget);

/// What the learner's hands do at random: keys, mouse, and what a desktop does at their bidding. The events come to
/// the program from below, as those of a real desktop do, in a later turn of its event loop.
///
/// Every function returns what was done.
class Hands
{
public:
    explicit Hands(Random &random);

    /// Something, in \p front or, now and then, in another window.
    QString act(QWidget &front);
    /// Ends \p front: what asks is answered so that the program comes to its end.
    QString leave(QWidget &front);
    QString escape();

private:
    struct Habit
    {
        int weight;
        QString (Hands::*act)(QWidget &window);
    };
    static const std::vector<Habit> &habits();

    QString errand(QWidget &window);
    QString special(QWidget &window);
    QString click(QWidget &window);
    QString doubleClick(QWidget &window);
    QString menuClick(QWidget &window);
    QString press(QWidget &window);
    QString drag(QWidget &window);
    QString release(QWidget &window);
    QString hover(QWidget &window);
    QString wheel(QWidget &window);
    QString key(QWidget &window);
    QString commandKey(QWidget &window);
    QString editingKey(QWidget &window);
    QString typing(QWidget &window);
    QString resize(QWidget &window);
    QString close(QWidget &window);
    QString activate(QWidget &window);
    QString clipboard(QWidget &window);
    QString wait(QWidget &window);

    struct Place
    {
        QWidget *widget;
        QPoint point; ///< in the window
    };
    Place somewhere(QWidget &window);
    Place somewhereIn(QWidget &widget, QWidget &window);
    Qt::KeyboardModifiers someModifiers();
    void sendMouse(QWindow *window, QPoint point, QEvent::Type type, Qt::MouseButton button,
                   Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void sendClick(QWindow *window, QPoint point, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    void sendKey(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString &text = {});

    Random &m_random;
    QPointer<QWindow> m_dragged;               ///< where a button was pressed
    Qt::MouseButtons m_buttons = Qt::NoButton; ///< that are down
};
