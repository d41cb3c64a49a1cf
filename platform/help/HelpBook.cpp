#include "platform/help/HelpBook.h"

#include "platform/help/HelpViewer.h"

#include <QDir>
#include <QFileInfo>
#include <QHelpContentWidget>
#include <QHelpEngine>
#include <QHelpIndexWidget>
#include <QHelpLink>
#include <QHelpSearchEngine>
#include <QStandardPaths>

namespace {

HelpUnavailable unreadable(const QString &file)
{
    return HelpUnavailable(
        QStringLiteral("The help book is damaged:\n%1\n\nInstall Cramlet again to repair it.").arg(file));
}

/// The book's name for itself. Throws if \p file is no book.
QString spaceOf(const QString &file)
{
    if (!QFileInfo(file).isFile()) {
        throw HelpUnavailable(
            QStringLiteral("The help book is missing:\n%1\n\nInstall Cramlet again to bring it back.").arg(file));
    }
    QString space = QHelpEngineCore::namespaceName(file);
    if (space.isEmpty()) {
        throw unreadable(file);
    }
    return space;
}

/// The session's own folder if there is one: it lies in memory, where nothing waits for the disk,
/// and goes with the session even if the program is killed.
QString ownFolder()
{
    const QString session = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    const QString folder = QFileInfo(session).isWritable() ? session : QDir::tempPath();
    return folder + QStringLiteral("/cramlet-help-XXXXXX");
}

} // namespace

HelpBook::HelpBook(const QString &file)
    : m_file(file)
    , m_space(spaceOf(file))
    , m_own(ownFolder())
{
    if (!m_own.isValid()) {
        throw HelpUnavailable(QStringLiteral("The help needs a temporary folder and could not make it: %1\n\nMake room "
                                             "on the disk and try again.")
                                  .arg(m_own.errorString()));
    }
    m_engine = std::make_unique<QHelpEngine>(m_own.filePath(QStringLiteral("help.qhc")));
    m_engine->setReadOnly(false);
    m_engine->setUsesFilterEngine(true);
    if (!m_engine->setupData() || !m_engine->registerDocumentation(file)) {
        throw unreadable(file);
    }
}

HelpBook::~HelpBook() = default;

std::optional<QUrl> HelpBook::topic(int context) const
{
    const QList<QHelpLink> found = m_engine->documentsForIdentifier(QStringLiteral("context-%1").arg(context));
    return found.isEmpty() ? std::nullopt : std::optional(found.first().url);
}

bool HelpBook::contains(const QUrl &place) const
{
    return !read(place).isEmpty();
}

QByteArray HelpBook::read(const QUrl &place) const
{
    const bool own = place.scheme() == QLatin1String("qthelp") && place.host() == m_space;
    return own ? m_engine->fileData(place) : QByteArray();
}

QHelpContentWidget *HelpBook::contents()
{
    return m_engine->contentWidget();
}

QHelpIndexWidget *HelpBook::index()
{
    return m_engine->indexWidget();
}

QHelpSearchEngine *HelpBook::searching()
{
    return m_engine->searchEngine();
}
