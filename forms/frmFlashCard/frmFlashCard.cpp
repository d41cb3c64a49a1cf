#include "forms/frmFlashCard/frmFlashCard.h"

#include "app/Chance.h"
#include "app/CommandGuard.h"
#include "app/WindowPlacement.h"
#include "forms/CommandBar.h"
#include "forms/Controls.h"
#include "platform/ClickSound.h"
#include "platform/CommonDialogs.h"
#include "platform/PaperSheet.h"
#include "platform/RichTextBox.h"
#include "platform/Twips.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>

#include <vector>

namespace {

enum Command {
    Mark,
    MarkToo,
    Shuffle,
    Options,
    Help,
    Previous,
    Exit,
    Next,
    Flipper,
    FlipUp,
    FlipDown,
};

constexpr const char *viewBack = "View the Back of this Flash Card";
constexpr const char *viewFront = "View the Front of this Flash Card";

constexpr std::array<ButtonFace, 11> faces{{
    {"mark-off", "Mark Flash Card"},
    {"mark-off", "Mark Flash Card"},
    {"shuffle", "Shuffle Flash Cards"},
    {"card-options", "Flash Card Options..."},
    {"help", "Help..."},
    {"previous", "Previous Flash Card"},
    {"exit", "Exit (Esc)"},
    {"next", "Next Flash Card"},
    {"flipper-stopped", "Pause the Auto Flipper"},
    {"flip-to-back-up", viewBack},
    {"flip-to-back-down", viewBack},
}};

enum Caption { SideShown, MarkShown, Countdown };

constexpr std::array bothSides{Side::Front, Side::Back};
constexpr std::size_t paneOf(Side side)
{
    return side == Side::Front ? 0 : 1;
}

constexpr PageRuling page{.firstLine = 1180, .marginLine = true};
constexpr int minWidth = 7200;  // twips: a card of some words, and every button around it
constexpr int minHeight = 5700; // twips

const QString section = QStringLiteral("Cards");

} // namespace

frmFlashCard::frmFlashCard(Module1 &module)
    : NotebookPage(page)
    , Image1(makeControlArray<ImageButton, 11>(this, QLatin1String("Image1")))
    , Label1(makeControlArray<QLabel, 3>(this, QLatin1String("Label1")))
    , m_card(new PaperSheet(this))
    , RichTextBox1(makeControlArray<RichTextBox, 2>(m_card, QLatin1String("RichTextBox1")))
    , Picture1(makeControl<QWidget>(this, QLatin1String("Picture1")))
    , m_module(module)
    , m_session(subjectFile(module.subject), module.study, drawSeededFromClock)
{
    setObjectName(QStringLiteral("frmFlashCard"));
    setAttribute(Qt::WA_DeleteOnClose);
    applyBackground(*this, m_module.settings);
    restorePlacement(*this, m_module.settings, section);
    setWindowTitle(subjectCaption(m_module.subject));

    Label1[SideShown]->setFont(notebookFont(18));
    Label1[MarkShown]->setFont(notebookFont(12));
    Label1[MarkShown]->setText(QStringLiteral("*** MARKED ***"));
    Label1[Countdown]->setFont(notebookFont(16));
    setFaces(Image1, faces);
    for (const Command around : {Previous, Next, FlipUp, FlipDown}) {
        Image1.at(around)->setPictureSize(40);
    }
    for (const Command later : {Mark, MarkToo, Shuffle, Options, Help, Flipper}) {
        Image1.at(later)->setEnabled(false);
    }
    Image1[Flipper]->hide();
    Label1[Countdown]->hide();
    for (RichTextBox *pane : RichTextBox1) {
        pane->setLocked(true);
        pane->setFrameShape(QFrame::NoFrame);
        pane->setCentered(true);
        pane->setFocusPolicy(Qt::NoFocus);
    }
    Picture1->setFocusPolicy(Qt::StrongFocus);
    Picture1->setAccessibleName(QStringLiteral("Flash card"));

    layOut();
    connectCommands();

    showSide(m_session.side());
    loadCard();
    showMark();
    Picture1->setFocus();
}

void frmFlashCard::layOut()
{
    setMinimumSize(toPixels(minWidth), toPixels(minHeight));

    auto *commands = new QHBoxLayout;
    commands->setSpacing(toPixels(60));
    for (const Command command : {Mark, Shuffle, Options, Help}) {
        commands->addWidget(Image1.at(command));
    }
    commands->addStretch();
    commands->addWidget(Image1[Flipper]);
    commands->addWidget(Label1[Countdown]);
    commands->addStretch();
    commands->addWidget(Image1[Exit]);

    auto *captions = new QHBoxLayout;
    captions->addWidget(Label1[SideShown]);
    captions->addStretch();
    captions->addWidget(Label1[MarkShown]);
    captions->addWidget(Image1[MarkToo]);

    m_card->setShape(PaperSheet::Shape::IndexCard);
    auto *sides = new QGridLayout(m_card);
    for (RichTextBox *pane : RichTextBox1) {
        sides->addWidget(pane, 0, 0); // one on the other: a single one is visible
    }

    auto *around = new QGridLayout;
    around->setSpacing(toPixels(60));
    around->addWidget(Image1[FlipUp], 0, 1, Qt::AlignHCenter);
    around->addWidget(Image1[Previous], 1, 0, Qt::AlignVCenter);
    around->addWidget(m_card, 1, 1);
    around->addWidget(Image1[Next], 1, 2, Qt::AlignVCenter);
    around->addWidget(Image1[FlipDown], 2, 1, Qt::AlignHCenter);
    around->setRowStretch(1, 1);
    around->setColumnStretch(1, 1);

    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(toPixels(PageRuling::marginAt + 180), 0, toPixels(240), toPixels(180));
    rows->setSpacing(toPixels(120));
    rows->addWidget(makeCommandBar(this, {commands, captions}));
    rows->addLayout(around, 1);

    std::vector<QWidget *> inTabOrder{Picture1};
    for (const Command command :
         {Mark, Shuffle, Options, Help, Flipper, Exit, MarkToo, FlipUp, Previous, Next, FlipDown}) {
        inTabOrder.push_back(Image1.at(command));
    }
    chainTabOrder(inTabOrder);
}

void frmFlashCard::connectCommands()
{
    const auto onClick = [this](Command command, auto method) {
        connect(Image1.at(command), &ImageButton::clicked, this, guarded(this, [this, method] {
                    playClick();
                    (this->*method)();
                }));
    };
    onClick(Previous, &frmFlashCard::goToPrevious);
    onClick(Next, &frmFlashCard::goToNext);
    onClick(FlipUp, &frmFlashCard::flip);
    onClick(FlipDown, &frmFlashCard::flip);
    connect(Image1[Exit], &ImageButton::clicked, this, [this] {
        playClick();
        close();
    });
    for (RichTextBox *pane : RichTextBox1) {
        connect(pane, &RichTextBox::clicked, Picture1, qOverload<>(&QWidget::setFocus));
    }
}

void frmFlashCard::showSide(Side side)
{
    m_session.showSide(side);
    // Shown before the other is hidden, so that the card is never seen empty.
    RichTextBox1.at(paneOf(side))->show();
    RichTextBox1.at(paneOf(otherSide(side)))->hide();

    const bool front = side == Side::Front;
    const QString caption = front ? QStringLiteral("Front (Question)") : QStringLiteral("Back (Answer)");
    Label1[SideShown]->setText(caption);
    Image1[FlipUp]->setPicture(front ? QStringLiteral("flip-to-back-up") : QStringLiteral("flip-to-front-up"));
    Image1[FlipDown]->setPicture(front ? QStringLiteral("flip-to-back-down") : QStringLiteral("flip-to-front-down"));
    for (const Command flipButton : {FlipUp, FlipDown}) {
        Image1.at(flipButton)->setHint(QString::fromLatin1(front ? viewBack : viewFront));
    }
    Picture1->setAccessibleDescription(caption);
}

void frmFlashCard::loadCard()
{
    for (RichTextBox *pane : RichTextBox1) {
        pane->clear(); // a card that cannot be read shows nothing, not the one before
    }
    for (const Side side : bothSides) {
        RichTextBox1.at(paneOf(side))->setRtf(m_session.text(side));
    }
}

void frmFlashCard::showMark()
{
    const bool marked = m_session.isMarked();
    Label1[MarkShown]->setVisible(marked);
    for (const Command button : {Mark, MarkToo}) {
        Image1.at(button)->setPicture(marked ? QStringLiteral("mark-on") : QStringLiteral("mark-off"));
    }
}

void frmFlashCard::displayCard()
{
    showSide(m_session.side());
    loadCard();
    showMark();
}

void frmFlashCard::goToNext()
{
    if (m_session.next()) {
        displayCard();
    } else {
        showInformation(this, QStringLiteral("This is the last flash card."), QStringLiteral("Last Flash Card"));
    }
}

void frmFlashCard::goToPrevious()
{
    if (m_session.previous()) {
        displayCard();
    } else {
        showInformation(this, QStringLiteral("This is the first flash card."), QStringLiteral("First Flash Card"));
    }
}

void frmFlashCard::flip()
{
    showSide(otherSide(m_session.side()));
}

bool frmFlashCard::pressButtonOf(int key)
{
    switch (key) {
    case Qt::Key_Right: Image1[Next]->click(); return true;
    case Qt::Key_Left: Image1[Previous]->click(); return true;
    case Qt::Key_Escape: Image1[Exit]->click(); return true;
    case Qt::Key_M: Image1[Mark]->click(); return true;
    case Qt::Key_S: Image1[Shuffle]->click(); return true;
    case Qt::Key_Up:
        if (m_session.side() == Side::Back) {
            Image1[FlipUp]->click();
        }
        return true;
    case Qt::Key_Down:
        if (m_session.side() == Side::Front) {
            Image1[FlipDown]->click();
        }
        return true;
    default: return false;
    }
}

void frmFlashCard::scrollCard(int key)
{
    QScrollBar *scroll = RichTextBox1.at(paneOf(m_session.side()))->verticalScrollBar();
    scroll->triggerAction(key == Qt::Key_PageUp ? QScrollBar::SliderPageStepSub : QScrollBar::SliderPageStepAdd);
}

void frmFlashCard::keyPressEvent(QKeyEvent *event)
{
    const bool plain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    if (plain && pressButtonOf(event->key())) {
        return;
    }
    if (plain && (event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown)) {
        scrollCard(event->key());
        return;
    }
    NotebookPage::keyPressEvent(event);
}

void frmFlashCard::closeEvent(QCloseEvent *event)
{
    m_session.close();
    runGuarded(this, [this] { savePlacement(*this, m_module.settings, section); });
    event->accept();
    Q_EMIT closed();
}
