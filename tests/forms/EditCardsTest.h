#pragma once

#include "forms/frmEditCards/frmEditCards.h"
#include "platform/RichTextBox.h"
#include "tests/support/WindowTest.h"

#include <QPointer>

#include <string>
#include <vector>

/// A card as it stands in the file.
struct StoredCard
{
    int key;
    int topic;
    std::string front; ///< RTF
    std::string back;  ///< RTF
    bool marked;
    float shuffle;
    bool isTrueFalse;
    bool isFront;
    int answer;
    int wrong1;
    int wrong2;

    friend bool operator==(const StoredCard &, const StoredCard &) = default;
};

inline std::string plainTextOf(const std::string &rtf)
{
    RichTextBox box;
    box.setRtf(rtf);
    return box.toPlainText().toStdString();
}

/// The opening of the card editor's tests: an owner on the screen, and the
/// editor over it on one of the subject's topics.
class EditCardsTest : public WindowTest
{
protected:
    /// The commands, by the index of their buttons.
    enum Command { First, Previous, New, Exit, Delete, Next, Last };
    enum Side { Front, Back };

    void SetUp() override
    {
        WindowTest::SetUp();
        owner.resize(400, 300);
        owner.show();
    }

    void TearDown() override
    {
        delete window;
        owner.close();
        WindowTest::TearDown();
    }

    void make(int topic, const QString &name)
    {
        module->study.cardQuery = cardsOfTopic(topic);
        window = new frmEditCards(*module, {topic, name}, &owner);
    }

    void open(int topic, const QString &name = QStringLiteral("Small & tidy"))
    {
        make(topic, name);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }

    [[nodiscard]] bool isOpen() const { return !window.isNull() && window->isVisible(); }

    void run(Command command) { click(*window, nameOf(command).c_str()); }
    static std::string nameOf(Command command) { return "Image1(" + std::to_string(command) + ")"; }

    /// Goes to a card, counted from 1, from the first one.
    void goTo(int card)
    {
        for (int moves = 1; moves < card; ++moves) {
            run(Next);
        }
    }

    /// Answers the one dialog that \p action opens by pressing \p button, and returns what it said.
    template <class Action>
    SeenMessage heard(Action action, QMessageBox::StandardButton button = QMessageBox::Ok)
    {
        const std::size_t before = dialogs.seen().size();
        dialogs.press(button);
        action();
        EXPECT_EQ(dialogs.seen().size(), before + 1) << "one dialog was to open";
        return dialogs.last();
    }

    void deleteCard()
    {
        heard([this] { run(Delete); }, QMessageBox::Yes);
    }

    /// Presses a key where the focus is.
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(window->focusWidget(), key, modifiers);
    }

    RichTextBox &box(Side side)
    {
        return control<RichTextBox>(*window, side == Front ? "RichTextBox1(0)" : "RichTextBox1(1)");
    }
    /// Whether keys go there as soon as the window is the active one.
    bool hasFocus(Side side) { return window->focusWidget() == &box(side); }
    void enter(Side side) { QTest::mouseClick(box(side).viewport(), Qt::LeftButton); }

    /// Replaces the text of a side by typing ASCII; the focus stays there.
    void type(Side side, const char *text)
    {
        enter(side);
        key(Qt::Key_A, Qt::ControlModifier);
        key(Qt::Key_Delete);
        for (; *text != '\0'; ++text) {
            *text == '\n' ? key(Qt::Key_Return) : QTest::keyClick(&box(side), *text);
        }
    }
    void typeBoth(const char *front, const char *back)
    {
        type(Front, front);
        type(Back, back);
    }

    /// Both sides as they are seen: "front 1|back 1".
    std::string shown() { return (box(Front).toPlainText() + u'|' + box(Back).toPlainText()).toStdString(); }
    std::string caption() { return window->windowTitle().toStdString(); }
    /// "Card 1 of 4".
    std::string place()
    {
        const std::string whole = caption();
        const std::size_t begin = whole.rfind('(') + 1;
        return whole.substr(begin, whole.size() - begin - 1);
    }

    [[nodiscard]] std::vector<StoredCard> storedCards(int topic) const
    {
        SubjectStore store(file);
        CardSet cards = store.openRecordSet(cardsOfTopic(topic));
        std::vector<StoredCard> all;
        for (; !cards.isEndOfSet(); cards.moveNext()) {
            all.push_back({cards.number(CardField::Index), cards.number(CardField::NIndex),
                           cards.text(CardField::Front), cards.text(CardField::Back), cards.flag(CardField::Marked),
                           cards.single(CardField::Shuffle), cards.flag(CardField::isTrueFalse),
                           cards.flag(CardField::isFront), cards.number(CardField::Answer),
                           cards.number(CardField::Wrong1), cards.number(CardField::Wrong2)});
        }
        return all;
    }

    using Texts = std::vector<std::string>;

    /// What is stored of a topic, as shown() has it.
    [[nodiscard]] Texts stored(int topic) const
    {
        Texts texts;
        for (const StoredCard &card : storedCards(topic)) {
            texts.push_back(plainTextOf(card.front) + "|" + plainTextOf(card.back));
        }
        return texts;
    }

    /// The cards 1 to \p count as the subject has them at first.
    static Texts untouched(int count)
    {
        Texts texts;
        for (int card = 1; card <= count; ++card) {
            texts.push_back("front " + std::to_string(card) + "|back " + std::to_string(card));
        }
        return texts;
    }

    static Texts without(Texts texts, int card)
    {
        texts.erase(texts.begin() + card - 1);
        return texts;
    }

    static Texts with(Texts texts, int card, const std::string &text)
    {
        texts.at(static_cast<std::size_t>(card) - 1) = text;
        return texts;
    }

    static Texts with(Texts texts, const std::string &added)
    {
        texts.push_back(added);
        return texts;
    }

    static void expectFirstCardMessage(const SeenMessage &message)
    {
        EXPECT_EQ(message.text, QStringLiteral("This is the first flash card."));
        EXPECT_EQ(message.title, QStringLiteral("First Flash Card"));
        EXPECT_EQ(message.icon, QMessageBox::Information);
        EXPECT_EQ(message.buttons, QMessageBox::Ok);
    }

    static void expectLastCardMessage(const SeenMessage &message)
    {
        EXPECT_EQ(message.text, QStringLiteral("This is the last flash card."));
        EXPECT_EQ(message.title, QStringLiteral("Last Flash Card"));
        EXPECT_EQ(message.icon, QMessageBox::Information);
        EXPECT_EQ(message.buttons, QMessageBox::Ok);
    }

    QWidget owner;
    QPointer<frmEditCards> window;
    DialogAnswers dialogs;
};
