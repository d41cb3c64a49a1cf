#include "platform/help/HelpPictures.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QBuffer>
#include <QFontInfo>
#include <QImageReader>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextList>
#include <QUrl>

namespace {

constexpr double referenceDpi = 96; // a natural pixel is 1/96 inch

double points(const QFont &font)
{
    return font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF();
}

/// How large the document's letters are, to the program's.
double letterScale(const QTextDocument &document)
{
    return points(document.defaultFont()) / points(QApplication::font());
}

double deviceScale(const QTextDocument &document)
{
    const QPaintDevice *device = document.documentLayout()->paintDevice();
    return device != nullptr ? device->logicalDpiX() / referenceDpi : 1;
}

/// What the page leaves for a picture at \p position.
QSizeF room(const QTextDocument &document, int position)
{
    const QTextFrameFormat page = document.rootFrame()->frameFormat();
    const QTextBlock block = document.findBlock(position);
    double width = document.textWidth() - page.leftMargin() - page.rightMargin() - block.blockFormat().leftMargin() -
                   block.blockFormat().rightMargin();
    if (const QTextList *list = block.textList()) {
        width -= list->format().indent() * document.indentWidth();
    }
    const double height = document.pageSize().height() - page.topMargin() - page.bottomMargin();
    constexpr double unlimited = 1e6;
    return {std::max(1.0, width), document.pageSize().height() > 0 ? std::max(1.0, height) : unlimited};
}

QPixmap atSize(const QByteArray &bytes, const QSize &natural, const QSize &wanted)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    const bool drawing = reader.format().startsWith("svg");
    if (drawing) {
        reader.setScaledSize(wanted);
    }
    const QImage image = reader.read();
    // A larger picture has no more to show; the painter enlarges it as well.
    const bool shrink = !drawing && wanted.width() < natural.width();
    return QPixmap::fromImage(shrink ? image.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation) : image);
}

} // namespace

HelpPictures::HelpPictures(Read read, QObject *parent)
    : QObject(parent)
    , m_read(std::move(read))
{
}

HelpPictures::Picture &HelpPictures::picture(const QTextFormat &format)
{
    const QString name = format.toImageFormat().name();
    const auto known = m_pictures.find(name);
    if (known != m_pictures.end()) {
        return *known;
    }
    Picture made;
    made.bytes = m_read(QUrl(name));
    QBuffer buffer(&made.bytes);
    made.natural = QImageReader(&buffer).size();
    return *m_pictures.insert(name, made);
}

QSizeF HelpPictures::intrinsicSize(QTextDocument *document, int position, const QTextFormat &format)
{
    QSizeF size = picture(format).natural;
    if (size.isEmpty()) {
        return {};
    }
    const QTextImageFormat wanted = format.toImageFormat();
    if (wanted.hasProperty(QTextFormat::ImageWidth)) {
        size *= wanted.width() / size.width();
    } else if (wanted.hasProperty(QTextFormat::ImageHeight)) {
        size *= wanted.height() / size.height();
    }
    size *= letterScale(*document) * deviceScale(*document);
    const QSizeF limit = room(*document, position);
    return size * std::min({1.0, limit.width() / size.width(), limit.height() / size.height()});
}

void HelpPictures::drawObject(QPainter *painter, const QRectF &area, QTextDocument * /*document*/, int /*position*/,
                              const QTextFormat &format)
{
    Picture &shown = picture(format);
    const QSize wanted = painter->deviceTransform().mapRect(area).size().toSize();
    if (shown.natural.isEmpty() || wanted.isEmpty()) {
        return;
    }
    const QSize drawn = wanted.boundedTo(shown.natural);
    if (shown.drawn.size() != wanted && shown.drawn.size() != drawn) {
        shown.drawn = atSize(shown.bytes, shown.natural, wanted);
    }
    painter->save();
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawPixmap(area, shown.drawn, QRectF(shown.drawn.rect()));
    painter->restore();
}
