#pragma once

#include <QFocusFrame>

/// Shows in one window where the focus is: a ring around the control that has it, clear on every
/// palette, whether the mouse or a key brought the focus there. Controls that show it themselves,
/// by a caret or otherwise, get none. Assistive technology does not meet it.
///
/// The window owns it.
class FocusRing final : public QFocusFrame
{
    Q_OBJECT

public:
    explicit FocusRing(QWidget &window);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void follow(QWidget *focus);

    QWidget *m_window;
};
