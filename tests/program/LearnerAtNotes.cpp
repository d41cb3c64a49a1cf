#include "tests/program/Learner.h"

#include <QTabBar>
#include <QTest>
#include <QTextEdit>
#include <QVariant>

// In the chooser and in the main window.

namespace {

constexpr int mostTopics = 7; // all tabs can be seen

QTextEdit &notesOf(const QWidget &page)
{
    return *page.findChild<QTextEdit *>(QStringLiteral("RichTextBox1"));
}

std::string rtfOf(const QTextEdit &box)
{
    return box.property("TextRTF").toString().toStdString();
}

} // namespace

void Learner::openSubject(QWidget &chooser)
{
    give([&] { press(chooser, Qt::Key_Return); }); // which takes the most recent subject
}

void Learner::keepNotes(QWidget &page)
{
    QTabBar &tabs = tabsOf(page);
    if (!m_isReady) {
        m_isReady = true;
        begin({"ready", page.windowTitle().toStdString()});
        end();
    } else if (!notesOf(page).isReadOnly()) {
        leaveNotes(page);
    } else if (m_isLeaving) {
        reply({QStringLiteral("Stop Studying"), QMessageBox::No}, [&] { press(page, Qt::Key_Escape); });
    } else if (below(100) >= m_character.diligence) {
        give([&] { giveCommand(page, "Image1(4)", Qt::Key_S, Qt::AltModifier); });
    } else if (!mayWriteIn(tabs, tabs.currentIndex())) {
        writableTopics(tabs) == 0 ? createTopic(page) : selectTopic(tabs);
    } else {
        const int choice = below(20);
        if (choice < 5) {
            writeNotes(page);
        } else if (choice < 7 && tabs.count() < mostTopics) {
            createTopic(page);
        } else if (choice < 9) {
            renameTopic(page);
        } else if (choice < 11 && writableTopics(tabs) > 2) {
            deleteTopic(page);
        } else if (choice < 15) {
            selectTopic(tabs);
        } else {
            openCards(page);
        }
    }
}

// Topics.

QTabBar &Learner::tabsOf(const QWidget &page)
{
    return *page.findChild<QTabBar *>(QStringLiteral("TabStrip1"));
}

std::string Learner::keyOf(const QTabBar &tabs, int tab)
{
    return tabs.tabData(tab).toString().mid(3).toStdString(); // behind "Key"
}

std::string Learner::selectedTopic(const QWidget &page)
{
    return keyOf(tabsOf(page), tabsOf(page).currentIndex());
}

bool Learner::mayWriteIn(const QTabBar &tabs, int tab) const
{
    const std::string name = tabs.tabText(tab).toStdString();
    return !name.empty() && m_character.letters.find(name.front()) != std::string::npos;
}

int Learner::writableTopics(const QTabBar &tabs) const
{
    int count = 0;
    for (int tab = 0; tab < tabs.count(); ++tab) {
        count += mayWriteIn(tabs, tab) ? 1 : 0;
    }
    return count;
}

void Learner::selectTopic(QTabBar &tabs)
{
    const int tab = below(tabs.count());
    give([&] {
        if (oneIn(2)) {
            QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(tab).center());
        } else {
            QTest::keyClick(&tabs, oneIn(2) ? Qt::Key_Left : Qt::Key_Right);
        }
    });
}

void Learner::createTopic(QWidget &page)
{
    const std::string name = newName();
    reply({.title = QStringLiteral("New Topic"), .text = QString::fromStdString(name), .store = {"create", name}},
          [&] { giveCommand(page, "Image1(0)", Qt::Key_N, Qt::AltModifier); });
    if (m_isStoring) {
        end();
    }
}

void Learner::renameTopic(QWidget &page)
{
    const QTabBar &tabs = tabsOf(page);
    std::string name = newName();
    name.front() = tabs.tabText(tabs.currentIndex()).toStdString().front();
    reply({.title = QStringLiteral("Rename Topic"),
           .text = QString::fromStdString(name),
           .store = {"rename", selectedTopic(page), name}},
          [&] { giveCommand(page, "Image1(1)", Qt::Key_R, Qt::AltModifier); });
    if (m_isStoring) {
        end();
    }
}

void Learner::deleteTopic(QWidget &page)
{
    reply(
        {.title = QStringLiteral("Delete Topic"), .button = QMessageBox::Yes, .store = {"delete", selectedTopic(page)}},
        [&] { giveCommand(page, "Image1(2)", Qt::Key_D, Qt::AltModifier); });
    if (m_isStoring) {
        end();
    }
}

// Notes.

void Learner::writeNotes(QWidget &page)
{
    give([&] {
        giveCommand(page, "Image1(8)", Qt::Key_E, Qt::AltModifier);
        if (!notesOf(page).isReadOnly()) {
            type(notesOf(page));
        }
    });
}

/// By Escape, or by a click on another tab, whose topic gets the notes; or with the program.
void Learner::leaveNotes(QWidget &page)
{
    QTabBar &tabs = tabsOf(page);
    const int other = below(tabs.count());
    const bool goesElsewhere = !m_isLeaving && oneIn(4) && mayWriteIn(tabs, other);
    const int receiver = goesElsewhere ? other : tabs.currentIndex();
    begin({"notes", keyOf(tabs, receiver), rtfOf(notesOf(page))});
    reply({QStringLiteral("Stop Studying"), QMessageBox::No}, [&] {
        if (m_isLeaving) {
            click(page, "Image1(7)");
        } else if (goesElsewhere) {
            QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(receiver).center());
        } else {
            QTest::keyClick(&notesOf(page), Qt::Key_Escape);
        }
    });
    end();
}
