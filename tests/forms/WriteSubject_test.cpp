#include "forms/frmNotes/frmNotes.h"
#include "forms/frmOpen/frmOpen.h"
#include "platform/RichTextBox.h"
#include "platform/TabStrip.h"
#include "store/SubjectReading.h"
#include "tests/support/WindowTest.h"

#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QRadioButton>
#include <QTextDocument>
#include <QTimer>

#include <deque>
#include <filesystem>
#include <vector>

// The main job of a learner who has no mouse: a subject is written from nothing.

namespace {

struct WrittenCard
{
    QString front;
    QString back;
};

struct WrittenTopic
{
    QString name;
    QStringList notes; ///< paragraph by paragraph
    std::vector<WrittenCard> cards;
};

WrittenCard card(const char *front, const char *back)
{
    return {QString::fromUtf8(front), QString::fromUtf8(back)};
}

const std::vector<WrittenTopic> &subject()
{
    static const std::vector<WrittenTopic> topics{
        {QStringLiteral("Kings & Emperors"),
         {QStringLiteral("The kings of Rome"), QStringLiteral("There were seven of them."),
          QStringLiteral("Romulus was the first"), QStringLiteral("Tarquinius was the last")},
         {card("Who was the first king?", "Romulus"), card("Who followed Romulus?", "Numa Pompilius"),
          card("How many kings were there?", "Seven"), card("Who was the last king?", "Tarquinius Superbus"),
          card("Who was the first emperor?", "Augustus"), card("Who built the wall in Britain?", "Hadrian"),
          card("Who made Constantinople the capital?", "Constantine")}},
        {QString::fromUtf8("Städte und Flüsse"),
         {QString::fromUtf8("Köln war Colonia Agrippina."), QStringLiteral("C:\\Rome {and} others")},
         {card("Wie hieß Köln?", "Colonia Agrippina"), card("An welchem Fluss liegt Rom?", "Tiber"),
          card("Wie hieß Trier?", "Augusta Treverorum"), card("Wie hieß York?", "Eboracum"),
          card("Wie hieß Lyon?", "Lugdunum"), card("Wo mündet der Rhein?", "Nordsee")}},
        {QStringLiteral("Words"),
         {QStringLiteral("A few words to begin with.")},
         {card("aqua", "water"), card("terra", "earth"), card("ignis", "fire"), card("arbor", "tree"),
          card("mare", "sea\nsalt water"), card("a\tb", "a tab is a tab"), card("100 %", "\\all {of} it")}},
    };
    return topics;
}

/// Somebody who has no mouse: presses keys, whatever has the focus then.
class Typist
{
public:
    Typist()
    {
        m_watch.setInterval(5);
        QObject::connect(&m_watch, &QTimer::timeout, &m_watch, [this] { answer(); });
        m_watch.start();
    }

    void press(int code, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        if (QWidget *focused = focus()) {
            QTest::keyClick(focused, static_cast<Qt::Key>(code), modifiers);
        }
    }
    void press(int code, int times, Qt::KeyboardModifiers modifiers)
    {
        for (int time = 0; time < times; ++time) {
            press(code, modifiers);
        }
    }
    void type(const QString &text)
    {
        for (const QChar character : text) {
            if (character == QLatin1Char('\n')) {
                press(Qt::Key_Return);
            } else if (character == QLatin1Char('\t')) {
                press(Qt::Key_Tab);
            } else if (QWidget *focused = focus()) {
                QTest::sendKeyEvent(QTest::Click, focused, Qt::Key_unknown, character, Qt::NoModifier);
            }
        }
    }
    /// What to do in the next dialog that waits for an answer.
    void expectDialog(std::function<void()> act) { m_acts.push_back(std::move(act)); }
    [[nodiscard]] bool isDone() const { return m_acts.empty(); }

private:
    /// What the keys go to: there always is something.
    QWidget *focus()
    {
        QWidget *front = frontWindow();
        if (front != nullptr && QApplication::activeWindow() != front) {
            front->activateWindow(); // the window manager's part: without a screen there is none
        }
        const auto isReady = [front] {
            const QWidget *focused = QApplication::focusWidget();
            return focused != nullptr && focused->window() == front;
        };
        if (m_isLost || !QTest::qWaitFor(isReady)) {
            EXPECT_TRUE(m_isLost) << "no control of the front window has the focus";
            m_isLost = true;
            return nullptr;
        }
        return QApplication::focusWidget();
    }
    static QWidget *frontWindow()
    {
        QWidget *front = QApplication::activeModalWidget();
        for (QWidget *window : QApplication::topLevelWidgets()) {
            const bool isPage = window->windowType() == Qt::Window || window->windowType() == Qt::Dialog;
            if (front == nullptr && window->isVisible() && isPage) {
                front = window;
            }
        }
        return front;
    }
    void answer()
    {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (dialog == nullptr || m_isAnswering) {
            return;
        }
        if (m_acts.empty()) {
            const auto *message = qobject_cast<QMessageBox *>(dialog);
            ADD_FAILURE() << "unexpected dialog: " << (message != nullptr ? message->text().toStdString() : "");
            dialog->reject();
            return;
        }
        const std::function<void()> act = std::move(m_acts.front());
        m_acts.pop_front();
        const QPointer<QDialog> answered = dialog;
        m_isAnswering = true;
        act();
        const auto isGone = [&] { return answered.isNull() || !answered->isVisible(); };
        if (!QTest::qWaitFor(isGone)) { // a button that is pressed by its letter takes its time
            ADD_FAILURE() << "the dialog is still open: " << dialog->windowTitle().toStdString();
            dialog->reject();
        }
        m_isAnswering = false;
    }

    QTimer m_watch;
    std::deque<std::function<void()>> m_acts;
    bool m_isAnswering = false;
    bool m_isLost = false; ///< there was nothing to press a key in
};

/// A text with its formats, as the file has it.
class StoredText
{
public:
    explicit StoredText(const std::string &rtf) { m_box.setRtf(rtf); }

    [[nodiscard]] QString plain() const { return m_box.plainText(); }
    /// The box with this part of the text selected.
    const RichTextBox &at(const QString &part)
    {
        const QTextCursor found = m_box.document()->find(part, 0, QTextDocument::FindCaseSensitively);
        EXPECT_FALSE(found.isNull()) << part.toStdString();
        m_box.setTextCursor(found);
        return m_box;
    }

private:
    RichTextBox m_box;
};

class WriteSubject : public WindowTest
{
protected:
    void TearDown() override
    {
        EXPECT_TRUE(typist.isDone()) << "a dialog did not open";
        for (QWidget *left : QApplication::topLevelWidgets()) {
            delete qobject_cast<frmNotes *>(left);
        }
        WindowTest::TearDown();
    }

    void startOnANewSubject()
    {
        module->subject = {};
        auto *chooser = new frmOpen(*module, [this] { (new frmNotes(*module))->show(); });
        chooser->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(chooser));
        typist.expectDialog([this] {
            typist.type(QString::fromStdString(path.string()));
            typist.press(Qt::Key_Return);
        });
        typist.press(Qt::Key_N, Qt::AltModifier);
        ASSERT_TRUE(QTest::qWaitFor([&] { return control<QRadioButton>(*chooser, "Option1(0)").isChecked(); }));
        typist.press(Qt::Key_Return);
        settle();
        ASSERT_NE(visibleWindow<frmNotes>(), nullptr);
        ASSERT_EQ(visibleWindow<frmOpen>(), nullptr);
    }
    void createTopic(const QString &name)
    {
        typist.expectDialog([this, name] {
            typist.press(Qt::Key_A, Qt::ControlModifier);
            typist.type(name);
            typist.press(Qt::Key_Return);
        });
        typist.press(Qt::Key_N, Qt::AltModifier);
    }
    /// Writes over the notes of a new topic.
    void writeNotes(const QStringList &paragraphs)
    {
        typist.press(Qt::Key_E, Qt::AltModifier);
        typist.type(paragraphs.join(QLatin1Char('\n')));
        typist.press(Qt::Key_Escape);
    }
    void writeCards(const std::vector<WrittenCard> &cards)
    {
        typist.press(Qt::Key_F, Qt::AltModifier);
        for (std::size_t place = 0; place < cards.size(); ++place) {
            if (place > 0) {
                typist.press(place % 2 == 0 ? Qt::Key_Insert : Qt::Key_Right, Qt::AltModifier);
            }
            typist.type(cards[place].front);
            typist.press(Qt::Key_Down, Qt::AltModifier);
            typist.type(cards[place].back);
        }
        typist.press(Qt::Key_Escape);
    }
    void leave()
    {
        typist.expectDialog([this] { typist.press(Qt::Key_N, Qt::AltModifier); });
        typist.press(Qt::Key_Escape);
        settle();
        EXPECT_EQ(visibleWindow<frmNotes>(), nullptr);
    }

    [[nodiscard]] std::vector<WrittenTopic> storedSubject() const
    {
        SubjectStore store(path);
        std::vector<WrittenTopic> stored;
        for (TopicSet topics = store.openRecordSet(allTopics()); !topics.isEndOfSet(); topics.moveNext()) {
            WrittenTopic topic{QString::fromStdString(topics.text(TopicField::Name)),
                               StoredText(topics.text(TopicField::Notes)).plain().split(QLatin1Char('\n')),
                               {}};
            CardSet cards = store.openRecordSet(cardsOfTopic(topics.number(TopicField::Index)));
            for (; !cards.isEndOfSet(); cards.moveNext()) {
                topic.cards.push_back({StoredText(cards.text(CardField::Front)).plain(),
                                       StoredText(cards.text(CardField::Back)).plain()});
            }
            stored.push_back(topic);
        }
        return stored;
    }
    [[nodiscard]] StoredText storedNotes(int position) const
    {
        return StoredText(readTopic(path, listTopics(path).at(static_cast<std::size_t>(position)).index).notes);
    }
    /// The sides of a card of the first topic.
    [[nodiscard]] std::pair<std::string, std::string> storedCard(int position) const
    {
        SubjectStore store(path);
        CardSet cards = store.openRecordSet(cardsOfTopic(listTopics(path).front().index));
        cards.setAbsolutePosition(position);
        return {cards.text(CardField::Front), cards.text(CardField::Back)};
    }

    std::filesystem::path path = folder.file("Learning.crl");
    Typist typist;
};

void expectSame(const std::vector<WrittenTopic> &stored, const std::vector<WrittenTopic> &written)
{
    ASSERT_EQ(stored.size(), written.size());
    for (std::size_t topic = 0; topic < written.size(); ++topic) {
        EXPECT_EQ(stored[topic].name, written[topic].name);
        EXPECT_EQ(stored[topic].notes, written[topic].notes)
            << stored[topic].notes.join(QLatin1Char('|')).toStdString();
        ASSERT_EQ(stored[topic].cards.size(), written[topic].cards.size()) << written[topic].name.toStdString();
        for (std::size_t place = 0; place < written[topic].cards.size(); ++place) {
            const WrittenCard &is = stored[topic].cards[place];
            const WrittenCard &should = written[topic].cards[place];
            EXPECT_EQ(is.front, should.front) << is.front.toStdString();
            EXPECT_EQ(is.back, should.back) << is.back.toStdString();
        }
    }
}

TEST_F(WriteSubject, ASubjectOfThreeTopicsAndTwentyCardsIsWrittenByKeysAlone)
{
    ASSERT_NO_FATAL_FAILURE(startOnANewSubject());
    for (const WrittenTopic &topic : subject()) {
        createTopic(topic.name);
        writeNotes(topic.notes);
        writeCards(topic.cards);
        auto *window = visibleWindow<frmNotes>();
        ASSERT_NE(window, nullptr);
        EXPECT_EQ(control<QLabel>(*window, "Label1").text().toStdString(), topic.name.toStdString());
        EXPECT_EQ(control<QLabel>(*window, "StatusBar1").text().toStdString(),
                  "This topic has " + std::to_string(topic.cards.size()) + " flash cards.");
    }
    leave();

    std::size_t cards = 0;
    for (const WrittenTopic &topic : subject()) {
        cards += topic.cards.size();
    }
    ASSERT_EQ(cards, 20U);
    expectSame(storedSubject(), subject());
    EXPECT_EQ(setting("Recent", "Path0"), QString::fromStdString(path.string()));
    EXPECT_FALSE(std::filesystem::exists(path.string() + "-journal"));
}

TEST_F(WriteSubject, NotesAreFormattedByKeysAlone)
{
    const WrittenTopic &kings = subject().front();
    ASSERT_NO_FATAL_FAILURE(startOnANewSubject());
    createTopic(kings.name);
    typist.press(Qt::Key_E, Qt::AltModifier);

    typist.type(kings.notes.at(0)); // a heading: bold, centred, two sizes larger
    typist.press(Qt::Key_Home, Qt::ShiftModifier);
    typist.press(Qt::Key_B, Qt::ControlModifier);
    typist.press(Qt::Key_Period, 2, Qt::ControlModifier);
    typist.press(Qt::Key_A, Qt::AltModifier);
    typist.press(Qt::Key_End);
    typist.press(Qt::Key_Return);
    typist.press(Qt::Key_B, Qt::ControlModifier);
    typist.press(Qt::Key_Comma, 2, Qt::ControlModifier);
    typist.press(Qt::Key_A, 2, Qt::AltModifier);
    typist.type(QStringLiteral("There were "));
    typist.press(Qt::Key_U, Qt::ControlModifier);
    typist.type(QStringLiteral("seven"));
    typist.press(Qt::Key_U, Qt::ControlModifier);
    typist.type(QStringLiteral(" of them."));
    typist.press(Qt::Key_Return);
    typist.press(Qt::Key_L, Qt::ControlModifier);
    typist.type(kings.notes.at(2));
    typist.press(Qt::Key_Return);
    typist.type(kings.notes.at(3));
    typist.press(Qt::Key_Escape);
    leave();

    StoredText notes = storedNotes(0);
    EXPECT_EQ(notes.plain().toStdString(), kings.notes.join(QLatin1Char('\n')).toStdString());
    const RichTextBox &heading = notes.at(kings.notes.at(0));
    EXPECT_EQ(heading.selBold(), true);
    EXPECT_EQ(heading.selFontSize(), 12);
    EXPECT_EQ(heading.selAlignment(), TextAlignment::Center);
    EXPECT_EQ(heading.selBullet(), false);
    EXPECT_EQ(heading.selFontName(), QStringLiteral("Comic Sans MS"));
    const RichTextBox &sentence = notes.at(QStringLiteral("There were "));
    EXPECT_EQ(sentence.selBold(), false);
    EXPECT_EQ(sentence.selFontSize(), 10);
    EXPECT_EQ(sentence.selAlignment(), TextAlignment::Left);
    EXPECT_EQ(sentence.selUnderline(), false);
    EXPECT_EQ(notes.at(QStringLiteral("seven")).selUnderline(), true);
    EXPECT_EQ(notes.at(QStringLiteral(" of them.")).selUnderline(), false);
    EXPECT_EQ(notes.at(QStringLiteral(" of them.")).selBullet(), false);
    EXPECT_EQ(notes.at(kings.notes.at(2)).selBullet(), true);
    EXPECT_EQ(notes.at(kings.notes.at(3)).selBullet(), true);
}

TEST_F(WriteSubject, CardsAreFormattedAndCorrectedByKeysAlone)
{
    ASSERT_NO_FATAL_FAILURE(startOnANewSubject());
    createTopic(QStringLiteral("Kings"));
    typist.press(Qt::Key_F, Qt::AltModifier);
    typist.type(QStringLiteral("Who was the "));
    typist.press(Qt::Key_I, Qt::ControlModifier);
    typist.type(QStringLiteral("first"));
    typist.press(Qt::Key_I, Qt::ControlModifier);
    typist.type(QStringLiteral(" king?"));
    typist.press(Qt::Key_Down, Qt::AltModifier);
    typist.press(Qt::Key_Period, Qt::ControlModifier);
    typist.press(Qt::Key_B, Qt::ControlModifier);
    typist.type(QStringLiteral("Romulos"));
    typist.press(Qt::Key_Tab, Qt::ControlModifier);
    typist.press(Qt::Key_Insert, Qt::AltModifier);
    typist.type(QStringLiteral("Who was the last?"));
    typist.press(Qt::Key_Down, Qt::AltModifier);
    typist.type(QStringLiteral("Tarquinius"));

    typist.press(Qt::Key_Left, Qt::AltModifier); // back to a slip of the pen
    typist.press(Qt::Key_Down, Qt::AltModifier);
    typist.press(Qt::Key_End);
    typist.press(Qt::Key_Backspace, 2, Qt::NoModifier);
    typist.type(QStringLiteral("us"));
    typist.press(Qt::Key_End, Qt::AltModifier);
    typist.press(Qt::Key_Insert, Qt::AltModifier); // one too many
    typist.type(QStringLiteral("superfluous"));
    typist.expectDialog([this] { typist.press(Qt::Key_Return); });
    typist.press(Qt::Key_Delete, Qt::AltModifier);
    typist.press(Qt::Key_Escape);

    typist.expectDialog([this] { // the topic gets its final name
        typist.press(Qt::Key_End);
        typist.type(QStringLiteral(" of Rome"));
        typist.press(Qt::Key_Return);
    });
    typist.press(Qt::Key_R, Qt::AltModifier);
    leave();

    const std::vector<WrittenTopic> stored = storedSubject();
    ASSERT_EQ(stored.size(), 1U);
    EXPECT_EQ(stored[0].name, QStringLiteral("Kings of Rome"));
    EXPECT_EQ(stored[0].notes, QStringList{QStringLiteral("Kings notes...")});
    ASSERT_EQ(stored[0].cards.size(), 2U);
    EXPECT_EQ(stored[0].cards[1].front, QStringLiteral("Who was the last?"));
    EXPECT_EQ(stored[0].cards[1].back, QStringLiteral("Tarquinius"));

    const auto [frontRtf, backRtf] = storedCard(0);
    StoredText front(frontRtf);
    EXPECT_EQ(front.plain(), QStringLiteral("Who was the first king?"));
    EXPECT_EQ(front.at(QStringLiteral("Who was the ")).selItalic(), false);
    EXPECT_EQ(front.at(QStringLiteral("first")).selItalic(), true);
    EXPECT_EQ(front.at(QStringLiteral(" king?")).selItalic(), false);
    StoredText back(backRtf);
    EXPECT_EQ(back.plain(), QStringLiteral("Romulus"));
    const RichTextBox &name = back.at(QStringLiteral("Romulus"));
    EXPECT_EQ(name.selBold(), true);
    EXPECT_EQ(name.selIndent(), 500);
    EXPECT_GT(name.selFontSize().value_or(0),
              StoredText(frontRtf).at(QStringLiteral("first")).selFontSize().value_or(0));
}

} // namespace
