#pragma once

#include <string>

class QTextCursor;
class QTextDocument;

/// Returns \p document as RTF: 7-bit, lines ending in CR LF, the same bytes for
/// the same document.
[[nodiscard]] std::string writeRtf(const QTextDocument &document);

/// Returns the selection of \p cursor as an RTF text of its own. A paragraph is
/// closed only if its end is selected too. A null cursor has no text at all.
[[nodiscard]] std::string writeRtf(const QTextCursor &cursor);
