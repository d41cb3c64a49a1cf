#include "platform/NotebookPage.h"
#include "platform/PaperFrame.h"

#include <QImage>
#include <QListWidget>

#include <gtest/gtest.h>

namespace {

class PaperFrameAt : public testing::TestWithParam<double>
{
};

TEST_P(PaperFrameAt, AnyScaleIsOneUnbrokenLineOnAllFourSides)
{
    const double scale = GetParam();
    NotebookPage page(PageRuling{});
    auto *box = new QListWidget(&page);
    givePaperFrame(*box);
    page.resize(301, 203);
    box->setGeometry(73, 31, 151, 107);

    QImage image((QSizeF(page.size()) * scale).toSize(), QImage::Format_ARGB32);
    image.setDevicePixelRatio(scale);
    page.render(&image);

    const auto device = [scale](int pixels) { return qRound(pixels * scale); };
    const QRect frame(QPoint(device(73), device(31)), QPoint(device(73 + 151) - 1, device(31 + 107) - 1));
    const QRgb line = page.palette().color(QPalette::Dark).rgb();
    const QRgb inside = page.palette().color(QPalette::Base).rgb();
    for (int x = frame.left(); x <= frame.right(); ++x) {
        ASSERT_EQ(image.pixel(x, frame.top()), line) << x;
        ASSERT_EQ(image.pixel(x, frame.bottom()), line) << x;
    }
    for (int y = frame.top(); y <= frame.bottom(); ++y) {
        ASSERT_EQ(image.pixel(frame.left(), y), line) << y;
        ASSERT_EQ(image.pixel(frame.right(), y), line) << y;
    }
    const int next = static_cast<int>(scale);
    for (int y = frame.top() + next; y <= frame.bottom() - next; ++y) {
        ASSERT_EQ(image.pixel(frame.left() + next, y), inside) << "no ruled line shines through";
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, PaperFrameAt, testing::Values(1.0, 1.25, 1.5, 1.75, 2.0));

} // namespace
