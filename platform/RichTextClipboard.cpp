#include "platform/RichTextClipboard.h"

#include "platform/PastedHtml.h"
#include "platform/PastedPicture.h"
#include "platform/rtf/RtfFormats.h"
#include "platform/rtf/RtfObject.h"
#include "platform/rtf/RtfObjectFormat.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfWriter.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QMimeData>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextList>
#include <QUrl>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

constexpr double twipsPerUnit = 15;

const QStringList &offeredRtfFormats()
{
    static const QStringList formats{QStringLiteral("text/rtf"), QStringLiteral("application/rtf")};
    return formats;
}

/// What RTF is called, the forms that we offer first.
const QStringList &rtfFormats()
{
    static const QStringList formats =
        offeredRtfFormats() + QStringList{QStringLiteral("text/richtext"),
                                          QStringLiteral("application/x-qt-windows-mime;value=\"Rich Text Format\"")};
    return formats;
}

QString htmlFormat()
{
    return QStringLiteral("text/html");
}

QString textFormat()
{
    return QStringLiteral("text/plain");
}

bool isPictureFormat(const QString &format)
{
    return format.startsWith(QLatin1String("image/"));
}

/// Characters of a document as plain text has them.
QString plainText(const QTextCursor &selection)
{
    QString text = selection.selectedText();
    text.remove(QChar::ObjectReplacementCharacter);
    for (QChar &c : text) {
        if (c == QChar::ParagraphSeparator || c == QChar::LineSeparator || c == QChar(0xfdd0) || c == QChar(0xfdd1)) {
            c = QLatin1Char('\n');
        }
    }
    return text;
}

QString plainText(const std::string &rtf)
{
    QTextDocument document;
    readRtf(rtf, document);
    QTextCursor all(&document);
    all.select(QTextCursor::Document);
    return plainText(all);
}

struct Place
{
    int position = 0;
    QTextCharFormat format;
};

/// The pictures and objects of \p document, each as often as it stands there.
std::vector<Place> objectsOf(const QTextDocument &document)
{
    std::vector<Place> places;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto run = block.begin(); !run.atEnd(); ++run) {
            const QTextFragment fragment = run.fragment();
            if (fragment.charFormat().objectType() == rtfObjectType) {
                for (int i = 0; i < fragment.length(); ++i) {
                    places.push_back({fragment.position() + i, fragment.charFormat()});
                }
            }
        }
    }
    return places;
}

/// A data: URL of \p image, in a format that every browser shows; empty if it cannot
/// be decoded.
QString dataUrl(const QByteArray &image)
{
    QByteArray bytes = image;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const QByteArray format = reader.canRead() ? reader.format() : QByteArray();
    const QSize size = reader.size();
    if (format.isEmpty() || qint64{size.width()} * size.height() > maxPicturePixels) {
        return {};
    }
    if (format == "jpeg" || format == "png") {
        return QStringLiteral("data:image/%1;base64,%2")
            .arg(QString::fromLatin1(format), QString::fromLatin1(image.toBase64()));
    }
    QByteArray png;
    QBuffer out(&png);
    out.open(QIODevice::WriteOnly);
    if (!reader.read().save(&out, "png")) {
        return {};
    }
    return QStringLiteral("data:image/png;base64,") + QString::fromLatin1(png.toBase64());
}

/// Puts what HTML has for it in the place of a picture or object.
void replaceObject(QTextDocument &document, const Place &place)
{
    const QByteArray source = objectSourceOf(place.format);
    const RtfObject object = readRtfObject({source.constData(), static_cast<std::size_t>(source.size())});
    QTextCursor cursor(&document);
    cursor.setPosition(place.position);
    cursor.setPosition(place.position + 1, QTextCursor::KeepAnchor);
    if (const QString url = dataUrl(object.image); !url.isEmpty()) {
        QTextImageFormat image;
        image.setName(url);
        image.setWidth(object.size.width() / twipsPerUnit);
        image.setHeight(object.size.height() / twipsPerUnit);
        cursor.insertText(QString(QChar::ObjectReplacementCharacter), image);
        return;
    }
    QTextCharFormat words = place.format;
    for (const int property : {QTextFormat::ObjectType + 0, RtfObjectSource + 0, RtfObjectSize + 0, RtfObjectKey + 0}) {
        words.clearProperty(property);
    }
    for (const QString &text : {object.text, object.name, object.kind}) {
        if (!text.isEmpty()) {
            cursor.insertText(text, words);
            return;
        }
    }
    cursor.removeSelectedText();
}

/// Lists whose numbers a text box paints are numbered by the document again.
void numberLists(const QTextDocument &document)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        QTextList *list = block.textList();
        if (list == nullptr || !list->format().hasProperty(RtfListStyleShown)) {
            continue;
        }
        QTextListFormat format = list->format();
        format.setStyle(static_cast<QTextListFormat::Style>(format.intProperty(RtfListStyleShown)));
        format.clearProperty(RtfListStyleShown);
        list->setFormat(format);
    }
}

QString htmlOf(const std::string &rtf)
{
    QTextDocument document;
    document.setUndoRedoEnabled(false);
    QTextCursor all(&document);
    insertRtf(rtf, all);
    std::vector<Place> objects = objectsOf(document);
    std::ranges::reverse(objects); // so that the places before stay as they are
    for (const Place &object : objects) {
        replaceObject(document, object);
    }
    numberLists(document);
    all.select(QTextCursor::Document);
    return QTextDocumentFragment(all).toHtml();
}

/// The RTF is written when the text is copied; HTML is made of it when a program asks.
class CopiedText final : public QMimeData
{
public:
    explicit CopiedText(const QTextCursor &selection)
        : m_rtf(writeRtf(selection))
        , m_text(plainText(selection))
    {
    }

    [[nodiscard]] QStringList formats() const override
    {
        return offeredRtfFormats() + QStringList{htmlFormat(), textFormat()};
    }
    [[nodiscard]] bool hasFormat(const QString &format) const override { return formats().contains(format); }

protected:
    [[nodiscard]] QVariant retrieveData(const QString &format, QMetaType type) const override
    {
        if (offeredRtfFormats().contains(format)) {
            return QByteArray::fromStdString(m_rtf);
        }
        if (format == htmlFormat()) {
            return htmlOf(m_rtf);
        }
        return format == textFormat() ? QVariant(m_text) : QMimeData::retrieveData(format, type);
    }

private:
    const std::string m_rtf;
    const QString m_text;
};

QByteArray pictureIn(const QMimeData &data, QSize limit)
{
    const QStringList formats = data.formats();
    for (const QString &format : formats) {
        if (isPictureFormat(format)) {
            if (QByteArray source = sourceOfPictureFile(data.data(format), limit); !source.isEmpty()) {
                return source;
            }
        }
    }
    return data.hasImage() ? sourceOfImage(qvariant_cast<QImage>(data.imageData()), limit) : QByteArray();
}

/// The bytes of a local file of a reasonable size; empty for anything else.
QByteArray bytesOf(const QUrl &url)
{
    const QString path = url.isLocalFile() ? url.toLocalFile() : QString();
    if (path.isEmpty() || !QFileInfo(path).isFile()) { // a pipe or a device could keep us for ever
        return {};
    }
    QFile file(path);
    if (file.size() > maxPictureFile || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return file.read(maxPictureFile);
}

QList<QByteArray> picturesIn(const QMimeData &data, QSize limit)
{
    if (QByteArray source = pictureIn(data, limit); !source.isEmpty()) {
        return {source};
    }
    QList<QByteArray> sources;
    const QList<QUrl> urls = data.urls();
    for (const QUrl &url : urls) {
        if (QByteArray source = sourceOfPictureFile(bytesOf(url), limit); !source.isEmpty()) {
            sources.append(source);
        }
    }
    return sources;
}

/// One line with all \p pictures.
std::string rtfOf(const QList<QByteArray> &pictures, const QFont &font)
{
    QTextDocument document;
    document.setDefaultFont(font);
    document.setUndoRedoEnabled(false);
    QTextCursor cursor(&document);
    for (const QByteArray &picture : pictures) {
        if (cursor.position() > 0) {
            cursor.insertText(QStringLiteral(" "), QTextCharFormat());
        }
        insertObject(cursor, picture);
    }
    cursor.select(QTextCursor::Document);
    return writeRtf(cursor);
}

} // namespace

std::unique_ptr<QMimeData> clipboardOf(const QTextCursor &selection)
{
    if (!selection.hasSelection()) {
        return std::make_unique<QMimeData>();
    }
    return std::make_unique<CopiedText>(selection);
}

std::unique_ptr<QMimeData> rtfClipboardOf(const QTextCursor &selection)
{
    auto data = std::make_unique<QMimeData>();
    const QByteArray rtf = QByteArray::fromStdString(writeRtf(selection));
    for (const QString &format : offeredRtfFormats()) {
        data->setData(format, rtf);
    }
    return data;
}

bool holdsRtf(const QMimeData &data)
{
    return std::ranges::any_of(rtfFormats(), [&data](const QString &format) { return data.hasFormat(format); });
}

std::string rtfIn(const QMimeData &data)
{
    for (const QString &format : rtfFormats()) {
        if (data.hasFormat(format)) {
            const QByteArray bytes = data.data(format);
            if (bytes.trimmed().startsWith("{\\rtf")) {
                return bytes.toStdString();
            }
        }
    }
    return {};
}

bool canPaste(const QMimeData &data)
{
    const QStringList formats = data.formats();
    return data.hasText() || data.hasHtml() || data.hasImage() || data.hasUrls() || holdsRtf(data) ||
           std::ranges::any_of(formats, isPictureFormat);
}

std::optional<std::string> rtfToPaste(const QMimeData &data, const PasteTarget &target)
{
    if (const std::string rtf = rtfIn(data); !rtf.empty()) {
        return withReadableColors(rtf, target.paper);
    }
    if (data.hasHtml()) {
        if (std::string rtf = rtfOfHtml(data.html(), target.paper, target.screen, target.font); !rtf.empty()) {
            return rtf;
        }
    }
    const QList<QByteArray> pictures = picturesIn(data, target.screen);
    return pictures.isEmpty() ? std::nullopt : std::optional(rtfOf(pictures, target.font));
}

QString textToPaste(const QMimeData &data)
{
    QString text = data.hasText() ? data.text() : QString();
    if (text.isEmpty()) {
        if (const std::string rtf = rtfIn(data); !rtf.empty()) {
            return plainText(rtf);
        }
        const std::string rtf = data.hasHtml() ? rtfOfHtml(data.html(), Qt::white, {}, {}) : std::string();
        return rtf.empty() ? QString() : plainText(rtf);
    }
    text.remove(QChar::Null);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
}
