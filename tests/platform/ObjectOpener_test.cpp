#include "platform/ObjectOpener.h"
#include "platform/rtf/OleObject.h"
#include "platform/rtf/RtfObject.h"
#include "tests/support/Windows.h"

#include <QAbstractItemView>
#include <QBuffer>
#include <QCompleter>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QLineEdit>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QtEndian>

#include <gtest/gtest.h>
#include <string>

namespace {

QByteArray word(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray block(const QByteArray &bytes)
{
    return word(static_cast<quint32>(bytes.size())) + bytes;
}

QByteArray embedded(const QByteArray &className, const QByteArray &native)
{
    return word(0x501) + word(2) + block(className + '\0') + word(0) + word(0) + block(native) + word(0x501) + word(0);
}

QByteArray object(const QByteArray &className, const QByteArray &stream)
{
    return objectSource(QString::fromLatin1(className), stream, {}, {1, 1}, {480, 480});
}

QByteArray objectOf(const QByteArray &className, const QByteArray &native)
{
    return object(className, embedded(className, native));
}

QByteArray package(const QString &name, const QByteArray &data)
{
    return object("Package", writeOlePackage(name, data));
}

QByteArray linked(const QByteArray &path)
{
    return object("Package", word(0x501) + word(1) + block(QByteArray("Package") + '\0') + block(path + '\0') +
                                 word(0) + word(0) + word(0) + word(0));
}

QByteArray picture(const char *format)
{
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format));
    return buffer.data();
}

const QByteArray zip("PK\x03\x04 and so on");
const QByteArray compound("\xd0\xcf\x11\xe0 and so on");
const QByteArray wmfPicture("{\\pict\\wmetafile8\\picwgoal300\\pichgoal300 00112233}");

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

// ---------------------------------------------------------------------------

struct Named
{
    std::string name; ///< of the test
    QByteArray source;
    QString file;
    bool isThere;
};

class HeldFiles : public testing::TestWithParam<Named>
{
};

TEST_P(HeldFiles, HaveAName)
{
    EXPECT_EQ(fileNameOf(GetParam().source), GetParam().file);
    EXPECT_EQ(holdsFile(GetParam().source), GetParam().isThere);
}

const Named held[] = {
    {"APackageHasItsOwn", package(QStringLiteral("Übung 1.pdf"), "%PDF"), QStringLiteral("Übung 1.pdf"), true},
    {"AnEmptyFileIsNone", package(QStringLiteral("empty.txt"), ""), QStringLiteral("empty.txt"), false},
    {"ALinkNamesAFileAndHoldsNone", linked("C:\\Temp\\report.doc"), QStringLiteral("report.doc"), false},
    {"APaintedPicture", objectOf("PBrush", "BM and so on"), QStringLiteral("Picture.bmp"), true},
    {"APaintedPictureThatIsABitmap", objectOf("Paint.Picture", "BM and so on"), QStringLiteral("Picture.bmp"), true},
    {"APaintedPictureThatIsNone", objectOf("Paint.Picture", compound), QStringLiteral("Paint Picture.bin"), true},
    {"AnOldDocument", objectOf("Word.Document.8", compound), QStringLiteral("Word Document.doc"), true},
    {"ANewDocument", objectOf("Word.Document.12", zip), QStringLiteral("Word Document.docx"), true},
    {"AnOldSheet", objectOf("Excel.Sheet.8", compound), QStringLiteral("Excel Sheet.xls"), true},
    {"ANewSheet", objectOf("Excel.Sheet.12", zip), QStringLiteral("Excel Sheet.xlsx"), true},
    {"OldSlides", objectOf("PowerPoint.Show.8", compound), QStringLiteral("PowerPoint Show.ppt"), true},
    {"NewSlides", objectOf("PowerPoint.Show.12", zip), QStringLiteral("PowerPoint Show.pptx"), true},
    {"APrintedPage", objectOf("AcroExch.Document.7", "%PDF-1.4"), QStringLiteral("AcroExch Document.pdf"), true},
    {"APrintedPageInABox", objectOf("AcroExch.Document.7", compound), QStringLiteral("AcroExch Document.bin"), true},
    {"AClassNobodyKnows", objectOf("Some.Class/Here.1", "data"), QStringLiteral("Here.bin"), true},
    {"ARawPng", pictureSource(picture("png"), {4, 4}, {60, 60}), QStringLiteral("Picture.png"), true},
    {"ARawJpeg", pictureSource(picture("jpg"), {4, 4}, {60, 60}), QStringLiteral("Picture.jpg"), true},
    {"ARawBitmap", pictureSource(picture("bmp"), {4, 4}, {60, 60}), QStringLiteral("Picture.bmp"), true},
    {"APictureThatCannotBeDrawn", wmfPicture, QStringLiteral("Picture.bin"), false},
    {"NoObjectAtAll", {}, QStringLiteral("Picture.bin"), false},
};

INSTANTIATE_TEST_SUITE_P(ObjectOpener, HeldFiles, testing::ValuesIn(held),
                         [](const auto &row) { return row.param.name; });

TEST(ObjectOpener, NamesHaveNoMarksThatMakeThemLookLikeOthers)
{
    const QString reversed = QStringLiteral("report") + QChar(0x202e) + QStringLiteral("fdp.exe");
    EXPECT_EQ(fileNameOf(package(reversed, "x")), QStringLiteral("reportfdp.exe"));

    const QString hyphenated = QStringLiteral("My") + QChar(0xad) + QStringLiteral("Class"); // not seen
    EXPECT_EQ(fileNameOf(objectSource(hyphenated, embedded({}, "x"), {}, {1, 1}, {480, 480})),
              QStringLiteral("MyClass.bin"));
    for (const char16_t mark : {u'\x01', u'\x1f', u'\x7f', u'\x85', u'\x61c', u'\x200b', u'\x200e', u'\x200f',
                                u'\x2028', u'\x2029', u'\x202a', u'\x2066', u'\x2069', u'\xfeff', u'\xd800'}) {
        const QString name = fileNameOf(package(QStringLiteral("a") + QChar(mark) + QStringLiteral("b.txt"), "x"));
        EXPECT_FALSE(name.contains(QChar(mark))) << static_cast<int>(mark);
        EXPECT_TRUE(name.endsWith(QStringLiteral("b.txt"))) << static_cast<int>(mark);
    }
}

TEST(ObjectOpener, NamesDoNotLeaveTheirFolderOrHideTheirEnding)
{
    EXPECT_EQ(fileNameOf(linked("..\\..\\report.doc")), QStringLiteral("report.doc"));
    EXPECT_EQ(fileNameOf(linked("/etc/../report.doc")), QStringLiteral("report.doc"));
    EXPECT_EQ(fileNameOf(linked("..")), QStringLiteral("Package.bin"));
    EXPECT_EQ(fileNameOf(linked(".hidden.txt")), QStringLiteral("hidden.txt"));
    EXPECT_EQ(fileNameOf(linked("~root.txt")), QStringLiteral("root.txt"));
    EXPECT_EQ(fileNameOf(linked("evil.exe . .")), QStringLiteral("evil.exe"));
    EXPECT_EQ(fileNameOf(linked("report.pdf                    .exe")), QStringLiteral("report.pdf .exe"));
    EXPECT_EQ(fileNameOf(linked("a:\"b\"<c>?*|.txt")), QStringLiteral("a__b__c____.txt"));
}

TEST(ObjectOpener, ALongNameLosesItsMiddle)
{
    const QString name = fileNameOf(linked(QByteArray(100, 'a') + QByteArray(100, 'b') + ".pdf"));
    EXPECT_EQ(name.size(), 80);
    EXPECT_TRUE(name.startsWith(QString(49, QLatin1Char('a')) + QChar(0x2026) + QLatin1Char('b')))
        << name.toStdString();
    EXPECT_TRUE(name.endsWith(QStringLiteral("bbb.pdf")));
    EXPECT_EQ(fileNameOf(linked(QByteArray(76, 'a') + ".pdf")).size(), 80);
}

// ---------------------------------------------------------------------------

class OpeningObjects : public testing::Test
{
protected:
    OpeningObjects()
    {
        // Its signal stands for the desktop: it is called with the file's address.
        QDesktopServices::setUrlHandler(QStringLiteral("file"), &m_desktop, "anchorClicked");
        QObject::connect(&m_desktop, &QTextBrowser::anchorClicked, &m_desktop,
                         [this](const QUrl &url) { m_opened.append(url.toLocalFile()); });
    }
    ~OpeningObjects() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    OpeningObjects(const OpeningObjects &) = delete;
    OpeningObjects &operator=(const OpeningObjects &) = delete;

    void openWithYes(const QByteArray &source)
    {
        DialogAnswers answers;
        answers.press(QMessageBox::Yes);
        openObject(nullptr, source);
    }

    QTextBrowser m_desktop;
    QStringList m_opened;
};

TEST_F(OpeningObjects, AsksFirstNamingTheFile)
{
    DialogAnswers answers;
    answers.press(QMessageBox::No);
    openObject(nullptr, package(QStringLiteral("report.pdf"), "%PDF-1.4"));
    const SeenMessage seen = answers.last();
    EXPECT_EQ(seen.title, QStringLiteral("Open Object"));
    EXPECT_TRUE(seen.text.contains(QStringLiteral("\"report.pdf\" from this text"))) << seen.text.toStdString();
    EXPECT_EQ(seen.icon, QMessageBox::Question);
    EXPECT_EQ(m_opened, QStringList());
}

TEST_F(OpeningObjects, EscapeOpensNothing)
{
    DialogAnswers answers;
    answers.key(Qt::Key_Escape);
    openObject(nullptr, package(QStringLiteral("report.pdf"), "%PDF-1.4"));
    EXPECT_EQ(m_opened, QStringList());
}

TEST_F(OpeningObjects, HandsAPrivateFileToTheDesktop)
{
    openWithYes(package(QStringLiteral("Übung 100% #1.txt"), "Contents"));
    ASSERT_EQ(m_opened.size(), 1);
    const QFileInfo file(m_opened.constFirst());
    EXPECT_EQ(file.fileName(), QStringLiteral("Übung 100% #1.txt"));
    EXPECT_EQ(contentsOf(file.filePath()), "Contents");
    EXPECT_EQ(file.permissions() & (QFile::Permissions(0x7077) | QFile::WriteOwner | QFile::ExeOwner),
              QFile::ReadOwner);

    EXPECT_TRUE(file.filePath().startsWith(QDir::tempPath() + QLatin1Char('/')));
    const QFileInfo folder(QFileInfo(file.path()).path());
    constexpr auto others =
        QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    EXPECT_FALSE(folder.permissions() & others);
}

TEST_F(OpeningObjects, FilesOfOneNameDoNotMeet)
{
    openWithYes(package(QStringLiteral("a.txt"), "One"));
    openWithYes(package(QStringLiteral("a.txt"), "Two"));
    ASSERT_EQ(m_opened.size(), 2);
    EXPECT_NE(m_opened.at(0), m_opened.at(1));
    EXPECT_EQ(contentsOf(m_opened.at(0)), "One");
    EXPECT_EQ(contentsOf(m_opened.at(1)), "Two");
}

TEST_F(OpeningObjects, PicturesOpenToo)
{
    openWithYes(pictureSource(picture("png"), {4, 4}, {60, 60}));
    ASSERT_EQ(m_opened.size(), 1);
    EXPECT_EQ(contentsOf(m_opened.constFirst()), picture("png"));
}

TEST_F(OpeningObjects, AnObjectWithoutAFileSaysSo)
{
    for (const QByteArray &source : {wmfPicture, linked("C:\\report.doc"), package(QStringLiteral("a.txt"), "")}) {
        DialogAnswers answers;
        answers.press(QMessageBox::Ok);
        openObject(nullptr, source);
        EXPECT_EQ(answers.last().icon, QMessageBox::Information);
        EXPECT_TRUE(answers.last().text.contains(fileNameOf(source)));
    }
    EXPECT_EQ(m_opened, QStringList());
}

TEST_F(OpeningObjects, AFolderThatWasTidiedAwayIsMadeAgain)
{
    openWithYes(package(QStringLiteral("a.txt"), "One"));
    ASSERT_EQ(m_opened.size(), 1);
    QDir folder(QFileInfo(QFileInfo(m_opened.at(0)).path()).path());
    ASSERT_TRUE(folder.removeRecursively());
    openWithYes(package(QStringLiteral("a.txt"), "Two"));
    ASSERT_EQ(m_opened.size(), 2);
    EXPECT_EQ(contentsOf(m_opened.at(1)), "Two");
}

TEST_F(OpeningObjects, AFileThatCannotBeWrittenIsAFailureAndTheNextOneOpens)
{
    openWithYes(package(QStringLiteral("a.txt"), "One"));
    QDir folder(QFileInfo(QFileInfo(m_opened.at(0)).path()).path());
    ASSERT_TRUE(folder.removeRecursively());
    const QByteArray before = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/etc/passwd"); // no folder
    {
        DialogAnswers answers;
        answers.press(QMessageBox::Yes).press(QMessageBox::Ok);
        openObject(nullptr, package(QStringLiteral("report.txt"), "Two"));
        EXPECT_EQ(answers.last().icon, QMessageBox::Critical);
        EXPECT_EQ(answers.last().title, QStringLiteral("Open Object"));
        EXPECT_TRUE(answers.last().text.contains(QStringLiteral("\"report.txt\"")));
        EXPECT_TRUE(answers.last().text.contains(QStringLiteral("/etc/passwd")));
    }
    if (before.isNull()) {
        qunsetenv("TMPDIR");
    } else {
        qputenv("TMPDIR", before);
    }
    EXPECT_EQ(m_opened.size(), 1);
    openWithYes(package(QStringLiteral("a.txt"), "Three"));
    EXPECT_EQ(m_opened.size(), 2);
}

TEST_F(OpeningObjects, ADesktopThatOpensNothingIsAFailure)
{
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    DialogAnswers answers;
    answers.press(QMessageBox::Yes).press(QMessageBox::Ok);
    openObject(nullptr, package(QStringLiteral("report.txt"), "Contents"));
    EXPECT_EQ(answers.last().icon, QMessageBox::Critical);
    EXPECT_TRUE(answers.last().text.contains(QStringLiteral("\"report.txt\"")));
    EXPECT_TRUE(answers.last().text.contains(QStringLiteral("saved")));
}

TEST(ObjectOpener, OpenedFilesGoWhenTheProgramEnds)
{
    const QTemporaryDir temporary;
    const QTemporaryDir runtime;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), temporary.path());
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime.path());
    QProcess program;
    program.setProcessEnvironment(environment);
    // This test looks for its file in the folder of temporary files.
    program.start(QCoreApplication::applicationFilePath(),
                  {QStringLiteral("--gtest_filter=OpeningObjects.HandsAPrivateFileToTheDesktop")});
    ASSERT_TRUE(program.waitForFinished());
    const QByteArray report = program.readAllStandardOutput();
    EXPECT_TRUE(report.contains("[  PASSED  ] 1 test.")) << report.toStdString();
    EXPECT_EQ(QDir(temporary.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList());
}

// ---------------------------------------------------------------------------

struct Candidate
{
    const char *name; ///< of the file
    QByteArray data;
};

class Programs : public testing::TestWithParam<Candidate>
{
};

TEST_P(Programs, AreNeverOpened)
{
    QTextBrowser desktop;
    QDesktopServices::setUrlHandler(QStringLiteral("file"), &desktop, "anchorClicked");
    bool isOpened = false;
    QObject::connect(&desktop, &QTextBrowser::anchorClicked, &desktop, [&] { isOpened = true; });
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    openObject(nullptr, package(QString::fromUtf8(GetParam().name), GetParam().data));
    EXPECT_FALSE(isOpened);
    EXPECT_EQ(answers.last().icon, QMessageBox::Information);
    EXPECT_TRUE(answers.last().text.contains(QString::fromUtf8(GetParam().name)));
    EXPECT_TRUE(answers.last().text.contains(QStringLiteral("save it")));
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
}

const Candidate programs[] = {
    {"setup.exe", "text"},
    {"SETUP.EXE", "text"},
    {"A.SCF", "text"},
    {"a.desktop", "text"},
    {"a.sh", "text"},
    {"a.com", "text"},
    {"a.bat", "text"},
    {"a.cmd", "text"},
    {"a.ps1", "text"},
    {"a.vbs", "text"},
    {"a.js", "text"},
    {"a.jar", zip},
    {"a.py", "text"},
    {"a.pl", "text"},
    {"a.rb", "text"},
    {"a.run", "text"},
    {"a.AppImage", "text"},
    {"a.msi", compound},
    {"a.scr", "text"},
    {"a.lnk", "text"},
    {"a.deb", "text"},
    {"a.rpm", "text"},
    {"a.bin", "text"},
    {"a.tar.sh", "text"},
    {"a.csh", "text"},
    {"a.url", "text"},
    {"elf.txt", "\177ELF\x02\x01\x01"},
    {"mz.pdf", "MZ\x90"},
    {"shebang.txt", "#!/bin/sh\nrm -rf /\n"},
    {"shebang", "#!/bin/sh\nrm -rf /\n"},
    {"starter.txt", "[Desktop Entry]\nExec=rm\n"},
    {"starter", "# A comment\n[Desktop Entry]\nExec=rm\n"},
    {"package.txt", "!<arch>\ndebian-binary   "},
};

std::string candidateName(const testing::TestParamInfo<Candidate> &info)
{
    std::string name = info.param.name;
    std::ranges::replace(name, '.', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(ObjectOpener, Programs, testing::ValuesIn(programs), candidateName);

class Documents : public testing::TestWithParam<Candidate>
{
};

TEST_P(Documents, AreAskedAbout)
{
    DialogAnswers answers;
    answers.press(QMessageBox::No);
    openObject(nullptr, package(QString::fromUtf8(GetParam().name), GetParam().data));
    EXPECT_EQ(answers.last().icon, QMessageBox::Question);
}

const Candidate documents[] = {
    {"a.pdf", "%PDF-1.4"},
    {"a.txt", "Make my text a programme, please."},
    {"README", "text"},
    {"a.docx", zip},
    {"a.doc", compound},
    {"a.xls", compound},
    {"a.odt", zip},
    {"a.zip", zip},
    {"a.html", "<!DOCTYPE html><html></html>"},
    {"a.json", "{}"},
    {"a.csv", "1,2"},
    {"a.svg", "<svg xmlns=\"http://www.w3.org/2000/svg\"/>"},
    {"a.mp3", "ID3"},
    {"a.png", "\x89PNG\r\n\x1a\n"},
    {"a.rtf", "{\\rtf1}"},
};

INSTANTIATE_TEST_SUITE_P(ObjectOpener, Documents, testing::ValuesIn(documents), candidateName);

TEST(ObjectOpener, DataOfAnUnknownClassCanOnlyBeSaved)
{
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    openObject(nullptr, objectOf("Some.Class.1", "data"));
    EXPECT_EQ(answers.last().icon, QMessageBox::Information);
}

// ---------------------------------------------------------------------------

class SavingObjects : public testing::Test
{
protected:
    /// In the test's folder, under this name.
    [[nodiscard]] DialogAnswers::Act save(const QString &name) const
    {
        return [this, name](QWidget &window) {
            dynamic_cast<QFileDialog &>(window).setDirectory(m_folder.path());
            auto &line = control<QLineEdit>(window, "fileNameEdit");
            line.selectAll();
            QTest::keyClicks(&line, name);
            line.completer()->popup()->hide(); // it would take the click
            QTest::mouseClick(window.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save), Qt::LeftButton);
        };
    }

    [[nodiscard]] QString path(const QString &name) const { return QDir(m_folder.path()).filePath(name); }

    QTemporaryDir m_folder;
    const QByteArray m_source = package(QStringLiteral("setup.exe"), "MZ contents");
};

TEST_F(SavingObjects, OffersItsNameAmongAllFiles)
{
    DialogAnswers answers;
    answers.act([](QWidget &window) {
        EXPECT_EQ(window.objectName(), QStringLiteral("CommonDialog1"));
        EXPECT_EQ(window.windowTitle(), QStringLiteral("Save Object"));
        EXPECT_EQ(control<QLineEdit>(window, "fileNameEdit").text(), QStringLiteral("setup.exe"));
        QTest::keyClick(&window, Qt::Key_Escape);
    });
    saveObject(nullptr, m_source);
    EXPECT_TRUE(answers.seen().empty());
}

TEST_F(SavingObjects, WritesTheFileThatNobodyCanRun)
{
    DialogAnswers answers;
    answers.act(save(QStringLiteral("my setup.exe")));
    saveObject(nullptr, m_source);
    EXPECT_EQ(contentsOf(path(QStringLiteral("my setup.exe"))), "MZ contents");
    EXPECT_FALSE(QFileInfo(path(QStringLiteral("my setup.exe"))).permissions() &
                 (QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther));
}

TEST_F(SavingObjects, ANameWithoutAnEndingGetsTheFiles)
{
    DialogAnswers answers;
    answers.act(save(QStringLiteral("mine"))).act(save(QStringLiteral("ours.txt")));
    saveObject(nullptr, m_source);
    saveObject(nullptr, m_source);
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files),
              QStringList({QStringLiteral("mine.exe"), QStringLiteral("ours.txt")}));
}

TEST_F(SavingObjects, AsksBeforeItReplacesAFileAndAfterNoForAnotherName)
{
    const QString old = path(QStringLiteral("old.exe"));
    {
        QFile file(old);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("old");
    }
    DialogAnswers answers;
    answers.act(save(QStringLiteral("old")))
        .key(Qt::Key_Return) // what is offered
        .act([](QWidget &window) {
            EXPECT_EQ(control<QLineEdit>(window, "fileNameEdit").text(), QStringLiteral("old.exe"));
            QTest::keyClick(&window, Qt::Key_Escape);
        });
    saveObject(nullptr, m_source);
    EXPECT_EQ(contentsOf(old), "old");
    EXPECT_TRUE(answers.last().text.contains(QStringLiteral("old.exe")));

    answers.act(save(QStringLiteral("old.exe"))).press(QMessageBox::Yes);
    saveObject(nullptr, m_source);
    EXPECT_EQ(contentsOf(old), "MZ contents");
}

TEST_F(SavingObjects, AFailureIsReported)
{
    DialogAnswers answers;
    answers
        .act([this](QWidget &window) {
            save(QStringLiteral("a.exe"))(window);
            QDir(m_folder.path()).removeRecursively();
        })
        .press(QMessageBox::Ok);
    saveObject(nullptr, m_source);
    EXPECT_EQ(answers.last().icon, QMessageBox::Critical);
    EXPECT_EQ(answers.last().title, QStringLiteral("Save Object"));
    EXPECT_TRUE(answers.last().text.contains(path(QStringLiteral("a.exe"))));
}

TEST_F(SavingObjects, AnObjectWithoutAFileSaysSo)
{
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    saveObject(nullptr, wmfPicture);
    EXPECT_EQ(answers.last().icon, QMessageBox::Information);
}

} // namespace
