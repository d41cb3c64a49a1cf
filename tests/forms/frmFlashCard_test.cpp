#include "forms/frmFlashCard/frmFlashCard.h"
#include "platform/ImageButton.h"
#include "platform/RichTextBox.h"
#include "tests/support/WindowTest.h"

#include <QLabel>
#include <QPointer>
#include <QScrollBar>
#include <QSignalSpy>

namespace {

class frmFlashCardTest : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        module->study.cardQuery = cardQuery(std::array{large});
        module->study.cancelled = false;
    }

    void TearDown() override
    {
        delete window;
        WindowTest::TearDown();
    }

    void open()
    {
        window = new frmFlashCard(*module);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }

    void key(Qt::Key key) { QTest::keyClick(window->focusWidget(), key); }
    RichTextBox &front() { return control<RichTextBox>(*window, "RichTextBox1(0)"); }
    RichTextBox &back() { return control<RichTextBox>(*window, "RichTextBox1(1)"); }
    QString shown() { return (front().isVisible() ? front() : back()).toPlainText(); }
    QString sideShown() { return control<QLabel>(*window, "Label1(0)").text(); }
    QString hint(const char *name) { return control<ImageButton>(*window, name).toolTip(); }
    QString picture(const char *name) { return control<ImageButton>(*window, name).picture(); }

    QPointer<frmFlashCard> window;
};

TEST_F(frmFlashCardTest, OpensOnTheFrontOfTheFirstCard)
{
    open();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Cramlet: World History"));
    EXPECT_TRUE(front().isVisible());
    EXPECT_FALSE(back().isVisible());
    EXPECT_EQ(front().toPlainText(), QStringLiteral("front 1"));
    EXPECT_EQ(back().toPlainText(), QStringLiteral("back 1"));
    EXPECT_EQ(sideShown(), QStringLiteral("Front (Question)"));
    EXPECT_FALSE(control<QLabel>(*window, "Label1(1)").isVisible());
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
        const std::string name = "Image1(" + std::to_string(i) + ")";
        EXPECT_EQ(hint(name.c_str()), QString::fromLatin1(hints.at(i))) << name;
    }
}

TEST_F(frmFlashCardTest, FlippingTurnsTheCardAndChangesHintsAndPictures)
{
    open();
    const QString up = picture("Image1(9)");
    const QString down = picture("Image1(10)");
    EXPECT_NE(up, down);
    click(*window, "Image1(9)");
    EXPECT_EQ(shown(), QStringLiteral("back 1"));
    EXPECT_EQ(sideShown(), QStringLiteral("Back (Answer)"));
    EXPECT_EQ(hint("Image1(9)"), QStringLiteral("View the Front of this Flash Card"));
    EXPECT_EQ(hint("Image1(10)"), QStringLiteral("View the Front of this Flash Card"));
    EXPECT_NE(picture("Image1(9)"), up);
    EXPECT_NE(picture("Image1(10)"), down);
    click(*window, "Image1(10)");
    EXPECT_EQ(shown(), QStringLiteral("front 1"));
    EXPECT_EQ(hint("Image1(10)"), QStringLiteral("View the Back of this Flash Card"));
    EXPECT_EQ(picture("Image1(9)"), up);
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
    EXPECT_EQ(shown(), QStringLiteral("front 2"));
    click(*window, "Image1(7)");
    EXPECT_EQ(shown(), QStringLiteral("front 3"));
    key(Qt::Key_Left);
    EXPECT_EQ(shown(), QStringLiteral("front 2"));
    click(*window, "Image1(5)");
    EXPECT_EQ(shown(), QStringLiteral("front 1"));
}

TEST_F(frmFlashCardTest, AMoveStartsTheCardOnItsStartingSide)
{
    open();
    key(Qt::Key_Down);
    key(Qt::Key_Right);
    EXPECT_EQ(shown(), QStringLiteral("front 2"));
    EXPECT_EQ(sideShown(), QStringLiteral("Front (Question)"));
}

TEST_F(frmFlashCardTest, EveryCardStartsOnTheBackWhenTheBackComesFirst)
{
    module->study.viewOrder = ViewOrder::back;
    open();
    for (int card = 1; card <= 3; ++card) {
        EXPECT_EQ(shown(), QStringLiteral("back %1").arg(card));
        EXPECT_EQ(sideShown(), QStringLiteral("Back (Answer)"));
        EXPECT_EQ(hint("Image1(9)"), QStringLiteral("View the Front of this Flash Card"));
        key(Qt::Key_Up);
        key(Qt::Key_Right);
    }
}

TEST_F(frmFlashCardTest, OnTheFirstCardPreviousSaysSoAndChangesNothing)
{
    open();
    key(Qt::Key_Down);
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    key(Qt::Key_Left);
    EXPECT_EQ(answers.last().text, QStringLiteral("This is the first flash card."));
    EXPECT_EQ(answers.last().title, QStringLiteral("First Flash Card"));
    EXPECT_EQ(answers.last().icon, QMessageBox::Information);
    EXPECT_EQ(shown(), QStringLiteral("back 1"));
}

TEST_F(frmFlashCardTest, OnTheLastCardNextSaysSoAndChangesNothing)
{
    open();
    for (int moves = 0; moves < 11; ++moves) {
        key(Qt::Key_Right);
    }
    key(Qt::Key_Down);
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    click(*window, "Image1(7)");
    EXPECT_EQ(answers.last().text, QStringLiteral("This is the last flash card."));
    EXPECT_EQ(answers.last().title, QStringLiteral("Last Flash Card"));
    EXPECT_EQ(shown(), QStringLiteral("back 12"));
}

TEST_F(frmFlashCardTest, ShowsTheMarkOfAMarkedCardOnly)
{
    {
        SubjectStore store(file);
        CardSet cards = store.openRecordSet(cardsOfTopic(large));
        cards.setAbsolutePosition(1);
        cards.edit();
        cards.setFlag(CardField::Marked, true);
        cards.update();
    }
    open();
    const auto &mark = control<QLabel>(*window, "Label1(1)");
    const QString unmarked = picture("Image1(0)");
    EXPECT_FALSE(mark.isVisible());
    key(Qt::Key_Right);
    EXPECT_TRUE(mark.isVisible());
    EXPECT_EQ(mark.text(), QStringLiteral("*** MARKED ***"));
    EXPECT_NE(picture("Image1(0)"), unmarked);
    EXPECT_EQ(picture("Image1(0)"), picture("Image1(1)"));
    key(Qt::Key_Right);
    EXPECT_FALSE(mark.isVisible());
    EXPECT_EQ(picture("Image1(0)"), unmarked);
}

TEST_F(frmFlashCardTest, ShowsAnEmptySideAsAnEmptyPaneThatCanStillBeFlipped)
{
    {
        SubjectStore store(file);
        CardSet cards = store.openRecordSet(cardsOfTopic(large));
        cards.edit();
        cards.setText(CardField::Front, "");
        cards.update();
    }
    open();
    EXPECT_EQ(shown(), QString());
    key(Qt::Key_Down);
    EXPECT_EQ(shown(), QStringLiteral("back 1"));
}

TEST_F(frmFlashCardTest, AClickInTheTextLeavesTheFocusWithTheWindow)
{
    open();
    QTest::mouseClick(front().viewport(), Qt::LeftButton);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("Picture1"));
    key(Qt::Key_Down);
    EXPECT_EQ(shown(), QStringLiteral("back 1"));
}

TEST_F(frmFlashCardTest, AClickOnAButtonLeavesTheKeysWithTheWindow)
{
    open();
    click(*window, "Image1(7)");
    key(Qt::Key_Right);
    EXPECT_EQ(shown(), QStringLiteral("front 3"));
}

TEST_F(frmFlashCardTest, WithoutTheFlipperItsButtonAndCountdownAreHidden)
{
    open();
    EXPECT_FALSE(control<ImageButton>(*window, "Image1(8)").isVisible());
    EXPECT_FALSE(control<QLabel>(*window, "Label1(2)").isVisible());
    key(Qt::Key_P);
    EXPECT_EQ(shown(), QStringLiteral("front 1"));
}

TEST_F(frmFlashCardTest, EscapeClosesStoresThePlacementAndFreesTheFile)
{
    open();
    const QSignalSpy closed(window, &frmFlashCard::closed);
    key(Qt::Key_Escape);
    EXPECT_EQ(closed.count(), 1);
    settle();
    EXPECT_TRUE(window.isNull()) << "a closed session deletes itself";
    EXPECT_EQ(setting("Cards", "WindowState"), QStringLiteral("0"));
    EXPECT_GT(setting("Cards", "Width").toInt(), 0);
    EXPECT_GT(setting("Cards", "Height").toInt(), 0);
    EXPECT_FALSE(std::filesystem::exists(file.string() + "-journal"));
}

TEST_F(frmFlashCardTest, ACardDeletedMeanwhileIsReportedAndTheSessionGoesOn)
{
    open();
    {
        SubjectStore other(file);
        CardSet cards = other.openRecordSet(cardsOfTopic(large));
        cards.setAbsolutePosition(1);
        cards.remove();
    }
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    key(Qt::Key_Right);
    EXPECT_EQ(answers.last().icon, QMessageBox::Critical);
    EXPECT_TRUE(answers.last().text.contains(QString::fromStdString(file.string())));
    EXPECT_EQ(shown(), QString()) << "the card before must not be shown in its place";
    key(Qt::Key_Right);
    EXPECT_EQ(shown(), QStringLiteral("front 3"));
}

TEST_F(frmFlashCardTest, ASubjectThatCannotBeOpenedGivesNoWindow)
{
    std::filesystem::remove(file);
    EXPECT_ANY_THROW(delete new frmFlashCard(*module));
}

TEST_F(frmFlashCardTest, EveryButtonStaysWithinTheSmallestWindow)
{
    open();
    window->resize(10, 10);
    QTest::qWait(0);
    for (int button = 0; button <= 10; ++button) {
        const auto &made = control<ImageButton>(*window, qPrintable(QStringLiteral("Image1(%1)").arg(button)));
        const QRect place(made.mapTo(window, QPoint(0, 0)), made.size());
        EXPECT_TRUE(window->rect().contains(place)) << button;
        EXPECT_FALSE(made.isVisible() && place.intersects(QRect(front().mapTo(window, QPoint(0, 0)), front().size())))
            << button;
    }
    EXPECT_GT(front().height(), 100);
}

TEST_F(frmFlashCardTest, LongTextsScrollByThePageKeys)
{
    {
        SubjectStore store(file);
        CardSet cards = store.openRecordSet(cardsOfTopic(large));
        cards.edit();
        std::string lines = "{\\rtf1 ";
        for (int line = 0; line < 300; ++line) {
            lines += "line\\par ";
        }
        cards.setText(CardField::Front, lines + "}");
        cards.update();
    }
    open();
    const QScrollBar *scroll = front().verticalScrollBar();
    EXPECT_EQ(scroll->value(), 0);
    key(Qt::Key_PageDown);
    EXPECT_GT(scroll->value(), 0);
    key(Qt::Key_PageUp);
    EXPECT_EQ(scroll->value(), 0);
}

} // namespace
