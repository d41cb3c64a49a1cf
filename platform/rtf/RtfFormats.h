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
    /// int: the character set of the family whose hash is RtfFontFamily. A document
    /// finds a format by a hash in which numbers count, but no list of families.
    RtfFontCharset = QTextFormat::UserProperty + 0x5201,
    RtfFontFamily, ///< int
    /// QString: the symbol font of characters that are those which it shows. They have no
    /// family: a font with them in the places of letters would show nothing for them.
    RtfSymbolFamily,
    RtfHiddenText,    ///< bool, of characters
    RtfBaselineShift, ///< int: half points up, negative down; of characters
    /// int: twips from the left margin of a paragraph in a list to its further
    /// lines as RTF counts them. The margin itself is where the mark begins.
    RtfListHanging,
    RtfListStart, ///< int, of a list: its first number, if that is not 1
    /// int, of a list with RtfListStart: its QTextListFormat::Style. A document numbers
    /// every list from 1, so its own style is none and the marks are painted over it.
    RtfListStyleShown,
    /// int: twips, of a paragraph whose lines would begin left of the page: where they
    /// would. It is shown at the page's edge.
    RtfNegativeIndent,
    RtfObjectSource, ///< QByteArray, see RtfObjectFormat.h
    RtfObjectSize,   ///< QSize in twips
    RtfObjectKey,    ///< int: a hash of the source, which formats are found by
};

/// A colour as 0xRRGGBB.
inline constexpr int automaticColor = -1;

enum class RtfScript : std::uint8_t { Normal, Superscript, Subscript };
enum class RtfCapitals : std::uint8_t { AsTyped, All, Small };

/// The format of characters as RTF has it.
struct RtfCharacter
{
    int font = -1;      ///< place in the table of fonts in use; -1: the document's default font
    int halfPoints = 0; ///< 0: the document's default size
    int color = automaticColor;
    int highlight = automaticColor;
    int shift = 0; ///< half points above the base line
    int link = -1; ///< place in the table of addresses in use; -1: none
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    bool hidden = false;
    RtfScript script = RtfScript::Normal;
    RtfCapitals capitals = RtfCapitals::AsTyped;

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

/// Twips and the units of a document. 1440 twips are an inch. The lengths of formats are
/// in document units, 96 an inch or what the screen has, which the layout scales to its
/// device. It takes as they are, so that they are in the device's own units: margins at the
/// sides, first-line indents, and the sizes of objects and of fonts in pixels. On a screen
/// both units are the same.
class RtfUnits
{
public:
    explicit RtfUnits(const QTextDocument &document);

    [[nodiscard]] qreal fromTwips(int twips) const { return twips * m_unitsPerTwip; }
    /// The inverse of fromTwips().
    [[nodiscard]] int toTwips(qreal units) const;

    [[nodiscard]] qreal deviceFromTwips(int twips) const { return twips * m_unitsPerTwip * m_scale; }
    /// The inverse of deviceFromTwips().
    [[nodiscard]] int deviceToTwips(qreal units) const { return toTwips(units / m_scale); }
    /// Pixel sizes of fonts to half points.
    [[nodiscard]] int deviceToHalfPoints(qreal units) const { return deviceToTwips(units) / 10; }

    /// Units of the device to a document unit.
    [[nodiscard]] qreal scale() const { return m_scale; }

private:
    qreal m_unitsPerTwip;
    qreal m_scale = 1;
};

// Each pair of functions is inverse to the other.

/// \p font may be nullptr: the document's default font. \p address may be empty: no link.
[[nodiscard]] QTextCharFormat toCharFormat(const RtfCharacter &character, const RtfFont *font, const QString &address);
/// The format without its font and its link; a size that \p format leaves open is that of \p fallback.
[[nodiscard]] RtfCharacter characterOf(const QTextCharFormat &format, const QFont &fallback, const RtfUnits &units);
[[nodiscard]] RtfFont fontOf(const QTextCharFormat &format, const QFont &fallback);

/// The format without its list, but set for standing in it.
[[nodiscard]] QTextBlockFormat toBlockFormat(const RtfParagraph &paragraph, const RtfUnits &units);
[[nodiscard]] QTextListFormat toListFormat(const RtfList &list);
[[nodiscard]] RtfParagraph paragraphOf(const QTextBlock &block, const RtfUnits &units);

/// Sets of \p format what toBlockFormat() makes of the indents of \p paragraph, and
/// leaves the rest.
void setIndents(QTextBlockFormat &format, const RtfParagraph &paragraph, const RtfUnits &units);
