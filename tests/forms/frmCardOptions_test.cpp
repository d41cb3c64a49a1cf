#include "forms/frmCardOptions/frmCardOptions.h"
#include "tests/support/WindowTest.h"

#include <QAccessible>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QSlider>

#include <set>

namespace {

/// A click on the box or circle itself, wherever the style puts it.
void tickIn(const QWidget &window, const char *name)
{
    auto &button = control<QAbstractButton>(window, name);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
}

/// The dialog over a session that shows backs first and turns cards over after 12 seconds.
class frmCardOptionsTest : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        begin();
    }

    void TearDown() override
    {
        dialog.reset();
        WindowTest::TearDown();
    }

    /// What the session does before it opens the dialog.
    void begin()
    {
        module->study = {.cancelled = false,
                         .style = StudyStyle::FlashCards,
                         .timeSetting = 12,
                         .viewOrder = ViewOrder::back,
                         .questionCount = 7,
                         .multipleChoicePercent = 35,
                         .cardQuery = "SELECT * FROM Flashcards WHERE NIndex = 1"};
    }

    void open()
    {
        dialog = std::make_unique<frmCardOptions>(*module);
        dialog->open();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }

    void tick(const char *name) { tickIn(*dialog, name); }
    void ok() { click(*dialog, "Command1(0)"); }
    void key(Qt::Key key) { QTest::keyClick(dialog->focusWidget(), key); }
    bool isChecked(const char *name) { return control<QAbstractButton>(*dialog, name).isChecked(); }
    QString label(const char *name) { return control<QLabel>(*dialog, name).text(); }
    QSlider &slider() { return control<QSlider>(*dialog, "Slider1"); }
    std::string focused() { return dialog->focusWidget()->objectName().toStdString(); }

    void expectOpeningState()
    {
        EXPECT_TRUE(isChecked("Option1(0)"));
        EXPECT_FALSE(isChecked("Option1(1)"));
        EXPECT_FALSE(isChecked("Option1(2)"));
        EXPECT_FALSE(isChecked("Check1"));
        EXPECT_FALSE(slider().isEnabled());
        EXPECT_EQ(slider().value(), 5);
        EXPECT_EQ(label("Label3"), QStringLiteral("5"));
        EXPECT_EQ(focused(), "Option1(0)");
    }

    void expectSettings(int viewOrder, int timeSetting, bool cancelled)
    {
        const StudySettings &study = module->study;
        EXPECT_EQ(study.viewOrder, viewOrder);
        EXPECT_EQ(study.timeSetting, timeSetting);
        EXPECT_EQ(study.cancelled, cancelled);
        EXPECT_EQ(study.style, StudyStyle::FlashCards);
        EXPECT_EQ(study.questionCount, 7);
        EXPECT_EQ(study.multipleChoicePercent, 35);
        EXPECT_EQ(study.cardQuery, "SELECT * FROM Flashcards WHERE NIndex = 1");
    }

    std::unique_ptr<frmCardOptions> dialog;
};

TEST_F(frmCardOptionsTest, OpensWithFrontFirstAndTheFlipperOffWhateverTheSessionUses)
{
    open();
    expectOpeningState();
    expectSettings(ViewOrder::back, 12, false);
}

TEST_F(frmCardOptionsTest, SaysWhatItAsks)
{
    open();
    EXPECT_EQ(dialog->objectName(), QStringLiteral("frmCardOptions"));
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Flash Card Options"));
    QStringList groups;
    for (const QGroupBox *group : dialog->findChildren<QGroupBox *>()) {
        groups.append(group->title());
    }
    EXPECT_EQ(groups, (QStringList{QStringLiteral("Viewing Order:"), QStringLiteral("Auto Flipper:")}));
    EXPECT_EQ(label("Label1"), QStringLiteral("Select the side of the flash card you want to view first:"));
    EXPECT_EQ(label("Label2"), QStringLiteral("(Seconds)"));
    const std::vector<std::pair<const char *, const char *>> captions{
        {"Option1(0)", "&Front (Question)"},
        {"Option1(1)", "&Back (Answer)"},
        {"Option1(2)", "&Random"},
        {"Check1", "Enable the &Automatic Flipper (1-20):"},
        {"Command1(0)", "OK"},
        {"Command1(1)", "Cancel"},
    };
    for (const auto &[name, caption] : captions) {
        EXPECT_EQ(control<QAbstractButton>(*dialog, name).text().toStdString(), caption) << name;
    }
}

TEST_F(frmCardOptionsTest, HasASizeOfItsOwnThatShowsEverything)
{
    open();
    EXPECT_EQ(dialog->minimumSize(), dialog->maximumSize());
    for (const QWidget *child : dialog->findChildren<QWidget *>()) {
        const QSize wanted =
            child->hasHeightForWidth() ? QSize(0, child->heightForWidth(child->width())) : child->minimumSizeHint();
        EXPECT_GE(child->width(), wanted.width()) << child->objectName().toStdString();
        EXPECT_GE(child->height(), wanted.height()) << child->objectName().toStdString();
        EXPECT_TRUE(dialog->rect().contains(QRect(child->mapTo(dialog.get(), QPoint()), child->size())))
            << child->objectName().toStdString();
    }
}

TEST_F(frmCardOptionsTest, OkWithoutChangesTurnsTheFlipperOffAndShowsFrontsFirst)
{
    open();
    ok();
    EXPECT_FALSE(dialog->isVisible());
    expectSettings(ViewOrder::front, 0, false);
}

TEST_F(frmCardOptionsTest, OkLeavesCancelledAsItIs)
{
    module->study.cancelled = true;
    open();
    ok();
    expectSettings(ViewOrder::front, 0, true);
}

TEST_F(frmCardOptionsTest, EachViewingOrderHasItsNumber)
{
    const std::vector<std::pair<const char *, int>> orders{{"Option1(0)", 1}, {"Option1(1)", 2}, {"Option1(2)", 0}};
    for (const auto &[name, number] : orders) {
        begin();
        module->study.viewOrder = ViewOrder::random;
        open();
        tick("Option1(1)"); // another one first: the last one counts
        tick(name);
        ok();
        expectSettings(number, 0, false);
    }
}

TEST_F(frmCardOptionsTest, TheCheckedFlipperStoresItsSeconds)
{
    open();
    tick("Check1");
    ok();
    expectSettings(ViewOrder::front, 5, false);

    for (const auto &[moves, seconds] : std::vector<std::pair<Qt::Key, int>>{{Qt::Key_Home, 1}, {Qt::Key_End, 20}}) {
        open();
        tick("Check1");
        QTest::keyClick(&slider(), moves);
        ok();
        expectSettings(ViewOrder::front, seconds, false);
    }
}

TEST_F(frmCardOptionsTest, TheUncheckedFlipperStoresNoTimeWhateverItsSliderShows)
{
    open();
    tick("Check1");
    QTest::keyClick(&slider(), Qt::Key_End);
    tick("Check1");
    EXPECT_EQ(label("Label3"), QStringLiteral("20"));
    ok();
    expectSettings(ViewOrder::front, 0, false);
}

TEST_F(frmCardOptionsTest, TheSliderFollowsItsKeysAndTheLabelTheSlider)
{
    open();
    tick("Check1");
    slider().setFocus();
    const std::vector<std::pair<Qt::Key, const char *>> moves{
        {Qt::Key_Right, "6"},    {Qt::Key_Up, "7"},        {Qt::Key_Left, "6"}, {Qt::Key_Down, "5"},
        {Qt::Key_PageUp, "9"},   {Qt::Key_PageDown, "5"},  {Qt::Key_End, "20"}, {Qt::Key_Right, "20"},
        {Qt::Key_PageUp, "20"},  {Qt::Key_PageDown, "16"}, {Qt::Key_Home, "1"}, {Qt::Key_Left, "1"},
        {Qt::Key_PageDown, "1"}, {Qt::Key_PageUp, "5"},
    };
    for (const auto &[pressed, shown] : moves) {
        key(pressed);
        EXPECT_EQ(label("Label3").toStdString(), shown) << QKeySequence(pressed).toString().toStdString();
    }
    EXPECT_EQ(slider().tickInterval(), 1);
    EXPECT_NE(slider().tickPosition(), QSlider::NoTicks);
}

TEST_F(frmCardOptionsTest, TheSliderMovesOnlyWhileItsBoxIsChecked)
{
    open();
    QTest::keyClick(&slider(), Qt::Key_End);
    EXPECT_EQ(slider().value(), 5);
    tick("Check1");
    EXPECT_TRUE(slider().isEnabled());
    QTest::keyClick(&slider(), Qt::Key_Right);
    EXPECT_EQ(slider().value(), 6);
    tick("Check1");
    EXPECT_FALSE(slider().isEnabled());
    QTest::keyClick(&slider(), Qt::Key_Right);
    EXPECT_EQ(slider().value(), 6);
}

TEST_F(frmCardOptionsTest, CancelAndEscapeSetCancelledAndNothingElse)
{
    for (const auto &leave :
         std::vector<std::function<void()>>{[&] { click(*dialog, "Command1(1)"); }, [&] { key(Qt::Key_Escape); }}) {
        begin();
        open();
        tick("Option1(2)");
        tick("Check1");
        leave();
        EXPECT_FALSE(dialog->isVisible());
        expectSettings(ViewOrder::back, 12, true);
    }
}

TEST_F(frmCardOptionsTest, EscapeCancelsFromEveryControl)
{
    for (const char *name : {"Option1(1)", "Check1", "Slider1", "Command1(0)", "Command1(1)"}) {
        begin();
        open();
        tick("Check1");
        control<QWidget>(*dialog, name).setFocus();
        ASSERT_EQ(focused(), name);
        key(Qt::Key_Escape);
        EXPECT_FALSE(dialog->isVisible()) << name;
        expectSettings(ViewOrder::back, 12, true);
    }
}

TEST_F(frmCardOptionsTest, TheCloseBoxWritesNothingAndLeavesCancelledAsItIs)
{
    for (const bool cancelled : {false, true}) {
        begin();
        module->study.cancelled = cancelled;
        open();
        tick("Option1(2)");
        tick("Check1");
        EXPECT_TRUE(dialog->close());
        EXPECT_FALSE(dialog->isVisible());
        expectSettings(ViewOrder::back, 12, cancelled);
    }
}

TEST_F(frmCardOptionsTest, EachOpeningStartsAnew)
{
    DialogAnswers answers;
    answers.act([](QWidget &shown) {
        tickIn(shown, "Option1(1)");
        tickIn(shown, "Check1");
        QTest::keyClick(&control<QSlider>(shown, "Slider1"), Qt::Key_End);
        click(shown, "Command1(0)");
    });
    EXPECT_EQ(frmCardOptions(*module).exec(), QDialog::Accepted);
    expectSettings(ViewOrder::back, 20, false);
    open();
    expectOpeningState();
}

TEST_F(frmCardOptionsTest, AltKeysChoose)
{
    open();
    const std::vector<std::pair<Qt::Key, const char *>> choices{
        {Qt::Key_B, "Option1(1)"}, {Qt::Key_R, "Option1(2)"}, {Qt::Key_F, "Option1(0)"}, {Qt::Key_A, "Check1"}};
    for (const auto &[letter, name] : choices) {
        ASSERT_FALSE(isChecked(name));
        QTest::keyClick(dialog.get(), letter, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([&] { return isChecked(name); })) << name;
    }
    EXPECT_TRUE(slider().isEnabled());
}

TEST_F(frmCardOptionsTest, NoTwoControlsShareAnAltKey)
{
    open();
    std::set<QString> taken;
    std::size_t named = 0;
    for (const QAbstractButton *button : dialog->findChildren<QAbstractButton *>()) {
        if (const QKeySequence mnemonic = QKeySequence::mnemonic(button->text()); !mnemonic.isEmpty()) {
            taken.insert(mnemonic.toString());
            ++named;
        }
    }
    EXPECT_EQ(named, 4U);
    EXPECT_EQ(taken.size(), named);
}

TEST_F(frmCardOptionsTest, TabGoesDownThePageAndPassesTheDisabledSliderOver)
{
    open();
    for (const char *next : {"Check1", "Command1(0)", "Command1(1)", "Option1(0)"}) {
        key(Qt::Key_Tab);
        EXPECT_EQ(focused(), next);
    }
    key(Qt::Key_Tab);
    key(Qt::Key_Space);
    for (const char *next : {"Slider1", "Command1(0)", "Command1(1)", "Option1(0)"}) {
        key(Qt::Key_Tab);
        EXPECT_EQ(focused(), next);
    }
}

TEST_F(frmCardOptionsTest, EnterIsOkExceptOnCancel)
{
    for (const char *name : {"Option1(0)", "Check1", "Slider1", "Command1(0)"}) {
        begin();
        open();
        tick("Check1");
        control<QWidget>(*dialog, name).setFocus();
        key(Qt::Key_Return);
        EXPECT_FALSE(dialog->isVisible()) << name;
        expectSettings(ViewOrder::front, 5, false);
    }
    begin();
    open();
    control<QWidget>(*dialog, "Command1(1)").setFocus();
    key(Qt::Key_Return);
    EXPECT_FALSE(dialog->isVisible());
    expectSettings(ViewOrder::back, 12, true);
}

TEST_F(frmCardOptionsTest, ItCanBeUsedByTheKeyboardAlone)
{
    open();
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    key(Qt::Key_Tab);
    key(Qt::Key_Space);
    key(Qt::Key_Tab);
    key(Qt::Key_PageUp);
    key(Qt::Key_Enter);
    expectSettings(ViewOrder::randomInDialog, 9, false);
}

TEST_F(frmCardOptionsTest, EveryControlHasAnAccessibleName)
{
    open();
    for (const char *name :
         {"Option1(0)", "Option1(1)", "Option1(2)", "Check1", "Slider1", "Command1(0)", "Command1(1)"}) {
        QAccessibleInterface *read = QAccessible::queryAccessibleInterface(&control<QWidget>(*dialog, name));
        ASSERT_NE(read, nullptr) << name;
        EXPECT_FALSE(read->text(QAccessible::Name).isEmpty()) << name;
    }
}

} // namespace
