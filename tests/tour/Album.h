#pragma once

#include <QSize>
#include <QString>

class QWidget;

/// Takes the pictures of the tour.
class Album
{
public:
    /// Where the pictures go, and what the desktop is like. A folder that is ""
    /// takes no pictures.
    struct Plan
    {
        QString windows; ///< folder of the windows that fill the desktop
        QString dialogs; ///< folder of those that have a size of their own
        QSize desktop;   ///< in logical pixels; empty: every window has a usual size
    };

    /// Makes the folders; ends the tour if it cannot.
    explicit Album(Plan plan);

    /// Makes \p window as large as a maximised one on the desktop, or \p usual.
    void place(QWidget &window, QSize usual) const;

    /// Takes NAME.png of a window that fills the desktop, and prints \p caption.
    void takeWindow(QWidget &window, const char *name, const char *caption) const;
    /// Takes NAME.png of a window that has a size of its own, and prints \p caption.
    void takeDialog(QWidget &dialog, const char *name, const char *caption) const;

private:
    Plan m_plan;
};
