#include "FlashCardTest.h"
#include "app/WorkDisplay.h"
#include "forms/frmTest/frmTest.h"

#include <QProgressBar>

#include <optional>

namespace {

using namespace std::chrono_literals;

/// What the learner sees in the middle of a command.
struct Sight
{
    bool busyPointer = false;
    QString panel; ///< empty: none
    int done = 0;
    int total = 0;
};

Sight look(const QWidget &window)
{
    Sight sight;
    const QCursor *pointer = QApplication::overrideCursor();
    sight.busyPointer = pointer != nullptr && pointer->shape() == Qt::WaitCursor;
    if (const auto *panel = window.findChild<QWidget *>(QStringLiteral("LongWork")); panel && panel->isVisible()) {
        const auto *bar = panel->findChild<QProgressBar *>();
        sight.panel = panel->findChild<QLabel *>()->text();
        sight.done = bar->value();
        sight.total = bar->maximum();
    }
    return sight;
}

/// Commands on a large topic, with a clock by which each look at it takes a second.
class LongCommands : public FlashCardTest
{
protected:
    static constexpr int more = 2000;

    void SetUp() override
    {
        FlashCardTest::SetUp();
        addCards(file, large, more);
        display.emplace([this] { return now += 1s; });
    }

    /// Looks at \p onto whenever the windows are painted, while \p command runs.
    template <class Command>
    Sight lastSightDuring(const QWidget &onto, Command command)
    {
        Sight sight;
        QTimer looking;
        looking.setInterval(0);
        QObject::connect(&looking, &QTimer::timeout, &looking, [&] {
            if (LongWork::isLettingPaint()) {
                sight = look(onto);
            }
        });
        looking.start();
        command();
        return sight;
    }

    std::chrono::milliseconds now{0};
    std::optional<WorkDisplay> display;
};

TEST_F(LongCommands, AShuffleOfManyCardsShowsHowFarItIs)
{
    open();
    dialogs.press(QMessageBox::Yes);
    const Sight sight = lastSightDuring(*window, [&] { key(Qt::Key_S); });
    EXPECT_TRUE(sight.busyPointer);
    EXPECT_EQ(sight.panel, QStringLiteral("Shuffling the flash cards..."));
    EXPECT_EQ(sight.total, more + 12);
    EXPECT_GT(sight.done, more / 2);

    QCoreApplication::processEvents();
    const Sight after = look(*window);
    EXPECT_FALSE(after.busyPointer);
    EXPECT_TRUE(after.panel.isEmpty());
}

TEST_F(LongCommands, TheFlipperDoesNotTickInTheMiddleOfAShuffle)
{
    open(3);
    dialogs.press(QMessageBox::Yes);
    const QString before = countdown().text();
    QString during;
    bool isWithin = false;
    QTimer ticking;
    ticking.setInterval(0);
    QObject::connect(&ticking, &QTimer::timeout, &ticking, [&] {
        if (LongWork::isLettingPaint() && !isWithin) {
            isWithin = true;
            passSecond();
            during = countdown().text();
        }
    });
    ticking.start();
    key(Qt::Key_S);
    EXPECT_TRUE(isWithin);
    EXPECT_EQ(during, before);
}

TEST_F(LongCommands, MakingATestOfManyCardsShowsHowFarItIs)
{
    QWidget mainWindow;
    mainWindow.resize(400, 300);
    mainWindow.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&mainWindow));
    module->study.questionCount = 5;
    const Sight sight = lastSightDuring(mainWindow, [&] { const frmTest test(*module); });
    EXPECT_TRUE(sight.busyPointer);
    EXPECT_EQ(sight.panel, QStringLiteral("Making the test..."));
    EXPECT_EQ(sight.total, 2 * (more + 12));
    EXPECT_GT(sight.done, more);
}

} // namespace
