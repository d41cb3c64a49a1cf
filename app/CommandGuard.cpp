#include "app/CommandGuard.h"

#include "app/FailureReport.h"
#include "platform/CommonDialogs.h"
#include "platform/LongWork.h"

#include <QPointer>

#include <exception>

bool runGuarded(QWidget *window, const std::function<void()> &command)
{
    if (LongWork::isLettingPaint()) {
        return false; // a timer's: the command in the middle of which it comes has the subject in its hands
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
