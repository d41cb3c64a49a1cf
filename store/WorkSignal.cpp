#include "store/WorkSignal.h"

#include <utility>

namespace {

// All work on subjects is done by one thread.
WorkObserver theObserver;
WorkPass *thePass = nullptr;

} // namespace

void observeWork(WorkObserver observer)
{
    theObserver = std::move(observer);
}

void signalWork() noexcept
{
    if (theObserver) {
        theObserver(thePass != nullptr ? thePass->m_state : WorkState{});
    }
}

void signalLongWork(std::string_view what) noexcept
{
    if (theObserver) {
        theObserver({.what = what, .willTakeLong = true});
    }
}

WorkPass::WorkPass(std::string_view what, int total)
    : m_state{.what = what, .total = total}
    , m_around(std::exchange(thePass, this))
{
}

WorkPass::~WorkPass()
{
    thePass = m_around;
}
