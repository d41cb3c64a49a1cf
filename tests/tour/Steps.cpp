#include "tests/tour/Steps.h"

#include <QAbstractButton>
#include <QListWidget>

void expect(bool seen, const char *what)
{
    if (!seen) {
        throw Surprise(what);
    }
}

void bringToFront(QWidget &window)
{
    window.activateWindow();
    expect(QTest::qWaitFor([&window] { return QApplication::activeWindow() == &window; }),
           "the window comes to the front");
}

void click(const QWidget &window, const char *name)
{
    QTest::mouseClick(&control<QAbstractButton>(window, name), Qt::LeftButton);
}

void clickItem(QListWidget &list, int row)
{
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(row)).center());
}

void type(const QWidget &window, const QString &text)
{
    QTest::keyClicks(window.focusWidget(), text);
}

void press(const QWidget &window, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(window.focusWidget(), key, modifiers);
}

void answer(QMessageBox::StandardButton button)
{
    QTest::mouseClick(visible<QMessageBox>().button(button), Qt::LeftButton);
}
