#include "bench/support/RtfSamples.h"

#include <array>
#include <random>
#include <string_view>

namespace {

constexpr int fonts = 8;
constexpr int colors = 8;

constexpr auto words = std::to_array<std::string_view>(
    {"the",  "of",    "and",   "cell",  "wall",  "membrane", "energy", "light", "water",  "reaction", "sugar", "from",
     "into", "first", "every", "plant", "which", "because",  "enzyme", "gives", "oxygen", "carbon",   "is",    "a"});

/// A generator whose numbers are the same on every machine.
class Dice
{
public:
    explicit Dice(unsigned seed)
        : m_engine(seed)
    {
    }

    int below(int end) { return static_cast<int>(m_engine() % static_cast<unsigned>(end)); }
    bool oneIn(int chances) { return below(chances) == 0; }

private:
    std::mt19937 m_engine;
};

std::string number(int value)
{
    return std::to_string(value);
}

std::string head()
{
    std::string text = "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl";
    for (int font = 0; font < fonts; ++font) {
        text += "{\\f" + number(font) + "\\fnil\\fcharset0 Face " + number(font) + ";}";
    }
    text += "}\r\n{\\colortbl ;";
    for (int color = 1; color < colors; ++color) {
        text +=
            "\\red" + number(color * 30) + "\\green" + number(255 - color * 30) + "\\blue" + number(color * 7) + ";";
    }
    return text + "}\r\n\\viewkind4\\uc1\\pard\\f0\\fs20 ";
}

/// Writes runs so that each differs from the one before.
class RunWriter
{
public:
    RunWriter(std::string &text, Dice &dice)
        : m_text(text)
        , m_dice(dice)
    {
    }

    void run(int length)
    {
        changeFormat();
        const std::size_t end = m_text.size() + static_cast<std::size_t>(length);
        while (m_text.size() < end) {
            piece();
        }
    }

private:
    void changeFormat()
    {
        switch (m_dice.below(8)) {
        case 0:
        case 1: toggle(m_bold, "\\b"); break;
        case 2: toggle(m_italic, "\\i"); break;
        case 3: toggle(m_underline, "\\ul"); break;
        case 4:
            m_size = other(m_size, 6);
            m_text += "\\fs" + number(18 + 2 * m_size) + " ";
            break;
        case 5:
            m_font = other(m_font, fonts);
            m_text += "\\f" + number(m_font) + " ";
            break;
        default:
            m_color = other(m_color, colors);
            m_text += "\\cf" + number(m_color) + " ";
            break;
        }
    }

    void toggle(bool &state, std::string_view word)
    {
        state = !state;
        m_text += word;
        m_text += state ? " " : "0 ";
    }

    int other(int value, int end) { return (value + 1 + m_dice.below(end - 1)) % end; }

    void piece()
    {
        if (m_dice.oneIn(60)) {
            m_text += "\\'e9 ";
        } else if (m_dice.oneIn(80)) {
            m_text += "\\u945? ";
        } else if (m_dice.oneIn(80)) {
            m_text += "\\tab ";
        } else if (m_dice.oneIn(120)) {
            m_text += "\\bullet ";
        } else {
            m_text += words[static_cast<std::size_t>(m_dice.below(static_cast<int>(words.size())))];
            m_text += ' ';
        }
    }

    std::string &m_text;
    Dice &m_dice;
    bool m_bold = false;
    bool m_italic = false;
    bool m_underline = false;
    int m_size = 1;
    int m_font = 0;
    int m_color = 0;
};

/// Writes how the next paragraph stands, where it stands otherwise than the last.
class ParagraphWriter
{
public:
    ParagraphWriter(std::string &text, Dice &dice)
        : m_text(text)
        , m_dice(dice)
    {
    }

    void begin()
    {
        if (m_itemsLeft > 0) {
            --m_itemsLeft;
            m_text += "{\\pntext\\'b7\\tab}";
        } else if (m_dice.oneIn(12)) {
            m_itemsLeft = 3 + m_dice.below(5);
            m_text += "\\pard{\\pntext\\'b7\\tab}{\\*\\pn\\pnlvlblt\\pnf1\\pnindent0{\\pntxtb\\'B7}}\\fi-200\\li200 ";
        } else if (m_dice.oneIn(4)) {
            m_text += "\\pard";
            m_text += alignments[static_cast<std::size_t>(m_dice.below(static_cast<int>(alignments.size())))];
            m_text += "\\li" + number(m_dice.below(4) * 360) + "\\sa" + number(m_dice.below(3) * 60);
            m_text += m_dice.oneIn(3) ? "\\tx1440\\tx2880 " : " ";
        }
    }

    void end() { m_text += "\\par\r\n"; }

private:
    static constexpr auto alignments = std::to_array<std::string_view>({"", "\\qc", "\\qr", ""});

    std::string &m_text;
    Dice &m_dice;
    int m_itemsLeft = 0; ///< of a list
};

std::string cardBody(int card, Dice &dice)
{
    std::string text = "Card " + number(card) + ": ";
    for (int left = 3; left > 0; --left) {
        const bool bold = dice.oneIn(2);
        text += bold ? "\\b " : "\\cf1 ";
        for (int more = 5; more > 0; --more) {
            text += words[static_cast<std::size_t>(dice.below(static_cast<int>(words.size())))];
            text += ' ';
        }
        text += bold ? "\\b0 " : "\\cf0 ";
        text += dice.oneIn(3) ? "\\par\r\n" : "";
    }
    return text + "\\par\r\n";
}

std::string repeated(std::string_view head, std::string_view unit, std::string_view tail, std::size_t bytes)
{
    std::string text(head);
    text.reserve(bytes + unit.size() + tail.size());
    while (text.size() < bytes) {
        text += unit;
    }
    return text += tail;
}

template <typename Unit>
std::string numbered(std::string_view head, std::string_view tail, std::size_t bytes, const Unit &unit)
{
    std::string text(head);
    text.reserve(bytes + 200 + tail.size());
    for (int i = 1; text.size() < bytes; ++i) {
        text += unit(number(i));
    }
    return text += tail;
}

constexpr auto hostile = std::to_array<HostileKind>({
    {"groups in groups", [](std::size_t bytes) { return repeated("{\\rtf1 ", "{\\b ", "x", bytes); }},
    {"groups, each with a letter", [](std::size_t bytes) { return repeated("{\\rtf1 ", "{\\i x}", "}", bytes); }},
    {"fonts",
     [](std::size_t bytes) {
         return numbered("{\\rtf1{\\fonttbl", "}\\f9 x}", bytes,
                         [](const std::string &i) { return "{\\f" + i + " F" + i + ";}"; });
     }},
    {"fonts, all used",
     [](std::size_t bytes) {
         return numbered("{\\rtf1", "}", bytes,
                         [](const std::string &i) { return "{\\fonttbl{\\f" + i + " F" + i + ";}}\\f" + i + " x"; });
     }},
    {"colours", [](std::size_t bytes) { return repeated("{\\rtf1{\\colortbl", ";", "}\\cf9 x}", bytes); }},
    {"sizes, all used",
     [](std::size_t bytes) {
         return numbered("{\\rtf1", "}", bytes, [](const std::string &i) { return "\\fs" + i + " x"; });
     }},
    {"lists, one a paragraph",
     [](std::size_t bytes) {
         return numbered("{\\rtf1", "}", bytes, [](const std::string &i) {
             return "\\pard{\\*\\pn\\pnlvlbody\\pndec\\pnstart" + i + "{\\pntxta.}}x\\par";
         });
     }},
    {"definitions of lists",
     [](std::size_t bytes) {
         return numbered("{\\rtf1{\\*\\listtable", "}\\ls1 x}", bytes, [](const std::string &i) {
             return "{\\list{\\listlevel\\levelnfc0{\\leveltext\\'02\\'00.;}}\\listid" + i + "}";
         });
     }},
    {"tab stops",
     [](std::size_t bytes) {
         return numbered("{\\rtf1", "x\\par y\\par}", bytes, [](const std::string &i) { return "\\tx" + i; });
     }},
    {"paragraphs", [](std::size_t bytes) { return repeated("{\\rtf1 ", "\\par", "}", bytes); }},
    {"cells", [](std::size_t bytes) { return repeated("{\\rtf1 ", "\\trowd\\cellx9\\intbl\\cell\\row", "}", bytes); }},
    {"cells of one row",
     [](std::size_t bytes) { return repeated("{\\rtf1\\trowd", "\\cellx9", "\\intbl x\\cell\\row}", bytes); }},
    {"a picture",
     [](std::size_t bytes) {
         return repeated("{\\rtf1{\\pict\\pngblip\\picw9\\pich9 89504e470d0a1a0a", "0123456789abcdef", "}x}", bytes);
     }},
    {"pictures", [](std::size_t bytes) { return repeated("{\\rtf1 ", "{\\pict\\pngblip 89504e47}", "}", bytes); }},
});

} // namespace

std::string longNotes(std::size_t bytes)
{
    Dice dice(1);
    std::string text = head();
    text.reserve(bytes + 2000);
    RunWriter runs(text, dice);
    ParagraphWriter paragraphs(text, dice);
    while (text.size() < bytes) {
        paragraphs.begin();
        for (int left = 10 + dice.below(15); left > 0; --left) {
            runs.run(10 + dice.below(26));
        }
        paragraphs.end();
    }
    return text += "}\r\n";
}

std::vector<std::string> cardSides(int count)
{
    Dice dice(2);
    std::vector<std::string> sides;
    sides.reserve(static_cast<std::size_t>(count));
    for (int card = 0; card < count; ++card) {
        const std::string font = number(dice.below(fonts));
        sides.push_back("{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fnil\\fcharset0 Face " + font +
                        ";}}\r\n{\\colortbl ;\\red255\\green0\\blue0;}\r\n\\viewkind4\\uc1\\pard\\f0\\fs20 " +
                        cardBody(card, dice) + "}\r\n");
    }
    return sides;
}

std::string cardsInOneText(int count)
{
    Dice dice(2);
    std::string text = head();
    for (int card = 0; card < count; ++card) {
        text += cardBody(card, dice);
    }
    return text += "}\r\n";
}

std::span<const HostileKind> hostileKinds()
{
    return hostile;
}
