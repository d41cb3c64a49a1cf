#include "platform/PastedHtml.h"

#include "platform/HtmlRows.h"
#include "platform/HtmlStyle.h"
#include "platform/HtmlTokens.h"
#include "platform/PastedPicture.h"
#include "platform/PastedText.h"
#include "platform/ReadableColors.h"
#include "platform/rtf/RtfFormats.h"
#include "platform/rtf/RtfObject.h"
#include "platform/rtf/RtfObjectFormat.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfWriter.h"

#include <QBuffer>
#include <QImageReader>
#include <QTextCursor>
#include <QTextDocument>
#include <QUrl>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr int twipsPerLevel = 360;

/// Reads HTML as browsers do, roughly, and writes what belongs on a card.
class Reader
{
public:
    Reader(const QString &html, const QColor &paper, QSize screen, const QFont &font);

    [[nodiscard]] std::string read();

private:
    /// Elements that are deeper lose their looks.
    static constexpr std::size_t maxDepth = 256;
    static constexpr int maxPictures = 256;
    static constexpr int maxTabs = 63; ///< of a line

    struct Open
    {
        const HtmlElement *element;
        HtmlLook before; ///< of the text around it
        bool isLine = false;
    };

    void start(const HtmlToken &token);
    void end(const HtmlElement &element);
    void open(const HtmlToken &token);
    void close();
    template <class Ends, class Bounds>
    bool closeInnermost(Ends ends, Bounds bounds);
    void closeOpen(HtmlRole role, HtmlRole within);
    void closeParagraphElement();
    [[nodiscard]] HtmlLook lookOf(const HtmlToken &token);
    void startList(const HtmlToken &token);
    void startItem(const HtmlToken &token);
    void startRow(const HtmlToken &token);
    void startCell(const HtmlToken &token);
    [[nodiscard]] const Open *openRow() const;
    void insertPicture(const HtmlToken &token);
    [[nodiscard]] QString linkOf(const QString &href) const;

    void addText(const QString &text);
    void addCharacter(QChar c);
    void addBlank();
    void addLineBreak();
    void put(QChar c, const QTextCharFormat &format);
    void breakParagraph();
    [[nodiscard]] RtfList listOf();
    [[nodiscard]] const QTextCharFormat &format();
    [[nodiscard]] bool isInLine() const { return m_lines > 0; }
    [[nodiscard]] QString valueOf(const HtmlToken &token, const char *name)
    {
        return htmlAttribute(token.text, QLatin1StringView(name), m_entities);
    }

    const QString &m_html;
    const ReadableColors m_page;
    const QSize m_screen;
    const HtmlRows m_rows;
    HtmlEntities m_entities;
    PastedText m_paper;

    std::vector<Open> m_open;
    std::vector<int> m_lists; ///< the next number of each open one
    HtmlLook m_look;
    std::optional<QTextCharFormat> m_format; ///< of m_look
    PastedParagraph m_paragraph;
    std::optional<QTextCharFormat> m_blank; ///< one is due before the next character
    bool m_skipsNewline = false;            ///< the first one in preformatted text
    int m_blocks = 0;                       ///< open elements that are paragraphs
    int m_lines = 0;                        ///< open rows that are lines, in each other
    int m_tabsLeft = 0;
    int m_tabsDue = 0;                 ///< before the next cell of the outermost of these
    std::optional<RtfList> m_mark;     ///< of the next paragraph; its start is its number
    std::optional<RtfList> m_lastList; ///< of the paragraph before
    int m_lastNumber = 0;
    int m_pictures = 0;
    qint64 m_pixelsLeft = 2 * maxPicturePixels; ///< that may be decoded
};

Reader::Reader(const QString &html, const QColor &paper, QSize screen, const QFont &font)
    : m_html(html)
    , m_page(paper)
    , m_screen(screen)
    , m_rows(html)
    , m_paper(font)
{
}

std::string Reader::read()
{
    HtmlTokens tokens(m_html);
    while (const auto token = tokens.next()) {
        switch (token->kind) {
        case HtmlToken::Kind::Text: addText(m_entities.decode(token->text)); break;
        case HtmlToken::Kind::Start: start(*token); break;
        case HtmlToken::Kind::End: end(*token->element); break;
        }
    }
    m_lines = 0;
    breakParagraph();
    return m_paper.rtf();
}

void Reader::start(const HtmlToken &token)
{
    switch (token.element->role) {
    case HtmlRole::Skipped: break;
    case HtmlRole::Inline:
    case HtmlRole::Link: open(token); break;
    case HtmlRole::Block:
    case HtmlRole::Preformatted:
    case HtmlRole::Table:
        closeParagraphElement();
        breakParagraph();
        open(token);
        m_skipsNewline = token.element->role == HtmlRole::Preformatted;
        break;
    case HtmlRole::List: startList(token); break;
    case HtmlRole::Item: startItem(token); break;
    case HtmlRole::Row: startRow(token); break;
    case HtmlRole::Cell: startCell(token); break;
    case HtmlRole::Break: addLineBreak(); break;
    case HtmlRole::Rule:
        closeParagraphElement();
        breakParagraph();
        break;
    case HtmlRole::Picture: insertPicture(token); break;
    }
}

/// Ends the innermost open element that \p ends accepts, and what is open in it. False: \p bounds
/// accepts one further in, or there is none.
template <class Ends, class Bounds>
bool Reader::closeInnermost(Ends ends, Bounds bounds)
{
    for (std::size_t depth = m_open.size(); depth > 0; --depth) {
        const HtmlElement &element = *m_open[depth - 1].element;
        if (ends(element)) {
            while (m_open.size() >= depth) {
                close();
            }
            return true;
        }
        if (bounds(element)) {
            return false;
        }
    }
    return false;
}

void Reader::end(const HtmlElement &element)
{
    const bool isOfTable =
        element.role == HtmlRole::Table || element.role == HtmlRole::Row || element.role == HtmlRole::Cell;
    const bool isClosed =
        closeInnermost([&](const HtmlElement &open) { return &open == &element; },
                       [&](const HtmlElement &open) {
                           return open.role == HtmlRole::Table || (!isOfTable && open.role == HtmlRole::Cell);
                       });
    if (!isClosed && element.role == HtmlRole::Block) {
        breakParagraph(); // of one whose start was too deep
    }
}

void Reader::open(const HtmlToken &token)
{
    if (m_open.size() >= maxDepth) {
        return;
    }
    m_open.push_back({token.element, m_look});
    m_look = lookOf(token);
    m_format.reset();
    const HtmlRole role = token.element->role;
    if (role != HtmlRole::Inline && role != HtmlRole::Link) {
        ++m_blocks;
    }
}

void Reader::close()
{
    const Open closed = m_open.back();
    const HtmlRole role = closed.element->role;
    if (role != HtmlRole::Inline && role != HtmlRole::Link) {
        if (closed.isLine) {
            --m_lines;
        }
        if (role != HtmlRole::Cell || !isInLine()) {
            breakParagraph();
        }
        --m_blocks;
    }
    if (role == HtmlRole::List) {
        m_lists.pop_back();
    }
    if (role == HtmlRole::Item) {
        m_mark.reset(); // of an empty one
    }
    m_look = closed.before;
    m_open.pop_back();
    m_format.reset();
}

/// Ends the innermost open element of \p role, if it is not outside one of \p within:
/// few write the end of a list's item or of a table's cell.
void Reader::closeOpen(HtmlRole role, HtmlRole within)
{
    closeInnermost([&](const HtmlElement &open) { return open.role == role; },
                   [&](const HtmlElement &open) { return open.role == within || open.role == HtmlRole::Table; });
}

/// A paragraph ends where another block begins.
void Reader::closeParagraphElement()
{
    closeInnermost(
        [](const HtmlElement &open) { return open.name == "p"; },
        [](const HtmlElement &open) { return open.role != HtmlRole::Inline && open.role != HtmlRole::Link; });
}

HtmlLook Reader::lookOf(const HtmlToken &token)
{
    const HtmlElement &element = *token.element;
    HtmlLook look = m_look;
    applyHtmlStyle(look, QString::fromLatin1(element.style.data(), static_cast<qsizetype>(element.style.size())));
    look.points = element.points > 0 ? element.points : look.points;
    look.fixedPitch = look.fixedPitch || element.fixedPitch;
    if (element.role == HtmlRole::Link) {
        look.link = linkOf(valueOf(token, "href"));
    }
    if (element.name == "font") {
        applyHtmlStyle(look, u"color", valueOf(token, "color"));
    }
    if (const QString align = valueOf(token, "align"); !align.isEmpty() && element.role == HtmlRole::Block) {
        applyHtmlStyle(look, u"text-align", align);
    }
    if (const QString direction = valueOf(token, "dir"); !direction.isEmpty()) {
        applyHtmlStyle(look, u"direction", direction);
    }
    const QColor highlight = look.highlight;
    applyHtmlStyle(look, valueOf(token, "style"));
    if (element.role != HtmlRole::Inline && element.role != HtmlRole::Link) {
        look.highlight = highlight; // that of a block is the page's
    }
    return look;
}

void Reader::startList(const HtmlToken &token)
{
    closeParagraphElement();
    breakParagraph();
    const std::size_t depth = m_open.size();
    open(token);
    if (m_open.size() == depth) {
        return;
    }
    if (const QString type = valueOf(token, "type"); !type.isEmpty() && token.element->name == "ol") {
        m_look.listStyle = htmlListStyle(type).value_or(m_look.listStyle);
    }
    constexpr int mostStart = 1'000'000;
    const QString start = valueOf(token, "start");
    m_lists.push_back(start.isEmpty() ? 1 : std::clamp(start.toInt(), 0, mostStart));
}

void Reader::startItem(const HtmlToken &token)
{
    closeOpen(HtmlRole::Item, HtmlRole::List);
    breakParagraph();
    open(token);
    const RtfListStyle style = m_look.listStyle;
    const bool isNumber = style != RtfListStyle::Bullet && style != RtfListStyle::None && !m_lists.empty();
    if (isNumber) {
        m_mark = RtfList{style, m_lists.back()++, {}, QStringLiteral(".")};
    } else {
        m_mark = RtfList{style == RtfListStyle::None ? style : RtfListStyle::Bullet, 1, {}, {}};
    }
}

void Reader::startRow(const HtmlToken &token)
{
    closeOpen(HtmlRole::Row, HtmlRole::Table);
    breakParagraph();
    open(token);
    if (m_rows.isLine(token.offset) && !m_open.empty() && m_open.back().element == token.element) {
        m_open.back().isLine = true;
        if (m_lines++ == 0) {
            m_tabsDue = 0;
            m_tabsLeft = maxTabs;
        }
    }
}

/// The open row of the innermost table, or nullptr.
const Reader::Open *Reader::openRow() const
{
    for (std::size_t i = m_open.size(); i-- > 0 && m_open[i].element->role != HtmlRole::Table;) {
        if (m_open[i].element->role == HtmlRole::Row) {
            return &m_open[i];
        }
    }
    return nullptr;
}

void Reader::startCell(const HtmlToken &token)
{
    closeOpen(HtmlRole::Cell, HtmlRole::Row);
    if (openRow() == nullptr) { // its start was left out
        startRow({token.kind, token.offset, {}, findHtmlElement(u"tr")});
    }
    if (isInLine()) {
        const Open *row = openRow();
        const bool isOfLine = m_lines == 1 && row != nullptr && row->isLine;
        const int tabs = isOfLine ? std::exchange(m_tabsDue, 0) : 0;
        for (int i = 0; i < tabs; ++i) {
            put(QLatin1Char('\t'), format());
        }
        if (tabs == 0) {
            addBlank();
        }
        if (isOfLine) {
            m_tabsLeft -= tabs;
            m_tabsDue = std::min(m_tabsLeft, std::max(1, valueOf(token, "colspan").toInt()));
        }
    } else {
        breakParagraph();
    }
    open(token);
}

QString Reader::linkOf(const QString &href) const
{
    constexpr auto schemes = std::to_array<std::string_view>({"http", "https", "mailto", "ftp"});
    constexpr qsizetype longestLink = 4096;
    const QUrl url(href.size() > longestLink ? QString() : href.trimmed());
    const std::string scheme = url.scheme().toStdString();
    const bool isLink = url.isValid() && std::ranges::find(schemes, scheme) != schemes.end();
    return isLink ? QString::fromLatin1(url.toEncoded()) : QString();
}

/// The bytes of a "data:" URL that is a picture; empty for every other.
QByteArray pictureBytes(const QString &url)
{
    constexpr qsizetype largest = qsizetype{24} * 1024 * 1024;
    const qsizetype comma = url.indexOf(QLatin1Char(','));
    if (comma < 0 || url.size() > largest || !url.startsWith(QLatin1String("data:image/"), Qt::CaseInsensitive)) {
        return {};
    }
    const QByteArray data = QByteArray::fromPercentEncoding(QStringView(url).mid(comma + 1).toLatin1());
    const bool isBase64 = QStringView(url).left(comma).endsWith(QLatin1String(";base64"), Qt::CaseInsensitive);
    return isBase64 ? QByteArray::fromBase64(data) : data;
}

/// What the head of a picture file says; an invalid size if it says nothing.
QSize claimedSize(const QByteArray &file)
{
    QByteArray bytes = file;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return QImageReader(&buffer).size();
}

void Reader::insertPicture(const HtmlToken &token)
{
    if (m_look.hidden || m_pictures >= maxPictures) {
        return;
    }
    const QByteArray bytes = pictureBytes(valueOf(token, "src").trimmed());
    const QSize size = claimedSize(bytes);
    const qint64 pixels = qint64{size.width()} * size.height();
    if (bytes.isEmpty() || pixels > m_pixelsLeft || size == QSize(1, 1)) { // pages use one pixel as a blank
        return;
    }
    ++m_pictures;
    m_pixelsLeft -= pixels;
    const QSize shown(valueOf(token, "width").toInt(), valueOf(token, "height").toInt());
    const QByteArray source = sourceOfPictureFile(bytes, m_screen, shown);
    if (!source.isEmpty()) {
        put(QChar::ObjectReplacementCharacter, toObjectFormat(format(), source));
    }
}

void Reader::addText(const QString &text)
{
    if (m_look.hidden) {
        return;
    }
    for (const QChar c : text) {
        addCharacter(c);
    }
}

void Reader::addCharacter(QChar c)
{
    if (c == u'\r') {
        return;
    }
    const bool isFirst = std::exchange(m_skipsNewline, false);
    const bool keepsLines = m_look.blanks != HtmlBlanks::Collapse && !isInLine();
    if (c == u'\n' && keepsLines) {
        if (!isFirst) {
            addLineBreak();
        }
        return;
    }
    if (isHtmlBlank(c) && (m_look.blanks != HtmlBlanks::Keep || isInLine())) {
        addBlank();
        return;
    }
    // Not to be seen, or marks of a document's own.
    const bool isUnwanted = (c < u' ' && c != u'\t') || (c >= QChar(0x7f) && c < QChar(QChar::Nbsp)) ||
                            c == QChar(0x200b) || c == QChar::ByteOrderMark || c == QChar::ObjectReplacementCharacter ||
                            (c >= QChar(0xfdd0) && c <= QChar(0xfdef)) || c >= QChar(0xfffe);
    if (isUnwanted) {
        return;
    }
    put(c == QChar::LineSeparator || c == QChar::ParagraphSeparator ? QChar(QLatin1Char(' ')) : c, format());
}

void Reader::addLineBreak()
{
    if (m_look.hidden) {
        return;
    }
    m_blank.reset();
    if (isInLine()) {
        addBlank();
    } else {
        put(QChar::LineSeparator, format());
    }
}

/// A blank in the look that the text has here, if more text follows.
void Reader::addBlank()
{
    if (!m_blank) {
        m_blank = format();
    }
}

/// Appends \p c, and before it the blank that is due.
void Reader::put(QChar c, const QTextCharFormat &format)
{
    PastedParagraph &paragraph = m_paragraph;
    if (paragraph.text.isEmpty()) {
        paragraph.format.alignment = isInLine() ? RtfAlignment::Left : m_look.alignment;
        paragraph.format.rightToLeft = m_look.rightToLeft;
        paragraph.isBlock = m_blocks > 0;
    }
    const QChar last = paragraph.text.isEmpty() ? QChar(QChar::LineSeparator) : paragraph.text.back();
    const bool isBetweenWords = last != QChar::LineSeparator && last != u'\t' && c != u'\t';
    if (m_blank && isBetweenWords) {
        paragraph.append(QLatin1Char(' '), *m_blank);
    }
    m_blank.reset();
    paragraph.append(c, format);
}

/// The end of a paragraph, if there is anything in it; within a line a blank.
void Reader::breakParagraph()
{
    if (isInLine()) {
        addBlank();
        return;
    }
    m_blank.reset();
    if (m_paragraph.text.isEmpty()) {
        return;
    }
    PastedParagraph paragraph = std::exchange(m_paragraph, {});
    paragraph.format.list = listOf();
    const int level = static_cast<int>(m_lists.size());
    if (paragraph.format.list.style != RtfListStyle::None) {
        paragraph.format.leftIndent = std::max(1, level) * twipsPerLevel;
        paragraph.format.firstLineIndent = -twipsPerLevel;
    } else {
        paragraph.format.leftIndent = level * twipsPerLevel;
    }
    m_paper.write(paragraph);
}

/// How the paragraph that ends is marked. Numbers go on in a list as long as nothing
/// stands between its paragraphs; behind that the list begins again at the number that is due.
RtfList Reader::listOf()
{
    const std::optional<RtfList> mark = std::exchange(m_mark, std::nullopt);
    if (!mark || mark->style == RtfListStyle::None) {
        m_lastList.reset();
        return {};
    }
    RtfList list = *mark;
    const int number = mark->start;
    if (m_lastList && m_lastList->style == list.style && m_lastNumber + 1 == number) {
        list.start = m_lastList->start;
    }
    m_lastNumber = number;
    m_lastList = list;
    return list;
}

const QTextCharFormat &Reader::format()
{
    if (m_format) {
        return *m_format;
    }
    RtfCharacter character;
    character.bold = m_look.bold;
    character.italic = m_look.italic;
    character.underline = m_look.underline || !m_look.link.isEmpty();
    character.strike = m_look.strike;
    character.script = m_look.script;
    character.halfPoints = 2 * m_look.points;
    RtfFont fixedPitch;
    fixedPitch.family = QStringLiteral("monospace");
    QTextCharFormat format = toCharFormat(character, m_look.fixedPitch ? &fixedPitch : nullptr, m_look.link);
    if (m_look.color.isValid()) {
        format.setForeground(m_look.color);
    }
    if (m_look.highlight.isValid()) {
        format.setBackground(m_look.highlight);
    }
    m_page.clean(format);
    return m_format.emplace(format);
}

} // namespace

std::string rtfOfHtml(const QString &html, const QColor &paper, QSize screen, const QFont &font)
{
    return html.size() > maxHtmlLength ? std::string() : Reader(html, paper, screen, font).read();
}

std::string withReadableColors(const std::string &rtf, const QColor &paper)
{
    if (rtf.find("\\colortbl") == std::string::npos) {
        return rtf;
    }
    QTextDocument document;
    document.setUndoRedoEnabled(false);
    QTextCursor cursor(&document);
    insertRtf(rtf, cursor); // as it will be inserted: a closing \par stays
    if (!ReadableColors(paper).clean(document)) {
        return rtf;
    }
    cursor.select(QTextCursor::Document);
    return writeRtf(cursor);
}
