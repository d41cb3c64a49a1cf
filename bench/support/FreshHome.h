#pragma once

#include "bench/support/Measure.h"

#include <QTemporaryDir>

#include <filesystem>

/// A folder to measure in, gone at the end, in which the program also keeps its
/// settings: the learner's own stay out of it. Make it before the application,
/// which then needs no screen unless a platform is asked for.
class FreshHome
{
public:
    FreshHome()
    {
        require(m_folder.isValid(), "cannot make a folder");
        qputenv("XDG_CONFIG_HOME", m_folder.path().toUtf8());
        qputenv("XDG_RUNTIME_DIR", m_folder.path().toUtf8()); // without one Qt complains
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
    }

    [[nodiscard]] std::filesystem::path path() const { return m_folder.path().toStdString(); }

private:
    QTemporaryDir m_folder;
};
