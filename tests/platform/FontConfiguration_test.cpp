#include "platform/FontConfiguration.h"

#include <QDir>
#include <QFontDatabase>

#include <gtest/gtest.h>

namespace {

qsizetype threads()
{
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

TEST(FontConfiguration, IsReadByAThreadThatEnds)
{
    const qsizetype before = threads();
    std::jthread reading = readFontConfiguration();
    ASSERT_TRUE(reading.joinable());
    reading.join();
    EXPECT_EQ(threads(), before);
}

TEST(FontConfiguration, MayBeReadWhileAnotherThreadAsksForFonts)
{
    std::jthread reading = readFontConfiguration();
    EXPECT_FALSE(QFontDatabase::families().isEmpty());
}

} // namespace
