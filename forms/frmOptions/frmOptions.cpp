#include "forms/frmOptions/frmOptions.h"

#include "app/CommandGuard.h"
#include "forms/Controls.h"
#include "forms/HelpKey.h"
#include "platform/CommonDialogs.h"
#include "platform/FocusRing.h"
#include "store/SubjectReading.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTabBar>

namespace {

enum Tab { StyleTab, OptionsTab };
enum Page { StylePage = 0, FlashCardPage = 2, TestPage = 3 };
enum Option { FlashCards, Test, RandomFirst, BackFirst, FrontFirst };
enum TestSlider { Questions, MultipleChoice, Minutes };
enum Button { Cancel, Previous, Forward };

constexpr int topicRole = Qt::UserRole;

} // namespace

frmOptions::frmOptions(Module1 &module, QWidget *parent)
    : QDialog(parent)
    , tbsOptions(makeControl<QTabBar>(this, QLatin1String("tbsOptions")))
    , picOptions{}
    , Option1(makeControlArray<QRadioButton, 5>(this, QLatin1String("Option1")))
    , List1(makeControl<QListWidget>(this, QLatin1String("List1")))
    , Check1(makeControl<QCheckBox>(this, QLatin1String("Check1")))
    , Label1(makeControl<QLabel>(this, QLatin1String("Label1")))
    , Check2(makeControl<QCheckBox>(this, QLatin1String("Check2")))
    , Slider1(makeControl<QSlider>(this, QLatin1String("Slider1")))
    , Label3(makeControl<QLabel>(this, QLatin1String("Label3")))
    , Label2(makeControl<QLabel>(this, QLatin1String("Label2")))
    , Label4(makeControl<QLabel>(this, QLatin1String("Label4")))
    , Slider2(makeControlArray<QSlider, 3>(this, QLatin1String("Slider2")))
    , Label6(makeControl<QLabel>(this, QLatin1String("Label6")))
    , Label5(makeControl<QLabel>(this, QLatin1String("Label5")))
    , Label7(makeControl<QLabel>(this, QLatin1String("Label7")))
    , Label11(makeControl<QLabel>(this, QLatin1String("Label11")))
    , Label15(makeControl<QLabel>(this, QLatin1String("Label15")))
    , Label13(makeControl<QLabel>(this, QLatin1String("Label13")))
    , Check3(makeControl<QCheckBox>(this, QLatin1String("Check3")))
    , Label9(makeControl<QLabel>(this, QLatin1String("Label9")))
    , Label8(makeControl<QLabel>(this, QLatin1String("Label8")))
    , cmdOK(makeControlArray<QPushButton, 3>(this, QLatin1String("cmdOK")))
    , m_module(module)
{
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(QStringLiteral("Study Options..."));
    setAttribute(Qt::WA_DeleteOnClose);
    new FocusRing(*this);
    beginStudySetup(m_module.study);

    tbsOptions->addTab(QStringLiteral("Style"));
    tbsOptions->addTab(QStringLiteral("Options"));
    tbsOptions->setTabToolTip(StyleTab, QStringLiteral("Select your study style and the topics to be studied"));
    tbsOptions->setTabToolTip(OptionsTab, QStringLiteral("Select flash card or test options"));
    cmdOK[Cancel]->setText(QStringLiteral("Cancel"));
    cmdOK[Previous]->setText(QStringLiteral("&Previous"));
    cmdOK[Forward]->setDefault(true);

    picOptions[StylePage] = makeStylePage();
    picOptions[FlashCardPage] = makeFlashCardPage();
    picOptions[TestPage] = makeTestPage();
    layOut();

    loadTopics();
    showSliderValues();
    showPage(StyleTab);
    Option1[FlashCards]->setFocus();

    connectControls();
}

QWidget *frmOptions::makeStylePage()
{
    Option1[FlashCards]->setText(QStringLiteral("&Flash Cards"));
    Option1[FlashCards]->setChecked(true);
    Option1[Test]->setText(QStringLiteral("&Test"));
    List1->setSelectionMode(QAbstractItemView::MultiSelection);
    List1->setToolTip(QStringLiteral("Select the topics you wish to study"));
    List1->setAccessibleName(QStringLiteral("Topics"));
    Check1->setText(QStringLiteral("&Marked Flash Cards"));

    auto *style = new QGroupBox(QStringLiteral("Study Style:"));
    auto *styles = new QHBoxLayout(style);
    styles->addWidget(Option1[FlashCards]);
    styles->addWidget(Option1[Test]);
    styles->addStretch();

    auto *topics = new QGroupBox(QStringLiteral("Topics:"));
    auto *topicRows = new QVBoxLayout(topics);
    topicRows->addWidget(List1);
    topicRows->addWidget(Check1);

    auto *page = makeControl<QWidget>(this, QLatin1String("picOptions(0)"));
    auto *rows = new QVBoxLayout(page);
    rows->addWidget(style);
    rows->addWidget(topics, 1);
    return page;
}

QWidget *frmOptions::makeFlashCardPage()
{
    auto *page = makeControl<QWidget>(this, QLatin1String("picOptions(2)"));
    auto *rows = new QVBoxLayout(page);
    addFlashCardGroups(*rows, flashCardControls());
    rows->addStretch();
    return page;
}

QWidget *frmOptions::makeTestPage()
{
    Label4->setText(QStringLiteral("Select the number of questions (5-50):"));
    setRange(Slider2[Questions], questionCounts);
    Slider2[Questions]->setAccessibleName(QStringLiteral("Number of questions"));
    reserveFor(Label6, QStringLiteral("50"));
    Label5->setText(QStringLiteral("Select the type of questions (Multiple Choice and True/False):"));
    Label5->setWordWrap(true);
    setRange(Slider2[MultipleChoice], choicePercents);
    Slider2[MultipleChoice]->setAccessibleName(QStringLiteral("Multiple choice questions in percent"));
    Label7->setText(QStringLiteral("Multiple Choice:"));
    Label15->setText(QStringLiteral("True/False:"));
    reserveFor(Label11, QStringLiteral("100%"));
    reserveFor(Label13, QStringLiteral("100%"));
    Check3->setText(QStringLiteral("Enable the Test Timer (2-50):"));
    setRange(Slider2[Minutes], timerMinutes);
    Slider2[Minutes]->setEnabled(false);
    Slider2[Minutes]->setAccessibleName(QStringLiteral("Minutes until the test ends"));
    Label8->setText(QStringLiteral("(Minutes)"));
    reserveFor(Label9, QStringLiteral("50"));

    auto *number = new QGroupBox(QStringLiteral("Number of Questions:"));
    auto *numberGrid = new QGridLayout(number);
    numberGrid->addWidget(Label4, 0, 0, 1, 2);
    numberGrid->addWidget(Slider2[Questions], 1, 0);
    numberGrid->addWidget(Label6, 1, 1);

    auto *types = new QGroupBox(QStringLiteral("Type of Questions:"));
    auto *typesGrid = new QGridLayout(types);
    typesGrid->addWidget(Label5, 0, 0, 1, 5);
    typesGrid->addWidget(Slider2[MultipleChoice], 1, 0, 1, 5);
    typesGrid->addWidget(Label7, 2, 0);
    typesGrid->addWidget(Label11, 2, 1);
    typesGrid->setColumnStretch(2, 1);
    typesGrid->addWidget(Label15, 2, 3);
    typesGrid->addWidget(Label13, 2, 4);

    auto *timer = new QGroupBox(QStringLiteral("Test Timer:"));
    auto *timerGrid = new QGridLayout(timer);
    timerGrid->addWidget(Check3, 0, 0, 1, 3);
    timerGrid->addWidget(Slider2[Minutes], 1, 0);
    timerGrid->addWidget(Label9, 1, 1);
    timerGrid->addWidget(Label8, 1, 2);

    auto *page = makeControl<QWidget>(this, QLatin1String("picOptions(3)"));
    auto *rows = new QVBoxLayout(page);
    rows->addWidget(number);
    rows->addWidget(types);
    rows->addWidget(timer);
    rows->addStretch();
    return page;
}

void frmOptions::layOut()
{
    // One cell for all pages: the dialog is as large as the largest, and keeps its size.
    auto *pages = new QGridLayout;
    for (const Page page : {StylePage, FlashCardPage, TestPage}) {
        QSizePolicy policy = picOptions.at(page)->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        picOptions.at(page)->setSizePolicy(policy);
        pages->addWidget(picOptions.at(page), 0, 0);
    }
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK[Previous]);
    buttons->addWidget(cmdOK[Forward]);
    buttons->addSpacing(12);
    buttons->addWidget(cmdOK[Cancel]);

    auto *rows = new QVBoxLayout(this);
    rows->addWidget(tbsOptions);
    rows->addLayout(pages, 1);
    rows->addLayout(buttons);
    const QSize whole = sizeHint();
    setMinimumSize(whole.width(), rows->totalHeightForWidth(whole.width())); // else a low screen clips wrapped labels

    chainTabOrder({tbsOptions, Option1[FlashCards], Option1[Test], List1, Check1, Option1[FrontFirst],
                   Option1[BackFirst], Option1[RandomFirst], Check2, Slider1, Slider2[Questions],
                   Slider2[MultipleChoice], Check3, Slider2[Minutes], cmdOK[Previous], cmdOK[Forward], cmdOK[Cancel]});
}

void frmOptions::connectControls()
{
    connect(tbsOptions, &QTabBar::currentChanged, this, &frmOptions::showPage);
    for (QRadioButton *option : Option1) {
        connect(option, &QRadioButton::toggled, this, [this] { m_module.study.style = choices().style; });
    }
    connect(Check3, &QCheckBox::toggled, Slider2[Minutes], &QSlider::setEnabled);
    for (QSlider *slider : Slider2) {
        connect(slider, &QSlider::valueChanged, this, &frmOptions::showSliderValues);
    }
    connect(cmdOK[Cancel], &QPushButton::clicked, this, &QDialog::reject);
    connect(cmdOK[Previous], &QPushButton::clicked, this, [this] { tbsOptions->setCurrentIndex(StyleTab); });
    connect(cmdOK[Forward], &QPushButton::clicked, this, guarded(this, &frmOptions::goForward));
    offerHelp(*this, HelpContext::StudyWizard);
}

void frmOptions::loadTopics()
{
    List1->clear();
    for (const TopicEntry &topic : listTopics(subjectFile(m_module.subject))) {
        auto *item = new QListWidgetItem(QString::fromStdString(topic.name), List1);
        item->setData(topicRole, topic.index);
    }
}

void frmOptions::showPage(int tab)
{
    const bool options = tab == OptionsTab;
    const bool flashCards = Option1[FlashCards]->isChecked();
    picOptions[StylePage]->setVisible(!options);
    picOptions[FlashCardPage]->setVisible(options && flashCards);
    picOptions[TestPage]->setVisible(options && !flashCards);
    cmdOK[Previous]->setEnabled(options);
    cmdOK[Forward]->setText(options ? QStringLiteral("&Study") : QStringLiteral("&Next"));
}

void frmOptions::goForward()
{
    if (tbsOptions->currentIndex() == StyleTab) {
        tbsOptions->setCurrentIndex(OptionsTab);
    } else {
        confirm();
    }
}

void frmOptions::confirm()
{
    if (const auto refusal = confirmStudySetup(subjectFile(m_module.subject), choices(), m_module.study)) {
        refuse(*refusal);
    } else {
        accept();
    }
}

void frmOptions::refuse(SelectionRefusal refusal)
{
    QWidget *toMend = List1;
    switch (refusal) {
    case SelectionRefusal::NothingChosen:
        showInformation(this, QStringLiteral("Select the Topc(s) you wish to study."), QStringLiteral("No Topic(s)"));
        break;
    case SelectionRefusal::NoCards:
        showInformation(this, QStringLiteral("There are no flash cards for the topic(s) you've selected."),
                        QStringLiteral("No Flash Cards"));
        break;
    case SelectionRefusal::UnderFiveCards:
        showInformation(this, QStringLiteral("There must be at least 5 flash cards to create test questions."),
                        QStringLiteral("Under 5 flash Cards"));
        toMend = Option1[FlashCards];
        break;
    }
    tbsOptions->setCurrentIndex(StyleTab);
    toMend->setFocus();
}

void frmOptions::showSliderValues()
{
    const int choicePercent = Slider2[MultipleChoice]->value();
    Label6->setText(QString::number(Slider2[Questions]->value()));
    Label11->setText(QStringLiteral("%1%").arg(choicePercent));
    Label13->setText(QStringLiteral("%1%").arg(choicePercents.most - choicePercent));
    Label9->setText(QString::number(Slider2[Minutes]->value()));
}

FlashCardControls frmOptions::flashCardControls() const
{
    return {.question = Label1,
            .front = Option1[FrontFirst],
            .back = Option1[BackFirst],
            .random = Option1[RandomFirst],
            .flipper = Check2,
            .seconds = Slider1,
            .secondsShown = Label3,
            .secondsUnit = Label2};
}

WizardChoices frmOptions::choices() const
{
    WizardChoices chosen;
    chosen.style = Option1[FlashCards]->isChecked() ? StudyStyle::FlashCards : StudyStyle::Test;
    for (int row = 0; row < List1->count(); ++row) {
        if (List1->item(row)->isSelected()) {
            chosen.topics.push_back(List1->item(row)->data(topicRole).toInt());
        }
    }
    chosen.withMarked = Check1->isChecked();
    chosen.viewOrder = viewOrderOf(flashCardControls(), ViewOrder::random);
    chosen.flipperOn = Check2->isChecked();
    chosen.flipperSeconds = Slider1->value();
    chosen.questionCount = Slider2[Questions]->value();
    chosen.multipleChoicePercent = Slider2[MultipleChoice]->value();
    chosen.timerOn = Check3->isChecked();
    chosen.timerMinutes = Slider2[Minutes]->value();
    return chosen;
}
