#include "app/ProgramFiles.h"
#include "app/RecentSubjects.h"
#include "app/Subject.h"
#include "platform/SettingsStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <unistd.h>

// Starts the program with a subject on top of its recent ones: cramlet-open [FILE].
// The program itself looks at no command line.

namespace {

constexpr int usageError = 2;

/// Whether \p file exists does not matter here: the chooser says what is wrong with it.
void putOnTop(const QString &file)
{
    SettingsStore settings;
    RecentSubjects::offerSamples(settings, provideSamples);
    RecentSubjects recent = RecentSubjects::load(settings);
    recent.moveToTop(subjectAt(QDir::cleanPath(QFileInfo(file).absoluteFilePath())));
    recent.save(settings);
}

/// Becomes the program that lies beside this one. Returns only if it cannot.
void becomeProgram()
{
    QByteArray path = QFile::encodeName(QCoreApplication::applicationDirPath() + QStringLiteral("/cramlet"));
    char *const arguments[] = {path.data(), nullptr};
    execv(path.constData(), arguments);
    std::fprintf(stderr, "cramlet-open: cannot start %s: %s\n", path.constData(), std::strerror(errno));
}

} // namespace

int main(int argc, char **argv)
{
    if (argc > 2 || (argc == 2 && (argv[1][0] == '-' || argv[1][0] == '\0'))) {
        std::fputs("usage: cramlet-open [FILE]\n", stderr);
        return usageError;
    }

    const QCoreApplication application(argc, argv);
    if (argc == 2) {
        try {
            putOnTop(QFile::decodeName(argv[1]));
        } catch (const std::exception &trouble) {
            // The learner can still open the subject from the chooser.
            std::fprintf(stderr, "cramlet-open: %s\n", trouble.what());
        }
    }
    becomeProgram();
    return EXIT_FAILURE;
}
