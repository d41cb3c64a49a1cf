#pragma once

#include "app/ClosingSave.h"
#include "app/Module1.h"
#include "platform/NotebookPage.h"
#include "study/CardEditing.h"

#include <array>
#include <memory>

class EditTools;
class ImageButton;
class PaperSheet;
class QLabel;
class RichTextBox;
class txtEdit;

/// The topic whose cards are edited.
struct EditedTopic
{
    int index;
    QString name;
};

/// The card editor: one card of a topic at a time, front above back.
///
/// Modal to \p owner. Made with the cards of the program's card query; throws if
/// they cannot be opened. Deletes itself when it closes.
class frmEditCards final : public NotebookPage
{
    Q_OBJECT

public:
    frmEditCards(Module1 &module, const EditedTopic &topic, QWidget *owner);
    ~frmEditCards() override;

    void myHelp();

Q_SIGNALS:
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void layOut();
    void connectCommands();
    void run(int command);
    void carryOut(int command);
    void follow(CardEditing::Outcome outcome);
    void askAndDelete();
    [[nodiscard]] bool takeKey(const QKeyEvent &key);
    void leaveBox(std::size_t from, std::size_t to);
    [[nodiscard]] EditedCard editedCard() const;
    [[nodiscard]] CardSides blankSides() const;
    void refresh();
    void ShowCard();
    void UpdateCaption();

    std::array<ImageButton *, 7> Image1;       ///< the commands, see Command in the source
    EditTools *CoolBar1;                       ///< the formatting tools
    std::array<PaperSheet *, 2> m_sheets;      ///< the two sides as index cards
    std::array<QLabel *, 2> Label1;            ///< name the sides
    std::array<RichTextBox *, 2> RichTextBox1; ///< front and back

    Module1 &m_module;
    EditedTopic m_topic;
    std::unique_ptr<txtEdit> m_tools;
    CardEditing m_cards;
    int m_shown; ///< the state of m_cards that the boxes show
    ClosingSave m_closing;
};
