#include "forms/frmNotes/frmNotes.h"

#include "app/CommandGuard.h"
#include "app/WindowPlacement.h"
#include "forms/CommandBar.h"
#include "forms/Controls.h"
#include "forms/frmFlashCard/frmFlashCard.h"
#include "forms/frmOpen/frmOpen.h"
#include "forms/frmOptions/frmOptions.h"
#include "platform/ClickSound.h"
#include "platform/CommonDialogs.h"
#include "platform/ElidedLabel.h"
#include "platform/PaperSheet.h"
#include "platform/RichTextBox.h"
#include "platform/TabStrip.h"
#include "platform/Twips.h"
#include "store/SubjectReading.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>

#include <vector>

namespace {

enum Command {
    CreateTopic,
    RenameTopic,
    DeleteTopic,
    EditFlashCards,
    Study,
    BackgroundColor,
    Help,
    Exit,
    EditNotes,
};

constexpr std::array<ButtonFace, 9> faces{{
    {"create-topic", "Create Topic..."},
    {"rename-topic", "Rename Topic..."},
    {"delete-topic", "Delete Topic"},
    {"edit-cards", "Edit Flash Cards..."},
    {"study", "Study..."},
    {"background-color", "Background color..."},
    {"help", "Help..."},
    {"exit", "Exit (Esc)"},
    {"edit-notes", "Edit Notes..."},
}};

// The commands as the eye meets them; a gap stands between two groups.
constexpr std::array topicGroup{CreateTopic, RenameTopic, DeleteTopic};
constexpr std::array writingGroup{EditNotes, EditFlashCards};
constexpr std::array studyGroup{Study};
constexpr std::array programGroup{BackgroundColor, Help, Exit};

constexpr PageRuling page{.firstLine = 1180, .marginLine = true};
constexpr int minWidth = 9315;  // twips
constexpr int minHeight = 6105; // twips

const QString section = QStringLiteral("Notes");
const QString keyPrefix = QStringLiteral("Key");

QString cardCountLine(int count)
{
    return count < 1 ? QStringLiteral("This topic has no flash cards.")
                     : QStringLiteral("This topic has %1 flash cards.").arg(count);
}

} // namespace

frmNotes::frmNotes(Module1 &module)
    : NotebookPage(page)
    , Image1(makeControlArray<ImageButton, 9>(this, QLatin1String("Image1")))
    , Label1(makeControl<ElidedLabel>(this, QLatin1String("Label1")))
    , TabStrip1(makeControl<TabStrip>(this, QLatin1String("TabStrip1")))
    , m_sheet(new PaperSheet(this))
    , RichTextBox1(makeControl<RichTextBox>(m_sheet, QLatin1String("RichTextBox1")))
    , StatusBar1(makeControl<QLabel>(m_sheet, QLatin1String("StatusBar1")))
    , m_module(module)
{
    setObjectName(QStringLiteral("frmNotes"));
    setAttribute(Qt::WA_DeleteOnClose);
    applyBackground(*this, m_module.settings);

    setFaces(Image1, faces);
    for (const Command later :
         {CreateTopic, RenameTopic, DeleteTopic, EditFlashCards, BackgroundColor, Help, EditNotes}) {
        Image1.at(later)->setEnabled(false);
    }
    Label1->setFont(notebookFont(18));
    TabStrip1->setToolTip(QStringLiteral("Select your topic"));
    RichTextBox1->setLocked(true);
    RichTextBox1->setFrameShape(QFrame::NoFrame);
    RichTextBox1->setAccessibleName(QStringLiteral("Notes"));
    StatusBar1->setTextFormat(Qt::PlainText);

    layOut();

    setWindowTitle(subjectCaption(m_module.subject));
    restorePlacement(*this, m_module.settings, section);

    connectCommands();
    LoadTopics();
    TabStrip1->setFocus(); // where the arrow keys leaf through the topics
}

void frmNotes::layOut()
{
    setMinimumSize(toPixels(minWidth), toPixels(minHeight));

    std::vector<QWidget *> inTabOrder;
    auto *commands = new QHBoxLayout;
    commands->setSpacing(toPixels(60));
    const auto addGroup = [&](const auto &group) {
        for (const Command command : group) {
            commands->addWidget(Image1.at(command));
            inTabOrder.push_back(Image1.at(command));
        }
        commands->addSpacing(toPixels(240));
    };
    addGroup(topicGroup);
    addGroup(writingGroup);
    addGroup(studyGroup);
    commands->addStretch();
    addGroup(programGroup);

    auto *titleRow = new QHBoxLayout;
    titleRow->addWidget(Label1);

    auto *tabRow = new QHBoxLayout;
    tabRow->setContentsMargins(0, 0, PaperSheet::shadowDepth, 0);
    tabRow->addWidget(TabStrip1);

    auto *sheetRows = new QVBoxLayout(m_sheet);
    sheetRows->setSpacing(toPixels(120));
    sheetRows->addWidget(RichTextBox1);
    sheetRows->addWidget(StatusBar1);

    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(toPixels(PageRuling::marginAt + 180), 0, toPixels(300), toPixels(240));
    rows->setSpacing(0);
    rows->addWidget(makeCommandBar(this, {commands, titleRow}));
    rows->addSpacing(toPixels(120));
    rows->addLayout(tabRow);
    rows->addWidget(m_sheet, 1);

    inTabOrder.insert(inTabOrder.end(), {TabStrip1, RichTextBox1});
    chainTabOrder(inTabOrder);
}

void frmNotes::connectCommands()
{
    connect(TabStrip1, &TabStrip::chosen, this, guarded(this, [this] {
                if (isVisible()) {
                    playClick();
                }
                ShowTopic();
            }));
    connect(Image1[Study], &ImageButton::clicked, this, guarded(this, &frmNotes::study));
    connect(Image1[Exit], &ImageButton::clicked, this, [this] {
        playClick();
        close();
    });
}

void frmNotes::LoadTopics()
{
    const std::vector<TopicEntry> topics = listTopics(subjectFile(m_module.subject));
    TabStrip1->removeAllTabs();
    for (const TopicEntry &topic : topics) {
        TabStrip1->addKeyedTab(keyPrefix + QString::number(topic.index), QString::fromStdString(topic.name));
    }
    if (topics.empty()) {
        Label1->setText(QStringLiteral("Create Topic..."));
        RichTextBox1->setTextRtf({});
        ShowTopic();
    } else {
        TabStrip1->select(0);
    }
    m_sheet->setVisible(!topics.empty());
}

int frmNotes::selectedTopic() const
{
    return TabStrip1->selectedKey().mid(keyPrefix.size()).toInt();
}

void frmNotes::ShowTopic()
{
    if (TabStrip1->count() == 0) {
        StatusBar1->hide();
        return;
    }
    RichTextBox1->clear(); // a topic that cannot be read shows nothing, not the one before
    Label1->clear();
    StatusBar1->hide();
    const TopicContents topic = readTopic(subjectFile(m_module.subject), selectedTopic());
    RichTextBox1->setRtf(topic.notes);
    Label1->setText(QString::fromStdString(topic.name));
    StatusBar1->setText(cardCountLine(topic.cardCount));
    StatusBar1->show();
}

void frmNotes::takeSubject()
{
    setWindowTitle(subjectCaption(m_module.subject));
    LoadTopics();
}

void frmNotes::study()
{
    playClick();
    auto *wizard = new frmOptions(m_module, this);
    connect(wizard, &QDialog::finished, this, guarded(this, &frmNotes::beginStudy));
    wizard->open();
}

void frmNotes::beginStudy()
{
    if (m_module.study.cancelled) {
        return;
    }
    switch (m_module.study.style) {
    case StudyStyle::FlashCards: openFlashCards(); break;
    case StudyStyle::Test:
        showInformation(this,
                        QStringLiteral("Tests are not part of this version of Cramlet yet. "
                                       "Choose \"Flash Cards\" to study these cards."),
                        QStringLiteral("Test"));
        break;
    }
}

void frmNotes::openFlashCards()
{
    auto *session = new frmFlashCard(m_module);
    connect(session, &frmFlashCard::closed, this, &frmNotes::comeBack);
    session->show();
    hide();
}

void frmNotes::comeBack()
{
    show();
    activateWindow();
}

void frmNotes::keyPressEvent(QKeyEvent *event)
{
    if (event->modifiers() == Qt::AltModifier && event->key() == Qt::Key_S) {
        Image1[Study]->click();
    } else if (event->modifiers() == Qt::NoModifier && event->key() == Qt::Key_Escape) {
        close();
    } else {
        NotebookPage::keyPressEvent(event);
    }
}

void frmNotes::closeEvent(QCloseEvent *event)
{
    bool closing = false;
    runGuarded(this, [&] { closing = mayClose(); });
    event->setAccepted(closing);
}

bool frmNotes::mayClose()
{
    switch (askYesNoCancel(this, QStringLiteral("Do you want to create or open another subject?"),
                           QStringLiteral("Stop Studying"))) {
    case Answer::Yes: openAnotherSubject(); return false;
    case Answer::No:
        // By itself: a size that cannot be stored is no reason to stay.
        runGuarded(this, [this] { savePlacement(*this, m_module.settings, section); });
        return true;
    case Answer::Cancel: return false;
    }
    return false;
}

void frmNotes::openAnotherSubject()
{
    const auto readable = [this] { (void)listTopics(subjectFile(m_module.subject)); };
    auto *chooser = new frmOpen(m_module, readable, this);
    chooser->setWindowFlag(Qt::Window);
    chooser->setWindowModality(Qt::WindowModal);
    connect(chooser, &frmOpen::closed, this, guarded(this, [this] {
                if (!m_module.subject.path.isEmpty()) {
                    takeSubject();
                }
            }));
    chooser->show();
}
