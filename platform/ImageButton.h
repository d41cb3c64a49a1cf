#pragma once

#include <QAbstractButton>

/// A command button that is a picture, with a hint for what it does.
///
/// Its pointer is the up-arrow. A click never gives it the focus; Tab does, and
/// then Space presses it. Every other key goes on to the window. One that is
/// checkable shows by a coloured ground that it is checked.
class ImageButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit ImageButton(QWidget *parent = nullptr);
    ~ImageButton() override;

    /// \p name is an icon of the program's own, without folder and ending: "exit".
    /// Changing the picture is cheap: each is loaded once per program.
    void setPicture(const QString &name);
    [[nodiscard]] QString picture() const { return m_picture; }

    /// The hint is the tool tip and the name for assistive technology.
    void setHint(const QString &hint);

    /// Edge of the picture in pixels; 32 unless told.
    void setPictureSize(int edge);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QString m_picture;
    int m_edge = 32;
};
