#include "app/Module1.h"
#include "app/ProgramFiles.h"
#include "forms/frmFlashCard/frmFlashCard.h"
#include "forms/frmNotes/frmNotes.h"
#include "forms/frmOpen/frmOpen.h"
#include "forms/frmOptions/frmOptions.h"
#include "platform/RichTextBox.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <stdexcept>

// The tour: the main job of a learner, done with real clicks and keys on the
// real windows and the sample subject, without a screen. It checks what it sees
// on the way and leaves a picture of each window.

namespace {

/// Something is not as the tour expects it.
struct Surprise : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

void expect(bool seen, const char *what)
{
    if (!seen) {
        throw Surprise(what);
    }
}

template <class Window>
Window &visible()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *window = qobject_cast<Window *>(widget); window && window->isVisible()) {
            expect(QTest::qWaitForWindowActive(window), "the window comes to the front");
            return *window;
        }
    }
    throw Surprise(std::string("no window ") + Window::staticMetaObject.className());
}

template <class Control>
Control &control(const QWidget &window, const char *name)
{
    auto *found = window.findChild<Control *>(QString::fromLatin1(name));
    expect(found != nullptr, name);
    return *found;
}

void click(const QWidget &window, const char *name)
{
    QTest::mouseClick(&control<QAbstractButton>(window, name), Qt::LeftButton);
}

void clickItem(QListWidget &list, int row)
{
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(row)).center());
}

class Tour
{
public:
    explicit Tour(QString folder)
        : m_folder(std::move(folder))
    {
        expect(QDir().mkpath(m_folder), "the folder for the pictures can be made");
    }

    void chooseSubject();
    void readNotes();
    void setUpStudy();
    void turnCards();
    void leave();

private:
    void picture(QWidget &window, const char *name, const char *caption);

    QString m_folder;
    Module1 m_module;
    int m_pictures = 0;
};

void Tour::picture(QWidget &window, const char *name, const char *caption)
{
    const QString file = QStringLiteral("%1/%2-%3.png").arg(m_folder).arg(++m_pictures).arg(QLatin1String(name));
    expect(window.grab().save(file), "the picture can be written");
    std::printf("%s\n    %s\n", caption, qPrintable(file));
}

void Tour::chooseSubject()
{
    (new frmOpen(m_module, [this] { (new frmNotes(m_module))->show(); }))->show();
    auto &chooser = visible<frmOpen>();
    auto &subjects = control<QListWidget>(chooser, "List1");
    expect(subjects.currentItem()->text() == QStringLiteral("Using Cramlet"), "the guided tour is selected first");
    clickItem(subjects, 2);
    picture(chooser, "chooser", "The chooser offers two sample subjects.");
    QTest::keyClick(&subjects, Qt::Key_Return);
}

void Tour::readNotes()
{
    auto &window = visible<frmNotes>();
    window.resize(900, 620);
    auto &tabs = control<QTabBar>(window, "TabStrip1");
    auto &notes = control<RichTextBox>(window, "RichTextBox1");
    expect(tabs.count() >= 4, "the states are divided into topics");
    const QString first = notes.toPlainText();
    expect(first.size() > 100, "the first topic has notes");
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
    expect(notes.toPlainText() != first, "another tab shows other notes");
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(0).center());
    expect(control<QLabel>(window, "StatusBar1").text().startsWith(QStringLiteral("This topic has ")),
           "the status line counts the cards");
    picture(window, "notes", "The main window shows the notes of a topic.");
    QTest::keyClick(&tabs, Qt::Key_S, Qt::AltModifier);
}

void Tour::setUpStudy()
{
    auto &wizard = visible<frmOptions>();
    auto &topics = control<QListWidget>(wizard, "List1");
    clickItem(topics, 0);
    clickItem(topics, 1);
    picture(wizard, "topics", "The study wizard asks for the style and the topics...");
    click(wizard, "cmdOK(2)");
    picture(wizard, "options", "...and then for the options.");
    click(wizard, "cmdOK(2)");
}

void Tour::turnCards()
{
    auto &session = visible<frmFlashCard>();
    session.resize(900, 620);
    auto &front = control<RichTextBox>(session, "RichTextBox1(0)");
    auto &back = control<RichTextBox>(session, "RichTextBox1(1)");
    expect(front.isVisible() && !back.isVisible(), "a card starts on its front");
    const QString question = front.toPlainText();
    QTest::keyClick(&session, Qt::Key_Right);
    expect(front.toPlainText() != question, "the next card asks something else");
    picture(session, "question", "A card's question.");
    QTest::keyClick(&session, Qt::Key_Down);
    expect(back.isVisible() && !front.isVisible(), "the card turns over");
    expect(!back.toPlainText().isEmpty(), "the back has an answer");
    picture(session, "answer", "The card turned over.");
    QTest::keyClick(&session, Qt::Key_Escape);
}

void Tour::leave()
{
    auto &window = visible<frmNotes>();
    bool asked = false;
    QTimer::singleShot(0, &window, [&] {
        auto &question = visible<QMessageBox>();
        asked = question.windowTitle() == QStringLiteral("Stop Studying");
        QTest::mouseClick(question.button(QMessageBox::No), Qt::LeftButton);
    });
    QTest::keyClick(&window, Qt::Key_Escape);
    expect(asked, "leaving asks whether to open another subject");
    expect(!window.isVisible(), "the main window closes");
}

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir home; // the learner's own settings stay out of it
    qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    qputenv("XDG_RUNTIME_DIR", home.path().toUtf8());
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    // The offscreen platform remarks on every fixed size; what the tour has to say it prints itself.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    try {
        Tour tour(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("tour"));
        tour.chooseSubject();
        tour.readNotes();
        tour.setUpStudy();
        tour.turnCards();
        tour.leave();
    } catch (const std::exception &surprise) {
        std::fprintf(stderr, "The tour ended early. It expected: %s\n", surprise.what());
        return 1;
    }
    return 0;
}
