#include "tests/program/Learner.h"

#include <QAbstractButton>
#include <QApplication>
#include <QInputDialog>
#include <QLineEdit>
#include <QScopeGuard>
#include <QTest>
#include <QTextEdit>

#include <cstdlib>
#include <unistd.h>
#include <utility>

Learner::Learner(Character character)
    : m_character(std::move(character))
    , m_random(m_character.seed)
{
    connect(&m_watch, &QTimer::timeout, this, &Learner::answerDialog);
    QTimer::singleShot(0, this, &Learner::act);
}

void Learner::act()
{
    using Window = std::pair<const char *, void (Learner::*)(QWidget &)>;
    // The one that is worked in comes before those that stand behind it.
    static constexpr Window windows[] = {
        {"frmTest", &Learner::takeTest},       {"frmFlashCard", &Learner::studyCards},
        {"frmOptions", &Learner::chooseStudy}, {"frmEditCards", &Learner::editCards},
        {"frmNotes", &Learner::keepNotes},     {"frmOpen", &Learner::openSubject},
    };
    const auto goOn = qScopeGuard([this] { QTimer::singleShot(0, this, &Learner::act); });
    if (answerDialog()) {
        tellTrouble(); // of a command that a timer gave
        return;
    }
    for (const auto &[name, work] : windows) {
        if (QWidget *window = shownWindow(name)) {
            (this->*work)(*window);
            return;
        }
    }
}

QWidget *Learner::shownWindow(const char *name)
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->objectName() == QLatin1String(name)) {
            return window;
        }
    }
    return nullptr;
}

// Input.

void Learner::give(const std::function<void()> &input)
{
    m_isRefused = false;
    m_watch.start(0);
    input();
    m_watch.stop();
    tellTrouble();
}

void Learner::press(QWidget &window, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QWidget *focused = window.focusWidget();
    QTest::keyClick(focused != nullptr ? focused : &window, key, modifiers);
}

void Learner::click(QWidget &window, const char *button)
{
    QTest::mouseClick(window.findChild<QAbstractButton *>(QLatin1String(button)), Qt::LeftButton);
}

void Learner::giveCommand(QWidget &window, const char *button, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    oneIn(2) ? press(window, key, modifiers) : click(window, button);
}

void Learner::store(const Message &what, const std::function<void()> &input)
{
    begin(what);
    give(input);
}

void Learner::reply(Reply reply, const std::function<void()> &input)
{
    m_reply = std::move(reply);
    give(input);
    m_reply.reset();
}

/// Some letters, no two times the same.
void Learner::type(QTextEdit &box)
{
    if (oneIn(4) || box.toPlainText().size() > 400) {
        QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier); // what was there is written over
    }
    if (oneIn(6)) {
        QTest::keyClick(&box, Qt::Key_B, Qt::ControlModifier);
    }
    QTest::keyClicks(&box, QString::fromStdString(newName()));
    if (oneIn(4)) {
        QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_unknown, QString(QChar(0x3b1 + below(24))), Qt::NoModifier);
    }
    if (oneIn(4)) {
        QTest::keyClick(&box, Qt::Key_Return);
    }
}

std::string Learner::newName()
{
    const auto letter =
        m_character.letters[static_cast<std::size_t>(below(static_cast<int>(m_character.letters.size())))];
    return letter + std::to_string(m_character.seed % 1000) + '.' + std::to_string(++m_written);
}

int Learner::below(int limit)
{
    return std::uniform_int_distribution<int>(0, limit - 1)(m_random);
}

// Dialogs.

/// False: there is none.
bool Learner::answerDialog()
{
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (dialog == nullptr || !dialog->isVisible()) {
        return false;
    }
    if (auto *box = qobject_cast<QMessageBox *>(dialog)) {
        answerMessage(*box);
    } else if (auto *input = qobject_cast<QInputDialog *>(dialog)) {
        const bool isExpected = m_reply && m_reply->title == input->windowTitle() && !m_reply->isGiven;
        if (isExpected) {
            m_reply->isGiven = true;
            auto *line = input->findChild<QLineEdit *>();
            line->selectAll();
            QTest::keyClicks(line, m_reply->text);
            begin(m_reply->store);
        }
        QTest::keyClick(input, isExpected ? Qt::Key_Return : Qt::Key_Escape);
    } else if (dialog->objectName() == QLatin1String("frmCardOptions")) {
        click(*dialog, "Command1(0)");
    } else {
        return false;
    }
    return true;
}

void Learner::answerMessage(QMessageBox &box)
{
    auto button = QMessageBox::Ok;
    if (m_reply && m_reply->title == box.windowTitle() && box.button(m_reply->button) != nullptr) {
        button = m_reply->button;
        if (!std::exchange(m_reply->isGiven, true) && !m_reply->store.empty()) {
            begin(m_reply->store);
        }
    } else if (box.windowTitle() == QLatin1String("Leave Without Saving")) {
        button = QMessageBox::Yes;
        m_failure = box.text().toStdString();
    } else if (box.icon() == QMessageBox::Critical) {
        m_failure = box.text().toStdString();
    } else if (box.button(QMessageBox::Ok) != nullptr) {
        m_isRefused = true;
    } else {
        button = box.standardButton(box.escapeButton());
        m_failure = "unexpected: " + box.text().toStdString();
    }
    QTest::mouseClick(box.button(button), Qt::LeftButton);
}

// Telling.

void Learner::begin(const Message &what)
{
    Message message{"begin"};
    message.insert(message.end(), what.begin(), what.end());
    m_isStoring = true;
    tell(message);
    char answer = 0;
    if (::read(m_character.ear, &answer, 1) != 1) {
        std::_Exit(EXIT_FAILURE); // nobody is there any more
    }
    m_isLeaving = m_isLeaving || answer == Answer::finish;
}

void Learner::end(const Message &shown)
{
    Message message{m_failure.empty() ? "done" : "failed"};
    if (!m_failure.empty()) {
        message.push_back(std::exchange(m_failure, {}));
    }
    message.insert(message.end(), shown.begin(), shown.end());
    m_isStoring = false;
    tell(message);
}

void Learner::tellTrouble()
{
    if (!m_isStoring && !m_failure.empty()) {
        tell({"trouble", std::exchange(m_failure, {})});
    }
}

void Learner::tell(const Message &message) const
{
    const std::string line = lineOf(message) + '\n';
    for (std::size_t told = 0; told < line.size();) {
        const ssize_t written = ::write(m_character.ear, line.data() + told, line.size() - told);
        if (written <= 0) {
            std::_Exit(EXIT_FAILURE);
        }
        told += static_cast<std::size_t>(written);
    }
}
