#pragma once

#include <QString>

#include <optional>

/// What a field of a text is: its instruction, e.g. HYPERLINK "address" \o "tip".
class RtfFieldReader
{
public:
    void begin() { m_instruction.clear(); }
    void append(QStringView text) { m_instruction += text; }

    /// The address of a link, with "#" before a place in it; empty if the field is
    /// no link or leads to a place in the same text.
    [[nodiscard]] QString address() const;

    /// The number of the character that the field stands for, 0 to 65535, if it is
    /// one for a symbol.
    [[nodiscard]] std::optional<int> symbol() const;

private:
    QString m_instruction;
};

/// The instruction of a link to \p address, which address() gives back but for
/// control characters.
[[nodiscard]] QString linkInstruction(const QString &address);
