#include "platform/rtf/OleObject.h"

#include "platform/rtf/RtfCodePages.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <iterator>

namespace {

constexpr std::uint32_t oleVersion = 0x0501;
constexpr std::uint32_t noPresentation = 0;
constexpr std::uint32_t linkedObject = 1;
constexpr std::uint32_t embeddedObject = 2;
constexpr std::uint32_t somePresentation = 5;

constexpr std::uint16_t packageSignature = 2;
constexpr std::uint16_t embeddedFile = 3;

constexpr qsizetype maxNameLength = 255;
constexpr qsizetype maxFileNameBytes = 200; ///< of its UTF-8 form; file systems allow some more
constexpr qsizetype maxEndingLength = 20;

/// Takes numbers and bytes from the front of a stream. What is not all there is
/// 0, or as much as is left.
class ByteReader
{
public:
    explicit ByteReader(std::string_view bytes)
        : m_rest(bytes)
    {
    }

    std::uint16_t u16() { return number<std::uint16_t>(); }
    std::uint32_t u32() { return number<std::uint32_t>(); }

    std::string_view take(std::size_t count)
    {
        const std::string_view taken = m_rest.substr(0, count);
        m_rest.remove_prefix(taken.size());
        return taken;
    }

    /// The bytes that a length stands before.
    std::string_view block() { return take(u32()); }

    /// The bytes up to a NUL, which is taken too; nothing if there is none.
    std::optional<std::string_view> untilNul()
    {
        const std::size_t nul = m_rest.find('\0');
        if (nul == std::string_view::npos) {
            return std::nullopt;
        }
        const std::string_view taken = take(nul);
        take(1);
        return taken;
    }

    [[nodiscard]] std::size_t size() const { return m_rest.size(); }

private:
    template <typename Number>
    Number number()
    {
        const std::string_view bytes = take(sizeof(Number));
        return bytes.size() == sizeof(Number) ? qFromLittleEndian<Number>(bytes.data()) : Number{0};
    }

    std::string_view m_rest;
};

void append16(QByteArray &out, std::uint16_t number)
{
    std::array<char, sizeof(number)> bytes{};
    qToLittleEndian(number, bytes.data());
    out.append(bytes.data(), bytes.size());
}

void append32(QByteArray &out, std::uint32_t number)
{
    std::array<char, sizeof(number)> bytes{};
    qToLittleEndian(number, bytes.data());
    out.append(bytes.data(), bytes.size());
}

void appendBlock(QByteArray &out, const QByteArray &bytes)
{
    append32(out, static_cast<std::uint32_t>(bytes.size()));
    out.append(bytes);
}

constexpr std::array<QChar::Category, 4> invisibleCategories = {QChar::Other_Control, QChar::Other_Format,
                                                                QChar::Separator_Line, QChar::Separator_Paragraph};

/// \p text without characters that cannot be seen, above all without those that
/// turn the direction of what follows them.
QString visible(const QString &text)
{
    QString result;
    const QList<uint> characters = text.toUcs4();
    for (const char32_t character : characters) {
        const auto category = QChar::category(character);
        if (std::ranges::find(invisibleCategories, category) == invisibleCategories.end()) {
            result += QStringView(QChar::fromUcs4(character));
        }
    }
    return result;
}

QString fromAnsi(std::string_view bytes)
{
    static const RtfCodePage western(defaultCodePage);
    return western.decode(bytes.substr(0, bytes.find('\0')));
}

QString fromUtf16(std::string_view bytes)
{
    QString text(static_cast<qsizetype>(bytes.size() / 2), Qt::Uninitialized);
    qFromLittleEndian<char16_t>(bytes.data(), text.size(), text.data());
    const qsizetype nul = text.indexOf(QChar(QChar::Null));
    return nul < 0 ? text : text.left(nul);
}

/// With a question mark for each character that there is no byte for.
QByteArray toAnsi(const QString &text)
{
    const RtfCodePage western(defaultCodePage);
    QByteArray bytes;
    const QList<uint> characters = text.toUcs4();
    for (const char32_t character : characters) {
        const QByteArray encoded = western.encode(character);
        bytes += encoded.isEmpty() ? QByteArrayLiteral("?") : encoded;
    }
    return bytes;
}

QByteArray toUtf16(const QString &text)
{
    QByteArray bytes(text.size() * 2, Qt::Uninitialized);
    qToLittleEndian<char16_t>(text.data(), text.size(), bytes.data());
    return bytes;
}

QString label(const QString &text)
{
    return visible(text).simplified().left(maxNameLength);
}

/// \p name cut to what a file system takes, with its ending kept.
QString shortened(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const bool hasEnding = dot > 0 && name.size() - dot <= maxEndingLength;
    const QString ending = hasEnding ? name.mid(dot) : QString();
    QString base = name.left(name.size() - ending.size()).left(maxFileNameBytes);
    while (!base.isEmpty() && base.toUtf8().size() + ending.toUtf8().size() > maxFileNameBytes) {
        base.chop(base.size() >= 2 && base.back().isLowSurrogate() ? 2 : 1);
    }
    return base + ending;
}

/// The last part of the path \p path as a name that a file can have anywhere.
QString safeFileName(const QString &path)
{
    const qsizetype separator = std::max(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\')));
    QString name;
    const QString characters = visible(path.mid(separator + 1));
    for (const QChar character : characters) {
        if (character == QLatin1Char('?')) {
            name += QLatin1Char('_'); // it stands for a letter that the name once had
        } else if (!QStringLiteral("\"*:<>|").contains(character)) {
            name += character;
        }
    }
    name = name.simplified();
    const auto isEdge = [](QChar character) { return character == QLatin1Char('.') || character.isSpace(); };
    const auto start = std::find_if_not(name.cbegin(), name.cend(), isEdge);
    const auto end = std::find_if_not(name.crbegin(), std::make_reverse_iterator(start), isEdge).base();
    return shortened(name.mid(start - name.cbegin(), end - start));
}

OlePresentation::Kind presentationKind(std::string_view className)
{
    if (className == "METAFILEPICT") {
        return OlePresentation::Kind::Metafile;
    }
    if (className == "BITMAP") {
        return OlePresentation::Kind::Bitmap;
    }
    return className == "DIB" ? OlePresentation::Kind::Dib : OlePresentation::Kind::Other;
}

OlePresentation readPresentation(ByteReader &stream)
{
    stream.u32(); // version
    if (stream.u32() != somePresentation) {
        return {};
    }
    const std::string_view className = stream.block();
    OlePresentation presentation;
    presentation.kind = presentationKind(className.substr(0, className.find('\0')));
    if (presentation.kind == OlePresentation::Kind::Other) {
        return presentation;
    }
    stream.take(8); // width and height
    presentation.data = stream.block();
    if (presentation.kind == OlePresentation::Kind::Metafile) {
        constexpr std::size_t mappingSize = 8;
        presentation.data.remove_prefix(std::min(mappingSize, presentation.data.size()));
    }
    return presentation;
}

/// The names that a package has, each of which may be empty.
struct PackageNames
{
    QString label;
    QString sourcePath;
    QString temporaryPath;
};

/// Puts the names that follow the file in UTF-16, if they do, in the place of \p names.
void readWideNames(ByteReader rest, PackageNames &names)
{
    std::array<QString, 3> wide;
    for (QString &name : wide) {
        const std::size_t size = std::size_t{rest.u32()} * 2;
        if (size > rest.size()) {
            return;
        }
        name = fromUtf16(rest.take(size));
    }
    const std::array<QString *, 3> places = {&names.temporaryPath, &names.label, &names.sourcePath};
    for (std::size_t index = 0; index < wide.size(); ++index) {
        if (!wide[index].isEmpty()) {
            *places[index] = wide[index];
        }
    }
}

/// The name of the file: the first of its names that leaves one.
QString fileNameOf(const PackageNames &names)
{
    for (const QString &path : {names.sourcePath, names.label, names.temporaryPath}) {
        if (QString name = safeFileName(path); !name.isEmpty()) {
            return name;
        }
    }
    return {};
}

QByteArray packageOf(const QString &name, const QByteArray &data)
{
    const QByteArray ansi = toAnsi(name) + '\0';
    QByteArray native;
    append16(native, packageSignature);
    native += ansi; // label
    native += ansi; // source path
    append16(native, 0);
    append16(native, embeddedFile);
    appendBlock(native, ansi); // temporary path
    appendBlock(native, data);
    for (int copy = 0; copy < 3; ++copy) {
        append32(native, static_cast<std::uint32_t>(name.size()));
        native += toUtf16(name);
    }
    return native;
}

} // namespace

std::optional<OleObject> readOleObject(std::string_view data)
{
    ByteReader stream(data);
    stream.u32(); // version; programs write what they like
    const std::uint32_t format = stream.u32();
    if (format != linkedObject && format != embeddedObject) {
        return std::nullopt;
    }
    OleObject object;
    object.isLinked = format == linkedObject;
    object.className = label(fromAnsi(stream.block().substr(0, maxNameLength)));
    const std::string_view topic = stream.block();
    stream.block(); // item
    if (object.isLinked) {
        const std::string_view networkName = stream.block();
        object.linkedFile = visible(fromAnsi(topic.empty() ? networkName : topic));
        stream.take(8); // reserved, how it is updated
    } else {
        object.native = stream.block();
    }
    object.presentation = readPresentation(stream);
    return object;
}

std::optional<OlePackage> readOlePackage(std::string_view native)
{
    ByteReader stream(native);
    if (stream.u16() != packageSignature) {
        return std::nullopt;
    }
    const auto ansiLabel = stream.untilNul();
    const auto sourcePath = stream.untilNul();
    if (!ansiLabel || !sourcePath || stream.size() < 4) {
        return std::nullopt;
    }
    stream.u16();
    const bool holdsFile = stream.u16() == embeddedFile;

    OlePackage package;
    PackageNames names{fromAnsi(*ansiLabel), fromAnsi(*sourcePath), {}};
    if (holdsFile) {
        names.temporaryPath = fromAnsi(stream.block());
        package.data = stream.block();
        readWideNames(stream, names);
    }
    package.label = label(names.label);
    package.fileName = fileNameOf(names);
    return package;
}

QByteArray writeOlePackage(const QString &fileName, const QByteArray &data)
{
    QByteArray stream;
    append32(stream, oleVersion);
    append32(stream, embeddedObject);
    appendBlock(stream, QByteArray(packageClassName.data(), packageClassName.size()) + '\0');
    append32(stream, 0); // topic
    append32(stream, 0); // item
    appendBlock(stream, packageOf(safeFileName(fileName), data));
    append32(stream, oleVersion);
    append32(stream, noPresentation);
    return stream;
}
