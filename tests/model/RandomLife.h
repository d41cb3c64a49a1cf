#pragma once

#include "store/SubjectReading.h"
#include "store/SubjectWriting.h"
#include "study/CardSelection.h"
#include "tests/model/ComparedWindows.h"
#include "tests/model/StoredSubject.h"

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

/// How often something came to pass.
using Tally = std::map<std::string, int>;

/// A random sequence of what learners do with one subject, done by the program and by its model.
class RandomLife
{
public:
    RandomLife(const std::filesystem::path &file, unsigned seed, Tally &tally)
        : m_file(file)
        , m_random(seed)
        , m_tally(tally)
        , m_others(chance(2))
    {
        const int topics = chance(10) ? 0 : 1 + below(4);
        for (int topic = 0; topic < topics; ++topic) {
            m_subject.createTopic(randomText());
            for (int cards = chance(5) ? 0 : 1 + below(9); cards > 0; --cards) {
                const int card = m_subject.addCard(m_subject.lastTopicKey, rtfOf(randomText()), rtfOf(randomText()));
                m_subject.card(card).marked = chance(4);
            }
        }
        m_stored.emplace(m_file);
        m_stored->insert(m_subject);
    }

    /// Does something, and compares everything with the model.
    void step()
    {
        const Operation &operation = randomOperation();
        m_log += std::string(m_log.empty() ? "" : ", ") + operation.name;
        ++m_tally[operation.name];
        try {
            (this->*operation.act)();
            compare();
        } catch (const std::exception &failure) {
            ADD_FAILURE() << failure.what();
        }
    }

    [[nodiscard]] const std::string &log() const { return m_log; }

private:
    /// When something can be done.
    enum class Scene : std::uint8_t { Main, Others, Editor, Session, Test };

    struct Operation
    {
        const char *name;
        Scene scene;
        int weight;
        void (RandomLife::*act)();
    };

    static const Operation operations[];

    /// By weight. A learner has one window at a time; with others at work, everything may happen at any moment.
    const Operation &randomOperation()
    {
        int sum = 0;
        const Operation *chosen = operations; // something is always possible
        for (const Operation *operation = operations; operation->name != nullptr; ++operation) {
            if (isPossible(operation->scene)) {
                sum += operation->weight;
                if (below(sum) < operation->weight) {
                    chosen = operation;
                }
            }
        }
        return *chosen;
    }

    bool isPossible(Scene scene) const
    {
        switch (scene) {
        case Scene::Main: return m_others || (!m_editor && !m_session && !m_test);
        case Scene::Others: return m_others;
        case Scene::Editor: return m_editor.has_value();
        case Scene::Session: return m_session.has_value();
        case Scene::Test: return m_test.has_value();
        }
        return false;
    }

    void compare()
    {
        EXPECT_EQ(m_stored->topics(), m_subject.topics);
        EXPECT_EQ(m_stored->cards(), m_subject.cards);
        if (m_editor) {
            m_editor->compare();
        }
        if (m_session) {
            m_session->compare();
        }
        if (m_test) {
            m_test->compare();
        }
    }

    // Chance.

    unsigned newSeed() { return static_cast<unsigned>(m_random()); }
    int below(int limit) { return static_cast<int>(newSeed() % static_cast<unsigned>(limit)); }
    bool chance(int oneIn) { return below(oneIn) == 0; }
    template <class Value>
    Value oneOf(std::initializer_list<Value> values)
    {
        return values.begin()[below(static_cast<int>(values.size()))];
    }

    std::string randomText()
    {
        const std::string number = std::to_string(++m_texts);
        switch (below(8)) {
        case 0: return "it's \"" + number + "\"; -- DELETE * FROM Topics;";
        case 1: return "\xc3\xa4\xe2\x82\xac\xf0\x9f\x82\xa1 " + number;
        case 2: return "{" + number + "}\\b\n\t";
        default: return "text " + number;
        }
    }
    std::string randomName()
    {
        switch (below(12)) {
        case 0: return std::string(256, 'x');
        case 1: return std::string(255, 'x');
        case 2: {
            std::string characters;
            for (int count = 255 + below(2); count > 0; --count) {
                characters += "\xc3\xa9";
            }
            return characters;
        }
        default: return randomText();
        }
    }

    /// Mostly one that is there.
    int randomTopic()
    {
        return m_subject.topics.empty() || chance(12)
                   ? 1 + below(m_subject.lastTopicKey + 1)
                   : m_subject.topics.at(static_cast<std::size_t>(below(static_cast<int>(m_subject.topics.size()))))
                         .key;
    }
    ModelCard *randomCard()
    {
        const int count = static_cast<int>(m_subject.cards.size());
        return count == 0 ? nullptr : &m_subject.cards.at(static_cast<std::size_t>(below(count)));
    }

    /// Counts what was gone.
    bool noteGone(bool wasThere)
    {
        m_tally["something gone"] += wasThere ? 0 : 1;
        return wasThere;
    }

    // The main window.

    void createTopic()
    {
        const std::string name = randomName();
        expectSame([&] { return ::createTopic(m_file, name); }, [&] { return m_subject.createTopic(name); });
    }
    void renameTopic()
    {
        const int topic = randomTopic();
        const std::string name = randomName();
        expectSame([&] { return ::renameTopic(m_file, topic, name), topic; },
                   [&] { return m_subject.renameTopic(topic, name), topic; });
    }
    void deleteTopic()
    {
        const int topic = randomTopic();
        ::deleteTopic(m_file, topic);
        m_subject.deleteTopic(topic);
    }
    void saveNotes()
    {
        const int topic = randomTopic();
        const std::string notes = rtfOf(randomText());
        noteGone(doBoth([&] { ::saveNotes(m_file, topic, notes); }, [&] { m_subject.topic(topic).notes = notes; }));
    }
    void listTopics()
    {
        std::vector<std::pair<int, std::string>> listed;
        for (const TopicEntry &topic : ::listTopics(m_file)) {
            listed.emplace_back(topic.index, topic.name);
        }
        std::vector<std::pair<int, std::string>> expected;
        for (const ModelTopic &topic : m_subject.topics) {
            expected.emplace_back(topic.key, topic.name);
        }
        EXPECT_EQ(listed, expected);
    }
    void showTopic()
    {
        const int topic = randomTopic();
        TopicContents shown;
        ModelTopic expected;
        if (noteGone(doBoth([&] { shown = readTopic(m_file, topic); }, [&] { expected = m_subject.topic(topic); }))) {
            EXPECT_EQ(shown.name, expected.name);
            EXPECT_EQ(shown.notes, expected.notes);
            EXPECT_EQ(shown.cardCount, static_cast<int>(m_subject.cardsOf(topic).size()));
        }
    }

    /// Both come to the same key, or find the topic gone or the name too long.
    template <class Program, class Model>
    void expectSame(Program program, Model model)
    {
        std::optional<StoreError::Reason> refusal;
        int expected = 0;
        try {
            expected = model();
        } catch (const Gone &) {
            refusal = StoreError::Reason::RowGone;
        } catch (const Refused &) {
            refusal = StoreError::Reason::Refused;
        }
        m_tally["name refused"] += refusal == StoreError::Reason::Refused ? 1 : 0;
        try {
            EXPECT_EQ(program(), expected);
            EXPECT_FALSE(refusal);
        } catch (const StoreError &failure) {
            EXPECT_EQ(failure.reason(), refusal) << failure.what();
        }
    }

    // Another program.

    void insertCard()
    {
        const int topic = randomTopic();
        if (isThere([&] { (void)m_subject.topic(topic); })) {
            const int card = m_subject.addCard(topic, rtfOf(randomText()), rtfOf(randomText()));
            m_stored->insertCard(m_subject.card(card));
        }
    }
    void changeCard()
    {
        if (ModelCard *card = randomCard()) {
            card->front = rtfOf(randomText());
            card->marked = !card->marked;
            m_stored->changeCard(*card);
        }
    }
    void deleteCard()
    {
        if (const ModelCard *card = randomCard()) {
            m_stored->deleteCard(card->key);
            m_subject.deleteCard(card->key);
        }
    }
    void deleteAllCards()
    {
        while (!m_subject.cards.empty()) {
            m_stored->deleteCard(m_subject.cards.back().key);
            m_subject.deleteCard(m_subject.cards.back().key);
        }
        if (m_session) {
            shuffleCards(); // of which nothing is left
        }
    }

    // The card editor.

    void openEditor()
    {
        const int topic = randomTopic();
        m_editor.reset();
        if (!isThere([&] { m_editor.emplace(m_file, m_subject, topic); })) {
            EXPECT_FALSE(isThere([&] { const Boxes boxes(m_file, topic); })) << "a topic that is gone";
            noteGone(false);
        }
    }
    void type() { m_editor->type(chance(8) ? "" : randomText(), chance(3) ? "" : randomText()); }
    void typeSpaces() { m_editor->type(oneOf({"", "   "}), oneOf({"", " "})); }
    void giveCommand()
    {
        noteGone(m_editor->give(allCommands.at(static_cast<std::size_t>(below(allCommands.size())))));
    }
    void closeEditor()
    {
        noteGone(m_editor->give(Command::Save)); // what was not stored is left behind
        m_editor.reset();
    }
    void abandonEditor() { m_editor.reset(); }

    // Setting up a study.

    WizardChoices randomChoices()
    {
        WizardChoices choices;
        for (const ModelTopic &topic : m_subject.topics) {
            if (!chance(4)) {
                choices.topics.push_back(topic.key);
            }
        }
        if (chance(10)) {
            choices.topics.push_back(randomTopic());
        }
        choices.withMarked = chance(2);
        choices.style = chance(2) ? StudyStyle::FlashCards : StudyStyle::Test;
        choices.viewOrder = oneOf({ViewOrder::front, ViewOrder::back, ViewOrder::random});
        choices.flipperOn = chance(2);
        choices.flipperSeconds = 1 + below(4);
        choices.questionCount = 5 + below(20);
        choices.multipleChoicePercent = oneOf({0, 25, 50, 60, 100});
        choices.timerOn = chance(2);
        choices.timerMinutes = 2 + below(6);
        return choices;
    }

    void setUpStudy()
    {
        const WizardChoices choices = randomChoices();
        const ModelSelection selection{choices.topics, choices.withMarked};
        const int count = static_cast<int>(m_subject.selected(selection).size());
        StudySettings settings;
        beginStudySetup(settings);
        const std::optional<SelectionRefusal> refusal = confirmStudySetup(m_file, choices, settings);
        EXPECT_EQ(refusal, expectedRefusal(choices, count));
        EXPECT_EQ(settings.cancelled, refusal.has_value());
        ++m_tally[refusal ? "selection refused " + std::to_string(static_cast<int>(*refusal)) : "selection accepted"];
        if (refusal) {
            return;
        }
        const bool isTest = choices.style == StudyStyle::Test;
        EXPECT_EQ(settings.style, choices.style);
        EXPECT_EQ(settings.viewOrder, choices.viewOrder);
        EXPECT_EQ(settings.timeSetting,
                  isTest ? choices.timerOn * choices.timerMinutes : choices.flipperOn * choices.flipperSeconds);
        EXPECT_EQ(settings.questionCount, std::min(choices.questionCount, count));
        EXPECT_EQ(settings.multipleChoicePercent, choices.multipleChoicePercent);
        m_settings = settings;
        m_selection = selection;
        study();
    }
    static std::optional<SelectionRefusal> expectedRefusal(const WizardChoices &choices, int count)
    {
        if (choices.topics.empty() && !choices.withMarked) {
            return SelectionRefusal::NothingChosen;
        }
        if (count < 5) {
            return count == 0 ? SelectionRefusal::NoCards : SelectionRefusal::UnderFiveCards;
        }
        return std::nullopt;
    }

    /// What was set up last, which may have become less meanwhile.
    void study()
    {
        if (!m_settings) {
            return;
        }
        m_settings->style == StudyStyle::Test ? takeTest() : studyCards();
    }
    void studyCards()
    {
        m_session.reset();
        if (m_subject.selected(m_selection).empty()) {
            EXPECT_THROW(FlashCardSession(m_file, *m_settings, [] { return 0.F; }), std::runtime_error);
            ++m_tally["session of no card"];
        } else {
            m_session.emplace(m_file, m_subject, m_selection, *m_settings, newSeed());
        }
    }
    void takeTest()
    {
        m_test.reset();
        try {
            m_test.emplace(m_file, m_subject, m_selection, *m_settings, newSeed());
            ++m_tally["test generated"];
        } catch (const TooFewCards &) {
            ++m_tally["test of too few cards"];
        }
    }

    // The flash-card session.

    void nextCard() { m_tally["session at its end"] += m_session->next() ? 0 : 1; }
    void previousCard() { m_tally["session at its begin"] += m_session->previous() ? 0 : 1; }
    void flip() { m_session->flip(); }
    void toggleMark() { noteGone(m_session->toggleMark()); }
    void shuffleCards() { m_tally["shuffle of no card"] += m_session->shuffle(newSeed()) ? 0 : 1; }
    void changeOptions()
    {
        m_settings->viewOrder = oneOf({ViewOrder::front, ViewOrder::back, ViewOrder::randomInDialog});
        m_settings->timeSetting = static_cast<std::int16_t>(below(4));
        m_session->restart(*m_settings);
    }
    void pauseOrResume() { m_session->pauseOrResume(); }
    void letSecondPass() { m_session->secondPasses(); }
    void closeSession() { m_session.reset(); }

    // The test.

    void goToQuestion() { m_test->goTo(below(m_test->questions())); }
    void nextQuestion() { m_test->goToNext(); }
    void previousQuestion() { m_test->goToPrevious(); }
    void answer() { m_test->press(oneOf({'T', 'F', 'A', 'B', 'C', '1', '2', '3', 'Q'})); }
    void answerEverything()
    {
        for (int question = 0; question < m_test->questions(); ++question) {
            m_test->goTo(question);
            m_test->press(oneOf({'A', 'B', 'C'}));
        }
    }
    void findNextOpen() { m_tally["no open question"] += m_test->goToNextOpen() ? 0 : 1; }
    void letTimePass()
    {
        for (int seconds = 1 + below(150); seconds > 0; --seconds) {
            if (m_test->secondPasses()) {
                ++m_tally["time is up"];
                grade();
            }
        }
    }
    void grade()
    {
        if (!m_test->isGraded()) {
            m_test->grade();
            m_test->goTo(0);
            ++m_tally["test graded"];
        }
    }
    void closeTest() { m_test.reset(); }

    /// Everything is closed, and the file is the whole subject.
    void closeEverything()
    {
        m_editor.reset();
        m_session.reset();
        m_test.reset();
        m_stored.reset();
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_file.parent_path()),
                                std::filesystem::directory_iterator()),
                  1);
        m_stored.emplace(m_file);
    }

    std::filesystem::path m_file;
    std::mt19937 m_random;
    Tally &m_tally;
    bool m_others; ///< others are at work with the subject
    int m_texts = 0;
    std::string m_log;

    SubjectModel m_subject;
    std::optional<StoredSubject> m_stored;
    std::optional<ComparedEditor> m_editor;
    std::optional<ComparedSession> m_session;
    std::optional<ComparedTest> m_test;
    std::optional<StudySettings> m_settings; ///< of the last study that was set up
    ModelSelection m_selection;
};

inline const RandomLife::Operation RandomLife::operations[] = {
    {"create topic", Scene::Main, 3, &RandomLife::createTopic},
    {"rename topic", Scene::Main, 2, &RandomLife::renameTopic},
    {"delete topic", Scene::Main, 1, &RandomLife::deleteTopic},
    {"save notes", Scene::Main, 2, &RandomLife::saveNotes},
    {"list topics", Scene::Main, 1, &RandomLife::listTopics},
    {"show topic", Scene::Main, 2, &RandomLife::showTopic},
    {"open editor", Scene::Main, 5, &RandomLife::openEditor},
    {"set up study", Scene::Main, 12, &RandomLife::setUpStudy},
    {"study again", Scene::Main, 5, &RandomLife::study},
    {"close everything", Scene::Main, 1, &RandomLife::closeEverything},

    {"insert card", Scene::Others, 2, &RandomLife::insertCard},
    {"change card", Scene::Others, 4, &RandomLife::changeCard},
    {"delete card", Scene::Others, 4, &RandomLife::deleteCard},
    {"delete all cards", Scene::Others, 1, &RandomLife::deleteAllCards},

    {"type", Scene::Editor, 8, &RandomLife::type},
    {"type spaces", Scene::Editor, 2, &RandomLife::typeSpaces},
    {"editor command", Scene::Editor, 16, &RandomLife::giveCommand},
    {"close editor", Scene::Editor, 2, &RandomLife::closeEditor},
    {"abandon editor", Scene::Editor, 1, &RandomLife::abandonEditor},

    {"next card", Scene::Session, 10, &RandomLife::nextCard},
    {"previous card", Scene::Session, 3, &RandomLife::previousCard},
    {"flip", Scene::Session, 2, &RandomLife::flip},
    {"mark", Scene::Session, 5, &RandomLife::toggleMark},
    {"shuffle", Scene::Session, 3, &RandomLife::shuffleCards},
    {"options", Scene::Session, 2, &RandomLife::changeOptions},
    {"pause flipper", Scene::Session, 2, &RandomLife::pauseOrResume},
    {"second", Scene::Session, 5, &RandomLife::letSecondPass},
    {"close session", Scene::Session, 1, &RandomLife::closeSession},

    {"go to question", Scene::Test, 3, &RandomLife::goToQuestion},
    {"next question", Scene::Test, 3, &RandomLife::nextQuestion},
    {"previous question", Scene::Test, 2, &RandomLife::previousQuestion},
    {"answer", Scene::Test, 8, &RandomLife::answer},
    {"answer everything", Scene::Test, 3, &RandomLife::answerEverything},
    {"next open question", Scene::Test, 4, &RandomLife::findNextOpen},
    {"time", Scene::Test, 4, &RandomLife::letTimePass},
    {"grade", Scene::Test, 2, &RandomLife::grade},
    {"close test", Scene::Test, 1, &RandomLife::closeTest},
    {nullptr, Scene::Main, 0, nullptr},
};
