#include "app/ProgramFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <gtest/gtest.h>

namespace {

// The test program lies one folder below the build tree's top, without a click
// beside it: to itself it is an installed program, whose data folder can be made.
class ProgramFiles : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(programFolder()));
        write(sample, "as installed");
        QFile::remove(copy);
    }

    void TearDown() override
    {
        QFile::setPermissions(sample, QFile::ReadOwner | QFile::WriteOwner);
        QFile::remove(sample);
        QFile::remove(copy);
    }

    static void write(const QString &path, const char *text)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(text);
    }

    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("(missing)");
    }

    // Tests run side by side on one build tree.
    const QString name = QStringLiteral("/Sample of %1.crl").arg(QCoreApplication::applicationPid());
    const QString sample = programFolder() + name;
    const QString copy =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Cramlet") + name;
};

TEST_F(ProgramFiles, AnInstalledProgramCopiesItsSamplesForTheLearner)
{
    EXPECT_EQ(provideSamples(), QFileInfo(copy).path());
    EXPECT_EQ(read(copy), "as installed");
}

TEST_F(ProgramFiles, TheCopyCanBeWrittenToEvenIfTheOriginalCannot)
{
    ASSERT_TRUE(QFile::setPermissions(sample, QFile::ReadOwner));
    (void)provideSamples();
    EXPECT_TRUE(QFile::permissions(copy) & QFile::WriteOwner);
}

TEST_F(ProgramFiles, ACopyThatTheLearnerHasStudiedIsNeverReplaced)
{
    (void)provideSamples();
    write(copy, "studied");
    (void)provideSamples();
    EXPECT_EQ(read(copy), "studied");
}

TEST_F(ProgramFiles, TheHelpIsInstalledWithTheProgram)
{
    EXPECT_EQ(QFileInfo(helpBook()).path(), programFolder());
    EXPECT_TRUE(QFile::exists(helpBook())) << helpBook().toStdString();
    EXPECT_TRUE(QFile::exists(helpPlugin())) << helpPlugin().toStdString();
    EXPECT_EQ(QFileInfo(helpPlugin()).dir().dirName(), QStringLiteral("cramlet"));
}

} // namespace
