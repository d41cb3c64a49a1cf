#include "platform/CoolBar.h"

#include <QImage>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace {

class CoolBarTest : public testing::Test
{
protected:
    CoolBarTest()
    {
        auto *layout = new QVBoxLayout(&m_window);
        layout->setContentsMargins({});
        layout->addWidget(m_bar);
        layout->addStretch();
    }

    QWidget *addBand(QSize size)
    {
        auto *band = new QWidget;
        band->setFixedSize(size);
        m_bar->addBand(band);
        return band;
    }
    void showAt(int width)
    {
        m_window.resize(width, 400);
        m_window.show();
    }

    QWidget m_window;
    CoolBar *m_bar = new CoolBar;
};

TEST_F(CoolBarTest, TakesItsBandsOver)
{
    const QWidget *band = addBand({100, 20});
    EXPECT_EQ(band->parentWidget(), m_bar);
}

TEST_F(CoolBarTest, BandsStandSideBySideInTheOrderTheyWereAddedWhereThereIsRoom)
{
    const QWidget *one = addBand({100, 20});
    const QWidget *two = addBand({150, 30});
    const QWidget *three = addBand({80, 20});
    showAt(m_bar->sizeHint().width());
    EXPECT_GT(two->x(), one->geometry().right());
    EXPECT_GT(three->x(), two->geometry().right());
    EXPECT_LT(three->geometry().right(), m_bar->width());
    EXPECT_EQ(one->geometry().center().y(), two->geometry().center().y()) << "in the middle of the row";
    EXPECT_EQ(m_bar->height(), m_bar->sizeHint().height());
}

TEST_F(CoolBarTest, WithOnePixelLessTheLastOneBeginsANewRow)
{
    const QWidget *one = addBand({100, 20});
    const QWidget *two = addBand({150, 30});
    const QWidget *three = addBand({80, 20});
    showAt(m_bar->sizeHint().width() - 1);
    EXPECT_EQ(one->geometry().center().y(), two->geometry().center().y());
    EXPECT_EQ(three->x(), one->x());
    EXPECT_GT(three->y(), two->geometry().bottom());
    EXPECT_GT(m_bar->height(), three->geometry().bottom());
}

TEST_F(CoolBarTest, TheWidestBandGivesTheSmallestWidth)
{
    const QWidget *one = addBand({100, 20});
    const QWidget *two = addBand({150, 30});
    EXPECT_GE(m_bar->minimumSizeHint().width(), 150);
    EXPECT_LT(m_bar->minimumSizeHint().width(), 200);
    showAt(m_bar->minimumSizeHint().width());
    EXPECT_GT(two->y(), one->geometry().bottom());
    EXPECT_LT(two->geometry().right(), m_bar->width());
}

TEST_F(CoolBarTest, ItsHeightFollowsFromItsWidth)
{
    addBand({100, 20});
    addBand({150, 30});
    const int oneRow = m_bar->heightForWidth(1000);
    const int twoRows = m_bar->heightForWidth(200);
    EXPECT_GE(oneRow, 30);
    EXPECT_GE(twoRows, oneRow + 20);
    showAt(1000);
    EXPECT_EQ(m_bar->height(), oneRow);
    m_window.resize(200, 400);
    EXPECT_EQ(m_bar->height(), twoRows);
}

TEST_F(CoolBarTest, WithoutBandsItIsEmpty)
{
    showAt(300);
    EXPECT_LT(m_bar->height(), 20);
    EXPECT_FALSE(m_bar->grab().isNull());
}

TEST_F(CoolBarTest, ALineStandsBetweenBandsOfOneRowOnly)
{
    addBand({100, 30});
    addBand({100, 30});
    const auto inked = [this] {
        const QImage image = m_bar->grab().toImage();
        const QRgb ground = image.pixel(0, 0);
        int columns = 0;
        for (int x = 0; x < image.width(); ++x) {
            columns += image.pixel(x, image.height() / 4) != ground;
        }
        return columns;
    };
    showAt(400);
    EXPECT_EQ(inked(), 1) << "one sharp line";
    m_window.resize(150, 400);
    EXPECT_EQ(inked(), 0);
}

} // namespace
