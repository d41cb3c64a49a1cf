#pragma once

#include "platform/NotebookPage.h"
#include "platform/Twips.h"

#include <QBoxLayout>

#include <initializer_list>

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
