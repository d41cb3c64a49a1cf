#pragma once

#include "app/Module1.h"
#include "platform/NotebookPage.h"
#include "study/FlashCardSession.h"

#include <array>

class ImageButton;
class PaperSheet;
class QLabel;
class QTimer;
class ReadingPlace;
class RichTextBox;

/// The flash-card session's window. It mirrors a FlashCardSession and turns
/// clicks, keys and seconds into its moves.
///
/// Made with the cards of the program's study settings; throws if they cannot
/// be opened. Deletes itself when it closes.
class frmFlashCard final : public NotebookPage
{
    Q_OBJECT

public:
    explicit frmFlashCard(Module1 &module);

Q_SIGNALS:
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void layOut();
    void connectCommands();

    // What the session says, shown.
    void showSide();
    void loadCard();
    void clearCard();
    void showMarked(bool marked);
    void showPlace();
    void showFlipper();
    void tellCard();
    /// All of it, for a card that was just reached, and then \p arm for its flipper.
    void beginCard(void (FlashCardSession::*arm)() = &FlashCardSession::armFlipper);

    // The commands.
    void goToNext();
    void goToPrevious();
    void flip();
    void toggleMark();
    void shuffle();
    void changeOptions();
    void help();
    void toggleFlipperPause();
    void tick();
    [[nodiscard]] bool pressButtonOf(int key);

    std::array<ImageButton *, 11> Image1;      ///< the commands, see Command in the source
    std::array<QLabel *, 3> Label1;            ///< the side shown, the mark, the flipper's countdown
    QLabel *m_place;                           ///< which card of how many
    PaperSheet *m_card;                        ///< the card on which the two sides lie
    std::array<RichTextBox *, 2> RichTextBox1; ///< front and back; one of them is visible
    ReadingPlace *Picture1;                    ///< holds the focus, so that no caret shows in the text
    QTimer *Timer1;                            ///< runs while the flipper does

    Module1 &m_module;
    FlashCardSession m_session;
};
