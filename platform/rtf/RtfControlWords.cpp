#include "platform/rtf/RtfControlWords.h"

#include <algorithm>
#include <array>

namespace {

using enum RtfEffect;
using enum RtfParameter;

constexpr int number(auto enumerator)
{
    return static_cast<int>(enumerator);
}

// Sorted by word (checked below). To teach the reader a word, add a line here;
// only a new effect needs code.
constexpr auto table = std::to_array<RtfControlWord>({
    // word         effect               parameter  value
    {"\t", Character, Fixed, 0x0009},
    {"\n", ParagraphEnd, Fixed, 0},
    {"*", Ignorable, Fixed, 0},
    {"_", Character, Fixed, 0x2011},
    {"annotation", Destination, Fixed, number(RtfDestination::Skipped)},
    {"ansi", CodePage, Fixed, 1252},
    {"ansicpg", CodePage, Required, 0},
    {"b", Bold, Optional, 1},
    {"blue", Blue, Optional, 0},
    {"bullet", Character, Fixed, 0x2022},
    {"cb", Highlight, Optional, 0},
    {"cell", Cell, Fixed, 1},
    {"cellx", CellEdge, Fixed, 0},
    {"cf", Color, Optional, 0},
    {"colortbl", Destination, Fixed, number(RtfDestination::ColorTable)},
    {"cpg", FontCodePage, Required, 0},
    {"deff", DefaultFont, Optional, 0},
    {"dn", Lower, Optional, 6},
    {"emdash", Character, Fixed, 0x2014},
    {"emspace", Character, Fixed, 0x0020},
    {"endash", Character, Fixed, 0x2013},
    {"enspace", Character, Fixed, 0x0020},
    {"f", Font, Optional, 0},
    {"fcharset", FontCharset, Required, 0},
    {"fi", FirstLineIndent, Optional, 0},
    {"fldinst", Destination, Fixed, number(RtfDestination::Skipped)},
    {"fonttbl", Destination, Fixed, number(RtfDestination::FontTable)},
    {"footer", Destination, Fixed, number(RtfDestination::Skipped)},
    {"footerf", Destination, Fixed, number(RtfDestination::Skipped)},
    {"footerl", Destination, Fixed, number(RtfDestination::Skipped)},
    {"footerr", Destination, Fixed, number(RtfDestination::Skipped)},
    {"footnote", Destination, Fixed, number(RtfDestination::Skipped)},
    {"fs", FontSize, Optional, 24},
    {"green", Green, Optional, 0},
    {"header", Destination, Fixed, number(RtfDestination::Skipped)},
    {"headerf", Destination, Fixed, number(RtfDestination::Skipped)},
    {"headerl", Destination, Fixed, number(RtfDestination::Skipped)},
    {"headerr", Destination, Fixed, number(RtfDestination::Skipped)},
    {"highlight", Highlight, Optional, 0},
    {"i", Italic, Optional, 1},
    {"info", Destination, Fixed, number(RtfDestination::Skipped)},
    {"intbl", InTable, Fixed, 1},
    {"ldblquote", Character, Fixed, 0x201c},
    {"li", LeftIndent, Optional, 0},
    {"line", Character, Fixed, 0x2028},
    {"listoverridetable", Destination, Fixed, number(RtfDestination::Skipped)},
    {"listtable", Destination, Fixed, number(RtfDestination::Skipped)},
    {"listtext", Destination, Fixed, number(RtfDestination::Skipped)},
    {"lquote", Character, Fixed, 0x2018},
    {"ltrmark", Character, Fixed, 0x200e},
    {"ltrpar", RightToLeft, Fixed, 0},
    {"mac", CodePage, Fixed, 10000},
    {"nestcell", Cell, Fixed, 0},
    {"nestrow", Row, Fixed, 0},
    {"nonesttables", Destination, Fixed, number(RtfDestination::Skipped)},
    {"nonshppict", Destination, Fixed, number(RtfDestination::Skipped)},
    {"nosupersub", BaseLine, Fixed, 0},
    {"object", Destination, Fixed, number(RtfDestination::Skipped)},
    {"page", ParagraphEnd, Fixed, 0},
    {"par", ParagraphEnd, Fixed, 0},
    {"pard", ParagraphReset, Fixed, 0},
    {"pc", CodePage, Fixed, 437},
    {"pca", CodePage, Fixed, 850},
    {"pict", Destination, Fixed, number(RtfDestination::Skipped)},
    {"plain", CharacterReset, Fixed, 0},
    {"pn", Destination, Fixed, number(RtfDestination::Numbering)},
    {"pndec", NumberingStyle, Fixed, number(RtfListStyle::Decimal)},
    {"pnf", Font, Required, 0},
    {"pnlcltr", NumberingStyle, Fixed, number(RtfListStyle::LowerLetter)},
    {"pnlcrm", NumberingStyle, Fixed, number(RtfListStyle::LowerRoman)},
    {"pnlvlblt", NumberingStyle, Fixed, number(RtfListStyle::Bullet)},
    {"pnlvlbody", NumberingStyle, Fixed, number(RtfListStyle::Decimal)},
    {"pnlvlcont", NumberingStyle, Fixed, number(RtfListStyle::None)},
    {"pnstart", NumberingStart, Required, 0},
    {"pntext", Destination, Fixed, number(RtfDestination::Skipped)},
    {"pntxta", Destination, Fixed, number(RtfDestination::NumberingTextAfter)},
    {"pntxtb", Destination, Fixed, number(RtfDestination::NumberingTextBefore)},
    {"pnucltr", NumberingStyle, Fixed, number(RtfListStyle::UpperLetter)},
    {"pnucrm", NumberingStyle, Fixed, number(RtfListStyle::UpperRoman)},
    {"qc", Alignment, Fixed, number(RtfAlignment::Center)},
    {"qj", Alignment, Fixed, number(RtfAlignment::Left)},
    {"ql", Alignment, Fixed, number(RtfAlignment::Left)},
    {"qr", Alignment, Fixed, number(RtfAlignment::Right)},
    {"rdblquote", Character, Fixed, 0x201d},
    {"red", Red, Optional, 0},
    {"ri", RightIndent, Optional, 0},
    {"row", Row, Fixed, 1},
    {"rquote", Character, Fixed, 0x2019},
    {"rtlmark", Character, Fixed, 0x200f},
    {"rtlpar", RightToLeft, Fixed, 1},
    {"rxe", Destination, Fixed, number(RtfDestination::Skipped)},
    {"sa", SpaceAfter, Optional, 0},
    {"sb", SpaceBefore, Optional, 0},
    {"sect", ParagraphEnd, Fixed, 0},
    {"sl", LineSpacing, Optional, 0},
    {"slmult", LineSpacingMultiple, Optional, 0},
    {"strike", Strike, Optional, 1},
    {"striked", Strike, Optional, 1},
    {"stylesheet", Destination, Fixed, number(RtfDestination::Skipped)},
    {"sub", Subscript, Optional, 1},
    {"super", Superscript, Optional, 1},
    {"tab", Character, Fixed, 0x0009},
    {"tc", Destination, Fixed, number(RtfDestination::Skipped)},
    {"tqc", TabKind, Fixed, number(RtfTabKind::Center)},
    {"tqdec", TabKind, Fixed, number(RtfTabKind::Decimal)},
    {"tqr", TabKind, Fixed, number(RtfTabKind::Right)},
    {"trowd", RowStart, Fixed, 0},
    {"tx", TabStop, Required, 0},
    {"txe", Destination, Fixed, number(RtfDestination::Skipped)},
    {"u", Unicode, Required, 0},
    {"uc", FallbackLength, Optional, 1},
    {"ud", Destination, Fixed, number(RtfDestination::UnicodeAlternative)},
    {"ul", Underline, Optional, 1},
    {"uld", Underline, Optional, 1},
    {"uldash", Underline, Optional, 1},
    {"uldashd", Underline, Optional, 1},
    {"uldashdd", Underline, Optional, 1},
    {"uldb", Underline, Optional, 1},
    {"ulhwave", Underline, Optional, 1},
    {"ulldash", Underline, Optional, 1},
    {"ulnone", Underline, Fixed, 0},
    {"ulth", Underline, Optional, 1},
    {"ulthd", Underline, Optional, 1},
    {"ulthdash", Underline, Optional, 1},
    {"ulthdashd", Underline, Optional, 1},
    {"ulthdashdd", Underline, Optional, 1},
    {"ulthldash", Underline, Optional, 1},
    {"ululdbwave", Underline, Optional, 1},
    {"ulw", Underline, Optional, 1},
    {"ulwave", Underline, Optional, 1},
    {"up", Raise, Optional, 6},
    {"upr", Destination, Fixed, number(RtfDestination::Alternatives)},
    {"v", Hidden, Optional, 1},
    {"xe", Destination, Fixed, number(RtfDestination::Skipped)},
    {"zwj", Character, Fixed, 0x200d},
    {"zwnj", Character, Fixed, 0x200c},
    {"~", Character, Fixed, 0x00a0},
});
static_assert(std::ranges::adjacent_find(table, std::ranges::greater_equal{}, &RtfControlWord::word) == table.end(),
              "keep the table sorted and free of duplicates");

} // namespace

std::span<const RtfControlWord> rtfControlWords()
{
    return table;
}

const RtfControlWord *findRtfControlWord(std::string_view word)
{
    const auto row = std::ranges::lower_bound(table, word, {}, &RtfControlWord::word);
    return row != table.end() && row->word == word ? &*row : nullptr;
}

std::optional<int> rtfValue(const RtfControlWord &row, std::optional<int> number)
{
    switch (row.parameter) {
    case Fixed: return row.value;
    case Optional: return number.value_or(row.value);
    case Required: return number;
    }
    return std::nullopt;
}

std::string_view rtfWordForCharacter(char16_t code)
{
    if (code < 0x80) {
        return {};
    }
    const auto row = std::ranges::find_if(
        table, [code](const RtfControlWord &each) { return each.effect == Character && each.value == code; });
    return row != table.end() ? row->word : std::string_view();
}
