#include "platform/rtf/RtfFormats.h"

#include <QAbstractTextDocumentLayout>
#include <QFont>
#include <QGuiApplication>
#include <QPaintDevice>
#include <QScreen>
#include <QTextDocument>
#include <QTextList>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr int twipsPerInch = 1440;
constexpr int defaultUnitsPerInch = 96;
/// Half points and twips: 1 point is 20 twips, \sl counts lines in 1/240.
constexpr qreal halfPointsPerPoint = 2;
constexpr qreal lineUnitsPerPercent = 2.4;

struct ListStyle
{
    RtfListStyle rtf;
    QTextListFormat::Style document;
};

constexpr auto listStyles = std::to_array<ListStyle>({
    {RtfListStyle::Bullet, QTextListFormat::ListDisc},
    {RtfListStyle::Bullet, QTextListFormat::ListCircle},
    {RtfListStyle::Bullet, QTextListFormat::ListSquare},
    {RtfListStyle::Decimal, QTextListFormat::ListDecimal},
    {RtfListStyle::LowerLetter, QTextListFormat::ListLowerAlpha},
    {RtfListStyle::UpperLetter, QTextListFormat::ListUpperAlpha},
    {RtfListStyle::LowerRoman, QTextListFormat::ListLowerRoman},
    {RtfListStyle::UpperRoman, QTextListFormat::ListUpperRoman},
});

QTextListFormat::Style documentStyle(RtfListStyle style)
{
    const auto row = std::ranges::find(listStyles, style, &ListStyle::rtf);
    return row != listStyles.end() ? row->document : QTextListFormat::ListStyleUndefined;
}

RtfListStyle rtfStyle(QTextListFormat::Style style)
{
    const auto row = std::ranges::find(listStyles, style, &ListStyle::document);
    return row != listStyles.end() ? row->rtf : RtfListStyle::None;
}

// The values of the two enumerations of kinds of tabs are the same.
static_assert(static_cast<int>(RtfTabKind::Left) == QTextOption::LeftTab);
static_assert(static_cast<int>(RtfTabKind::Right) == QTextOption::RightTab);
static_assert(static_cast<int>(RtfTabKind::Center) == QTextOption::CenterTab);
static_assert(static_cast<int>(RtfTabKind::Decimal) == QTextOption::DelimiterTab);

Qt::Alignment documentAlignment(const RtfParagraph &paragraph)
{
    // RTF means the sides of the page, a document those of the reading direction.
    const Qt::Alignment absolute = paragraph.rightToLeft ? Qt::AlignAbsolute : Qt::Alignment();
    switch (paragraph.alignment) {
    case RtfAlignment::Left: return Qt::AlignLeft | absolute;
    case RtfAlignment::Center: return Qt::AlignHCenter;
    case RtfAlignment::Right: return Qt::AlignRight | absolute;
    }
    return Qt::AlignLeft;
}

/// \p alignment without AlignAbsolute means the leading and the trailing side.
RtfAlignment rtfAlignment(Qt::Alignment alignment, bool rightToLeft)
{
    if (alignment & Qt::AlignHCenter) {
        return RtfAlignment::Center;
    }
    const bool mirrored = rightToLeft && !(alignment & Qt::AlignAbsolute);
    const bool right = alignment & Qt::AlignRight;
    return right != mirrored ? RtfAlignment::Right : RtfAlignment::Left;
}

QString familyOf(const QTextCharFormat &format)
{
    const QStringList families = format.fontFamilies().toStringList();
    if (!families.isEmpty()) {
        return families.first();
    }
    return format.property(QTextFormat::OldFontFamily).toString();
}

int sizeOf(const QTextCharFormat &format, const QFont &fallback, const RtfUnits &units)
{
    if (format.hasProperty(QTextFormat::FontPointSize)) {
        return static_cast<int>(std::lround(format.fontPointSize() * halfPointsPerPoint));
    }
    if (format.hasProperty(QTextFormat::FontPixelSize)) {
        return units.deviceToHalfPoints(format.intProperty(QTextFormat::FontPixelSize));
    }
    return fallback.pointSizeF() > 0 ? static_cast<int>(std::lround(fallback.pointSizeF() * halfPointsPerPoint))
                                     : units.deviceToHalfPoints(fallback.pixelSize());
}

int colorOf(const QBrush &brush)
{
    constexpr QRgb withoutAlpha = 0xffffff;
    return brush.style() == Qt::NoBrush ? automaticColor : static_cast<int>(brush.color().rgb() & withoutAlpha);
}

QTextCharFormat::VerticalAlignment verticalAlignment(const RtfCharacter &character)
{
    if (character.script == RtfScript::Superscript || character.shift > 0) {
        return QTextCharFormat::AlignSuperScript;
    }
    if (character.script == RtfScript::Subscript || character.shift < 0) {
        return QTextCharFormat::AlignSubScript;
    }
    return QTextCharFormat::AlignNormal;
}

RtfScript scriptOf(QTextCharFormat::VerticalAlignment alignment)
{
    if (alignment == QTextCharFormat::AlignSuperScript) {
        return RtfScript::Superscript;
    }
    if (alignment == QTextCharFormat::AlignSubScript) {
        return RtfScript::Subscript;
    }
    return RtfScript::Normal;
}

RtfCapitals capitalsOf(QFont::Capitalization capitalization)
{
    if (capitalization == QFont::AllUppercase) {
        return RtfCapitals::All;
    }
    return capitalization == QFont::SmallCaps ? RtfCapitals::Small : RtfCapitals::AsTyped;
}

int hashOf(const QString &family)
{
    return static_cast<int>(qHash(family));
}

void setLineSpacing(QTextBlockFormat &format, const RtfParagraph &paragraph, const RtfUnits &units)
{
    if (paragraph.lineSpacing == 0) {
        return;
    }
    if (paragraph.lineSpacingIsMultiple) {
        format.setLineHeight(std::abs(paragraph.lineSpacing) / lineUnitsPerPercent,
                             QTextBlockFormat::ProportionalHeight);
    } else if (paragraph.lineSpacing > 0) {
        format.setLineHeight(units.fromTwips(paragraph.lineSpacing), QTextBlockFormat::MinimumHeight);
    } else {
        format.setLineHeight(units.fromTwips(-paragraph.lineSpacing), QTextBlockFormat::FixedHeight);
    }
}

void readLineSpacing(const QTextBlockFormat &format, RtfParagraph &paragraph, const RtfUnits &units)
{
    switch (format.lineHeightType()) {
    case QTextBlockFormat::ProportionalHeight:
        paragraph.lineSpacing = static_cast<int>(std::lround(format.lineHeight() * lineUnitsPerPercent));
        paragraph.lineSpacingIsMultiple = paragraph.lineSpacing != 0;
        break;
    case QTextBlockFormat::MinimumHeight: paragraph.lineSpacing = units.toTwips(format.lineHeight()); break;
    case QTextBlockFormat::FixedHeight: paragraph.lineSpacing = -units.toTwips(format.lineHeight()); break;
    default: break;
    }
}

RtfList listOf(const QTextList &list)
{
    const QTextListFormat format = list.format();
    const bool isPainted = format.hasProperty(RtfListStyleShown);
    RtfList result;
    result.style = rtfStyle(isPainted ? static_cast<QTextListFormat::Style>(format.intProperty(RtfListStyleShown))
                                      : format.style());
    if (result.style != RtfListStyle::None && result.style != RtfListStyle::Bullet) {
        result.start = format.hasProperty(RtfListStart) ? format.intProperty(RtfListStart) : 1;
        result.before = format.numberPrefix();
        result.after = format.hasProperty(QTextFormat::ListNumberSuffix) ? format.numberSuffix() : QStringLiteral(".");
    }
    return result;
}

/// What a layout takes for its device's resolution if that needs no scaling.
int screenUnitsPerInch()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? qRound(screen->logicalDotsPerInchY()) : defaultUnitsPerInch;
}

} // namespace

std::size_t RtfCharacterHash::operator()(const RtfCharacter &character) const noexcept
{
    const int flags = character.bold | character.italic << 1 | character.underline << 2 | character.strike << 3 |
                      character.hidden << 4 | static_cast<int>(character.script) << 5 |
                      static_cast<int>(character.capitals) << 7;
    constexpr std::uint64_t odd = 0x9e3779b97f4a7c15; // the golden ratio's fraction
    std::uint64_t hash = 0;
    for (const int part : {character.font, character.halfPoints, character.color, character.highlight, character.shift,
                           character.link, flags}) {
        hash = (hash ^ static_cast<unsigned>(part)) * odd;
        hash ^= hash >> 32U;
    }
    return hash;
}

RtfUnits::RtfUnits(const QTextDocument &document)
{
    // A document without a layout is none of a window: asking it for its layout
    // would only make one.
    const auto *layout = document.findChild<QAbstractTextDocumentLayout *>();
    const QPaintDevice *device = layout != nullptr ? layout->paintDevice() : nullptr;
    qreal unitsPerInch = defaultUnitsPerInch;
    if (device != nullptr) {
        m_scale = static_cast<qreal>(device->logicalDpiY()) / screenUnitsPerInch();
        unitsPerInch = device->logicalDpiX() / m_scale;
    }
    m_unitsPerTwip = unitsPerInch / twipsPerInch;
}

int RtfUnits::toTwips(qreal units) const
{
    return static_cast<int>(std::lround(units / m_unitsPerTwip));
}

QTextCharFormat toCharFormat(const RtfCharacter &character, const RtfFont *font, const QString &address)
{
    QTextCharFormat format;
    if (font != nullptr && symbolsOfCodePage(font->codePage) != nullptr) {
        format.setProperty(RtfSymbolFamily, font->family);
    } else if (font != nullptr && !font->family.isEmpty()) {
        format.setFontFamilies({font->family});
        format.setProperty(RtfFontCharset, font->charset);
        format.setProperty(RtfFontFamily, hashOf(font->family));
    }
    if (character.halfPoints > 0) {
        format.setFontPointSize(character.halfPoints / halfPointsPerPoint);
    }
    if (character.bold) {
        format.setFontWeight(QFont::Bold);
    }
    if (character.italic) {
        format.setFontItalic(true);
    }
    if (character.underline) {
        format.setFontUnderline(true);
    }
    if (character.strike) {
        format.setFontStrikeOut(true);
    }
    if (character.capitals != RtfCapitals::AsTyped) {
        format.setFontCapitalization(character.capitals == RtfCapitals::All ? QFont::AllUppercase : QFont::SmallCaps);
    }
    if (character.hidden) {
        format.setProperty(RtfHiddenText, true);
    }
    if (!address.isEmpty()) {
        format.setAnchor(true);
        format.setAnchorHref(address);
    }
    if (character.shift != 0) {
        format.setProperty(RtfBaselineShift, character.shift);
    }
    if (character.color != automaticColor) {
        format.setForeground(QColor(static_cast<QRgb>(character.color)));
    }
    if (character.highlight != automaticColor) {
        format.setBackground(QColor(static_cast<QRgb>(character.highlight)));
    }
    const auto alignment = verticalAlignment(character);
    if (alignment != QTextCharFormat::AlignNormal) {
        format.setVerticalAlignment(alignment);
    }
    return format;
}

RtfCharacter characterOf(const QTextCharFormat &format, const QFont &fallback, const RtfUnits &units)
{
    RtfCharacter character;
    character.halfPoints = std::max(1, sizeOf(format, fallback, units));
    character.bold = format.hasProperty(QTextFormat::FontWeight) ? format.fontWeight() >= QFont::DemiBold
                                                                 : fallback.weight() >= QFont::DemiBold;
    character.italic = format.hasProperty(QTextFormat::FontItalic) ? format.fontItalic() : fallback.italic();
    character.underline = format.fontUnderline();
    character.strike = format.fontStrikeOut();
    character.capitals = capitalsOf(format.fontCapitalization());
    character.hidden = format.boolProperty(RtfHiddenText);
    character.color = colorOf(format.foreground());
    character.highlight = colorOf(format.background());
    character.script = scriptOf(format.verticalAlignment());
    if (character.script != RtfScript::Normal && format.hasProperty(RtfBaselineShift)) {
        character.shift = format.intProperty(RtfBaselineShift);
        character.script = RtfScript::Normal;
    }
    return character;
}

RtfFont fontOf(const QTextCharFormat &format, const QFont &fallback)
{
    RtfFont font;
    font.family = familyOf(format);
    if (font.family.isEmpty() && format.hasProperty(RtfSymbolFamily)) {
        const QString family = format.stringProperty(RtfSymbolFamily);
        return {family, symbolCharset, codePageOfSymbolFont(family)};
    }
    if (font.family.isEmpty()) {
        font.family = fallback.family();
        return font;
    }
    if (format.hasProperty(RtfFontCharset) && format.intProperty(RtfFontFamily) == hashOf(font.family)) {
        const int charset = format.intProperty(RtfFontCharset);
        font.charset = charset;
        font.codePage = codePageOfCharset(charset);
    }
    return font;
}

QTextBlockFormat toBlockFormat(const RtfParagraph &paragraph, const RtfUnits &units)
{
    QTextBlockFormat format;
    if (paragraph.alignment != RtfAlignment::Left || paragraph.rightToLeft) {
        format.setAlignment(documentAlignment(paragraph));
    }
    if (paragraph.rightToLeft) {
        format.setLayoutDirection(Qt::RightToLeft);
    }
    setIndents(format, paragraph, units);
    if (paragraph.rightIndent != 0) {
        format.setRightMargin(units.deviceFromTwips(paragraph.rightIndent));
    }
    if (paragraph.spaceBefore != 0) {
        format.setTopMargin(units.fromTwips(paragraph.spaceBefore));
    }
    if (paragraph.spaceAfter != 0) {
        format.setBottomMargin(units.fromTwips(paragraph.spaceAfter));
    }
    setLineSpacing(format, paragraph, units);
    if (!paragraph.tabs.empty()) {
        QList<QTextOption::Tab> tabs;
        for (const RtfTab &tab : paragraph.tabs) {
            tabs.append({units.fromTwips(tab.position), static_cast<QTextOption::TabType>(tab.kind)});
        }
        format.setTabPositions(tabs);
    }
    return format;
}

void setIndents(QTextBlockFormat &format, const RtfParagraph &paragraph, const RtfUnits &units)
{
    for (const int property : {QTextFormat::BlockLeftMargin + 0, QTextFormat::TextIndent + 0,
                               QTextFormat::BlockIndent + 0, RtfListHanging + 0, RtfNegativeIndent + 0}) {
        format.clearProperty(property);
    }
    const bool isList = paragraph.list.style != RtfListStyle::None;
    const int start = paragraph.leftIndent + paragraph.firstLineIndent;
    const int margin = isList ? start : paragraph.leftIndent;
    const int leftmost = isList ? margin : std::min(margin, start);
    if (leftmost < 0) {
        format.setProperty(RtfNegativeIndent, leftmost);
    }
    if (const int shown = margin - std::min(0, leftmost); shown != 0) {
        format.setLeftMargin(units.deviceFromTwips(shown));
    }
    if (isList && paragraph.firstLineIndent != 0) {
        format.setProperty(RtfListHanging, -paragraph.firstLineIndent);
    }
    if (!isList && paragraph.firstLineIndent != 0) {
        format.setTextIndent(units.deviceFromTwips(paragraph.firstLineIndent));
    }
}

QTextListFormat toListFormat(const RtfList &list)
{
    QTextListFormat format;
    format.setStyle(documentStyle(list.style));
    if (list.style != RtfListStyle::Bullet) {
        if (list.start != 1) {
            format.setProperty(RtfListStart, list.start);
            format.setProperty(RtfListStyleShown, format.style());
            format.setStyle(QTextListFormat::ListStyleUndefined);
        }
        format.setNumberPrefix(list.before);
        format.setNumberSuffix(list.after);
    }
    return format;
}

RtfParagraph paragraphOf(const QTextBlock &block, const RtfUnits &units)
{
    const QTextBlockFormat format = block.blockFormat();
    RtfParagraph paragraph;
    paragraph.rightToLeft = format.layoutDirection() == Qt::RightToLeft;
    paragraph.alignment = rtfAlignment(format.alignment(), paragraph.rightToLeft);
    if (const QTextList *list = block.textList()) {
        paragraph.list = listOf(*list);
    }
    const qreal steps = format.indent() * block.document()->indentWidth();
    paragraph.leftIndent =
        units.toTwips(format.leftMargin() / units.scale() + steps) + format.intProperty(RtfNegativeIndent);
    if (paragraph.list.style == RtfListStyle::None) {
        paragraph.firstLineIndent = units.deviceToTwips(format.textIndent());
    } else {
        paragraph.firstLineIndent = -format.intProperty(RtfListHanging);
        paragraph.leftIndent -= paragraph.firstLineIndent;
    }
    paragraph.rightIndent = units.deviceToTwips(format.rightMargin());
    paragraph.spaceBefore = units.toTwips(format.topMargin());
    paragraph.spaceAfter = units.toTwips(format.bottomMargin());
    readLineSpacing(format, paragraph, units);
    for (const QTextOption::Tab &tab : format.tabPositions()) {
        paragraph.tabs.push_back({static_cast<RtfTabKind>(tab.type), units.toTwips(tab.position)});
    }
    return paragraph;
}
