#pragma once

#include "app/ClosingSave.h"
#include "app/Module1.h"
#include "platform/NotebookPage.h"

#include <array>
#include <memory>

class EditTools;
class ElidedLabel;
class ImageButton;
class PaperSheet;
class QLabel;
class RichTextBox;
class TabStrip;
class txtEdit;

/// The main window: a tab for each topic of the subject, the topic's notes, and
/// the way to writing and to studying.
///
/// It keeps no list of topics of its own: the tabs are the list. The notes are
/// being edited exactly while the formatting tools are shown. Made with the
/// program's subject loaded; throws if that fails. Deletes itself when it closes.
class frmNotes final : public NotebookPage
{
    Q_OBJECT

public:
    explicit frmNotes(Module1 &module);
    ~frmNotes() override;

    /// Rebuilds the tabs from the subject and selects the first.
    void LoadTopics();
    /// Shows the selected tab's topic: name, notes and number of cards.
    void ShowTopic();
    /// Stores the notes in the selected topic, whether or not they were changed, and ends
    /// editing. Without a topic there is nothing to store.
    void SaveChanges();
    /// Shows the help on editing notes.
    void myHelp();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void layOut();
    void layOutContent();
    void connectCommands();
    void run(int command);
    void carryOut(int command);
    [[nodiscard]] bool mayLeaveNotes(int command);
    [[nodiscard]] bool takeKey(const QKeyEvent &key);

    [[nodiscard]] int selectedTopic() const;
    void addTab(int topic, const QString &name);
    void showSelectedTab();
    void takeSubject();

    void CreateTopic();
    void RenameTopic();
    void DeleteTopic();
    void EditNotes();
    [[nodiscard]] bool isEditing() const;
    [[nodiscard]] bool isUntouched() const;
    void EditFlashCards();
    void study();
    void beginStudy();
    template <class Window>
    void openStudy(Window *window);
    void comeBack();
    void chooseBackground();
    [[nodiscard]] bool mayClose();
    void openAnotherSubject();

    std::array<ImageButton *, 9> Image1; ///< the commands, see Command in the source
    ElidedLabel *Label1;                 ///< the selected topic's name
    TabStrip *TabStrip1;                 ///< the topics
    PaperSheet *m_sheet;                 ///< the page that the tabs belong to
    EditTools *CoolBar1;                 ///< the formatting tools, shown while the notes are edited
    RichTextBox *RichTextBox1;           ///< the selected topic's notes
    QLabel *StatusBar1;                  ///< how many cards the topic has

    Module1 &m_module;
    std::unique_ptr<txtEdit> m_tools;
    ClosingSave m_closing;
    QString m_shown; ///< key of the tab whose notes the box holds; "" if they could not be read
};
