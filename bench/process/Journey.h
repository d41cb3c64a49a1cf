#pragma once

#include <filesystem>
#include <string>

/// A folder that is all the home a program has.
class Home
{
public:
    /// Makes \p folder. If there is a \p subject, the program's chooser offers it first.
    explicit Home(std::filesystem::path folder, const std::filesystem::path &subject = {});

    [[nodiscard]] const std::filesystem::path &folder() const { return m_folder; }

private:
    std::filesystem::path m_folder;
};

/// Which program is to go where.
struct Journey
{
    std::filesystem::path program;
    std::filesystem::path home;
    std::string destination; ///< a window's object name
};

/// Through the program, to one of its windows on the subject that \p home offers.
[[nodiscard]] Journey through(const Home &home, const std::string &window);

/// In the program of the empty window: that window, or the bare notes behind it (BareNotes.h).
[[nodiscard]] Journey toEmptyWindow(const Home &home);
[[nodiscard]] Journey toBareNotes(const Home &home);

/// A copy in \p folder of the sample subject of states and capitals, for studying writes to it.
[[nodiscard]] std::filesystem::path copyOfSample(const std::filesystem::path &folder);
