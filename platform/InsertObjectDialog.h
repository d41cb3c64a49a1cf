#pragma once

#include <QByteArray>
#include <QSize>

#include <optional>

class QWidget;

/// Asks what to insert into a text: a new picture (from a file or from the
/// clipboard), or any file, which becomes a package with the desktop's icon and the
/// file's name, or a picture if it is one.
///
/// Returns the source (RtfObject.h) of what was chosen, or nothing if the learner
/// cancelled. Pictures larger than \p pictureLimit (document units, 96 to the inch)
/// are shown smaller. What cannot be inserted is refused in the dialog, with the reason.
[[nodiscard]] std::optional<QByteArray> askObject(QWidget *parent, QSize pictureLimit);
