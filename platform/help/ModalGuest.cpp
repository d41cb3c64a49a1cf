#include "platform/help/ModalGuest.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>

ModalGuest::ModalGuest(QWidget *window)
    : QObject(window)
    , m_window(window)
{
    m_window->installEventFilter(this);
}

void ModalGuest::enter(QWidget *asker)
{
    if (asker != nullptr) {
        m_asker = asker->window();
    }
    (void)m_window->winId(); // makes the window's handle
    followModal();
}

bool ModalGuest::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window && event->type() == QEvent::WindowBlocked) {
        followModal();
    } else if (watched == m_window && event->type() == QEvent::Close) {
        leave();
    } else if (watched == m_host && event->type() == QEvent::Hide) {
        // Now the modal window below it is on top, as soon as this one is gone.
        QMetaObject::invokeMethod(this, &ModalGuest::followModal, Qt::QueuedConnection);
    }
    return false;
}

/// A window that is transient for a modal window is not blocked by it.
void ModalGuest::followModal()
{
    QWindow *own = m_window->windowHandle();
    const QWidget *modal = QApplication::activeModalWidget();
    QWindow *host = modal != nullptr ? modal->window()->windowHandle() : nullptr;
    if (own == nullptr || own->transientParent() == host) {
        return;
    }
    if (host != nullptr && own->isAncestorOf(host, QWindow::IncludeTransients)) {
        return; // a dialog of this window
    }
    if (m_host) {
        m_host->removeEventFilter(this);
    }
    m_host = host;
    if (m_host) {
        m_host->installEventFilter(this);
    }
    own->setTransientParent(host);
}

void ModalGuest::leave()
{
    if (!m_window->isActiveWindow()) {
        return;
    }
    QWidget *next = QApplication::activeModalWidget();
    if (next == nullptr) {
        next = m_asker;
    }
    if (next != nullptr && next->isVisible()) {
        next->activateWindow();
    }
}
