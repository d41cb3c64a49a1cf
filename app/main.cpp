#include "app/Module1.h"
#include "app/ProgramFiles.h"
#include "forms/frmNotes/frmNotes.h"
#include "forms/frmOpen/frmOpen.h"
#include "platform/ClickSound.h"

#include <QApplication>

namespace {

/// Shows the main window on the current subject.
void showMainWindow(Module1 &module)
{
    (new frmNotes(module))->show(); // deletes itself when it closes
}

} // namespace

int main(int argc, char **argv)
{
    QApplication::setApplicationName(QStringLiteral("Cramlet"));
    QApplication::setDesktopFileName(QStringLiteral("cramlet"));
    const QApplication application(argc, argv);
    setClickFile(programFolder() + QStringLiteral("/Click.wav"));

    Module1 module;
    (new frmOpen(module, [&] { showMainWindow(module); }))->show(); // deletes itself when it closes
    return QApplication::exec();
}
