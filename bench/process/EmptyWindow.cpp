#include "bench/process/BareNotes.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QListWidget>
#include <QScreen>
#include <QTabBar>
#include <QTextEdit>
#include <QToolButton>

namespace {

constexpr int commands = 11;

/// The floor of the main window: its size and its text, and nothing behind its buttons.
QWidget *makeBareNotes()
{
    const BareNotes notes = keptBareNotes(qgetenv("XDG_DATA_HOME").toStdString());
    auto *window = new QWidget;
    window->setObjectName(QStringLiteral("bareNotes"));
    window->setAttribute(Qt::WA_DeleteOnClose);
    const QSize screen = window->screen()->size();
    window->resize(screen.width() / 2, screen.height() * 7 / 10);

    auto *bar = new QHBoxLayout;
    for (int command = 0; command < commands; ++command) {
        bar->addWidget(new QToolButton);
    }
    auto *tabs = new QTabBar;
    for (const QString &tab : notes.tabs) {
        tabs->addTab(tab);
    }
    auto *text = new QTextEdit;
    text->setReadOnly(true);
    text->setHtml(notes.html);

    auto *rows = new QVBoxLayout(window);
    rows->addLayout(bar);
    rows->addWidget(tabs);
    rows->addWidget(text, 1);
    return window;
}

} // namespace

/// The floor of starting a program with a window: the chooser's size, a list
/// and four buttons, nothing in them. One of them leads to the bare notes.
int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QWidget window;
    window.setFixedSize(480, 320);
    (new QListWidget(&window))->setGeometry(110, 90, 300, 210);
    QToolButton *last = nullptr;
    for (int button = 0; button < 4; ++button) {
        last = new QToolButton(&window);
        last->setGeometry(64, 14 + 40 * button, 34, 34);
    }
    last->setObjectName(QStringLiteral("open"));
    QObject::connect(last, &QToolButton::clicked, &window, [&window] {
        makeBareNotes()->show();
        window.close();
    });
    window.show();
    return QApplication::exec();
}
