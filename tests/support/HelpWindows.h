#pragma once

#include "app/Help.h"

#include <QApplication>
#include <QVariant>
#include <QWidget>

#include <gtest/gtest.h>

/// The help's window while it is shown, or null.
inline QWidget *shownHelp()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() == QStringLiteral("HelpWindow") && window->isVisible()) {
            return window;
        }
    }
    return nullptr;
}

/// Expects that the help is shown with its topic \p context, and closes it.
inline void expectHelp(HelpContext context)
{
    QWidget *help = shownHelp();
    ASSERT_NE(help, nullptr) << "no help is shown";
    EXPECT_FALSE(help->isModal());
    EXPECT_EQ(help->property("helpContext").toInt(), static_cast<int>(context));
    help->close();
    EXPECT_EQ(shownHelp(), nullptr);
}
