#pragma once

#include "platform/ImageButton.h"
#include "platform/RichTextBox.h"
#include "tests/support/KeyWindow.h"
#include "tests/support/Windows.h"
#include "txtEdit/FontBox.h"
#include "txtEdit/txtEdit.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QMimeData>
#include <QTextBlock>
#include <QVBoxLayout>

#include <gtest/gtest.h>
#include <memory>

/// A small window with two text boxes and the formatting tools, whose first box has the focus.
class EditorTest : public testing::Test
{
protected:
    EditorTest()
    {
        QGuiApplication::clipboard()->clear();
        auto *layout = new QVBoxLayout(&window);
        for (QWidget *part :
             {static_cast<QWidget *>(tools), static_cast<QWidget *>(box), static_cast<QWidget *>(other)}) {
            layout->addWidget(part);
        }
        edit.addBox(*box);
        edit.addBox(*other);
        window.resize(600, 400);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        box->setFocus();
        show("one two three");
    }
    ~EditorTest() override { settle(); }

    /// Shows \p body, whose default font is 10 points of a font that is surely there.
    void show(const QByteArray &body) const
    {
        const QByteArray rtf = "{\\rtf1{\\fonttbl{\\f0 " + listedFont().toUtf8() +
                               ";}{\\f1 No Such Font;}}{\\colortbl ;\\red192\\green0\\blue0;}\\f0\\fs20 " + body +
                               "\\par}";
        box->setRtf(rtf.toStdString());
        EXPECT_FALSE(box->canUndo());
    }
    void select(int from, int to) const
    {
        QTextCursor cursor = box->textCursor();
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        box->setTextCursor(cursor);
    }
    [[nodiscard]] QString text() const { return box->plainText(); }

    /// Expects that one step of undo brings back \p before.
    void expectOneStepBackTo(const std::string &before) const
    {
        EXPECT_NE(box->rtf(), before) << "nothing was changed";
        box->undo();
        EXPECT_EQ(box->rtf(), before);
        EXPECT_FALSE(box->canUndo());
    }

    [[nodiscard]] static QString listedFont() { return QFontDatabase::families().constFirst(); }
    [[nodiscard]] static QString nextFont() { return QFontDatabase::families().at(1); }

    /// Whether the box has the focus of the window, which need not be active behind a dialog that was closed.
    [[nodiscard]] bool isBackInTheText() const { return window.focusWidget() == box; }

    /// Presses and releases a key in the control that has the focus.
    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    template <class Button>
    void clickOn(Button button) const
    {
        QTest::mouseClick(&tools->button(button), Qt::LeftButton);
    }
    [[nodiscard]] bool isPressed(FormatButton button) const { return tools->button(button).isChecked(); }
    [[nodiscard]] bool isEnabled(EditButton button) const { return tools->button(button).isEnabled(); }
    [[nodiscard]] QString alignmentShown() const { return tools->button(FormatButton::Alignment).picture(); }

    static void putOnClipboard(const QString &format, const QByteArray &bytes)
    {
        auto *data = new QMimeData;
        data->setData(format, bytes);
        QGuiApplication::clipboard()->setMimeData(data);
    }
    static void putRtfOnClipboard(const QByteArray &body)
    {
        putOnClipboard(QStringLiteral("text/rtf"), "{\\rtf1 " + body + "}");
    }

    [[nodiscard]] bool takeKey(const QKeyEvent &key)
    {
        const QVector<int> modifierKeys{Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt};
        if (!modifierKeys.contains(key.key())) {
            askedKeys.append(key.key());
        }
        return takesKeys;
    }

    KeyWindow window;
    EditTools *tools = new EditTools(&window);
    RichTextBox *box = new RichTextBox(&window);
    RichTextBox *other = new RichTextBox(&window);
    FontBox *fonts = &tools->fontBox();
    FontBox *sizes = &tools->sizeBox();
    int helps = 0;          ///< how often help was asked for
    bool takesKeys = false; ///< the window takes every key
    QVector<int> askedKeys; ///< keys that the window was asked about
    txtEdit edit =
        txtEdit(*tools, {&window, [this] { ++helps; }, [this](const QKeyEvent &key) { return takeKey(key); }});
};
