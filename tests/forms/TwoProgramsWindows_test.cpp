#include "forms/frmEditCards/frmEditCards.h"
#include "forms/frmFlashCard/frmFlashCard.h"
#include "forms/frmOptions/frmOptions.h"
#include "forms/frmTest/frmTest.h"
#include "platform/SelectAnswer.h"
#include "study/CardEditing.h"
#include "tests/forms/NotesTest.h"

#include <QDialog>
#include <QListWidget>

#include <functional>

namespace {

/// The windows of one program, while another one works on the same subject.
class TwoProgramsWindows : public NotesTest
{
protected:
    enum EditorCommand { FirstCard, PreviousCard, NewCard, ExitEditor, DeleteCard, NextCard, LastCard };

    /// Does \p act while the dialogs that open are answered with these buttons, and returns the last one.
    template <class Act>
    SeenMessage heard(std::initializer_list<QMessageBox::StandardButton> buttons, Act act)
    {
        DialogAnswers answers;
        for (const QMessageBox::StandardButton button : buttons) {
            answers.press(button);
        }
        act();
        settle();
        EXPECT_EQ(answers.seen().size(), buttons.size());
        return answers.last();
    }

    void expectReport(const SeenMessage &report, const char *cause)
    {
        EXPECT_EQ(report.icon, QMessageBox::Critical) << report.text.toStdString();
        EXPECT_EQ(report.title, QStringLiteral("Run-time error"));
        EXPECT_TRUE(report.text.contains(QString::fromLatin1(cause))) << report.text.toStdString();
    }
    /// \p act leads to one report that something was deleted from the subject.
    template <class Act>
    void expectGone(Act act, const char *what = "was deleted")
    {
        const SeenMessage report = heard({QMessageBox::Ok}, act);
        expectReport(report, "deleted meanwhile");
        expectReport(report, what);
        EXPECT_TRUE(report.text.contains(QString::fromStdString(file.string())));
    }

    // The other program.

    [[nodiscard]] CardEditing editThere(int topic) const { return {file, cardsOfTopic(topic), topic, {}}; }
    static EditedCard typed(const std::string &front, const std::string &back)
    {
        return {{rtfOf(front), front}, {rtfOf(back), back}};
    }
    void writeFirstCardThere(int topic, const std::string &front) const { editThere(topic).save(typed(front, "back")); }
    /// The cards whose topic is gone.
    [[nodiscard]] int orphans() const
    {
        int count = 0;
        SubjectStore store(file);
        CardSet cards = store.openRecordSet("SELECT * FROM FlashCards;");
        for (; !cards.isEndOfSet(); cards.moveNext()) {
            TopicSet owner = store.openRecordSet(topicByKey(cards.number(CardField::NIndex)));
            count += owner.recordCount() == 0 ? 1 : 0;
        }
        return count;
    }

    // The card editor.

    frmEditCards *openEditor(int tab)
    {
        open();
        clickTab(tab);
        run(EditCards);
        auto *editor = visibleWindow<frmEditCards>();
        EXPECT_NE(editor, nullptr);
        return editor;
    }
    static void give(frmEditCards *editor, EditorCommand command) { click(*editor, commandName(command)); }
    static RichTextBox &front(frmEditCards *editor) { return control<RichTextBox>(*editor, "RichTextBox1(0)"); }
    static void typeFront(frmEditCards *editor, const char *text)
    {
        QTest::mouseClick(front(editor).viewport(), Qt::LeftButton);
        QTest::keyClick(&front(editor), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(&front(editor), QString::fromLatin1(text));
    }
    static std::string shown(frmEditCards *editor) { return front(editor).toPlainText().toStdString(); }
    [[nodiscard]] std::vector<std::string> storedFronts(int topic) const
    {
        std::vector<std::string> fronts;
        SubjectStore store(file);
        CardSet cards = store.openRecordSet(cardsOfTopic(topic));
        for (; !cards.isEndOfSet(); cards.moveNext()) {
            fronts.push_back(plainTextOf(cards.text(CardField::Front)).trimmed().toStdString());
        }
        return fronts;
    }

    // The study wizard.

    frmOptions *openWizard(StudyStyle style, int row)
    {
        if (!isOpen()) {
            open();
        }
        run(Study);
        auto *wizard = visibleWindow<frmOptions>();
        EXPECT_NE(wizard, nullptr);
        auto &option = control<QAbstractButton>(*wizard, style == StudyStyle::Test ? "Option1(1)" : "Option1(0)");
        QTest::mouseClick(&option, Qt::LeftButton, {}, QPoint(8, option.height() / 2));
        choose(wizard, row);
        click(*wizard, "cmdOK(2)");
        return wizard;
    }
    static void choose(frmOptions *wizard, int row)
    {
        auto &topics = control<QListWidget>(*wizard, "List1");
        QTest::mouseClick(topics.viewport(), Qt::LeftButton, {}, topics.visualItemRect(topics.item(row)).center());
    }
    static void confirm(frmOptions *wizard) { click(*wizard, "cmdOK(2)"); }

    template <class Window>
    Window *begin(StudyStyle style)
    {
        confirm(openWizard(style, 0));
        auto *studying = visibleWindow<Window>();
        EXPECT_NE(studying, nullptr);
        return studying;
    }
};

// The card editor.

TEST_F(TwoProgramsWindows, AnEditorWhoseTopicIsDeletedThereKeepsTheTextAndIsLeftWithoutSaving)
{
    frmEditCards *editor = openEditor(1);
    typeFront(editor, "typed");
    deleteTopic(file, small);
    expectGone([&] { give(editor, NextCard); });
    EXPECT_EQ(shown(editor), "typed");
    for (const EditorCommand command : {NextCard, NewCard, FirstCard}) {
        expectGone([&] { give(editor, command); }, "the topic was deleted");
        EXPECT_EQ(shown(editor), "typed");
    }
    expectGone([&] { give(editor, ExitEditor); }, "the topic was deleted");
    ASSERT_TRUE(editor->isVisible());
    const QPointer<frmEditCards> watched = editor;
    const SeenMessage told = heard({QMessageBox::No}, [&] { give(editor, ExitEditor); });
    EXPECT_EQ(told.title, QStringLiteral("Leave Without Saving"));
    EXPECT_TRUE(told.text.contains(QStringLiteral("the topic was deleted"))) << told.text.toStdString();
    ASSERT_TRUE(editor->isVisible());
    EXPECT_EQ(shown(editor), "typed");

    // The main window then finds its topic gone too.
    expectReport(heard({QMessageBox::Yes, QMessageBox::Ok}, [&] { give(editor, ExitEditor); }), "deleted meanwhile");
    EXPECT_TRUE(watched.isNull());
    EXPECT_EQ(orphans(), 0);
    EXPECT_EQ(title(), QStringLiteral("Small & tidy"));
    EXPECT_EQ(notes(), QString());
    EXPECT_FALSE(status().isVisible());
    remove(QMessageBox::Yes);
    EXPECT_EQ(tabs().count(), 2);
    EXPECT_EQ(title(), QStringLiteral("Large"));
}

TEST_F(TwoProgramsWindows, AnEditorWhoseTopicIsDeletedThereIsLeftAtOnceIfNothingWasTyped)
{
    frmEditCards *editor = openEditor(2); // on a new blank card
    deleteTopic(file, empty);
    expectGone([&] { give(editor, NextCard); });
    expectGone([&] { give(editor, ExitEditor); }); // the main window's
    EXPECT_EQ(visibleWindow<frmEditCards>(), nullptr);
    EXPECT_EQ(orphans(), 0);
}

TEST_F(TwoProgramsWindows, AnEmptyTopicThatIsDeletedThereGetsNoEditor)
{
    open();
    clickTab(2);
    deleteTopic(file, empty);
    expectGone([this] { run(EditCards); }, "the topic was deleted");
    EXPECT_EQ(visibleWindow<frmEditCards>(), nullptr);
    EXPECT_EQ(orphans(), 0);
    clickTab(0);
    EXPECT_EQ(title(), QStringLiteral("Large"));
}

TEST_F(TwoProgramsWindows, TwoEditorsOnOneCardStoreBothAndTheLastToLeaveStays)
{
    frmEditCards *here = openEditor(1);
    Module1 otherModule;
    otherModule.subject = module->subject;
    otherModule.study.cardQuery = cardsOfTopic(small);
    QWidget otherOwner;
    const QPointer<frmEditCards> there = new frmEditCards(otherModule, {small, QStringLiteral("Small")}, &otherOwner);
    there->show();
    typeFront(here, "here");
    typeFront(there, "there");
    give(here, NextCard);
    EXPECT_EQ(storedFronts(small).at(0), "here");
    give(there, ExitEditor);
    settle();
    EXPECT_TRUE(there.isNull());
    EXPECT_EQ(storedFronts(small).at(0), "there");
    give(here, PreviousCard);
    EXPECT_EQ(shown(here), "there");
    give(here, ExitEditor);
    settle();
    EXPECT_EQ(storedFronts(small), (std::vector<std::string>{"there", "front 2", "front 3", "front 4"}));
}

TEST_F(TwoProgramsWindows, AnEditorAtItsLastCardAddsBesideTheOneThatIsAddedThere)
{
    frmEditCards *editor = openEditor(1);
    give(editor, LastCard);
    CardEditing there = editThere(small);
    there.add(typed("front 1", "back 1"));
    there.save(typed("there", "back"));
    give(editor, NextCard);
    typeFront(editor, "here");
    give(editor, ExitEditor);
    settle();
    EXPECT_EQ(storedFronts(small),
              (std::vector<std::string>{"front 1", "front 2", "front 3", "front 4", "there", "here"}));
    EXPECT_EQ(status().text(), QStringLiteral("This topic has 6 flash cards."));
}

// The main window.

TEST_F(TwoProgramsWindows, NotesOfATopicThatIsDeletedThereCanBeLeftWithoutSaving)
{
    open();
    rewriteNotes(QStringLiteral("typed"));
    deleteTopic(file, large);
    expectGone([this] { run(Exit); }, "the topic was deleted");
    EXPECT_TRUE(isEditing());
    EXPECT_EQ(notes(), QStringLiteral("typed"));
    const SeenMessage told = heard({QMessageBox::No, QMessageBox::No}, [this] { run(Exit); });
    EXPECT_EQ(told.title, QStringLiteral("Leave Without Saving"));
    ASSERT_TRUE(isOpen());
    EXPECT_EQ(notes(), QStringLiteral("typed"));
    heard({QMessageBox::No, QMessageBox::Yes}, [this] { run(Exit); });
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(storedNames(), (QStringList{QStringLiteral("Small & tidy"), QStringLiteral("Empty")}));
}

TEST_F(TwoProgramsWindows, ATopicThatIsRenamedThereKeepsItsNewNameWhenItsNotesAreStored)
{
    open();
    rewriteNotes(QStringLiteral("typed"));
    renameTopic(file, large, "Renamed there");
    key(Qt::Key_Escape);
    EXPECT_EQ(readTopic(file, large).name, "Renamed there");
    EXPECT_EQ(storedText(large), QStringLiteral("typed"));
}

TEST_F(TwoProgramsWindows, ATopicThatIsRenamedThereHasItsNewNameOnItsTabOnceItIsShown)
{
    open();
    renameTopic(file, small, "Black & white");
    clickTab(1);
    EXPECT_EQ(title(), QStringLiteral("Black & white"));
    EXPECT_EQ(tabs().keyedCaption(1), QStringLiteral("Black & white"));
    EXPECT_EQ(tabs().keyedCaption(0), QStringLiteral("Large"));
}

TEST_F(TwoProgramsWindows, ATopicThatIsDeletedThereCanBeNeitherShownNorRenamedButItsTabDeleted)
{
    open();
    deleteTopic(file, small);
    expectGone([this] { clickTab(1); });
    EXPECT_EQ(notes(), QString());
    {
        DialogAnswers answers;
        answers.act(answer(QStringLiteral("Renamed"))).press(QMessageBox::Ok);
        run(Rename);
        expectReport(answers.last(), "deleted meanwhile");
    }
    EXPECT_EQ(tabs().keyedCaption(1), QStringLiteral("Small & tidy"));
    remove(QMessageBox::Yes);
    EXPECT_EQ(tabs().count(), 2);
    EXPECT_EQ(storedNames(), (QStringList{QStringLiteral("Large"), QStringLiteral("Empty")}));
}

TEST_F(TwoProgramsWindows, ATopicThatIsCreatedThereComesWithTheNextListAndKeepsItsKeyApart)
{
    open();
    const int there = createTopic(file, "There");
    create(QStringLiteral("Here"));
    EXPECT_EQ(storedNames().size(), 5);
    EXPECT_EQ(tabs().count(), 4) << "its own four";
    EXPECT_EQ(title(), QStringLiteral("Here"));
    rewriteNotes(QStringLiteral("typed"));
    key(Qt::Key_Escape);
    EXPECT_EQ(readTopic(file, there).name, "There");
    EXPECT_EQ(storedText(there), QStringLiteral("There notes..."));
    remove(QMessageBox::Yes);
    EXPECT_EQ(tabs().count(), 4) << "without its own one, and with the other";
    EXPECT_EQ(tabs().keyedCaption(3), QStringLiteral("There"));
}

TEST_F(TwoProgramsWindows, TheNumberOfCardsIsThatOfTheMomentWhenTheTabIsShown)
{
    open();
    EXPECT_EQ(status().text(), QStringLiteral("This topic has 12 flash cards."));
    addCards(file, large, 3);
    clickTab(1);
    clickTab(0);
    EXPECT_EQ(status().text(), QStringLiteral("This topic has 15 flash cards."));
}

// The study wizard.

TEST_F(TwoProgramsWindows, AWizardWhoseTopicIsDeletedThereSaysThatThereAreNoCardsAndGoesOn)
{
    frmOptions *wizard = openWizard(StudyStyle::FlashCards, 1);
    deleteTopic(file, small);
    EXPECT_EQ(heard({QMessageBox::Ok}, [&] { confirm(wizard); }).title, QStringLiteral("No Flash Cards"));
    ASSERT_TRUE(wizard->isVisible());
    choose(wizard, 0);
    click(*wizard, "cmdOK(2)");
    confirm(wizard);
    auto *session = visibleWindow<frmFlashCard>();
    ASSERT_NE(session, nullptr);
    session->close();
    settle();
    EXPECT_TRUE(isOpen());
}

TEST_F(TwoProgramsWindows, CardsThatAreDeletedThereAfterTheWizardGiveNoSessionAndSayWhy)
{
    frmOptions *wizard = openWizard(StudyStyle::FlashCards, 0);
    QObject::connect(wizard, &QDialog::accepted, window, [this] { deleteTopic(file, large); });
    expectReport(heard({QMessageBox::Ok}, [&] { confirm(wizard); }), "none of the selected flash cards are left");
    EXPECT_EQ(visibleWindow<frmFlashCard>(), nullptr);
    EXPECT_TRUE(isOpen());
}

// Studies.

TEST_F(TwoProgramsWindows, ASessionWhoseTopicIsDeletedThereReportsEachCardAndCanBeLeft)
{
    auto *session = begin<frmFlashCard>(StudyStyle::FlashCards);
    deleteTopic(file, large);
    for (int card = 2; card <= 4; ++card) {
        expectGone([&] { QTest::keyClick(session->focusWidget(), Qt::Key_Right); });
        EXPECT_EQ(control<RichTextBox>(*session, "RichTextBox1(0)").toPlainText(), QString());
    }
    expectGone([&] { QTest::keyClick(session->focusWidget(), Qt::Key_M); });
    const SeenMessage shuffled =
        heard({QMessageBox::Yes, QMessageBox::Ok}, [&] { QTest::keyClick(session->focusWidget(), Qt::Key_S); });
    EXPECT_EQ(shuffled.icon, QMessageBox::Information);
    QTest::keyClick(session->focusWidget(), Qt::Key_Escape);
    settle();
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(orphans(), 0);
    clickTab(1);
    EXPECT_EQ(title(), QStringLiteral("Small & tidy"));
}

TEST_F(TwoProgramsWindows, ASessionShowsWhatIsWrittenThereWhenItReachesTheCard)
{
    auto *session = begin<frmFlashCard>(StudyStyle::FlashCards);
    const auto text = [&] { return control<RichTextBox>(*session, "RichTextBox1(0)").toPlainText().trimmed(); };
    writeFirstCardThere(large, "written there");
    EXPECT_EQ(text(), QStringLiteral("front 1"));
    QTest::keyClick(session->focusWidget(), Qt::Key_Right);
    QTest::keyClick(session->focusWidget(), Qt::Key_Left);
    EXPECT_EQ(text(), QStringLiteral("written there"));
    session->close();
    settle();
}

/// Two tests of the same cards at once: each is about the questions that it shows.
TEST_F(TwoProgramsWindows, ATestIsGradedByWhatItShowedWhateverTestIsMadeThere)
{
    auto *test = begin<frmTest>(StudyStyle::Test);
    const auto scene = [&] {
        QStringList all;
        for (int box = 0; box < 4; ++box) {
            auto &text = control<RichTextBox>(*test, ("RichTextBox1(" + std::to_string(box) + ")").c_str());
            all << text.toPlainText() << QString::number(int(text.isVisible()));
        }
        return all;
    };
    const auto selectors = test->findChildren<SelectAnswer *>();
    ASSERT_EQ(selectors.size(), 12);
    std::vector<QStringList> before;
    for (int at = 0; at < 12; ++at) {
        before.push_back(scene());
        if (at < 11) {
            QTest::keyClick(test->focusWidget(), Qt::Key_Right);
        }
    }
    {
        Module1 otherModule;
        otherModule.subject = module->subject;
        otherModule.study = module->study;
        const frmTest there(otherModule);
    }
    for (int at = 11; at >= 0; --at) {
        EXPECT_EQ(scene(), before.at(static_cast<std::size_t>(at))) << "question " << at + 1;
        if (at > 0) {
            QTest::keyClick(test->focusWidget(), Qt::Key_Left);
        }
    }
    for (SelectAnswer *selector : selectors) {
        selector->setSelectedAnswer(selector->correctAnswer());
    }
    const SeenMessage results = heard({QMessageBox::Yes, QMessageBox::Ok}, [&] { test->close(); });
    EXPECT_TRUE(results.text.startsWith(QStringLiteral("Test results: 100% (12 out of 12)")));
    test->close();
    settle();
}

TEST_F(TwoProgramsWindows, ATestWhoseTopicIsDeletedThereIsGradedAndCanBeLeft)
{
    auto *test = begin<frmTest>(StudyStyle::Test);
    const QPointer<frmTest> watched = test;
    deleteTopic(file, large);
    expectGone([&] { QTest::keyClick(test->focusWidget(), Qt::Key_Right); });
    EXPECT_EQ(control<RichTextBox>(*test, "RichTextBox1(0)").toPlainText(), QString());
    DialogAnswers answers;
    answers.press(QMessageBox::Yes).press(QMessageBox::Ok).press(QMessageBox::Ok);
    test->close();
    ASSERT_EQ(answers.seen().size(), 3U);
    EXPECT_EQ(answers.seen().at(1).title, QStringLiteral("Test Results"));
    expectReport(answers.last(), "deleted meanwhile");
    test->close();
    settle();
    EXPECT_TRUE(watched.isNull());
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(orphans(), 0);
}

} // namespace
