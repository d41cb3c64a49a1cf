#pragma once

#include "platform/rtf/RtfFormats.h"

#include <QColor>
#include <QString>

#include <cstdint>
#include <optional>

enum class HtmlBlanks : std::uint8_t { Collapse, KeepLines, Keep };

/// How HTML wants text to look, as far as a card takes it over. Invalid colours are automatic.
struct HtmlLook
{
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    bool fixedPitch = false;
    bool hidden = false;
    bool rightToLeft = false;
    HtmlBlanks blanks = HtmlBlanks::Collapse;
    RtfScript script = RtfScript::Normal;
    RtfAlignment alignment = RtfAlignment::Left;
    RtfListStyle listStyle = RtfListStyle::Bullet;
    int points = 0; ///< 0: as the text around it
    QColor color;
    QColor highlight;
    QString link;
};

/// Applies the declarations of \p style (CSS); those of no use to a card are left out.
void applyHtmlStyle(HtmlLook &look, QStringView style);

/// Applies one of them.
void applyHtmlStyle(HtmlLook &look, QStringView name, QStringView value);

/// The style of lists that CSS, or the attribute "type", calls \p name.
[[nodiscard]] std::optional<RtfListStyle> htmlListStyle(QStringView name);
