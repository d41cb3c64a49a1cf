#include "forms/frmTest/frmTest.h"

#include "app/CommandGuard.h"
#include "app/Help.h"
#include "app/WindowPlacement.h"
#include "forms/CommandBar.h"
#include "forms/Controls.h"
#include "forms/HelpKey.h"
#include "forms/frmTest/AnswerColumn.h"
#include "forms/frmTest/QuestionSheet.h"
#include "platform/ClickSound.h"
#include "platform/CommonDialogs.h"
#include "platform/PaperSheet.h"
#include "platform/RichTextBox.h"
#include "platform/SelectAnswer.h"
#include "platform/Twips.h"
#include "study/QuestionSearch.h"
#include "study/TestScore.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QRegularExpression>
#include <QTime>
#include <QTimer>

#include <cstdlib>
#include <vector>

namespace {

enum Command { FindNextOpen, Help, Previous, Exit, Next };

constexpr std::array<ButtonFace, 5> faces{{
    {"next-unanswered", "Find the next Marked or Unanswered Question"},
    {"help", "Help..."},
    {"previous-question", "Previous Question"},
    {"exit", "Exit (Esc)"},
    {"next-question", "Next Question"},
}};

enum Caption { Clock, Number, FirstChoice, LastChoice = FirstChoice + choiceCount - 1, Type };

constexpr PageRuling page{.firstLine = 1180, .marginLine = true};
constexpr double readablePoints = 14;
constexpr int minWidth = 9600;  // twips: the selectors beside a choice of some words
constexpr int minHeight = 7200; // twips: a line of the question and of each choice

const QString section = QStringLiteral("Test");

/// The time of day with its seconds, as the desktop writes it.
QString timeOfDay()
{
    const QLocale locale = QLocale::system();
    QString format = locale.timeFormat(QLocale::LongFormat);
    static const QRegularExpression zone(QStringLiteral("[(\\[, ]*\\bt\\b[)\\] ]*"));
    return locale.toString(QTime::currentTime(), format.remove(zone));
}

/// Whether the focus comes because another window went away, not because the learner went to a question.
bool isComingBack(Qt::FocusReason reason)
{
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
}

} // namespace

frmTest::frmTest(Module1 &module)
    : NotebookPage(page)
    , m_module(module)
    , m_session(subjectFile(module.subject), module.study, module.newGenerator())
    , m_clock(module.study.timeSetting)
    , Image1(makeControlArray<ImageButton, 5>(this, QLatin1String("Image1")))
    , Label1(makeControlArray<QLabel, 6>(this, QLatin1String("Label1")))
    , RichTextBox1(makeControlArray<RichTextBox, 4>(this, QLatin1String("RichTextBox1")))
    , m_sheet(new QuestionSheet(RichTextBox1, {Label1[FirstChoice], Label1[FirstChoice + 1], Label1[LastChoice]}, this))
    , m_column(new AnswerColumn(m_session.questionCount(), this))
    , Timer1(new QTimer(this))
{
    setObjectName(QStringLiteral("frmTest"));
    setAttribute(Qt::WA_DeleteOnClose);
    applyBackground(*this, m_module.settings);
    setWindowTitle(subjectCaption(m_module.subject));

    Label1[Clock]->setFont(notebookFont(18));
    Label1[Number]->setFont(notebookFont(18));
    Label1[Number]->setMinimumWidth(Label1[Number]->fontMetrics().horizontalAdvance(QStringLiteral("50) ")));
    Label1[Type]->setFont(notebookFont(8));
    for (std::size_t choice = 0; choice < choiceCount; ++choice) {
        QLabel &caption = *Label1.at(FirstChoice + choice);
        caption.setFont(notebookFont(14));
        caption.setText(QStringLiteral("(%1)").arg(QChar(u'a' + static_cast<int>(choice))));
        RichTextBox1.at(choice + 1)->setAccessibleName(caption.text());
    }
    RichTextBox1.front()->setAccessibleName(QStringLiteral("Question"));
    for (RichTextBox *box : RichTextBox1) {
        box->setLocked(true);
        box->setLeastTextSize(readablePoints);
        box->setFocusPolicy(Qt::NoFocus);
    }
    setFaces(Image1, faces);
    for (ImageButton *button : Image1) {
        button->setFocusPolicy(Qt::NoFocus); // the keys stay with the selectors
    }
    for (int question = 0; question < m_session.questionCount(); ++question) {
        m_column->selector(question).setCorrectAnswer(m_session.correctAnswer(question));
        connectSelector(question);
    }
    layOut();
    connectCommands();

    restorePlacement(*this, m_module.settings, section);
    if (m_clock.isLimited()) {
        Label1[Clock]->setText(QString::fromStdString(m_clock.firstDisplay()));
    } else {
        showTimeOfDay();
    }
    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer1->setInterval(1000);
    Timer1->setTimerType(Qt::PreciseTimer);
    Timer1->start();
    ShowQuestion();
    m_column->selector(0).setFocus();
}

void frmTest::layOut()
{
    setMinimumSize(toPixels(minWidth), toPixels(minHeight));

    auto *commands = new QHBoxLayout;
    commands->setSpacing(toPixels(60));
    commands->addWidget(Image1[FindNextOpen]);
    commands->addWidget(Image1[Previous]);
    commands->addWidget(Image1[Next]);
    commands->addWidget(Image1[Help]);
    commands->addStretch();
    commands->addWidget(Label1[Clock]);
    commands->addStretch();
    commands->addWidget(Image1[Exit]);

    auto *captions = new QHBoxLayout;
    captions->setSpacing(toPixels(120));
    captions->addWidget(Label1[Number]);
    captions->addWidget(Label1[Type], 0, Qt::AlignVCenter);
    captions->addStretch();

    auto *answers = new PaperSheet(this);
    answers->setShape(PaperSheet::Shape::IndexCard);
    auto *onAnswers = new QHBoxLayout(answers);
    onAnswers->setContentsMargins({});
    onAnswers->addWidget(m_column);

    auto *columns = new QHBoxLayout;
    columns->setSpacing(toPixels(120));
    columns->addWidget(m_sheet, 1);
    columns->addWidget(answers);

    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(toPixels(PageRuling::marginAt + 180), 0, toPixels(240), toPixels(240));
    rows->setSpacing(toPixels(180));
    rows->addWidget(makeCommandBar(this, {commands, captions}));
    rows->addLayout(columns, 1);
}

void frmTest::connectCommands()
{
    const auto onClick = [this](Command command, auto method) {
        connect(Image1.at(command), &ImageButton::clicked, this, guarded(this, [this, method] {
                    playClick();
                    (this->*method)();
                }));
    };
    onClick(FindNextOpen, &frmTest::findNextOpen);
    onClick(Help, &frmTest::help);
    onClick(Previous, &frmTest::goToPrevious);
    onClick(Next, &frmTest::goToNext);
    connect(Image1[Exit], &ImageButton::clicked, this, [this] {
        playClick();
        close();
    });
    connect(Timer1, &QTimer::timeout, this, guarded(this, &frmTest::tick));
    offerHelp(*this, HelpContext::Test);
}

void frmTest::connectSelector(int question)
{
    const SelectAnswer *selector = &m_column->selector(question);
    connect(selector, &SelectAnswer::focusGained, this, [this, question](Qt::FocusReason reason) {
        if (!isComingBack(reason) || m_session.current() != question) {
            runGuarded(this, [this, question] {
                playClick();
                reachQuestion(question);
            });
        }
    });
    connect(selector, &SelectAnswer::focusLost, this, &frmTest::takeFocusBack,
            Qt::QueuedConnection); // when the focus is where it goes
    connect(selector, &SelectAnswer::keyDown, this, [this, question](int key, Qt::KeyboardModifiers modifiers) {
        if (isPlain(modifiers)) {
            actOnKey(question, key);
        }
    });
}

// Questions.

void frmTest::goToQuestion(int question)
{
    const int before = m_timesShown;
    m_column->selector(question).setFocus(); // which shows the question, if the focus moves in an active window
    if (m_timesShown == before) {
        reachQuestion(question);
    }
}

void frmTest::reachQuestion(int question)
{
    m_session.goTo(question);
    m_column->reveal(question);
    ShowQuestion();
}

void frmTest::takeFocusBack()
{
    const QWidget *focused = QApplication::focusWidget();
    const bool mayKeepIt = focused == nullptr || focused->window() != this || m_column->isAncestorOf(focused);
    if (!mayKeepIt) {
        m_column->selector(m_session.current()).setFocus();
    }
}

void frmTest::actOnKey(int question, int key)
{
    SelectAnswer &selector = m_column->selector(question);
    switch (key) {
    case Qt::Key_T:
        playClick();
        selector.setSelectedAnswer(std::abs(selector.selectedAnswer() - 1));
        break;
    case Qt::Key_F:
        playClick();
        selector.setSelectedAnswer(std::abs(selector.selectedAnswer() - 2));
        break;
    case Qt::Key_Q:
    case Qt::Key_A:
    case Qt::Key_B:
    case Qt::Key_C:
    case Qt::Key_1:
    case Qt::Key_2:
    case Qt::Key_3: playClick(); break;
    default: break;
    }
}

void frmTest::ShowQuestion()
{
    ++m_timesShown;
    for (RichTextBox *box : RichTextBox1) {
        box->clear(); // a question that cannot be read shows nothing, not the one before
    }
    Label1[Number]->setText(QStringLiteral("%1)").arg(m_session.current() + 1));
    const ShownQuestion shown = m_session.shown(isGraded());
    const bool isStatement = shown.type == QuestionType::TrueOrFalse;
    Label1[Type]->setText(isStatement ? QStringLiteral("True or False (A=True, B=False)")
                                      : QStringLiteral("Multiple Choice"));
    for (std::size_t choice = 0; choice < choiceCount; ++choice) {
        m_sheet->setChoiceVisible(choice, shown.isShown.at(choice));
    }
    m_sheet->makeRoom();
    RichTextBox1.front()->setRtf(shown.text);
    for (std::size_t choice = 0; choice < choiceCount; ++choice) {
        RichTextBox1.at(choice + 1)->setRtf(shown.choices.at(choice));
    }
    m_sheet->arrange();
    tellQuestion();
}

/// What is seen of the question, for those who do not see it: at its selector, where the focus is.
void frmTest::tellQuestion()
{
    QStringList seen{Label1[Type]->text(), RichTextBox1.front()->plainText().trimmed()};
    for (std::size_t choice = 0; choice < choiceCount; ++choice) {
        if (!RichTextBox1.at(choice + 1)->isHidden()) {
            seen << Label1.at(FirstChoice + choice)->text() + QLatin1Char(' ') +
                        RichTextBox1.at(choice + 1)->plainText().trimmed();
        }
    }
    SelectAnswer &selector = m_column->selector(m_session.current());
    const QString question = seen.join(QLatin1Char('\n'));
    if (question != selector.accessibleDescription()) {
        selector.setAccessibleDescription(question);
    }
}

// The commands.

void frmTest::findNextOpen()
{
    std::vector<QuestionState> questions;
    for (const SelectAnswer *selector : m_column->selectors()) {
        questions.push_back({selector->selectedAnswer(), selector->isMarkedForReview()});
    }
    if (const auto open = nextOpenQuestion(questions, m_session.current())) {
        goToQuestion(*open);
    } else {
        showInformation(this, QStringLiteral("There were no other marked or unanswered questions."),
                        QStringLiteral("Marked/Unanswered Questions"));
    }
}

void frmTest::help()
{
    showHelp(this, HelpContext::Test);
}

void frmTest::goToPrevious()
{
    if (m_session.current() == 0) {
        showInformation(this, QStringLiteral("This is the first question."), QStringLiteral("First Question"));
    } else {
        goToQuestion(m_session.current() - 1);
    }
}

void frmTest::goToNext()
{
    if (m_session.current() == m_session.questionCount() - 1) {
        showInformation(this, QStringLiteral("This is the last question."), QStringLiteral("Last Question"));
    } else {
        goToQuestion(m_session.current() + 1);
    }
}

bool frmTest::pressButtonOf(int key)
{
    switch (key) {
    case Qt::Key_Escape: Image1[Exit]->click(); return true;
    case Qt::Key_Right:
    case Qt::Key_Down: Image1[Next]->click(); return true;
    case Qt::Key_Left:
    case Qt::Key_Up: Image1[Previous]->click(); return true;
    case Qt::Key_J: Image1[FindNextOpen]->click(); return true;
    default: return false;
    }
}

void frmTest::keyPressEvent(QKeyEvent *event)
{
    const bool plain = isPlain(event->modifiers());
    if (plain && pressButtonOf(event->key())) {
        return;
    }
    if (plain && (event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown)) {
        for (RichTextBox *box : RichTextBox1) { // all that is long at once: none of them has the keys
            box->scrollPage(event->key());
        }
        return;
    }
    NotebookPage::keyPressEvent(event);
}

// The clock, and the end.

void frmTest::showTimeOfDay()
{
    Label1[Clock]->setText(timeOfDay());
}

void frmTest::tick()
{
    if (!m_clock.isLimited()) {
        showTimeOfDay();
        return;
    }
    const bool isOver = m_clock.tick();
    Label1[Clock]->setText(QString::fromStdString(m_clock.display()));
    if (isOver) {
        Timer1->stop();
        showInformation(this, QStringLiteral("Time's Up!"), QStringLiteral("Time's Up"));
        GradeTest();
    }
}

bool frmTest::isGraded() const
{
    return m_column->selector(0).isGraded();
}

void frmTest::GradeTest()
{
    if (isGraded()) {
        return; // the time was up while the question was asked
    }
    std::vector<int> wrong;
    for (int question = 0; question < m_session.questionCount(); ++question) {
        if (m_column->selector(question).selectedAnswer() != m_session.correctAnswer(question)) {
            wrong.push_back(question);
        }
    }
    m_session.markCards(wrong); // first: if it fails, the test goes on
    Timer1->stop();
    for (SelectAnswer *selector : m_column->selectors()) {
        selector->setGraded(true);
    }
    const TestScore score{m_session.questionCount() - static_cast<int>(wrong.size()), m_session.questionCount()};
    showInformation(this, QString::fromStdString(score.message()), QStringLiteral("Test Results"));
    goToQuestion(0); // as it is reviewed, also if it is current
}

bool frmTest::mayLeave()
{
    if (isGraded()) {
        return true;
    }
    switch (
        offerYesNoCancel(this, QStringLiteral("Would you like to grade your test?"), QStringLiteral("Grade Test"))) {
    case Answer::Yes: GradeTest(); return false;
    case Answer::No: return true;
    case Answer::Cancel: break;
    }
    return false;
}

void frmTest::closeEvent(QCloseEvent *event)
{
    bool leaves = false;
    runGuarded(this, [&] { leaves = mayLeave(); });
    if (!leaves) {
        event->ignore();
        return;
    }
    Timer1->stop();
    m_session.close();
    runGuarded(this, [this] { savePlacement(*this, m_module.settings, section); });
    event->accept();
    Q_EMIT closed();
}
