#pragma once

#include "store/StoreError.h"
#include "study/CardEditing.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

// Stands in for the system's: the engine waits for the disk at every single write, and
// what these tests write thousands of times need not survive a power cut.
extern "C" int fdatasync(int /*descriptor*/)
{
    return 0;
}

using Outcome = CardEditing::Outcome;

enum class Command : std::uint8_t { First, Previous, Next, Last, Add, Remove, Save };

inline constexpr std::array allCommands = {Command::First, Command::Previous, Command::Next, Command::Last,
                                           Command::Add,   Command::Remove,   Command::Save};

/// What rtfOf() made \p rtf of.
inline std::string textOf(const std::string &rtf)
{
    static const std::string head = "{\\rtf1\\ansi ";
    static const std::string tail = "\\par}";
    return rtf.empty() ? "" : rtf.substr(head.size(), rtf.size() - head.size() - tail.size());
}

/// The editor's two boxes around an editing: they hold what is typed, and what
/// the editing asks to show.
class Boxes
{
public:
    Boxes(const std::filesystem::path &subject, int topic)
        : editing(subject, cardsOfTopic(topic), topic, {rtfOf(""), rtfOf("")})
    {
        refresh();
    }

    void type(const std::string &front, const std::string &back) { m_edited = {boxOf(front), boxOf(back)}; }
    void clear() { type("", ""); }

    /// Nothing for Save.
    std::optional<Outcome> give(Command command)
    {
        try {
            const std::optional<Outcome> outcome = run(command);
            refresh();
            return outcome;
        } catch (...) {
            refresh();
            throw;
        }
    }

    /// The reason why the command failed, if it did.
    std::optional<StoreError::Reason> failureOf(Command command)
    {
        try {
            give(command);
            return std::nullopt;
        } catch (const StoreError &failure) {
            return failure.reason();
        }
    }

    void goTo(int position)
    {
        while (editing.position() < position) {
            give(Command::Next);
        }
    }

    /// "front/back".
    [[nodiscard]] std::string shown() const { return m_edited.front.plain + "/" + m_edited.back.plain; }
    [[nodiscard]] bool isBlank() const { return m_edited.isBlank(); }

    CardEditing editing;

private:
    static BoxText boxOf(const std::string &text) { return {rtfOf(text), text}; }

    std::optional<Outcome> run(Command command)
    {
        switch (command) {
        case Command::First: return editing.first(m_edited);
        case Command::Previous: return editing.previous(m_edited);
        case Command::Next: return editing.next(m_edited);
        case Command::Last: return editing.last(m_edited);
        case Command::Add: return editing.add(m_edited);
        case Command::Remove: return editing.remove();
        case Command::Save: editing.save(m_edited); break;
        }
        return std::nullopt;
    }

    void refresh()
    {
        if (m_changes != editing.changes()) {
            m_changes = editing.changes();
            type(textOf(editing.sides().front), textOf(editing.sides().back));
        }
    }

    EditedCard m_edited;
    int m_changes = 0;
};

/// A subject with two topics; the second has a card that nothing may touch.
class CardEditingTest : public testing::Test
{
protected:
    using Reason = StoreError::Reason;

    CardEditingTest()
    {
        SubjectStore::create(subject);
        topic = addTopic(subject, "Topic");
        addCards(subject, addTopic(subject, "Other"), 1);
    }
    ~CardEditingTest() override
    {
        if (std::filesystem::exists(subject)) {
            EXPECT_EQ(askOther("SELECT count(*) FROM FlashCards WHERE NIndex <> " + std::to_string(topic)), "1");
        }
    }

    /// Gives the topic one card per letter: "a/A", "b/B"...
    void addCardsNamed(const std::string &letters) const
    {
        SQLite::Database engine = otherProgram();
        for (const char letter : letters) {
            SQLite::Statement insert(engine, "INSERT INTO FlashCards (NIndex, Front, Back) VALUES (?, ?, ?)");
            insert.bind(1, topic);
            insert.bind(2, rtfOf(std::string(1, letter)));
            insert.bind(3, rtfOf(std::string(1, static_cast<char>(letter - 'a' + 'A'))));
            insert.exec();
        }
    }

    /// The topic's cards in the file, as Boxes::shown() has them.
    [[nodiscard]] std::vector<std::string> cards() const
    {
        std::vector<std::string> found;
        SQLite::Database engine = otherProgram();
        SQLite::Statement select(engine, "SELECT Front, Back FROM FlashCards WHERE NIndex = ? ORDER BY rowid");
        select.bind(1, topic);
        while (select.executeStep()) {
            found.push_back(textOf(select.getColumn(0).getString()) + "/" + textOf(select.getColumn(1).getString()));
        }
        return found;
    }

    /// A connection that knows nothing of the store: another program.
    [[nodiscard]] SQLite::Database otherProgram() const
    {
        return SQLite::Database(subject.string(), SQLite::OPEN_READWRITE);
    }
    [[nodiscard]] std::string askOther(const std::string &sql) const
    {
        return otherProgram().execAndGet(sql).getString();
    }
    /// Another program deletes the card with that front.
    void deleteInFile(const std::string &front) const
    {
        SQLite::Database engine = otherProgram();
        SQLite::Statement remove(engine, "DELETE FROM FlashCards WHERE NIndex = ? AND Front = ?");
        remove.bind(1, topic);
        remove.bind(2, rtfOf(front));
        EXPECT_EQ(remove.exec(), 1);
    }

    [[nodiscard]] bool isInFile(const std::string &card) const
    {
        const std::vector<std::string> found = cards();
        return std::find(found.begin(), found.end(), card) != found.end();
    }

    /// Puts a copy of \p file, which may be the subject itself, in the place of the subject.
    void replaceByCopyOf(const std::filesystem::path &file) const
    {
        std::filesystem::copy_file(file, folder.file("copy"));
        std::filesystem::rename(folder.file("copy"), subject);
    }

    [[nodiscard]] Boxes open() const { return {subject, topic}; }

    TestFolder folder;
    std::filesystem::path subject = folder.file("subject.crl");
    int topic = 0;
};

using Cards = std::vector<std::string>;
