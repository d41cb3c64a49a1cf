#pragma once

#include <QWidget>

#include <array>

class PaperSheet;
class QLabel;
class RichTextBox;

/// The part of the test's window that shows one question: the question on a card, and below it the
/// choices with their captions, each on a card. The boxes and captions become its children.
class QuestionSheet : public QWidget
{
public:
    /// \p boxes are the question and the choices, \p captions those of the choices.
    QuestionSheet(const std::array<RichTextBox *, 4> &boxes, const std::array<QLabel *, 3> &captions, QWidget *parent);

    /// Shows or hides a choice, from 0, with its caption.
    void setChoiceVisible(std::size_t choice, bool visible);

    /// Makes the cards so high that no text needs a scroll bar. To be called before the texts change, and
    /// arrange() after it: each text is then laid out at its own width from the start.
    void makeRoom();
    /// Places the cards, that of a long text higher than that of a short one, and centers the texts. To be
    /// called when the texts have changed, or which of them are seen.
    void arrange();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    [[nodiscard]] int heightToShowAll(std::size_t box) const;

    std::array<PaperSheet *, 4> m_cards; ///< one for each box
    std::array<RichTextBox *, 4> m_boxes;
    std::array<QLabel *, 3> m_captions;
};
