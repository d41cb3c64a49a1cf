#include "forms/frmEditCards/frmEditCards.h"
#include "forms/frmFlashCard/frmFlashCard.h"
#include "forms/frmOpen/frmOpen.h"
#include "forms/frmOptions/frmOptions.h"
#include "forms/frmTest/frmTest.h"
#include "platform/ImageButton.h"
#include "platform/PaperPalette.h"
#include "platform/SelectAnswer.h"
#include "platform/Twips.h"
#include "tests/forms/NotesTest.h"
#include "tests/support/HelpWindows.h"

#include <QColorDialog>
#include <QListWidget>

namespace {

class frmNotesTest : public NotesTest
{
protected:
    /// Studies the first topic as flash cards, by the wizard.
    void studyFirstTopic()
    {
        run(Study);
        auto *wizard = visibleWindow<frmOptions>();
        ASSERT_NE(wizard, nullptr);
        auto &topics = control<QListWidget>(*wizard, "List1");
        QTest::mouseClick(topics.viewport(), Qt::LeftButton, {}, topics.visualItemRect(topics.item(0)).center());
        click(*wizard, "cmdOK(2)");
        click(*wizard, "cmdOK(2)");
    }
};

TEST_F(frmNotesTest, OpensOnTheFirstTopicWithATabForEach)
{
    open();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Cramlet: World History"));
    ASSERT_EQ(tabs().count(), 3);
    EXPECT_EQ(tabs().tabData(0).toString(), QStringLiteral("Key%1").arg(large));
    EXPECT_EQ(tabs().tabData(2).toString(), QStringLiteral("Key%1").arg(empty));
    EXPECT_EQ(tabs().currentIndex(), 0);
    EXPECT_EQ(tabs().toolTip(), QStringLiteral("Select your topic"));
    EXPECT_EQ(title(), QStringLiteral("Large"));
    EXPECT_EQ(notes(), QStringLiteral("Large notes..."));
    EXPECT_EQ(status().text(), QStringLiteral("This topic has 12 flash cards."));
    EXPECT_TRUE(status().isVisible());
}

TEST_F(frmNotesTest, ATabShowsItsTopic)
{
    open();
    clickTab(1);
    EXPECT_EQ(title(), QStringLiteral("Small & tidy"));
    EXPECT_EQ(notes(), QStringLiteral("Small & tidy notes..."));
    EXPECT_EQ(status().text(), QStringLiteral("This topic has 4 flash cards."));
    clickTab(2);
    EXPECT_EQ(status().text(), QStringLiteral("This topic has no flash cards."));
}

TEST_F(frmNotesTest, OneCardHasNoSingularForm)
{
    addCards(file, empty, 1);
    open();
    clickTab(2);
    EXPECT_EQ(status().text(), QStringLiteral("This topic has 1 flash cards."));
}

TEST_F(frmNotesTest, ASubjectWithoutTopicsInvitesToCreateOne)
{
    SubjectStore::create(file);
    open();
    EXPECT_EQ(tabs().count(), 0);
    EXPECT_EQ(title(), QStringLiteral("Create Topic..."));
    EXPECT_EQ(notes(), QString());
    EXPECT_FALSE(status().isVisible());
    EXPECT_FALSE(box().isVisible());
}

TEST_F(frmNotesTest, NotesAreReadOnly)
{
    open();
    box().setFocus();
    type(QStringLiteral("abc"));
    EXPECT_EQ(notes(), QStringLiteral("Large notes..."));
}

TEST_F(frmNotesTest, EveryCommandHasItsHint)
{
    open();
    const std::array<const char *, 9> hints{
        "Create Topic...",     "Rename Topic...", "Delete Topic", "Edit Flash Cards...", "Study...",
        "Background color...", "Help...",         "Exit (Esc)",   "Edit Notes..."};
    for (std::size_t i = 0; i < hints.size(); ++i) {
        const std::string name = "Image1(" + std::to_string(i) + ")";
        EXPECT_EQ(control<ImageButton>(*window, name.c_str()).toolTip(), QString::fromLatin1(hints.at(i)));
    }
}

TEST_F(frmNotesTest, ItKeepsAMinimumSize)
{
    open();
    window->resize(10, 10);
    EXPECT_EQ(window->size(), QSize(toPixels(9315), toPixels(6105)));
}

TEST_F(frmNotesTest, TheStatusLineStandsBelowTheNotesWithinTheTabsPage)
{
    open();
    const auto place = [&](const QWidget &widget) { return QRect(widget.mapTo(window, QPoint(0, 0)), widget.size()); };
    EXPECT_GE(place(box()).top(), place(tabs()).bottom());
    EXPECT_GE(place(status()).top(), place(box()).bottom());
    EXPECT_LE(place(status()).bottom(), window->height());
    EXPECT_LE(place(box()).right(), window->width());
}

TEST_F(frmNotesTest, EscapeAsksAndCancelLeavesEverythingAsItWas)
{
    open();
    clickTab(1);
    DialogAnswers answers;
    answers.press(QMessageBox::Cancel);
    QTest::keyClick(&tabs(), Qt::Key_Escape);
    EXPECT_EQ(answers.last().text, QStringLiteral("Do you want to create or open another subject?"));
    EXPECT_EQ(answers.last().title, QStringLiteral("Stop Studying"));
    EXPECT_EQ(answers.last().icon, QMessageBox::Question);
    EXPECT_EQ(answers.last().buttons, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(title(), QStringLiteral("Small & tidy"));
}

TEST_F(frmNotesTest, EscapeAtTheQuestionIsCancel)
{
    open();
    DialogAnswers answers;
    answers.key(Qt::Key_Escape);
    run(Exit);
    EXPECT_TRUE(isOpen());
}

TEST_F(frmNotesTest, EscapeInTheNotesClosesTheWindowToo)
{
    open();
    box().setFocus();
    DialogAnswers answers;
    answers.press(QMessageBox::Cancel);
    key(Qt::Key_Escape);
    EXPECT_EQ(answers.last().title, QStringLiteral("Stop Studying"));
}

TEST_F(frmNotesTest, NoStoresThePlacementAndCloses)
{
    open();
    DialogAnswers answers;
    answers.press(QMessageBox::No);
    window->close();
    EXPECT_FALSE(isOpen());
    settle();
    EXPECT_TRUE(window.isNull());
    EXPECT_EQ(setting("Notes", "WindowState"), QStringLiteral("0"));
    EXPECT_GT(setting("Notes", "Width").toInt(), 0);
    EXPECT_GT(setting("Notes", "Height").toInt(), 0);
}

TEST_F(frmNotesTest, APlacementThatCannotBeStoredIsReportedAndTheWindowClosesAllTheSame)
{
    open();
    blockSettings();
    DialogAnswers answers;
    answers.press(QMessageBox::No).press(QMessageBox::Ok);
    window->close();
    EXPECT_EQ(answers.last().icon, QMessageBox::Critical);
    EXPECT_FALSE(isOpen());
}

TEST_F(frmNotesTest, YesShowsTheChooserAndThenTheNewSubject)
{
    const std::filesystem::path other = folder.file("Chemistry.crl");
    SubjectStore::create(other);
    addTopic(other, "Acids");
    module->settings.write(QStringLiteral("Recent"), QStringLiteral("Name0"), QStringLiteral("Chemistry"));
    module->settings.write(QStringLiteral("Recent"), QStringLiteral("Path0"), QString::fromStdString(other.string()));
    open();
    DialogAnswers answers;
    answers.press(QMessageBox::Yes);
    window->close();
    EXPECT_TRUE(isOpen());
    auto *chooser = visibleWindow<frmOpen>();
    ASSERT_NE(chooser, nullptr);
    EXPECT_TRUE(chooser->isModal());
    click(*chooser, "Image1(2)");
    settle();
    EXPECT_EQ(visibleWindow<frmOpen>(), nullptr);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Cramlet: Chemistry"));
    ASSERT_EQ(tabs().count(), 1);
    EXPECT_EQ(title(), QStringLiteral("Acids"));
}

TEST_F(frmNotesTest, TheFocusIsWhereItWasWhenTheChooserIsGone)
{
    open();
    DialogAnswers answers;
    answers.press(QMessageBox::Yes);
    window->close();
    auto *chooser = visibleWindow<frmOpen>();
    ASSERT_NE(chooser, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(chooser));
    QTest::keyClick(chooser->focusWidget(), Qt::Key_Escape);
    settle();
    EXPECT_EQ(window->focusWidget(), &tabs());
}

TEST_F(frmNotesTest, ASubjectThatCannotBeOpenedLeavesTheOldOneShown)
{
    const QString bad = QString::fromStdString(folder.file("bad.crl").string());
    QFile damaged(bad);
    ASSERT_TRUE(damaged.open(QFile::WriteOnly));
    damaged.write("no subject");
    damaged.close();
    module->settings.write(QStringLiteral("Recent"), QStringLiteral("Name0"), QStringLiteral("bad"));
    module->settings.write(QStringLiteral("Recent"), QStringLiteral("Path0"), bad);
    open();
    DialogAnswers answers;
    answers.press(QMessageBox::Yes).press(QMessageBox::Ok);
    window->close();
    auto *chooser = visibleWindow<frmOpen>();
    ASSERT_NE(chooser, nullptr);
    click(*chooser, "Image1(2)");
    EXPECT_EQ(answers.last().icon, QMessageBox::Critical);
    EXPECT_TRUE(chooser->isVisible());
    click(*chooser, "Image1(3)");
    settle();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Cramlet: World History"));
    EXPECT_EQ(tabs().count(), 3);
}

TEST_F(frmNotesTest, StudyHidesTheWindowAndClosingTheSessionGivesItBack)
{
    open();
    studyFirstTopic();
    auto *session = visibleWindow<frmFlashCard>();
    ASSERT_NE(session, nullptr);
    EXPECT_FALSE(isOpen());
    ASSERT_TRUE(QTest::qWaitForWindowActive(session));
    QTest::keyClick(session, Qt::Key_Escape);
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(QTest::qWaitForWindowActive(window));
}

TEST_F(frmNotesTest, AltSOpensTheStudyWizardWherever)
{
    open();
    for (QWidget *at : {static_cast<QWidget *>(&tabs()), static_cast<QWidget *>(&box())}) {
        at->setFocus();
        key(Qt::Key_S, Qt::AltModifier);
        auto *wizard = visibleWindow<frmOptions>();
        ASSERT_NE(wizard, nullptr);
        EXPECT_TRUE(wizard->isModal());
        QTest::keyClick(wizard, Qt::Key_Escape);
        settle();
        EXPECT_TRUE(isOpen());
        EXPECT_EQ(visibleWindow<frmFlashCard>(), nullptr);
    }
}

TEST_F(frmNotesTest, TabGoesFromTheTopicsToTheNotesAndTheCommands)
{
    open();
    QStringList visited;
    for (int step = 0; step < 12; ++step) {
        visited << window->focusWidget()->objectName();
        key(Qt::Key_Tab);
    }
    EXPECT_EQ(visited.join(QLatin1Char(' ')).toStdString(),
              "TabStrip1 RichTextBox1 Image1(0) Image1(1) Image1(2) Image1(8) Image1(3) Image1(4) Image1(5) Image1(6) "
              "Image1(7) TabStrip1");
}

TEST_F(frmNotesTest, TheArrowKeysLeafThroughTheTopics)
{
    open();
    key(Qt::Key_Right);
    EXPECT_EQ(title(), QStringLiteral("Small & tidy"));
    key(Qt::Key_Left);
    EXPECT_EQ(title(), QStringLiteral("Large"));
}

TEST_F(frmNotesTest, ATestHidesTheWindowAndClosingItGivesItBack)
{
    open();
    run(Study);
    auto *wizard = visibleWindow<frmOptions>();
    ASSERT_NE(wizard, nullptr);
    auto &style = control<QAbstractButton>(*wizard, "Option1(1)");
    QTest::mouseClick(&style, Qt::LeftButton, {}, QPoint(8, style.height() / 2));
    auto &topics = control<QListWidget>(*wizard, "List1");
    QTest::mouseClick(topics.viewport(), Qt::LeftButton, {}, topics.visualItemRect(topics.item(0)).center());
    click(*wizard, "cmdOK(2)");
    click(*wizard, "cmdOK(2)");
    auto *test = visibleWindow<frmTest>();
    ASSERT_NE(test, nullptr);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(visibleWindow<frmOptions>(), nullptr);
    EXPECT_EQ(test->findChildren<SelectAnswer *>().size(), 12) << "20 were asked for";
    ASSERT_TRUE(QTest::qWaitForWindowActive(test));

    DialogAnswers answers;
    answers.press(QMessageBox::Cancel);
    QTest::keyClick(test->focusWidget(), Qt::Key_Escape);
    EXPECT_TRUE(test->isVisible());
    EXPECT_FALSE(isOpen());
    answers.press(QMessageBox::No);
    QTest::keyClick(test->focusWidget(), Qt::Key_Escape);
    EXPECT_EQ(answers.last().title, QStringLiteral("Grade Test"));
    EXPECT_EQ(visibleWindow<frmTest>(), nullptr);
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(QTest::qWaitForWindowActive(window));
    EXPECT_EQ(title(), QStringLiteral("Large"));
}

TEST_F(frmNotesTest, EditFlashCardsOpensTheEditorOnTheSelectedTopicAndCountsItsCardsAfterwards)
{
    open();
    clickTab(1);
    run(EditCards);
    auto *editor = visibleWindow<frmEditCards>();
    ASSERT_NE(editor, nullptr);
    EXPECT_TRUE(editor->isModal());
    EXPECT_EQ(editor->parentWidget(), window);
    EXPECT_EQ(module->study.cardQuery, cardsOfTopic(small));
    EXPECT_EQ(editor->windowTitle(), QStringLiteral("Edit Flash Cards: Small & tidy (Card 1 of 4)"));

    auto &front = control<RichTextBox>(*editor, "RichTextBox1(0)");
    QTest::keyClick(&front, Qt::Key_Insert, Qt::AltModifier);
    QTest::keyClicks(&front, QStringLiteral("a fifth card"));
    QTest::keyClick(&front, Qt::Key_Escape);
    EXPECT_EQ(visibleWindow<frmEditCards>(), nullptr);
    EXPECT_EQ(title(), QStringLiteral("Small & tidy"));
    EXPECT_EQ(status().text(), QStringLiteral("This topic has 5 flash cards."));
    EXPECT_EQ(readTopic(file, small).cardCount, 5);
}

TEST_F(frmNotesTest, ATopicHasNoCardsWhenItsEditorIsLeftWithoutTyping)
{
    open();
    clickTab(2);
    key(Qt::Key_F, Qt::AltModifier);
    auto *editor = visibleWindow<frmEditCards>();
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->windowTitle(), QStringLiteral("Edit Flash Cards: Empty (Card 1 of 1)"));
    QTest::keyClick(&control<RichTextBox>(*editor, "RichTextBox1(0)"), Qt::Key_Escape);
    EXPECT_EQ(visibleWindow<frmEditCards>(), nullptr);
    EXPECT_EQ(status().text(), QStringLiteral("This topic has no flash cards."));
}

/// The next dialog is the colour dialog: enter this colour, and press \p last.
DialogAnswers::Act takeColor(const QString &name, Qt::Key last)
{
    return [name, last](QWidget &dialog) {
        auto *colors = qobject_cast<QColorDialog *>(&dialog);
        ASSERT_NE(colors, nullptr) << "the dialog is no colour dialog";
        EXPECT_EQ(colors->objectName(), QStringLiteral("CommonDialog1"));
        for (auto *field : colors->findChildren<QLineEdit *>()) {
            if (field->text().startsWith(QLatin1Char('#'))) {
                field->selectAll();
                QTest::keyClicks(field, name);
            }
        }
        ASSERT_EQ(colors->currentColor(), QColor(name));
        QTest::keyClick(colors, last);
    };
}

TEST_F(frmNotesTest, ABackgroundColorIsStoredBlueGreenRedAndColorsThePageAtOnce)
{
    open();
    DialogAnswers answers;
    answers.act(takeColor(QStringLiteral("#ffee80"), Qt::Key_Return));
    run(BackgroundColor);
    EXPECT_EQ(setting("Settings", "Color"), QStringLiteral("8449791")); // 0x80eeff
    EXPECT_EQ(window->paperColor(), QColor(QStringLiteral("#ffee80")));
}

TEST_F(frmNotesTest, TheColorDialogBeginsWithTheBackgroundAndCancelLeavesIt)
{
    module->settings.write(QStringLiteral("Settings"), QStringLiteral("Color"), QStringLiteral("13434828"));
    open();
    const QColor before = window->paperColor();
    ASSERT_EQ(numberOfColor(before), 13434828);
    DialogAnswers answers;
    QColor offered;
    answers.act([&](QWidget &dialog) {
        offered = qobject_cast<QColorDialog *>(&dialog)->currentColor();
        takeColor(QStringLiteral("#102030"), Qt::Key_Escape)(dialog);
    });
    run(BackgroundColor);
    EXPECT_EQ(offered, before);
    EXPECT_EQ(setting("Settings", "Color"), QStringLiteral("13434828"));
    EXPECT_EQ(window->paperColor(), before);
}

TEST_F(frmNotesTest, CancellingTheFirstColorStoresNone)
{
    open();
    DialogAnswers answers;
    answers.key(Qt::Key_Escape);
    run(BackgroundColor);
    EXPECT_EQ(setting("Settings", "Color"), QString());
}

TEST_F(frmNotesTest, AColorThatCannotBeStoredIsReportedAndThePageKeepsItsOwn)
{
    open();
    const QColor before = window->paperColor();
    blockSettings();
    DialogAnswers answers;
    answers.act(takeColor(QStringLiteral("#102030"), Qt::Key_Return)).press(QMessageBox::Ok);
    run(BackgroundColor);
    EXPECT_EQ(answers.last().icon, QMessageBox::Critical);
    EXPECT_EQ(window->paperColor(), before);
}

TEST_F(frmNotesTest, HelpSpeaksOfTheMainWindow)
{
    open();
    run(Help);
    expectHelp(HelpContext::MainWindow);
}

TEST_F(frmNotesTest, TheToolsHelpSpeaksOfEditingNotesAndEditingGoesOn)
{
    open();
    run(Edit);
    click(*window, "Toolbar1(9)");
    expectHelp(HelpContext::EditingNotes);
    EXPECT_TRUE(isEditing());
}

/// A control that the keys are pressed in.
struct FocusPlace
{
    const char *name;
    const char *control;
};

class frmNotesKeys : public NotesTest, public testing::WithParamInterface<FocusPlace>
{
};

TEST_P(frmNotesKeys, AltAndALetterRunTheCommands)
{
    open();
    const auto altKey = [&](int letter) {
        control<QWidget>(*window, GetParam().control).setFocus();
        key(letter, Qt::AltModifier);
    };
    {
        DialogAnswers answers;
        answers.act(answer({}, Qt::Key_Escape));
        altKey(Qt::Key_N);
    }
    EXPECT_EQ(asked.title, QStringLiteral("New Topic"));
    {
        DialogAnswers answers;
        answers.act(answer({}, Qt::Key_Escape));
        altKey(Qt::Key_R);
    }
    EXPECT_EQ(asked.title, QStringLiteral("Rename Topic"));
    {
        DialogAnswers answers;
        answers.press(QMessageBox::No);
        altKey(Qt::Key_D);
        EXPECT_EQ(answers.last().title, QStringLiteral("Delete Topic"));
    }
    altKey(Qt::Key_F);
    auto *editor = visibleWindow<frmEditCards>();
    ASSERT_NE(editor, nullptr);
    editor->close();
    altKey(Qt::Key_S);
    auto *wizard = visibleWindow<frmOptions>();
    ASSERT_NE(wizard, nullptr);
    QTest::keyClick(wizard, Qt::Key_Escape);
    altKey(Qt::Key_E);
    EXPECT_TRUE(isEditing());
}

TEST_P(frmNotesKeys, OtherKeysAndOtherModifiersRunNothing)
{
    open();
    const DialogAnswers none;
    for (const int letter : {Qt::Key_N, Qt::Key_R, Qt::Key_D, Qt::Key_S, Qt::Key_E, Qt::Key_F}) {
        for (const Qt::KeyboardModifiers modifiers :
             {Qt::KeyboardModifiers(), Qt::ShiftModifier | Qt::AltModifier, Qt::ControlModifier | Qt::AltModifier,
              Qt::KeyboardModifiers(Qt::MetaModifier)}) {
            control<QWidget>(*window, GetParam().control).setFocus();
            key(letter, modifiers);
        }
    }
    for (const int letter : {Qt::Key_B, Qt::Key_H, Qt::Key_X, Qt::Key_1}) {
        key(letter, Qt::AltModifier);
    }
    key(Qt::Key_Escape, Qt::ShiftModifier);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(visibleWindow<frmEditCards>(), nullptr);
    EXPECT_EQ(visibleWindow<frmOptions>(), nullptr);
    EXPECT_EQ(storedText(large), QStringLiteral("Large notes..."));
}

INSTANTIATE_TEST_SUITE_P(Wherever, frmNotesKeys,
                         testing::Values(FocusPlace{"Topics", "TabStrip1"}, FocusPlace{"Notes", "RichTextBox1"},
                                         FocusPlace{"Command", "Image1(0)"}),
                         [](const auto &row) { return row.param.name; });

TEST_F(frmNotesTest, ATopicDeletedMeanwhileIsReportedAndShowsNothingOfAnother)
{
    open();
    {
        SubjectStore other(file);
        other.execute(deleteTopicRow(small));
    }
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    clickTab(1);
    EXPECT_EQ(answers.last().icon, QMessageBox::Critical);
    EXPECT_EQ(notes(), QString());
    clickTab(0);
    EXPECT_EQ(notes(), QStringLiteral("Large notes..."));
}

TEST_F(frmNotesTest, ASubjectThatIsGoneGivesNoWindow)
{
    std::filesystem::remove(file);
    EXPECT_ANY_THROW(delete new frmNotes(*module));
}

TEST_F(frmNotesTest, NoSideFileIsLeftWhileTheNotesAreShown)
{
    open();
    clickTab(1);
    EXPECT_FALSE(std::filesystem::exists(file.string() + "-journal"));
    SubjectStore other(file);
    EXPECT_EQ(other.execute(deleteTopicCards(small)), 4) << "no lock may be held while notes are shown";
}

} // namespace
