#include "tests/monkey/Health.h"

#include "platform/LongWork.h"

#include <QApplication>
#include <QMessageBox>
#include <QSet>

#include <array>
#include <utility>

namespace {

QtMessageHandler before = nullptr;
QStringList &warnings()
{
    static QStringList heard;
    return heard;
}

/// Beginnings of warnings that tell of a desktop without a screen, of damaged pictures, which the odd subject has, and
/// of a zero that was pasted as a part of a file's name.
constexpr std::array<const char *, 3> tolerated{
    "This plugin does not support",
    "JPEG datastream contains no image",
    "Broken filename passed to function",
};

bool isTolerated(const QString &message)
{
    return std::any_of(tolerated.begin(), tolerated.end(),
                       [&](const char *beginning) { return message.startsWith(QLatin1String(beginning)); });
}

void hear(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type != QtDebugMsg && type != QtInfoMsg && !isTolerated(message)) {
        warnings() << message;
    }
    if (type == QtFatalMsg) {
        before(type, context, message);
    }
}

bool isOfTheProgram(const QWidget &widget)
{
    return widget.objectName().startsWith(QStringLiteral("frm"));
}

} // namespace

QStringList complaintsOf(const std::vector<QWidget *> &windows)
{
    QStringList complaints;
    QSet<QString> seen;
    for (const QWidget *window : windows) {
        const QString name = window->objectName();
        if (isOfTheProgram(*window) || name == QStringLiteral("HelpWindow")) {
            if (seen.contains(name)) {
                complaints << name + QStringLiteral(": is shown twice");
            }
            seen.insert(name);
        }
        const auto *box = qobject_cast<const QMessageBox *>(window);
        if (box != nullptr && (box->text().trimmed().isEmpty() || box->windowTitle().trimmed().isEmpty())) {
            complaints << QStringLiteral("a message without text or title: \"%1\", \"%2\"")
                              .arg(box->windowTitle(), box->text());
        }
    }
    if (LongWork::isLettingPaint()) {
        complaints << QStringLiteral("work goes on between two events");
    }
    return complaints;
}

QStringList remains()
{
    QStringList complaints;
    for (const QWidget *widget : QApplication::topLevelWidgets()) {
        if (isOfTheProgram(*widget)) {
            complaints << widget->objectName() + QStringLiteral(": is there, and nobody can see it");
        }
    }
    return complaints;
}

HeardWarnings::HeardWarnings()
{
    warnings().clear();
    before = qInstallMessageHandler(hear);
}

HeardWarnings::~HeardWarnings()
{
    qInstallMessageHandler(before);
}

QStringList HeardWarnings::take()
{
    return std::exchange(warnings(), {});
}
