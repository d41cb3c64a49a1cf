#include "tests/forms/FlashCardTest.h"

#include <QEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <cstdlib>

namespace {

using frmFlashCardReading = FlashCardTest;

// The focus.

TEST_F(frmFlashCardReading, AClickInTheTextLeavesTheFocusWithTheWindow)
{
    open();
    EXPECT_TRUE(hasSinkFocus());
    for (const Qt::Key side : {Qt::Key_Up, Qt::Key_Down}) {
        key(side);
        for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
            QTest::mouseClick(pane().viewport(), button);
            EXPECT_TRUE(hasSinkFocus()) << button;
            EXPECT_FALSE(pane().hasFocus()) << button;
        }
        tabTo(Help);
        QTest::mouseClick(pane().viewport(), Qt::LeftButton);
        EXPECT_TRUE(hasSinkFocus()) << "even from a button";
    }
    key(Qt::Key_Up);
    EXPECT_EQ(shown(), QStringLiteral("front 1"));
}

TEST_F(frmFlashCardReading, NoCaretShowsInTheTextHoweverItIsTouched)
{
    open();
    const QImage untouched = pane().grab().toImage();
    QTest::mouseClick(pane().viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(3, 3));
    EXPECT_EQ(pane().grab().toImage(), untouched);
    for (int tabs = 0; tabs < 13; ++tabs) {
        key(Qt::Key_Tab);
        EXPECT_FALSE(pane().hasFocus() || pane().viewport()->hasFocus());
    }
    EXPECT_EQ(pane().grab().toImage(), untouched);
}

TEST_F(frmFlashCardReading, AClickOnAButtonLeavesTheKeysWithTheWindow)
{
    open();
    run(Next);
    EXPECT_TRUE(hasSinkFocus());
    key(Qt::Key_Right);
    EXPECT_EQ(shown(), QStringLiteral("front 3"));
}

TEST_F(frmFlashCardReading, TabVisitsTheCommandsFromTheBarToTheCard)
{
    open(5);
    QStringList visited;
    for (int tabs = 0; tabs < 12; ++tabs) {
        key(Qt::Key_Tab);
        visited.append(window->focusWidget()->objectName());
    }
    QStringList wanted;
    for (const Command command :
         {Mark, Shuffle, Options, Help, Flipper, Exit, MarkToo, FlipUp, Previous, Next, FlipDown}) {
        wanted.append(QString::fromStdString(nameOf(command)));
    }
    wanted.append(QStringLiteral("Picture1"));
    EXPECT_EQ(visited, wanted);
}

TEST_F(frmFlashCardReading, KeysWorkWhileAButtonHasTheFocusAndSpacePressesIt)
{
    open();
    tabTo(Next);
    key(Qt::Key_Space);
    EXPECT_EQ(scene(), "2 of 12, front 2");
    key(Qt::Key_Left);
    EXPECT_EQ(scene(), "1 of 12, front 1");
    EXPECT_TRUE(button(Next).hasFocus());
}

TEST_F(frmFlashCardReading, AScreenReaderIsToldWhichSideIsShown)
{
    open();
    const auto &sink = control<QWidget>(*window, "Picture1");
    EXPECT_TRUE(sink.accessibleName().contains(QStringLiteral("Front (Question)")));
    key(Qt::Key_Down);
    EXPECT_TRUE(sink.accessibleName().contains(QStringLiteral("Back (Answer)")));
}

// Reading.

TEST_F(frmFlashCardReading, SmallWritingIsShownAtLeast18PointsHigh)
{
    writeElsewhere(1, CardField::Front, "{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 small\\par}");
    writeElsewhere(1, CardField::Back, "{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 small\\par}");
    open();
    for (const Qt::Key side : {Qt::Key_Up, Qt::Key_Down}) {
        key(side);
        QFont read = pane().currentFont();
        read.setPointSize(18);
        EXPECT_GE(pane().cursorRect().height(), QFontMetrics(read).height() - 1);
    }
}

TEST_F(frmFlashCardReading, AShortTextStandsInTheMiddleOfTheCard)
{
    open();
    for (const Qt::Key side : {Qt::Key_Up, Qt::Key_Down}) {
        key(side);
        const QPoint text = pane().viewport()->mapTo(&pane(), pane().cursorRect().center());
        EXPECT_LT(std::abs(text.y() - pane().rect().center().y()), pane().height() / 8);
    }
}

TEST_F(frmFlashCardReading, LongTextsScrollByThePageKeys)
{
    writeElsewhere(1, CardField::Front, longText());
    open();
    const QScrollBar *scroll = front().verticalScrollBar();
    EXPECT_EQ(scroll->value(), 0);
    key(Qt::Key_PageDown);
    const int page = scroll->value();
    EXPECT_GT(page, 0);
    key(Qt::Key_PageDown);
    EXPECT_GT(scroll->value(), page);
    key(Qt::Key_PageUp);
    key(Qt::Key_PageUp);
    EXPECT_EQ(scroll->value(), 0);
    EXPECT_EQ(place(), QStringLiteral("1 of 12"));
}

TEST_F(frmFlashCardReading, LongTextsScrollByTheWheel)
{
    writeElsewhere(1, CardField::Front, longText());
    open();
    QWidget *text = front().viewport();
    const QPointF place = text->rect().center();
    QWheelEvent event(place, text->mapToGlobal(place), {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(text, &event);
    EXPECT_GT(front().verticalScrollBar()->value(), 0);
    EXPECT_TRUE(hasSinkFocus());
}

TEST_F(frmFlashCardReading, ThePageKeysScrollTheSideThatIsSeen)
{
    writeElsewhere(1, CardField::Front, longText());
    open();
    key(Qt::Key_PageDown);
    const int before = front().verticalScrollBar()->value();
    key(Qt::Key_Down);
    key(Qt::Key_PageDown);
    EXPECT_EQ(front().verticalScrollBar()->value(), before);
}

TEST_F(frmFlashCardReading, TheTextCannotBeChanged)
{
    open();
    QTest::keyClicks(front().viewport(), QStringLiteral("x"));
    QTest::keyClick(&front(), Qt::Key_X);
    EXPECT_EQ(shown(), QStringLiteral("front 1"));
}

/// Watches a window while it changes.
class Watch : public QObject
{
public:
    explicit Watch(frmFlashCard &window)
        : m_window(window)
    {
        qApp->installEventFilter(this);
    }

    int paints = 0;    ///< of the window or of anything in it
    int emptyCard = 0; ///< times that both sides were hidden
    int torn = 0;      ///< paints while side, caption, hint and picture contradicted one another

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *widget = qobject_cast<QWidget *>(watched);
        if (widget == nullptr || widget->window() != &m_window) {
            return false;
        }
        const bool front = isFrontVisible();
        if (event->type() == QEvent::Hide || event->type() == QEvent::Show) {
            emptyCard += front || isBackVisible() ? 0 : 1;
        }
        if (event->type() == QEvent::Paint) {
            ++paints;
            torn += front != isBackVisible() && says(front) ? 0 : 1;
        }
        return false;
    }

private:
    bool isFrontVisible() { return control<RichTextBox>(m_window, "RichTextBox1(0)").isVisible(); }
    bool isBackVisible() { return control<RichTextBox>(m_window, "RichTextBox1(1)").isVisible(); }
    bool says(bool front)
    {
        const auto &flip = control<ImageButton>(m_window, "Image1(9)");
        return control<QLabel>(m_window, "Label1(0)").text().startsWith(QStringLiteral("Front")) == front &&
               flip.toolTip().contains(QStringLiteral("Back")) == front &&
               flip.picture().startsWith(QStringLiteral("flip-to-back")) == front;
    }

    frmFlashCard &m_window;
};

TEST_F(frmFlashCardReading, ATurnChangesEverythingAtOnceAndTheCardIsNeverSeenEmpty)
{
    open(2);
    QCoreApplication::processEvents();
    Watch watch(*window);
    const auto turned = [&](auto turn) {
        const int before = watch.paints;
        turn();
        EXPECT_EQ(watch.paints, before) << "something was painted half way";
        QCoreApplication::processEvents();
        EXPECT_GT(watch.paints, before) << "the turn was never painted";
    };
    turned([this] { button(FlipUp).click(); });
    turned([this] { button(FlipDown).click(); });
    turned([this] { key(Qt::Key_Down); });
    turned([this] { key(Qt::Key_Right); });
    turned([this] { passSecond(); });
    turned([this] { passSecond(); });
    EXPECT_EQ(scene(), "2 of 12, back 2, 0 ended");
    EXPECT_EQ(watch.emptyCard, 0);
    EXPECT_EQ(watch.torn, 0);
}

} // namespace
