#include "app/CommandGuard.h"

#include "app/FailureReport.h"
#include "platform/CommonDialogs.h"
#include "platform/LongWork.h"

#include <QPointer>

#include <exception>

namespace {

/// Whether \p window was shown before, and is not any more.
bool hasGone(const QWidget &window)
{
    return window.isHidden() && window.testAttribute(Qt::WA_WState_ExplicitShowHide);
}

} // namespace

bool runGuarded(QWidget *window, const std::function<void()> &command)
{
    if (LongWork::isLettingPaint()) {
        return false; // a timer's: the command in the middle of which it comes has the subject in its hands
    }
    if (window != nullptr && hasGone(*window)) {
        return false; // a key's or a click's: it was given before the window closed, and arrives afterwards
    }
    const QPointer<QWidget> owner = window;
    FailureReport report;
    try {
        command();
        return true;
    } catch (const std::exception &failure) {
        report = describeFailure(failure);
    }
    // Outside the handler: the report runs an event loop, and the failure is over.
    showFailure(owner, report.text, report.details, QStringLiteral("Run-time error"));
    return false;
}
