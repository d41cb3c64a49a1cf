#include "platform/ClickSound.h"
#include "tests/platform/FakePortal.h"

#include <QTest>

#include <atomic>
#include <canberra.h>
#include <gtest/gtest.h>

namespace {

std::atomic<int> plays = 0;

} // namespace

// In place of the sound library's.
extern "C" int ca_context_play_full(ca_context *context, std::uint32_t id, ca_proplist *, ca_finish_callback_t finished,
                                    void *user)
{
    ++plays;
    finished(context, id, CA_SUCCESS, user);
    return CA_SUCCESS;
}

namespace {

TEST(ClickSound, IsSilentWhileTheDesktopsEventSoundsAreOff)
{
    const PrivateBus bus;
    ASSERT_TRUE(bus.runs()) << "dbus-daemon is needed";
    FakePortal desktop(bus.address());
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8());
    setClickFile(QStringLiteral("Click.wav"));

    desktop.answer = FakePortal::saying(true);
    playClick();
    EXPECT_TRUE(QTest::qWaitFor([] { return plays == 1; }));

    desktop.answer = FakePortal::saying(false);
    playClick();
    EXPECT_TRUE(QTest::qWaitFor([&] { return desktop.asked == 2; }));

    // The clicks are played one after the other: by the time this one is heard, the one before would have been.
    desktop.answer = FakePortal::saying(true);
    playClick();
    EXPECT_TRUE(QTest::qWaitFor([&] { return desktop.asked == 3 && plays > 1; }));
    EXPECT_EQ(plays, 2);
}

} // namespace
