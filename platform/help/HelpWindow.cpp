#include "platform/help/HelpWindow.h"

#include "platform/help/HelpIndexPane.h"
#include "platform/help/HelpPage.h"
#include "platform/help/HelpSearchPane.h"
#include "platform/help/HelpViewer.h"
#include "platform/help/ModalGuest.h"

#include <QAction>
#include <QHelpContentWidget>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QScopedValueRollback>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QTabWidget>
#include <QTimer>
#include <QToolBar>

namespace {

constexpr QSize usualSize(900, 640);
constexpr int paneWidth = 270;
constexpr int gettingStarted = 10; // the topic that tells how to find one's way

} // namespace

HelpWindow::HelpWindow(const QString &book, AskPrinter ask)
    : m_book(book)
    , m_askPrinter(std::move(ask))
    , m_modals(new ModalGuest(this))
    , m_bar(new QToolBar(QStringLiteral("Help commands"), this))
{
    setObjectName(QStringLiteral("HelpWindow"));
    setWindowTitle(QStringLiteral("Cramlet Help"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/help.svg")));
    setAttribute(Qt::WA_QuitOnClose, false);
    resize(usualSize.boundedTo(screen()->availableSize()));

    m_bar->setObjectName(QStringLiteral("HelpCommands"));
    m_bar->setMovable(false);
    m_bar->setContextMenuPolicy(Qt::PreventContextMenu);
    addToolBar(m_bar);

    auto *sides = new QSplitter(this);
    sides->setChildrenCollapsible(false);
    m_panes = new QTabWidget(sides);
    m_contents = m_book.contents();
    m_index = new HelpIndexPane(m_book, m_panes);
    m_search = new HelpSearchPane(m_book, m_panes);
    m_page = new HelpPage(m_book, sides);
    setCentralWidget(sides);
    const int pane = std::min(paneWidth, width() * 2 / 5);
    sides->setSizes({pane, width() - pane});
    sides->setStretchFactor(0, 0);
    sides->setStretchFactor(1, 1);

    makePanes();
    makeCommands();
}

HelpWindow::~HelpWindow()
{
    delete takeCentralWidget(); // before the book that the panes read
}

void HelpWindow::makePanes()
{
    m_panes->setObjectName(QStringLiteral("HelpPanes"));
    m_panes->setAccessibleName(QStringLiteral("Ways to find a page"));
    m_panes->addTab(m_contents, QStringLiteral("&Contents"));
    m_panes->addTab(m_index, QStringLiteral("&Index"));
    m_panes->addTab(m_search, QStringLiteral("&Search"));
    m_contents->setObjectName(QStringLiteral("HelpContents"));
    m_contents->setAccessibleName(QStringLiteral("Contents"));
    m_contents->setFrameShape(QFrame::NoFrame);
    m_page->setObjectName(QStringLiteral("HelpPage"));
    m_page->setAccessibleName(QStringLiteral("Page"));

    auto *model = qobject_cast<QHelpContentModel *>(m_contents->model());
    const auto pageAt = [model](const QModelIndex &entry) {
        const QHelpContentItem *item = model->contentItemAt(entry);
        return item != nullptr ? item->url() : QUrl();
    };
    connect(model, &QHelpContentModel::contentsCreated, this, [this] {
        m_contents->expandAll();
        followPage(m_page->source());
    });
    connect(m_contents->selectionModel(), &QItemSelectionModel::currentChanged, m_page,
            [this, pageAt](const QModelIndex &entry) {
                if (!m_following) {
                    m_page->openPlace(pageAt(entry));
                }
            });
    connect(m_contents, &QAbstractItemView::clicked, m_page,
            [this, pageAt](const QModelIndex &entry) { m_page->openPlace(pageAt(entry)); });
    connect(m_contents, &QHelpContentWidget::linkActivated, this, &HelpWindow::readPage);
    connect(m_index, &HelpIndexPane::chosen, this, &HelpWindow::readPage);
    connect(m_search, &HelpSearchPane::shown, m_page, [this](const QUrl &place, const QStringList &words) {
        m_page->openPlace(place);
        m_page->mark(words);
    });
    connect(m_search, &HelpSearchPane::chosen, this, [this](const QUrl &place, const QStringList &words) {
        readPage(place);
        m_page->mark(words);
    });
    connect(m_page, &QTextBrowser::sourceChanged, this, &HelpWindow::followPage);

    setTabOrder(m_panes, m_contents);
    setTabOrder(m_contents, m_index);
    setTabOrder(m_index, m_search);
    setTabOrder(m_search, m_page);
}

void HelpWindow::makeCommands()
{
    QAction *back = addCommand(QStringLiteral("back"), QStringLiteral("Back"), {QKeySequence(Qt::ALT | Qt::Key_Left)},
                               [this] { m_page->backward(); });
    QAction *forward = addCommand(QStringLiteral("forward"), QStringLiteral("Forward"),
                                  {QKeySequence(Qt::ALT | Qt::Key_Right)}, [this] { m_page->forward(); });
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(m_page, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(m_page, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    addCommand(QStringLiteral("home"), QStringLiteral("First page"), {QKeySequence(Qt::ALT | Qt::Key_Home)},
               [this] { openHome(); });
    m_bar->addSeparator();
    addCommand(QStringLiteral("print"), QStringLiteral("Print..."), {QKeySequence::Print}, [this] { print(); });
    m_bar->addSeparator();
    addCommand(QStringLiteral("smaller"), QStringLiteral("Smaller letters"), {QKeySequence::ZoomOut},
               [this] { m_page->enlarge(-1); });
    addCommand(QStringLiteral("larger"), QStringLiteral("Larger letters"),
               QKeySequence::keyBindings(QKeySequence::ZoomIn) + QList{QKeySequence(Qt::CTRL | Qt::Key_Equal)},
               [this] { m_page->enlarge(1); });
    // Out of the bar, by key alone.
    const auto key = [this](const QKeySequence &keys, auto command) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, command);
    };
    key(QKeySequence(Qt::CTRL | Qt::Key_0), [this] { m_page->resetLetters(); });
    key(QKeySequence::Find, [this] { switchPane(m_panes->indexOf(m_search)); });
    for (int pane = 0; pane < m_panes->count(); ++pane) {
        key(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + pane)), [this, pane] { switchPane(pane); });
    }
    key(QKeySequence(Qt::Key_F6), [this] { switchSide(); });
    key(QKeySequence(Qt::Key_F1), [this] { showTopic(gettingStarted, nullptr); });
    key(QKeySequence(Qt::Key_Escape), [this] { close(); });
}

QAction *HelpWindow::addCommand(const QString &picture, const QString &text, const QList<QKeySequence> &keys,
                                std::function<void()> command)
{
    auto *action = new QAction(QIcon(QStringLiteral(":/icons/%1.svg").arg(picture)), text, this);
    action->setObjectName(picture);
    action->setShortcuts(keys);
    action->setToolTip(QStringLiteral("%1 (%2)").arg(text, action->shortcut().toString(QKeySequence::NativeText)));
    connect(action, &QAction::triggered, this, std::move(command));
    m_bar->addAction(action);
    m_bar->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
    return action;
}

void HelpWindow::showTopic(int context, QWidget *asker)
{
    const std::optional<QUrl> place = m_book.topic(context);
    if (!place) {
        throw HelpUnavailable(QStringLiteral("The help book does not have this topic (number %1):\n%2\n\nInstall "
                                             "Cramlet again to repair it.")
                                  .arg(context)
                                  .arg(m_book.file()));
    }
    setProperty("helpContext", context);
    m_page->openPlace(*place);
    m_modals->enter(asker);
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
    m_page->setFocus();
}

/// The book is read through when the window is on the screen, and not before.
void HelpWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    QTimer::singleShot(0, m_search, &HelpSearchPane::prepare);
}

/// When it opens again it does so where it was.
void HelpWindow::closeEvent(QCloseEvent *event)
{
    move(pos());
    QMainWindow::closeEvent(event);
}

void HelpWindow::openHome()
{
    auto *model = qobject_cast<QHelpContentModel *>(m_contents->model());
    if (const QHelpContentItem *first = model->contentItemAt(model->index(0, 0))) {
        m_page->openPlace(first->url());
    }
}

bool HelpWindow::askPrinter(QPrinter &printer, QWidget *parent)
{
    QPrintDialog dialog(&printer, parent);
    dialog.setWindowTitle(QStringLiteral("Print"));
    return dialog.exec() == QDialog::Accepted;
}

void HelpWindow::print()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(m_page->documentTitle());
    if (!m_askPrinter(printer, this)) {
        return;
    }
    m_page->printOn(printer);
    if (printer.printerState() == QPrinter::Error) {
        const QString where = printer.outputFileName().isEmpty() ? printer.printerName() : printer.outputFileName();
        QMessageBox::warning(this, QStringLiteral("Print"),
                             QStringLiteral("The page could not be printed to:\n%1\n\nTry another printer, or another "
                                            "file.")
                                 .arg(where));
    }
}

void HelpWindow::switchPane(int pane)
{
    m_panes->setCurrentIndex(pane);
    m_panes->currentWidget()->setFocus(Qt::ShortcutFocusReason); // selects what a line holds
}

void HelpWindow::switchSide()
{
    if (m_page->hasFocus()) {
        m_panes->currentWidget()->setFocus(Qt::ShortcutFocusReason);
    } else {
        m_page->setFocus();
    }
}

void HelpWindow::readPage(const QUrl &place)
{
    m_page->openPlace(place);
    m_page->setFocus();
}

void HelpWindow::followPage(const QUrl &place)
{
    const QModelIndex entry = m_contents->indexOf(place);
    if (entry.isValid()) {
        const QScopedValueRollback following(m_following, true);
        m_contents->setCurrentIndex(entry);
    }
}
