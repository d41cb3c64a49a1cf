#include "platform/Twips.h"
#include "tests/forms/TestWindowTest.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetrics>
#include <QWheelEvent>

#include <cstdlib>

namespace {

/// Where everything stands in the window, and what scrolls.
class frmTestLayout : public TestWindowTest
{
protected:
    static std::string lines(int count)
    {
        std::string text = "{\\rtf1 ";
        for (int line = 0; line < count; ++line) {
            text += "line\\par ";
        }
        return text + "}";
    }
    /// One paragraph that is broken where the box ends.
    static std::string words(int count)
    {
        std::string text = "{\\rtf1 ";
        for (int word = 0; word < count; ++word) {
            text += "words ";
        }
        return text + "\\par}";
    }
    void writeAll(const std::string &front, const std::string &back)
    {
        for (const StoredCard &card : cards()) {
            writeElsewhere(card.key, CardField::Front, front);
            writeElsewhere(card.key, CardField::Back, back);
        }
    }
    /// Shows a question anew, after another program made it show its card's front or back.
    void showAsking(int question, bool front, bool isTrueFalse = false)
    {
        changeElsewhere(cardsOfTest().at(static_cast<std::size_t>(question)).key, [&](CardSet &set) {
            set.setFlag(CardField::isFront, front);
            set.setFlag(CardField::isTrueFalse, isTrueFalse);
        });
        goTo(question == 0 ? 1 : question - 1);
        goTo(question);
        QCoreApplication::processEvents();
    }

    /// Rolls the wheel down by one notch over the middle of \p over.
    static void rollDown(QWidget &over, int notches = 1)
    {
        const QPointF place = over.rect().center();
        for (int notch = 0; notch < notches; ++notch) {
            QWheelEvent event(place, over.mapToGlobal(place), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                              Qt::NoScrollPhase, false);
            QSpontaneKeyEvent::setSpontaneous(&event); // by the mouse: what has no use for it passes it on
            qApp->notify(&over, &event);
        }
    }

    QRect placeOf(const QWidget &widget) { return {widget.mapTo(window, QPoint(0, 0)), widget.size()}; }
    /// Everything that is to be seen apart from one another.
    std::vector<QWidget *> parts()
    {
        std::vector<QWidget *> all{&box(), &box(1), &box(2), &box(3), &viewport(), &scrollBar()};
        for (int index = 0; index < 6; ++index) {
            all.push_back(&label(index));
        }
        for (const Command command : {FindNextOpen, Help, Previous, Exit, Next}) {
            all.push_back(&button(command));
        }
        const std::vector<QWidget *> always{&box(), &box(1), &viewport(), &label(0), &label(1), &label(2), &label(5)};
        std::erase_if(all, [&](QWidget *part) {
            const bool isOptional =
                std::ranges::find(always, part) == always.end() && qobject_cast<ImageButton *>(part) == nullptr;
            return isOptional && !part->isVisible();
        });
        return all;
    }
    /// Every part is whole in the window, and none covers another.
    void expectInOrder()
    {
        const std::vector<QWidget *> all = parts();
        for (std::size_t i = 0; i < all.size(); ++i) {
            const QRect place = placeOf(*all[i]);
            const std::string name = all[i]->objectName().toStdString();
            EXPECT_TRUE(all[i]->isVisible()) << name;
            EXPECT_FALSE(place.isEmpty()) << name;
            EXPECT_TRUE(window->rect().contains(place)) << name;
            for (std::size_t k = i + 1; k < all.size(); ++k) {
                EXPECT_FALSE(place.intersects(placeOf(*all[k])))
                    << name << " and " << all[k]->objectName().toStdString();
            }
        }
        for (int index = 0; index < 6; ++index) {
            if (label(index).isVisible()) {
                EXPECT_GE(label(index).width(), label(index).sizeHint().width()) << "Label1 " << index;
                EXPECT_GE(label(index).height(), QFontMetrics(label(index).font()).ascent()) << "Label1 " << index;
            }
        }
        for (int choice = 1; choice <= 3; ++choice) {
            if (box(choice).isVisible()) {
                const QRect caption = placeOf(label(choice + 1));
                const QRect text = placeOf(box(choice));
                EXPECT_LT(caption.right(), text.left()) << choice;
                EXPECT_NEAR(caption.center().y(), text.center().y(), 2) << choice;
            }
        }
    }
    static bool showsWholeText(RichTextBox &box) { return box.verticalScrollBar()->maximum() == 0; }
    void resizeTo(const QSize &size)
    {
        window->resize(size);
        QCoreApplication::processEvents();
    }
};

// The column of selectors.

TEST_F(frmTestLayout, TheSelectorsStandBelowOneAnotherInTheColumn)
{
    studyNewTopic(60);
    open(50);
    const int row = selector(0).height() + toPixels(100);
    for (int question = 0; question < 50; ++question) {
        EXPECT_EQ(selector(question).pos(), QPoint(0, question * row)) << question;
        EXPECT_EQ(selector(question).size(), selector(0).size());
        EXPECT_EQ(selector(question).parentWidget(), &column());
        EXPECT_TRUE(selector(question).isVisible());
    }
    EXPECT_EQ(column().size(), QSize(selector(0).width(), 50 * row));
    EXPECT_EQ(column().parentWidget(), &viewport());
    EXPECT_GE(viewport().width(), selector(0).width());
}

TEST_F(frmTestLayout, TheScrollBarCoversWhatDoesNotFitIntoTheView)
{
    studyNewTopic(60);
    open(50);
    for (const QSize &size : {QSize(700, 500), QSize(900, 800), QSize(800, 640)}) {
        resizeTo(size);
        EXPECT_TRUE(scrollBar().isVisible());
        EXPECT_EQ(scrollBar().minimum(), 0);
        EXPECT_EQ(scrollBar().maximum(), column().height() - viewport().height());
        EXPECT_EQ(scrollBar().pageStep(), viewport().height());
        EXPECT_EQ(scrollBar().singleStep(), selector(1).y());
        EXPECT_EQ(scrollBar().width(), toPixels(360));
        EXPECT_EQ(placeOf(scrollBar()).top(), placeOf(viewport()).top());
        EXPECT_EQ(scrollBar().height(), viewport().height());
        EXPECT_GT(placeOf(scrollBar()).left(), placeOf(viewport()).right());
    }
}

TEST_F(frmTestLayout, AColumnThatFitsHasNoScrollBar)
{
    open(5);
    resizeTo({900, 900});
    EXPECT_FALSE(scrollBar().isVisible());
    EXPECT_EQ(scrollBar().maximum(), 0);
    for (int question = 0; question < 5; ++question) {
        EXPECT_TRUE(isWhollySeen(question));
    }
    expectInOrder();
}

TEST_F(frmTestLayout, AWindowThatGrowsLeavesNoGapBelowTheColumn)
{
    open(12);
    resizeTo(window->minimumSize());
    goTo(11);
    ASSERT_GT(scrollBar().value(), 0);
    resizeTo({900, 1000});
    EXPECT_EQ(column().y(), 0);
    EXPECT_FALSE(scrollBar().isVisible());
}

TEST_F(frmTestLayout, TheScrollBarMovesTheColumn)
{
    studyNewTopic(60);
    open(50);
    for (const int value : {0, 1, 137, scrollBar().maximum(), 40}) {
        scrollBar().setValue(value);
        EXPECT_EQ(column().pos(), QPoint(0, -value));
        EXPECT_EQ(current(), 0);
    }
    const QRect bar = placeOf(scrollBar());
    scrollBar().setValue(0);
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      bar.center() + QPoint(0, bar.height() / 4));
    EXPECT_LT(column().y(), 0) << "by the mouse";
    EXPECT_EQ(column().y(), -scrollBar().value());
}

TEST_F(frmTestLayout, TheColumnScrollsAsFarAsTheCurrentSelectorNeeds)
{
    studyNewTopic(60);
    open(50);
    for (int question = 1; question < 50; ++question) {
        const int before = scrollBar().value();
        key(Qt::Key_Right);
        const int bottom = selector(question).y() + selector(question).height();
        EXPECT_EQ(scrollBar().value(), qMax(before, bottom - viewport().height())) << question;
        EXPECT_TRUE(isWhollySeen(question));
    }
    for (int question = 48; question >= 0; --question) {
        const int before = scrollBar().value();
        key(Qt::Key_Left);
        EXPECT_EQ(scrollBar().value(), qMin(before, selector(question).y())) << question;
        EXPECT_TRUE(isWhollySeen(question));
    }
}

TEST_F(frmTestLayout, TheWheelScrollsTheColumnAndStaysAtTheQuestion)
{
    studyNewTopic(60);
    open(50);
    rollDown(selector(2));
    const int once = scrollBar().value();
    EXPECT_GT(once, 0);
    EXPECT_EQ(column().y(), -once);
    rollDown(viewport());
    EXPECT_GT(scrollBar().value(), once);
    rollDown(scrollBar(), 200);
    EXPECT_EQ(scrollBar().value(), scrollBar().maximum());
    rollDown(selector(49));
    EXPECT_EQ(focused(), 0);
    EXPECT_EQ(scene(), storedScene(0));
}

// The sheet.

TEST_F(frmTestLayout, EverythingIsSeenAndNothingOverlapsAtAnySize)
{
    studyNewTopic(60);
    open(50, 100);
    EXPECT_GE(window->minimumWidth(), toPixels(9315) - 1);
    for (const QSize &size : {QSize(1, 1), window->size(), QSize(1600, 1000), QSize(1000, 480), QSize(640, 1100)}) {
        resizeTo(size);
        expectInOrder();
    }
    resizeTo({1, 1});
    for (const RichTextBox *any : {&box(), &box(1), &box(2), &box(3)}) {
        EXPECT_GE(any->viewport()->height(), any->cursorRect().height()) << any->objectName().toStdString();
    }
}

TEST_F(frmTestLayout, AStatementIsInOrderToo)
{
    studyNewTopic(60);
    open(50, 0);
    for (const QSize &size : {QSize(1, 1), window->size(), QSize(1600, 1000)}) {
        resizeTo(size);
        expectInOrder();
    }
    grade();
    for (int question = 0; question < 50; ++question) {
        goTo(question);
        if (correctAnswer(question) == 2) {
            break;
        }
    }
    EXPECT_TRUE(box(2).isVisible());
    for (const QSize &size : {QSize(1, 1), QSize(1600, 1000)}) {
        resizeTo(size);
        expectInOrder();
    }
}

TEST_F(frmTestLayout, TheNumberStandsAboveTheQuestionWithTheTypeBesideIt)
{
    open(12, 100);
    for (const QSize &size : {QSize(1, 1), QSize(1200, 900)}) {
        resizeTo(size);
        const QRect number = placeOf(label(1));
        const QRect type = placeOf(label(5));
        const QRect question = placeOf(box());
        EXPECT_LT(number.bottom(), question.top());
        EXPECT_LT(question.top() - number.bottom(), 40) << "right above it";
        EXPECT_LE(std::abs(number.left() - question.left()), 20);
        EXPECT_GT(type.left(), number.right());
        EXPECT_LT(type.left() - number.right(), 40);
        EXPECT_NEAR(type.center().y(), number.center().y(), 3);
        EXPECT_LT(placeOf(label(0)).bottom(), number.bottom()) << "the clock is above";
        EXPECT_GT(placeOf(viewport()).left(), question.right());
    }
}

TEST_F(frmTestLayout, ALongerNumberStillHasItsRoom)
{
    studyNewTopic(60);
    open(50);
    resizeTo({1, 1});
    goTo(48);
    QCoreApplication::processEvents();
    EXPECT_EQ(label(1).text(), QStringLiteral("49)"));
    expectInOrder();
}

TEST_F(frmTestLayout, ALongQuestionGetsWhatItsShortChoicesLeave)
{
    writeAll(lines(60), rtfOf("short"));
    open(12, 100);
    showAsking(1, true);
    for (const QSize &size : {window->size(), QSize(1200, 900)}) {
        resizeTo(size);
        for (int choice = 1; choice <= 3; ++choice) {
            EXPECT_TRUE(showsWholeText(box(choice))) << choice;
            EXPECT_LT(box(choice).height(), 3 * box(choice).cursorRect().height()) << choice;
            EXPECT_LT(3 * box(choice).height(), box().height()) << choice;
        }
        expectInOrder();
    }
}

TEST_F(frmTestLayout, LongChoicesGetWhatAShortQuestionLeaves)
{
    writeAll(rtfOf("short"), lines(60));
    open(12, 100);
    showAsking(1, true);
    for (const QSize &size : {window->size(), QSize(1200, 900)}) {
        resizeTo(size);
        EXPECT_TRUE(showsWholeText(box()));
        EXPECT_LT(box().height(), 3 * box().cursorRect().height());
        for (int choice = 1; choice <= 3; ++choice) {
            EXPECT_GT(box(choice).height(), box().height()) << choice;
            EXPECT_NEAR(box(choice).height(), box(1).height(), 1) << "equally long";
        }
        expectInOrder();
    }
}

TEST_F(frmTestLayout, AShortQuestionAndOneLongChoiceShareTheHeightByWhatTheyNeed)
{
    writeAll(rtfOf("short"), lines(60));
    open(12, 0);
    showAsking(1, true, true);
    const int all = box().height() + box(1).height();
    EXPECT_TRUE(showsWholeText(box()));
    EXPECT_GT(box(1).height(), 3 * all / 4);
    expectInOrder();
}

TEST_F(frmTestLayout, TheLongOneOfThreeChoicesGetsTheRoom)
{
    writeAll(rtfOf("short"), rtfOf("short"));
    open(12, 100);
    const StoredCard card = cardsOfTest().at(1);
    writeElsewhere(card.key, CardField::Back, lines(60));
    showAsking(1, true);
    for (int choice = 1; choice <= 3; ++choice) {
        if (choice == card.answer) {
            EXPECT_GT(2 * box(choice).height(),
                      box().height() + box(1).height() + box(2).height() + box(3).height() - box(choice).height())
                << "the long choice";
        } else {
            EXPECT_TRUE(showsWholeText(box(choice)));
            EXPECT_LT(box(choice).height(), 3 * box(choice).cursorRect().height());
        }
    }
    EXPECT_TRUE(showsWholeText(box()));
}

TEST_F(frmTestLayout, ShortTextsShareTheWholeHeightAndTheQuestionHasMost)
{
    open(12, 100);
    const QRect question = placeOf(box());
    const QRect last = placeOf(box(3));
    EXPECT_GT(box().height(), box(1).height());
    EXPECT_EQ(box(1).height(), box(2).height());
    EXPECT_EQ(box(1).height(), box(3).height());
    EXPECT_NEAR(last.bottom(), placeOf(viewport()).bottom(), 20) << "down to where the column ends";
    EXPECT_LT(question.top() - placeOf(viewport()).top(), 20);
    const QWidget &lastCard = *box(3).parentWidget();
    EXPECT_NEAR(lastCard.geometry().bottom(), lastCard.parentWidget()->rect().bottom(), 3) << "all but what is divided";
    EXPECT_GT(box(1).width(), window->width() / 3);
}

TEST_F(frmTestLayout, AStatementHasTheRoomOfTheChoicesThatAreNotSeen)
{
    open(12, 100);
    showAsking(1, true, true);
    EXPECT_FALSE(box(2).isVisible());
    EXPECT_NEAR(placeOf(box(1)).bottom(), placeOf(viewport()).bottom(), 20);
    const int statement = box(1).height();
    goTo(2);
    EXPECT_TRUE(box(2).isVisible());
    EXPECT_LT(box(1).height(), statement);
}

TEST_F(frmTestLayout, WrappedTextIsGivenTheLinesThatItHasAtTheWidth)
{
    writeAll(words(60), rtfOf("short"));
    open(12, 100);
    showAsking(1, true);
    resizeTo({1400, 700});
    ASSERT_TRUE(showsWholeText(box()));
    resizeTo({720, 700});
    EXPECT_TRUE(showsWholeText(box())) << "more lines, and enough room for them";
    EXPECT_TRUE(showsWholeText(box(1)));
    EXPECT_GT(box().height(), box(1).height() + box(2).height());
}

TEST_F(frmTestLayout, TheFirstQuestionHasItsRoomAtOnce)
{
    for (const auto &[front, back] : {std::pair(25, 1), std::pair(1, 25)}) {
        writeAll(words(front), words(back));
        reopen(12, 100);
        const auto heights = [this] {
            QCoreApplication::processEvents();
            return std::vector{box().height(), box(1).height(), box(2).height(), box(3).height()};
        };
        const std::vector<int> atOnce = heights();
        key(Qt::Key_Right);
        key(Qt::Key_Left);
        EXPECT_EQ(heights(), atOnce);
    }
}

TEST_F(frmTestLayout, AQuestionHasTheSameRoomWhicheverWasThereBefore)
{
    const auto heightsAfter = [this](int before) {
        goTo(before);
        QCoreApplication::processEvents();
        goTo(1);
        QCoreApplication::processEvents();
        return std::vector{box().height(), box(1).height(), box(2).height(), box(3).height()};
    };
    for (int count = 15; count <= 40; ++count) {
        writeAll(words(count), words(1));
        reopen(12, 100);
        showAsking(0, false);
        showAsking(2, true);
        showAsking(1, true);
        EXPECT_EQ(heightsAfter(0), heightsAfter(2)) << count << " words";
    }
}

TEST_F(frmTestLayout, TheWheelAtAnEndOfTheColumnDoesNothing)
{
    for (const int questions : {12, 5}) { // more than there is room for, and fewer
        open(questions);
        scrollBar().setValue(scrollBar().maximum());
        rollDown(selector(questions - 1));
        rollDown(scrollBar());
        EXPECT_EQ(scrollBar().value(), scrollBar().maximum());
        EXPECT_EQ(focused(), 0);
        delete window;
    }
}

// Reading.

TEST_F(frmTestLayout, LongTextsScrollByTheWheelAndTheKeysStayWithTheSelector)
{
    writeAll(lines(300), lines(300));
    open(12, 100);
    for (RichTextBox *any : {&box(), &box(1), &box(2), &box(3)}) {
        EXPECT_EQ(any->verticalScrollBar()->value(), 0);
        rollDown(*any->viewport());
        EXPECT_GT(any->verticalScrollBar()->value(), 0) << any->objectName().toStdString();
    }
    EXPECT_EQ(scrollBar().value(), 0) << "the column stays";
    EXPECT_EQ(focused(), 0);
    key(Qt::Key_Right);
    EXPECT_EQ(box().verticalScrollBar()->value(), 0) << "the next question begins at its start";
}

TEST_F(frmTestLayout, LongTextsScrollByThePageKeys)
{
    writeAll(lines(300), lines(300));
    open(12, 100);
    key(Qt::Key_PageDown);
    for (RichTextBox *any : {&box(), &box(1), &box(2), &box(3)}) {
        EXPECT_GT(any->verticalScrollBar()->value(), 0) << any->objectName().toStdString();
    }
    key(Qt::Key_PageUp);
    for (RichTextBox *any : {&box(), &box(1), &box(2), &box(3)}) {
        EXPECT_EQ(any->verticalScrollBar()->value(), 0) << any->objectName().toStdString();
    }
    EXPECT_EQ(focused(), 0);
}

TEST_F(frmTestLayout, SmallWritingIsShownAtLeast14PointsHigh)
{
    const std::string tiny = "{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 small\\par}";
    writeAll(tiny, tiny);
    open(12, 100);
    for (const RichTextBox *any : {&box(), &box(1), &box(2), &box(3)}) {
        QFont read = any->currentFont();
        read.setPointSize(14);
        EXPECT_GE(any->cursorRect().height(), QFontMetrics(read).height() - 1) << any->objectName().toStdString();
        EXPECT_LE(any->cursorRect().height(), QFontMetrics(read).height() + 3) << "and not much higher";
    }
}

TEST_F(frmTestLayout, LargeWritingIsShownAsItIs)
{
    const std::string high = "{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs48 large\\par}";
    writeAll(high, high);
    open(12, 100);
    QFont read = box().currentFont();
    read.setPointSize(24);
    EXPECT_NEAR(box().cursorRect().height(), QFontMetrics(read).height(), 1);
}

TEST_F(frmTestLayout, AShortQuestionStandsInTheMiddleOfItsCardAndAChoiceBesideItsCaption)
{
    open(12, 100);
    const QRect card = placeOf(box());
    const QPoint text = box().viewport()->mapTo(window, box().cursorRect().center());
    EXPECT_LT(std::abs(text.y() - card.center().y()), card.height() / 8);
    const int textWidth = qRound(box().document()->idealWidth());
    EXPECT_LT(std::abs(text.x() + textWidth / 2 - card.center().x()), card.width() / 8);
    for (int choice = 1; choice <= 3; ++choice) {
        const QPoint start = box(choice).viewport()->mapTo(window, box(choice).cursorRect().center());
        EXPECT_LT(start.x() - placeOf(box(choice)).left(), 30) << "at the left edge";
        EXPECT_NEAR(start.y(), placeOf(label(choice + 1)).center().y(), 6) << "level with its caption";
    }
}

} // namespace
