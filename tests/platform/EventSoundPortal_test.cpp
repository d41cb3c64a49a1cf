#include "platform/EventSoundPortal.h"
#include "tests/platform/FakePortal.h"

#include <QTemporaryDir>
#include <QTest>

#include <chrono>
#include <future>
#include <gtest/gtest.h>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

/// What the portal says, asked on a thread as the program does, while the portal answers on this one.
std::optional<bool> asked(EventSoundPortal &portal)
{
    std::future<std::optional<bool>> answer = std::async(std::launch::async, [&] { return portal.eventSounds(); });
    const auto came = [&] { return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready; };
    EXPECT_TRUE(QTest::qWaitFor(came, 30'000));
    return answer.get();
}

/// Lets programs connect, and says nothing to them.
class SilentServer
{
public:
    explicit SilentServer(const std::string &path)
        : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(::bind(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(m_socket, 8), 0);
    }

    ~SilentServer() { ::close(m_socket); }
    SilentServer(const SilentServer &) = delete;
    SilentServer &operator=(const SilentServer &) = delete;

    /// Whether somebody has connected who has not been counted yet.
    bool isCalled() const
    {
        const int caller = ::accept(m_socket, nullptr, nullptr);
        return caller >= 0 && ::close(caller) == 0;
    }

private:
    int m_socket;
};

class AskedPortal : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(bus.runs()) << "dbus-daemon is needed"; }

    PrivateBus bus;
    FakePortal desktop{bus.address()};
    EventSoundPortal portal{bus.address().toStdString(), std::chrono::minutes(1)};
};

TEST_F(AskedPortal, SaysWhetherEventSoundsAreOn)
{
    desktop.answer = FakePortal::saying(true);
    EXPECT_EQ(asked(portal), true);
    desktop.answer = FakePortal::saying(false);
    EXPECT_EQ(asked(portal), false);
    desktop.answer = FakePortal::saying(true);
    EXPECT_EQ(asked(portal), true);
    EXPECT_EQ(desktop.asked, 3);
}

TEST_F(AskedPortal, IsAskedForTheDesktopsOwnSwitch)
{
    EXPECT_EQ(asked(portal), true);
    EXPECT_EQ(desktop.question.interface(), QStringLiteral("org.freedesktop.portal.Settings"));
    EXPECT_EQ(desktop.question.member(), QStringLiteral("Read"));
    EXPECT_EQ(desktop.question.arguments(),
              QVariantList({QStringLiteral("org.gnome.desktop.sound"), QStringLiteral("event-sounds")}));
}

TEST_F(AskedPortal, MayWrapItsAnswerOnce)
{
    desktop.answer = [](const QDBusMessage &question) {
        return question.createReply(QVariant::fromValue(QDBusVariant(false)));
    };
    EXPECT_EQ(asked(portal), false);
}

TEST_F(AskedPortal, OfAnotherMindAboutTheTypeSaysNothing)
{
    desktop.answer = FakePortal::saying(QStringLiteral("false"));
    EXPECT_EQ(asked(portal), std::nullopt);
    desktop.answer = FakePortal::saying(0);
    EXPECT_EQ(asked(portal), std::nullopt);
    desktop.answer = [](const QDBusMessage &question) { return question.createReply(); };
    EXPECT_EQ(asked(portal), std::nullopt);
}

TEST_F(AskedPortal, ThatDoesNotKnowSaysNothingAndIsAskedAgain)
{
    desktop.answer = [](const QDBusMessage &question) {
        return question.createErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"), QString());
    };
    EXPECT_EQ(asked(portal), std::nullopt);
    desktop.answer = FakePortal::saying(false);
    EXPECT_EQ(asked(portal), false);
}

TEST_F(AskedPortal, ThatNeverAnswersIsAskedOnce)
{
    desktop.answer = FakePortal::silence();
    EventSoundPortal impatient(bus.address().toStdString(), std::chrono::milliseconds(100));
    EXPECT_EQ(asked(impatient), std::nullopt);
    desktop.answer = FakePortal::saying(false);
    EXPECT_EQ(asked(impatient), std::nullopt);
    EXPECT_LE(desktop.asked, 1);
}

TEST_F(AskedPortal, OnABusThatHasGoneSaysNothingButMayComeBack)
{
    EXPECT_EQ(asked(portal), true);
    bus.stop();
    EXPECT_EQ(asked(portal), std::nullopt);
    EXPECT_EQ(asked(portal), std::nullopt);
    desktop.leave();

    ASSERT_TRUE(bus.start());
    FakePortal again(bus.address());
    EXPECT_EQ(asked(portal), true);
}

TEST(EventSoundPortal, ThatDoesNotRunSaysNothingUntilItDoes)
{
    const PrivateBus bus;
    ASSERT_TRUE(bus.runs()) << "dbus-daemon is needed";
    EventSoundPortal portal(bus.address().toStdString(), std::chrono::minutes(1));
    EXPECT_EQ(asked(portal), std::nullopt);

    FakePortal desktop(bus.address());
    desktop.answer = FakePortal::saying(false);
    EXPECT_EQ(asked(portal), false);
}

TEST(EventSoundPortal, WithoutABusSaysNothing)
{
    EventSoundPortal nowhere("unix:path=/nowhere/bus");
    EXPECT_EQ(asked(nowhere), std::nullopt);
    EXPECT_EQ(asked(nowhere), std::nullopt);
    EventSoundPortal nonsense("nonsense");
    EXPECT_EQ(asked(nonsense), std::nullopt);
}

TEST(EventSoundPortal, OnABusThatNeverAnswersSaysNothingAndConnectsOnce)
{
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("bus")).toStdString();
    const SilentServer server(path);
    EventSoundPortal portal("unix:path=" + path, std::chrono::milliseconds(100));
    EXPECT_EQ(asked(portal), std::nullopt);
    EXPECT_TRUE(server.isCalled());
    EXPECT_EQ(asked(portal), std::nullopt);
    EXPECT_FALSE(server.isCalled());
}

} // namespace
