#pragma once

#include <QByteArray>
#include <QString>

class QWidget;

/// What a learner may do with the picture or object \p source (RtfObject.h).
/// Nothing of it happens by itself: each is called on the learner's command.

/// Whether the object holds a file that can be opened or saved.
[[nodiscard]] bool holdsFile(const QByteArray &source);

/// The name of that file as questions and menus show it, without control or
/// direction marks; of an object without one, its class and an ending that fits.
[[nodiscard]] QString fileNameOf(const QByteArray &source);

/// Asks whether to open the file, naming it; on Yes writes it to a folder that only
/// this user can read, which is removed when the program ends, and hands it to the
/// desktop. A program, a script or a starter is never opened: the learner is told
/// that it can be saved instead.
void openObject(QWidget *parent, const QByteArray &source);

/// Asks where to save the file, and saves it. A failure is reported.
void saveObject(QWidget *parent, const QByteArray &source);
