#pragma once

#include <filesystem>
#include <fstream>
#include <string>

/// The whole file, read at once: a test does that often.
inline std::string bytesOf(const std::filesystem::path &file)
{
    std::string bytes(std::filesystem::file_size(file), '\0');
    std::ifstream(file, std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

inline void writeBytes(const std::filesystem::path &file, const std::string &bytes)
{
    std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
}
