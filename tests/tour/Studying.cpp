#include "forms/frmCardOptions/frmCardOptions.h"
#include "forms/frmFlashCard/frmFlashCard.h"
#include "forms/frmNotes/frmNotes.h"
#include "forms/frmOpen/frmOpen.h"
#include "forms/frmOptions/frmOptions.h"
#include "forms/frmTest/frmTest.h"
#include "platform/RichTextBox.h"
#include "platform/SelectAnswer.h"
#include "tests/tour/Steps.h"
#include "tests/tour/Tour.h"

#include <QLabel>
#include <QListWidget>
#include <QTabBar>

namespace {

constexpr QSize usualSize(900, 620);

// Of the test's questions, counted from 0.
constexpr int wrong = 2;
constexpr int skipped = 5;

void chooseFirstTopics(const QWidget &wizard)
{
    auto &topics = control<QListWidget>(wizard, "List1");
    clickItem(topics, 0);
    clickItem(topics, 1);
}

/// Goes on until there is no next card. \p told is told that.
void goToLastCard(frmFlashCard &session, const WhenTold &told)
{
    constexpr int enough = 1000;
    for (int card = 0; card < enough && !told.hasBeenTold(); ++card) {
        QTest::keyClick(&session, Qt::Key_Right);
    }
    expect(told.hasBeenTold(), "the cards come to an end");
}

} // namespace

void Tour::chooseSubject()
{
    (new frmOpen(m_module, [this] { (new frmNotes(m_module))->show(); }))->show();
    auto &chooser = visible<frmOpen>();
    auto &subjects = control<QListWidget>(chooser, "List1");
    expect(subjects.currentItem()->text() == QStringLiteral("Using Cramlet"), "the guided tour is selected first");
    clickItem(subjects, 2);
    m_album.takeDialog(chooser, "1-chooser", "The chooser offers two sample subjects.");
    QTest::keyClick(&subjects, Qt::Key_Return);
}

void Tour::readNotes()
{
    auto &window = visible<frmNotes>();
    m_album.place(window, usualSize);
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
    m_album.takeWindow(window, "2-notes", "The main window shows the notes of a topic.");
    QTest::keyClick(&tabs, Qt::Key_S, Qt::AltModifier);
}

void Tour::setUpStudy()
{
    auto &wizard = visible<frmOptions>();
    chooseFirstTopics(wizard);
    m_album.takeDialog(wizard, "3-topics", "The study wizard asks for the style and the topics...");
    click(wizard, "cmdOK(2)");
    click(wizard, "Check2");
    m_album.takeDialog(wizard, "4-options", "...and then for the options.");
    click(wizard, "cmdOK(2)");
}

void Tour::turnCards()
{
    auto &session = visible<frmFlashCard>();
    m_album.place(session, usualSize);
    auto &front = control<RichTextBox>(session, "RichTextBox1(0)");
    auto &back = control<RichTextBox>(session, "RichTextBox1(1)");
    const auto &mark = control<QLabel>(session, "Label1(1)");
    const auto &countdown = control<QLabel>(session, "Label1(2)");
    expect(front.isVisible() && !back.isVisible(), "a card starts on its front");
    expect(countdown.isVisible(), "the flipper counts down");
    const QString question = front.toPlainText();
    QTest::keyClick(&session, Qt::Key_Right);
    expect(front.toPlainText() != question, "the next card asks something else");
    expect(!mark.isVisible(), "no card is marked yet");
    QTest::keyClick(&session, Qt::Key_M);
    expect(mark.isVisible(), "a card can be marked");
    m_album.takeWindow(session, "5-question", "A card's question, marked for later; the flipper counts down.");
    QTest::keyClick(&session, Qt::Key_Down);
    expect(back.isVisible() && !front.isVisible(), "the card turns over");
    expect(!back.toPlainText().isEmpty(), "the back has an answer");
    m_album.takeWindow(session, "6-answer", "The card turned over.");
    QTest::keyClick(&session, Qt::Key_M);
    expect(!mark.isVisible(), "the mark can be taken away");

    changeCardOptions(session);
    expect(front.toPlainText() == question && front.isVisible(), "the options begin again at the first card");
    shuffleCards(session);
    const WhenTold told(QStringLiteral("Last Flash Card"), [this](QMessageBox &box) {
        m_album.takeDialog(box, "14-last-card", "A message says when there are no more cards.");
        answer(QMessageBox::Ok);
    });
    goToLastCard(session, told);
    QTest::keyClick(&session, Qt::Key_Escape);
}

void Tour::changeCardOptions(frmFlashCard &session)
{
    withDialog([this] {
        auto &options = visible<frmCardOptions>();
        click(options, "Check1");
        m_album.takeDialog(options, "7-card-options", "The options can be changed on the way.");
        click(options, "Command1(0)");
    });
    click(session, "Image1(3)");
}

void Tour::shuffleCards(frmFlashCard &session)
{
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
}

void Tour::takeTest()
{
    QTest::keyClick(&visible<frmNotes>(), Qt::Key_S, Qt::AltModifier);
    setUpTest();
    auto &test = visible<frmTest>();
    m_album.place(test, usualSize);
    expect(control<QLabel>(test, "Label1(0)").text() == QStringLiteral("20:0"), "the clock begins at 20 minutes");
    answerQuestions(test);
    m_album.takeWindow(test, "8-test", "A test: every question has an answer selector, and one is still open.");
    gradeTest(test);
    m_album.takeWindow(test, "9-graded-test", "The graded test shows the right answers and the given ones.");
    press(test, Qt::Key_Escape);
    expect(visible<frmNotes>().isVisible(), "the main window comes back");
}

void Tour::setUpTest()
{
    auto &wizard = visible<frmOptions>();
    click(wizard, "Option1(1)");
    chooseFirstTopics(wizard);
    click(wizard, "cmdOK(2)");
    click(wizard, "Check3");
    m_album.takeDialog(wizard, "13-test-options", "A test has a length, a mix of questions and a time.");
    click(wizard, "cmdOK(2)");
}

void Tour::answerQuestions(frmTest &test)
{
    const auto selectors = test.findChildren<SelectAnswer *>();
    for (int question = 0; question < selectors.size(); ++question) {
        const SelectAnswer &selector = *selectors.at(question);
        expect(test.focusWidget() == &selector, "the keys go to the current question's selector");
        const int choice = question == wrong ? selector.correctAnswer() % 2 + 1 : selector.correctAnswer();
        if (question == skipped) {
            press(test, Qt::Key_Q);
        } else {
            press(test, static_cast<Qt::Key>(Qt::Key_A + choice - 1));
        }
        if (question + 1 < selectors.size()) {
            press(test, Qt::Key_Right);
        }
    }
    press(test, Qt::Key_J);
    expect(test.focusWidget() == selectors.at(skipped), "the search finds the question without an answer");
}

void Tour::gradeTest(frmTest &test)
{
    withDialog([] { answer(QMessageBox::Yes); });
    const WhenTold results(QStringLiteral("Test Results"), [this](QMessageBox &box) {
        expect(box.text().startsWith(QStringLiteral("Test results: 81% (9 out of 11)")), "the test is graded");
        m_album.takeDialog(box, "15-test-results", "The results of the test.");
        answer(QMessageBox::Ok);
    });
    press(test, Qt::Key_Escape);
    expect(results.hasBeenTold(), "the results are told");
    visible<frmTest>();
    press(test, Qt::Key_Right);
    press(test, Qt::Key_Right);
    expect(test.focusWidget() == test.findChildren<SelectAnswer *>().at(wrong), "the questions can be looked through");
}
