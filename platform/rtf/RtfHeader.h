#pragma once

#include "platform/rtf/RtfFormats.h"
#include "platform/rtf/RtfLinkTable.h"
#include "platform/rtf/RtfStream.h"

#include <QFont>
#include <QHash>
#include <QTextCharFormat>

#include <string_view>
#include <utility>
#include <vector>

/// What stands at the head of an RTF text: the fonts and colours that the body
/// names by their numbers, in order of first use.
///
/// Everything that the body will name has to be collected before the first
/// number is asked for and before the head is written.
class RtfHeader
{
public:
    /// \p document gives what its formats leave open.
    explicit RtfHeader(const QTextDocument &document);

    /// Collects the format that the document knows as \p index.
    void collect(int index, const QTextCharFormat &format);
    /// Collects the font of bullets.
    void collectSymbolFont();

    /// The collected format \p index; its font is the number in the table.
    [[nodiscard]] RtfCharacter format(int index) const { return m_formats.value(index); }
    /// The address that the links of the formats lead to by the place \p link.
    [[nodiscard]] QString address(int link) const { return m_links.at(link); }
    /// The number of \p color in the table.
    [[nodiscard]] int colorNumber(int color) const { return m_colorNumbers.value(color, 0); }
    /// The number of the font of bullets, which was collected.
    [[nodiscard]] int symbolFont() const { return m_symbolFont; }
    /// What text in the font \p number of the table is to be encoded by.
    [[nodiscard]] const RtfCodePage &codePage(int number);

    /// Begins the text's group, which is left open, and writes the tables.
    void write(RtfStream &out);

private:
    [[nodiscard]] int fontNumber(RtfFont font);
    void collectColor(int color);
    void writeFonts(RtfStream &out);
    void writeColors(RtfStream &out) const;

    const RtfUnits m_units;
    const QFont m_defaultFont;

    RtfCodePages m_codePages;
    std::vector<RtfFont> m_fonts;
    QHash<std::pair<QString, int>, int> m_fontNumbers; ///< of family and character set
    int m_symbolFont = -1;
    std::vector<int> m_colors; ///< from number 1 on: 0 is the automatic one
    QHash<int, int> m_colorNumbers;
    RtfLinkTable m_links;
    QHash<int, RtfCharacter> m_formats;
};
