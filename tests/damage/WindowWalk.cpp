#include "tests/damage/WindowWalk.h"

#include "app/CommandGuard.h"
#include "forms/frmEditCards/frmEditCards.h"
#include "forms/frmFlashCard/frmFlashCard.h"
#include "forms/frmOptions/frmOptions.h"
#include "forms/frmTest/frmTest.h"
#include "platform/RichTextBox.h"
#include "platform/TabStrip.h"
#include "tests/support/Windows.h"

#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QStringList>

#include <algorithm>
#include <utility>

namespace {

const QStringList usualTitles{
    QStringLiteral("Delete Flash Card"), QStringLiteral("Delete Topic"),        QStringLiteral("First Flash Card"),
    QStringLiteral("First Question"),    QStringLiteral("Grade Test"),          QStringLiteral("Last Flash Card"),
    QStringLiteral("Last Question"),     QStringLiteral("No Flash Cards"),      QStringLiteral("No Topic(s)"),
    QStringLiteral("No Topics"),         QStringLiteral("Shuffle Flash Cards"), QStringLiteral("Stop Studying"),
    QStringLiteral("Test Results"),      QStringLiteral("Under 5 flash Cards"),
};

/// The cards that the wizard counted cannot be read any more: no failure of the file.
bool isWithoutCards(const QString &report)
{
    return report.contains(QStringLiteral("of the selected flash cards are left"));
}

} // namespace

BoxWatch::BoxWatch(QString subject, WindowTally &tally)
    : m_subject(std::move(subject))
    , m_tally(tally)
{
    QObject::connect(&m_watch, &QTimer::timeout, &m_watch, [this] { look(); });
    m_watch.start(1);
}

void BoxWatch::look()
{
    QWidget *modal = QApplication::activeModalWidget();
    if (auto *box = qobject_cast<QMessageBox *>(modal); box != nullptr && box->isVisible()) {
        judge(*box);
        QTest::mouseClick(box->button(answerTo(*box)), Qt::LeftButton);
    } else if (auto *input = qobject_cast<QInputDialog *>(modal); input != nullptr && input->isVisible()) {
        input->setTextValue(QStringLiteral("Another name"));
        QTest::keyClick(input->findChild<QLineEdit *>(), Qt::Key_Return);
    }
}

void BoxWatch::judge(const QMessageBox &box)
{
    const bool isReport = box.icon() == QMessageBox::Critical || box.icon() == QMessageBox::Warning;
    ++(isReport ? m_tally.reports : m_tally.messages);
    if (isReport) {
        EXPECT_TRUE(box.text().contains(m_subject) || isWithoutCards(box.text())) << box.text().toStdString();
        EXPECT_TRUE(box.text().contains(QStringLiteral("Error "))) << box.text().toStdString();
    } else {
        EXPECT_TRUE(usualTitles.contains(box.windowTitle()))
            << box.windowTitle().toStdString() << ": " << box.text().toStdString();
    }
}

QMessageBox::StandardButton BoxWatch::answerTo(const QMessageBox &box)
{
    if (box.button(QMessageBox::Yes) == nullptr) {
        return QMessageBox::Ok;
    }
    if (box.windowTitle() == QStringLiteral("Grade Test")) {
        return std::exchange(m_grades, false) ? QMessageBox::Yes : QMessageBox::No;
    }
    return box.windowTitle() == QStringLiteral("Stop Studying") ? QMessageBox::No : QMessageBox::Yes;
}

WindowWalk::WindowWalk(Module1 &module, WindowTally &tally)
    : m_module(module)
    , m_tally(tally)
    , m_boxes(module.subject.path, tally)
{
}

void WindowWalk::press(QWidget &window, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QWidget *focused = window.focusWidget();
    QTest::keyClick(focused != nullptr ? focused : &window, key, modifiers);
}

void WindowWalk::run(const char *button)
{
    click(*m_notes, button);
}

template <class Window>
void WindowWalk::leave(Window &window)
{
    const QPointer<Window> left = &window;
    for (int tries = 0; tries < 5 && left && left->isVisible(); ++tries) {
        press(*left, Qt::Key_Escape);
        settle();
    }
    EXPECT_TRUE(left.isNull() || !left->isVisible()) << "a window that cannot be left";
    delete left.data();
}

bool WindowWalk::open()
{
    runGuarded(nullptr, [&] {
        m_notes = new frmNotes(m_module);
        m_notes->show();
    });
    settle();
    m_tally.opened += m_notes ? 1 : 0;
    return !m_notes.isNull();
}

void WindowWalk::look()
{
    auto &tabs = control<TabStrip>(*m_notes, "TabStrip1");
    for (int tab = 0; tab < std::min(tabs.count(), 12); ++tab) {
        press(*m_notes, Qt::Key_Right);
        EXPECT_FALSE(m_notes->windowTitle().isEmpty());
    }
    session(false);
}

void WindowWalk::work()
{
    editNotes();
    editCards();
    session(true);
    test();
    run("Image1(1)"); // rename
    run("Image1(2)"); // delete
    run("Image1(0)"); // create
    editCards();
}

void WindowWalk::close()
{
    for (int tries = 0; tries < 5 && m_notes; ++tries) {
        m_notes->close();
        settle();
    }
    EXPECT_TRUE(m_notes.isNull()) << "a main window that cannot be left";
    delete m_notes;
}

QString WindowWalk::shownTopic(int position)
{
    auto &tabs = control<TabStrip>(*m_notes, "TabStrip1");
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(position).center());
    settle();
    return control<QLabel>(*m_notes, "Label1").text() + QStringLiteral(": ") +
           control<RichTextBox>(*m_notes, "RichTextBox1").toPlainText();
}

QStringList WindowWalk::shownCards(int count)
{
    QStringList fronts;
    if (auto *window = study<frmFlashCard>(StudyStyle::FlashCards)) {
        for (; fronts.size() < count; press(*window, Qt::Key_Right)) {
            fronts << control<RichTextBox>(*window, "RichTextBox1(0)").toPlainText();
        }
        leave(*window);
    }
    return fronts;
}

QStringList WindowWalk::editedCards(int count)
{
    QStringList fronts;
    run("Image1(3)");
    if (auto *editor = visibleWindow<frmEditCards>()) {
        for (; fronts.size() < count; press(*editor, Qt::Key_Right, Qt::AltModifier)) {
            fronts << control<RichTextBox>(*editor, "RichTextBox1(0)").toPlainText();
        }
        leave(*editor);
    }
    return fronts;
}

void WindowWalk::editNotes()
{
    run("Image1(8)");
    auto &box = control<RichTextBox>(*m_notes, "RichTextBox1");
    if (!box.isLocked()) {
        QTest::keyClicks(&box, QStringLiteral("typed"));
        QTest::keyClick(&box, Qt::Key_Escape);
    }
}

void WindowWalk::editCards()
{
    run("Image1(3)");
    auto *editor = visibleWindow<frmEditCards>();
    if (editor == nullptr) {
        return;
    }
    ++m_tally.editors;
    auto &front = control<RichTextBox>(*editor, "RichTextBox1(0)");
    for (int card = 0; card < 4; ++card) {
        QTest::keyClicks(&front, QStringLiteral("new "));
        press(*editor, Qt::Key_Right, Qt::AltModifier);
    }
    for (const Qt::Key key : {Qt::Key_End, Qt::Key_Insert, Qt::Key_Left, Qt::Key_Delete, Qt::Key_Home}) {
        press(*editor, key, Qt::AltModifier);
    }
    leave(*editor);
}

/// Goes through the wizard with every topic. Null: it was refused, or the study could not be opened.
template <class Window>
Window *WindowWalk::study(StudyStyle style)
{
    run("Image1(4)");
    auto *wizard = visibleWindow<frmOptions>();
    if (wizard == nullptr) {
        return nullptr;
    }
    control<QListWidget>(*wizard, "List1").selectAll();
    if (style == StudyStyle::Test) {
        control<QRadioButton>(*wizard, "Option1(1)").setChecked(true);
    }
    const QPointer<frmOptions> open = wizard;
    click(*wizard, "cmdOK(2)");
    if (open && open->isVisible()) {
        click(*wizard, "cmdOK(2)");
    }
    settle();
    if (open && open->isVisible()) {
        leave(*open);
    }
    auto *window = visibleWindow<Window>();
    EXPECT_NE(window != nullptr, m_notes->isVisible()) << "one window is to be seen";
    return window;
}

void WindowWalk::session(bool marks)
{
    auto *window = study<frmFlashCard>(StudyStyle::FlashCards);
    if (window == nullptr) {
        return;
    }
    ++m_tally.sessions;
    for (int card = 0; card < 8; ++card) {
        press(*window, Qt::Key_Down);
        press(*window, Qt::Key_Right);
    }
    press(*window, Qt::Key_Left);
    if (marks) {
        press(*window, Qt::Key_M);
        press(*window, Qt::Key_S);
        press(*window, Qt::Key_Right);
        press(*window, Qt::Key_M);
    }
    leave(*window);
}

void WindowWalk::test()
{
    auto *window = study<frmTest>(StudyStyle::Test);
    if (window == nullptr) {
        return;
    }
    ++m_tally.tests;
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_Right, Qt::Key_T, Qt::Key_Right, Qt::Key_Q, Qt::Key_J, Qt::Key_B}) {
        press(*window, key);
    }
    m_boxes.gradeOnce();
    press(*window, Qt::Key_Escape);
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Left}) {
        press(*window, key);
    }
    leave(*window);
}
