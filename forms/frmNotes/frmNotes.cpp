#include "forms/frmNotes/frmNotes.h"

#include "app/CommandGuard.h"
#include "app/Help.h"
#include "app/WindowPlacement.h"
#include "forms/CommandBar.h"
#include "forms/Controls.h"
#include "forms/HelpKey.h"
#include "forms/frmEditCards/frmEditCards.h"
#include "forms/frmFlashCard/frmFlashCard.h"
#include "forms/frmOpen/frmOpen.h"
#include "forms/frmOptions/frmOptions.h"
#include "forms/frmTest/frmTest.h"
#include "platform/ClickSound.h"
#include "platform/CommonDialogs.h"
#include "platform/ElidedLabel.h"
#include "platform/PaperPalette.h"
#include "platform/PaperSheet.h"
#include "platform/RichTextBox.h"
#include "platform/TabStrip.h"
#include "platform/Twips.h"
#include "store/Statements.h"
#include "store/SubjectReading.h"
#include "store/SubjectWriting.h"
#include "txtEdit/txtEdit.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>

#include <vector>

namespace {

enum Command {
    Create,
    Rename,
    Delete,
    EditCards,
    Study,
    BackgroundColor,
    Help,
    Exit,
    Edit,
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
constexpr std::array topicGroup{Create, Rename, Delete};
constexpr std::array writingGroup{Edit, EditCards};
constexpr std::array studyGroup{Study};
constexpr std::array programGroup{BackgroundColor, Help, Exit};

constexpr std::array<AltKey, 6> altKeys{{
    {Qt::Key_N, Create},
    {Qt::Key_R, Rename},
    {Qt::Key_D, Delete},
    {Qt::Key_S, Study},
    {Qt::Key_E, Edit},
    {Qt::Key_F, EditCards},
}};

constexpr PageRuling page{.firstLine = 1180, .marginLine = true};
constexpr int minWidth = 9315;  // twips
constexpr int minHeight = 6105; // twips

const QString section = QStringLiteral("Notes");
const QString keyPrefix = QStringLiteral("Key");
const QString askForName = QStringLiteral("Name of topic?");
const QString noTopics = QStringLiteral("No Topics");
// One text for notes and cards.
const QString createTopicFirst = QStringLiteral("You must create a topic before editing flash cards");

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
    , CoolBar1(new EditTools(m_sheet))
    , RichTextBox1(makeControl<RichTextBox>(m_sheet, QLatin1String("RichTextBox1")))
    , StatusBar1(makeControl<QLabel>(m_sheet, QLatin1String("StatusBar1")))
    , m_module(module)
    , m_tools(
          std::make_unique<txtEdit>(*CoolBar1, txtEdit::Window{this, [this] { myHelp(); },
                                                               [this](const QKeyEvent &key) { return takeKey(key); }}))
{
    setObjectName(QStringLiteral("frmNotes"));
    setAttribute(Qt::WA_DeleteOnClose);
    applyBackground(*this, m_module.settings);

    setFaces(Image1, faces);
    Label1->setFont(notebookFont(18));
    TabStrip1->setToolTip(QStringLiteral("Select your topic"));
    CoolBar1->hide();
    RichTextBox1->setLocked(true);
    RichTextBox1->setFrameShape(QFrame::NoFrame);
    RichTextBox1->setAccessibleName(QStringLiteral("Notes"));
    m_tools->addBox(*RichTextBox1);
    m_sheet->showFocusOf(*RichTextBox1);
    StatusBar1->setTextFormat(Qt::PlainText);

    layOut();

    setWindowTitle(subjectCaption(m_module.subject));
    restorePlacement(*this, m_module.settings, section);

    connectCommands();
    LoadTopics();
    if (TabStrip1->count() > 0) {
        TabStrip1->setFocus(); // where the arrow keys leaf through the topics
    } else {
        Image1[Create]->setFocus();
    }
}

frmNotes::~frmNotes() = default;

void frmNotes::layOut()
{
    setMinimumSize(toPixels(minWidth), toPixels(minHeight));

    std::vector<QWidget *> inTabOrder;
    auto *commands = new QHBoxLayout;
    commands->setSpacing(toPixels(60));
    const auto addGroup = [&](const auto &group) { addCommands(*commands, Image1, group, inTabOrder); };
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
    sheetRows->addWidget(CoolBar1);
    sheetRows->addWidget(RichTextBox1, 1);
    sheetRows->addWidget(StatusBar1);

    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(toPixels(PageRuling::marginAt + 180), 0, toPixels(300), toPixels(240));
    rows->setSpacing(0);
    rows->addWidget(makeCommandBar(this, {commands, titleRow}));
    rows->addSpacing(toPixels(120));
    rows->addLayout(tabRow);
    rows->addWidget(m_sheet, 1);
    rows->addStretch(); // keeps the commands on top when there is no sheet

    inTabOrder.push_back(TabStrip1);
    addTextInTabOrder(inTabOrder, *CoolBar1, {RichTextBox1});
    chainTabOrder(inTabOrder);
}

/// The tabs and the sheet are there while there are topics to show.
void frmNotes::layOutContent()
{
    TabStrip1->setVisible(TabStrip1->count() > 0);
    m_sheet->setVisible(TabStrip1->count() > 0);
}

void frmNotes::connectCommands()
{
    connect(TabStrip1, &TabStrip::chosen, this, guarded(this, &frmNotes::showSelectedTab));
    connect(RichTextBox1, &RichTextBox::doubleClicked, this, guarded(this, [this] {
                if (!isEditing()) {
                    playClick();
                    EditNotes();
                }
            }));
    for (int command = Create; command <= Edit; ++command) {
        connect(Image1.at(static_cast<std::size_t>(command)), &ImageButton::clicked, this,
                guarded(this, [this, command] { run(command); }));
    }
    offerHelp(*this, [this] { isEditing() ? myHelp() : showHelp(this, HelpContext::MainWindow); });
}

// Commands.

void frmNotes::run(int command)
{
    playClick();
    if (!isEditing() || mayLeaveNotes(command)) {
        carryOut(command);
    }
}

/// Every command finds the notes stored.
bool frmNotes::mayLeaveNotes(int command)
{
    const auto store = [this] {
        SaveChanges();
        ShowTopic();
    };
    if (command != Exit) {
        store();
        return true;
    }
    // Once the learner knows that storing fails, closing offers to leave without it.
    if (m_closing.hasFailed()) {
        m_closing.tryAgain(store);
        return true;
    }
    return m_closing.mayClose(this, store);
}

void frmNotes::carryOut(int command)
{
    switch (static_cast<Command>(command)) {
    case Create: CreateTopic(); break;
    case Rename: RenameTopic(); break;
    case Delete: DeleteTopic(); break;
    case EditCards: EditFlashCards(); break;
    case Study: study(); break;
    case BackgroundColor: chooseBackground(); break;
    case Help: showHelp(this, HelpContext::MainWindow); break;
    case Exit: close(); break;
    case Edit: EditNotes(); break;
    }
}

bool frmNotes::takeKey(const QKeyEvent &key)
{
    const bool isPlainEscape = key.key() == Qt::Key_Escape && key.modifiers() == Qt::NoModifier;
    if (!isEditing() || !isPlainEscape) {
        return false;
    }
    runGuarded(this, [this] { SaveChanges(); });
    return true;
}

void frmNotes::keyPressEvent(QKeyEvent *event)
{
    if (const auto command = commandOf(*event, altKeys)) {
        runGuarded(this, [&] { run(*command); });
    } else if (event->modifiers() == Qt::NoModifier && event->key() == Qt::Key_Escape) {
        close();
    } else {
        NotebookPage::keyPressEvent(event);
    }
}

// Topics.

void frmNotes::LoadTopics()
{
    const std::vector<TopicEntry> topics = listTopics(subjectFile(m_module.subject));
    TabStrip1->removeAllTabs();
    for (const TopicEntry &topic : topics) {
        addTab(topic.index, QString::fromStdString(topic.name));
    }
    layOutContent();
    if (topics.empty()) {
        Label1->setText(QStringLiteral("Create Topic..."));
        RichTextBox1->setTextRtf({});
        if (isEditing()) {
            SaveChanges();
        }
        ShowTopic();
    } else {
        TabStrip1->select(0);
    }
}

int frmNotes::selectedTopic() const
{
    return TabStrip1->selectedKey().mid(keyPrefix.size()).toInt();
}

void frmNotes::addTab(int topic, const QString &name)
{
    TabStrip1->addKeyedTab(keyPrefix + QString::number(topic), name);
}

/// Notes that are being edited go to the topic that was just selected.
void frmNotes::showSelectedTab()
{
    if (isVisible()) {
        playClick();
    }
    if (isEditing()) {
        SaveChanges();
    }
    ShowTopic();
}

void frmNotes::ShowTopic()
{
    if (TabStrip1->count() == 0) {
        StatusBar1->hide();
        return;
    }
    // A topic that cannot be read shows no notes, rather than those of the one before.
    m_shown.clear();
    RichTextBox1->clear();
    Label1->setText(TabStrip1->keyedCaption(TabStrip1->currentIndex()));
    StatusBar1->hide();
    const TopicContents topic = readTopic(subjectFile(m_module.subject), selectedTopic());
    RichTextBox1->setRtf(topic.notes);
    Label1->setText(QString::fromStdString(topic.name));
    if (TabStrip1->keyedCaption(TabStrip1->currentIndex()) != Label1->text()) {
        TabStrip1->setKeyedCaption(TabStrip1->currentIndex(), Label1->text()); // renamed by another program
    }
    StatusBar1->setText(cardCountLine(topic.cardCount));
    StatusBar1->show();
    m_shown = TabStrip1->selectedKey();
}

void frmNotes::CreateTopic()
{
    const auto name = askText(this, askForName, QStringLiteral("New Topic"),
                              QStringLiteral("Chapter %1").arg(TabStrip1->count() + 1));
    if (!name || name->isEmpty()) {
        return;
    }
    const int topic = createTopic(subjectFile(m_module.subject), name->toStdString());
    addTab(topic, *name);
    layOutContent();
    TabStrip1->select(TabStrip1->count() - 1);
}

void frmNotes::RenameTopic()
{
    if (TabStrip1->count() == 0) {
        showInformation(this, QStringLiteral("There are not topics to rename."), noTopics);
        return;
    }
    const int position = TabStrip1->currentIndex();
    const auto name = askText(this, askForName, QStringLiteral("Rename Topic"), Label1->text());
    if (name && !name->isEmpty()) {
        renameTopic(subjectFile(m_module.subject), selectedTopic(), name->toStdString());
        TabStrip1->setKeyedCaption(position, *name);
    }
    TabStrip1->setFocus();
    TabStrip1->select(position);
}

void frmNotes::DeleteTopic()
{
    if (TabStrip1->count() == 0) {
        showInformation(this, QStringLiteral("There are no topics to delete."), noTopics);
        return;
    }
    const QString question = QStringLiteral("Are you sure you want to delete the '%1'\n"
                                            "topic and all of its flash cards and notes?");
    if (askYesNo(this, question.arg(Label1->text()), QStringLiteral("Delete Topic")) != Answer::Yes) {
        return;
    }
    deleteTopic(subjectFile(m_module.subject), selectedTopic());
    LoadTopics();
}

void frmNotes::takeSubject()
{
    setWindowTitle(subjectCaption(m_module.subject));
    TabStrip1->removeAllTabs(); // should the new ones not be readable, none of another subject stay
    LoadTopics();
}

// Notes.

bool frmNotes::isEditing() const
{
    return !CoolBar1->isHidden();
}

bool frmNotes::isUntouched() const
{
    return RichTextBox1->plainText() == Label1->text() + QStringLiteral(" notes...");
}

void frmNotes::EditNotes()
{
    if (TabStrip1->count() == 0) {
        showInformation(this, createTopicFirst, noTopics);
        return;
    }
    if (m_shown != TabStrip1->selectedKey()) {
        ShowTopic(); // only notes that have been read may be written over
    }
    const bool hasFocus = RichTextBox1->hasFocus();
    RichTextBox1->setLocked(false);
    CoolBar1->show();
    RichTextBox1->setFocus();
    if (isUntouched()) {
        RichTextBox1->selectAll();
    } else if (!hasFocus) {
        RichTextBox1->moveCursor(QTextCursor::Start);
    }
    m_tools->UpdateFormatState();
}

void frmNotes::SaveChanges()
{
    if (TabStrip1->count() > 0) {
        saveNotes(subjectFile(m_module.subject), selectedTopic(), RichTextBox1->rtf());
    }
    const bool toolsHadFocus = CoolBar1->isAncestorOf(focusWidget());
    RichTextBox1->setLocked(true);
    CoolBar1->hide();
    if (toolsHadFocus) {
        RichTextBox1->setFocus();
    }
    m_closing.forgetFailure();
}

void frmNotes::myHelp()
{
    showHelp(this, HelpContext::EditingNotes);
}

// Cards and studies.

void frmNotes::EditFlashCards()
{
    if (TabStrip1->count() == 0) {
        showInformation(this, createTopicFirst, noTopics);
        return;
    }
    m_module.study.cardQuery = cardsOfTopic(selectedTopic());
    auto *editor = new frmEditCards(m_module, {selectedTopic(), Label1->text()}, this);
    connect(editor, &frmEditCards::closed, this, guarded(this, &frmNotes::ShowTopic));
    editor->show();
}

void frmNotes::study()
{
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
    case StudyStyle::FlashCards: openStudy(new frmFlashCard(m_module)); break;
    case StudyStyle::Test: openStudy(new frmTest(m_module)); break;
    }
}

template <class Window>
void frmNotes::openStudy(Window *window)
{
    connect(window, &Window::closed, this, &frmNotes::comeBack);
    window->show();
    hide();
}

void frmNotes::comeBack()
{
    show();
    activateWindow();
}

void frmNotes::chooseBackground()
{
    const auto color = askColor(this, QStringLiteral("Background color"), paperColor());
    if (!color) {
        return;
    }
    m_module.settings.write(QStringLiteral("Settings"), QStringLiteral("Color"),
                            QString::number(numberOfColor(*color)));
    applyBackground(*this, m_module.settings);
}

// Closing.

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
        if (isEditing() && !m_closing.mayClose(this, [this] { SaveChanges(); })) {
            return false;
        }
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
    chooser->setWindowModality(Qt::WindowModal);
    connect(chooser, &frmOpen::closed, this, guarded(this, [this] {
                if (!m_module.subject.path.isEmpty()) {
                    takeSubject();
                }
            }));
    chooser->show();
}
