#pragma once

#include "forms/frmNotes/frmNotes.h"
#include "platform/RichTextBox.h"
#include "platform/TabStrip.h"
#include "platform/rtf/RtfReader.h"
#include "store/SubjectReading.h"
#include "store/SubjectWriting.h"
#include "tests/support/WindowTest.h"

#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTextDocument>

#include <array>
#include <string>

/// What \p rtf shows, without any format.
inline QString plainTextOf(const std::string &rtf)
{
    QTextDocument document;
    (void)readRtf(rtf, document);
    return document.toPlainText();
}

/// The objectName of the main window's command button \p index.
inline const char *commandName(int index)
{
    static constexpr std::array<const char *, 9> names{"Image1(0)", "Image1(1)", "Image1(2)", "Image1(3)", "Image1(4)",
                                                       "Image1(5)", "Image1(6)", "Image1(7)", "Image1(8)"};
    return names.at(static_cast<std::size_t>(index));
}

/// An input box as the learner saw it.
struct SeenInputBox
{
    QString title;
    QString prompt;
    QString offered;
};

/// The opening of the main window's tests: the window on a subject of three topics.
class NotesTest : public WindowTest
{
protected:
    enum Command { Create, Rename, Delete, EditCards, Study, BackgroundColor, Help, Exit, Edit };

    void TearDown() override
    {
        delete window;
        WindowTest::TearDown();
    }

    void open()
    {
        window = new frmNotes(*module);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }
    [[nodiscard]] bool isOpen() const { return !window.isNull() && window->isVisible(); }

    TabStrip &tabs() { return control<TabStrip>(*window, "TabStrip1"); }
    RichTextBox &box() { return control<RichTextBox>(*window, "RichTextBox1"); }
    QString notes() { return box().toPlainText(); }
    QString title() { return control<QLabel>(*window, "Label1").text(); }
    QLabel &status() { return control<QLabel>(*window, "StatusBar1"); }

    /// Whether the notes are being edited: they can be typed into exactly while the tools are shown.
    bool isEditing()
    {
        const bool isUnlocked = !box().isLocked();
        EXPECT_EQ(isUnlocked, control<QWidget>(*window, "CoolBar1").isVisible())
            << "one half of editing without the other";
        return isUnlocked;
    }

    void run(Command command) { click(*window, commandName(command)); }
    void clickTab(int position) { QTest::mouseClick(&tabs(), Qt::LeftButton, {}, tabs().tabRect(position).center()); }
    /// A key for the control that has the window's focus.
    void key(int code, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(window->focusWidget(), static_cast<Qt::Key>(code), modifiers);
    }
    void type(const QString &text)
    {
        for (const QChar character : text) { // QTest::keyClicks() knows no letters beyond ASCII
            QTest::sendKeyEvent(QTest::Click, &box(), Qt::Key_unknown, character, Qt::NoModifier);
        }
    }

    /// Puts \p text for all that the notes say, and stays there.
    void rewriteNotes(const QString &text)
    {
        run(Edit);
        ASSERT_TRUE(isEditing());
        key(Qt::Key_A, Qt::ControlModifier);
        type(text);
        ASSERT_EQ(notes(), text);
    }

    /// The next dialog is an input box: put \p text for what it offers, and press \p last.
    DialogAnswers::Act answer(const QString &text, Qt::Key last = Qt::Key_Return)
    {
        return [this, text, last](QWidget &dialog) {
            const auto *input = qobject_cast<QInputDialog *>(&dialog);
            ASSERT_NE(input, nullptr) << "the dialog is no input box";
            EXPECT_EQ(input->objectName(), QStringLiteral("InputBox1"));
            asked = {input->windowTitle(), input->labelText(), input->textValue()};
            auto *field = input->findChild<QLineEdit *>();
            ASSERT_NE(field, nullptr);
            QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
            QTest::keyClick(field, Qt::Key_Delete);
            field->insert(text); // at once: some names are long, and some are no key's text
            QTest::keyClick(field, last);
        };
    }

    void create(const QString &name)
    {
        DialogAnswers answers;
        answers.act(answer(name));
        run(Create);
    }
    void rename(const QString &name)
    {
        DialogAnswers answers;
        answers.act(answer(name));
        run(Rename);
    }
    void remove(QMessageBox::StandardButton sure)
    {
        DialogAnswers answers;
        answers.press(sure);
        run(Delete);
        question = answers.last();
    }

    /// The subject's topics as they are in the file.
    [[nodiscard]] QStringList storedNames() const
    {
        QStringList names;
        for (const TopicEntry &topic : listTopics(file)) {
            names << QString::fromStdString(topic.name);
        }
        return names;
    }
    [[nodiscard]] std::string storedNotes(int topic) const { return readTopic(file, topic).notes; }
    [[nodiscard]] QString storedText(int topic) const { return plainTextOf(storedNotes(topic)); }

    QPointer<frmNotes> window;
    SeenInputBox asked;   ///< the last input box
    SeenMessage question; ///< the last one that remove() answered
};
