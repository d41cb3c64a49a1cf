#include "platform/rtf/RtfObjectParts.h"

#include "platform/rtf/RtfCodePages.h"
#include "platform/rtf/RtfControlWords.h"
#include "platform/rtf/RtfTokenizer.h"

#include <algorithm>
#include <limits>
#include <span>
#include <utility>

namespace {

constexpr qsizetype maxTextLength = 200;
constexpr qsizetype maxClassLength = 255;

struct ExtentWord
{
    std::string_view word;
    int RtfExtent::*value;
};

constexpr auto pictureExtents = std::to_array<ExtentWord>({
    {"picw", &RtfExtent::width},
    {"pich", &RtfExtent::height},
    {"picwgoal", &RtfExtent::goalWidth},
    {"pichgoal", &RtfExtent::goalHeight},
    {"picscalex", &RtfExtent::scaleX},
    {"picscaley", &RtfExtent::scaleY},
});

constexpr auto objectExtents = std::to_array<ExtentWord>({
    {"objw", &RtfExtent::goalWidth},
    {"objh", &RtfExtent::goalHeight},
    {"objscalex", &RtfExtent::scaleX},
    {"objscaley", &RtfExtent::scaleY},
});

void readExtent(std::span<const ExtentWord> words, const RtfToken &token, RtfExtent &extent)
{
    const auto row = std::ranges::find(words, token.text, &ExtentWord::word);
    if (row != words.end() && token.number) {
        extent.*(row->value) = *token.number;
    }
}

/// A word that tells what the data of a picture is.
struct PictureWord
{
    std::string_view word;
    const char *kind;
    bool isMetafile;
};

constexpr auto pictureWords = std::to_array<PictureWord>({
    {"pngblip", "PNG", false},
    {"jpegblip", "JPEG", false},
    {"dibitmap", "bitmap", false},
    {"wbitmap", "bitmap", false},
    {"wmetafile", "WMF", true},
    {"emfblip", "EMF", true},
    {"pmmetafile", "picture", true},
});

/// What a word that begins a group makes of the rest of it.
enum class Part : std::uint8_t { Picture, Object, ClassName, Data, Result, Preferred, ForOldReaders, Skipped };

struct PartWord
{
    std::string_view word;
    Part part;
};

constexpr auto partWords = std::to_array<PartWord>({
    {"nonshppict", Part::ForOldReaders},
    {"objalias", Part::Skipped},
    {"objclass", Part::ClassName},
    {"objdata", Part::Data},
    {"object", Part::Object},
    {"objname", Part::Skipped},
    {"objsect", Part::Skipped},
    {"pict", Part::Picture},
    {"result", Part::Result},
    {"shppict", Part::Preferred},
    {"sp", Part::Skipped},
});

/// Destinations whose text is part of the text around them.
constexpr std::array textDestinations = {RtfDestination::Body, RtfDestination::Alternatives,
                                         RtfDestination::FieldResult, RtfDestination::TextBox};

std::optional<Part> partOf(std::string_view word, bool isIgnorable)
{
    if (const auto *row = std::ranges::find(partWords, word, &PartWord::word); row != partWords.end()) {
        return row->part;
    }
    const RtfControlWord *known = findRtfControlWord(word);
    const bool isDestination = known != nullptr && known->effect == RtfEffect::Destination;
    const bool isSkipped =
        isDestination
            ? std::ranges::find(textDestinations, static_cast<RtfDestination>(known->value)) == textDestinations.end()
            : known == nullptr && isIgnorable;
    return isSkipped ? std::optional(Part::Skipped) : std::nullopt;
}

const RtfCodePage &western()
{
    static const RtfCodePage page(defaultCodePage);
    return page;
}

/// The words of an object's result, gathered on one line.
class PlainText
{
public:
    void add(const RtfToken &token);
    void endFallback() { m_fallbackDue = 0; }
    [[nodiscard]] QString text() const;

private:
    void word(const RtfToken &token);
    void bytes(std::string_view bytes);
    void character(QChar character);

    QString m_text;
    int m_fallbackLength = 1;
    int m_fallbackDue = 0; ///< characters that stand for a \u and are yet to come
};

void PlainText::add(const RtfToken &token)
{
    if (m_text.size() > maxTextLength) {
        return;
    }
    if (token.kind == RtfToken::Kind::Text) {
        bytes(token.text);
    } else if (token.kind == RtfToken::Kind::HexByte) {
        const char byte = static_cast<char>(token.number.value_or(0));
        bytes({&byte, 1});
    } else if (token.kind == RtfToken::Kind::Word) {
        word(token);
    }
}

QString PlainText::text() const
{
    QString text = m_text.left(maxTextLength);
    if (!text.isEmpty() && text.back().isHighSurrogate()) {
        text.chop(1);
    }
    return text.trimmed();
}

void PlainText::word(const RtfToken &token)
{
    const RtfControlWord *known = findRtfControlWord(token.text);
    const std::optional<int> value = known != nullptr ? rtfValue(*known, token.number) : std::nullopt;
    if (!value) {
        return;
    }
    if (known->effect == RtfEffect::Unicode) {
        character(QChar(static_cast<char16_t>(*value)));
        m_fallbackDue = m_fallbackLength;
    } else if (known->effect == RtfEffect::FallbackLength) {
        m_fallbackLength = std::max(*value, 0);
    } else if (known->effect == RtfEffect::Character) {
        if (m_fallbackDue > 0) {
            --m_fallbackDue;
        } else {
            character(QChar(static_cast<char16_t>(*value)));
        }
    } else if (known->effect == RtfEffect::ParagraphEnd || known->effect == RtfEffect::Cell ||
               known->effect == RtfEffect::Row) {
        character(QChar(QChar::Space));
    }
}

void PlainText::bytes(std::string_view bytes)
{
    const std::size_t fallback = std::min(static_cast<std::size_t>(m_fallbackDue), bytes.size());
    m_fallbackDue -= static_cast<int>(fallback);
    // Spaces collapse, so that more bytes than characters may be needed.
    const std::string_view shown = bytes.substr(fallback);
    for (std::size_t start = 0; start < shown.size() && m_text.size() <= maxTextLength; start += maxTextLength) {
        const QString text = western().decode(shown.substr(start, maxTextLength));
        for (const QChar each : text) {
            character(each);
        }
    }
}

void PlainText::character(QChar character)
{
    if (!character.isSpace()) {
        if (character.category() != QChar::Other_Control) {
            m_text += character;
        }
    } else if (!m_text.isEmpty() && m_text.back() != QChar(QChar::Space)) {
        m_text += QChar(QChar::Space);
    }
}

/// Finds the parts of a source, whatever nests in whatever: parts are told from
/// each other by the depth of the group that each began in.
class Scanner
{
public:
    explicit Scanner(std::string_view source)
        : m_source(source)
        , m_tokenizer(source)
    {
    }

    [[nodiscard]] RtfObjectParts scan();

private:
    static constexpr std::size_t nowhere = std::numeric_limits<std::size_t>::max();

    /// The inside of a group that no other part can begin in.
    struct Leaf
    {
        Part part = Part::Skipped;
        std::size_t depth = nowhere;
        std::size_t start = 0;
    };

    [[nodiscard]] bool isInLeaf() const { return m_leaf.depth != nowhere; }
    void word(const RtfToken &token);
    void begin(Part part);
    void leafToken(const RtfToken &token);
    void endLeaf(std::size_t end);
    void endGroup(std::size_t offset);

    std::string_view m_source;
    RtfTokenizer m_tokenizer;
    RtfObjectParts m_parts;
    PlainText m_text;
    RtfPicture m_picture; ///< the one that the leaf is
    Leaf m_leaf;
    std::size_t m_depth = 0;
    std::size_t m_objectDepth = nowhere;
    std::size_t m_resultDepth = nowhere;
    std::size_t m_preferredDepth = nowhere;
    std::size_t m_forOldReadersDepth = nowhere;
    bool m_isIgnorable = false;
    bool m_isAnythingFound = false;
};

RtfObjectParts Scanner::scan()
{
    for (RtfToken token = m_tokenizer.next(); token.kind != RtfToken::Kind::End; token = m_tokenizer.next()) {
        const bool isWord = token.kind == RtfToken::Kind::Word;
        if (token.kind == RtfToken::Kind::GroupStart) {
            ++m_depth;
            m_text.endFallback();
        } else if (token.kind == RtfToken::Kind::GroupEnd) {
            if (m_depth == 0) {
                break;
            }
            endGroup(token.offset);
        } else if (isInLeaf()) {
            leafToken(token);
        } else if (isWord) {
            word(token);
        } else if (m_resultDepth != nowhere) {
            m_text.add(token);
        }
        m_isIgnorable = isWord && token.text == "*";
    }
    if (isInLeaf()) {
        endLeaf(m_tokenizer.offset());
    }
    m_parts.text = m_text.text();
    return m_parts;
}

void Scanner::word(const RtfToken &token)
{
    if (const auto part = partOf(token.text, m_isIgnorable)) {
        begin(*part);
        return;
    }
    if (m_depth == m_objectDepth) {
        readExtent(objectExtents, token, m_parts.extent);
    }
    if (m_resultDepth != nowhere) {
        m_text.add(token);
    }
}

void Scanner::begin(Part part)
{
    const bool isInObject = m_objectDepth != nowhere;
    const bool isInResult = m_resultDepth != nowhere;
    switch (part) {
    case Part::Object:
        if (!m_isAnythingFound) {
            m_objectDepth = m_depth;
            m_parts.isPicture = false;
            m_isAnythingFound = true;
        }
        return;
    case Part::Result:
        if (isInObject && !isInResult) {
            m_resultDepth = m_depth;
        }
        return;
    case Part::Preferred: m_preferredDepth = std::min(m_preferredDepth, m_depth); return;
    case Part::ForOldReaders: m_forOldReadersDepth = std::min(m_forOldReadersDepth, m_depth); return;
    case Part::ClassName:
    case Part::Data:
        // Those of an object in an object are not the object's own.
        m_leaf = {isInObject && !isInResult ? part : Part::Skipped, m_depth, m_tokenizer.offset()};
        return;
    case Part::Picture:
        m_isAnythingFound = true;
        m_picture = {};
        [[fallthrough]];
    case Part::Skipped: m_leaf = {part, m_depth, m_tokenizer.offset()}; return;
    }
}

void Scanner::leafToken(const RtfToken &token)
{
    if (m_leaf.part == Part::Picture && m_depth == m_leaf.depth && token.kind == RtfToken::Kind::Word) {
        readExtent(pictureExtents, token, m_picture.extent);
        const auto *row = std::ranges::find(pictureWords, token.text, &PictureWord::word);
        if (row != pictureWords.end()) {
            m_picture.kind = row->kind;
            m_picture.isMetafile = row->isMetafile;
        }
    }
    if (m_leaf.part == Part::ClassName && m_parts.className.size() < maxClassLength) {
        if (token.kind == RtfToken::Kind::Text) {
            const std::string_view text = token.text.substr(0, maxClassLength);
            m_parts.className.append(text.data(), static_cast<qsizetype>(text.size()));
        } else if (token.kind == RtfToken::Kind::HexByte) {
            m_parts.className.append(static_cast<char>(token.number.value_or(0)));
        }
    }
}

void Scanner::endLeaf(std::size_t end)
{
    const std::string_view content = m_source.substr(m_leaf.start, end - m_leaf.start);
    if (m_leaf.part == Part::Picture) {
        m_picture.data = content;
        const auto place = m_forOldReadersDepth != nowhere ? RtfPicturePlace::ForOldReaders
                           : m_preferredDepth != nowhere   ? RtfPicturePlace::Preferred
                                                           : RtfPicturePlace::Plain;
        auto &picture = m_parts.pictures[static_cast<std::size_t>(place)];
        if (!picture) {
            picture = m_picture;
        }
    } else if (m_leaf.part == Part::Data && m_parts.data.empty()) {
        m_parts.data = content;
    }
    m_leaf = {};
}

void Scanner::endGroup(std::size_t offset)
{
    if (m_leaf.depth == m_depth) {
        endLeaf(offset);
    }
    for (std::size_t *start : {&m_objectDepth, &m_resultDepth, &m_preferredDepth, &m_forOldReadersDepth}) {
        if (*start == m_depth) {
            *start = nowhere;
        }
    }
    m_text.endFallback();
    --m_depth;
}

/// The values of the hexadecimal digits, -1 of everything else.
constexpr auto digitValues = [] {
    std::array<int, 256> values{};
    values.fill(-1);
    for (int digit = 0; digit < 16; ++digit) {
        values[static_cast<unsigned char>("0123456789abcdef"[digit])] = digit;
        values[static_cast<unsigned char>("0123456789ABCDEF"[digit])] = digit;
    }
    return values;
}();

/// Adds the bytes that the hexadecimal digits in \p text stand for; \p high is the
/// value of a digit whose other half is still to come, or -1.
void appendDigits(QByteArray &data, std::string_view text, int &high)
{
    const qsizetype start = data.size();
    data.resize(start + static_cast<qsizetype>(text.size() / 2) + 1);
    char *next = data.data() + start;
    for (const char c : text) {
        const int digit = digitValues[static_cast<unsigned char>(c)];
        if (digit >= 0 && high >= 0) {
            *next++ = static_cast<char>(high * 16 + digit);
            high = -1;
        } else if (digit >= 0) {
            high = digit;
        }
    }
    data.truncate(next - data.constData());
}

} // namespace

RtfObjectParts findObjectParts(std::string_view source)
{
    return Scanner(source).scan();
}

QByteArray decodeRtfData(std::string_view content)
{
    QByteArray data;
    data.reserve(static_cast<qsizetype>(content.size() / 2) + 1);
    RtfTokenizer tokenizer(content);
    std::size_t depth = 0;
    std::size_t ignoredDepth = 0; ///< 0 if none
    int high = -1;
    for (RtfToken token = tokenizer.next(); token.kind != RtfToken::Kind::End; token = tokenizer.next()) {
        if (token.kind == RtfToken::Kind::GroupStart) {
            ++depth;
        } else if (token.kind == RtfToken::Kind::GroupEnd) {
            ignoredDepth = ignoredDepth == depth ? 0 : ignoredDepth;
            depth -= depth > 0 ? 1 : 0;
        } else if (token.kind == RtfToken::Kind::Word && token.text == "*" && ignoredDepth == 0) {
            ignoredDepth = depth;
        } else if (token.kind == RtfToken::Kind::Binary && ignoredDepth == 0) {
            data.append(token.text.data(), static_cast<qsizetype>(token.text.size()));
            high = -1;
        } else if (token.kind == RtfToken::Kind::Text && depth == 0) {
            appendDigits(data, token.text, high);
        }
    }
    return data;
}
