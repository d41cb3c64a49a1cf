#pragma once

#include <QStyledItemDelegate>

/// Draws a page that was found: its title, and below it the passage where the words stand.
class SearchResultFace final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // The title is the item's text.
    static constexpr int place = Qt::UserRole;       ///< the page's address
    static constexpr int passage = Qt::UserRole + 1; ///< plain text

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
