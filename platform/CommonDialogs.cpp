#include "platform/CommonDialogs.h"

#include "platform/FocusRing.h"

#include <QColorDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QStandardPaths>

namespace {

constexpr QMessageBox::StandardButtons yesNo = QMessageBox::Yes | QMessageBox::No;

struct Question
{
    QMessageBox::Icon icon;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton offered; ///< what Enter says
    QMessageBox::StandardButton escape;  ///< what Escape and the close box say
};

Question yesNoCancel(QMessageBox::Icon icon)
{
    return {icon, yesNo | QMessageBox::Cancel, QMessageBox::Yes, QMessageBox::Cancel};
}

int ask(QWidget *parent, const Question &question, const QString &text, const QString &title)
{
    QMessageBox box(question.icon, title, text, question.buttons, parent);
    box.setObjectName(QStringLiteral("MessageBox1"));
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(question.offered);
    box.setEscapeButton(question.escape);
    new FocusRing(box);
    return box.exec();
}

Answer answerOf(int button)
{
    if (button == QMessageBox::Yes) {
        return Answer::Yes;
    }
    return button == QMessageBox::No ? Answer::No : Answer::Cancel;
}

QString folderOf(const QString &near)
{
    const QFileInfo info(near);
    QString folder = info.isDir() ? info.absoluteFilePath() : info.absolutePath();
    if (!near.isEmpty() && QFileInfo(folder).isDir()) {
        return folder;
    }

    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
}

void setUpForSubjects(QFileDialog &dialog)
{
    dialog.setObjectName(QStringLiteral("CommonDialog1"));
    dialog.setNameFilter(QStringLiteral("Cramlet (*.crl)"));
    dialog.setDefaultSuffix(QStringLiteral("crl"));
}

std::optional<QString> runFileDialog(QFileDialog &dialog)
{
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    return QFileInfo(dialog.selectedFiles().constFirst()).absoluteFilePath();
}

} // namespace

void showInformation(QWidget *parent, const QString &text, const QString &title)
{
    ask(parent, {QMessageBox::Information, QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok}, text, title);
}

void showFailure(QWidget *parent, const QString &text, const QString &details, const QString &title)
{
    const QString whole = details.isEmpty() ? text : text + QStringLiteral("\n\n") + details;
    ask(parent, {QMessageBox::Critical, QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok}, whole, title);
}

Answer askYesNo(QWidget *parent, const QString &question, const QString &title)
{
    return answerOf(ask(parent, {QMessageBox::Question, yesNo, QMessageBox::Yes, QMessageBox::No}, question, title));
}

Answer askYesNoCancel(QWidget *parent, const QString &question, const QString &title)
{
    return answerOf(ask(parent, yesNoCancel(QMessageBox::Question), question, title));
}

Answer offerYesNoCancel(QWidget *parent, const QString &question, const QString &title)
{
    return answerOf(ask(parent, yesNoCancel(QMessageBox::Information), question, title));
}

Answer askWarned(QWidget *parent, const QString &question, const QString &title)
{
    return answerOf(ask(parent, {QMessageBox::Warning, yesNo, QMessageBox::No, QMessageBox::No}, question, title));
}

bool mayReplace(QWidget *parent, const QString &path, const QString &title)
{
    if (!QFileInfo::exists(path)) {
        return true;
    }
    const QString question =
        QStringLiteral("The file \"%1\" already exists.\nDo you want to replace it?").arg(QFileInfo(path).fileName());
    return askWarned(parent, question, title) == Answer::Yes;
}

std::optional<QString> askText(QWidget *parent, const QString &prompt, const QString &title, const QString &offered)
{
    QInputDialog dialog(parent);
    dialog.setObjectName(QStringLiteral("InputBox1"));
    dialog.setWindowTitle(title);
    dialog.setLabelText(prompt);
    dialog.setTextValue(offered);
    new FocusRing(dialog);
    for (QLabel *label : dialog.findChildren<QLabel *>()) {
        label->setTextFormat(Qt::PlainText);
    }
    dialog.resize(qMax(dialog.sizeHint().width(), dialog.fontMetrics().averageCharWidth() * 48),
                  dialog.sizeHint().height());
    if (dialog.exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    return dialog.textValue();
}

std::optional<QColor> askColor(QWidget *parent, const QString &title, const QColor &current)
{
    QColorDialog dialog(current, parent);
    dialog.setObjectName(QStringLiteral("CommonDialog1"));
    dialog.setWindowTitle(title);
    if (dialog.exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    return dialog.selectedColor();
}

std::optional<QString> askOpenSubject(QWidget *parent, const QString &title, const QString &near)
{
    QFileDialog dialog(parent, title, folderOf(near));
    setUpForSubjects(dialog);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return runFileDialog(dialog);
}

std::optional<QString> askSaveSubject(QWidget *parent, const QString &title, const QString &near)
{
    QFileDialog dialog(parent, title, folderOf(near));
    setUpForSubjects(dialog);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    // Some desktops' dialogs would ask about the name as it was typed, before it gets its ending.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    for (;;) {
        std::optional<QString> path = runFileDialog(dialog);
        if (!path || mayReplace(parent, *path, title)) {
            return path;
        }
        dialog.selectFile(*path);
    }
}
