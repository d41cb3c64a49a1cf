#pragma once

#include "tests/program/Contents.h"
#include "tests/program/Message.h"

#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// What a subject must hold, by what a learner tells: a plain copy of the rules by which commands store, to be compared
/// with the file.
class Ledger
{
public:
    /// The topics to answer for are those whose names begin with one of \p letters: nobody else writes in them.
    /// Others may study them, which is \p studied.
    Ledger(std::string letters, Studied studied);

    /// The file as it is now holds these \p contents.
    void open(const Contents &contents);

    /// Whether \p command writes in the ledger's topics.
    [[nodiscard]] bool answersFor(const Message &command) const;

    void begin(const Message &command);
    /// The command is over, with \p shown in the window; the file holds \p after. Returns what is wrong, or "".
    [[nodiscard]] std::string finish(const Message &shown, const Contents &after);

    /// The command that was begun broke off and the file holds \p after. The file has gone through this many of the
    /// command's writes(); -1, and what is wrong is in \p wrong: it is between two of them.
    [[nodiscard]] int breakOff(const Contents &after, std::string &wrong);
    [[nodiscard]] int writes() const { return static_cast<int>(m_states.size()) - 1; }

    /// Returns what has changed though no command was begun, or "".
    [[nodiscard]] std::string compare(const Contents &now) const;

    /// Whether a new card was seen: until then its sides are not known.
    [[nodiscard]] bool knowsNewCard() const { return m_knowsNewCard; }
    [[nodiscard]] const Contents &contents() const { return m_now; }

private:
    struct Selection
    {
        std::set<int> topics;
        bool withMarked = false;

        [[nodiscard]] std::vector<int> keys(const Contents &contents) const;
    };

    void learnNewCard(const Message &shown);
    void followStudy(const Contents &after);
    [[nodiscard]] std::vector<Contents> states() const;
    [[nodiscard]] std::vector<Contents> statesOfCardCommand() const;
    [[nodiscard]] Contents afterStudyCommand() const;
    [[nodiscard]] Card newCard(int topic) const;
    [[nodiscard]] static Selection selectionIn(const Message &command);

    const std::string m_letters;
    const Studied m_studied;
    Contents m_now;
    Message m_command;              ///< the one that was begun
    std::vector<Contents> m_states; ///< through which it takes the file: before, and after each write

    bool m_knowsNewCard = false;
    std::pair<std::string, std::string> m_newSides;
    Selection m_selection;      ///< that is studied
    std::vector<int> m_session; ///< the keys of the cards that are studied, in order
};
