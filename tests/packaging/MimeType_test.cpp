#include "store/SubjectStore.h"

#include <QFile>
#include <QMimeDatabase>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString ours = QStringLiteral("application/x-cramlet");
constexpr int applicationIdOffset = 68;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

/// A desktop that knows its own types, ours, and our program.
class MimeType : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        // Before the first question: the databases are read once.
        qputenv("XDG_DATA_DIRS", DESKTOP);
        qputenv("XDG_DATA_HOME", DESKTOP "/nothing here");
        qputenv("PATH", DESKTOP "/bin:" + qgetenv("PATH"));
    }

    static QByteArray newSubject()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("subject"));
        SubjectStore::create(path.toStdString());
        return contentOf(path);
    }

    /// The same as any other program's database.
    static QByteArray otherDatabase()
    {
        QByteArray database = newSubject();
        database.replace(applicationIdOffset, 4, QByteArray(4, '\0'));
        return database;
    }

    /// What Qt and GLib, that is the desktops, take a file of this name and content for.
    static std::pair<QString, QString> types(const QString &name, const QByteArray &content)
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();

        QProcess gio;
        gio.start(QStringLiteral("gio"), {QStringLiteral("info"), QStringLiteral("-a"),
                                          QStringLiteral("standard::content-type"), file.fileName()});
        EXPECT_TRUE(gio.waitForFinished() && gio.exitCode() == 0) << gio.readAllStandardError().toStdString();
        const QString said = QString::fromUtf8(gio.readAllStandardOutput());
        return {QMimeDatabase().mimeTypeForFile(file.fileName()).name(),
                said.section(QStringLiteral("standard::content-type: "), 1).section(QLatin1Char('\n'), 0, 0)};
    }

    static std::pair<QString, QString> both(const QString &type) { return {type, type}; }
};

TEST_F(MimeType, ASubjectIsKnownByItsContentAlone)
{
    EXPECT_EQ(types(QStringLiteral("Latin"), newSubject()), both(ours));
}

TEST_F(MimeType, ASubjectIsKnownUnderItsEnding)
{
    EXPECT_EQ(types(QStringLiteral("Latin.crl"), newSubject()), both(ours));
}

TEST_F(MimeType, AnotherDatabaseIsNoSubject)
{
    const QString sqlite = QStringLiteral("application/vnd.sqlite3");
    EXPECT_EQ(types(QStringLiteral("Latin"), otherDatabase()), both(sqlite));
    EXPECT_EQ(types(QStringLiteral("Latin.sqlite3"), otherDatabase()), both(sqlite));
}

TEST_F(MimeType, ADatabaseUnderOurEndingIsASubject)
{
    EXPECT_EQ(types(QStringLiteral("Latin.crl"), otherDatabase()), both(ours));
}

TEST_F(MimeType, ACertificateRevocationListKeepsItsType)
{
    EXPECT_EQ(types(QStringLiteral("Revoked.crl"), "-----BEGIN X509 CRL-----\nMIIB\n-----END X509 CRL-----\n"),
              both(QStringLiteral("application/pkix-crl")));
}

TEST_F(MimeType, HasACommentAnIconAndIsAKindOfDatabase)
{
    const QMimeType type = QMimeDatabase().mimeTypeForName(ours);
    ASSERT_TRUE(type.isValid());
    EXPECT_EQ(type.comment(), QStringLiteral("Cramlet subject"));
    EXPECT_EQ(type.iconName(), QStringLiteral("application-x-cramlet"));
    EXPECT_TRUE(type.inherits(QStringLiteral("application/vnd.sqlite3")));
    EXPECT_EQ(type.preferredSuffix(), QStringLiteral("crl"));
}

TEST_F(MimeType, IsOpenedByTheLauncher)
{
    QProcess gio;
    gio.start(QStringLiteral("gio"), {QStringLiteral("mime"), ours});
    ASSERT_TRUE(gio.waitForFinished());
    const QString said = QString::fromUtf8(gio.readAllStandardOutput());
    EXPECT_TRUE(said.contains(QStringLiteral("cramlet.desktop"))) << said.toStdString();
}

} // namespace
