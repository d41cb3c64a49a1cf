#include "platform/Twips.h"

#include <QGuiApplication>
#include <QScreen>

namespace {

double dotsPerInch()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->logicalDotsPerInch() : 96.0;
}

} // namespace

int toPixels(double twips)
{
    return qRound(twips * dotsPerInch() / twipsPerInch);
}

double toTwips(double pixels)
{
    return pixels * twipsPerInch / dotsPerInch();
}
