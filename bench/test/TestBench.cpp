// Times what a learner waits for in a test, each beside its floor: opening it, the next
// question, and grading it. Both sides run in turn; the table shows medians, and for the
// next question the 99th percentile too. Exits with 1 if a bound is broken.

#include "bench/support/FreshHome.h"
#include "bench/support/LargeSubject.h"
#include "bench/support/PairTable.h"
#include "bench/support/SampleCards.h"
#include "bench/test/WindowBench.h"

#include <QApplication>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

constexpr int cardsOfTexts = 10'000;

/// Without a screen, one on which the window has room.
void widenScreen(const fs::path &folder)
{
    if (qgetenv("QT_QPA_PLATFORM") != "offscreen") {
        return;
    }
    const fs::path configuration = folder / "screen.json";
    std::ofstream(configuration) << R"({"screens": [{"name": "Wide", "x": 0, "y": 0, "width": 1920, "height": 1080}]})";
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QByteArray::fromStdString(configuration.string()));
}

} // namespace

int main(int argc, char **argv)
{
    const FreshHome home;
    widenScreen(home.path());
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    PairTable table("Test", "ms");
    const fs::path path = home.path() / "Cards.crl";
    makeSubject(path, cardsOfTexts, [](int card, bool front) { return sideText(Markup::Rtf, card, front); });
    benchWindow(table, path);
    return table.everyBoundHolds() ? 0 : 1;
}
