#include "platform/help/SearchResultFace.h"

#include <QApplication>
#include <QPainter>

namespace {

constexpr int margin = 4;
constexpr int passageLines = 2;

QFont titleFont(const QStyleOptionViewItem &option)
{
    QFont font = option.font;
    font.setBold(true);
    return font;
}

/// The text in as many lines as there may be, the last shortened.
QString shortened(const QString &text, const QFontMetrics &metrics, int width)
{
    QString kept = text;
    const int limit = passageLines * metrics.lineSpacing();
    while (!kept.isEmpty() &&
           metrics.boundingRect(QRect(0, 0, width, limit), Qt::TextWordWrap, kept).height() > limit) {
        kept = kept.left(kept.trimmed().lastIndexOf(QLatin1Char(' '))).trimmed();
        kept = kept.contains(QLatin1Char(' ')) ? kept + QStringLiteral("...") : QString();
    }
    return kept;
}

} // namespace

void SearchResultFace::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QString title = item.text;
    item.text.clear(); // the style draws the ground and the focus
    QStyle *style = item.widget != nullptr ? item.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);

    const bool selected = item.state.testFlag(QStyle::State_Selected);
    painter->save();
    painter->setPen(
        item.palette.color(item.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive,
                           selected ? QPalette::HighlightedText : QPalette::Text));
    QRect area = item.rect.adjusted(margin, margin, -margin, -margin);
    const QFontMetrics titleMetrics(titleFont(item));
    painter->setFont(titleFont(item));
    painter->drawText(area, Qt::AlignTop, titleMetrics.elidedText(title, Qt::ElideRight, area.width()));
    area.setTop(area.top() + titleMetrics.lineSpacing());
    painter->setFont(item.font);
    painter->drawText(area, Qt::AlignTop | Qt::TextWordWrap,
                      shortened(index.data(passage).toString(), QFontMetrics(item.font), area.width()));
    painter->restore();
}

QSize SearchResultFace::sizeHint(const QStyleOptionViewItem &option, const QModelIndex & /*index*/) const
{
    const int lines = QFontMetrics(titleFont(option)).lineSpacing() + passageLines * option.fontMetrics.lineSpacing();
    return {1, lines + 2 * margin}; // as wide as the list
}
