#pragma once

#include "platform/ImageButton.h"
#include "platform/RichTextBox.h"
#include "platform/SelectAnswer.h"

#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAccessible>
#include <QComboBox>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTest>

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

// What a learner without a mouse, or without eyes, meets in a window. Each walk
// returns its complaints; a good window gives none.

/// Complaints as they are read in a test's output, a line each.
inline std::string told(const QStringList &complaints)
{
    return complaints.join(QLatin1Char('\n')).toStdString();
}

/// How a complaint calls a control: "frmNotes/TabStrip1", "frmOptions/QPushButton "Cancel"".
inline QString calling(const QWidget &control)
{
    return control.objectName().isEmpty() ? QString::fromLatin1(control.metaObject()->className())
                                          : control.objectName();
}

/// Whether the learner does something to it, rather than read it.
inline bool takesInput(const QWidget &widget)
{
    const bool isPartOfAnother =
        qobject_cast<const QAbstractScrollArea *>(widget.parentWidget()) != nullptr ||
        (widget.parentWidget() != nullptr &&
         qobject_cast<const QAbstractScrollArea *>(widget.parentWidget()->parentWidget()) != nullptr) ||
        qobject_cast<const QTabBar *>(widget.parentWidget()) != nullptr;
    if (isPartOfAnother) {
        return false;
    }
    return qobject_cast<const QAbstractButton *>(&widget) != nullptr ||
           qobject_cast<const QComboBox *>(&widget) != nullptr || qobject_cast<const QLineEdit *>(&widget) != nullptr ||
           qobject_cast<const QAbstractItemView *>(&widget) != nullptr ||
           qobject_cast<const QAbstractSlider *>(&widget) != nullptr ||
           qobject_cast<const QTabBar *>(&widget) != nullptr ||
           (widget.focusPolicy() != Qt::NoFocus && qobject_cast<const QLabel *>(&widget) == nullptr);
}

/// The controls of \p window that are seen now, in the order in which they were made.
inline std::vector<QWidget *> visibleControls(const QWidget &window)
{
    std::vector<QWidget *> controls;
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        if (widget->isVisible() && widget->window() == &window && takesInput(*widget)) {
            controls.push_back(widget);
        }
    }
    return controls;
}

// What is announced.

/// Everything that assistive technology meets below \p top and that is to be seen, \p top itself first.
inline std::vector<QAccessibleInterface *> visibleInterfaces(QAccessibleInterface *top)
{
    std::vector<QAccessibleInterface *> met{top};
    for (std::size_t i = 0; i < met.size(); ++i) {
        for (int child = 0; child < met[i]->childCount(); ++child) {
            QAccessibleInterface *next = met[i]->child(child);
            if (next != nullptr && next->isValid() && !next->state().invisible) {
                met.push_back(next);
            }
        }
    }
    return met;
}

inline bool isControlRole(QAccessible::Role role)
{
    static const std::vector<QAccessible::Role> roles{
        QAccessible::Button,  QAccessible::CheckBox, QAccessible::RadioButton, QAccessible::ComboBox,
        QAccessible::Slider,  QAccessible::List,     QAccessible::PageTabList, QAccessible::EditableText,
        QAccessible::PageTab, QAccessible::SpinBox,  QAccessible::ButtonMenu,  QAccessible::ButtonDropDown};
    return std::ranges::find(roles, role) != roles.end();
}

/// The roles by which a control may be announced.
inline std::vector<QAccessible::Role> fittingRoles(const QWidget &control)
{
    if (const auto *button = qobject_cast<const QAbstractButton *>(&control)) {
        if (qobject_cast<const QRadioButton *>(button) != nullptr) {
            return {QAccessible::RadioButton};
        }
        return {button->isCheckable() ? QAccessible::CheckBox : QAccessible::Button};
    }
    if (qobject_cast<const SelectAnswer *>(&control) != nullptr) {
        return {QAccessible::Grouping};
    }
    if (qobject_cast<const QTabBar *>(&control) != nullptr) {
        return {QAccessible::PageTabList};
    }
    if (qobject_cast<const QScrollBar *>(&control) != nullptr) {
        return {QAccessible::ScrollBar};
    }
    if (qobject_cast<const QAbstractSlider *>(&control) != nullptr) {
        return {QAccessible::Slider};
    }
    if (qobject_cast<const QComboBox *>(&control) != nullptr) {
        return {QAccessible::ComboBox};
    }
    if (qobject_cast<const QAbstractItemView *>(&control) != nullptr) {
        return {QAccessible::List};
    }
    if (qobject_cast<const QTextEdit *>(&control) != nullptr || qobject_cast<const QLineEdit *>(&control) != nullptr) {
        return {QAccessible::EditableText};
    }
    return {QAccessible::StaticText}; // a place that only holds the focus, to be read
}

inline QString nameOf(QAccessibleInterface *access)
{
    return access->text(QAccessible::Name);
}

inline QString accessibleNameOf(QWidget &widget)
{
    return nameOf(QAccessible::queryAccessibleInterface(&widget));
}

/// Controls without a name of their own, or announced as something else.
inline QStringList unnamedControls(const QWidget &window)
{
    QStringList complaints;
    for (QWidget *control : visibleControls(window)) {
        QAccessibleInterface *access = QAccessible::queryAccessibleInterface(control);
        const QString name = nameOf(access).trimmed();
        if (name.isEmpty() || name == control->objectName()) {
            complaints << calling(*control) + QStringLiteral(": has no name");
        }
        const std::vector<QAccessible::Role> fitting = fittingRoles(*control);
        if (std::ranges::find(fitting, access->role()) == fitting.end()) {
            complaints << QStringLiteral("%1: is announced with role %2").arg(calling(*control)).arg(access->role());
        }
        if (qobject_cast<ImageButton *>(control) != nullptr &&
            (name != control->toolTip() || control->toolTip().isEmpty())) {
            complaints << calling(*control) + QStringLiteral(": its name is not its hint");
        }
    }
    return complaints;
}

/// Texts that are to be read and do not say what they are.
inline QStringList unnamedTexts(const QWidget &window)
{
    QStringList complaints;
    for (QTextEdit *text : window.findChildren<QTextEdit *>()) {
        QAccessibleInterface *access = QAccessible::queryAccessibleInterface(text);
        if (text->isVisible() && (nameOf(access).isEmpty() || nameOf(access) == text->objectName())) {
            complaints << calling(*text) + QStringLiteral(": has no name");
        }
        if (text->isVisible() && access->text(QAccessible::Value) != text->toPlainText()) {
            complaints << calling(*text) + QStringLiteral(": does not tell its text");
        }
    }
    return complaints;
}

/// What is announced as a control and is none that the learner could find, or cannot be told from another.
inline QStringList falseControls(QWidget &window)
{
    QStringList complaints;
    QAccessibleInterface *top = QAccessible::queryAccessibleInterface(&window);
    if (top->role() != QAccessible::Window && top->role() != QAccessible::Dialog &&
        top->role() != QAccessible::AlertMessage) {
        complaints << QStringLiteral("the window: is announced with role %1").arg(top->role());
    }
    if (nameOf(top).isEmpty()) {
        complaints << QStringLiteral("the window: has no name");
    }
    for (QAccessibleInterface *access : visibleInterfaces(top)) {
        auto *widget = qobject_cast<QWidget *>(access->object());
        const bool isItem = widget == nullptr || access->object() != widget;
        if (!isItem && isControlRole(access->role()) && nameOf(access).trimmed().isEmpty()) {
            complaints << calling(*widget) + QStringLiteral(": a control without a name");
        }
        if (isItem && (access->role() == QAccessible::ListItem || access->role() == QAccessible::PageTab) &&
            nameOf(access).trimmed().isEmpty()) {
            complaints << QStringLiteral("an entry without a name");
        }
        if (!isItem && isControlRole(access->role()) && access->rect().isEmpty()) {
            complaints << calling(*widget) + QStringLiteral(": a control that takes no room");
        }
    }
    return complaints;
}

// Keys.

/// The texts of \p window that may have a mnemonic and are seen at the same time.
inline std::vector<std::pair<QString, QWidget *>> textsWithMnemonics(const QWidget &window)
{
    std::vector<std::pair<QString, QWidget *>> texts;
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        if (!widget->isVisible() || widget->window() != &window) {
            continue;
        }
        if (const auto *button = qobject_cast<QAbstractButton *>(widget)) {
            texts.emplace_back(button->text(), widget);
        } else if (const auto *label = qobject_cast<QLabel *>(widget); label != nullptr && label->buddy() != nullptr) {
            texts.emplace_back(label->text(), widget);
        } else if (const auto *group = qobject_cast<QGroupBox *>(widget)) {
            texts.emplace_back(group->title(), widget);
        } else if (const auto *tabs = qobject_cast<QTabBar *>(widget)) {
            for (int tab = 0; tab < tabs->count(); ++tab) {
                texts.emplace_back(tabs->tabText(tab), widget);
            }
        }
    }
    return texts;
}

/// Two things that one key would give; \p own are the window's Alt keys.
inline QStringList sharedMnemonics(const QWidget &window, const std::vector<QKeySequence> &own)
{
    QStringList complaints;
    std::map<QString, QString> taken;
    for (const QKeySequence &key : own) {
        taken[key.toString()] = QStringLiteral("a command of the window");
    }
    for (const auto &[text, widget] : textsWithMnemonics(window)) {
        const QString key = QKeySequence::mnemonic(text).toString();
        if (!key.isEmpty() && taken.contains(key)) {
            complaints << QStringLiteral("%1: is both %2 and \"%3\"").arg(key, taken[key], text);
        } else if (!key.isEmpty()) {
            taken[key] = QStringLiteral("\"%1\"").arg(text);
        }
    }
    return complaints;
}

/// Whether Tab is a letter there, and not a way on.
inline bool keepsTab(const QWidget *control)
{
    const auto *box = qobject_cast<const QTextEdit *>(control);
    return box != nullptr && !box->isReadOnly() && !box->tabChangesFocus();
}

/// The controls that Tab visits from where the focus is, until it comes round or ends at a text in which it is
/// a letter. \p arrived is called at each, once it has the focus.
template <class Arrived>
std::vector<QWidget *> walkByTab(const QWidget &window, Arrived arrived)
{
    std::vector<QWidget *> visited;
    for (QWidget *focus = window.focusWidget(); focus != nullptr && std::ranges::find(visited, focus) == visited.end();
         focus = window.focusWidget()) {
        visited.push_back(focus);
        arrived(*focus);
        if (keepsTab(focus)) {
            break;
        }
        QTest::keyClick(focus, Qt::Key_Tab);
    }
    return visited;
}

inline std::vector<QWidget *> walkByTab(const QWidget &window)
{
    return walkByTab(window, [](QWidget &) {});
}

/// Enabled controls of \p window that are neither in \p visited nor in \p otherwise, by their names.
inline QStringList unreachedControls(const QWidget &window, const std::vector<QWidget *> &visited,
                                     const QStringList &otherwise)
{
    const auto isVisited = [&](const QWidget *control) { return std::ranges::find(visited, control) != visited.end(); };
    // The arrow keys lead from one of a group to the others.
    const auto isInVisitedGroup = [&](const QWidget *control) {
        return qobject_cast<const QRadioButton *>(control) != nullptr &&
               std::ranges::any_of(visited, [&](const QWidget *other) {
                   return qobject_cast<const QRadioButton *>(other) != nullptr &&
                          other->parentWidget() == control->parentWidget();
               });
    };
    QStringList complaints;
    for (const QWidget *control : visibleControls(window)) {
        const bool isReached =
            isVisited(control) || isInVisitedGroup(control) || otherwise.contains(control->objectName());
        if (control->isEnabled() && !isReached) {
            complaints << calling(*control) + QStringLiteral(": no key leads there");
        }
    }
    return complaints;
}

inline QRect placeIn(const QWidget &window, const QWidget &control)
{
    return {control.mapTo(&window, QPoint(0, 0)), control.size()};
}

/// Whether the eye, reading rows from left to right, meets \p one before \p other.
inline bool isReadBefore(const QRect &one, const QRect &other)
{
    const int shared = std::min(one.bottom(), other.bottom()) - std::max(one.top(), other.top());
    const bool isOneRow = shared * 2 > std::min(one.height(), other.height());
    return isOneRow ? one.left() < other.left() : one.top() < other.top();
}

/// Steps of Tab against the reading order. The walk may begin anywhere, so one step may lead back to the beginning.
inline QStringList stepsAgainstReading(const QWidget &window, const std::vector<QWidget *> &visited,
                                       const QStringList &exceptions)
{
    std::vector<QWidget *> walk = visited;
    std::erase_if(walk, [&](const QWidget *control) { return exceptions.contains(control->objectName()); });
    QStringList back;
    for (std::size_t i = 0; i + 1 < walk.size(); ++i) {
        if (!isReadBefore(placeIn(window, *walk[i]), placeIn(window, *walk[i + 1]))) {
            back << QStringLiteral("from %1 back to %2").arg(calling(*walk[i]), calling(*walk[i + 1]));
        }
    }
    const bool closes = walk.size() < 2 || isReadBefore(placeIn(window, *walk.back()), placeIn(window, *walk.front()));
    if (back.size() == 1 && closes) {
        back.clear();
    }
    return back;
}
