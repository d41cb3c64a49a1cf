#include "tests/forms/TestWindowTest.h"
#include "tests/support/HelpWindows.h"

#include <QLocale>
#include <QTime>

#include <ostream>

namespace {

/// Before the application object reads it: a desktop whose long time names its zone, in brackets,
/// and whose short time has no seconds. Nothing of it need be installed.
const bool isCatalan = qputenv("LC_ALL", "ca_ES.UTF-8");

class frmTestClock : public TestWindowTest
{
protected:
    /// Presses Ok in the next dialog after this many seconds in it.
    void linger(int seconds, QMessageBox::StandardButton button = QMessageBox::Ok)
    {
        dialogs.act([this, seconds, button](QWidget &dialog) {
            passSeconds(seconds);
            press(dialog, button);
        });
    }
    static void press(QWidget &dialog, QMessageBox::StandardButton button)
    {
        auto *box = qobject_cast<QMessageBox *>(&dialog);
        ASSERT_NE(box, nullptr);
        QTest::mouseClick(box->button(button), Qt::LeftButton);
    }

    /// Lets the time be up while another dialog is open. Returns the titles of what opened over that.
    QStringList runOutOfTime()
    {
        DialogAnswers above; // one cannot look while it acts
        above.press(QMessageBox::Ok).press(QMessageBox::Ok);
        passSeconds(120);
        result = above.last();
        return titlesOf(above);
    }

    QStringList titles() { return titlesOf(dialogs); }
    static QStringList titlesOf(const DialogAnswers &answered)
    {
        QStringList all;
        for (const SeenMessage &message : answered.seen()) {
            all << message.title;
        }
        return all;
    }
    int gradedSelectors()
    {
        int graded = 0;
        for (int question = 0; question < questionCount(); ++question) {
            graded += selector(question).isGraded() ? 1 : 0;
        }
        return graded;
    }

    const QStringList timesUpAndResults{QStringLiteral("Time's Up"), QStringLiteral("Test Results")};
    SeenMessage result; ///< the last one of runOutOfTime()
};

// The first display and the seconds.

struct Beginning
{
    int minutes;
    const char *shown;
    const char *afterASecond;
};

void PrintTo(const Beginning &row, std::ostream *out)
{
    *out << row.minutes << " minutes";
}

class frmTestFirstDisplay : public frmTestClock, public testing::WithParamInterface<Beginning>
{
};

TEST_P(frmTestFirstDisplay, FollowsItsOwnRuleUntilTheFirstSecondHasPassed)
{
    open(5, 60, GetParam().minutes);
    EXPECT_EQ(clockText(), QString::fromLatin1(GetParam().shown));
    EXPECT_TRUE(clock().isActive());
    key(Qt::Key_Right);
    EXPECT_EQ(clockText(), QString::fromLatin1(GetParam().shown)) << "only a second changes it";
    passSecond();
    EXPECT_EQ(clockText(), QString::fromLatin1(GetParam().afterASecond));
}

INSTANTIATE_TEST_SUITE_P(frmTest, frmTestFirstDisplay,
                         testing::Values(Beginning{2, "2:0", "1:59"}, Beginning{7, "7:00", "6:59"},
                                         Beginning{10, "10:0", "9:59"}, Beginning{14, "14:00", "13:59"},
                                         Beginning{49, "49:00", "48:59"}, Beginning{50, "50:0", "49:59"}),
                         [](const auto &row) { return std::to_string(row.param.minutes) + "Minutes"; });

TEST_F(frmTestClock, CountsTheSecondsDownToZeroAndThenGradesOnce)
{
    open(5, 60, 2);
    answerAll(2);
    for (int left = 119; left > 0; --left) {
        passSecond();
        const QString seconds = QString::number(left % 60).rightJustified(2, u'0');
        ASSERT_EQ(clockText(), QStringLiteral("%1:%2").arg(left / 60).arg(seconds));
    }
    EXPECT_EQ(clockText(), QStringLiteral("0:01"));
    EXPECT_EQ(gradedSelectors(), 0);
    EXPECT_EQ(titles(), QStringList());

    QString shownAtTheEnd;
    int gradedBeforehand = -1;
    bool runsOn = true;
    dialogs
        .act([&](QWidget &dialog) {
            shownAtTheEnd = clockText();
            gradedBeforehand = gradedSelectors();
            runsOn = clock().isActive();
            press(dialog, QMessageBox::Ok);
        })
        .press(QMessageBox::Ok);
    passSecond();
    ASSERT_EQ(titles(), timesUpAndResults);
    const SeenMessage timesUp = dialogs.seen().front();
    EXPECT_EQ(timesUp.text, QStringLiteral("Time's Up!"));
    EXPECT_EQ(timesUp.icon, QMessageBox::Information);
    EXPECT_EQ(timesUp.buttons, QMessageBox::Ok);
    EXPECT_EQ(shownAtTheEnd, QStringLiteral("0:00"));
    EXPECT_EQ(gradedBeforehand, 0) << "before it is said";
    EXPECT_FALSE(runsOn) << "it is said once";
    EXPECT_TRUE(dialogs.last().text.startsWith(QStringLiteral("Test results: 40% (2 out of 5)\n\n")));

    EXPECT_EQ(gradedSelectors(), 5);
    EXPECT_EQ(storedMarks().size(), 3U);
    EXPECT_EQ(current(), 0);
    EXPECT_EQ(focused(), 0);
    EXPECT_EQ(clockText(), QStringLiteral("0:00"));
    EXPECT_FALSE(clock().isActive());
    passSeconds(3);
    EXPECT_EQ(dialogs.seen().size(), 2U);
    key(Qt::Key_Escape);
    EXPECT_EQ(dialogs.seen().size(), 2U) << "a graded test closes unasked";
    EXPECT_FALSE(isOpen());
}

TEST_F(frmTestClock, GradesAnUnansweredTestWhenTheTimeIsUp)
{
    open(12, 60, 2);
    goTo(5);
    dialogs.key(Qt::Key_Escape).key(Qt::Key_Escape);
    passSeconds(120);
    EXPECT_TRUE(dialogs.last().text.startsWith(QStringLiteral("Test results: 0% (0 out of 12)")));
    EXPECT_EQ(storedMarks().size(), 12U);
    EXPECT_EQ(current(), 0);
    EXPECT_TRUE(isOpen()) << "the Escapes were for the two messages";
}

TEST_F(frmTestClock, GradingStopsTheCountdownAtItsValue)
{
    open(5, 60, 10);
    passSeconds(55);
    grade();
    EXPECT_EQ(clockText(), QStringLiteral("9:05"));
    EXPECT_FALSE(clock().isActive());
}

TEST_F(frmTestClock, SecondsPassWhileTheLastOnesAreGradedByHand)
{
    open(5, 60, 2);
    passSeconds(119);
    grade();
    EXPECT_EQ(clockText(), QStringLiteral("0:01"));
    EXPECT_FALSE(titles().contains(QStringLiteral("Time's Up")));
}

// Without a limit.

class frmTestTimeOfDay : public frmTestClock
{
protected:
    void SetUp() override
    {
        frmTestClock::SetUp();
        ASSERT_TRUE(isCatalan);
        ASSERT_EQ(QLocale::system().language(), QLocale::Catalan);
    }

    /// Whether the clock shows a time of day between \p begin and now.
    bool showsTimeSince(const QTime &begin)
    {
        const int seconds = (begin.secsTo(QTime::currentTime()) + secondsOfDay) % secondsOfDay;
        for (int second = 0; second <= seconds; ++second) {
            if (clockText() == begin.addSecs(second).toString(QStringLiteral("H:mm:ss"))) {
                return true;
            }
        }
        return false;
    }

    static constexpr int secondsOfDay = 24 * 60 * 60;
};

TEST_F(frmTestTimeOfDay, IsShownInTheFormatOfTheLocaleWithItsSecondsAndWithoutTheZone)
{
    const QTime begin = QTime::currentTime();
    open(5, 60, 0);
    EXPECT_TRUE(showsTimeSince(begin)) << clockText().toStdString();
    EXPECT_TRUE(clock().isActive());
}

TEST_F(frmTestTimeOfDay, ComesAnewWithEverySecond)
{
    open(5, 60, 0);
    for (int second = 0; second < 3; ++second) {
        label(0).setText(QStringLiteral("an old time"));
        const QTime begin = QTime::currentTime();
        passSecond();
        EXPECT_TRUE(showsTimeSince(begin)) << clockText().toStdString();
    }
}

TEST_F(frmTestTimeOfDay, NeverEndsTheTest)
{
    open(5, 60, 0);
    passSeconds(3100); // more than the longest limit
    EXPECT_EQ(titles(), QStringList());
    EXPECT_EQ(gradedSelectors(), 0);
    EXPECT_TRUE(clock().isActive());
}

TEST_F(frmTestTimeOfDay, StandsStillOnceTheTestIsGraded)
{
    open(5, 60, 0);
    grade();
    EXPECT_FALSE(clock().isActive());
    label(0).setText(QStringLiteral("the time of grading"));
    passSecond();
    EXPECT_EQ(clockText(), QStringLiteral("the time of grading"));
}

TEST_F(frmTestTimeOfDay, GoesOnAfterACancelledClosing)
{
    open(5, 60, 0);
    heard([this] { key(Qt::Key_Escape); }, QMessageBox::Cancel);
    label(0).setText(QStringLiteral("an old time"));
    const QTime begin = QTime::currentTime();
    passSecond();
    EXPECT_TRUE(showsTimeSince(begin)) << clockText().toStdString();
}

// While a message box is open.

TEST_F(frmTestClock, TheSecondsGoOnWhileAMessageIsRead)
{
    open(5, 60, 2);
    linger(3);
    key(Qt::Key_Left);
    EXPECT_EQ(dialogs.last().title, QStringLiteral("First Question"));
    EXPECT_EQ(clockText(), QStringLiteral("1:57"));
    run(Help);
    passSeconds(4);
    expectHelp(HelpContext::Test);
    EXPECT_EQ(clockText(), QStringLiteral("1:53"));
    linger(2, QMessageBox::Cancel);
    key(Qt::Key_Escape);
    EXPECT_EQ(clockText(), QStringLiteral("1:51"));
    EXPECT_EQ(gradedSelectors(), 0);
}

TEST_F(frmTestClock, TheTimeIsUpWhileAMessageIsRead)
{
    open(5, 60, 2);
    passSeconds(119);
    QStringList above;
    dialogs.act([&](QWidget &message) {
        above = runOutOfTime();
        EXPECT_EQ(gradedSelectors(), 5);
        press(message, QMessageBox::Ok);
    });
    key(Qt::Key_Left);
    EXPECT_EQ(titles(), QStringList(QStringLiteral("First Question")));
    EXPECT_EQ(above, timesUpAndResults);
    EXPECT_EQ(storedMarks().size(), 5U);
    EXPECT_EQ(focused(), 0);
    EXPECT_TRUE(isOpen());
}

struct LateAnswer
{
    const char *name;
    QMessageBox::StandardButton button; ///< NoButton is Escape
    bool closes;
};

void PrintTo(const LateAnswer &row, std::ostream *out)
{
    *out << row.name;
}

class WhenTheTimeIsUpAtTheGradeQuestion : public frmTestClock, public testing::WithParamInterface<LateAnswer>
{
protected:
    void answerLate(QWidget &question)
    {
        if (GetParam().button == QMessageBox::NoButton) {
            QTest::keyClick(&question, Qt::Key_Escape);
        } else {
            press(question, GetParam().button);
        }
    }
};

TEST_P(WhenTheTimeIsUpAtTheGradeQuestion, TheTestIsGradedOnceAndTheLateAnswerLosesNothing)
{
    open(12, 60, 2);
    answerAll(9);
    passSeconds(100);
    goTo(4);
    const std::vector<int> answered = answers();
    dialogs.act([&](QWidget &question) {
        EXPECT_EQ(runOutOfTime(), timesUpAndResults);
        EXPECT_EQ(gradedSelectors(), 12);
        answerLate(question);
    });
    key(Qt::Key_Escape);
    EXPECT_EQ(titles(), QStringList(QStringLiteral("Grade Test"))) << "nothing more after the late answer";
    EXPECT_TRUE(result.text.startsWith(QStringLiteral("Test results: 75% (9 out of 12)")));
    EXPECT_EQ(storedMarks().size(), 3U);
    EXPECT_EQ(isOpen(), !GetParam().closes);
    if (GetParam().closes) {
        return;
    }
    EXPECT_EQ(answers(), answered);
    EXPECT_EQ(gradedSelectors(), 12);
    EXPECT_EQ(clockText(), QStringLiteral("0:00"));
    EXPECT_FALSE(clock().isActive());
    EXPECT_EQ(current(), 0);
    EXPECT_EQ(focused(), 0);
    EXPECT_EQ(scene(), storedScene(0, true));
    key(Qt::Key_Escape);
    EXPECT_EQ(dialogs.seen().size(), 1U) << "a graded test closes unasked";
    EXPECT_FALSE(isOpen());
}

INSTANTIATE_TEST_SUITE_P(frmTest, WhenTheTimeIsUpAtTheGradeQuestion,
                         testing::Values(LateAnswer{"Yes", QMessageBox::Yes, false},
                                         LateAnswer{"No", QMessageBox::No, true},
                                         LateAnswer{"Cancel", QMessageBox::Cancel, false},
                                         LateAnswer{"Escape", QMessageBox::NoButton, false}),
                         [](const auto &row) { return std::string(row.param.name); });

} // namespace
