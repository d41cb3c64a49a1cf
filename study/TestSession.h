#pragma once

#include "store/SubjectStore.h"
#include "study/RandomDraw.h"
#include "study/StudySettings.h"
#include "study/TestQuestion.h"

#include <filesystem>
#include <span>
#include <string>
#include <vector>

/// The questions of a test: the cards that carry them, and which one is current.
///
/// Questions count from 0. Keeps the subject open, without a lock, until it is destroyed.
/// What the learner answers is not kept here.
class TestSession
{
public:
    /// Makes a test of the cards of settings.cardQuery and goes to its first question. Throws
    /// if that fails, fewer than minStudyCards cards being left included. \p draw must be
    /// seeded anew for every test.
    TestSession(const std::filesystem::path &subject, const StudySettings &settings, const RandomDraw &draw);

    /// settings.questionCount, or the number of cards if there are fewer by now.
    [[nodiscard]] int questionCount() const { return static_cast<int>(m_questions.size()); }
    /// 1 to 3.
    [[nodiscard]] int correctAnswer(int question) const;

    void goTo(int question);
    [[nodiscard]] int current() const { return m_cards.absolutePosition(); }
    /// The current question, with the texts that its cards hold now. A failure leaves it current.
    [[nodiscard]] ShownQuestion shown(bool graded);

    /// Marks the cards of \p questions for later study, all of them or, after a failure, none. A
    /// card that was deleted meanwhile is passed over. The current question stays. If the file was
    /// moved, deleted or replaced, the same cards of the file that stands at its path now are marked.
    void markCards(std::span<const int> questions);

    /// Closes the subject. Nothing else may be asked of the session then.
    void close() noexcept { m_store.close(); }

private:
    /// What was drawn for a card. It stands in the card too, until another test draws anew.
    struct DrawnQuestion
    {
        TestQuestion question;
        float sortKey; ///< which that test would draw anew as well
    };

    void markCardsOfFileNow(std::span<const int> questions);

    std::filesystem::path m_subject;
    std::string m_cardQuery;
    SubjectStore m_store;
    CardSet m_cards;
    std::vector<DrawnQuestion> m_questions;
};
