#include "app/RecentSubjects.h"
#include "platform/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

struct Outcome
{
    int exitCode = -1;
    QByteArray errors;
    QByteArray started; ///< what the program noted when it was started: the number of its arguments
};

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    file.write(content);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString dataHome()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

QString configHome()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
}

/// The launcher as it is installed: in a bin folder beside a program that only
/// notes that it was started, with the samples where an installation has them.
class Launcher : public testing::Test
{
protected:
    void SetUp() override
    {
        QDir(configHome()).removeRecursively();
        QFile::remove(configHome());
        QDir(dataHome()).removeRecursively();
        ASSERT_TRUE(QDir(m_prefix.path()).mkpath(QStringLiteral("bin")));
        ASSERT_TRUE(QDir(m_prefix.path()).mkpath(QStringLiteral("share/cramlet")));
        ASSERT_TRUE(QFile::copy(QStringLiteral(LAUNCHER), inPrefix("bin/cramlet-open")));
        for (const char *sample : {"Using Cramlet", "States and Capitals"}) {
            writeFile(inPrefix("share/cramlet/") + QLatin1String(sample) + QStringLiteral(".crl"), sample);
        }
        const QString program = inPrefix("bin/cramlet");
        writeFile(program, "#!/bin/sh\necho $# >\"${0%/*}/started\"\nexit 7\n");
        ASSERT_TRUE(QFile::setPermissions(program, QFile::permissions(program) | QFile::ExeOwner));
    }

    [[nodiscard]] QString inPrefix(const char *path) const { return m_prefix.filePath(QLatin1String(path)); }

    [[nodiscard]] Outcome launch(const QStringList &arguments) const
    {
        QProcess launcher;
        launcher.setWorkingDirectory(m_prefix.path());
        launcher.start(inPrefix("bin/cramlet-open"), arguments);
        EXPECT_TRUE(launcher.waitForFinished());
        EXPECT_EQ(launcher.exitStatus(), QProcess::NormalExit);
        return {launcher.exitCode(), launcher.readAllStandardError(), contentOf(inPrefix("bin/started")).trimmed()};
    }

    static RecentSubjects recent() { return RecentSubjects::load(SettingsStore()); }

private:
    QTemporaryDir m_prefix;
};

Subject subject(const QString &path, const QString &name)
{
    return {path, name};
}

TEST_F(Launcher, PutsTheFileOnTopAndBecomesTheProgramWhichGetsNoArguments)
{
    const Outcome outcome = launch({QStringLiteral("/home/anna/Latin.crl")});
    EXPECT_EQ(outcome.exitCode, 7) << "the program's";
    EXPECT_EQ(outcome.started, "0");
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(recent().slot(0), subject(QStringLiteral("/home/anna/Latin.crl"), QStringLiteral("Latin")));
}

TEST_F(Launcher, KeepsTheSamplesBelowTheFileOnTheFirstRun)
{
    (void)launch({QStringLiteral("/home/anna/Latin.crl")});
    const QString own = dataHome() + QStringLiteral("/Cramlet/");
    const RecentSubjects table = recent();
    EXPECT_EQ(table.slot(1), subject(own + QStringLiteral("Using Cramlet.crl"), QStringLiteral("Using Cramlet")));
    EXPECT_EQ(table.slot(2),
              subject(own + QStringLiteral("States and Capitals.crl"), QStringLiteral("States and Capitols")));
    EXPECT_EQ(table.slot(3), Subject{});
    EXPECT_EQ(contentOf(table.slot(1).path), "Using Cramlet");
    EXPECT_EQ(contentOf(table.slot(2).path), "States and Capitals");
}

TEST_F(Launcher, MovesAFileThatIsInTheTableAlready)
{
    for (const char *name : {"/a.crl", "/b.crl", "/c.crl", "/a.crl"}) {
        (void)launch({QLatin1String(name)});
    }
    const RecentSubjects table = recent();
    EXPECT_EQ(table.slot(0).path, QStringLiteral("/a.crl"));
    EXPECT_EQ(table.slot(1).path, QStringLiteral("/c.crl"));
    EXPECT_EQ(table.slot(2).path, QStringLiteral("/b.crl"));
    EXPECT_EQ(table.slot(3).name, QStringLiteral("Using Cramlet"));
}

TEST_F(Launcher, TakesARelativePathFromTheFolderItWasStartedIn)
{
    (void)launch({QStringLiteral("./share/../Latin.crl")});
    const QString folder = QFileInfo(inPrefix("share")).canonicalPath();
    EXPECT_EQ(recent().slot(0), subject(folder + QStringLiteral("/Latin.crl"), QStringLiteral("Latin")));
}

TEST_F(Launcher, KeepsBlanksCommasQuotesAndLettersOfAnyAlphabet)
{
    const QString name = QStringLiteral("Größe, 中文 & \"ω\" $(x); 100 %");
    (void)launch({QStringLiteral("/home/Anna B/") + name + QStringLiteral(".crl")});
    EXPECT_EQ(recent().slot(0), subject(QStringLiteral("/home/Anna B/") + name + QStringLiteral(".crl"), name));
}

TEST_F(Launcher, JustStartsTheProgramWithoutAFile)
{
    const Outcome outcome = launch({});
    EXPECT_EQ(outcome.exitCode, 7);
    EXPECT_EQ(outcome.started, "0");
    EXPECT_EQ(recent().slot(0), Subject{}) << "offering the samples is left to the program";
}

TEST_F(Launcher, ExplainsItsUseAndStartsNothingWhenTheArgumentsAreWrong)
{
    const QString file = QStringLiteral("/a.crl");
    for (const QStringList &wrong : {QStringList{file, file}, QStringList{QStringLiteral("--help")},
                                     QStringList{QStringLiteral("-x"), file}, QStringList{QString()}}) {
        const Outcome outcome = launch(wrong);
        EXPECT_EQ(outcome.exitCode, 2) << wrong.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(outcome.errors, "usage: cramlet-open [FILE]\n");
        EXPECT_EQ(outcome.started, "");
        EXPECT_EQ(recent().slot(0), Subject{});
    }
}

TEST_F(Launcher, StartsTheProgramEvenWhenTheSettingsCannotBeWritten)
{
    writeFile(configHome(), "a file where a folder should be");
    const Outcome outcome = launch({QStringLiteral("/a.crl")});
    EXPECT_EQ(outcome.exitCode, 7);
    EXPECT_EQ(outcome.started, "0");
    EXPECT_TRUE(outcome.errors.startsWith("cramlet-open: The settings could not be written")) << outcome.errors.data();
}

TEST_F(Launcher, SaysSoWhenTheProgramIsNotThere)
{
    QFile::remove(inPrefix("bin/cramlet"));
    const Outcome outcome = launch({QStringLiteral("/a.crl")});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.errors.contains("bin/cramlet: No such file or directory")) << outcome.errors.data();
}

} // namespace
