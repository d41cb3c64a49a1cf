#include "forms/frmOpen/frmOpen.h"
#include "tests/forms/NotesTest.h"
#include "tests/forms/SubjectTrouble.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <utility>

namespace {

const QString written = QStringLiteral("Rome was not built in a day.");
const QString largeNotes = QStringLiteral("Large notes...");
const QString smallNotes = QStringLiteral("Small & tidy notes...");

class frmNotesFailures : public NotesTest
{
protected:
    void editLarge()
    {
        open();
        rewriteNotes(written);
    }
    void expectReport(const SeenMessage &report)
    {
        EXPECT_EQ(report.icon, QMessageBox::Critical) << report.text.toStdString();
        EXPECT_EQ(report.title, QStringLiteral("Run-time error"));
        EXPECT_TRUE(report.text.contains(QString::fromStdString(file.string()))) << report.text.toStdString();
    }
    void expectStillEditing()
    {
        EXPECT_TRUE(isOpen());
        EXPECT_TRUE(isEditing());
        EXPECT_EQ(notes(), written);
    }
};

// Every command that writes, with every trouble.

struct Cause
{
    const char *name;
    std::unique_ptr<Trouble> (*begin)(const std::filesystem::path &subject);
    const char *report; ///< what the learner reads of it
};

template <class Kind>
std::unique_ptr<Trouble> begin(const std::filesystem::path &subject)
{
    return std::make_unique<Kind>(subject);
}

constexpr Cause causes[] = {
    {"Locked", begin<Locked>, "Another program is busy"},
    {"FullDisk", begin<FullDisk>, "The disk is full"},
    {"MovedAway", begin<MovedAway>, "cannot be found"},
};

enum class Way { Create, Rename, Delete, Escape, Button, TabClick, Close, Exit };

struct Given
{
    const char *name;
    Way way;
    bool edits; ///< whether notes are being edited
};

constexpr Given ways[] = {
    {"Creating", Way::Create, false},       {"Renaming", Way::Rename, false},
    {"Deleting", Way::Delete, false},       {"SavingByEscape", Way::Escape, true},
    {"SavingByAButton", Way::Button, true}, {"SavingByATabClick", Way::TabClick, true},
    {"SavingByClosing", Way::Close, true},  {"SavingByTheExitButton", Way::Exit, true},
};

class frmNotesTroubles : public frmNotesFailures, public testing::WithParamInterface<std::tuple<Given, Cause>>
{
protected:
    /// Gives the command, and answers what it asks on the way to storing.
    void give(DialogAnswers &answers)
    {
        switch (way()) {
        case Way::Create:
            answers.act(answer(QStringLiteral("New")));
            answerReport(answers);
            run(Create);
            break;
        case Way::Rename:
            answers.act(answer(QStringLiteral("Renamed")));
            answerReport(answers);
            run(Rename);
            break;
        case Way::Delete:
            answers.press(QMessageBox::Yes);
            answerReport(answers);
            run(Delete);
            break;
        case Way::Escape:
            answerReport(answers);
            key(Qt::Key_Escape);
            break;
        case Way::Button:
            answerReport(answers);
            run(Edit);
            break;
        case Way::TabClick:
            answerReport(answers);
            clickTab(1);
            break;
        case Way::Close:
            answers.press(QMessageBox::No);
            answerReport(answers);
            window->close();
            break;
        case Way::Exit:
            if (!m_fails) {
                answers.press(QMessageBox::No); // asked when the notes are stored
            }
            answerReport(answers);
            run(Exit);
            break;
        }
    }
    void answerReport(DialogAnswers &answers) const
    {
        if (m_fails) {
            answers.press(QMessageBox::Ok);
        }
    }
    void expectNothingStored()
    {
        EXPECT_EQ(storedNames(),
                  (QStringList{QStringLiteral("Large"), QStringLiteral("Small & tidy"), QStringLiteral("Empty")}));
        EXPECT_EQ(storedText(large), largeNotes);
        EXPECT_EQ(storedText(small), smallNotes);
        EXPECT_EQ(countCards(file, cardsOfTopic(large)), 12);
        EXPECT_EQ(tabs().count(), 3);
        EXPECT_EQ(tabs().keyedCaption(0), QStringLiteral("Large"));
    }
    void expectDone()
    {
        switch (way()) {
        case Way::Create: EXPECT_EQ(storedNames().constLast(), QStringLiteral("New")); break;
        case Way::Rename: EXPECT_EQ(storedNames().constFirst(), QStringLiteral("Renamed")); break;
        case Way::Delete:
            EXPECT_EQ(storedNames(), (QStringList{QStringLiteral("Small & tidy"), QStringLiteral("Empty")}));
            EXPECT_EQ(countCards(file, cardsOfTopic(large)), 0);
            break;
        case Way::TabClick:
            EXPECT_EQ(storedText(small), written);
            EXPECT_EQ(storedText(large), largeNotes);
            EXPECT_FALSE(isEditing());
            EXPECT_EQ(title(), QStringLiteral("Small & tidy"));
            break;
        case Way::Escape:
        case Way::Button:
            EXPECT_EQ(storedText(large), written);
            EXPECT_EQ(isEditing(), way() == Way::Button);
            break;
        case Way::Close:
        case Way::Exit:
            EXPECT_EQ(storedText(large), written);
            EXPECT_FALSE(isOpen());
            break;
        }
    }
    [[nodiscard]] static Way way() { return std::get<Given>(GetParam()).way; }

    bool m_fails = false;
};

TEST_P(frmNotesTroubles, AreReportedLoseNothingAndAreOverWhenTheCauseIsGone)
{
    const auto &[given, cause] = GetParam();
    open();
    if (given.edits) {
        rewriteNotes(written);
    }
    SeenMessage report;
    {
        DialogAnswers answers;
        const auto trouble = cause.begin(file);
        m_fails = true;
        give(answers);
        m_fails = false;
        report = answers.last();
    }
    expectReport(report);
    EXPECT_TRUE(report.text.contains(QString::fromLatin1(cause.report))) << report.text.toStdString();
    ASSERT_TRUE(isOpen());
    EXPECT_EQ(isEditing(), given.edits);
    EXPECT_EQ(notes(), given.edits ? written : largeNotes);
    EXPECT_EQ(title(), QStringLiteral("Large"));
    expectNothingStored();

    DialogAnswers answers;
    give(answers);
    expectDone();
}

INSTANTIATE_TEST_SUITE_P(Each, frmNotesTroubles, testing::Combine(testing::ValuesIn(ways), testing::ValuesIn(causes)),
                         [](const auto &row) {
                             return std::string(std::get<Given>(row.param).name) + std::get<Cause>(row.param).name;
                         });

// Leaving without saving.

struct Leaving
{
    const char *name;
    void (*leave)(frmNotes &window);
};

class frmNotesLeaving : public frmNotesFailures, public testing::WithParamInterface<Leaving>
{
protected:
    /// Tries to leave where saving fails: the first time.
    void failOnce()
    {
        editLarge();
        trouble = std::make_unique<Locked>(file);
        DialogAnswers answers;
        if (GetParam().leave == byCloseBox) {
            answers.press(QMessageBox::No);
        }
        answers.press(QMessageBox::Ok);
        GetParam().leave(*window);
        expectReport(answers.last());
        expectStillEditing();
    }
    /// Answers No to the question about another subject, then \p answer.
    void leaveAgain(QMessageBox::StandardButton answer)
    {
        DialogAnswers answers;
        answers.press(QMessageBox::No).press(answer);
        GetParam().leave(*window);
        ASSERT_EQ(answers.seen().size(), 2U);
        EXPECT_EQ(answers.seen().front().title, QStringLiteral("Stop Studying"));
        EXPECT_EQ(answers.last().title, QStringLiteral("Leave Without Saving"));
        EXPECT_EQ(answers.last().icon, QMessageBox::Warning);
        EXPECT_EQ(answers.last().buttons, QMessageBox::Yes | QMessageBox::No);
        EXPECT_TRUE(answers.last().text.contains(QString::fromStdString(file.string())))
            << answers.last().text.toStdString();
    }

    static void byCloseBox(frmNotes &window) { window.close(); }
    static void byExitButton(frmNotes &window) { click(window, commandName(Exit)); }

    std::unique_ptr<Trouble> trouble;

public:
    static constexpr Leaving leavings[] = {{"CloseBox", byCloseBox}, {"ExitButton", byExitButton}};
};

TEST_P(frmNotesLeaving, IsOfferedTheSecondTimeAndNoStays)
{
    failOnce();
    leaveAgain(QMessageBox::No);
    expectStillEditing();
    trouble.reset();
    EXPECT_EQ(storedText(large), largeNotes);
    key(Qt::Key_Escape);
    EXPECT_EQ(storedText(large), written);
}

TEST_P(frmNotesLeaving, IsDoneWithYesAndTheNotesAreAsTheyWere)
{
    failOnce();
    leaveAgain(QMessageBox::Yes);
    EXPECT_FALSE(isOpen());
    trouble.reset();
    EXPECT_EQ(storedText(large), largeNotes);
    EXPECT_NE(setting("Notes", "Width"), QString()) << "the window's size is stored all the same";
}

TEST_P(frmNotesLeaving, IsNoLongerOfferedWhenTheNotesCouldBeStoredMeanwhile)
{
    failOnce();
    trouble.reset();
    key(Qt::Key_Escape);
    ASSERT_FALSE(isEditing());
    run(Edit);
    trouble = std::make_unique<Locked>(file);
    DialogAnswers answers;
    if (GetParam().leave == byCloseBox) {
        answers.press(QMessageBox::No);
    }
    answers.press(QMessageBox::Ok);
    GetParam().leave(*window);
    expectReport(answers.last());
    expectStillEditing();
    trouble.reset();
}

TEST_P(frmNotesLeaving, StoresTheNotesWithoutAnOfferWhenTheCauseIsGone)
{
    failOnce();
    trouble.reset();
    DialogAnswers answers;
    answers.press(QMessageBox::No);
    GetParam().leave(*window);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(storedText(large), written);
}

INSTANTIATE_TEST_SUITE_P(Each, frmNotesLeaving, testing::ValuesIn(frmNotesLeaving::leavings),
                         [](const auto &row) { return row.param.name; });

TEST_F(frmNotesFailures, EscapeAtTheOfferToLeaveStays)
{
    editLarge();
    auto trouble = std::make_unique<Locked>(file);
    DialogAnswers answers;
    answers.press(QMessageBox::No).press(QMessageBox::Ok).press(QMessageBox::No).key(Qt::Key_Escape);
    window->close();
    window->close();
    EXPECT_EQ(answers.last().title, QStringLiteral("Leave Without Saving"));
    expectStillEditing();
}

TEST_F(frmNotesFailures, TheExitButtonStoresBeforeItAsksAlsoAfterAFailure)
{
    editLarge();
    DialogAnswers answers;
    {
        const Locked trouble(file);
        answers.press(QMessageBox::Ok);
        run(Exit);
    }
    answers.press(QMessageBox::Cancel);
    run(Exit);
    EXPECT_EQ(answers.last().title, QStringLiteral("Stop Studying"));
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(storedText(large), written);
    EXPECT_FALSE(isEditing());
}

// Troubles of one command.

TEST_F(frmNotesFailures, ADeletionThatFailedHalfWayIsFinishedByTheNext)
{
    open();
    OtherProgram other(file);
    other.run("CREATE TRIGGER kept BEFORE DELETE ON FlashCards BEGIN SELECT raise(ABORT, 'kept'); END");
    {
        DialogAnswers answers;
        answers.press(QMessageBox::Yes).press(QMessageBox::Ok);
        run(Delete);
        expectReport(answers.last());
    }
    EXPECT_EQ(tabs().count(), 3);
    EXPECT_EQ(countCards(file, cardsOfTopic(large)), 12);
    other.run("DROP TRIGGER kept");
    remove(QMessageBox::Yes);
    EXPECT_EQ(storedNames(), (QStringList{QStringLiteral("Small & tidy"), QStringLiteral("Empty")}));
    EXPECT_EQ(countCards(file, cardsOfTopic(large)), 0);
    EXPECT_EQ(title(), QStringLiteral("Small & tidy"));
}

TEST_F(frmNotesFailures, NotesThatCouldNotBeReadAreNotWrittenOver)
{
    open();
    DialogAnswers answers;
    {
        const Locked trouble(file);
        answers.press(QMessageBox::Ok).press(QMessageBox::Ok);
        clickTab(1);
        EXPECT_EQ(notes(), QString());
        EXPECT_EQ(title(), QStringLiteral("Small & tidy"));
        run(Edit);
        expectReport(answers.last());
        EXPECT_FALSE(isEditing());
    }
    run(Edit);
    EXPECT_TRUE(isEditing());
    EXPECT_EQ(notes(), QStringLiteral("Small & tidy notes..."));
    key(Qt::Key_Escape);
    EXPECT_EQ(storedText(small), QStringLiteral("Small & tidy notes..."));
}

TEST_F(frmNotesFailures, NotesOfATopicThatIsGoneStayInTheBoxUntilAnotherTakesThem)
{
    editLarge();
    deleteTopic(file, large);
    {
        DialogAnswers answers;
        answers.press(QMessageBox::Ok);
        key(Qt::Key_Escape);
        expectReport(answers.last());
    }
    expectStillEditing();
    clickTab(2);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(storedText(empty), written);
}

TEST_F(frmNotesFailures, AnOpenEditThatTheNewSubjectDoesNotTakeStaysOpen)
{
    const std::filesystem::path chemistry = folder.file("Chemistry.crl");
    SubjectStore::create(chemistry);
    const int acids = addTopic(chemistry, "Acids");
    OtherProgram other(chemistry);
    other.run("CREATE TRIGGER kept BEFORE UPDATE ON Topics BEGIN SELECT raise(ABORT, 'kept'); END");
    module->settings.write(QStringLiteral("Recent"),
                           {{QStringLiteral("Name0"), QStringLiteral("Chemistry")},
                            {QStringLiteral("Path0"), QString::fromStdString(chemistry.string())}});
    editLarge();
    {
        DialogAnswers answers;
        answers.press(QMessageBox::Yes).press(QMessageBox::Ok);
        window->close();
        auto *chooser = visibleWindow<frmOpen>();
        ASSERT_NE(chooser, nullptr);
        click(*chooser, "Image1(2)");
        settle();
        EXPECT_EQ(answers.last().icon, QMessageBox::Critical);
        EXPECT_TRUE(answers.last().text.contains(QString::fromStdString(chemistry.string())));
    }
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Cramlet: Chemistry"));
    expectStillEditing();
    EXPECT_EQ(storedText(large), largeNotes);
    box().setFocus();
    other.run("DROP TRIGGER kept");
    key(Qt::Key_Escape);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(plainTextOf(readTopic(chemistry, acids).notes), written);
}

TEST_F(frmNotesFailures, ATopicThatCannotBeReadCanBeWhenTheCauseIsGone)
{
    open();
    {
        const Locked trouble(file);
        DialogAnswers answers;
        answers.press(QMessageBox::Ok);
        clickTab(1);
        expectReport(answers.last());
    }
    EXPECT_EQ(notes(), QString());
    clickTab(1);
    EXPECT_EQ(notes(), smallNotes);
    EXPECT_EQ(title(), QStringLiteral("Small & tidy"));
}

TEST_F(frmNotesFailures, NoCommandLeavesASideFile)
{
    open();
    create(QStringLiteral("New"));
    rename(QStringLiteral("Renamed"));
    rewriteNotes(written);
    key(Qt::Key_Escape);
    remove(QMessageBox::Yes);
    for (const auto &entry : std::filesystem::directory_iterator(file.parent_path())) {
        EXPECT_EQ(entry.path(), file);
    }
}

} // namespace
