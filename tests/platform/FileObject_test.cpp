#include "platform/FileIcon.h"
#include "platform/FileObject.h"
#include "platform/ObjectOpener.h"
#include "platform/RichTextBox.h"
#include "platform/rtf/RtfObject.h"
#include "platform/rtf/RtfObjectFormat.h"
#include "tests/support/FilesInFolder.h"
#include "tests/support/Pictures.h"
#include "tests/support/Windows.h"

#include <QBuffer>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFontMetricsF>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QTextCursor>

#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 mebibyte = qint64{1024} * 1024;
constexpr QSize limit(1000, 800);

/// Takes the rights of root away as long as it lives.
class AsNobody
{
public:
    AsNobody()
    {
        if (m_user == 0) {
            EXPECT_EQ(::seteuid(65534), 0);
        }
    }
    ~AsNobody() { EXPECT_EQ(::seteuid(m_user), 0); }
    AsNobody(const AsNobody &) = delete;
    AsNobody &operator=(const AsNobody &) = delete;

private:
    const ::uid_t m_user = ::geteuid();
};

/// Gives "data" without end, and counts what was taken.
class EndlessDevice : public QIODevice
{
public:
    EndlessDevice() { open(ReadOnly | Unbuffered); }

    qint64 taken = 0;

protected:
    qint64 readData(char *data, qint64 most) override
    {
        std::fill_n(data, most, 'x');
        taken += most;
        return most;
    }
    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }
};

/// Cannot be read any further after its first bytes.
class BrokenDevice : public QIODevice
{
public:
    BrokenDevice() { open(ReadOnly | Unbuffered); }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        if (m_isBroken) {
            return -1;
        }
        m_isBroken = true;
        const qint64 count = std::min<qint64>(most, 10);
        std::fill_n(data, count, 'x');
        return count;
    }
    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }

private:
    bool m_isBroken = false;
};

QByteArray pictureFile(const QImage &image, const char *format)
{
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&file, format));
    return file.data();
}

QByteArray jpgFile()
{
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    return pictureFile(image, "jpg");
}

/// Every byte there is, in a length that fills no line.
QByteArray allBytes()
{
    QByteArray bytes;
    for (int i = 0; i < 1001; ++i) {
        bytes += static_cast<char>(i);
    }
    return bytes;
}

RtfObject read(const QByteArray &source)
{
    return readRtfObject({source.constData(), static_cast<std::size_t>(source.size())});
}

using FileObjects = FilesInFolder;

// What files become.

TEST_F(FileObjects, AFileBecomesAPackageWithItsNameAndItsBytes)
{
    const FileObject object = objectOfFile(make(QStringLiteral("notes.pdf"), allBytes()), limit);
    EXPECT_EQ(object.refusal, QString());
    EXPECT_EQ(object.name, QStringLiteral("notes.pdf"));
    EXPECT_EQ(object.size, 1001);
    EXPECT_FALSE(object.isPicture);
    const RtfObject inText = read(object.source);
    EXPECT_FALSE(inText.isPicture);
    EXPECT_EQ(inText.kind, QStringLiteral("Package"));
    EXPECT_EQ(inText.name, QStringLiteral("notes.pdf"));
    EXPECT_EQ(inText.native, allBytes());
    EXPECT_TRUE(holdsFile(object.source));
}

class FileNames : public FileObjects, public testing::WithParamInterface<const char *>
{
};

TEST_P(FileNames, AreKept)
{
    const QString name = QString::fromUtf8(GetParam());
    const QByteArray source = objectOfFile(make(name, "text"), limit).source;
    EXPECT_EQ(read(source).name, name);
    EXPECT_EQ(fileNameOf(source).left(20), name.left(20));
}

const std::string longName = std::string(196, 'n') + ".pdf";
INSTANTIATE_TEST_SUITE_P(FileObject, FileNames,
                         testing::Values("Übung & Lösung.txt", "конспект 1.txt", "単語.txt", "emoji \U0001f600.txt",
                                         "100% #1 {a}.txt", "no ending", longName.c_str()));

TEST_F(FileObjects, APictureFileBecomesThePictureWithItsBytes)
{
    const struct
    {
        const char *name;
        QByteArray bytes;
        QSize pixels;
        const char *kind;
    } rows[] = {{"a.png", pngFile({20, 10}), {20, 10}, "PNG"}, {"a.jpg", jpgFile(), {40, 30}, "JPEG"}};
    for (const auto &row : rows) {
        const FileObject object = objectOfFile(make(QString::fromLatin1(row.name), row.bytes), limit);
        EXPECT_TRUE(object.isPicture) << row.name;
        EXPECT_EQ(object.pixels, row.pixels) << row.name;
        EXPECT_EQ(object.size, row.bytes.size()) << row.name;
        const RtfObject inText = read(object.source);
        EXPECT_TRUE(inText.isPicture) << row.name;
        EXPECT_EQ(inText.image, row.bytes) << row.name;
        EXPECT_EQ(inText.kind, QString::fromLatin1(row.kind));
        EXPECT_EQ(inText.size, row.pixels * 15) << row.name;
    }
}

TEST_F(FileObjects, ALargerPictureIsShownWithinTheLimit)
{
    const FileObject object = objectOfFile(make(QStringLiteral("a.png"), pngFile({3000, 1000})), limit);
    EXPECT_EQ(object.pixels, QSize(3000, 1000));
    EXPECT_EQ(read(object.source).size, QSize(1000, 333) * 15);
}

TEST_F(FileObjects, APictureIsKnownByItsContentsAndNotByItsName)
{
    for (const FileObject &object : {objectOfFile(make(QStringLiteral("a.txt"), pngFile({20, 10})), limit),
                                     lookAtFile(path(QStringLiteral("a.txt")))}) {
        EXPECT_TRUE(object.isPicture);
    }
    for (const FileObject &object : {objectOfFile(make(QStringLiteral("b.png"), "Just words."), limit),
                                     lookAtFile(path(QStringLiteral("b.png")))}) {
        EXPECT_FALSE(object.isPicture);
        EXPECT_EQ(object.refusal, QString());
    }
}

TEST_F(FileObjects, WhatIsNoPictureThatCanBeShownSafelyBecomesAPackage)
{
    const QByteArray svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"><rect/></svg>";
    QByteArray wrong = pngFile({20, 10});
    wrong.replace(16, 8, QByteArray::fromHex("0000ffff0000ffff")); // the head's checksum is none of it
    QByteArray huge = pictureFile(redPicture(), "bmp");
    huge.replace(18, 8, QByteArray::fromHex("ffff0000ffff0000")); // claims 65535 x 65535
    for (const auto &[name, contents] :
         {std::pair{QStringLiteral("a.svg"), svg}, std::pair{QStringLiteral("b.png"), wrong},
          std::pair{QStringLiteral("c.bmp"), huge}}) {
        const FileObject looked = lookAtFile(make(name, contents));
        EXPECT_FALSE(looked.isPicture) << name.toStdString();
        EXPECT_EQ(looked.refusal, QString());
        const FileObject object = objectOfFile(path(name), limit);
        EXPECT_FALSE(object.isPicture) << name.toStdString();
        EXPECT_EQ(read(object.source).native, contents);
    }
}

TEST_F(FileObjects, ADamagedPictureBecomesAPackage)
{
    const QByteArray damaged = pngFile({200, 100}).chopped(30);
    EXPECT_TRUE(lookAtFile(make(QStringLiteral("a.png"), damaged)).isPicture) << "its head is that of a picture";
    const FileObject object = objectOfFile(path(QStringLiteral("a.png")), limit);
    EXPECT_FALSE(object.isPicture);
    EXPECT_EQ(object.pixels, QSize());
    EXPECT_EQ(read(object.source).native, damaged);
}

TEST_F(FileObjects, LookingTellsWhatReadingGives)
{
    make(QStringLiteral("a.png"), pngFile({20, 10}));
    make(QStringLiteral("b.txt"), "text");
    for (const char *name : {"a.png", "b.txt"}) {
        const FileObject looked = lookAtFile(path(QString::fromLatin1(name)));
        const FileObject object = objectOfFile(path(QString::fromLatin1(name)), limit);
        EXPECT_TRUE(looked.source.isEmpty());
        EXPECT_EQ(looked.isPicture, object.isPicture) << name;
        EXPECT_EQ(looked.size, object.size) << name;
        EXPECT_EQ(looked.pixels, object.pixels) << name;
        EXPECT_EQ(looked.name, object.name) << name;
    }
}

// Refusals.

/// Both ways of looking at the file refuse it with these words.
void expectRefused(const QString &path, const QString &words)
{
    for (const FileObject &object : {lookAtFile(path), objectOfFile(path, limit)}) {
        EXPECT_TRUE(object.refusal.contains(words)) << object.refusal.toStdString();
        EXPECT_TRUE(object.refusal.endsWith(QLatin1Char('.')));
        EXPECT_TRUE(object.source.isEmpty());
        EXPECT_FALSE(object.isPicture);
    }
}

TEST_F(FileObjects, WhatIsNotThereIsRefused)
{
    expectRefused(path(QStringLiteral("none.txt")), QStringLiteral("\"none.txt\" was not found in \""));
    ASSERT_EQ(::symlink("nowhere", qPrintable(path(QStringLiteral("link")))), 0);
    expectRefused(path(QStringLiteral("link")), QStringLiteral("was not found"));
}

TEST_F(FileObjects, WhatIsNoFileIsRefusedWithoutWaitingForIt)
{
    expectRefused(m_folder.path(), QStringLiteral("is a folder"));
    expectRefused(m_folder.path() + QLatin1Char('/'), QStringLiteral("is a folder"));
    ASSERT_EQ(::mkfifo(qPrintable(path(QStringLiteral("pipe"))), 0600), 0);
    expectRefused(path(QStringLiteral("pipe")), QStringLiteral("is a device or a pipe"));
    expectRefused(QStringLiteral("/dev/zero"), QStringLiteral("is a device or a pipe"));
    expectRefused(QStringLiteral("/dev/null"), QStringLiteral("is a device or a pipe"));
}

TEST_F(FileObjects, AFileThatMayNotBeReadIsRefused)
{
    make(QStringLiteral("secret.txt"), "text");
    ASSERT_EQ(::chmod(qPrintable(m_folder.path()), 0755), 0);
    ASSERT_EQ(::chmod(qPrintable(path(QStringLiteral("secret.txt"))), 0), 0);
    const AsNobody nobody;
    expectRefused(path(QStringLiteral("secret.txt")),
                  QStringLiteral("\"secret.txt\" cannot be read: Permission denied"));
}

TEST_F(FileObjects, AnEmptyFileIsRefused)
{
    expectRefused(make(QStringLiteral("empty.txt"), {}), QStringLiteral("is empty"));
}

TEST_F(FileObjects, AFileThatIsTooLargeIsRefusedNamingBothSizes)
{
    expectRefused(makeLarge(QStringLiteral("a.bin"), 20 * mebibyte + mebibyte / 2),
                  QStringLiteral("it has 20.5 MiB, and at most 16 MiB can"));
    expectRefused(makeLarge(QStringLiteral("b.bin"), maxInsertedFile + 1),
                  QStringLiteral("it has 16,777,217 bytes, and at most 16,777,216 bytes can"));
    // One that cannot be read within the test's time.
    expectRefused(makeLarge(QStringLiteral("c.bin"), qint64{1} << 40), QStringLiteral("it has 1 TiB"));
}

TEST_F(FileObjects, AFileOfTheLargestSizeIsTaken)
{
    const FileObject object = objectOfFile(makeLarge(QStringLiteral("a.bin"), maxInsertedFile), limit);
    EXPECT_EQ(object.refusal, QString());
    EXPECT_EQ(object.size, maxInsertedFile);
    EXPECT_GT(object.source.size(), 2 * maxInsertedFile) << "two digits for each byte";
}

TEST_F(FileObjects, ARefusalLeavesOutTheMiddleOfALongName)
{
    const FileObject object = lookAtFile(path(QString(100, QLatin1Char('a')) + QStringLiteral("the end.pdf")));
    EXPECT_LT(object.refusal.indexOf(QStringLiteral("\" was")), 45) << object.refusal.toStdString();
    EXPECT_TRUE(object.refusal.contains(QStringLiteral("the end.pdf\"")));
}

TEST(FileReading, StopsAfterTheMostThatIsTaken)
{
    EndlessDevice device;
    EXPECT_EQ(readUpTo(device, 3 * mebibyte + 5), std::nullopt);
    EXPECT_EQ(device.taken, 3 * mebibyte + 6);
}

TEST(FileReading, TakesExactlyTheMostAndEverythingBelow)
{
    for (const qint64 size : {qint64{0}, qint64{1}, mebibyte - 1, mebibyte, mebibyte + 1, 2 * mebibyte}) {
        QByteArray contents(size, 'x');
        QBuffer device(&contents);
        ASSERT_TRUE(device.open(QIODevice::ReadOnly));
        EXPECT_EQ(readUpTo(device, 2 * mebibyte), contents) << size;
    }
}

TEST(FileReading, GivesNothingOfADeviceThatBreaks)
{
    BrokenDevice device;
    EXPECT_EQ(readUpTo(device, 100), std::nullopt);
}

TEST(FileSizes, AreTheOnesThatPeopleUse)
{
    EXPECT_EQ(humanSize(12), QStringLiteral("12 bytes"));
    EXPECT_EQ(humanSize(182 * 1024 + 100), QStringLiteral("182 KiB"));
    EXPECT_EQ(humanSize(mebibyte), QStringLiteral("1 MiB"));
    EXPECT_EQ(humanSize(mebibyte * 5 / 4 + 1000), QStringLiteral("1.3 MiB"));
    EXPECT_EQ(humanSize(16 * mebibyte), QStringLiteral("16 MiB"));
    EXPECT_EQ(humanSize(1000 * 1024), QStringLiteral("1000 KiB"));
}

TEST(FileSizes, NamesInSentencesKeepWholeLetters)
{
    EXPECT_EQ(shownFileName(QString(40, QLatin1Char('a'))), QString(40, QLatin1Char('a')));
    const QString faces = QStringLiteral("a") + QStringLiteral("\U0001f600").repeated(40) + QStringLiteral("b");
    const QString shown = shownFileName(faces);
    EXPECT_LE(shown.size(), 41);
    EXPECT_EQ(QString::fromUtf8(shown.toUtf8()), shown) << "no half of a letter";
}

// The picture of a package.

/// The icon drawn on a sheet of \p paper.
QImage onPaper(const FileIcon &icon, const QColor &paper)
{
    const QImage picture = QImage::fromData(icon.png);
    QImage sheet(picture.size(), QImage::Format_RGB32);
    sheet.fill(paper);
    QPainter(&sheet).drawImage(0, 0, picture);
    return sheet;
}

int lightest(const QImage &image)
{
    int value = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            value = std::max(value, qGray(image.pixel(x, y)));
        }
    }
    return value;
}

int darkest(const QImage &image)
{
    QImage inverted = image;
    inverted.invertPixels();
    return 255 - lightest(inverted);
}

TEST(FileIcons, HaveTwoPixelsForEachUnit)
{
    const FileIcon icon = iconOfFile(QStringLiteral("notes.pdf"), "%PDF-1.4");
    const QImage picture = QImage::fromData(icon.png, "png");
    EXPECT_EQ(picture.size(), icon.pixels);
    EXPECT_EQ(icon.twips, icon.pixels * 15 / 2);
    EXPECT_GE(icon.pixels.height() / 2, 32 + 12);
    EXPECT_LE(icon.pixels.height() / 2, 80);
    EXPECT_EQ(qAlpha(picture.pixel(0, picture.height() - 1)), 0) << "the label has round corners";
}

TEST(FileIcons, ShowSomethingAboveTheName)
{
    const QImage picture = QImage::fromData(iconOfFile(QStringLiteral("a name that is long"), "text").png);
    int solid = 0;
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            solid += qAlpha(picture.pixel(x, y)) > 200 ? 1 : 0;
        }
    }
    EXPECT_GT(solid, 64 * 64 / 4);
}

TEST(FileIcons, TheNameCanBeReadOnAnyPaper)
{
    const FileIcon icon = iconOfFile(QStringLiteral("notes.pdf"), "%PDF-1.4");
    for (const QColor paper : {Qt::white, Qt::black, Qt::yellow, Qt::darkBlue, Qt::gray}) {
        QImage label = onPaper(icon, paper);
        label = label.copy(12, 80, label.width() - 24, label.height() - 84);
        EXPECT_GT(lightest(label), 240) << paper.name().toStdString();
        EXPECT_LT(darkest(label), 60) << paper.name().toStdString();
    }
}

TEST(FileIcons, ALongNameLosesItsMiddleInThePicture)
{
    const QString name = QString(60, QLatin1Char('m')) + QStringLiteral(".pdf");
    const FileIcon longer = iconOfFile(name, "x");
    EXPECT_LE(longer.pixels.width(), 2 * 140);
    const FileIcon other = iconOfFile(QString(90, QLatin1Char('m')) + QStringLiteral(".pdf"), "x");
    EXPECT_EQ(longer.png, other.png) << "only the ends are shown";
    EXPECT_NE(longer.png, iconOfFile(name.left(60) + QStringLiteral(".txt"), "x").png);
}

TEST(FileIcons, ShowTheDesktopsIconOfTheKindOfFile)
{
    QTemporaryDir themes;
    ASSERT_TRUE(QDir(themes.path()).mkpath(QStringLiteral("test/64/mimetypes")));
    QFile index(themes.filePath(QStringLiteral("test/index.theme")));
    ASSERT_TRUE(index.open(QFile::WriteOnly));
    index.write("[Icon Theme]\nName=Test\nDirectories=64/mimetypes\n[64/mimetypes]\nSize=64\nType=Fixed\n");
    index.close();
    QImage red(64, 64, QImage::Format_RGB32);
    red.fill(Qt::red);
    ASSERT_TRUE(red.save(themes.filePath(QStringLiteral("test/64/mimetypes/application-pdf.png"))));
    const QStringList before = QIcon::themeSearchPaths();
    const QString beforeName = QIcon::themeName();
    QIcon::setThemeSearchPaths({themes.path()});
    QIcon::setThemeName(QStringLiteral("test"));

    const QImage pdf = QImage::fromData(iconOfFile(QStringLiteral("a.pdf"), "%PDF-1.4").png);
    EXPECT_EQ(pdf.pixelColor(pdf.width() / 2, 32), QColor(Qt::red));
    const QImage text = QImage::fromData(iconOfFile(QStringLiteral("a.txt"), "text").png);
    EXPECT_NE(text.pixelColor(text.width() / 2, 32), QColor(Qt::red));
    EXPECT_GT(text.pixelColor(text.width() / 2, 32).alpha(), 200) << "there always is one";

    QIcon::setThemeSearchPaths(before);
    QIcon::setThemeName(beforeName);
}

TEST_F(FileObjects, ThePackagesPictureIsTheIcon)
{
    const FileObject object = objectOfFile(make(QStringLiteral("notes.pdf"), "%PDF-1.4"), limit);
    const FileIcon icon = iconOfFile(QStringLiteral("notes.pdf"), "%PDF-1.4");
    EXPECT_EQ(read(object.source).image, icon.png);
    EXPECT_EQ(read(object.source).size, icon.twips);
}

TEST_F(FileObjects, ThePackagesPictureShowsNoMarksThatTurnTheName)
{
    const QString turned = QStringLiteral("report") + QChar(0x202e) + QStringLiteral("fdp.exe");
    const FileObject object = objectOfFile(make(turned, "MZ"), limit);
    EXPECT_EQ(read(object.source).image, iconOfFile(QStringLiteral("reportfdp.exe"), "MZ").png);
}

// In a text.

/// The source of the first character of \p box.
QByteArray firstObject(const RichTextBox &box)
{
    QTextCursor cursor(box.document());
    cursor.setPosition(1);
    return objectSourceOf(cursor.charFormat());
}

class InsertedObjects : public FileObjects
{
protected:
    /// Inserts the file and gives the text that is saved; checks that it is the same after reopening.
    QByteArray savedAndReopened(const QString &path)
    {
        RichTextBox box;
        box.insertObjectSource(objectOfFile(path, box.pictureLimit()).source);
        const std::string saved = box.rtf();
        RichTextBox reopened;
        reopened.setRtf(saved);
        EXPECT_EQ(reopened.rtf(), saved);
        EXPECT_EQ(reopened.plainText(), QStringLiteral(" "));

        // Written anew and not just as it was set.
        reopened.moveCursor(QTextCursor::End);
        reopened.insertPlainText(QStringLiteral("x"));
        RichTextBox again;
        again.setRtf(reopened.rtf());
        EXPECT_EQ(firstObject(again), firstObject(box));
        return firstObject(again);
    }
};

TEST_F(InsertedObjects, APackageComesBackByteForByte)
{
    for (const char *name : {"notes.pdf", "Übung 単語 {1}.bin"}) {
        const QString path = make(QString::fromUtf8(name), allBytes());
        const RtfObject object = read(savedAndReopened(path));
        EXPECT_FALSE(object.isPicture);
        EXPECT_EQ(object.native, allBytes()) << name;
        EXPECT_EQ(object.name, QString::fromUtf8(name));
        EXPECT_EQ(object.image, read(objectOfFile(path, limit).source).image) << "its icon too";
    }
}

TEST_F(InsertedObjects, APictureComesBackByteForByte)
{
    for (const QByteArray &bytes : {pngFile({20, 10}), jpgFile()}) {
        const RtfObject object = read(savedAndReopened(make(QStringLiteral("a"), bytes)));
        EXPECT_TRUE(object.isPicture);
        EXPECT_EQ(object.image, bytes);
    }
}

TEST_F(InsertedObjects, ADoubleClickOnAPackageAsksBeforeOpeningAndNoOpensNothing)
{
    QStringList opened;
    QTextBrowser desktop;
    QDesktopServices::setUrlHandler(QStringLiteral("file"), &desktop, "anchorClicked");
    QObject::connect(&desktop, &QTextBrowser::anchorClicked, &desktop,
                     [&opened](const QUrl &url) { opened << url.toLocalFile(); });

    RichTextBox box;
    box.insertObjectSource(objectOfFile(make(QStringLiteral("notes.txt"), "words"), box.pictureLimit()).source);
    box.resize(400, 300);
    box.show();
    const QPoint onIcon = box.cursorRect(QTextCursor(box.document())).bottomLeft() + QPoint(15, -10);
    for (const auto button : {QMessageBox::No, QMessageBox::Yes}) {
        DialogAnswers answers;
        answers.press(button);
        QTest::mouseDClick(box.viewport(), Qt::LeftButton, {}, onIcon);
        EXPECT_TRUE(answers.last().text.contains(QStringLiteral("\"notes.txt\""))) << answers.last().text.toStdString();
        EXPECT_EQ(opened.size(), button == QMessageBox::Yes ? 1 : 0);
    }
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    ASSERT_EQ(opened.size(), 1);
    QFile file(opened.constFirst());
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    EXPECT_EQ(file.readAll(), "words");
}

} // namespace
