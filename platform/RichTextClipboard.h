#pragma once

#include <QColor>
#include <QFont>
#include <QSize>
#include <QTextCursor>

#include <memory>
#include <optional>
#include <string>

class QMimeData;

// What a text box puts on the clipboard and takes from it, or drags and drops.

/// The selection as RTF, as HTML (pictures within it) and as plain text, as it is
/// now: later changes of the document do not reach it. An empty selection is none of these.
[[nodiscard]] std::unique_ptr<QMimeData> clipboardOf(const QTextCursor &selection);

/// The selection as RTF alone.
[[nodiscard]] std::unique_ptr<QMimeData> rtfClipboardOf(const QTextCursor &selection);

/// Whether \p data offers RTF. The data itself is not looked at.
[[nodiscard]] bool holdsRtf(const QMimeData &data);

/// The RTF in \p data as it is; empty if there is none.
[[nodiscard]] std::string rtfIn(const QMimeData &data);

/// Whether \p data offers RTF, HTML, a picture, files or plain text. The data itself
/// is not looked at.
[[nodiscard]] bool canPaste(const QMimeData &data);

/// Where a text is pasted.
struct PasteTarget
{
    QColor paper; ///< colours of ink that cannot be read on it are dropped
    QSize screen; ///< in document units: larger pictures are scaled down
    QFont font;   ///< what is pasted without fonts of its own (HTML) is set in it
};

/// A file that is larger, in bytes, is not pasted as a picture.
inline constexpr qint64 maxPictureFile = qint64{16} * 1024 * 1024;

/// What to paste of \p data, as RTF. RTF comes before HTML, HTML before a picture, a
/// picture before the picture files that come from a file manager. HTML that shows
/// nothing by itself (a picture of the web) counts as none. Nothing if \p data holds
/// none of these: then textToPaste() is to be typed in. Nothing is ever fetched: pictures
/// come from the data itself or from the local files that \p data names as dropped.
[[nodiscard]] std::optional<std::string> rtfToPaste(const QMimeData &data, const PasteTarget &target);

/// The plain text of \p data, or that of its richer forms; empty if there is none.
/// Lines end in '\n'.
[[nodiscard]] QString textToPaste(const QMimeData &data);
