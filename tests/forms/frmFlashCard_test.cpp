#include "tests/forms/FlashCardTest.h"
#include "tests/support/HelpWindows.h"

#include <QSignalSpy>

namespace {

using frmFlashCardTest = FlashCardTest;

TEST_F(frmFlashCardTest, OpensOnTheFrontOfTheFirstCard)
{
    open();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Cramlet: World History"));
    EXPECT_EQ(front().toPlainText(), QStringLiteral("front 1"));
    EXPECT_EQ(back().toPlainText(), QStringLiteral("back 1"));
    EXPECT_EQ(scene(), "1 of 12, front 1");
}

TEST_F(frmFlashCardTest, EveryButtonHasItsHint)
{
    open();
    const std::array<const char *, 11> hints{"Mark Flash Card",
                                             "Mark Flash Card",
                                             "Shuffle Flash Cards",
                                             "Flash Card Options...",
                                             "Help...",
                                             "Previous Flash Card",
                                             "Exit (Esc)",
                                             "Next Flash Card",
                                             "Pause the Auto Flipper",
                                             "View the Back of this Flash Card",
                                             "View the Back of this Flash Card"};
    for (std::size_t i = 0; i < hints.size(); ++i) {
        EXPECT_EQ(hint(static_cast<Command>(i)), QString::fromLatin1(hints.at(i))) << i;
    }
}

TEST_F(frmFlashCardTest, EveryButtonHasAPictureOfItsOwnButTheTwoThatMark)
{
    open();
    QStringList pictures;
    for (const Command command : {Mark, Shuffle, Options, Help, Previous, Exit, Next, Flipper, FlipUp, FlipDown}) {
        EXPECT_FALSE(pictures.contains(picture(command))) << command;
        EXPECT_TRUE(QFile::exists(QStringLiteral(":/icons/%1.svg").arg(picture(command)))) << command;
        pictures.append(picture(command));
    }
}

TEST_F(frmFlashCardTest, TheCaptionsHaveTheNotebooksHandAtTheirSizes)
{
    open(5);
    EXPECT_EQ(control<QLabel>(*window, "Label1(0)").font().pointSize(), 18);
    EXPECT_EQ(mark().font().pointSize(), 12);
    EXPECT_EQ(countdown().font().pointSize(), 16);
    for (const char *name : {"Label1(0)", "Label1(1)", "Label1(2)"}) {
        EXPECT_EQ(control<QLabel>(*window, name).font().families().value(0), QStringLiteral("Comic Sans MS")) << name;
    }
}

TEST_F(frmFlashCardTest, FlippingTurnsTheCardAndChangesHintsAndPictures)
{
    open();
    run(FlipUp);
    EXPECT_EQ(scene(), "1 of 12, back 1");
    EXPECT_EQ(sideShown(), QStringLiteral("Back (Answer)"));
    EXPECT_EQ(hint(FlipUp), QStringLiteral("View the Front of this Flash Card"));
    EXPECT_EQ(hint(FlipDown), QStringLiteral("View the Front of this Flash Card"));
    EXPECT_EQ(picture(FlipUp), QStringLiteral("flip-to-front-up"));
    EXPECT_EQ(picture(FlipDown), QStringLiteral("flip-to-front-down"));
    run(FlipDown);
    EXPECT_EQ(scene(), "1 of 12, front 1");
    EXPECT_EQ(hint(FlipDown), QStringLiteral("View the Back of this Flash Card"));
    EXPECT_EQ(picture(FlipUp), QStringLiteral("flip-to-back-up"));
}

TEST_F(frmFlashCardTest, DownEndsOnTheBackAndUpOnTheFront)
{
    open();
    key(Qt::Key_Up);
    EXPECT_EQ(shown(), QStringLiteral("front 1")) << "up on the front does nothing";
    key(Qt::Key_Down);
    EXPECT_EQ(shown(), QStringLiteral("back 1"));
    key(Qt::Key_Down);
    EXPECT_EQ(shown(), QStringLiteral("back 1")) << "down on the back does nothing";
    key(Qt::Key_Up);
    EXPECT_EQ(shown(), QStringLiteral("front 1"));
}

TEST_F(frmFlashCardTest, ArrowsAndButtonsMoveFromCardToCard)
{
    open();
    key(Qt::Key_Right);
    EXPECT_EQ(scene(), "2 of 12, front 2");
    run(Next);
    EXPECT_EQ(scene(), "3 of 12, front 3");
    key(Qt::Key_Left);
    EXPECT_EQ(scene(), "2 of 12, front 2");
    run(Previous);
    EXPECT_EQ(scene(), "1 of 12, front 1");
}

TEST_F(frmFlashCardTest, AKeyPressesItsButtonSoThatItClicks)
{
    struct Pressed
    {
        Qt::Key key;
        Command button;
    };
    open(5);
    for (const Pressed &row : {Pressed{Qt::Key_M, Mark}, Pressed{Qt::Key_P, Flipper}, Pressed{Qt::Key_Down, FlipDown},
                               Pressed{Qt::Key_Up, FlipUp}, Pressed{Qt::Key_Right, Next},
                               Pressed{Qt::Key_Left, Previous}, Pressed{Qt::Key_Escape, Exit}}) {
        const QSignalSpy clicked(&button(row.button), &ImageButton::clicked);
        key(row.key);
        EXPECT_EQ(clicked.count(), 1) << row.key;
    }
    settle();
    EXPECT_TRUE(window.isNull());
}

TEST_F(frmFlashCardTest, AnArrowThatIsHeldDownGoesOn)
{
    open();
    repeatKey(Qt::Key_Right);
    repeatKey(Qt::Key_Right);
    EXPECT_EQ(scene(), "3 of 12, front 3");
    repeatKey(Qt::Key_Left);
    EXPECT_EQ(scene(), "2 of 12, front 2");
}

TEST_F(frmFlashCardTest, KeysWithCtrlOrAltAndOtherKeysDoNothing)
{
    open(5);
    for (const Qt::KeyboardModifier modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier}) {
        for (const Qt::Key other : {Qt::Key_Right, Qt::Key_Down, Qt::Key_M, Qt::Key_P, Qt::Key_S}) {
            key(other, modifier);
        }
    }
    for (const Qt::Key other : {Qt::Key_A, Qt::Key_Return, Qt::Key_Space, Qt::Key_Home}) {
        key(other);
    }
    EXPECT_EQ(scene(), "1 of 12, front 1, 5 running");
    EXPECT_EQ(storedMarks(), std::vector<int>{});
}

TEST_F(frmFlashCardTest, ThePlaceIsThatAmongTheCardsOfTheStudy)
{
    study(cardQuery(std::array{large, small}));
    open();
    EXPECT_EQ(place(), QStringLiteral("1 of 16"));
    goTo(16);
    EXPECT_EQ(scene(), "16 of 16, front 4");
}

TEST_F(frmFlashCardTest, AMoveStartsTheCardOnItsStartingSide)
{
    open();
    key(Qt::Key_Down);
    key(Qt::Key_Right);
    EXPECT_EQ(scene(), "2 of 12, front 2");
    key(Qt::Key_Down);
    key(Qt::Key_Left);
    EXPECT_EQ(scene(), "1 of 12, front 1");
}

TEST_F(frmFlashCardTest, EveryCardStartsOnTheBackWhenTheBackComesFirst)
{
    module->study.viewOrder = ViewOrder::back;
    open();
    EXPECT_EQ(scene(), "1 of 12, back 1");
    key(Qt::Key_Up);
    key(Qt::Key_Right);
    EXPECT_EQ(scene(), "2 of 12, back 2");
    key(Qt::Key_Up);
    key(Qt::Key_Left);
    EXPECT_EQ(scene(), "1 of 12, back 1");
}

TEST_F(frmFlashCardTest, OnTheFirstCardPreviousSaysSoAndChangesNothing)
{
    open();
    key(Qt::Key_Down);
    const SeenMessage message = heard([this] { key(Qt::Key_Left); });
    EXPECT_EQ(message.text, QStringLiteral("This is the first flash card."));
    EXPECT_EQ(message.title, QStringLiteral("First Flash Card"));
    EXPECT_EQ(message.icon, QMessageBox::Information);
    EXPECT_EQ(message.buttons, QMessageBox::Ok);
    EXPECT_EQ(scene(), "1 of 12, back 1");
}

TEST_F(frmFlashCardTest, OnTheLastCardNextSaysSoAndChangesNothing)
{
    open();
    goTo(12);
    key(Qt::Key_Down);
    const SeenMessage message = heard([this] { run(Next); });
    EXPECT_EQ(message.text, QStringLiteral("This is the last flash card."));
    EXPECT_EQ(message.title, QStringLiteral("Last Flash Card"));
    EXPECT_EQ(message.icon, QMessageBox::Information);
    EXPECT_EQ(message.buttons, QMessageBox::Ok);
    EXPECT_EQ(scene(), "12 of 12, back 12");
}

TEST_F(frmFlashCardTest, ShowsTheMarkOfAMarkedCardOnly)
{
    markElsewhere(2);
    open();
    EXPECT_EQ(scene(), "1 of 12, front 1");
    key(Qt::Key_Right);
    EXPECT_EQ(scene(), "2 of 12, front 2, marked");
    key(Qt::Key_Right);
    EXPECT_EQ(scene(), "3 of 12, front 3");
}

TEST_F(frmFlashCardTest, ShowsTheMarkOfTheFirstCardAtOnce)
{
    markElsewhere(1);
    open();
    EXPECT_EQ(scene(), "1 of 12, front 1, marked");
}

TEST_F(frmFlashCardTest, ShowsAnEmptySideAsAnEmptyPaneThatCanStillBeFlipped)
{
    writeElsewhere(1, CardField::Front, "");
    writeElsewhere(2, CardField::Back, "");
    open(5);
    EXPECT_EQ(scene(), "1 of 12, , 5 running");
    key(Qt::Key_Down);
    EXPECT_EQ(scene(), "1 of 12, back 1, 5 ended");
    key(Qt::Key_Right);
    key(Qt::Key_Down);
    EXPECT_EQ(scene(), "2 of 12, , 5 ended");
    key(Qt::Key_Up);
    EXPECT_EQ(scene(), "2 of 12, front 2, 5 ended");
}

TEST_F(frmFlashCardTest, TheHelpIsThatOnFlashCardSessions)
{
    open(5);
    run(Help);
    expectHelp(HelpContext::FlashCardSession);
    EXPECT_EQ(scene(), "1 of 12, front 1, 5 running");
}

// The window.

TEST_F(frmFlashCardTest, EscapeClosesStoresThePlacementAndFreesTheFile)
{
    open(5);
    const QSignalSpy closed(window, &frmFlashCard::closed);
    key(Qt::Key_Escape);
    EXPECT_EQ(closed.count(), 1);
    ASSERT_FALSE(window.isNull());
    EXPECT_FALSE(clock().isActive()) << "nobody sees the seconds";
    settle();
    EXPECT_TRUE(window.isNull()) << "a closed session deletes itself";
    EXPECT_EQ(setting("Cards", "WindowState"), QStringLiteral("0"));
    EXPECT_GT(setting("Cards", "Width").toInt(), 0);
    EXPECT_GT(setting("Cards", "Height").toInt(), 0);
    EXPECT_FALSE(std::filesystem::exists(file.string() + "-journal"));
}

TEST_F(frmFlashCardTest, TheExitButtonAndTheCloseBoxCloseToo)
{
    for (const bool byButton : {true, false}) {
        open();
        const QSignalSpy closed(window, &frmFlashCard::closed);
        byButton ? run(Exit) : static_cast<void>(window->close());
        EXPECT_EQ(closed.count(), 1);
        settle();
        EXPECT_TRUE(window.isNull());
    }
}

TEST_F(frmFlashCardTest, AnEscapeThatIsHeldDownFromAQuestionBeforeDoesNotClose)
{
    open();
    repeatKey(Qt::Key_Escape);
    EXPECT_TRUE(isOpen());
}

TEST_F(frmFlashCardTest, TheSubjectIsClosedWithTheWindowNotAfterIt)
{
    open();
    const auto isInUse = [this] {
        bool found = false;
        for (const auto &descriptor : std::filesystem::directory_iterator("/proc/self/fd")) {
            std::error_code gone;
            found = found || std::filesystem::read_symlink(descriptor, gone) == std::filesystem::canonical(file);
        }
        return found;
    };
    EXPECT_TRUE(isInUse());
    bool afterwards = true;
    QObject::connect(window, &frmFlashCard::closed, window, [&] { afterwards = isInUse(); });
    window->close();
    EXPECT_FALSE(afterwards);
}

TEST_F(frmFlashCardTest, HasTheLearnersColour)
{
    module->settings.write(QStringLiteral("Settings"), QStringLiteral("Color"), QStringLiteral("255"));
    open();
    EXPECT_EQ(window->paperColor(), QColor(Qt::red));
}

TEST_F(frmFlashCardTest, ThePlacementIsThatOfTheSessionBefore)
{
    open();
    window->resize(700, 650);
    window->close();
    settle();
    open();
    EXPECT_EQ(window->size(), QSize(700, 650));
}

TEST_F(frmFlashCardTest, ASubjectThatCannotBeOpenedGivesNoWindow)
{
    std::filesystem::remove(file);
    EXPECT_ANY_THROW(delete new frmFlashCard(*module));
}

TEST_F(frmFlashCardTest, EveryButtonStaysWithinTheSmallestWindow)
{
    open(20);
    run(Mark);
    window->resize(10, 10);
    QCoreApplication::processEvents();
    const QRect text(front().mapTo(window, QPoint(0, 0)), front().size());
    for (int index = Mark; index <= FlipDown; ++index) {
        const ImageButton &made = button(static_cast<Command>(index));
        const QRect place(made.mapTo(window, QPoint(0, 0)), made.size());
        EXPECT_TRUE(made.isVisible()) << index;
        EXPECT_TRUE(window->rect().contains(place)) << index;
        EXPECT_FALSE(place.intersects(text)) << index;
    }
    EXPECT_GT(front().height(), 100);
}

} // namespace
