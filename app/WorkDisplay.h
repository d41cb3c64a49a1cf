#pragma once

#include "platform/LongWork.h"

/// Shows the learner work on subjects that takes long (see LongWork), as long as it exists.
/// There is one at a time.
class WorkDisplay
{
public:
    WorkDisplay();
    explicit WorkDisplay(LongWork::Clock now);
    WorkDisplay(const WorkDisplay &) = delete;
    WorkDisplay &operator=(const WorkDisplay &) = delete;
    ~WorkDisplay();

private:
    LongWork m_display;
};
