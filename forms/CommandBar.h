#pragma once

#include "platform/NotebookPage.h"
#include "platform/Twips.h"

#include <QBoxLayout>

#include <cstddef>
#include <initializer_list>
#include <vector>

/// Adds the \p buttons with the indexes of \p group to \p row, with a gap behind them, and to \p inTabOrder.
template <class Buttons, class Group>
void addCommands(QBoxLayout &row, const Buttons &buttons, const Group &group, std::vector<QWidget *> &inTabOrder)
{
    for (const std::size_t command : group) {
        row.addWidget(buttons.at(command));
        inTabOrder.push_back(buttons.at(command));
    }
    row.addSpacing(toPixels(240));
}

/// Puts \p rows (buttons above, captions below) into a bar that reaches from the
/// top of \p page down to its first ruled line. The page owns it.
[[nodiscard]] inline QWidget *makeCommandBar(NotebookPage *page, std::initializer_list<QLayout *> rows)
{
    auto *bar = new QWidget(page);
    auto *column = new QVBoxLayout(bar);
    column->setContentsMargins(0, toPixels(60), 0, 0);
    column->setSpacing(0);
    for (QLayout *row : rows) {
        column->addLayout(row);
    }
    bar->setFixedHeight(toPixels(page->ruling().firstLine));
    return bar;
}
