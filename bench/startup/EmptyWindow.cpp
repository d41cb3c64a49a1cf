#include <QApplication>
#include <QListWidget>
#include <QToolButton>

/// The floor of starting a program with a window: the chooser's size, a list
/// and four buttons, nothing in them.
int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QWidget window;
    window.setFixedSize(480, 320);
    (new QListWidget(&window))->setGeometry(110, 90, 300, 210);
    for (int button = 0; button < 4; ++button) {
        (new QToolButton(&window))->setGeometry(64, 14 + 40 * button, 34, 34);
    }
    window.show();
    return QApplication::exec();
}
