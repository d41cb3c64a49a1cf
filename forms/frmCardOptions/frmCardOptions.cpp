#include "forms/frmCardOptions/frmCardOptions.h"

#include "forms/Controls.h"
#include "forms/HelpKey.h"
#include "platform/FocusRing.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

namespace {

enum Option { FrontFirst, BackFirst, RandomFirst };
enum Button { Ok, Cancel };

} // namespace

frmCardOptions::frmCardOptions(Module1 &module, QWidget *parent)
    : QDialog(parent)
    , Label1(makeControl<QLabel>(this, QLatin1String("Label1")))
    , Option1(makeControlArray<QRadioButton, 3>(this, QLatin1String("Option1")))
    , Check1(makeControl<QCheckBox>(this, QLatin1String("Check1")))
    , Slider1(makeControl<QSlider>(this, QLatin1String("Slider1")))
    , Label3(makeControl<QLabel>(this, QLatin1String("Label3")))
    , Label2(makeControl<QLabel>(this, QLatin1String("Label2")))
    , Command1(makeControlArray<QPushButton, 2>(this, QLatin1String("Command1")))
    , m_module(module)
{
    setObjectName(QStringLiteral("frmCardOptions"));
    setWindowTitle(QStringLiteral("Flash Card Options"));
    new FocusRing(*this);

    Command1[Ok]->setText(QStringLiteral("OK"));
    Command1[Ok]->setDefault(true);
    Command1[Cancel]->setText(QStringLiteral("Cancel"));
    layOut();
    Option1[FrontFirst]->setFocus();

    connect(Command1[Ok], &QPushButton::clicked, this, &frmCardOptions::confirm);
    connect(Command1[Cancel], &QPushButton::clicked, this, &frmCardOptions::cancel);
    offerHelp(*this, HelpContext::FlashCardSession);
}

void frmCardOptions::layOut()
{
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command1[Ok]);
    buttons->addWidget(Command1[Cancel]);

    auto *rows = new QVBoxLayout(this);
    addFlashCardGroups(*rows, flashCardControls());
    rows->addSpacing(6);
    rows->addLayout(buttons);
    rows->setSizeConstraint(QLayout::SetFixedSize);

    chainTabOrder({Option1[FrontFirst], Option1[BackFirst], Option1[RandomFirst], Check1, Slider1, Command1[Ok],
                   Command1[Cancel]});
}

void frmCardOptions::keyPressEvent(QKeyEvent *event)
{
    // The dialog's own answer to Escape is the close box's.
    if (event->matches(QKeySequence::Cancel)) {
        Command1[Cancel]->click();
    } else {
        QDialog::keyPressEvent(event);
    }
}

void frmCardOptions::confirm()
{
    m_module.study.viewOrder = viewOrderOf(flashCardControls(), ViewOrder::randomInDialog);
    m_module.study.timeSetting = static_cast<std::int16_t>(Check1->isChecked() ? Slider1->value() : 0);
    accept();
}

void frmCardOptions::cancel()
{
    m_module.study.cancelled = true;
    reject();
}

FlashCardControls frmCardOptions::flashCardControls() const
{
    return {.question = Label1,
            .front = Option1[FrontFirst],
            .back = Option1[BackFirst],
            .random = Option1[RandomFirst],
            .flipper = Check1,
            .seconds = Slider1,
            .secondsShown = Label3,
            .secondsUnit = Label2};
}
