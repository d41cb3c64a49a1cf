#include "platform/help/HelpViewer.h"
#include "tests/platform/help/GardenBook.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// What the learner is told when \p file is opened as a book; empty if it is one.
std::string refusalOf(const QString &file)
{
    try {
        const HelpBook book(file);
        return {};
    } catch (const HelpUnavailable &refusal) {
        return refusal.what();
    }
}

class HelpBookTest : public testing::Test
{
protected:
    QString write(const QByteArray &bytes)
    {
        const QString path = folder.filePath(QStringLiteral("Broken.qch"));
        QFile file(path);
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write(bytes);
        return path;
    }
    static QByteArray gardenBytes()
    {
        QFile file(gardenBook());
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        return file.readAll();
    }
    static void expectAdvice(const std::string &refusal, const QString &file, const char *what)
    {
        EXPECT_NE(refusal.find(file.toStdString()), std::string::npos) << refusal;
        EXPECT_NE(refusal.find(what), std::string::npos) << refusal;
        EXPECT_NE(refusal.find("Install Cramlet again"), std::string::npos) << refusal;
    }

    QTemporaryDir folder;
};

TEST_F(HelpBookTest, FindsATopicByItsContextNumber)
{
    const HelpBook book(gardenBook());
    EXPECT_EQ(book.topic(5), gardenPage("garden.html"));
    EXPECT_EQ(book.topic(10), gardenPage("shed.html"));
}

TEST_F(HelpBookTest, HasNothingForANumberThatNoTopicHas)
{
    const HelpBook book(gardenBook());
    EXPECT_EQ(book.topic(7), std::nullopt);
    EXPECT_EQ(book.topic(-1), std::nullopt);
}

TEST_F(HelpBookTest, ReadsItsPages)
{
    const HelpBook book(gardenBook());
    EXPECT_TRUE(book.contains(gardenPage("trees.html#apple")));
    EXPECT_TRUE(book.read(gardenPage("trees.html#apple")).contains("<title>Trees</title>"));
}

TEST_F(HelpBookTest, HoldsNothingFromOutside)
{
    const HelpBook book(gardenBook());
    for (const QUrl &place : {gardenPage("roses.html"), QUrl(QStringLiteral("https://example.com/")),
                              QUrl(QStringLiteral("qthelp://other.help.1.0/book/trees.html")),
                              QUrl::fromLocalFile(gardenBook()), QUrl(QStringLiteral("trees.html")), QUrl()}) {
        EXPECT_FALSE(book.contains(place)) << place.toString().toStdString();
        EXPECT_TRUE(book.read(place).isEmpty()) << place.toString().toStdString();
    }
}

TEST_F(HelpBookTest, AMissingFileIsNamedWithWhatToDo)
{
    const QString missing = folder.filePath(QStringLiteral("Missing.qch"));
    expectAdvice(refusalOf(missing), missing, "missing");
    EXPECT_FALSE(QFile::exists(missing)) << "looking for it must not make it";
    expectAdvice(refusalOf(folder.path()), folder.path(), "missing");
}

TEST_F(HelpBookTest, AFileThatIsNoBookIsNamedWithWhatToDo)
{
    for (const QByteArray &bytes : {QByteArray(), QByteArray("Dear diary"), QByteArray(5000, '\0')}) {
        const QString file = write(bytes);
        expectAdvice(refusalOf(file), file, "damaged");
    }
}

TEST_F(HelpBookTest, ABookThatIsCutOffAnywhereIsRefusedOrReadable)
{
    const QByteArray whole = gardenBytes();
    int refused = 0;
    constexpr int cuts = 16;
    for (int cut = 0; cut < cuts; ++cut) {
        const QString file = write(whole.left(whole.size() * cut / cuts));
        const std::string refusal = refusalOf(file);
        if (!refusal.empty()) {
            expectAdvice(refusal, file, "damaged");
            ++refused;
        } else {
            const HelpBook book(file);
            (void)book.topic(5);
            (void)book.read(gardenPage("trees.html"));
        }
    }
    EXPECT_GT(refused, 0);
}

TEST_F(HelpBookTest, ABookThatCannotBeWrittenToIsRead)
{
    const QString file = write(gardenBytes());
    ASSERT_TRUE(QFile::setPermissions(file, QFile::ReadOwner));
    EXPECT_EQ(HelpBook(file).topic(6), gardenPage("trees.html"));
}

TEST_F(HelpBookTest, LeavesNothingBehind)
{
    qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8());
    const QStringList ours{QStringLiteral("cramlet-help-*")};
    {
        const HelpBook book(gardenBook());
        EXPECT_EQ(QDir(folder.path()).entryList(ours, QDir::Dirs).size(), 1)
            << "the register lies in the session's folder";
    }
    EXPECT_TRUE(QDir(folder.path()).entryList(ours, QDir::Dirs).isEmpty());
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

} // namespace
