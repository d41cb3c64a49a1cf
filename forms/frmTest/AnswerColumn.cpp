#include "forms/frmTest/AnswerColumn.h"

#include "forms/Controls.h"
#include "platform/SelectAnswer.h"
#include "platform/Twips.h"

#include <QApplication>
#include <QScrollBar>
#include <QWheelEvent>

namespace {

constexpr int gapBetweenSelectors = 100; // twips
constexpr int scrollBarWidth = 360;      // twips
constexpr int gapBesideSelectors = 60;   // twips

} // namespace

AnswerColumn::AnswerColumn(int questions, QWidget *parent)
    : QWidget(parent)
    , Picture1(makeControl<QWidget>(this, QLatin1String("Picture1")))
    , Picture2(makeControl<QWidget>(Picture1, QLatin1String("Picture2")))
    , VScroll1(makeControl<QScrollBar>(this, QLatin1String("VScroll1")))
{
    int top = 0;
    for (int question = 0; question < questions; ++question) {
        auto *selector = makeControl<SelectAnswer>(
            Picture2,
            QLatin1String(memberName(QLatin1String("SelectAnswer1"), static_cast<std::size_t>(question)).toLatin1()));
        selector->setQuestionNumber(QString::number(question + 1));
        selector->setGeometry(QRect(QPoint(0, top), selector->sizeHint()));
        top += selector->height() + toPixels(gapBetweenSelectors);
        SelectAnswer1.push_back(selector);
    }
    Picture2->resize(SelectAnswer1.front()->width(), top);
    VScroll1->setOrientation(Qt::Vertical);
    VScroll1->setSingleStep(top / questions);
    VScroll1->setAccessibleName(QStringLiteral("Answers"));
    connect(VScroll1, &QScrollBar::valueChanged, this, [this](int value) { Picture2->move(0, -value); });
}

SelectAnswer &AnswerColumn::selector(int question) const
{
    return *SelectAnswer1.at(static_cast<std::size_t>(question));
}

void AnswerColumn::reveal(int question)
{
    const QRect place = selector(question).geometry();
    if (place.top() + place.height() > VScroll1->value() + Picture1->height()) {
        VScroll1->setValue(place.top() + place.height() - Picture1->height());
    }
    if (place.top() < VScroll1->value()) {
        VScroll1->setValue(place.top());
    }
}

QSize AnswerColumn::sizeHint() const
{
    return {Picture2->width() + toPixels(gapBesideSelectors) + toPixels(scrollBarWidth), Picture2->height()};
}

void AnswerColumn::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    Picture1->setGeometry(0, 0, Picture2->width(), height());
    VScroll1->setGeometry(Picture2->width() + toPixels(gapBesideSelectors), 0, toPixels(scrollBarWidth), height());
    VScroll1->setPageStep(height());
    VScroll1->setRange(0, qMax(0, Picture2->height() - height()));
    VScroll1->setVisible(VScroll1->maximum() > 0);
}

void AnswerColumn::wheelEvent(QWheelEvent *event)
{
    QApplication::sendEvent(VScroll1, event);
}
