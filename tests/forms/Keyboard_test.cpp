#include "platform/PaperSheet.h"
#include "tests/forms/AccessibilityWalk.h"
#include "tests/forms/ShownWindows.h"
#include "tests/forms/SpoiledWindow.h"
#include "tests/support/Contrast.h"

#include <QLineEdit>
#include <QPushButton>

namespace {

constexpr int aFewPixels = 10; // a caret, a thin frame

/// The place of \p control in \p window, and a little beside it; of a text, the whole sheet on which it lies.
QRect around(const QWidget &window, const QWidget &control)
{
    const auto *sheet = qobject_cast<const PaperSheet *>(control.parentWidget());
    if (sheet != nullptr) {
        return placeIn(window, *sheet);
    }
    constexpr int beside = 8;
    return placeIn(window, control).adjusted(-beside, -beside, beside, beside).intersected(window.rect());
}

class EveryWindowByKeyboard : public EveryScene
{
protected:
    /// Walks by Tab from where the scene says that Tab leads on.
    template <class Arrived>
    std::vector<QWidget *> walk(QWidget &window, Arrived arrived)
    {
        if (GetParam().tabsFrom != nullptr) {
            QTest::keyClick(window.focusWidget(), Qt::Key_F, Qt::ControlModifier);
            EXPECT_EQ(window.focusWidget()->objectName(), QString::fromLatin1(GetParam().tabsFrom));
        }
        return walkByTab(window, arrived);
    }
    std::vector<QWidget *> walk(QWidget &window)
    {
        return walk(window, [](QWidget &) {});
    }
};

INSTANTIATE_TEST_SUITE_P(Keyboard, EveryWindowByKeyboard, testing::ValuesIn(ShownWindows::scenes()), nameOfScene);

TEST_P(EveryWindowByKeyboard, TabOrAKeyOfItsOwnReachesEveryControl)
{
    visitScene(
        [this](QWidget &window) { EXPECT_EQ(told(unreachedControls(window, walk(window), GetParam().ownKeys)), ""); });
}

TEST_P(EveryWindowByKeyboard, TabFollowsTheEye)
{
    visitScene([this](QWidget &window) {
        const std::vector<QWidget *> visited = walk(window);
        EXPECT_EQ(told(stepsAgainstReading(window, visited, GetParam().outOfOrder)), "");
    });
}

TEST_P(EveryWindowByKeyboard, ItIsSeenWhereTheFocusIs)
{
    struct Stop
    {
        QString name;
        QRect place;    ///< and a little beside it
        QImage picture; ///< of the whole window
    };
    visitScene([this](QWidget &window) {
        std::vector<Stop> stops;
        walk(window, [&](QWidget &control) {
            stops.push_back({calling(control), around(window, control), window.grab().toImage()});
        });
        ASSERT_GE(stops.size(), 2U) << "a focus that cannot move cannot be seen to";
        for (std::size_t i = 0; i < stops.size(); ++i) {
            const Stop &stop = stops[i];
            const Stop &other = stops[i == 0 ? 1 : i - 1];
            EXPECT_GE(clearChanges(stop.picture.copy(stop.place), other.picture.copy(stop.place)), aFewPixels)
                << stop.name.toStdString();
        }
    });
}

TEST_P(EveryWindowByKeyboard, ItIsSeenWhereTheFocusIsAtFirst)
{
    visitScene([](QWidget &window) {
        QWidget *first = window.focusWidget();
        ASSERT_NE(first, nullptr);
        const QRect place = around(window, *first);
        const QImage with = window.grab(place).toImage();
        first->clearFocus();
        EXPECT_GE(clearChanges(with, window.grab(place).toImage()), aFewPixels) << calling(*first).toStdString();
    });
}

// Keys of their own.

class KeysOfTheirOwn : public ShownWindows
{
protected:
    /// Presses a key where the focus is, and answers No, or OK, to what it opens.
    static void press(QWidget &window, QKeyCombination key)
    {
        QTest::keyClick(window.focusWidget(), key.key(), key.keyboardModifiers());
    }
    /// How often \p action presses a button.
    template <class Action>
    static int pressesOf(QWidget &window, const char *button, Action action)
    {
        int presses = 0;
        const auto counting = QObject::connect(&control<QAbstractButton>(window, button), &QAbstractButton::clicked,
                                               [&presses] { ++presses; });
        action();
        QObject::disconnect(counting);
        return presses;
    }
};

TEST_F(KeysOfTheirOwn, TheChoosersOptionsStandForThePicturesBesideThem)
{
    showChooser([](QWidget &window) {
        press(window, Qt::ALT | Qt::Key_N);
        QTest::keyRelease(window.focusWidget(), Qt::Key_N, Qt::AltModifier);
        EXPECT_TRUE(control<QRadioButton>(window, "Option1(0)").hasFocus());
        EXPECT_TRUE(QTest::qWaitFor([&] { return control<QRadioButton>(window, "Option1(0)").isChecked(); }));
        press(window, Qt::Key_Down);
        EXPECT_TRUE(control<QRadioButton>(window, "Option1(1)").hasFocus());
        EXPECT_TRUE(control<QRadioButton>(window, "Option1(1)").isChecked());
    });
}

TEST_F(KeysOfTheirOwn, EveryCommandOfATestIsPressedByOne)
{
    showAnswers([](QWidget &window) {
        EXPECT_EQ(pressesOf(window, "Image1(4)", [&] { press(window, Qt::Key_Right); }), 1);
        EXPECT_EQ(pressesOf(window, "Image1(4)", [&] { press(window, Qt::Key_Down); }), 1);
        EXPECT_EQ(pressesOf(window, "Image1(2)", [&] { press(window, Qt::Key_Left); }), 1);
        EXPECT_EQ(pressesOf(window, "Image1(2)", [&] { press(window, Qt::Key_Up); }), 1);
        EXPECT_EQ(pressesOf(window, "Image1(0)", [&] { press(window, Qt::Key_J); }), 1);
        DialogAnswers answers;
        answers.press(QMessageBox::Cancel);
        EXPECT_EQ(pressesOf(window, "Image1(3)", [&] { press(window, Qt::Key_Escape); }), 1);
    });
}

TEST_F(KeysOfTheirOwn, TheKeysThatGoToAnotherQuestionScrollTheSelectors)
{
    showTest([](QWidget &window) {
        window.resize(window.minimumSize());
        auto &scroll = control<QScrollBar>(window, "VScroll1");
        ASSERT_TRUE(scroll.isVisible());
        EXPECT_EQ(scroll.value(), 0);
        for (int question = 1; question < 12; ++question) {
            press(window, Qt::Key_Down);
        }
        EXPECT_GT(scroll.value(), 0);
        const auto &last = control<SelectAnswer>(window, "SelectAnswer1(11)");
        EXPECT_EQ(last.visibleRegion(), QRegion(last.rect()));
    });
}

TEST_F(KeysOfTheirOwn, AltWithAnArrowLeadsFromOneSideOfACardToTheOther)
{
    showCardEditor([](QWidget &window) {
        press(window, Qt::ALT | Qt::Key_Down);
        EXPECT_TRUE(control<RichTextBox>(window, "RichTextBox1(1)").hasFocus());
        press(window, Qt::ALT | Qt::Key_Up);
        EXPECT_TRUE(control<RichTextBox>(window, "RichTextBox1(0)").hasFocus());
    });
}

TEST_F(KeysOfTheirOwn, TheArrowsLeadThroughTheOptionsOfAGroup)
{
    showWizardForFlashCards([](QWidget &window) {
        control<QRadioButton>(window, "Option1(4)").setFocus();
        for (const char *next : {"Option1(3)", "Option1(2)"}) {
            press(window, Qt::Key_Down);
            EXPECT_TRUE(control<QRadioButton>(window, next).hasFocus()) << next;
            EXPECT_TRUE(control<QRadioButton>(window, next).isChecked()) << next;
        }
    });
}

// The walk itself sees what is wrong.

TEST_F(SpoiledWindow, AControlThatTabLeavesOutIsSeen)
{
    add<QLineEdit>("one");
    add<QLineEdit>("other")->setFocusPolicy(Qt::ClickFocus);
    show();
    EXPECT_EQ(told(unreachedControls(window, walkByTab(window), {})), "other: no key leads there");
    EXPECT_EQ(told(unreachedControls(window, walkByTab(window), {QStringLiteral("other")})), "");
}

TEST_F(SpoiledWindow, TabAgainstTheEyeIsSeen)
{
    auto *first = add<QLineEdit>("first");
    auto *second = add<QLineEdit>("second");
    auto *third = add<QLineEdit>("third");
    show();
    EXPECT_EQ(told(stepsAgainstReading(window, walkByTab(window), {})), "");
    QWidget::setTabOrder(first, third);
    QWidget::setTabOrder(third, second);
    EXPECT_EQ(stepsAgainstReading(window, walkByTab(window), {}).size(), 1);
}

} // namespace
