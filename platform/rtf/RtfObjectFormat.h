#pragma once

#include <QByteArray>
#include <QTextCharFormat>

class QTextCursor;

/// The type of the one character (U+FFFC) that a picture or object is in a document.
inline constexpr int rtfObjectType = QTextFormat::UserObject + 0x5201;

/// The format of the picture or object whose source (RtfObject.h) is \p source,
/// among characters of the format \p characters.
[[nodiscard]] QTextCharFormat toObjectFormat(const QTextCharFormat &characters, const QByteArray &source);

/// The source; empty if \p format is none of a picture or object.
[[nodiscard]] QByteArray objectSourceOf(const QTextFormat &format);

/// RtfObject::size of the source, without reading it again: in twips.
[[nodiscard]] QSize objectSizeOf(const QTextFormat &format);

/// Replaces the selection by a picture or object, as one undo step.
void insertObject(QTextCursor &cursor, const QByteArray &source);
