#include "tests/tour/Tour.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QEvent>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QPalette>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <optional>

namespace {

struct Options
{
    Album::Plan album;
    bool isDark = false;
};

QString valueOr(const QStringList &values, const QString &otherwise)
{
    return values.isEmpty() ? otherwise : values.constFirst();
}

/// "1024x768", or empty.
QSize sizeOf(const QString &text)
{
    const QStringList edges = text.split(QLatin1Char('x'));
    return edges.size() == 2 ? QSize(edges[0].toInt(), edges[1].toInt()) : QSize();
}

std::optional<Options> readOptions(int argc, char **argv)
{
    QCommandLineParser parser;
    const QCommandLineOption desktop(QStringLiteral("desktop"), {}, QStringLiteral("size"));
    const QCommandLineOption dialogs(QStringLiteral("dialogs"), {}, QStringLiteral("folder"));
    const QCommandLineOption dark(QStringLiteral("dark"));
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments << QString::fromLocal8Bit(argv[i]);
    }
    const bool isUnderstood = parser.addOptions({desktop, dialogs, dark}) && parser.parse(arguments);
    const QSize size = sizeOf(parser.value(desktop));
    if (!isUnderstood || parser.positionalArguments().size() > 1 || (parser.isSet(desktop) && size.isEmpty())) {
        std::fprintf(stderr, "usage: tour [FOLDER] [--dark] [--desktop WIDTHxHEIGHT [--dialogs FOLDER]]\n"
                             "FOLDER takes the pictures. On a desktop of a certain size the main windows fill it;\n"
                             "the dialogs, which have the same size on each, are only taken into a folder of theirs.\n"
                             "The pictures are as large as QT_SCALE_FACTOR says.\n");
        return std::nullopt;
    }
    const QString folder = valueOr(parser.positionalArguments(), QStringLiteral("tour"));
    return Options{{folder, parser.isSet(desktop) ? parser.value(dialogs) : folder, size}, parser.isSet(dark)};
}

/// Describes the screen of the offscreen platform in a file in \p home, and returns the platform's name with it.
QByteArray platformWithScreen(QSize desktop, const QString &home)
{
    bool isNumber = false;
    const double factor = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble(&isNumber);
    const QSize native = desktop * (isNumber ? factor : 1.0);
    const QJsonObject screen{{QStringLiteral("name"), QStringLiteral("screen")},
                             {QStringLiteral("x"), 0},
                             {QStringLiteral("y"), 0},
                             {QStringLiteral("width"), native.width()},
                             {QStringLiteral("height"), native.height()},
                             {QStringLiteral("logicalDpi"), 96},
                             {QStringLiteral("logicalBaseDpi"), 96},
                             {QStringLiteral("dpr"), 1}};
    QFile file(home + QStringLiteral("/screen.json"));
    if (!file.open(QFile::WriteOnly)) {
        return "offscreen";
    }
    file.write(QJsonDocument(QJsonObject{{QStringLiteral("screens"), QJsonArray{screen}}}).toJson());
    return "offscreen:configfile=" + file.fileName().toUtf8();
}

/// Keeps the learner's own settings, icons and desktop out of the tour.
void shutOutDesktop(const Options &options, const QString &home)
{
    for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "XDG_DATA_DIRS"}) {
        qputenv(variable, home.toUtf8());
    }
    qunsetenv("QT_QPA_PLATFORMTHEME");
    if (!options.album.desktop.isEmpty()) {
        qputenv("QT_QPA_PLATFORM", platformWithScreen(options.album.desktop, home));
    } else if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QLocale::setDefault(QLocale::c());
    // The offscreen platform remarks on every fixed size; what the tour has to say it prints itself.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
}

/// The colours of a usual dark desktop theme.
QPalette darkPalette()
{
    const QColor window(0x35, 0x35, 0x35);
    const QColor text(0xf0, 0xf0, 0xf0);
    QPalette palette(text, window, window.lighter(150), window.darker(170), window.darker(130), text,
                     QColor(0x23, 0x23, 0x23));
    palette.setColor(QPalette::Button, window);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(0x2d, 0x2d, 0x2d));
    palette.setColor(QPalette::Highlight, QColor(0x2a, 0x82, 0xda));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x5a, 0xb0, 0xff));
    palette.setColor(QPalette::LinkVisited, QColor(0xb0, 0x8c, 0xff));
    palette.setColor(QPalette::ToolTipBase, QColor(0x23, 0x23, 0x23));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, QColor(0x9a, 0x9a, 0x9a));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, QColor(0x80, 0x80, 0x80));
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x50, 0x50, 0x50));
    return palette;
}

/// Keeps the seconds from the windows' clocks, so that a slow machine takes the same pictures.
bool isSecondOfClock(const QObject &watched, const QEvent &event)
{
    return event.type() == QEvent::Timer && watched.objectName() == QStringLiteral("Timer1");
}

/// Watches over the tour: the clocks stand still, and a command that fails ends it.
class Guide final : public QObject
{
public:
    explicit Guide(QTemporaryDir &home)
        : m_home(home)
    {
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show) {
            const auto *box = qobject_cast<QMessageBox *>(watched);
            if (box != nullptr && box->icon() == QMessageBox::Critical) {
                giveUp(*box);
            }
        }
        return isSecondOfClock(*watched, *event);
    }

private:
    /// Nobody would answer the report, and the guard that shows it would catch an exception.
    [[noreturn]] void giveUp(const QMessageBox &report)
    {
        std::fprintf(stderr, "The tour ended early. The program reported a failure:\n%s\n", qPrintable(report.text()));
        m_home.remove();
        std::_Exit(1);
    }

    QTemporaryDir &m_home;
};

} // namespace

int main(int argc, char **argv)
{
    const std::optional<Options> options = readOptions(argc, argv);
    if (!options) {
        return 2;
    }
    QTemporaryDir home;
    shutOutDesktop(*options, home.path());
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setStyle(QStringLiteral("fusion"));
    QApplication::setCursorFlashTime(0); // a caret is seen, whenever the picture is taken
    if (options->isDark) {
        QApplication::setPalette(darkPalette());
    }
    Guide guide(home);
    application.installEventFilter(&guide);
    try {
        Tour(options->album, home.path()).play();
    } catch (const std::exception &surprise) {
        std::fprintf(stderr, "The tour ended early. It expected: %s\n", surprise.what());
        return 1;
    }
    return 0;
}
