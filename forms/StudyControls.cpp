#include "forms/StudyControls.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QSlider>
#include <QVBoxLayout>

namespace {

QGroupBox *makeViewingOrderGroup(const FlashCardControls &controls)
{
    controls.question->setText(QStringLiteral("Select the side of the flash card you want to view first:"));
    controls.question->setWordWrap(true);
    controls.front->setText(QStringLiteral("&Front (Question)"));
    controls.front->setChecked(true);
    controls.back->setText(QStringLiteral("&Back (Answer)"));
    controls.random->setText(QStringLiteral("&Random"));

    auto *order = new QGroupBox(QStringLiteral("Viewing Order:"));
    auto *rows = new QVBoxLayout(order);
    rows->addWidget(controls.question);
    rows->addWidget(controls.front);
    rows->addWidget(controls.back);
    rows->addWidget(controls.random);
    return order;
}

QGroupBox *makeFlipperGroup(const FlashCardControls &controls)
{
    controls.flipper->setText(QStringLiteral("Enable the &Automatic Flipper (1-20):"));
    setRange(controls.seconds, flipperSeconds);
    controls.seconds->setEnabled(false);
    controls.seconds->setAccessibleName(QStringLiteral("Seconds until a card turns over"));
    reserveFor(controls.secondsShown, QString::number(flipperSeconds.most));
    controls.secondsShown->setNum(controls.seconds->value());
    controls.secondsUnit->setText(QStringLiteral("(Seconds)"));
    QObject::connect(controls.flipper, &QCheckBox::toggled, controls.seconds, &QSlider::setEnabled);
    QObject::connect(controls.seconds, &QSlider::valueChanged, controls.secondsShown, qOverload<int>(&QLabel::setNum));

    auto *flipper = new QGroupBox(QStringLiteral("Auto Flipper:"));
    auto *grid = new QGridLayout(flipper);
    grid->addWidget(controls.flipper, 0, 0, 1, 3);
    grid->addWidget(controls.seconds, 1, 0);
    grid->addWidget(controls.secondsShown, 1, 1);
    grid->addWidget(controls.secondsUnit, 1, 2);
    return flipper;
}

} // namespace

void setRange(QSlider *slider, const SliderRange &range)
{
    slider->setOrientation(Qt::Horizontal);
    slider->setRange(range.least, range.most);
    slider->setSingleStep(range.step);
    slider->setPageStep(range.pageStep);
    slider->setTickInterval(range.tick);
    slider->setTickPosition(QSlider::TicksBelow);
    slider->setValue(range.start);
    slider->setMinimumHeight(slider->sizeHint().height() + 4); // the handle is higher than the hint says
}

void reserveFor(QLabel *value, const QString &widest)
{
    value->setMinimumWidth(value->fontMetrics().horizontalAdvance(widest));
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void addFlashCardGroups(QVBoxLayout &rows, const FlashCardControls &controls)
{
    rows.addWidget(makeViewingOrderGroup(controls));
    rows.addWidget(makeFlipperGroup(controls));
}

std::int16_t viewOrderOf(const FlashCardControls &controls, std::int16_t random)
{
    return controls.front->isChecked() ? ViewOrder::front : controls.back->isChecked() ? ViewOrder::back : random;
}
