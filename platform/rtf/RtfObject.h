#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

#include <string_view>

// A picture or an object of a text is kept as the RTF group that it came in,
// called its source: "{\pict ...}", "{\*\shppict{\pict ...}...}" or
// "{\object ...}", 7-bit, with whatever the group holds. Everything else is read
// from the source when it is asked for. Sources may be hostile: none of these
// functions fails, recurses, or decodes more pixels than maxPicturePixels.

/// A picture whose head claims more pixels is not decoded.
inline constexpr qint64 maxPicturePixels = 64'000'000;
/// The sides of a picture or object as it stands in a text, in twips: 1 pixel to 22 inches.
inline constexpr int minObjectTwips = 15;
inline constexpr int maxObjectTwips = 31'680;

/// What is drawn for a picture or an object, and what is told of it.
struct RtfObject
{
    bool isPicture = true; ///< otherwise an object of some program
    QSize size;            ///< in twips, as it stands in the text
    /// A file that QImageReader reads (png, jpg, bmp): the picture itself or what
    /// stands for the object. Empty: nothing that can be drawn; show a frame.
    QByteArray image;
    QString kind;      ///< of a picture: "PNG", "JPEG", "bitmap", "WMF", "EMF", "picture"; of an object its class
    QString name;      ///< of an object: the file that it holds or links to; may be empty
    QString text;      ///< of an object that stands in the text as words: those, on one line
    QByteArray native; ///< of an object: its data as its class has it; of a package the file
};

[[nodiscard]] RtfObject readRtfObject(std::string_view source);

/// RtfObject::size alone; the data is looked at only if the words do not tell.
[[nodiscard]] QSize rtfObjectSize(std::string_view source);

/// The source of the picture file \p image (png or jpg), which has \p pixels and
/// is shown in \p twips.
[[nodiscard]] QByteArray pictureSource(const QByteArray &image, QSize pixels, QSize twips);

/// The source of an embedded object: \p stream is its OLE stream (writeOlePackage()),
/// \p icon the png file that stands for it, shown in \p twips.
[[nodiscard]] QByteArray objectSource(const QString &className, const QByteArray &stream, const QByteArray &icon,
                                      QSize pixels, QSize twips);
