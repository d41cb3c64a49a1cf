#pragma once

#include "store/Schema.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// Private to store/: the schema as data. Creating a file, checking one and
// building the statements for single rows all read these tables.

enum class FieldType : std::uint8_t { Key, Name, Text, Number, Flag, Single };

struct FieldDefinition
{
    std::string_view name;
    FieldType type;
};

struct TableDefinition
{
    std::string_view name;
    std::span<const FieldDefinition> fields;
};

inline constexpr auto topicFields = std::to_array<FieldDefinition>({
    {"Index", FieldType::Key},
    {"Name", FieldType::Name},
    {"Notes", FieldType::Text},
});
static_assert(topicFields.size() == TopicField::Notes + 1);

inline constexpr auto cardFields = std::to_array<FieldDefinition>({
    {"Index", FieldType::Key},
    {"NIndex", FieldType::Number},
    {"Front", FieldType::Text},
    {"Back", FieldType::Text},
    {"Marked", FieldType::Flag},
    {"Shuffle", FieldType::Single},
    {"isTrueFalse", FieldType::Flag},
    {"isFront", FieldType::Flag},
    {"Answer", FieldType::Number},
    {"Wrong1", FieldType::Number},
    {"Wrong2", FieldType::Number},
});
static_assert(cardFields.size() == CardField::Wrong2 + 1);

inline constexpr auto subjectTables = std::to_array<TableDefinition>({
    {"Topics", topicFields},
    {"FlashCards", cardFields},
});

inline constexpr std::size_t maxFieldCount = std::max(topicFields.size(), cardFields.size());

/// Compares names as the engine does: only the letters A to Z have no case.
constexpr bool sameName(std::string_view a, std::string_view b) noexcept
{
    constexpr auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::ranges::equal(a, b, {}, lower, lower);
}

inline std::string quotedName(std::string_view name)
{
    return std::string(1, '"').append(name).append(1, '"');
}
