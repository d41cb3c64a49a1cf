#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>
#include <QTest>
#include <QTimer>

#include <functional>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

/// The control of \p window that has this objectName. The test fails without it.
template <class Control>
Control &control(const QWidget &window, const char *name)
{
    auto *found = window.findChild<Control *>(QString::fromLatin1(name));
    if (found == nullptr) {
        ADD_FAILURE() << "no control named " << name;
        std::abort();
    }
    return *found;
}

inline void click(const QWidget &window, const char *name)
{
    QTest::mouseClick(&control<QAbstractButton>(window, name), Qt::LeftButton);
}

/// The visible window of this class, or null.
template <class Window>
Window *visibleWindow()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *window = qobject_cast<Window *>(widget); window && window->isVisible()) {
            return window;
        }
    }
    return nullptr;
}

/// One message box as the learner saw it.
struct SeenMessage
{
    QString title;
    QString text;
    QMessageBox::Icon icon;
    QMessageBox::StandardButtons buttons;
};

/// Answers the modal dialogs that a command opens, one after the other, and
/// keeps what they said. Fails the test if one opens that nobody expected, or
/// if one that was expected did not open.
class DialogAnswers
{
public:
    using Act = std::function<void(QWidget &dialog)>;

    DialogAnswers()
    {
        m_watch.setInterval(5);
        QObject::connect(&m_watch, &QTimer::timeout, &m_watch, [this] { look(); });
        m_watch.start();
    }
    DialogAnswers(const DialogAnswers &) = delete;
    DialogAnswers &operator=(const DialogAnswers &) = delete;
    ~DialogAnswers() { EXPECT_TRUE(m_acts.empty()) << m_acts.size() << " expected dialogs did not open"; }

    /// The next dialog is a message box: press this button of it.
    DialogAnswers &press(QMessageBox::StandardButton button)
    {
        return act([button](QWidget &dialog) {
            auto *box = qobject_cast<QMessageBox *>(&dialog);
            ASSERT_NE(box, nullptr) << "the dialog is no message box";
            ASSERT_NE(box->button(button), nullptr) << "the message box has no such button";
            QTest::mouseClick(box->button(button), Qt::LeftButton);
        });
    }
    /// The next dialog gets this key.
    DialogAnswers &key(Qt::Key key)
    {
        return act([key](QWidget &dialog) { QTest::keyClick(&dialog, key); });
    }
    DialogAnswers &act(Act act)
    {
        m_acts.push_back(std::move(act));
        return *this;
    }

    [[nodiscard]] const std::vector<SeenMessage> &seen() const { return m_seen; }
    [[nodiscard]] SeenMessage last() const { return m_seen.empty() ? SeenMessage{} : m_seen.back(); }

private:
    void look()
    {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget()); // not a modal page
        // A wizard is driven by the test itself.
        const bool message = qobject_cast<QMessageBox *>(dialog) != nullptr;
        if (dialog == nullptr || !dialog->isVisible() || (!message && m_acts.empty())) {
            return;
        }
        if (const auto *box = qobject_cast<QMessageBox *>(dialog)) {
            m_seen.push_back({box->windowTitle(), box->text(), box->icon(), box->standardButtons()});
        }
        if (m_acts.empty()) {
            ADD_FAILURE() << "unexpected dialog: " << m_seen.back().text.toStdString();
            dialog->close();
            return;
        }
        const Act next = std::move(m_acts.front());
        m_acts.erase(m_acts.begin());
        next(*dialog);
    }

    QTimer m_watch;
    std::vector<Act> m_acts;
    std::vector<SeenMessage> m_seen;
};

/// Lets posted events run, deferred deletions included.
inline void settle()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
