#pragma once

#include "study/FlashCardSession.h"
#include "study/QuestionSearch.h"
#include "study/StudyWizard.h"
#include "study/TestClock.h"
#include "study/TestScore.h"
#include "study/TestSession.h"
#include "tests/model/EditorModel.h"
#include "tests/model/SessionModel.h"
#include "tests/model/TestModel.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

// The three windows that keep a subject open: what is behind each, and its model. Every operation is done to both
// and has to come to the same; compare() compares what they show.

/// Does \p act, and returns whether what it needed was there.
template <class Act>
bool isThere(Act act)
{
    try {
        act();
        return true;
    } catch (const Gone &) {
        return false;
    } catch (const StoreError &failure) {
        EXPECT_EQ(failure.reason(), StoreError::Reason::RowGone) << failure.what();
        return false;
    }
}

/// Does the same to both. Expects that both find what they need, or neither; returns whether they do.
template <class Program, class Model>
bool doBoth(Program program, Model model)
{
    const bool modelFinds = isThere(model);
    EXPECT_EQ(isThere(program), modelFinds) << "whether it is there";
    return modelFinds;
}

class ComparedEditor
{
public:
    ComparedEditor(const std::filesystem::path &file, SubjectModel &subject, int topic)
        : m_model(subject, topic)
        , m_program(file, topic)
    {
    }

    void type(const std::string &front, const std::string &back)
    {
        m_program.type(front, back);
        m_model.type(front, back);
    }

    /// False if something was gone.
    bool give(Command command)
    {
        std::optional<Outcome> program;
        std::optional<Outcome> model;
        const bool isDone = doBoth([&] { program = m_program.give(command); }, [&] { model = m_model.give(command); });
        EXPECT_EQ(program, model) << "what the command came to";
        return isDone;
    }

    void compare()
    {
        EXPECT_EQ(m_program.editing.count(), m_model.count());
        EXPECT_EQ(m_program.editing.position(), m_model.position());
        EXPECT_EQ(m_program.shown(), m_model.shown());
    }

private:
    EditorModel m_model; // first: if it finds the topic gone, nothing else is made
    Boxes m_program;
};

class ComparedSession
{
public:
    ComparedSession(const std::filesystem::path &file, SubjectModel &subject, const ModelSelection &selection,
                    const StudySettings &settings, unsigned seed)
        : m_sides(std::make_shared<Draws>(seed))
        , m_model(subject, selection, settings, Draws(seed))
        , m_program(file, settings, drawFrom(m_sides))
    {
        m_program.armFlipper();
    }

    bool next() { return reach(m_program.next(), m_model.next()); }
    bool previous() { return reach(m_program.previous(), m_model.previous()); }
    void restart(const StudySettings &settings)
    {
        m_program.restart(settings);
        m_model.restart(settings);
        showReached(&FlashCardSession::armFlipperPaused);
    }
    bool shuffle(unsigned seed)
    {
        const auto draws = std::make_shared<Draws>(seed);
        Draws modelDraws(seed);
        const bool isDone = reach(m_program.shuffle(drawFrom(draws)), m_model.shuffle(modelDraws));
        EXPECT_EQ(draws->drawn(), modelDraws.drawn());
        return isDone;
    }
    void flip()
    {
        m_program.showSide(otherSide(m_program.side()));
        m_model.flip();
    }
    bool toggleMark()
    {
        return doBoth([this] { m_program.toggleMark(); }, [this] { m_model.toggleMark(); });
    }
    void pauseOrResume()
    {
        m_program.toggleFlipperPause();
        m_model.pauseOrResume();
    }
    void secondPasses()
    {
        m_program.tick();
        m_model.secondPasses();
    }

    void compare()
    {
        EXPECT_EQ(m_program.count(), m_model.count());
        EXPECT_EQ(m_program.position(), m_model.position());
        EXPECT_EQ(m_program.side(), m_model.side());
        EXPECT_EQ(m_sides->drawn(), m_model.sidesDrawn());
        EXPECT_EQ(flipper(), m_model.flipper);
        const ModelCard *seen = nullptr;
        std::string front;
        if (doBoth([&] { front = m_program.text(Side::Front); }, [&] { seen = &m_model.seen(); })) {
            EXPECT_EQ(front, seen->front);
            EXPECT_EQ(m_program.text(Side::Back), seen->back);
            EXPECT_EQ(m_program.isMarked(), seen->marked);
        }
    }

private:
    bool reach(bool programMoved, bool modelMoved)
    {
        EXPECT_EQ(programMoved, modelMoved);
        if (programMoved) {
            showReached(&FlashCardSession::armFlipper);
        }
        return modelMoved;
    }

    /// As the window does it: a card that cannot be read is not counted down.
    void showReached(void (FlashCardSession::*arm)())
    {
        if (isThere([this] { (void)m_program.text(Side::Front); })) {
            (m_program.*arm)();
        }
    }

    [[nodiscard]] FlipperModel flipper() const
    {
        const AutoFlipper &flipper = m_program.flipper();
        return {.isOn = flipper.isOn(),
                .isRunning = flipper.isRunning(),
                .hasEnded = flipper.state() == AutoFlipper::State::Ended,
                .secondsLeft = flipper.secondsLeft()};
    }

    std::shared_ptr<Draws> m_sides;
    SessionModel m_model;
    FlashCardSession m_program;
};

class ComparedTest
{
public:
    /// Throws TooFewCards if both do.
    ComparedTest(const std::filesystem::path &file, SubjectModel &subject, const ModelSelection &selection,
                 const StudySettings &settings, unsigned seed)
        : m_clockModel{settings.timeSetting * 60}
        , m_clock(settings.timeSetting)
    {
        const auto draws = std::make_shared<Draws>(seed);
        Draws modelDraws(seed);
        try {
            m_model.emplace(subject, selection, settings.questionCount, settings.multipleChoicePercent, modelDraws);
        } catch (const TooFewCards &) {
            EXPECT_THROW(TestSession(file, settings, drawFrom(draws)), std::runtime_error);
            EXPECT_EQ(draws->drawn(), modelDraws.drawn());
            throw;
        }
        m_program.emplace(file, settings, drawFrom(draws));
        EXPECT_EQ(draws->drawn(), modelDraws.drawn());
        EXPECT_EQ(m_clock.firstDisplay(), m_clockModel.firstDisplay());
    }

    [[nodiscard]] int questions() const { return m_model->questions(); }
    [[nodiscard]] bool isGraded() const { return m_model->isGraded; }
    void goTo(int question)
    {
        m_program->goTo(question);
        m_model->current = question;
    }
    void goToNext() { goTo(std::min(m_model->current + 1, questions() - 1)); }
    void goToPrevious() { goTo(std::max(m_model->current - 1, 0)); }

    void press(char key)
    {
        if (!isGraded()) {
            m_model->sheet.press(m_model->current, key);
        }
    }

    /// False if no question is open.
    bool goToNextOpen()
    {
        std::vector<QuestionState> states;
        for (const AnswerSheetModel::Answer &answer : m_model->sheet.answers) {
            states.push_back({answer.selected, answer.isMarkedForReview});
        }
        const std::optional<int> open = nextOpenQuestion(states, m_program->current());
        EXPECT_EQ(open, m_model->sheet.nextOpen(m_model->current));
        if (open) {
            goTo(*open);
        }
        return open.has_value();
    }

    void grade()
    {
        const std::vector<int> wrong = m_model->grade();
        m_program->markCards(wrong);
        const int right = questions() - static_cast<int>(wrong.size());
        const std::string percent = std::to_string(TestModel::percent(right, questions()));
        EXPECT_EQ((TestScore{right, questions()}).message(),
                  "Test results: " + percent + "% (" + std::to_string(right) + " out of " +
                      std::to_string(questions()) +
                      ")\n\nFlash cards for all incorrect questions have been automatically marked.");
    }

    /// True if the time is up. It stands still once the test is graded.
    bool secondPasses()
    {
        if (isGraded() || !m_clock.isLimited()) {
            return false;
        }
        const bool isUp = m_clockModel.secondPasses();
        EXPECT_EQ(m_clock.tick(), isUp);
        EXPECT_EQ(m_clock.display(), m_clockModel.display());
        return isUp;
    }

    void compare()
    {
        EXPECT_EQ(m_program->questionCount(), questions());
        EXPECT_EQ(m_program->current(), m_model->current);
        EXPECT_EQ(m_clock.secondsLeft(), m_clockModel.secondsLeft);
        for (int question = 0; question < questions(); ++question) {
            EXPECT_EQ(m_program->correctAnswer(question), m_model->rightAnswer(question));
        }
        ShownQuestion program;
        ShownQuestion model;
        if (doBoth([&] { program = m_program->shown(isGraded()); }, [&] { model = m_model->shown(); })) {
            EXPECT_EQ(program.type, model.type);
            EXPECT_EQ(program.text, model.text);
            EXPECT_EQ(program.choices, model.choices);
            EXPECT_EQ(program.isShown, model.isShown);
        }
    }

private:
    std::optional<TestModel> m_model;
    std::optional<TestSession> m_program;
    TestClockModel m_clockModel;
    TestClock m_clock;
};
