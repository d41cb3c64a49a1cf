#include "platform/rtf/RtfWriter.h"

#include "platform/rtf/RtfCodePages.h"
#include "platform/rtf/RtfControlWords.h"
#include "platform/rtf/RtfFormats.h"

#include <QHash>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace {

constexpr std::string_view lineEnd = "\r\n";
/// A roman number beyond these has no common form: it is written in digits.
constexpr int maxRoman = 3999;

/// A range of positions in a document. The end of the whole document lies behind
/// the mark of its last paragraph, where no selection reaches.
struct Range
{
    int start = 0;
    int end = std::numeric_limits<int>::max();

    [[nodiscard]] bool contains(int position) const { return position >= start && position < end; }
};

std::string lettersOf(int number)
{
    constexpr int letters = 26;
    std::string text;
    for (; number > 0; number = (number - 1) / letters) {
        text.insert(text.begin(), static_cast<char>('a' + (number - 1) % letters));
    }
    return text;
}

std::string romanOf(int number)
{
    constexpr auto digits = std::to_array<std::pair<int, std::string_view>>({
        {1000, "m"},
        {900, "cm"},
        {500, "d"},
        {400, "cd"},
        {100, "c"},
        {90, "xc"},
        {50, "l"},
        {40, "xl"},
        {10, "x"},
        {9, "ix"},
        {5, "v"},
        {4, "iv"},
        {1, "i"},
    });
    if (number > maxRoman) {
        return std::to_string(number);
    }
    std::string text;
    for (const auto &[value, digit] : digits) {
        for (; number >= value; number -= value) {
            text += digit;
        }
    }
    return text;
}

std::string upper(std::string text)
{
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return text;
}

std::string numberText(RtfListStyle style, int number)
{
    switch (style) {
    case RtfListStyle::LowerLetter: return lettersOf(number);
    case RtfListStyle::UpperLetter: return upper(lettersOf(number));
    case RtfListStyle::LowerRoman: return romanOf(number);
    case RtfListStyle::UpperRoman: return upper(romanOf(number));
    case RtfListStyle::None:
    case RtfListStyle::Bullet:
    case RtfListStyle::Decimal: break;
    }
    return std::to_string(number);
}

std::string_view numberWord(RtfListStyle style)
{
    switch (style) {
    case RtfListStyle::LowerLetter: return "pnlcltr";
    case RtfListStyle::UpperLetter: return "pnucltr";
    case RtfListStyle::LowerRoman: return "pnlcrm";
    case RtfListStyle::UpperRoman: return "pnucrm";
    case RtfListStyle::None:
    case RtfListStyle::Bullet:
    case RtfListStyle::Decimal: break;
    }
    return "pndec";
}

std::string_view tabWord(RtfTabKind kind)
{
    switch (kind) {
    case RtfTabKind::Left: break;
    case RtfTabKind::Center: return "tqc";
    case RtfTabKind::Right: return "tqr";
    case RtfTabKind::Decimal: return "tqdec";
    }
    return {};
}

/// RTF text in the making: words, escapes, and the blank between a word and text.
class RtfStream
{
public:
    void word(std::string_view name)
    {
        m_text += '\\';
        m_text += name;
        m_needsBlank = true;
    }
    void word(std::string_view name, int number)
    {
        word(name);
        m_text += std::to_string(number);
    }
    void open()
    {
        m_text += '{';
        m_needsBlank = false;
    }
    void close()
    {
        m_text += '}';
        m_needsBlank = false;
    }
    void endLine()
    {
        m_text += lineEnd;
        m_needsBlank = false;
    }
    void ignorable() { m_text += "\\*"; }

    void text(QStringView text, const RtfCodePage &page)
    {
        for (const QChar c : text) {
            character(c.unicode(), page);
        }
    }
    void raw(std::string_view text)
    {
        blank();
        m_text += text;
    }
    /// A character that a word may end at without a blank.
    void punctuation(char c)
    {
        m_text += c;
        m_needsBlank = false;
    }
    /// The bullet of the symbol font, in the capitals that the old programs use.
    void symbolBullet()
    {
        m_text += "\\'B7";
        m_needsBlank = false;
    }
    void hexByte(char byte)
    {
        constexpr std::string_view digits = "0123456789abcdef";
        const auto value = static_cast<unsigned char>(byte);
        m_text += "\\'";
        m_text += digits[value >> 4U];
        m_text += digits[value & 15U];
    }

    [[nodiscard]] const std::string &text() const { return m_text; }

private:
    void blank()
    {
        if (std::exchange(m_needsBlank, false)) {
            m_text += ' ';
        }
    }
    void character(char16_t c, const RtfCodePage &page);
    void unusual(char16_t c, const RtfCodePage &page);

    std::string m_text;
    bool m_needsBlank = false;
};

void RtfStream::character(char16_t c, const RtfCodePage &page)
{
    blank();
    switch (c) {
    case u'\\':
    case u'{':
    case u'}':
        m_text += '\\';
        m_text += static_cast<char>(c);
        break;
    case u'\t': m_text += "\\tab "; break;
    case u'\v':
    case QChar::LineSeparator:
        m_text += "\\line";
        m_text += lineEnd;
        break;
    default:
        if (c >= u' ' && c <= u'~') {
            m_text += static_cast<char>(c);
        } else {
            unusual(c, page);
        }
    }
}

void RtfStream::unusual(char16_t c, const RtfCodePage &page)
{
    if (c >= 0x80) {
        const QByteArray bytes = page.encode(c);
        if (!bytes.isEmpty()) {
            for (const char byte : bytes) {
                hexByte(byte);
            }
            return;
        }
        const std::string_view word = rtfWordForCharacter(c);
        if (!word.empty()) {
            m_text += '\\';
            m_text += word;
            m_text += word.size() > 1 ? " " : ""; // a symbol of one character takes no blank
            return;
        }
    }
    m_text += "\\u" + std::to_string(static_cast<std::int16_t>(c)) + '?';
}

class Writer
{
public:
    Writer(const QTextDocument &document, Range range);

    [[nodiscard]] std::string write();

private:
    // The tables, in order of first use.
    void collect();
    void collectFormat(int index, const QTextCharFormat &format);
    [[nodiscard]] int fontNumber(const RtfFont &font);
    void collectColor(int color);
    void writeFonts(RtfStream &out);
    void writeColors(RtfStream &out) const;

    // The text.
    void writeParagraph(const QTextBlock &block);
    void writeParagraphFormat(const RtfParagraph &paragraph);
    void writeListMark(const RtfList &list);
    void writeListFormat(const RtfList &list);
    void writeFormat(const RtfCharacter &format);
    [[nodiscard]] const RtfCodePage &codePage(int font);

    [[nodiscard]] QTextBlock firstBlock() const { return m_document.findBlock(m_range.start); }
    [[nodiscard]] bool reaches(const QTextBlock &block) const
    {
        return block.isValid() && (block.position() < m_range.end || block == firstBlock());
    }
    [[nodiscard]] bool closes(const QTextBlock &block) const
    {
        return m_range.contains(block.position() + block.length() - 1);
    }
    template <typename Visit>
    void visitRuns(const QTextBlock &block, Visit visit) const;

    const QTextDocument &m_document;
    const Range m_range;
    const RtfUnits m_units;
    const QFont m_defaultFont;

    RtfCodePages m_codePages;
    std::vector<RtfFont> m_fonts;
    QHash<std::pair<QString, int>, int> m_fontNumbers; ///< of family and character set
    std::vector<int> m_colors;
    QHash<int, int> m_colorNumbers;
    QHash<int, RtfCharacter> m_formats; ///< of the index that the document has for them
    int m_symbolFont = -1;

    RtfStream m_body;
    RtfCharacter m_format;
    std::optional<RtfParagraph> m_paragraph;
    int m_number = 0; ///< in the list that is being written
};

Writer::Writer(const QTextDocument &document, Range range)
    : m_document(document)
    , m_range(range)
    , m_units(document)
    , m_defaultFont(document.defaultFont())
{
}

std::string Writer::write()
{
    collect();
    for (QTextBlock block = firstBlock(); reaches(block); block = block.next()) {
        writeParagraph(block);
    }
    RtfStream head;
    writeFonts(head);
    writeColors(head);
    return head.text() + "\\viewkind4\\uc1" + m_body.text() + '}' + std::string(lineEnd);
}

template <typename Visit>
void Writer::visitRuns(const QTextBlock &block, Visit visit) const
{
    for (auto run = block.begin(); !run.atEnd(); ++run) {
        const QTextFragment fragment = run.fragment();
        const int start = std::max(fragment.position(), m_range.start);
        const int end = std::min(fragment.position() + fragment.length(), m_range.end);
        if (start < end && fragment.charFormat().objectType() == QTextFormat::NoObject) {
            visit(fragment, start - fragment.position(), end - start);
        }
    }
}

void Writer::collect()
{
    bool hasBullets = false;
    for (QTextBlock block = firstBlock(); reaches(block); block = block.next()) {
        visitRuns(block, [this](const QTextFragment &fragment, int, int) {
            collectFormat(fragment.charFormatIndex(), fragment.charFormat());
        });
        collectFormat(block.charFormatIndex(), block.charFormat());
        hasBullets = hasBullets || paragraphOf(block, m_units).list.style == RtfListStyle::Bullet;
    }
    if (hasBullets) {
        m_symbolFont = fontNumber({QStringLiteral("Symbol"), symbolCharset, symbolCodePage});
    }
}

void Writer::collectFormat(int index, const QTextCharFormat &format)
{
    if (m_formats.contains(index)) {
        return;
    }
    RtfCharacter character = characterOf(format, m_defaultFont, m_units);
    character.font = fontNumber(fontOf(format, m_defaultFont));
    collectColor(character.color);
    collectColor(character.highlight);
    m_formats.insert(index, character);
}

int Writer::fontNumber(const RtfFont &font)
{
    const auto key = std::pair(font.family, font.charset);
    const auto known = m_fontNumbers.constFind(key);
    if (known != m_fontNumbers.constEnd()) {
        return *known;
    }
    m_fonts.push_back(font);
    return *m_fontNumbers.insert(key, static_cast<int>(m_fonts.size()) - 1);
}

void Writer::collectColor(int color)
{
    if (color != automaticColor && !m_colorNumbers.contains(color)) {
        m_colors.push_back(color);
        m_colorNumbers.insert(color, static_cast<int>(m_colors.size()));
    }
}

void Writer::writeFonts(RtfStream &out)
{
    out.open();
    out.word("rtf1");
    out.word("ansi");
    out.word("ansicpg", defaultCodePage);
    out.word("deff", 0);
    out.word("deflang", 1033);
    out.open();
    out.word("fonttbl");
    for (int number = 0; number < static_cast<int>(m_fonts.size()); ++number) {
        const RtfFont &font = m_fonts[static_cast<std::size_t>(number)];
        QString name = font.family;
        name = name.remove(QLatin1Char(';')).simplified(); // a semicolon would end the entry
        out.open();
        out.word("f", number);
        out.word("fnil");
        out.word("fcharset", font.charset);
        out.text(name, m_codePages.page(font.codePage == symbolCodePage ? defaultCodePage : font.codePage));
        out.punctuation(';');
        out.close();
    }
    out.close();
    out.endLine();
}

void Writer::writeColors(RtfStream &out) const
{
    if (m_colors.empty()) {
        return;
    }
    out.open();
    out.word("colortbl");
    out.raw(";");
    for (const int color : m_colors) {
        out.word("red", color >> 16 & 0xff);
        out.word("green", color >> 8 & 0xff);
        out.word("blue", color & 0xff);
        out.punctuation(';');
    }
    out.close();
    out.endLine();
}

void Writer::writeParagraph(const QTextBlock &block)
{
    const RtfParagraph paragraph = paragraphOf(block, m_units);
    const bool isList = paragraph.list.style != RtfListStyle::None;
    m_number = m_paragraph && m_paragraph->list == paragraph.list ? m_number + 1 : paragraph.list.start;
    bool listMarkIsDue = false;
    if (m_paragraph != paragraph) {
        writeParagraphFormat(paragraph);
        m_paragraph = paragraph;
    } else {
        listMarkIsDue = isList;
    }
    const auto writeMark = [&] {
        if (std::exchange(listMarkIsDue, false)) {
            writeListMark(paragraph.list);
        }
    };
    visitRuns(block, [&](const QTextFragment &fragment, int from, int length) {
        const RtfCharacter format = m_formats.value(fragment.charFormatIndex());
        writeFormat(format);
        writeMark();
        const QString text = fragment.text();
        m_body.text(QStringView(text).mid(from, length), codePage(format.font));
    });
    if (closes(block) || m_format.font < 0) {
        writeFormat(m_formats.value(block.charFormatIndex()));
    }
    writeMark();
    if (closes(block)) {
        m_body.word("par");
        m_body.endLine();
    }
}

void Writer::writeParagraphFormat(const RtfParagraph &paragraph)
{
    const auto length = [this](std::string_view word, int twips) {
        if (twips != 0) {
            m_body.word(word, twips);
        }
    };
    m_body.word("pard");
    if (paragraph.list.style != RtfListStyle::None) {
        writeListMark(paragraph.list);
        writeListFormat(paragraph.list);
    }
    if (paragraph.rightToLeft) {
        m_body.word("rtlpar");
    }
    length("fi", paragraph.firstLineIndent);
    length("li", paragraph.leftIndent);
    length("ri", paragraph.rightIndent);
    length("sb", paragraph.spaceBefore);
    length("sa", paragraph.spaceAfter);
    if (paragraph.lineSpacing != 0) {
        m_body.word("sl", paragraph.lineSpacing);
        m_body.word("slmult", paragraph.lineSpacingIsMultiple ? 1 : 0);
    }
    if (paragraph.alignment == RtfAlignment::Center) {
        m_body.word("qc");
    } else if (paragraph.alignment == RtfAlignment::Right) {
        m_body.word("qr");
    }
    for (const RtfTab &tab : paragraph.tabs) {
        if (const std::string_view word = tabWord(tab.kind); !word.empty()) {
            m_body.word(word);
        }
        m_body.word("tx", tab.position);
    }
}

/// What a reader shows that does not know lists.
void Writer::writeListMark(const RtfList &list)
{
    m_body.open();
    m_body.word("pntext");
    if (list.style == RtfListStyle::Bullet) {
        m_body.word("f", m_symbolFont);
        m_body.symbolBullet();
    } else {
        m_body.word("f", 0);
        m_body.text(list.before, codePage(0));
        m_body.raw(numberText(list.style, m_number));
        m_body.text(list.after, codePage(0));
    }
    m_body.word("tab");
    m_body.close();
}

void Writer::writeListFormat(const RtfList &list)
{
    m_body.open();
    m_body.ignorable();
    m_body.word("pn");
    if (list.style == RtfListStyle::Bullet) {
        m_body.word("pnlvlblt");
        m_body.word("pnf", m_symbolFont);
        m_body.word("pnindent", 0);
        m_body.open();
        m_body.word("pntxtb");
        m_body.symbolBullet();
        m_body.close();
    } else {
        m_body.word("pnlvlbody");
        m_body.word("pnf", 0);
        m_body.word("pnindent", 0);
        m_body.word("pnstart", list.start);
        m_body.word(numberWord(list.style));
        for (const auto &[word, text] : {std::pair("pntxtb", list.before), std::pair("pntxta", list.after)}) {
            if (!text.isEmpty()) {
                m_body.open();
                m_body.word(word);
                m_body.text(text, codePage(0));
                m_body.close();
            }
        }
    }
    m_body.close();
}

/// The words that lead from the format written last to \p format.
void Writer::writeFormat(const RtfCharacter &format)
{
    const RtfCharacter last = std::exchange(m_format, format);
    const auto toggle = [this](bool before, bool now, std::string_view on, std::string_view off) {
        if (before != now) {
            m_body.word(now ? on : off);
        }
    };
    if (format.color != last.color) m_body.word("cf", m_colorNumbers.value(format.color, 0));
    if (format.highlight != last.highlight) m_body.word("highlight", m_colorNumbers.value(format.highlight, 0));
    toggle(last.underline, format.underline, "ul", "ulnone");
    toggle(last.bold, format.bold, "b", "b0");
    toggle(last.italic, format.italic, "i", "i0");
    toggle(last.strike, format.strike, "strike", "strike0");
    toggle(last.hidden, format.hidden, "v", "v0");
    if (format.script != last.script) {
        m_body.word(format.script == RtfScript::Superscript ? "super"
                    : format.script == RtfScript::Subscript ? "sub"
                                                            : "nosupersub");
    }
    if (format.shift != last.shift) {
        m_body.word(format.shift < 0 ? "dn" : "up", std::abs(format.shift));
    }
    if (format.font != last.font) m_body.word("f", format.font);
    if (format.halfPoints != last.halfPoints) m_body.word("fs", format.halfPoints);
}

const RtfCodePage &Writer::codePage(int font)
{
    return m_codePages.page(m_fonts[static_cast<std::size_t>(font)].codePage);
}

} // namespace

std::string writeRtf(const QTextDocument &document)
{
    return Writer(document, {}).write();
}

std::string writeRtf(const QTextCursor &cursor)
{
    if (cursor.isNull()) {
        return {};
    }
    return Writer(*cursor.document(), {cursor.selectionStart(), cursor.selectionEnd()}).write();
}
