#include "bench/support/SampleCards.h"

#include <QBuffer>
#include <QImage>

#include <array>
#include <random>
#include <string_view>

namespace {

constexpr auto parts = std::to_array<std::string_view>(
    {"cell wall", "leaf", "root", "membrane", "stem", "nucleus", "chloroplast", "flower", "seed", "bark", "pollen"});
constexpr auto substances =
    std::to_array<std::string_view>({"water", "light", "sugar", "oxygen", "starch", "carbon dioxide", "salt"});

template <class Words>
std::string wordOf(const Words &words, int card)
{
    return std::string(words.at(static_cast<std::size_t>(card) % words.size()));
}

/// What a markup puts around the words.
struct Marks
{
    const char *begin;
    const char *bold;
    const char *endBold;
    const char *color;
    const char *endColor;
    const char *newLine;
    const char *end;
};

const Marks &marksOf(Markup markup)
{
    static const Marks rtf{
        "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fnil\\fcharset0 Comic Sans MS;}}\r\n"
        "{\\colortbl ;\\red192\\green0\\blue64;}\r\n\\viewkind4\\uc1\\pard\\f0\\fs20 ",
        "\\b ",
        "\\b0 ",
        "\\cf1 ",
        "\\cf0 ",
        "\\par\r\n",
        "\\par\r\n}"};
    static const Marks html{"<p>", "<b>", "</b>", "<span style=\"color:#c00040\">", "</span>", "</p><p>", "</p>"};
    return markup == Markup::Rtf ? rtf : html;
}

std::string openText(const Marks &marks, int card, bool front)
{
    const std::string part = wordOf(parts, card);
    const std::string substance = wordOf(substances, card);
    std::string text = marks.begin + headOf(card, front).toStdString();
    if (front) {
        text += " what does the " + std::string(marks.bold) + part + marks.endBold + " of a plant do with " + substance;
        text += " while it grows?" + std::string(marks.newLine);
        text += "Name the step that " + std::string(marks.color) + "comes first" + marks.endColor + ".";
    } else {
        text += " it takes in " + std::string(marks.bold) + substance + marks.endBold + ", keeps some of it and";
        text += " passes on the rest." + std::string(marks.newLine);
        text += "First the " + std::string(marks.color) + part + marks.endColor + " opens.";
    }
    if (card % 2 == 1) {
        text += marks.newLine + std::string("A drawing of it stands on page ") + std::to_string(card % 300) + ".";
    }
    return text;
}

std::string pictureText(Markup markup, int card)
{
    return markup == Markup::Rtf ? "{\\pict\\pngblip\\picw800\\pich600\\picwgoal12000\\pichgoal9000\r\n" +
                                       pictureOf(card).toHex().toStdString() + "}"
                                 : "<img src=\"" + pictureName.toStdString() + "\">";
}

} // namespace

std::string sideText(Markup markup, int card, bool front)
{
    const Marks &marks = marksOf(markup);
    return openText(marks, card, front) + marks.end;
}

std::string sideWithPicture(Markup markup, int card, bool front)
{
    const Marks &marks = marksOf(markup);
    return openText(marks, card, front) + marks.newLine + pictureText(markup, card) + marks.end;
}

QByteArray pictureOf(int card)
{
    // As a photograph: pixels beside each other are not quite the same.
    QImage image(800, 600, QImage::Format_RGB32);
    std::mt19937 random(static_cast<unsigned>(card));
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int grain = static_cast<int>(random() % 4);
            line[x] = qRgb(40 + x / 5 + grain, 60 + y / 4 + grain, 40 + (x + y + card) / 8 % 160 + grain);
        }
    }
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return png;
}

QString headOf(int card, bool front)
{
    return QStringLiteral("%1 %2:").arg(front ? QStringLiteral("Question") : QStringLiteral("Answer")).arg(card + 1);
}
