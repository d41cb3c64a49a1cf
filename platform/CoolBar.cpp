#include "platform/CoolBar.h"

#include "platform/DevicePixels.h"

#include <QLayout>
#include <QLayoutItem>
#include <QPainter>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

constexpr int bandGap = 13; // a line stands in it
constexpr int rowGap = 2;
constexpr int border = 3;

/// Rows of bands, each row as full as it goes.
class BandLayout final : public QLayout
{
public:
    explicit BandLayout(QWidget *bar)
        : QLayout(bar)
    {
        setContentsMargins(border, border, border, border);
    }

    void addItem(QLayoutItem *item) override { m_bands.emplace_back(item); }
    [[nodiscard]] int count() const override { return static_cast<int>(m_bands.size()); }
    [[nodiscard]] QLayoutItem *itemAt(int index) const override
    {
        return index >= 0 && index < count() ? m_bands[static_cast<std::size_t>(index)].get() : nullptr;
    }
    QLayoutItem *takeAt(int index) override
    {
        if (itemAt(index) == nullptr) {
            return nullptr;
        }
        QLayoutItem *taken = m_bands[static_cast<std::size_t>(index)].release();
        m_bands.erase(m_bands.begin() + index);
        return taken;
    }

    [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override { return arrange(width).height; }

    [[nodiscard]] QSize sizeHint() const override
    {
        const Arrangement oneRow = arrange(QLAYOUTSIZE_MAX);
        const int right = oneRow.places.empty() ? 0 : oneRow.places.back().right() + 1;
        return {right + contentsMargins().right(), oneRow.height};
    }
    [[nodiscard]] QSize minimumSize() const override
    {
        QSize least;
        for (const auto &band : m_bands) {
            least = least.expandedTo(band->sizeHint());
        }
        return least.grownBy(contentsMargins());
    }

    void setGeometry(const QRect &area) override
    {
        QLayout::setGeometry(area);
        const Arrangement arrangement = arrange(area.width());
        for (std::size_t i = 0; i < m_bands.size(); ++i) {
            m_bands[i]->setGeometry(arrangement.places[i].translated(area.topLeft()));
        }
    }

private:
    struct Arrangement
    {
        std::vector<QRect> places; ///< of the bands
        int height;                ///< of all, with margins
    };

    [[nodiscard]] Arrangement arrange(int width) const
    {
        const QMargins margins = contentsMargins();
        Arrangement arrangement;
        QPoint place(margins.left(), margins.top());
        int rowHeight = 0;
        std::size_t rowStart = 0;
        const auto endRow = [&] {
            for (; rowStart < arrangement.places.size(); ++rowStart) {
                arrangement.places[rowStart].setHeight(rowHeight);
            }
        };
        for (const auto &band : m_bands) {
            const QSize size = band->sizeHint();
            if (place.x() > margins.left() && place.x() + size.width() > width - margins.right()) {
                endRow();
                place = {margins.left(), place.y() + rowHeight + rowGap};
                rowHeight = 0;
            }
            arrangement.places.emplace_back(place, size);
            rowHeight = std::max(rowHeight, size.height());
            place.rx() += size.width() + bandGap;
        }
        endRow();
        arrangement.height = place.y() + rowHeight + margins.bottom();
        return arrangement;
    }

    std::vector<std::unique_ptr<QLayoutItem>> m_bands;
};

} // namespace

CoolBar::CoolBar(QWidget *parent)
    : QWidget(parent)
{
    new BandLayout(this);
}

void CoolBar::addBand(QWidget *band)
{
    layout()->addWidget(band);
}

void CoolBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    for (int i = 0; i < layout()->count(); ++i) {
        const QRect band = layout()->itemAt(i)->geometry();
        if (band.left() >= bandGap) {
            paintSeparator(painter, QRect(band.left() - bandGap, band.top(), bandGap, band.height()), palette());
        }
    }
}

void paintSeparator(QPainter &painter, const QRectF &area, const QPalette &palette)
{
    constexpr double air = 3; // above and below
    constexpr float faintness = 0.4F;
    QColor ink = palette.color(QPalette::WindowText);
    ink.setAlphaF(faintness);
    const double width = hairline(painter);
    const QRectF line(area.center().x() - width / 2, area.top() + air, width, area.height() - 2 * air);
    painter.fillRect(onDevicePixels(painter, line), ink);
}
