#include "app/ClosingSave.h"

#include "app/CommandGuard.h"
#include "app/FailureReport.h"
#include "platform/CommonDialogs.h"

#include <exception>
#include <optional>

namespace {

std::optional<FailureReport> failureOf(const std::function<void()> &save)
{
    try {
        save();
        return std::nullopt;
    } catch (const std::exception &failure) {
        return describeFailure(failure);
    }
}

} // namespace

bool ClosingSave::mayClose(QWidget *window, const std::function<void()> &save)
{
    if (!m_hasFailed) {
        m_hasFailed = !runGuarded(window, save);
        return !m_hasFailed;
    }

    const std::optional<FailureReport> report = failureOf(save);
    m_hasFailed = report.has_value();
    if (!report) {
        return true;
    }
    const QString question =
        QStringLiteral("%1\n\n%2\n\nDo you want to leave without saving? What you typed last would be lost.")
            .arg(report->text, report->details);
    return askWarned(window, question, QStringLiteral("Leave Without Saving")) == Answer::Yes;
}

void ClosingSave::tryAgain(const std::function<void()> &save)
{
    m_hasFailed = failureOf(save).has_value();
}
