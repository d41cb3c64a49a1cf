#include "txtEdit/FontBox.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStringListModel>
#include <QStylePainter>
#include <QWheelEvent>

#include <cstdlib>

namespace {

constexpr int oneStepOfTheWheel = 120; // eighths of a degree

} // namespace

FontBox::FontBox(QWidget *parent, Before before, int letters)
    : QComboBox(parent)
    , m_before(before)
    , m_letters(letters)
{
    setFocusPolicy(Qt::StrongFocus); // the wheel does not give it
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setMaxVisibleItems(20);
    setValues({});
    connect(this, &QComboBox::activated, this, [this] {
        Q_EMIT chosen();
        if (!m_isClosed) {
            Q_EMIT done();
        }
    });
}

void FontBox::setValues(const QStringList &values)
{
    setModel(new QStringListModel(QStringList{QString()} + values, this));
}

bool FontBox::displays(const std::optional<QString> &value) const
{
    if (!value) {
        return currentIndex() == 0;
    }
    const QString shown = currentIndex() < 0 ? placeholderText() : currentText();
    return currentIndex() != 0 && shown.compare(*value, Qt::CaseInsensitive) == 0;
}

void FontBox::display(const std::optional<QString> &value)
{
    if (displays(value)) {
        return;
    }
    const QSignalBlocker silent(this);
    const int place = value && !value->isEmpty() ? findText(*value, Qt::MatchFixedString) : 0;
    const QString unlisted = place < 0 ? *value : QString();
    setPlaceholderText(unlisted);
    setCurrentIndex(place);
    setAccessibleDescription(unlisted); // it has no entry to be read aloud
}

void FontBox::step(int by)
{
    int place = currentIndex() + by;
    if (currentIndex() < 0) {
        int next = 1;
        while (next < count() && m_before(itemText(next), placeholderText())) {
            ++next;
        }
        place = by > 0 ? next : next - 1;
    }
    if (place > 0 && place < count()) {
        setCurrentIndex(place);
        Q_EMIT chosen();
    }
}

/// Does not measure the entries.
QSize FontBox::sizeHint() const
{
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QSize contents(m_letters * fontMetrics().horizontalAdvance(QLatin1Char('X')), fontMetrics().height() + 2);
    return style()->sizeFromContents(QStyle::CT_ComboBox, &option, contents, this);
}

void FontBox::showPopup()
{
    const int widest = view()->sizeHintForColumn(0) + view()->verticalScrollBar()->sizeHint().width();
    view()->setMinimumWidth(widest);
    QComboBox::showPopup();
}

void FontBox::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QRect field = style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    const QString text = currentIndex() < 0 ? placeholderText() : currentText();
    option.currentText = fontMetrics().elidedText(text, Qt::ElideRight, field.width());
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

void FontBox::keyPressEvent(QKeyEvent *event)
{
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const bool isPlain = modifiers == Qt::NoModifier;
    const bool isCommand = (modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0;
    if (isPlain && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        Q_EMIT done();
    } else if (isPlain && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)) {
        step(event->key() == Qt::Key_Up ? -1 : 1);
    } else if (isCommand && !event->text().isEmpty()) {
        event->ignore(); // no name is searched by it
    } else {
        const QScopedValueRollback<bool> closed(m_isClosed, true);
        QComboBox::keyPressEvent(event);
    }
}

void FontBox::wheelEvent(QWheelEvent *event)
{
    if (!hasFocus()) {
        event->ignore();
        return;
    }
    m_wheel += event->angleDelta().y();
    while (std::abs(m_wheel) >= oneStepOfTheWheel) {
        const int direction = m_wheel > 0 ? 1 : -1;
        m_wheel -= direction * oneStepOfTheWheel;
        step(-direction);
    }
}
