#pragma once

#include "platform/help/HelpBook.h"

/// The tests' help book: the garden, its trees and ponds, the shed.
inline QString gardenBook()
{
    return QStringLiteral(GARDEN_BOOK);
}

/// The address of a page of it.
inline QUrl gardenPage(const char *name)
{
    return QUrl(QStringLiteral("qthelp://garden.help.1.0/book/") + QLatin1String(name));
}
