#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

/// What becomes of some bytes of a file.
enum class Injury : std::uint8_t {
    Cut,          ///< only the first `at` bytes are left
    FlippedBit,   ///< in each of `length` bytes from `at` the bit number `seed` % 8
    Zeros,        ///< instead of `length` bytes from `at`
    Ones,         ///< the same, all bits set
    Garbage,      ///< the same, seeded by `seed`
    Swap,         ///< of the `length` bytes at `at` and those at `other`
    Copy,         ///< of the `length` bytes at `other` over those at `at`
    RepeatedTail, ///< the last `length` bytes come twice
};

/// A damage of a file's bytes. Ranges that leave the file end with it.
struct Damage
{
    Injury injury;
    std::size_t at = 0;
    std::size_t length = 0;
    std::size_t other = 0;
    unsigned seed = 0;

    [[nodiscard]] std::string appliedTo(std::string bytes) const;

    friend bool operator==(const Damage &, const Damage &) = default;
};

std::ostream &operator<<(std::ostream &out, const Damage &damage);

/// Damage \p number of the list that \p seed stands for, of a file of \p size bytes in pages of
/// \p pageSize. A quarter each is to the file's header and to the heads of its pages.
[[nodiscard]] Damage damageOf(unsigned seed, int number, std::size_t size, std::size_t pageSize);

/// Cuts of a file of \p size bytes: to every length below 200, to the bounds of its pages, to a byte
/// less and more than those, and to odd lengths in between.
[[nodiscard]] std::vector<Damage> cutsOf(std::size_t size, std::size_t pageSize);
