#include "platform/EventSoundXSettings.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

enum class Order { LittleEndian, BigEndian };

/// Writes what a settings manager publishes.
class Property
{
public:
    explicit Property(Order order, std::uint32_t count)
        : m_order(order)
    {
        m_bytes.append({order == Order::BigEndian ? '\1' : '\0', '\0', '\0', '\0'});
        number(7, 4);
        number(count, 4);
    }

    Property &integer(const std::string &name, std::int32_t value)
    {
        head('\0', name);
        number(static_cast<std::uint32_t>(value), 4);
        return *this;
    }

    Property &string(const std::string &name, const std::string &value)
    {
        head('\1', name);
        number(static_cast<std::uint32_t>(value.size()), 4);
        padded(value);
        return *this;
    }

    Property &color(const std::string &name)
    {
        head('\2', name);
        m_bytes.append("rrggbbaa");
        return *this;
    }

    /// The start of a setting: its kind and name.
    Property &head(char kind, const std::string &name)
    {
        m_bytes.append({kind, '\0'});
        number(static_cast<std::uint32_t>(name.size()), 2);
        padded(name);
        number(3, 4);
        return *this;
    }

    Property &number(std::uint32_t value, int size)
    {
        for (int i = 0; i < size; ++i) {
            const int place = m_order == Order::BigEndian ? size - 1 - i : i;
            m_bytes.push_back(static_cast<char>(value >> (8 * place) & 0xFF));
        }
        return *this;
    }

    const std::string &bytes() const { return m_bytes; }

private:
    void padded(const std::string &text)
    {
        m_bytes.append(text);
        m_bytes.resize((m_bytes.size() + 3) / 4 * 4);
    }

    Order m_order;
    std::string m_bytes;
};

const std::string wanted = "Net/EnableEventSounds";

/// Read from memory of exactly this size, so that a sanitizer sees a byte too far.
std::optional<std::int32_t> read(const std::string &bytes, const std::string &name = wanted)
{
    const std::vector<char> exact(bytes.begin(), bytes.end());
    return integerXSetting(std::as_bytes(std::span(exact)), name);
}

Property realistic(Order order, std::int32_t value)
{
    Property property(order, 4);
    property.string("Net/ThemeName", "Adwaita").integer("Xft/DPI", 98304).color("Net/Color").integer(wanted, value);
    return property;
}

class XSettingsInEitherByteOrder : public testing::TestWithParam<Order>
{
};

TEST_P(XSettingsInEitherByteOrder, FindTheIntegerBehindSettingsOfEveryKind)
{
    EXPECT_EQ(read(realistic(GetParam(), 1).bytes()), 1);
    EXPECT_EQ(read(realistic(GetParam(), 0).bytes()), 0);
    EXPECT_EQ(read(realistic(GetParam(), -2).bytes()), -2);
    EXPECT_EQ(read(realistic(GetParam(), 1).bytes(), "Xft/DPI"), 98304);
}

TEST_P(XSettingsInEitherByteOrder, CutOffAnywhereSayNothing)
{
    const std::string whole = realistic(GetParam(), 1).bytes();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(read(whole.substr(0, length)), std::nullopt) << length << " bytes";
    }
}

TEST_P(XSettingsInEitherByteOrder, WithLengthsBeyondTheirEndSayNothing)
{
    EXPECT_EQ(read(Property(GetParam(), 2).head('\1', "s").number(0xFFFFFFFF, 4).integer(wanted, 1).bytes()),
              std::nullopt);
    EXPECT_EQ(read(Property(GetParam(), 1).number(0, 2).number(0xFFFF, 2).bytes()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(EachOf, XSettingsInEitherByteOrder, testing::Values(Order::LittleEndian, Order::BigEndian),
                         [](const auto &order) { return order.param == Order::BigEndian ? "Big" : "Little"; });

TEST(XSettings, TheByteOrderIsTheOneTheyName)
{
    std::string bytes = Property(Order::LittleEndian, 1).integer(wanted, 1).bytes();
    ASSERT_EQ(read(bytes), 1);
    bytes[0] = '\1';
    EXPECT_NE(read(bytes), 1);
}

TEST(XSettings, ASettingThatIsNotThereIsNotFound)
{
    EXPECT_EQ(read(Property(Order::LittleEndian, 0).bytes()), std::nullopt);
    EXPECT_EQ(read(Property(Order::LittleEndian, 1).integer("Net/EnableEventSound", 1).bytes()), std::nullopt);
    EXPECT_EQ(read(Property(Order::LittleEndian, 1).integer("Net/EnableEventSoundsToo", 1).bytes()), std::nullopt);
}

TEST(XSettings, OneBehindTheirCountIsNotRead)
{
    EXPECT_EQ(read(Property(Order::LittleEndian, 1).integer("other", 1).integer(wanted, 1).bytes()), std::nullopt);
}

TEST(XSettings, ACountBeyondTheirEndDoesNotHideWhatIsThere)
{
    EXPECT_EQ(read(Property(Order::LittleEndian, 0xFFFFFFFF).integer(wanted, 1).bytes()), 1);
    EXPECT_EQ(read(Property(Order::LittleEndian, 0xFFFFFFFF).integer("other", 1).bytes()), std::nullopt);
}

TEST(XSettings, ATextOrColorOfTheNameIsNoAnswer)
{
    EXPECT_EQ(read(Property(Order::LittleEndian, 1).string(wanted, "1").bytes()), std::nullopt);
    EXPECT_EQ(read(Property(Order::LittleEndian, 1).color(wanted).bytes()), std::nullopt);
}

TEST(XSettings, NothingIsReadBehindASettingOfAnUnknownKind)
{
    EXPECT_EQ(read(Property(Order::LittleEndian, 2).head('\3', "new").integer(wanted, 1).bytes()), std::nullopt);
    EXPECT_EQ(read(Property(Order::LittleEndian, 2).integer(wanted, 1).head('\3', "new").bytes()), 1);
}

TEST(XSettings, WithoutADisplayNothingIsSaid)
{
    ASSERT_EQ(::setenv("DISPLAY", "/nowhere", 1), 0);
    EXPECT_EQ(eventSoundsByXSettings(), std::nullopt);
    ASSERT_EQ(::unsetenv("DISPLAY"), 0);
    EXPECT_EQ(eventSoundsByXSettings(), std::nullopt);
}

} // namespace
