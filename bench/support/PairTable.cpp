#include "bench/support/PairTable.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <utility>

namespace {

constexpr int widthOfThing = 48;
constexpr int widthOfFloor = 32;

struct BoundName
{
    const char *inResults;
    const char *format;
};

/// In the order of Bound::Kind.
constexpr std::array<BoundName, 4> boundNames{{
    {nullptr, ""},
    {"ratio", "%.2f times"},
    {"value", "%g"},
    {"difference", "%g more"},
}};

const BoundName &nameOf(const Bound &bound)
{
    return boundNames.at(static_cast<std::size_t>(bound.kind));
}

bool holds(const Bound &bound, double ours, double floor)
{
    switch (bound.kind) {
    case Bound::Kind::None: return true;
    case Bound::Kind::Ratio: return ours <= bound.limit * floor;
    case Bound::Kind::Value: return ours <= bound.limit;
    case Bound::Kind::Difference: return ours - floor <= bound.limit;
    }
    return false;
}

std::string number(const char *format, double value)
{
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), format, value);
    return text.data();
}

void tell(const QJsonObject &row)
{
    if (const char *results = std::getenv("CRAMLET_BENCH_RESULTS")) {
        std::ofstream file(results, std::ios::app);
        file << QJsonDocument(row).toJson(QJsonDocument::Compact).toStdString() << '\n';
        require(file.good(), "cannot write the results");
    }
}

} // namespace

PairTable::PairTable(std::string group, std::string unit)
    : m_group(std::move(group))
    , m_unit(std::move(unit))
{
    std::printf("\n| %-*s | %-*s | %9s | %9s | %6s | %-16s |\n", widthOfThing, (m_group + ", " + m_unit).c_str(),
                widthOfFloor, "beside", "ours", "floor", "ratio", "allowed");
    std::printf("|%s|%s|%s:|%s:|%s:|%s|\n", std::string(widthOfThing + 2, '-').c_str(),
                std::string(widthOfFloor + 2, '-').c_str(), std::string(10, '-').c_str(), std::string(10, '-').c_str(),
                std::string(7, '-').c_str(), std::string(18, '-').c_str());
    std::fflush(stdout);
}

void PairTable::row(const Pair &pair, const PairOfTimes &times, const Bound &bound)
{
    row(pair, median(times.ours), median(times.floor), bound);
}

void PairTable::row(const Pair &pair, double ours, std::optional<double> floor, const Bound &bound)
{
    const bool isBound = bound.kind != Bound::Kind::None;
    const bool isHeld = holds(bound, ours, floor.value_or(0));
    m_everyBoundHolds = m_everyBoundHolds && isHeld;

    const std::string allowed =
        isBound ? number(nameOf(bound).format, bound.limit) + (isHeld ? " ok" : " OVER") : std::string();
    std::printf("| %-*s | %-*s | %9.2f | %9s | %6s | %-16s |\n", widthOfThing, pair.thing.c_str(), widthOfFloor,
                pair.floor.c_str(), ours, floor ? number("%.2f", *floor).c_str() : "",
                floor && *floor != 0 ? number("%.2f", ours / *floor).c_str() : "", allowed.c_str());
    std::fflush(stdout);

    using Value = QJsonValue;
    tell({
        {QStringLiteral("group"), QString::fromStdString(m_group)},
        {QStringLiteral("thing"), QString::fromStdString(pair.thing)},
        {QStringLiteral("beside"), QString::fromStdString(pair.floor)},
        {QStringLiteral("unit"), QString::fromStdString(m_unit)},
        {QStringLiteral("ours"), ours},
        {QStringLiteral("floor"), floor ? Value(*floor) : Value()},
        {QStringLiteral("bound"), isBound ? Value(QLatin1String(nameOf(bound).inResults)) : Value()},
        {QStringLiteral("limit"), isBound ? Value(bound.limit) : Value()},
        {QStringLiteral("holds"), isBound ? Value(isHeld) : Value()},
    });
}
