#include "bench/process/Journey.h"

#include <fstream>
#include <utility>

namespace fs = std::filesystem;

Home::Home(fs::path folder, const fs::path &subject)
    : m_folder(std::move(folder))
{
    fs::create_directories(m_folder / "Cramlet");
    fs::permissions(m_folder, fs::perms::owner_all); // as of a folder for sockets, which it is too
    if (!subject.empty()) {
        std::ofstream settings(m_folder / "Cramlet/Cramlet.conf");
        settings << "[Recent]\nName0=" << subject.stem().string() << "\nPath0=" << subject.string() << '\n';
    }
}

Journey through(const Home &home, const std::string &window)
{
    return {CRAMLET_PROGRAM, home.folder(), window};
}

Journey toEmptyWindow(const Home &home)
{
    return {CRAMLET_EMPTY_WINDOW, home.folder(), "window"};
}

Journey toBareNotes(const Home &home)
{
    return {CRAMLET_EMPTY_WINDOW, home.folder(), "bareNotes"};
}

fs::path copyOfSample(const fs::path &folder)
{
    const fs::path copy = folder / "Sample.crl";
    fs::copy_file(CRAMLET_SAMPLE, copy);
    return copy;
}
