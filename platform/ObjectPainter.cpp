#include "platform/ObjectPainter.h"

#include "platform/DevicePixels.h"
#include "platform/ObjectOpener.h"
#include "platform/rtf/OleObject.h"
#include "platform/rtf/RtfFormats.h"
#include "platform/rtf/RtfObject.h"
#include "platform/rtf/RtfObjectFormat.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QFontMetricsF>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextList>

#include <algorithm>
#include <cmath>

namespace {

constexpr int bytesPerPixel = 4;
constexpr int longestCaption = 200;

constexpr double narrowestRoom = 16; ///< in the device's units

// Of frames, all in document units.
constexpr double smallestFrame = 4;
constexpr double padding = 4;
constexpr double narrowestCaption = 36;
constexpr double smallestWithGlyph = 32;
constexpr QSizeF glyphSize(16, 20);

constexpr double captionPoints = 9;
constexpr float fillStrength = 0.06F; ///< of the ink on the paper

/// How wide an object of the paragraph around \p position can be without reaching over the page's edge.
double roomAt(const QTextDocument &document, int position, double pageWidth, double scale)
{
    const QTextBlock block = document.findBlock(position);
    const QTextBlockFormat paragraph = block.blockFormat();
    const QTextList *list = block.textList();
    const int steps = paragraph.indent() + (list != nullptr ? list->format().indent() : 0);
    const double indents = paragraph.leftMargin() + paragraph.rightMargin() + std::max(0.0, paragraph.textIndent()) +
                           steps * document.indentWidth() * scale;
    return std::max(narrowestRoom, std::floor(pageWidth - 2 * document.documentMargin() * scale - indents));
}

/// \p area moved to the nearest device pixel. Its size in device pixels does not depend on where it is.
QRectF onWholePixels(const QPainter &painter, const QRectF &area)
{
    const QTransform &device = painter.deviceTransform();
    const QRectF mapped = device.mapRect(area);
    return device.inverted().mapRect(QRectF(mapped.topLeft().toPoint(), mapped.size().toSize()));
}

/// \p pixels, or as much of it as fits in the budget in the same proportion.
QSize affordable(QSize pixels)
{
    const double share = ObjectPainter::budget / 2.0 / bytesPerPixel / pixels.width() / pixels.height();
    return share >= 1 ? pixels : (pixels.toSizeF() * std::sqrt(share)).toSize().expandedTo({1, 1});
}

/// The picture, in its own size or in \p pixels where that is less; null if it cannot be read.
QImage decoded(const QByteArray &file, QSize pixels)
{
    QBuffer buffer;
    buffer.setData(file);
    QImageReader reader(&buffer);
    // A bitmap whose rows run from the top has a negative height.
    const QSize size(reader.size().width(), std::abs(reader.size().height()));
    if (const QSize wanted = size.boundedTo(pixels); wanted != size) {
        reader.setScaledSize(wanted);
    }
    QImage picture = reader.read();
    picture.convertTo(picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    return picture;
}

QString pictureTitle(const QString &kind)
{
    const QString picture = QStringLiteral("Picture");
    return kind.compare(picture, Qt::CaseInsensitive) == 0 ? picture : picture + QStringLiteral(" (%1)").arg(kind);
}

QString objectKind(const QString &className)
{
    if (className.isEmpty()) {
        return QStringLiteral("Object");
    }
    const auto package = QLatin1String(packageClassName.data(), packageClassName.size());
    return className == package ? QStringLiteral("File") : className;
}

QString oneLine(const QString &text)
{
    return text.left(longestCaption).simplified();
}

/// A sheet of paper with a folded corner and some lines on it.
void drawGlyph(QPainter &painter, const QRectF &place, const QColor &ink, const QColor &paper)
{
    const double line = hairline(painter);
    const QRectF sheet = onWholePixels(painter, place).adjusted(line / 2, line / 2, -line / 2, -line / 2);
    const double fold = std::round(sheet.width() / 3);
    const QPointF corner(sheet.right() - fold, sheet.top() + fold);

    QPainterPath outline(sheet.topLeft());
    outline.lineTo(corner.x(), sheet.top());
    outline.lineTo(sheet.right(), corner.y());
    outline.lineTo(sheet.bottomRight());
    outline.lineTo(sheet.bottomLeft());
    outline.closeSubpath();
    outline.moveTo(corner.x(), sheet.top());
    outline.lineTo(corner);
    outline.lineTo(sheet.right(), corner.y());

    QPen pen(ink, line);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen);
    painter.setBrush(paper);
    painter.drawPath(outline);

    painter.setRenderHint(QPainter::Antialiasing, false);
    for (double top = corner.y() + 3; top < sheet.bottom() - 2; top += 3) {
        const QRectF written(sheet.left() + 3, top, sheet.width() - 6, line);
        painter.fillRect(onWholePixels(painter, written), ink);
    }
}

void drawEdges(QPainter &painter, const QRectF &rect, const QColor &color)
{
    const double line = hairline(painter);
    painter.fillRect(QRectF(rect.left(), rect.top(), rect.width(), line), color);
    painter.fillRect(QRectF(rect.left(), rect.bottom() - line, rect.width(), line), color);
    painter.fillRect(QRectF(rect.left(), rect.top() + line, line, rect.height() - 2 * line), color);
    painter.fillRect(QRectF(rect.right() - line, rect.top() + line, line, rect.height() - 2 * line), color);
}

} // namespace

ObjectPainter::ObjectPainter(QTextEdit &box)
    : QObject(&box)
    , m_box(box)
{
    box.document()->documentLayout()->registerHandler(rtfObjectType, this);
}

QSizeF ObjectPainter::intrinsicSize(QTextDocument *document, int position, const QTextFormat &format)
{
    const QSize twips = objectSizeOf(format);
    const RtfUnits units(*document);
    const QSizeF size(units.deviceFromTwips(twips.width()), units.deviceFromTwips(twips.height()));

    // The box keeps the page as wide as its viewport, and lays the text out again when it changes.
    const double page = document->pageSize().width();
    const double room = roomAt(*document, position, page > 0 ? page : m_box.viewport()->width(), units.scale());
    return size.width() <= room ? size : size * (room / size.width());
}

void ObjectPainter::drawObject(QPainter *painter, const QRectF &rect, QTextDocument *document, int position,
                               const QTextFormat &format)
{
    const QRectF place = onWholePixels(*painter, rect);
    const QSize pixels = painter->deviceTransform().mapRect(place).size().toSize();
    if (pixels.isEmpty()) {
        return;
    }

    const Key key{objectSourceOf(format), format.intProperty(RtfObjectKey), pixels};
    if (!m_kept.contains(key)) {
        auto *look = new Look(lookOf(key.source, pixels));
        m_kept.insert(key, look, std::min(look->picture.sizeInBytes() + key.source.size(), budget));
    }
    const Look &look = *m_kept.object(key);

    painter->save();
    const QTextCursor selection = m_box.textCursor();
    if (position >= selection.selectionStart() && position < selection.selectionEnd()) {
        // The text draws the selection under and over the object: both would be too much.
        painter->fillRect(place, m_box.palette().color(QPalette::Base));
    }
    if (look.picture.isNull()) {
        const double scale = RtfUnits(*document).scale();
        painter->translate(place.topLeft());
        painter->scale(scale, scale);
        drawFrame(*painter, {QPointF(), place.size() / scale}, look);
    } else {
        painter->setRenderHint(QPainter::SmoothPixmapTransform, look.picture.size() != pixels);
        painter->drawImage(place, look.picture);
    }
    painter->restore();
}

bool ObjectPainter::Key::operator==(const Key &other) const
{
    const bool isSameMemory = source.constData() == other.source.constData() && source.size() == other.source.size();
    return hash == other.hash && pixels == other.pixels && (isSameMemory || source == other.source);
}

ObjectPainter::Look ObjectPainter::lookOf(const QByteArray &source, QSize pixels)
{
    const RtfObject object = readRtfObject({source.constData(), static_cast<std::size_t>(source.size())});
    Look look;
    if (!object.image.isEmpty()) {
        look.picture = decoded(object.image, affordable(pixels));
    }
    if (!look.picture.isNull()) {
        return look;
    }

    if (object.isPicture) {
        look.title = pictureTitle(object.kind);
        return look;
    }
    look.kind = oneLine(objectKind(object.kind));
    look.title = object.name.isEmpty() ? oneLine(object.text) : fileNameOf(source);
    if (look.title.isEmpty()) {
        std::swap(look.title, look.kind);
    }
    return look;
}

void ObjectPainter::drawFrame(QPainter &painter, const QRectF &rect, const Look &look) const
{
    const double smaller = std::min(rect.width(), rect.height());
    if (smaller < smallestFrame) {
        return;
    }
    const QPalette palette = m_box.palette();
    const QColor ink = palette.color(QPalette::Text);
    const QColor faint = palette.color(QPalette::PlaceholderText);
    QColor fill = ink;
    fill.setAlphaF(fillStrength);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(rect, fill);
    drawEdges(painter, rect, faint);

    QFont font = m_box.font();
    font.setPointSizeF(captionPoints);
    const QFontMetricsF metrics(font, painter.device());
    const QRectF inside = rect.adjusted(padding, padding, -padding, -padding);

    // The title matters most, then the kind, then the glyph.
    const bool hasTitle = inside.width() >= narrowestCaption && inside.height() >= metrics.height();
    const bool hasKind = hasTitle && !look.kind.isEmpty() && inside.height() >= 2 * metrics.height();
    const double words = (hasTitle + hasKind) * metrics.height();
    const double gap = hasTitle ? padding : 0;
    const bool hasGlyph = smaller >= smallestWithGlyph && inside.height() >= words + gap + glyphSize.height();

    double top = inside.center().y() - (words + (hasGlyph ? gap + glyphSize.height() : 0)) / 2;
    if (hasGlyph) {
        const QPointF corner(inside.center().x() - glyphSize.width() / 2, top);
        drawGlyph(painter, {corner, glyphSize}, faint, palette.color(QPalette::Base));
        top += glyphSize.height() + gap;
    }
    painter.setFont(font);
    const auto write = [&](const QString &text, const QColor &color) {
        const QRectF line(inside.left(), top, inside.width(), metrics.height());
        painter.setPen(color);
        painter.drawText(line, Qt::AlignCenter | Qt::TextSingleLine,
                         metrics.elidedText(text, Qt::ElideMiddle, inside.width()));
        top += metrics.height();
    };
    if (hasTitle) {
        write(look.title, ink);
    }
    if (hasKind) {
        write(look.kind, faint);
    }
}
