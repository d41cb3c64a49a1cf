#pragma once

#include <QWidget>

/// A sheet of paper that lies on a notebook page: what the learner reads and
/// writes on, with a border and a soft shadow. Its contents margins keep
/// children clear of both. The border is coloured while what lies on it has the focus.
class PaperSheet : public QWidget
{
    Q_OBJECT

public:
    enum class Shape {
        UnderTabs, ///< joins the tabs that stand on its upper edge, and draws no line there
        IndexCard, ///< lies free, with round corners
    };

    static constexpr int shadowDepth = 5; ///< pixels below and to the right of the sheet

    explicit PaperSheet(QWidget *parent = nullptr);

    void setShape(Shape shape);

    /// Colours the border while \p content, which lies on this sheet, has the focus.
    void showFocusOf(QWidget &content);

protected:
    bool eventFilter(QObject *content, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    Shape m_shape = Shape::UnderTabs;
    bool m_showsFocus = false;
};
