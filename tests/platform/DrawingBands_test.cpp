#include "platform/DrawingBands.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <gtest/gtest.h>

namespace {

void drawCurve(QPainter &painter)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::darkBlue, 2.5));
    QPainterPath curve(QPointF(1, 15));
    curve.cubicTo(5, -20, 20, 50, 31, 3);
    painter.drawPath(curve);
}

QImage drawn(int side, double scale, bool inBands)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(scale, scale);
    inBands ? drawInBands(painter, side, [&] { drawCurve(painter); }) : drawCurve(painter);
    return image;
}

TEST(DrawingBands, ShowTheSameAsOnePiece)
{
    EXPECT_EQ(drawn(32, 1, true), drawn(32, 1, false));
    EXPECT_EQ(drawn(48, 1.5, true), drawn(48, 1.5, false));
}

TEST(DrawingBands, ReachTheLastLineOfAnyHeight)
{
    EXPECT_EQ(drawn(29, 1, true), drawn(29, 1, false));
}

TEST(DrawingBands, LeaveThePainterAsItWas)
{
    QImage image(16, 16, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.scale(2, 2);
    drawInBands(painter, 16, [] {});
    EXPECT_FALSE(painter.hasClipping());
    EXPECT_EQ(painter.transform(), QTransform::fromScale(2, 2));
}

} // namespace
