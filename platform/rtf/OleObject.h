#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <string_view>

// The binary form of objects in a text: OLE 1.0 streams, little endian. Lengths
// in them are never trusted: each is cut to what is left.

/// What programs hand over of an object to show it without them.
struct OlePresentation
{
    enum class Kind : std::uint8_t { None, Metafile, Bitmap, Dib, Other };

    Kind kind = Kind::None;
    std::string_view data; ///< of a metafile without the eight bytes before it; points into the input
};

/// An object of some program.
struct OleObject
{
    bool isLinked = false;   ///< names a file instead of holding one
    QString className;       ///< as the object names it, e.g. "Package", "PBrush", "Word.Document.8"
    QString linkedFile;      ///< of a linked object
    std::string_view native; ///< the data of an embedded one, as its class has it; points into the input
    OlePresentation presentation;
};

/// Nothing if \p data does not begin as an object. One that is cut short holds what is there.
[[nodiscard]] std::optional<OleObject> readOleObject(std::string_view data);

/// A file that stands in a text: the native data of an object of the class "Package".
struct OlePackage
{
    QString label;         ///< what it is called beside its icon
    QString fileName;      ///< its name without any folder, safe to be put behind one; may be empty
    std::string_view data; ///< the file; points into the input
};

inline constexpr std::string_view packageClassName = "Package";

/// Nothing if \p native is no package.
[[nodiscard]] std::optional<OlePackage> readOlePackage(std::string_view native);

/// The whole stream of an embedded object of the class "Package" that holds the
/// file \p data under the name \p fileName, with the name in both of its forms.
[[nodiscard]] QByteArray writeOlePackage(const QString &fileName, const QByteArray &data);
