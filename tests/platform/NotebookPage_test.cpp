#include "platform/NotebookPage.h"
#include "platform/PaperPalette.h"
#include "platform/Twips.h"

#include <QApplication>
#include <QImage>
#include <QLineEdit>

#include <gtest/gtest.h>
#include <string>

namespace {

constexpr QRgb blue = 0xff0000ff;
constexpr QRgb lightRed = 0xffff8080;
constexpr QRgb white = 0xffffffff;

QImage picture(NotebookPage &page, double scale)
{
    QImage image((QSizeF(page.size()) * scale).toSize(), QImage::Format_ARGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::magenta);
    page.render(&image);
    return image;
}

/// Rows of \p color in a column of device pixels.
QVector<int> rowsOf(const QImage &image, int column, QRgb color)
{
    QVector<int> rows;
    for (int row = 0; row < image.height(); ++row) {
        if (image.pixel(column, row) == color) {
            rows.append(row);
        }
    }
    return rows;
}

struct Scale
{
    std::string name;
    double factor;
    int firstRow;  ///< device pixels
    int thickness; ///< device pixels
    int spacing;   ///< device pixels
};

class RuledLines : public testing::TestWithParam<Scale>
{
};

TEST_P(RuledLines, AreCrispBlueRowsWithPaperBetween)
{
    const Scale &scale = GetParam();
    NotebookPage page(PageRuling{});
    page.resize(400, 300);
    const QImage image = picture(page, scale.factor);
    const int column = qRound(200 * scale.factor);

    const int lines = countRuledLines(1180, toTwips(300));
    QVector<int> expected;
    for (int line = 0; line < lines; ++line) {
        for (int row = 0; row < scale.thickness; ++row) {
            expected.append(scale.firstRow + line * scale.spacing + row);
        }
    }
    EXPECT_EQ(lines, 9);
    EXPECT_EQ(rowsOf(image, column, blue), expected);
    EXPECT_EQ(rowsOf(image, column, white).size() + expected.size(), image.height()) << "no shade in between";
}

TEST_P(RuledLines, ReachFromEdgeToEdge)
{
    const Scale &scale = GetParam();
    NotebookPage page(PageRuling{});
    page.resize(400, 300);
    const QImage image = picture(page, scale.factor);
    const int row = scale.firstRow;
    EXPECT_EQ(image.pixel(0, row), blue);
    EXPECT_EQ(image.pixel(image.width() - 1, row), blue);
}

TEST_P(RuledLines, TheMarginLineCrossesThemOverTheFullHeight)
{
    const Scale &scale = GetParam();
    NotebookPage page(PageRuling{});
    page.resize(400, 300);
    const QImage image = picture(page, scale.factor);
    const int column = qRound(64 * scale.factor);
    EXPECT_EQ(rowsOf(image, column, lightRed).size(), image.height());
    EXPECT_EQ(rowsOf(image, column - 1, lightRed).size(), 0);
    EXPECT_EQ(rowsOf(image, column + scale.thickness, lightRed).size(), 0);
}

INSTANTIATE_TEST_SUITE_P(At, RuledLines,
                         testing::Values(Scale{"100Percent", 1, 79, 1, 24}, Scale{"125Percent", 1.25, 98, 1, 30},
                                         Scale{"150Percent", 1.5, 118, 1, 36}, Scale{"200Percent", 2, 157, 2, 48}),
                         [](const auto &row) { return row.param.name; });

TEST(NotebookPage, ALowPageHasNoRuledLines)
{
    NotebookPage page(PageRuling{});
    page.resize(400, 70);
    EXPECT_TRUE(rowsOf(picture(page, 1), 200, blue).isEmpty());
}

TEST(NotebookPage, WithoutAMarginLineThereIsNone)
{
    PageRuling ruling;
    ruling.marginLine = false;
    NotebookPage page(ruling);
    page.resize(400, 300);
    EXPECT_TRUE(rowsOf(picture(page, 1), 64, lightRed).isEmpty());
}

TEST(NotebookPage, HolesAreDarkInsideAndBlackAtTheRim)
{
    NotebookPage page(PageRuling{});
    page.resize(400, 300);
    for (const double scale : {1.0, 2.0}) {
        const QImage image = picture(page, scale);
        for (const QRectF &hole : holePlaces(page.ruling(), toTwips(300))) {
            const double pixel = scale / toTwips(1);
            const QPointF center = hole.center() * pixel;
            EXPECT_LT(qGray(image.pixel(center.toPoint())), 140);
            const QPointF rim((hole.left() + hole.width() / 2) * pixel, hole.top() * pixel + scale / 2);
            EXPECT_LT(qGray(image.pixel(static_cast<int>(rim.x()), static_cast<int>(rim.y()))), 60);
            const QPoint beside(qRound((hole.right() + 60) * pixel), qRound((hole.top() + 60) * pixel));
            EXPECT_EQ(image.pixel(beside), white);
        }
    }
}

TEST(NotebookPage, ASpiralHasItsNineteenBlackHolesWithWireToTheEdge)
{
    PageRuling ruling{840, false, PageRuling::Binding::Spiral, 0};
    NotebookPage page(ruling);
    page.resize(420, 330);
    const QImage image = picture(page, 2);
    for (const QRectF &hole : holePlaces(ruling, toTwips(330))) {
        const double pixel = 2 / toTwips(1);
        const QPointF lowRight = hole.center() + QPointF(hole.width(), hole.height()) * 0.28;
        EXPECT_LT(qGray(image.pixel((lowRight * pixel).toPoint())), 25);
        int wire = 0;
        for (int row = qRound((hole.top() - 60) * pixel); row < qRound((hole.top() + 60) * pixel); ++row) {
            const QRgb color = image.pixel(0, row);
            if (color != white && color != blue) {
                ++wire;
            }
        }
        EXPECT_GT(wire, 4) << "the wire goes around the page's edge";
    }
}

TEST(NotebookPage, ANewPaperColourIsPaintedAndGoesToTheChildren)
{
    NotebookPage page(PageRuling{});
    QLineEdit box(&page);
    page.resize(400, 300);
    page.setPaperColor(QColor(0x26, 0x30, 0x3c));
    EXPECT_EQ(picture(page, 1).pixel(200, 40), QColor(0x26, 0x30, 0x3c).rgb());
    EXPECT_EQ(box.palette().color(QPalette::Text), paperPalette(QColor(0x26, 0x30, 0x3c)).color(QPalette::Text));
    EXPECT_EQ(page.paperColor(), QColor(0x26, 0x30, 0x3c));
}

TEST(NotebookPage, StaysPaperUnderADarkDesktop)
{
    const QPalette before = QApplication::palette();
    NotebookPage page(PageRuling{});
    QLineEdit box(&page);
    QApplication::setPalette(QPalette(QColor(0x20, 0x20, 0x20)));
    EXPECT_EQ(page.palette().color(QPalette::Window), QColor(Qt::white));
    EXPECT_EQ(box.palette().color(QPalette::Text), paperPalette(Qt::white).color(QPalette::Text));
    EXPECT_EQ(box.palette().color(QPalette::Base), paperPalette(Qt::white).color(QPalette::Base));
    QApplication::setPalette(before);
}

TEST(NotebookPage, ANewRulingIsPainted)
{
    NotebookPage page(PageRuling{});
    page.resize(400, 300);
    PageRuling ruling;
    ruling.firstLine = 1500;
    page.setRuling(ruling);
    EXPECT_EQ(rowsOf(picture(page, 1), 200, blue).value(0), 100);
}

TEST(NotebookFont, KeepsTheNameThatWasAskedFor)
{
    EXPECT_EQ(notebookFont(10).family(), QStringLiteral("Comic Sans MS"));
    EXPECT_EQ(notebookFont(18).pointSizeF(), 18);
    const QString second = QFont::substitutes(QStringLiteral("Comic Sans MS")).value(0);
    EXPECT_EQ(second.compare(QStringLiteral("Comic Neue"), Qt::CaseInsensitive), 0) << second.toStdString();
}

TEST(NotebookFont, TheWholePageIsSetInIt)
{
    NotebookPage page(PageRuling{});
    const QLineEdit box(&page);
    EXPECT_EQ(box.font().family(), QStringLiteral("Comic Sans MS"));
}

} // namespace
