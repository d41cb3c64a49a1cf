#include "platform/HtmlTokens.h"

#include "platform/rtf/RtfCodePages.h"

#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <array>
#include <string>

namespace {

// Sorted by name (checked below). The tags of all other elements are left out, not what is between them.
constexpr auto elements = std::to_array<HtmlElement>({
    {"a", HtmlRole::Link, ""},
    {"address", HtmlRole::Block, "font-style:italic"},
    {"article", HtmlRole::Block, ""},
    {"aside", HtmlRole::Block, ""},
    {"audio", HtmlRole::Skipped, ""},
    {"b", HtmlRole::Inline, "font-weight:bold"},
    {"blockquote", HtmlRole::Block, ""},
    {"br", HtmlRole::Break, ""},
    {"canvas", HtmlRole::Skipped, ""},
    {"caption", HtmlRole::Block, ""},
    {"center", HtmlRole::Block, "text-align:center"},
    {"cite", HtmlRole::Inline, "font-style:italic"},
    {"code", HtmlRole::Inline, "", 0, true},
    {"datalist", HtmlRole::Skipped, ""},
    {"dd", HtmlRole::Block, ""},
    {"del", HtmlRole::Inline, "text-decoration:line-through"},
    {"details", HtmlRole::Block, ""},
    {"dfn", HtmlRole::Inline, "font-style:italic"},
    {"dir", HtmlRole::List, ""},
    {"div", HtmlRole::Block, ""},
    {"dl", HtmlRole::Block, ""},
    {"dt", HtmlRole::Block, ""},
    {"em", HtmlRole::Inline, "font-style:italic"},
    {"fieldset", HtmlRole::Block, ""},
    {"figcaption", HtmlRole::Block, ""},
    {"figure", HtmlRole::Block, ""},
    {"font", HtmlRole::Inline, ""},
    {"footer", HtmlRole::Block, ""},
    {"form", HtmlRole::Block, ""},
    {"h1", HtmlRole::Block, "font-weight:bold", 18},
    {"h2", HtmlRole::Block, "font-weight:bold", 16},
    {"h3", HtmlRole::Block, "font-weight:bold", 14},
    {"h4", HtmlRole::Block, "font-weight:bold"},
    {"h5", HtmlRole::Block, "font-weight:bold"},
    {"h6", HtmlRole::Block, "font-weight:bold"},
    {"header", HtmlRole::Block, ""},
    {"hr", HtmlRole::Rule, ""},
    {"i", HtmlRole::Inline, "font-style:italic"},
    {"iframe", HtmlRole::Skipped, ""},
    {"img", HtmlRole::Picture, ""},
    {"ins", HtmlRole::Inline, "text-decoration:underline"},
    {"kbd", HtmlRole::Inline, "", 0, true},
    {"li", HtmlRole::Item, ""},
    {"main", HtmlRole::Block, ""},
    {"mark", HtmlRole::Inline, "background-color:#ffff00"},
    {"menu", HtmlRole::List, ""},
    {"nav", HtmlRole::Block, ""},
    {"noembed", HtmlRole::Skipped, ""},
    {"noframes", HtmlRole::Skipped, ""},
    {"noscript", HtmlRole::Skipped, ""},
    {"ol", HtmlRole::List, "list-style:decimal"},
    {"p", HtmlRole::Block, ""},
    {"pre", HtmlRole::Preformatted, "white-space:pre", 0, true},
    {"s", HtmlRole::Inline, "text-decoration:line-through"},
    {"samp", HtmlRole::Inline, "", 0, true},
    {"script", HtmlRole::Skipped, ""},
    {"section", HtmlRole::Block, ""},
    {"select", HtmlRole::Skipped, ""},
    {"span", HtmlRole::Inline, ""},
    {"strike", HtmlRole::Inline, "text-decoration:line-through"},
    {"strong", HtmlRole::Inline, "font-weight:bold"},
    {"style", HtmlRole::Skipped, ""},
    {"sub", HtmlRole::Inline, "vertical-align:sub"},
    {"summary", HtmlRole::Block, ""},
    {"sup", HtmlRole::Inline, "vertical-align:super"},
    {"svg", HtmlRole::Skipped, ""},
    {"table", HtmlRole::Table, ""},
    {"td", HtmlRole::Cell, ""},
    {"template", HtmlRole::Skipped, ""},
    {"textarea", HtmlRole::Skipped, ""},
    {"th", HtmlRole::Cell, "font-weight:bold"},
    {"title", HtmlRole::Skipped, ""},
    {"tr", HtmlRole::Row, ""},
    {"tt", HtmlRole::Inline, "", 0, true},
    {"u", HtmlRole::Inline, "text-decoration:underline"},
    {"ul", HtmlRole::List, "list-style:disc"},
    {"var", HtmlRole::Inline, "font-style:italic"},
    {"video", HtmlRole::Skipped, ""},
    {"xml", HtmlRole::Skipped, ""},
});
static_assert(std::ranges::adjacent_find(elements, std::ranges::greater_equal{}, &HtmlElement::name) == elements.end(),
              "keep the table sorted and free of duplicates");

constexpr bool isLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

/// A character by its number. Pages name those of a code page by their bytes.
QString numbered(QStringView digits)
{
    const bool isHex = digits.startsWith(u'x') || digits.startsWith(u'X');
    bool isNumber = false;
    const uint code = isHex ? digits.mid(1).toUInt(&isNumber, 16) : digits.toUInt(&isNumber);
    if (isNumber && code >= 0x80 && code < 0xa0) {
        const char byte = static_cast<char>(code);
        return RtfCodePage(defaultCodePage).decode({&byte, 1});
    }
    const bool isCharacter = isNumber && code > 0 && code <= QChar::LastValidCodePoint && !QChar::isSurrogate(code);
    const auto character = static_cast<char32_t>(isCharacter ? code : uint{QChar::ReplacementCharacter});
    return QString::fromUcs4(&character, 1);
}

} // namespace

const HtmlElement *findHtmlElement(QStringView name)
{
    constexpr qsizetype longestName = 10;
    if (name.size() > longestName) {
        return nullptr;
    }
    const std::string wanted = name.toString().toLower().toStdString();
    const auto *row = std::ranges::lower_bound(elements, std::string_view(wanted), {}, &HtmlElement::name);
    return row != elements.end() && row->name == wanted ? row : nullptr;
}

std::optional<HtmlToken> HtmlTokens::next()
{
    while (m_at < m_html.size()) {
        if (isTag(m_at)) {
            if (const auto tag = readTag()) {
                return tag;
            }
            continue;
        }
        const qsizetype start = m_at;
        do {
            const qsizetype bracket = m_html.indexOf(u'<', m_at + 1);
            m_at = bracket < 0 ? m_html.size() : bracket;
        } while (m_at < m_html.size() && !isTag(m_at));
        return HtmlToken{HtmlToken::Kind::Text, start, m_html.mid(start, m_at - start), nullptr};
    }
    return std::nullopt;
}

bool HtmlTokens::isTag(qsizetype i) const
{
    const QChar second = at(i + 1);
    return m_html[i] == u'<' &&
           (isLetter(second) || second == u'!' || second == u'?' || (second == u'/' && isLetter(at(i + 2))));
}

std::optional<HtmlToken> HtmlTokens::readTag()
{
    const qsizetype start = m_at;
    if (m_html.mid(start).startsWith(QLatin1StringView("<!--"))) {
        moveBehind(QLatin1StringView("-->"), start + 2); // "<!-->" is a whole comment
        return std::nullopt;
    }
    if (!isLetter(at(start + 1)) && at(start + 1) != u'/') {
        moveBehind(QLatin1StringView(">"), start);
        return std::nullopt;
    }
    const bool isEnd = at(start + 1) == u'/';
    const qsizetype name = start + (isEnd ? 2 : 1);
    qsizetype attributes = name;
    while (attributes < m_html.size() && !isHtmlBlank(m_html[attributes]) && m_html[attributes] != u'>' &&
           m_html[attributes] != u'/') {
        ++attributes;
    }
    const qsizetype end = endOfTag(attributes);
    m_at = std::min(end + 1, m_html.size());
    if (end == m_html.size()) {
        return std::nullopt; // a tag that was cut off
    }
    const HtmlElement *element = findHtmlElement(m_html.mid(name, attributes - name));
    if (element == nullptr) {
        return std::nullopt;
    }
    if (element->role == HtmlRole::Skipped) {
        const bool mayBeEmpty = element->name == "svg" || element->name == "xml";
        if (!isEnd && !(mayBeEmpty && m_html[end - 1] == u'/')) {
            skipContents(element->name);
        }
        return std::nullopt;
    }
    return HtmlToken{isEnd ? HtmlToken::Kind::End : HtmlToken::Kind::Start, start,
                     m_html.mid(attributes, end - attributes), element};
}

/// The place of the '>' that ends a tag: none within quotes.
qsizetype HtmlTokens::endOfTag(qsizetype from) const
{
    QChar quote;
    bool quoteMayCome = false; // a quote in a name or a plain value is a mistake, and no quote
    for (qsizetype i = from; i < m_html.size(); ++i) {
        const QChar c = m_html[i];
        if (!quote.isNull()) {
            quote = c == quote ? QChar() : quote;
        } else if (c == u'>') {
            return i;
        } else if (quoteMayCome && (c == u'"' || c == u'\'')) {
            quote = c;
        }
        quoteMayCome = c == u'=' || (quoteMayCome && isHtmlBlank(c));
    }
    return m_html.size();
}

void HtmlTokens::moveBehind(QLatin1StringView what, qsizetype from)
{
    const qsizetype found = m_html.indexOf(what, from);
    m_at = found < 0 ? m_html.size() : found + what.size();
}

void HtmlTokens::skipContents(std::string_view name)
{
    const QString end = QStringLiteral("</") + QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
    const qsizetype found = m_html.indexOf(end, m_at, Qt::CaseInsensitive);
    m_at = found < 0 ? m_html.size() : found;
}

QString HtmlEntities::decode(QStringView text)
{
    constexpr qsizetype longestEntity = 32;
    QString decoded;
    qsizetype done = 0;
    for (qsizetype start = text.indexOf(u'&'); start >= 0; start = text.indexOf(u'&', start + 1)) {
        const qsizetype length = text.mid(start, longestEntity).indexOf(u';');
        const QStringView name = text.mid(start + 1, std::max<qsizetype>(0, length - 1));
        QString character;
        if (name.startsWith(u'#')) {
            character = numbered(name.mid(1));
        } else if (!name.isEmpty() && isLetter(name.front())) {
            character = named(name);
        }
        if (!character.isEmpty()) {
            decoded += text.mid(done, start - done);
            decoded += character;
            done = start + length + 1;
            start += length;
        }
    }
    return done == 0 ? text.toString() : decoded.append(text.mid(done));
}

/// Empty if there is none of that name.
QString HtmlEntities::named(QStringView name)
{
    constexpr qsizetype mostNames = 300; // that many there are
    const auto isOfName = [](QChar c) { return isLetter(c) || (c >= u'0' && c <= u'9'); };
    if (!std::ranges::all_of(name, isOfName)) {
        return {};
    }
    const QString key = name.toString();
    const auto known = m_known.constFind(key);
    if (known != m_known.constEnd()) {
        return *known;
    }
    if (m_known.size() >= mostNames) {
        return {};
    }
    // A document knows the names.
    const QString html = QLatin1Char('&') + key + QLatin1Char(';');
    QTextDocument document;
    document.setHtml(QStringLiteral("<pre>") + html);
    QTextCursor cursor(&document);
    cursor.select(QTextCursor::Document);
    const QString character = cursor.selectedText();
    return *m_known.insert(key, character == html ? QString() : character);
}

QString htmlAttribute(QStringView attributes, QLatin1StringView name, HtmlEntities &entities)
{
    const auto skip = [&attributes](auto isPart) {
        qsizetype length = 0;
        while (length < attributes.size() && isPart(attributes[length])) {
            ++length;
        }
        const QStringView skipped = attributes.left(length);
        attributes = attributes.mid(length);
        return skipped;
    };
    while (!attributes.isEmpty()) {
        skip([](QChar c) { return isHtmlBlank(c) || c == u'/' || c == u'='; });
        const QStringView found = skip([](QChar c) { return !isHtmlBlank(c) && c != u'/' && c != u'='; });
        skip(isHtmlBlank);
        QStringView value;
        if (attributes.startsWith(u'=')) {
            attributes = attributes.mid(1);
            skip(isHtmlBlank);
            const QChar quote = attributes.isEmpty() ? QChar() : attributes.front();
            if (quote == u'"' || quote == u'\'') {
                attributes = attributes.mid(1);
                value = skip([quote](QChar c) { return c != quote; });
                attributes = attributes.mid(1);
            } else {
                value = skip([](QChar c) { return !isHtmlBlank(c); });
            }
        }
        if (found.compare(name, Qt::CaseInsensitive) == 0) {
            return value.isEmpty() ? QStringLiteral("") : entities.decode(value);
        }
    }
    return {};
}
