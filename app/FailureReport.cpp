#include "app/FailureReport.h"

#include "platform/SettingsStore.h"
#include "platform/help/HelpViewer.h"
#include "store/StoreError.h"
#include "study/CardSelection.h"

namespace {

// Numbers of failures that the engine has none for; its own are below these.
constexpr int typeMismatchNumber = 10001;
constexpr int unknownFailureNumber = 10002;
constexpr int helpUnavailableNumber = 10003;
constexpr int cardsGoneNumber = 10004;
constexpr int firstStoreErrorNumber = 10100; // and the reason's position

/// What happened and what to do. %1 is the file's path.
QString adviceFor(StoreError::Reason reason)
{
    using enum StoreError::Reason;
    switch (reason) {
    case NotFound:
        return QStringLiteral("The subject file cannot be found:\n%1\n\nIt may have been moved, renamed or deleted. "
                              "Put it back and try again, or choose \"More Subjects...\" to look for it.");
    case NotAFile:
        return QStringLiteral("This is not a subject file but a folder or a device:\n%1\n\nChoose a file that ends in "
                              "\".crl\".");
    case EmptyFile:
        return QStringLiteral("This file is empty and holds no subject:\n%1\n\nNothing was changed. If it should hold "
                              "your work, bring back a copy of it; to begin a new subject, choose \"New Subject...\".");
    case NotASubject:
        return QStringLiteral("This file is not a Cramlet subject:\n%1\n\nNothing was changed. Choose a file that "
                              "Cramlet made.");
    case TooNew:
        return QStringLiteral(
            "This subject was made by a later version of Cramlet:\n%1\n\nNothing was changed. Install "
            "the later version to open it.");
    case Damaged:
        return QStringLiteral("This subject file is damaged:\n%1\n\nWhat can still be read of it is shown. Keep the "
                              "file, and bring back the last good copy of it if you have one.");
    case NoPermission:
        return QStringLiteral("You are not allowed to read this file:\n%1\n\nAsk its owner for the permission, or "
                              "choose another subject.");
    case ReadOnly:
        return QStringLiteral(
            "This subject cannot be written to:\n%1\n\nWriting and studying store what you do in the "
            "file. Make the file and its folder writable, or copy the file to a folder of your own and "
            "open the copy.");
    case Locked:
        return QStringLiteral("Another program is busy with this subject:\n%1\n\nNothing was lost. Wait a moment and "
                              "try again.");
    case DiskFull:
        return QStringLiteral("The disk is full. This could not be stored in the subject:\n%1\n\nMake room and try "
                              "again; what you see in the window is still there.");
    case NoCurrentRow: return QStringLiteral("There is no current row here. The subject was not changed:\n%1");
    case RowGone:
        return QStringLiteral("This was deleted meanwhile, perhaps by another program, from the subject:\n%1");
    case OutOfRange: return QStringLiteral("There is no such row or field in the subject:\n%1");
    case Refused:
        return QStringLiteral("The subject does not take this value, so nothing was stored:\n%1\n\nThe name of a topic "
                              "has at most 255 characters.");
    case NotNow: return QStringLiteral("This cannot be done at this moment. The subject was not changed:\n%1");
    case Engine:
        return QStringLiteral("The subject file could not be read or written:\n%1\n\nWhat you see in the window is "
                              "still there. See that the disk is connected and has room, and try again. Keep a copy "
                              "of the file if it fails again.");
    }
    return QStringLiteral("%1");
}

} // namespace

FailureReport describeFailure(const std::exception &failure)
{
    const QString engineText = QString::fromUtf8(failure.what());
    if (const auto *store = dynamic_cast<const StoreError *>(&failure)) {
        const int number =
            store->engineCode() != 0 ? store->engineCode() : firstStoreErrorNumber + static_cast<int>(store->reason());
        return {adviceFor(store->reason()).arg(QString::fromStdString(store->path())),
                QStringLiteral("Error %1: %2").arg(number).arg(engineText)};
    }
    if (const auto *setting = dynamic_cast<const SettingTypeMismatch *>(&failure)) {
        return {QStringLiteral("A setting should be a number and is not: \"%1\", key \"%2\", has the value \"%3\".\n\n"
                               "The usual value is used instead. Correct it, or delete the line, in the file:\n%4")
                    .arg(setting->section, setting->key, setting->value, setting->file),
                QStringLiteral("Error %1: type mismatch").arg(typeMismatchNumber)};
    }
    if (dynamic_cast<const HelpUnavailable *>(&failure) != nullptr) {
        return {engineText, QStringLiteral("Error %1: help unavailable").arg(helpUnavailableNumber)};
    }
    if (dynamic_cast<const CardsGone *>(&failure) != nullptr) {
        return {QStringLiteral("Flash cards that you chose were deleted meanwhile, perhaps by another program, and too "
                               "few are left.\n\nChoose \"Study...\" again."),
                QStringLiteral("Error %1: %2").arg(cardsGoneNumber).arg(engineText)};
    }
    return {QStringLiteral("The command could not be carried out."),
            QStringLiteral("Error %1: %2").arg(unknownFailureNumber).arg(engineText)};
}
