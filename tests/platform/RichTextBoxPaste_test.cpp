#include "platform/RichTextBox.h"
#include "platform/rtf/RtfObjectFormat.h"
#include "tests/support/KeyWindow.h"
#include "tests/support/Pictures.h"
#include "tests/support/TestSubject.h"

#include <QApplication>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QUrl>

#include <gtest/gtest.h>

namespace {

class RichTextBoxPaste : public testing::Test
{
protected:
    RichTextBoxPaste()
    {
        m_window.resize(300, 300);
        m_box->setGeometry(0, 0, 300, 140);
        m_other->setGeometry(0, 150, 300, 140);
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
        m_box->setFocus();
        QGuiApplication::clipboard()->clear();
    }

    static void select(RichTextBox &box, int from, int to)
    {
        QTextCursor cursor = box.textCursor();
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        box.setTextCursor(cursor);
    }

    /// Whether the character at \p position is bold.
    static bool isBold(RichTextBox &box, int position)
    {
        select(box, position, position + 1);
        return box.selBold().value();
    }

    static bool isObject(const RichTextBox &box, int position)
    {
        QTextCursor cursor(box.document());
        cursor.setPosition(position + 1);
        return !objectSourceOf(cursor.charFormat()).isEmpty();
    }

    /// Drags \p data over the place of \p position and drops it. Returns what the source is told, or
    /// IgnoreAction if the box takes nothing.
    static Qt::DropAction drop(RichTextBox &box, int position, const QMimeData &data, Qt::DropActions possible)
    {
        QTextCursor cursor(box.document());
        cursor.setPosition(position);
        const QPoint place = box.cursorRect(cursor).center();
        QDragEnterEvent enter(place, possible, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(box.viewport(), &enter);
        if (!enter.isAccepted()) {
            return Qt::IgnoreAction;
        }
        QDragMoveEvent move(place, possible, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(box.viewport(), &move);
        QDropEvent drop(place, possible, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(box.viewport(), &drop);
        return drop.isAccepted() ? drop.dropAction() : Qt::IgnoreAction;
    }

    KeyWindow m_window;
    RichTextBox *m_box = new RichTextBox(&m_window);
    RichTextBox *m_other = new RichTextBox(&m_window);
};

TEST_F(RichTextBoxPaste, WhatIsCopiedByKeyIsPastedByKeyWithItsFormat)
{
    m_box->setTextRtf(QStringLiteral("{\\rtf1 plain \\b bold\\b0  end\\par}"));
    select(*m_box, 4, 8);
    QTest::keyClick(m_box, Qt::Key_C, Qt::ControlModifier);
    m_other->setFocus();
    QTest::keyClick(m_other, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(m_other->plainText(), QStringLiteral("n bo"));
    EXPECT_EQ(m_other->textCursor().position(), 4) << "the caret is behind it";
    EXPECT_FALSE(m_other->textCursor().hasSelection());
    EXPECT_FALSE(isBold(*m_other, 1));
    EXPECT_TRUE(isBold(*m_other, 2));
    EXPECT_EQ(m_box->plainText(), QStringLiteral("plain bold end"));
}

TEST_F(RichTextBoxPaste, CuttingTakesTheSelectionAndPastingReplacesOne)
{
    m_box->setTextRtf(QStringLiteral("{\\rtf1 plain \\b bold\\b0  end\\par}"));
    select(*m_box, 6, 11);
    QTest::keyClick(m_box, Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(m_box->plainText(), QStringLiteral("plain end"));
    select(*m_box, 0, 5);
    QTest::keyClick(m_box, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(m_box->plainText(), QStringLiteral("bold  end"));
    EXPECT_TRUE(isBold(*m_box, 0));
}

TEST_F(RichTextBoxPaste, CopyingNothingLeavesTheClipboardAlone)
{
    QGuiApplication::clipboard()->setText(QStringLiteral("kept"));
    m_box->setPlainText(QStringLiteral("text"));
    QTest::keyClick(m_box, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("kept"));
}

TEST_F(RichTextBoxPaste, APictureIsPastedAsOneCharacter)
{
    QGuiApplication::clipboard()->setImage(redPicture());
    m_box->setPlainText(QStringLiteral("ab"));
    m_box->moveCursor(QTextCursor::Right);
    QTest::keyClick(m_box, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(m_box->plainText(), QStringLiteral("a b"));
    EXPECT_TRUE(isObject(*m_box, 1));
}

TEST_F(RichTextBoxPaste, PlainTextIsTypedInTheFormatAtTheCaret)
{
    m_box->setTextRtf(QStringLiteral("{\\rtf1\\b bold\\par}"));
    m_box->moveCursor(QTextCursor::End);
    QGuiApplication::clipboard()->setText(QStringLiteral("x\ny"));
    QTest::keyClick(m_box, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(m_box->plainText(), QStringLiteral("boldx\ny"));
    EXPECT_TRUE(isBold(*m_box, 4));
    EXPECT_TRUE(isBold(*m_box, 6));
}

TEST_F(RichTextBoxPaste, WithShiftRichTextIsPastedAsPlainText)
{
    m_other->setTextRtf(QStringLiteral("{\\rtf1\\b\\fs60 loud\\par}"));
    m_other->selectAll();
    m_other->copy();
    m_box->setTextRtf(QStringLiteral("{\\rtf1\\i quiet\\par}"));
    select(*m_box, 0, 5);
    QTest::keyClick(m_box, Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(m_box->plainText(), QStringLiteral("loud"));
    m_box->selectAll();
    EXPECT_EQ(m_box->selBold(), false);
    EXPECT_EQ(m_box->selItalic(), true);
}

TEST_F(RichTextBoxPaste, AClipboardWithoutTextLeavesTheSelection)
{
    m_box->setPlainText(QStringLiteral("text"));
    m_box->selectAll();
    QTest::keyClick(m_box, Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(m_box, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(m_box->plainText(), QStringLiteral("text"));
    EXPECT_FALSE(m_box->canUndo());
}

TEST_F(RichTextBoxPaste, TheEndOfALongPastedTextIsInSight)
{
    m_other->setPlainText(QStringLiteral("a line\n").repeated(60));
    m_other->selectAll();
    m_other->copy();
    for (const auto modifiers : {Qt::KeyboardModifiers(Qt::ControlModifier), Qt::ControlModifier | Qt::ShiftModifier}) {
        m_box->resetText({});
        QTest::keyClick(m_box, Qt::Key_V, modifiers);
        EXPECT_GT(m_box->verticalScrollBar()->value(), 0);
        EXPECT_TRUE(m_box->viewport()->rect().contains(m_box->cursorRect().center()));
    }
}

TEST_F(RichTextBoxPaste, ALockedBoxTakesNothing)
{
    m_box->setTextRtf(QStringLiteral("{\\rtf1 kept\\par}"));
    m_box->setLocked(true);
    QGuiApplication::clipboard()->setText(QStringLiteral("new"));
    m_box->selectAll();
    m_box->paste();
    m_box->pastePlainText();
    QTest::keyClick(m_box, Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(m_box, Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_FALSE(m_box->canPaste());
    EXPECT_EQ(drop(*m_box, 0, *QGuiApplication::clipboard()->mimeData(), Qt::CopyAction), Qt::IgnoreAction);
    EXPECT_EQ(m_box->plainText(), QStringLiteral("kept"));
}

TEST_F(RichTextBoxPaste, ALockedBoxCanBeCopiedFrom)
{
    m_box->setPlainText(QStringLiteral("kept"));
    m_box->setLocked(true);
    m_box->selectAll();
    QTest::keyClick(m_box, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("kept"));
}

TEST_F(RichTextBoxPaste, TextIsDroppedWhereThePointerIsAsOneStep)
{
    m_other->setTextRtf(QStringLiteral("{\\rtf1 \\b bold\\par}"));
    m_other->selectAll();
    m_other->copy();
    m_box->setPlainText(QStringLiteral("onetwo"));
    EXPECT_NE(drop(*m_box, 3, *QGuiApplication::clipboard()->mimeData(), Qt::CopyAction), Qt::IgnoreAction);
    EXPECT_EQ(m_box->plainText(), QStringLiteral("oneboldtwo"));
    EXPECT_EQ(m_box->textCursor().position(), 7);
    EXPECT_TRUE(isBold(*m_box, 3));
    EXPECT_FALSE(isBold(*m_box, 7));
    m_box->undo();
    EXPECT_EQ(m_box->plainText(), QStringLiteral("onetwo"));
    EXPECT_FALSE(m_box->canUndo());
}

TEST_F(RichTextBoxPaste, APictureFileIsDroppedAsThePictureAndTheFileStays)
{
    const TestFolder folder;
    const QString path = QString::fromStdString(folder.file("a picture.png").string());
    ASSERT_TRUE(redPicture().save(path));
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    m_box->setPlainText(QStringLiteral("ab"));
    EXPECT_EQ(drop(*m_box, 1, data, Qt::MoveAction | Qt::CopyAction), Qt::CopyAction);
    EXPECT_EQ(m_box->plainText(), QStringLiteral("a b"));
    EXPECT_TRUE(isObject(*m_box, 1));
}

} // namespace
