// Times reading and writing RTF in pairs with the least that any way of doing it
// takes. All sides of a comparison run in turn, so that a busy machine slows all
// of them; the tables show medians. Growth and memory are measured in processes
// of their own. Exits with 1 if a bound is broken.

#include "bench/rtf/BareDocument.h"
#include "bench/rtf/OwnProcess.h"
#include "bench/rtf/RtfSamples.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfTokenizer.h"
#include "platform/rtf/RtfWriter.h"

#include <QGuiApplication>
#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

// The bounds.
constexpr double readingBesideInserting = 1.3;
constexpr double writingBesideReading = 1.0;
constexpr double microsecondsMoreThanPlain = 60; // a card
constexpr double largestExponent = 1.15;         // of the time over the size
constexpr double memoryOfAnything = 64;          // MiB
constexpr double memoryPerByte = 40;

constexpr double mebibyte = 1024 * 1024;
constexpr std::size_t million = 1'000'000;

struct Scale
{
    int rounds = 7;
    std::size_t notes = 10 * million; ///< bytes
    int cards = 10'000;
    std::vector<std::size_t> growth = {1 * million, 10 * million, 40 * million};
    int roundsOfGrowth = 3;
    std::size_t hostile = 10 * million;
};

const Scale quickScale{3, million, 2'000, {million / 4, million, 4 * million}, 1, million};

bool everyBoundHolds = true;

/// The last column: what the bound is and whether it holds.
std::string verdict(double value, std::optional<double> bound)
{
    if (!bound) {
        return "";
    }
    const bool holds = value <= *bound;
    everyBoundHolds = everyBoundHolds && holds;
    char text[40];
    std::snprintf(text, sizeof text, "%.2f %s", *bound, holds ? "holds" : "BROKEN");
    return text;
}

void require(bool holds, const char *what)
{
    if (holds) {
        return;
    }
    std::fprintf(stderr, "%s\n", what);
    std::exit(EXIT_FAILURE);
}

double median(std::vector<double> values)
{
    std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
    return values[values.size() / 2];
}

struct Side
{
    std::function<void()> prepare; ///< not timed
    std::function<void()> run;
};

double microseconds(const Side &side)
{
    side.prepare();
    const auto start = std::chrono::steady_clock::now();
    side.run();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

/// The medians of \p sides, which run in turn after one round for nothing.
std::vector<double> compare(const std::vector<Side> &sides, int rounds)
{
    std::vector<std::vector<double>> times(sides.size());
    for (int round = -1; round < rounds; ++round) {
        for (std::size_t turn = 0; turn < sides.size(); ++turn) {
            const std::size_t side = round % 2 == 0 ? turn : sides.size() - 1 - turn;
            const double time = microseconds(sides[side]);
            if (round >= 0) {
                times[side].push_back(time);
            }
        }
    }
    std::vector<double> medians;
    std::ranges::transform(times, std::back_inserter(medians), median);
    return medians;
}

void rule(std::initializer_list<int> widths)
{
    for (const int width : widths) {
        std::printf("|%s", std::string(static_cast<std::size_t>(width) + 2, '-').c_str());
    }
    std::printf("|\n");
}

void printPair(const char *thing, double rtf, double floor, std::optional<double> bound = std::nullopt)
{
    std::printf("| %-44s | %10.2f | %10.2f | %6.2f | %-12s |\n", thing, rtf, floor, rtf / floor,
                verdict(rtf / floor, bound).c_str());
    std::fflush(stdout);
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

/// Long notes: all that one does with them beside its floor, in milliseconds.
void benchNotes(const Scale &scale)
{
    const std::string rtf = longNotes(scale.notes);
    QTextDocument document;
    require(!readRtf(rtf, document).has_value(), "the notes are no good RTF");
    const BareDocument bare(document);
    std::unique_ptr<QTextDocument> made;
    const auto fresh = [&] { made = std::make_unique<QTextDocument>(); };
    const auto nothing = [] {};
    fresh();
    bare.insertInto(*made);
    require(writeRtf(*made) == writeRtf(document), "the floor makes another document");

    std::size_t tokens = 0;
    std::size_t written = 0;
    const qsizetype length = document.toPlainText().size();
    qsizetype extracted = 0;
    const Side read{fresh, [&] { static_cast<void>(readRtf(rtf, *made)); }};
    const Side insert{fresh, [&] { bare.insertInto(*made); }};
    const Side tokenize{nothing, [&] {
                            RtfTokenizer tokenizer(rtf);
                            while (tokenizer.next().kind != RtfToken::Kind::End) {
                                ++tokens;
                            }
                        }};
    const Side write{nothing, [&] { written = writeRtf(document).size(); }};
    const Side plain{nothing, [&] { extracted = document.toPlainText().size(); }};
    const Side walk{nothing, [&] { extracted = textOfBlocks(document).size(); }};

    std::printf("Notes of %.1f MB: %d runs, %d paragraphs\n\n", static_cast<double>(rtf.size()) / million, bare.runs(),
                bare.paragraphs());
    std::printf("| %-44s | %10s | %10s | %6s | %-12s |\n", "milliseconds", "rtf", "floor", "ratio", "bound");
    rule({44, 10, 10, 6, 12});
    const std::vector<double> reading = compare({read, insert, tokenize, write}, scale.rounds);
    const std::vector<double> extracting = compare({plain, walk}, scale.rounds);
    printPair("reading beside inserting the same runs", reading[0] / 1000, reading[1] / 1000, readingBesideInserting);
    printPair("reading beside the bare tokenizer", reading[0] / 1000, reading[2] / 1000);
    printPair("writing beside reading", reading[3] / 1000, reading[0] / 1000, writingBesideReading);
    printPair("plain text beside a walk of the blocks", extracting[0] / 1000, extracting[1] / 1000);
    require(tokens > 0 && written > 0 && extracted == length, "a text is not all there");
}

/// Many small texts in turn in one document, in microseconds a text.
void benchCards(const Scale &scale)
{
    const std::vector<std::string> sides = cardSides(scale.cards);
    QTextDocument document;
    QTextDocument plainDocument;
    std::vector<QString> plain;
    std::size_t bytes = 0;
    for (const std::string &side : sides) {
        require(!readRtf(side, document).has_value(), "a card is no good RTF");
        plain.push_back(document.toPlainText());
        bytes += side.size();
    }
    const auto nothing = [] {};
    const Side read{nothing, [&] {
                        for (const std::string &side : sides) {
                            static_cast<void>(readRtf(side, document));
                        }
                    }};
    const Side set{nothing, [&] {
                       for (const QString &side : plain) {
                           plainDocument.setPlainText(side);
                       }
                   }};
    std::vector<double> times = compare({read, set}, scale.rounds);
    std::ranges::transform(times, times.begin(), [&](double time) { return time / scale.cards; });
    std::printf("\n%d cards of %zu bytes, one after the other in one document\n\n", scale.cards, bytes / sides.size());
    std::printf("| %-44s | %10s | %10s | %6s | %-12s |\n", "microseconds a card", "rtf", "plain", "more", "bound");
    rule({44, 10, 10, 6, 12});
    const double more = times[0] - times[1];
    std::printf("| %-44s | %10.2f | %10.2f | %6.2f | %-12s |\n", "reading beside setting the same plain text", times[0],
                times[1], more, verdict(more, microsecondsMoreThanPlain).c_str());
    std::fflush(stdout);
}

/// The exponent of a power law through the points, by least squares of logarithms.
double exponent(const std::vector<double> &sizes, const std::vector<double> &values)
{
    double meanX = 0;
    double meanY = 0;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        meanX += std::log(sizes[i]) / static_cast<double>(sizes.size());
        meanY += std::log(values[i]) / static_cast<double>(sizes.size());
    }
    double xx = 0;
    double xy = 0;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        const double x = std::log(sizes[i]) - meanX;
        xx += x * x;
        xy += x * (std::log(values[i]) - meanY);
    }
    return xy / xx;
}

Cost medianCost(const Scale &scale, const std::string &action, std::size_t bytes)
{
    std::vector<double> times;
    std::vector<double> memory;
    for (int round = 0; round < scale.roundsOfGrowth; ++round) {
        const std::optional<Cost> cost = costOfChild({"--measure", action, std::to_string(bytes)});
        require(cost.has_value(), "a process to measure in has failed");
        times.push_back(cost->milliseconds);
        memory.push_back(cost->mebibytes);
    }
    return {median(times), median(memory)};
}

/// How time and memory grow with the size of the notes.
void benchGrowth(const Scale &scale)
{
    std::printf("\nNotes of growing size\n\n");
    std::printf("| %-16s | %8s | %10s | %10s | %12s | %12s | %-12s |\n", "", "MB", "ms", "ms a MB", "peak MiB",
                "MiB a MB", "bound");
    rule({16, 8, 10, 10, 12, 12, 12});
    for (const std::string action : {"reading", "writing"}) {
        std::vector<double> sizes;
        std::vector<double> times;
        for (const std::size_t bytes : scale.growth) {
            const Cost cost = medianCost(scale, action, bytes);
            const double size = static_cast<double>(bytes) / million;
            sizes.push_back(size);
            times.push_back(cost.milliseconds);
            std::printf("| %-16s | %8.2f | %10.1f | %10.2f | %12.1f | %12.2f | %-12s |\n", action.c_str(), size,
                        cost.milliseconds, cost.milliseconds / size, cost.mebibytes, cost.mebibytes / size, "");
            std::fflush(stdout);
        }
        const double power = exponent(sizes, times);
        std::printf("| %-16s | %8s | %10.2f | %10s | %12s | %12s | %-12s |\n", (action + " ~ size^").c_str(), "", power,
                    "", "", "", verdict(power, largestExponent).c_str());
        std::fflush(stdout);
    }
}

/// Memory at the peak of reading what is made to take much of it.
void benchHostile(const Scale &scale)
{
    const double bound = memoryOfAnything + memoryPerByte * static_cast<double>(scale.hostile) / mebibyte;
    std::printf("\nReading hostile texts of %.1f MB\n\n", static_cast<double>(scale.hostile) / million);
    std::printf("| %-30s | %10s | %10s | %14s |\n", "of", "ms", "peak MiB", "bound");
    rule({30, 10, 10, 14});
    for (const HostileKind &kind : hostileKinds()) {
        const std::optional<Cost> cost = costOfChild({"--measure", kind.name, std::to_string(scale.hostile)});
        if (!cost) {
            everyBoundHolds = false;
            std::printf("| %-30s | %10s | %10s | %14s |\n", kind.name, "", "", "FAILED");
            continue;
        }
        std::printf("| %-30s | %10.1f | %10.1f | %14s |\n", kind.name, cost->milliseconds, cost->mebibytes,
                    verdict(cost->mebibytes, bound).c_str());
        std::fflush(stdout);
    }
}

/// What the program does when it is its own child: one thing, once.
int measure(std::string_view action, std::size_t bytes)
{
    QTextDocument document;
    if (action == "reading" || action == "writing") {
        const std::string rtf = longNotes(bytes);
        const Cost reading = costOf([&] { static_cast<void>(readRtf(rtf, document)); });
        if (action == "reading") {
            report(reading);
            return EXIT_SUCCESS;
        }
        std::string written;
        report(costOf([&] { written = writeRtf(document); }));
        return written.empty() ? EXIT_FAILURE : EXIT_SUCCESS;
    }
    for (const HostileKind &kind : hostileKinds()) {
        if (action == kind.name) {
            const std::string rtf = kind.text(bytes);
            report(costOf([&] { static_cast<void>(readRtf(rtf, document)); }));
            return EXIT_SUCCESS;
        }
    }
    return EXIT_FAILURE;
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
    const bool isQuick = arguments.size() == 1 && arguments[0] == "--quick";
    require(arguments.empty() || isQuick, "usage: bench_rtf [--quick]");

    const Scale scale = isQuick ? quickScale : Scale{};
    benchNotes(scale);
    benchCards(scale);
    benchGrowth(scale);
    benchHostile(scale);
    return everyBoundHolds ? EXIT_SUCCESS : EXIT_FAILURE;
}
