#pragma once

#include <QWidget>

#include <vector>

class QScrollBar;
class SelectAnswer;

/// The column of answer selectors, one for each question of a test, with the bar that scrolls it.
class AnswerColumn : public QWidget
{
public:
    /// \p questions is at least 1.
    AnswerColumn(int questions, QWidget *parent);

    [[nodiscard]] SelectAnswer &selector(int question) const;
    [[nodiscard]] const std::vector<SelectAnswer *> &selectors() const { return SelectAnswer1; }

    /// Scrolls as far as needed to show the whole selector.
    void reveal(int question);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    QWidget *Picture1;                         ///< what is seen of the column
    QWidget *Picture2;                         ///< the whole column, moved up and down in Picture1
    QScrollBar *VScroll1;                      ///< by how many pixels it is moved
    std::vector<SelectAnswer *> SelectAnswer1; ///< from the first question to the last
};
