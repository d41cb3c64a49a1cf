#pragma once

#include <QRectF>
#include <QWidget>

class QPainter;

/// Holds toolbars: side by side where its width allows, otherwise below each other.
/// Its height follows from its width (heightForWidth()).
class CoolBar : public QWidget
{
    Q_OBJECT

public:
    explicit CoolBar(QWidget *parent = nullptr);

    /// Takes \p band over. Bands stand in the order in which they were added.
    void addBand(QWidget *band);

protected:
    void paintEvent(QPaintEvent *event) override;
};

/// Paints a thin upright line in the middle of \p area.
void paintSeparator(QPainter &painter, const QRectF &area, const QPalette &palette);
