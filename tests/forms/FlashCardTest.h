#pragma once

#include "forms/frmFlashCard/frmFlashCard.h"
#include "platform/ImageButton.h"
#include "platform/RichTextBox.h"
#include "tests/support/StoppedClock.h"
#include "tests/support/WindowTest.h"

#include <QLabel>
#include <QPointer>
#include <QProperty>
#include <QRegularExpression>
#include <QTimerEvent>

#include <array>
#include <string>
#include <vector>

/// The opening of the flash-card session's tests: a study of the 12 cards, and
/// a clock that stands still until a test lets a second pass.
class FlashCardTest : public WindowTest
{
protected:
    /// Draws in which both sides come: that all show one side has a chance of 1 in 10^19.
    static constexpr int manyDraws = 64;

    enum Command { Mark, MarkToo, Shuffle, Options, Help, Previous, Exit, Next, Flipper, FlipUp, FlipDown };

    void SetUp() override
    {
        WindowTest::SetUp();
        study(cardQuery(std::array{large}));
    }

    void TearDown() override
    {
        delete window;
        WindowTest::TearDown();
    }

    void study(const std::string &query)
    {
        module->study.cardQuery = query;
        module->study.cancelled = false;
    }

    /// Opens the session with the flipper at \p seconds; 0 is off.
    void open(std::int16_t seconds = 0)
    {
        module->study.timeSetting = seconds;
        window = new frmFlashCard(*module);
        m_stoppedClock.stop(clock());
        m_secondsBegun = clock().isActive() ? 1 : 0;
        // By the timer itself: its last stop comes when the window is half gone.
        m_watch = clock().bindableActive().addNotifier(
            [this, timer = &clock()] { m_secondsBegun += timer->isActive() ? 1 : 0; });
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }

    [[nodiscard]] bool isOpen() const { return !window.isNull() && window->isVisible(); }

    void run(Command command) { click(*window, nameOf(command).c_str()); }
    /// Presses a key where the focus is.
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(window->focusWidget(), key, modifiers);
    }
    /// What a key that is held down goes on sending.
    void repeatKey(Qt::Key key, const QString &text = {})
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text, true);
        QApplication::sendEvent(window->focusWidget(), &event);
    }
    /// Presses Tab until the button has the focus.
    void tabTo(Command command)
    {
        for (int tabs = 0; tabs < 12 && !button(command).hasFocus(); ++tabs) {
            key(Qt::Key_Tab);
        }
        ASSERT_TRUE(button(command).hasFocus());
    }
    /// Goes on to a card, counted from 1.
    void goTo(int card)
    {
        while (cardNumber() < card) {
            key(Qt::Key_Right);
        }
    }

    QTimer &clock() { return control<QTimer>(*window, "Timer1"); }
    /// How often a second was begun anew, whole, rather than by the one before it passing.
    [[nodiscard]] int secondsBegun() const { return m_secondsBegun; }
    /// Lets a second pass. A clock that is stopped does nothing.
    void passSecond() { m_stoppedClock.passSecond(); }
    void passSeconds(int count)
    {
        for (int second = 0; second < count; ++second) {
            passSecond();
        }
    }

    /// Answers the one dialog that \p action opens by pressing \p answer, and returns what it said.
    template <class Action>
    SeenMessage heard(Action action, QMessageBox::StandardButton answer = QMessageBox::Ok)
    {
        const std::size_t before = dialogs.seen().size();
        dialogs.press(answer);
        action();
        EXPECT_EQ(dialogs.seen().size(), before + 1) << "one dialog was to open";
        return dialogs.last();
    }

    /// Acts on the one dialog that \p action opens, if it is of this class.
    template <class Dialog, class Action, class Act>
    void within(Action action, Act act)
    {
        dialogs.act([act](QWidget &dialog) {
            auto *wanted = qobject_cast<Dialog *>(&dialog);
            ASSERT_NE(wanted, nullptr) << "another dialog opened";
            act(*wanted);
        });
        action();
    }

    static std::string nameOf(Command command) { return "Image1(" + std::to_string(command) + ")"; }
    ImageButton &button(Command command) { return control<ImageButton>(*window, nameOf(command).c_str()); }
    QString hint(Command command) { return button(command).toolTip(); }
    QString picture(Command command) { return button(command).picture(); }
    RichTextBox &front() { return control<RichTextBox>(*window, "RichTextBox1(0)"); }
    RichTextBox &back() { return control<RichTextBox>(*window, "RichTextBox1(1)"); }
    RichTextBox &pane() { return front().isVisible() ? front() : back(); }
    QString shown() { return pane().toPlainText(); }
    QString sideShown() { return control<QLabel>(*window, "Label1(0)").text(); }
    QLabel &mark() { return control<QLabel>(*window, "Label1(1)"); }
    QLabel &countdown() { return control<QLabel>(*window, "Label1(2)"); }
    bool hasSinkFocus() { return window->focusWidget() == &control<QWidget>(*window, "Picture1"); }

    /// "1 of 12".
    QString place()
    {
        static const QRegularExpression form(QStringLiteral("^\\d+ of \\d+$"));
        QString found;
        for (const QLabel *label : window->findChildren<QLabel *>()) {
            if (label->isVisible() && form.match(label->text()).hasMatch()) {
                EXPECT_TRUE(found.isEmpty()) << "two labels say which card it is";
                found = label->text();
            }
        }
        return found;
    }
    int cardNumber() { return place().section(u' ', 0, 0).toInt(); }

    /// Everything that the learner sees of the session: "3 of 12, front 3, 7 running, marked".
    /// Fails the test where two controls contradict one another.
    std::string scene()
    {
        expectOneSide();
        std::string all = place().toStdString() + ", " + shown().toStdString();
        if (const std::string flipper = flipperShown(); !flipper.empty()) {
            all += ", " + flipper;
        }
        return all + (markShown() ? ", marked" : "");
    }

    /// The field of every card, in the order in which they were made.
    template <class Value>
    [[nodiscard]] std::vector<Value> stored(Value (CardSet::*read)(FieldRef) const, CardField::Position field) const
    {
        SubjectStore store(file);
        CardSet cards = store.openRecordSet(cardsInOrder(cardQuery(std::array{large, small})));
        std::vector<Value> values;
        for (; !cards.isEndOfSet(); cards.moveNext()) {
            values.push_back((cards.*read)(field));
        }
        return values;
    }
    /// The numbers, from 1, of the cards that are stored as marked.
    [[nodiscard]] std::vector<int> storedMarks() const
    {
        std::vector<int> marked;
        int card = 0;
        for (const bool isMarked : stored(&CardSet::flag, CardField::Marked)) {
            ++card;
            if (isMarked) {
                marked.push_back(card);
            }
        }
        return marked;
    }
    [[nodiscard]] std::vector<float> storedKeys() const { return stored(&CardSet::single, CardField::Shuffle); }

    /// RTF of 300 lines.
    static std::string longText()
    {
        std::string lines = "{\\rtf1 ";
        for (int line = 0; line < 300; ++line) {
            lines += "line\\par ";
        }
        return lines + "}";
    }

    /// Another program changes a card of the large topic, counted from 1.
    void writeElsewhere(int card, CardField::Position field, const std::string &rtf) const
    {
        changeElsewhere(card, [&](CardSet &cards) { cards.setText(field, rtf); });
    }
    void markElsewhere(int card, bool marked = true) const
    {
        changeElsewhere(card, [&](CardSet &cards) { cards.setFlag(CardField::Marked, marked); });
    }
    void deleteElsewhere(int card) const
    {
        SubjectStore other(file);
        CardSet cards = other.openRecordSet(cardsOfTopic(large));
        cards.setAbsolutePosition(card - 1);
        cards.remove();
    }

    QPointer<frmFlashCard> window;
    DialogAnswers dialogs;

private:
    void expectOneSide()
    {
        EXPECT_NE(front().isVisible(), back().isVisible()) << "one side is to be seen";
        const bool isFront = front().isVisible();
        EXPECT_EQ(sideShown(), isFront ? QStringLiteral("Front (Question)") : QStringLiteral("Back (Answer)"));
        const QString other = isFront ? QStringLiteral("back") : QStringLiteral("front");
        for (const Command flip : {FlipUp, FlipDown}) {
            const QString way = flip == FlipUp ? QStringLiteral("up") : QStringLiteral("down");
            EXPECT_EQ(picture(flip), QStringLiteral("flip-to-%1-%2").arg(other, way));
            EXPECT_EQ(hint(flip), isFront ? QStringLiteral("View the Back of this Flash Card")
                                          : QStringLiteral("View the Front of this Flash Card"));
        }
    }

    bool markShown()
    {
        const bool marked = mark().isVisible();
        EXPECT_EQ(mark().text(), QStringLiteral("*** MARKED ***"));
        for (const Command either : {Mark, MarkToo}) {
            EXPECT_EQ(picture(either), marked ? QStringLiteral("mark-on") : QStringLiteral("mark-off"));
        }
        return marked;
    }

    std::string flipperShown()
    {
        const bool runs = clock().isActive();
        EXPECT_EQ(countdown().isVisible(), button(Flipper).isVisible());
        EXPECT_EQ(hint(Flipper), QStringLiteral("Pause the Auto Flipper")) << "in every state";
        EXPECT_EQ(picture(Flipper), runs ? QStringLiteral("flipper-running") : QStringLiteral("flipper-stopped"));
        if (!button(Flipper).isVisible()) {
            EXPECT_FALSE(runs) << "a flipper that nobody sees";
            EXPECT_FALSE(button(Flipper).isEnabled());
            return {};
        }
        EXPECT_TRUE(button(Flipper).isEnabled() || !runs);
        const char *state = runs ? " running" : button(Flipper).isEnabled() ? " paused" : " ended";
        return countdown().text().toStdString() + state;
    }

    template <class Change>
    void changeElsewhere(int card, Change change) const
    {
        SubjectStore other(file);
        CardSet cards = other.openRecordSet(cardsOfTopic(large));
        cards.setAbsolutePosition(card - 1);
        cards.edit();
        change(cards);
        cards.update();
    }

    StoppedClock m_stoppedClock;
    QPropertyNotifier m_watch;
    int m_secondsBegun = 0;
};
