#include "forms/frmOpen/frmOpen.h"

#include "app/CommandGuard.h"
#include "app/ProgramFiles.h"
#include "forms/Controls.h"
#include "forms/HelpKey.h"
#include "platform/ClickSound.h"
#include "platform/CommonDialogs.h"
#include "platform/FocusRing.h"
#include "platform/ImageButton.h"
#include "platform/PaperFrame.h"
#include "platform/Twips.h"
#include "store/SubjectStore.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QGridLayout>
#include <QKeyEvent>
#include <QListWidget>
#include <QRadioButton>
#include <QScopedValueRollback>

namespace {

enum Option { NewSubject, OpenSubject };
enum Button { NewButton, OpenButton, OkButton, CancelButton };

const QString moreSubjects = QStringLiteral("More Subjects...");

// The item's slot of the recent table, as it stood when the list was filled: the
// table moves on while the chooser stays open, what the learner reads does not.
constexpr int pathRole = Qt::UserRole;

constexpr PageRuling page{.firstLine = 840, .marginLine = false, .binding = PageRuling::Binding::Spiral};
constexpr int pageWidth = 7200;  // twips
constexpr int pageHeight = 4800; // twips: the spiral's 19 holes and as much room below as above

constexpr std::array<ButtonFace, 4> faces{{
    {"new-subject", "New Subject..."},
    {"open-subject", "Open Subject"},
    {"ok", "OK"},
    {"cancel", "Cancel"},
}};

} // namespace

frmOpen::frmOpen(Module1 &module, std::function<void()> show, QWidget *parent)
    : NotebookPage(page, parent)
    , Option1(makeControlArray<QRadioButton, 2>(this, QLatin1String("Option1")))
    , List1(makeControl<QListWidget>(this, QLatin1String("List1")))
    , Image1(makeControlArray<ImageButton, 4>(this, QLatin1String("Image1")))
    , m_module(module)
    , m_show(std::move(show))
{
    setObjectName(QStringLiteral("frmOpen"));
    setWindowTitle(QStringLiteral("Cramlet"));
    setAttribute(Qt::WA_DeleteOnClose);
    new FocusRing(*this);
    applyBackground(*this, m_module.settings);

    setFaces(Image1, faces);
    Option1[NewSubject]->setText(QStringLiteral("&New Subject..."));
    Option1[NewSubject]->setToolTip(QStringLiteral("New Subject..."));
    Option1[OpenSubject]->setText(QStringLiteral("&Open Subject:"));
    Option1[OpenSubject]->setToolTip(QStringLiteral("Open Subject"));
    for (QRadioButton *option : Option1) {
        option->setFont(notebookFont(12));
        option->setCursor(Qt::UpArrowCursor);
    }
    List1->setFont(notebookFont(10));
    givePaperFrame(*List1);
    List1->setAccessibleName(QStringLiteral("Subjects"));

    layOut();

    runGuarded(this, [this] { RecentSubjects::offerSamples(m_module.settings, provideSamples); });
    m_recent = RecentSubjects::load(m_module.settings);
    fillList();
    Option1[OpenSubject]->setChecked(true);
    List1->setCurrentRow(1);
    List1->setFocus();

    for (QRadioButton *option : Option1) {
        connect(option, &QRadioButton::toggled, this, [this](bool checked) {
            if (checked) {
                runGuarded(this, [this] { chooseOption(); });
            }
        });
    }
    for (const int option : {NewSubject, OpenSubject}) {
        Image1.at(static_cast<std::size_t>(option))->setFocusPolicy(Qt::NoFocus); // its option has the focus
        connect(Image1.at(static_cast<std::size_t>(option)), &ImageButton::clicked, this, [this, option] {
            QRadioButton *chosen = Option1.at(static_cast<std::size_t>(option));
            chosen->setChecked(true);
            chosen->setFocus();
        });
    }
    connect(Image1[OkButton], &ImageButton::clicked, this, guarded(this, &frmOpen::confirm));
    connect(Image1[CancelButton], &ImageButton::clicked, this, guarded(this, &frmOpen::cancel));
    connect(List1, &QListWidget::itemDoubleClicked, this, [this] { runGuarded(this, [this] { confirm(); }); });
    offerHelp(*this, HelpContext::GettingStarted);
}

void frmOpen::layOut()
{
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(toPixels(PageRuling::marginAt), toPixels(180), toPixels(300), toPixels(180));
    grid->setHorizontalSpacing(toPixels(120));
    grid->setVerticalSpacing(toPixels(60));
    grid->addWidget(Image1[NewButton], 0, 0);
    grid->addWidget(Option1[NewSubject], 0, 1, 1, 2);
    grid->addWidget(Image1[OpenButton], 1, 0);
    grid->addWidget(Option1[OpenSubject], 1, 1, 1, 2);
    grid->addWidget(List1, 2, 1, 3, 1);
    grid->addWidget(Image1[OkButton], 3, 2);
    grid->addWidget(Image1[CancelButton], 4, 2);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(2, 1);
    setFixedSize(toPixels(pageWidth), toPixels(pageHeight));
}

void frmOpen::fillList()
{
    List1->addItem(moreSubjects);
    for (int slot = 0; slot < RecentSubjects::slotCount; ++slot) {
        auto *item = new QListWidgetItem(m_recent.slot(slot).name, List1);
        item->setData(pathRole, m_recent.slot(slot).path);
        item->setToolTip(m_recent.slot(slot).path);
        if (item->text().isEmpty()) {
            item->setData(Qt::AccessibleTextRole, QStringLiteral("No subject"));
        }
    }
}

void frmOpen::chooseOption()
{
    if (isVisible()) {
        playClick();
    }
    List1->setEnabled(Option1[OpenSubject]->isChecked());
    if (List1->currentRow() < 0) {
        List1->setCurrentRow(List1->count() >= 2 ? 1 : 0);
    }
}

void frmOpen::confirm()
{
    playClick();
    for (QRadioButton *option : Option1) {
        if (option->isDown()) {
            option->click(); // chosen by its key a moment ago, and still on its way down
        }
    }
    QScopedValueRollback<Subject> unlessShown(m_module.subject);
    if (Option1[NewSubject]->isChecked()) {
        takeNewSubject();
    } else if (List1->currentRow() <= 0) {
        takeOtherSubject();
    } else {
        takeRecentSubject(List1->currentRow());
    }
    m_recent.moveToTop(m_module.subject);
    if (!m_module.subject.path.isEmpty()) {
        m_show();
        unlessShown.commit();
        close();
    }
}

void frmOpen::takeNewSubject()
{
    const auto file = askSaveSubject(this, QStringLiteral("New Subject"), m_module.subject.path);
    if (file && !file->trimmed().isEmpty()) {
        m_module.subject = subjectAt(*file);
        SubjectStore::create(subjectFile(m_module.subject));
    }
}

void frmOpen::takeOtherSubject()
{
    if (const auto file = askOpenSubject(this, QStringLiteral("Open Subject"), m_module.subject.path)) {
        m_module.subject = subjectAt(*file);
    }
}

void frmOpen::takeRecentSubject(int row)
{
    const QListWidgetItem *item = List1->item(row);
    const QString path = item->data(pathRole).toString();
    if (!path.isEmpty() && QFileInfo::exists(path)) {
        m_module.subject = {path, item->text()};
        return;
    }
    showInformation(this,
                    QStringLiteral("Unable to locate subject. Open another subject or select 'More Subjects' to locate "
                                   "this subject."),
                    QStringLiteral("Load Subject"));
}

void frmOpen::cancel()
{
    playClick();
    close();
}

void frmOpen::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter: runGuarded(this, [this] { confirm(); }); break;
    case Qt::Key_Escape: runGuarded(this, [this] { cancel(); }); break;
    default: NotebookPage::keyPressEvent(event);
    }
}

void frmOpen::closeEvent(QCloseEvent *event)
{
    runGuarded(this, [this] { m_recent.save(m_module.settings); });
    event->accept();
    Q_EMIT closed();
}
