#pragma once

#include <QString>

/// Sees to it that the sample subjects lie where the learner may study from
/// them, and returns that folder.
///
/// In a build tree that is the program's own folder. Studying writes to a
/// subject, so an installed program copies its samples into the learner's data
/// folder, unless they are there already. A copy that fails is left out.
[[nodiscard]] QString provideSamples();

/// Where the program's unchanging files lie: the click, the help book.
[[nodiscard]] QString programFolder();

/// The help book's file.
[[nodiscard]] QString helpBook();
/// The file of the plugin that shows the help book.
[[nodiscard]] QString helpPlugin();
