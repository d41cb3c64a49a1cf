#include "app/ProgramFiles.h"
#include "forms/frmOpen/frmOpen.h"
#include "platform/ImageButton.h"
#include "tests/support/WindowTest.h"

#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QRadioButton>

#include <fstream>
#include <sqlite3.h>
#include <sys/stat.h>

namespace {

class frmOpenTest : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        chosen = module->subject;
        module->subject = {};
    }

    void TearDown() override
    {
        delete window;
        WindowTest::TearDown();
    }

    void open()
    {
        window = new frmOpen(*module, [this] {
            ++shown;
            (void)SubjectStore(subjectFile(module->subject)); // as any window does that shows it
        });
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }

    void storeRecent(int slot, const Subject &subject)
    {
        const QString section = QStringLiteral("Recent");
        module->settings.write(section, QStringLiteral("Name%1").arg(slot), subject.name);
        module->settings.write(section, QStringLiteral("Path%1").arg(slot), subject.path);
    }

    /// The next dialog is a file dialog: take this file.
    static DialogAnswers::Act take(const QString &path)
    {
        return [path](QWidget &dialog) {
            auto *files = qobject_cast<QFileDialog *>(&dialog);
            ASSERT_NE(files, nullptr) << "the dialog is no file dialog";
            auto *name = files->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
            ASSERT_NE(name, nullptr);
            name->setText(path);
            QTest::keyClick(name, Qt::Key_Return);
        };
    }

    QListWidget &list() { return control<QListWidget>(*window, "List1"); }
    QRadioButton &option(int index) { return control<QRadioButton>(*window, index == 0 ? "Option1(0)" : "Option1(1)"); }
    void ok() { click(*window, "Image1(2)"); }
    [[nodiscard]] bool isOpen() const { return !window.isNull() && window->isVisible(); }

    Subject chosen;
    int shown = 0;
    QPointer<frmOpen> window;
};

TEST_F(frmOpenTest, OnTheFirstRunItOffersTheTwoSamplesAndSelectsTheFirst)
{
    open();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Cramlet"));
    ASSERT_EQ(list().count(), 11);
    EXPECT_EQ(list().item(0)->text(), QStringLiteral("More Subjects..."));
    EXPECT_EQ(list().item(1)->text(), QStringLiteral("Using Cramlet"));
    EXPECT_EQ(list().item(2)->text(), QStringLiteral("States and Capitols"));
    for (int row = 3; row < 11; ++row) {
        EXPECT_EQ(list().item(row)->text(), QString()) << row;
    }
    EXPECT_TRUE(option(1).isChecked());
    EXPECT_EQ(list().currentRow(), 1);
    EXPECT_EQ(setting("Recent", "Path1"), provideSamples() + QStringLiteral("/States and Capitals.crl"));
}

TEST_F(frmOpenTest, EveryCommandHasItsHint)
{
    open();
    EXPECT_EQ(control<ImageButton>(*window, "Image1(0)").toolTip(), QStringLiteral("New Subject..."));
    EXPECT_EQ(control<ImageButton>(*window, "Image1(1)").toolTip(), QStringLiteral("Open Subject"));
    EXPECT_EQ(control<ImageButton>(*window, "Image1(2)").toolTip(), QStringLiteral("OK"));
    EXPECT_EQ(control<ImageButton>(*window, "Image1(3)").toolTip(), QStringLiteral("Cancel"));
    EXPECT_EQ(option(0).text(), QStringLiteral("&New Subject..."));
    EXPECT_EQ(option(1).text(), QStringLiteral("&Open Subject:"));
}

TEST_F(frmOpenTest, ThePicturesChooseTheOptionsBesideThem)
{
    open();
    click(*window, "Image1(0)");
    EXPECT_TRUE(option(0).isChecked());
    EXPECT_FALSE(list().isEnabled());
    EXPECT_TRUE(option(0).hasFocus());
    click(*window, "Image1(1)");
    EXPECT_TRUE(option(1).isChecked());
    EXPECT_TRUE(list().isEnabled());
    EXPECT_TRUE(option(1).hasFocus());
}

TEST_F(frmOpenTest, EnterOpensTheSelectedSubjectAndMovesItToTheTop)
{
    storeRecent(0, {QStringLiteral("/nowhere.crl"), QStringLiteral("Nowhere")});
    storeRecent(4, chosen);
    open();
    list().setCurrentRow(5);
    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_EQ(module->subject, chosen);
    EXPECT_EQ(shown, 1);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(setting("Recent", "Path0"), chosen.path);
    EXPECT_EQ(setting("Recent", "Name0"), QStringLiteral("World History"));
    EXPECT_EQ(setting("Recent", "Name1"), QStringLiteral("Nowhere"));
    EXPECT_EQ(setting("Recent", "Name5"), QString());
}

TEST_F(frmOpenTest, ADoubleClickOpensASubject)
{
    storeRecent(0, chosen);
    open();
    const QPoint at = list().visualItemRect(list().item(1)).center();
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(module->subject, chosen);
    EXPECT_FALSE(isOpen());
}

TEST_F(frmOpenTest, ASecondClickThatComesAfterItHasClosedShowsNoSecondWindow)
{
    storeRecent(0, chosen);
    open();
    ok();
    ASSERT_FALSE(isOpen());
    ok();
    QTest::keyClick(window, Qt::Key_Return);
    EXPECT_EQ(shown, 1);
}

TEST_F(frmOpenTest, EscapeAndCancelCloseItAndOpenNothing)
{
    for (const bool byKey : {true, false}) {
        open();
        if (byKey) {
            QTest::keyClick(&list(), Qt::Key_Escape);
        } else {
            click(*window, "Image1(3)");
        }
        EXPECT_FALSE(isOpen());
        EXPECT_EQ(shown, 0);
        EXPECT_TRUE(module->subject.path.isEmpty());
        settle();
    }
}

TEST_F(frmOpenTest, OtherKeysDoNothing)
{
    open();
    QTest::keyClick(window, Qt::Key_F5);
    QTest::keyClick(window, Qt::Key_X);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(shown, 0);
}

TEST_F(frmOpenTest, AMovedSubjectIsReportedAndOpensNothing)
{
    storeRecent(0, {QStringLiteral("/nowhere.crl"), QStringLiteral("Nowhere")});
    open();
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    ok();
    EXPECT_EQ(answers.last().text, QStringLiteral("Unable to locate subject. Open another subject or select 'More "
                                                  "Subjects' to locate this subject."));
    EXPECT_EQ(answers.last().title, QStringLiteral("Load Subject"));
    EXPECT_EQ(answers.last().icon, QMessageBox::Information);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(list().currentItem()->text(), QStringLiteral("Nowhere"));
    EXPECT_TRUE(module->subject.path.isEmpty());
    EXPECT_EQ(shown, 0);
}

TEST_F(frmOpenTest, AnEmptySlotIsReportedLikeAMovedSubject)
{
    open();
    list().setCurrentRow(7);
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    ok();
    EXPECT_EQ(answers.last().title, QStringLiteral("Load Subject"));
    EXPECT_TRUE(isOpen());
}

TEST_F(frmOpenTest, ACancelledDialogPutsAnEmptyEntryOnTopAndLeavesTheChooserOpen)
{
    storeRecent(0, chosen);
    open();
    list().setCurrentRow(0);
    DialogAnswers answers;
    answers.key(Qt::Key_Escape);
    ok();
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(shown, 0);
    window->close();
    EXPECT_EQ(setting("Recent", "Path0"), QString());
    EXPECT_EQ(setting("Recent", "Name0"), QString());
    EXPECT_EQ(setting("Recent", "Path1"), chosen.path);
}

TEST_F(frmOpenTest, AfterACancelledDialogTheListStillOpensWhatItSays)
{
    storeRecent(0, chosen);
    open();
    list().setCurrentRow(0);
    DialogAnswers answers;
    answers.key(Qt::Key_Escape);
    ok();
    ASSERT_EQ(list().item(1)->text(), chosen.name);
    list().setCurrentRow(1);
    ok();
    EXPECT_EQ(module->subject, chosen);
    EXPECT_EQ(setting("Recent", "Path0"), chosen.path);
}

TEST_F(frmOpenTest, ACancelledDialogOverAnOpenSubjectClosesTheChooserOnThatSubject)
{
    module->subject = chosen;
    open();
    list().setCurrentRow(0);
    DialogAnswers answers;
    answers.key(Qt::Key_Escape);
    ok();
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(module->subject, chosen);
}

TEST_F(frmOpenTest, MoreSubjectsOpensAnyFile)
{
    open();
    list().setCurrentRow(0);
    DialogAnswers answers;
    answers.act([this](QWidget &dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Open Subject"));
        EXPECT_EQ(dialog.objectName(), QStringLiteral("CommonDialog1"));
        EXPECT_EQ(qobject_cast<QFileDialog *>(&dialog)->nameFilters(), QStringList{QStringLiteral("Cramlet (*.crl)")});
        take(chosen.path)(dialog);
    });
    ok();
    EXPECT_EQ(module->subject, chosen);
    EXPECT_EQ(shown, 1);
    EXPECT_FALSE(isOpen());
}

TEST_F(frmOpenTest, ANewSubjectGetsItsEndingAndIsEmpty)
{
    const QString typed = QString::fromStdString(folder.file("Biology").string());
    open();
    click(*window, "Image1(0)");
    DialogAnswers answers;
    answers.act([&](QWidget &dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("New Subject"));
        take(typed)(dialog);
    });
    ok();
    EXPECT_EQ(module->subject, (Subject{typed + QStringLiteral(".crl"), QStringLiteral("Biology")}));
    SubjectStore store(subjectFile(module->subject));
    EXPECT_EQ(store.openRecordSet(allTopics()).recordCount(), 0);
    EXPECT_EQ(setting("Recent", "Name0"), QStringLiteral("Biology"));
}

TEST_F(frmOpenTest, ANewSubjectOverAnExistingOneAsksAndReplacesIt)
{
    open();
    click(*window, "Image1(0)");
    DialogAnswers answers;
    answers.act(take(chosen.path)).press(QMessageBox::Yes);
    ok();
    EXPECT_EQ(module->subject, chosen);
    SubjectStore store(file);
    EXPECT_EQ(store.openRecordSet(allTopics()).recordCount(), 0);
}

/// Reads the whole file and its time, to see later that nobody touched it.
std::pair<std::string, timespec> stateOf(const std::filesystem::path &path)
{
    std::ifstream stream(path, std::ios::binary);
    struct stat status = {};
    stat(path.c_str(), &status);
    return {std::string(std::istreambuf_iterator<char>(stream), {}), status.st_mtim};
}

bool operator==(const timespec &one, const timespec &other)
{
    return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

TEST_F(frmOpenTest, AFileThatIsNoSubjectIsReportedByNameAndLeftUntouched)
{
    struct Bad
    {
        const char *name;
        std::string bytes;
    };
    std::string noise(5000, '\0');
    unsigned value = 12345;
    for (char &byte : noise) {
        value = value * 1103515245 + 12345;
        byte = static_cast<char>(value >> 16);
    }
    const std::string whole = stateOf(file).first;
    const std::filesystem::path foreign = folder.file("foreign");
    sqlite3 *db = nullptr;
    ASSERT_EQ(sqlite3_open(foreign.c_str(), &db), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db, "CREATE TABLE mail(id INTEGER)", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(db);

    for (const Bad &bad : {Bad{"random.crl", noise}, Bad{"empty.crl", ""}, Bad{"foreign.crl", stateOf(foreign).first},
                           Bad{"half.crl", whole.substr(0, whole.size() / 2)}}) {
        const std::filesystem::path path = folder.file(bad.name);
        std::ofstream(path, std::ios::binary) << bad.bytes;
        const auto before = stateOf(path);
        const auto listed = std::distance(std::filesystem::directory_iterator(path.parent_path()), {});
        open();
        list().setCurrentRow(0);
        DialogAnswers answers;
        answers.act(take(QString::fromStdString(path.string()))).press(QMessageBox::Ok);
        ok();
        EXPECT_EQ(answers.last().icon, QMessageBox::Critical) << bad.name;
        EXPECT_TRUE(answers.last().text.contains(QString::fromLatin1(bad.name))) << answers.last().text.toStdString();
        EXPECT_TRUE(isOpen()) << bad.name;
        EXPECT_TRUE(module->subject.path.isEmpty()) << "a file that cannot be opened is no current subject";
        const auto after = stateOf(path);
        EXPECT_EQ(after.first, before.first) << bad.name;
        EXPECT_TRUE(after.second == before.second) << bad.name;
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(path.parent_path()), {}), listed)
            << "a file appeared beside " << bad.name;

        // The chooser stays usable: the next choice opens a good subject.
        answers.act(take(chosen.path));
        ok();
        EXPECT_EQ(module->subject, chosen) << bad.name;
        EXPECT_FALSE(isOpen());
        settle();
        module->subject = {};
    }
}

TEST_F(frmOpenTest, AFolderAmongTheRecentSubjectsIsReportedByName)
{
    const std::filesystem::path subfolder = folder.file("folder.crl");
    std::filesystem::create_directory(subfolder);
    storeRecent(0, {QString::fromStdString(subfolder.string()), QStringLiteral("folder")});
    open();
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    ok();
    EXPECT_EQ(answers.last().icon, QMessageBox::Critical);
    EXPECT_TRUE(answers.last().text.contains(QStringLiteral("folder.crl")));
    EXPECT_TRUE(std::filesystem::is_directory(subfolder));
    EXPECT_TRUE(isOpen());
}

TEST_F(frmOpenTest, AFailedOpeningKeepsTheSubjectThatWasOpen)
{
    const Subject bad{QString::fromStdString(folder.file("bad.crl").string()), QStringLiteral("bad")};
    std::ofstream(subjectFile(bad)) << "no subject";
    module->subject = chosen;
    storeRecent(0, bad);
    open();
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    ok();
    EXPECT_EQ(module->subject, chosen);
    EXPECT_TRUE(isOpen());
}

TEST_F(frmOpenTest, AColourThatIsNoNumberIsReportedAndTheChooserOpensAllTheSame)
{
    module->settings.write(QStringLiteral("Settings"), QStringLiteral("Color"), QStringLiteral("pink"));
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    open();
    EXPECT_TRUE(answers.last().text.contains(QStringLiteral("pink")));
    EXPECT_TRUE(isOpen());
}

TEST_F(frmOpenTest, SettingsThatCannotBeWrittenAreReportedAndTheChooserIsUsableAllTheSame)
{
    blockSettings();
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    open();
    EXPECT_EQ(answers.last().icon, QMessageBox::Critical);
    EXPECT_TRUE(answers.last().text.contains(QStringLiteral("Cramlet.conf")));
    list().setCurrentRow(0);
    answers.act(take(chosen.path)).press(QMessageBox::Ok); // the table cannot be written at closing either
    ok();
    EXPECT_EQ(module->subject, chosen);
    EXPECT_FALSE(isOpen());
}

TEST_F(frmOpenTest, EnterDirectlyAfterAnOptionsKeyActsOnThatOption)
{
    open();
    QString asked;
    DialogAnswers answers;
    answers.act([&](QWidget &dialog) {
        asked = dialog.windowTitle();
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    QTest::keyClick(window, Qt::Key_N, Qt::AltModifier);
    QTest::keyClick(window, Qt::Key_Return);
    EXPECT_EQ(asked, QStringLiteral("New Subject"));
    window->close();
}

TEST_F(frmOpenTest, ItCanBeUsedByTheKeyboardAlone)
{
    storeRecent(0, chosen);
    open();
    EXPECT_TRUE(list().hasFocus());
    QTest::keyClick(&list(), Qt::Key_Up);
    EXPECT_EQ(list().currentRow(), 0);
    QTest::keyClick(&list(), Qt::Key_Down);
    QTest::keyClick(&list(), Qt::Key_N, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return option(0).isChecked(); }));
    QTest::keyClick(window->focusWidget(), Qt::Key_O, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return option(1).isChecked(); }));
    QTest::keyClick(window->focusWidget(), Qt::Key_Enter);
    EXPECT_EQ(module->subject, chosen);
}

} // namespace
