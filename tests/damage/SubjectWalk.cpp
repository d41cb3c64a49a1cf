#include "tests/damage/SubjectWalk.h"

#include "app/FailureReport.h"
#include "store/Statements.h"
#include "store/SubjectReading.h"
#include "store/SubjectWriting.h"
#include "study/CardEditing.h"
#include "study/CardSelection.h"
#include "study/FlashCardSession.h"
#include "study/TestScore.h"
#include "study/TestSession.h"
#include "tests/damage/FileBytes.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <utility>

using Reason = StoreError::Reason;

namespace {

/// More cards than any sample has: a damaged tree may lead to the same card again and again.
constexpr int longestWalk = 700;

RandomDraw drawSeededBy(unsigned seed)
{
    return
        [generator = std::mt19937(seed)]() mutable { return std::uniform_real_distribution<float>(0, 1)(generator); };
}

/// The subject's file and the names beside it.
struct FolderState
{
    std::string bytes;
    std::vector<std::string> names;

    explicit FolderState(const std::filesystem::path &subject)
        : bytes(bytesOf(subject))
    {
        for (const auto &entry : std::filesystem::directory_iterator(subject.parent_path())) {
            names.push_back(entry.path().filename().string());
        }
        std::ranges::sort(names);
    }
};

/// Reports that are true of a file because it is damaged. No other may be made of one.
constexpr std::array damageReasons{Reason::EmptyFile,    Reason::NotASubject, Reason::TooNew,  Reason::Damaged,
                                   Reason::NoCurrentRow, Reason::RowGone,     Reason::Refused, Reason::Engine};

bool fitsDamage(Reason reason)
{
    return std::ranges::find(damageReasons, reason) != damageReasons.end();
}

bool saysWhatToDo(Reason reason)
{
    return reason != Reason::NoCurrentRow && reason != Reason::RowGone;
}

} // namespace

SubjectWalk::SubjectWalk(std::filesystem::path subject, unsigned seed, WalkTally &tally)
    : m_subject(std::move(subject))
    , m_seed(seed)
    , m_tally(tally)
    , m_topics{1, 2, 3}
{
}

bool SubjectWalk::attempt(const char *what, const Command &command)
{
    ++m_tally.commands;
    try {
        command();
        return true;
    } catch (const StoreError &failure) {
        ++m_tally.refused;
        ++m_tally.reasons[failure.reason()];
        expectReport(what, failure);
    } catch (const std::exception &failure) {
        ADD_FAILURE() << what << " failed otherwise: " << failure.what();
    }
    return false;
}

bool SubjectWalk::attemptWhole(const char *what, const Command &command)
{
    const FolderState before(m_subject);
    if (attempt(what, command)) {
        ++m_tally.writes;
        return true;
    }
    const FolderState after(m_subject);
    EXPECT_TRUE(after.bytes == before.bytes) << what << " failed and has changed the file";
    EXPECT_EQ(after.names, before.names) << what << " has left a file";
    return false;
}

void SubjectWalk::expectReport(const char *what, const StoreError &failure)
{
    const FailureReport report = describeFailure(failure);
    const QString path = QString::fromStdString(m_subject.string());
    EXPECT_TRUE(report.text.contains(path)) << what << ": " << report.text.toStdString();
    EXPECT_TRUE(report.details.startsWith(QStringLiteral("Error "))) << what;
    EXPECT_TRUE(fitsDamage(failure.reason())) << what << ": " << report.text.toStdString() << failure.what();
    if (saysWhatToDo(failure.reason())) {
        EXPECT_TRUE(report.text.contains(path + QStringLiteral("\n\n"))) << what << ": nothing says what to do";
    }
}

std::string SubjectWalk::allCards() const
{
    return cardQuery(m_topics);
}

/// As the wizard counts them, which lets nobody study fewer than five: 0 then.
int SubjectWalk::cardsToStudy()
{
    int count = 0;
    attempt("counting the cards to study", [&] { count = countCards(m_subject, cardQueryCheck(allCards())); });
    return checkCardCount(count) ? 0 : count;
}

void SubjectWalk::read()
{
    attempt("listing the topics", [&] {
        std::vector<int> topics;
        for (const TopicEntry &topic : listTopics(m_subject)) {
            topics.push_back(topic.index);
        }
        if (!topics.empty()) {
            topics.resize(std::min<std::size_t>(topics.size(), 60));
            m_topics = topics;
        }
    });
    for (const int topic : m_topics) {
        attempt("reading a topic", [&] { static_cast<void>(readTopic(m_subject, topic)); });
        attempt("counting cards", [&] {
            static_cast<void>(countCards(m_subject, cardQueryCheck(selectionQuery(std::array{topic}, false))));
        });
    }
    attempt("counting marked cards",
            [&] { static_cast<void>(countCards(m_subject, cardQueryCheck(selectionQuery({}, true)))); });
    readSession();
}

void SubjectWalk::readSession()
{
    const StudySettings settings{.viewOrder = ViewOrder::random, .cardQuery = allCards()};
    if (cardsToStudy() == 0) {
        return;
    }
    std::optional<FlashCardSession> session;
    if (!attempt("opening a session", [&] { session.emplace(m_subject, settings, drawSeededBy(m_seed)); })) {
        return;
    }
    bool moved = true;
    for (int card = 0; moved && card < longestWalk; ++card) {
        attempt("reading a front", [&] { static_cast<void>(session->text(Side::Front)); });
        attempt("reading a back", [&] { static_cast<void>(session->text(Side::Back)); });
        attempt("reading a mark", [&] { static_cast<void>(session->isMarked()); });
        const int before = session->position();
        moved = false;
        attempt("moving on", [&] { moved = session->next(); });
        EXPECT_EQ(moved, before != session->position()) << "a session that cannot be moved on";
    }
    attempt("going back", [&] { static_cast<void>(session->previous()); });
    attempt("beginning again", [&] { session->restart(settings); });
}

void SubjectWalk::write()
{
    const int topic = m_topics[m_seed % m_topics.size()];
    attemptWhole("renaming a topic", [&] { renameTopic(m_subject, topic, "Renamed"); });
    attemptWhole("storing notes", [&] { saveNotes(m_subject, topic, newTopicNotes(std::string(9000, 'n'))); });
    studySession();
    takeTest();
    editCards(topic);
    attemptWhole("creating a topic", [&] { static_cast<void>(createTopic(m_subject, "Another topic")); });
    attempt("deleting a topic", [&] { deleteTopic(m_subject, topic); });
    attempt("listing what is left", [&] { static_cast<void>(listTopics(m_subject)); });
}

void SubjectWalk::studySession()
{
    const StudySettings settings{.cardQuery = allCards()};
    if (cardsToStudy() == 0) {
        return;
    }
    std::optional<FlashCardSession> session;
    if (!attempt("opening a session", [&] { session.emplace(m_subject, settings, drawSeededBy(m_seed)); })) {
        return;
    }
    for (int card = 0; card < 3; ++card) {
        attemptWhole("marking a card", [&] { session->toggleMark(); });
        attempt("moving on", [&] { static_cast<void>(session->next()); });
    }
    attemptWhole("shuffling", [&] { static_cast<void>(session->shuffle(drawSeededBy(m_seed))); });
    attempt("reading after shuffling", [&] { static_cast<void>(session->text(session->side())); });
}

void SubjectWalk::takeTest()
{
    StudySettings settings{.style = StudyStyle::Test, .cardQuery = allCards()};
    const int count = cardsToStudy();
    if (count == 0) {
        return;
    }
    settings.questionCount = static_cast<std::int16_t>(std::min(count, 50));
    std::optional<TestSession> test;
    if (!attemptWhole("making a test", [&] { test.emplace(m_subject, settings, drawSeededBy(m_seed)); })) {
        return;
    }
    std::vector<int> wrong;
    for (int question = 0; question < test->questionCount(); ++question) {
        attempt("going to a question", [&] { test->goTo(question); });
        EXPECT_EQ(test->current(), question);
        attempt("showing a question", [&] { static_cast<void>(test->shown(false)); });
        attempt("showing a graded question", [&] { static_cast<void>(test->shown(true)); });
        EXPECT_EQ(test->current(), question) << "a question that was left by showing it";
        if (test->correctAnswer(question) != 1) {
            wrong.push_back(question);
        }
    }
    attemptWhole("grading a test", [&] { test->markCards(wrong); });
    const TestScore score{test->questionCount() - static_cast<int>(wrong.size()), test->questionCount()};
    EXPECT_FALSE(score.message().empty());
}

void SubjectWalk::editCards(int topic)
{
    const CardSides blank{"{\\rtf1}", "{\\rtf1}"};
    std::optional<CardEditing> editing;
    if (!attempt("opening the card editor", [&] { editing.emplace(m_subject, cardsOfTopic(topic), topic, blank); })) {
        return;
    }
    const auto inEditor = [&]() -> EditedCard {
        return {{editing->sides().front, "text"}, {editing->sides().back, "text"}};
    };
    const int cards = std::min(editing->count(), longestWalk);
    for (int card = 1; card < cards; ++card) {
        if (!attempt("storing a card and going on", [&] { editing->next(inEditor()); })) {
            break;
        }
        ++m_tally.writes;
    }
    attempt("going to the last card", [&] { editing->last(inEditor()); });
    attempt("going back", [&] { editing->previous(inEditor()); });
    attempt("deleting a card", [&] { editing->remove(); });
    attempt("adding a card", [&] { editing->add(inEditor()); });
    attempt("leaving a blank card", [&] { editing->previous({{blank.front, ""}, {blank.back, ""}}); });
    attempt("going to the first card", [&] { editing->first(inEditor()); });
    attempt("storing the card", [&] { editing->save(inEditor()); });
}
