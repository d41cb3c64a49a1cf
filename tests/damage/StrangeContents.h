#pragma once

#include <filesystem>
#include <ostream>
#include <vector>

/// A whole file with the tables of a subject, but with contents that this program would never write.
struct StrangeContents
{
    const char *name;
    const char *sql; ///< what makes them of three topics with eight cards each
    const char *keyType = "INTEGER PRIMARY KEY";
    const char *tableOptions = ""; ///< after each table's fields
};

inline void PrintTo(const StrangeContents &contents, std::ostream *out)
{
    *out << contents.name;
}

[[nodiscard]] const std::vector<StrangeContents> &strangeContents();

void makeStrangeSubject(const std::filesystem::path &file, const StrangeContents &contents);
