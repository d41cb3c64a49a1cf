#pragma once

#include "tests/model/SubjectModel.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

inline void PrintTo(const ModelTopic &topic, std::ostream *out)
{
    *out << "\ntopic " << topic.key << ": " << topic.name << ", " << topic.notes;
}

inline void PrintTo(const ModelCard &card, std::ostream *out)
{
    const ModelQuestion &question = card.question;
    *out << "\ncard " << card.key << " of " << card.topic << ": " << card.front << '/' << card.back
         << (card.marked ? ", marked" : "") << ", key " << card.shuffle << ", "
         << (question.isTrueFalse ? "true or false" : "multiple choice") << ", "
         << (question.isFront ? "front" : "back") << ", " << question.answer << ", " << question.wrong1 << ", "
         << question.wrong2;
}

/// The file by plain SQL: what stands in it, and another program that writes to it.
class StoredSubject
{
public:
    explicit StoredSubject(const std::filesystem::path &file)
        : m_engine(file.string(), SQLite::OPEN_READWRITE)
        , m_topics(m_engine, "SELECT \"Index\", Name, Notes FROM Topics ORDER BY rowid")
        , m_cards(m_engine, "SELECT \"Index\", NIndex, Front, Back, Marked, Shuffle, isTrueFalse, isFront, Answer, "
                            "Wrong1, Wrong2 FROM FlashCards ORDER BY rowid")
    {
    }

    [[nodiscard]] std::vector<ModelTopic> topics()
    {
        std::vector<ModelTopic> all;
        while (m_topics.executeStep()) {
            all.push_back({m_topics.getColumn(0), m_topics.getColumn(1), m_topics.getColumn(2)});
        }
        m_topics.reset();
        return all;
    }

    [[nodiscard]] std::vector<ModelCard> cards()
    {
        std::vector<ModelCard> all;
        while (m_cards.executeStep()) {
            all.push_back({.key = m_cards.getColumn(0),
                           .topic = m_cards.getColumn(1),
                           .front = m_cards.getColumn(2),
                           .back = m_cards.getColumn(3),
                           .marked = m_cards.getColumn(4).getInt() != 0,
                           .shuffle = static_cast<float>(m_cards.getColumn(5).getDouble()),
                           .question = {.isTrueFalse = m_cards.getColumn(6).getInt() != 0,
                                        .isFront = m_cards.getColumn(7).getInt() != 0,
                                        .answer = m_cards.getColumn(8),
                                        .wrong1 = m_cards.getColumn(9),
                                        .wrong2 = m_cards.getColumn(10)}});
        }
        m_cards.reset();
        return all;
    }

    // Another program. Its statements fail if somebody holds a lock.

    void insertTopic(const std::string &name, const std::string &notes)
    {
        SQLite::Statement insert(m_engine, "INSERT INTO Topics (Name, Notes) VALUES (?, ?)");
        insert.bind(1, name);
        insert.bind(2, notes);
        insert.exec();
    }
    void insertCard(const ModelCard &card)
    {
        SQLite::Statement insert(m_engine, "INSERT INTO FlashCards (NIndex, Front, Back, Marked) VALUES (?, ?, ?, ?)");
        insert.bind(1, card.topic);
        insert.bind(2, card.front);
        insert.bind(3, card.back);
        insert.bind(4, card.marked ? 1 : 0);
        insert.exec();
    }
    void changeCard(const ModelCard &card)
    {
        SQLite::Statement update(m_engine, "UPDATE FlashCards SET Front = ?, Back = ?, Marked = ? WHERE \"Index\" = ?");
        update.bind(1, card.front);
        update.bind(2, card.back);
        update.bind(3, card.marked ? 1 : 0);
        update.bind(4, card.key);
        update.exec();
    }
    void deleteCard(int card) { m_engine.exec("DELETE FROM FlashCards WHERE \"Index\" = " + std::to_string(card)); }

    /// Makes a whole subject at once.
    void insert(const SubjectModel &subject)
    {
        SQLite::Transaction whole(m_engine);
        for (const ModelTopic &topic : subject.topics) {
            insertTopic(topic.name, topic.notes);
        }
        for (const ModelCard &card : subject.cards) {
            insertCard(card);
        }
        whole.commit();
    }

private:
    SQLite::Database m_engine;
    SQLite::Statement m_topics;
    SQLite::Statement m_cards;
};
