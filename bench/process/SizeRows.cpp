#include "bench/process/SizeRows.h"

#include "bench/support/PairTable.h"

#include <QProcess>
#include <QStringList>

#include <cstdint>

namespace fs = std::filesystem;

namespace {

double mebibytes(std::uintmax_t bytes)
{
    return static_cast<double>(bytes) / (1024 * 1024);
}

void run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    require(process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
            (program.toStdString() + " fails").c_str());
}

std::uintmax_t strippedSize(const fs::path &binary, const fs::path &folder)
{
    const fs::path copy = folder / binary.filename();
    run(QStringLiteral(CRAMLET_STRIP),
        {QStringLiteral("-o"), QString::fromStdString(copy.string()), QString::fromStdString(binary.string())});
    return fs::file_size(copy);
}

std::uintmax_t installedSize(const fs::path &folder)
{
    run(QStringLiteral(CRAMLET_CMAKE),
        {QStringLiteral("--install"), QStringLiteral(CRAMLET_BUILD), QStringLiteral("--strip"),
         QStringLiteral("--prefix"), QString::fromStdString(folder.string())});
    std::uintmax_t sum = 0;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(folder)) {
        sum += entry.is_regular_file() && !entry.is_symlink() ? entry.file_size() : 0;
    }
    return sum;
}

} // namespace

void benchSizes(const fs::path &folder)
{
    fs::create_directories(folder);
    PairTable table("on the disk", "MiB");
    const double floor = mebibytes(strippedSize(CRAMLET_EMPTY_WINDOW, folder));
    table.row({"the program, stripped", "empty window's"}, mebibytes(strippedSize(CRAMLET_PROGRAM, folder)), floor);
    table.row({"all that is installed", "empty window's"}, mebibytes(installedSize(folder / "installed")), floor);
}
