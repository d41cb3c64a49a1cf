#include "platform/help/HelpViewer.h"
#include "platform/help/HelpWindow.h"
#include "tests/platform/help/GardenBook.h"
#include "tests/support/Windows.h"

#include <QAccessible>
#include <QAction>
#include <QFile>
#include <QHelpContentWidget>
#include <QHelpIndexWidget>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPrinter>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QToolBar>
#include <QToolButton>
#include <QWindow>

namespace {

class HelpWindowTest : public testing::Test
{
protected:
    /// Opens the help at the topic with this number, its contents and index read.
    void open(int context = 5)
    {
        window.showTopic(context, nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return contents().model()->rowCount() == 2 && keywords().model()->rowCount() > 0; }));
    }

    [[nodiscard]] QTextBrowser &page() const { return control<QTextBrowser>(window, "HelpPage"); }
    [[nodiscard]] QHelpContentWidget &contents() const { return control<QHelpContentWidget>(window, "HelpContents"); }
    [[nodiscard]] QHelpIndexWidget &keywords() const { return control<QHelpIndexWidget>(window, "IndexKeywords"); }
    [[nodiscard]] QListWidget &results() const { return control<QListWidget>(window, "SearchResults"); }
    [[nodiscard]] QLabel &searchState() const { return control<QLabel>(window, "SearchState"); }
    [[nodiscard]] QString title() const { return page().documentTitle(); }
    [[nodiscard]] bool offers(const char *command) const { return control<QAction>(window, command).isEnabled(); }
    [[nodiscard]] QString currentContents() const { return contents().currentIndex().data().toString(); }

    /// A key as the desktop sends it: to whatever has the focus.
    void key(Qt::Key pressed, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(window.windowHandle(), pressed, modifiers);
    }
    void type(const char *text)
    {
        for (const char *letter = text; *letter != '\0'; ++letter) {
            QTest::keyClick(window.windowHandle(), *letter);
        }
    }
    /// Searches with the keys, and waits for the answer.
    void search(const char *words)
    {
        key(Qt::Key_F, Qt::ControlModifier);
        control<QLineEdit>(window, "SearchWords").clear();
        type(words);
        searchState().clear();
        key(Qt::Key_Return);
        ASSERT_TRUE(QTest::qWaitFor([&] {
            return !searchState().text().isEmpty() && !searchState().text().startsWith(QStringLiteral("Reading"));
        }));
    }
    [[nodiscard]] QStringList found() const
    {
        QStringList titles;
        for (int row = 0; row < results().count(); ++row) {
            titles.append(results().item(row)->text());
        }
        return titles;
    }

    int prints = 0;
    QString printed;   ///< the name of the print job
    QString printFile; ///< where the learner wants to print to; empty: nowhere
    HelpWindow window{gardenBook(), [this](QPrinter &printer, QWidget *) {
                          ++prints;
                          printed = printer.docName();
                          printer.setOutputFormat(QPrinter::PdfFormat);
                          printer.setOutputFileName(printFile);
                          return !printFile.isEmpty();
                      }};
};

TEST_F(HelpWindowTest, ShowsTheTopicWithItsCaptionAndKeepsItsNumber)
{
    open(6);
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Cramlet Help"));
    EXPECT_EQ(window.objectName(), QStringLiteral("HelpWindow"));
    EXPECT_EQ(title(), QStringLiteral("Trees"));
    EXPECT_EQ(window.property("helpContext").toInt(), 6);
    EXPECT_TRUE(page().hasFocus()) << "the arrow keys scroll";
}

TEST_F(HelpWindowTest, ATopicThatTheBookLacksIsRefusedWithTheFilesNameAndLeavesThePage)
{
    open(6);
    try {
        window.showTopic(99, nullptr);
        FAIL() << "there is no such topic";
    } catch (const HelpUnavailable &refusal) {
        EXPECT_NE(std::string(refusal.what()).find(gardenBook().toStdString()), std::string::npos);
    }
    EXPECT_EQ(title(), QStringLiteral("Trees"));
    EXPECT_EQ(window.property("helpContext").toInt(), 6);
}

TEST_F(HelpWindowTest, AnotherTopicIsShownInTheSameWindow)
{
    open(6);
    window.showMinimized();
    window.showTopic(5, nullptr);
    EXPECT_FALSE(window.isMinimized());
    EXPECT_EQ(title(), QStringLiteral("The garden"));
}

TEST_F(HelpWindowTest, BackAndForwardAreOfferedWhenTheyLeadSomewhere)
{
    open(5);
    EXPECT_FALSE(offers("back"));
    EXPECT_FALSE(offers("forward"));
    window.showTopic(6, nullptr);
    EXPECT_TRUE(offers("back"));
    EXPECT_FALSE(offers("forward"));
    key(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(title(), QStringLiteral("The garden"));
    EXPECT_FALSE(offers("back"));
    EXPECT_TRUE(offers("forward"));
    key(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(title(), QStringLiteral("Trees"));
    EXPECT_FALSE(offers("forward"));
}

TEST_F(HelpWindowTest, TheToolBarsButtonsRunTheCommands)
{
    open(5);
    window.showTopic(6, nullptr);
    auto &bar = control<QToolBar>(window, "HelpCommands");
    QTest::mouseClick(bar.widgetForAction(&control<QAction>(window, "back")), Qt::LeftButton);
    EXPECT_EQ(title(), QStringLiteral("The garden"));
    QTest::mouseClick(bar.widgetForAction(&control<QAction>(window, "forward")), Qt::LeftButton);
    EXPECT_EQ(title(), QStringLiteral("Trees"));
    QTest::mouseClick(bar.widgetForAction(&control<QAction>(window, "home")), Qt::LeftButton);
    EXPECT_EQ(title(), QStringLiteral("The garden"));
}

TEST_F(HelpWindowTest, EveryButtonHasAPictureAHintWithItsKeyAndAName)
{
    open();
    for (const char *name : {"back", "forward", "home", "print", "smaller", "larger"}) {
        const auto &command = control<QAction>(window, name);
        EXPECT_FALSE(command.icon().pixmap(24).isNull()) << name;
        EXPECT_FALSE(command.shortcut().isEmpty()) << name;
        EXPECT_TRUE(command.toolTip().contains(command.shortcut().toString())) << command.toolTip().toStdString();
        EXPECT_FALSE(command.text().isEmpty()) << name;
    }
}

TEST_F(HelpWindowTest, TheContentsFollowThePage)
{
    open(6);
    EXPECT_EQ(currentContents(), QStringLiteral("Trees"));
    window.showTopic(10, nullptr);
    EXPECT_EQ(currentContents(), QStringLiteral("The shed"));
    EXPECT_TRUE(contents().isExpanded(contents().model()->index(0, 0))) << "all of the contents can be seen";
}

TEST_F(HelpWindowTest, TheArrowKeysLeafThroughTheContents)
{
    open(5);
    key(Qt::Key_1, Qt::ControlModifier);
    EXPECT_TRUE(contents().hasFocus());
    key(Qt::Key_Down);
    EXPECT_EQ(title(), QStringLiteral("Trees"));
    key(Qt::Key_Down);
    EXPECT_EQ(title(), QStringLiteral("Ponds"));
    EXPECT_TRUE(contents().hasFocus());
    key(Qt::Key_Return);
    EXPECT_TRUE(page().hasFocus()) << "to read it";
}

TEST_F(HelpWindowTest, AClickInTheContentsOpensThePageAgainAfterALinkOnIt)
{
    open(5);
    const QModelIndex trees = contents().model()->index(0, 0, contents().model()->index(0, 0));
    const QPoint place = contents().visualRect(trees).center();
    QTest::mouseClick(contents().viewport(), Qt::LeftButton, {}, place);
    EXPECT_EQ(title(), QStringLiteral("Trees"));
    page().setSource(gardenPage("trees.html#apple"));
    QTest::mouseClick(contents().viewport(), Qt::LeftButton, {}, place);
    EXPECT_EQ(page().source(), gardenPage("trees.html"));
}

TEST_F(HelpWindowTest, TypingFiltersTheIndexAndEnterOpensTheEntry)
{
    open(5);
    key(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(keywords().model()->rowCount(), 5);
    type("app");
    ASSERT_EQ(keywords().model()->rowCount(), 1);
    EXPECT_EQ(keywords().model()->index(0, 0).data().toString(), QStringLiteral("apple"));
    key(Qt::Key_Return);
    EXPECT_EQ(page().source(), gardenPage("trees.html#apple"));
    EXPECT_TRUE(page().hasFocus());
    key(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(title(), QStringLiteral("The garden"));
    EXPECT_FALSE(offers("back")) << "one step, although the contents followed";
}

TEST_F(HelpWindowTest, TheArrowKeysChooseInTheFilteredIndex)
{
    open(5);
    key(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(keywords().currentIndex().data().toString(), QStringLiteral("apple"));
    key(Qt::Key_Down);
    EXPECT_EQ(keywords().currentIndex().data().toString(), QStringLiteral("garden"));
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(title(), QStringLiteral("Trees"));
}

TEST_F(HelpWindowTest, AClickInTheIndexOpensTheEntry)
{
    open(6);
    control<QTabWidget>(window, "HelpPanes").setCurrentIndex(1);
    QTest::mouseClick(keywords().viewport(), Qt::LeftButton, {},
                      keywords().visualRect(keywords().model()->index(1, 0)).center());
    EXPECT_EQ(title(), QStringLiteral("The garden"));
}

TEST_F(HelpWindowTest, AnEntryOfSeveralPagesOffersThemByTitle)
{
    open(5);
    key(Qt::Key_2, Qt::ControlModifier);
    type("water");
    key(Qt::Key_Return);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(menu->actions().size(), 2);
    EXPECT_EQ(menu->actions().at(0)->text(), QStringLiteral("Ponds"));
    EXPECT_EQ(menu->actions().at(1)->text(), QStringLiteral("Trees"));
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    EXPECT_EQ(title(), QStringLiteral("Trees"));
}

TEST_F(HelpWindowTest, SearchFindsThePagesThatHoldAllWords)
{
    open(5);
    search("water frogs");
    EXPECT_EQ(found(), QStringList{QStringLiteral("Ponds")});
    EXPECT_EQ(searchState().text(), QStringLiteral("1 page"));
    EXPECT_EQ(title(), QStringLiteral("Ponds"));
    EXPECT_FALSE(page().extraSelections().isEmpty()) << "the words are marked";
}

TEST_F(HelpWindowTest, SearchPutsThePageThatIsCalledSoFirst)
{
    open(5);
    search("trees");
    ASSERT_GE(found().size(), 2);
    EXPECT_EQ(found().constFirst(), QStringLiteral("Trees"));
    EXPECT_EQ(found().removeDuplicates(), 0) << "a page stands there once";
}

TEST_F(HelpWindowTest, SearchFindsWordsThatBeginSo)
{
    open(5);
    search("trow");
    EXPECT_EQ(found(), QStringList{QStringLiteral("The shed")});
}

TEST_F(HelpWindowTest, EachPageFoundShowsAPassage)
{
    open(5);
    search("frogs");
    ASSERT_EQ(results().count(), 1);
    const QString passage = results().item(0)->data(Qt::AccessibleDescriptionRole).toString();
    EXPECT_TRUE(passage.contains(QStringLiteral("water with frogs"))) << passage.toStdString();
    EXPECT_FALSE(passage.contains(QLatin1Char('<'))) << passage.toStdString();
}

TEST_F(HelpWindowTest, TheArrowKeysLeafThroughThePagesFoundAndEnterReads)
{
    open(5);
    search("water");
    ASSERT_EQ(results().count(), 2);
    EXPECT_TRUE(results().hasFocus());
    EXPECT_EQ(title(), found().at(0));
    key(Qt::Key_Down);
    EXPECT_EQ(title(), found().at(1));
    EXPECT_TRUE(results().hasFocus());
    key(Qt::Key_Return);
    EXPECT_TRUE(page().hasFocus());
}

TEST_F(HelpWindowTest, ASearchWithoutAResultSaysSoAndKeepsThePage)
{
    open(5);
    search("elephant");
    EXPECT_EQ(results().count(), 0);
    EXPECT_EQ(searchState().text(), QStringLiteral("No page contains \"elephant\"."));
    EXPECT_EQ(title(), QStringLiteral("The garden"));
    EXPECT_TRUE(control<QLineEdit>(window, "SearchWords").hasFocus()) << "to try another word";
}

TEST_F(HelpWindowTest, SignsThatMeanSomethingToASearchEngineAreNoWords)
{
    open(5);
    for (const char *words : {"\"frogs", "frogs*", "(frogs)", "frogs -", "pond's frogs", "title:frogs", "frogs ^2"}) {
        search(words);
        EXPECT_FALSE(searchState().text().isEmpty()) << words;
    }
    search("\"frogs\" (water)");
    EXPECT_EQ(found(), QStringList{QStringLiteral("Ponds")});
    search("OR");
    EXPECT_EQ(searchState().text(), QStringLiteral("No page contains \"OR\"."));
}

TEST_F(HelpWindowTest, ASearchAskedForWhileTheBookIsReadIsAnsweredAfterwards)
{
    window.showTopic(5, nullptr);
    auto &line = control<QLineEdit>(window, "SearchWords");
    line.setText(QStringLiteral("frogs"));
    QTest::keyClick(&line, Qt::Key_Return);
    EXPECT_EQ(searchState().text(), QStringLiteral("Reading the book..."));
    EXPECT_TRUE(QTest::qWaitFor([&] { return results().count() == 1; }));
}

TEST_F(HelpWindowTest, AWindowThatClosesWhileTheBookIsReadEndsInPeace)
{
    window.showTopic(5, nullptr);
    QCoreApplication::processEvents(); // the reading has begun
}

TEST_F(HelpWindowTest, EscapeClosesItFromEveryPane)
{
    for (const Qt::Key pane : {Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_F6}) {
        open(5);
        key(pane, pane == Qt::Key_F6 ? Qt::NoModifier : Qt::ControlModifier);
        key(Qt::Key_Escape);
        EXPECT_FALSE(window.isVisible());
    }
}

TEST_F(HelpWindowTest, F1TellsHowToFindOnesWay)
{
    open(5);
    key(Qt::Key_F1);
    EXPECT_EQ(title(), QStringLiteral("The shed"));
    EXPECT_EQ(window.property("helpContext").toInt(), 10);
}

TEST_F(HelpWindowTest, AltHomeOpensTheFirstPage)
{
    open(6);
    key(Qt::Key_Home, Qt::AltModifier);
    EXPECT_EQ(title(), QStringLiteral("The garden"));
}

TEST_F(HelpWindowTest, F6GoesBetweenThePaneAndThePage)
{
    open(5);
    key(Qt::Key_F6);
    EXPECT_TRUE(contents().hasFocus());
    key(Qt::Key_F6);
    EXPECT_TRUE(page().hasFocus());
}

TEST_F(HelpWindowTest, KeysSwitchBetweenThePanes)
{
    open(5);
    const auto &panes = control<QTabWidget>(window, "HelpPanes");
    key(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(panes.currentIndex(), 1);
    EXPECT_TRUE(control<QLineEdit>(window, "IndexFilter").hasFocus());
    key(Qt::Key_3, Qt::ControlModifier);
    EXPECT_EQ(panes.currentIndex(), 2);
    EXPECT_TRUE(control<QLineEdit>(window, "SearchWords").hasFocus());
    key(Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(panes.currentIndex(), 0);
    EXPECT_TRUE(contents().hasFocus());
}

TEST_F(HelpWindowTest, KeysChangeTheLetters)
{
    open(5);
    const double usual = page().font().pointSizeF();
    key(Qt::Key_Plus, Qt::ControlModifier);
    key(Qt::Key_Equal, Qt::ControlModifier);
    EXPECT_NEAR(page().font().pointSizeF(), usual + 2, 0.1);
    key(Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_NEAR(page().font().pointSizeF(), usual + 1, 0.1);
    key(Qt::Key_0, Qt::ControlModifier);
    EXPECT_NEAR(page().font().pointSizeF(), usual, 0.1);
}

TEST_F(HelpWindowTest, PrintAsksHowAndNamesTheJobAfterThePage)
{
    open(6);
    key(Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(prints, 1);
    EXPECT_EQ(printed, QStringLiteral("Trees"));
}

TEST_F(HelpWindowTest, PrintsThePageThatIsRead)
{
    const QTemporaryDir folder;
    printFile = folder.filePath(QStringLiteral("trees.pdf"));
    open(6);
    key(Qt::Key_P, Qt::ControlModifier);
    QFile file(printFile);
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    EXPECT_TRUE(file.readAll().startsWith("%PDF"));
    EXPECT_EQ(title(), QStringLiteral("Trees"));
}

TEST_F(HelpWindowTest, PrintingThatFailsIsReportedWithTheFile)
{
    const QTemporaryDir folder;
    printFile = folder.path(); // no file can be written there
    open(6);
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    key(Qt::Key_P, Qt::ControlModifier);
    EXPECT_TRUE(answers.last().text.contains(printFile)) << answers.last().text.toStdString();
}

TEST_F(HelpWindowTest, TheTabKeyGoesFromTheToolBarOverThePaneToThePage)
{
    open(6);
    auto &bar = control<QToolBar>(window, "HelpCommands");
    QWidget *back = bar.widgetForAction(&control<QAction>(window, "home"));
    back->setFocus();
    QStringList order;
    for (int step = 0; step < 6; ++step) {
        key(Qt::Key_Tab);
        QWidget *focused = QApplication::focusWidget();
        ASSERT_NE(focused, nullptr);
        const auto *button = qobject_cast<QToolButton *>(focused);
        order.append(button != nullptr && button->defaultAction() ? button->defaultAction()->objectName()
                     : qobject_cast<QTabBar *>(focused)           ? QStringLiteral("tabs")
                                                                  : focused->objectName());
    }
    EXPECT_EQ(order.join(QLatin1Char(' ')).toStdString(), "print smaller larger tabs HelpContents HelpPage");
}

TEST_F(HelpWindowTest, EverythingThatTakesTheKeysHasAName)
{
    open(5);
    for (int pane = 0; pane < 3; ++pane) {
        control<QTabWidget>(window, "HelpPanes").setCurrentIndex(pane);
        for (QWidget *widget : window.findChildren<QWidget *>()) {
            if (!widget->isVisible() || (widget->focusPolicy() & Qt::TabFocus) == 0) {
                continue;
            }
            const QAccessibleInterface *seen = QAccessible::queryAccessibleInterface(widget);
            ASSERT_NE(seen, nullptr);
            EXPECT_FALSE(seen->text(QAccessible::Name).isEmpty())
                << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
        }
    }
}

TEST_F(HelpWindowTest, NeverKeepsTheProgramRunning)
{
    QWidget main;
    main.show();
    open(5);
    constexpr int stillRunning = 1;
    QTimer::singleShot(0, &main, &QWidget::close);
    QTimer::singleShot(5000, &main, [] { QCoreApplication::exit(stillRunning); });
    QApplication::setQuitOnLastWindowClosed(true);
    EXPECT_EQ(QApplication::exec(), 0);
    QApplication::setQuitOnLastWindowClosed(false);
}

TEST_F(HelpWindowTest, OpensAgainWhereItWas)
{
    open(5);
    window.move(50, 60);
    const QPoint place = window.pos();
    key(Qt::Key_Escape);
    open(5);
    EXPECT_EQ(window.pos(), place);
}

TEST_F(HelpWindowTest, IsNoLargerThanTheScreen)
{
    open(5);
    EXPECT_LE(window.width(), window.screen()->availableSize().width());
    EXPECT_LE(window.height(), window.screen()->availableSize().height());
    EXPECT_GT(window.width(), 600);
}

} // namespace
