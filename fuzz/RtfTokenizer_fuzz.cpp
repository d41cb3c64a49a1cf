#include "fuzz/FuzzTarget.h"
#include "platform/rtf/RtfTokenizer.h"

#include <algorithm>

namespace {

/// What the tokenizer may leave out: line breaks, a \'hh without digits, and a
/// backslash that ends the input.
bool isDropped(std::string_view gap, bool isLast)
{
    while (!gap.empty()) {
        if (gap.front() == '\r' || gap.front() == '\n') {
            gap.remove_prefix(1);
        } else if (gap.starts_with("\\'")) {
            gap.remove_prefix(2);
            for (int digit = 0; digit < 2 && !gap.empty(); ++digit) {
                if (std::string_view("\\{}\r\n").find(gap.front()) != std::string_view::npos) {
                    break;
                }
                gap.remove_prefix(1);
            }
        } else {
            return isLast && gap == "\\";
        }
    }
    return true;
}

bool isWord(std::string_view text)
{
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    return text.size() == 1 || (!text.empty() && std::ranges::all_of(text, isLetter));
}

void check(const RtfToken &token)
{
    switch (token.kind) {
    case RtfToken::Kind::GroupStart: require(token.text == "{", "a group starts with a brace"); break;
    case RtfToken::Kind::GroupEnd: require(token.text == "}", "a group ends with a brace"); break;
    case RtfToken::Kind::Word: require(isWord(token.text), "a word is letters or one character"); break;
    case RtfToken::Kind::Text: require(!token.text.empty(), "text is not empty"); break;
    case RtfToken::Kind::HexByte:
        require(token.number && *token.number >= 0 && *token.number <= 255, "a byte is one");
        break;
    case RtfToken::Kind::Binary: require(!token.text.empty(), "binary data is not empty"); break;
    case RtfToken::Kind::End: require(token.text.empty(), "the end is empty"); break;
    }
}

} // namespace

/// Tokens cover the input from its first byte to its last, each at least one.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const std::string_view rtf = fuzzedText(data, size);
    RtfTokenizer tokenizer(rtf);
    std::size_t end = 0; // of the last token
    for (;;) {
        const RtfToken token = tokenizer.next();
        const bool isLast = token.kind == RtfToken::Kind::End;
        check(token);
        require(token.offset >= end && token.offset <= size, "a token stands behind the last one");
        require(isDropped(rtf.substr(end, token.offset - end), isLast), "nothing is left out");
        end = tokenizer.offset();
        if (isLast) {
            break;
        }
        require(end > token.offset, "a token is at least one byte");
        const bool isBreak = token.kind == RtfToken::Kind::Word && token.text == "\n"; // however it is written
        require(isBreak || (token.text.data() >= rtf.data() + token.offset &&
                            token.text.data() + token.text.size() <= rtf.data() + end),
                "a token's text stands in it");
    }
    require(end == size && tokenizer.next().kind == RtfToken::Kind::End, "the end is the end");
    return 0;
}
