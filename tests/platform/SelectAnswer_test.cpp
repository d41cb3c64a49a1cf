#include "platform/ContrastRatio.h"
#include "platform/PaperPalette.h"
#include "platform/SelectAnswer.h"
#include "tests/support/KeyWindow.h"

#include <QAccessible>
#include <QApplication>
#include <QHelpEvent>
#include <QImage>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace {

using Part = SelectAnswerFace::Part;

class SelectAnswerTest : public testing::Test
{
protected:
    SelectAnswerTest()
    {
        auto *layout = new QVBoxLayout(&m_window);
        for (SelectAnswer *selector : {m_selector, m_other}) {
            layout->addWidget(selector);
        }
        layout->addWidget(m_button);
        m_selector->setQuestionNumber(QStringLiteral("4"));
        m_other->setQuestionNumber(QStringLiteral("5"));
        usePaper(Qt::white);
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
        m_other->setFocus();
    }

    void usePaper(const QColor &paper) { m_window.setPalette(paperPalette(paper)); }

    [[nodiscard]] QRectF area(Part part) const
    {
        return SelectAnswerFace::area(part, m_selector->size(), m_selector->font());
    }
    [[nodiscard]] QPoint middle(Part part) const { return area(part).center().toPoint(); }
    void click(Part part) const { QTest::mouseClick(m_selector, Qt::LeftButton, {}, middle(part)); }
    [[nodiscard]] std::string name() const { return m_selector->accessibleName().toStdString(); }

    /// Of the selector on its paper.
    [[nodiscard]] QImage picture(double scale = 1) const
    {
        QImage image((QSizeF(m_selector->size()) * scale).toSize(), QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        image.fill(m_selector->palette().color(QPalette::Window));
        m_selector->render(&image, {}, {}, QWidget::DrawChildren);
        return image;
    }

    KeyWindow m_window;
    SelectAnswer *m_selector = new SelectAnswer;
    SelectAnswer *m_other = new SelectAnswer;
    QPushButton *m_button = new QPushButton;
};

void sendRepeatedKey(QWidget *to, int key, const QString &text)
{
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text, true);
    QApplication::sendEvent(to, &event);
}

QVector<int> withoutModifiers(QVector<int> keys)
{
    keys.removeIf([](int key) { return key >= Qt::Key_Shift && key <= Qt::Key_Alt; });
    return keys;
}

/// What is in the middle of \p area, where a circle's letter or sign stands.
QImage heart(const QImage &image, const QRectF &area)
{
    constexpr double across = 15;
    const double scale = image.devicePixelRatio();
    const QPointF corner = area.center() - QPointF(across, across) / 2;
    return image.copy(QRectF(corner * scale, QSizeF(across, across) * scale).toRect());
}

double strongestContrast(const QImage &image, const QColor &ground)
{
    double strongest = 1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            strongest = qMax(strongest, contrastRatio(image.pixelColor(x, y), ground));
        }
    }
    return strongest;
}

/// The clearest grey difference of two pictures of one size, 0 to 255, in any block of 4 by 4 pixels.
int greyDifference(const QImage &one, const QImage &other)
{
    int most = 0;
    for (int y = 0; y + 4 <= one.height(); y += 2) {
        for (int x = 0; x + 4 <= one.width(); x += 2) {
            int sum = 0;
            for (int k = 0; k < 16; ++k) {
                const QPoint place(x + k % 4, y + k / 4);
                sum += qGray(one.pixel(place)) - qGray(other.pixel(place));
            }
            most = qMax(most, qAbs(sum) / 16);
        }
    }
    return most;
}

bool isBlank(const QImage &image, const QRect &area)
{
    const QImage part = image.copy(area);
    QImage blank(part.size(), part.format());
    blank.fill(image.pixelColor(0, 0));
    return part == blank;
}

const auto papers =
    std::vector<QColor>{Qt::white, QColor(0x0c, 0x0c, 0x10), QColor(0xff, 0xf6, 0xa0), QColor(0x10, 0x18, 0x40)};

// Properties

TEST_F(SelectAnswerTest, AFreshOneIsUnansweredUnmarkedAndUngraded)
{
    const SelectAnswer fresh;
    EXPECT_EQ(fresh.selectedAnswer(), 0);
    EXPECT_EQ(fresh.correctAnswer(), 1);
    EXPECT_FALSE(fresh.isMarkedForReview());
    EXPECT_FALSE(fresh.isGraded());
    EXPECT_EQ(fresh.questionNumber(), QString());
}

TEST_F(SelectAnswerTest, ItsPropertiesAreWrittenAndReadByName)
{
    const std::vector<std::pair<const char *, QVariant>> values{{"CorrectAnswer", 3},
                                                                {"MarkedForReview", true},
                                                                {"SelectedAnswer", 2},
                                                                {"QuestionNumber", QStringLiteral("17")},
                                                                {"Graded", true}};
    for (const auto &[property, value] : values) {
        EXPECT_NE(m_selector->property(property), value) << property;
        EXPECT_TRUE(m_selector->setProperty(property, value)) << property;
        EXPECT_EQ(m_selector->property(property), value) << property;
    }
    EXPECT_EQ(m_selector->correctAnswer(), 3);
    EXPECT_EQ(m_selector->selectedAnswer(), 2);
    EXPECT_TRUE(m_selector->isMarkedForReview());
    EXPECT_TRUE(m_selector->isGraded());
    EXPECT_EQ(m_selector->questionNumber(), QStringLiteral("17"));
}

TEST_F(SelectAnswerTest, AnswersOutOfRangeAreIgnored)
{
    m_selector->setCorrectAnswer(2);
    m_selector->setSelectedAnswer(3);
    for (const int answer : {-1, 4, 32767, -32768}) {
        m_selector->setCorrectAnswer(answer);
        m_selector->setSelectedAnswer(answer);
    }
    m_selector->setCorrectAnswer(0);
    EXPECT_EQ(m_selector->correctAnswer(), 2);
    EXPECT_EQ(m_selector->selectedAnswer(), 3);
}

TEST_F(SelectAnswerTest, TheWindowCanTakeTheAnswerAway)
{
    m_selector->setSelectedAnswer(3);
    m_selector->setSelectedAnswer(0);
    EXPECT_EQ(m_selector->selectedAnswer(), 0);
}

// Keys

TEST_F(SelectAnswerTest, LettersAndDigitsChooseAlsoTheKeypads)
{
    struct Row
    {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        int answer;
    };
    const std::vector<Row> rows{
        {Qt::Key_B, Qt::NoModifier, 2},     {Qt::Key_A, Qt::NoModifier, 1},     {Qt::Key_C, Qt::NoModifier, 3},
        {Qt::Key_2, Qt::NoModifier, 2},     {Qt::Key_1, Qt::NoModifier, 1},     {Qt::Key_3, Qt::NoModifier, 3},
        {Qt::Key_2, Qt::KeypadModifier, 2}, {Qt::Key_1, Qt::KeypadModifier, 1}, {Qt::Key_3, Qt::KeypadModifier, 3},
        {Qt::Key_B, Qt::ShiftModifier, 2},  {Qt::Key_1, Qt::ShiftModifier, 1},
    };
    m_selector->setFocus();
    for (const Row &row : rows) {
        QTest::keyClick(m_selector, row.key, row.modifiers);
        EXPECT_EQ(m_selector->selectedAnswer(), row.answer) << row.key;
    }
    EXPECT_TRUE(withoutModifiers(m_window.keys).isEmpty()) << "its own keys do not reach the window";
    EXPECT_EQ(m_other->selectedAnswer(), 0);
}

TEST_F(SelectAnswerTest, TheKeyOfTheChosenAnswerKeepsIt)
{
    m_selector->setSelectedAnswer(2);
    QTest::keyClick(m_selector, Qt::Key_B);
    EXPECT_EQ(m_selector->selectedAnswer(), 2);
}

TEST_F(SelectAnswerTest, QTogglesTheFlagAndAHeldQOnlyOnce)
{
    QTest::keyClick(m_selector, Qt::Key_Q);
    EXPECT_TRUE(m_selector->isMarkedForReview());
    const QSignalSpy told(m_selector, &SelectAnswer::keyDown);
    sendRepeatedKey(m_selector, Qt::Key_Q, QStringLiteral("q"));
    EXPECT_TRUE(m_selector->isMarkedForReview());
    EXPECT_EQ(told.count(), 0);
    EXPECT_TRUE(m_window.keys.isEmpty());
    QTest::keyClick(m_selector, Qt::Key_Q, Qt::ShiftModifier);
    EXPECT_FALSE(m_selector->isMarkedForReview());
    EXPECT_EQ(m_selector->selectedAnswer(), 0);
}

TEST_F(SelectAnswerTest, KeysWithControlAltOrMetaAreTheWindows)
{
    for (const Qt::KeyboardModifier modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier}) {
        QVector<int> told;
        const QObject listener;
        QObject::connect(m_selector, &SelectAnswer::keyDown, &listener, [&told](int key) { told.append(key); });
        m_window.keys.clear();
        QTest::keyClick(m_selector, Qt::Key_B, modifier);
        QTest::keyClick(m_selector, Qt::Key_3, modifier);
        QTest::keyClick(m_selector, Qt::Key_Q, modifier | Qt::ShiftModifier);
        EXPECT_EQ(m_selector->selectedAnswer(), 0);
        EXPECT_FALSE(m_selector->isMarkedForReview());
        EXPECT_EQ(withoutModifiers(m_window.keys), (QVector<int>{Qt::Key_B, Qt::Key_3, Qt::Key_Q}));
        EXPECT_EQ(withoutModifiers(told), (QVector<int>{Qt::Key_B, Qt::Key_3, Qt::Key_Q}));
    }
}

TEST_F(SelectAnswerTest, EveryOtherKeyIsToldAndReachesTheWindow)
{
    const QVector<int> keys{Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down,   Qt::Key_T,     Qt::Key_F,
                            Qt::Key_J,    Qt::Key_D,     Qt::Key_4,  Qt::Key_Escape, Qt::Key_Space, Qt::Key_0};
    QVector<int> told;
    const auto note = [&](int key) {
        EXPECT_EQ(m_window.keys.size(), told.size()) << "told before the window gets it";
        told.append(key);
    };
    QObject::connect(m_selector, &SelectAnswer::keyDown, m_selector, note);
    for (const int key : keys) {
        QTest::keyClick(m_selector, static_cast<Qt::Key>(key));
    }
    EXPECT_EQ(told, keys);
    EXPECT_EQ(m_window.keys, keys);
    EXPECT_EQ(m_selector->selectedAnswer(), 0);
    EXPECT_FALSE(m_selector->isMarkedForReview());
}

TEST_F(SelectAnswerTest, AKeyIsToldBeforeItChangesAnything)
{
    std::vector<std::pair<int, int>> toldAtAnswer;
    std::vector<bool> toldAtMark;
    QObject::connect(m_selector, &SelectAnswer::keyDown, m_selector, [&](int key) {
        toldAtAnswer.emplace_back(key, m_selector->selectedAnswer());
        toldAtMark.push_back(m_selector->isMarkedForReview());
    });
    for (const Qt::Key key : {Qt::Key_B, Qt::Key_3, Qt::Key_Q, Qt::Key_Q}) {
        QTest::keyClick(m_selector, key);
    }
    EXPECT_EQ(toldAtAnswer,
              (std::vector<std::pair<int, int>>{{Qt::Key_B, 0}, {Qt::Key_3, 2}, {Qt::Key_Q, 3}, {Qt::Key_Q, 3}}));
    EXPECT_EQ(toldAtMark, (std::vector<bool>{false, false, false, true}));
}

TEST_F(SelectAnswerTest, AHeldKeyOfTheWindowsGoesOnToItButIsToldOnce)
{
    const QSignalSpy told(m_selector, &SelectAnswer::keyDown);
    QTest::keyPress(m_selector, Qt::Key_Down);
    sendRepeatedKey(m_selector, Qt::Key_Down, {});
    EXPECT_EQ(told.count(), 1);
    EXPECT_EQ(m_window.keys, (QVector<int>{Qt::Key_Down, Qt::Key_Down}));
}

// Mouse

TEST_F(SelectAnswerTest, APressAnywhereFromTheFirstCircleToTheFlagHitsOneOfThemWithoutGaps)
{
    std::string hits;
    for (int x = 0; x < m_selector->width(); ++x) {
        m_selector->setSelectedAnswer(0);
        m_selector->setMarkedForReview(false);
        const int y = 1 + x % (m_selector->height() - 1); // to Qt Test, (0, 0) is the middle
        QTest::mousePress(m_selector, Qt::LeftButton, {}, {x, y});
        QTest::mouseRelease(m_selector, Qt::LeftButton, {}, {x, y});
        const char hit = m_selector->isMarkedForReview() ? 'F' : "-ABC"[m_selector->selectedAnswer()];
        EXPECT_FALSE(m_selector->isMarkedForReview() && m_selector->selectedAnswer() != 0) << x;
        hits += hit;
    }
    std::string order;
    for (const char part : hits) {
        if (order.empty() || order.back() != part) {
            order += part;
        }
    }
    EXPECT_EQ(order, "-ABCF");
    for (const char part : {'A', 'B', 'C', 'F'}) {
        EXPECT_GE(std::ranges::count(hits, part), 24) << part;
    }
    for (const Part part : SelectAnswerFace::choices) {
        EXPECT_EQ(hits.at(static_cast<std::size_t>(middle(part).x())), "-ABC"[choiceOf(part)]);
    }
}

TEST_F(SelectAnswerTest, ThePressChoosesNotTheRelease)
{
    QTest::mousePress(m_selector, Qt::LeftButton, {}, middle(Part::C));
    EXPECT_EQ(m_selector->selectedAnswer(), 3);
    QTest::mouseRelease(m_selector, Qt::LeftButton, {}, middle(Part::A));
    EXPECT_EQ(m_selector->selectedAnswer(), 3);
}

TEST_F(SelectAnswerTest, AClickOnTheChosenAnswerKeepsIt)
{
    click(Part::B);
    click(Part::B);
    EXPECT_EQ(m_selector->selectedAnswer(), 2);
    click(Part::A);
    EXPECT_EQ(m_selector->selectedAnswer(), 1);
}

TEST_F(SelectAnswerTest, AClickOnTheFlagTogglesIt)
{
    click(Part::Flag);
    EXPECT_TRUE(m_selector->isMarkedForReview());
    click(Part::Flag);
    EXPECT_FALSE(m_selector->isMarkedForReview());
    EXPECT_EQ(m_selector->selectedAnswer(), 0);
}

TEST_F(SelectAnswerTest, AClickOnTheNumberOnlyTakesTheFocus)
{
    click(Part::Number);
    EXPECT_TRUE(m_selector->hasFocus());
    EXPECT_EQ(m_selector->selectedAnswer(), 0);
    EXPECT_FALSE(m_selector->isMarkedForReview());
}

TEST_F(SelectAnswerTest, AClickGivesTheFocusBeforeItChangesAnything)
{
    QStringList events;
    QObject::connect(m_other, &SelectAnswer::focusLost, m_other, [&](Qt::FocusReason reason) {
        events.append(QStringLiteral("5 lost it, reason %1").arg(reason));
    });
    QObject::connect(m_selector, &SelectAnswer::focusGained, m_selector, [&](Qt::FocusReason reason) {
        events.append(
            QStringLiteral("4 has it with answer %1, reason %2").arg(m_selector->selectedAnswer()).arg(reason));
    });
    click(Part::C);
    EXPECT_EQ(events,
              QStringList({QStringLiteral("5 lost it, reason 0"), QStringLiteral("4 has it with answer 0, reason 0")}));
    EXPECT_EQ(m_selector->selectedAnswer(), 3);
}

TEST_F(SelectAnswerTest, OtherMouseButtonsChangeNothing)
{
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        QTest::mouseClick(m_selector, button, {}, middle(Part::B));
        QTest::mouseClick(m_selector, button, {}, middle(Part::Flag));
    }
    EXPECT_EQ(m_selector->selectedAnswer(), 0);
    EXPECT_FALSE(m_selector->isMarkedForReview());
}

TEST_F(SelectAnswerTest, ThePointerIsAHandWhereAPressDoesSomethingAndTheChoiceLightsUp)
{
    const QImage before = picture();
    QTest::mouseMove(m_selector, middle(Part::B));
    EXPECT_EQ(m_selector->cursor().shape(), Qt::PointingHandCursor);
    const QImage lit = picture();
    EXPECT_NE(lit.copy(area(Part::B).toRect()), before.copy(area(Part::B).toRect()));
    EXPECT_EQ(lit.copy(area(Part::A).toRect()), before.copy(area(Part::A).toRect()));

    QTest::mouseMove(m_selector, middle(Part::Flag));
    EXPECT_EQ(m_selector->cursor().shape(), Qt::PointingHandCursor);
    QTest::mouseMove(m_selector, middle(Part::Number));
    EXPECT_NE(m_selector->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_EQ(picture(), before);

    m_selector->setGraded(true);
    const QImage graded = picture();
    QTest::mouseMove(m_selector, middle(Part::B));
    EXPECT_NE(m_selector->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_EQ(picture(), graded);
}

TEST_F(SelectAnswerTest, HintsTellWhatTheFlagDoesAndAfterGradingHowItWent)
{
    const auto hintOn = [this](Part part) {
        const QPoint place = middle(part);
        QHelpEvent event(QEvent::ToolTip, place, m_selector->mapToGlobal(place));
        QApplication::sendEvent(m_selector, &event);
        return QToolTip::isVisible() ? QToolTip::text().toStdString() : "";
    };
    EXPECT_EQ(hintOn(Part::Flag), "Mark for review (Q)");
    click(Part::Flag);
    EXPECT_EQ(hintOn(Part::Flag), "Marked for review (Q)");
    m_selector->setCorrectAnswer(3);
    m_selector->setGraded(true);
    EXPECT_EQ(hintOn(Part::B), "Not answered, wrong, the right answer is C");
    QToolTip::hideText();
}

// Graded

TEST_F(SelectAnswerTest, OnceGradedNothingChangesTheAnswerOrTheFlag)
{
    m_selector->setSelectedAnswer(2);
    m_selector->setMarkedForReview(true);
    m_selector->setGraded(true);

    for (const Qt::Key key : {Qt::Key_A, Qt::Key_C, Qt::Key_1, Qt::Key_3, Qt::Key_Q}) {
        QTest::keyClick(m_selector, key);
    }
    for (const Part part : {Part::A, Part::C, Part::Flag}) {
        click(part);
    }
    m_selector->setSelectedAnswer(0);
    m_selector->setSelectedAnswer(1);
    m_selector->setMarkedForReview(false);
    EXPECT_EQ(m_selector->selectedAnswer(), 2);
    EXPECT_TRUE(m_selector->isMarkedForReview());
}

TEST_F(SelectAnswerTest, OnceGradedTheFocusAndTheKeysGoOn)
{
    m_selector->setGraded(true);
    const QSignalSpy gained(m_selector, &SelectAnswer::focusGained);
    click(Part::B);
    EXPECT_TRUE(m_selector->hasFocus());
    EXPECT_EQ(gained.count(), 1);

    const QSignalSpy told(m_selector, &SelectAnswer::keyDown);
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_Down, Qt::Key_J}) {
        QTest::keyClick(m_selector, key);
    }
    EXPECT_EQ(told.count(), 3);
    EXPECT_EQ(m_window.keys, (QVector<int>{Qt::Key_Down, Qt::Key_J}));
}

TEST_F(SelectAnswerTest, TheRightAnswerAndTheNumberMayComeAfterGrading)
{
    m_selector->setSelectedAnswer(2);
    m_selector->setGraded(true);
    m_selector->setCorrectAnswer(2);
    m_selector->setQuestionNumber(QStringLiteral("9"));
    EXPECT_EQ(name(), "Question 9, answered B, right");
}

// Assistive technology

TEST_F(SelectAnswerTest, ItsNameSaysEverythingThatItShows)
{
    struct Row
    {
        int answer;
        bool isMarked;
        bool isGraded;
        const char *name;
    };
    const std::vector<Row> rows{
        {0, false, false, "Question 4, not answered"},
        {0, true, false, "Question 4, not answered, marked for review"},
        {1, false, false, "Question 4, answered A"},
        {2, true, false, "Question 4, answered B, marked for review"},
        {3, false, true, "Question 4, answered C, right"},
        {2, false, true, "Question 4, answered B, wrong, the right answer is C"},
        {0, false, true, "Question 4, not answered, wrong, the right answer is C"},
        {2, true, true, "Question 4, answered B, wrong, the right answer is C, marked for review"},
    };
    m_selector->setCorrectAnswer(3);
    QAccessibleInterface *access = QAccessible::queryAccessibleInterface(m_selector);
    ASSERT_NE(access, nullptr);
    for (const Row &row : rows) {
        m_selector->setGraded(false);
        m_selector->setSelectedAnswer(row.answer);
        m_selector->setMarkedForReview(row.isMarked);
        m_selector->setGraded(row.isGraded);
        EXPECT_EQ(access->text(QAccessible::Name).toStdString(), row.name);
    }
}

TEST_F(SelectAnswerTest, ItsStateIsFocusableAndReadOnlyOnceGraded)
{
    QAccessibleInterface *access = QAccessible::queryAccessibleInterface(m_selector);
    ASSERT_NE(access, nullptr);
    EXPECT_EQ(access->role(), QAccessible::Grouping);
    EXPECT_TRUE(access->state().focusable);
    EXPECT_FALSE(access->state().focused);
    EXPECT_FALSE(access->state().readOnly);
    m_selector->setFocus();
    m_selector->setGraded(true);
    EXPECT_TRUE(access->state().focused);
    EXPECT_TRUE(access->state().readOnly);
}

TEST_F(SelectAnswerTest, ItsActionsChooseAndMarkAndMoveToTheQuestion)
{
    QAccessibleInterface *access = QAccessible::queryAccessibleInterface(m_selector);
    ASSERT_NE(access, nullptr);
    QAccessibleActionInterface *actions = access->actionInterface();
    ASSERT_NE(actions, nullptr);
    const QStringList own{QStringLiteral("Choose A"), QStringLiteral("Choose B"), QStringLiteral("Choose C"),
                          QStringLiteral("Mark for review")};
    for (const QString &action : own) {
        EXPECT_TRUE(actions->actionNames().contains(action)) << action.toStdString();
        EXPECT_EQ(actions->localizedActionName(action), action);
        EXPECT_EQ(actions->keyBindingsForAction(action).size(), 1);
    }
    const std::vector<int> answers{1, 2, 3};
    for (const int answer : answers) {
        m_other->setFocus();
        actions->doAction(own.at(answer - 1));
        EXPECT_EQ(m_selector->selectedAnswer(), answer);
        EXPECT_TRUE(m_selector->hasFocus());
    }
    actions->doAction(own.last());
    EXPECT_TRUE(m_selector->isMarkedForReview());
    actions->doAction(own.last());
    EXPECT_FALSE(m_selector->isMarkedForReview());
    EXPECT_EQ(m_selector->selectedAnswer(), 3);

    m_selector->setGraded(true);
    for (const QString &action : own) {
        EXPECT_FALSE(actions->actionNames().contains(action)) << action.toStdString();
        actions->doAction(action);
    }
    EXPECT_EQ(m_selector->selectedAnswer(), 3);
    EXPECT_FALSE(m_selector->isMarkedForReview());
    EXPECT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::setFocusAction()));
}

// Looks

TEST_F(SelectAnswerTest, EveryStateCanBeToldFromEveryOtherWithoutColour)
{
    struct State
    {
        std::string name;
        QImage picture;
    };
    for (const QColor &paper : papers) {
        usePaper(paper);
        std::vector<State> states;
        for (const bool graded : {false, true}) {
            for (const int answer : {0, 1, 2, 3}) {
                for (const int correct : graded ? std::vector<int>{1, 3} : std::vector<int>{1}) {
                    for (const bool marked : {false, true}) {
                        m_selector->setGraded(false);
                        m_selector->setCorrectAnswer(correct);
                        m_selector->setSelectedAnswer(answer);
                        m_selector->setMarkedForReview(marked);
                        m_selector->setGraded(graded);
                        states.push_back({name(), picture()});
                    }
                }
            }
        }
        for (std::size_t one = 0; one < states.size(); ++one) {
            for (std::size_t other = one + 1; other < states.size(); ++other) {
                EXPECT_GE(greyDifference(states[one].picture, states[other].picture), 40)
                    << states[one].name << " | " << states[other].name << " on " << paper.name().toStdString();
            }
        }
    }
}

TEST_F(SelectAnswerTest, LettersNumberAndSignsStandOutFromThePaper)
{
    constexpr double readable = 4.5;
    std::vector<QColor> all = papers;
    all.emplace_back(0x80, 0x80, 0x80); // on which no colour is
    const auto mostContrast = [this](const QImage &image, Part part, const QColor &ground) {
        return strongestContrast(heart(image, area(part)), ground);
    };
    for (const bool focused : {false, true}) {
        (focused ? m_selector : m_other)->setFocus();
        for (const QColor &paper : all) {
            usePaper(paper);
            SCOPED_TRACE(paper.name().toStdString() + (focused ? " with the focus" : ""));
            const QColor ground = focused ? m_selector->palette().color(QPalette::Base) : paper;
            m_selector->setGraded(false);
            m_selector->setSelectedAnswer(2);
            m_selector->setCorrectAnswer(3);

            const QImage asked = picture(2);
            const auto inDisc = [this](const QImage &image) {
                return image.pixelColor((area(Part::B).center() - QPointF(11, 0)).toPoint() * 2);
            };
            EXPECT_GE(mostContrast(asked, Part::A, ground), readable);
            EXPECT_GE(mostContrast(asked, Part::C, ground), readable);
            EXPECT_GE(contrastRatio(inDisc(asked), ground), readable);
            EXPECT_GE(mostContrast(asked, Part::B, inDisc(asked)), readable);
            const QColor tab = asked.pixelColor(QPoint(4, m_selector->height() / 2) * 2);
            EXPECT_GE(mostContrast(asked, Part::Number, tab), readable);

            m_selector->setGraded(true);
            const QImage graded = picture(2);
            EXPECT_GE(mostContrast(graded, Part::A, ground), readable);
            EXPECT_GE(contrastRatio(inDisc(graded), ground), readable);
            EXPECT_GE(mostContrast(graded, Part::B, inDisc(graded)), readable);
            EXPECT_GE(mostContrast(graded, Part::C, ground), readable);
        }
    }
}

TEST_F(SelectAnswerTest, RightIsGreenAndWrongIsRed)
{
    for (const QColor &paper : papers) {
        usePaper(paper);
        m_selector->setGraded(false);
        m_selector->setSelectedAnswer(2);
        m_selector->setCorrectAnswer(2);
        m_selector->setGraded(true);
        const QPoint inDisc = (area(Part::B).center() - QPointF(11, 0)).toPoint();
        const QColor right = picture().pixelColor(inDisc);
        m_selector->setCorrectAnswer(1);
        const QColor wrong = picture().pixelColor(inDisc);
        EXPECT_GT(right.green(), right.red() + 20);
        EXPECT_GT(wrong.red(), wrong.green() + 20);
    }
}

TEST_F(SelectAnswerTest, TheFlagIsColouredOnlyWhenItIsSet)
{
    const auto mostColour = [this] {
        const QImage flag = picture().copy(area(Part::Flag).toRect());
        int most = 0;
        for (int y = 0; y < flag.height(); ++y) {
            for (int x = 0; x < flag.width(); ++x) {
                most = qMax(most, flag.pixelColor(x, y).red() - flag.pixelColor(x, y).blue());
            }
        }
        return most;
    };
    for (const QColor &paper : {papers.at(0), papers.at(1), papers.at(3)}) {
        usePaper(paper);
        m_selector->setMarkedForReview(false);
        EXPECT_LT(mostColour(), 20);
        m_selector->setMarkedForReview(true);
        EXPECT_GT(mostColour(), 150);
    }
}

TEST_F(SelectAnswerTest, NothingIsClippedOrTouchesItsNeighbourAtItsOwnSize)
{
    m_selector->setQuestionNumber(QStringLiteral("50"));
    m_selector->setMarkedForReview(true);
    EXPECT_EQ(m_selector->size(), m_selector->sizeHint());
    const QImage image = picture(2);
    const int width = image.width();
    const int height = image.height();
    EXPECT_TRUE(isBlank(image, QRect(0, 0, width, 4)));
    EXPECT_TRUE(isBlank(image, QRect(0, height - 4, width, 4)));
    EXPECT_TRUE(isBlank(image, QRect(0, 0, 4, height)));
    EXPECT_TRUE(isBlank(image, QRect(width - 4, 0, 4, height)));
    for (const Part part : {Part::A, Part::B, Part::C, Part::Flag}) {
        const int left = qRound(area(part).left() * 2);
        EXPECT_TRUE(isBlank(image, QRect(left - 1, 0, 2, height))) << choiceOf(part);
        EXPECT_FALSE(isBlank(image, QRect((area(part).topLeft() * 2).toPoint(), (area(part).size() * 2).toSize())));
    }
}

TEST_F(SelectAnswerTest, ItsSizeIsTheSameWhateverItShows)
{
    const QSize size = m_selector->sizeHint();
    EXPECT_LE(size.width(), 190);
    EXPECT_LE(size.height(), 44);
    m_selector->setQuestionNumber(QStringLiteral("50"));
    m_selector->setSelectedAnswer(3);
    m_selector->setMarkedForReview(true);
    EXPECT_EQ(m_selector->sizeHint(), size);
    m_selector->setGraded(true);
    EXPECT_EQ(m_selector->sizeHint(), size);
    EXPECT_EQ(SelectAnswer().sizeHint(), size);
}

TEST_F(SelectAnswerTest, TheNumberIsPainted)
{
    const QRect number = area(Part::Number).toRect();
    const QImage four = picture().copy(number);
    m_selector->setQuestionNumber(QStringLiteral("50"));
    const QImage fifty = picture().copy(number);
    m_selector->setQuestionNumber({});
    const QImage none = picture().copy(number);
    EXPECT_NE(four, fifty);
    EXPECT_TRUE(isBlank(none, none.rect()));
    EXPECT_FALSE(isBlank(four, four.rect()));
}

TEST_F(SelectAnswerTest, TheOneWithTheFocusIsFramedAndItsNumberStandsOnATab)
{
    for (const QColor &paper : papers) {
        usePaper(paper);
        m_other->setFocus();
        const QImage without = picture();
        m_selector->setFocus();
        const QImage with = picture();
        const QColor highlight = m_selector->palette().color(QPalette::Highlight);
        EXPECT_EQ(with.pixelColor(6, with.height() / 2), highlight);
        EXPECT_EQ(with.pixelColor(with.width() - 1, with.height() / 2), highlight);
        EXPECT_GE(contrastRatio(highlight, paper), 3);
        EXPECT_GE(greyDifference(with, without), 60);
    }
}

TEST_F(SelectAnswerTest, TheFramesLinesAreCrispAtEveryScale)
{
    m_selector->setFocus();
    const QColor highlight = m_selector->palette().color(QPalette::Highlight);
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        const QImage image = picture(scale);
        const int x = image.width() / 2;
        const int line = scale < 2 ? 2 : 4;
        for (int y = 0; y < line; ++y) {
            EXPECT_EQ(image.pixelColor(x, y), highlight) << scale;
            EXPECT_EQ(image.pixelColor(x, image.height() - 1 - y), highlight) << scale;
        }
        EXPECT_EQ(image.pixelColor(x, line), m_selector->palette().color(QPalette::Base)) << scale;
    }
}

TEST_F(SelectAnswerTest, WhileSomethingElseHasTheFocusTheLastOneKeepsATrace)
{
    const QImage without = picture();
    m_selector->setFocus();
    const QImage with = picture();
    m_button->setFocus();
    const QImage trace = picture();
    EXPECT_NE(trace, with);
    EXPECT_NE(trace, without);
    m_other->setFocus();
    EXPECT_EQ(picture(), without);
}

TEST_F(SelectAnswerTest, WhileAnotherWindowIsActiveATraceIsLeft)
{
    const QImage without = picture();
    m_selector->setFocus();
    const QImage with = picture();
    QWidget another;
    another.show();
    another.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&another));
    const QImage trace = picture();
    EXPECT_NE(trace, with);
    EXPECT_NE(trace, without);
    m_window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&m_window));
    EXPECT_EQ(picture(), with);
}

} // namespace
