#pragma once

#include "platform/ImageButton.h"

#include <QString>
#include <QWidget>

#include <array>
#include <cstddef>
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

/// Makes Tab visit \p widgets in this order.
inline void chainTabOrder(const std::vector<QWidget *> &widgets)
{
    for (std::size_t i = 1; i < widgets.size(); ++i) {
        QWidget::setTabOrder(widgets[i - 1], widgets[i]);
    }
}
