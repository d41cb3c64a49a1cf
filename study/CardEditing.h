#pragma once

#include "store/SubjectStore.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

/// What stands in one of the editor's two boxes.
struct BoxText
{
    std::string rtf;
    std::string plain; ///< U+FFFC for a picture or object
};

/// What stands in the editor: it belongs to the current card, if there is one.
struct EditedCard
{
    BoxText front;
    BoxText back;

    /// Nothing but spaces on both sides.
    [[nodiscard]] bool isBlank() const;
};

/// The two sides of a card as RTF.
struct CardSides
{
    std::string front;
    std::string back;

    friend bool operator==(const CardSides &, const CardSides &) = default;
};

/// The cards of one topic while they are edited: which one is in the editor, and
/// when it is stored.
///
/// A card is stored as it is left; one that is blank then is deleted. Keeps the
/// subject open, without a lock, until it is closed. Every command throws
/// StoreError; after a failure the same command can be given again. Nothing that
/// was typed is lost by one: either the editor keeps showing the card that it
/// showed, or (changes() tells) what it showed has been stored or deleted.
///
/// There may be no current card: the only one was blank and is gone, another
/// program deleted it or replaced the file, or the card beside a deleted one could
/// not be read. Then what is typed becomes a new card when it is left, and the
/// commands go on from the gap.
///
/// A damaged card is StoreError::Damaged, and the commands pass over it: what was typed has been
/// stored, and the editor shows the card behind it, if there is one that can be read.
///
/// No card is added to a topic that another program has deleted: a command that would
/// add one is StoreError::RowGone, every time, and the text stays in the editor.
///
/// If the file was moved, deleted or replaced, the next command goes on with what
/// stands at the path then; until something does, it throws StoreError::NotFound.
class CardEditing
{
public:
    /// What a command came to.
    enum class Outcome : std::uint8_t {
        Moved,   ///< another card is in the editor
        Added,   ///< a new card is in the editor
        AtFirst, ///< there is no card before this one
        AtLast,  ///< there is no card after this one
    };

    /// Opens the cards that \p cardQuery selects, a whole statement, on the first that can be read.
    /// Without any a card is added. New cards get \p topic as their topic and \p blank as their sides.
    CardEditing(const std::filesystem::path &subject, std::string cardQuery, int topic, CardSides blank);

    [[nodiscard]] int position() const; ///< of the current card, from 0; -1 without one
    [[nodiscard]] int count() const;
    /// What the editor is to show; both sides empty without a current card.
    [[nodiscard]] const CardSides &sides() const;
    /// Grows whenever the editor is to show sides() afresh, also when a command has failed on the way.
    [[nodiscard]] int changes() const;

    // The commands. \p edited is what stands in the editor.
    Outcome first(const EditedCard &edited);    ///< stores, then looks whether there is a card before
    Outcome previous(const EditedCard &edited); ///< looks first; at the first card nothing is stored
    Outcome next(const EditedCard &edited);     ///< stores; behind the last card adds one
    Outcome last(const EditedCard &edited);     ///< looks first; at the last card nothing is stored
    Outcome add(const EditedCard &edited);      ///< stores, and adds a card
    /// Deletes the current card and goes to the one before it; the last one left makes room for a new one.
    Outcome remove();

    /// Stores what stands in the editor.
    void save(const EditedCard &edited);

    /// Closes the subject. Nothing else may be asked then.
    void close() noexcept;

private:
    // Steps of the commands. A failed one has changed nothing, except that store() may have
    // deleted a blank card before it fails.
    template <typename Command>
    auto run(Command command);
    void store(const EditedCard &edited);
    void deleteCurrent();
    void addBlank();
    void addCard(CardSides sides);
    void requireTopic();
    void show(int position);
    void showFrom(int position, int step);
    void showFirst();

    void followFile();
    void readAnew() noexcept;
    void adopt(CardSet cards, bool holdsCurrent) noexcept;

    std::filesystem::path m_subject;
    std::string m_query;
    int m_topic;
    CardSides m_blank;
    SubjectStore m_store;
    CardSet m_cards;           ///< which of its rows is current means nothing: each step goes to its row first
    std::optional<int> m_card; ///< key of the current card
    int m_place = 0;           ///< number of rows before the current card, or before the gap if there is none
    CardSides m_sides;         ///< of the current card, as last read or written
    int m_changes = 0;
};
