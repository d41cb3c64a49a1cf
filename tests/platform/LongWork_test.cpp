#include "platform/LongWork.h"
#include "tests/support/Windows.h"

#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <qpa/qwindowsysteminterface.h>

namespace {

using namespace std::chrono_literals;

/// Counts how often it is painted.
class Painted : public QWidget
{
public:
    int paints = 0;

protected:
    void paintEvent(QPaintEvent * /*event*/) override { ++paints; }
};

/// A window, and a clock that the test moves.
class ShownLongWork : public testing::Test
{
protected:
    ShownLongWork()
    {
        window.resize(500, 300);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    /// Work that has gone on for \p time since its first sign, and gives a sign.
    void workFor(std::chrono::milliseconds time, int done = 0, int total = 0)
    {
        now += time;
        work.goesOn(QStringLiteral("Counting..."), done, total);
    }
    [[nodiscard]] static bool isPointerBusy()
    {
        return QApplication::overrideCursor() != nullptr && QApplication::overrideCursor()->shape() == Qt::WaitCursor;
    }
    [[nodiscard]] QWidget *panel() const { return window.findChild<QWidget *>(QStringLiteral("LongWork")); }
    static void returnToTheLoop() { QCoreApplication::processEvents(); }

    Painted window;
    std::chrono::milliseconds now{1000000};
    LongWork work{[this] { return now; }};
};

TEST_F(ShownLongWork, ShortWorkShowsNothing)
{
    workFor(0ms);
    workFor(499ms);
    EXPECT_FALSE(isPointerBusy());
    EXPECT_EQ(panel(), nullptr);
}

TEST_F(ShownLongWork, AfterHalfASecondThePointerIsBusy)
{
    workFor(0ms);
    workFor(500ms);
    EXPECT_TRUE(isPointerBusy());
    EXPECT_EQ(panel(), nullptr);
}

TEST_F(ShownLongWork, AfterTwoSecondsAPanelTellsWhatGoesOnAndHowFarItIs)
{
    workFor(0ms);
    workFor(1900ms, 10, 40);
    EXPECT_EQ(panel(), nullptr);
    workFor(100ms, 20, 40);
    ASSERT_NE(panel(), nullptr);
    EXPECT_TRUE(panel()->isVisible());
    EXPECT_EQ(panel()->findChild<QLabel *>()->text(), QStringLiteral("Counting..."));
    const auto *bar = panel()->findChild<QProgressBar *>();
    EXPECT_EQ(bar->value(), 20);
    EXPECT_EQ(bar->maximum(), 40);
    workFor(100ms, 30, 40);
    EXPECT_EQ(bar->value(), 30);
}

TEST_F(ShownLongWork, ThePanelStandsInTheMiddleOfTheWindowAndWithinIt)
{
    workFor(0ms);
    workFor(2s);
    ASSERT_NE(panel(), nullptr);
    EXPECT_TRUE(window.rect().contains(panel()->geometry()));
    EXPECT_NEAR(panel()->geometry().center().x(), window.rect().center().x(), 1);
    EXPECT_NEAR(panel()->geometry().center().y(), window.rect().center().y(), 1);
}

TEST_F(ShownLongWork, WithoutATotalTheBarOnlyMoves)
{
    workFor(0ms);
    workFor(2s);
    ASSERT_NE(panel(), nullptr);
    EXPECT_EQ(panel()->findChild<QProgressBar *>()->maximum(), 0);
}

TEST_F(ShownLongWork, WorkThatIsNoticedButShortHasOnlyThePointer)
{
    work.willBeSilent(QStringLiteral("Reading..."), LongWork::Silence::Noticeable);
    EXPECT_TRUE(isPointerBusy());
    EXPECT_EQ(panel(), nullptr);
}

TEST_F(ShownLongWork, WhoDoesNotKnowTheDisplayCanAnnounceWork)
{
    LongWork::announce(QStringLiteral("Reading..."), LongWork::Silence::Noticeable);
    EXPECT_TRUE(isPointerBusy());
}

TEST_F(ShownLongWork, WorkThatWillTakeLongShowsAtOnce)
{
    work.willBeSilent(QStringLiteral("Undoing..."), LongWork::Silence::Long);
    EXPECT_TRUE(isPointerBusy());
    ASSERT_NE(panel(), nullptr);
    EXPECT_EQ(panel()->findChild<QLabel *>()->text(), QStringLiteral("Undoing..."));
}

TEST_F(ShownLongWork, WhenTheLoopHasItsTurnEverythingIsAsBefore)
{
    workFor(0ms);
    workFor(2s);
    returnToTheLoop();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(panel(), nullptr);
}

TEST_F(ShownLongWork, TimeThatTheLearnerTakesIsNotWork)
{
    workFor(0ms);
    now += 1h;
    returnToTheLoop(); // a question was answered
    workFor(0ms);
    workFor(499ms);
    EXPECT_FALSE(isPointerBusy());
}

TEST_F(ShownLongWork, AnIdleHourBeforeTheWorkIsNotWork)
{
    returnToTheLoop();
    workFor(1h);
    EXPECT_FALSE(isPointerBusy());
    workFor(500ms);
    EXPECT_TRUE(isPointerBusy());
}

TEST_F(ShownLongWork, TheWindowsArePaintedWhileTheWorkGoesOn)
{
    workFor(0ms);
    window.update();
    workFor(400ms);
    const int before = window.paints;
    workFor(100ms);
    EXPECT_EQ(window.paints, before + 1);
    window.update();
    workFor(99ms);
    EXPECT_EQ(window.paints, before + 1) << "painting at every sign would slow the work down";
    workFor(1ms);
    EXPECT_EQ(window.paints, before + 2);
}

TEST_F(ShownLongWork, AKeyThatIsPressedMeanwhileArrivesAfterTheWork)
{
    QLineEdit field(&window);
    field.show();
    field.setFocus();
    workFor(0ms);
    QWindowSystemInterface::handleKeyEvent<QWindowSystemInterface::AsynchronousDelivery>(
        window.windowHandle(), QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, QStringLiteral("x"));
    workFor(500ms);
    EXPECT_TRUE(field.text().isEmpty());
    EXPECT_TRUE(QTest::qWaitFor([&] { return field.text() == QStringLiteral("x"); }));
}

TEST_F(ShownLongWork, ThePanelStandsInTheWindowThatHasTheKeys)
{
    for (int others = 0; others < 4; ++others) { // whatever the order in which windows are listed
        QWidget other;
        other.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        workFor(0ms);
        workFor(2s);
        EXPECT_NE(panel(), nullptr);
        EXPECT_EQ(other.findChild<QWidget *>(QStringLiteral("LongWork")), nullptr);
        returnToTheLoop();
    }
}

TEST_F(ShownLongWork, WhoAsksIsToldThatTheLoopRunsInsideOfWork)
{
    bool during = false;
    QTimer::singleShot(0, &window, [&] { during = LongWork::isLettingPaint(); });
    workFor(0ms);
    workFor(500ms);
    EXPECT_TRUE(during);
    EXPECT_FALSE(LongWork::isLettingPaint());
}

TEST_F(ShownLongWork, ASignFromWithinAPaintIsPassedOver)
{
    QTimer::singleShot(0, &window, [&] {
        workFor(10s);
        work.willBeSilent(QStringLiteral("Within"), LongWork::Silence::Long);
    });
    workFor(0ms);
    workFor(500ms);
    EXPECT_EQ(panel(), nullptr);
}

TEST_F(ShownLongWork, APanelMayGoAwayWithItsWindow)
{
    auto *other = new QWidget;
    other->show();
    other->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(other));
    workFor(0ms);
    workFor(2s);
    ASSERT_NE(other->findChild<QWidget *>(QStringLiteral("LongWork")), nullptr);
    delete other;
    workFor(100ms, 1, 2);
    returnToTheLoop();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST(LongWork, WithoutAWindowOnlyThePointerTells)
{
    auto now = 0ms;
    LongWork work([&] { return now; });
    work.goesOn(QStringLiteral("Counting..."), 0, 0);
    now = 3s;
    work.goesOn(QStringLiteral("Counting..."), 0, 0);
    EXPECT_NE(QApplication::overrideCursor(), nullptr);
}

TEST(LongWork, WhatItShowsEndsWithIt)
{
    {
        LongWork work([] { return 0ms; });
        work.willBeSilent(QStringLiteral("Counting..."), LongWork::Silence::Long);
        EXPECT_NE(QApplication::overrideCursor(), nullptr);
    }
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    LongWork::announce(QStringLiteral("Counting..."), LongWork::Silence::Long); // to nobody
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

} // namespace
