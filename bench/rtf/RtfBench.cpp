// Reading and writing RTF beside the least that any way of doing it takes. Memory, and long texts of growing size, are
// measured in processes of their own. Exits with 1 if a bound is broken.

#include "bench/rtf/BareDocument.h"
#include "bench/rtf/OwnProcess.h"
#include "bench/support/Growth.h"
#include "bench/support/Measure.h"
#include "bench/support/PairTable.h"
#include "bench/support/RtfSamples.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfTokenizer.h"
#include "platform/rtf/RtfWriter.h"

#include <QGuiApplication>
#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr double readingBesideInserting = 1.3;
constexpr double writingBesideReading = 1.0;
constexpr double microsecondsMoreThanPlain = 60; // a card
constexpr double memoryOfAnything = 64;          // MiB
constexpr double memoryPerByte = 40;

constexpr double mebibyte = 1024 * 1024;
constexpr std::size_t longText = 10'000'000; // bytes
constexpr int rounds = 7;
constexpr int manyCards = 10'000;

// What a process of its own may do once; the hostile texts are further things to read.
constexpr auto readingNotes = "reading notes";
constexpr auto writingNotes = "writing notes";
constexpr auto readingCards = "reading cards in one text";
constexpr auto writingCards = "writing cards in one text";
constexpr auto insertingCards = "inserting the same runs";

int roundsFor(int cards)
{
    return std::clamp(100'000 / cards, 3, 15);
}

QString textOfBlocks(const QTextDocument &document)
{
    QString text;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        text += block.text();
        text += QLatin1Char('\n');
    }
    text.chop(1);
    return text;
}

/// One text and all that is done with it, each in microseconds.
class LongText
{
public:
    explicit LongText(std::string rtf)
        : m_rtf(std::move(rtf))
        , m_document(documentOf(m_rtf))
        , m_bare(*m_document)
    {
        QTextDocument made;
        m_bare.insertInto(made);
        require(writeRtf(made) == writeRtf(*m_document), "the floor makes another document");
        require(textOfBlocks(*m_document) == m_document->toPlainText(), "the floor makes another plain text");
    }

    [[nodiscard]] double read() const
    {
        QTextDocument made;
        return microseconds([&] { static_cast<void>(readRtf(m_rtf, made)); });
    }

    [[nodiscard]] double insert() const
    {
        QTextDocument made;
        return microseconds([&] { m_bare.insertInto(made); });
    }

    [[nodiscard]] double tokenize() const
    {
        std::size_t tokens = 0;
        const double time = microseconds([&] {
            RtfTokenizer tokenizer(m_rtf);
            while (tokenizer.next().kind != RtfToken::Kind::End) {
                ++tokens;
            }
        });
        require(tokens > 0, "there are no tokens");
        return time;
    }

    [[nodiscard]] double write() const
    {
        std::string written;
        const double time = microseconds([&] { written = writeRtf(*m_document); });
        require(!written.empty(), "nothing is written");
        return time;
    }

    [[nodiscard]] double extract() const
    {
        QString text;
        return microseconds([&] { text = m_document->toPlainText(); });
    }

    [[nodiscard]] double walk() const
    {
        QString text;
        return microseconds([&] { text = textOfBlocks(*m_document); });
    }

private:
    static std::unique_ptr<QTextDocument> documentOf(const std::string &rtf)
    {
        auto document = std::make_unique<QTextDocument>();
        require(!readRtf(rtf, *document).has_value(), "the text is no good RTF");
        return document;
    }

    std::string m_rtf;
    std::unique_ptr<QTextDocument> m_document;
    BareDocument m_bare;
};

/// Many small texts, one after the other in one document; what is done with all of them, in microseconds.
class ManyCards
{
public:
    explicit ManyCards(int count)
        : m_sides(cardSides(count))
    {
        for (const std::string &side : m_sides) {
            require(!readRtf(side, m_document).has_value(), "a card is no good RTF");
            m_plain.push_back(m_document.toPlainText());
        }
    }

    [[nodiscard]] double read()
    {
        const double time = microseconds([this] {
            for (const std::string &side : m_sides) {
                static_cast<void>(readRtf(side, m_document));
            }
        });
        require(m_document.toPlainText() == m_plain.back(), "a card is not read");
        return time;
    }

    [[nodiscard]] double setPlain()
    {
        const double time = microseconds([this] {
            for (const QString &side : m_plain) {
                m_plainDocument.setPlainText(side);
            }
        });
        require(m_plainDocument.toPlainText() == m_plain.back(), "the floor shows another text");
        return time;
    }

    /// Reads each before, for nothing.
    [[nodiscard]] double write()
    {
        double time = 0;
        for (const std::string &side : m_sides) {
            static_cast<void>(readRtf(side, m_document));
            std::string written;
            time += microseconds([&] { written = writeRtf(m_document); });
            require(!written.empty(), "a card is not written");
        }
        return time;
    }

private:
    std::vector<std::string> m_sides;
    std::vector<QString> m_plain;
    QTextDocument m_document;
    QTextDocument m_plainDocument;
};

PairOfTimes dividedBy(double divisor, PairOfTimes times)
{
    for (std::vector<double> *side : {&times.ours, &times.floor}) {
        std::ranges::transform(*side, side->begin(), [divisor](double time) { return time / divisor; });
    }
    return times;
}

bool benchNotes()
{
    const LongText notes(longNotes(longText));
    const auto read = [&] { return notes.read(); };
    PairTable table("RTF notes of 10 MB", "ms");
    const auto row = [&](const Pair &pair, const auto &ours, const auto &floor, const Bound &bound) {
        table.row(pair, dividedBy(1000, inTurn(rounds, ours, floor)), bound);
    };
    row(
        {"reading", "inserting the same runs"}, read, [&] { return notes.insert(); },
        timesFloor(readingBesideInserting));
    row({"reading", "the bare tokenizer"}, read, [&] { return notes.tokenize(); }, {});
    row(
        {"writing", "reading"}, [&] { return notes.write(); }, read, timesFloor(writingBesideReading));
    row(
        {"plain text", "a walk of the blocks"}, [&] { return notes.extract(); }, [&] { return notes.walk(); }, {});
    return table.everyBoundHolds();
}

bool benchCards()
{
    ManyCards cards(manyCards);
    const auto read = [&] { return cards.read(); };
    PairTable table("RTF cards of 300 bytes", "us a card");
    table.row({"reading", "setting the same plain text"},
              dividedBy(manyCards, inTurn(rounds, read, [&] { return cards.setPlain(); })),
              moreThanFloor(microsecondsMoreThanPlain));
    table.row({"writing", "reading"},
              dividedBy(manyCards, inTurn(
                                       rounds, [&] { return cards.write(); }, read)),
              timesFloor(writingBesideReading));
    return table.everyBoundHolds();
}

void add(Growth &growth, const Pair &pair, int cards, const PairOfTimes &times)
{
    growth.add(pair, cards, median(times.ours), median(times.floor));
}

Cost costOnItsOwn(const std::string &action, std::size_t size)
{
    const std::optional<Cost> cost = costOfChild({"--measure", action, std::to_string(size)});
    require(cost.has_value(), "a process to measure in has failed");
    return *cost;
}

bool benchGrowth()
{
    Growth growth;
    for (const int count : {1'000, 10'000, 100'000}) {
        const int turns = roundsFor(count);
        const auto once = [count](const char *action) {
            return [action, count] { return costOnItsOwn(action, static_cast<std::size_t>(count)).milliseconds; };
        };
        add(growth, {readingCards, insertingCards}, count, inTurn(turns, once(readingCards), once(insertingCards)));
        add(growth, {writingCards, readingCards}, count, inTurn(turns, once(writingCards), once(readingCards)));

        ManyCards cards(count);
        const auto read = [&] { return cards.read(); };
        add(growth, {"reading one card after the other", "setting the same plain texts"}, count,
            inTurn(turns, read, [&] { return cards.setPlain(); }));
        add(growth, {"writing one card after the other", "reading them"}, count,
            inTurn(
                turns, [&] { return cards.write(); }, read));
    }
    PairTable table("RTF, 1,000 to 100,000 cards", "exponent");
    growth.addRows(table);
    return table.everyBoundHolds();
}

/// At the peak, beyond what was there before.
bool benchMemory()
{
    const Bound bound = atMost(memoryOfAnything + memoryPerByte * static_cast<double>(longText) / mebibyte);
    PairTable table("memory for RTF of 10 MB", "MiB");
    const auto row = [&](const std::string &action) {
        table.row({action, ""}, costOnItsOwn(action, longText).mebibytes, std::nullopt, bound);
    };
    row(readingNotes);
    row(writingNotes);
    for (const HostileKind &kind : hostileKinds()) {
        row(kind.name);
    }
    return table.everyBoundHolds();
}

/// The text that \p action is about: of \p size cards, or else of \p size bytes.
std::optional<std::string> textOf(std::string_view action, std::size_t size)
{
    if (action == readingNotes || action == writingNotes) {
        return longNotes(size);
    }
    if (action == readingCards || action == writingCards || action == insertingCards) {
        return cardsInOneText(static_cast<int>(size));
    }
    const auto kinds = hostileKinds();
    const auto kind = std::ranges::find(kinds, action, &HostileKind::name);
    return kind == kinds.end() ? std::nullopt : std::optional(kind->text(size));
}

/// What the program does when it is its own child: one thing, once.
int measure(std::string_view action, std::size_t size)
{
    const std::optional<std::string> rtf = textOf(action, size);
    require(rtf.has_value(), "there is no such thing to measure");
    QTextDocument document;
    Cost cost = costOf([&] { static_cast<void>(readRtf(*rtf, document)); });
    if (action == insertingCards) {
        const BareDocument bare(document);
        QTextDocument made;
        cost = costOf([&] { bare.insertInto(made); });
        require(made.characterCount() == document.characterCount(), "the floor makes another document");
    } else if (action == writingNotes || action == writingCards) {
        std::string written;
        cost = costOf([&] { written = writeRtf(document); });
        require(!written.empty(), "nothing is written");
    }
    report(cost);
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    if (arguments.size() == 3 && arguments[0] == "--measure") {
        return measure(arguments[1], std::strtoull(argv[3], nullptr, 10));
    }
    require(arguments.empty(), "usage: bench_rtf");

    bool everyBoundHolds = true;
    for (const auto bench : {benchNotes, benchCards, benchGrowth, benchMemory}) {
        everyBoundHolds = bench() && everyBoundHolds;
    }
    return everyBoundHolds ? EXIT_SUCCESS : EXIT_FAILURE;
}
