#pragma once

#include "platform/rtf/RtfControlWords.h"
#include "platform/rtf/RtfFontTable.h"

#include <QTextBlock>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextListFormat>

#include <compare>
#include <vector>

class QFont;
class QTextDocument;

/// Properties that a document keeps for RTF beside the ones that it shows.
enum RtfProperty : int {
    /// QString: character set and family, as long as they belong together.
    RtfFontCharset = QTextFormat::UserProperty + 0x5201,
    RtfHiddenText,    ///< bool, of characters
    RtfBaselineShift, ///< int: half points up, negative down; of characters
    /// int: twips from the left margin of a paragraph in a list to its further
    /// lines as RTF counts them. The margin itself is where the mark begins.
    RtfListHanging,
    RtfListStart, ///< int, of a list: its first number
};

/// A colour as 0xRRGGBB.
inline constexpr int automaticColor = -1;

enum class RtfScript : std::uint8_t { Normal, Superscript, Subscript };

/// The format of characters as RTF has it.
struct RtfCharacter
{
    int font = -1;      ///< place in the table of fonts in use; -1: the document's default font
    int halfPoints = 0; ///< 0: the document's default size
    int color = automaticColor;
    int highlight = automaticColor;
    int shift = 0; ///< half points above the base line
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    bool hidden = false;
    RtfScript script = RtfScript::Normal;

    bool operator==(const RtfCharacter &) const = default;
};

struct RtfCharacterHash
{
    std::size_t operator()(const RtfCharacter &character) const noexcept;
};

/// How a paragraph of a list is marked.
struct RtfList
{
    RtfListStyle style = RtfListStyle::None; ///< None: the paragraph is in no list
    int start = 1;
    QString before; ///< text around the number
    QString after;

    bool operator==(const RtfList &) const = default;
};

struct RtfTab
{
    RtfTabKind kind = RtfTabKind::Left;
    int position = 0;

    bool operator==(const RtfTab &) const = default;
};

/// The format of a paragraph as RTF has it; lengths in twips.
struct RtfParagraph
{
    RtfAlignment alignment = RtfAlignment::Left;
    bool rightToLeft = false;
    bool lineSpacingIsMultiple = false; ///< of 1/240 line
    int leftIndent = 0;                 ///< of all lines but the first
    int firstLineIndent = 0;            ///< beyond the left indent
    int rightIndent = 0;
    int spaceBefore = 0;
    int spaceAfter = 0;
    int lineSpacing = 0; ///< 0: automatic, positive: at least, negative: exactly
    std::vector<RtfTab> tabs;
    RtfList list;

    bool operator==(const RtfParagraph &) const = default;
};

/// Twips and document units. 1440 twips are an inch; a document has 96 units an
/// inch unless the device that it is laid out for says otherwise.
class RtfUnits
{
public:
    explicit RtfUnits(const QTextDocument &document);

    [[nodiscard]] qreal fromTwips(int twips) const { return twips * m_unitsPerTwip; }
    /// The inverse of fromTwips().
    [[nodiscard]] int toTwips(qreal units) const;
    /// Pixel sizes of fonts to half points.
    [[nodiscard]] int toHalfPoints(qreal units) const { return toTwips(units) / 10; }

private:
    qreal m_unitsPerTwip;
};

// Each pair of functions is inverse to the other.

/// \p font may be nullptr: the document's default font.
[[nodiscard]] QTextCharFormat toCharFormat(const RtfCharacter &character, const RtfFont *font);
/// The format without its font; a size that \p format leaves open is that of \p fallback.
[[nodiscard]] RtfCharacter characterOf(const QTextCharFormat &format, const QFont &fallback, const RtfUnits &units);
[[nodiscard]] RtfFont fontOf(const QTextCharFormat &format, const QFont &fallback);

/// The format without its list, but set for standing in it.
[[nodiscard]] QTextBlockFormat toBlockFormat(const RtfParagraph &paragraph, const RtfUnits &units);
[[nodiscard]] QTextListFormat toListFormat(const RtfList &list);
[[nodiscard]] RtfParagraph paragraphOf(const QTextBlock &block, const RtfUnits &units);
