#include "fuzz/FuzzTarget.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfWriter.h"

#include <QTextDocument>

#include <algorithm>

/// What was written once is good RTF, and is written so for ever.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    startOffscreen();
    QTextDocument document;
    static_cast<void>(readRtf(fuzzedText(data, size), document));
    const std::string written = writeRtf(document);
    const auto is7Bit = [](char c) { return c > 0; };
    require(std::ranges::all_of(written, is7Bit), "written text is 7-bit");
    require(!readRtf(written, document).has_value(), "written text is read without an error");
    require(writeRtf(document) == written, "it is written as before");
    return 0;
}
