#include "study/TestSession.h"

#include "store/Schema.h"
#include "store/Statements.h"
#include "store/StoreError.h"
#include "study/KeptPosition.h"
#include "study/TestGeneration.h"

#include <algorithm>

namespace {

/// Does \p act, and returns whether the row was there.
template <class Act>
bool unlessGone(Act act)
{
    try {
        return act();
    } catch (const StoreError &failure) {
        if (failure.reason() != StoreError::Reason::RowGone) {
            throw;
        }
        return false;
    }
}

void markCurrent(CardSet &cards)
{
    unlessGone([&] {
        cards.edit();
        cards.setFlag(CardField::Marked, true);
        cards.update();
        return true;
    });
}

/// Goes to the card of another file that has the key and the sides of the current card of \p original.
bool goToSameCard(CardSet &cards, const CardSet &original)
{
    return unlessGone([&] {
        cards.setBookmark(original.bookmark());
        return cards.text(CardField::Front) == original.text(CardField::Front) &&
               cards.text(CardField::Back) == original.text(CardField::Back);
    });
}

} // namespace

TestSession::TestSession(const std::filesystem::path &subject, const StudySettings &settings, const RandomDraw &draw)
    : m_subject(subject)
    , m_cardQuery(settings.cardQuery)
    , m_store(m_subject)
    , m_cards(m_store.openRecordSet(cardQueryCheck(settings.cardQuery)))
{
    m_cards = generateTest(m_store, m_cards, settings.cardQuery, settings.multipleChoicePercent, draw);
    const int questions = std::min<int>(settings.questionCount, m_cards.recordCount());
    for (int question = 0; question < questions; ++question, m_cards.moveNext()) {
        m_questions.push_back({questionOf(m_cards), m_cards.single(CardField::Shuffle)});
    }
    m_cards.moveFirst();
}

int TestSession::correctAnswer(int question) const
{
    return m_questions.at(static_cast<std::size_t>(question)).question.answer;
}

ShownQuestion TestSession::shown(bool graded)
{
    const float sortKey = m_cards.single(CardField::Shuffle); // first: an error once closed
    const DrawnQuestion &drawn = m_questions.at(static_cast<std::size_t>(current()));
    return composeQuestion(m_cards, sortKey == drawn.sortKey ? questionOf(m_cards) : drawn.question, graded);
}

void TestSession::goTo(int question)
{
    m_cards.setAbsolutePosition(question);
}

void TestSession::markCards(std::span<const int> questions)
{
    const KeptPosition kept(m_cards);
    if (!m_store.isInPlace()) {
        markCardsOfFileNow(questions);
        return;
    }
    Transaction pass(m_store);
    for (const int question : questions) {
        m_cards.setAbsolutePosition(question);
        markCurrent(m_cards);
    }
    pass.commit();
}

void TestSession::markCardsOfFileNow(std::span<const int> questions)
{
    SubjectStore store(m_subject);
    CardSet cards = store.openRecordSet(cardQueryCheck(m_cardQuery));
    Transaction pass(store);
    for (const int question : questions) {
        m_cards.setAbsolutePosition(question);
        if (goToSameCard(cards, m_cards)) {
            markCurrent(cards);
        }
    }
    pass.commit();
}
