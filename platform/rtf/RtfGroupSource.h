#pragma once

#include "platform/rtf/RtfTokenizer.h"

#include <QByteArray>

/// What stands between here and the end of a group of an RTF text.
struct RtfGroupRest
{
    std::string_view text;
    bool isClosed = true;    ///< otherwise the text ended within the group
    bool hasPicture = false; ///< the word \pict stands in it
    bool isPlain = true;     ///< 7-bit, without raw binary data and control characters
};

/// Runs on to the brace that closes the group that \p tokenizer stands in. The
/// brace itself is the next token. Groups in it may nest as deep as they like.
[[nodiscard]] RtfGroupRest takeGroup(RtfTokenizer &tokenizer);

/// \p rest as a group of its own: "{", \p opening, the rest, "}". It is kept to the
/// byte as far as it is whole and 7-bit; otherwise its tokens are written anew, raw
/// data as hexadecimal digits, and groups that are left open are closed.
[[nodiscard]] QByteArray toGroup(std::string_view opening, const RtfGroupRest &rest);
