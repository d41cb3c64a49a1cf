#include "bench/process/BareNotes.h"

#include "bench/support/Measure.h"

#include <fstream>
#include <iterator>
#include <string>

namespace fs = std::filesystem;

namespace {

fs::path tabsIn(const fs::path &folder)
{
    return folder / "tabs.txt";
}

fs::path htmlIn(const fs::path &folder)
{
    return folder / "notes.html";
}

void write(const fs::path &path, const QString &text)
{
    std::ofstream file(path);
    file << text.toStdString();
    require(file.good(), "cannot write the bare notes");
}

QString read(const fs::path &path)
{
    std::ifstream file(path);
    require(file.good(), "there are no bare notes");
    return QString::fromStdString({std::istreambuf_iterator<char>(file), {}});
}

} // namespace

void keepBareNotes(const fs::path &folder, const BareNotes &notes)
{
    write(tabsIn(folder), notes.tabs.join(QLatin1Char('\n')));
    write(htmlIn(folder), notes.html);
}

BareNotes keptBareNotes(const fs::path &folder)
{
    return {read(tabsIn(folder)).split(QLatin1Char('\n')), read(htmlIn(folder))};
}
