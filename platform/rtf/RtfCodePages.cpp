#include "platform/rtf/RtfCodePages.h"

#include <QByteArrayView>
#include <QStringDecoder>
#include <QStringEncoder>

#include <algorithm>

namespace {

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

constexpr auto multiBytePages = std::to_array({932, 936, 949, 950, 1361, 54936, 65001});

bool isKnown(const QByteArray &name)
{
    return QStringDecoder(name.constData()).isValid();
}

/// The name that the decoders know \p codePage by; empty if they do not.
QByteArray decoderName(int codePage)
{
    switch (codePage) {
    case 936: return QByteArrayLiteral("GBK");
    case 10000: return QByteArrayLiteral("macintosh");
    case 10006: return QByteArrayLiteral("x-mac-greek");
    case 10007: return QByteArrayLiteral("x-mac-cyrillic");
    case 10029: return QByteArrayLiteral("x-mac-ce");
    case 10081: return QByteArrayLiteral("x-mac-turkish");
    case 54936: return QByteArrayLiteral("GB18030");
    case 65001: return QByteArrayLiteral("UTF-8");
    default: break;
    }
    for (const char *prefix : {"windows-", "IBM"}) {
        QByteArray name = prefix + QByteArray::number(codePage);
        if (isKnown(name)) {
            return name;
        }
    }
    return {};
}

QString decodeWith(const QByteArray &name, QByteArrayView bytes)
{
    return QStringDecoder(name.constData(), QStringDecoder::Flag::Stateless).decode(bytes);
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
    if (number == symbolCodePage) {
        for (std::size_t index = 0; index < m_upperHalf.size(); ++index) {
            m_upperHalf[index] = static_cast<char16_t>(0xf080 + index);
        }
        return;
    }
    m_name = decoderName(number);
    if (m_name.isEmpty()) {
        number = defaultCodePage;
        m_name = decoderName(number);
    }
    m_multiByte = std::ranges::find(multiBytePages, number) != multiBytePages.end();
    for (std::size_t index = 0; index < m_upperHalf.size() && !m_multiByte; ++index) {
        const char byte = static_cast<char>(0x80 + index);
        const QString text = decodeWith(m_name, QByteArrayView(&byte, 1));
        m_upperHalf[index] = text.isEmpty() ? u'\ufffd' : text.front().unicode();
    }
}

QString RtfCodePage::decode(std::string_view bytes) const
{
    if (m_multiByte) {
        return decodeWith(m_name, QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    }
    QString text(static_cast<qsizetype>(bytes.size()), Qt::Uninitialized);
    std::ranges::transform(bytes, text.begin(), [this](char byte) {
        const auto code = static_cast<unsigned char>(byte);
        return QChar(code < 0x80 ? char16_t{code} : m_upperHalf[code - 0x80U]);
    });
    return text;
}

QByteArray RtfCodePage::encode(char16_t character) const
{
    const auto known = m_encoded.constFind(character);
    if (known != m_encoded.constEnd()) {
        return *known;
    }
    return *m_encoded.insert(character, encodeUncached(character));
}

QByteArray RtfCodePage::encodeUncached(char16_t character) const
{
    if (character < 0x80) {
        return {1, static_cast<char>(character)};
    }
    if (QChar::isSurrogate(character) || character == u'\ufffd') {
        return {};
    }
    if (!m_multiByte) {
        const auto place = std::ranges::find(m_upperHalf, character);
        return place != m_upperHalf.end() ? QByteArray(1, static_cast<char>(0x80 + (place - m_upperHalf.begin())))
                                          : QByteArray();
    }
    // Encoders replace what a page does not have, some by a look-alike: only
    // bytes that lead back to the character are its bytes.
    const QByteArray bytes =
        QStringEncoder(m_name.constData(), QStringEncoder::Flag::Stateless).encode(QStringView(&character, 1));
    const QString back = decodeWith(m_name, bytes);
    return back.size() == 1 && back.front() == QChar(character) ? bytes : QByteArray();
}

const RtfCodePage &RtfCodePages::page(int number)
{
    return m_pages.try_emplace(number, number).first->second;
}

bool isMultiByteUtf8(std::string_view bytes)
{
    if (std::ranges::none_of(bytes, [](char byte) { return static_cast<signed char>(byte) < 0; })) {
        return false;
    }
    return QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())).isValidUtf8();
}
