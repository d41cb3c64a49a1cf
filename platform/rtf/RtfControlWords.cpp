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
    {"annotation", Destination, Fixed, number(RtfDestination::Note)},
    {"ansi", CodePage, Fixed, 1252},
    {"ansicpg", CodePage, Required, 0},
    {"atnauthor", Destination, Fixed, number(RtfDestination::Note)},
    {"atndate", Destination, Fixed, number(RtfDestination::Skipped)},
    {"atnicn", Destination, Fixed, number(RtfDestination::Skipped)},
    {"atnid", Destination, Fixed, number(RtfDestination::Note)},
    {"atnparent", Destination, Fixed, number(RtfDestination::Skipped)},
    {"atnref", Destination, Fixed, number(RtfDestination::Skipped)},
    {"b", Bold, Optional, 1},
    {"bkmkend", Destination, Fixed, number(RtfDestination::Skipped)},
    {"bkmkstart", Destination, Fixed, number(RtfDestination::Skipped)},
    {"blue", Blue, Optional, 0},
    {"bullet", Character, Fixed, 0x2022},
    {"caps", Capitals, Optional, 1},
    {"cb", Highlight, Optional, 0},
    {"cell", Cell, Fixed, 1},
    {"cellx", CellEdge, Required, 0},
    {"cf", Color, Optional, 0},
    {"colorschememapping", Destination, Fixed, number(RtfDestination::Skipped)},
    {"colortbl", Destination, Fixed, number(RtfDestination::ColorTable)},
    {"cpg", FontCodePage, Required, 0},
    {"datafield", Destination, Fixed, number(RtfDestination::Skipped)},
    {"datastore", Destination, Fixed, number(RtfDestination::Skipped)},
    {"deff", DefaultFont, Optional, 0},
    {"dn", Lower, Optional, 6},
    {"do", Destination, Fixed, number(RtfDestination::Shape)},
    {"docvar", Destination, Fixed, number(RtfDestination::Skipped)},
    {"dptxbxtext", Destination, Fixed, number(RtfDestination::TextBox)},
    {"emdash", Character, Fixed, 0x2014},
    {"emspace", Character, Fixed, 0x0020},
    {"endash", Character, Fixed, 0x2013},
    {"enspace", Character, Fixed, 0x0020},
    {"f", Font, Optional, 0},
    {"fcharset", FontCharset, Required, 0},
    {"fi", FirstLineIndent, Optional, 0},
    {"field", FieldStart, Fixed, 0},
    {"fldinst", Destination, Fixed, number(RtfDestination::FieldInstruction)},
    {"fldrslt", Destination, Fixed, number(RtfDestination::FieldResult)},
    {"fonttbl", Destination, Fixed, number(RtfDestination::FontTable)},
    {"footer", Destination, Fixed, number(RtfDestination::Margin)},
    {"footerf", Destination, Fixed, number(RtfDestination::Margin)},
    {"footerl", Destination, Fixed, number(RtfDestination::Margin)},
    {"footerr", Destination, Fixed, number(RtfDestination::Margin)},
    {"footnote", Destination, Fixed, number(RtfDestination::Note)},
    {"fs", FontSize, Optional, 24},
    {"generator", Destination, Fixed, number(RtfDestination::Skipped)},
    {"green", Green, Optional, 0},
    {"header", Destination, Fixed, number(RtfDestination::Margin)},
    {"headerf", Destination, Fixed, number(RtfDestination::Margin)},
    {"headerl", Destination, Fixed, number(RtfDestination::Margin)},
    {"headerr", Destination, Fixed, number(RtfDestination::Margin)},
    {"highlight", Highlight, Optional, 0},
    {"i", Italic, Optional, 1},
    {"ilvl", ListLevel, Required, 0},
    {"info", Destination, Fixed, number(RtfDestination::Skipped)},
    {"intbl", InTable, Fixed, 1},
    {"latentstyles", Destination, Fixed, number(RtfDestination::Skipped)},
    {"ldblquote", Character, Fixed, 0x201c},
    {"li", LeftIndent, Optional, 0},
    {"line", Character, Fixed, 0x2028},
    {"listoverridetable", Destination, Fixed, number(RtfDestination::ListOverrideTable)},
    {"listpicture", Destination, Fixed, number(RtfDestination::Skipped)},
    {"listtable", Destination, Fixed, number(RtfDestination::ListTable)},
    {"listtext", Destination, Fixed, number(RtfDestination::ListText)},
    {"lquote", Character, Fixed, 0x2018},
    {"ls", ListNumber, Required, 0},
    {"ltrmark", Character, Fixed, 0x200e},
    {"ltrpar", RightToLeft, Fixed, 0},
    {"mac", CodePage, Fixed, 10000},
    {"mmathPr", Destination, Fixed, number(RtfDestination::Skipped)},
    {"nestcell", Cell, Fixed, 0},
    {"nestrow", Row, Fixed, 0},
    {"nonesttables", Destination, Fixed, number(RtfDestination::Skipped)},
    {"nonshppict", Destination, Fixed, number(RtfDestination::Skipped)},
    {"nosupersub", BaseLine, Fixed, 0},
    {"object", Destination, Fixed, number(RtfDestination::Object)},
    {"page", ParagraphEnd, Fixed, 0},
    {"par", ParagraphEnd, Fixed, 0},
    {"pard", ParagraphReset, Fixed, 0},
    {"pc", CodePage, Fixed, 437},
    {"pca", CodePage, Fixed, 850},
    {"pgptbl", Destination, Fixed, number(RtfDestination::Skipped)},
    {"pict", Destination, Fixed, number(RtfDestination::Object)},
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
    {"pntext", Destination, Fixed, number(RtfDestination::ListText)},
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
    {"revtbl", Destination, Fixed, number(RtfDestination::Skipped)},
    {"ri", RightIndent, Optional, 0},
    {"row", Row, Fixed, 1},
    {"rquote", Character, Fixed, 0x2019},
    {"rsidtbl", Destination, Fixed, number(RtfDestination::Skipped)},
    {"rtlmark", Character, Fixed, 0x200f},
    {"rtlpar", RightToLeft, Fixed, 1},
    {"rxe", Destination, Fixed, number(RtfDestination::Skipped)},
    {"sa", SpaceAfter, Optional, 0},
    {"sb", SpaceBefore, Optional, 0},
    {"scaps", SmallCapitals, Optional, 1},
    {"sect", ParagraphEnd, Fixed, 0},
    {"shpgrp", Destination, Fixed, number(RtfDestination::Body)},
    {"shpinst", Destination, Fixed, number(RtfDestination::Shape)},
    {"shppict", Destination, Fixed, number(RtfDestination::ShapePicture)},
    {"shprslt", Destination, Fixed, number(RtfDestination::Skipped)},
    {"shptxt", Destination, Fixed, number(RtfDestination::TextBox)},
    {"sl", LineSpacing, Optional, 0},
    {"slmult", LineSpacingMultiple, Optional, 0},
    {"strike", Strike, Optional, 1},
    {"striked", Strike, Optional, 1},
    {"stylesheet", Destination, Fixed, number(RtfDestination::Skipped)},
    {"sub", Subscript, Optional, 1},
    {"super", Superscript, Optional, 1},
    {"tab", Character, Fixed, 0x0009},
    {"tc", Destination, Fixed, number(RtfDestination::Skipped)},
    {"themedata", Destination, Fixed, number(RtfDestination::Skipped)},
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
    {"userprops", Destination, Fixed, number(RtfDestination::Skipped)},
    {"v", Hidden, Optional, 1},
    {"xe", Destination, Fixed, number(RtfDestination::Skipped)},
    {"xmlnstbl", Destination, Fixed, number(RtfDestination::Skipped)},
    {"zwj", Character, Fixed, 0x200d},
    {"zwnj", Character, Fixed, 0x200c},
    {"~", Character, Fixed, 0x00a0},
});
static_assert(std::ranges::adjacent_find(table, std::ranges::greater_equal{}, &RtfControlWord::word) == table.end(),
              "keep the table sorted and free of duplicates");

// Where the row of a word is: found by its first letters, its last one and its length.
constexpr std::size_t slotCount = 2048;
constexpr std::uint16_t noRow = 0xffff;

constexpr std::size_t slotOf(std::string_view word)
{
    std::size_t hash = word.size();
    for (const char c : word.substr(0, 8)) {
        hash = hash * 31 + static_cast<unsigned char>(c);
    }
    return (hash * 31 + static_cast<unsigned char>(word.back())) % slotCount;
}

constexpr std::size_t nextSlot(std::size_t slot)
{
    return (slot + 1) % slotCount;
}

constexpr auto slots = []() {
    std::array<std::uint16_t, slotCount> places{};
    places.fill(noRow);
    for (std::size_t row = 0; row < table.size(); ++row) {
        std::size_t slot = slotOf(table[row].word);
        while (places[slot] != noRow) {
            slot = nextSlot(slot);
        }
        places[slot] = static_cast<std::uint16_t>(row);
    }
    return places;
}();

} // namespace

std::span<const RtfControlWord> rtfControlWords()
{
    return table;
}

const RtfControlWord *findRtfControlWord(std::string_view word)
{
    if (word.empty()) {
        return nullptr;
    }
    for (std::size_t slot = slotOf(word); slots[slot] != noRow; slot = nextSlot(slot)) {
        const RtfControlWord &row = table[slots[slot]];
        if (row.word == word) {
            return &row;
        }
    }
    return nullptr;
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
