#include "txtEdit/EditTools.h"

#include "platform/ImageButton.h"
#include "txtEdit/FontBox.h"

#include <QBoxLayout>
#include <QFontDatabase>
#include <QPainter>

#include <array>
#include <span>

namespace {

constexpr int pictureEdge = 20;
constexpr int fontLetters = 14;
constexpr int sizeLetters = 3;
constexpr int betweenFontBoxes = 3;

template <class Button>
struct Tool
{
    Button button;
    const char *picture;
    const char *hint;
    bool isCheck = false;
};

// A gap between two indexes is a separator.
constexpr auto editTools = std::to_array<Tool<EditButton>>({
    {EditButton::Cut, "cut", "Cut"},
    {EditButton::Copy, "copy", "Copy"},
    {EditButton::Paste, "paste", "Paste"},
    {EditButton::Undo, "undo", "Undo"},
    {EditButton::InsertObject, "insert-object", "Insert Object..."},
    {EditButton::Help, "help", "Help..."},
});
constexpr auto formatTools = std::to_array<Tool<FormatButton>>({
    {FormatButton::FontColor, "font-color", "Font Color..."},
    {FormatButton::Bold, "bold", "Bold", true},
    {FormatButton::Italic, "italic", "Italic", true},
    {FormatButton::Underline, "underline", "Underline", true},
    {FormatButton::Alignment, "align-left", "Alignment"},
    {FormatButton::Bullet, "bullet", "Bullet", true},
    {FormatButton::DecreaseIndent, "indent-less", "Decrease Indent"},
    {FormatButton::IncreaseIndent, "indent-more", "Increase Indent"},
});

/// In points.
const QStringList &fontSizes()
{
    static const QStringList sizes =
        QStringLiteral("8 9 10 11 12 14 16 18 20 22 24 26 28 36 48 72").split(QLatin1Char(' '));
    return sizes;
}

bool isNameBefore(const QString &one, const QString &other)
{
    return one.compare(other, Qt::CaseInsensitive) < 0;
}

bool isSizeBefore(const QString &one, const QString &other)
{
    return one.toDouble() < other.toDouble();
}

class Separator final : public QWidget
{
public:
    explicit Separator(QWidget *parent)
        : QWidget(parent)
    {
        setFixedWidth(7);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        paintSeparator(painter, rect(), palette());
    }
};

QWidget *makeBand(QWidget *parent, const QString &name)
{
    auto *band = new QWidget(parent);
    band->setObjectName(name);
    auto *row = new QHBoxLayout(band);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(1);
    return band;
}

template <class Button>
ImageButton *makeButton(QWidget *band, const Tool<Button> &tool)
{
    auto *button = new ImageButton(band);
    button->setObjectName(QStringLiteral("%1(%2)").arg(band->objectName()).arg(static_cast<int>(tool.button)));
    button->setPicture(QString::fromLatin1(tool.picture));
    button->setPictureSize(pictureEdge);
    button->setHint(QString::fromLatin1(tool.hint));
    button->setCheckable(tool.isCheck);
    return button;
}

/// Fills \p band with \p tools, and \p buttons with what was made, by index. A click calls \p clicked.
template <class Button, class Clicked>
void addButtons(QWidget *band, std::span<const Tool<Button>> tools, std::span<ImageButton *> buttons, Clicked clicked)
{
    int last = static_cast<int>(tools.front().button) - 1;
    for (const Tool<Button> &tool : tools) {
        const int index = static_cast<int>(tool.button);
        if (index > last + 1) {
            band->layout()->addWidget(new Separator(band));
        }
        ImageButton *made = makeButton(band, tool);
        band->layout()->addWidget(made);
        QObject::connect(made, &ImageButton::clicked, band, [clicked, which = tool.button] { clicked(which); });
        buttons[static_cast<std::size_t>(index)] = made;
        last = index;
    }
}

FontBox *makeFontBox(QWidget *band, const QString &name, const QString &hint, FontBox::Before before, int letters)
{
    auto *box = new FontBox(band, before, letters);
    box->setObjectName(name);
    box->setToolTip(hint);
    box->setAccessibleName(hint);
    band->layout()->addWidget(box);
    return box;
}

} // namespace

EditTools::EditTools(QWidget *parent)
    : CoolBar(parent)
{
    setObjectName(QStringLiteral("CoolBar1"));
    m_editBand = makeEditBand();
    m_formatBand = makeFormatBand();
    addBand(m_editBand);
    addBand(m_formatBand);
}

QWidget *EditTools::makeEditBand()
{
    QWidget *band = makeBand(this, QStringLiteral("Toolbar1"));
    addButtons<EditButton>(band, editTools, Toolbar1, [this](EditButton button) { Q_EMIT editClicked(button); });
    return band;
}

QWidget *EditTools::makeFormatBand()
{
    QWidget *band = makeBand(this, QStringLiteral("Toolbar2"));
    Combo1 = makeFontBox(band, QStringLiteral("Combo1"), QStringLiteral("Font"), isNameBefore, fontLetters);
    static_cast<QBoxLayout *>(band->layout())->addSpacing(betweenFontBoxes);
    Combo2 = makeFontBox(band, QStringLiteral("Combo2"), QStringLiteral("Font Size"), isSizeBefore, sizeLetters);
    Combo2->setValues(fontSizes());
    band->layout()->addWidget(new Separator(band));
    addButtons<FormatButton>(band, formatTools, Toolbar2,
                             [this](FormatButton button) { Q_EMIT formatClicked(button); });
    return band;
}

ImageButton &EditTools::button(EditButton button) const
{
    return *Toolbar1[static_cast<std::size_t>(button)];
}

ImageButton &EditTools::button(FormatButton button) const
{
    return *Toolbar2[static_cast<std::size_t>(button)];
}

void EditTools::showEvent(QShowEvent *event)
{
    CoolBar::showEvent(event);
    if (!m_knowsFonts) {
        m_knowsFonts = true;
        Combo1->setValues(QFontDatabase::families());
    }
    Q_EMIT shown();
}
