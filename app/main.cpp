#include "app/CommandGuard.h"
#include "app/Module1.h"
#include "app/ProgramFiles.h"
#include "app/WorkDisplay.h"
#include "forms/frmNotes/frmNotes.h"
#include "forms/frmOpen/frmOpen.h"
#include "platform/ClickSound.h"
#include "platform/FirstPaint.h"
#include "platform/FontConfiguration.h"

#include <QApplication>
#include <QIcon>

#include <cstdlib>
#include <thread>

namespace {

/// Shows the main window on the current subject.
void showMainWindow(Module1 &module)
{
    (new frmNotes(module))->show(); // deletes itself when it closes
}

} // namespace

int main(int argc, char **argv)
{
    std::jthread fonts = readFontConfiguration();
    QApplication::setApplicationName(QStringLiteral("Cramlet"));
    QApplication::setDesktopFileName(QStringLiteral("cramlet"));
    const QApplication application(argc, argv);
    if (fonts.joinable()) {
        fonts.join();
    }
    setClickFile(programFolder() + QStringLiteral("/Click.wav"));

    const WorkDisplay workDisplay;
    Module1 module;
    const bool started = runGuarded(nullptr, [&] {
        auto *chooser = new frmOpen(module, [&] { showMainWindow(module); }); // deletes itself when it closes
        afterFirstPaint(*chooser, [] { QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/cramlet.svg"))); });
        chooser->show();
    });
    if (!started) {
        return EXIT_FAILURE;
    }
    return QApplication::exec();
}
