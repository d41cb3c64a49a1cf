#include "forms/frmEditCards/frmEditCards.h"
#include "forms/frmOpen/frmOpen.h"
#include "forms/frmOptions/frmOptions.h"
#include "tests/forms/NotesTest.h"
#include "tests/support/HelpWindows.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QTextCursor>

#include <fstream>
#include <iterator>
#include <map>

namespace {

const QString written = QStringLiteral("Rome was not built in a day.");
const QString largeNotes = QStringLiteral("Large notes...");
const QString smallNotes = QStringLiteral("Small & tidy notes...");

class frmNotesEditing : public NotesTest
{
protected:
    void doubleClickNotes()
    {
        const QPoint at = box().cursorRect().center() + QPoint(20, 0);
        QTest::mouseClick(box().viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(box().viewport(), Qt::LeftButton, {}, at);
    }
    QString selected() { return box().textCursor().selectedText(); }

    /// Makes \p path the subject that the chooser offers first.
    void offer(const std::filesystem::path &path)
    {
        const Subject subject = subjectAt(QString::fromStdString(path.string()));
        module->settings.write(QStringLiteral("Recent"),
                               {{QStringLiteral("Name0"), subject.name}, {QStringLiteral("Path0"), subject.path}});
    }
    /// Says that another subject is wanted, and returns the chooser.
    frmOpen *askForAnother()
    {
        DialogAnswers answers;
        answers.press(QMessageBox::Yes);
        window->close();
        auto *chooser = visibleWindow<frmOpen>();
        EXPECT_NE(chooser, nullptr);
        return chooser;
    }
    [[nodiscard]] std::string fileBytes() const
    {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
};

// Entering.

TEST_F(frmNotesEditing, TheWindowOpensWithNotesThatCanOnlyBeRead)
{
    open();
    EXPECT_FALSE(isEditing());
}

TEST_F(frmNotesEditing, TheButtonEntersAndGivesTheNotesTheFocus)
{
    open();
    ASSERT_EQ(window->focusWidget(), &tabs());
    run(Edit);
    EXPECT_TRUE(isEditing());
    EXPECT_EQ(window->focusWidget(), &box());
}

TEST_F(frmNotesEditing, AltEEntersFromTheTopicsAndFromTheNotes)
{
    open();
    for (QWidget *at : {static_cast<QWidget *>(&tabs()), static_cast<QWidget *>(&box())}) {
        at->setFocus();
        key(Qt::Key_E, Qt::AltModifier);
        EXPECT_TRUE(isEditing());
        EXPECT_EQ(window->focusWidget(), &box());
        EXPECT_EQ(selected(), largeNotes);
        key(Qt::Key_Escape);
        EXPECT_FALSE(isEditing());
    }
}

TEST_F(frmNotesEditing, ADoubleClickInTheNotesEnters)
{
    open();
    doubleClickNotes();
    EXPECT_TRUE(isEditing());
    EXPECT_EQ(window->focusWidget(), &box());
    EXPECT_EQ(selected(), largeNotes);
}

TEST_F(frmNotesEditing, ADoubleClickWhileEditingSelectsAWordAndStoresNothing)
{
    open();
    rewriteNotes(written);
    key(Qt::Key_Home);
    doubleClickNotes();
    EXPECT_TRUE(isEditing());
    EXPECT_EQ(notes(), written);
    EXPECT_EQ(selected(), QStringLiteral("Rome"));
    EXPECT_EQ(storedText(large), largeNotes);
}

TEST_F(frmNotesEditing, ADoubleClickInUntouchedNotesThatAreBeingEditedSelectsAWordOfThem)
{
    open();
    run(Edit);
    key(Qt::Key_Home);
    doubleClickNotes();
    EXPECT_EQ(selected(), QStringLiteral("Large"));
}

TEST_F(frmNotesEditing, NothingIsEditedWithoutTopics)
{
    SubjectStore::create(file);
    open();
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    run(Edit);
    EXPECT_EQ(answers.last().title, QStringLiteral("No Topics"));
    EXPECT_FALSE(isEditing());
}

TEST_F(frmNotesEditing, TheToolsStandAboveTheNotesAndTakeTheirRoomFromThem)
{
    open();
    const int before = box().height();
    run(Edit);
    const auto &tools = control<QWidget>(*window, "CoolBar1");
    QTRY_VERIFY(box().height() < before);
    EXPECT_LE(tools.mapTo(window, tools.rect().bottomLeft()).y(), box().mapTo(window, QPoint(0, 0)).y());
    EXPECT_GE(tools.mapTo(window, QPoint(0, 0)).y(), tabs().geometry().bottom());
    key(Qt::Key_Escape);
    QTRY_COMPARE(box().height(), before);
}

// What is selected.

TEST_F(frmNotesEditing, ANewTopicsNotesComeUpSelectedSoThatTypingReplacesThem)
{
    open();
    create(QStringLiteral("Fourth"));
    run(Edit);
    EXPECT_EQ(selected(), QStringLiteral("Fourth notes..."));
    type(written);
    EXPECT_EQ(notes(), written);
}

TEST_F(frmNotesEditing, OtherNotesBeginWithTheCaretAtTheirStart)
{
    saveNotes(file, large, rtfOf("the first notes..."));
    open();
    run(Edit);
    EXPECT_EQ(selected(), QString());
    type(QStringLiteral("Here are "));
    EXPECT_EQ(notes(), QStringLiteral("Here are the first notes..."));
}

TEST_F(frmNotesEditing, TheCaretGoesBackToTheStartWhenEditingBeginsElsewhereThanInTheNotes)
{
    saveNotes(file, large, rtfOf("of notes"));
    open();
    QTest::mouseClick(box().viewport(), Qt::LeftButton, {}, box().cursorRect().center() + QPoint(30, 0));
    ASSERT_GT(box().textCursor().position(), 0);
    tabs().setFocus();
    key(Qt::Key_E, Qt::AltModifier);
    type(QStringLiteral("The start "));
    EXPECT_EQ(notes(), QStringLiteral("The start of notes"));
}

TEST_F(frmNotesEditing, TheCaretStaysWhereItWasPutInTheNotes)
{
    saveNotes(file, large, rtfOf("of notes"));
    open();
    QTest::mouseClick(box().viewport(), Qt::LeftButton, {}, box().cursorRect().center() + QPoint(30, 0));
    const int caret = box().textCursor().position();
    ASSERT_GT(caret, 0);
    key(Qt::Key_E, Qt::AltModifier);
    EXPECT_EQ(box().textCursor().position(), caret);
}

TEST_F(frmNotesEditing, ARenamedTopicsNotesAreNoLongerThoseOfANewOne)
{
    open();
    rename(QStringLiteral("Huge"));
    run(Edit);
    EXPECT_EQ(selected(), QString());
    EXPECT_EQ(box().textCursor().position(), 0);
}

TEST_F(frmNotesEditing, EmptyNotesCanBeEdited)
{
    saveNotes(file, large, "");
    open();
    run(Edit);
    EXPECT_TRUE(isEditing());
    type(written);
    key(Qt::Key_Escape);
    EXPECT_EQ(storedText(large), written);
}

// Leaving by Escape.

TEST_F(frmNotesEditing, EscapeStoresAndEndsEditingWithoutAQuestion)
{
    open();
    rewriteNotes(written);
    EXPECT_EQ(storedText(large), largeNotes) << "nothing is stored before editing ends";
    const DialogAnswers none;
    key(Qt::Key_Escape);
    EXPECT_FALSE(isEditing());
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(notes(), written);
    EXPECT_EQ(storedText(large), written);
    EXPECT_EQ(storedText(small), smallNotes);
    EXPECT_EQ(storedNames().constFirst(), QStringLiteral("Large"));
}

TEST_F(frmNotesEditing, EscapeOnceMoreAsksWhetherToClose)
{
    open();
    rewriteNotes(written);
    key(Qt::Key_Escape);
    DialogAnswers answers;
    answers.press(QMessageBox::Cancel);
    key(Qt::Key_Escape);
    EXPECT_EQ(answers.last().title, QStringLiteral("Stop Studying"));
}

TEST_F(frmNotesEditing, EscapeInTheFontBoxesEndsEditingToo)
{
    open();
    for (const char *fontBox : {"Combo1", "Combo2"}) {
        rewriteNotes(QString::fromLatin1(fontBox));
        control<QComboBox>(*window, fontBox).setFocus();
        ASSERT_EQ(window->focusWidget()->objectName(), QString::fromLatin1(fontBox));
        const DialogAnswers none;
        key(Qt::Key_Escape);
        EXPECT_FALSE(isEditing());
        EXPECT_EQ(storedText(large), QString::fromLatin1(fontBox));
        EXPECT_EQ(window->focusWidget(), &box()) << "the focus may not stay in what is hidden";
    }
}

TEST_F(frmNotesEditing, WhatWasTypedIsStoredExactlyAsTheBoxHasIt)
{
    open();
    rewriteNotes(QStringLiteral("bold "));
    key(Qt::Key_B, Qt::ControlModifier);
    type(QString::fromUtf8("Größe {1}\\2"));
    const std::string rtf = box().rtf();
    key(Qt::Key_Escape);
    EXPECT_EQ(storedNotes(large), rtf);
    EXPECT_EQ(storedText(large), QString::fromUtf8("bold Größe {1}\\2"));
}

TEST_F(frmNotesEditing, NotesThatWereNotChangedKeepTheirVeryBytes)
{
    const std::string odd = "{\\rtf1\\ansi  \\unknown7 {\\*\\private abc}\r\nCaf\xe9 \\b  bold\\b0\\par\n }\n";
    saveNotes(file, large, odd);
    open();
    run(Edit);
    key(Qt::Key_Escape);
    EXPECT_EQ(storedNotes(large), odd);

    run(Edit);
    type(QStringLiteral("x"));
    key(Qt::Key_Z, Qt::ControlModifier);
    key(Qt::Key_Escape);
    EXPECT_EQ(storedNotes(large), odd) << "undone to what it was";
}

TEST_F(frmNotesEditing, NotesAreWrittenWhetherOrNotTheyWereChanged)
{
    open();
    run(Edit);
    saveNotes(file, large, rtfOf("another program's"));
    key(Qt::Key_Escape);
    EXPECT_EQ(storedText(large), largeNotes);
}

TEST_F(frmNotesEditing, NotesAsLongAsABookAreStored)
{
    std::string book;
    for (int line = 1; line <= 10'000; ++line) {
        book += "Line " + std::to_string(line) + " tells as much of the story as a line holds.\\par ";
    }
    saveNotes(file, large, rtfOf(book));
    open();
    const QString before = notes();
    ASSERT_GT(before.size(), 500'000);
    run(Edit);
    type(QStringLiteral("x"));
    key(Qt::Key_Escape);
    EXPECT_TRUE(storedText(large) == QStringLiteral("x") + before);
}

// Leaving by a command.

class frmNotesCommands : public frmNotesEditing, public testing::WithParamInterface<int>
{
protected:
    /// Gives the command, and takes back whatever window it opens.
    void giveAndCancel(const std::function<void()> &give)
    {
        DialogAnswers answers;
        switch (static_cast<Command>(GetParam())) {
        case Create:
        case Rename:
        case BackgroundColor: answers.key(Qt::Key_Escape); break;
        case Delete: answers.press(QMessageBox::No); break;
        case Exit: answers.press(QMessageBox::Cancel); break;
        case Help:
        case EditCards:
        case Study:
        case Edit: break;
        }
        give();
        if (GetParam() == Help) {
            expectHelp(HelpContext::MainWindow);
        } else if (auto *editor = visibleWindow<frmEditCards>()) {
            editor->close();
        } else if (auto *wizard = visibleWindow<frmOptions>()) {
            QTest::keyClick(wizard, Qt::Key_Escape);
        } else {
            EXPECT_TRUE(GetParam() != EditCards && GetParam() != Study) << "the command did not run";
        }
        settle();
    }
    void expectStored()
    {
        EXPECT_EQ(storedText(large), written);
        EXPECT_EQ(storedText(small), smallNotes);
        EXPECT_EQ(notes(), written);
        EXPECT_EQ(title(), QStringLiteral("Large"));
        EXPECT_EQ(isEditing(), GetParam() == Edit) << "only Edit Notes begins again";
        EXPECT_TRUE(isOpen());
    }
};

TEST_P(frmNotesCommands, AreGivenByTheirButtonsWhenTheNotesAreStored)
{
    open();
    rewriteNotes(written);
    giveAndCancel([&] { run(static_cast<Command>(GetParam())); });
    expectStored();
}

INSTANTIATE_TEST_SUITE_P(Each, frmNotesCommands, testing::Range(0, 9),
                         [](const auto &row) { return "Image" + std::to_string(row.param); });

class frmNotesLetters : public frmNotesCommands
{
};

TEST_P(frmNotesLetters, GiveTheirCommandsWhenTheNotesAreStored)
{
    static const std::map<int, Qt::Key> letters{{Create, Qt::Key_N},    {Rename, Qt::Key_R}, {Delete, Qt::Key_D},
                                                {EditCards, Qt::Key_F}, {Study, Qt::Key_S},  {Edit, Qt::Key_E}};
    open();
    rewriteNotes(written);
    tabs().setFocus();
    giveAndCancel([&] { key(letters.at(GetParam()), Qt::AltModifier); });
    expectStored();
}

INSTANTIATE_TEST_SUITE_P(Each, frmNotesLetters, testing::Values(0, 1, 2, 3, 4, 8),
                         [](const auto &row) { return "Image" + std::to_string(row.param); });

TEST_F(frmNotesEditing, EscapeOutsideTheNotesStoresThemOnlyWhenTheWindowCloses)
{
    open();
    rewriteNotes(written);
    tabs().setFocus();
    DialogAnswers answers;
    answers.press(QMessageBox::Cancel).press(QMessageBox::No);
    key(Qt::Key_Escape);
    EXPECT_TRUE(isEditing());
    EXPECT_EQ(storedText(large), largeNotes);
    key(Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(storedText(large), written);
}

TEST_F(frmNotesEditing, InTheNotesThemselvesTheLettersOfTheCommandsAreTheEditors)
{
    open();
    rewriteNotes(written);
    const DialogAnswers none;
    for (const int letter : {Qt::Key_N, Qt::Key_R, Qt::Key_D, Qt::Key_S, Qt::Key_E, Qt::Key_F}) {
        key(letter, Qt::AltModifier);
        EXPECT_TRUE(isEditing());
        EXPECT_EQ(notes(), written);
    }
    EXPECT_EQ(visibleWindow<frmEditCards>(), nullptr);
    EXPECT_EQ(visibleWindow<frmOptions>(), nullptr);
    EXPECT_EQ(storedText(large), largeNotes);
}

TEST_F(frmNotesEditing, ACommandShowsTheTopicAnew)
{
    open();
    rewriteNotes(written);
    addCards(file, large, 1);
    run(Edit);
    EXPECT_EQ(status().text(), QStringLiteral("This topic has 13 flash cards."));
    EXPECT_EQ(notes(), written);
    EXPECT_EQ(box().textCursor().position(), 0);
    EXPECT_FALSE(box().canUndo()) << "editing began again with what is stored";
}

TEST_F(frmNotesEditing, DeletingATopicWhileItsNotesAreEditedLeavesTheOthersNotes)
{
    open();
    rewriteNotes(written);
    remove(QMessageBox::Yes);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(title(), QStringLiteral("Small & tidy"));
    EXPECT_EQ(notes(), smallNotes);
    EXPECT_EQ(storedText(small), smallNotes);
    EXPECT_EQ(storedText(empty), QStringLiteral("Empty notes..."));
}

TEST_F(frmNotesEditing, CreatingATopicWhileEditingLeavesTheTextInItsOwn)
{
    open();
    rewriteNotes(written);
    create(QStringLiteral("Fourth"));
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(storedText(large), written);
    EXPECT_EQ(notes(), QStringLiteral("Fourth notes..."));
}

TEST_F(frmNotesEditing, RenamingATopicWhileEditingKeepsTheText)
{
    open();
    rewriteNotes(written);
    rename(QStringLiteral("Huge"));
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(storedText(large), written);
    EXPECT_EQ(notes(), written);
    EXPECT_EQ(title(), QStringLiteral("Huge"));
}

// Leaving by a tab.

TEST_F(frmNotesEditing, ATabClickStoresTheTextUnderTheNewTopicAndTheOldOneKeepsItsNotes)
{
    open();
    rewriteNotes(written);
    clickTab(1);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(title(), QStringLiteral("Small & tidy"));
    EXPECT_EQ(notes(), written);
    EXPECT_EQ(status().text(), QStringLiteral("This topic has 4 flash cards."));
    EXPECT_EQ(storedText(small), written);
    EXPECT_EQ(storedText(large), largeNotes);
    clickTab(0);
    EXPECT_EQ(notes(), largeNotes);
}

TEST_F(frmNotesEditing, AClickOnTheSelectedTabStoresTheTextUnderItsTopic)
{
    open();
    rewriteNotes(written);
    clickTab(0);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(notes(), written);
    EXPECT_EQ(storedText(large), written);
}

TEST_F(frmNotesEditing, AnArrowKeyOnTheTabsIsAClickOnTheNext)
{
    open();
    rewriteNotes(written);
    tabs().setFocus();
    key(Qt::Key_Right);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(storedText(small), written);
    EXPECT_EQ(storedText(large), largeNotes);
}

// Closing.

TEST_F(frmNotesEditing, ClosingWithNoStoresTheText)
{
    open();
    rewriteNotes(written);
    DialogAnswers answers;
    answers.press(QMessageBox::No);
    window->close();
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(storedText(large), written);
    EXPECT_EQ(storedText(small), smallNotes);
}

TEST_F(frmNotesEditing, ClosingWithNoOutsideEditingWritesNothing)
{
    open();
    const std::string before = fileBytes();
    DialogAnswers answers;
    answers.press(QMessageBox::No);
    window->close();
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(fileBytes() == before);
}

TEST_F(frmNotesEditing, CancellingTheCloseLeavesTheEditAsItWas)
{
    open();
    rewriteNotes(written);
    key(Qt::Key_Left);
    const int caret = box().textCursor().position();
    DialogAnswers answers;
    answers.press(QMessageBox::Cancel);
    window->close();
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(isEditing());
    EXPECT_EQ(notes(), written);
    EXPECT_EQ(box().textCursor().position(), caret);
    EXPECT_EQ(storedText(large), largeNotes);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_NE(notes(), written) << "what was typed can still be undone";
}

TEST_F(frmNotesEditing, TheExitButtonStoresBeforeItAsks)
{
    open();
    rewriteNotes(written);
    DialogAnswers answers;
    answers.press(QMessageBox::Cancel);
    run(Exit);
    EXPECT_EQ(answers.last().title, QStringLiteral("Stop Studying"));
    EXPECT_TRUE(isOpen());
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(storedText(large), written);
}

TEST_F(frmNotesEditing, AnotherSubjectsFirstTopicTakesTheOpenEdit)
{
    const std::filesystem::path other = folder.file("Chemistry.crl");
    SubjectStore::create(other);
    const int acids = addTopic(other, "Acids");
    const int bases = addTopic(other, "Bases");
    offer(other);
    open();
    clickTab(1);
    rewriteNotes(written);
    frmOpen *chooser = askForAnother();
    EXPECT_TRUE(isEditing()) << "nothing is stored before a subject is chosen";
    click(*chooser, "Image1(2)");
    settle();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Cramlet: Chemistry"));
    EXPECT_EQ(tabs().count(), 2);
    EXPECT_EQ(tabs().currentIndex(), 0);
    EXPECT_EQ(title(), QStringLiteral("Acids"));
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(notes(), written);
    EXPECT_EQ(plainTextOf(readTopic(other, acids).notes), written);
    EXPECT_EQ(plainTextOf(readTopic(other, bases).notes), QStringLiteral("Bases notes..."));
    EXPECT_EQ(storedText(large), largeNotes);
    EXPECT_EQ(storedText(small), smallNotes);
}

TEST_F(frmNotesEditing, ASubjectWithoutTopicsEndsTheOpenEdit)
{
    const std::filesystem::path other = folder.file("New.crl");
    SubjectStore::create(other);
    offer(other);
    open();
    rewriteNotes(written);
    click(*askForAnother(), "Image1(2)");
    settle();
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(tabs().count(), 0);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(title(), QStringLiteral("Create Topic..."));
    EXPECT_EQ(notes(), QString());
    EXPECT_TRUE(listTopics(other).empty());
    EXPECT_EQ(storedText(large), largeNotes);
}

TEST_F(frmNotesEditing, ACancelledChooserReloadsTheSubjectSoThatItsFirstTopicTakesTheOpenEdit)
{
    open();
    clickTab(1);
    rewriteNotes(written);
    click(*askForAnother(), "Image1(3)");
    settle();
    EXPECT_TRUE(isOpen());
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(tabs().currentIndex(), 0);
    EXPECT_EQ(storedText(large), written);
    EXPECT_EQ(storedText(small), smallNotes);
}

// The tools.

TEST_F(frmNotesEditing, TheToolsShowTheFormatAtTheSelectionFromTheStart)
{
    saveNotes(file, large, "{\\rtf1{\\fonttbl{\\f0 Comic Sans MS;}}\\f0\\fs36\\b\\ul bold\\par}");
    open();
    run(Edit);
    EXPECT_TRUE(control<QAbstractButton>(*window, "Toolbar2(7)").isChecked());
    EXPECT_FALSE(control<QAbstractButton>(*window, "Toolbar2(8)").isChecked());
    EXPECT_TRUE(control<QAbstractButton>(*window, "Toolbar2(9)").isChecked());
    EXPECT_EQ(control<QComboBox>(*window, "Combo2").currentText(), QStringLiteral("18"));
    EXPECT_FALSE(control<QAbstractButton>(*window, "Toolbar1(1)").isEnabled()) << "nothing is selected to cut";
    EXPECT_FALSE(control<QAbstractButton>(*window, "Toolbar1(5)").isEnabled()) << "nothing was done to undo";
}

TEST_F(frmNotesEditing, TheFormatToolsActOnTheNotes)
{
    open();
    rewriteNotes(written);
    key(Qt::Key_A, Qt::ControlModifier);
    for (const char *tool : {"Toolbar2(7)", "Toolbar2(8)", "Toolbar2(9)", "Toolbar2(13)", "Toolbar2(11)"}) {
        click(*window, tool);
    }
    EXPECT_TRUE(isEditing());
    key(Qt::Key_Escape);

    RichTextBox stored;
    stored.setRtf(storedNotes(large));
    stored.selectAll();
    EXPECT_EQ(stored.plainText(), written);
    EXPECT_EQ(stored.selBold(), true);
    EXPECT_EQ(stored.selItalic(), true);
    EXPECT_EQ(stored.selUnderline(), true);
    EXPECT_EQ(stored.selBullet(), true);
    EXPECT_EQ(stored.selAlignment(), TextAlignment::Center);
}

TEST_F(frmNotesEditing, TheEditToolsActOnTheNotes)
{
    open();
    rewriteNotes(written);
    key(Qt::Key_A, Qt::ControlModifier);
    click(*window, "Toolbar1(1)");
    EXPECT_EQ(notes(), QString());
    click(*window, "Toolbar1(3)");
    click(*window, "Toolbar1(3)");
    EXPECT_EQ(notes().count(written), 2);
    click(*window, "Toolbar1(5)");
    EXPECT_EQ(notes().count(written), 1);
    key(Qt::Key_Escape);
    EXPECT_EQ(storedText(large).count(written), 1);
}

TEST_F(frmNotesEditing, ASizeChosenInItsBoxIsTheNotes)
{
    open();
    rewriteNotes(written);
    key(Qt::Key_A, Qt::ControlModifier);
    auto &sizes = control<QComboBox>(*window, "Combo2");
    sizes.setFocus();
    const double before = box().selFontSize().value();
    QTest::keyClick(&sizes, Qt::Key_Down);
    EXPECT_GT(box().selFontSize().value(), before);
    EXPECT_EQ(QString::number(box().selFontSize().value()), sizes.currentText());
    EXPECT_TRUE(isEditing());
}

} // namespace
