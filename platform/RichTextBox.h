#pragma once

#include "platform/SelectionFormat.h"

#include <QTextEdit>

#include <memory>
#include <optional>
#include <string>
#include <type_traits>

class QMenu;
class TextMagnifier;
struct PasteTarget;

/// A rich-text box whose contents are RTF: text, pictures and objects.
///
/// A double click opens an object that holds a file, Ctrl+click or Ctrl+Return a
/// link, each after a question; both also work in a locked box. The context menu
/// offers the same, and opening and saving of pictures too, for which a double click
/// is one on text. Ctrl+Shift+V pastes plain text.
class RichTextBox : public QTextEdit
{
    Q_OBJECT
    Q_PROPERTY(QString TextRTF READ textRtf WRITE setTextRtf)
    Q_PROPERTY(QString SelRTF READ selRtf WRITE setSelRtf)
    Q_PROPERTY(QString Text READ plainText WRITE resetText)

public:
    explicit RichTextBox(QWidget *parent = nullptr);
    ~RichTextBox() override;

    /// The whole contents as RTF. While they are as they were set, or are so again
    /// by undoing, these are the very bytes that were set; otherwise they are 7-bit.
    [[nodiscard]] std::string rtf() const;
    /// Shows \p rtf with the caret at its start; what is not RTF is shown as plain text. Empties the undo history.
    void setRtf(const std::string &rtf);

    /// rtf() and setRtf() in UTF-8; what was set and is not UTF-8 is written anew.
    [[nodiscard]] QString textRtf() const;
    void setTextRtf(const QString &rtf) { setRtf(rtf.toStdString()); }

    [[nodiscard]] QString selRtf() const;
    void setSelRtf(const QString &rtf) { replaceSelection(rtf.toStdString()); } ///< replaces the selection

    /// The text without any format: "\n" between paragraphs, a blank for a picture or object.
    [[nodiscard]] QString plainText() const;
    /// Shows \p text in the box's own font. Empties the undo history.
    void resetText(const QString &text);

    /// A locked box shows and selects, and takes no change from the learner.
    void setLocked(bool locked);
    /// Scrolls by a page, without the focus: \p key is Page Up or Page Down.
    void scrollPage(int key);
    [[nodiscard]] bool isLocked() const;

    /// Keeps a text that is lower than the box in its middle in these directions, as one block: its lines
    /// keep their alignment to one another. A higher one scrolls as ever.
    void setCentered(Qt::Orientations directions);

    /// Shows small writing larger, for reading from further away: the whole text magnified, with its
    /// margins, tab stops and pictures, so that the size that most of its letters have is at least
    /// \p points. Writing that is large enough is shown as it is. The contents and what is copied keep
    /// their formats. 0, as at the start: never. For a locked box; the undo history may be lost.
    void setLeastTextSize(double points);

    [[nodiscard]] bool canUndo() const;

    // The format of the selection, as SelectionFormat has it. Without a selection
    // it is what is typed next.
    [[nodiscard]] std::optional<bool> selBold() const { return ask(&SelectionFormat::isBold); }
    [[nodiscard]] std::optional<bool> selItalic() const { return ask(&SelectionFormat::isItalic); }
    [[nodiscard]] std::optional<bool> selUnderline() const { return ask(&SelectionFormat::isUnderlined); }
    [[nodiscard]] std::optional<QColor> selColor() const { return ask(&SelectionFormat::color); }
    [[nodiscard]] std::optional<QString> selFontName() const { return ask(&SelectionFormat::fontName); }
    [[nodiscard]] std::optional<double> selFontSize() const { return ask(&SelectionFormat::fontSize); }
    [[nodiscard]] std::optional<bool> selBullet() const { return ask(&SelectionFormat::isBullet); }
    [[nodiscard]] std::optional<TextAlignment> selAlignment() const { return ask(&SelectionFormat::alignment); }
    [[nodiscard]] std::optional<int> selIndent() const { return ask(&SelectionFormat::indent); }
    void setSelBold(bool on) { change(&SelectionFormat::setBold, on); }
    void setSelItalic(bool on) { change(&SelectionFormat::setItalic, on); }
    void setSelUnderline(bool on) { change(&SelectionFormat::setUnderlined, on); }
    void setSelColor(const QColor &color) { change(&SelectionFormat::setColor, color); }
    void setSelFontName(const QString &name) { change(&SelectionFormat::setFontName, name); }
    void setSelFontSize(double points) { change(&SelectionFormat::setFontSize, points); }
    void setSelBullet(bool on) { change(&SelectionFormat::setBullet, on); }
    void setSelAlignment(TextAlignment alignment) { change(&SelectionFormat::setAlignment, alignment); }
    void setSelIndent(int twips) { change(&SelectionFormat::setIndent, twips); }
    void shiftSelIndent(int twips) { change(&SelectionFormat::shiftIndent, twips); }

    // These replace the selection, as one undo step. The caret is behind what they put in.

    /// \p source is that of a picture or object (RtfObject.h); nothing happens if it is empty.
    void insertObjectSource(const QByteArray &source);
    void insertPicture(const QImage &image);
    /// What is larger is inserted and pasted at this size: the screen's, in document units (96 to the inch).
    [[nodiscard]] QSize pictureLimit() const;
    /// Pastes what the clipboard holds as text, in the format at the caret. A locked box takes none.
    void pastePlainText();

Q_SIGNALS:
    void clicked();       ///< the mouse was pressed in the text
    void doubleClicked(); ///< the mouse was double-clicked in the text, and that opened no object

protected:
    bool viewportEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    QMimeData *createMimeDataFromSelection() const override;
    bool canInsertFromMimeData(const QMimeData *source) const override;
    void insertFromMimeData(const QMimeData *source) override;

private:
    void center();
    void magnify();
    void replaceSelection(const std::string &rtf);
    void typeIn(const QString &text);
    [[nodiscard]] PasteTarget pasteTarget() const;

    template <class Answer>
    [[nodiscard]] Answer ask(Answer (SelectionFormat::*question)() const) const
    {
        QTextCursor cursor = textCursor();
        return (SelectionFormat(cursor).*question)();
    }
    template <class Parameter>
    void change(void (SelectionFormat::*command)(Parameter), const std::remove_cvref_t<Parameter> &value)
    {
        QTextCursor cursor = textCursor();
        (SelectionFormat(cursor).*command)(value);
        setTextCursor(cursor);
    }

    [[nodiscard]] bool runCommandKey(const QKeyEvent &event);
    [[nodiscard]] bool removeBulletByBackspace();
    [[nodiscard]] QByteArray objectAt(const QPoint &point) const;
    [[nodiscard]] QByteArray objectAtCaret() const;
    [[nodiscard]] QString linkAtCaret() const;
    void addObjectCommands(QMenu &menu, const QByteArray &source);
    void addLinkCommands(QMenu &menu, const QString &address);
    void addPlainPaste(QMenu &menu);
    void updatePointer(const QPoint &point, bool opensLinks);

    std::optional<std::string> m_rtf; ///< as set; the contents are this while the document is unmodified
    QString m_pressedLink;            ///< address of the link that a click began on
    std::unique_ptr<TextMagnifier> m_magnifier;
    double m_leastTextSize = 0; ///< points
    Qt::Orientations m_centered;
    bool m_isCentering = false;
    bool m_hasHand = false; ///< the mouse pointer is a hand
};
