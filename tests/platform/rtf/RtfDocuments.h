#pragma once

#include "platform/rtf/RtfReader.h"

#include <QFont>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>

#include <memory>
#include <ostream>
#include <string>

/// A document with a default font that no test text names.
inline std::unique_ptr<QTextDocument> emptyDocument()
{
    auto document = std::make_unique<QTextDocument>();
    QFont font(QStringLiteral("House Sans"));
    font.setPointSizeF(8);
    document->setDefaultFont(font);
    return document;
}

inline std::unique_ptr<QTextDocument> documentOf(std::string_view rtf)
{
    auto document = emptyDocument();
    readRtf(rtf, *document);
    return document;
}

/// A head with the fonts that the rows use, then \p body.
inline std::string wholeRtf(const std::string &body)
{
    return R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033{\fonttbl{\f0\fnil\fcharset0 Arial;})"
           R"({\f1\froman\fcharset2 Symbol;}{\f2\fnil\fcharset204 Arial CYR;}{\f3\fmodern\fcharset128 Gothic;}})"
           "\r\n"
           R"({\colortbl ;\red255\green0\blue0;\red0\green128\blue0;})"
           "\r\n\\viewkind4\\uc1\\pard\\f0\\fs20 " +
           body + "}";
}

/// The text of \p document, '\n' between paragraphs.
inline QString textOf(const QTextDocument &document)
{
    QString text;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        text += (block == document.begin() ? QString() : QStringLiteral("\n")) + block.text();
    }
    return text;
}

/// What is to be seen of characters in \p format: family and size, then a letter
/// for each property that is on.
inline QString seen(const QTextCharFormat &format, const QFont &fallback)
{
    const QStringList families = format.fontFamilies().toStringList();
    QString text = families.value(0, fallback.family()) + QLatin1Char(' ') +
                   QString::number(format.fontPointSize() > 0 ? format.fontPointSize() : fallback.pointSizeF());
    if (format.fontWeight() >= QFont::DemiBold) {
        text += QStringLiteral(" bold");
    }
    if (format.fontItalic()) {
        text += QStringLiteral(" italic");
    }
    if (format.fontUnderline()) {
        text += QStringLiteral(" underline");
    }
    if (format.fontStrikeOut()) {
        text += QStringLiteral(" strike");
    }
    if (format.verticalAlignment() == QTextCharFormat::AlignSuperScript) {
        text += QStringLiteral(" super");
    }
    if (format.verticalAlignment() == QTextCharFormat::AlignSubScript) {
        text += QStringLiteral(" sub");
    }
    if (format.hasProperty(QTextFormat::ForegroundBrush)) {
        text += QStringLiteral(" ink") + format.foreground().color().name();
    }
    if (format.hasProperty(QTextFormat::BackgroundBrush)) {
        text += QStringLiteral(" marker") + format.background().color().name();
    }
    return text;
}

/// What is to be seen of a paragraph: its properties that are not at rest, in
/// document units, each by its name.
inline QString seen(const QTextBlock &block)
{
    const QTextBlockFormat format = block.blockFormat();
    QStringList parts;
    if (format.alignment() & Qt::AlignHCenter) {
        parts += QStringLiteral("center");
    }
    if (format.alignment() & Qt::AlignRight) {
        parts += QStringLiteral("right");
    }
    if (format.layoutDirection() == Qt::RightToLeft) {
        parts += QStringLiteral("rtl");
    }
    const auto add = [&parts](const char *name, qreal value) {
        if (value != 0) {
            parts += QLatin1String(name) + QString::number(value);
        }
    };
    add("left", format.leftMargin());
    add("first", format.textIndent());
    add("rightmargin", format.rightMargin());
    add("above", format.topMargin());
    add("below", format.bottomMargin());
    if (format.lineHeightType() == QTextBlockFormat::ProportionalHeight) {
        add("percent", format.lineHeight());
    }
    if (format.lineHeightType() == QTextBlockFormat::MinimumHeight) {
        add("atleast", format.lineHeight());
    }
    if (format.lineHeightType() == QTextBlockFormat::FixedHeight) {
        add("exactly", format.lineHeight());
    }
    for (const QTextOption::Tab &tab : format.tabPositions()) {
        parts += QStringLiteral("tab%1@%2").arg(tab.type).arg(tab.position);
    }
    if (const QTextList *list = block.textList()) {
        parts += list->format().style() == QTextListFormat::ListDisc ? QStringLiteral("bullet") : list->itemText(block);
    }
    return parts.join(QLatin1Char(' '));
}

/// All of a document, a line for each paragraph and each run.
inline QString seen(const QTextDocument &document)
{
    QString text;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        text += QStringLiteral("P %1 [%2]\n").arg(seen(block), seen(block.charFormat(), document.defaultFont()));
        for (auto run = block.begin(); !run.atEnd(); ++run) {
            const QTextFragment fragment = run.fragment();
            text +=
                QStringLiteral("  %1 [%2]\n").arg(fragment.text(), seen(fragment.charFormat(), document.defaultFont()));
        }
    }
    return text;
}

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << text.toStdString();
}
