#include "forms/frmEditCards/frmEditCards.h"
#include "tests/forms/NotesTest.h"

namespace {

/// The notes that a new topic of this name gets, byte for byte.
std::string templateOf(const std::string &name)
{
    return "{\\rtf1\\ansi\\deff0\\deflang1033{\\fonttbl{\\f0\\fscript\\fprq2\\fcharset0 Comic Sans "
           "MS;}}\\pard\\f0\\fs20 " +
           name + " notes...\\f1\\par}";
}

QString keyOf(int topic)
{
    return QStringLiteral("Key%1").arg(topic);
}

class frmNotesTopics : public NotesTest
{
protected:
    void openEmptySubject()
    {
        SubjectStore::create(file);
        open();
    }
    [[nodiscard]] int lastTopic() const { return listTopics(file).back().index; }
    QStringList captions()
    {
        QStringList all;
        for (int position = 0; position < tabs().count(); ++position) {
            all << tabs().keyedCaption(position);
        }
        return all;
    }
};

// Creating.

TEST_F(frmNotesTopics, TheFirstTopicIsOfferedAsChapter1AndCancellingCreatesNothing)
{
    openEmptySubject();
    DialogAnswers answers;
    answers.act(answer(QStringLiteral("typed in vain"), Qt::Key_Escape));
    run(Create);
    EXPECT_EQ(asked.title, QStringLiteral("New Topic"));
    EXPECT_EQ(asked.prompt, QStringLiteral("Name of topic?"));
    EXPECT_EQ(asked.offered, QStringLiteral("Chapter 1"));
    EXPECT_EQ(tabs().count(), 0);
    EXPECT_EQ(title(), QStringLiteral("Create Topic..."));
    EXPECT_EQ(storedNames(), QStringList());
}

TEST_F(frmNotesTopics, WithThreeTabsChapter4IsOffered)
{
    open();
    DialogAnswers answers;
    answers.act(answer({}, Qt::Key_Escape));
    run(Create);
    EXPECT_EQ(asked.offered, QStringLiteral("Chapter 4"));
}

TEST_F(frmNotesTopics, TheOfferedNameCanBeTakenAsItIs)
{
    openEmptySubject();
    DialogAnswers answers;
    answers.key(Qt::Key_Return);
    run(Create);
    EXPECT_EQ(storedNames(), QStringList{QStringLiteral("Chapter 1")});
}

TEST_F(frmNotesTopics, TheOfferedNameMayRepeatOneAfterADeletion)
{
    openEmptySubject();
    create(QStringLiteral("Chapter 1"));
    create(QStringLiteral("Chapter 2"));
    clickTab(0);
    remove(QMessageBox::Yes);
    create(QStringLiteral("Chapter 2"));
    EXPECT_EQ(asked.offered, QStringLiteral("Chapter 2"));
    EXPECT_EQ(storedNames(), (QStringList{QStringLiteral("Chapter 2"), QStringLiteral("Chapter 2")}));
}

TEST_F(frmNotesTopics, AClearedNameCreatesNothing)
{
    open();
    create({});
    EXPECT_EQ(tabs().count(), 3);
    EXPECT_EQ(storedNames().size(), 3);
}

TEST_F(frmNotesTopics, ANewTopicStandsLastAndIsSelectedAndShown)
{
    open();
    create(QStringLiteral("Fourth"));
    ASSERT_EQ(tabs().count(), 4);
    EXPECT_EQ(tabs().currentIndex(), 3);
    EXPECT_EQ(tabs().keyedCaption(3), QStringLiteral("Fourth"));
    EXPECT_EQ(tabs().tabData(3).toString(), keyOf(lastTopic()));
    EXPECT_EQ(title(), QStringLiteral("Fourth"));
    EXPECT_EQ(notes(), QStringLiteral("Fourth notes..."));
    EXPECT_EQ(status().text(), QStringLiteral("This topic has no flash cards."));
    EXPECT_EQ(storedNotes(lastTopic()), templateOf("Fourth"));
    EXPECT_FALSE(isEditing());
}

TEST_F(frmNotesTopics, TheFirstTopicBringsThePageForItsNotes)
{
    openEmptySubject();
    EXPECT_FALSE(box().isVisible());
    create(QStringLiteral("First"));
    EXPECT_TRUE(box().isVisible());
    EXPECT_TRUE(status().isVisible());
    EXPECT_EQ(tabs().tabData(0).toString(), keyOf(lastTopic()));
    EXPECT_EQ(title(), QStringLiteral("First"));
}

TEST_F(frmNotesTopics, ANewTopicNeverGetsTheKeyOfADeletedOne)
{
    open();
    clickTab(2);
    remove(QMessageBox::Yes);
    create(QStringLiteral("New"));
    EXPECT_GT(lastTopic(), empty);
    EXPECT_EQ(tabs().tabData(2).toString(), keyOf(lastTopic()));
}

TEST_F(frmNotesTopics, AName255CharactersLongIsStored)
{
    open();
    const QString longest(255, QChar(0xe4));
    create(longest);
    EXPECT_EQ(storedNames().constLast(), longest);
    EXPECT_EQ(title(), longest);
    EXPECT_EQ(tabs().keyedCaption(3), longest);
    EXPECT_GE(window->width(), tabs().width());
}

TEST_F(frmNotesTopics, AName256CharactersLongIsRefusedAndNothingStored)
{
    open();
    const QStringList before = storedNames();
    const QString tooLong(256, QLatin1Char('n'));
    for (const Command command : {Create, Rename}) {
        DialogAnswers answers;
        answers.act(answer(tooLong)).press(QMessageBox::Ok);
        run(command);
        EXPECT_EQ(answers.last().icon, QMessageBox::Critical);
        EXPECT_TRUE(answers.last().text.contains(QString::fromStdString(file.string())));
        EXPECT_TRUE(answers.last().text.contains(QStringLiteral("at most 255 characters")));
        EXPECT_EQ(storedNames(), before);
        EXPECT_EQ(captions(), before);
        EXPECT_EQ(title(), QStringLiteral("Large"));
        EXPECT_TRUE(isOpen());
    }
}

/// What becomes of a name.
struct TopicName
{
    const char *label;
    const char *name;
    const char *shown;    ///< what the new topic's notes show
    bool selects = false; ///< whether editing them begins with all selected
};

class frmNotesNames : public frmNotesTopics, public testing::WithParamInterface<TopicName>
{
};

TEST_P(frmNotesNames, AreStoredAndShownAsTheyWereTyped)
{
    open();
    const QString name = QString::fromUtf8(GetParam().name);
    create(name);
    EXPECT_EQ(storedNames().constLast(), name);
    EXPECT_EQ(storedNotes(lastTopic()), templateOf(GetParam().name)) << "the name goes into the notes as it is";
    EXPECT_EQ(title(), name);
    EXPECT_EQ(tabs().keyedCaption(3), name);
    EXPECT_EQ(tabs().tabData(3).toString(), keyOf(lastTopic()));
    EXPECT_EQ(notes(), QString::fromUtf8(GetParam().shown));
}

TEST_P(frmNotesNames, AreSelectedWithTheirNotesIfTheseReadAsTheNameSays)
{
    open();
    create(QString::fromUtf8(GetParam().name));
    run(Edit);
    const QTextCursor cursor = box().textCursor();
    EXPECT_EQ(cursor.selectionStart(), 0);
    EXPECT_EQ(cursor.selectionEnd(), GetParam().selects ? static_cast<int>(notes().size()) : 0);
}

TEST_P(frmNotesNames, CanBeGivenByRenaming)
{
    open();
    clickTab(1);
    const std::string before = storedNotes(small);
    const QString name = QString::fromUtf8(GetParam().name);
    rename(name);
    EXPECT_EQ(storedNames().at(1), name);
    EXPECT_EQ(title(), name);
    EXPECT_EQ(tabs().keyedCaption(1), name);
    EXPECT_EQ(storedNotes(small), before);
    rename(QStringLiteral("plain"));
    EXPECT_EQ(asked.offered, name);
}

TEST_P(frmNotesNames, AreNamedInTheQuestionWhetherToDeleteThem)
{
    open();
    create(QString::fromUtf8(GetParam().name));
    remove(QMessageBox::No);
    EXPECT_EQ(question.text, QStringLiteral("Are you sure you want to delete the '") +
                                 QString::fromUtf8(GetParam().name) +
                                 QStringLiteral("'\ntopic and all of its flash cards and notes?"));
}

INSTANTIATE_TEST_SUITE_P(
    Table, frmNotesNames,
    testing::Values(TopicName{"Plain", "Ancient Rome", "Ancient Rome notes...", true},
                    TopicName{"BracesAndBackslash", "A{b}\\c", "Abnotes..."},
                    TopicName{"Ampersand", "Q & A", "Q & A notes...", true},
                    TopicName{"TwoAmpersands", "R&&D", "R&&D notes...", true},
                    TopicName{"Umlaut", "Übung für Fortgeschrittene", "Übung für Fortgeschrittene notes...", true},
                    TopicName{"Japanese", "日本語", "日本語 notes...", true},
                    TopicName{"BeyondTheFirstPlane", "𝄞 Clef", "𝄞 Clef notes...", true},
                    TopicName{"LooksLikeMarkup", "<b>\"5 > 3\"</b> &amp; 100 %1",
                              "<b>\"5 > 3\"</b> &amp; 100 %1 notes...", true},
                    TopicName{"BlanksAround", "  two  ", "  two   notes...", true},
                    TopicName{"Apostrophe", "it's", "it's notes...", true},
                    TopicName{"OpeningBrace", "a{b", "ab notes..."}, TopicName{"ClosingBrace", "a}b", "a"}),
    [](const auto &row) { return row.param.label; });

// Renaming.

TEST_F(frmNotesTopics, RenamingChangesNameTabAndTitleAndNothingElse)
{
    open();
    clickTab(1);
    rename(QStringLiteral("Middle"));
    EXPECT_EQ(asked.title, QStringLiteral("Rename Topic"));
    EXPECT_EQ(asked.prompt, QStringLiteral("Name of topic?"));
    EXPECT_EQ(asked.offered, QStringLiteral("Small & tidy"));
    EXPECT_EQ(storedNames(), (QStringList{QStringLiteral("Large"), QStringLiteral("Middle"), QStringLiteral("Empty")}));
    EXPECT_EQ(captions(), storedNames());
    EXPECT_EQ(title(), QStringLiteral("Middle"));
    EXPECT_EQ(tabs().tabData(1).toString(), keyOf(small));
    EXPECT_EQ(storedText(small), QStringLiteral("Small & tidy notes..."));
    EXPECT_EQ(status().text(), QStringLiteral("This topic has 4 flash cards."));
}

TEST_F(frmNotesTopics, AfterRenamingTheSameTabIsSelectedAndHasTheFocus)
{
    open();
    clickTab(1);
    box().setFocus();
    rename(QStringLiteral("Middle"));
    EXPECT_EQ(tabs().currentIndex(), 1);
    EXPECT_EQ(window->focusWidget(), &tabs());
    key(Qt::Key_Right);
    EXPECT_EQ(title(), QStringLiteral("Empty"));
}

/// An answer that names nothing.
struct NoName
{
    const char *label;
    Qt::Key last;
};

class frmNotesUnnamed : public frmNotesTopics, public testing::WithParamInterface<NoName>
{
};

TEST_P(frmNotesUnnamed, RenamingChangesNothingButSelectsTheTabAgain)
{
    open();
    clickTab(1);
    box().setFocus();
    renameTopic(file, small, "named by another program"); // shown when the topic is
    const QStringList before = storedNames();
    DialogAnswers answers;
    answers.act(answer({}, GetParam().last));
    run(Rename);
    EXPECT_EQ(asked.offered, QStringLiteral("Small & tidy"));
    EXPECT_EQ(storedNames(), before);
    EXPECT_EQ(tabs().currentIndex(), 1);
    EXPECT_EQ(window->focusWidget(), &tabs());
    EXPECT_EQ(title(), QStringLiteral("named by another program"));
}

INSTANTIATE_TEST_SUITE_P(Answers, frmNotesUnnamed,
                         testing::Values(NoName{"Cancelled", Qt::Key_Escape}, NoName{"Cleared", Qt::Key_Return}),
                         [](const auto &row) { return row.param.label; });

// Deleting.

TEST_F(frmNotesTopics, DeletingAsksFirstAndNoLeavesTheTopic)
{
    open();
    clickTab(1);
    remove(QMessageBox::No);
    EXPECT_EQ(question.text, QStringLiteral("Are you sure you want to delete the 'Small & tidy'\n"
                                            "topic and all of its flash cards and notes?"));
    EXPECT_EQ(question.title, QStringLiteral("Delete Topic"));
    EXPECT_EQ(question.icon, QMessageBox::Question);
    EXPECT_EQ(question.buttons, QMessageBox::Yes | QMessageBox::No);
    EXPECT_EQ(tabs().count(), 3);
    EXPECT_EQ(title(), QStringLiteral("Small & tidy"));
    EXPECT_EQ(readTopic(file, small).cardCount, 4);
}

TEST_F(frmNotesTopics, EscapeAtTheQuestionLeavesTheTopic)
{
    open();
    DialogAnswers answers;
    answers.key(Qt::Key_Escape);
    run(Delete);
    EXPECT_EQ(tabs().count(), 3);
    EXPECT_EQ(readTopic(file, large).cardCount, 12);
}

TEST_F(frmNotesTopics, DeletingTakesExactlyTheTopicsCardsAndSelectsTheFirstTab)
{
    addCards(file, empty, 3);
    open();
    clickTab(1);
    remove(QMessageBox::Yes);
    EXPECT_EQ(storedNames(), (QStringList{QStringLiteral("Large"), QStringLiteral("Empty")}));
    EXPECT_EQ(captions(), storedNames());
    EXPECT_EQ(countCards(file, cardsOfTopic(large)), 12);
    EXPECT_EQ(countCards(file, cardsOfTopic(small)), 0);
    EXPECT_EQ(countCards(file, cardsOfTopic(empty)), 3);
    EXPECT_EQ(tabs().currentIndex(), 0);
    EXPECT_EQ(title(), QStringLiteral("Large"));
    EXPECT_EQ(notes(), QStringLiteral("Large notes..."));
    EXPECT_EQ(status().text(), QStringLiteral("This topic has 12 flash cards."));
}

TEST_F(frmNotesTopics, DeletingTheFirstTopicShowsTheOneAfterIt)
{
    open();
    remove(QMessageBox::Yes);
    EXPECT_EQ(tabs().currentIndex(), 0);
    EXPECT_EQ(tabs().tabData(0).toString(), keyOf(small));
    EXPECT_EQ(title(), QStringLiteral("Small & tidy"));
}

TEST_F(frmNotesTopics, AfterTheLastTopicIsDeletedThePageInvitesToCreateOne)
{
    open();
    for (int topic = 0; topic < 3; ++topic) {
        remove(QMessageBox::Yes);
    }
    EXPECT_EQ(tabs().count(), 0);
    EXPECT_EQ(title(), QStringLiteral("Create Topic..."));
    EXPECT_EQ(notes(), QString());
    EXPECT_FALSE(status().isVisible());
    EXPECT_FALSE(box().isVisible());
    EXPECT_EQ(storedNames(), QStringList());
    create(QStringLiteral("Anew"));
    EXPECT_EQ(asked.offered, QStringLiteral("Chapter 1"));
    EXPECT_EQ(title(), QStringLiteral("Anew"));
}

// Without topics.

/// A command that needs a topic.
struct NeedsTopic
{
    const char *label;
    int command;
    Qt::Key letter;
    const char *text;
};

class frmNotesWithoutTopics : public frmNotesTopics, public testing::WithParamInterface<NeedsTopic>
{
protected:
    void expectRefusal(const std::function<void()> &give)
    {
        DialogAnswers answers;
        answers.press(QMessageBox::Ok);
        give();
        EXPECT_EQ(answers.last().text, QString::fromLatin1(GetParam().text));
        EXPECT_EQ(answers.last().title, QStringLiteral("No Topics"));
        EXPECT_EQ(answers.last().icon, QMessageBox::Information);
        EXPECT_EQ(answers.last().buttons, QMessageBox::Ok);
        EXPECT_FALSE(isEditing());
        EXPECT_EQ(visibleWindow<frmEditCards>(), nullptr);
        EXPECT_EQ(storedNames(), QStringList());
    }
};

TEST_P(frmNotesWithoutTopics, TheCommandSaysThatThereAreNone)
{
    openEmptySubject();
    expectRefusal([&] { run(static_cast<Command>(GetParam().command)); });
    expectRefusal([&] { key(GetParam().letter, Qt::AltModifier); });
}

constexpr const char *createFirst = "You must create a topic before editing flash cards";

INSTANTIATE_TEST_SUITE_P(Table, frmNotesWithoutTopics,
                         testing::Values(NeedsTopic{"Rename", 1, Qt::Key_R, "There are not topics to rename."},
                                         NeedsTopic{"Delete", 2, Qt::Key_D, "There are no topics to delete."},
                                         NeedsTopic{"EditFlashCards", 3, Qt::Key_F, createFirst},
                                         NeedsTopic{"EditNotes", 8, Qt::Key_E, createFirst}),
                         [](const auto &row) { return row.param.label; });

} // namespace
