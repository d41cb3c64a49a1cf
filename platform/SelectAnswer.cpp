#include "platform/SelectAnswer.h"

#include "platform/NotebookPage.h"
#include "platform/SelectAnswerAccess.h"

#include <QAccessible>
#include <QFocusEvent>
#include <QHelpEvent>
#include <QHoverEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <array>

namespace {

using Part = SelectAnswerFace::Part;

constexpr double letterSize = 13; // points

struct AnswerKey
{
    int key;
    Part part;
};

constexpr auto answerKeys = std::to_array<AnswerKey>({
    {Qt::Key_A, Part::A},
    {Qt::Key_B, Part::B},
    {Qt::Key_C, Part::C},
    {Qt::Key_1, Part::A},
    {Qt::Key_2, Part::B},
    {Qt::Key_3, Part::C},
    {Qt::Key_Q, Part::Flag},
});

QChar letterOf(int choice)
{
    return QChar(u'A' + choice - 1);
}

} // namespace

SelectAnswer::SelectAnswer(QWidget *parent)
    : QWidget(parent)
{
    SelectAnswerAccess::install();
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    QFont letters = notebookFont(letterSize);
    letters.setBold(true);
    setFont(letters);
    tellChange();
}

void SelectAnswer::setCorrectAnswer(int answer)
{
    if (answer >= 1 && answer <= choices) {
        m_correctAnswer = answer;
        tellChange();
    }
}

void SelectAnswer::setGraded(bool graded)
{
    const bool changes = graded != m_isGraded;
    m_isGraded = graded;
    hover(Part::Number);
    tellChange();
    if (changes) {
        QAccessible::State state;
        state.readOnly = true;
        QAccessibleStateChangeEvent event(this, state);
        QAccessible::updateAccessibility(&event);
    }
}

void SelectAnswer::setMarkedForReview(bool marked)
{
    if (!m_isGraded) {
        m_isMarkedForReview = marked;
        tellChange();
    }
}

void SelectAnswer::setSelectedAnswer(int answer)
{
    if (!m_isGraded && answer >= 0 && answer <= choices) {
        m_selectedAnswer = answer;
        tellChange();
    }
}

void SelectAnswer::setQuestionNumber(const QString &number)
{
    m_questionNumber = number;
    tellChange();
}

QSize SelectAnswer::sizeHint() const
{
    return SelectAnswerFace::size(font());
}

bool SelectAnswer::event(QEvent *event)
{
    switch (static_cast<int>(event->type())) {
    case QEvent::HoverEnter:
    case QEvent::HoverMove: hover(partAt(static_cast<QHoverEvent *>(event)->position())); break;
    case QEvent::HoverLeave: hover(Part::Number); break;
    case QEvent::ToolTip: {
        const auto *help = static_cast<QHelpEvent *>(event);
        showHint(help->pos(), help->globalPos());
        return true;
    }
    default: break;
    }
    return QWidget::event(event);
}

void SelectAnswer::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    face().paint(painter, size(), font(), palette());
}

void SelectAnswer::keyPressEvent(QKeyEvent *event)
{
    if (!event->isAutoRepeat()) {
        Q_EMIT keyDown(event->key(), event->modifiers());
    }
    event->setAccepted(handleKey(*event));
}

void SelectAnswer::mousePressEvent(QMouseEvent *event)
{
    event->setAccepted(event->button() == Qt::LeftButton);
    if (event->isAccepted()) {
        press(partAt(event->position()));
    }
}

void SelectAnswer::focusInEvent(QFocusEvent *event)
{
    becomeCurrent();
    Q_EMIT focusGained(event->reason());
}

void SelectAnswer::focusOutEvent(QFocusEvent *event)
{
    update();
    Q_EMIT focusLost(event->reason());
}

SelectAnswerFace SelectAnswer::face() const
{
    using Focus = SelectAnswerFace::Focus;
    return {
        .number = m_questionNumber,
        .correct = m_correctAnswer,
        .selected = m_selectedAnswer,
        .marked = m_isMarkedForReview,
        .graded = m_isGraded,
        .focus = hasFocus()    ? Focus::Here
                 : m_isCurrent ? Focus::Trace
                               : Focus::None,
        .hovered = m_hovered,
    };
}

SelectAnswer::Part SelectAnswer::partAt(const QPointF &place) const
{
    return SelectAnswerFace::partAt(place, size(), font());
}

QString SelectAnswer::verdict() const
{
    QString text = m_selectedAnswer == 0 ? QStringLiteral("not answered")
                                         : QStringLiteral("answered %1").arg(letterOf(m_selectedAnswer));
    if (!m_isGraded) {
        return text;
    }
    return text + (m_selectedAnswer == m_correctAnswer
                       ? QStringLiteral(", right")
                       : QStringLiteral(", wrong, the right answer is %1").arg(letterOf(m_correctAnswer)));
}

/// Whether the key is one of the selector's own. Once graded, they do nothing, here as well as in the window.
bool SelectAnswer::handleKey(const QKeyEvent &event)
{
    const bool isPlain = (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0;
    const auto *found = std::ranges::find(answerKeys, event.key(), &AnswerKey::key);
    if (!isPlain || found == answerKeys.end()) {
        return false;
    }
    if (!event.isAutoRepeat()) {
        press(found->part);
    }
    return true;
}

void SelectAnswer::press(Part part)
{
    if (part == Part::Flag) {
        setMarkedForReview(!m_isMarkedForReview);
    } else if (const int choice = choiceOf(part); choice != 0) {
        setSelectedAnswer(choice);
    }
}

void SelectAnswer::hover(Part part)
{
    if (part == m_hovered) {
        return;
    }
    m_hovered = part;
    if (part == Part::Number || m_isGraded) {
        unsetCursor();
    } else {
        setCursor(Qt::PointingHandCursor);
    }
    update();
}

void SelectAnswer::showHint(const QPoint &place, const QPoint &globalPlace)
{
    const Part part = partAt(place);
    QString hint;
    if (m_isGraded) {
        hint = verdict();
        hint.front() = hint.front().toUpper();
    } else if (part == Part::Flag) {
        hint = m_isMarkedForReview ? QStringLiteral("Marked for review (Q)") : QStringLiteral("Mark for review (Q)");
    }
    QToolTip::showText(globalPlace, hint, this, SelectAnswerFace::area(part, size(), font()).toRect());
}

void SelectAnswer::becomeCurrent()
{
    if (parentWidget() != nullptr) {
        const auto all = parentWidget()->findChildren<SelectAnswer *>(QString(), Qt::FindDirectChildrenOnly);
        for (SelectAnswer *other : all) {
            if (other->m_isCurrent) {
                other->m_isCurrent = false;
                other->update();
            }
        }
    }
    m_isCurrent = true;
    update();
}

void SelectAnswer::tellChange()
{
    QString name = QStringLiteral("Question %1").arg(m_questionNumber).trimmed() + QStringLiteral(", ") + verdict();
    if (m_isMarkedForReview) {
        name += QStringLiteral(", marked for review");
    }
    if (name != accessibleName()) {
        setAccessibleName(name); // and says so to who listens
    }
    update();
}
