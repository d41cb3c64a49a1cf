#pragma once

#include "txtEdit/EditTools.h"

#include <QObject>

#include <functional>
#include <optional>

class QKeyEvent;
class RichTextBox;

/// The formatting tools' logic, the same for every editor window: toolbar commands,
/// editing keys, and the state of the tools.
///
/// It acts on the box that last had the focus. While that box is locked, keys go
/// past it. Every command runs under the window's guard.
class txtEdit final : public QObject
{
    Q_OBJECT

public:
    /// What an editor window does by itself.
    struct Window
    {
        QWidget *widget;
        std::function<void()> myHelp;
        /// Is asked first about every key pressed in a box or a font box. True: the key is consumed.
        std::function<bool(const QKeyEvent &)> takeKey;
    };

    /// \p tools and the window outlive it.
    txtEdit(EditTools &tools, Window window);

    /// From now on the tools also act on \p box. The first one is the one acted on until another has the focus.
    void addBox(RichTextBox &box);
    [[nodiscard]] RichTextBox &box() const;

    void ToolbarEditCommand(EditButton button);
    void ToolbarFormatCommand(FormatButton button);
    /// Carries out an editing key. True: the key is consumed.
    [[nodiscard]] bool EditingKeys(const QKeyEvent &key);
    /// Brings toolbars and font boxes up to date with the selection.
    void UpdateFormatState();
    void ApplyFontName();
    void ApplyFontSize();
    [[nodiscard]] bool CanUndo() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct EditingKey;
    [[nodiscard]] static const EditingKey *findEditingKey(const QKeyEvent &key);
    [[nodiscard]] bool takeKey(const QKeyEvent &key);

    void connectFontBox(FontBox &fontBox, void (txtEdit::*apply)());
    void run(const std::function<void()> &command);
    void carryOut(EditButton button);
    void carryOut(FormatButton button);

    void copySelection();
    void cutSelection();
    void pasteRichText();
    void chooseObject();
    void chooseColor();
    void turnAlignment();
    void toggle(std::optional<bool> (RichTextBox::*value)() const, void (RichTextBox::*change)(bool));

    [[nodiscard]] bool canPaste();
    void showPressed(FormatButton button, std::optional<bool> on);
    void showAlignment();

    EditTools &m_tools;
    Window m_window;
    RichTextBox *m_box = nullptr;
    std::optional<bool> m_canPaste; ///< nothing: the clipboard has changed
};
