#pragma once

#include "tests/program/Message.h"

#include <QMessageBox>
#include <QObject>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <optional>
#include <random>
#include <string>

class QTabBar;
class QTextEdit;

/// How a learner is.
struct Character
{
    int ear;             ///< descriptor of the stream to whoever is told
    unsigned seed;       ///< of every choice
    std::string letters; ///< only topics whose names begin with one of these are written in
    int diligence;       ///< how many of 100 commands in the main window are for writing
};

/// Works at random in the windows of the program that it lives in, by keys and clicks, without end. Knows the
/// windows by the names of their controls.
///
/// Tells of each command that stores, before and after it. A message box that nobody expected is told and answered.
class Learner : public QObject
{
public:
    explicit Learner(Character character);

private:
    /// What the dialog that a command opens is answered with.
    struct Reply
    {
        QString title{};
        QMessageBox::StandardButton button = QMessageBox::NoButton;
        QString text{};  ///< for an input box
        Message store{}; ///< what the answer stores; told before it
        bool isGiven = false;
    };

    void act();

    // In each window one thing at a time.
    void openSubject(QWidget &chooser);
    void keepNotes(QWidget &page);
    void writeNotes(QWidget &page);
    void leaveNotes(QWidget &page);
    void createTopic(QWidget &page);
    void renameTopic(QWidget &page);
    void deleteTopic(QWidget &page);
    void openCards(QWidget &page);
    void editCards(QWidget &editor);
    void writeCard(QWidget &editor);
    void deleteCard(QWidget &editor);
    [[nodiscard]] static Message shownSides(); ///< in the editor; nothing if it has been left
    void leaveCard(QWidget &editor, const char *command);
    void chooseStudy(QWidget &wizard);
    void studyCards(QWidget &session);
    void toggleMark(QWidget &session);
    void takeTest(QWidget &test);
    void gradeTest(QWidget &test);

    [[nodiscard]] static QWidget *shownWindow(const char *name); ///< null if it is not shown

    // Topics, as the main window's tabs.
    [[nodiscard]] static QTabBar &tabsOf(const QWidget &page);
    [[nodiscard]] static std::string keyOf(const QTabBar &tabs, int tab);
    [[nodiscard]] static std::string selectedTopic(const QWidget &page); ///< its key
    [[nodiscard]] bool mayWriteIn(const QTabBar &tabs, int tab) const;
    [[nodiscard]] int writableTopics(const QTabBar &tabs) const;
    [[nodiscard]] std::string newName();
    void selectTopic(QTabBar &tabs);

    // Input.
    void give(const std::function<void()> &input);
    void press(QWidget &window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void click(QWidget &window, const char *button);
    /// By one or the other.
    void giveCommand(QWidget &window, const char *button, Qt::Key key,
                     Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void store(const Message &what, const std::function<void()> &input);
    void reply(Reply reply, const std::function<void()> &input);
    void type(QTextEdit &box);

    // Dialogs.
    bool answerDialog();
    void answerMessage(QMessageBox &box);

    // Telling.
    void begin(const Message &what);
    void end(const Message &shown = {});
    void tellTrouble();
    void tell(const Message &message) const;

    [[nodiscard]] int below(int limit);
    [[nodiscard]] bool oneIn(int count) { return below(count) == 0; }

    const Character m_character;
    std::mt19937 m_random;
    QTimer m_watch; ///< for dialogs, while input is given
    std::optional<Reply> m_reply;
    std::string m_failure;    ///< the report that the input led to
    bool m_isRefused = false; ///< the input led to a message and nothing else
    bool m_isStoring = false; ///< begun and not ended
    bool m_isReady = false;   ///< the subject was opened
    bool m_isLeaving = false;
    int m_written = 0; ///< makes each text another one
};
