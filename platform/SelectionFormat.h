#pragma once

#include <QColor>
#include <QString>
#include <QTextCursor>

#include <cstdint>
#include <optional>

enum class TextAlignment : std::uint8_t { Left, Center, Right };

/// The format of a selection, property by property. Each question has no answer
/// where the selection is mixed; an empty selection is asked for what would be
/// typed at the caret. Properties of paragraphs are those of all paragraphs that
/// the selection touches; one at whose start it ends is not touched. Each change is
/// one undo step and leaves every other property as it is.
class SelectionFormat
{
public:
    /// \p cursor is changed along: the format at its caret.
    explicit SelectionFormat(QTextCursor &cursor);

    [[nodiscard]] std::optional<bool> isBold() const;
    [[nodiscard]] std::optional<bool> isItalic() const;
    [[nodiscard]] std::optional<bool> isUnderlined() const;
    [[nodiscard]] std::optional<QColor> color() const; ///< an invalid one: the page's ink
    [[nodiscard]] std::optional<QString> fontName() const;
    [[nodiscard]] std::optional<double> fontSize() const; ///< points
    [[nodiscard]] std::optional<bool> isBullet() const;
    [[nodiscard]] std::optional<TextAlignment> alignment() const;
    [[nodiscard]] std::optional<int> indent() const; ///< of the first line, in twips; may be negative

    void setBold(bool on);
    void setItalic(bool on);
    void setUnderlined(bool on);
    void setColor(const QColor &color);
    void setFontName(const QString &name);
    void setFontSize(double points);
    void setBullet(bool on); ///< numbered paragraphs become bullets, or plain
    void setAlignment(TextAlignment alignment);
    void setIndent(int twips); ///< the further lines move along
    /// Moves each paragraph by that much, also where their indents differ.
    void shiftIndent(int twips);

private:
    QTextCursor &m_cursor;
};
