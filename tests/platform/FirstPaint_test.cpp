#include "platform/FirstPaint.h"

#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>
#include <memory>

namespace {

TEST(FirstPaint, TheWorkIsDoneOnceAndNotBeforeTheWindowIsPainted)
{
    int done = 0;
    QWidget window;
    afterFirstPaint(window, [&done] { ++done; });
    QTest::qWait(0);
    EXPECT_EQ(done, 0);

    window.show();
    EXPECT_EQ(done, 0);
    EXPECT_TRUE(QTest::qWaitFor([&done] { return done == 1; }));

    window.repaint();
    QTest::qWait(0);
    EXPECT_EQ(done, 1);
}

TEST(FirstPaint, TheWorkWaitsForThePaintingToBeDone)
{
    struct Painted : QWidget
    {
        bool isPainted = false;
        void paintEvent(QPaintEvent *) override { isPainted = true; }
    };
    Painted window;
    bool wasPainted = false;
    afterFirstPaint(window, [&] { wasPainted = window.isPainted; });
    window.show();
    EXPECT_TRUE(QTest::qWaitFor([&wasPainted] { return wasPainted; }));
}

TEST(FirstPaint, AWindowThatGoesTakesTheWorkWithIt)
{
    int done = 0;
    auto window = std::make_unique<QWidget>();
    afterFirstPaint(*window, [&done] { ++done; });
    window->grab(); // paints it
    window.reset();
    QTest::qWait(0);
    EXPECT_EQ(done, 0);
}

} // namespace
