#pragma once

#include <QHash>
#include <QString>

#include <cstdint>
#include <optional>
#include <string_view>

/// What an element is to a card.
enum class HtmlRole : std::uint8_t {
    Skipped, ///< with all that it holds
    Inline,
    Link,
    Block,
    Preformatted,
    List,
    Item,
    Table,
    Row,
    Cell,
    Break,
    Rule,
    Picture,
};

struct HtmlElement
{
    std::string_view name;
    HtmlRole role;
    std::string_view style; ///< CSS
    int points = 0;         ///< of its text; 0: as around it
    bool fixedPitch = false;
};

/// The element of that name, in letters of either kind; nullptr if its tags mean nothing here.
[[nodiscard]] const HtmlElement *findHtmlElement(QStringView name);

/// White space as HTML has it.
constexpr bool isHtmlBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f';
}

struct HtmlToken
{
    enum class Kind : std::uint8_t { Text, Start, End };

    Kind kind = Kind::Text;
    qsizetype offset = 0;                 ///< in the HTML
    QStringView text;                     ///< of a start tag: its attributes
    const HtmlElement *element = nullptr; ///< of a tag
};

/// Takes HTML apart into text and the tags of elements that mean something. Comments,
/// declarations and skipped elements are left out.
class HtmlTokens
{
public:
    explicit HtmlTokens(QStringView html)
        : m_html(html)
    {
    }

    /// The next one; nothing at the end.
    [[nodiscard]] std::optional<HtmlToken> next();

private:
    [[nodiscard]] std::optional<HtmlToken> readTag();
    [[nodiscard]] bool isTag(qsizetype at) const;
    [[nodiscard]] qsizetype endOfTag(qsizetype from) const;
    void moveBehind(QLatin1StringView what, qsizetype from);
    void skipContents(std::string_view name);
    [[nodiscard]] QChar at(qsizetype i) const { return i < m_html.size() ? m_html[i] : QChar(); }

    const QStringView m_html;
    qsizetype m_at = 0;
};

/// Characters by their names and numbers.
class HtmlEntities
{
public:
    [[nodiscard]] QString decode(QStringView text);

private:
    [[nodiscard]] QString named(QStringView name);

    QHash<QString, QString> m_known;
};

/// The value of the attribute \p name; null if it is not there.
[[nodiscard]] QString htmlAttribute(QStringView attributes, QLatin1StringView name, HtmlEntities &entities);
