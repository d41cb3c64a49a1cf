#include "tests/look/PictureComparison.h"

#include <QPainter>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace {

constexpr int gap = 8; // pixels between two pictures side by side

const QRgb *row(const QImage &picture, int y)
{
    return reinterpret_cast<const QRgb *>(picture.constScanLine(y));
}

/// The pixels as compare() reads them, without a copy if they are so already.
QImage asPixels(const QImage &picture)
{
    return picture.hasAlphaChannel() ? picture.convertToFormat(QImage::Format_ARGB32)
                                     : picture.convertToFormat(QImage::Format_RGB32);
}

/// The new picture, pale, with what is different from the approved one in red.
QImage paintDifference(const QImage &approved, const QImage &taken)
{
    const QImage before = asPixels(approved);
    QImage shown = taken.convertToFormat(QImage::Format_RGB32);
    const QImage after = asPixels(taken);
    for (int y = 0; y < shown.height(); ++y) {
        auto *pixels = reinterpret_cast<QRgb *>(shown.scanLine(y));
        for (int x = 0; x < shown.width(); ++x) {
            const int pale = 192 + qGray(pixels[x]) / 4;
            pixels[x] = areDifferent(row(before, y)[x], row(after, y)[x]) ? qRgb(230, 0, 0) : qRgb(pale, pale, pale);
        }
    }
    return shown;
}

} // namespace

bool PictureDifference::isTolerable() const
{
    return !hasOtherSize && inWorstSquare <= Tolerance::pixelsOfSquare && share <= Tolerance::ofPicture;
}

bool areDifferent(QRgb one, QRgb other)
{
    return std::abs(qRed(one) - qRed(other)) > Tolerance::channel ||
           std::abs(qGreen(one) - qGreen(other)) > Tolerance::channel ||
           std::abs(qBlue(one) - qBlue(other)) > Tolerance::channel ||
           std::abs(qAlpha(one) - qAlpha(other)) > Tolerance::channel;
}

PictureDifference compare(const QImage &approved, const QImage &taken)
{
    PictureDifference difference;
    if (approved.size() != taken.size()) {
        difference.hasOtherSize = true;
        return difference;
    }
    const QImage before = asPixels(approved);
    const QImage after = asPixels(taken);
    const auto width = static_cast<std::size_t>(before.width());
    std::vector<int> squares(width / Tolerance::squareEdge + 1); // of the current row of squares
    for (int y = 0; y < before.height(); ++y) {
        if (y % Tolerance::squareEdge == 0) {
            std::ranges::fill(squares, 0);
        }
        const QRgb *one = row(before, y);
        const QRgb *other = row(after, y);
        for (std::size_t x = 0; x < width; ++x) {
            if (one[x] != other[x] && areDifferent(one[x], other[x])) {
                ++difference.pixels;
                ++squares[x / Tolerance::squareEdge];
            }
        }
        difference.inWorstSquare = std::max(difference.inWorstSquare, std::ranges::max(squares));
    }
    const qint64 all = qint64{before.width()} * before.height();
    difference.share = all > 0 ? static_cast<double>(difference.pixels) / static_cast<double>(all) : 0;
    return difference;
}

QImage sideBySide(const QImage &approved, const QImage &taken)
{
    std::vector pictures{approved, taken};
    if (approved.size() == taken.size()) {
        pictures.push_back(paintDifference(approved, taken));
    }
    QSize size(-gap, 0);
    for (const QImage &picture : pictures) {
        size = {size.width() + picture.width() + gap, qMax(size.height(), picture.height())};
    }
    QImage sheet(size, QImage::Format_RGB32);
    sheet.fill(QColor(0x70, 0x70, 0x70));
    QPainter painter(&sheet);
    int left = 0;
    for (const QImage &picture : pictures) {
        painter.drawImage(left, 0, picture);
        left += picture.width() + gap;
    }
    return sheet;
}
