#include "forms/frmFlashCard/frmFlashCard.h"

#include "app/CommandGuard.h"
#include "app/Help.h"
#include "app/WindowPlacement.h"
#include "forms/CommandBar.h"
#include "forms/Controls.h"
#include "forms/HelpKey.h"
#include "forms/frmCardOptions/frmCardOptions.h"
#include "platform/ClickSound.h"
#include "platform/CommonDialogs.h"
#include "platform/PaperSheet.h"
#include "platform/ReadingPlace.h"
#include "platform/RichTextBox.h"
#include "platform/Twips.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QScopeGuard>
#include <QTimer>

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

QString nameOf(Side side)
{
    return side == Side::Front ? QStringLiteral("Front (Question)") : QStringLiteral("Back (Answer)");
}

constexpr std::array bothSides{Side::Front, Side::Back};
constexpr std::size_t paneOf(Side side)
{
    return side == Side::Front ? 0 : 1;
}

constexpr PageRuling page{.firstLine = 1180, .marginLine = true};
constexpr double readablePoints = 18; // from an arm's length

constexpr int minWidth = 8100;  // twips: the captions side by side, and every button around a card of some words
constexpr int minHeight = 5700; // twips

const QString section = QStringLiteral("Cards");

/// Whether a key that is held down goes on giving its command. One that undoes itself would end by chance.
bool mayRepeat(int key)
{
    return key != Qt::Key_M && key != Qt::Key_P && key != Qt::Key_S && key != Qt::Key_Escape;
}

} // namespace

frmFlashCard::frmFlashCard(Module1 &module)
    : NotebookPage(page)
    , Image1(makeControlArray<ImageButton, 11>(this, QLatin1String("Image1")))
    , Label1(makeControlArray<QLabel, 3>(this, QLatin1String("Label1")))
    , m_place(new QLabel(this))
    , m_card(new PaperSheet(this))
    , RichTextBox1(makeControlArray<RichTextBox, 2>(m_card, QLatin1String("RichTextBox1")))
    , Picture1(makeControl<ReadingPlace>(m_card, QLatin1String("Picture1")))
    , Timer1(new QTimer(this))
    , m_module(module)
    , m_session(subjectFile(module.subject), module.study, [&module] { return module.newGenerator()(); })
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
    Label1[Countdown]->setMinimumWidth(Label1[Countdown]->fontMetrics().horizontalAdvance(QStringLiteral("20")));
    m_place->setFont(notebookFont(12));
    setFaces(Image1, faces);
    for (const Command around : {Previous, Next, FlipUp, FlipDown}) {
        Image1.at(around)->setPictureSize(40);
    }
    for (const Side side : bothSides) {
        RichTextBox *pane = RichTextBox1.at(paneOf(side));
        pane->setAccessibleName(nameOf(side));
        pane->setLocked(true);
        pane->setFrameShape(QFrame::NoFrame);
        pane->setCentered(Qt::Horizontal | Qt::Vertical);
        pane->setLeastTextSize(readablePoints);
        pane->setFocusPolicy(Qt::NoFocus);
    }
    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer1->setInterval(1000);
    Timer1->setTimerType(Qt::PreciseTimer); // the learner counts along

    layOut();
    connectCommands();

    beginCard();
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

    auto *mark = new QHBoxLayout;
    mark->addStretch();
    mark->addWidget(Label1[MarkShown]);
    mark->addWidget(Image1[MarkToo]);
    auto *captions = new QGridLayout; // the place stays in the middle, whatever stands beside it
    captions->setHorizontalSpacing(toPixels(120));
    captions->addWidget(Label1[SideShown], 0, 0, Qt::AlignLeft);
    captions->addWidget(m_place, 0, 1);
    captions->addLayout(mark, 0, 2);
    captions->setColumnStretch(0, 1);
    captions->setColumnStretch(2, 1);

    m_card->setShape(PaperSheet::Shape::IndexCard);
    m_card->showFocusOf(*Picture1);
    auto *sides = new QGridLayout(m_card);
    sides->addWidget(Picture1, 0, 0);
    Picture1->lower();
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
    onClick(Mark, &frmFlashCard::toggleMark);
    onClick(MarkToo, &frmFlashCard::toggleMark);
    onClick(Shuffle, &frmFlashCard::shuffle);
    onClick(Options, &frmFlashCard::changeOptions);
    onClick(Help, &frmFlashCard::help);
    onClick(Previous, &frmFlashCard::goToPrevious);
    onClick(Next, &frmFlashCard::goToNext);
    onClick(Flipper, &frmFlashCard::toggleFlipperPause);
    onClick(FlipUp, &frmFlashCard::flip);
    onClick(FlipDown, &frmFlashCard::flip);
    connect(Image1[Exit], &ImageButton::clicked, this, [this] {
        playClick();
        close();
    });
    for (RichTextBox *pane : RichTextBox1) {
        connect(pane, &RichTextBox::clicked, Picture1, qOverload<>(&QWidget::setFocus));
    }
    connect(Timer1, &QTimer::timeout, this, guarded(this, &frmFlashCard::tick));
    offerHelp(*this, HelpContext::FlashCardSession);
}

void frmFlashCard::showSide()
{
    const Side side = m_session.side();
    // Shown before the other is hidden, so that the card is never seen empty.
    RichTextBox1.at(paneOf(side))->show();
    RichTextBox1.at(paneOf(otherSide(side)))->hide();

    const bool front = side == Side::Front;
    Label1[SideShown]->setText(nameOf(side));
    Image1[FlipUp]->setPicture(front ? QStringLiteral("flip-to-back-up") : QStringLiteral("flip-to-front-up"));
    Image1[FlipDown]->setPicture(front ? QStringLiteral("flip-to-back-down") : QStringLiteral("flip-to-front-down"));
    for (const Command flipButton : {FlipUp, FlipDown}) {
        Image1.at(flipButton)->setHint(QString::fromLatin1(front ? viewBack : viewFront));
    }
}

/// What is seen of the card, for those who do not see it.
void frmFlashCard::tellCard()
{
    const Side side = m_session.side();
    QStringList seen{QStringLiteral("Card ") + m_place->text(), nameOf(side)};
    if (!Label1[MarkShown]->isHidden()) {
        seen << QStringLiteral("marked");
    }
    const QString text = RichTextBox1.at(paneOf(side))->plainText().trimmed();
    Picture1->tell(seen.join(QStringLiteral(", ")) + QStringLiteral(": ") + text);
}

void frmFlashCard::loadCard()
{
    for (const Side side : bothSides) {
        RichTextBox1.at(paneOf(side))->setRtf(m_session.text(side));
    }
}

void frmFlashCard::clearCard()
{
    for (RichTextBox *pane : RichTextBox1) {
        pane->clear();
    }
    showMarked(false);
}

void frmFlashCard::showMarked(bool marked)
{
    Label1[MarkShown]->setVisible(marked);
    for (const Command button : {Mark, MarkToo}) {
        Image1.at(button)->setPicture(marked ? QStringLiteral("mark-on") : QStringLiteral("mark-off"));
        Image1.at(button)->setAccessibleDescription(marked ? QStringLiteral("Marked") : QStringLiteral("Not marked"));
    }
}

void frmFlashCard::showFlipper()
{
    const AutoFlipper &flipper = m_session.flipper();
    if (Image1[Flipper]->hasFocus() && !flipper.canTogglePause()) {
        Picture1->setFocus(); // else the focus would fall to the next button, and Space press it
    }
    Image1[Flipper]->setVisible(flipper.isOn());
    Image1[Flipper]->setEnabled(flipper.canTogglePause());
    Image1[Flipper]->setPicture(flipper.isRunning() ? QStringLiteral("flipper-running")
                                                    : QStringLiteral("flipper-stopped"));
    Image1[Flipper]->setAccessibleDescription(flipper.isRunning() ? QStringLiteral("Running")
                                                                  : QStringLiteral("Stopped"));
    Label1[Countdown]->setVisible(flipper.isOn());
    Label1[Countdown]->setText(QString::number(flipper.secondsLeft()));
    if (!flipper.isRunning()) {
        Timer1->stop();
    } else if (!Timer1->isActive()) {
        Timer1->start();
    }
}

void frmFlashCard::showPlace()
{
    m_place->setText(QStringLiteral("%1 of %2").arg(m_session.position() + 1).arg(m_session.count()));
}

void frmFlashCard::beginCard(void (FlashCardSession::*arm)())
{
    Timer1->stop(); // the first second of a card is a whole one
    const auto atLast = qScopeGuard([this] {
        showFlipper();
        tellCard();
    });
    showPlace();
    showSide();
    clearCard(); // a card that cannot be read shows nothing, not the one before
    loadCard();
    showMarked(m_session.isMarked());
    (m_session.*arm)();
}

void frmFlashCard::goToNext()
{
    if (m_session.next()) {
        beginCard();
    } else {
        showInformation(this, QStringLiteral("This is the last flash card."), QStringLiteral("Last Flash Card"));
    }
}

void frmFlashCard::goToPrevious()
{
    if (m_session.previous()) {
        beginCard();
    } else {
        showInformation(this, QStringLiteral("This is the first flash card."), QStringLiteral("First Flash Card"));
    }
}

void frmFlashCard::flip()
{
    m_session.showSide(otherSide(m_session.side()));
    showSide();
    showFlipper();
    tellCard();
}

void frmFlashCard::toggleMark()
{
    showMarked(m_session.toggleMark());
    showPlace(); // which a file that was replaced may have changed
    tellCard();
}

void frmFlashCard::shuffle()
{
    const QString title = QStringLiteral("Shuffle Flash Cards");
    if (askYesNo(this, QStringLiteral("Are you sure you want to shuffle these flash cards?"), title) != Answer::Yes) {
        return;
    }
    if (m_session.shuffle(m_module.newGenerator())) {
        beginCard();
    } else {
        showInformation(this,
                        QStringLiteral("None of these flash cards would be in the new order: they are not marked any "
                                       "more, or were deleted. The order stays as it is."),
                        title);
    }
}

void frmFlashCard::changeOptions()
{
    m_module.study.cancelled = false;
    frmCardOptions(m_module, this).exec();
    if (m_module.study.cancelled) {
        return;
    }
    m_session.restart(m_module.study);
    beginCard(&FlashCardSession::armFlipperPaused);
}

void frmFlashCard::help()
{
    showHelp(this, HelpContext::FlashCardSession);
}

void frmFlashCard::toggleFlipperPause()
{
    m_session.toggleFlipperPause();
    showFlipper();
}

void frmFlashCard::tick()
{
    if (QApplication::activeModalWidget() != nullptr) {
        return; // nobody reads the card behind a question
    }
    const Side before = m_session.side();
    m_session.tick();
    if (m_session.side() != before) {
        showSide();
        tellCard();
    }
    showFlipper();
}

bool frmFlashCard::pressButtonOf(int key)
{
    switch (key) {
    case Qt::Key_Right: Image1[Next]->click(); return true;
    case Qt::Key_Left: Image1[Previous]->click(); return true;
    case Qt::Key_Escape: Image1[Exit]->click(); return true;
    case Qt::Key_M: Image1[Mark]->click(); return true;
    case Qt::Key_S: Image1[Shuffle]->click(); return true;
    case Qt::Key_P: Image1[Flipper]->click(); return true;
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

void frmFlashCard::keyPressEvent(QKeyEvent *event)
{
    const bool plain = isPlain(event->modifiers());
    if (plain && event->isAutoRepeat() && !mayRepeat(event->key())) {
        return;
    }
    if (plain && pressButtonOf(event->key())) {
        return;
    }
    if (plain && (event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown)) {
        RichTextBox1.at(paneOf(m_session.side()))->scrollPage(event->key());
        return;
    }
    NotebookPage::keyPressEvent(event);
}

void frmFlashCard::closeEvent(QCloseEvent *event)
{
    Timer1->stop();
    m_session.close();
    runGuarded(this, [this] { savePlacement(*this, m_module.settings, section); });
    event->accept();
    Q_EMIT closed();
}
