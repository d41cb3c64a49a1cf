#include "platform/rtf/RtfCodePages.h"

#include <QByteArrayView>
#include <QStringDecoder>
#include <QStringEncoder>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <iconv.h>
#include <numeric>
#include <string>
#include <vector>

namespace {

constexpr std::size_t asciiSize = 0x80;
constexpr std::size_t firstSymbol = 0x20;
constexpr int utf7 = 65000;
constexpr char substitute = 0x1a;

struct Charset
{
    int charset;
    int codePage;
};

constexpr auto charsets = std::to_array<Charset>({
    {ansiCharset, defaultCodePage},
    {symbolCharset, symbolCodePage},
    {77, 10000},
    {128, 932},
    {129, 949},
    {130, 1361},
    {134, 936},
    {136, 950},
    {161, 1253},
    {162, 1254},
    {163, 1258},
    {177, 1255},
    {178, 1256},
    {186, 1257},
    {204, 1251},
    {222, 874},
    {238, 1250},
    {255, 437},
});

struct NamedPage
{
    int number;
    const char *name;
};

/// Code pages that are not known by their numbers. Of those of Macs that nobody
/// has, a near relative has at least the letters.
constexpr auto namedPages = std::to_array<NamedPage>({
    {708, "ASMO-708"},     {936, "GBK"},           {951, "Big5-HKSCS"},      {1361, "JOHAB"},
    {10000, "macintosh"},  {10001, "windows-932"}, {10002, "windows-950"},   {10003, "windows-949"},
    {10004, "ISO-8859-6"}, {10005, "ISO-8859-8"},  {10006, "x-mac-greek"},   {10007, "x-mac-cyrillic"},
    {10008, "GBK"},        {10010, "macintosh"},   {10017, "MAC-UK"},        {10021, "TIS-620"},
    {10029, "x-mac-ce"},   {10079, "MAC-IS"},      {10081, "x-mac-turkish"}, {10082, "macintosh"},
    {20866, "KOI8-R"},     {20932, "EUC-JP"},      {20936, "GBK"},           {20949, "EUC-KR"},
    {21866, "KOI8-U"},     {38598, "ISO-8859-8"},  {51932, "EUC-JP"},        {51936, "GBK"},
    {51949, "EUC-KR"},     {54936, "GB18030"},     {utf7, "UTF-7"},          {65001, "UTF-8"},
});

/// Code page 28591 is ISO 8859-1, and so on.
constexpr int beforeFirstIsoPage = 28590;
constexpr int lastIsoPart = 16;

constexpr auto multiBytePages = std::to_array({932, 936, 949, 950, 951, 1361, 10001, 10002, 10003, 10008, 20932, 20936,
                                               20949, 51932, 51936, 51949, 54936, utf7, 65001});

/// These have U+FFFD as a character.
constexpr auto unicodePages = std::to_array({54936, utf7, 65001});

/// The names that \p codePage may be known by, the best first.
std::vector<QByteArray> namesOf(int codePage)
{
    std::vector<QByteArray> names;
    const QByteArray number = QByteArray::number(codePage);
    const auto named = std::ranges::find(namedPages, codePage, &NamedPage::number);
    if (named != namedPages.end()) {
        names.emplace_back(named->name);
    } else if (codePage > beforeFirstIsoPage && codePage <= beforeFirstIsoPage + lastIsoPart) {
        names.push_back("ISO-8859-" + QByteArray::number(codePage - beforeFirstIsoPage));
    }
    for (const char *prefix : {"windows-", "IBM", "CP"}) {
        names.push_back(prefix + number);
    }
    return names;
}

/// A conversion of the C library.
class Iconv
{
public:
    Iconv(const char *to, const char *from)
        : m_handle(iconv_open(to, from))
    {
    }
    ~Iconv()
    {
        if (isOpen()) {
            iconv_close(m_handle);
        }
    }
    Q_DISABLE_COPY_MOVE(Iconv)

    [[nodiscard]] bool isOpen() const { return m_handle != failed(); }

    /// Converts the whole of \p input; \p replacement stands for each byte that
    /// cannot be converted. Calls do not depend on each other.
    [[nodiscard]] std::string convert(std::string_view input, std::string_view replacement)
    {
        std::string output;
        std::array<char, 256> buffer;                // NOLINT(*-member-init): written before it is read
        auto *in = const_cast<char *>(input.data()); // the library only reads it
        std::size_t inLeft = input.size();
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        while (true) {
            char *out = buffer.data();
            std::size_t outLeft = buffer.size();
            const bool isLast = inLeft == 0;
            const bool isDone = iconv(m_handle, isLast ? nullptr : &in, &inLeft, &out, &outLeft) != stopped;
            const int reason = errno;
            output.append(buffer.data(), buffer.size() - outLeft);
            if (isDone && isLast) {
                return output;
            }
            if (isDone || (reason == E2BIG && outLeft != buffer.size())) {
                continue;
            }
            if (inLeft == 0) {
                return output;
            }
            output += replacement;
            ++in;
            --inLeft;
        }
    }

private:
    static constexpr auto stopped = static_cast<std::size_t>(-1);
    // The library's value for a failure is no pointer.
    static iconv_t failed() { return reinterpret_cast<iconv_t>(stopped); } // NOLINT(performance-no-int-to-ptr)

    iconv_t m_handle;
};

std::string_view bytesOf(QStringView text)
{
    return {reinterpret_cast<const char *>(text.utf16()), static_cast<std::size_t>(text.size()) * sizeof(char16_t)};
}

constexpr const char *nativeUtf16 = std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE";

} // namespace

/// Text to bytes and back. No call depends on an earlier one.
class RtfConverter
{
public:
    virtual ~RtfConverter() = default;

    /// The text of \p bytes, U+FFFD for what is none.
    [[nodiscard]] virtual QString decode(std::string_view bytes) = 0;
    /// The bytes of \p text, or anything if they do not have it.
    [[nodiscard]] virtual QByteArray encode(QStringView text) = 0;
};

namespace {

class QtConverter final : public RtfConverter
{
public:
    explicit QtConverter(const char *name)
        : m_decoder(name, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom)
        , m_encoder(name, QStringEncoder::Flag::Stateless)
    {
    }

    [[nodiscard]] bool isValid() const { return m_decoder.isValid() && m_encoder.isValid(); }

    QString decode(std::string_view bytes) override
    {
        // A character that is cut off at the end would be dropped without a sign. It ends at
        // a line end, which is no part of any.
        std::string line(bytes);
        line += '\n';
        QString text = m_decoder.decode(QByteArrayView(line.data(), static_cast<qsizetype>(line.size())));
        if (text.endsWith(u'\n')) {
            text.chop(1);
        }
        // Some decoders have a sign of their own for bytes that are no character.
        if (bytes.find(substitute) == std::string_view::npos) {
            text.replace(QLatin1Char(substitute), QChar(QChar::ReplacementCharacter));
        }
        return text;
    }
    QByteArray encode(QStringView text) override { return m_encoder.encode(text); }

private:
    QStringDecoder m_decoder;
    QStringEncoder m_encoder;
};

class IconvConverter final : public RtfConverter
{
public:
    explicit IconvConverter(const char *name)
        : m_decoder(nativeUtf16, name)
        , m_encoder(name, nativeUtf16)
    {
        if (isValid()) {
            m_backslash = convert("\\");
        }
    }

    [[nodiscard]] bool isValid() const { return m_decoder.isOpen() && m_encoder.isOpen(); }

    QString decode(std::string_view bytes) override
    {
        // Some have the sign of a currency there; to RTF and its programs it is a backslash.
        return convert(bytes).replace(m_backslash, QStringLiteral("\\"));
    }
    QByteArray encode(QStringView text) override
    {
        return QByteArray::fromStdString(m_encoder.convert(bytesOf(text), {}));
    }

private:
    [[nodiscard]] QString convert(std::string_view bytes)
    {
        const std::string units = m_decoder.convert(bytes, bytesOf(u"\ufffd"));
        QString text(static_cast<qsizetype>(units.size() / sizeof(char16_t)), Qt::Uninitialized);
        std::memcpy(text.data(), units.data(), static_cast<std::size_t>(text.size()) * sizeof(char16_t));
        return text;
    }

    Iconv m_decoder;
    Iconv m_encoder;
    QString m_backslash; ///< what the page has in its place
};

/// Code pages in which letters are no ASCII are none of text in RTF.
bool hasAsciiLetters(RtfConverter &converter)
{
    return converter.decode("AZaz09 ") == QLatin1StringView("AZaz09 ");
}

template <typename Converter>
std::unique_ptr<RtfConverter> findConverter(int codePage)
{
    for (const QByteArray &name : namesOf(codePage)) {
        auto converter = std::make_unique<Converter>(name.constData());
        if (converter->isValid() && hasAsciiLetters(*converter)) {
            return converter;
        }
    }
    return nullptr;
}

/// nullptr if nobody knows \p codePage.
std::unique_ptr<RtfConverter> makeConverter(int codePage)
{
    auto converter = findConverter<QtConverter>(codePage);
    return converter ? std::move(converter) : findConverter<IconvConverter>(codePage);
}

} // namespace

int codePageOfCharset(int charset)
{
    const auto row = std::ranges::find(charsets, charset, &Charset::charset);
    return row != charsets.end() ? row->codePage : 0;
}

int charsetOfCodePage(int codePage)
{
    const auto row = std::ranges::find(charsets, codePage, &Charset::codePage);
    return row != charsets.end() ? row->charset : ansiCharset;
}

RtfCodePage::RtfCodePage(int number)
{
    for (std::size_t byte = 0; byte < m_characters.size(); ++byte) {
        m_characters[byte] = static_cast<char32_t>(byte);
    }
    if (isSymbolCodePage(number)) {
        setSymbols(number);
        return;
    }
    auto converter = makeConverter(number);
    if (!converter) {
        number = defaultCodePage;
        converter = makeConverter(number);
    }
    m_keepsAscii = number != utf7;
    m_isUnicode = std::ranges::find(unicodePages, number) != unicodePages.end();
    if (std::ranges::find(multiBytePages, number) != multiBytePages.end()) {
        m_converter = std::move(converter);
    } else if (converter) {
        setUpperHalf(*converter);
    }
}

RtfCodePage::~RtfCodePage() = default;

void RtfCodePage::setSymbols(int number)
{
    m_isSymbolPage = true;
    const RtfSymbols *symbols = symbolsOfCodePage(number);
    m_keepsAscii = symbols == nullptr;
    for (std::size_t byte = symbols != nullptr ? firstSymbol : asciiSize; byte < m_characters.size(); ++byte) {
        const char32_t symbol = symbols != nullptr ? (*symbols)[byte - firstSymbol] : 0;
        m_characters[byte] = symbol != 0 ? symbol : symbolArea + static_cast<char32_t>(byte);
    }
}

void RtfCodePage::setUpperHalf(RtfConverter &converter)
{
    std::string bytes;
    for (std::size_t byte = asciiSize; byte < m_characters.size(); ++byte) {
        bytes += static_cast<char>(byte);
    }
    QString text = converter.decode(bytes);
    if (text.size() != static_cast<qsizetype>(bytes.size())) {
        text.clear();
        for (const char &byte : bytes) {
            text += converter.decode({&byte, 1}).leftJustified(1, QChar::ReplacementCharacter, true);
        }
    }
    std::ranges::transform(text, m_characters.begin() + asciiSize, [](QChar c) { return char32_t{c.unicode()}; });
}

QString RtfCodePage::decode(std::string_view bytes) const
{
    if (m_converter) {
        QString text = m_converter->decode(bytes);
        return !m_isUnicode && text.contains(QChar::ReplacementCharacter) ? decodeDamaged(bytes) : text;
    }
    QString text(2 * static_cast<qsizetype>(bytes.size()), Qt::Uninitialized);
    QChar *end = text.data();
    for (const char byte : bytes) {
        for (const char16_t unit : QChar::fromUcs4(m_characters[static_cast<unsigned char>(byte)])) {
            *end++ = QChar(unit);
        }
    }
    text.truncate(end - text.constData());
    return text;
}

/// Converters may take the character behind half a character for its other half.
QString RtfCodePage::decodeDamaged(std::string_view bytes) const
{
    QString text;
    std::size_t start = 0; // of what is whole
    std::size_t end = 0;
    const auto appendWhole = [&] {
        if (start < end) {
            text += m_converter->decode(bytes.substr(start, end - start));
        }
    };
    while (end < bytes.size()) {
        if (const std::size_t length = lengthOfCharacter(bytes.substr(end)); length > 0) {
            end += length;
        } else {
            appendWhole();
            text += QChar(QChar::ReplacementCharacter);
            start = ++end;
        }
    }
    appendWhole();
    return text;
}

/// The length of the character that \p bytes begins with; 0 if it begins with none.
std::size_t RtfCodePage::lengthOfCharacter(std::string_view bytes) const
{
    constexpr unsigned char thirdSet = 0x8f; // leads to two further bytes where there are such characters
    const auto first = static_cast<unsigned char>(bytes.front());
    if (first < asciiSize) {
        return 1;
    }
    const std::size_t longest = std::min<std::size_t>(first == thirdSet ? 3 : 2, bytes.size());
    for (std::size_t length = 1; length <= longest; ++length) {
        if (isCharacter(bytes.substr(0, length))) {
            return length;
        }
    }
    return 0;
}

bool RtfCodePage::isCharacter(std::string_view bytes) const
{
    std::uint32_t key = 0;
    for (const char byte : bytes) {
        key = key << 8U | static_cast<unsigned char>(byte);
    }
    const auto known = m_isCharacter.constFind(key);
    if (known != m_isCharacter.constEnd()) {
        return *known;
    }
    return *m_isCharacter.insert(key, !m_converter->decode(bytes).contains(QChar::ReplacementCharacter));
}

char32_t RtfCodePage::shown(char32_t character) const
{
    const bool isByte = character >= symbolArea + firstSymbol && character < symbolArea + m_characters.size();
    return isByte && m_isSymbolPage && !m_keepsAscii ? m_characters[character - symbolArea] : character;
}

QByteArray RtfCodePage::encode(char32_t character) const
{
    const auto known = m_encoded.constFind(character);
    if (known != m_encoded.constEnd()) {
        return *known;
    }
    return *m_encoded.insert(character, encodeUncached(character));
}

QByteArray RtfCodePage::encodeUncached(char32_t character) const
{
    if (QChar::isSurrogate(character) || character == QChar::ReplacementCharacter ||
        character > QChar::LastValidCodePoint) {
        return {};
    }
    if (!m_converter) {
        const auto place = std::ranges::find(m_characters, shown(character));
        return place != m_characters.end() ? QByteArray(1, static_cast<char>(place - m_characters.begin()))
                                           : QByteArray();
    }
    if (m_keepsAscii && character < asciiSize) {
        return {1, static_cast<char>(character)};
    }
    // Encoders replace what a page does not have, some by a look-alike: only
    // bytes that lead back to the character are its bytes.
    const auto units = QChar::fromUcs4(character);
    QByteArray bytes = m_converter->encode(units);
    return m_converter->decode({bytes.constData(), static_cast<std::size_t>(bytes.size())}) == QStringView(units)
               ? bytes
               : QByteArray();
}

bool RtfCodePage::isCutBefore(char next, std::string_view bytes) const
{
    if (!m_converter || bytes.empty()) {
        return false;
    }
    const QString text = m_converter->decode(std::string(bytes) + next);
    return text.isEmpty() || text.back() != QLatin1Char(next);
}

const RtfCodePage &RtfCodePages::page(int number)
{
    return m_pages.try_emplace(number, number).first->second;
}

bool isMultiByteUtf8(std::string_view bytes)
{
    const auto join = [](unsigned all, char byte) { return all | static_cast<unsigned char>(byte); };
    if (std::accumulate(bytes.begin(), bytes.end(), 0U, join) < 0x80) {
        return false;
    }
    return QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())).isValidUtf8();
}
