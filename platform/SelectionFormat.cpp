#include "platform/SelectionFormat.h"

#include "platform/rtf/RtfFormats.h"
#include "platform/rtf/RtfObjectFormat.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace {

/// Whoever joins a list makes a document look at all of it. Nobody sees where
/// bullets go on in another one.
constexpr int shortList = 64;

constexpr double halfPointsPerPoint = 2;

/// The characters and paragraphs of a selection.
struct Reach
{
    explicit Reach(const QTextCursor &cursor)
        : start(cursor.selectionStart())
        , end(cursor.selectionEnd())
        , first(cursor.document()->findBlock(start))
        , last(cursor.document()->findBlock(end))
    {
        // A selection that ends where a paragraph begins does not touch it, but
        // that of everything takes in an empty paragraph at the end.
        const bool isEverything = start == 0 && end == cursor.document()->characterCount() - 1;
        if (last != first && end == last.position() && !isEverything) {
            last = last.previous();
        }
    }

    int start;
    int end;
    QTextBlock first;
    QTextBlock last; ///< it is reached too
};

int endOf(const QTextBlock &block)
{
    return block.position() + block.length() - 1;
}

/// Whether the mark of \p block is changed along: all of the paragraph is reached, or the mark alone.
bool reachesMark(const Reach &reach, const QTextBlock &block)
{
    const bool fromStart = reach.start <= block.position() || reach.start == endOf(block);
    return fromStart && reach.end >= endOf(block);
}

template <class Act>
void forEachBlock(const Reach &reach, Act act)
{
    const QTextBlock behind = reach.last.next();
    for (QTextBlock block = reach.first; block.isValid() && block != behind; block = block.next()) {
        act(block);
    }
}

/// Calls \p act with the fragments of \p block that are reached, until it says false.
template <class Act>
bool everyFragment(const Reach &reach, const QTextBlock &block, Act act)
{
    for (auto at = block.begin(); !at.atEnd(); ++at) {
        const QTextFragment fragment = at.fragment();
        if (fragment.position() >= reach.end) {
            break;
        }
        if (fragment.position() + fragment.length() > reach.start && !act(fragment)) {
            return false;
        }
    }
    return true;
}

/// Values that are one as long as they are all the same.
template <class Value>
class Common
{
public:
    void add(const Value &value)
    {
        m_isMixed = m_isMixed || (m_value && *m_value != value);
        m_value = value;
    }
    [[nodiscard]] bool isEmpty() const { return !m_value; }
    [[nodiscard]] bool isMixed() const { return m_isMixed; }
    [[nodiscard]] std::optional<Value> value() const { return m_isMixed ? std::nullopt : m_value; }

private:
    std::optional<Value> m_value;
    bool m_isMixed = false;
};

/// What \p read makes of the formats of the selected text; without text of those
/// of the pictures and objects, and without these of the paragraphs' marks.
template <class Read>
auto commonOfCharacters(const QTextCursor &cursor, Read read)
{
    using Value = decltype(read(QTextCharFormat()));
    if (!cursor.hasSelection()) {
        return std::optional<Value>(read(cursor.charFormat()));
    }

    const Reach reach(cursor);
    Common<Value> texts;
    Common<Value> objects;
    std::unordered_set<int> known;
    const auto readFragment = [&](const QTextFragment &fragment) {
        if (known.insert(fragment.charFormatIndex()).second) {
            const QTextCharFormat format = fragment.charFormat();
            (format.objectType() == rtfObjectType ? objects : texts).add(read(format));
        }
        return !texts.isMixed();
    };
    const QTextBlock behind = reach.last.next();
    for (QTextBlock block = reach.first; block != behind; block = block.next()) {
        if (!everyFragment(reach, block, readFragment)) {
            return std::optional<Value>();
        }
    }
    if (!texts.isEmpty()) {
        return texts.value();
    }
    if (!objects.isEmpty()) {
        return objects.value();
    }
    Common<Value> marks;
    forEachBlock(reach, [&](const QTextBlock &block) {
        if (known.insert(block.charFormatIndex()).second) {
            marks.add(read(block.charFormat()));
        }
    });
    return marks.value();
}

/// The same of the format of the paragraphs.
template <class Read>
auto commonOfParagraphs(const QTextCursor &cursor, Read read)
{
    using Value = decltype(read(RtfParagraph()));
    const Reach reach(cursor);
    const RtfUnits units(*cursor.document());
    const QTextBlock behind = reach.last.next();
    Common<Value> values;
    int known = -1;
    for (QTextBlock block = reach.first; block != behind && !values.isMixed(); block = block.next()) {
        if (block.blockFormatIndex() != known) {
            known = block.blockFormatIndex();
            values.add(read(paragraphOf(block, units)));
        }
    }
    return values.value();
}

template <class Read>
auto commonOfRtf(const QTextCursor &cursor, Read read)
{
    const QTextDocument &document = *cursor.document();
    return commonOfCharacters(
        cursor, [&read, fallback = document.defaultFont(), units = RtfUnits(document)](const QTextCharFormat &format) {
            return read(characterOf(format, fallback, units));
        });
}

/// What would be typed behind a picture or object is none.
QTextCharFormat formatAtCaret(const QTextCursor &cursor)
{
    QTextCharFormat format = cursor.charFormat();
    for (const int property : {QTextFormat::ObjectType + 0, RtfObjectSource + 0, RtfObjectSize + 0, RtfObjectKey + 0}) {
        format.clearProperty(property);
    }
    return format;
}

/// Formats by their index, each with \p change made to it once.
template <class Change>
class ChangedFormats
{
public:
    explicit ChangedFormats(Change change)
        : m_change(change)
    {
    }

    /// Lives as long as this object.
    const QTextCharFormat &of(int index, const QTextCharFormat &format)
    {
        const auto [place, isNew] = m_formats.try_emplace(index, format);
        if (isNew) {
            m_change(place->second);
        }
        return place->second;
    }

private:
    Change m_change;
    std::unordered_map<int, QTextCharFormat> m_formats;
};

/// Characters that get one format.
struct Run
{
    int start;
    int end;
    const QTextCharFormat &format;
};

/// Lets \p change change the format of the selected characters and paragraph marks.
template <class Change>
void changeCharacters(QTextCursor &cursor, Change change)
{
    if (!cursor.hasSelection()) {
        QTextCharFormat format = formatAtCaret(cursor);
        change(format);
        cursor.setCharFormat(format);
        return;
    }

    const Reach reach(cursor);
    ChangedFormats changed(change);
    std::vector<Run> runs;
    forEachBlock(reach, [&](const QTextBlock &block) {
        everyFragment(reach, block, [&](const QTextFragment &fragment) {
            runs.push_back({std::max(reach.start, fragment.position()),
                            std::min(reach.end, fragment.position() + fragment.length()),
                            changed.of(fragment.charFormatIndex(), fragment.charFormat())});
            return true;
        });
    });

    QTextCursor at(cursor.document());
    cursor.beginEditBlock();
    for (const Run &run : runs) {
        at.setPosition(run.start);
        at.setPosition(run.end, QTextCursor::KeepAnchor);
        at.setCharFormat(run.format);
    }
    forEachBlock(reach, [&](const QTextBlock &block) {
        if (reachesMark(reach, block)) {
            at.setPosition(block.position());
            at.setBlockCharFormat(changed.of(block.charFormatIndex(), block.charFormat()));
        }
    });
    cursor.endEditBlock();
}

/// Lets \p change change the format of every paragraph that the selection touches,
/// which is also told what the paragraph is in RTF.
template <class Change>
void changeParagraphs(QTextCursor &cursor, Change change)
{
    const RtfUnits units(*cursor.document());
    cursor.beginEditBlock();
    forEachBlock(Reach(cursor), [&](const QTextBlock &block) {
        const QTextBlockFormat before = block.blockFormat();
        QTextBlockFormat format = before;
        change(format, paragraphOf(block, units), units);
        if (format != before) {
            QTextCursor(block).setBlockFormat(format);
        }
    });
    cursor.endEditBlock();
}

RtfList listOfStyle(RtfListStyle style)
{
    RtfList list;
    list.style = style;
    return list;
}

bool isBulletParagraph(const RtfParagraph &paragraph)
{
    return paragraph.list.style == RtfListStyle::Bullet;
}

QTextList *listOfBullets(const QTextBlock &block, const RtfUnits &units)
{
    return block.isValid() && isBulletParagraph(paragraphOf(block, units)) ? block.textList() : nullptr;
}

/// Makes \p block one of \p list, or of a new list if that is null or long enough.
/// Returns the list that it is in.
QTextList *joinBullets(const QTextBlock &block, QTextBlockFormat format, QTextList *list)
{
    QTextCursor cursor(block);
    if (list != nullptr && list->count() < shortList) {
        format.setObjectIndex(list->objectIndex());
        cursor.setBlockFormat(format);
        return list;
    }
    cursor.setBlockFormat(format);
    return cursor.createList(toListFormat(listOfStyle(RtfListStyle::Bullet)));
}

// The values of the two enumerations are the same.
static_assert(static_cast<int>(TextAlignment::Left) == static_cast<int>(RtfAlignment::Left));
static_assert(static_cast<int>(TextAlignment::Center) == static_cast<int>(RtfAlignment::Center));
static_assert(static_cast<int>(TextAlignment::Right) == static_cast<int>(RtfAlignment::Right));

} // namespace

SelectionFormat::SelectionFormat(QTextCursor &cursor)
    : m_cursor(cursor)
{
}

std::optional<bool> SelectionFormat::isBold() const
{
    return commonOfRtf(m_cursor, [](const RtfCharacter &character) { return character.bold; });
}

std::optional<bool> SelectionFormat::isItalic() const
{
    return commonOfRtf(m_cursor, [](const RtfCharacter &character) { return character.italic; });
}

std::optional<bool> SelectionFormat::isUnderlined() const
{
    return commonOfRtf(m_cursor, [](const RtfCharacter &character) { return character.underline; });
}

std::optional<QColor> SelectionFormat::color() const
{
    return commonOfRtf(m_cursor, [](const RtfCharacter &character) {
        return character.color == automaticColor ? QColor() : QColor(static_cast<QRgb>(character.color));
    });
}

std::optional<QString> SelectionFormat::fontName() const
{
    return commonOfCharacters(m_cursor, [fallback = m_cursor.document()->defaultFont()](const QTextCharFormat &format) {
        return fontOf(format, fallback).family;
    });
}

std::optional<double> SelectionFormat::fontSize() const
{
    return commonOfRtf(m_cursor,
                       [](const RtfCharacter &character) { return character.halfPoints / halfPointsPerPoint; });
}

std::optional<bool> SelectionFormat::isBullet() const
{
    return commonOfParagraphs(m_cursor, isBulletParagraph);
}

std::optional<TextAlignment> SelectionFormat::alignment() const
{
    return commonOfParagraphs(
        m_cursor, [](const RtfParagraph &paragraph) { return static_cast<TextAlignment>(paragraph.alignment); });
}

std::optional<int> SelectionFormat::indent() const
{
    return commonOfParagraphs(
        m_cursor, [](const RtfParagraph &paragraph) { return paragraph.leftIndent + paragraph.firstLineIndent; });
}

void SelectionFormat::setBold(bool on)
{
    changeCharacters(m_cursor,
                     [on](QTextCharFormat &format) { format.setFontWeight(on ? QFont::Bold : QFont::Normal); });
}

void SelectionFormat::setItalic(bool on)
{
    changeCharacters(m_cursor, [on](QTextCharFormat &format) { format.setFontItalic(on); });
}

void SelectionFormat::setUnderlined(bool on)
{
    changeCharacters(m_cursor, [on](QTextCharFormat &format) { format.setFontUnderline(on); });
}

void SelectionFormat::setColor(const QColor &color)
{
    changeCharacters(m_cursor, [&color](QTextCharFormat &format) {
        if (color.isValid()) {
            format.setForeground(color);
        } else {
            format.clearForeground();
        }
    });
}

void SelectionFormat::setFontName(const QString &name)
{
    changeCharacters(m_cursor, [&name](QTextCharFormat &format) {
        format.clearProperty(QTextFormat::OldFontFamily);
        format.clearProperty(RtfFontCharset); // the new font's own is the plain one
        format.setFontFamilies({name});
    });
}

void SelectionFormat::setFontSize(double points)
{
    changeCharacters(m_cursor, [points](QTextCharFormat &format) {
        format.clearProperty(QTextFormat::FontPixelSize);
        format.setFontPointSize(points);
    });
}

void SelectionFormat::setBullet(bool on)
{
    const Reach reach(m_cursor);
    const RtfUnits units(*m_cursor.document());
    QTextList *list = on ? listOfBullets(reach.first.previous(), units) : nullptr;
    m_cursor.beginEditBlock();
    forEachBlock(reach, [&](const QTextBlock &block) {
        RtfParagraph paragraph = paragraphOf(block, units);
        const RtfListStyle style = on ? RtfListStyle::Bullet : RtfListStyle::None;
        if (paragraph.list.style == style) {
            list = block.textList();
            return;
        }
        paragraph.list = listOfStyle(style);
        QTextBlockFormat format = block.blockFormat();
        format.clearProperty(QTextFormat::ObjectIndex);
        setIndents(format, paragraph, units);
        if (on) {
            list = joinBullets(block, format, list);
        } else {
            QTextCursor(block).setBlockFormat(format);
        }
    });
    m_cursor.endEditBlock();
}

void SelectionFormat::setAlignment(TextAlignment alignment)
{
    changeParagraphs(m_cursor, [alignment](QTextBlockFormat &format, RtfParagraph paragraph, const RtfUnits &units) {
        paragraph.alignment = static_cast<RtfAlignment>(alignment);
        format.setProperty(QTextFormat::BlockAlignment,
                           toBlockFormat(paragraph, units).property(QTextFormat::BlockAlignment));
    });
}

void SelectionFormat::setIndent(int twips)
{
    changeParagraphs(m_cursor, [twips](QTextBlockFormat &format, RtfParagraph paragraph, const RtfUnits &units) {
        paragraph.leftIndent = twips - paragraph.firstLineIndent;
        setIndents(format, paragraph, units);
    });
}

void SelectionFormat::shiftIndent(int twips)
{
    changeParagraphs(m_cursor, [twips](QTextBlockFormat &format, RtfParagraph paragraph, const RtfUnits &units) {
        paragraph.leftIndent += twips;
        setIndents(format, paragraph, units);
    });
}
