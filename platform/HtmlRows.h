#pragma once

#include "platform/HtmlTokens.h"

#include <QHash>

#include <vector>

/// Which rows of tables are lines. Looks through all of them in advance, for the first cell of a
/// row has to be known as one of several.
class HtmlRows
{
public:
    explicit HtmlRows(QStringView html);

    /// Whether the row that begins with the tag at \p offset is to be one line.
    [[nodiscard]] bool isLine(qsizetype offset) const { return m_rows.value(offset).isLine(); }

private:
    struct Row
    {
        int cells = 0;
        int shownCells = 0; ///< those that are not blank
        bool hasBlocks = false;

        /// Many tables only arrange a page: rows of one cell, or of one among empty ones.
        [[nodiscard]] bool isLine() const { return cells > 1 && (shownCells > 1 || !hasBlocks); }
    };

    struct Table
    {
        qsizetype row = -1; ///< the open one's offset
        bool isShown = false;
        bool cellIsShown = false;
    };

    void start(const HtmlToken &token);
    void end(HtmlRole role);
    void show();

    std::vector<Table> m_tables{Table{}}; ///< the open ones, below them the page
    QHash<qsizetype, Row> m_rows;
};
