#include "platform/rtf/RtfListTable.h"

#include "platform/rtf/RtfCodePages.h"
#include "platform/rtf/RtfLimits.h"
#include "platform/rtf/RtfTokenizer.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

// Limits that no word processor reaches; what lies beyond them is left out.
constexpr std::size_t maxLevels = 9;
constexpr qsizetype maxTextLength = 64;
constexpr int maxStart = 32'767;

constexpr int firstHighByte = 0x80; ///< not ASCII

/// Bytes of a level's text up to this one stand for the number of a level.
constexpr char16_t lastPlaceholder = 8;

RtfListStyle styleOfNumberFormat(int format)
{
    switch (format) {
    case 1: return RtfListStyle::UpperRoman;
    case 2: return RtfListStyle::LowerRoman;
    case 3: return RtfListStyle::UpperLetter;
    case 4: return RtfListStyle::LowerLetter;
    case 23: return RtfListStyle::Bullet;
    case 255: return RtfListStyle::None;
    default: return RtfListStyle::Decimal;
    }
}

/// The text of a level while it is read: the count of its characters, then as
/// many, then a semicolon.
class LevelText
{
public:
    /// False if the text has it, or has begun without it.
    [[nodiscard]] bool lacksCount() const { return !m_count && m_text.isEmpty(); }

    void setCount(int count) { m_count = count; }

    void append(char16_t character)
    {
        if (m_text.size() <= maxTextLength) { // and the semicolon
            m_text += QChar(character);
        }
    }

    [[nodiscard]] QString characters() const
    {
        QString text = m_text;
        if (text.endsWith(QLatin1Char(';'))) {
            text.chop(1);
        }
        text.truncate(std::min<qsizetype>(m_count.value_or(maxTextLength), maxTextLength));
        return text;
    }

private:
    std::optional<int> m_count;
    QString m_text;
};

/// One level of a list while it is read.
struct Level
{
    RtfListStyle style = RtfListStyle::Decimal;
    int start = 1;
    std::optional<LevelText> text; ///< once it has begun
};

bool isPlaceholder(QChar character)
{
    return character.unicode() <= lastPlaceholder;
}

RtfList listOf(const Level &level)
{
    if (level.style == RtfListStyle::None) {
        return {};
    }
    const QString text = level.text ? level.text->characters() : QString(QChar(0));
    const auto first = std::ranges::find_if(text, isPlaceholder);
    if (level.style == RtfListStyle::Bullet || first == text.end()) {
        return {text.isEmpty() ? RtfListStyle::None : RtfListStyle::Bullet, 1, {}, {}};
    }
    const auto afterLast = std::find_if(text.rbegin(), text.rend(), isPlaceholder).base();
    return {level.style, level.start, text.left(first - text.begin()), text.mid(afterLast - text.begin())};
}

/// What the groups of the tables are, each before what stands in it.
enum class Scope : std::uint8_t { List, Level, Text, Override, OverrideLevel };
constexpr int scopes = 5;

/// Goes through a table and calls for what stands in it. Which groups are open
/// is known by the depth that each began at, so that nothing grows with the depth.
class TableReader
{
public:
    explicit TableReader(std::string_view group)
        : m_tokenizer(group)
    {
    }
    TableReader(const TableReader &) = delete;
    TableReader &operator=(const TableReader &) = delete;

    void read()
    {
        RtfToken token;
        do {
            token = m_tokenizer.next();
            readToken(token);
        } while (token.kind != RtfToken::Kind::End && (token.kind != RtfToken::Kind::GroupEnd || m_depth > 0));
        m_depth = 0;
        closeScopes();
    }

protected:
    virtual ~TableReader() = default;

    virtual void begin(Scope scope) = 0;
    virtual void end(Scope scope) = 0;
    virtual void number(std::string_view word, int value) = 0;
    /// A byte of a text, in code page 1252. Only an escaped one may be a number,
    /// or one that is no character.
    virtual void byte(int value, bool isEscaped) = 0;
    virtual void character(char16_t character) = 0;

    [[nodiscard]] bool isIn(Scope scope) const { return m_beganAt[index(scope)] > 0; }

private:
    [[nodiscard]] static std::size_t index(Scope scope) { return static_cast<std::size_t>(scope); }

    void readToken(const RtfToken &token)
    {
        switch (token.kind) {
        case RtfToken::Kind::GroupStart:
            ++m_depth;
            m_toSkip = 0;
            break;
        case RtfToken::Kind::GroupEnd:
            --m_depth;
            m_toSkip = 0;
            closeScopes();
            break;
        case RtfToken::Kind::Word: readWord(token); break;
        case RtfToken::Kind::Text:
            for (const char c : token.text) {
                readByte(static_cast<unsigned char>(c), false);
            }
            break;
        case RtfToken::Kind::HexByte: readByte(*token.number, true); break;
        case RtfToken::Kind::Binary:
        case RtfToken::Kind::End: break;
        }
    }

    void readWord(const RtfToken &token)
    {
        constexpr auto words = std::to_array<std::pair<std::string_view, Scope>>({
            {"list", Scope::List},
            {"listlevel", Scope::Level},
            {"leveltext", Scope::Text},
            {"listoverride", Scope::Override},
            {"lfolevel", Scope::OverrideLevel},
        });
        const auto scope = std::ranges::find(words, token.text, &std::pair<std::string_view, Scope>::first);
        if (scope != words.end()) {
            open(scope->second);
        } else if (token.text == "u" && token.number) {
            character(static_cast<char16_t>(*token.number));
            m_toSkip = m_fallbackLength;
        } else if (token.text == "uc") {
            m_fallbackLength = std::max(0, token.number.value_or(1));
        } else if (const RtfControlWord *row = findRtfControlWord(token.text);
                   row != nullptr && row->effect == RtfEffect::Character) {
            character(static_cast<char16_t>(row->value));
        } else if (token.number) {
            number(token.text, *token.number);
        }
    }

    void readByte(int value, bool isEscaped)
    {
        if (m_toSkip > 0) {
            --m_toSkip;
        } else {
            byte(value, isEscaped);
        }
    }

    /// A group begins where none of its kind is open, nor one that stands in such.
    void open(Scope scope)
    {
        const auto isOpen = [](int beganAt) { return beganAt > 0; };
        if (m_depth > 0 && std::none_of(m_beganAt.begin() + static_cast<int>(scope), m_beganAt.end(), isOpen)) {
            m_beganAt[index(scope)] = m_depth;
            begin(scope);
        }
    }

    /// From the innermost on.
    void closeScopes()
    {
        for (int i = scopes - 1; i >= 0; --i) {
            int &beganAt = m_beganAt[static_cast<std::size_t>(i)];
            if (beganAt > 0 && beganAt > m_depth) {
                beganAt = 0;
                end(static_cast<Scope>(i));
            }
        }
    }

    RtfTokenizer m_tokenizer;
    int m_depth = 0;
    std::array<int, scopes> m_beganAt{}; ///< 0: not open
    int m_fallbackLength = 1;
    int m_toSkip = 0; ///< characters that stand for the last \u
};

/// The lists of a table, each given to \p Take with its number when it ends.
template <typename Take>
class ListReader final : public TableReader
{
public:
    ListReader(std::string_view group, Take take)
        : TableReader(group)
        , m_take(std::move(take))
    {
    }

private:
    void begin(Scope scope) override
    {
        if (scope == Scope::List) {
            m_id.reset();
            m_levels.clear();
        } else if (scope == Scope::Level) {
            m_level = {};
        } else if (scope == Scope::Text) {
            m_level.text.emplace();
        }
    }

    void end(Scope scope) override
    {
        if (scope == Scope::Level && isIn(Scope::List) && m_levels.size() < maxLevels) {
            m_levels.push_back(listOf(m_level));
        } else if (scope == Scope::List && m_id) {
            m_take(*m_id, std::move(m_levels));
            m_levels = {};
        }
    }

    void number(std::string_view word, int value) override
    {
        if (word == "listid") {
            m_id = value;
        } else if (word == "levelnfc" || word == "levelnfcn") {
            m_level.style = styleOfNumberFormat(value);
        } else if (word == "levelstartat") {
            m_level.start = std::clamp(value, 0, maxStart);
        }
    }

    void byte(int value, bool isEscaped) override
    {
        if (!isIn(Scope::Text)) {
            return;
        }
        const bool mayBeCount = isEscaped ? value < firstHighByte : value < u' ';
        if (mayBeCount && m_level.text->lacksCount()) {
            m_level.text->setCount(value);
        } else if (value < firstHighByte) {
            m_level.text->append(static_cast<char16_t>(value));
        } else {
            const char high = static_cast<char>(value);
            for (const QChar decoded : m_page.decode({&high, 1})) {
                m_level.text->append(decoded.unicode());
            }
        }
    }

    void character(char16_t character) override
    {
        if (isIn(Scope::Text) && character >= u' ') {
            m_level.text->append(character);
        }
    }

    Take m_take;
    const RtfCodePage m_page{defaultCodePage};
    std::optional<int> m_id;
    std::vector<RtfList> m_levels;
    Level m_level;
};

/// The overrides of a table: each list that paragraphs name, by the list that it
/// is and where its levels start.
template <typename Take>
class OverrideReader final : public TableReader
{
public:
    OverrideReader(std::string_view group, Take take)
        : TableReader(group)
        , m_take(std::move(take))
    {
    }

private:
    void begin(Scope scope) override
    {
        if (scope == Scope::Override) {
            m_list.reset();
            m_number.reset();
            m_starts.clear();
            m_levels = 0;
        } else if (scope == Scope::OverrideLevel && m_levels <= maxLevels) {
            ++m_levels;
        }
    }

    void end(Scope scope) override
    {
        if (scope == Scope::Override && m_list && m_number) {
            m_take(*m_number, *m_list, std::move(m_starts));
            m_starts = {};
        }
    }

    void number(std::string_view word, int value) override
    {
        if (word == "listid") {
            m_list = value;
        } else if (word == "ls") {
            m_number = value;
        } else if (word == "levelstartat" && isIn(Scope::OverrideLevel) && m_levels > 0 && m_levels <= maxLevels) {
            m_starts.resize(m_levels);
            m_starts.back() = std::clamp(value, 0, maxStart);
        }
    }

    void byte(int /*value*/, bool /*isEscaped*/) override {}
    void character(char16_t /*character*/) override {}

    Take m_take;
    std::optional<int> m_list;
    std::optional<int> m_number;
    std::vector<std::optional<int>> m_starts;
    std::size_t m_levels = 0; ///< begun so far
};

/// Whether \p map has room for \p key.
bool hasRoom(const auto &map, int key)
{
    return map.size() < maxRtfLists || map.contains(key);
}

} // namespace

void RtfListTable::readLists(std::string_view group)
{
    const auto take = [this](int id, Levels levels) {
        if (hasRoom(m_lists, id)) {
            m_lists[id] = std::move(levels);
        }
    };
    ListReader(group, take).read();
}

void RtfListTable::readOverrides(std::string_view group)
{
    const auto take = [this](int number, int list, std::vector<std::optional<int>> starts) {
        if (hasRoom(m_overrides, number)) {
            m_overrides[number] = {list, std::move(starts)};
        }
    };
    OverrideReader(group, take).read();
}

std::optional<RtfList> RtfListTable::find(int number, int level) const
{
    const auto entry = m_overrides.find(number);
    if (entry == m_overrides.end()) {
        return std::nullopt;
    }
    const auto list = m_lists.find(entry->second.list);
    if (list == m_lists.end() || list->second.empty()) {
        return std::nullopt;
    }
    const auto last = static_cast<int>(list->second.size()) - 1;
    const auto place = static_cast<std::size_t>(std::clamp(level, 0, last));
    RtfList found = list->second[place];
    const auto &starts = entry->second.starts;
    const bool counts = found.style != RtfListStyle::None && found.style != RtfListStyle::Bullet;
    if (counts && place < starts.size() && starts[place]) {
        found.start = *starts[place];
    }
    return found;
}
