#include "platform/NotebookPage.h"

#include "platform/DevicePixels.h"
#include "platform/DrawingBands.h"
#include "platform/PaperPalette.h"
#include "platform/Twips.h"

#include <QAccessibleWidget>
#include <QFont>
#include <QGuiApplication>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QtMath>

namespace {

struct Stroke
{
    QColor color;
    double width;  ///< share of the hole's size
    QPointF shift; ///< share of the hole's size
};

/// Paints in twips: straight lines on whole device pixels, round things smooth.
class PagePainter
{
public:
    explicit PagePainter(QWidget *page)
        : m_painter(page)
        , m_pixel(1.0 / toTwips(1))
        , m_size(page->size())
    {
    }

    void paper(const QColor &color) { m_painter.fillRect(QRectF({0, 0}, m_size), color); }
    void ruledLine(double top) { line({0, top * m_pixel, m_size.width(), 0}, PageRuling::lineColor()); }
    void marginLine(double left) { line({left * m_pixel, 0, 0, m_size.height()}, PageRuling::marginColor()); }
    void ringHole(const QRectF &twips);
    void spiralHole(const QRectF &twips);
    void spiralWire(const QRectF &twips);

private:
    [[nodiscard]] QRectF inPixels(const QRectF &twips) const
    {
        return {twips.topLeft() * m_pixel, twips.size() * m_pixel};
    }

    /// Gives \p place, which has no width or no height, a hairline's.
    void line(const QRectF &place, const QColor &color)
    {
        const QRectF crisp = onDevicePixels(m_painter, place);
        const double width = hairline(m_painter);
        m_painter.setRenderHint(QPainter::Antialiasing, false);
        m_painter.fillRect(QRectF(crisp.topLeft(), crisp.size().expandedTo({width, width})), color);
    }

    QPainter m_painter;
    double m_pixel; ///< per twip
    QSizeF m_size;  ///< in pixels
};

void drawRingHole(QPainter &painter, const QRectF &hole)
{
    painter.setRenderHint(QPainter::Antialiasing);

    // The paper's edge catches the light from above on the far side.
    painter.setPen(QPen(QColor(255, 255, 255, 110), 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(hole.translated(0.5, 1.0));

    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x6f, 0x5a, 0x46)); // the desk
    painter.drawEllipse(hole);

    // The paper's shadow on the desk.
    QRadialGradient shadow(hole.center() + QPointF(hole.width() * 0.12, hole.height() * 0.20), hole.width() * 0.66);
    shadow.setColorAt(0.00, QColor(0, 0, 0, 0));
    shadow.setColorAt(0.55, QColor(0, 0, 0, 40));
    shadow.setColorAt(0.80, QColor(0, 0, 0, 130));
    shadow.setColorAt(1.00, QColor(0, 0, 0, 190));
    painter.setBrush(shadow);
    painter.setPen(QPen(Qt::black, 1));
    painter.drawEllipse(hole);
}

/// A punched hole. Smooth round things take long: each scale gets one image for all holes.
QImage imageOfRingHole(double size, double scale)
{
    const int edge = qCeil((size + 2) * scale); // the light falls beside it
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.scale(scale, scale);
    drawInBands(painter, edge, [&] { drawRingHole(painter, QRectF(0.5, 0.5, size - 1, size - 1)); });
    return image;
}

void PagePainter::ringHole(const QRectF &twips)
{
    static QHash<int, QImage> images; // by their edge in device pixels
    const QRectF place = inPixels(twips);
    const double scale = m_painter.deviceTransform().m11();
    QImage &image = images[qRound(place.width() * scale)];
    if (image.isNull()) {
        image = imageOfRingHole(place.width(), scale);
    }
    const QRectF area(place.topLeft(), QSizeF(image.size()) / scale);
    m_painter.drawImage(onDevicePixels(m_painter, area), image);
}

void PagePainter::spiralHole(const QRectF &twips)
{
    const QRectF hole = inPixels(twips);
    m_painter.setRenderHint(QPainter::Antialiasing);
    m_painter.setPen(QPen(QColor(255, 255, 255, 110), 1));
    m_painter.setBrush(Qt::NoBrush);
    m_painter.drawEllipse(hole.adjusted(0, 0, 0, 1));
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(Qt::black);
    m_painter.drawEllipse(hole);
}

void PagePainter::spiralWire(const QRectF &twips)
{
    static const Stroke strokes[] = {
        {QColor(0, 0, 0, 55), 0.46, {0.02, 0.20}},     // shadow on the paper
        {QColor(0x3e, 0x42, 0x49), 0.42, {0, 0}},      // the wire's rim
        {QColor(0x9b, 0xa2, 0xac), 0.28, {0, -0.02}},  // its body
        {QColor(0xf4, 0xf6, 0xf9), 0.10, {0, -0.075}}, // the light on it
    };
    const QRectF hole = inPixels(twips);
    const double size = hole.width();

    // Up out of the hole, over the paper, and around the page's edge.
    QPainterPath wire(hole.center() + QPointF(size * 0.08, size * 0.05));
    wire.cubicTo(hole.center() + QPointF(-size * 0.25, -size * 0.55),
                 QPointF(hole.left() * 0.55, hole.top() - size * 0.16), QPointF(-size * 0.4, hole.top() + size * 0.12));
    for (const Stroke &stroke : strokes) {
        QPen pen(stroke.color, stroke.width * size);
        pen.setCapStyle(Qt::RoundCap);
        m_painter.setBrush(Qt::NoBrush);
        m_painter.setPen(pen);
        m_painter.drawPath(wire.translated(stroke.shift * size));
    }
}

/// A page is a window to assistive technology, as dialogs are.
QAccessibleInterface *accessOf(const QString &, QObject *object)
{
    auto *page = qobject_cast<NotebookPage *>(object);
    return page != nullptr ? new QAccessibleWidget(page, QAccessible::Window) : nullptr;
}

} // namespace

NotebookPage::NotebookPage(const PageRuling &ruling, QWidget *parent)
    : QWidget(parent, Qt::Window)
    , m_ruling(ruling)
{
    QAccessible::installFactory(accessOf);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFont(notebookFont(10));
    setPaperColor(m_paper);
}

void NotebookPage::setPaperColor(const QColor &color)
{
    m_paper = color;
    setPalette(paperPalette(color));
    update();
}

void NotebookPage::setRuling(const PageRuling &ruling)
{
    m_ruling = ruling;
    update();
}

void NotebookPage::paintEvent(QPaintEvent *)
{
    const double pageHeight = toTwips(height());
    const QVector<QRectF> holes = holePlaces(m_ruling, pageHeight);

    PagePainter page(this);
    page.paper(m_paper);
    for (int i = 0; i < countRuledLines(m_ruling.firstLine, pageHeight); ++i) {
        page.ruledLine(m_ruling.firstLine + PageRuling::lineSpacing * i);
    }
    if (m_ruling.marginLine) {
        page.marginLine(PageRuling::marginAt);
    }
    for (const QRectF &hole : holes) {
        if (m_ruling.binding == PageRuling::Binding::ThreeHoles) {
            page.ringHole(hole);
        } else {
            page.spiralHole(hole);
            page.spiralWire(hole);
        }
    }
}

QFont notebookFont(double points)
{
    static const QString family = [] {
        QString wanted = QStringLiteral("Comic Sans MS");
        QFont::insertSubstitutions(wanted, {QStringLiteral("Comic Neue"), QGuiApplication::font().family()});
        return wanted;
    }();
    QFont font(family);
    font.setPointSizeF(points);
    return font;
}
