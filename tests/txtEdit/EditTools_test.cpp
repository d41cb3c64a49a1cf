#include "tests/txtEdit/EditorTest.h"

#include <QPixmap>

#include <array>

namespace {

struct Expected
{
    const char *name;
    const char *picture;
    const char *hint;
    bool isCheck;
};

constexpr auto buttons = std::to_array<Expected>({
    {"Toolbar1(1)", "cut", "Cut", false},
    {"Toolbar1(2)", "copy", "Copy", false},
    {"Toolbar1(3)", "paste", "Paste", false},
    {"Toolbar1(5)", "undo", "Undo", false},
    {"Toolbar1(7)", "insert-object", "Insert Object...", false},
    {"Toolbar1(9)", "help", "Help...", false},
    {"Toolbar2(5)", "font-color", "Font Color...", false},
    {"Toolbar2(7)", "bold", "Bold", true},
    {"Toolbar2(8)", "italic", "Italic", true},
    {"Toolbar2(9)", "underline", "Underline", true},
    {"Toolbar2(11)", "align-left", "Alignment", false},
    {"Toolbar2(13)", "bullet", "Bullet", true},
    {"Toolbar2(15)", "indent-less", "Decrease Indent", false},
    {"Toolbar2(16)", "indent-more", "Increase Indent", false},
});

TEST(EditTools, EveryButtonHasItsPictureHintAndKind)
{
    QWidget window;
    const EditTools tools(&window);
    EXPECT_EQ(tools.objectName(), QStringLiteral("CoolBar1"));
    EXPECT_EQ(tools.findChildren<ImageButton *>().size(), static_cast<qsizetype>(buttons.size()));
    for (const Expected &expected : buttons) {
        const auto &button = control<ImageButton>(tools, expected.name);
        EXPECT_EQ(button.picture(), QLatin1String(expected.picture));
        EXPECT_EQ(button.toolTip(), QLatin1String(expected.hint));
        EXPECT_EQ(button.isCheckable(), expected.isCheck) << expected.hint;
    }
}

TEST(EditTools, EachButtonStandsInItsToolbarBehindTheFontBoxes)
{
    QWidget window;
    EditTools tools(&window);
    window.show();
    int right = -1;
    for (const Expected &expected : buttons) {
        const auto &button = control<ImageButton>(tools, expected.name);
        const QString toolbar = QString::fromLatin1(expected.name).left(8);
        ASSERT_EQ(button.parentWidget()->objectName(), toolbar);
        if (button.toolTip() == QLatin1String("Font Color...")) {
            EXPECT_GT(tools.sizeBox().x(), tools.fontBox().geometry().right());
            right = tools.sizeBox().geometry().right();
        }
        EXPECT_GT(button.x(), right) << expected.hint;
        right = button.toolTip() == QLatin1String("Help...") ? -1 : button.geometry().right();
    }
}

TEST(EditTools, FontBoxesHaveTheirNamesHintsAndSizes)
{
    QWidget window;
    const EditTools tools(&window);
    auto &fonts = control<QComboBox>(tools, "Combo1");
    auto &sizes = control<QComboBox>(tools, "Combo2");
    EXPECT_EQ(fonts.parentWidget()->objectName(), QStringLiteral("Toolbar2"));
    EXPECT_EQ(sizes.parentWidget()->objectName(), QStringLiteral("Toolbar2"));
    EXPECT_EQ(fonts.toolTip(), QStringLiteral("Font"));
    EXPECT_EQ(sizes.toolTip(), QStringLiteral("Font Size"));
    EXPECT_EQ(fonts.accessibleName(), QStringLiteral("Font"));
    EXPECT_EQ(sizes.accessibleName(), QStringLiteral("Font Size"));
    EXPECT_FALSE(fonts.isEditable());
    QStringList entries;
    for (int i = 0; i < sizes.count(); ++i) {
        entries.append(sizes.itemText(i));
    }
    EXPECT_EQ(entries.join(QLatin1Char(' ')), QStringLiteral(" 8 9 10 11 12 14 16 18 20 22 24 26 28 36 48 72"));
}

TEST(EditTools, TheFontsAreReadWhenTheToolsAreFirstShown)
{
    QWidget window;
    auto *tools = new EditTools(&window);
    tools->hide();
    window.show();
    EXPECT_EQ(tools->fontBox().count(), 1);
    tools->show();
    const QStringList families = QFontDatabase::families();
    ASSERT_EQ(tools->fontBox().count(), families.size() + 1);
    EXPECT_EQ(tools->fontBox().itemText(0), QString());
    for (int i = 0; i < families.size(); ++i) {
        EXPECT_EQ(tools->fontBox().itemText(i + 1), families.at(i));
    }
}

TEST(EditTools, AFontWithALongNameMakesNoBoxWider)
{
    QWidget window;
    const EditTools tools(&window);
    const QSize before = tools.sizeHint();
    tools.fontBox().setValues({QString(200, QLatin1Char('W'))});
    EXPECT_EQ(tools.sizeHint(), before);
}

TEST(EditTools, TheToolbarsStandSideBySideInAWideWindowAndBelowEachOtherInTheSmallest)
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    layout->setContentsMargins({});
    auto *tools = new EditTools(&window);
    layout->addWidget(tools);
    layout->addStretch();
    const auto &edit = control<QWidget>(*tools, "Toolbar1");
    const auto &format = control<QWidget>(*tools, "Toolbar2");
    window.resize(700, 300);
    window.show();
    EXPECT_EQ(edit.y(), format.y());
    EXPECT_GT(format.x(), edit.geometry().right());
    EXPECT_LT(format.geometry().right(), 700);
    window.resize(500, 300);
    EXPECT_GT(format.y(), edit.geometry().bottom());
    EXPECT_EQ(format.x(), edit.x());
    EXPECT_LT(format.geometry().right(), 500);
    EXPECT_GT(tools->height(), format.geometry().bottom());
}

TEST_F(EditorTest, NoButtonTakesTheFocusByAClick)
{
    for (const Expected &expected : buttons) {
        EXPECT_EQ(control<ImageButton>(window, expected.name).focusPolicy(), Qt::TabFocus) << expected.hint;
    }
    clickOn(FormatButton::Bold);
    EXPECT_TRUE(box->hasFocus());
}

TEST_F(EditorTest, TabGoesFromTheFontBoxesToTheFormatButtons)
{
    fonts->setFocus();
    press(Qt::Key_Tab);
    EXPECT_TRUE(sizes->hasFocus());
    press(Qt::Key_Tab);
    EXPECT_TRUE(tools->button(FormatButton::FontColor).hasFocus());
    press(Qt::Key_Tab);
    EXPECT_TRUE(tools->button(FormatButton::Bold).hasFocus());
    press(Qt::Key_Space);
    EXPECT_EQ(box->selBold(), true);
    EXPECT_TRUE(isPressed(FormatButton::Bold));
}

TEST_F(EditorTest, WhatIsPressedLooksPressed)
{
    const QImage before = tools->button(FormatButton::Bold).grab().toImage();
    clickOn(FormatButton::Bold);
    EXPECT_NE(tools->button(FormatButton::Bold).grab().toImage(), before);
    clickOn(FormatButton::Bold);
    EXPECT_EQ(tools->button(FormatButton::Bold).grab().toImage(), before);
}

} // namespace
