#include "forms/frmFlashCard/frmFlashCard.h"
#include "forms/frmNotes/frmNotes.h"
#include "forms/frmOpen/frmOpen.h"
#include "forms/frmOptions/frmOptions.h"
#include "platform/ImageButton.h"
#include "platform/RichTextBox.h"
#include "platform/TabStrip.h"
#include "platform/Twips.h"
#include "tests/support/WindowTest.h"

#include <QLabel>
#include <QListWidget>
#include <QPointer>

namespace {

class frmNotesTest : public WindowTest
{
protected:
    void TearDown() override
    {
        delete window;
        WindowTest::TearDown();
    }

    void open()
    {
        window = new frmNotes(*module);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }

    TabStrip &tabs() { return control<TabStrip>(*window, "TabStrip1"); }
    void clickTab(int position) { QTest::mouseClick(&tabs(), Qt::LeftButton, {}, tabs().tabRect(position).center()); }
    QString notes() { return control<RichTextBox>(*window, "RichTextBox1").toPlainText(); }
    QString title() { return control<QLabel>(*window, "Label1").text(); }
    QLabel &status() { return control<QLabel>(*window, "StatusBar1"); }
    [[nodiscard]] bool isOpen() const { return !window.isNull() && window->isVisible(); }

    /// Studies the first topic as flash cards, by the wizard.
    void studyFirstTopic()
    {
        click(*window, "Image1(4)");
        auto *wizard = visibleWindow<frmOptions>();
        ASSERT_NE(wizard, nullptr);
        auto &topics = control<QListWidget>(*wizard, "List1");
        QTest::mouseClick(topics.viewport(), Qt::LeftButton, {}, topics.visualItemRect(topics.item(0)).center());
        click(*wizard, "cmdOK(2)");
        click(*wizard, "cmdOK(2)");
    }

    QPointer<frmNotes> window;
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
    EXPECT_FALSE(control<RichTextBox>(*window, "RichTextBox1").isVisible());
}

TEST_F(frmNotesTest, NotesAreReadOnly)
{
    open();
    auto &box = control<RichTextBox>(*window, "RichTextBox1");
    box.setFocus();
    QTest::keyClicks(&box, QStringLiteral("abc"));
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
    const auto &box = control<RichTextBox>(*window, "RichTextBox1");
    const auto place = [&](const QWidget &widget) { return QRect(widget.mapTo(window, QPoint(0, 0)), widget.size()); };
    EXPECT_GE(place(box).top(), place(tabs()).bottom());
    EXPECT_GE(place(status()).top(), place(box).bottom());
    EXPECT_LE(place(status()).bottom(), window->height());
    EXPECT_LE(place(box).right(), window->width());
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
    click(*window, "Image1(7)");
    EXPECT_TRUE(isOpen());
}

TEST_F(frmNotesTest, EscapeInTheNotesClosesTheWindowToo)
{
    open();
    auto &box = control<RichTextBox>(*window, "RichTextBox1");
    box.setFocus();
    DialogAnswers answers;
    answers.press(QMessageBox::Cancel);
    QTest::keyClick(&box, Qt::Key_Escape);
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
    for (QWidget *at : {static_cast<QWidget *>(&tabs()), &control<QWidget>(*window, "RichTextBox1")}) {
        at->setFocus();
        QTest::keyClick(at, Qt::Key_S, Qt::AltModifier);
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
    for (int step = 0; step < 5; ++step) {
        visited << window->focusWidget()->objectName();
        QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(visited.join(QLatin1Char(' ')).toStdString(), "TabStrip1 RichTextBox1 Image1(4) Image1(7) TabStrip1");
}

TEST_F(frmNotesTest, TheArrowKeysLeafThroughTheTopics)
{
    open();
    QTest::keyClick(window->focusWidget(), Qt::Key_Right);
    EXPECT_EQ(title(), QStringLiteral("Small & tidy"));
    QTest::keyClick(window->focusWidget(), Qt::Key_Left);
    EXPECT_EQ(title(), QStringLiteral("Large"));
}

TEST_F(frmNotesTest, ATestIsDeclinedHonestlyUntilThereIsOne)
{
    open();
    click(*window, "Image1(4)");
    auto *wizard = visibleWindow<frmOptions>();
    ASSERT_NE(wizard, nullptr);
    auto &test = control<QAbstractButton>(*wizard, "Option1(1)");
    QTest::mouseClick(&test, Qt::LeftButton, {}, QPoint(8, test.height() / 2));
    auto &topics = control<QListWidget>(*wizard, "List1");
    QTest::mouseClick(topics.viewport(), Qt::LeftButton, {}, topics.visualItemRect(topics.item(0)).center());
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    click(*wizard, "cmdOK(2)");
    click(*wizard, "cmdOK(2)");
    EXPECT_EQ(answers.last().title, QStringLiteral("Test"));
    EXPECT_TRUE(isOpen());
}

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
