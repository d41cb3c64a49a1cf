#include "tests/damage/Damage.h"
#include "tests/damage/FileBytes.h"
#include "tests/damage/LongText.h"
#include "tests/damage/SampleSubjects.h"
#include "tests/damage/StrangeContents.h"
#include "tests/damage/Watchdog.h"
#include "tests/damage/WindowWalk.h"
#include "tests/study/NoDiskWaits.h"
#include "tests/support/LongRun.h"
#include "tests/support/WindowTest.h"

#include <cstdlib>
#include <iostream>
#include <sstream>

namespace fs = std::filesystem;

namespace {

constexpr unsigned secondsForAll = 60; // that one damage may cost; it takes some tenths of one

/// Damaged subjects in the program's windows.
class DamagedSubjectWindows : public WindowTest
{
protected:
    void TearDown() override
    {
        std::cout << subjects << " subjects, seed " << seed << ": " << tally.opened << " shown, " << tally.editors
                  << " editors, " << tally.sessions << " sessions, " << tally.tests << " tests, " << tally.reports
                  << " reports, " << tally.messages << " other messages" << std::endl;
        WindowTest::TearDown();
    }

    void take(const fs::path &subject)
    {
        ++subjects;
        module->subject = subjectAt(QString::fromStdString(subject.string()));
    }

    static void expectNoWindow()
    {
        settle();
        for (QWidget *left : QApplication::topLevelWidgets()) {
            if (left->isVisible()) {
                ADD_FAILURE() << "a window was left behind: " << left->objectName().toStdString();
                delete left;
                break;
            }
        }
    }

    void walkThroughDamage(int number)
    {
        const auto which = static_cast<std::size_t>(number);
        const SampleSubject &sample = sampleSubjects()[which % sampleSubjects().size()];
        const Damage damage = damageOf(seed, number, sample.bytes.size(), sample.pageSize);
        std::ostringstream name;
        name << "damage " << number << " of seed " << seed << ": " << sample.name << ", " << damage;
        SCOPED_TRACE(name.str());
        const Watchdog watchdog(name.str(), secondsForAll);

        const fs::path subject = folder.file("Damaged.crl");
        const std::string damaged = damage.appliedTo(sample.bytes);
        writeBytes(subject, damaged);
        if (sample.hasSideFile()) {
            writeBytes(subject.string() + sample.sideSuffix, sample.sideBytes);
        }
        take(subject);
        WindowWalk walk(*module, tally);
        const bool isOpen = walk.open();
        if (isOpen) {
            walk.look();
        }
        if (!sample.hasSideFile()) {
            EXPECT_TRUE(bytesOf(subject) == damaged) << "looking has changed the file";
        }
        if (isOpen) {
            finish(walk);
        }
        expectNoWindow();
        for (const char *suffix : {"", "-journal", "-wal", "-shm"}) {
            fs::remove(subject.string() + suffix);
        }
    }

    static void finish(WindowWalk &walk)
    {
        walk.work();
        walk.close();
    }

    unsigned seed = seedOr(1);
    int subjects = 0;
    WindowTally tally;
};

TEST_F(DamagedSubjectWindows, ReportTheDamageAndStayUsable)
{
    const char *only = std::getenv("CRAMLET_ROUND");
    const int first = only != nullptr ? std::atoi(only) : 0;
    const int last = only != nullptr ? first + 1 : roundsOf(40, 1000);
    for (int number = first; number < last; ++number) {
        walkThroughDamage(number);
    }
    if (only == nullptr) {
        EXPECT_GT(tally.opened, subjects / 3);
        EXPECT_GT(tally.reports, subjects / 4) << "most damages were not met";
        EXPECT_GT(tally.editors, 0);
        EXPECT_GT(tally.sessions, 0);
        EXPECT_GT(tally.tests, 0);
    }
}

TEST_F(DamagedSubjectWindows, ShowTheNotesOfAllTopicsButTheDamagedOne)
{
    addTopic(file, "Long", textAcrossPages("the notes of Long"));
    cutTextAfter(file, "the notes of Long");
    take(file);
    WindowWalk walk(*module, tally);
    ASSERT_TRUE(walk.open());
    EXPECT_EQ(walk.shownTopic(0), QStringLiteral("Large: Large notes..."));
    EXPECT_EQ(tally.reports, 0);
    EXPECT_EQ(walk.shownTopic(3), QStringLiteral("Long: "));
    EXPECT_EQ(tally.reports, 1);
    EXPECT_EQ(walk.shownTopic(1), QStringLiteral("Small & tidy: Small & tidy notes..."));
    EXPECT_EQ(tally.reports, 1);
    walk.close();
}

TEST_F(DamagedSubjectWindows, ShowAllCardsButTheDamagedOne)
{
    {
        SubjectStore store(file);
        CardSet cards = store.openRecordSet(cardsOfTopic(large));
        cards.moveNext();
        cards.edit();
        cards.setText(CardField::Front, textAcrossPages("the second card"));
        cards.update();
    }
    cutTextAfter(file, "the second card");
    take(file);
    WindowWalk walk(*module, tally);
    ASSERT_TRUE(walk.open());
    const QStringList session = walk.shownCards(3);
    EXPECT_EQ(session, (QStringList{QStringLiteral("front 1"), QString(), QStringLiteral("front 3")}));
    EXPECT_EQ(tally.reports, 1);
    const QStringList edited = walk.editedCards(3);
    EXPECT_EQ(edited, (QStringList{QStringLiteral("front 1"), QStringLiteral("front 3"), QStringLiteral("front 4")}));
    EXPECT_EQ(tally.reports, 2);
    walk.close();
}

TEST_F(DamagedSubjectWindows, ShowStrangeContentsAndStayUsable)
{
    const auto step = static_cast<std::size_t>(roundsOf(2, 1));
    for (std::size_t number = seed % step; number < strangeContents().size(); number += step) {
        const StrangeContents &contents = strangeContents()[number];
        SCOPED_TRACE(contents.name);
        const Watchdog watchdog(contents.name, secondsForAll);
        const fs::path subject = folder.file(std::string(contents.name) + ".crl");
        makeStrangeSubject(subject, contents);
        take(subject);
        WindowWalk walk(*module, tally);
        if (walk.open()) {
            walk.look();
            finish(walk);
        }
        expectNoWindow();
    }
    EXPECT_GT(tally.opened, subjects * 3 / 4);
    EXPECT_GT(tally.tests, subjects / 2);
}

} // namespace
