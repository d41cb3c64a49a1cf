#include "tests/monkey/Monkey.h"
#include "tests/monkey/World.h"
#include "tests/support/LongRun.h"

#include <QCoreApplication>
#include <QDir>
#include <QHashSeed>
#include <QProcess>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {

/// Before Qt makes anything.
const bool isDecidedBySeed = [] {
    QHashSeed::setDeterministicGlobalSeed();
    setenv("QT_NO_GLIB", "1", 1);
    return true;
}();

int eventsOr(int usual)
{
    const char *given = std::getenv("CRAMLET_EVENTS");
    return given != nullptr ? std::atoi(given) : usual;
}

/// Where a walk must have been, to tell anything.
const QStringList &sights()
{
    static const QStringList all{
        QStringLiteral("frmOpen"),      QStringLiteral("frmNotes"),
        QStringLiteral("frmOptions"),   QStringLiteral("frmFlashCard"),
        QStringLiteral("frmTest"),      QStringLiteral("frmEditCards"),
        QStringLiteral("OLE1"),         QStringLiteral("frmCardOptions"),
        QStringLiteral("HelpWindow"),   QStringLiteral("message box"),
        QStringLiteral("QInputDialog"), QStringLiteral("QFileDialog"),
        QStringLiteral("QColorDialog"), QStringLiteral("QComboBoxPrivateContainer"),
        QStringLiteral("QMenu"),
    };
    return all;
}

/// The hash that a short walk in a process of its own prints.
QByteArray hashOf(const char *seed)
{
    QProcess walk;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("CRAMLET_SEED"), QString::fromLatin1(seed));
    environment.insert(QStringLiteral("CRAMLET_EVENTS"), QStringLiteral("300"));
    walk.setProcessEnvironment(environment);
    walk.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    walk.setWorkingDirectory(QDir::tempPath());
    walk.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--gtest_filter=Monkey.FindsNothing")});
    EXPECT_TRUE(walk.waitForFinished(-1));
    EXPECT_EQ(walk.exitCode(), 0);
    const QByteArray told = walk.readAllStandardOutput();
    const qsizetype hash = told.indexOf("hash ");
    EXPECT_GE(hash, 0) << told.toStdString();
    return told.mid(hash, 21);
}

} // namespace

TEST(Monkey, ASeedDecidesAllThatHappens)
{
    const QByteArray hash = hashOf("3");
    EXPECT_EQ(hashOf("3"), hash);
    EXPECT_NE(hashOf("4"), hash);
}

TEST(Monkey, FindsNothing)
{
    ASSERT_TRUE(isDecidedBySeed);
    QCoreApplication::setApplicationName(QStringLiteral("Cramlet"));
    const unsigned seed = seedOr(3);
    const bool isWhole = std::getenv("CRAMLET_EVENTS") == nullptr;
    const int usual = 3000;
    const int events = eventsOr(roundsOf(usual, 50'000));
    const auto begun = worldClock::realNow();
    Monkey monkey(seed, events, isWhole ? sights() : QStringList());
    monkey.play();
    const auto seconds = static_cast<double>((worldClock::realNow() - begun).count()) / 1000;

    const Monkey::Story &story = monkey.story();
    std::printf("monkey: %d events, seed %u, hash %016llx, %.1f s: %d starts, %d damages, %d slow times, "
                "%d events at a failure's report, %d openings, %d loops deep, %d refused\n",
                story.events, seed, static_cast<unsigned long long>(monkey.journal().hash()), seconds, story.starts,
                story.damages, story.slowTimes, story.reports, story.openings, story.deepest, fence::refusals());
    for (const auto &[window, visits] : story.visits) {
        std::printf("%s %d; ", qPrintable(window), visits);
    }
    std::printf("\n");
    if (isWhole) {
        for (const QString &sight : sights()) {
            EXPECT_GT(story.visits.count(sight), 0U) << "the walk never came to " << sight.toStdString();
        }
        EXPECT_GT(story.damages, 0);
        EXPECT_GT(story.slowTimes, 0);
        EXPECT_GT(story.reports, 0);
        EXPECT_TRUE(events == usual || story.openings > 0) << "nothing was opened";
    }
    EXPECT_TRUE(monkey.complaints().isEmpty()) << monkey.complaints().join(QLatin1Char('\n')).toStdString();
}
