#include "platform/PaperPalette.h"
#include "platform/PaperSheet.h"
#include "platform/ReadingPlace.h"
#include "tests/support/Contrast.h"
#include "tests/support/Heard.h"

#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

namespace {

TEST(ReadingPlace, TellsWhatIsToBeReadOncePerChange)
{
    ReadingPlace place;
    const Heard heard;
    place.tell(QStringLiteral("one"));
    place.tell(QStringLiteral("one"));
    place.tell(QStringLiteral("two"));
    EXPECT_EQ(Heard::namesOf(place), (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
}

TEST(ReadingPlace, IsATextThatCanHaveTheFocus)
{
    ReadingPlace place;
    QAccessibleInterface *access = QAccessible::queryAccessibleInterface(&place);
    EXPECT_EQ(access->role(), QAccessible::StaticText);
    EXPECT_TRUE(access->state().focusable);
}

TEST(PaperSheet, ShowsOnItsBorderThatWhatLiesOnItHasTheFocus)
{
    for (const PaperSheet::Shape shape : {PaperSheet::Shape::UnderTabs, PaperSheet::Shape::IndexCard}) {
        for (const QColor &paper : {QColor(Qt::white), QColor(0xff, 0xf6, 0xa0), QColor(0x10, 0x18, 0x40)}) {
            QWidget window;
            window.setPalette(paperPalette(paper));
            window.resize(300, 300);
            PaperSheet sheet(&window);
            sheet.setShape(shape);
            sheet.setGeometry(10, 10, 200, 150);
            ReadingPlace place(&sheet);
            QLineEdit other(&window);
            other.move(10, 200);
            sheet.showFocusOf(place);
            window.show();
            ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
            other.setFocus();
            const QImage without = sheet.grab().toImage();
            place.setFocus();
            const QImage with = sheet.grab().toImage();
            EXPECT_GT(clearChanges(with, without), 2 * (150 + 100)) << paper.name().toStdString();
            other.setFocus();
            EXPECT_EQ(sheet.grab().toImage(), without);
        }
    }
}

} // namespace
