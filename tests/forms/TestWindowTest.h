#pragma once

#include "forms/frmTest/frmTest.h"
#include "platform/ImageButton.h"
#include "platform/RichTextBox.h"
#include "platform/SelectAnswer.h"
#include "tests/support/StoppedClock.h"
#include "tests/support/WindowTest.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QTimerEvent>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

/// The opening of the test window's tests: a test of the 12 cards, and a clock
/// that stands still until a test lets a second pass.
///
/// Questions count from 0, as the selectors do; cards are told apart by their keys.
class TestWindowTest : public WindowTest
{
protected:
    enum Command { FindNextOpen, Help, Previous, Exit, Next };

    void SetUp() override
    {
        WindowTest::SetUp();
        study(large);
    }

    void TearDown() override
    {
        delete window; // so that an ungraded test asks nothing
        WindowTest::TearDown();
    }

    /// The next test to be opened is one of this topic's cards.
    void study(int topic)
    {
        module->study.style = StudyStyle::Test;
        module->study.cardQuery = cardQuery(std::array{topic});
        module->study.cancelled = false;
    }
    /// A topic of \p count more cards, and the next test is of those.
    int studyNewTopic(int count)
    {
        const int topic = addTopic(file, "New");
        addCards(file, topic, count);
        study(topic);
        return topic;
    }

    /// Opens the test; \p minutes 0 is without a limit.
    void open(int questions = 12, int percent = 60, int minutes = 0)
    {
        module->study.questionCount = static_cast<std::int16_t>(questions);
        module->study.multipleChoicePercent = static_cast<std::int16_t>(percent);
        module->study.timeSetting = static_cast<std::int16_t>(minutes);
        window = new frmTest(*module);
        m_stoppedClock.stop(clock());
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }
    /// Leaves the test that is open, unasked, for another.
    void reopen(int questions = 12, int percent = 60, int minutes = 0)
    {
        delete window;
        open(questions, percent, minutes);
    }
    [[nodiscard]] bool isOpen() const { return !window.isNull() && window->isVisible(); }

    // The learner's hands.

    void run(Command command) { click(*window, nameOf(command).c_str()); }
    /// Presses a key where the focus is.
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(window->focusWidget(), key, modifiers);
    }
    /// Goes on to a question by the keys.
    void goTo(int question)
    {
        for (int steps = 0; steps < 100 && current() != question; ++steps) {
            key(current() < question ? Qt::Key_Right : Qt::Key_Left);
        }
        ASSERT_EQ(current(), question);
    }
    /// Clicks where the mouse is, whatever is there: a place of \p widget.
    void clickAt(const QWidget &widget, const QPoint &place)
    {
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, Qt::NoModifier, widget.mapTo(window, place));
    }
    /// Clicks the circle of a choice, 1 to 3, of a selector of which that is seen.
    void clickChoice(int question, int choice) { clickAt(selector(question), circle(choice)); }
    void clickFlag(int question)
    {
        clickAt(selector(question), spotWhere([](const SelectAnswer &pressed) { return pressed.isMarkedForReview(); }));
    }
    /// The middle of the circle of a choice, 1 to 3, in a selector.
    static QPoint circle(int choice)
    {
        return spotWhere([choice](const SelectAnswer &pressed) { return pressed.selectedAnswer() == choice; });
    }

    /// Answers all questions, the first \p right of them correctly, without going to them.
    void answerAll(int right)
    {
        for (int question = 0; question < questionCount(); ++question) {
            selector(question).setSelectedAnswer(question < right ? correctAnswer(question) : wrongAnswer(question));
        }
    }

    /// Closes the window as its close box does.
    void closeBox() { window->close(); }
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
    /// Presses Esc and has the test graded. Returns what the results said.
    SeenMessage grade()
    {
        const std::size_t before = dialogs.seen().size();
        dialogs.press(QMessageBox::Yes).press(QMessageBox::Ok);
        key(Qt::Key_Escape);
        EXPECT_EQ(dialogs.seen().size(), before + 2) << "the question and the results";
        return dialogs.last();
    }
    /// Presses Esc and leaves the test, ungraded if it is so far.
    void leave()
    {
        if (!isGraded()) {
            dialogs.press(QMessageBox::No);
        }
        key(Qt::Key_Escape);
        settle();
        EXPECT_TRUE(window.isNull());
    }

    // The clock.

    QTimer &clock() { return control<QTimer>(*window, "Timer1"); }
    QString clockText() { return label(0).text(); }
    /// Lets a second pass. A clock that is stopped does nothing.
    void passSecond() { m_stoppedClock.passSecond(); }
    void passSeconds(int count)
    {
        for (int second = 0; second < count; ++second) {
            passSecond();
        }
    }

    // What the learner sees.

    static std::string nameOf(Command command) { return member("Image1", command); }
    static std::string member(const char *array, int index)
    {
        return std::string(array) + "(" + std::to_string(index) + ")";
    }
    ImageButton &button(Command command) { return control<ImageButton>(*window, nameOf(command).c_str()); }
    QLabel &label(int index) { return control<QLabel>(*window, member("Label1", index).c_str()); }
    /// The question's box.
    RichTextBox &box() { return control<RichTextBox>(*window, "RichTextBox1(0)"); }
    /// The box of a choice, 1 to 3.
    RichTextBox &box(int choice) { return control<RichTextBox>(*window, member("RichTextBox1", choice).c_str()); }
    SelectAnswer &selector(int question)
    {
        return control<SelectAnswer>(*window, member("SelectAnswer1", question).c_str());
    }
    QScrollBar &scrollBar() { return control<QScrollBar>(*window, "VScroll1"); }
    QWidget &viewport() { return control<QWidget>(*window, "Picture1"); }
    QWidget &column() { return control<QWidget>(*window, "Picture2"); }

    int questionCount() { return static_cast<int>(window->findChildren<SelectAnswer *>().size()); }
    int correctAnswer(int question) { return selector(question).property("CorrectAnswer").toInt(); }
    /// One of the answers that are not right; for true or false, the other one.
    int wrongAnswer(int question) { return correctAnswer(question) == 1 ? 2 : 1; }
    bool isGraded() { return selector(0).isGraded(); }
    std::vector<int> answers()
    {
        std::vector<int> all;
        for (int question = 0; question < questionCount(); ++question) {
            all.push_back(selector(question).selectedAnswer());
        }
        return all;
    }

    /// The question that is shown, as its number says.
    int current()
    {
        const QString number = label(1).text();
        EXPECT_TRUE(number.endsWith(u')')) << number.toStdString();
        return number.chopped(1).toInt() - 1;
    }
    /// The question whose selector has the focus; -1 is none.
    int focused()
    {
        const QWidget *focus = window->focusWidget();
        for (int question = 0; question < questionCount(); ++question) {
            if (focus == &selector(question)) {
                return question;
            }
        }
        return -1;
    }
    /// Whether a selector is whole in the part of the column that is seen.
    bool isWhollySeen(int question)
    {
        const QPoint place = selector(question).mapTo(&viewport(), QPoint(0, 0));
        return viewport().rect().contains(QRect(place, selector(question).size()));
    }

    /// Everything that the learner sees of the question: "3) Multiple Choice: front 4? (a) back 1 (b) back 4 ...".
    /// Fails the test where a choice and its caption contradict one another.
    std::string scene()
    {
        std::string all = label(1).text().toStdString() + " " + label(5).text().toStdString() + ": " +
                          box().toPlainText().trimmed().toStdString() + "?";
        for (int choice = 1; choice <= 3; ++choice) {
            const QLabel &caption = label(choice + 1);
            EXPECT_EQ(caption.isVisible(), box(choice).isVisible()) << "choice " << choice;
            if (box(choice).isVisible()) {
                all += " " + caption.text().toStdString() + " " + box(choice).toPlainText().trimmed().toStdString();
            }
        }
        return all;
    }

    // What the file holds.

    struct StoredCard
    {
        int key;
        std::string front; ///< without the format
        std::string back;
        bool marked;
        float shuffle;
        bool isTrueFalse;
        bool isFront;
        int answer;
        int wrong1;
        int wrong2;
    };

    /// The cards of the study in the order of their keys.
    [[nodiscard]] std::vector<StoredCard> cards() const
    {
        SubjectStore other(file);
        CardSet set = other.openRecordSet(cardsInOrder(module->study.cardQuery));
        std::vector<StoredCard> all;
        for (; !set.isEndOfSet(); set.moveNext()) {
            all.push_back({set.number(CardField::Index), plain(set.text(CardField::Front)),
                           plain(set.text(CardField::Back)), set.flag(CardField::Marked),
                           set.single(CardField::Shuffle), set.flag(CardField::isTrueFalse),
                           set.flag(CardField::isFront), set.number(CardField::Answer), set.number(CardField::Wrong1),
                           set.number(CardField::Wrong2)});
        }
        return all;
    }
    /// The same in the order of the test: the card of question k is at k.
    [[nodiscard]] std::vector<StoredCard> cardsOfTest() const
    {
        std::vector<StoredCard> all = cards();
        std::ranges::stable_sort(all, {}, &StoredCard::shuffle);
        return all;
    }
    /// The keys of the study's cards that are stored as marked.
    [[nodiscard]] std::vector<int> storedMarks() const
    {
        std::vector<int> marked;
        for (const StoredCard &card : cards()) {
            if (card.marked) {
                marked.push_back(card.key);
            }
        }
        return marked;
    }
    /// What scene() has to be for a question, by the stored fields alone.
    [[nodiscard]] std::string storedScene(int question, bool graded = false) const
    {
        return sceneOf(cardsOfTest(), question, graded);
    }
    [[nodiscard]] static std::string sceneOf(const std::vector<StoredCard> &test, int question, bool graded = false)
    {
        const auto at = [&](int position) -> const StoredCard & { return test.at(static_cast<std::size_t>(position)); };
        const StoredCard &card = at(question);
        const auto answerOf = [&](int position) { return card.isFront ? at(position).back : at(position).front; };
        std::vector<std::string> choices{answerOf(card.wrong1), answerOf(card.wrong2)};
        choices.insert(choices.begin() + card.answer - 1, answerOf(question));

        std::string all = std::to_string(question + 1) + ") ";
        all += card.isTrueFalse ? "True or False (A=True, B=False): " : "Multiple Choice: ";
        all += (card.isFront ? card.front : card.back) + "? (a) " + choices.at(0);
        if (!card.isTrueFalse || (graded && card.answer == 2)) {
            all += " (b) " + choices.at(1);
        }
        return card.isTrueFalse ? all : all + " (c) " + choices.at(2);
    }

    // Another program changes a card.

    template <class Change>
    void changeElsewhere(int key, Change change) const
    {
        atCard(key, [&](CardSet &set) {
            set.edit();
            change(set);
            set.update();
        });
    }
    void writeElsewhere(int key, CardField::Position field, const std::string &rtf) const
    {
        changeElsewhere(key, [&](CardSet &set) { set.setText(field, rtf); });
    }
    void markElsewhere(int key, bool marked = true) const
    {
        changeElsewhere(key, [&](CardSet &set) { set.setFlag(CardField::Marked, marked); });
    }
    void deleteElsewhere(int key) const
    {
        atCard(key, [](CardSet &set) { set.remove(); });
    }

    QPointer<frmTest> window;
    DialogAnswers dialogs;

private:
    static std::string plain(const std::string &rtf)
    {
        RichTextBox reader;
        reader.setRtf(rtf);
        return reader.toPlainText().trimmed().toStdString();
    }

    /// The middle of where a press makes a selector as \p wanted. Found on a selector that is nobody's.
    template <class Wanted>
    static QPoint spotWhere(Wanted wanted)
    {
        constexpr int step = 3;
        QPoint sum;
        int found = 0;
        const QSize size = SelectAnswer().sizeHint();
        for (int x = 0; x < size.width(); x += step) {
            for (int y = 0; y < size.height(); y += step) {
                SelectAnswer tried;
                tried.resize(size);
                QMouseEvent press(QEvent::MouseButtonPress, QPointF(x, y), QPointF(x, y), Qt::LeftButton,
                                  Qt::LeftButton, Qt::NoModifier);
                QApplication::sendEvent(&tried, &press);
                if (wanted(tried)) {
                    sum += QPoint(x, y);
                    ++found;
                }
            }
        }
        EXPECT_GT(found, 0) << "no such place in a selector";
        return found > 0 ? sum / found : QPoint(size.width() / 2, size.height() / 2);
    }

    template <class Act>
    void atCard(int key, Act act) const
    {
        SubjectStore other(file);
        CardSet set = other.openRecordSet(cardsInOrder(module->study.cardQuery));
        while (!set.isEndOfSet() && set.number(CardField::Index) != key) {
            set.moveNext();
        }
        ASSERT_FALSE(set.isEndOfSet()) << "no card " << key;
        act(set);
    }

    StoppedClock m_stoppedClock;
};
