#include "tests/tour/Tour.h"

#include "app/ProgramFiles.h"
#include "app/RecentSubjects.h"
#include "tests/tour/Steps.h"

#include <random>

namespace {

/// Copies the samples to \p home, where each tour finds them as they were made. Returns the copies' folder.
QString copySamples(const QDir &home)
{
    const QDir samples(provideSamples());
    const QStringList names = samples.entryList({QStringLiteral("*.crl")}, QDir::Files);
    for (const QString &name : names) {
        expect(QFile::copy(samples.filePath(name), home.filePath(name)), "the sample subjects can be copied");
    }
    return home.path();
}

} // namespace

Tour::Tour(Album::Plan plan, const QString &home)
    : m_home(home)
    , m_album(std::move(plan))
{
    RecentSubjects::offerSamples(m_module.settings, [this] { return copySamples(m_home); });
    m_module.newGenerator = [] { // the same questions in every tour
        return
            [generator = std::mt19937()]() mutable { return std::uniform_real_distribution<float>(0, 1)(generator); };
    };
}

void Tour::play()
{
    chooseSubject();
    readNotes();
    setUpStudy();
    turnCards();
    takeTest();
    beginSubject();
    createTopic();
    writeNotes();
    writeCards();
    readHelp();
    leave();
}
