#include "platform/rtf/RtfObjectFormat.h"

#include "platform/rtf/RtfFormats.h"
#include "platform/rtf/RtfObject.h"

#include <QTextCursor>

QTextCharFormat toObjectFormat(const QTextCharFormat &characters, const QByteArray &source)
{
    QTextCharFormat format = characters;
    format.setObjectType(rtfObjectType);
    format.setProperty(RtfObjectSource, source);
    format.setProperty(RtfObjectSize, rtfObjectSize({source.constData(), static_cast<std::size_t>(source.size())}));
    // A document finds a format by a hash in which bytes do not count.
    format.setProperty(RtfObjectKey, static_cast<int>(qHash(source)));
    return format;
}

QByteArray objectSourceOf(const QTextFormat &format)
{
    return format.objectType() == rtfObjectType ? format.property(RtfObjectSource).toByteArray() : QByteArray();
}

QSize objectSizeOf(const QTextFormat &format)
{
    return format.property(RtfObjectSize).toSize();
}

void insertObject(QTextCursor &cursor, const QByteArray &source)
{
    cursor.insertText(QString(QChar::ObjectReplacementCharacter), toObjectFormat(cursor.charFormat(), source));
}
