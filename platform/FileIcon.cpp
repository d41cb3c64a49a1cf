#include "platform/FileIcon.h"

#include <QApplication>
#include <QBuffer>
#include <QFontMetricsF>
#include <QIcon>
#include <QImage>
#include <QMimeDatabase>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace {

// All in document units, 96 to the inch.
constexpr int twipsPerUnit = 15;
constexpr int iconSide = 32;
constexpr int gap = 3;
constexpr int letterHeight = 12;
constexpr int widestName = 130;
constexpr int paddingX = 4;
constexpr int paddingY = 1;
constexpr double corner = 3;

constexpr int pixelsPerUnit = 2;

// Readable by itself: nobody knows the colour of the paper below.
constexpr QRgb labelColor = 0xfffbfbf8;
constexpr QRgb labelEdge = 0xff8a8a8a;
constexpr QRgb nameColor = 0xff202020;

QPixmap picked(const QIcon &icon)
{
    constexpr QSize pixels(iconSide * pixelsPerUnit, iconSide * pixelsPerUnit);
    return icon.pixmap(pixels, 1.0);
}

QPixmap iconFor(const QString &name, const QByteArray &data)
{
    const QMimeType kind = QMimeDatabase().mimeTypeForFileNameAndData(name, data);
    for (const QString &themed : {kind.iconName(), kind.genericIconName()}) {
        if (QPixmap icon = picked(QIcon::fromTheme(themed)); !icon.isNull()) {
            return icon;
        }
    }
    return picked(QApplication::style()->standardIcon(QStyle::SP_FileIcon));
}

QFont nameFont()
{
    QFont font = QApplication::font();
    font.setPixelSize(letterHeight);
    font.setBold(false);
    font.setItalic(false);
    return font;
}

void drawIcon(QPainter &painter, const QPixmap &icon, const QRect &place)
{
    if (!icon.isNull()) {
        QRect drawn(QPoint(), icon.size().scaled(place.size(), Qt::KeepAspectRatio));
        drawn.moveCenter(place.center());
        painter.drawPixmap(drawn, icon);
    }
}

void drawLabel(QPainter &painter, const QString &name, const QRect &place)
{
    painter.setPen(QPen(QColor::fromRgb(labelEdge), 1));
    painter.setBrush(QColor::fromRgb(labelColor));
    painter.drawRoundedRect(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);
    painter.setPen(QColor::fromRgb(nameColor));
    painter.drawText(place, Qt::AlignCenter | Qt::TextSingleLine, name);
}

QByteArray pngOf(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return bytes;
}

} // namespace

FileIcon iconOfFile(const QString &name, const QByteArray &data)
{
    const QFont font = nameFont();
    const QFontMetricsF metrics(font);
    const QString shown = metrics.elidedText(name, Qt::ElideMiddle, widestName);
    const QSize label(static_cast<int>(std::ceil(metrics.horizontalAdvance(shown))) + 2 * paddingX,
                      static_cast<int>(std::ceil(metrics.height())) + 2 * paddingY);
    const QSize units(std::max(label.width(), iconSide), iconSide + gap + label.height());

    QImage image(units * pixelsPerUnit, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(pixelsPerUnit);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
    painter.setFont(font);
    drawIcon(painter, iconFor(name, data), QRect((units.width() - iconSide) / 2, 0, iconSide, iconSide));
    drawLabel(painter, shown, QRect(QPoint((units.width() - label.width()) / 2, iconSide + gap), label));
    painter.end();
    return {pngOf(image), image.size(), units * twipsPerUnit};
}
