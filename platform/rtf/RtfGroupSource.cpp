#include "platform/rtf/RtfGroupSource.h"

#include <QByteArrayView>

#include <algorithm>

namespace {

bool isPlain(char c)
{
    return (c >= ' ' && c <= '~') || c == '\r' || c == '\n' || c == '\t';
}

bool isPlain(std::string_view text)
{
    return std::ranges::all_of(text, [](char c) { return isPlain(c); });
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Whether \p c behind a control word would belong to it.
bool isWordByte(char c)
{
    return isLetter(c) || (c >= '0' && c <= '9') || c == '-';
}

QByteArrayView viewOf(std::string_view text)
{
    return {text.data(), static_cast<qsizetype>(text.size())};
}

void writeText(QByteArray &out, std::string_view text)
{
    for (const char c : text) {
        if (c == '\\' || c == '{' || c == '}') {
            out += '\\';
            out += c;
        } else if (isPlain(c)) {
            out += c;
        } else if (c != '\0') {
            out += "\\'" + QByteArray(1, c).toHex();
        }
    }
}

void writeWord(QByteArray &out, const RtfToken &token)
{
    if (token.text == "bin") {
        return; // its data is written as digits
    }
    if (token.text == "\n") {
        out += "\\par ";
        return;
    }
    if (!isPlain(token.text)) {
        return; // a control symbol that is none
    }
    out += '\\';
    out += viewOf(token.text);
    if (token.number) {
        out += QByteArray::number(*token.number);
    }
    if (isLetter(token.text.front())) {
        out += ' ';
    }
}

QByteArray rewritten(std::string_view text)
{
    QByteArray out;
    RtfTokenizer tokenizer(text);
    qsizetype depth = 0;
    for (RtfToken token = tokenizer.next(); token.kind != RtfToken::Kind::End; token = tokenizer.next()) {
        switch (token.kind) {
        case RtfToken::Kind::GroupStart:
            ++depth;
            out += '{';
            break;
        case RtfToken::Kind::GroupEnd:
            --depth;
            out += '}';
            break;
        case RtfToken::Kind::Word: writeWord(out, token); break;
        case RtfToken::Kind::Text: writeText(out, token.text); break;
        case RtfToken::Kind::HexByte: out += "\\'" + QByteArray(1, static_cast<char>(*token.number)).toHex(); break;
        case RtfToken::Kind::Binary: out += viewOf(token.text).toByteArray().toHex(); break;
        case RtfToken::Kind::End: break;
        }
    }
    return out.append(depth, '}');
}

} // namespace

RtfGroupRest takeGroup(RtfTokenizer &tokenizer)
{
    const std::string_view left = tokenizer.rest();
    RtfGroupRest group;
    std::size_t depth = 0;
    bool isBinary = false;
    while (true) {
        const RtfTokenizer before = tokenizer;
        const RtfToken token = tokenizer.next();
        const bool isEnd = token.kind == RtfToken::Kind::End;
        if (isEnd || (token.kind == RtfToken::Kind::GroupEnd && depth == 0)) {
            group.isClosed = !isEnd;
            group.text = left.substr(0, left.size() - tokenizer.rest().size() - (isEnd ? 0 : 1));
            group.isPlain = !isBinary && isPlain(group.text);
            tokenizer = before;
            return group;
        }
        if (token.kind == RtfToken::Kind::GroupStart) {
            ++depth;
        } else if (token.kind == RtfToken::Kind::GroupEnd) {
            --depth;
        }
        isBinary = isBinary || token.kind == RtfToken::Kind::Binary;
        group.hasPicture = group.hasPicture || (token.kind == RtfToken::Kind::Word && token.text == "pict");
    }
}

QByteArray toGroup(std::string_view opening, const RtfGroupRest &rest)
{
    QByteArray group = '{' + viewOf(opening).toByteArray();
    if (rest.isClosed && rest.isPlain) {
        group += viewOf(rest.text);
    } else {
        const QByteArray text = rewritten(rest.text);
        // What was between the word and the text may be gone.
        const bool wouldJoin = !text.isEmpty() && (isWordByte(text.front()) || text.front() == ' ');
        group += wouldJoin && isWordByte(group.back()) ? " " + text : text;
    }
    return group + '}';
}
