#include "platform/ClickSound.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>

#include <cmath>
#include <gtest/gtest.h>

namespace {

const QString clickFile = QStringLiteral(CLICK_FILE);

qsizetype threads()
{
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

template <typename Number>
Number numberAt(const QByteArray &wave, qsizetype offset)
{
    return qFromLittleEndian<Number>(wave.constData() + offset);
}

// First in this file: once the sound's thread runs, it stays.
TEST(ClickSound, NothingIsSetUpBeforeTheFirstClickWithAFile)
{
    const qsizetype before = threads();
    playClick();
    setClickFile(clickFile);
    EXPECT_EQ(threads(), before);
    playClick();
    EXPECT_GT(threads(), before);
}

TEST(ClickSound, AMissingFileIsNoErrorAndManyClicksComeBack)
{
    setClickFile(QStringLiteral("/nowhere/Click.wav"));
    for (int i = 0; i < 1000; ++i) {
        EXPECT_NO_THROW(playClick());
    }
}

TEST(ClickFile, IsAWaveOfOneChannelThatLastsThirtyToSixtyMilliseconds)
{
    const QByteArray wave = contents(clickFile);
    ASSERT_GT(wave.size(), 44);
    EXPECT_TRUE(wave.startsWith("RIFF"));
    EXPECT_EQ(wave.mid(8, 8), "WAVEfmt ");
    EXPECT_EQ(numberAt<quint32>(wave, 4), wave.size() - 8);
    EXPECT_EQ(numberAt<quint16>(wave, 20), 1) << "PCM";
    EXPECT_EQ(numberAt<quint16>(wave, 22), 1) << "channels";
    EXPECT_EQ(numberAt<quint32>(wave, 24), 44100U);
    EXPECT_EQ(numberAt<quint32>(wave, 28), 88200U);
    EXPECT_EQ(numberAt<quint16>(wave, 32), 2);
    EXPECT_EQ(numberAt<quint16>(wave, 34), 16);
    EXPECT_EQ(wave.mid(36, 4), "data");
    EXPECT_EQ(numberAt<quint32>(wave, 40), wave.size() - 44);

    const double seconds = static_cast<double>(wave.size() - 44) / 88200;
    EXPECT_GE(seconds, 0.030);
    EXPECT_LE(seconds, 0.060);
}

TEST(ClickFile, StartsAndEndsInSilenceAndIsNeverHarsh)
{
    const QByteArray wave = contents(clickFile);
    ASSERT_GT(wave.size(), 44);
    int loudest = 0;
    for (qsizetype at = 44; at + 1 < wave.size(); at += 2) {
        loudest = std::max(loudest, std::abs(int{numberAt<qint16>(wave, at)}));
    }
    EXPECT_GT(loudest, 3000) << "can be heard";
    EXPECT_LT(loudest, 24000) << "does not clip";
    EXPECT_EQ(numberAt<qint16>(wave, 44), 0);
    EXPECT_LT(std::abs(int{numberAt<qint16>(wave, wave.size() - 2)}), 10);
}

TEST(ClickFile, IsTheSameEveryTime)
{
    const QTemporaryDir folder;
    const QString again = folder.filePath(QStringLiteral("again.wav"));
    ASSERT_EQ(QProcess::execute(QStringLiteral(MAKE_CLICK), {again}), 0);
    EXPECT_EQ(contents(again), contents(clickFile));
}

TEST(ClickFile, AGeneratorThatCannotWriteSaysSo)
{
    QProcess generator;
    generator.start(QStringLiteral(MAKE_CLICK), {QStringLiteral("/nowhere/at/all.wav")});
    ASSERT_TRUE(generator.waitForFinished());
    EXPECT_EQ(generator.exitCode(), 1);
    EXPECT_TRUE(generator.readAllStandardError().contains("/nowhere/at/all.wav"));
}

} // namespace
