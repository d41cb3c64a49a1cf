#pragma once

#include "app/Module1.h"
#include "app/RecentSubjects.h"
#include "platform/NotebookPage.h"

#include <array>
#include <functional>

class ImageButton;
class QListWidget;
class QRadioButton;

/// The subject chooser: makes a new subject, or opens a recent one or any other.
///
/// On success it sets the program's subject, moves it to the top of the recent
/// subjects and closes. A subject that cannot be opened is reported; the one
/// before stays, and so does the chooser. Deletes itself when it closes.
class frmOpen final : public NotebookPage
{
    Q_OBJECT

public:
    /// \p show shows the subject that was just chosen. If it throws, the
    /// subject is not taken.
    frmOpen(Module1 &module, std::function<void()> show, QWidget *parent = nullptr);

Q_SIGNALS:
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void layOut();
    void fillList();
    void chooseOption();
    void confirm();
    void cancel();
    void takeNewSubject();
    void takeOtherSubject();
    void takeRecentSubject(int row);

    std::array<QRadioButton *, 2> Option1; ///< what to do: new subject, open subject
    QListWidget *List1;                    ///< more subjects, then the recent ones
    std::array<ImageButton *, 4> Image1;   ///< new, open, OK, cancel

    Module1 &m_module;
    const std::function<void()> m_show;
    RecentSubjects m_recent;
};
