#include "app/RecentSubjects.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <gtest/gtest.h>

namespace {

Subject numbered(int number)
{
    return {QStringLiteral("/subjects/%1.crl").arg(number), QString::number(number)};
}

QString samples()
{
    return QStringLiteral("/samples");
}

/// The table of a program that starts.
RecentSubjects offered(SettingsStore &settings)
{
    RecentSubjects::offerSamples(settings, samples);
    return RecentSubjects::load(settings);
}

class RecentSubjectsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)).removeRecursively();
    }

    static RecentSubjects full()
    {
        RecentSubjects recent;
        for (int number = 9; number >= 0; --number) {
            recent.moveToTop(numbered(number));
        }
        return recent; // slot k holds number k
    }

    static std::vector<int> numbersIn(const RecentSubjects &recent)
    {
        std::vector<int> numbers;
        for (int slot = 0; slot < RecentSubjects::slotCount; ++slot) {
            numbers.push_back(recent.slot(slot).name.toInt());
        }
        return numbers;
    }
};

TEST_F(RecentSubjectsTest, OffersTheTwoSamplesOnTheFirstRunEachInItsOwnSpelling)
{
    SettingsStore settings;
    const RecentSubjects recent = offered(settings);
    EXPECT_EQ(recent.slot(0), (Subject{QStringLiteral("/samples/Using Cramlet.crl"), QStringLiteral("Using Cramlet")}));
    EXPECT_EQ(recent.slot(1),
              (Subject{QStringLiteral("/samples/States and Capitals.crl"), QStringLiteral("States and Capitols")}));
    for (int slot = 2; slot < RecentSubjects::slotCount; ++slot) {
        EXPECT_EQ(recent.slot(slot), Subject{}) << slot;
    }
    const QString section = QStringLiteral("Recent");
    EXPECT_EQ(settings.text(section, QStringLiteral("Name1")), QStringLiteral("States and Capitols"));
    EXPECT_EQ(settings.text(section, QStringLiteral("Path0")), QStringLiteral("/samples/Using Cramlet.crl"));
}

TEST_F(RecentSubjectsTest, OffersTheSamplesAgainWhenTheFirstSlotIsEmpty)
{
    SettingsStore settings;
    RecentSubjects recent = full();
    recent.moveToTop({});
    recent.save(settings);
    const RecentSubjects loaded = offered(settings);
    EXPECT_EQ(loaded.slot(0).name, QStringLiteral("Using Cramlet"));
    EXPECT_EQ(loaded.slot(1).name, QStringLiteral("States and Capitols"));
    EXPECT_EQ(loaded.slot(2), numbered(1)) << "the other slots stay as they were";
}

TEST_F(RecentSubjectsTest, AsksForTheSamplesOnTheFirstRunOnly)
{
    SettingsStore settings;
    full().save(settings);
    RecentSubjects::offerSamples(settings, [] {
        ADD_FAILURE() << "the samples were asked for although there are recent subjects";
        return QString();
    });
    EXPECT_EQ(numbersIn(RecentSubjects::load(settings)), numbersIn(full()));
}

TEST_F(RecentSubjectsTest, ReadsBackWhatItWrote)
{
    SettingsStore settings;
    full().save(settings);
    SettingsStore reopened;
    EXPECT_EQ(numbersIn(RecentSubjects::load(reopened)), numbersIn(full()));
}

TEST_F(RecentSubjectsTest, WritesTenNamesAndPathsUnderTheirKeys)
{
    SettingsStore settings;
    full().save(settings);
    for (int slot = 0; slot < RecentSubjects::slotCount; ++slot) {
        EXPECT_EQ(settings.text(QStringLiteral("Recent"), QStringLiteral("Name%1").arg(slot)), QString::number(slot));
        EXPECT_EQ(settings.text(QStringLiteral("Recent"), QStringLiteral("Path%1").arg(slot)),
                  QStringLiteral("/subjects/%1.crl").arg(slot));
    }
}

TEST_F(RecentSubjectsTest, OpeningTheSubjectAtTheTopChangesNothing)
{
    RecentSubjects recent = full();
    recent.moveToTop(numbered(0));
    EXPECT_EQ(numbersIn(recent), (std::vector{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST_F(RecentSubjectsTest, OpeningSlotFourMovesTheFourAboveItDown)
{
    RecentSubjects recent = full();
    recent.moveToTop(numbered(4));
    EXPECT_EQ(numbersIn(recent), (std::vector{4, 0, 1, 2, 3, 5, 6, 7, 8, 9}));
}

TEST_F(RecentSubjectsTest, OpeningTheOldestKeepsTheOthers)
{
    RecentSubjects recent = full();
    recent.moveToTop(numbered(9));
    EXPECT_EQ(numbersIn(recent), (std::vector{9, 0, 1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST_F(RecentSubjectsTest, OpeningANewSubjectDropsTheOldest)
{
    RecentSubjects recent = full();
    recent.moveToTop(numbered(77));
    EXPECT_EQ(numbersIn(recent), (std::vector{77, 0, 1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST_F(RecentSubjectsTest, TellsSubjectsApartByThePathLetterCaseIncluded)
{
    RecentSubjects recent = full();
    recent.moveToTop({QStringLiteral("/SUBJECTS/4.crl"), QStringLiteral("44")});
    EXPECT_EQ(numbersIn(recent), (std::vector{44, 0, 1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST_F(RecentSubjectsTest, PutsAnEmptyEntryOnTopWhenNothingWasChosen)
{
    SettingsStore settings;
    RecentSubjects recent = offered(settings);
    recent.moveToTop({});
    EXPECT_EQ(recent.slot(0), Subject{});
    EXPECT_EQ(recent.slot(1).name, QStringLiteral("Using Cramlet"));
    EXPECT_EQ(recent.slot(2).name, QStringLiteral("States and Capitols"));
}

} // namespace
