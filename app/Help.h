#pragma once

#include <QString>

#include <memory>

class HelpViewer;
class QWidget;

/// The help's topics, by their context numbers.
enum class HelpContext : int {
    MainWindow = 5,
    EditingNotes = 6,
    CardEditor = 7,
    FlashCardSession = 8,
    Test = 9,
    GettingStarted = 10,
    StudyWizard = 11,
};

/// Shows the help's topic \p context, asked for in \p window, in the help window. There is one such
/// window; the first call loads and opens it, and it goes with the application object.
///
/// Throws HelpUnavailable if the help is missing or damaged. The next call tries again.
void showHelp(QWidget *window, HelpContext context);

/// Opens the help book in the file \p book with the plugin in the file \p plugin.
///
/// Throws HelpUnavailable if one of them is missing or damaged.
[[nodiscard]] std::unique_ptr<HelpViewer> openHelp(const QString &plugin, const QString &book);
