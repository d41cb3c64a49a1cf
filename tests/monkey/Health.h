#pragma once

#include <QString>
#include <QStringList>

#include <vector>

class QWidget;

/// What must be true of the program's windows after every event; a line for each thing that is not. The windows are
/// those that are shown.
[[nodiscard]] QStringList complaintsOf(const std::vector<QWidget *> &windows);
/// What is still there of the program after its last window has closed.
[[nodiscard]] QStringList remains();

/// Hears the warnings that Qt gives while it lives. One at a time.
class HeardWarnings
{
public:
    HeardWarnings();
    HeardWarnings(const HeardWarnings &) = delete;
    HeardWarnings &operator=(const HeardWarnings &) = delete;
    ~HeardWarnings();

    /// Those since the last call, without the few that mean nothing.
    [[nodiscard]] static QStringList take();
};
