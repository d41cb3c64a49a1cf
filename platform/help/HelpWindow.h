#pragma once

#include "platform/help/HelpBook.h"

#include <QMainWindow>

#include <functional>

class HelpIndexPane;
class HelpPage;
class HelpSearchPane;
class ModalGuest;
class QHelpContentWidget;
class QPrinter;
class QTabWidget;
class QToolBar;

/// The help book: what is in it on the left, the page on the right.
class HelpWindow final : public QMainWindow
{
    Q_OBJECT

public:
    /// Asks the learner how to print, and returns whether to.
    using AskPrinter = std::function<bool(QPrinter &printer, QWidget *parent)>;

    /// Throws HelpUnavailable if the file \p book is missing or no help book.
    explicit HelpWindow(const QString &book, AskPrinter ask = askPrinter);
    ~HelpWindow() override;

    /// See HelpViewer.
    void showTopic(int context, QWidget *asker);

    /// The dialog that the desktop offers.
    [[nodiscard]] static bool askPrinter(QPrinter &printer, QWidget *parent);

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    /// The window's commands: what stands in the tool bar, and the keys.
    void makeCommands();
    void makePanes();
    QAction *addCommand(const QString &picture, const QString &text, const QList<QKeySequence> &keys,
                        std::function<void()> command);

    void openHome();
    void print();
    void switchPane(int pane);
    void switchSide();
    void readPage(const QUrl &place);
    /// Makes the page of \p place, which is read, the current one of the contents.
    void followPage(const QUrl &place);

    HelpBook m_book;
    AskPrinter m_askPrinter;
    ModalGuest *m_modals;
    QToolBar *m_bar;
    QTabWidget *m_panes;
    QHelpContentWidget *m_contents;
    HelpIndexPane *m_index;
    HelpSearchPane *m_search;
    HelpPage *m_page;
    bool m_following = false; ///< the contents follow the page, not the page the contents
};
