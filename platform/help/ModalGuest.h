#pragma once

#include <QObject>
#include <QPointer>

class QWidget;
class QWindow;

/// Keeps a window usable while modal windows of the program are open, over
/// whichever of them is on top, and gives the keys back when it closes.
class ModalGuest final : public QObject
{
    Q_OBJECT

public:
    /// \p window is a top-level window, and owns this.
    explicit ModalGuest(QWidget *window);

    /// Call before the window is shown or raised. When it closes, the keys go to the modal window
    /// on top, or else to the window of \p asker, or of the last one if that is null.
    void enter(QWidget *asker);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void followModal();
    void leave();

    QWidget *m_window;
    QPointer<QWidget> m_asker; ///< gets the keys back
    QPointer<QWindow> m_host;  ///< of the modal window that this window stands over
};
