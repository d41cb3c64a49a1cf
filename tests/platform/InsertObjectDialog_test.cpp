#include "platform/FileObject.h"
#include "platform/InsertObjectDialog.h"
#include "platform/rtf/RtfObject.h"
#include "tests/support/FilesInFolder.h"
#include "tests/support/Pictures.h"
#include "tests/support/Windows.h"

#include <QClipboard>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QRadioButton>
#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QUrl>

#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace {

constexpr QSize limit(1000, 800);
constexpr int clipboardRow = 1;

using Deed = std::function<void(QDialog &)>;

RtfObject read(const std::optional<QByteArray> &source)
{
    EXPECT_TRUE(source.has_value());
    const QByteArray bytes = source.value_or(QByteArray());
    return readRtfObject({bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

QLineEdit &pathBox(const QDialog &dialog)
{
    return control<QLineEdit>(dialog, "txtFile");
}

QListWidget &types(const QDialog &dialog)
{
    return control<QListWidget>(dialog, "lstTypes");
}

QString result(const QDialog &dialog)
{
    return control<QLabel>(dialog, "lblResult").text();
}

bool canInsert(const QDialog &dialog)
{
    return control<QPushButton>(dialog, "cmdOK").isEnabled();
}

/// A key goes where the keyboard's focus is.
void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

void type(const QString &text)
{
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    QTest::keyClicks(QApplication::focusWidget(), text);
}

void typePath(QDialog &dialog, const QString &path)
{
    pathBox(dialog).setFocus();
    key(Qt::Key_A, Qt::ControlModifier);
    type(path);
}

QString focused()
{
    return QApplication::focusWidget() != nullptr ? QApplication::focusWidget()->objectName() : QString();
}

/// Does \p deed with the file dialog that \p opener opens.
void browse(const std::function<void()> &opener, const std::function<void(QFileDialog &)> &deed)
{
    bool isOpened = false;
    QTimer watch;
    watch.setInterval(5);
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        if (auto *files = qobject_cast<QFileDialog *>(QApplication::activeModalWidget()); files && !isOpened) {
            isOpened = true;
            deed(*files);
            EXPECT_FALSE(files->isVisible());
            files->close();
        }
    });
    watch.start();
    opener();
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return isOpened && !qobject_cast<QFileDialog *>(QApplication::activeModalWidget()); }));
}

void choose(QFileDialog &files, const QString &name)
{
    auto *box = files.findChild<QLineEdit *>();
    ASSERT_NE(box, nullptr);
    box->setFocus();
    box->clear();
    QTest::keyClicks(box, name);
    QTest::keyClick(box, Qt::Key_Return);
}

class InsertObject : public FilesInFolder
{
protected:
    InsertObject() { QGuiApplication::clipboard()->clear(); }
    ~InsertObject() override { QGuiApplication::clipboard()->clear(); }
    InsertObject(const InsertObject &) = delete;
    InsertObject &operator=(const InsertObject &) = delete;

    /// Runs the dialog and does \p deed with it, which must close it.
    static std::optional<QByteArray> run(const Deed &deed)
    {
        bool isDone = false;
        QTimer::singleShot(0, qApp, [&] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
            deed(*dialog);
            isDone = true;
            if (dialog->isVisible()) {
                ADD_FAILURE() << "still open: " << result(*dialog).toStdString();
                dialog->reject();
            }
        });
        std::optional<QByteArray> source = askObject(nullptr, limit);
        EXPECT_TRUE(isDone);
        settle();
        return source;
    }
};

// As it opens.

TEST_F(InsertObject, OpensWithAPictureFromAFileToBeChosen)
{
    run([](QDialog &dialog) {
        EXPECT_EQ(dialog.objectName(), QStringLiteral("OLE1"));
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Insert Object"));
        EXPECT_TRUE(dialog.isModal());
        EXPECT_TRUE(control<QRadioButton>(dialog, "optCreateNew").isChecked());
        EXPECT_EQ(types(dialog).currentItem()->text(), QStringLiteral("Picture from File..."));
        EXPECT_EQ(focused(), QStringLiteral("lstTypes"));
        EXPECT_EQ(result(dialog), QStringLiteral("Type the path of a picture, or press \"Browse...\" to choose one."));
        EXPECT_FALSE(canInsert(dialog));
        key(Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        click(dialog, "cmdCancel");
    });
}

TEST_F(InsertObject, NoLetterIsOfferedTwiceWithAlt)
{
    run([](QDialog &dialog) {
        QStringList texts;
        for (const auto *button : dialog.findChildren<QAbstractButton *>()) {
            texts << button->text();
        }
        for (const auto *label : dialog.findChildren<QLabel *>()) {
            texts << (label->buddy() != nullptr ? label->text() : QString());
        }
        QSet<QString> letters;
        for (const QString &text : texts) {
            if (const qsizetype mark = text.indexOf(QLatin1Char('&')); mark >= 0) {
                const QString letter = text.mid(mark + 1, 1).toUpper();
                EXPECT_FALSE(letters.contains(letter)) << text.toStdString();
                letters << letter;
            }
        }
        EXPECT_EQ(letters.size(), 5);
        dialog.close();
    });
}

TEST_F(InsertObject, TabGoesThroughTheDialogFromTopToBottom)
{
    run([this](QDialog &dialog) {
        typePath(dialog, make(QStringLiteral("a.png"), pngFile({20, 10})));
        QStringList order;
        for (int i = 0; i < 6; ++i) {
            order << focused();
            key(Qt::Key_Tab);
        }
        const QStringList expected{QStringLiteral("txtFile"),      QStringLiteral("cmdBrowse"),
                                   QStringLiteral("cmdOK"),        QStringLiteral("cmdCancel"),
                                   QStringLiteral("optCreateNew"), QStringLiteral("lstTypes")};
        EXPECT_EQ(order, expected);
        EXPECT_EQ(focused(), QStringLiteral("txtFile"));
        dialog.close();
    });
}

TEST_F(InsertObject, NothingMovesWhenTheKindOrTheResultChanges)
{
    run([this](QDialog &dialog) {
        const QSize size = dialog.size();
        const QPoint box = pathBox(dialog).mapTo(&dialog, QPoint());
        const auto isAsBefore = [&] {
            QCoreApplication::sendPostedEvents();
            return dialog.size() == size && pathBox(dialog).mapTo(&dialog, QPoint()) == box &&
                   dialog.minimumSizeHint().width() <= size.width();
        };
        click(dialog, "optCreateFromFile");
        EXPECT_TRUE(isAsBefore());
        pathBox(dialog).setText(path(QString(120, QLatin1Char('m')))); // refused
        EXPECT_TRUE(isAsBefore());
        pathBox(dialog).setText(make(QString(120, QLatin1Char('n')), "text"));
        EXPECT_TRUE(canInsert(dialog));
        EXPECT_TRUE(isAsBefore());
        QGuiApplication::clipboard()->setImage(redPicture());
        EXPECT_TRUE(isAsBefore());
        EXPECT_FALSE(control<QListWidget>(dialog, "lstTypes").isVisible());
        click(dialog, "optCreateNew");
        EXPECT_TRUE(isAsBefore());
        dialog.close();
    });
}

// Ways to insert.

TEST_F(InsertObject, AFileIsInsertedByMouse)
{
    const QString notes = make(QStringLiteral("notes.txt"), "some words");
    const RtfObject object = read(run([&](QDialog &dialog) {
        click(dialog, "optCreateFromFile");
        EXPECT_EQ(result(dialog), QStringLiteral("Type the path of a file, or press \"Browse...\" to choose one."));
        EXPECT_FALSE(canInsert(dialog));
        QTest::mouseClick(&pathBox(dialog), Qt::LeftButton);
        type(notes);
        EXPECT_EQ(result(dialog), QStringLiteral("File \"notes.txt\", 10 bytes"));
        click(dialog, "cmdOK");
    }));
    EXPECT_FALSE(object.isPicture);
    EXPECT_EQ(object.name, QStringLiteral("notes.txt"));
    EXPECT_EQ(object.native, "some words");
}

TEST_F(InsertObject, AFileIsInsertedByKeysAlone)
{
    const QString notes = make(QStringLiteral("notes.txt"), "some words");
    const RtfObject object = read(run([&](QDialog &) {
        key(Qt::Key_F, Qt::AltModifier);
        type(notes); // at once, while the button still shows that it is pressed
        key(Qt::Key_Return);
    }));
    EXPECT_EQ(object.name, QStringLiteral("notes.txt"));
}

TEST_F(InsertObject, APictureFromAFileIsInsertedByKeysAlone)
{
    const QByteArray bytes = pngFile({20, 10});
    const QString picture = make(QStringLiteral("red.png"), bytes);
    const RtfObject object = read(run([&](QDialog &dialog) {
        key(Qt::Key_F, Qt::AltModifier);
        key(Qt::Key_N, Qt::AltModifier);
        EXPECT_EQ(focused(), QStringLiteral("lstTypes"));
        key(Qt::Key_L, Qt::AltModifier);
        EXPECT_EQ(focused(), QStringLiteral("txtFile"));
        type(picture);
        EXPECT_EQ(result(dialog), QStringLiteral("Picture, 20 x 10 pixels, %1").arg(humanSize(bytes.size())));
        key(Qt::Key_Return);
    }));
    EXPECT_TRUE(object.isPicture);
    EXPECT_EQ(object.image, bytes);
}

TEST_F(InsertObject, APictureAmongFilesIsAPictureToo)
{
    const QString picture = make(QStringLiteral("red.png"), pngFile({3000, 1000}));
    const RtfObject object = read(run([&](QDialog &dialog) {
        key(Qt::Key_F, Qt::AltModifier);
        type(picture);
        EXPECT_TRUE(result(dialog).startsWith(QStringLiteral("Picture, 3000 x 1000 pixels, "))) << "its own size";
        key(Qt::Key_Return);
    }));
    EXPECT_TRUE(object.isPicture);
    EXPECT_EQ(object.size, QSize(1000, 333) * 15) << "within the limit";
}

TEST_F(InsertObject, ThePictureOfTheClipboardIsInsertedByKeysAlone)
{
    QGuiApplication::clipboard()->setImage(redPicture());
    const RtfObject object = read(run([](QDialog &dialog) {
        key(Qt::Key_Down);
        EXPECT_EQ(result(dialog), QStringLiteral("Picture, 20 x 10 pixels"));
        EXPECT_FALSE(pathBox(dialog).isEnabled());
        EXPECT_FALSE(control<QPushButton>(dialog, "cmdBrowse").isEnabled());
        key(Qt::Key_Return);
    }));
    EXPECT_TRUE(object.isPicture);
    EXPECT_EQ(object.size, QSize(20, 10) * 15);
    EXPECT_EQ(QImage::fromData(object.image).pixelColor(5, 5), QColor(Qt::red));
}

TEST_F(InsertObject, ThePictureOfTheClipboardIsInsertedByADoubleClick)
{
    QGuiApplication::clipboard()->setImage(redPicture({3000, 1000}));
    const RtfObject object = read(run([](QDialog &dialog) {
        QListWidget &list = types(dialog);
        const QPoint place = list.visualItemRect(list.item(clipboardRow)).center();
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
        EXPECT_EQ(result(dialog), QStringLiteral("Picture, 3000 x 1000 pixels"));
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
    }));
    EXPECT_EQ(object.size, QSize(1000, 333) * 15);
}

TEST_F(InsertObject, TheArrowKeysChangeTheKindAndStayOnTheButtons)
{
    run([](QDialog &dialog) {
        control<QRadioButton>(dialog, "optCreateNew").setFocus();
        key(Qt::Key_Down);
        EXPECT_EQ(focused(), QStringLiteral("optCreateFromFile"));
        EXPECT_TRUE(control<QRadioButton>(dialog, "optCreateFromFile").isChecked());
        key(Qt::Key_Up);
        EXPECT_EQ(focused(), QStringLiteral("optCreateNew"));
        EXPECT_TRUE(control<QRadioButton>(dialog, "optCreateNew").isChecked());
        dialog.close();
    });
}

TEST_F(InsertObject, ThePathMayBeWrittenInSeveralWays)
{
    const QString notes = make(QStringLiteral("my notes.txt"), "words");
    const QString blank = make(QStringLiteral(" blank "), "words");
    const QString found = QStringLiteral("File \"my notes.txt\", 5 bytes");
    const QByteArray homeBefore = qgetenv("HOME");
    qputenv("HOME", m_folder.path().toLocal8Bit());
    run([&](QDialog &dialog) {
        click(dialog, "optCreateFromFile");
        for (const QString &typed :
             {notes, QStringLiteral("  %1 ").arg(notes), QUrl::fromLocalFile(notes).toString(QUrl::FullyEncoded),
              QStringLiteral("~/my notes.txt"), QStringLiteral("my notes.txt"), notes + QLatin1Char('/')}) {
            typePath(dialog, typed);
            EXPECT_EQ(result(dialog), found) << typed.toStdString();
        }
        typePath(dialog, blank);
        EXPECT_EQ(result(dialog), QStringLiteral("File \" blank \", 5 bytes"));
        typePath(dialog, QStringLiteral("   "));
        EXPECT_FALSE(canInsert(dialog));
        typePath(dialog, QStringLiteral("my notes.txt"));
        key(Qt::Key_Return);
    });
    qputenv("HOME", homeBefore);
}

// Browsing.

TEST_F(InsertObject, BrowsingPutsThePathIntoTheBoxAndEnterInsertsIt)
{
    make(QStringLiteral("notes.txt"), "words");
    const RtfObject object = read(run([this](QDialog &dialog) {
        click(dialog, "optCreateFromFile");
        type(m_folder.path());
        browse([] { key(Qt::Key_B, Qt::AltModifier); },
               [this](QFileDialog &files) {
                   EXPECT_EQ(files.objectName(), QStringLiteral("CommonDialog1"));
                   EXPECT_EQ(files.fileMode(), QFileDialog::ExistingFile);
                   EXPECT_EQ(files.nameFilters(), QStringList{QStringLiteral("All files (*)")});
                   EXPECT_EQ(files.directory().absolutePath(), m_folder.path());
                   choose(files, QStringLiteral("notes.txt"));
               });
        EXPECT_EQ(pathBox(dialog).text(), path(QStringLiteral("notes.txt")));
        EXPECT_EQ(result(dialog), QStringLiteral("File \"notes.txt\", 5 bytes"));
        key(Qt::Key_Return);
    }));
    EXPECT_EQ(object.native, "words");
}

TEST_F(InsertObject, ADoubleClickOnPictureFromFileBrowsesForPictures)
{
    make(QStringLiteral("red.png"), pngFile({20, 10}));
    run([this](QDialog &dialog) {
        typePath(dialog, path(QStringLiteral("none.png")));
        QListWidget &list = types(dialog);
        const QPoint place = list.visualItemRect(list.item(0)).center();
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
        browse([&] { QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place); },
               [this](QFileDialog &files) {
                   const QString filter = files.nameFilters().constFirst();
                   EXPECT_TRUE(filter.startsWith(QStringLiteral("Pictures ("))) << filter.toStdString();
                   EXPECT_TRUE(filter.contains(QStringLiteral("*.png ")));
                   EXPECT_TRUE(filter.contains(QStringLiteral("*.JPG ")));
                   EXPECT_FALSE(filter.contains(QStringLiteral("svg"))) << "which is not shown as a picture";
                   EXPECT_EQ(files.directory().absolutePath(), m_folder.path()) << "beside what is shown";
                   choose(files, QStringLiteral("red.png"));
               });
        EXPECT_TRUE(result(dialog).startsWith(QStringLiteral("Picture, 20 x 10 pixels")));
        click(dialog, "cmdOK");
    });
}

TEST_F(InsertObject, CancelledBrowsingChangesNothing)
{
    const QString notes = make(QStringLiteral("notes.txt"), "words");
    run([&](QDialog &dialog) {
        click(dialog, "optCreateFromFile");
        type(notes);
        browse([&] { click(dialog, "cmdBrowse"); },
               [&](QFileDialog &files) {
                   EXPECT_EQ(files.selectedFiles(), QStringList{notes});
                   QTest::keyClick(&files, Qt::Key_Escape);
               });
        EXPECT_EQ(pathBox(dialog).text(), notes);
        EXPECT_TRUE(canInsert(dialog));
        dialog.close();
    });
}

// Refusals.

TEST_F(InsertObject, WhatCannotBeInsertedIsRefusedWithTheReason)
{
    make(QStringLiteral("empty.txt"), {});
    makeLarge(QStringLiteral("large.bin"), maxInsertedFile * 2);
    ASSERT_EQ(::mkfifo(qPrintable(path(QStringLiteral("pipe"))), 0600), 0);
    const struct
    {
        const char *name;
        const char *words;
    } rows[] = {
        {"none.txt", "\"none.txt\" was not found in"},
        {"", "is a folder"},
        {"pipe", "\"pipe\" is a device or a pipe"},
        {"empty.txt", "\"empty.txt\" is empty"},
        {"large.bin", "\"large.bin\" is too large: it has 32 MiB, and at most 16 MiB can"},
    };
    const std::optional<QByteArray> source = run([&](QDialog &dialog) {
        for (const char *kind : {"optCreateFromFile", "optCreateNew"}) {
            click(dialog, kind);
            for (const auto &row : rows) {
                typePath(dialog, path(QString::fromLatin1(row.name)));
                EXPECT_TRUE(result(dialog).contains(QLatin1String(row.words))) << result(dialog).toStdString();
                EXPECT_TRUE(control<QLabel>(dialog, "imgResult").isVisible()) << "with a sign";
                EXPECT_FALSE(canInsert(dialog));
                key(Qt::Key_Return);
                click(dialog, "cmdOK");
                EXPECT_TRUE(dialog.isVisible());
            }
        }
        click(dialog, "cmdCancel");
    });
    EXPECT_EQ(source, std::nullopt);
}

TEST_F(InsertObject, AFileThatIsNoPictureIsRefusedOnlyWhereAPictureIsAskedFor)
{
    make(QStringLiteral("notes.txt"), "words");
    run([this](QDialog &dialog) {
        typePath(dialog, path(QStringLiteral("notes.txt")));
        EXPECT_EQ(result(dialog),
                  QStringLiteral("\"notes.txt\" cannot be shown as a picture. \"Create from File\" can insert it."));
        EXPECT_FALSE(canInsert(dialog));
        click(dialog, "optCreateFromFile");
        EXPECT_EQ(result(dialog), QStringLiteral("File \"notes.txt\", 5 bytes"));
        EXPECT_FALSE(control<QLabel>(dialog, "imgResult").isVisible());
        EXPECT_TRUE(canInsert(dialog));
        click(dialog, "optCreateNew");
        EXPECT_FALSE(canInsert(dialog));
        dialog.close();
    });
}

TEST_F(InsertObject, AFileThatChangedMeanwhileIsRefusedInTheDialog)
{
    const std::optional<QByteArray> source = run([this](QDialog &dialog) {
        click(dialog, "optCreateFromFile");
        for (const bool isLarge : {false, true}) {
            typePath(dialog, make(QStringLiteral("notes.txt"), "words"));
            EXPECT_TRUE(canInsert(dialog));
            if (isLarge) {
                makeLarge(QStringLiteral("notes.txt"), maxInsertedFile * 2);
            } else {
                QFile::remove(path(QStringLiteral("notes.txt")));
            }
            key(Qt::Key_Return);
            EXPECT_TRUE(dialog.isVisible());
            EXPECT_TRUE(result(dialog).contains(isLarge ? QStringLiteral("32 MiB") : QStringLiteral("was not found")));
            EXPECT_FALSE(canInsert(dialog));
        }
        dialog.close();
    });
    EXPECT_EQ(source, std::nullopt);
}

TEST_F(InsertObject, ADamagedPictureIsRefusedWhereAPictureIsAskedFor)
{
    run([this](QDialog &dialog) {
        typePath(dialog, make(QStringLiteral("a.png"), pngFile({200, 100}).chopped(30)));
        EXPECT_TRUE(canInsert(dialog)) << "its head is whole";
        click(dialog, "cmdOK");
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_TRUE(result(dialog).startsWith(QStringLiteral("\"a.png\" cannot be shown as a picture")));
        EXPECT_FALSE(canInsert(dialog));
        dialog.close();
    });
}

TEST_F(InsertObject, ADamagedPictureAmongFilesIsInsertedAsAFileOnlyAfterSayingSo)
{
    const QByteArray damaged = pngFile({200, 100}).chopped(30);
    const RtfObject object = read(run([&](QDialog &dialog) {
        click(dialog, "optCreateFromFile");
        typePath(dialog, make(QStringLiteral("a.png"), damaged));
        EXPECT_TRUE(result(dialog).startsWith(QStringLiteral("Picture, 200 x 100 pixels")));
        key(Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_TRUE(result(dialog).startsWith(QStringLiteral("File \"a.png\", "))) << result(dialog).toStdString();
        EXPECT_TRUE(result(dialog).contains(QStringLiteral("not what it looked like")));
        EXPECT_TRUE(canInsert(dialog));
        key(Qt::Key_Return);
    }));
    EXPECT_FALSE(object.isPicture);
    EXPECT_EQ(object.native, damaged);
}

TEST_F(InsertObject, ComingBackToTheDialogLooksAtTheFileAgain)
{
    run([this](QDialog &dialog) {
        typePath(dialog, path(QStringLiteral("late.png")));
        EXPECT_FALSE(canInsert(dialog));
        QWidget other(&dialog, Qt::Window);
        other.show();
        other.activateWindow();
        EXPECT_TRUE(QTest::qWaitFor([&] { return other.isActiveWindow(); }));
        make(QStringLiteral("late.png"), pngFile({20, 10}));
        dialog.activateWindow();
        EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.isActiveWindow(); }));
        EXPECT_TRUE(canInsert(dialog)) << result(dialog).toStdString();
        click(dialog, "cmdOK");
    });
}

// The clipboard.

TEST_F(InsertObject, WithoutAPictureOnTheClipboardItsEntrySaysSoAndCannotBeChosen)
{
    QGuiApplication::clipboard()->setText(QStringLiteral("words"));
    run([](QDialog &dialog) {
        QListWidget &list = types(dialog);
        const QListWidgetItem *entry = list.item(clipboardRow);
        EXPECT_EQ(entry->text(), QStringLiteral("Picture from Clipboard (the clipboard holds no picture)"));
        EXPECT_LE(list.sizeHintForColumn(0), list.viewport()->width()) << "the reason can be read";
        key(Qt::Key_Down);
        EXPECT_EQ(list.currentRow(), 0);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(entry).center());
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(entry).center());
        EXPECT_EQ(list.currentRow(), 0);
        EXPECT_TRUE(dialog.isVisible());
        dialog.close();
    });
}

TEST_F(InsertObject, TheEntryFollowsTheClipboard)
{
    const std::optional<QByteArray> source = run([](QDialog &dialog) {
        QListWidget &list = types(dialog);
        QGuiApplication::clipboard()->setImage(redPicture());
        EXPECT_EQ(list.item(clipboardRow)->text(), QStringLiteral("Picture from Clipboard"));
        key(Qt::Key_Down);
        EXPECT_TRUE(canInsert(dialog));
        QGuiApplication::clipboard()->setImage(redPicture({30, 30}));
        EXPECT_EQ(result(dialog), QStringLiteral("Picture, 30 x 30 pixels"));
        QGuiApplication::clipboard()->setText(QStringLiteral("words"));
        EXPECT_EQ(result(dialog), QStringLiteral("The clipboard holds no picture. Copy one first."));
        EXPECT_FALSE(canInsert(dialog));
        key(Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        key(Qt::Key_Escape);
    });
    EXPECT_EQ(source, std::nullopt);
}

TEST_F(InsertObject, APictureOnTheClipboardThatCannotBeReadIsRefused)
{
    auto *contents = new QMimeData;
    contents->setImageData(QImage());
    QGuiApplication::clipboard()->setMimeData(contents);
    run([](QDialog &dialog) {
        key(Qt::Key_Down);
        EXPECT_EQ(result(dialog), QStringLiteral("The picture on the clipboard cannot be read."));
        EXPECT_FALSE(canInsert(dialog));
        dialog.close();
    });
}

TEST_F(InsertObject, TheClipboardDoesNotDisturbAFile)
{
    run([this](QDialog &dialog) {
        click(dialog, "optCreateFromFile");
        typePath(dialog, make(QStringLiteral("notes.txt"), "words"));
        QGuiApplication::clipboard()->setImage(redPicture());
        EXPECT_EQ(result(dialog), QStringLiteral("File \"notes.txt\", 5 bytes"));
        dialog.close();
    });
}

// Leaving it.

TEST_F(InsertObject, CancellingInsertsNothing)
{
    const QString picture = make(QStringLiteral("red.png"), pngFile({20, 10}));
    const Deed ways[] = {
        [](QDialog &dialog) { click(dialog, "cmdCancel"); },
        [](QDialog &) { key(Qt::Key_Escape); },
        [](QDialog &dialog) { dialog.close(); },
        [](QDialog &dialog) {
            types(dialog).setFocus();
            key(Qt::Key_Escape);
        },
        [](QDialog &dialog) {
            control<QPushButton>(dialog, "cmdCancel").setFocus();
            key(Qt::Key_Return);
        },
    };
    for (const Deed &leave : ways) {
        const std::optional<QByteArray> source = run([&](QDialog &dialog) {
            typePath(dialog, picture);
            EXPECT_TRUE(canInsert(dialog));
            leave(dialog);
        });
        EXPECT_EQ(source, std::nullopt);
    }
}

} // namespace
