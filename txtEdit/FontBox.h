#pragma once

#include <QComboBox>

#include <optional>

/// A box for one property of the selected text. Its first entry is empty and stands
/// for a mixed selection; choosing it chooses nothing. A value that is not in
/// the list is shown as it is, and no entry is current then.
class FontBox final : public QComboBox
{
    Q_OBJECT

public:
    /// The order of two values.
    using Before = bool (*)(const QString &, const QString &);

    /// About \p letters wide.
    FontBox(QWidget *parent, Before before, int letters);

    /// \p values come behind the empty entry.
    void setValues(const QStringList &values);

    /// Shows \p value, or that the selection is mixed. Chooses nothing.
    void display(const std::optional<QString> &value);

    /// Chooses the next value before (-1) or behind (1) the one that is shown, if there is one.
    void step(int by);

    void showPopup() override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    void chosen(); ///< the learner chose the current entry, which may be the empty one
    void done();   ///< after choosing from the opened list, or by Return: the learner goes on with the text

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    [[nodiscard]] bool displays(const std::optional<QString> &value) const;

    Before m_before;
    int m_letters;           ///< as many as are to have room
    bool m_isClosed = false; ///< a key of the closed box is being handled
    int m_wheel = 0;         ///< what the wheel has turned since the last step, in eighths of a degree
};
