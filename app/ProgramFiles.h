#pragma once

#include <QString>

/// The folder in which the sample subjects lie that the learner studies from.
///
/// In a build tree that is the program's own folder. Studying writes to a
/// subject, so an installed program copies its samples into the learner's data
/// folder, once, and this is that folder; a copy that fails is left out.
[[nodiscard]] QString samplesFolder();

/// Where the program's unchanging files lie: the click, the help.
[[nodiscard]] QString programFolder();
