#include "BookSources.h"

#include <QDir>
#include <QHelpEngineCore>
#include <QHelpLink>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSet>
#include <QTemporaryDir>
#include <QTextBrowser>

#include <algorithm>
#include <array>
#include <gtest/gtest.h>

// The help book: what was written, read as text, and what was built of it, read by Qt Help.

namespace {

const QString sources = QStringLiteral(HELP_SOURCES);
const QString pictures = QStringLiteral(HELP_PICTURES);
const QString program = QStringLiteral(PROGRAM_SOURCES);
const QString builtBook = QStringLiteral(HELP_BOOK);

constexpr int widestPicture = 560;   // pixels
constexpr int narrowestWindow = 620; // pixels
constexpr int firstContext = 5;
constexpr int lastContext = 11;

class HelpPages : public testing::Test
{
protected:
    const QHash<QString, Page> pages = readPages(sources);
    const Project project = readProject(sources + QStringLiteral("/cramlet.qhp"));

    /// Whether \p target, a page and perhaps a section of it, is there. \p from is the page it is asked on.
    [[nodiscard]] bool leadsSomewhere(const QString &target, const QString &from = {}) const
    {
        const QString page = target.section(QLatin1Char('#'), 0, 0);
        const QString section = target.section(QLatin1Char('#'), 1);
        const auto found = pages.constFind(page.isEmpty() ? from : page);
        return found != pages.constEnd() &&
               (target.contains(QLatin1Char('#')) ? found->names.contains(section) : !target.isEmpty());
    }
};

std::string words(const QString &text)
{
    return text.toStdString();
}

// What was written.

TEST_F(HelpPages, HasPagesThatAreWellFormed)
{
    ASSERT_FALSE(pages.isEmpty());
    EXPECT_EQ(words(project.error), "");
    for (auto page = pages.begin(); page != pages.end(); ++page) {
        EXPECT_EQ(words(page->error), "") << words(page.key());
    }
}

TEST_F(HelpPages, ListsEveryPageOnceInItsContents)
{
    QStringList listed;
    for (const Entry &entry : project.contents) {
        listed << entry.target;
    }
    listed.sort();
    QStringList written = pages.keys();
    written.sort();
    EXPECT_EQ(words(listed.join(QLatin1Char('\n'))), words(written.join(QLatin1Char('\n'))));
}

TEST_F(HelpPages, TitlesEveryPageAsItsContentsDo)
{
    for (const Entry &entry : project.contents) {
        const Page page = pages.value(entry.target);
        EXPECT_EQ(words(page.title), words(entry.name)) << words(entry.target);
        EXPECT_EQ(page.headings, QStringList(entry.name)) << words(entry.target);
    }
}

TEST_F(HelpPages, PacksEveryPageAndJustThePicturesThatPagesShow)
{
    QStringList needed = pages.keys() + QStringList(QStringLiteral("style.css"));
    for (const Page &page : pages) {
        for (const Picture &picture : page.pictures) {
            needed << picture.file;
        }
    }
    needed.removeDuplicates();
    needed.sort();
    QStringList packed = project.files;
    packed.sort();
    EXPECT_EQ(words(packed.join(QLatin1Char('\n'))), words(needed.join(QLatin1Char('\n'))));
}

TEST_F(HelpPages, HasNoLinkThatLeadsNowhere)
{
    for (auto page = pages.begin(); page != pages.end(); ++page) {
        EXPECT_FALSE(page->links.isEmpty()) << words(page.key());
        for (const QString &link : page->links) {
            EXPECT_TRUE(leadsSomewhere(link, page.key())) << words(page.key()) << ": " << words(link);
        }
    }
}

TEST_F(HelpPages, NamesEachSectionOfAPageDifferently)
{
    for (auto page = pages.begin(); page != pages.end(); ++page) {
        QStringList names = page->names;
        EXPECT_EQ(names.removeDuplicates(), 0) << words(page.key());
        EXPECT_EQ(names.size(), page->elements.count(QStringLiteral("h2"))) << words(page.key());
    }
}

TEST_F(HelpPages, HasNoIndexEntryThatLeadsNowhere)
{
    for (const Entry &entry : project.index) {
        EXPECT_TRUE(leadsSomewhere(entry.target)) << words(entry.name) << ": " << words(entry.target);
    }
}

TEST_F(HelpPages, HasARichIndexWithNoEntryTwice)
{
    EXPECT_GE(project.index.size(), 60);
    QSet<QString> seen;
    for (const Entry &entry : project.index) {
        EXPECT_FALSE(entry.name.isEmpty()) << words(entry.target);
        EXPECT_FALSE(seen.contains(entry.name.toCaseFolded())) << words(entry.name);
        seen.insert(entry.name.toCaseFolded());
    }
}

TEST_F(HelpPages, ShowsPicturesThatExistAreDescribedAndFitThePage)
{
    int shown = 0;
    for (auto page = pages.begin(); page != pages.end(); ++page) {
        for (const Picture &picture : page->pictures) {
            const QString file = picture.file.section(QLatin1Char('/'), 1);
            const QImage image(pictures + QLatin1Char('/') + file);
            EXPECT_TRUE(picture.file.startsWith(QLatin1String("pictures/"))) << words(picture.file);
            EXPECT_FALSE(image.isNull()) << words(page.key()) << ": " << words(picture.file);
            EXPECT_FALSE(picture.words.trimmed().isEmpty()) << words(page.key()) << ": " << words(picture.file);
            EXPECT_GT(picture.width, 0) << words(page.key()) << ": " << words(picture.file);
            EXPECT_LE(picture.width, std::min(widestPicture, image.width())) << words(picture.file);
            ++shown;
        }
    }
    EXPECT_GT(shown, 0);
}

TEST_F(HelpPages, LeavesColorsToTheDesktopAndHasNothingThatRunsOrIsFetched)
{
    const QStringList styles = QDir(sources).entryList({QStringLiteral("*.css")}, QDir::Files);
    ASSERT_FALSE(styles.isEmpty());
    for (const QString &file : pages.keys() + styles) {
        const QString text = textOfFile(sources + QLatin1Char('/') + file);
        for (const char *unwanted : {"http:", "https:", "javascript", "<script", "url(", "@import"}) {
            EXPECT_FALSE(text.contains(QLatin1String(unwanted), Qt::CaseInsensitive)) << words(file) << unwanted;
        }
        static const QRegularExpression color(QStringLiteral("\\b(color|background)[a-z-]*\\s*[:=]"));
        EXPECT_FALSE(text.contains(color)) << words(file);
    }
    for (auto page = pages.begin(); page != pages.end(); ++page) {
        for (const char *unwanted : {"style", "bgcolor", "color", "text", "link", "onclick", "onload"}) {
            EXPECT_FALSE(page->attributes.contains(QLatin1String(unwanted))) << words(page.key()) << unwanted;
        }
        EXPECT_FALSE(page->elements.contains(QLatin1String("font"))) << words(page.key());
    }
}

TEST_F(HelpPages, QuotesOnlyMessagesThatTheProgramHas)
{
    QStringList said;
    for (const char *folder : {"app", "forms", "platform", "study"}) {
        said += stringsOfSources(program + QLatin1Char('/') + QLatin1String(folder));
    }
    int quoted = 0;
    for (auto page = pages.begin(); page != pages.end(); ++page) {
        for (const QString &message : page->messages) {
            EXPECT_TRUE(std::ranges::any_of(said, [&](const QString &one) { return one.contains(asOneLine(message)); }))
                << words(page.key()) << ": " << words(message);
            ++quoted;
        }
    }
    EXPECT_GT(quoted, 20);
}

// The shortcuts.

struct Shortcut
{
    const char *section;
    const char *command; ///< the hint of its button
    const char *keys;
};

constexpr auto shortcuts = std::to_array<Shortcut>({
    {"chooser", "OK", "Enter"},
    {"chooser", "Cancel", "Esc"},
    {"main-window", "Create Topic...", "Alt+N"},
    {"main-window", "Rename Topic...", "Alt+R"},
    {"main-window", "Delete Topic", "Alt+D"},
    {"main-window", "Edit Flash Cards...", "Alt+F"},
    {"main-window", "Study...", "Alt+S"},
    {"main-window", "Help...", "F1"},
    {"main-window", "Exit (Esc)", "Esc"},
    {"main-window", "Edit Notes...", "Alt+E"},
    {"card-editor", "First Flash Card", "Alt+Home"},
    {"card-editor", "Previous Flash Card", "Alt+Left"},
    {"card-editor", "New Flash Card", "Alt+Insert"},
    {"card-editor", "Exit (Esc)", "Esc"},
    {"card-editor", "Delete Flash Card", "Alt+Delete"},
    {"card-editor", "Next Flash Card", "Alt+Right"},
    {"card-editor", "Last Flash Card", "Alt+End"},
    {"card-editor", "From the back to the front", "Alt+Up"},
    {"card-editor", "From the front to the back", "Alt+Down"},
    {"card-editor", "Help...", "F1"},
    {"text", "Decrease Indent", "Shift+Tab"},
    {"text", "Increase Indent", "Ctrl+Tab"},
    {"text", "Bold", "Ctrl+B"},
    {"text", "Italic", "Ctrl+I"},
    {"text", "Underline", "Ctrl+U"},
    {"text", "Bullet", "Ctrl+L"},
    {"text", "Insert Object...", "Ctrl+O"},
    {"text", "Font", "Ctrl+F"},
    {"text", "Font Size: next smaller", "Ctrl+, (comma)"},
    {"text", "Font Size: next larger", "Ctrl+. (full stop)"},
    {"text", "Alignment", "Alt+A"},
    {"session", "Mark Flash Card", "M"},
    {"session", "Shuffle Flash Cards", "S"},
    {"session", "Previous Flash Card", "Left"},
    {"session", "Exit (Esc)", "Esc"},
    {"session", "Next Flash Card", "Right"},
    {"session", "Pause the Auto Flipper", "P"},
    {"session", "View the Back of this Flash Card", "Down"},
    {"session", "View the Front of this Flash Card", "Up"},
    {"session", "Help...", "F1"},
    {"test", "Find the next Marked or Unanswered Question", "J"},
    {"test", "Previous Question", "Left, Up"},
    {"test", "Exit (Esc)", "Esc"},
    {"test", "Next Question", "Right, Down"},
    {"test", "Choose (a), (b) or (c)", "A, B, C, or 1, 2, 3"},
    {"test", "True, false", "T, F"},
    {"test", "Mark for review", "Q"},
    {"test", "Help...", "F1"},
});

/// The keys that \p page gives for a command; nothing if it does not tell of it.
QString keysOf(const Page &page, const QString &section, const QString &command)
{
    const auto row = std::ranges::find_if(page.rows, [&](const Row &one) {
        return one.section == section && one.cells.size() >= 2 && one.cells.first() == command;
    });
    return row != page.rows.end() ? row->cells.at(1) : QString();
}

TEST_F(HelpPages, TellsTheKeyOfEveryButtonThatHasOne)
{
    const Page page = pages.value(QStringLiteral("shortcuts.html"));
    for (const Shortcut &shortcut : shortcuts) {
        EXPECT_EQ(words(keysOf(page, QLatin1String(shortcut.section), QLatin1String(shortcut.command))), shortcut.keys)
            << shortcut.section << ": " << shortcut.command;
    }
}

TEST_F(HelpPages, TellsTheSameKeysOnThePagesOfTheWindows)
{
    struct Table
    {
        const char *page;
        const char *section; ///< of that page
        const char *inShortcuts;
    };
    constexpr auto tables = std::to_array<Table>({
        {"main-window.html", "commands", "main-window"},
        {"card-editor.html", "commands", "card-editor"},
        {"flash-cards.html", "commands", "session"},
        {"formatting.html", "tools", "text"},
    });
    const Page all = pages.value(QStringLiteral("shortcuts.html"));
    for (const Table &table : tables) {
        int compared = 0;
        const Page page = pages.value(QLatin1String(table.page));
        for (const Row &row : page.rows) {
            const QString known = keysOf(all, QLatin1String(table.inShortcuts), row.cells.value(0));
            if (row.section == QLatin1String(table.section) && !known.isEmpty()) {
                EXPECT_EQ(words(row.cells.at(1)), words(known)) << table.page << ": " << words(row.cells.first());
                ++compared;
            }
        }
        EXPECT_GE(compared, 7) << table.page;
    }
}

// What was built.

class BuiltBook : public HelpPages
{
protected:
    void SetUp() override
    {
        m_engine.setReadOnly(false);
        ASSERT_TRUE(m_engine.setupData()) << words(m_engine.error());
        ASSERT_TRUE(m_engine.registerDocumentation(builtBook)) << words(m_engine.error());
    }

    [[nodiscard]] QUrl place(const QString &target) const
    {
        return QUrl(QStringLiteral("qthelp://%1/book/%2").arg(QHelpEngineCore::namespaceName(builtBook), target));
    }

    [[nodiscard]] QByteArray read(const QString &file) const { return m_engine.fileData(place(file)); }
    [[nodiscard]] const QHelpEngineCore &engine() const { return m_engine; }

private:
    QTemporaryDir m_own;
    QHelpEngineCore m_engine{m_own.filePath(QStringLiteral("book.qhc"))};
};

TEST_F(BuiltBook, IsNamedAfterTheProgramAndItsVersion)
{
    EXPECT_EQ(words(QHelpEngineCore::namespaceName(builtBook)), "cramlet.help." HELP_VERSION);
}

TEST_F(BuiltBook, HoldsThePagesAsTheyWereWritten)
{
    ASSERT_FALSE(pages.isEmpty());
    for (const QString &page : pages.keys()) {
        EXPECT_EQ(words(QString::fromUtf8(read(page))), words(textOfFile(sources + QLatin1Char('/') + page)));
    }
}

TEST_F(BuiltBook, HoldsAllItsFiles)
{
    for (const QString &file : project.files) {
        EXPECT_FALSE(read(file).isEmpty()) << words(file);
    }
}

TEST_F(BuiltBook, HasOnePageForEachNumberThatTheProgramAsksFor)
{
    constexpr std::array titles{"The main window", "Editing notes",   "The card editor",   "Flash-card sessions",
                                "Taking a test",   "Getting started", "Setting up a study"};
    static_assert(titles.size() == lastContext - firstContext + 1);
    for (int context = firstContext; context <= lastContext; ++context) {
        const QList<QHelpLink> found = engine().documentsForIdentifier(QStringLiteral("context-%1").arg(context));
        ASSERT_EQ(found.size(), 1) << context;
        const QString page = found.first().url.fileName();
        EXPECT_EQ(words(pages.value(page).title), titles.at(static_cast<std::size_t>(context - firstContext)));
    }
}

TEST_F(BuiltBook, FindsEveryEntryOfItsIndex)
{
    for (const Entry &entry : project.index) {
        const QList<QHelpLink> found = engine().documentsForKeyword(entry.name);
        ASSERT_EQ(found.size(), 1) << words(entry.name);
        EXPECT_EQ(words(found.first().url.toString()), words(place(entry.target).toString()));
    }
}

/// Shows the book's pages and says which of their files are missing.
class Viewer final : public QTextBrowser
{
public:
    explicit Viewer(const QHelpEngineCore &book)
        : m_book(book)
    {
        resize(narrowestWindow, narrowestWindow);
    }

    QStringList missing;

protected:
    QVariant loadResource(int type, const QUrl &name) override
    {
        const QUrl file = source().resolved(name);
        const QByteArray bytes = m_book.fileData(file);
        if (bytes.isEmpty()) {
            missing << file.toString();
        }
        const bool isText = type != QTextDocument::ImageResource;
        return isText ? QVariant(QString::fromUtf8(bytes)) : QVariant(bytes);
    }

private:
    const QHelpEngineCore &m_book;
};

TEST_F(BuiltBook, FitsIntoANarrowWindow)
{
    for (const QString &page : pages.keys()) {
        Viewer viewer(engine());
        viewer.setSource(place(page));
        viewer.show();
        EXPECT_EQ(viewer.horizontalScrollBar()->maximum(), 0) << words(page);
        EXPECT_EQ(words(viewer.missing.join(QLatin1Char('\n'))), "") << words(page);
        EXPECT_EQ(words(viewer.documentTitle()), words(pages.value(page).title));
    }
}

} // namespace
