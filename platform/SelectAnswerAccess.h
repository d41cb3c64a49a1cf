#pragma once

#include <QAccessibleWidget>

class SelectAnswer;

/// An answer selector as assistive technology sees it: its name says everything that it shows; the
/// choices and the flag are its actions, as long as it can be changed.
class SelectAnswerAccess : public QAccessibleWidget
{
public:
    explicit SelectAnswerAccess(SelectAnswer *selector);

    /// Makes every SelectAnswer be seen through this class from now on; more often than once does no harm.
    static void install();

    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QStringList actionNames() const override;
    [[nodiscard]] QString localizedActionName(const QString &action) const override;
    [[nodiscard]] QString localizedActionDescription(const QString &action) const override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString &action) const override;
    /// Moves to the question first, as a press with the mouse does.
    void doAction(const QString &action) override;

private:
    [[nodiscard]] SelectAnswer *selector() const; ///< null while it is being destroyed
};
