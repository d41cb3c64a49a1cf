#include "tests/forms/FlashCardTest.h"
#include "tests/forms/SubjectTrouble.h"

#include <QSignalSpy>

#include <memory>
#include <ostream>

namespace {

class frmFlashCardFailures : public FlashCardTest
{
protected:
    void expectReport(const SeenMessage &report)
    {
        EXPECT_EQ(report.icon, QMessageBox::Critical) << report.text.toStdString();
        EXPECT_EQ(report.title, QStringLiteral("Run-time error"));
        EXPECT_TRUE(report.text.contains(QString::fromStdString(file.string()))) << report.text.toStdString();
    }

    void shuffle()
    {
        dialogs.press(QMessageBox::Yes);
        run(Shuffle);
    }
};

// Writing while the file cannot be written.

class frmFlashCardTroubles : public frmFlashCardFailures, public testing::WithParamInterface<Cause>
{
protected:
    [[nodiscard]] std::unique_ptr<Trouble> trouble() const { return GetParam().begin(file); }

    /// Gives the command, which is to fail and to leave everything as the learner saw it.
    template <class Give>
    void expectFailure(Give give)
    {
        const std::string before = scene();
        const int begun = secondsBegun();
        const std::size_t seen = dialogs.seen().size();
        give();
        ASSERT_GT(dialogs.seen().size(), seen);
        expectReport(dialogs.last());
        EXPECT_TRUE(dialogs.last().text.contains(QString::fromLatin1(GetParam().report)))
            << dialogs.last().text.toStdString();
        EXPECT_EQ(scene(), before);
        EXPECT_EQ(secondsBegun(), begun);
    }

    void markInVain()
    {
        dialogs.press(QMessageBox::Ok);
        run(Mark);
    }
    void shuffleInVain()
    {
        dialogs.press(QMessageBox::Yes).press(QMessageBox::Ok);
        run(Shuffle);
    }
};

TEST_P(frmFlashCardTroubles, AMarkThatCannotBeStoredIsNotShownAndCanBeTriedAgain)
{
    open(9);
    goTo(2);
    passSecond();
    {
        const auto meanwhile = trouble();
        expectFailure([this] { markInVain(); });
        expectFailure([this] { markInVain(); });
    }
    EXPECT_EQ(storedMarks(), std::vector<int>{});
    run(Mark);
    EXPECT_EQ(scene(), "2 of 12, front 2, 8 running, marked");
    EXPECT_EQ(storedMarks(), std::vector{2});
}

TEST_P(frmFlashCardTroubles, AMarkThatCannotBeTakenAwayStays)
{
    markElsewhere(1);
    open();
    {
        const auto meanwhile = trouble();
        expectFailure([this] { markInVain(); });
    }
    EXPECT_EQ(scene(), "1 of 12, front 1, marked");
    EXPECT_EQ(storedMarks(), std::vector{1});
    run(MarkToo);
    EXPECT_EQ(scene(), "1 of 12, front 1");
    EXPECT_EQ(storedMarks(), std::vector<int>{});
}

TEST_P(frmFlashCardTroubles, AShuffleThatCannotBeStoredKeepsTheOrderAndTheCountdownAndCanBeTriedAgain)
{
    open(9);
    goTo(3);
    passSeconds(2);
    {
        const auto meanwhile = trouble();
        expectFailure([this] { shuffleInVain(); });
    }
    EXPECT_EQ(storedKeys(), std::vector<float>(16, 0));
    passSecond();
    EXPECT_EQ(scene(), "3 of 12, front 3, 6 running");
    run(Next);
    EXPECT_EQ(scene(), "4 of 12, front 4, 9 running") << "the order is the one before";
    shuffle();
    EXPECT_TRUE(scene().starts_with("1 of 12, ")) << scene();
    EXPECT_TRUE(scene().ends_with(", 9 running")) << scene();
    const std::vector<float> keys = storedKeys();
    EXPECT_NE(keys, std::vector<float>(16, 0));
}

TEST_P(frmFlashCardTroubles, WhatNeedsNoFileGoesOn)
{
    open(3);
    const auto meanwhile = trouble();
    key(Qt::Key_Down);
    EXPECT_EQ(scene(), "1 of 12, back 1, 3 ended");
    EXPECT_EQ(heard([this] { run(Previous); }).title, QStringLiteral("First Flash Card"));
    EXPECT_EQ(heard([this] { run(Shuffle); }, QMessageBox::No).title, QStringLiteral("Shuffle Flash Cards"));
    const QSignalSpy closed(window, &frmFlashCard::closed);
    if (GetParam().begin != fullDisk.begin) { // else the settings cannot be written either
        key(Qt::Key_Escape);
        EXPECT_EQ(closed.count(), 1);
    }
}

INSTANTIATE_TEST_SUITE_P(frmFlashCard, frmFlashCardTroubles, testing::Values(locked, fullDisk, movedAway, deleted),
                         nameOfCause);

// Cards that cannot be read.

TEST_F(frmFlashCardFailures, ACardThatCannotBeReadIsEmptyUntilItCan)
{
    markElsewhere(1);
    open(5);
    passSecond();
    {
        const Locked meanwhile(file);
        expectReport(heard([this] { run(Next); }));
        EXPECT_EQ(scene(), "2 of 12, , 4 ended") << "neither text nor mark of the card before";
        EXPECT_EQ(back().toPlainText(), QString());
        key(Qt::Key_P);
        passSeconds(3);
    }
    EXPECT_EQ(scene(), "2 of 12, , 4 ended");
    run(Next);
    EXPECT_EQ(scene(), "3 of 12, front 3, 5 running");
    run(Previous);
    EXPECT_EQ(scene(), "2 of 12, front 2, 5 running");
}

class frmFlashCardGone : public frmFlashCardTroubles
{
};

TEST_P(frmFlashCardGone, TheCardsCanBeReadToTheEnd)
{
    open(5);
    const auto meanwhile = trouble();
    goTo(12);
    EXPECT_EQ(scene(), "12 of 12, front 12, 5 running");
    key(Qt::Key_Down);
    EXPECT_EQ(scene(), "12 of 12, back 12, 5 ended");
}

INSTANTIATE_TEST_SUITE_P(frmFlashCard, frmFlashCardGone, testing::Values(movedAway, deleted), nameOfCause);

// Cards that another program deletes.

TEST_F(frmFlashCardFailures, ACardDeletedElsewhereIsReportedAndTheNextOneIsShown)
{
    markElsewhere(1);
    open(5);
    passSecond();
    deleteElsewhere(2);
    expectReport(heard([this] { run(Next); }));
    EXPECT_EQ(scene(), "2 of 12, , 4 ended") << "neither text nor mark of the card before";
    EXPECT_EQ(back().toPlainText(), QString());
    key(Qt::Key_P);
    passSecond();
    EXPECT_EQ(scene(), "2 of 12, , 4 ended");
    run(Next);
    EXPECT_EQ(scene(), "3 of 12, front 3, 5 running");
}

TEST_F(frmFlashCardFailures, ACardDeletedElsewhereCannotBeMarked)
{
    open(5);
    deleteElsewhere(1);
    expectReport(heard([this] { run(Mark); }));
    EXPECT_EQ(scene(), "1 of 12, front 1, 5 running");
    EXPECT_EQ(storedMarks(), std::vector<int>{});
    run(Next);
    run(Mark);
    EXPECT_EQ(scene(), "2 of 12, front 2, 5 running, marked");
}

TEST_F(frmFlashCardFailures, AFirstCardDeletedElsewhereIsReportedWhenTheOrderBeginsAgain)
{
    open(5);
    goTo(2);
    run(Mark);
    deleteElsewhere(1);
    expectReport(heard([this] { run(Previous); }));
    EXPECT_EQ(scene(), "1 of 12, , 5 ended");
    run(Next);
    EXPECT_EQ(scene(), "2 of 12, front 2, 5 running, marked");
}

TEST_F(frmFlashCardFailures, AFirstCardDeletedElsewhereIsReportedAfterTheOptionsToo)
{
    open(5);
    goTo(2);
    run(Mark);
    deleteElsewhere(1);
    dialogs
        .act([](QWidget &options) {
            click(options, "Check1");
            click(options, "Command1(0)");
        })
        .press(QMessageBox::Ok);
    run(Options);
    expectReport(dialogs.last());
    EXPECT_EQ(scene(), "1 of 12, ");
    run(Next);
    EXPECT_EQ(scene(), "2 of 12, front 2, 5 running, marked");
}

TEST_F(frmFlashCardFailures, AShufflePassesOverACardThatWasDeletedElsewhere)
{
    open(5);
    deleteElsewhere(4);
    shuffle();
    EXPECT_TRUE(scene().starts_with("1 of 11, front ")) << scene();
    for (int card = 2; card <= 11; ++card) {
        run(Next);
        EXPECT_NE(shown(), QStringLiteral("front 4"));
        EXPECT_NE(shown(), QString());
    }
    EXPECT_EQ(place(), QStringLiteral("11 of 11"));
}

TEST_F(frmFlashCardFailures, AShuffleOfCardsThatAreAllDeletedSaysSoAndTheSessionCanBeLeft)
{
    open(5);
    OtherProgram(file).run("DELETE FROM FlashCards");
    dialogs.press(QMessageBox::Yes).press(QMessageBox::Ok);
    run(Shuffle);
    EXPECT_EQ(dialogs.last().icon, QMessageBox::Information);
    EXPECT_EQ(scene(), "1 of 12, front 1, 5 running");
    key(Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
}

TEST_F(frmFlashCardFailures, AShuffleThatFailsHalfWayLeavesEveryKeyAsItWas)
{
    open(5);
    goTo(2);
    OtherProgram other(file);
    other.run("CREATE TRIGGER kept BEFORE UPDATE ON FlashCards WHEN old.\"Index\" = 6 "
              "BEGIN SELECT RAISE(ABORT, 'kept'); END");
    dialogs.press(QMessageBox::Yes).press(QMessageBox::Ok);
    run(Shuffle);
    expectReport(dialogs.last());
    EXPECT_EQ(storedKeys(), std::vector<float>(16, 0));
    EXPECT_EQ(scene(), "2 of 12, front 2, 5 running");
    other.run("DROP TRIGGER kept");
    shuffle();
    EXPECT_EQ(place(), QStringLiteral("1 of 12"));
}

TEST_F(frmFlashCardFailures, TheClickAndTheKeysGoOnAfterAReport)
{
    open();
    {
        const MovedAway meanwhile(file);
        expectReport(heard([this] { key(Qt::Key_M); }));
    }
    EXPECT_TRUE(hasSinkFocus());
    key(Qt::Key_M);
    EXPECT_EQ(scene(), "1 of 12, front 1, marked");
}

// Closing.

TEST_F(frmFlashCardFailures, APlacementThatCannotBeStoredIsReportedAndTheWindowCloses)
{
    open(5);
    blockSettings();
    const QSignalSpy closed(window, &frmFlashCard::closed);
    const SeenMessage report = heard([this] { key(Qt::Key_Escape); });
    EXPECT_EQ(report.icon, QMessageBox::Critical);
    EXPECT_EQ(report.title, QStringLiteral("Run-time error"));
    EXPECT_EQ(closed.count(), 1);
    settle();
    EXPECT_TRUE(window.isNull());
}

} // namespace
