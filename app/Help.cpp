#include "app/Help.h"

#include "app/ProgramFiles.h"
#include "platform/help/HelpViewer.h"

#include <QCoreApplication>
#include <QPluginLoader>

namespace {

/// The one that showHelp() opened.
std::unique_ptr<HelpViewer> &openedHelp()
{
    static std::unique_ptr<HelpViewer> help;
    return help;
}

} // namespace

void showHelp(QWidget *window, HelpContext context)
{
    std::unique_ptr<HelpViewer> &help = openedHelp();
    if (!help) {
        help = openHelp(helpPlugin(), helpBook());
        qAddPostRoutine([] { openedHelp().reset(); }); // windows end before the application object
    }
    help->showTopic(static_cast<int>(context), window);
}

std::unique_ptr<HelpViewer> openHelp(const QString &plugin, const QString &book)
{
    QPluginLoader loader(plugin);
    auto *factory = qobject_cast<HelpViewerFactory *>(loader.instance());
    if (factory == nullptr) {
        throw HelpUnavailable(QStringLiteral("The part of Cramlet that shows the help is missing or damaged:\n%1\n\n"
                                             "Install Cramlet again to repair it.\n\n%2")
                                  .arg(plugin, loader.errorString()));
    }
    return factory->open(book);
}
