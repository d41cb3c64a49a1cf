#include "store/StoreError.h"
#include "tests/forms/EditCardsTest.h"
#include "tests/forms/SubjectTrouble.h"

#include <QSignalSpy>

#include <functional>
#include <memory>
#include <ostream>

namespace {

class frmEditCardsFailures : public EditCardsTest
{
protected:
    void expectReport(const SeenMessage &report)
    {
        EXPECT_EQ(report.icon, QMessageBox::Critical) << report.text.toStdString();
        EXPECT_EQ(report.title, QStringLiteral("Run-time error"));
        EXPECT_TRUE(report.text.contains(QString::fromStdString(file.string()))) << report.text.toStdString();
    }

    void expectLeavingQuestion(const SeenMessage &question)
    {
        EXPECT_EQ(question.title, QStringLiteral("Leave Without Saving"));
        EXPECT_EQ(question.icon, QMessageBox::Warning);
        EXPECT_EQ(question.buttons, QMessageBox::Yes | QMessageBox::No);
        EXPECT_TRUE(question.text.contains(QString::fromStdString(file.string()))) << question.text.toStdString();
    }

    /// Another program deletes a card of the topic, counted from 1.
    void deleteElsewhere(int topic, int card) const
    {
        SubjectStore other(file);
        CardSet cards = other.openRecordSet(cardsOfTopic(topic));
        cards.setAbsolutePosition(card - 1);
        cards.remove();
    }
};

// Every command while the file cannot be written, on the second of four cards.

/// What a command has come to when it succeeds after all.
struct CommandCase
{
    const char *name;
    int command;
    const char *place;
};

void PrintTo(const CommandCase &row, std::ostream *out)
{
    *out << row.name;
}

class EveryCommand : public frmEditCardsFailures, public testing::WithParamInterface<CommandCase>
{
protected:
    void SetUp() override
    {
        frmEditCardsFailures::SetUp();
        open(small);
        run(Next);
        type(Back, "typed");
    }

    void give()
    {
        if (GetParam().command == Delete) {
            dialogs.press(QMessageBox::Yes);
        }
        run(static_cast<Command>(GetParam().command));
    }

    template <class Cause>
    void failAndTryAgain()
    {
        {
            const Cause cause(file);
            if (GetParam().command == Delete) {
                dialogs.press(QMessageBox::Yes);
            }
            dialogs.press(QMessageBox::Ok);
            run(static_cast<Command>(GetParam().command));
            ASSERT_FALSE(dialogs.seen().empty());
            expectReport(dialogs.last());
            ASSERT_TRUE(isOpen());
            EXPECT_EQ(caption(), "Edit Flash Cards: Small & tidy (Card 2 of 4)");
            EXPECT_EQ(shown(), "front 2|typed");
            EXPECT_TRUE(hasFocus(Back));
        }
        EXPECT_EQ(stored(small), untouched(4));
        const std::size_t reports = dialogs.seen().size();
        give();
        EXPECT_EQ(dialogs.seen().size(), reports + (GetParam().command == Delete ? 1 : 0));
        expectDone();
    }

    void expectDone()
    {
        const Texts saved = with(untouched(4), 2, "front 2|typed");
        switch (GetParam().command) {
        case New: EXPECT_EQ(stored(small), with(saved, "|")); break;
        case Delete: EXPECT_EQ(stored(small), without(saved, 2)); break;
        default: EXPECT_EQ(stored(small), saved);
        }
        if (GetParam().command == Exit) {
            EXPECT_FALSE(isOpen());
        } else {
            ASSERT_TRUE(isOpen());
            EXPECT_EQ(place(), GetParam().place);
        }
    }
};

TEST_P(EveryCommand, KeepsTheTextWhileAnotherProgramHoldsTheFileAndSucceedsAfterwards)
{
    failAndTryAgain<Locked>();
}

TEST_P(EveryCommand, KeepsTheTextWhileTheDiskIsFullAndSucceedsAfterwards)
{
    failAndTryAgain<FullDisk>();
}

TEST_P(EveryCommand, KeepsTheTextWhileTheFileIsElsewhereAndSucceedsWhenItIsBack)
{
    failAndTryAgain<MovedAway>();
}

TEST_P(EveryCommand, KeepsTheTextWhileTheFileIsDeletedAndWritesIntoTheCopyThatIsBroughtBack)
{
    failAndTryAgain<Deleted>();
}

INSTANTIATE_TEST_SUITE_P(frmEditCards, EveryCommand,
                         testing::Values(CommandCase{"First", 0, "Card 1 of 4"},
                                         CommandCase{"Previous", 1, "Card 1 of 4"},
                                         CommandCase{"New", 2, "Card 5 of 5"}, CommandCase{"Exit", 3, ""},
                                         CommandCase{"Delete", 4, "Card 1 of 3"}, CommandCase{"Next", 5, "Card 3 of 4"},
                                         CommandCase{"Last", 6, "Card 4 of 4"}),
                         [](const auto &row) { return std::string(row.param.name); });

// Cards that another program deletes.

class EveryCommandOnACardDeletedElsewhere : public EveryCommand
{
};

TEST_P(EveryCommandOnACardDeletedElsewhere, SaysSoKeepsTheTextAndThenStoresItAsANewCard)
{
    deleteElsewhere(small, 2);
    expectReport(heard([this] { run(static_cast<Command>(GetParam().command)); }));
    ASSERT_TRUE(isOpen());
    EXPECT_EQ(place(), "Card 0 of 3");
    EXPECT_EQ(shown(), "front 2|typed");
    EXPECT_EQ(stored(small), without(untouched(4), 2));

    give();
    ASSERT_GE(stored(small).size(), 4U);
    EXPECT_EQ(stored(small).at(3), "front 2|typed");
    if (GetParam().command == Exit) {
        EXPECT_FALSE(isOpen());
    } else {
        ASSERT_TRUE(isOpen());
        EXPECT_EQ(place(), GetParam().place);
        run(Exit);
    }
    EXPECT_EQ(stored(small), with(without(untouched(4), 2), "front 2|typed"));
}

INSTANTIATE_TEST_SUITE_P(frmEditCards, EveryCommandOnACardDeletedElsewhere,
                         testing::Values(CommandCase{"First", 0, "Card 1 of 4"},
                                         CommandCase{"Previous", 1, "Card 3 of 4"},
                                         CommandCase{"New", 2, "Card 5 of 5"}, CommandCase{"Exit", 3, ""},
                                         CommandCase{"Next", 5, "Card 5 of 5"}, CommandCase{"Last", 6, "Card 4 of 4"}),
                         [](const auto &row) { return std::string(row.param.name); });

TEST_F(frmEditCardsFailures, DeletingACardThatIsGoneAlreadyLeavesTheOthersAlone)
{
    open(small);
    run(Next);
    deleteElsewhere(small, 2);
    dialogs.press(QMessageBox::Yes).press(QMessageBox::Ok);
    run(Delete);
    expectReport(dialogs.last());
    deleteCard();
    EXPECT_EQ(place(), "Card 1 of 3");
    EXPECT_EQ(shown(), "front 1|back 1");
    EXPECT_EQ(stored(small), without(untouched(4), 2));
}

TEST_F(frmEditCardsFailures, ANeighbourThatIsGoneIsReportedOnceAndLeftOutAfterwards)
{
    open(small);
    type(Back, "typed");
    deleteElsewhere(small, 2);
    expectReport(heard([this] { run(Next); }));
    EXPECT_EQ(place(), "Card 1 of 3");
    EXPECT_EQ(shown(), "front 1|typed");
    EXPECT_EQ(stored(small).front(), "front 1|typed") << "it was stored before the neighbour was looked for";
    run(Next);
    EXPECT_EQ(place(), "Card 2 of 3");
    EXPECT_EQ(shown(), "front 3|back 3");
    EXPECT_EQ(stored(small), with(without(untouched(4), 2), 1, "front 1|typed"));
}

TEST_F(frmEditCardsFailures, ABlankCardBesideOneThatIsGoneLeavesAnEmptyEditorAndTheOthersAlone)
{
    open(small);
    goTo(3);
    typeBoth("", "");
    deleteElsewhere(small, 2);
    expectReport(heard([this] { run(Next); }));
    ASSERT_TRUE(isOpen());
    EXPECT_EQ(shown(), "|");
    EXPECT_EQ(stored(small), (Texts{"front 1|back 1", "front 4|back 4"}));
    type(Front, "typed");
    run(Exit);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(stored(small), (Texts{"front 1|back 1", "front 4|back 4", "typed|"}));
}

TEST_F(frmEditCardsFailures, WhenAllCardsAreDeletedElsewhereTheTextStillBecomesACard)
{
    open(small);
    type(Front, "typed");
    OtherProgram(file).run("DELETE FROM FlashCards");
    expectReport(heard([this] { run(Next); }));
    EXPECT_EQ(place(), "Card 0 of 0");
    EXPECT_EQ(shown(), "typed|back 1");
    run(Next);
    EXPECT_EQ(place(), "Card 2 of 2");
    EXPECT_EQ(stored(small), (Texts{"typed|back 1", "|"}));
}

// A command that gets half way.

TEST_F(frmEditCardsFailures, WhatWasStoredBeforeTheFailureIsNotStoredTwice)
{
    open(small);
    type(Back, "typed");
    OtherProgram other(file);
    other.run("CREATE TRIGGER full BEFORE INSERT ON FlashCards BEGIN SELECT RAISE(ABORT, 'no more cards'); END");
    expectReport(heard([this] { run(New); }));
    EXPECT_EQ(place(), "Card 1 of 4");
    EXPECT_EQ(shown(), "front 1|typed");
    EXPECT_EQ(stored(small), with(untouched(4), 1, "front 1|typed"));
    other.run("DROP TRIGGER full");
    run(New);
    EXPECT_EQ(place(), "Card 5 of 5");
    EXPECT_EQ(shown(), "|");
    EXPECT_EQ(stored(small), with(with(untouched(4), 1, "front 1|typed"), "|"));
}

TEST_F(frmEditCardsFailures, ABlankCardThatCannotBeDeletedStaysUntilItCan)
{
    open(small);
    goTo(2);
    typeBoth("", "");
    OtherProgram other(file);
    other.run("CREATE TRIGGER kept BEFORE DELETE ON FlashCards BEGIN SELECT RAISE(ABORT, 'kept'); END");
    expectReport(heard([this] { run(Next); }));
    EXPECT_EQ(place(), "Card 2 of 4");
    EXPECT_EQ(shown(), "|");
    EXPECT_EQ(stored(small), untouched(4));
    other.run("DROP TRIGGER kept");
    run(Next);
    EXPECT_EQ(stored(small), without(untouched(4), 2));
    EXPECT_EQ(shown(), "front 3|back 3");
}

TEST_F(frmEditCardsFailures, TheTopicsOnlyBlankCardThatCannotBeReplacedLeavesAnEmptyEditor)
{
    open(empty);
    OtherProgram other(file);
    other.run("CREATE TRIGGER full BEFORE INSERT ON FlashCards BEGIN SELECT RAISE(ABORT, 'no more cards'); END");
    expectReport(heard([this] { run(Next); }));
    EXPECT_EQ(place(), "Card 0 of 0");
    EXPECT_EQ(stored(empty), Texts{});
    type(Front, "typed");
    expectReport(heard([this] { run(Next); }));
    EXPECT_EQ(shown(), "typed|");
    other.run("DROP TRIGGER full");
    run(Next);
    EXPECT_EQ(stored(empty), (Texts{"typed|", "|"}));
}

// Another file in the same place.

TEST_F(frmEditCardsFailures, AnotherSubjectInTheFilesPlaceLosesNoCardToTheText)
{
    open(small);
    run(Next);
    type(Back, "typed");
    const std::filesystem::path other = folder.file("other.crl");
    std::filesystem::copy_file(file, other);
    {
        SubjectStore store(other);
        CardSet cards = store.openRecordSet(cardsOfTopic(small));
        for (; !cards.isEndOfSet(); cards.moveNext()) {
            cards.edit();
            cards.setText(CardField::Front, rtfOf("other"));
            cards.update();
        }
    }
    std::filesystem::rename(other, file);
    run(Exit);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(stored(small), (Texts{"other|back 1", "other|back 2", "other|back 3", "other|back 4", "front 2|typed"}));
}

TEST_F(frmEditCardsFailures, ACopyInTheFilesPlaceIsWrittenWithoutAWord)
{
    open(small);
    run(Next);
    type(Back, "typed");
    {
        const Deleted meanwhile(file);
    }
    run(Next);
    EXPECT_EQ(place(), "Card 3 of 4");
    EXPECT_EQ(stored(small), with(untouched(4), 2, "front 2|typed"));
}

TEST_F(frmEditCardsFailures, ACardThatWasJustStoredIsKnownAgainInACopy)
{
    open(small);
    type(Back, "typed");
    heard([this] { run(First); });
    {
        const Deleted meanwhile(file);
    }
    type(Back, "typed again");
    run(Next);
    EXPECT_EQ(stored(small), with(untouched(4), 1, "front 1|typed again"));
}

TEST_F(frmEditCardsFailures, AFileThatIsNoSubjectInTheFilesPlaceIsReportedAndLeftAlone)
{
    open(small);
    type(Back, "typed");
    {
        const MovedAway meanwhile(file);
        QFile stranger(QString::fromStdString(file.string()));
        ASSERT_TRUE(stranger.open(QFile::WriteOnly));
        stranger.write("a letter");
        stranger.close();
        expectReport(heard([this] { run(Next); }));
        EXPECT_EQ(shown(), "front 1|typed");
        ASSERT_TRUE(stranger.open(QFile::ReadOnly));
        EXPECT_EQ(stranger.readAll(), "a letter");
    }
    run(Next);
    EXPECT_EQ(stored(small), with(untouched(4), 1, "front 1|typed"));
}

// What stores nothing needs no file.

TEST_F(frmEditCardsFailures, AMessageThatStoresNothingComesWithoutAFileToo)
{
    open(small);
    const MovedAway meanwhile(file);
    EXPECT_EQ(heard([this] { run(Previous); }).title, QStringLiteral("First Flash Card"));
    EXPECT_EQ(heard([this] { run(Delete); }, QMessageBox::No).title, QStringLiteral("Delete Flash Card"));
    EXPECT_EQ(caption(), "Edit Flash Cards: Small & tidy (Card 1 of 4)");
}

// Closing.

class ClosingTheEditor : public frmEditCardsFailures
{
protected:
    void SetUp() override
    {
        frmEditCardsFailures::SetUp();
        open(small);
        run(Next);
        type(Back, "typed");
    }

    /// The subject is away, and a first attempt to close has been reported.
    void failOnce()
    {
        away = std::make_unique<MovedAway>(file);
        expectReport(heard([this] { window->close(); }));
        ASSERT_TRUE(isOpen());
    }

    void expectStays()
    {
        EXPECT_TRUE(isOpen());
        EXPECT_EQ(shown(), "front 2|typed");
        EXPECT_EQ(place(), "Card 2 of 4");
    }

    void TearDown() override
    {
        away.reset();
        frmEditCardsFailures::TearDown();
    }

    std::unique_ptr<MovedAway> away;
};

TEST_F(ClosingTheEditor, FailsWithAReportAndTheWindowStaysHoweverItIsClosed)
{
    const std::function<void()> ways[] = {[this] { window->close(); }, [this] { run(Exit); },
                                          [this] { key(Qt::Key_Escape); }};
    for (const auto &close : ways) {
        {
            const MovedAway meanwhile(file);
            expectReport(heard(close));
            expectStays();
            EXPECT_TRUE(setting("EditCards", "Width").isEmpty()) << "the window is not closed";
        }
        close();
        EXPECT_FALSE(isOpen());
        settle();
        EXPECT_EQ(stored(small).at(1), "front 2|typed");
        open(small);
        run(Next);
        module->settings.write(QStringLiteral("EditCards"), QStringLiteral("Width"), QString());
    }
}

TEST_F(ClosingTheEditor, ASecondTimeAsksAndNoStays)
{
    failOnce();
    dialogs.act([this](QWidget &dialog) {
        const auto *box = qobject_cast<QMessageBox *>(&dialog);
        ASSERT_NE(box, nullptr);
        ASSERT_NE(box->defaultButton(), nullptr);
        EXPECT_EQ(box->standardButton(box->defaultButton()), QMessageBox::No);
        EXPECT_EQ(dialog.parentWidget(), window);
        QTest::mouseClick(box->button(QMessageBox::No), Qt::LeftButton);
    });
    run(Exit);
    ASSERT_EQ(dialogs.seen().size(), 2U);
    expectLeavingQuestion(dialogs.last());
    expectStays();
}

TEST_F(ClosingTheEditor, ASecondTimeAsksAndYesLeavesWithoutSaving)
{
    failOnce();
    const QSignalSpy closed(window, &frmEditCards::closed);
    expectLeavingQuestion(heard([this] { run(Exit); }, QMessageBox::Yes));
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(closed.count(), 1);
    settle();
    EXPECT_TRUE(window.isNull());
    EXPECT_FALSE(setting("EditCards", "Width").isEmpty());
    away.reset();
    EXPECT_EQ(stored(small), untouched(4));
}

TEST_F(ClosingTheEditor, ASecondTimeSavesAndClosesIfTheCauseIsGone)
{
    failOnce();
    away.reset();
    run(Exit);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(dialogs.seen().size(), 1U) << "nothing to ask";
    EXPECT_EQ(stored(small), with(untouched(4), 2, "front 2|typed"));
}

TEST_F(ClosingTheEditor, AfterNoTheEditorGoesOnAsBefore)
{
    failOnce();
    heard([this] { run(Exit); }, QMessageBox::No);
    away.reset();
    run(Next);
    EXPECT_EQ(place(), "Card 3 of 4");
    EXPECT_EQ(stored(small), with(untouched(4), 2, "front 2|typed"));
    type(Front, "more");
    run(Exit);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(stored(small).at(2), "more|back 3");
}

TEST_F(ClosingTheEditor, WithoutACardAndWithoutTextNothingHasToBeStored)
{
    typeBoth("", "");
    OtherProgram(file).run("DELETE FROM FlashCards");
    expectReport(heard([this] { run(Next); }));
    EXPECT_EQ(place(), "Card 0 of 0");
    run(Exit);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(stored(small), Texts{});
}

// Opening.

TEST_F(frmEditCardsFailures, AnEmptyTopicOfASubjectThatCannotBeWrittenThrowsAndOpensLater)
{
    const auto windows = QApplication::allWidgets().size();
    {
        const FullDisk full(file);
        EXPECT_THROW(make(empty, QStringLiteral("Empty")), StoreError);
    }
    EXPECT_EQ(QApplication::allWidgets().size(), windows);
    EXPECT_EQ(stored(empty), Texts{});
    open(empty);
    EXPECT_EQ(place(), "Card 1 of 1");
}

TEST_F(frmEditCardsFailures, ALockedSubjectThrowsAndOpensLater)
{
    {
        const Locked meanwhile(file);
        EXPECT_THROW(make(small, QStringLiteral("Small")), StoreError);
    }
    open(small);
    EXPECT_EQ(place(), "Card 1 of 4");
}

TEST_F(frmEditCardsFailures, TheOpenEditorKeepsNoOtherProgramFromWriting)
{
    open(small);
    run(Next);
    type(Back, "typed");
    const Locked other(file); // fails if the editor holds a lock
    EXPECT_EQ(shown(), "front 2|typed");
}

} // namespace
