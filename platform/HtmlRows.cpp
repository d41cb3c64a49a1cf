#include "platform/HtmlRows.h"

#include <algorithm>
#include <utility>

HtmlRows::HtmlRows(QStringView html)
{
    HtmlTokens tokens(html);
    while (const auto token = tokens.next()) {
        switch (token->kind) {
        case HtmlToken::Kind::Text: {
            QString text = token->text.toString();
            text.remove(QLatin1String("&nbsp;")).remove(QLatin1String("&#160;"));
            if (!std::ranges::all_of(text, [](QChar c) { return c.isSpace(); })) {
                show();
            }
            break;
        }
        case HtmlToken::Kind::Start: start(*token); break;
        case HtmlToken::Kind::End: end(token->element->role); break;
        }
    }
}

void HtmlRows::start(const HtmlToken &token)
{
    Table &table = m_tables.back();
    switch (token.element->role) {
    case HtmlRole::Table:
        m_rows[table.row].hasBlocks = true;
        m_tables.push_back({});
        break;
    case HtmlRole::Row: table.row = token.offset; break;
    case HtmlRole::Cell:
        table.row = table.row < 0 ? token.offset : table.row;
        ++m_rows[table.row].cells;
        table.cellIsShown = false;
        break;
    case HtmlRole::Picture:
        if (token.text.contains(QLatin1String("data:"), Qt::CaseInsensitive)) {
            show();
        }
        break;
    case HtmlRole::Skipped:
    case HtmlRole::Inline:
    case HtmlRole::Link: break;
    case HtmlRole::Block:
    case HtmlRole::Preformatted:
    case HtmlRole::List:
    case HtmlRole::Item:
    case HtmlRole::Break:
    case HtmlRole::Rule: m_rows[table.row].hasBlocks = true; break;
    }
}

void HtmlRows::end(HtmlRole role)
{
    if (role == HtmlRole::Row) {
        m_tables.back().row = -1;
    } else if (role == HtmlRole::Table && m_tables.size() > 1) {
        const bool isShown = m_tables.back().isShown;
        m_tables.pop_back();
        if (isShown) {
            show();
        }
    }
}

/// Something is to be seen in the open cell.
void HtmlRows::show()
{
    Table &table = m_tables.back();
    table.isShown = true;
    if (table.row >= 0 && !std::exchange(table.cellIsShown, true)) {
        ++m_rows[table.row].shownCells;
    }
}
