#include "platform/help/ModalGuest.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>

#include <gtest/gtest.h>

namespace {

/// Whether the keys go to \p window now or soon. (A window also counts as active to
/// QTest::qWaitForWindowActive() when the one that it stands over is.)
bool becomesActive(const QWidget *window)
{
    return QTest::qWaitFor([window] { return QApplication::activeWindow() == window; });
}

/// A window with a line to type in and a button to press.
class Desk : public QWidget
{
public:
    explicit Desk(QWidget *parent = nullptr)
        : QWidget(parent)
        , line(new QLineEdit(this))
        , button(new QPushButton(this))
    {
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(line);
        layout->addWidget(button);
        connect(button, &QPushButton::clicked, this, [this] { ++presses; });
    }

    void display()
    {
        show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(this));
    }

    /// Whether the mouse and the keys, as the desktop sends them, reach the window's controls.
    [[nodiscard]] bool works()
    {
        const int pressed = presses;
        line->clear();
        QTest::mouseClick(windowHandle(), Qt::LeftButton, {}, button->geometry().center());
        activateWindow();
        QCoreApplication::processEvents();
        line->setFocus();
        QTest::keyClick(windowHandle(), Qt::Key_A);
        return presses == pressed + 1 && line->text() == QStringLiteral("a");
    }

    QLineEdit *line;
    QPushButton *button;
    int presses = 0;
};

class ModalGuestTest : public testing::Test
{
protected:
    void SetUp() override
    {
        main.display();
        ASSERT_TRUE(becomesActive(&main));
    }

    void showGuest()
    {
        modals->enter(main.line);
        guest.display();
        guest.activateWindow();
        ASSERT_TRUE(becomesActive(&guest));
    }

    Desk main;
    Desk guest;
    ModalGuest *modals = new ModalGuest(&guest);
};

TEST_F(ModalGuestTest, AWindowThatIsNoGuestIsBlockedByAModalWindow)
{
    Desk other;
    other.display();
    EXPECT_TRUE(other.works());
    QDialog modal(&main);
    modal.open();
    QDialog full;
    full.setModal(true);
    full.show();
    EXPECT_FALSE(other.works());
}

TEST_F(ModalGuestTest, WorksWhenItIsShownOverAModalWindow)
{
    QDialog modal(&main);
    modal.setModal(true);
    modal.show();
    showGuest();
    EXPECT_TRUE(guest.works());
    EXPECT_FALSE(main.works()) << "the modal window still blocks the others";
}

TEST_F(ModalGuestTest, WorksWhenAModalWindowOpensAfterIt)
{
    showGuest();
    QDialog modal(&main);
    modal.setModal(true);
    modal.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&modal));
    EXPECT_TRUE(guest.works());
}

TEST_F(ModalGuestTest, WorksBesideNestedModalWindowsAndAfterEachOfThem)
{
    auto editor = std::make_unique<QDialog>(&main);
    editor->setModal(true);
    editor->show();
    showGuest();
    {
        QMessageBox question(QMessageBox::Question, QStringLiteral("Sure?"), QStringLiteral("Sure?"), QMessageBox::Yes,
                             editor.get());
        question.open();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&question));
        EXPECT_TRUE(guest.works()) << "over the message box";
        question.close();
        QCoreApplication::processEvents();
        EXPECT_TRUE(guest.works()) << "after the message box";
    }
    QCoreApplication::processEvents();
    EXPECT_TRUE(guest.works()) << "after the message box is destroyed";
    EXPECT_FALSE(main.works());

    editor.reset();
    QCoreApplication::processEvents();
    EXPECT_TRUE(guest.isVisible());
    EXPECT_TRUE(guest.works()) << "after the editor";
    EXPECT_EQ(guest.windowHandle()->transientParent(), nullptr);
    EXPECT_TRUE(main.works());
}

TEST_F(ModalGuestTest, ADialogOfItsOwnBlocksIt)
{
    showGuest();
    QDialog own(&guest);
    own.setModal(true);
    own.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&own));
    EXPECT_FALSE(guest.works());
    own.close();
    EXPECT_TRUE(guest.works());
}

TEST_F(ModalGuestTest, GivesTheKeysBackToTheWindowThatHadThem)
{
    showGuest();
    guest.close();
    EXPECT_TRUE(becomesActive(&main));
    QTest::keyClick(QGuiApplication::focusWindow(), Qt::Key_B);
    EXPECT_EQ(main.line->text(), QStringLiteral("b"));
}

TEST_F(ModalGuestTest, GivesTheKeysToTheModalWindowThatOpenedMeanwhile)
{
    showGuest();
    QDialog modal(&main);
    modal.setModal(true);
    modal.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&modal));
    guest.activateWindow();
    ASSERT_TRUE(becomesActive(&guest));
    guest.close();
    EXPECT_TRUE(becomesActive(&modal));
}

TEST_F(ModalGuestTest, TakesTheKeysFromNobodyWhenItClosesInTheBackground)
{
    showGuest();
    Desk other;
    other.display();
    other.activateWindow();
    ASSERT_TRUE(becomesActive(&other));
    guest.close();
    QCoreApplication::processEvents();
    EXPECT_TRUE(other.isActiveWindow());
}

TEST_F(ModalGuestTest, ClosesInPeaceWhenTheWindowThatAskedIsGone)
{
    auto passing = std::make_unique<Desk>();
    passing->display();
    showGuest();
    modals->enter(passing.get());
    passing.reset();
    guest.close();
    EXPECT_FALSE(guest.isVisible());
}

} // namespace
