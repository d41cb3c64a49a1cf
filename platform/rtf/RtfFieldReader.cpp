#include "platform/rtf/RtfFieldReader.h"

#include <QStringList>

namespace {

struct Argument
{
    QString text;
    bool isSwitch = false; ///< text is the character behind the backslash
};

/// Whether \p c behind a backslash is a switch: one of its field, or of all fields.
bool isSwitch(QChar c)
{
    return c.isLetter() || c == u'*' || c == u'#' || c == u'@';
}

bool takesValue(const Argument &argument)
{
    return argument.isSwitch && QStringView(u"lot*#@").contains(argument.text);
}

/// Characters that control something, a line's end among them, are slips.
bool isPartOfAddress(QChar c)
{
    return c.category() != QChar::Other_Control && c != QChar::LineSeparator && c != QChar::ParagraphSeparator;
}

/// Words, "texts in quotes" and switches. Within quotes a backslash makes the
/// character behind it one of the text.
QList<Argument> argumentsOf(QStringView instruction)
{
    QList<Argument> arguments;
    for (qsizetype at = 0; at < instruction.size();) {
        const QChar c = instruction[at];
        if (c.isSpace()) {
            ++at;
            continue;
        }
        Argument argument;
        if (c == u'\\' && at + 1 < instruction.size() && isSwitch(instruction[at + 1])) {
            argument = {instruction[at + 1].toLower(), true};
            at += 2;
        } else {
            const bool isQuoted = c == u'"';
            for (at += isQuoted ? 1 : 0; at < instruction.size(); ++at) {
                QChar next = instruction[at];
                if (isQuoted ? next == u'"' : next.isSpace()) {
                    break;
                }
                if (next == u'\\' && at + 1 < instruction.size()) {
                    next = instruction[++at];
                }
                if (isPartOfAddress(next)) {
                    argument.text += next;
                }
            }
            at += isQuoted ? 1 : 0;
        }
        arguments.append(argument);
    }
    return arguments;
}

bool isNamed(const QList<Argument> &arguments, QLatin1StringView name)
{
    return !arguments.isEmpty() && arguments.first().text.compare(name, Qt::CaseInsensitive) == 0;
}

} // namespace

QString RtfFieldReader::address() const
{
    const QList<Argument> arguments = argumentsOf(m_instruction);
    if (!isNamed(arguments, QLatin1StringView("HYPERLINK"))) {
        return {};
    }
    QString address;
    QString place;
    for (qsizetype index = 1; index < arguments.size(); ++index) {
        const Argument &argument = arguments.at(index);
        if (!argument.isSwitch) {
            address = address.isEmpty() ? argument.text : address;
            continue;
        }
        if (takesValue(argument) && index + 1 < arguments.size() && !arguments.at(index + 1).isSwitch) {
            ++index;
            place = argument.text == u'l' ? arguments.at(index).text : place;
        }
    }
    return address.isEmpty() || place.isEmpty() ? address : address + u'#' + place;
}

std::optional<int> RtfFieldReader::symbol() const
{
    const QList<Argument> arguments = argumentsOf(m_instruction);
    if (!isNamed(arguments, QLatin1StringView("SYMBOL")) || arguments.size() < 2) {
        return std::nullopt;
    }
    const QString &number = arguments.at(1).text;
    const bool isHexadecimal = number.startsWith(QLatin1StringView("0x"), Qt::CaseInsensitive);
    bool isNumber = false;
    const uint code = number.toUInt(&isNumber, isHexadecimal ? 16 : 10);
    return isNumber && code <= 0xffff ? std::optional(static_cast<int>(code)) : std::nullopt;
}

QString linkInstruction(const QString &address)
{
    QString text = address;
    text.replace(u'\\', QStringLiteral("\\\\"));
    text.replace(u'"', QStringLiteral("\\\""));
    return QStringLiteral("HYPERLINK \"") + text + u'"';
}
