#pragma once

#include <QTextEdit>

/// A rich-text box whose contents are RTF.
class RichTextBox : public QTextEdit
{
    Q_OBJECT
    Q_PROPERTY(QString TextRTF READ textRtf WRITE setTextRtf)
    Q_PROPERTY(QString SelRTF READ selRtf WRITE setSelRtf)
    Q_PROPERTY(QString Text READ toPlainText WRITE setPlainText)

public:
    explicit RichTextBox(QWidget *parent = nullptr);

    /// The whole contents as RTF, 7-bit. A text that was set and not changed since is handed back as it was set.
    [[nodiscard]] QString textRtf() const;
    /// Shows \p rtf with the caret at its start; what is not RTF is shown as plain text. Empties the undo history.
    void setTextRtf(const QString &rtf);

    [[nodiscard]] QString selRtf() const;
    void setSelRtf(const QString &rtf); ///< replaces the selection

    /// A locked box shows and selects, and takes no change.
    void setLocked(bool locked);
    [[nodiscard]] bool isLocked() const;

    /// Keeps a text that is lower than the box in the box's middle. A higher one scrolls as ever.
    void setCentered(bool centered);

Q_SIGNALS:
    void clicked(); ///< the mouse was pressed in the text

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void center();

    QString m_rtf; ///< as set, while the document is unchanged
    bool m_centered = false;
};
