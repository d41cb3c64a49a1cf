#include "platform/PaperPalette.h"
#include "tests/forms/AccessibilityWalk.h"
#include "tests/forms/ShownWindows.h"
#include "tests/forms/SpoiledWindow.h"
#include "tests/support/Contrast.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>

namespace {

INSTANTIATE_TEST_SUITE_P(Accessibility, EveryScene, testing::ValuesIn(ShownWindows::scenes()), nameOfScene);

TEST_P(EveryScene, EveryControlHasANameAndARoleThatFits)
{
    visitScene([](QWidget &window) {
        EXPECT_FALSE(visibleControls(window).empty());
        EXPECT_EQ(told(unnamedControls(window)), "");
        EXPECT_EQ(told(unnamedTexts(window)), "");
    });
}

TEST_P(EveryScene, NothingElseIsAnnouncedAsAControl)
{
    visitScene([](QWidget &window) { EXPECT_EQ(told(falseControls(window)), ""); });
}

TEST_P(EveryScene, NoTwoThingsHaveOneMnemonic)
{
    visitScene([this](QWidget &window) { EXPECT_EQ(told(sharedMnemonics(window, GetParam().altKeys)), ""); });
}

// Nothing is told by a colour only.

/// Where there is ink, whatever its colour.
QImage inkOf(const QImage &picture)
{
    const QColor ground = groundOf(picture);
    QImage ink(picture.size(), QImage::Format_Mono);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            ink.setPixel(x, y, contrastRatio(picture.pixelColor(x, y), ground) >= visibleContrast ? 1 : 0);
        }
    }
    return ink;
}

int differentPixels(const QImage &one, const QImage &other)
{
    int different = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            different += one.pixelIndex(x, y) != other.pixelIndex(x, y);
        }
    }
    return different;
}

TEST(NothingByColorOnly, TheStatesOfASelectorDifferInTheirShapesAndInTheirNames)
{
    struct State
    {
        int answer;
        bool isMarked;
        bool isGraded;
    };
    constexpr auto states = std::to_array<State>(
        {{0, false, false}, {1, false, false}, {1, true, false}, {0, false, true}, {1, false, true}, {2, false, true}});
    std::vector<QImage> shapes;
    QStringList names;
    for (const State &state : states) {
        SelectAnswer selector;
        selector.setPalette(paperPalette(Qt::white));
        selector.setCorrectAnswer(1);
        selector.setSelectedAnswer(state.answer);
        selector.setMarkedForReview(state.isMarked);
        selector.setGraded(state.isGraded);
        selector.resize(selector.sizeHint());
        shapes.push_back(inkOf(selector.grab().toImage()));
        names << selector.accessibleName();
    }
    constexpr int clearlyOther = 20; // pixels
    for (std::size_t one = 0; one < shapes.size(); ++one) {
        for (std::size_t other = 0; other < one; ++other) {
            EXPECT_GE(differentPixels(shapes[one], shapes[other]), clearlyOther) << one << " and " << other;
        }
    }
    EXPECT_EQ(QSet<QString>(names.begin(), names.end()).size(), static_cast<qsizetype>(states.size()));
}

TEST(NothingByColorOnly, AButtonThatIsCheckedHasAFrameAndSaysSo)
{
    for (const QColor &paper : {QColor(Qt::white), QColor(0xff, 0xfb, 0xc8), QColor(0x10, 0x1c, 0x4a)}) {
        ImageButton button;
        button.setPalette(paperPalette(paper));
        button.setAutoFillBackground(true);
        button.setPicture(QStringLiteral("bold"));
        button.setCheckable(true);
        button.resize(button.sizeHint());
        const QImage off = button.grab().toImage();
        button.setChecked(true);
        const QImage on = button.grab().toImage();
        EXPECT_GE(clearChanges(on, off), 2 * button.width()) << paper.name().toStdString();
        EXPECT_TRUE(QAccessible::queryAccessibleInterface(&button)->state().checked);
    }
}

TEST_F(ShownWindows, AMarkedCardSaysSoInWords)
{
    showMarked([](QWidget &window) {
        EXPECT_EQ(control<QLabel>(window, "Label1(1)").text(), QStringLiteral("*** MARKED ***"));
        EXPECT_TRUE(control<QLabel>(window, "Label1(1)").isVisible());
    });
}

// The walk itself sees what is wrong.

TEST_F(SpoiledWindow, AControlWithoutANameIsSeen)
{
    add<QLineEdit>("field");
    add<QLineEdit>("named")->setAccessibleName(QStringLiteral("named"));
    show();
    EXPECT_EQ(told(unnamedControls(window)), "field: has no name\nnamed: has no name");
}

TEST_F(SpoiledWindow, AControlWithAForeignRoleIsSeen)
{
    auto *place = add<QWidget>("place");
    place->setAccessibleName(QStringLiteral("A place"));
    place->setFocusPolicy(Qt::StrongFocus);
    show();
    ASSERT_EQ(unnamedControls(window).size(), 1);
    EXPECT_TRUE(unnamedControls(window).front().startsWith(QStringLiteral("place: is announced with role")));
}

TEST_F(SpoiledWindow, AnEntryWithoutANameIsSeen)
{
    auto *list = add<QListWidget>("list");
    list->addItems({QStringLiteral("one"), QString()});
    show();
    EXPECT_TRUE(falseControls(window).contains(QStringLiteral("an entry without a name")));
}

TEST_F(SpoiledWindow, TwoThingsWithOneMnemonicAreSeen)
{
    add<QPushButton>("one")->setText(QStringLiteral("&Next"));
    auto *label = add<QLabel>("label");
    label->setText(QStringLiteral("&Name"));
    label->setBuddy(add<QLineEdit>("field"));
    add<QCheckBox>("own")->setText(QStringLiteral("&Own"));
    show();
    EXPECT_EQ(sharedMnemonics(window, {Qt::ALT | Qt::Key_O}).size(), 2);
    EXPECT_EQ(sharedMnemonics(window, {}).size(), 1);
}

} // namespace
