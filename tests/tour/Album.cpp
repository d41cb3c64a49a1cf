#include "tests/tour/Album.h"

#include "tests/tour/Steps.h"

#include <QDir>
#include <QPixmap>

#include <cstdio>

namespace {

// What a desktop usually keeps of its height: a panel, and the title bar of the maximised window.
constexpr int panelHeight = 40;
constexpr int titleHeight = 28;

void take(QWidget &window, const QString &folder, const char *name, const char *caption)
{
    if (folder.isEmpty()) {
        return;
    }
    bringToFront(window);
    expect(QTest::qWaitForWindowExposed(&window), "the window is seen");
    QCoreApplication::processEvents(); // what a window puts off until it is seen
    const QString file = QStringLiteral("%1/%2.png").arg(folder, QLatin1String(name));
    QImage picture = window.grab().toImage();
    picture.setDevicePixelRatio(1);
    constexpr int quick = 85; // of the packing, which loses nothing
    expect(picture.save(file, "png", quick), "the picture can be written");
    std::printf("%s\n    %s\n", caption, qPrintable(file));
}

} // namespace

Album::Album(Plan plan)
    : m_plan(std::move(plan))
{
    for (const QString &folder : {m_plan.windows, m_plan.dialogs}) {
        expect(folder.isEmpty() || QDir().mkpath(folder), "the folder for the pictures can be made");
    }
}

void Album::place(QWidget &window, QSize usual) const
{
    window.resize(m_plan.desktop.isEmpty() ? usual : m_plan.desktop - QSize(0, panelHeight + titleHeight));
}

void Album::takeWindow(QWidget &window, const char *name, const char *caption) const
{
    take(window, m_plan.windows, name, caption);
}

void Album::takeDialog(QWidget &dialog, const char *name, const char *caption) const
{
    take(dialog, m_plan.dialogs, name, caption);
}
