#include "tests/damage/Damage.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <random>

namespace {

constexpr std::array<const char *, 8> injuryNames{
    "cut to", "a flipped bit in", "zeros for", "ones for", "garbage for", "a swap of", "a copy over", "a repeated tail",
};

class Choice
{
public:
    Choice(unsigned seed, int number)
    {
        std::seed_seq both{seed, static_cast<unsigned>(number)};
        m_random.seed(both);
    }

    std::size_t below(std::size_t bound) { return bound == 0 ? 0 : m_random() % bound; }
    unsigned any() { return static_cast<unsigned>(m_random()); }

private:
    std::mt19937 m_random;
};

constexpr std::size_t headerSize = 100;
constexpr std::size_t pageHeadSize = 48; // its header and the first pointers to its cells

std::size_t placeIn(Choice &choice, std::size_t size, std::size_t pageSize)
{
    switch (choice.below(4)) {
    case 0: return choice.below(std::min(size, headerSize));
    case 1: return std::min(size - 1, choice.below(size / pageSize) * pageSize + choice.below(pageHeadSize));
    default: return choice.below(size);
    }
}

} // namespace

std::string Damage::appliedTo(std::string bytes) const
{
    const std::size_t begin = std::min(at, bytes.size());
    const std::size_t from = std::min(other, bytes.size());
    const std::size_t count = std::min(length, bytes.size() - begin);
    const std::size_t both = std::min(count, bytes.size() - from);
    const auto first = std::next(bytes.begin(), static_cast<std::ptrdiff_t>(begin));
    const auto last = std::next(first, static_cast<std::ptrdiff_t>(count));
    switch (injury) {
    case Injury::Cut: bytes.resize(begin); break;
    case Injury::FlippedBit:
        std::transform(first, last, first, [this](char byte) { return static_cast<char>(byte ^ (1 << seed % 8)); });
        break;
    case Injury::Zeros: std::fill(first, last, '\0'); break;
    case Injury::Ones: std::fill(first, last, '\xff'); break;
    case Injury::Garbage: {
        std::mt19937 random(seed);
        std::generate(first, last, [&] { return static_cast<char>(random()); });
        break;
    }
    case Injury::Swap: {
        const std::string one = bytes.substr(begin, both);
        const std::string two = bytes.substr(from, both);
        bytes.replace(begin, both, two);
        bytes.replace(from, both, one);
        break;
    }
    case Injury::Copy: bytes.replace(begin, both, bytes.substr(from, both)); break;
    case Injury::RepeatedTail: bytes += bytes.substr(bytes.size() - std::min(length, bytes.size())); break;
    }
    return bytes;
}

std::ostream &operator<<(std::ostream &out, const Damage &damage)
{
    out << injuryNames.at(static_cast<std::size_t>(damage.injury));
    switch (damage.injury) {
    case Injury::Cut: return out << " " << damage.at << " bytes";
    case Injury::RepeatedTail: return out << " of " << damage.length << " bytes";
    case Injury::Swap:
    case Injury::Copy: out << " " << damage.length << " bytes at " << damage.at << " and " << damage.other; break;
    case Injury::FlippedBit:
    case Injury::Zeros:
    case Injury::Ones:
    case Injury::Garbage: out << " " << damage.length << " bytes at " << damage.at; break;
    }
    return out << " (" << damage.seed << ")";
}

Damage damageOf(unsigned seed, int number, std::size_t size, std::size_t pageSize)
{
    Choice choice(seed, number);
    Damage damage{.injury = static_cast<Injury>(choice.below(injuryNames.size()))};
    damage.seed = choice.any();
    const bool wholePages = choice.below(3) == 0;
    if (wholePages) {
        const std::size_t pages = std::max<std::size_t>(size / pageSize, 1);
        damage.at = choice.below(pages) * pageSize;
        damage.other = choice.below(pages) * pageSize;
        damage.length = pageSize;
    } else {
        damage.at = placeIn(choice, size, pageSize);
        damage.other = placeIn(choice, size, pageSize);
        damage.length = 1 + choice.below(choice.below(3) == 0 ? pageSize : 8);
    }
    return damage;
}

std::vector<Damage> cutsOf(std::size_t size, std::size_t pageSize)
{
    std::vector<Damage> cuts;
    const auto cut = [&](std::size_t length) {
        if (length < size) {
            cuts.push_back({.injury = Injury::Cut, .at = length});
        }
    };
    for (std::size_t length = 0; length < 200; ++length) {
        cut(length);
    }
    for (std::size_t bound = pageSize; bound <= size; bound += pageSize) {
        cut(bound - 1);
        cut(bound);
        cut(bound + 1);
        cut(bound + pageSize / 3 * 2 + 1);
    }
    return cuts;
}
