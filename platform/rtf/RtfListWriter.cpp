#include "platform/rtf/RtfListWriter.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

/// A roman number beyond these has no common form.
constexpr int maxRoman = 3999;

std::string lettersOf(int number)
{
    constexpr int letters = 26;
    std::string text;
    for (; number > 0; number = (number - 1) / letters) {
        text.insert(text.begin(), static_cast<char>('a' + (number - 1) % letters));
    }
    return text;
}

std::string romanOf(int number)
{
    constexpr auto digits = std::to_array<std::pair<int, std::string_view>>({
        {1000, "m"},
        {900, "cm"},
        {500, "d"},
        {400, "cd"},
        {100, "c"},
        {90, "xc"},
        {50, "l"},
        {40, "xl"},
        {10, "x"},
        {9, "ix"},
        {5, "v"},
        {4, "iv"},
        {1, "i"},
    });
    if (number > maxRoman) {
        return std::to_string(number);
    }
    std::string text;
    for (const auto &[value, digit] : digits) {
        for (; number >= value; number -= value) {
            text += digit;
        }
    }
    return text;
}

std::string upper(std::string text)
{
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return text;
}

std::string_view numberWord(RtfListStyle style)
{
    switch (style) {
    case RtfListStyle::LowerLetter: return "pnlcltr";
    case RtfListStyle::UpperLetter: return "pnucltr";
    case RtfListStyle::LowerRoman: return "pnlcrm";
    case RtfListStyle::UpperRoman: return "pnucrm";
    case RtfListStyle::None:
    case RtfListStyle::Bullet:
    case RtfListStyle::Decimal: break;
    }
    return "pndec";
}

void writeBullet(RtfStream &out, int symbolFont)
{
    out.word("pnlvlblt");
    out.word("pnf", symbolFont);
    out.word("pnindent", 0);
    out.open();
    out.word("pntxtb");
    out.symbolBullet();
    out.close();
}

void writeNumber(RtfStream &out, const RtfList &list, const RtfCodePage &page)
{
    out.word("pnlvlbody");
    out.word("pnf", 0);
    out.word("pnindent", 0);
    out.word("pnstart", list.start);
    out.word(numberWord(list.style));
    for (const auto &[word, text] : {std::pair("pntxtb", list.before), std::pair("pntxta", list.after)}) {
        if (!text.isEmpty()) {
            out.open();
            out.word(word);
            out.text(text, page);
            out.close();
        }
    }
}

} // namespace

void writeRtfListMark(RtfStream &out, const RtfList &list, int number, int symbolFont, const RtfCodePage &page)
{
    out.open();
    out.word("pntext");
    if (list.style == RtfListStyle::Bullet) {
        out.word("f", symbolFont);
        out.symbolBullet();
    } else {
        out.word("f", 0);
        out.text(list.before, page);
        out.ascii(rtfListNumber(list.style, number));
        out.text(list.after, page);
    }
    out.word("tab");
    out.close();
}

void writeRtfListFormat(RtfStream &out, const RtfList &list, int symbolFont, const RtfCodePage &page)
{
    out.open();
    out.ignorable();
    out.word("pn");
    if (list.style == RtfListStyle::Bullet) {
        writeBullet(out, symbolFont);
    } else {
        writeNumber(out, list, page);
    }
    out.close();
}

std::string rtfListNumber(RtfListStyle style, int number)
{
    switch (style) {
    case RtfListStyle::LowerLetter: return lettersOf(number);
    case RtfListStyle::UpperLetter: return upper(lettersOf(number));
    case RtfListStyle::LowerRoman: return romanOf(number);
    case RtfListStyle::UpperRoman: return upper(romanOf(number));
    case RtfListStyle::None:
    case RtfListStyle::Bullet:
    case RtfListStyle::Decimal: break;
    }
    return std::to_string(number);
}
