#pragma once

#include <QString>

#include <filesystem>

/// The subject that the program has open.
struct Subject
{
    QString path; ///< empty until one is chosen
    QString name; ///< the file's name without its ending

    friend bool operator==(const Subject &, const Subject &) = default;
};

/// The subject's path as the store takes it.
[[nodiscard]] std::filesystem::path subjectFile(const Subject &subject);

/// The subject at \p path, named after its file.
[[nodiscard]] Subject subjectAt(const QString &path);
