#include "app/Module1.h"
#include "platform/NotebookPage.h"
#include "tests/support/Windows.h"

namespace {

TEST(Module1, ASubjectIsNamedAfterItsFileWithoutTheEnding)
{
    EXPECT_EQ(subjectAt(QStringLiteral("/a/b/World History.crl")),
              (Subject{QStringLiteral("/a/b/World History.crl"), QStringLiteral("World History")}));
}

TEST(Module1, TheEndingIsFourCharactersWhateverTheyAre)
{
    EXPECT_EQ(subjectAt(QStringLiteral("/a/notes.v2.CRL")).name, QStringLiteral("notes.v2"));
    EXPECT_EQ(subjectAt(QStringLiteral("/a/abc")).name, QString());
}

TEST(Module1, TheGlobalsStartEmpty)
{
    const Module1 module;
    EXPECT_EQ(module.subject, Subject{});
    EXPECT_TRUE(module.study.cardQuery.empty());
    EXPECT_TRUE(module.study.cancelled);
}

TEST(Module1, ThePathOfASubjectKeepsItsLetters)
{
    const Subject subject{QStringLiteral("/a/Größe übung.crl"), {}};
    EXPECT_EQ(subjectFile(subject).string(), subject.path.toStdString());
}

TEST(Module1, WindowsAreWhiteUntilAColourIsChosen)
{
    NotebookPage window{PageRuling{}};
    const SettingsStore settings;
    applyBackground(window, settings);
    EXPECT_EQ(window.paperColor(), QColor(Qt::white));
}

TEST(Module1, TheStoredColourIsInBlueGreenRedOrder)
{
    SettingsStore settings;
    settings.write(QStringLiteral("Settings"), QStringLiteral("Color"), QStringLiteral("255"));
    NotebookPage window{PageRuling{}};
    applyBackground(window, settings);
    EXPECT_EQ(window.paperColor(), QColor(Qt::red));
    settings.write(QStringLiteral("Settings"), QStringLiteral("Color"), QStringLiteral("16777215"));
}

TEST(Module1, AColourThatIsNoNumberIsReportedAndThePageStaysWhite)
{
    SettingsStore settings;
    settings.write(QStringLiteral("Settings"), QStringLiteral("Color"), QStringLiteral("pink"));
    NotebookPage window{PageRuling{}};
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    applyBackground(window, settings);
    EXPECT_TRUE(answers.last().text.contains(QStringLiteral("pink")));
    EXPECT_EQ(window.paperColor(), QColor(Qt::white));
    settings.write(QStringLiteral("Settings"), QStringLiteral("Color"), QStringLiteral("16777215"));
}

} // namespace
