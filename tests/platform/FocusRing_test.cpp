#include "platform/FocusRing.h"
#include "platform/ImageButton.h"
#include "tests/support/Contrast.h"

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>
#include <memory>

namespace {

class FocusRingTest : public testing::Test
{
protected:
    void SetUp() override
    {
        rows.setSpacing(20);
        for (QWidget *control : {static_cast<QWidget *>(button), static_cast<QWidget *>(slider),
                                 static_cast<QWidget *>(field), static_cast<QWidget *>(picture)}) {
            rows.addWidget(control);
        }
        ring = new FocusRing(window);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    [[nodiscard]] bool isAround(const QWidget &control) const
    {
        return ring->isVisible() && ring->widget() == &control && ring->geometry().contains(control.geometry()) &&
               ring->geometry() != control.geometry();
    }

    QDialog window;
    QVBoxLayout &rows = *new QVBoxLayout(&window);
    QPushButton *button = new QPushButton(QStringLiteral("Button"));
    QSlider *slider = new QSlider(Qt::Horizontal);
    QLineEdit *field = new QLineEdit;
    ImageButton *picture = new ImageButton;
    FocusRing *ring = nullptr;
};

TEST_F(FocusRingTest, FollowsTheFocusHoweverItMoves)
{
    button->setFocus(Qt::MouseFocusReason);
    EXPECT_TRUE(isAround(*button));
    QTest::keyClick(button, Qt::Key_Tab);
    EXPECT_TRUE(isAround(*slider));
}

TEST_F(FocusRingTest, LeavesOutWhatShowsTheFocusItself)
{
    button->setFocus();
    for (QWidget *control : {static_cast<QWidget *>(field), static_cast<QWidget *>(picture)}) {
        control->setFocus();
        EXPECT_FALSE(ring->isVisible());
    }
    button->setFocus();
    EXPECT_TRUE(isAround(*button));
}

TEST(FocusRing, IsNotSeenWhereTheFocusStartsInAField)
{
    QDialog window;
    auto *field = new QLineEdit(&window);
    const auto *ring = new FocusRing(window);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    ASSERT_TRUE(field->hasFocus());
    EXPECT_FALSE(ring->isVisible());
}

TEST_F(FocusRingTest, IsNotSeenWhileAnotherWindowHasTheFocus)
{
    button->setFocus();
    QDialog other;
    QPushButton inOther(QStringLiteral("Other"), &other);
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    inOther.setFocus();
    EXPECT_FALSE(ring->isVisible());
    other.close();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    EXPECT_TRUE(isAround(*button));
}

TEST_F(FocusRingTest, IsGoneWithItsControl)
{
    slider->setFocus();
    delete slider;
    EXPECT_FALSE(ring->isVisible() && ring->widget() == nullptr);
    button->setFocus();
    EXPECT_TRUE(isAround(*button));
}

TEST_F(FocusRingTest, IsClearOnEveryPalette)
{
    const std::vector<std::pair<QColor, QColor>> grounds{
        {QColor(0xef, 0xef, 0xef), QColor(0x30, 0x8c, 0xc6)},
        {QColor(0x2b, 0x2b, 0x2b), QColor(0x1f, 0x3f, 0x5e)}, // a highlight as dark as its window
        {QColor(0xff, 0xff, 0xff), QColor(0xff, 0xe0, 0x80)}, // one as light
        {QColor(0x10, 0x1c, 0x4a), QColor(0xa9, 0xc8, 0xff)}};
    for (const auto &[ground, highlight] : grounds) {
        QPalette colors(ground, ground);
        colors.setColor(QPalette::Highlight, highlight);
        window.setPalette(colors);
        button->setFocus();
        const QRect place = ring->geometry();
        const QImage with = window.grab(place).toImage();
        field->setFocus();
        const int edges = 2 * (place.width() + place.height());
        EXPECT_GT(clearChanges(with, window.grab(place).toImage()), edges) << ground.name().toStdString();
    }
}

TEST_F(FocusRingTest, IsWholeAroundAControlThatFillsWhatItLiesIn)
{
    auto *tight = new QWidget;
    auto *filling = new QPushButton(QStringLiteral("Filling"), tight);
    auto *row = new QHBoxLayout(tight);
    row->setContentsMargins({});
    row->addWidget(filling);
    rows.addWidget(tight);
    QApplication::processEvents();
    filling->setFocus();
    ASSERT_TRUE(ring->isVisible());
    EXPECT_EQ(ring->visibleRegion().boundingRect(), ring->rect());
    const QRect place(filling->mapTo(&window, QPoint(0, 0)), filling->size());
    EXPECT_TRUE(ring->geometry().translated(ring->parentWidget()->mapTo(&window, QPoint(0, 0))).contains(place));
    EXPECT_EQ(ring->parentWidget(), &window);
}

TEST_F(FocusRingTest, IsNotAnnounced)
{
    button->setFocus();
    ASSERT_TRUE(ring->isVisible());
    QAccessibleInterface *access = QAccessible::queryAccessibleInterface(&window);
    for (int child = 0; child < access->childCount(); ++child) {
        EXPECT_NE(access->child(child)->object(), ring);
    }
}

TEST_F(FocusRingTest, LetsTheMouseThrough)
{
    button->setFocus();
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, slider->geometry().center());
    int clicks = 0;
    QObject::connect(button, &QPushButton::clicked, [&clicks] { ++clicks; });
    button->setFocus();
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, button->geometry().center());
    EXPECT_EQ(clicks, 1);
}

} // namespace
