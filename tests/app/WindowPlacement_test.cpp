#include "app/WindowPlacement.h"
#include "platform/SettingsStore.h"
#include "platform/Twips.h"
#include "tests/support/Windows.h"

#include <QDir>
#include <QScreen>
#include <QStandardPaths>
#include <QWidget>

namespace {

const QString section = QStringLiteral("Notes");

class WindowPlacement : public testing::Test
{
protected:
    void SetUp() override
    {
        QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)).removeRecursively();
    }

    void store(const char *key, const char *value)
    {
        SettingsStore settings;
        settings.write(section, QString::fromLatin1(key), QString::fromLatin1(value));
    }

    static QString stored(const char *key) { return SettingsStore().text(section, QString::fromLatin1(key)); }

    /// Opens a window as it is stored, and lets it be seen.
    static std::unique_ptr<QWidget> open()
    {
        auto window = std::make_unique<QWidget>();
        const SettingsStore settings;
        restorePlacement(*window, settings, section);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        return window;
    }

    static void close(QWidget &window)
    {
        SettingsStore settings;
        savePlacement(window, settings, section);
    }
};

TEST_F(WindowPlacement, TheFirstTimeIsHalfTheScreensWidthAndSevenTenthsOfItsHeight)
{
    const auto window = open();
    const QSize screen = window->screen()->size();
    EXPECT_EQ(window->frameGeometry().width(), screen.width() / 2);
    EXPECT_EQ(window->frameGeometry().height(), qRound(screen.height() * 0.7));
    EXPECT_EQ(window->windowState() & ~Qt::WindowActive, Qt::WindowNoState);
}

TEST_F(WindowPlacement, ReopensAtTheSizeInTwipsItWasClosedAt)
{
    store("Width", "9000");
    store("Height", "6000");
    const auto window = open();
    EXPECT_EQ(window->frameGeometry().size(), QSize(toPixels(9000), toPixels(6000)));
    close(*window);
    EXPECT_EQ(stored("Width"), QStringLiteral("9000"));
    EXPECT_EQ(stored("Height"), QStringLiteral("6000"));
    EXPECT_EQ(stored("WindowState"), QStringLiteral("0"));
}

TEST_F(WindowPlacement, DoesNotGrowOrShrinkByBeingOpenedOften)
{
    store("Width", "9000");
    store("Height", "6000");
    for (int time = 0; time < 5; ++time) {
        const auto window = open();
        close(*window);
    }
    EXPECT_EQ(stored("Width"), QStringLiteral("9000"));
    EXPECT_EQ(stored("Height"), QStringLiteral("6000"));
}

TEST_F(WindowPlacement, AWindowClosedMaximisedReopensMaximised)
{
    {
        const auto window = open();
        window->showMaximized();
        close(*window);
    }
    EXPECT_EQ(stored("WindowState"), QStringLiteral("2"));
    EXPECT_TRUE(open()->isMaximized());
}

TEST_F(WindowPlacement, AWindowClosedMinimisedReopensNormalAtItsSize)
{
    store("Width", "9000");
    store("Height", "6000");
    {
        const auto window = open();
        window->showMinimized();
        close(*window);
    }
    EXPECT_EQ(stored("WindowState"), QStringLiteral("1"));
    const auto window = open();
    EXPECT_FALSE(window->isMinimized());
    EXPECT_EQ(window->frameGeometry().size(), QSize(toPixels(9000), toPixels(6000)));
}

TEST_F(WindowPlacement, OnlyAStateOfExactlyTwoMaximises)
{
    store("WindowState", "3");
    EXPECT_FALSE(open()->isMaximized());
}

TEST_F(WindowPlacement, ASizeBeyondTheScreensIsCutToTheirs)
{
    store("Width", "99999999999999");
    const auto window = open();
    EXPECT_LE(window->frameGeometry().width(), window->screen()->virtualSize().width());
    EXPECT_GT(window->frameGeometry().width(), window->screen()->virtualSize().width() / 2);
}

TEST_F(WindowPlacement, ASizeThatIsNoNumberIsReportedAndTheUsualSizeIsTaken)
{
    store("Width", "wide");
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    const auto window = open();
    EXPECT_TRUE(answers.last().text.contains(QStringLiteral("wide")));
    EXPECT_EQ(window->frameGeometry().width(), window->screen()->size().width() / 2);
}

} // namespace
