#pragma once

#include <QString>
#include <QStringList>

#include <filesystem>

/// What the main window shows of a subject, for a bare window to show the same.
struct BareNotes
{
    QStringList tabs;
    QString html; ///< of the first tab
};

void keepBareNotes(const std::filesystem::path &folder, const BareNotes &notes);

/// Those that were kept in \p folder.
[[nodiscard]] BareNotes keptBareNotes(const std::filesystem::path &folder);
