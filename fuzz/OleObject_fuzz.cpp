#include "fuzz/FuzzTarget.h"
#include "platform/rtf/Metafile.h"
#include "platform/rtf/OleObject.h"
#include "platform/rtf/RtfObject.h"

#include <algorithm>

namespace {

void requireWithin(std::string_view part, std::string_view whole)
{
    require(part.empty() || (part.data() >= whole.data() && part.data() + part.size() <= whole.data() + whole.size()),
            "a part lies in what it was read from");
}

void checkPackage(std::string_view native)
{
    if (const auto package = readOlePackage(native)) {
        requireWithin(package->data, native);
        const auto leadsElsewhere = [](QChar c) {
            return c == QLatin1Char('/') || c == QLatin1Char('\\') || c == QChar(QChar::Null);
        };
        require(std::ranges::none_of(package->fileName, leadsElsewhere) && package->fileName != QStringLiteral(".") &&
                    package->fileName != QStringLiteral(".."),
                "a file's name stays in its folder");
    }
}

void checkObject(std::string_view data)
{
    if (const auto object = readOleObject(data)) {
        requireWithin(object->native, data);
        requireWithin(object->presentation.data, data);
        checkPackage(object->native);
        static_cast<void>(bitmapOfMetafile(object->presentation.data));
    }
}

void checkSource(std::string_view source)
{
    const QSize size = rtfObjectSize(source);
    require(size == readRtfObject(source).size, "an object has one size");
    require(std::min(size.width(), size.height()) >= minObjectTwips &&
                std::max(size.width(), size.height()) <= maxObjectTwips,
            "an object's size is within the bounds");
}

void checkWrittenPackage(std::string_view file)
{
    const QByteArray data(file.data(), static_cast<qsizetype>(file.size()));
    const QByteArray stream = writeOlePackage(QStringLiteral("notes.txt"), data);
    const auto object = readOleObject({stream.constData(), static_cast<std::size_t>(stream.size())});
    require(object.has_value(), "a written object is read");
    const auto package = readOlePackage(object->native);
    require(package.has_value() && package->data == file && package->fileName == QStringLiteral("notes.txt"),
            "a written package is read as it was");
}

} // namespace

/// The readers of what stands in a text beside words, each on any bytes.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    startOffscreen();
    const std::string_view bytes = fuzzedText(data, size);
    checkObject(bytes);
    checkPackage(bytes);
    checkSource(bytes);
    checkWrittenPackage(bytes);
    static_cast<void>(bitmapOfMetafile(bytes));
    static_cast<void>(bitmapFileOfDib(bytes));
    return 0;
}
