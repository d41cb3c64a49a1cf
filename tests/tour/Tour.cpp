#include "app/Module1.h"
#include "app/ProgramFiles.h"
#include "forms/frmCardOptions/frmCardOptions.h"
#include "forms/frmEditCards/frmEditCards.h"
#include "forms/frmFlashCard/frmFlashCard.h"
#include "forms/frmNotes/frmNotes.h"
#include "forms/frmOpen/frmOpen.h"
#include "forms/frmOptions/frmOptions.h"
#include "forms/frmTest/frmTest.h"
#include "platform/RichTextBox.h"
#include "platform/SelectAnswer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <random>
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
            window->activateWindow(); // without a screen nobody does when a dialog closes
            expect(QTest::qWaitFor([window] { return QApplication::activeWindow() == window; }),
                   "the window comes to the front");
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

/// Does \p act as soon as a command has opened its dialog.
template <class Act>
void withDialog(Act act)
{
    QTimer::singleShot(0, qApp, act);
}

void answer(QMessageBox::StandardButton button)
{
    QTest::mouseClick(visible<QMessageBox>().button(button), Qt::LeftButton);
}

/// Types where the caret is.
void type(const QWidget &window, const QString &text)
{
    QTest::keyClicks(window.focusWidget(), text);
}

void press(const QWidget &window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(window.focusWidget(), key, modifiers);
}

class Tour
{
public:
    /// Pictures go to \p folder, a subject of the tour's own to \p home.
    Tour(QString folder, const QString &home)
        : m_folder(std::move(folder))
        , m_home(home)
    {
        expect(QDir().mkpath(m_folder), "the folder for the pictures can be made");
        m_module.newGenerator = [] { // the same questions in every tour
            return [generator = std::mt19937()]() mutable {
                return std::uniform_real_distribution<float>(0, 1)(generator);
            };
        };
    }

    void chooseSubject();
    void readNotes();
    void setUpStudy();
    void turnCards();
    void takeTest();
    void beginSubject();
    void writeNotes();
    void writeCards();
    void leave();

private:
    void picture(QWidget &window, const char *name, const char *caption);

    QString m_folder;
    QDir m_home;
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
    click(wizard, "Check2");
    picture(wizard, "options", "...and then for the options.");
    click(wizard, "cmdOK(2)");
}

void Tour::turnCards()
{
    auto &session = visible<frmFlashCard>();
    session.resize(900, 620);
    auto &front = control<RichTextBox>(session, "RichTextBox1(0)");
    auto &back = control<RichTextBox>(session, "RichTextBox1(1)");
    const auto &mark = control<QLabel>(session, "Label1(1)");
    const auto &countdown = control<QLabel>(session, "Label1(2)");
    expect(front.isVisible() && !back.isVisible(), "a card starts on its front");
    expect(countdown.isVisible(), "the flipper counts down");
    const QString question = front.toPlainText();
    QTest::keyClick(&session, Qt::Key_Right);
    expect(front.toPlainText() != question, "the next card asks something else");
    if (!mark.isVisible()) { // a tour that ended early has left it marked
        QTest::keyClick(&session, Qt::Key_M);
    }
    expect(mark.isVisible(), "a card can be marked");
    picture(session, "question", "A card's question, marked for later; the flipper counts down.");
    QTest::keyClick(&session, Qt::Key_Down);
    expect(back.isVisible() && !front.isVisible(), "the card turns over");
    expect(!back.toPlainText().isEmpty(), "the back has an answer");
    picture(session, "answer", "The card turned over.");
    QTest::keyClick(&session, Qt::Key_M);
    expect(!mark.isVisible(), "the mark can be taken away");

    withDialog([this] {
        auto &options = visible<frmCardOptions>();
        click(options, "Check1");
        picture(options, "card-options", "The options can be changed on the way.");
        click(options, "Command1(0)");
    });
    click(session, "Image1(3)");
    expect(front.toPlainText() == question && front.isVisible(), "the options begin again at the first card");
    withDialog([] {
        expect(visible<QMessageBox>().windowTitle() == QStringLiteral("Shuffle Flash Cards"), "shuffling asks first");
        answer(QMessageBox::Yes);
    });
    QTest::keyClick(&session, Qt::Key_S);
    withDialog([] {
        expect(visible<QMessageBox>().windowTitle() == QStringLiteral("First Flash Card"),
               "a shuffled session begins with the first card");
        answer(QMessageBox::Ok);
    });
    QTest::keyClick(&session, Qt::Key_Left);
    QTest::keyClick(&session, Qt::Key_Escape);
}

void Tour::takeTest()
{
    QTest::keyClick(&visible<frmNotes>(), Qt::Key_S, Qt::AltModifier);
    auto &wizard = visible<frmOptions>();
    click(wizard, "Option1(1)");
    auto &topics = control<QListWidget>(wizard, "List1");
    clickItem(topics, 0);
    clickItem(topics, 1);
    click(wizard, "cmdOK(2)");
    click(wizard, "Check3");
    click(wizard, "cmdOK(2)");

    auto &test = visible<frmTest>();
    test.resize(900, 620);
    expect(control<QLabel>(test, "Label1(0)").text() == QStringLiteral("20:0"), "the clock begins at 20 minutes");
    const auto selectors = test.findChildren<SelectAnswer *>();
    constexpr int wrong = 2;
    constexpr int skipped = 5;
    for (int question = 0; question < selectors.size(); ++question) {
        const SelectAnswer &selector = *selectors.at(question);
        expect(test.focusWidget() == &selector, "the keys go to the current question's selector");
        const int answer = question == wrong ? selector.correctAnswer() % 2 + 1 : selector.correctAnswer();
        if (question == skipped) {
            press(test, Qt::Key_Q);
        } else {
            press(test, static_cast<Qt::Key>(Qt::Key_A + answer - 1));
        }
        if (question + 1 < selectors.size()) {
            press(test, Qt::Key_Right);
        }
    }
    press(test, Qt::Key_J);
    expect(test.focusWidget() == selectors.at(skipped), "the search finds the question without an answer");
    picture(test, "test", "A test: every question has an answer selector, and one is still open.");

    withDialog([] { answer(QMessageBox::Yes); });
    QTimer results; // which are told once the question is gone
    results.setInterval(5);
    QObject::connect(&results, &QTimer::timeout, &results, [&results] {
        const auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (box != nullptr && box->windowTitle() == QStringLiteral("Test Results")) {
            results.stop();
            expect(box->text().startsWith(QStringLiteral("Test results: 81% (9 out of 11)")), "the test is graded");
            answer(QMessageBox::Ok);
        }
    });
    results.start();
    press(test, Qt::Key_Escape);
    visible<frmTest>();
    press(test, Qt::Key_Right);
    press(test, Qt::Key_Right);
    expect(test.focusWidget() == selectors.at(wrong), "the questions can be looked through");
    picture(test, "graded-test", "The graded test shows the right answers and the given ones.");
    press(test, Qt::Key_Escape);
    expect(visible<frmNotes>().isVisible(), "the main window comes back");
}

void Tour::beginSubject()
{
    auto &window = visible<frmNotes>();
    withDialog([&] {
        expect(visible<QMessageBox>().windowTitle() == QStringLiteral("Stop Studying"),
               "leaving asks whether to open another subject");
        answer(QMessageBox::Yes);
    });
    QTest::keyClick(&window, Qt::Key_Escape);

    auto &chooser = visible<frmOpen>();
    click(chooser, "Image1(0)");
    withDialog([this] {
        auto &name = control<QLineEdit>(visible<QFileDialog>(), "fileNameEdit");
        name.setText(m_home.filePath(QStringLiteral("Weather.crl")));
        QTest::keyClick(&name, Qt::Key_Return);
    });
    QTest::keyClick(&chooser, Qt::Key_Return);
    expect(window.windowTitle() == QStringLiteral("Cramlet: Weather"), "the main window shows the new subject");
}

void Tour::writeNotes()
{
    auto &window = visible<frmNotes>();
    withDialog([] {
        auto &question = visible<QInputDialog>();
        expect(question.textValue() == QStringLiteral("Chapter 1"), "a name for the first topic is offered");
        question.setTextValue(QStringLiteral("Clouds"));
        QTest::keyClick(&question, Qt::Key_Return);
    });
    QTest::keyClick(&window, Qt::Key_N, Qt::AltModifier);

    auto &notes = control<RichTextBox>(window, "RichTextBox1");
    QTest::keyClick(&window, Qt::Key_E, Qt::AltModifier);
    expect(!notes.isLocked() && control<QWidget>(window, "CoolBar1").isVisible(), "the notes can be edited");
    press(window, Qt::Key_A, Qt::AltModifier);
    press(window, Qt::Key_B, Qt::ControlModifier);
    for (int larger = 0; larger < 4; ++larger) {
        press(window, Qt::Key_Period, Qt::ControlModifier);
    }
    type(window, QStringLiteral("Clouds"));
    press(window, Qt::Key_Return);
    press(window, Qt::Key_A, Qt::AltModifier);
    press(window, Qt::Key_A, Qt::AltModifier);
    press(window, Qt::Key_B, Qt::ControlModifier);
    for (int smaller = 0; smaller < 3; ++smaller) {
        press(window, Qt::Key_Comma, Qt::ControlModifier);
    }
    type(window, QStringLiteral("A cloud is water that floats. How high it floats is in its name:"));
    press(window, Qt::Key_Return);
    press(window, Qt::Key_L, Qt::ControlModifier);
    for (const char *line : {"stratus: low, a grey blanket", "alto...: in the middle", "cirrus: high, made of ice"}) {
        type(window, QString::fromLatin1(line));
        press(window, Qt::Key_Return);
    }
    press(window, Qt::Key_I, Qt::ControlModifier);
    type(window, QStringLiteral("nimbus means rain"));
    picture(window, "notes-editor", "Notes are written with formats of all kinds.");
    press(window, Qt::Key_Escape);
    expect(notes.isLocked() && notes.toPlainText().contains(QStringLiteral("nimbus")), "Escape stores the notes");
}

void Tour::writeCards()
{
    auto &window = visible<frmNotes>();
    QTest::keyClick(&window, Qt::Key_F, Qt::AltModifier);
    auto &editor = visible<frmEditCards>();
    editor.resize(760, 560);
    expect(editor.windowTitle().endsWith(QStringLiteral("(Card 1 of 1)")), "a topic without cards opens on a new one");
    type(editor, QStringLiteral("Which clouds are made of ice?"));
    press(editor, Qt::Key_Down, Qt::AltModifier);
    type(editor, QStringLiteral("Cirrus"));
    press(editor, Qt::Key_Right, Qt::AltModifier);
    expect(editor.windowTitle().endsWith(QStringLiteral("(Card 2 of 2)")), "next goes on to a new card");
    press(editor, Qt::Key_Period, Qt::ControlModifier);
    press(editor, Qt::Key_Period, Qt::ControlModifier);
    type(editor, QStringLiteral("What does "));
    press(editor, Qt::Key_B, Qt::ControlModifier);
    type(editor, QStringLiteral("nimbus"));
    press(editor, Qt::Key_B, Qt::ControlModifier);
    type(editor, QStringLiteral(" mean?"));
    press(editor, Qt::Key_Down, Qt::AltModifier);
    type(editor, QStringLiteral("Rain"));
    picture(editor, "card-editor", "The card editor shows both sides of a card.");
    press(editor, Qt::Key_Escape);
    expect(control<QLabel>(window, "StatusBar1").text() == QStringLiteral("This topic has 2 flash cards."),
           "the main window counts the cards that were written");
}

void Tour::leave()
{
    auto &window = visible<frmNotes>();
    withDialog([] { answer(QMessageBox::No); });
    QTest::keyClick(&window, Qt::Key_Escape);
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
        Tour tour(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("tour"), home.path());
        tour.chooseSubject();
        tour.readNotes();
        tour.setUpStudy();
        tour.turnCards();
        tour.takeTest();
        tour.beginSubject();
        tour.writeNotes();
        tour.writeCards();
        tour.leave();
    } catch (const std::exception &surprise) {
        std::fprintf(stderr, "The tour ended early. It expected: %s\n", surprise.what());
        return 1;
    }
    return 0;
}
