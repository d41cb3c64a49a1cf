#pragma once

#include "tests/monkey/Random.h"

#include <QString>
#include <QStringList>

#include <filesystem>
#include <memory>

class Trouble;

/// The learner's home for one walk: three subjects, some files to insert, and the program's settings. The process
/// lives in it from now on, and can change nothing outside.
///
/// Now and then something happens there that is not of the program: its file is locked, deleted, replaced, changed
/// by another program...
class Places
{
public:
    Places();
    Places(const Places &) = delete;
    Places &operator=(const Places &) = delete;
    ~Places(); ///< removes everything

    [[nodiscard]] QString documents() const;
    /// The three subjects are as they were at first.
    void beginAgain();

    /// One of these things happens to \p subject; returns what. It ends in a few events if it can.
    QString damage(Random &random, const std::filesystem::path &subject);
    /// An event has passed.
    void goOn();
    /// What could not be written can be written again.
    void mend();
    [[nodiscard]] bool isMended() const { return m_trouble == nullptr; }

    /// What is wrong with the subjects, a line each: damaged files, and cards without their topic.
    [[nodiscard]] QStringList complaints() const;
    /// Files that the program should have taken away.
    [[nodiscard]] QStringList sideFiles() const;

private:
    [[nodiscard]] std::filesystem::path subject(const char *name) const;
    void makeFiles();
    void makeOddSubject();
    void makeSettings();

    const std::filesystem::path m_root;
    std::unique_ptr<Trouble> m_trouble;
    int m_untilMended = 0;
};
