#include "app/Help.h"

#include "platform/CommonDialogs.h"

namespace {

QString topicName(HelpContext context)
{
    switch (context) {
    case HelpContext::MainWindow: return QStringLiteral("the main window");
    case HelpContext::EditingNotes: return QStringLiteral("editing notes");
    case HelpContext::CardEditor: return QStringLiteral("the card editor");
    case HelpContext::FlashCardSession: return QStringLiteral("flash-card sessions");
    case HelpContext::Test: return QStringLiteral("tests");
    }
    return {};
}

} // namespace

void showHelp(QWidget *window, HelpContext context)
{
    showInformation(window,
                    QStringLiteral("The help on %1 is not part of this version of Cramlet yet. The subject "
                                   "\"Using Cramlet\", which the start-up window offers, explains the program.")
                        .arg(topicName(context)),
                    QStringLiteral("Help"));
}
