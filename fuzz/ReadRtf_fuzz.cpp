#include "fuzz/FuzzTarget.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfWriter.h"

#include <QTextCursor>
#include <QTextDocument>

namespace {

void readWhole(std::string_view rtf)
{
    QTextDocument document;
    const auto error = readRtf(rtf, document);
    require(!error || error->offset <= rtf.size(), "an error has its place in the text");
    require(!document.isModified() && !document.isUndoAvailable(), "a document that was read is as new");

    const QString text = document.toRawText();
    static_cast<void>(readRtf(writeRtf(document), document));
    require(document.toRawText() == text, "writing keeps the text");
}

void readBetween(std::string_view rtf)
{
    const QString before = QStringLiteral("before");
    const QString after = QStringLiteral("after");
    QTextDocument document;
    document.setPlainText(before + after);
    QTextCursor cursor(&document);
    cursor.setPosition(static_cast<int>(before.size()));
    static_cast<void>(insertRtf(rtf, cursor));
    const QString text = document.toRawText();
    require(text.startsWith(before) && text.endsWith(after), "an insertion keeps the text around it");
    if (document.isUndoAvailable()) {
        document.undo();
    }
    require(document.toRawText() == before + after, "one step undoes an insertion");
}

} // namespace

/// Reading never fails, whether it makes a document or goes into one.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    startOffscreen();
    readWhole(fuzzedText(data, size));
    readBetween(fuzzedText(data, size));
    return 0;
}
