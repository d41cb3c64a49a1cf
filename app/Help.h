#pragma once

class QWidget;

/// The help's topics, by their context numbers.
enum class HelpContext : int {
    MainWindow = 5,
    EditingNotes = 6,
    CardEditor = 7,
    FlashCardSession = 8,
    Test = 9,
};

/// Shows the help's topic \p context over \p window.
void showHelp(QWidget *window, HelpContext context);
