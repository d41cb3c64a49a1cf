#pragma once

#include "app/Chance.h"
#include "app/Subject.h"
#include "platform/SettingsStore.h"
#include "study/StudySettings.h"

#include <QString>

#include <functional>

class NotebookPage;

/// The program-wide state. Made once, by main; windows hold a reference.
struct Module1
{
    Subject subject;     ///< written by frmOpen only
    StudySettings study; ///< written by frmOptions; its card query also by frmNotes
    SettingsStore settings;
    /// Makes a generator of random numbers that is seeded anew.
    std::function<RandomDraw()> newGenerator = generatorSeededFromClock;
};

/// \p text as a window shows it in its caption to the letter: "[*]" has a meaning there.
[[nodiscard]] QString asCaption(QString text);

/// The caption "Cramlet: " and the subject's name.
[[nodiscard]] QString subjectCaption(const Subject &subject);

/// Gives \p page the learner's paper colour. A stored colour that is no number
/// is reported, and the page stays as it is.
void applyBackground(NotebookPage &page, const SettingsStore &settings);
