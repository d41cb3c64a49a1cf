#pragma once

#include "platform/rtf/RtfLimits.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

class QTextCursor;
class QTextDocument;

/// Something in the input that is not as the format has it. The text that was
/// read is in the document all the same.
struct RtfError
{
    enum class Reason : std::uint8_t {
        NotRtf,           ///< does not begin as RTF: taken as plain text
        UnbalancedGroups, ///< a group is not closed, or one too many is
        TooDeep,          ///< more than maxRtfGroupDepth groups in each other
    };

    Reason reason;
    std::size_t offset; ///< bytes from the start of the input
};

/// Replaces the contents of \p document by the RTF text \p rtf.
///
/// Unknown control words are skipped, as the format asks; the \par that closes
/// the text ends its last paragraph and starts no new one. Text before the
/// first font word takes the document's default font. Bytes above 127 that stand
/// in the text as they are count as UTF-8 if all of them can be, else as the code
/// page of their font. An empty \p rtf is an empty document and no error.
///
/// Undo is as enabled as before, with nothing to undo; the document is unmodified.
std::optional<RtfError> readRtf(std::string_view rtf, QTextDocument &document);

/// Replaces the selection of \p cursor by the RTF text \p rtf, as one undo step.
/// Here a closing \par is kept: it ends the paragraph. The paragraph that \p cursor
/// stands in keeps its format for what lies behind the insertion. A null cursor is
/// left alone.
std::optional<RtfError> insertRtf(std::string_view rtf, QTextCursor &cursor);
