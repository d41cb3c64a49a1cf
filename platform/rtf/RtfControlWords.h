#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

/// What a control word does. Several words may share an effect.
enum class RtfEffect : std::uint8_t {
    Ignorable,   ///< \*: a reader that does not know the next word skips the group
    Destination, ///< value: an RtfDestination, what the rest of the group is for

    // Text.
    Character, ///< value: its code
    Unicode,
    FallbackLength,
    ParagraphEnd,
    Cell, ///< value: 1, or 0 in a table that stands in a cell
    Row,  ///< likewise
    FieldStart,

    // The document.
    CodePage,
    DefaultFont,

    // Inside the font table and the colour table.
    FontCharset,
    FontCodePage,
    Red,
    Green,
    Blue,

    // Characters.
    CharacterReset,
    Font,
    FontSize, ///< half points
    Bold,
    Italic,
    Underline,
    Strike,
    Capitals,
    SmallCapitals,
    Hidden,
    Superscript,
    Subscript,
    BaseLine,
    Raise, ///< half points
    Lower, ///< half points
    Color,
    Highlight,

    // Paragraphs, from ParagraphReset to CellEdge; lengths in twips.
    ParagraphReset,
    Alignment, ///< value: an RtfAlignment
    LeftIndent,
    FirstLineIndent,
    RightIndent,
    SpaceBefore,
    SpaceAfter,
    LineSpacing,
    LineSpacingMultiple,
    RightToLeft,
    TabKind, ///< value: an RtfTabKind
    TabStop,
    ListNumber,
    ListLevel,
    InTable,
    RowStart,
    CellEdge, ///< twips

    // Inside \pn.
    NumberingStyle, ///< value: an RtfListStyle
    NumberingStart,
};

/// What the text and the words of a group are for.
enum class RtfDestination : std::uint8_t {
    Body,
    Note,    ///< text of a foot note or a comment: stands where its mark is
    TextBox, ///< text of a drawn shape: paragraphs of their own
    Margin,  ///< a header or a footer
    Skipped,
    FontTable,
    ColorTable,
    ListTable,
    ListOverrideTable,
    ListText,         ///< the mark of a paragraph as any reader may show it
    FieldInstruction, ///< what a field is: its result is text
    FieldResult,
    Shape, ///< a drawing: of its text only boxes count
    Object,
    ShapePicture,        ///< a picture in the form of newer programs, perhaps with an older one behind it
    Numbering,           ///< \pn: how paragraphs are marked
    NumberingTextBefore, ///< before the number, or the bullet itself
    NumberingTextAfter,
    Alternatives,       ///< \upr: the same text twice
    UnicodeAlternative, ///< \ud: the one of the two to read
};

enum class RtfAlignment : std::uint8_t { Left, Center, Right };
enum class RtfTabKind : std::uint8_t { Left, Right, Center, Decimal };
enum class RtfListStyle : std::uint8_t { None, Bullet, Decimal, LowerLetter, UpperLetter, LowerRoman, UpperRoman };

/// Where a word's value comes from.
enum class RtfParameter : std::uint8_t {
    Fixed,    ///< the table, whatever number is written
    Optional, ///< the number; without one, the table
    Required, ///< the number; without one the word does nothing
};

struct RtfControlWord
{
    std::string_view word; ///< without the backslash; a control symbol is a word of one character
    RtfEffect effect;
    RtfParameter parameter;
    int value;
};

/// Every word that the reader knows, sorted by word.
[[nodiscard]] std::span<const RtfControlWord> rtfControlWords();

/// The row of \p word, or nullptr if the reader does not know it.
[[nodiscard]] const RtfControlWord *findRtfControlWord(std::string_view word);

/// The value of \p row when it is written with \p number; nothing if the word
/// is to be ignored.
[[nodiscard]] std::optional<int> rtfValue(const RtfControlWord &row, std::optional<int> number);

/// The word that stands for the character \p code; empty if there is none.
[[nodiscard]] std::string_view rtfWordForCharacter(char16_t code);
