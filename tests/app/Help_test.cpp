#include "app/Help.h"
#include "tests/support/Windows.h"

namespace {

/// What the learner sees of a topic, in a message box that Ok closes.
SeenMessage helpOn(HelpContext context)
{
    QWidget window;
    window.show();
    DialogAnswers answers;
    answers.act([&](QWidget &dialog) {
        EXPECT_EQ(dialog.parentWidget(), &window) << "the help belongs over the window that asked";
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    showHelp(&window, context);
    EXPECT_EQ(answers.seen().size(), 1U);
    return answers.last();
}

TEST(Help, EveryTopicHasItsContextNumber)
{
    EXPECT_EQ(static_cast<int>(HelpContext::MainWindow), 5);
    EXPECT_EQ(static_cast<int>(HelpContext::EditingNotes), 6);
    EXPECT_EQ(static_cast<int>(HelpContext::CardEditor), 7);
    EXPECT_EQ(static_cast<int>(HelpContext::FlashCardSession), 8);
    EXPECT_EQ(static_cast<int>(HelpContext::Test), 9);
}

TEST(Help, EveryTopicNamesItselfAndSaysWhereToLearnMore)
{
    struct Topic
    {
        HelpContext context;
        const char *name;
    };
    for (const Topic &topic :
         {Topic{HelpContext::MainWindow, "the main window"}, Topic{HelpContext::EditingNotes, "editing notes"},
          Topic{HelpContext::CardEditor, "the card editor"},
          Topic{HelpContext::FlashCardSession, "flash-card sessions"}, Topic{HelpContext::Test, "tests"}}) {
        const SeenMessage shown = helpOn(topic.context);
        EXPECT_EQ(shown.title, QStringLiteral("Help"));
        EXPECT_EQ(shown.icon, QMessageBox::Information);
        EXPECT_EQ(shown.buttons, QMessageBox::Ok);
        EXPECT_TRUE(shown.text.contains(QLatin1String(topic.name))) << shown.text.toStdString();
        EXPECT_TRUE(shown.text.contains(QStringLiteral("\"Using Cramlet\""))) << shown.text.toStdString();
    }
}

} // namespace
