#include "platform/rtf/RtfWriter.h"

#include "platform/rtf/RtfFieldReader.h"
#include "platform/rtf/RtfFormats.h"
#include "platform/rtf/RtfHeader.h"
#include "platform/rtf/RtfListWriter.h"
#include "platform/rtf/RtfObjectFormat.h"
#include "platform/rtf/RtfStream.h"

#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace {

/// A range of positions in a document. The end of the whole document lies behind
/// the mark of its last paragraph, where no selection reaches.
struct Range
{
    int start = 0;
    int end = std::numeric_limits<int>::max();

    [[nodiscard]] bool contains(int position) const { return position >= start && position < end; }
};

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

class Writer
{
public:
    Writer(const QTextDocument &document, Range range);

    [[nodiscard]] std::string write();

private:
    void collect();
    void writeParagraph(const QTextBlock &block);
    void countParagraph(const RtfList &list);
    void writeParagraphFormat(const RtfParagraph &paragraph);
    void writeListMark(const RtfList &list);
    void setLink(int link);
    void writeFormat(const RtfCharacter &format);

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
    RtfHeader m_header;
    RtfStream m_out;

    // As written last.
    RtfCharacter m_format;
    RtfCharacter m_formatAroundLink;
    std::optional<RtfParagraph> m_paragraph;
    int m_number = 0; ///< of the paragraph in its list
};

Writer::Writer(const QTextDocument &document, Range range)
    : m_document(document)
    , m_range(range)
    , m_units(document)
    , m_header(document)
{
}

std::string Writer::write()
{
    collect();
    m_header.write(m_out);
    m_out.word("viewkind4");
    m_out.word("uc1");
    for (QTextBlock block = firstBlock(); reaches(block); block = block.next()) {
        writeParagraph(block);
    }
    m_out.close();
    m_out.endLine();
    return m_out.written();
}

template <typename Visit>
void Writer::visitRuns(const QTextBlock &block, Visit visit) const
{
    int position = block.position();
    for (auto run = block.begin(); !run.atEnd(); ++run) {
        const QTextFragment fragment = run.fragment();
        const int length = fragment.length();
        const int start = std::max(0, m_range.start - position);
        const int end = std::min(length, m_range.end - position);
        if (start < end) {
            visit(fragment, start, end - start);
        }
        position += length;
    }
}

void Writer::collect()
{
    bool hasBullets = false;
    for (QTextBlock block = firstBlock(); reaches(block); block = block.next()) {
        visitRuns(block, [this](const QTextFragment &fragment, int, int) {
            m_header.collect(fragment.charFormatIndex(), fragment.charFormat());
        });
        m_header.collect(block.charFormatIndex(), block.charFormat());
        hasBullets = hasBullets ||
                     (block.textList() != nullptr && paragraphOf(block, m_units).list.style == RtfListStyle::Bullet);
    }
    if (hasBullets) {
        m_header.collectSymbolFont();
    }
}

void Writer::writeParagraph(const QTextBlock &block)
{
    const RtfParagraph paragraph = paragraphOf(block, m_units);
    const bool isList = paragraph.list.style != RtfListStyle::None;
    countParagraph(paragraph.list);
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
        const RtfCharacter format = m_header.format(fragment.charFormatIndex());
        if (format.link >= 0) {
            writeMark();
        }
        setLink(format.link);
        writeFormat(format);
        writeMark();
        if (const QByteArray source = objectSourceOf(fragment.charFormat()); !source.isEmpty()) {
            for (int count = length; count > 0; --count) {
                m_out.group({source.constData(), static_cast<std::size_t>(source.size())});
            }
            return;
        }
        const QString text = fragment.text();
        m_out.text(QStringView(text).mid(from, length), m_header.codePage(format.font));
    });
    setLink(-1);
    if (closes(block) || m_format.font < 0) {
        RtfCharacter mark = m_header.format(block.charFormatIndex());
        mark.link = -1;
        writeFormat(mark);
    }
    writeMark();
    if (closes(block)) {
        m_out.word("par");
        m_out.endLine();
    }
}

/// The number of the paragraph that comes next. The last number there is stays.
void Writer::countParagraph(const RtfList &list)
{
    if (!m_paragraph || m_paragraph->list != list) {
        m_number = list.start;
    } else if (m_number < std::numeric_limits<int>::max()) {
        ++m_number;
    }
}

void Writer::writeParagraphFormat(const RtfParagraph &paragraph)
{
    const auto length = [this](std::string_view word, int twips) {
        if (twips != 0) {
            m_out.word(word, twips);
        }
    };
    m_out.word("pard");
    if (paragraph.list.style != RtfListStyle::None) {
        writeListMark(paragraph.list);
        writeRtfListFormat(m_out, paragraph.list, m_header.symbolFont(), m_header.codePage(0));
    }
    if (paragraph.rightToLeft) {
        m_out.word("rtlpar");
    }
    length("fi", paragraph.firstLineIndent);
    length("li", paragraph.leftIndent);
    length("ri", paragraph.rightIndent);
    length("sb", paragraph.spaceBefore);
    length("sa", paragraph.spaceAfter);
    if (paragraph.lineSpacing != 0) {
        m_out.word("sl", paragraph.lineSpacing);
        m_out.word("slmult", paragraph.lineSpacingIsMultiple ? 1 : 0);
    }
    if (paragraph.alignment == RtfAlignment::Center) {
        m_out.word("qc");
    } else if (paragraph.alignment == RtfAlignment::Right) {
        m_out.word("qr");
    }
    for (const RtfTab &tab : paragraph.tabs) {
        if (const std::string_view word = tabWord(tab.kind); !word.empty()) {
            m_out.word(word);
        }
        m_out.word("tx", tab.position);
    }
}

void Writer::writeListMark(const RtfList &list)
{
    writeRtfListMark(m_out, list, m_number, m_header.symbolFont(), m_header.codePage(0));
}

/// Ends the link that is open, unless it is \p link, and begins that one; -1 is none.
void Writer::setLink(int link)
{
    if (link == m_format.link) {
        return;
    }
    if (m_format.link >= 0) {
        m_out.close();
        m_out.close();
        m_format = m_formatAroundLink;
    }
    if (link >= 0) {
        m_formatAroundLink = m_format;
        m_format.link = link;
        m_out.open();
        m_out.word("field");
        m_out.open();
        m_out.ignorable();
        m_out.word("fldinst");
        m_out.text(linkInstruction(m_header.address(link)));
        m_out.close();
        m_out.open();
        m_out.word("fldrslt");
    }
}

/// The words that lead from the format written last to \p format.
void Writer::writeFormat(const RtfCharacter &format)
{
    const RtfCharacter last = std::exchange(m_format, format);
    const auto toggle = [this](bool before, bool now, std::string_view on, std::string_view off) {
        if (before != now) {
            m_out.word(now ? on : off);
        }
    };
    if (format.color != last.color) {
        m_out.word("cf", m_header.colorNumber(format.color));
    }
    if (format.highlight != last.highlight) {
        m_out.word("highlight", m_header.colorNumber(format.highlight));
    }
    toggle(last.underline, format.underline, "ul", "ulnone");
    toggle(last.bold, format.bold, "b", "b0");
    toggle(last.italic, format.italic, "i", "i0");
    toggle(last.strike, format.strike, "strike", "strike0");
    if (format.capitals != last.capitals) {
        m_out.word(format.capitals == RtfCapitals::All     ? "caps"
                   : format.capitals == RtfCapitals::Small ? "scaps"
                   : last.capitals == RtfCapitals::All     ? "caps0"
                                                           : "scaps0");
    }
    toggle(last.hidden, format.hidden, "v", "v0");
    if (format.script != last.script) {
        m_out.word(format.script == RtfScript::Superscript ? "super"
                   : format.script == RtfScript::Subscript ? "sub"
                                                           : "nosupersub");
    }
    if (format.shift != last.shift) {
        m_out.word(format.shift < 0 ? "dn" : "up", std::abs(format.shift));
    }
    if (format.font != last.font) {
        m_out.word("f", format.font);
    }
    if (format.halfPoints != last.halfPoints) {
        m_out.word("fs", format.halfPoints);
    }
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
