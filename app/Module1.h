#pragma once

#include "app/Chance.h"
#include "platform/SettingsStore.h"
#include "study/StudySettings.h"

#include <QString>

#include <filesystem>
#include <functional>

class NotebookPage;

/// The subject that the program has open.
struct Subject
{
    QString path; ///< empty until one is chosen
    QString name; ///< the file's name without its ending

    friend bool operator==(const Subject &, const Subject &) = default;
};

/// The program-wide state. Made once, by main; windows hold a reference.
struct Module1
{
    Subject subject;     ///< written by frmOpen only
    StudySettings study; ///< written by frmOptions; its card query also by frmNotes
    SettingsStore settings;
    /// Makes a generator of random numbers that is seeded anew.
    std::function<RandomDraw()> newGenerator = generatorSeededFromClock;
};

/// The subject's path as the store takes it.
[[nodiscard]] std::filesystem::path subjectFile(const Subject &subject);

/// The subject at \p path, named after its file.
[[nodiscard]] Subject subjectAt(const QString &path);

/// \p text as a window shows it in its caption to the letter: "[*]" has a meaning there.
[[nodiscard]] QString asCaption(QString text);

/// The caption "Cramlet: " and the subject's name.
[[nodiscard]] QString subjectCaption(const Subject &subject);

/// Gives \p page the learner's paper colour. A stored colour that is no number
/// is reported, and the page stays as it is.
void applyBackground(NotebookPage &page, const SettingsStore &settings);
