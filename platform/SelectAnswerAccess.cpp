#include "platform/SelectAnswerAccess.h"

#include "platform/SelectAnswer.h"

#include <algorithm>
#include <array>

namespace {

struct Action
{
    QLatin1String name;
    QLatin1String key;
    int choice; ///< 0: the flag
};

constexpr auto actions = std::to_array<Action>({
    {QLatin1String("Choose A"), QLatin1String("A"), 1},
    {QLatin1String("Choose B"), QLatin1String("B"), 2},
    {QLatin1String("Choose C"), QLatin1String("C"), 3},
    {QLatin1String("Mark for review"), QLatin1String("Q"), 0},
});

const Action *actionNamed(const QString &name)
{
    const auto *found = std::ranges::find(actions, name, &Action::name);
    return found != actions.end() ? found : nullptr;
}

QAccessibleInterface *accessOf(const QString &, QObject *object)
{
    auto *selector = qobject_cast<SelectAnswer *>(object);
    return selector != nullptr ? new SelectAnswerAccess(selector) : nullptr;
}

} // namespace

SelectAnswerAccess::SelectAnswerAccess(SelectAnswer *selector)
    : QAccessibleWidget(selector, QAccessible::Grouping)
{
}

void SelectAnswerAccess::install()
{
    QAccessible::installFactory(accessOf);
}

SelectAnswer *SelectAnswerAccess::selector() const
{
    return qobject_cast<SelectAnswer *>(widget());
}

QAccessible::State SelectAnswerAccess::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = selector() != nullptr && selector()->isGraded();
    return state;
}

QStringList SelectAnswerAccess::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (selector() != nullptr && selector()->isEnabled() && !selector()->isGraded()) {
        for (const Action &action : actions) {
            names.append(action.name);
        }
    }
    return names;
}

QString SelectAnswerAccess::localizedActionName(const QString &action) const
{
    return actionNamed(action) != nullptr ? action : QAccessibleWidget::localizedActionName(action);
}

QString SelectAnswerAccess::localizedActionDescription(const QString &action) const
{
    return actionNamed(action) != nullptr ? action : QAccessibleWidget::localizedActionDescription(action);
}

QStringList SelectAnswerAccess::keyBindingsForAction(const QString &action) const
{
    const Action *known = actionNamed(action);
    return known != nullptr ? QStringList(known->key) : QAccessibleWidget::keyBindingsForAction(action);
}

void SelectAnswerAccess::doAction(const QString &action)
{
    const Action *known = actionNamed(action);
    if (known == nullptr) {
        QAccessibleWidget::doAction(action);
    } else if (actionNames().contains(action)) {
        selector()->setFocus(Qt::OtherFocusReason);
        if (known->choice != 0) {
            selector()->setSelectedAnswer(known->choice);
        } else {
            selector()->setMarkedForReview(!selector()->isMarkedForReview());
        }
    }
}
