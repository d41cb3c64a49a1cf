#include "platform/RichTextBox.h"
#include "platform/rtf/OleObject.h"
#include "platform/rtf/RtfObject.h"
#include "tests/support/KeyWindow.h"
#include "tests/support/Pictures.h"
#include "tests/support/Windows.h"

#include <QAction>
#include <QClipboard>
#include <QDesktopServices>
#include <QHelpEvent>
#include <QMenu>
#include <QSignalSpy>
#include <QTextBlock>
#include <QTextBrowser>
#include <QToolTip>

namespace {

const QString page = QStringLiteral("https://example.org/a%20page?q=1");

/// Takes the place of the desktop's browser and mail program.
class Desktop : public QTextBrowser
{
public:
    Desktop()
    {
        for (const char *scheme : {"http", "https", "ftp", "mailto", "file"}) {
            QDesktopServices::setUrlHandler(QString::fromLatin1(scheme), this, "setSource");
        }
    }
    Desktop(const Desktop &) = delete;
    Desktop &operator=(const Desktop &) = delete;
    ~Desktop() override
    {
        for (const char *scheme : {"http", "https", "ftp", "mailto", "file"}) {
            QDesktopServices::unsetUrlHandler(QString::fromLatin1(scheme));
        }
    }

    QList<QUrl> opened;

protected:
    void doSetSource(const QUrl &url, QTextDocument::ResourceType /*type*/) override { opened.append(url); }
};

class RichTextBoxLinks : public testing::Test
{
protected:
    RichTextBoxLinks()
    {
        m_window.resize(500, 300);
        m_box->resize(500, 200);
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
        m_box->setFocus();
        showLink(page);
    }

    ~RichTextBoxLinks() override
    {
        if (QMenu *menu = visibleWindow<QMenu>()) {
            menu->close();
        }
        settle();
    }

    /// The text "see here now" in which "here" leads to \p address.
    void showLink(const QString &address)
    {
        m_box->resetText(QStringLiteral("see here now"));
        QTextCharFormat format;
        format.setAnchor(true);
        format.setAnchorHref(address);
        QTextCursor cursor(m_box->document());
        cursor.setPosition(4);
        cursor.setPosition(8, QTextCursor::KeepAnchor);
        cursor.mergeCharFormat(format);
    }

    /// The text "ab" with an object between the letters that holds the file "list.txt".
    void showObject()
    {
        const QByteArray stream = writeOlePackage(QStringLiteral("list.txt"), QByteArrayLiteral("eggs"));
        m_box->resetText(QStringLiteral("ab"));
        m_box->moveCursor(QTextCursor::Right);
        m_box->insertObjectSource(objectSource(QStringLiteral("Package"), stream, {}, {40, 40}, {600, 600}));
    }

    /// The middle of the character at \p position.
    [[nodiscard]] QPoint placeOf(int position) const
    {
        QTextCursor cursor(m_box->document());
        cursor.setPosition(position);
        const QRect left = m_box->cursorRect(cursor);
        cursor.setPosition(position + 1);
        return (left.center() + m_box->cursorRect(cursor).center()) / 2;
    }

    void putCaret(int position)
    {
        QTextCursor cursor = m_box->textCursor();
        cursor.setPosition(position);
        m_box->setTextCursor(cursor);
    }

    void clickWithControl(int position)
    {
        QTest::mouseClick(m_box->viewport(), Qt::LeftButton, Qt::ControlModifier, placeOf(position));
    }

    /// The context menu that the right mouse button opens at the character at \p position.
    QMenu *menuAt(int position)
    {
        const QPoint place = placeOf(position);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, m_box->viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(m_box->viewport(), &event);
        return visibleWindow<QMenu>();
    }

    QMenu *menuByKey()
    {
        QTest::keyClick(m_box, Qt::Key_F10, Qt::ShiftModifier);
        return visibleWindow<QMenu>();
    }

    static QStringList textsOf(const QMenu *menu)
    {
        QStringList texts;
        for (const QAction *action : menu->actions()) {
            texts += action->text().section(QLatin1Char('\t'), 0, 0).remove(QLatin1Char('&'));
        }
        return texts;
    }

    static QAction *commandOf(const QMenu *menu, const char *text)
    {
        const int place = static_cast<int>(textsOf(menu).indexOf(QLatin1String(text)));
        if (place < 0) {
            ADD_FAILURE() << "no command " << text;
            std::abort();
        }
        return menu->actions().at(place);
    }

    Desktop m_desktop;
    DialogAnswers m_answers;
    KeyWindow m_window;
    RichTextBox *m_box = new RichTextBox(&m_window);
};

// Links.

TEST_F(RichTextBoxLinks, OpenByControlAndAClickAfterAQuestion)
{
    m_answers.press(QMessageBox::Yes);
    clickWithControl(5);
    EXPECT_EQ(m_answers.last().title, QStringLiteral("Open Link"));
    EXPECT_EQ(m_answers.last().text, QStringLiteral("Open this address?\n\n") + page);
    EXPECT_EQ(m_desktop.opened, QList<QUrl>{QUrl(page)});
}

TEST_F(RichTextBoxLinks, StayClosedWhenTheLearnerSaysNo)
{
    m_answers.press(QMessageBox::No);
    clickWithControl(5);
    EXPECT_TRUE(m_desktop.opened.isEmpty());
}

TEST_F(RichTextBoxLinks, OpenInALockedBoxToo)
{
    m_box->setLocked(true);
    m_answers.press(QMessageBox::Yes);
    clickWithControl(5);
    EXPECT_EQ(m_desktop.opened.size(), 1);
}

TEST_F(RichTextBoxLinks, AreTextForAPlainClick)
{
    QTest::mouseClick(m_box->viewport(), Qt::LeftButton, {}, placeOf(5));
    EXPECT_NEAR(m_box->textCursor().position(), 5, 1);
    clickWithControl(1);
    EXPECT_NEAR(m_box->textCursor().position(), 1, 1) << "beside the link Control changes nothing";
    EXPECT_TRUE(m_answers.seen().empty());
}

TEST_F(RichTextBoxLinks, StayClosedWhenTheMouseIsReleasedElsewhere)
{
    QTest::mousePress(m_box->viewport(), Qt::LeftButton, Qt::ControlModifier, placeOf(5));
    QTest::mouseRelease(m_box->viewport(), Qt::LeftButton, Qt::ControlModifier, placeOf(1));
    EXPECT_TRUE(m_answers.seen().empty());
    EXPECT_FALSE(m_box->textCursor().hasSelection());
}

TEST_F(RichTextBoxLinks, OpenByControlAndReturnWithTheCaretInThem)
{
    for (const int position : {4, 6, 8}) {
        putCaret(position);
        m_answers.press(QMessageBox::Yes);
        QTest::keyClick(m_box, Qt::Key_Return, Qt::ControlModifier);
    }
    EXPECT_EQ(m_desktop.opened.size(), 3);
    putCaret(2);
    QTest::keyClick(m_box, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(m_desktop.opened.size(), 3);
    EXPECT_EQ(m_box->plainText(), QStringLiteral("see here now"));
}

TEST_F(RichTextBoxLinks, OfTheWebAndMailAreOpened)
{
    for (const char *address : {"http://a.org/", "HTTPS://a.org/", "ftp://a.org/x", "mailto:a@b.org"}) {
        showLink(QString::fromLatin1(address));
        m_answers.press(QMessageBox::Yes);
        clickWithControl(5);
        EXPECT_EQ(m_answers.last().icon, QMessageBox::Question) << address;
    }
    EXPECT_EQ(m_desktop.opened.size(), 4);
}

TEST_F(RichTextBoxLinks, OfAnyOtherKindAreNotOpened)
{
    for (const char *address : {"file:///etc/passwd", "javascript:alert(1)", "/etc/passwd", "data:text/html,x",
                                "smb://host/share", "http:// a b", "#place"}) {
        showLink(QString::fromLatin1(address));
        m_answers.press(QMessageBox::Ok);
        clickWithControl(5);
        EXPECT_EQ(m_answers.last().icon, QMessageBox::Information) << address;
        EXPECT_EQ(m_answers.last().title, QStringLiteral("Open Link"));
    }
    EXPECT_TRUE(m_desktop.opened.isEmpty());
}

TEST_F(RichTextBoxLinks, AreShownWithoutLettersThatHideWhereTheyLead)
{
    showLink(QStringLiteral("https://evil.org/\u202egro.doog//:sptth\n"));
    m_answers.press(QMessageBox::No);
    clickWithControl(5);
    EXPECT_TRUE(m_answers.last().text.contains(QStringLiteral("https://evil.org/%E2%80%AEgro")));
    for (const QChar letter : m_answers.last().text) {
        EXPECT_TRUE(letter == QLatin1Char('\n') || (letter >= QLatin1Char(' ') && letter.unicode() < 127));
    }
}

TEST_F(RichTextBoxLinks, HaveAHandOnlyWhileControlIsDown)
{
    const auto shape = [this] { return m_box->viewport()->cursor().shape(); };
    const auto moveTo = [this](int position, Qt::KeyboardModifiers modifiers) {
        const QPointF place = placeOf(position);
        QMouseEvent move(QEvent::MouseMove, place, m_box->viewport()->mapToGlobal(place), Qt::NoButton, {}, modifiers);
        QCoreApplication::sendEvent(m_box->viewport(), &move);
    };
    moveTo(5, {});
    EXPECT_EQ(shape(), Qt::IBeamCursor);
    moveTo(5, Qt::ControlModifier);
    EXPECT_EQ(shape(), Qt::PointingHandCursor);
    moveTo(1, Qt::ControlModifier);
    EXPECT_EQ(shape(), Qt::IBeamCursor);
    moveTo(5, Qt::ControlModifier);
    QTest::keyRelease(m_box, Qt::Key_Control);
    EXPECT_EQ(shape(), Qt::IBeamCursor);
    QCursor::setPos(m_box->viewport()->mapToGlobal(placeOf(5)));
    QTest::keyPress(m_box, Qt::Key_Control);
    EXPECT_EQ(shape(), Qt::PointingHandCursor);
}

TEST_F(RichTextBoxLinks, ShowTheirAddressAsAToolTip)
{
    const QPoint place = placeOf(5);
    QHelpEvent event(QEvent::ToolTip, place, m_box->viewport()->mapToGlobal(place));
    QCoreApplication::sendEvent(m_box->viewport(), &event);
    EXPECT_EQ(QToolTip::text(), QStringLiteral("Ctrl+click opens ") + page);
    QToolTip::hideText();
}

TEST_F(RichTextBoxLinks, HaveCommandsInTheContextMenu)
{
    QMenu *menu = menuAt(5);
    ASSERT_NE(menu, nullptr);
    commandOf(menu, "Copy Link Address")->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), page);
    m_answers.press(QMessageBox::Yes);
    commandOf(menu, "Open Link...")->trigger();
    EXPECT_EQ(m_desktop.opened.size(), 1);
    menu->close();
    settle();
    menu = menuAt(1);
    EXPECT_FALSE(textsOf(menu).contains(QStringLiteral("Open Link...")));
}

// Objects.

TEST_F(RichTextBoxLinks, AnObjectIsOpenedByADoubleClickAfterAQuestion)
{
    showObject();
    const QSignalSpy doubleClicked(m_box, &RichTextBox::doubleClicked);
    for (const bool locked : {false, true}) {
        m_box->setLocked(locked);
        m_answers.press(QMessageBox::Yes);
        QTest::mouseDClick(m_box->viewport(), Qt::LeftButton, {}, placeOf(1));
        EXPECT_TRUE(m_answers.last().text.contains(QStringLiteral("list.txt")));
    }
    EXPECT_EQ(m_desktop.opened.size(), 2);
    EXPECT_EQ(doubleClicked.count(), 0);
    EXPECT_EQ(m_box->plainText(), QStringLiteral("a b"));
}

TEST_F(RichTextBoxLinks, ADoubleClickElsewhereGoesOn)
{
    showObject();
    m_box->moveCursor(QTextCursor::End);
    m_box->insertPlainText(QStringLiteral(" word"));
    const QSignalSpy doubleClicked(m_box, &RichTextBox::doubleClicked);
    QTest::mouseDClick(m_box->viewport(), Qt::LeftButton, {}, placeOf(5));
    EXPECT_EQ(m_box->textCursor().selectedText(), QStringLiteral("word"));
    EXPECT_EQ(doubleClicked.count(), 1);
    QTest::mouseDClick(m_box->viewport(), Qt::LeftButton, {}, m_box->viewport()->rect().bottomRight() - QPoint(5, 5));
    EXPECT_EQ(doubleClicked.count(), 2);
}

TEST_F(RichTextBoxLinks, ADoubleClickOnAnObjectWithoutAFileIsOneOnText)
{
    m_box->resetText({});
    m_box->insertObjectSource(QByteArrayLiteral("{\\object\\objemb\\objw600\\objh600}"));
    const QSignalSpy doubleClicked(m_box, &RichTextBox::doubleClicked);
    QTest::mouseDClick(m_box->viewport(), Qt::LeftButton, {}, placeOf(0));
    EXPECT_EQ(doubleClicked.count(), 1);
    putCaret(0);
    EXPECT_FALSE(textsOf(menuByKey()).contains(QStringLiteral("Open Object...")));
}

TEST_F(RichTextBoxLinks, ADoubleClickOnAPictureIsOneOnText)
{
    const QSignalSpy doubleClicked(m_box, &RichTextBox::doubleClicked);
    for (const bool locked : {false, true}) {
        m_box->resetText({});
        m_box->insertPicture(redPicture());
        m_box->setLocked(locked);
        QTest::mouseDClick(m_box->viewport(), Qt::LeftButton, {}, placeOf(0));
    }
    EXPECT_EQ(doubleClicked.count(), 2);
    EXPECT_TRUE(m_answers.seen().empty());
    EXPECT_EQ(m_desktop.opened.size(), 0);
}

TEST_F(RichTextBoxLinks, APictureIsOpenedByTheContextMenu)
{
    m_box->resetText({});
    m_box->insertPicture(redPicture());
    QMenu *menu = menuAt(0);
    EXPECT_TRUE(textsOf(menu).contains(QStringLiteral("Save Object As...")));
    m_answers.press(QMessageBox::Yes);
    commandOf(menu, "Open Object...")->trigger();
    EXPECT_TRUE(m_answers.last().text.contains(QStringLiteral("Picture.png")));
    EXPECT_EQ(m_desktop.opened.size(), 1);
}

TEST_F(RichTextBoxLinks, AnObjectScrolledIntoSightIsFoundWhereItIs)
{
    showObject();
    m_box->moveCursor(QTextCursor::Start);
    m_box->insertPlainText(QStringLiteral("line\n").repeated(50));
    m_box->moveCursor(QTextCursor::End);
    m_answers.press(QMessageBox::No);
    QTest::mouseDClick(m_box->viewport(), Qt::LeftButton, {}, placeOf(251));
}

TEST_F(RichTextBoxLinks, ObjectsHaveCommandsInTheContextMenu)
{
    showObject();
    for (const bool locked : {false, true}) {
        m_box->setLocked(locked);
        QMenu *menu = menuAt(1);
        EXPECT_TRUE(textsOf(menu).contains(QStringLiteral("Save Object As...")));
        m_answers.press(QMessageBox::No);
        commandOf(menu, "Open Object...")->trigger();
        menu->close();
        settle();
        menu = menuAt(2);
        EXPECT_FALSE(textsOf(menu).contains(QStringLiteral("Open Object...")));
        menu->close();
        settle();
    }
}

TEST_F(RichTextBoxLinks, TheKeyboardsMenuIsForTheObjectOrLinkAtTheCaret)
{
    showObject();
    const auto offersObject = [this] {
        QMenu *menu = menuByKey();
        const bool offers = textsOf(menu).contains(QStringLiteral("Open Object..."));
        menu->close();
        settle();
        return offers;
    };
    putCaret(1);
    EXPECT_TRUE(offersObject());
    putCaret(2);
    EXPECT_TRUE(offersObject());
    putCaret(0);
    EXPECT_FALSE(offersObject());
    putCaret(1);
    m_box->moveCursor(QTextCursor::Right, QTextCursor::KeepAnchor);
    EXPECT_TRUE(offersObject());
    m_box->selectAll();
    EXPECT_FALSE(offersObject());

    showLink(page);
    putCaret(6);
    EXPECT_TRUE(textsOf(menuByKey()).contains(QStringLiteral("Open Link...")));
}

// The context menu.

TEST_F(RichTextBoxLinks, TheMenuEditsAnUnlockedBox)
{
    QGuiApplication::clipboard()->setText(QStringLiteral("new "));
    m_box->setTextRtf(QStringLiteral("{\\rtf1\\b bold\\par}"));
    putCaret(0);
    QMenu *menu = menuByKey();
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->objectName(), QStringLiteral("mnuText"));
    const QStringList texts = textsOf(menu);
    for (const char *text : {"Undo", "Redo", "Cut", "Copy", "Paste", "Paste as Plain Text", "Delete", "Select All"}) {
        EXPECT_TRUE(texts.contains(QLatin1String(text))) << text;
    }
    EXPECT_EQ(texts.indexOf(QStringLiteral("Paste as Plain Text")), texts.indexOf(QStringLiteral("Paste")) + 1);
    commandOf(menu, "Paste as Plain Text")->trigger();
    EXPECT_EQ(m_box->plainText(), QStringLiteral("new bold"));
    m_box->selectAll();
    EXPECT_EQ(m_box->selBold(), true);
}

TEST_F(RichTextBoxLinks, TheMenuOfALockedBoxOnlyCopiesAndSelects)
{
    QGuiApplication::clipboard()->setText(QStringLiteral("new"));
    m_box->setLocked(true);
    QMenu *menu = menuByKey();
    const QStringList texts = textsOf(menu);
    EXPECT_TRUE(texts.contains(QStringLiteral("Copy")));
    for (const char *text : {"Paste", "Paste as Plain Text", "Cut", "Delete"}) {
        EXPECT_FALSE(texts.contains(QLatin1String(text))) << text;
    }
}

} // namespace
