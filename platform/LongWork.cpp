#include "platform/LongWork.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QFrame>
#include <QLabel>
#include <QProgressBar>
#include <QScopedValueRollback>
#include <QVBoxLayout>

using namespace std::chrono_literals;

namespace {

constexpr auto untilPointer = 500ms;
constexpr auto untilPanel = 2000ms;
constexpr auto betweenPaints = 100ms; // smooth for a progress bar, and next to no time for the work

constexpr int panelWidth = 300; // pixels
constexpr int panelMargin = 16;

bool isPainting = false;     ///< the event loop runs inside of work
LongWork *display = nullptr; ///< the last one made

QWidget *windowInFront()
{
    if (QWidget *active = QApplication::activeWindow()) {
        return active;
    }
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible()) {
            return window;
        }
    }
    return nullptr;
}

} // namespace

LongWork::LongWork(Clock now)
    : m_now(std::move(now))
{
    display = this;
    const QAbstractEventDispatcher *loop = QAbstractEventDispatcher::instance();
    connect(loop, &QAbstractEventDispatcher::awake, this, &LongWork::loopTurned);
    connect(loop, &QAbstractEventDispatcher::aboutToBlock, this, &LongWork::loopTurned);
}

LongWork::~LongWork()
{
    if (display == this) {
        display = nullptr;
    }
    loopTurned();
}

bool LongWork::isLettingPaint()
{
    return isPainting;
}

std::chrono::milliseconds LongWork::steadyTime()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch());
}

void LongWork::goesOn(const QString &what, int done, int total)
{
    if (isPainting) {
        return;
    }
    const auto now = m_now();
    if (m_isNew) {
        m_isNew = false;
        m_since = now;
        m_painted = now;
    }
    if (now - m_since < untilPointer || now - m_painted < betweenPaints) {
        return;
    }
    m_painted = now;
    showPointer();
    if (now - m_since >= untilPanel) {
        showPanel(what, done, total);
    }
    letPaint();
}

void LongWork::willBeSilent(const QString &what, Silence silence)
{
    if (isPainting) {
        return;
    }
    showPointer();
    if (silence == Silence::Long) {
        showPanel(what, 0, 0);
    }
    letPaint();
}

void LongWork::announce(const QString &what, Silence silence)
{
    if (display != nullptr) {
        display->willBeSilent(what, silence);
    }
}

void LongWork::loopTurned()
{
    if (isPainting) {
        return;
    }
    m_isNew = true;
    delete m_panel;
    if (m_showsPointer) {
        QApplication::restoreOverrideCursor();
        m_showsPointer = false;
    }
}

void LongWork::showPointer()
{
    if (!m_showsPointer) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        m_showsPointer = true;
    }
}

void LongWork::showPanel(const QString &what, int done, int total)
{
    if (m_panel == nullptr) {
        QWidget *window = windowInFront();
        if (window == nullptr) {
            return;
        }
        auto *panel = new QFrame(window);
        m_panel = panel;
        panel->setObjectName(QStringLiteral("LongWork"));
        QPalette desktop = QApplication::palette(); // not the page's
        desktop.setResolveMask(~QPalette::ResolveMask(0));
        panel->setPalette(desktop);
        panel->setAutoFillBackground(true);
        panel->setFrameStyle(QFrame::Box | QFrame::Plain);
        m_text = new QLabel(panel);
        m_bar = new QProgressBar(panel);
        m_text->setBuddy(m_bar);
        m_bar->setTextVisible(false);
        auto *rows = new QVBoxLayout(panel);
        rows->setContentsMargins(panelMargin, panelMargin, panelMargin, panelMargin);
        rows->addWidget(m_text);
        rows->addWidget(m_bar);
        panel->setFixedWidth(std::min(panelWidth, window->width()));
        m_text->setText(what);
        panel->adjustSize();
        panel->move((window->width() - panel->width()) / 2, (window->height() - panel->height()) / 2);
        panel->raise();
        panel->show();
    }
    m_text->setText(what);
    m_bar->setAccessibleName(what);
    m_bar->setRange(0, total);
    m_bar->setValue(done);
}

void LongWork::letPaint()
{
    const QScopedValueRollback painting(isPainting, true);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}
