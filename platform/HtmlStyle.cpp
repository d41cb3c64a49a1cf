#include "platform/HtmlStyle.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace {

std::optional<QColor> rgbColor(QStringView text)
{
    QList<QStringView> parts;
    qsizetype start = text.indexOf(u'(') + 1;
    for (qsizetype i = start; i < text.size(); ++i) {
        if (QStringView(u" ,/)").contains(text[i])) {
            if (i > start) {
                parts.append(text.mid(start, i - start));
            }
            start = i + 1;
        }
    }
    if (parts.size() < 3) {
        return std::nullopt;
    }
    const auto value = [](QStringView part, double whole) {
        const bool percent = part.endsWith(u'%');
        const double number = (percent ? part.chopped(1) : part).toDouble();
        return std::clamp(percent ? number / 100 : number / whole, 0.0, 1.0);
    };
    return QColor::fromRgbF(static_cast<float>(value(parts[0], 255)), static_cast<float>(value(parts[1], 255)),
                            static_cast<float>(value(parts[2], 255)),
                            parts.size() > 3 ? static_cast<float>(value(parts[3], 1)) : 1.0F);
}

/// "#rgb", "#rgba", "#rrggbb" or "#rrggbbaa" after the '#'.
std::optional<QColor> hexColor(QStringView digits)
{
    const bool isShort = digits.size() == 3 || digits.size() == 4;
    bool isNumber = false;
    const uint number = digits.toUInt(&isNumber, 16);
    if (!isNumber || (!isShort && digits.size() != 6 && digits.size() != 8)) {
        return std::nullopt;
    }
    const auto channel = [&](int index) {
        const int count = isShort ? static_cast<int>(digits.size()) : static_cast<int>(digits.size()) / 2;
        if (index >= count) {
            return 0xff;
        }
        const int bits = isShort ? 4 : 8;
        const int value = static_cast<int>(number >> ((count - 1 - index) * bits) & (isShort ? 0xfU : 0xffU));
        return isShort ? value * 0x11 : value;
    };
    return QColor(channel(0), channel(1), channel(2), channel(3));
}

/// A colour of a style; nothing for what is none, or is decided elsewhere.
std::optional<QColor> cssColor(QStringView text)
{
    constexpr qsizetype longestColor = 64;
    if (text.isEmpty() || text.size() > longestColor) {
        return std::nullopt;
    }
    if (text.startsWith(u'#')) {
        return hexColor(text.mid(1));
    }
    if (text.startsWith(QLatin1String("rgb"))) {
        return rgbColor(text);
    }
    return QColor::isValidColorName(text) ? std::optional(QColor(text)) : std::nullopt;
}

void setColor(HtmlLook &look, QStringView value)
{
    if (value == QLatin1String("windowtext")) {
        look.color = QColor();
    } else if (const auto color = cssColor(value)) {
        look.color = *color;
    }
}

void setHighlight(HtmlLook &look, QStringView value)
{
    if (const auto color = cssColor(value)) {
        look.highlight = color->alpha() > 0 ? *color : QColor();
    }
}

void setWeight(HtmlLook &look, QStringView value)
{
    constexpr int demiBold = 600;
    if (value.startsWith(QLatin1String("bold"))) {
        look.bold = true;
    } else if (value == QLatin1String("normal") || value == QLatin1String("lighter")) {
        look.bold = false;
    } else if (const int weight = value.toInt(); weight > 0) {
        look.bold = weight >= demiBold;
    }
}

void setSlant(HtmlLook &look, QStringView value)
{
    look.italic = value == QLatin1String("italic") || value.startsWith(QLatin1String("oblique"));
}

void addLines(HtmlLook &look, QStringView value) // the lines of an outer element go on in any case
{
    look.underline = look.underline || value.contains(QLatin1String("underline"));
    look.strike = look.strike || value.contains(QLatin1String("line-through"));
}

void setScript(HtmlLook &look, QStringView value)
{
    if (value == QLatin1String("super")) {
        look.script = RtfScript::Superscript;
    } else if (value == QLatin1String("sub")) {
        look.script = RtfScript::Subscript;
    } else if (value == QLatin1String("baseline")) {
        look.script = RtfScript::Normal;
    }
}

void setAlignment(HtmlLook &look, QStringView value)
{
    if (value == QLatin1String("center")) {
        look.alignment = RtfAlignment::Center;
    } else if (value == QLatin1String("right") || value == QLatin1String("end")) {
        look.alignment = RtfAlignment::Right;
    } else {
        look.alignment = RtfAlignment::Left;
    }
}

void setBlanks(HtmlLook &look, QStringView value)
{
    if (value == QLatin1String("pre-line")) {
        look.blanks = HtmlBlanks::KeepLines;
    } else {
        const bool keep = value.startsWith(QLatin1String("pre")) || value == QLatin1String("break-spaces");
        look.blanks = keep ? HtmlBlanks::Keep : HtmlBlanks::Collapse;
    }
}

void setListStyle(HtmlLook &look, QStringView value)
{
    for (const QStringView word : value.tokenize(u' ')) {
        if (const auto style = htmlListStyle(word)) {
            look.listStyle = *style;
        }
    }
}

void setShown(HtmlLook &look, QStringView value)
{
    look.hidden = look.hidden || value == QLatin1String("none") || value == QLatin1String("hidden");
}

void setDirection(HtmlLook &look, QStringView value)
{
    look.rightToLeft = value == QLatin1String("rtl");
}

struct Property
{
    std::string_view name;
    void (*apply)(HtmlLook &, QStringView);
};
constexpr auto properties = std::to_array<Property>({
    {"background", setHighlight},
    {"background-color", setHighlight},
    {"color", setColor},
    {"direction", setDirection},
    {"display", setShown},
    {"font-style", setSlant},
    {"font-weight", setWeight},
    {"list-style", setListStyle},
    {"list-style-type", setListStyle},
    {"text-align", setAlignment},
    {"text-decoration", addLines},
    {"text-decoration-line", addLines},
    {"vertical-align", setScript},
    {"visibility", setShown},
    {"white-space", setBlanks},
});

} // namespace

std::optional<RtfListStyle> htmlListStyle(QStringView name)
{
    constexpr auto styles = std::to_array<std::pair<std::string_view, RtfListStyle>>({
        {"disc", RtfListStyle::Bullet},
        {"circle", RtfListStyle::Bullet},
        {"square", RtfListStyle::Bullet},
        {"decimal", RtfListStyle::Decimal},
        {"decimal-leading-zero", RtfListStyle::Decimal},
        {"lower-alpha", RtfListStyle::LowerLetter},
        {"lower-latin", RtfListStyle::LowerLetter},
        {"upper-alpha", RtfListStyle::UpperLetter},
        {"upper-latin", RtfListStyle::UpperLetter},
        {"lower-roman", RtfListStyle::LowerRoman},
        {"upper-roman", RtfListStyle::UpperRoman},
        {"none", RtfListStyle::None},
        // As the attribute "type" has them; there the case counts.
        {"1", RtfListStyle::Decimal},
        {"a", RtfListStyle::LowerLetter},
        {"A", RtfListStyle::UpperLetter},
        {"i", RtfListStyle::LowerRoman},
        {"I", RtfListStyle::UpperRoman},
    });
    const auto *row = std::ranges::find_if(styles, [name](const auto &style) {
        return name == QLatin1StringView(style.first.data(), static_cast<qsizetype>(style.first.size()));
    });
    return row != styles.end() ? std::optional(row->second) : std::nullopt;
}

void applyHtmlStyle(HtmlLook &look, QStringView style)
{
    for (const QStringView declaration : style.tokenize(u';')) {
        if (const qsizetype colon = declaration.indexOf(u':'); colon > 0) {
            QStringView value = declaration.mid(colon + 1);
            value = value.left(value.contains(u'!') ? value.indexOf(u'!') : value.size()); // "!important"
            applyHtmlStyle(look, declaration.left(colon).trimmed(), value.trimmed());
        }
    }
}

void applyHtmlStyle(HtmlLook &look, QStringView name, QStringView value)
{
    const auto *row = std::ranges::find_if(properties, [name](const Property &property) {
        const QLatin1StringView wanted(property.name.data(), static_cast<qsizetype>(property.name.size()));
        return name.compare(wanted, Qt::CaseInsensitive) == 0;
    });
    if (row != properties.end()) {
        row->apply(look, value.toString().toLower());
    }
}
