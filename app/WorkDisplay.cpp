#include "app/WorkDisplay.h"

#include "store/WorkSignal.h"

#include <utility>

namespace {

QString inWords(const WorkState &work)
{
    return work.what.empty() ? QStringLiteral("Working on the subject...")
                             : QString::fromUtf8(work.what.data(), static_cast<qsizetype>(work.what.size()));
}

} // namespace

WorkDisplay::WorkDisplay()
    : WorkDisplay(LongWork::steadyTime)
{
}

WorkDisplay::WorkDisplay(LongWork::Clock now)
    : m_display(std::move(now))
{
    observeWork([this](const WorkState &work) {
        if (work.willTakeLong) {
            m_display.willBeSilent(inWords(work), LongWork::Silence::Long);
        } else {
            m_display.goesOn(inWords(work), work.done, work.total);
        }
    });
}

WorkDisplay::~WorkDisplay()
{
    observeWork({});
}
