#include "forms/frmEditCards/frmEditCards.h"

#include "app/CommandGuard.h"
#include "app/Help.h"
#include "app/WindowPlacement.h"
#include "forms/CommandBar.h"
#include "forms/Controls.h"
#include "forms/HelpKey.h"
#include "platform/ClickSound.h"
#include "platform/CommonDialogs.h"
#include "platform/PaperSheet.h"
#include "platform/RichTextBox.h"
#include "platform/Twips.h"
#include "txtEdit/txtEdit.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>

#include <vector>

namespace {

enum Command {
    First,
    Previous,
    New,
    Exit,
    Delete,
    Next,
    Last,
};

constexpr std::array<ButtonFace, 7> faces{{
    {"first", "First Flash Card"},
    {"previous", "Previous Flash Card"},
    {"new-card", "New Flash Card"},
    {"exit", "Exit (Esc)"},
    {"delete-card", "Delete Flash Card"},
    {"next", "Next Flash Card"},
    {"last", "Last Flash Card"},
}};

// The commands as the eye meets them; a gap stands between two groups.
constexpr std::array walkingGroup{First, Previous, Next, Last};
constexpr std::array writingGroup{New, Delete};
constexpr std::array windowGroup{Exit};

constexpr std::array<AltKey, 6> altKeys{{
    {Qt::Key_Home, First},
    {Qt::Key_Left, Previous},
    {Qt::Key_Insert, New},
    {Qt::Key_Delete, Delete},
    {Qt::Key_Right, Next},
    {Qt::Key_End, Last},
}};

constexpr std::size_t front = 0;
constexpr std::size_t back = 1;

constexpr PageRuling page{.firstLine = 800, .marginLine = true};
constexpr int minWidth = 9315;            // twips
constexpr int minHeight = 6105;           // twips
constexpr QSize usualSize = {7296, 5064}; // twips

const QString section = QStringLiteral("EditCards");

/// Told apart from the card's own text.
QFont captionFont()
{
    QFont font = notebookFont(9);
    font.setBold(true);
    return font;
}

} // namespace

frmEditCards::frmEditCards(Module1 &module, const EditedTopic &topic, QWidget *owner)
    : NotebookPage(page, owner)
    , Image1(makeControlArray<ImageButton, 7>(this, QLatin1String("Image1")))
    , CoolBar1(new EditTools(this))
    , m_sheets{new PaperSheet(this), new PaperSheet(this)}
    , Label1(makeControlArray<QLabel, 2>(this, QLatin1String("Label1")))
    , RichTextBox1(makeControlArray<RichTextBox, 2>(this, QLatin1String("RichTextBox1")))
    , m_module(module)
    , m_topic(topic)
    , m_tools(
          std::make_unique<txtEdit>(*CoolBar1, txtEdit::Window{this, [this] { myHelp(); },
                                                               [this](const QKeyEvent &key) { return takeKey(key); }}))
    , m_cards(subjectFile(module.subject), module.study.cardQuery, topic.index, blankSides())
    , m_shown(m_cards.changes())
{
    setObjectName(QStringLiteral("frmEditCards"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::WindowModal);
    applyBackground(*this, m_module.settings);

    setFaces(Image1, faces);
    Label1[front]->setText(QStringLiteral("Front (Question)"));
    Label1[back]->setText(QStringLiteral("Back (Answer)"));
    for (const std::size_t side : {front, back}) {
        m_sheets.at(side)->setShape(PaperSheet::Shape::IndexCard);
        Label1.at(side)->setFont(captionFont());
        Label1.at(side)->setIndent(qRound(RichTextBox1.at(side)->document()->documentMargin()));
        Label1.at(side)->setBuddy(RichTextBox1.at(side));
        RichTextBox1.at(side)->setFrameShape(QFrame::NoFrame);
        RichTextBox1.at(side)->setAccessibleName(Label1.at(side)->text());
        m_tools->addBox(*RichTextBox1.at(side));
        m_sheets.at(side)->showFocusOf(*RichTextBox1.at(side));
    }

    layOut();
    restorePlacement(*this, m_module.settings, section, usualSize);
    connectCommands();

    ShowCard();
    UpdateCaption();
    RichTextBox1[front]->setFocus();
}

frmEditCards::~frmEditCards() = default;

void frmEditCards::layOut()
{
    setMinimumSize(toPixels(minWidth), toPixels(minHeight));

    std::vector<QWidget *> inTabOrder;
    auto *commands = new QHBoxLayout;
    commands->setSpacing(toPixels(60));
    const auto addGroup = [&](const auto &group) { addCommands(*commands, Image1, group, inTabOrder); };
    addGroup(walkingGroup);
    addGroup(writingGroup);
    commands->addStretch();
    addGroup(windowGroup);

    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(toPixels(PageRuling::marginAt + 180), 0, toPixels(300), toPixels(180));
    rows->setSpacing(toPixels(60));
    rows->addWidget(makeCommandBar(this, {commands}));
    rows->addWidget(CoolBar1);
    rows->addSpacing(toPixels(60));
    for (const std::size_t side : {front, back}) {
        auto *card = new QVBoxLayout(m_sheets.at(side));
        card->setContentsMargins({}); // the sheet keeps its own clear of the text
        card->setSpacing(0);
        card->addWidget(Label1.at(side));
        card->addWidget(RichTextBox1.at(side), 1);
        rows->addWidget(m_sheets.at(side), 1);
    }
    addTextInTabOrder(inTabOrder, *CoolBar1, {RichTextBox1[front], RichTextBox1[back]});
    chainTabOrder(inTabOrder);
}

void frmEditCards::connectCommands()
{
    for (int command = First; command <= Last; ++command) {
        connect(Image1.at(static_cast<std::size_t>(command)), &ImageButton::clicked, this,
                [this, command] { run(command); });
    }
    offerHelp(*this, HelpContext::CardEditor);
}

// Commands.

void frmEditCards::run(int command)
{
    if (command == Exit) {
        playClick();
        close();
        return;
    }
    if (runGuarded(this, [&] { carryOut(command); })) {
        m_closing.forgetFailure();
    }
    refresh();
}

void frmEditCards::carryOut(int command)
{
    switch (static_cast<Command>(command)) {
    case First: follow(m_cards.first(editedCard())); break;
    case Previous: follow(m_cards.previous(editedCard())); break;
    case New: follow(m_cards.add(editedCard())); break;
    case Exit: break; // see run()
    case Delete: askAndDelete(); break;
    case Next: follow(m_cards.next(editedCard())); break;
    case Last: follow(m_cards.last(editedCard())); break;
    }
}

void frmEditCards::follow(CardEditing::Outcome outcome)
{
    refresh(); // a message stands over what is true by now
    switch (outcome) {
    case CardEditing::Outcome::Moved:
    case CardEditing::Outcome::Added: playClick(); break;
    case CardEditing::Outcome::AtFirst:
        showInformation(this, QStringLiteral("This is the first flash card."), QStringLiteral("First Flash Card"));
        break;
    case CardEditing::Outcome::AtLast:
        showInformation(this, QStringLiteral("This is the last flash card."), QStringLiteral("Last Flash Card"));
        break;
    }
}

void frmEditCards::askAndDelete()
{
    if (askYesNo(this, QStringLiteral("Are you sure you want to delete this flash card?"),
                 QStringLiteral("Delete Flash Card")) == Answer::Yes) {
        follow(m_cards.remove());
    }
}

void frmEditCards::myHelp()
{
    showHelp(this, HelpContext::CardEditor);
}

// Keys.

bool frmEditCards::takeKey(const QKeyEvent &key)
{
    const Qt::KeyboardModifiers modifiers = key.modifiers() & ~Qt::KeypadModifier;
    if (modifiers == Qt::NoModifier && key.key() == Qt::Key_Escape) {
        run(Exit);
        return true;
    }
    if (modifiers == Qt::AltModifier && (key.key() == Qt::Key_Up || key.key() == Qt::Key_Down)) {
        key.key() == Qt::Key_Up ? leaveBox(back, front) : leaveBox(front, back);
        return true;
    }
    const auto command = commandOf(key, altKeys);
    if (command) {
        run(*command);
    }
    return command.has_value();
}

/// Nothing happens in the other box.
void frmEditCards::leaveBox(std::size_t from, std::size_t to)
{
    if (&m_tools->box() == RichTextBox1.at(from)) {
        RichTextBox1.at(to)->setFocus();
    }
}

void frmEditCards::keyPressEvent(QKeyEvent *event)
{
    if (!takeKey(*event)) {
        NotebookPage::keyPressEvent(event);
    }
}

/// The page is ruled below the tools, however many rows they take.
void frmEditCards::resizeEvent(QResizeEvent *event)
{
    NotebookPage::resizeEvent(event);
    setRuling({.firstLine = qRound(toTwips(CoolBar1->geometry().bottom() + 1)), .marginLine = page.marginLine});
}

// The card in the editor.

EditedCard frmEditCards::editedCard() const
{
    const auto textOf = [this](std::size_t side) -> BoxText {
        return {RichTextBox1.at(side)->rtf(), RichTextBox1.at(side)->toPlainText().toStdString()};
    };
    return {textOf(front), textOf(back)};
}

/// Those of boxes that nothing was written into.
CardSides frmEditCards::blankSides() const
{
    return {RichTextBox1[front]->rtf(), RichTextBox1[back]->rtf()};
}

void frmEditCards::refresh()
{
    if (m_shown != m_cards.changes()) {
        m_shown = m_cards.changes();
        ShowCard();
        RichTextBox1[front]->setFocus();
    }
    UpdateCaption();
}

void frmEditCards::ShowCard()
{
    RichTextBox1[front]->setRtf(m_cards.sides().front);
    RichTextBox1[back]->setRtf(m_cards.sides().back);
}

void frmEditCards::UpdateCaption()
{
    const QString caption = QStringLiteral("Edit Flash Cards: %1 (Card %2 of %3)");
    setWindowTitle(asCaption(
        caption.arg(m_topic.name, QString::number(m_cards.position() + 1), QString::number(m_cards.count()))));
}

void frmEditCards::closeEvent(QCloseEvent *event)
{
    if (!m_closing.mayClose(this, [this] { m_cards.save(editedCard()); })) {
        refresh();
        event->ignore();
        return;
    }
    m_cards.close();
    runGuarded(this, [this] { savePlacement(*this, m_module.settings, section); });
    event->accept();
    Q_EMIT closed();
}
