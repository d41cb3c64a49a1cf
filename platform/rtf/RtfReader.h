#pragma once

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

// Limits that keep a hostile or damaged text from taking the program with it. No
// limit loses text. The lengths that a text announces (\bin, objects) are cut to
// what is there; those of pictures are in RtfObject.h.

/// Groups deeper in each other share the format of the last one within.
inline constexpr int maxRtfGroupDepth = 256;
/// Further paragraphs become lines of the last.
inline constexpr int maxRtfParagraphs = 1'000'000;
/// Different formats of characters, paragraphs and objects: where there are more,
/// the last one goes on. An object more is a blank.
inline constexpr int maxRtfFormats = 100'000;

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
