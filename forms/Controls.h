#pragma once

#include "platform/ImageButton.h"

#include <QKeyEvent>
#include <QString>
#include <QWidget>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <vector>

/// Creates a child of \p parent whose objectName is \p name. The parent owns it.
template <class Control>
[[nodiscard]] Control *makeControl(QWidget *parent, QLatin1String name)
{
    auto *made = new Control(parent);
    made->setObjectName(name);
    return made;
}

/// The objectName of a member of a control array: "name(index)".
[[nodiscard]] inline QString memberName(QLatin1String array, std::size_t index)
{
    return QStringLiteral("%1(%2)").arg(array).arg(index);
}

/// Creates the control array name(0) to name(N - 1).
template <class Control, std::size_t N>
[[nodiscard]] std::array<Control *, N> makeControlArray(QWidget *parent, QLatin1String name)
{
    std::array<Control *, N> made{};
    for (std::size_t i = 0; i < N; ++i) {
        made[i] = new Control(parent);
        made[i]->setObjectName(memberName(name, i));
    }
    return made;
}

/// What an image command button shows.
struct ButtonFace
{
    const char *picture; ///< an icon's name
    const char *hint;
};

/// Gives a row of image command buttons its pictures and hints.
template <std::size_t N>
void setFaces(const std::array<ImageButton *, N> &buttons, const std::array<ButtonFace, N> &faces)
{
    for (std::size_t i = 0; i < N; ++i) {
        buttons[i]->setPicture(QString::fromLatin1(faces[i].picture));
        buttons[i]->setHint(QString::fromLatin1(faces[i].hint));
    }
}

/// Whether a key with \p modifiers is the key itself. Shift and the keypad make no other one of it.
[[nodiscard]] inline bool isPlain(Qt::KeyboardModifiers modifiers)
{
    return !(modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
}

/// A command of a window that Alt with a key gives.
struct AltKey
{
    Qt::Key key;
    int command;
};

/// The command that \p event gives by \p keys, if it is one: with Alt and no other modifier.
template <std::size_t N>
[[nodiscard]] std::optional<int> commandOf(const QKeyEvent &event, const std::array<AltKey, N> &keys)
{
    const auto found = std::ranges::find(keys, event.key(), &AltKey::key);
    const bool isAlt = (event.modifiers() & ~Qt::KeypadModifier) == Qt::AltModifier;
    return isAlt && found != keys.end() ? std::optional(found->command) : std::nullopt;
}

/// Makes Tab visit \p widgets in this order.
inline void chainTabOrder(const std::vector<QWidget *> &widgets)
{
    for (std::size_t i = 1; i < widgets.size(); ++i) {
        QWidget::setTabOrder(widgets[i - 1], widgets[i]);
    }
}
