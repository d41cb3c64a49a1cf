#include "tests/forms/AccessibilityWalk.h"
#include "tests/forms/ShownWindows.h"
#include "tests/support/HelpWindows.h"

namespace {

class EveryWindowWithHelp : public EveryScene
{
};

INSTANTIATE_TEST_SUITE_P(HelpKey, EveryWindowWithHelp, testing::ValuesIn(scenesWithHelp()), nameOfScene);

TEST_P(EveryWindowWithHelp, ShowsItsTopicByF1WhateverHasTheFocus)
{
    visitScene([this](QWidget &window) {
        int asked = 0;
        for (QWidget *control : visibleControls(window)) {
            if (control->focusPolicy() == Qt::NoFocus || !control->isEnabled()) {
                continue;
            }
            control->setFocus(Qt::OtherFocusReason);
            ASSERT_TRUE(control->hasFocus()) << calling(*control).toStdString();
            QTest::keyClick(control, Qt::Key_F1);
            SCOPED_TRACE(calling(*control).toStdString());
            ASSERT_NO_FATAL_FAILURE(expectHelp(*GetParam().help));
            window.activateWindow();
            ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
            EXPECT_EQ(window.focusWidget(), control) << "the learner goes on where the question was";
            ++asked;
        }
        EXPECT_GT(asked, 1);
    });
}

TEST_P(EveryWindowWithHelp, ShowsItOnceForAKeyThatIsHeldDown)
{
    visitScene([](QWidget &window) {
        QWidget *focus = window.focusWidget();
        QKeyEvent held(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(focus, &held);
        EXPECT_EQ(shownHelp(), nullptr);
    });
}

} // namespace
