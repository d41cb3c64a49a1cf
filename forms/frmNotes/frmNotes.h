#pragma once

#include "app/Module1.h"
#include "platform/NotebookPage.h"

#include <array>

class ElidedLabel;
class ImageButton;
class PaperSheet;
class QLabel;
class RichTextBox;
class TabStrip;

/// The main window: a tab for each topic of the subject, the topic's notes,
/// and the way to studying.
///
/// It keeps no list of topics of its own: the tabs are the list. Made with the
/// program's subject loaded; throws if that fails. Deletes itself when it closes.
class frmNotes final : public NotebookPage
{
    Q_OBJECT

public:
    explicit frmNotes(Module1 &module);

    /// Rebuilds the tabs from the subject and selects the first.
    void LoadTopics();
    /// Shows the selected tab's topic: name, notes and number of cards.
    void ShowTopic();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void layOut();
    void connectCommands();
    [[nodiscard]] int selectedTopic() const;
    void takeSubject();
    void study();
    void beginStudy();
    void openFlashCards();
    void comeBack();
    [[nodiscard]] bool mayClose();
    void openAnotherSubject();

    std::array<ImageButton *, 9> Image1; ///< the commands, see Command in the source
    ElidedLabel *Label1;                 ///< the selected topic's name
    TabStrip *TabStrip1;                 ///< the topics
    PaperSheet *m_sheet;                 ///< the page that the tabs belong to
    RichTextBox *RichTextBox1;           ///< the selected topic's notes
    QLabel *StatusBar1;                  ///< how many cards the topic has

    Module1 &m_module;
};
