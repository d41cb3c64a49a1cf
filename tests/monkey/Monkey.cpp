#include "tests/monkey/Monkey.h"

#include "app/CommandGuard.h"
#include "app/Module1.h"
#include "app/WorkDisplay.h"
#include "forms/frmNotes/frmNotes.h"
#include "forms/frmOpen/frmOpen.h"
#include "platform/LongWork.h"
#include "tests/monkey/World.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QThread>
#include <qpa/qwindowsysteminterface.h>

#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr int mostTurns = 200;   ///< after one event
constexpr int mostLeaving = 400; ///< events that end the program
constexpr int betweenChecks = 300;

const QStringList desktopSchemes{QStringLiteral("http"), QStringLiteral("https"), QStringLiteral("ftp"),
                                 QStringLiteral("mailto"), QStringLiteral("file")};

QString visitedAs(const QWidget &window)
{
    if (qobject_cast<const QMessageBox *>(&window) != nullptr) {
        return QStringLiteral("message box");
    }
    if (window.windowType() == Qt::Popup) {
        return QString::fromLatin1(window.metaObject()->className());
    }
    const QString kind = QString::fromLatin1(window.metaObject()->className());
    return kind.startsWith(QLatin1Char('Q')) && kind != QStringLiteral("QDialog") ? kind : window.objectName();
}

bool isHelp(const QWidget *window)
{
    return window->objectName() == QStringLiteral("HelpWindow");
}

int loopLevel()
{
    return QThread::currentThread()->loopLevel();
}

} // namespace

/// What main() makes.
struct Monkey::Program
{
    const WorkDisplay display;
    Module1 module;
};

Monkey::Monkey(unsigned seed, int events, QStringList sights)
    : m_random(seed)
    , m_journal(seed, 2 * events)
    , m_hands(m_random)
    , m_events(events)
    , m_unseen(std::move(sights))
{
    QGuiApplication::clipboard()->clear();
    for (const QString &scheme : desktopSchemes) {
        QDesktopServices::setUrlHandler(scheme, &m_desktop, "anchorClicked");
    }
    connect(&m_desktop, &QTextBrowser::anchorClicked, this, [this] { ++m_story.openings; });
}

Monkey::~Monkey()
{
    for (const QString &scheme : desktopSchemes) {
        QDesktopServices::unsetUrlHandler(scheme);
    }
}

void Monkey::play()
{
    qApp->installEventFilter(this);
    start();
    goOn();
    QCoreApplication::exec();
    qApp->removeEventFilter(this);
}

void Monkey::start()
{
    ++m_story.starts;
    m_program = std::make_unique<Program>();
    Module1 &module = m_program->module;
    runGuarded(nullptr, [&module] {
        const auto showMainWindow = [&module] { (new frmNotes(module))->show(); };
        (new frmOpen(module, showMainWindow))->show();
    });
}

/// The learner has closed the last window.
void Monkey::end()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    check(remains());
    m_program.reset();
    m_places.mend();
    check(m_places.sideFiles());
    check(m_places.complaints());
    if (m_random.chance(50)) {
        m_places.beginAgain();
    }
}

bool Monkey::isFinishing() const
{
    const bool isEnough = m_story.events >= m_events && (m_unseen.isEmpty() || m_story.events >= 2 * m_events);
    return isEnough || !m_complaints.isEmpty();
}

void Monkey::check(const QStringList &complaints)
{
    if (!complaints.isEmpty() && m_complaints.isEmpty()) {
        Journal::tell();
    }
    m_complaints += complaints;
}

// Turns of the event loop.

bool Monkey::eventFilter(QObject *watched, QEvent * /*event*/)
{
    m_isBusy = m_isBusy || watched != this;
    return false;
}

void Monkey::goOn()
{
    QMetaObject::invokeMethod(this, &Monkey::look, Qt::QueuedConnection);
}

bool Monkey::isQuiet()
{
    if (LongWork::isLettingPaint()) {
        return false;
    }
    waitForOtherThreads();
    const bool wasBusy = std::exchange(m_isBusy, false);
    return (!wasBusy && m_turns >= 2) || ++m_turns > mostTurns;
}

void Monkey::look()
{
    if (!isQuiet()) {
        goOn();
        return;
    }
    m_turns = 0;
    step();
}

void Monkey::step()
{
    const std::vector<QWidget *> shown = shownWindows();
    surround(shown);
    check(complaintsOf(shown));
    check(HeardWarnings::take());
    m_story.deepest = std::max(m_story.deepest, loopLevel());

    const bool isOver = std::ranges::all_of(shown, isHelp);
    if (!isOver) {
        goOn();
        happen(*windowInFront());
        return;
    }
    for (QWidget *help : shown) {
        help->close();
    }
    if (loopLevel() > 1) {
        check({QStringLiteral("an event loop goes on without a window")});
        QCoreApplication::exit(1);
        return;
    }
    m_journal.add(QStringLiteral("the program ends"));
    end();
    if (isFinishing()) {
        QCoreApplication::quit();
        return;
    }
    goOn();
    start();
}

/// What a desktop does by itself; and the ways are shut that lead out of the learner's home or to a printer.
void Monkey::surround(const std::vector<QWidget *> &shown)
{
    for (QWidget *window : shown) {
        if (auto *files = qobject_cast<QFileDialog *>(window)) {
            files->setOption(QFileDialog::ReadOnly); // no deleting and renaming
            const QString home = QDir::homePath();
            if (!(files->directory().absolutePath() + QLatin1Char('/')).startsWith(home + QLatin1Char('/'))) {
                files->setDirectory(m_places.documents());
            }
        }
        if (isHelp(window)) {
            window->findChild<QAction *>(QStringLiteral("print"))->setEnabled(false);
        }
    }
    const QWindow *focused = QGuiApplication::focusWindow();
    QWidget *front = windowInFront();
    if ((focused == nullptr || !focused->isVisible()) && front != nullptr) {
        QWindowSystemInterface::handleWindowActivated<QWindowSystemInterface::AsynchronousDelivery>(
            front->windowHandle(), Qt::ActiveWindowFocusReason);
    }
}

void Monkey::happen(QWidget &front)
{
    if (isFinishing()) {
        m_places.mend();
        m_journal.add(m_hands.leave(front));
        if (++m_leaving > mostLeaving) {
            check({QStringLiteral("the program does not end")});
            QCoreApplication::exit(1);
        }
        return;
    }

    ++m_story.events;
    m_unseen.removeOne(visitedAs(front));
    ++m_story.visits[visitedAs(front)];
    m_places.goOn();
    worldClock::pass(std::chrono::milliseconds(m_random.between(5, 60)));
    if (m_random.chance(2)) {
        worldClock::beSlow(m_random.between(10, 80), 100ms);
        ++m_story.slowTimes;
    }
    const auto *box = qobject_cast<const QMessageBox *>(&front);
    m_story.reports += box != nullptr && box->icon() == QMessageBox::Critical ? 1 : 0;

    if (m_random.below(70) == 0) {
        ++m_story.damages;
        const Subject &subject = m_program->module.subject;
        const QString file =
            subject.path.isEmpty() ? m_places.documents() + QStringLiteral("/Odd Things.crl") : subject.path;
        m_journal.add(m_places.damage(m_random, file.toStdString()));
    } else if (m_random.below(6) < loopLevel() - 4 || (isHelp(&front) && m_random.chance(6))) {
        m_journal.add(m_hands.escape());
    } else {
        m_journal.add(m_hands.act(front));
    }
    if (m_story.events % betweenChecks == 0 && m_places.isMended()) {
        check(m_places.complaints());
    }
}
