#include "app/CommandGuard.h"
#include "app/Help.h"
#include "app/ProgramFiles.h"
#include "platform/help/HelpViewer.h"
#include "tests/support/Windows.h"

#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QWindow>

namespace {

QWidget *shownWindow()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() == QStringLiteral("HelpWindow") && window->isVisible()) {
            return window;
        }
    }
    return nullptr;
}

/// What the learner is told when the help is opened from these files; empty if it opens.
std::string refusalOf(const QString &plugin, const QString &book)
{
    try {
        (void)openHelp(plugin, book);
        return {};
    } catch (const HelpUnavailable &refusal) {
        return refusal.what();
    }
}

void expectAdvice(const std::string &refusal, const QString &file)
{
    EXPECT_NE(refusal.find(file.toStdString()), std::string::npos) << refusal;
    EXPECT_NE(refusal.find("Install Cramlet again"), std::string::npos) << refusal;
}

class HelpTest : public testing::Test
{
protected:
    void TearDown() override
    {
        if (QWidget *help = shownWindow()) {
            help->close();
        }
    }

    QTemporaryDir folder;
};

struct Topic
{
    const char *name;
    HelpContext context;
    int number;
    const char *title; ///< part of the page's title, in small letters
};

class HelpTopicTest : public HelpTest, public testing::WithParamInterface<Topic>
{
};

TEST_P(HelpTopicTest, OpensThePageOfThatName)
{
    EXPECT_EQ(static_cast<int>(GetParam().context), GetParam().number);
    showHelp(nullptr, GetParam().context);
    const QWidget *help = shownWindow();
    ASSERT_NE(help, nullptr);
    EXPECT_EQ(help->property("helpContext").toInt(), GetParam().number);
    const QString title = control<QTextBrowser>(*help, "HelpPage").documentTitle();
    EXPECT_TRUE(title.toLower().contains(QLatin1String(GetParam().title))) << title.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Help, HelpTopicTest,
                         testing::Values(Topic{"MainWindow", HelpContext::MainWindow, 5, "main window"},
                                         Topic{"EditingNotes", HelpContext::EditingNotes, 6, "editing notes"},
                                         Topic{"CardEditor", HelpContext::CardEditor, 7, "card editor"},
                                         Topic{"FlashCardSession", HelpContext::FlashCardSession, 8, "flash-card"},
                                         Topic{"Test", HelpContext::Test, 9, "test"},
                                         Topic{"GettingStarted", HelpContext::GettingStarted, 10, "getting started"},
                                         Topic{"StudyWizard", HelpContext::StudyWizard, 11, "study"}),
                         [](const testing::TestParamInfo<Topic> &row) { return row.param.name; });

TEST_F(HelpTest, ThereIsOneWindowForAllTopics)
{
    showHelp(nullptr, HelpContext::MainWindow);
    const QWidget *first = shownWindow();
    showHelp(nullptr, HelpContext::Test);
    EXPECT_EQ(shownWindow(), first);
}

TEST_F(HelpTest, TheWindowOpensAgainAfterItWasClosed)
{
    showHelp(nullptr, HelpContext::MainWindow);
    shownWindow()->close();
    EXPECT_EQ(shownWindow(), nullptr);
    showHelp(nullptr, HelpContext::CardEditor);
    EXPECT_NE(shownWindow(), nullptr);
}

TEST_F(HelpTest, ItWorksOverAModalWindowAndGivesTheKeysBack)
{
    QDialog editor;
    auto *line = new QLineEdit(&editor);
    editor.setModal(true);
    editor.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&editor));
    showHelp(line, HelpContext::CardEditor);
    QWidget *help = shownWindow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == help; }));
    QTest::keyClick(help->windowHandle(), Qt::Key_F1);
    EXPECT_EQ(help->property("helpContext").toInt(), static_cast<int>(HelpContext::GettingStarted));
    QTest::keyClick(help->windowHandle(), Qt::Key_Escape);
    EXPECT_EQ(shownWindow(), nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &editor; }));
    EXPECT_TRUE(editor.isVisible());
}

TEST_F(HelpTest, AMissingPluginIsNamedAndTheNextCallTriesAgain)
{
    const QString plugin = folder.filePath(QStringLiteral("cramlet-help.so"));
    expectAdvice(refusalOf(plugin, helpBook()), plugin);
    ASSERT_TRUE(QFile::copy(helpPlugin(), plugin));
    EXPECT_EQ(refusalOf(plugin, helpBook()), "");
}

TEST_F(HelpTest, AFileThatIsNoPluginIsNamed)
{
    const QString plugin = folder.filePath(QStringLiteral("cramlet-help.so"));
    ASSERT_TRUE(QFile::copy(helpBook(), plugin));
    expectAdvice(refusalOf(plugin, helpBook()), plugin);
}

TEST_F(HelpTest, AMissingBookIsNamedAndTheNextCallTriesAgain)
{
    const QString book = folder.filePath(QStringLiteral("Cramlet.qch"));
    expectAdvice(refusalOf(helpPlugin(), book), book);
    ASSERT_TRUE(QFile::copy(helpBook(), book));
    EXPECT_EQ(refusalOf(helpPlugin(), book), "");
}

TEST_F(HelpTest, UnderTheGuardTheLearnerReadsWhichFileIsMissing)
{
    const QString book = folder.filePath(QStringLiteral("Cramlet.qch"));
    QWidget window;
    window.show();
    QString said;
    DialogAnswers answers;
    answers.act([&](QWidget &dialog) {
        const auto &box = dynamic_cast<QMessageBox &>(dialog);
        said = box.text() + box.informativeText() + box.detailedText();
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    EXPECT_FALSE(runGuarded(&window, [&] { (void)openHelp(helpPlugin(), book); }));
    EXPECT_TRUE(said.contains(book)) << said.toStdString();
}

} // namespace
