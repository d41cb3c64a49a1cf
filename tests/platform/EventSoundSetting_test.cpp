#include "platform/EventSoundSetting.h"

#include <gtest/gtest.h>

namespace {

/// A source whose answer the test changes, and which counts the questions.
struct Desk
{
    std::optional<bool> answer;
    int asked = 0;

    EventSoundSetting::Source source()
    {
        return [this] {
            ++asked;
            return answer;
        };
    }
};

TEST(EventSoundSetting, IsOnWhenNobodyKnows)
{
    EXPECT_TRUE(EventSoundSetting(std::vector<EventSoundSetting::Source>()).isOn());
    Desk first, second;
    EXPECT_TRUE(EventSoundSetting({first.source(), second.source()}).isOn());
    EXPECT_EQ(second.asked, 1);
}

TEST(EventSoundSetting, IsWhatTheFirstWhoKnowsSaysAndTheOthersAreNotAsked)
{
    Desk first{false}, second{true};
    EXPECT_FALSE(EventSoundSetting({first.source(), second.source()}).isOn());
    EXPECT_EQ(second.asked, 0);

    Desk silent, off{false};
    EXPECT_FALSE(EventSoundSetting({silent.source(), off.source()}).isOn());
}

TEST(EventSoundSetting, IsAskedAnewEachTime)
{
    Desk desk{true};
    EventSoundSetting setting({desk.source()});
    EXPECT_TRUE(setting.isOn());
    desk.answer = false;
    EXPECT_FALSE(setting.isOn());
    desk.answer = true;
    EXPECT_TRUE(setting.isOn());
}

TEST(EventSoundSetting, StaysWhatWasSaidLastWhenNobodyKnowsAnyMore)
{
    Desk desk{false};
    EventSoundSetting setting({desk.source()});
    EXPECT_FALSE(setting.isOn());
    desk.answer.reset();
    EXPECT_FALSE(setting.isOn());
    EXPECT_EQ(desk.asked, 2);
}

} // namespace
