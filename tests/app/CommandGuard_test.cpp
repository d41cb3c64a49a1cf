#include "app/CommandGuard.h"
#include "platform/LongWork.h"
#include "store/StoreError.h"
#include "tests/support/Windows.h"

#include <QWidget>

namespace {

TEST(CommandGuard, RunsACommandToItsEndAndSaysNothing)
{
    QWidget window;
    DialogAnswers answers;
    bool ran = false;
    EXPECT_TRUE(runGuarded(&window, [&] { ran = true; }));
    EXPECT_TRUE(ran);
    EXPECT_TRUE(answers.seen().empty());
}

TEST(CommandGuard, ReportsAFailureAndEndsTheCommandOnly)
{
    QWidget window;
    window.show();
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    EXPECT_FALSE(runGuarded(
        &window, [] { throw StoreError(StoreError::Reason::Locked, 5, "/a/History.crl", "database is locked"); }));
    EXPECT_TRUE(answers.last().text.contains(QStringLiteral("/a/History.crl")));
    EXPECT_EQ(answers.last().icon, QMessageBox::Critical);
    EXPECT_TRUE(window.isVisible());
}

TEST(CommandGuard, LetsACommandDestroyItsWindow)
{
    auto *window = new QWidget;
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    EXPECT_FALSE(runGuarded(window, [&] {
        delete window;
        throw std::runtime_error("too late");
    }));
}

TEST(CommandGuard, AGuardedSlotHandsItsArgumentsOn)
{
    QWidget window;
    int sum = 0;
    const auto slot = guarded(&window, [&] { sum += 1; });
    slot();
    slot();
    EXPECT_EQ(sum, 2);
    guarded(&window, &QWidget::setVisible)(true);
    EXPECT_TRUE(window.isVisible());
}

TEST(CommandGuard, BeginsNoCommandInTheMiddleOfLongWork)
{
    LongWork work(LongWork::steadyTime);
    int begun = 0;
    bool ran = true;
    QTimer::singleShot(0, qApp, [&] { ran = runGuarded(nullptr, [&] { ++begun; }); });
    runGuarded(nullptr, [&] { work.willBeSilent(QStringLiteral("Counting..."), LongWork::Silence::Long); });
    EXPECT_FALSE(ran);
    EXPECT_EQ(begun, 0);
    EXPECT_TRUE(runGuarded(nullptr, [&] { ++begun; })) << "afterwards commands begin again";
    EXPECT_EQ(begun, 1);
}

TEST(CommandGuard, BeginsNoCommandInAWindowThatHasClosed)
{
    QWidget window;
    int begun = 0;
    const auto command = [&] { ++begun; };
    EXPECT_TRUE(runGuarded(&window, command)) << "before it is shown, commands make it ready";
    window.show();
    EXPECT_TRUE(runGuarded(&window, command));
    window.close();
    EXPECT_FALSE(runGuarded(&window, command));
    EXPECT_EQ(begun, 2);
    window.show();
    EXPECT_TRUE(runGuarded(&window, command)) << "it is there again";
    window.setWindowState(Qt::WindowMinimized);
    EXPECT_TRUE(runGuarded(&window, command));
}

} // namespace
