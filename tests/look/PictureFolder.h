#pragma once

#include <QStringList>

/// The paths of all pictures in \p folder and the folders in it, relative to it, in order.
[[nodiscard]] QStringList picturesIn(const QString &folder);

/// \p name in \p folder, for which a folder is made if need be.
[[nodiscard]] QString placeFor(const QString &folder, const QString &name);
