#include "app/ClosingSave.h"
#include "store/StoreError.h"
#include "tests/support/Windows.h"

#include <stdexcept>

namespace {

/// A window whose work can be stored, or cannot.
class ClosingSaveTest : public testing::Test
{
protected:
    bool close()
    {
        return closing.mayClose(&window, [this] {
            ++attempts;
            if (isDiskFull) {
                throw StoreError(StoreError::Reason::DiskFull, 13, "/home/learner/World History.crl", "disk I/O");
            }
        });
    }

    /// An attempt to close that fails and is reported.
    void failOnce()
    {
        isDiskFull = true;
        dialogs.press(QMessageBox::Ok);
        ASSERT_FALSE(close());
    }

    QWidget window;
    ClosingSave closing;
    DialogAnswers dialogs;
    bool isDiskFull = false;
    int attempts = 0;
};

TEST_F(ClosingSaveTest, AWindowWhoseWorkIsStoredClosesWithoutAWord)
{
    EXPECT_TRUE(close());
    EXPECT_EQ(attempts, 1);
    EXPECT_FALSE(closing.hasFailed());
    EXPECT_TRUE(dialogs.seen().empty());
}

TEST_F(ClosingSaveTest, TheFirstFailureIsReportedAndTheWindowStays)
{
    isDiskFull = true;
    dialogs.press(QMessageBox::Ok);
    EXPECT_FALSE(close());
    EXPECT_EQ(attempts, 1);
    EXPECT_TRUE(closing.hasFailed());
    EXPECT_EQ(dialogs.last().icon, QMessageBox::Critical);
    EXPECT_EQ(dialogs.last().buttons, QMessageBox::Ok) << "the first time there is nothing to choose";
    EXPECT_TRUE(dialogs.last().text.contains(QStringLiteral("/home/learner/World History.crl")));
    EXPECT_TRUE(dialogs.last().text.contains(QStringLiteral("Error 13: disk I/O")));
}

TEST_F(ClosingSaveTest, TheSecondFailureAsksWhetherToLeaveAndTellsWhatFailed)
{
    failOnce();
    dialogs.act([this](QWidget &dialog) {
        auto *box = qobject_cast<QMessageBox *>(&dialog);
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(box->parentWidget(), &window);
        ASSERT_NE(box->defaultButton(), nullptr);
        EXPECT_EQ(box->standardButton(box->defaultButton()), QMessageBox::No);
        QTest::mouseClick(box->button(QMessageBox::No), Qt::LeftButton);
    });
    EXPECT_FALSE(close());
    EXPECT_EQ(attempts, 2) << "it tries before it asks";
    ASSERT_EQ(dialogs.seen().size(), 2U) << "the question tells of the failure: no report besides";
    EXPECT_EQ(dialogs.last().title, QStringLiteral("Leave Without Saving"));
    EXPECT_EQ(dialogs.last().icon, QMessageBox::Warning);
    EXPECT_EQ(dialogs.last().buttons, QMessageBox::Yes | QMessageBox::No);
    EXPECT_TRUE(dialogs.last().text.contains(QStringLiteral("/home/learner/World History.crl")));
    EXPECT_TRUE(dialogs.last().text.contains(QStringLiteral("Error 13: disk I/O")));
}

TEST_F(ClosingSaveTest, YesLeavesWithoutSaving)
{
    failOnce();
    dialogs.press(QMessageBox::Yes);
    EXPECT_TRUE(close());
}

TEST_F(ClosingSaveTest, EnterAndEscapeStay)
{
    failOnce();
    dialogs.key(Qt::Key_Return).key(Qt::Key_Escape);
    EXPECT_FALSE(close());
    EXPECT_FALSE(close());
    EXPECT_EQ(dialogs.seen().size(), 3U);
}

TEST_F(ClosingSaveTest, EveryFurtherFailureAsksAgain)
{
    failOnce();
    dialogs.press(QMessageBox::No).press(QMessageBox::No).press(QMessageBox::Yes);
    EXPECT_FALSE(close());
    EXPECT_FALSE(close());
    EXPECT_TRUE(close());
    EXPECT_EQ(attempts, 4);
}

TEST_F(ClosingSaveTest, OnceItCanBeStoredTheWindowClosesWithoutAQuestion)
{
    failOnce();
    isDiskFull = false;
    EXPECT_TRUE(close());
    EXPECT_FALSE(closing.hasFailed());
    EXPECT_EQ(dialogs.seen().size(), 1U);
}

TEST_F(ClosingSaveTest, AfterASuccessAFailureIsTheFirstAgain)
{
    failOnce();
    isDiskFull = false;
    ASSERT_TRUE(close());
    isDiskFull = true;
    dialogs.press(QMessageBox::Ok);
    EXPECT_FALSE(close());
    EXPECT_EQ(dialogs.last().icon, QMessageBox::Critical);
}

TEST_F(ClosingSaveTest, AForgottenFailureIsNotHeldAgainstTheNextAttempt)
{
    failOnce();
    closing.forgetFailure();
    EXPECT_FALSE(closing.hasFailed());
    dialogs.press(QMessageBox::Ok);
    EXPECT_FALSE(close());
    EXPECT_EQ(dialogs.last().icon, QMessageBox::Critical) << "a report, not the question";
}

TEST_F(ClosingSaveTest, AFailureThatIsNotTheStoresKeepsTheWindowToo)
{
    const auto save = [] { throw std::runtime_error("out of paper"); };
    dialogs.press(QMessageBox::Ok).press(QMessageBox::No);
    EXPECT_FALSE(closing.mayClose(&window, save));
    EXPECT_TRUE(dialogs.last().text.contains(QStringLiteral("out of paper")));
    EXPECT_FALSE(closing.mayClose(&window, save));
    EXPECT_TRUE(dialogs.last().text.contains(QStringLiteral("out of paper")));
}

} // namespace
