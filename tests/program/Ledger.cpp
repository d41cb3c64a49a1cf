#include "tests/program/Ledger.h"

#include "store/SubjectWriting.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace {

std::vector<int> numbersIn(const std::string &list)
{
    std::vector<int> numbers;
    std::istringstream words(list);
    for (std::string word; std::getline(words, word, ',');) {
        numbers.push_back(std::stoi(word));
    }
    return numbers;
}

template <class Subject>
auto &cardIn(Subject &contents, int key)
{
    const auto found = std::ranges::find(contents.cards, key, &Card::key);
    if (found == contents.cards.end()) {
        throw std::runtime_error("there is no card " + std::to_string(key));
    }
    return *found;
}

Topic &topicIn(Contents &contents, const std::string &key)
{
    const auto found = std::ranges::find(contents.topics, std::stoi(key), &Topic::key);
    if (found == contents.topics.end()) {
        throw std::runtime_error("there is no topic " + key);
    }
    return *found;
}

/// A command of the card editor, as it is told.
struct CardCommand
{
    explicit CardCommand(const Message &told)
        : isRemoval(told.at(0) == "remove")
    {
        std::size_t field = 1;
        name = isRemoval ? told[0] : told.at(field++);
        topic = std::stoi(told.at(field++));
        place = std::stoi(told.at(field++)) - 1;
        count = std::stoi(told.at(field++));
        if (!isRemoval) {
            front = told.at(field++);
            back = told.at(field++);
            isBlank = told.at(field) == "blank";
        }
    }

    bool isRemoval;
    std::string name;
    int topic;
    int place; ///< from 0; -1 if there is no card
    int count;
    std::string front;
    std::string back;
    bool isBlank = false;
};

} // namespace

Ledger::Ledger(std::string letters, Studied studied)
    : m_letters(std::move(letters))
    , m_studied(studied)
{
}

void Ledger::open(const Contents &contents)
{
    m_now = contents;
    m_states.clear();
}

bool Ledger::answersFor(const Message &command) const
{
    const std::string &name = command.at(0);
    if (name == "create") {
        return m_letters.find(command.at(1).front()) != std::string::npos;
    }
    if (name == "card") {
        return m_now.hasTopic(std::stoi(command.at(2)));
    }
    if (name == "notes" || name == "rename" || name == "delete" || name == "open" || name == "remove") {
        return m_now.hasTopic(std::stoi(command.at(1)));
    }
    return m_studied == Studied::Compared;
}

void Ledger::begin(const Message &command)
{
    m_command = command;
    m_states = states();
}

std::string Ledger::finish(const Message &shown, const Contents &after)
{
    learnNewCard(shown);
    const bool isRefused = !shown.empty() && shown.front() == "refused";
    const std::string wrong = difference(isRefused ? m_states.front() : m_states.back(), after, m_now, m_studied);
    if (!isRefused) {
        followStudy(after);
    }
    open(after);
    return wrong;
}

int Ledger::breakOff(const Contents &after, std::string &wrong)
{
    for (std::size_t write = 0; write < m_states.size(); ++write) {
        const std::string unlike = difference(m_states[write], after, m_now, m_studied);
        if (unlike.empty()) {
            open(after);
            return static_cast<int>(write);
        }
        wrong += "\n  after " + std::to_string(write) + " writes: " + unlike;
    }
    return -1;
}

std::string Ledger::compare(const Contents &now) const
{
    return difference(m_now, now, m_now, m_studied);
}

// A new card's sides depend on the desktop's fonts: the window shows them.
void Ledger::learnNewCard(const Message &shown)
{
    const std::vector<Card> &cards = m_states.back().cards;
    if (!m_knowsNewCard && !cards.empty() && cards.back().isNew && shown.size() == 2) {
        m_newSides = {shown[0], shown[1]};
        m_knowsNewCard = true;
        m_states = states();
    }
}

void Ledger::followStudy(const Contents &after)
{
    const std::string &name = m_command.at(0);
    const bool begins = name == "session" || name == "generate";
    if (begins) {
        m_selection = selectionIn(m_command);
    }
    if (begins || name == "shuffle") {
        m_session = m_selection.keys(after);
    }
    if (name != "session" && (begins || name == "shuffle")) {
        std::ranges::stable_sort(m_session, {}, [&](int key) { return cardIn(after, key).shuffle; });
    }
}

// What the commands do.

std::vector<Contents> Ledger::states() const
{
    const std::string &name = m_command.at(0);
    std::vector<Contents> states{m_now};
    Contents state = m_now;
    if (name == "notes") {
        topicIn(state, m_command.at(1)).notes = m_command.at(2);
    } else if (name == "create") {
        state.topics.push_back({0, m_command.at(1), newTopicNotes(m_command.at(1))});
    } else if (name == "rename") {
        topicIn(state, m_command.at(1)).name = m_command.at(2);
    } else if (name == "delete") {
        state.removeTopic(std::stoi(m_command.at(1)));
        states.push_back(state);
        state.removeCardsOf(std::stoi(m_command.at(1)));
    } else if (name == "open") {
        const int topic = std::stoi(m_command.at(1));
        if (!state.cardsOf(topic).empty()) {
            return states;
        }
        state.cards.push_back(newCard(topic));
    } else if (name == "ready" || name == "session") {
        return states;
    } else if (name == "card" || name == "remove") {
        return statesOfCardCommand();
    } else {
        state = afterStudyCommand();
    }
    states.push_back(state);
    return states;
}

std::vector<Contents> Ledger::statesOfCardCommand() const
{
    const CardCommand command(m_command);
    std::vector<Contents> states{m_now};
    Contents state = m_now;
    const std::vector<std::size_t> cards = state.cardsOf(command.topic);
    auto count = static_cast<int>(cards.size());
    if (command.count != count) {
        throw std::runtime_error("the editor counts " + std::to_string(command.count) + " cards of " +
                                 std::to_string(count));
    }
    int place = command.place;
    const bool hasCard = place >= 0;
    const std::size_t current = hasCard ? cards.at(static_cast<std::size_t>(place)) : 0;
    if (command.isRemoval || command.isBlank) {
        if (hasCard) {
            state.cards.erase(state.cards.begin() + static_cast<std::ptrdiff_t>(current));
            states.push_back(state);
            --count;
            place = std::max(place - 1, 0);
        }
    } else {
        if (!hasCard) { // what was typed becomes one
            state.cards.push_back({0, command.topic, {}, {}});
            place = count++;
        }
        Card &card = hasCard ? state.cards.at(current) : state.cards.back();
        card.front = command.front;
        card.back = command.back;
        states.push_back(state);
    }
    const bool walksOff = command.name == "next" && place + 1 >= count;
    if (command.name == "new" || walksOff || (command.isRemoval && count == 0)) {
        state.cards.push_back(newCard(command.topic));
        states.push_back(state);
    }
    return states;
}

Contents Ledger::afterStudyCommand() const
{
    const std::string &name = m_command.at(0);
    Contents state = m_now;
    if (name == "mark") {
        const int place = std::stoi(m_command.at(1)); // "3 of 120"
        if (m_command.at(1) != std::to_string(place) + " of " + std::to_string(m_session.size())) {
            throw std::runtime_error("card " + m_command.at(1) + " of a session of " +
                                     std::to_string(m_session.size()));
        }
        Card &card = cardIn(state, m_session.at(static_cast<std::size_t>(place - 1)));
        card.isMarked = !card.isMarked;
    } else if (name == "shuffle") {
        for (const int key : m_session) {
            cardIn(state, key).willBeShuffled = true;
        }
    } else if (name == "generate") {
        for (const int key : selectionIn(m_command).keys(m_now)) {
            cardIn(state, key).willBeShuffled = true;
            cardIn(state, key).willBeAsked = true;
        }
    } else if (name == "grade") {
        const std::vector<int> answers = numbersIn(m_command.at(1));
        for (std::size_t question = 0; question < answers.size(); ++question) {
            Card &card = cardIn(state, m_session.at(question));
            card.isMarked = card.isMarked || card.question[2] != answers[question];
        }
    }
    return state;
}

Card Ledger::newCard(int topic) const
{
    Card card{0, topic, m_newSides.first, m_newSides.second};
    card.isNew = true;
    return card;
}

Ledger::Selection Ledger::selectionIn(const Message &command)
{
    const std::vector<int> topics = numbersIn(command.at(1));
    return {{topics.begin(), topics.end()}, command.at(2) == "marked"};
}

std::vector<int> Ledger::Selection::keys(const Contents &contents) const
{
    std::vector<int> keys;
    for (const Card &card : contents.cards) {
        if (topics.contains(card.topic) || (withMarked && card.isMarked)) {
            keys.push_back(card.key);
        }
    }
    return keys;
}
