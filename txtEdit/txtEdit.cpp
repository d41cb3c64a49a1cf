#include "txtEdit/txtEdit.h"

#include "app/CommandGuard.h"
#include "platform/ClickSound.h"
#include "platform/CommonDialogs.h"
#include "platform/ImageButton.h"
#include "platform/InsertObjectDialog.h"
#include "platform/RichTextBox.h"
#include "platform/RichTextClipboard.h"
#include "txtEdit/FontBox.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMimeData>

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr int indentStep = 500; // twips

/// What the alignment button shows, and what it does then.
struct AlignmentFace
{
    TextAlignment alignment;
    QLatin1String picture;
    QLatin1String name;
    TextAlignment next;
};

constexpr auto alignmentFaces = std::to_array<AlignmentFace>({
    {TextAlignment::Left, QLatin1String("align-left"), QLatin1String("Left"), TextAlignment::Center},
    {TextAlignment::Center, QLatin1String("align-center"), QLatin1String("Centered"), TextAlignment::Right},
    {TextAlignment::Right, QLatin1String("align-right"), QLatin1String("Right"), TextAlignment::Left},
});

std::optional<QString> textOfSize(std::optional<double> points)
{
    return points ? std::optional(QString::number(*points)) : std::nullopt;
}

/// A sign typed with Ctrl is no text; that of the keypad is taken for some by text boxes.
bool wouldBeTyped(const QKeyEvent &key)
{
    return key.modifiers() == (Qt::ControlModifier | Qt::KeypadModifier) && !key.text().isEmpty();
}

} // namespace

txtEdit::txtEdit(EditTools &tools, Window window)
    : m_tools(tools)
    , m_window(std::move(window))
{
    connect(&tools, &EditTools::editClicked, this, &txtEdit::ToolbarEditCommand);
    connect(&tools, &EditTools::formatClicked, this, &txtEdit::ToolbarFormatCommand);
    connect(&tools, &EditTools::shown, this, &txtEdit::UpdateFormatState);
    connectFontBox(tools.fontBox(), &txtEdit::ApplyFontName);
    connectFontBox(tools.sizeBox(), &txtEdit::ApplyFontSize);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        m_canPaste.reset();
        UpdateFormatState();
    });
}

void txtEdit::connectFontBox(FontBox &fontBox, void (txtEdit::*apply)())
{
    connect(&fontBox, &FontBox::chosen, this, guarded(m_window.widget, [this, apply] { (this->*apply)(); }));
    connect(&fontBox, &FontBox::done, this, [this] { m_box->setFocus(); });
    fontBox.installEventFilter(this);
}

void txtEdit::addBox(RichTextBox &box)
{
    if (m_box == nullptr) {
        m_box = &box;
    }
    box.installEventFilter(this);
    const auto update = [this, &box] {
        if (m_box == &box) {
            UpdateFormatState();
        }
    };
    connect(&box, &RichTextBox::selectionChanged, this, update);
    connect(&box, &RichTextBox::cursorPositionChanged, this, update);
    connect(&box, &RichTextBox::undoAvailable, this, update);
    connect(&box, &RichTextBox::textChanged, this, update); // undoing a format moves no caret
}

RichTextBox &txtEdit::box() const
{
    return *m_box;
}

bool txtEdit::CanUndo() const
{
    return box().canUndo();
}

// Commands.

void txtEdit::run(const std::function<void()> &command)
{
    runGuarded(m_window.widget, [&] {
        playClick();
        command();
    });
    UpdateFormatState();
}

void txtEdit::ToolbarEditCommand(EditButton button)
{
    run([&] { carryOut(button); });
}

void txtEdit::ToolbarFormatCommand(FormatButton button)
{
    run([&] { carryOut(button); });
}

void txtEdit::carryOut(EditButton button)
{
    switch (button) {
    case EditButton::Cut: cutSelection(); break;
    case EditButton::Copy: copySelection(); break;
    case EditButton::Paste: pasteRichText(); break;
    case EditButton::Undo: box().undo(); break;
    case EditButton::InsertObject: chooseObject(); break;
    case EditButton::Help: m_window.myHelp(); break;
    }
}

void txtEdit::carryOut(FormatButton button)
{
    const bool isPressed = m_tools.button(button).isChecked();
    switch (button) {
    case FormatButton::FontColor: chooseColor(); break;
    case FormatButton::Bold: box().setSelBold(isPressed); break;
    case FormatButton::Italic: box().setSelItalic(isPressed); break;
    case FormatButton::Underline: box().setSelUnderline(isPressed); break;
    case FormatButton::Alignment: turnAlignment(); break;
    case FormatButton::Bullet: box().setSelBullet(isPressed); break;
    case FormatButton::DecreaseIndent: box().shiftSelIndent(-indentStep); break;
    case FormatButton::IncreaseIndent: box().shiftSelIndent(indentStep); break;
    }
}

void txtEdit::copySelection()
{
    if (box().textCursor().hasSelection()) {
        QGuiApplication::clipboard()->setMimeData(rtfClipboardOf(box().textCursor()).release());
    }
}

void txtEdit::cutSelection()
{
    copySelection();
    QTextCursor cursor = box().textCursor();
    cursor.removeSelectedText();
    box().setTextCursor(cursor);
}

void txtEdit::pasteRichText()
{
    const QMimeData *contents = QGuiApplication::clipboard()->mimeData();
    if (contents != nullptr && !rtfIn(*contents).empty()) {
        box().paste(); // which takes the rich text before all else
    }
}

void txtEdit::chooseObject()
{
    const std::optional<QByteArray> source = askObject(m_window.widget, box().pictureLimit());
    if (source) {
        box().insertObjectSource(*source);
    }
    box().setFocus();
}

void txtEdit::chooseColor()
{
    const QColor color = box().selColor().value_or(QColor());
    const QColor current = color.isValid() ? color : box().palette().color(QPalette::Text);
    if (const auto chosen = askColor(m_window.widget, QStringLiteral("Font Color"), current)) {
        box().setSelColor(*chosen);
    }
    box().setFocus();
}

void txtEdit::turnAlignment()
{
    const QString picture = m_tools.button(FormatButton::Alignment).picture();
    const auto *face = std::ranges::find(alignmentFaces, picture, &AlignmentFace::picture);
    box().setSelAlignment(face->next);
}

void txtEdit::toggle(std::optional<bool> (RichTextBox::*value)() const, void (RichTextBox::*change)(bool))
{
    run([&] { (box().*change)(!(box().*value)().value_or(false)); });
}

void txtEdit::ApplyFontName()
{
    if (m_tools.fontBox().currentIndex() > 0) {
        box().setSelFontName(m_tools.fontBox().currentText());
    }
    UpdateFormatState();
}

void txtEdit::ApplyFontSize()
{
    if (m_tools.sizeBox().currentIndex() > 0) {
        box().setSelFontSize(m_tools.sizeBox().currentText().toDouble());
    }
    UpdateFormatState();
}

// Keys.

struct txtEdit::EditingKey
{
    Qt::KeyboardModifier modifier;
    Qt::Key key;
    void (*carryOut)(txtEdit &editor);
    bool isConsumed;
};

const txtEdit::EditingKey *txtEdit::findEditingKey(const QKeyEvent &key)
{
    static constexpr auto keys = std::to_array<EditingKey>({
        {Qt::ShiftModifier, Qt::Key_Backtab,
         [](txtEdit &editor) { editor.ToolbarFormatCommand(FormatButton::DecreaseIndent); }, true},
        {Qt::ControlModifier, Qt::Key_Tab,
         [](txtEdit &editor) { editor.ToolbarFormatCommand(FormatButton::IncreaseIndent); }, true},
        {Qt::ControlModifier, Qt::Key_B,
         [](txtEdit &editor) { editor.toggle(&RichTextBox::selBold, &RichTextBox::setSelBold); }, false},
        {Qt::ControlModifier, Qt::Key_I,
         [](txtEdit &editor) { editor.toggle(&RichTextBox::selItalic, &RichTextBox::setSelItalic); }, true},
        {Qt::ControlModifier, Qt::Key_U,
         [](txtEdit &editor) { editor.toggle(&RichTextBox::selUnderline, &RichTextBox::setSelUnderline); }, false},
        {Qt::ControlModifier, Qt::Key_L,
         [](txtEdit &editor) { editor.toggle(&RichTextBox::selBullet, &RichTextBox::setSelBullet); }, false},
        {Qt::ControlModifier, Qt::Key_O, [](txtEdit &editor) { editor.ToolbarEditCommand(EditButton::InsertObject); },
         false},
        {Qt::ControlModifier, Qt::Key_F,
         [](txtEdit &editor) { editor.m_tools.fontBox().setFocus(Qt::ShortcutFocusReason); }, false},
        {Qt::ControlModifier, Qt::Key_Comma, [](txtEdit &editor) { editor.m_tools.sizeBox().step(-1); }, false},
        {Qt::ControlModifier, Qt::Key_Period, [](txtEdit &editor) { editor.m_tools.sizeBox().step(1); }, false},
        {Qt::AltModifier, Qt::Key_A, [](txtEdit &editor) { editor.ToolbarFormatCommand(FormatButton::Alignment); },
         false},
    });
    const Qt::KeyboardModifiers modifiers = key.modifiers() & ~Qt::KeypadModifier;
    const auto *found = std::ranges::find_if(
        keys, [&](const EditingKey &entry) { return entry.key == key.key() && modifiers == entry.modifier; });
    return found == keys.end() ? nullptr : found;
}

bool txtEdit::EditingKeys(const QKeyEvent &key)
{
    const EditingKey *found = findEditingKey(key);
    if (found == nullptr) {
        return false;
    }
    found->carryOut(*this);
    return found->isConsumed;
}

bool txtEdit::takeKey(const QKeyEvent &key)
{
    bool isTaken = true; // also if the command failed
    runGuarded(m_window.widget, [&] { isTaken = m_window.takeKey(key); });
    if (isTaken || box().isLocked()) {
        return isTaken;
    }
    return EditingKeys(key) || wouldBeTyped(key);
}

bool txtEdit::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        return takeKey(*static_cast<const QKeyEvent *>(event));
    }
    if (event->type() == QEvent::FocusIn) {
        if (auto *focused = qobject_cast<RichTextBox *>(watched)) {
            m_box = focused;
            UpdateFormatState();
        }
    }
    return QObject::eventFilter(watched, event);
}

// The state of the tools.

void txtEdit::UpdateFormatState()
{
    if (m_box == nullptr || !m_tools.isVisible()) {
        return; // they come up to date when they are shown
    }
    showPressed(FormatButton::Bold, box().selBold());
    showPressed(FormatButton::Italic, box().selItalic());
    showPressed(FormatButton::Underline, box().selUnderline());
    showPressed(FormatButton::Bullet, box().selBullet());
    showAlignment();
    m_tools.fontBox().display(box().selFontName());
    m_tools.sizeBox().display(textOfSize(box().selFontSize()));

    const bool hasSelection = box().textCursor().hasSelection();
    m_tools.button(EditButton::Cut).setEnabled(hasSelection);
    m_tools.button(EditButton::Copy).setEnabled(hasSelection);
    m_tools.button(EditButton::Paste).setEnabled(canPaste());
    m_tools.button(EditButton::Undo).setEnabled(CanUndo());
}

void txtEdit::showPressed(FormatButton button, std::optional<bool> on)
{
    m_tools.button(button).setChecked(on.value_or(false));
}

void txtEdit::showAlignment()
{
    const TextAlignment alignment = box().selAlignment().value_or(TextAlignment::Left);
    const auto *face = std::ranges::find(alignmentFaces, alignment, &AlignmentFace::alignment);
    ImageButton &button = m_tools.button(FormatButton::Alignment);
    button.setPicture(face->picture);
    if (button.accessibleDescription() != face->name) {
        button.setAccessibleDescription(face->name);
    }
}

bool txtEdit::canPaste()
{
    // Another program may have to be asked, which takes time.
    if (!m_canPaste) {
        const QMimeData *contents = QGuiApplication::clipboard()->mimeData();
        m_canPaste = contents != nullptr && holdsRtf(*contents);
    }
    return *m_canPaste;
}
