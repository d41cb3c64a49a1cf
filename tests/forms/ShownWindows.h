#pragma once

#include "app/Help.h"
#include "forms/frmCardOptions/frmCardOptions.h"
#include "forms/frmEditCards/frmEditCards.h"
#include "forms/frmFlashCard/frmFlashCard.h"
#include "forms/frmNotes/frmNotes.h"
#include "forms/frmOpen/frmOpen.h"
#include "forms/frmOptions/frmOptions.h"
#include "forms/frmTest/frmTest.h"
#include "platform/CommonDialogs.h"
#include "platform/InsertObjectDialog.h"
#include "platform/RichTextBox.h"
#include "platform/SelectAnswer.h"
#include "tests/support/WindowTest.h"

#include <QCheckBox>
#include <QLabel>
#include <QRadioButton>
#include <QTabBar>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

/// Shows every window of the program in every state that looks or works otherwise.
class ShownWindows : public WindowTest
{
protected:
    using Visit = std::function<void(QWidget &window)>;

public:
    /// A window in one of its states.
    struct Scene
    {
        const char *name;
        void (ShownWindows::*show)(const Visit &visit); ///< calls visit while the window is shown and has the keys
        std::vector<QKeySequence> altKeys;              ///< of the window's own
        QStringList ownKeys;                            ///< controls that Tab leaves out: a key of their own is theirs
        QStringList outOfOrder;                         ///< controls that Tab visits elsewhere than they stand
        std::optional<HelpContext> help;                ///< what F1 shows
        const char *tabsFrom = nullptr;                 ///< where Tab begins to lead on, after a key of its own
    };

    static const std::vector<Scene> &scenes();

protected:
    // The chooser.

    void showChooser(const Visit &visit)
    {
        module->subject = {};
        visitShown(std::make_unique<frmOpen>(*module, [] {}), visit);
    }
    void showChooserForNew(const Visit &visit)
    {
        showChooser([&](QWidget &window) {
            QTest::keyClick(window.focusWidget(), Qt::Key_N, Qt::AltModifier);
            QTest::keyRelease(window.focusWidget(), Qt::Key_N, Qt::AltModifier);
            visit(window);
        });
    }

    // The main window.

    void showNotes(const Visit &visit) { visitShown(std::make_unique<frmNotes>(*module), visit); }
    void showNoTopics(const Visit &visit)
    {
        const std::filesystem::path bare = folder.file("Bare.crl");
        SubjectStore::create(bare);
        module->subject = subjectAt(QString::fromStdString(bare.string()));
        showNotes(visit);
    }
    void showNotesEditing(const Visit &visit)
    {
        showNotes([&](QWidget &window) {
            QTest::keyClick(window.focusWidget(), Qt::Key_E, Qt::AltModifier);
            visit(window);
        });
    }

    // The card editor.

    void showCardEditor(const Visit &visit)
    {
        module->study.cardQuery = cardsOfTopic(small);
        visitShown(std::make_unique<frmEditCards>(*module, EditedTopic{small, QStringLiteral("Small & tidy")}, nullptr),
                   visit);
    }

    // The wizard, and the session's options.

    void showWizard(const Visit &visit) { visitShown(std::make_unique<frmOptions>(*module), visit); }
    void showWizardForFlashCards(const Visit &visit)
    {
        showWizard([&](QWidget &window) {
            click(window, "cmdOK(2)");
            control<QCheckBox>(window, "Check2").setChecked(true);
            visit(window);
        });
    }
    void showWizardForTest(const Visit &visit)
    {
        showWizard([&](QWidget &window) {
            control<QRadioButton>(window, "Option1(1)").setChecked(true);
            click(window, "cmdOK(2)");
            control<QCheckBox>(window, "Check3").setChecked(true);
            visit(window);
        });
    }
    void showCardOptions(const Visit &visit) { visitShown(std::make_unique<frmCardOptions>(*module, nullptr), visit); }
    void showCardOptionsWithFlipper(const Visit &visit)
    {
        showCardOptions([&](QWidget &window) {
            control<QCheckBox>(window, "Check1").setChecked(true);
            visit(window);
        });
    }

    // The flash-card session.

    void showSession(const Visit &visit)
    {
        module->study.cardQuery = cardQuery(std::array{large});
        visitShown(std::make_unique<frmFlashCard>(*module), visit);
    }
    void showBack(const Visit &visit)
    {
        showSession([&](QWidget &window) {
            QTest::keyClick(window.focusWidget(), Qt::Key_Down);
            visit(window);
        });
    }
    void showMarked(const Visit &visit)
    {
        showSession([&](QWidget &window) {
            if (!control<QLabel>(window, "Label1(1)").isVisible()) {
                QTest::keyClick(window.focusWidget(), Qt::Key_M);
            }
            visit(window);
        });
    }
    void showFlipper(const Visit &visit)
    {
        module->study.timeSetting = 20;
        showSession(visit);
    }

    // The test.

    void showTest(const Visit &visit)
    {
        module->study.cardQuery = cardQuery(std::array{large});
        module->study.questionCount = 12;
        visitShown(std::make_unique<frmTest>(*module), visit);
    }
    /// Every kind of answer: the questions 0, 3, ... are right, 1, 4, ... wrong, the others open.
    void showAnswers(const Visit &visit)
    {
        showTest([&](QWidget &window) {
            const QList<SelectAnswer *> selectors = window.findChildren<SelectAnswer *>();
            for (qsizetype question = 0; question < selectors.size(); ++question) {
                const int right = selectors[question]->correctAnswer();
                const int wrong = right == 1 ? 2 : 1;
                selectors[question]->setSelectedAnswer(question % 3 == 0 ? right : question % 3 == 1 ? wrong : 0);
                selectors[question]->setMarkedForReview(question % 2 == 0);
            }
            visit(window);
        });
    }
    void showGraded(const Visit &visit)
    {
        showAnswers([&](QWidget &window) {
            DialogAnswers answers;
            answers.press(QMessageBox::Yes).press(QMessageBox::Ok);
            QTest::keyClick(window.focusWidget(), Qt::Key_Escape);
            window.activateWindow();
            ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
            visit(window);
        });
    }

    // Dialogs.

    void showInsertObject(const Visit &visit)
    {
        visitDialog([] { (void)askObject(nullptr, {800, 600}); }, visit);
    }
    void showInsertFile(const Visit &visit)
    {
        showInsertObject([&](QWidget &window) {
            QTest::keyClick(window.focusWidget(), Qt::Key_F, Qt::AltModifier);
            control<QLineEdit>(window, "txtFile").setText(QStringLiteral("no such file"));
            visit(window);
        });
    }
    void showMessage(const Visit &visit)
    {
        visitDialog([] { (void)askYesNoCancel(nullptr, QStringLiteral("Is this a question?"), QStringLiteral("Ask")); },
                    visit);
    }
    void showInputBox(const Visit &visit)
    {
        visitDialog(
            [] {
                (void)askText(nullptr, QStringLiteral("Name of topic?"), QStringLiteral("New Topic"),
                              QStringLiteral("Chapter 1"));
            },
            visit);
    }

private:
    static void visitShown(std::unique_ptr<QWidget> window, const Visit &visit)
    {
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        visit(*window);
    }
    static void visitDialog(const std::function<void()> &open, const Visit &visit)
    {
        DialogAnswers answers;
        answers.act([&](QWidget &dialog) {
            ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
            visit(dialog);
            dialog.close();
        });
        open();
    }
};

inline const std::vector<ShownWindows::Scene> &ShownWindows::scenes()
{
    static const std::vector<QKeySequence> notesKeys{Qt::ALT | Qt::Key_N, Qt::ALT | Qt::Key_R, Qt::ALT | Qt::Key_D,
                                                     Qt::ALT | Qt::Key_S, Qt::ALT | Qt::Key_E, Qt::ALT | Qt::Key_F};
    static const QStringList testsKeys{QStringLiteral("Image1(0)"), QStringLiteral("Image1(1)"),
                                       QStringLiteral("Image1(2)"), QStringLiteral("Image1(3)"),
                                       QStringLiteral("Image1(4)"), QStringLiteral("VScroll1")};
    static const QStringList choosersKeys{QStringLiteral("Image1(0)"), QStringLiteral("Image1(1)")};
    static const std::vector<QKeySequence> editorsKeys{Qt::ALT | Qt::Key_A};
    static const QStringList notes{QStringLiteral("RichTextBox1")};
    static const QStringList sides{QStringLiteral("RichTextBox1(0)"), QStringLiteral("RichTextBox1(1)")};
    static const QStringList back{QStringLiteral("RichTextBox1(1)")};
    static const QStringList card{QStringLiteral("Picture1")};
    using Topic = HelpContext;
    static const std::vector<Scene> all{
        {"Chooser", &ShownWindows::showChooser, {}, choosersKeys, {}, Topic::GettingStarted},
        {"ChooserForANewSubject", &ShownWindows::showChooserForNew, {}, choosersKeys, {}, Topic::GettingStarted},
        {"Notes", &ShownWindows::showNotes, notesKeys, {}, {}, Topic::MainWindow},
        {"NotesWithoutTopics", &ShownWindows::showNoTopics, notesKeys, {}, {}, Topic::MainWindow},
        {"NotesInEditing", &ShownWindows::showNotesEditing, notesKeys, {}, notes, Topic::EditingNotes, "Combo1"},
        {"CardEditor", &ShownWindows::showCardEditor, editorsKeys, back, sides, Topic::CardEditor, "Combo1"},
        {"Wizard", &ShownWindows::showWizard, {}, {}, {}, Topic::StudyWizard},
        {"WizardForFlashCards", &ShownWindows::showWizardForFlashCards, {}, {}, {}, Topic::StudyWizard},
        {"WizardForATest", &ShownWindows::showWizardForTest, {}, {}, {}, Topic::StudyWizard},
        {"CardOptions", &ShownWindows::showCardOptions, {}, {}, {}, Topic::FlashCardSession},
        {"CardOptionsWithFlipper", &ShownWindows::showCardOptionsWithFlipper, {}, {}, {}, Topic::FlashCardSession},
        {"Session", &ShownWindows::showSession, {}, {}, card, Topic::FlashCardSession},
        {"SessionOnTheBack", &ShownWindows::showBack, {}, {}, card, Topic::FlashCardSession},
        {"SessionOnAMarkedCard", &ShownWindows::showMarked, {}, {}, card, Topic::FlashCardSession},
        {"SessionWithFlipper", &ShownWindows::showFlipper, {}, {}, card, Topic::FlashCardSession},
        {"Test", &ShownWindows::showTest, {}, testsKeys, {}, Topic::Test},
        {"TestWithAnswers", &ShownWindows::showAnswers, {}, testsKeys, {}, Topic::Test},
        {"GradedTest", &ShownWindows::showGraded, {}, testsKeys, {}, Topic::Test},
        {"InsertObject", &ShownWindows::showInsertObject, {}, {}, {}, {}},
        {"InsertFile", &ShownWindows::showInsertFile, {}, {}, {}, {}},
        {"Message", &ShownWindows::showMessage, {}, {}, {}, {}},
        {"InputBox", &ShownWindows::showInputBox, {}, {}, {}, {}},
    };
    return all;
}

/// A test of one of the scenes.
class EveryScene : public ShownWindows, public testing::WithParamInterface<ShownWindows::Scene>
{
protected:
    void visitScene(const Visit &visit) { (this->*GetParam().show)(visit); }
};

/// The scenes in which F1 shows the help.
inline std::vector<ShownWindows::Scene> scenesWithHelp()
{
    std::vector<ShownWindows::Scene> all = ShownWindows::scenes();
    std::erase_if(all, [](const ShownWindows::Scene &scene) { return !scene.help.has_value(); });
    return all;
}

inline std::string nameOfScene(const testing::TestParamInfo<ShownWindows::Scene> &info)
{
    return info.param.name;
}

inline void PrintTo(const ShownWindows::Scene &scene, std::ostream *stream)
{
    *stream << scene.name;
}
