#pragma once

#include <QDialog>
#include <QString>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

/// A window in which a test makes a mistake, for a walk to find.
class SpoiledWindow : public testing::Test
{
protected:
    template <class Control>
    Control *add(const char *name)
    {
        auto *control = new Control;
        control->setObjectName(QString::fromLatin1(name));
        rows.addWidget(control);
        return control;
    }
    void show()
    {
        window.setWindowTitle(QStringLiteral("Spoiled"));
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    QDialog window;
    QVBoxLayout &rows = *new QVBoxLayout(&window);
};
