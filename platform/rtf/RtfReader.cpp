#include "platform/rtf/RtfReader.h"

#include "platform/rtf/RtfCodePages.h"
#include "platform/rtf/RtfParser.h"

#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>

namespace {

constexpr std::string_view utf8Mark = "\xef\xbb\xbf";

/// The bytes of \p input before its "{\rtf", or nothing if it is no RTF.
std::optional<std::size_t> startOfRtf(std::string_view input)
{
    std::size_t start = input.starts_with(utf8Mark) ? utf8Mark.size() : 0;
    while (start < input.size() && std::string_view(" \t\r\n").find(input[start]) != std::string_view::npos) {
        ++start;
    }
    const std::string_view rest = input.substr(start);
    if (rest.starts_with("{\\rtf") || rest.starts_with("{\\urtf")) {
        return start;
    }
    return std::nullopt;
}

/// Line breaks as a document has them: one '\n' each. CR CR LF is none, but
/// where a line was wrapped.
QString plainText(std::string_view bytes)
{
    if (bytes.starts_with(utf8Mark)) {
        bytes.remove_prefix(utf8Mark.size());
    }
    QString text = isMultiByteUtf8(bytes) ? QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()))
                                          : RtfCodePage(defaultCodePage).decode(bytes);
    text.replace(QStringLiteral("\r\r\n"), QStringLiteral(" "));
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    text.replace(QLatin1Char('\v'), QChar(QChar::LineSeparator));
    text.replace(QLatin1Char('\0'), QLatin1Char(' '));
    return text;
}

/// Reads \p rtf, RTF or not, into the document at \p cursor. \p end says how its
/// last paragraph ends.
std::optional<RtfError> readAt(QTextCursor &cursor, std::string_view rtf, void (RtfParser::*end)())
{
    const std::optional<std::size_t> start = startOfRtf(rtf);
    if (!start) {
        cursor.insertText(plainText(rtf));
        return rtf.empty() ? std::nullopt : std::optional(RtfError{RtfError::Reason::NotRtf, 0});
    }
    const int position = cursor.position();
    const QTextBlockFormat format = cursor.blockFormat();
    const QTextCharFormat mark = cursor.blockCharFormat();
    std::optional<RtfParser> parser(std::in_place, rtf.substr(*start), cursor, false);
    std::optional<RtfError> error = parser->parse();
    if (parser->isAllInMargins()) {
        cursor.setPosition(position, QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
        cursor.setBlockFormat(format);
        cursor.setBlockCharFormat(mark);
        parser.emplace(rtf.substr(*start), cursor, true);
        error = parser->parse();
    }
    ((*parser).*end)();
    if (error) {
        error->offset += *start;
    }
    return error;
}

} // namespace

std::optional<RtfError> readRtf(std::string_view rtf, QTextDocument &document)
{
    const bool undo = document.isUndoRedoEnabled();
    document.setUndoRedoEnabled(false);
    document.clear();
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    const auto error = readAt(cursor, rtf, &RtfParser::endDocument);
    cursor.endEditBlock();
    document.setUndoRedoEnabled(undo);
    document.setModified(false);
    return error;
}

std::optional<RtfError> insertRtf(std::string_view rtf, QTextCursor &cursor)
{
    if (cursor.isNull()) {
        return std::nullopt;
    }
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    const auto error = readAt(cursor, rtf, &RtfParser::endInsertion);
    cursor.endEditBlock();
    return error;
}
