#include "forms/frmOptions/frmOptions.h"
#include "tests/support/WindowTest.h"

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QRadioButton>
#include <QSlider>
#include <QTabBar>

namespace {

class frmOptionsTest : public WindowTest
{
protected:
    void TearDown() override
    {
        delete window;
        WindowTest::TearDown();
    }

    void open()
    {
        window = new frmOptions(*module);
        window->open();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }

    void selectTopic(int row)
    {
        auto &list = control<QListWidget>(*window, "List1");
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(row)).center());
    }

    /// A click on the box or circle itself, wherever the style puts it.
    void tick(const char *name)
    {
        auto &button = control<QAbstractButton>(*window, name);
        QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
    }

    void forward() { click(*window, "cmdOK(2)"); }
    int tab() { return control<QTabBar>(*window, "tbsOptions").currentIndex(); }
    bool pageVisible(const char *name) { return control<QWidget>(*window, name).isVisible(); }
    QString label(const char *name) { return control<QLabel>(*window, name).text(); }
    QSlider &slider(const char *name) { return control<QSlider>(*window, name); }

    QPointer<frmOptions> window;
};

TEST_F(frmOptionsTest, OpensOnTheFirstPageWithTheUsualChoices)
{
    open();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Study Options..."));
    EXPECT_TRUE(module->study.cancelled);
    EXPECT_EQ(module->study.style, StudyStyle::FlashCards);
    EXPECT_EQ(tab(), 0);
    EXPECT_TRUE(pageVisible("picOptions(0)"));
    EXPECT_FALSE(pageVisible("picOptions(2)"));
    EXPECT_FALSE(pageVisible("picOptions(3)"));
    EXPECT_TRUE(control<QRadioButton>(*window, "Option1(0)").isChecked());
    EXPECT_FALSE(control<QCheckBox>(*window, "Check1").isChecked());
    EXPECT_FALSE(control<QAbstractButton>(*window, "cmdOK(1)").isEnabled());
    EXPECT_EQ(control<QAbstractButton>(*window, "cmdOK(2)").text(), QStringLiteral("&Next"));
}

TEST_F(frmOptionsTest, ListsTheTopicsInTheirOwnOrderAndSelectsNone)
{
    open();
    const auto &list = control<QListWidget>(*window, "List1");
    ASSERT_EQ(list.count(), 3);
    EXPECT_EQ(list.item(0)->text(), QStringLiteral("Large"));
    EXPECT_EQ(list.item(1)->text(), QStringLiteral("Small & tidy"));
    EXPECT_EQ(list.item(2)->text(), QStringLiteral("Empty"));
    EXPECT_TRUE(list.selectedItems().isEmpty());
}

TEST_F(frmOptionsTest, TheSecondPageFollowsTheStyleEachTimeItIsEntered)
{
    open();
    forward();
    EXPECT_EQ(tab(), 1);
    EXPECT_TRUE(pageVisible("picOptions(2)"));
    EXPECT_EQ(control<QAbstractButton>(*window, "cmdOK(2)").text(), QStringLiteral("&Study"));
    click(*window, "cmdOK(1)");
    EXPECT_EQ(tab(), 0);
    EXPECT_TRUE(pageVisible("picOptions(0)"));
    tick("Option1(1)");
    EXPECT_EQ(module->study.style, StudyStyle::Test);
    forward();
    EXPECT_TRUE(pageVisible("picOptions(3)"));
    EXPECT_FALSE(pageVisible("picOptions(2)"));
    EXPECT_FALSE(pageVisible("picOptions(0)"));
    EXPECT_TRUE(control<QAbstractButton>(*window, "cmdOK(1)").isEnabled());
}

TEST_F(frmOptionsTest, TheTabsSwitchThePagesToo)
{
    open();
    auto &tabs = control<QTabBar>(*window, "tbsOptions");
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
    EXPECT_TRUE(pageVisible("picOptions(2)"));
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(0).center());
    EXPECT_TRUE(pageVisible("picOptions(0)"));
    EXPECT_EQ(tabs.tabToolTip(0), QStringLiteral("Select your study style and the topics to be studied"));
    EXPECT_EQ(tabs.tabToolTip(1), QStringLiteral("Select flash card or test options"));
}

TEST_F(frmOptionsTest, SlidersHaveTheirRangesAndShowTheirValues)
{
    struct Row
    {
        const char *name;
        int least, most, start, step, pageStep, tick;
    };
    open();
    for (const Row &row : {Row{"Slider1", 1, 20, 5, 1, 4, 1}, Row{"Slider2(0)", 5, 50, 20, 1, 5, 1},
                           Row{"Slider2(1)", 0, 100, 60, 1, 5, 10}, Row{"Slider2(2)", 2, 50, 20, 1, 5, 2}}) {
        const QSlider &made = slider(row.name);
        EXPECT_EQ(made.minimum(), row.least) << row.name;
        EXPECT_EQ(made.maximum(), row.most) << row.name;
        EXPECT_EQ(made.value(), row.start) << row.name;
        EXPECT_EQ(made.singleStep(), row.step) << row.name;
        EXPECT_EQ(made.pageStep(), row.pageStep) << row.name;
        EXPECT_EQ(made.tickInterval(), row.tick) << row.name;
    }
    EXPECT_EQ(label("Label3"), QStringLiteral("5"));
    EXPECT_EQ(label("Label6"), QStringLiteral("20"));
    EXPECT_EQ(label("Label11"), QStringLiteral("60%"));
    EXPECT_EQ(label("Label13"), QStringLiteral("40%"));
    EXPECT_EQ(label("Label9"), QStringLiteral("20"));

    tick("Option1(1)");
    forward();
    slider("Slider2(1)").setFocus();
    QTest::keyClick(&slider("Slider2(1)"), Qt::Key_Home);
    EXPECT_EQ(label("Label11"), QStringLiteral("0%"));
    EXPECT_EQ(label("Label13"), QStringLiteral("100%"));
    QTest::keyClick(&slider("Slider2(0)"), Qt::Key_PageUp);
    EXPECT_EQ(label("Label6"), QStringLiteral("25"));
}

TEST_F(frmOptionsTest, TheTimeSlidersFollowTheirBoxes)
{
    open();
    forward();
    EXPECT_FALSE(slider("Slider1").isEnabled());
    tick("Check2");
    EXPECT_TRUE(slider("Slider1").isEnabled());
    tick("Check2");
    EXPECT_FALSE(slider("Slider1").isEnabled());
    click(*window, "cmdOK(1)");
    tick("Option1(1)");
    forward();
    EXPECT_FALSE(slider("Slider2(2)").isEnabled());
    tick("Check3");
    EXPECT_TRUE(slider("Slider2(2)").isEnabled());
}

TEST_F(frmOptionsTest, StudyHandsOverTheChoicesAndCloses)
{
    open();
    selectTopic(0);
    forward();
    tick("Option1(3)");
    tick("Check2");
    forward();
    settle();
    EXPECT_TRUE(window.isNull());
    EXPECT_FALSE(module->study.cancelled);
    EXPECT_EQ(module->study.style, StudyStyle::FlashCards);
    EXPECT_EQ(module->study.viewOrder, ViewOrder::back);
    EXPECT_EQ(module->study.timeSetting, 5);
    EXPECT_EQ(module->study.questionCount, 12);
    EXPECT_EQ(module->study.cardQuery, "SELECT * FROM Flashcards WHERE NIndex = " + std::to_string(large));
}

TEST_F(frmOptionsTest, ASecondClickThatComesAfterItHasClosedStartsNoSecondStudy)
{
    open();
    int studies = 0;
    QObject::connect(window, &QDialog::finished, window, [&studies] { ++studies; });
    selectTopic(0);
    forward();
    forward();
    ASSERT_FALSE(window->isVisible());
    forward();
    EXPECT_EQ(studies, 1);
}

TEST_F(frmOptionsTest, TwoTopicsSelectedByTheMouseAreJoined)
{
    open();
    selectTopic(1);
    selectTopic(0);
    forward();
    forward();
    EXPECT_EQ(module->study.cardQuery, "SELECT * FROM Flashcards WHERE NIndex = " + std::to_string(large) +
                                           " OR NIndex = " + std::to_string(small));
}

TEST_F(frmOptionsTest, TheUncheckedFlipperStoresNoTimeWhateverItsSliderShows)
{
    open();
    selectTopic(0);
    forward();
    tick("Check2");
    QTest::keyClick(&slider("Slider1"), Qt::Key_End);
    EXPECT_EQ(label("Label3"), QStringLiteral("20"));
    tick("Check2");
    forward();
    EXPECT_FALSE(module->study.cancelled);
    EXPECT_EQ(module->study.timeSetting, 0);
}

TEST_F(frmOptionsTest, WithNothingChosenItSaysSoAndGoesBackToTheTopics)
{
    open();
    forward();
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    forward();
    EXPECT_EQ(answers.last().text, QStringLiteral("Select the Topc(s) you wish to study."));
    EXPECT_EQ(answers.last().title, QStringLiteral("No Topic(s)"));
    EXPECT_EQ(answers.last().icon, QMessageBox::Information);
    EXPECT_EQ(tab(), 0);
    EXPECT_EQ(window->focusWidget()->objectName(), QStringLiteral("List1"));
    EXPECT_TRUE(module->study.cancelled);
}

TEST_F(frmOptionsTest, WithoutCardsItSaysSoAndKeepsTheChoices)
{
    open();
    selectTopic(2);
    forward();
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    forward();
    EXPECT_EQ(answers.last().text, QStringLiteral("There are no flash cards for the topic(s) you've selected."));
    EXPECT_EQ(answers.last().title, QStringLiteral("No Flash Cards"));
    EXPECT_EQ(tab(), 0);
    EXPECT_EQ(window->focusWidget()->objectName(), QStringLiteral("List1"));
    EXPECT_TRUE(control<QListWidget>(*window, "List1").item(2)->isSelected());
}

TEST_F(frmOptionsTest, UnderFiveCardsItSaysSoAndGoesToTheStyle)
{
    open();
    selectTopic(1);
    forward();
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    forward();
    EXPECT_EQ(answers.last().text, QStringLiteral("There must be at least 5 flash cards to create test questions."));
    EXPECT_EQ(answers.last().title, QStringLiteral("Under 5 flash Cards"));
    EXPECT_EQ(tab(), 0);
    EXPECT_EQ(window->focusWidget()->objectName(), QStringLiteral("Option1(0)"));
    EXPECT_TRUE(module->study.cancelled);
}

TEST_F(frmOptionsTest, CancelEscapeAndTheCloseBoxLeaveTheStudyCancelled)
{
    const std::array<std::function<void()>, 3> leaves{
        [&] { click(*window, "cmdOK(0)"); },
        [&] { QTest::keyClick(window, Qt::Key_Escape); },
        [&] { window->close(); },
    };
    for (const auto &leave : leaves) {
        open();
        selectTopic(0);
        leave();
        settle();
        EXPECT_TRUE(window.isNull());
        EXPECT_TRUE(module->study.cancelled);
    }
}

TEST_F(frmOptionsTest, ReopenedItShowsTheUsualChoicesAgain)
{
    open();
    tick("Option1(1)");
    selectTopic(0);
    forward();
    QTest::keyClick(&slider("Slider2(0)"), Qt::Key_End);
    forward();
    settle();
    open();
    EXPECT_TRUE(control<QRadioButton>(*window, "Option1(0)").isChecked());
    EXPECT_TRUE(control<QListWidget>(*window, "List1").selectedItems().isEmpty());
    EXPECT_EQ(slider("Slider2(0)").value(), 20);
    EXPECT_TRUE(module->study.cancelled);
}

TEST_F(frmOptionsTest, ASubjectWithoutTopicsTakesMarkedCardsOnly)
{
    SubjectStore::create(file);
    open();
    EXPECT_EQ(control<QListWidget>(*window, "List1").count(), 0);
    tick("Check1");
    forward();
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    forward();
    EXPECT_EQ(answers.last().title, QStringLiteral("No Flash Cards"));
    EXPECT_EQ(module->study.cardQuery, "Select * FROM Flashcards WHERE Marked = Yes");
}

TEST_F(frmOptionsTest, ItCanBeUsedByTheKeyboardAlone)
{
    open();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); // to the topics: the two styles are one stop
    ASSERT_EQ(window->focusWidget()->objectName(), QStringLiteral("List1"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QTest::keyClick(window, Qt::Key_Return);
    EXPECT_EQ(tab(), 1);
    QTest::keyClick(window, Qt::Key_Return);
    EXPECT_FALSE(module->study.cancelled);
}

TEST_F(frmOptionsTest, EnterOnCancelCancels)
{
    open();
    control<QPushButton>(*window, "cmdOK(0)").setFocus();
    QTest::keyClick(window->focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(window && window->isVisible());
    EXPECT_TRUE(module->study.cancelled);
}

} // namespace
