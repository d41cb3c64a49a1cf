#include "platform/CommonDialogs.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QColorDialog>
#include <QCompleter>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>
#include <gtest/gtest.h>

namespace {

/// Does things to the modal windows that the code under test opens, one after
/// the other. A window that nobody expects is closed, and the test fails.
class Learner
{
public:
    using Deed = std::function<void(QWidget &)>;

    explicit Learner(QVector<Deed> deeds)
        : m_deeds(std::move(deeds))
    {
        lookSoon();
    }
    ~Learner() { EXPECT_EQ(m_done, m_deeds.size()) << "windows that never opened"; }
    Learner(const Learner &) = delete;
    Learner &operator=(const Learner &) = delete;

private:
    // A window can open inside a deed: then this is called inside that deed, which one timer would not do.
    void lookSoon()
    {
        QTimer::singleShot(0, &m_life, [this] { look(); });
    }

    void look()
    {
        lookSoon();
        QWidget *window = QApplication::activeModalWidget();
        if (window == nullptr || !window->isVisible()) {
            m_seen = nullptr;
        }
        if (window == m_seen) {
            return;
        }
        m_seen = window;
        if (m_done < m_deeds.size()) {
            m_deeds[m_done++](*window);
            if (!window->isVisible()) {
                m_seen = nullptr; // the next one may have the same address
            }
        } else {
            ADD_FAILURE() << "unexpected window";
            window->close();
        }
    }

    QVector<Deed> m_deeds;
    qsizetype m_done = 0;
    QWidget *m_seen = nullptr;
    QObject m_life;
};

Learner::Deed press(QMessageBox::StandardButton button)
{
    return [button](QWidget &window) {
        QTest::mouseClick(dynamic_cast<QMessageBox &>(window).button(button), Qt::LeftButton);
    };
}

void pressEscape(QWidget &window)
{
    QTest::keyClick(&window, Qt::Key_Escape);
}

void closeIt(QWidget &window)
{
    window.close();
}

const QString title = QStringLiteral("Delete Topic");

TEST(MessageBoxes, ShowTheirTextAsItStandsWithIconTitleAndOkOnly)
{
    const QString text = QStringLiteral("There are <b>no</b> topics &amp; no 'cards'.\nSecond line.");
    const Learner learner({[&](QWidget &window) {
        auto &box = dynamic_cast<QMessageBox &>(window);
        EXPECT_EQ(box.objectName(), QStringLiteral("MessageBox1"));
        EXPECT_EQ(box.windowTitle(), title);
        EXPECT_EQ(box.text(), text);
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.icon(), QMessageBox::Information);
        EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
        EXPECT_TRUE(box.isModal());
        QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
    }});
    showInformation(nullptr, text, title);
}

TEST(MessageBoxes, AFailureShowsItsDetailsWithTheText)
{
    const Learner learner({[](QWidget &window) {
                               auto &box = dynamic_cast<QMessageBox &>(window);
                               EXPECT_EQ(box.icon(), QMessageBox::Critical);
                               EXPECT_TRUE(box.text().startsWith(QStringLiteral("It failed.")));
                               EXPECT_TRUE(box.text().endsWith(QStringLiteral("<14> unable to open")));
                               EXPECT_EQ(box.textFormat(), Qt::PlainText);
                               pressEscape(window);
                           },
                           [](QWidget &window) {
                               EXPECT_EQ(dynamic_cast<QMessageBox &>(window).text(), QStringLiteral("It failed."));
                               closeIt(window);
                           }});
    showFailure(nullptr, QStringLiteral("It failed."), QStringLiteral("<14> unable to open"), title);
    showFailure(nullptr, QStringLiteral("It failed."), {}, title);
}

TEST(MessageBoxes, YesNoAnswers)
{
    const Learner learner({press(QMessageBox::Yes), press(QMessageBox::No), pressEscape, closeIt});
    EXPECT_EQ(askYesNo(nullptr, QStringLiteral("Sure?"), title), Answer::Yes);
    EXPECT_EQ(askYesNo(nullptr, QStringLiteral("Sure?"), title), Answer::No);
    EXPECT_EQ(askYesNo(nullptr, QStringLiteral("Sure?"), title), Answer::No) << "Escape";
    EXPECT_EQ(askYesNo(nullptr, QStringLiteral("Sure?"), title), Answer::No) << "closed";
}

TEST(MessageBoxes, YesNoCancelAnswers)
{
    const Learner learner(
        {press(QMessageBox::Yes), press(QMessageBox::No), press(QMessageBox::Cancel), pressEscape, closeIt});
    EXPECT_EQ(askYesNoCancel(nullptr, QStringLiteral("Sure?"), title), Answer::Yes);
    EXPECT_EQ(askYesNoCancel(nullptr, QStringLiteral("Sure?"), title), Answer::No);
    EXPECT_EQ(askYesNoCancel(nullptr, QStringLiteral("Sure?"), title), Answer::Cancel);
    EXPECT_EQ(askYesNoCancel(nullptr, QStringLiteral("Sure?"), title), Answer::Cancel) << "Escape";
    EXPECT_EQ(askYesNoCancel(nullptr, QStringLiteral("Sure?"), title), Answer::Cancel) << "closed";
}

TEST(MessageBoxes, AnOfferedQuestionHasTheInformationIconAndEscapeSaysCancel)
{
    const auto look = [](QWidget &window) {
        const auto &box = dynamic_cast<QMessageBox &>(window);
        EXPECT_EQ(box.objectName(), QStringLiteral("MessageBox1"));
        EXPECT_EQ(box.windowTitle(), title);
        EXPECT_EQ(box.text(), QStringLiteral("Now?"));
        EXPECT_EQ(box.icon(), QMessageBox::Information);
        EXPECT_EQ(box.standardButtons(), QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        EXPECT_TRUE(box.isModal());
    };
    const auto lookAnd = [look](const Learner::Deed &deed) {
        return [look, deed](QWidget &window) {
            look(window);
            deed(window);
        };
    };
    const auto offer = [] { return offerYesNoCancel(nullptr, QStringLiteral("Now?"), title); };
    const Learner learner({lookAnd(press(QMessageBox::Yes)), lookAnd(press(QMessageBox::No)),
                           lookAnd(press(QMessageBox::Cancel)), lookAnd(pressEscape), lookAnd(closeIt),
                           [](QWidget &window) { QTest::keyClick(&window, Qt::Key_Return); }});
    EXPECT_EQ(offer(), Answer::Yes);
    EXPECT_EQ(offer(), Answer::No);
    EXPECT_EQ(offer(), Answer::Cancel);
    EXPECT_EQ(offer(), Answer::Cancel) << "Escape";
    EXPECT_EQ(offer(), Answer::Cancel) << "closed";
    EXPECT_EQ(offer(), Answer::Yes) << "Enter";
}

TEST(MessageBoxes, QuestionsHaveTheQuestionIconAndEnterSaysYes)
{
    const Learner learner({[](QWidget &window) {
        EXPECT_EQ(dynamic_cast<QMessageBox &>(window).icon(), QMessageBox::Question);
        QTest::keyClick(&window, Qt::Key_Return);
    }});
    EXPECT_EQ(askYesNo(nullptr, QStringLiteral("Sure?"), title), Answer::Yes);
}

TEST(InputBox, OffersATextThatTypingReplaces)
{
    const Learner learner({[](QWidget &window) {
        auto &dialog = dynamic_cast<QInputDialog &>(window);
        EXPECT_EQ(dialog.objectName(), QStringLiteral("InputBox1"));
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("New Topic"));
        EXPECT_EQ(dialog.labelText(), QStringLiteral("Name of topic?"));
        auto *line = dialog.findChild<QLineEdit *>();
        EXPECT_EQ(line->text(), QStringLiteral("Chapter 1"));
        EXPECT_EQ(line->selectedText(), QStringLiteral("Chapter 1"));
        QTest::keyClicks(line, QStringLiteral("Verbs"));
        QTest::keyClick(line, Qt::Key_Return);
    }});
    EXPECT_EQ(
        askText(nullptr, QStringLiteral("Name of topic?"), QStringLiteral("New Topic"), QStringLiteral("Chapter 1")),
        QStringLiteral("Verbs"));
}

TEST(InputBox, AcceptsTheOfferedTextAndAnEmptyOne)
{
    const Learner learner({[](QWidget &window) { QTest::keyClick(&window, Qt::Key_Return); },
                           [](QWidget &window) {
                               auto *line = window.findChild<QLineEdit *>();
                               QTest::keyClick(line, Qt::Key_Delete);
                               QTest::keyClick(line, Qt::Key_Return);
                           }});
    EXPECT_EQ(askText(nullptr, QStringLiteral("?"), title, QStringLiteral("Offered")), QStringLiteral("Offered"));
    EXPECT_EQ(askText(nullptr, QStringLiteral("?"), title, QStringLiteral("Offered")), QString());
}

TEST(InputBox, IsNothingWhenCancelledAndShowsThePromptAsItStands)
{
    const Learner learner({[](QWidget &window) {
        for (const QLabel *label : window.findChildren<QLabel *>()) {
            EXPECT_EQ(label->textFormat(), Qt::PlainText);
        }
        pressEscape(window);
    }});
    EXPECT_EQ(askText(nullptr, QStringLiteral("<i>Name?</i>"), title, {}), std::nullopt);
}

TEST(ColorDialog, BeginsWithTheCurrentColourAndReturnsTheChosenOne)
{
    const Learner learner({[](QWidget &window) {
                               auto &dialog = dynamic_cast<QColorDialog &>(window);
                               EXPECT_EQ(dialog.objectName(), QStringLiteral("CommonDialog1"));
                               EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Font Color"));
                               EXPECT_EQ(dialog.currentColor(), QColor(10, 20, 30));
                               EXPECT_FALSE(dialog.testOption(QColorDialog::ShowAlphaChannel));
                               dialog.setCurrentColor(QColor(1, 2, 3));
                               QTest::keyClick(&window, Qt::Key_Return);
                           },
                           [](QWidget &window) { QTest::keyClick(&window, Qt::Key_Return); }});
    EXPECT_EQ(askColor(nullptr, QStringLiteral("Font Color"), QColor(10, 20, 30)), QColor(1, 2, 3));
    EXPECT_EQ(askColor(nullptr, QStringLiteral("Font Color"), QColor(10, 20, 30)), QColor(10, 20, 30));
}

TEST(ColorDialog, IsNothingWhenCancelledOrClosed)
{
    const auto change = [](QWidget &window) { dynamic_cast<QColorDialog &>(window).setCurrentColor(Qt::red); };
    const Learner learner({[change](QWidget &window) {
                               change(window);
                               pressEscape(window);
                           },
                           [change](QWidget &window) {
                               change(window);
                               closeIt(window);
                           }});
    EXPECT_EQ(askColor(nullptr, title, Qt::blue), std::nullopt);
    EXPECT_EQ(askColor(nullptr, title, Qt::blue), std::nullopt);
}

class FileDialogs : public testing::Test
{
protected:
    static Learner::Deed typeAndPress(const QString &name, QDialogButtonBox::StandardButton button)
    {
        return [name, button](QWidget &window) {
            auto *line = window.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
            ASSERT_NE(line, nullptr);
            line->selectAll();
            QTest::keyClicks(line, name);
            line->completer()->popup()->hide(); // it would take the click
            QTest::mouseClick(window.findChild<QDialogButtonBox *>()->button(button), Qt::LeftButton);
        };
    }
    static Learner::Deed save(const QString &name) { return typeAndPress(name, QDialogButtonBox::Save); }
    static Learner::Deed open(const QString &name) { return typeAndPress(name, QDialogButtonBox::Open); }

    [[nodiscard]] QString path(const QString &name) const { return QDir(m_folder.path()).filePath(name); }

    void makeFile(const QString &name) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    }

    QTemporaryDir m_folder;
    QString m_near = path(QStringLiteral("Now open.crl"));
};

TEST_F(FileDialogs, ShowSubjectsInTheFolderOfTheFileThatIsNear)
{
    const auto check = [this](QWidget &window) {
        const auto &dialog = dynamic_cast<QFileDialog &>(window);
        EXPECT_EQ(dialog.objectName(), QStringLiteral("CommonDialog1"));
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("A title"));
        EXPECT_EQ(dialog.nameFilters(), QStringList{QStringLiteral("Cramlet (*.crl)")});
        EXPECT_EQ(dialog.directory().absolutePath(), m_folder.path());
        pressEscape(window);
    };
    const Learner learner({check, check, check});
    EXPECT_EQ(askOpenSubject(nullptr, QStringLiteral("A title"), m_near), std::nullopt);
    EXPECT_EQ(askSaveSubject(nullptr, QStringLiteral("A title"), m_near), std::nullopt);
    EXPECT_EQ(askOpenSubject(nullptr, QStringLiteral("A title"), m_folder.path()), std::nullopt);
}

TEST_F(FileDialogs, OpenInTheDocumentsWhenNothingIsNear)
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString home = QDir::homePath();
    const auto check = [&](QWidget &window) {
        EXPECT_EQ(dynamic_cast<QFileDialog &>(window).directory().absolutePath(),
                  QDir(documents).exists() ? documents : home);
        pressEscape(window);
    };
    const Learner learner({check, check});
    EXPECT_EQ(askOpenSubject(nullptr, title, {}), std::nullopt);
    EXPECT_EQ(askSaveSubject(nullptr, title, QStringLiteral("/no such/folder/a.crl")), std::nullopt);
}

TEST_F(FileDialogs, ANewNameWithoutAnEndingGetsOne)
{
    const Learner learner({save(QStringLiteral("French")), save(QStringLiteral("Latin.crl"))});
    EXPECT_EQ(askSaveSubject(nullptr, title, m_near), path(QStringLiteral("French.crl")));
    EXPECT_EQ(askSaveSubject(nullptr, title, m_near), path(QStringLiteral("Latin.crl")));
}

TEST_F(FileDialogs, BeforeReplacingAFileTheWholeNameIsAskedAboutAndNoAsksForAnotherName)
{
    makeFile(QStringLiteral("French.crl"));
    const auto refuse = [](QWidget &window) {
        auto &box = dynamic_cast<QMessageBox &>(window);
        EXPECT_TRUE(box.text().contains(QStringLiteral("French.crl"))) << box.text().toStdString();
        EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::No));
        QTest::keyClick(&window, Qt::Key_Return);
    };
    const Learner learner({save(QStringLiteral("French")), refuse, save(QStringLiteral("German"))});
    EXPECT_EQ(askSaveSubject(nullptr, title, m_near), path(QStringLiteral("German.crl")));
}

TEST_F(FileDialogs, AFileIsReplacedWhenTheLearnerSaysSo)
{
    makeFile(QStringLiteral("French.crl"));
    const Learner learner({save(QStringLiteral("French.crl")), press(QMessageBox::Yes)});
    EXPECT_EQ(askSaveSubject(nullptr, title, m_near), path(QStringLiteral("French.crl")));
}

TEST_F(FileDialogs, AfterANoTheLearnerCanStillCancel)
{
    makeFile(QStringLiteral("French.crl"));
    const Learner learner({save(QStringLiteral("French")), press(QMessageBox::No), pressEscape});
    EXPECT_EQ(askSaveSubject(nullptr, title, m_near), std::nullopt);
}

TEST_F(FileDialogs, AnExistingFileIsOpenedAlsoByItsNameWithoutTheEnding)
{
    makeFile(QStringLiteral("French.crl"));
    const Learner learner({open(QStringLiteral("French.crl")), open(QStringLiteral("French"))});
    EXPECT_EQ(askOpenSubject(nullptr, title, m_near), path(QStringLiteral("French.crl")));
    EXPECT_EQ(askOpenSubject(nullptr, title, m_near), path(QStringLiteral("French.crl")));
}

TEST_F(FileDialogs, AMissingFileIsNotOpened)
{
    const auto typeAMissingName = [](QWidget &window) {
        open(QStringLiteral("Greek.crl"))(window);
        EXPECT_TRUE(window.isVisible());
        pressEscape(window);
    };
    const Learner learner({typeAMissingName});
    EXPECT_EQ(askOpenSubject(nullptr, title, m_near), std::nullopt);
}

} // namespace
