#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What a learner tells of the program: a word that says what it is, and what belongs to it.
///
/// "begin" comes before a command that stores, with the command and all that it is to store; the answer to it is one
/// byte. Afterwards comes "done", with what the window shows, or "failed" with the report. "trouble" is a report that
/// no storing command gave.
using Message = std::vector<std::string>;

namespace Answer {
constexpr char go = 'g';     ///< give the command
constexpr char finish = 'f'; ///< give it, then leave the program
} // namespace Answer

/// \p message as a line without its end.
inline std::string lineOf(const Message &message)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string line;
    for (std::size_t field = 0; field < message.size(); ++field) {
        line += field > 0 ? "\t" : "";
        for (const char letter : message[field]) {
            const auto code = static_cast<unsigned char>(letter);
            if (code < ' ' || letter == '%') {
                line += {'%', digits[code / 16], digits[code % 16]};
            } else {
                line += letter;
            }
        }
    }
    return line;
}

/// The message that lineOf() made \p line of.
inline Message messageOf(std::string_view line)
{
    Message message(1);
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line[at] == '\t') {
            message.emplace_back();
        } else if (line[at] == '%') {
            message.back() += static_cast<char>(std::stoi(std::string(line.substr(at + 1, 2)), nullptr, 16));
            at += 2;
        } else {
            message.back() += line[at];
        }
    }
    return message;
}
