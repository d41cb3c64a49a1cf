#include "tests/forms/FlashCardTest.h"
#include "tests/support/Heard.h"

namespace {

class SessionAnnouncements : public FlashCardTest
{
protected:
    QWidget &place() { return control<QWidget>(*window, "Picture1"); }

    /// What is told of the card while \p action runs.
    template <class Action>
    QStringList told(Action action)
    {
        const Heard heard;
        action();
        return Heard::namesOf(place());
    }
};

TEST_F(SessionAnnouncements, ACardThatIsReachedIsToldOnceWithItsSideAndItsText)
{
    open();
    EXPECT_EQ(place().accessibleName(), QStringLiteral("Card 1 of 12, Front (Question): front 1"));
    EXPECT_EQ(told([this] { key(Qt::Key_Right); }),
              QStringList(QStringLiteral("Card 2 of 12, Front (Question): front 2")));
    EXPECT_EQ(told([this] { key(Qt::Key_Left); }),
              QStringList(QStringLiteral("Card 1 of 12, Front (Question): front 1")));
}

TEST_F(SessionAnnouncements, ACardThatIsTurnedOverIsToldByItsOtherSide)
{
    open();
    EXPECT_EQ(told([this] { key(Qt::Key_Down); }), QStringList(QStringLiteral("Card 1 of 12, Back (Answer): back 1")));
    EXPECT_EQ(told([this] { key(Qt::Key_Up); }),
              QStringList(QStringLiteral("Card 1 of 12, Front (Question): front 1")));
}

TEST_F(SessionAnnouncements, TheFlipperTellsTheSideAndNotTheSeconds)
{
    open(3);
    EXPECT_EQ(told([this] { passSeconds(2); }), QStringList());
    EXPECT_EQ(told([this] { passSecond(); }), QStringList(QStringLiteral("Card 1 of 12, Back (Answer): back 1")));
}

TEST_F(SessionAnnouncements, TheMarkIsToldWithTheCardAndAtItsButtons)
{
    open();
    EXPECT_EQ(button(Mark).accessibleDescription(), QStringLiteral("Not marked"));
    EXPECT_EQ(told([this] { key(Qt::Key_M); }),
              QStringList(QStringLiteral("Card 1 of 12, Front (Question), marked: front 1")));
    EXPECT_EQ(button(Mark).accessibleDescription(), QStringLiteral("Marked"));
    EXPECT_EQ(button(MarkToo).accessibleDescription(), QStringLiteral("Marked"));
    EXPECT_EQ(told([this] { key(Qt::Key_M); }), QStringList(QStringLiteral("Card 1 of 12, Front (Question): front 1")));
}

TEST_F(SessionAnnouncements, ACardThatCannotBeReadIsToldWithoutAText)
{
    open();
    deleteElsewhere(2);
    dialogs.press(QMessageBox::Ok);
    key(Qt::Key_Right);
    EXPECT_EQ(dialogs.last().title, QStringLiteral("Run-time error"));
    EXPECT_FALSE(place().accessibleName().contains(QStringLiteral("front 1")))
        << place().accessibleName().toStdString();
}

TEST_F(SessionAnnouncements, TheFlipperButtonSaysWhetherItRuns)
{
    open(9);
    EXPECT_EQ(button(Flipper).accessibleDescription(), QStringLiteral("Running"));
    key(Qt::Key_P);
    EXPECT_EQ(button(Flipper).accessibleDescription(), QStringLiteral("Stopped"));
}

} // namespace
