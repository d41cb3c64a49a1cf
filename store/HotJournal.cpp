#include "store/HotJournal.h"

#include <algorithm>
#include <fstream>
#include <optional>

namespace {

constexpr std::array<unsigned char, 8> magic{0xd9, 0xd5, 0x05, 0xf9, 0x20, 0xa1, 0x63, 0xd7};
constexpr std::size_t headerSize = 28;

template <std::size_t size>
std::uint32_t numberAt(const std::array<unsigned char, size> &bytes, std::size_t at)
{
    std::uint32_t number = 0;
    for (std::size_t byte = at; byte < at + 4; ++byte) {
        number = number << 8 | bytes.at(byte);
    }
    return number;
}

template <std::size_t size>
bool readAt(std::ifstream &file, std::uint64_t at, std::array<unsigned char, size> &bytes)
{
    file.clear();
    file.seekg(static_cast<std::streamoff>(at));
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): what a stream reads are chars
    return static_cast<bool>(file.read(reinterpret_cast<char *>(bytes.data()), size));
}

/// In pages. A program that does not keep the number up to date leaves the two counters different.
std::optional<std::uint32_t> lengthIn(const DatabaseHeader &header)
{
    const std::uint32_t length = numberAt(header, 28);
    return length != 0 && numberAt(header, 24) == numberAt(header, 92) ? std::optional(length) : std::nullopt;
}

/// The database's first page as it was, if the journal holds it: every part of it begins with a header.
std::optional<DatabaseHeader> headerBefore(std::ifstream &journal, std::uint32_t sectorSize, std::uint32_t pageSize)
{
    const std::uint64_t recordSize = std::uint64_t{pageSize} + 8;
    std::array<unsigned char, headerSize> part{};
    for (std::uint64_t at = 0; readAt(journal, at, part) && std::equal(magic.begin(), magic.end(), part.begin());) {
        const std::uint32_t records = numberAt(part, 8);
        at += sectorSize;
        for (std::uint32_t record = 0; record < records; ++record, at += recordSize) {
            std::array<unsigned char, 4> page{};
            DatabaseHeader header{};
            if (!readAt(journal, at, page)) {
                return std::nullopt;
            }
            if (numberAt(page, 0) == 1) {
                return readAt(journal, at + 4, header) ? std::optional(header) : std::nullopt;
            }
        }
        at = (at + sectorSize - 1) / sectorSize * sectorSize;
    }
    return std::nullopt;
}

} // namespace

bool restoresTrueLength(const std::filesystem::path &journal, const DatabaseHeader &header, std::uint64_t size)
{
    std::ifstream file(journal, std::ios::binary);
    std::array<unsigned char, headerSize> first{};
    if (!readAt(file, 0, first) || !std::equal(magic.begin(), magic.end(), first.begin())) {
        return true;
    }
    const std::uint32_t length = numberAt(first, 16);
    const std::uint32_t sectorSize = numberAt(first, 20);
    const std::uint32_t pageSize = numberAt(first, 24);
    if (sectorSize < 32 || sectorSize > 65536 || pageSize < 512 || pageSize > 65536) {
        return true; // which the engine does not play back
    }
    const auto before = lengthIn(headerBefore(file, sectorSize, pageSize).value_or(header));
    // Pages behind the database's end were there before too, if another program left some.
    return !before || (length >= *before && (length == *before || length <= (size + pageSize - 1) / pageSize));
}
