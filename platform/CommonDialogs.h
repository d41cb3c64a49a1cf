#pragma once

#include <QColor>
#include <QString>

#include <optional>

class QWidget;

// The questions that windows ask through other windows. Each is modal to its
// parent and returns when it is answered. Texts are shown as they stand.

enum class Answer { Yes, No, Cancel };

/// An information icon and an OK button.
void showInformation(QWidget *parent, const QString &text, const QString &title);
/// A critical icon and an OK button: a command failed. \p details may be empty.
void showFailure(QWidget *parent, const QString &text, const QString &details, const QString &title);
/// A question icon, Yes and No; Escape and the close box say No.
[[nodiscard]] Answer askYesNo(QWidget *parent, const QString &question, const QString &title);
/// A question icon, Yes, No and Cancel; Escape and the close box say Cancel.
[[nodiscard]] Answer askYesNoCancel(QWidget *parent, const QString &question, const QString &title);

/// The same with an information icon.
[[nodiscard]] Answer offerYesNoCancel(QWidget *parent, const QString &question, const QString &title);

/// A warning icon, Yes and No; Enter, Escape and the close box say No: for what cannot be undone.
[[nodiscard]] Answer askWarned(QWidget *parent, const QString &question, const QString &title);

/// Whether \p path may be written: no file is there, or the learner answered that it may be
/// replaced. Enter, Escape and the close box say that it may not.
[[nodiscard]] bool mayReplace(QWidget *parent, const QString &path, const QString &title);

/// Asks for one line of text; nothing if the learner cancelled.
[[nodiscard]] std::optional<QString> askText(QWidget *parent, const QString &prompt, const QString &title,
                                             const QString &offered);

/// Asks for a colour, beginning with \p current; nothing if the learner cancelled.
[[nodiscard]] std::optional<QColor> askColor(QWidget *parent, const QString &title, const QColor &current);

// The file dialogs show "Cramlet (*.crl)". They return the whole path, with "/",
// or nothing if the learner cancelled. They open in the folder of \p near, or in
// the learner's documents if it is empty.

/// An existing file.
[[nodiscard]] std::optional<QString> askOpenSubject(QWidget *parent, const QString &title, const QString &near);
/// A new file, or an existing one after asking whether to replace it. A name without an ending gets ".crl".
[[nodiscard]] std::optional<QString> askSaveSubject(QWidget *parent, const QString &title, const QString &near);
