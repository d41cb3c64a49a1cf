#pragma once

#include "platform/NotebookPage.h"
#include "platform/Twips.h"
#include "txtEdit/EditTools.h"

#include <QBoxLayout>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <iterator>
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

/// Adds the \p texts with their \p tools to \p inTabOrder. In a text Tab is a letter, and a key of its own
/// leads to the font box: from there Tab goes on to the rest of the window, and comes to the texts last.
inline void addTextInTabOrder(std::vector<QWidget *> &inTabOrder, const EditTools &tools,
                              std::initializer_list<QWidget *> texts)
{
    const auto add = [&inTabOrder](const QWidget &band) {
        const QList<QWidget *> controls = band.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
        std::ranges::copy_if(controls, std::back_inserter(inTabOrder),
                             [](const QWidget *control) { return control->focusPolicy() != Qt::NoFocus; });
    };
    add(tools.editBand());
    inTabOrder.insert(inTabOrder.end(), texts);
    add(tools.formatBand());
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
