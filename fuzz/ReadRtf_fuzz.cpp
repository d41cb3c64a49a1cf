#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfWriter.h"

#include <QGuiApplication>
#include <QTextDocument>

#include <cstdlib>

/// Reading never fails, and what was written once is written so for ever.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    static int count = 1;
    static char name[] = "fuzz";
    static char *arguments[] = {name, nullptr};
    static const bool offscreen = qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QGuiApplication application(count, arguments);
    QTextDocument document;
    readRtf({reinterpret_cast<const char *>(data), size}, document);
    const std::string written = writeRtf(document);
    readRtf(written, document);
    if (!offscreen || writeRtf(document) != written) {
        std::abort();
    }
    return 0;
}
