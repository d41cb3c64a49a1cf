#pragma once

#include "platform/CoolBar.h"

#include <array>

class FontBox;
class ImageButton;

/// Buttons of the edit toolbar, by their index.
enum class EditButton : int { Cut = 1, Copy = 2, Paste = 3, Undo = 5, InsertObject = 7, Help = 9 };

/// Buttons of the format toolbar, by their index.
enum class FormatButton : int {
    FontColor = 5,
    Bold = 7,
    Italic = 8,
    Underline = 9,
    Alignment = 11,
    Bullet = 13,
    DecreaseIndent = 15,
    IncreaseIndent = 16,
};

/// The formatting tools as they are seen: the edit toolbar, and the format toolbar
/// with the font boxes. What they do is in txtEdit.
///
/// objectName is "CoolBar1"; the parent owns it. The list of fonts is read when the tools are first shown.
class EditTools final : public CoolBar
{
    Q_OBJECT

public:
    explicit EditTools(QWidget *parent);

    [[nodiscard]] ImageButton &button(EditButton button) const;
    [[nodiscard]] ImageButton &button(FormatButton button) const;
    /// The two toolbars; what is in them stands from left to right in the order in which it was made.
    [[nodiscard]] QWidget &editBand() const { return *m_editBand; }
    [[nodiscard]] QWidget &formatBand() const { return *m_formatBand; }
    [[nodiscard]] FontBox &fontBox() const { return *Combo1; }
    [[nodiscard]] FontBox &sizeBox() const { return *Combo2; }

Q_SIGNALS:
    void shown(); ///< the tools have become visible; the list of fonts is there
    void editClicked(EditButton button);
    void formatClicked(FormatButton button);

protected:
    void showEvent(QShowEvent *event) override;

private:
    [[nodiscard]] QWidget *makeEditBand();
    [[nodiscard]] QWidget *makeFormatBand();

    std::array<ImageButton *, 10> Toolbar1{}; ///< cut to help, by index
    std::array<ImageButton *, 17> Toolbar2{}; ///< font colour to indents, by index
    FontBox *Combo1 = nullptr;                ///< the fonts of the screen
    FontBox *Combo2 = nullptr;                ///< font sizes, in points
    QWidget *m_editBand = nullptr;
    QWidget *m_formatBand = nullptr;
    bool m_knowsFonts = false;
};
