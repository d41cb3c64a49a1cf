#include "platform/ImageButton.h"

#include "platform/DevicePixels.h"
#include "platform/DrawingBands.h"

#include <QFile>
#include <QHash>
#include <QKeyEvent>
#include <QPainter>
#include <QSvgRenderer>

namespace {

constexpr int margin = 3;              // around the picture: room for the focus ring and for being pressed
constexpr double corner = 4;           // radius of the focus ring and of the ground
constexpr float checkedGround = 0.25F; // opacity

struct PictureKey
{
    QString name;
    int edge; ///< device pixels
    bool enabled;

    friend bool operator==(const PictureKey &, const PictureKey &) = default;
};

size_t qHash(const PictureKey &key, size_t seed = 0)
{
    return qHashMulti(seed, key.name, key.edge, key.enabled);
}

/// Greyed and fainter, on any paper.
void makeUnavailable(QImage &image)
{
    constexpr double opacity = 0.38;
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (QRgb *pixel = line; pixel != line + image.width(); ++pixel) {
            const int grey = qGray(*pixel); // premultiplied, like all below
            const auto faint = [](int value) { return qRound(value * opacity); };
            *pixel = qRgba(faint(grey), faint(grey), faint(grey), faint(qAlpha(*pixel)));
        }
    }
}

QImage drawPicture(const QString &name, int edge)
{
    const QString path = QStringLiteral(":/icons/%1.svg").arg(name);
    if (!QFile::exists(path)) {
        return {};
    }
    QSvgRenderer renderer(path);
    if (!renderer.isValid()) {
        return {};
    }

    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    drawInBands(painter, edge, [&] { renderer.render(&painter, QRectF(image.rect())); });
    return image;
}

/// Null if there is no such picture. To read one that was drawn before takes a fraction of drawing it.
QImage makePicture(const PictureKey &key)
{
    QImage image(QStringLiteral(":/pictures/%1/%2.png").arg(key.edge).arg(key.name));
    if (image.isNull()) {
        image = drawPicture(key.name, key.edge);
    }
    if (!image.isNull()) {
        image.convertTo(QImage::Format_ARGB32_Premultiplied);
    }
    if (!key.enabled) {
        makeUnavailable(image);
    }
    return image;
}

const QImage &pictureFor(const PictureKey &key)
{
    static QHash<PictureKey, QImage> pictures;
    const auto found = pictures.constFind(key);
    return *(found != pictures.constEnd() ? found : pictures.insert(key, makePicture(key)));
}

/// The line lies within \p area.
void drawRounded(QPainter &painter, const QRectF &area, const QPen &line, const QBrush &ground)
{
    const double inset = line.widthF() / 2;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(line);
    painter.setBrush(ground);
    painter.drawRoundedRect(onDevicePixels(painter, area).adjusted(inset, inset, -inset, -inset), corner, corner);
}

} // namespace

ImageButton::ImageButton(QWidget *parent)
    : QAbstractButton(parent)
{
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::UpArrowCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

ImageButton::~ImageButton() = default;

void ImageButton::setPicture(const QString &name)
{
    if (name != m_picture) {
        m_picture = name;
        update();
    }
}

void ImageButton::setHint(const QString &hint)
{
    setToolTip(hint);
    setAccessibleName(hint);
}

void ImageButton::setPictureSize(int edge)
{
    m_edge = edge;
    updateGeometry();
    update();
}

QSize ImageButton::sizeHint() const
{
    return {m_edge + 2 * margin, m_edge + 2 * margin};
}

void ImageButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (isChecked()) {
        QColor color = palette().color(QPalette::Highlight);
        const QPen pen(color, hairline(painter));
        color.setAlphaF(checkedGround);
        drawRounded(painter, rect(), pen, color);
    }
    const double scale = painter.deviceTransform().m11();
    const QImage &image = pictureFor({m_picture, qRound(m_edge * scale), isEnabled()});

    if (!image.isNull()) {
        const QPointF shift = isDown() ? QPointF(1, 1) : QPointF(0, 0);
        const QSizeF size = QSizeF(image.size()) / scale;
        const QPointF place = QRectF(rect()).center() - QPointF(size.width() / 2, size.height() / 2) + shift;
        painter.drawImage(onDevicePixels(painter, QRectF(place, size)), image);
    }
    if (hasFocus()) {
        drawRounded(painter, rect(), QPen(palette().color(QPalette::Highlight), 2 * hairline(painter)), Qt::NoBrush);
    }
}

void ImageButton::keyPressEvent(QKeyEvent *event)
{
    const bool ends = event->key() == Qt::Key_Escape && isDown();
    if (event->key() == Qt::Key_Space || ends) {
        QAbstractButton::keyPressEvent(event);
    } else {
        event->ignore();
    }
}
