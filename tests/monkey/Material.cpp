#include "tests/monkey/Material.h"

#include "tests/support/Pictures.h"

#include <QMimeData>

namespace {

/// All of a literal, zeros too.
template <std::size_t N>
QByteArray bytes(const char (&literal)[N])
{
    return {literal, static_cast<qsizetype>(N) - 1};
}

} // namespace

const std::array<QString, 12> &sayings()
{
    static const std::array<QString, 12> all{
        QStringLiteral("What is it?"),
        QStringLiteral("- one\n- two\n"),
        QStringLiteral("a\tb"),
        QStringLiteral("words.txt"),
        QStringLiteral("red.png"),
        QStringLiteral("New one"),
        QStringLiteral("Odd Things.crl"),
        QStringLiteral("{\\rtf1 x}"),
        QStringLiteral("\u00c4\u00f6\u00df \u05e9\u05dc\u05d5\u05dd \u4f60\u597d"),
        QString::fromUtf8("\xf0\x9f\x98\x80 e\xcc\x81"),
        QStringLiteral("12345678901234567890"),
        QStringLiteral("  "),
    };
    return all;
}

QMimeData *someContents(Random &random, QString &what)
{
    struct Kind
    {
        const char *format;
        QByteArray bytes;
    };
    static const std::array kinds{
        Kind{"text/plain", "Plain text\nof two lines"},
        Kind{"text/plain", bytes("nul\0inside")},
        Kind{"text/plain", QByteArray(20'000, 'x')},
        Kind{"text/rtf", R"({\rtf1\ansi {\b bold} and \cf3\fs40 large\par\pard\bullet\tab item})"},
        Kind{"text/rtf", R"({\rtf1{\pict\pngblip 89504e47}{\object\objemb{\*\objdata 01050000)"},
        Kind{"text/rtf", bytes("\xff\xfe{\\rtf1 \\u-1? \\bin99 x")},
        Kind{"text/html", "<h1>Head</h1><ul><li>one<ol><li>two</ol></ul><table><tr><td>a<td>b</table>"},
        Kind{"text/html", "<p style='color:#fff;font-size:90pt'><a href='https:x'>link<b><i>deep"},
        Kind{"text/html", bytes("<<<\0&#x110000;&bogus;<td><tr><li></p>")},
        Kind{"text/uri-list", "file:red.png\r\nfile:words.txt\r\n"},
        Kind{"application/x-unknown", "\x01\x02\x03"},
        Kind{"image/png", "no picture"},
    };
    auto *contents = new QMimeData;
    const int picked = random.below(static_cast<int>(kinds.size()) + 2);
    if (picked >= static_cast<int>(kinds.size())) {
        what = QStringLiteral("picture");
        contents->setImageData(redPicture(picked % 2 == 0 ? QSize(3, 2) : QSize(1500, 1000)));
        return contents;
    }
    const Kind &kind = kinds.at(static_cast<std::size_t>(picked));
    what = QStringLiteral("%1 %2").arg(picked).arg(QString::fromLatin1(kind.format));
    contents->setData(QString::fromLatin1(kind.format), kind.bytes);
    return contents;
}
