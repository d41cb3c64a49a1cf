#include "tests/damage/StrangeContents.h"
#include "tests/damage/SubjectWalk.h"
#include "tests/damage/Watchdog.h"
#include "tests/support/TestSubject.h"

#include <gtest/gtest.h>

namespace {

class StrangeSubject : public testing::TestWithParam<StrangeContents>
{
};

TEST_P(StrangeSubject, IsShownStudiedAndEditedOrReported)
{
    const Watchdog watchdog(GetParam().name, 20);
    const TestFolder folder;
    const std::filesystem::path subject = folder.file("Strange.crl");
    makeStrangeSubject(subject, GetParam());
    WalkTally tally;
    SubjectWalk walk(subject, 3, tally);
    walk.read();
    walk.write();
    EXPECT_GT(tally.commands, tally.refused) << "no command worked at all";
}

INSTANTIATE_TEST_SUITE_P(Contents, StrangeSubject, testing::ValuesIn(strangeContents()),
                         [](const auto &row) { return std::string(row.param.name); });

} // namespace
