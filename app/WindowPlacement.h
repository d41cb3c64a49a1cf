#pragma once

#include <QSize>
#include <QString>

class QWidget;
class SettingsStore;

// A window's state and outer size, kept in twips under a section of the
// settings. Its position is not kept.

/// Maximises the window if it was closed so, else gives it its stored size: by
/// default \p usual (twips), or if that is empty half the screen's width and 0.7 of
/// its height. For a window that is not shown yet. A stored value that is no number is reported, and the
/// default is used; a size beyond the screens is cut to theirs.
void restorePlacement(QWidget &window, const SettingsStore &settings, const QString &section, QSize usual = {});

void savePlacement(const QWidget &window, SettingsStore &settings, const QString &section);
