#include "platform/ObjectOpener.h"

#include "platform/CommonDialogs.h"
#include "platform/rtf/OleObject.h"
#include "platform/rtf/RtfObject.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QPointer>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QUrl>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string_view>

namespace {

constexpr auto openTitle = QLatin1String("Open Object");
constexpr auto saveTitle = QLatin1String("Save Object");

/// UTF-16 units of a file's name; even in UTF-8 it fits into a folder's entry.
constexpr qsizetype longestName = 80;
constexpr qsizetype longestNameEnd = 30;

/// What file an object's own data is, by its class and its first bytes.
struct KnownClass
{
    QLatin1String className; ///< or the beginning of it
    std::string_view begin;
    QLatin1String ending;
    bool isPicture = false;
};

constexpr std::string_view zip = "PK\x03\x04";
constexpr auto knownClasses = std::to_array<KnownClass>({
    {QLatin1String("Word.Document"), zip, QLatin1String("docx")},
    {QLatin1String("Word.Document"), "", QLatin1String("doc")},
    {QLatin1String("Excel.Sheet"), zip, QLatin1String("xlsx")},
    {QLatin1String("Excel.Sheet"), "", QLatin1String("xls")},
    {QLatin1String("PowerPoint.Show"), zip, QLatin1String("pptx")},
    {QLatin1String("PowerPoint.Show"), "", QLatin1String("ppt")},
    {QLatin1String("AcroExch"), "%PDF", QLatin1String("pdf")},
    {QLatin1String("PBrush"), "", QLatin1String("bmp"), true},
    {QLatin1String("Paint.Picture"), "BM", QLatin1String("bmp"), true},
});

/// The picture files of RtfObject::image.
struct KnownPicture
{
    std::string_view begin;
    QLatin1String ending;
};

constexpr auto knownPictures = std::to_array<KnownPicture>({
    {"\x89PNG", QLatin1String("png")},
    {"\xff\xd8\xff", QLatin1String("jpg")},
    {"BM", QLatin1String("bmp")},
});

/// Of data whose kind nobody knows. Such a file can only be saved.
const QLatin1String unknownEnding("bin");

/// Endings of what a desktop, or a layer for programs of other systems, may run. Sorted.
constexpr auto programEndings = std::to_array<std::string_view>({
    "action",      "apk",     "app", "appimage", "application", "appref-ms", "awk",      "bash",
    "bat",         "bin",     "chm", "cmd",      "com",         "command",   "cpl",      "csh",
    "deb",         "desktop", "dll", "elf",      "exe",         "fish",      "flatpak",  "flatpakref",
    "flatpakrepo", "gadget",  "hta", "inf",      "ins",         "jar",       "jnlp",     "js",
    "jse",         "kdelnk",  "ko",  "ksh",      "library-ms",  "lnk",       "lua",      "mjs",
    "mount",       "msc",     "msi", "msix",     "msp",         "mst",       "out",      "php",
    "pif",         "pl",      "ps1", "psm1",     "py",          "pyc",       "pyw",      "rb",
    "reg",         "rpm",     "run", "scf",      "scr",         "sct",       "service",  "settingcontent-ms",
    "sh",          "shb",     "shs", "snap",     "so",          "socket",    "sys",      "tcl",
    "timer",       "url",     "vb",  "vbe",      "vbs",         "webloc",    "workflow", "ws",
    "wsc",         "wsf",     "wsh", "xpi",      "zsh",
});
static_assert(std::ranges::adjacent_find(programEndings, std::ranges::greater_equal{}) == programEndings.end(),
              "keep the table sorted and free of duplicates");

/// How programs begin, whatever they are called.
constexpr auto programBegins = std::to_array<std::string_view>({"\177ELF", "MZ", "#!", "[Desktop Entry]"});

/// Kinds of file that are started, or that start others; what inherits one of them is one too.
constexpr auto programKinds = std::to_array<QLatin1String>({
    QLatin1String("application/x-executable"),
    QLatin1String("application/x-sharedlib"),
    QLatin1String("application/x-ms-dos-executable"),
    QLatin1String("application/x-msdownload"),
    QLatin1String("application/x-msi"),
    QLatin1String("application/x-ms-shortcut"),
    QLatin1String("application/x-mswinurl"),
    QLatin1String("application/x-desktop"),
    QLatin1String("application/x-java-archive"),
    QLatin1String("application/x-java"),
    QLatin1String("application/x-java-jnlp-file"),
    QLatin1String("application/vnd.debian.binary-package"),
    QLatin1String("application/x-deb"),
    QLatin1String("application/x-rpm"),
    QLatin1String("application/vnd.appimage"),
    QLatin1String("application/x-iso9660-appimage"),
    QLatin1String("application/vnd.flatpak"),
    QLatin1String("application/vnd.flatpak.ref"),
    QLatin1String("application/vnd.snap"),
});

/// A file of an object, under a name that is safe to show and to write.
struct HeldFile
{
    QString name;
    QByteArray data; ///< empty: there is none
};

bool beginsWith(const QByteArray &data, std::string_view begin)
{
    return std::string_view(data.constData(), static_cast<std::size_t>(data.size())).starts_with(begin);
}

/// What ends a word or a line without being seen, or is no letter at all.
bool isGap(char32_t letter)
{
    constexpr auto gaps = std::to_array({QChar::Other_Control, QChar::Other_Surrogate, QChar::Other_PrivateUse,
                                         QChar::Other_NotAssigned, QChar::Separator_Line, QChar::Separator_Paragraph});
    return std::ranges::find(gaps, QChar::category(letter)) != gaps.end();
}

/// The last part of the path \p name, fit to be shown and to be a file's name anywhere; may be empty.
QString cleanName(const QString &name)
{
    QString clean;
    for (const char32_t letter : name.toUcs4()) {
        if (letter == U'/' || letter == U'\\') {
            clean.clear();
        } else if (std::u32string_view(U"\"*:<>?|").find(letter) != std::u32string_view::npos) {
            clean += QLatin1Char('_');
        } else if (isGap(letter)) {
            clean += QLatin1Char(' ');
        } else if (QChar::category(letter) != QChar::Other_Format) { // direction marks are of this category
            clean += QString::fromUcs4(&letter, 1);
        }
    }
    clean = clean.simplified();
    static const QRegularExpression edges(QStringLiteral("^[ .~]+|[ .]+$"));
    return clean.remove(edges);
}

/// \p name with its middle left out if it is too long.
QString limited(const QString &name)
{
    if (name.size() <= longestName) {
        return name;
    }
    qsizetype left = longestName - longestNameEnd - 1;
    qsizetype right = name.size() - longestNameEnd;
    left -= name.at(left).isLowSurrogate() ? 1 : 0;
    right += name.at(right).isLowSurrogate() ? 1 : 0;
    return name.left(left) + QChar(0x2026) + name.mid(right);
}

QString withEnding(const QString &name, QLatin1String ending)
{
    return name + QLatin1Char('.') + ending;
}

/// "Word Document" of "Word.Document.8".
QString wordsOf(const QString &className)
{
    static const QRegularExpression version(QStringLiteral("(\\.\\d+)+$"));
    QString words = className;
    words.remove(version).replace(QLatin1Char('.'), QLatin1Char(' '));
    return cleanName(words);
}

QString pictureName(const QByteArray &image)
{
    const auto *known = std::ranges::find_if(
        knownPictures, [&](const KnownPicture &picture) { return beginsWith(image, picture.begin); });
    return withEnding(QStringLiteral("Picture"), known != knownPictures.end() ? known->ending : unknownEnding);
}

QString nameByClass(const QString &className, const QByteArray &data)
{
    const auto *known = std::ranges::find_if(knownClasses, [&](const KnownClass &row) {
        return className.startsWith(row.className, Qt::CaseInsensitive) && beginsWith(data, row.begin);
    });
    if (known == knownClasses.end()) {
        const QString words = wordsOf(className);
        return withEnding(words.isEmpty() ? QStringLiteral("Object") : words, unknownEnding);
    }
    return withEnding(known->isPicture ? QStringLiteral("Picture") : wordsOf(className), known->ending);
}

HeldFile heldFile(const QByteArray &source)
{
    const RtfObject object = readRtfObject({source.constData(), static_cast<std::size_t>(source.size())});
    if (object.isPicture) {
        return {pictureName(object.image), object.image};
    }
    const QString name = cleanName(object.name);
    return {limited(name.isEmpty() ? nameByClass(object.kind, object.native) : name), object.native};
}

bool isProgramKind(const QMimeType &kind)
{
    // JSON descends from a language of scripts, but only as text.
    return !kind.inherits(QStringLiteral("application/json")) &&
           std::ranges::any_of(programKinds, [&](QLatin1String program) { return kind.inherits(program); });
}

bool isProgram(const HeldFile &file)
{
    const std::string ending = file.name.section(QLatin1Char('.'), -1).toLower().toStdString();
    if (std::ranges::binary_search(programEndings, std::string_view(ending)) ||
        std::ranges::any_of(programBegins, [&](std::string_view begin) { return beginsWith(file.data, begin); })) {
        return true;
    }
    const QMimeDatabase kinds;
    return std::ranges::any_of(kinds.mimeTypesForFileName(file.name), isProgramKind) ||
           isProgramKind(kinds.mimeTypeForData(file.data));
}

/// The folder of the files that were opened. The application owns it, and it goes with it.
struct OpenedFiles : QObject
{
    using QObject::QObject;

    /// A folder for one file; empty if it cannot be made.
    QString newFolder()
    {
        const QString name = QString::number(++count);
        return folder.isValid() && QDir(folder.path()).mkdir(name) ? folder.filePath(name) : QString();
    }

    QTemporaryDir folder;
    int count = 0;
};

QString newPrivateFolder()
{
    static QPointer<OpenedFiles> files;
    // Desktops tidy up their folder of temporary files.
    if (files && !QFileInfo(files->folder.path()).isDir()) {
        delete files;
    }
    if (!files) {
        files = new OpenedFiles(QCoreApplication::instance());
    }
    return files->newFolder();
}

struct WrittenFile
{
    QString path; ///< empty if it could not be written
    QString error;
};

WrittenFile writePrivately(const HeldFile &held)
{
    const QString folder = newPrivateFolder();
    if (folder.isEmpty()) {
        return {{}, QStringLiteral("There is no room for temporary files in \"%1\".").arg(QDir::tempPath())};
    }
    QFile file(QDir(folder).filePath(held.name));
    const bool isWritten = file.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner) &&
                           file.write(held.data) == held.data.size() && file.flush();
    if (!isWritten) {
        return {{}, file.errorString()};
    }
    // What is changed there would not come back into the text: programs shall say so.
    file.setPermissions(QFile::ReadOwner);
    return {file.fileName(), {}};
}

std::optional<QString> askWhereToSave(QWidget *parent, const QString &name)
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QFileDialog dialog(parent, saveTitle, QFileInfo(documents).isDir() ? documents : QDir::homePath());
    dialog.setObjectName(QStringLiteral("CommonDialog1"));
    dialog.setNameFilter(QStringLiteral("All files (*)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(QFileInfo(name).suffix());
    // Some desktops' dialogs would ask about the name as it was typed, before it gets its ending.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.selectFile(name);
    while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
        QString path = dialog.selectedFiles().constFirst();
        if (mayReplace(parent, path, saveTitle)) {
            return path;
        }
        dialog.selectFile(path);
    }
    return std::nullopt;
}

/// Says so if there is nothing to open or to save.
bool isThere(QWidget *parent, const HeldFile &file, const QString &title)
{
    if (file.data.isEmpty()) {
        showInformation(parent,
                        QStringLiteral("The file \"%1\" is not in this text, which only tells of it.").arg(file.name),
                        title);
    }
    return !file.data.isEmpty();
}

} // namespace

bool holdsFile(const QByteArray &source)
{
    return !heldFile(source).data.isEmpty();
}

QString fileNameOf(const QByteArray &source)
{
    return heldFile(source).name;
}

void openObject(QWidget *parent, const QByteArray &source)
{
    const HeldFile file = heldFile(source);
    if (!isThere(parent, file, openTitle)) {
        return;
    }
    if (isProgram(file)) {
        showInformation(parent,
                        QStringLiteral("The file \"%1\" is not opened from a text: it is, or could be, a program. "
                                       "If you trust it, save it and use it from there.")
                            .arg(file.name),
                        openTitle);
        return;
    }
    const QString question = QStringLiteral("Open the file \"%1\" from this text?\nIt was put there with the text, and "
                                            "is opened by the desktop's program for its kind.")
                                 .arg(file.name);
    if (askYesNo(parent, question, openTitle) != Answer::Yes) {
        return;
    }

    const WrittenFile written = writePrivately(file);
    if (written.path.isEmpty()) {
        showFailure(parent, QStringLiteral("The file \"%1\" could not be written for opening it.").arg(file.name),
                    written.error, openTitle);
    } else if (!QDesktopServices::openUrl(QUrl::fromLocalFile(written.path))) {
        showFailure(parent, QStringLiteral("The desktop has no program that opens the file \"%1\".").arg(file.name),
                    QStringLiteral("It can be saved instead."), openTitle);
    }
}

void saveObject(QWidget *parent, const QByteArray &source)
{
    const HeldFile file = heldFile(source);
    if (!isThere(parent, file, saveTitle)) {
        return;
    }
    const std::optional<QString> path = askWhereToSave(parent, file.name);
    if (!path) {
        return;
    }
    QSaveFile saved(*path);
    if (!saved.open(QIODevice::WriteOnly) || saved.write(file.data) != file.data.size() || !saved.commit()) {
        showFailure(parent, QStringLiteral("The file \"%1\" could not be saved.").arg(*path), saved.errorString(),
                    saveTitle);
    }
}
