#pragma once

#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <stdexcept>
#include <string>

class QListWidget;

/// Something is not as the tour expects it.
struct Surprise : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// Ends the tour if \p seen is false. \p what says what should have been seen.
void expect(bool seen, const char *what);

/// Brings \p window to the front, which nobody does without a screen when a dialog closes.
void bringToFront(QWidget &window);

/// The visible window of this class, in front.
template <class Window>
Window &visible()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *window = qobject_cast<Window *>(widget); window && window->isVisible()) {
            bringToFront(*window);
            return *window;
        }
    }
    throw Surprise(std::string("a window ") + Window::staticMetaObject.className());
}

/// The control of \p window that has this objectName.
template <class Control>
Control &control(const QWidget &window, const char *name)
{
    auto *found = window.findChild<Control *>(QString::fromLatin1(name));
    expect(found != nullptr, name);
    return *found;
}

void click(const QWidget &window, const char *name);
void clickItem(QListWidget &list, int row);

/// Types where the caret is.
void type(const QWidget &window, const QString &text);
/// Presses a key where the focus is.
void press(const QWidget &window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

/// Presses this button of the message box that is open.
void answer(QMessageBox::StandardButton button);

/// Does \p act as soon as a command has opened its dialog.
template <class Act>
void withDialog(Act act)
{
    QTimer::singleShot(0, qApp, act);
}

/// Does something as soon as the message box with a certain title has opened,
/// however many others open before.
class WhenTold
{
public:
    template <class Act>
    WhenTold(const QString &title, Act act)
    {
        m_watch.setInterval(5);
        QObject::connect(&m_watch, &QTimer::timeout, &m_watch, [this, title, act] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (box != nullptr && box->windowTitle() == title) {
                m_watch.stop();
                act(*box);
            }
        });
        m_watch.start();
    }

    [[nodiscard]] bool hasBeenTold() const { return !m_watch.isActive(); }

private:
    QTimer m_watch;
};
