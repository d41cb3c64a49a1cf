#include "forms/frmEditCards/frmEditCards.h"
#include "forms/frmNotes/frmNotes.h"
#include "forms/frmOpen/frmOpen.h"
#include "platform/RichTextBox.h"
#include "tests/tour/Steps.h"
#include "tests/tour/Tour.h"

#include <QAbstractItemView>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>

void Tour::beginSubject()
{
    auto &window = visible<frmNotes>();
    withDialog([&] {
        expect(visible<QMessageBox>().windowTitle() == QStringLiteral("Stop Studying"),
               "leaving asks whether to open another subject");
        answer(QMessageBox::Yes);
    });
    QTest::keyClick(&window, Qt::Key_Escape);

    auto &chooser = visible<frmOpen>();
    click(chooser, "Image1(0)");
    withDialog([this] {
        auto &name = control<QLineEdit>(visible<QFileDialog>(), "fileNameEdit");
        name.setText(m_home.filePath(QStringLiteral("Weather.crl")));
        QTest::keyClick(&name, Qt::Key_Return);
    });
    QTest::keyClick(&chooser, Qt::Key_Return);
    expect(window.windowTitle() == QStringLiteral("Cramlet: Weather"), "the main window shows the new subject");
}

void Tour::createTopic()
{
    auto &window = visible<frmNotes>();
    m_album.takeWindow(window, "16-empty-subject", "A new subject waits for its first topic.");
    withDialog([this] {
        auto &question = visible<QInputDialog>();
        expect(question.textValue() == QStringLiteral("Chapter 1"), "a name for the first topic is offered");
        m_album.takeDialog(question, "18-topic-name", "A topic gets a name.");
        question.setTextValue(QStringLiteral("Clouds"));
        QTest::keyClick(&question, Qt::Key_Return);
    });
    QTest::keyClick(&window, Qt::Key_N, Qt::AltModifier);
}

void Tour::writeNotes()
{
    auto &window = visible<frmNotes>();
    auto &notes = control<RichTextBox>(window, "RichTextBox1");
    QTest::keyClick(&window, Qt::Key_E, Qt::AltModifier);
    expect(!notes.isLocked() && control<QWidget>(window, "CoolBar1").isVisible(), "the notes can be edited");
    press(window, Qt::Key_A, Qt::AltModifier);
    press(window, Qt::Key_B, Qt::ControlModifier);
    for (int larger = 0; larger < 4; ++larger) {
        press(window, Qt::Key_Period, Qt::ControlModifier);
    }
    type(window, QStringLiteral("Clouds"));
    press(window, Qt::Key_Return);
    press(window, Qt::Key_A, Qt::AltModifier);
    press(window, Qt::Key_A, Qt::AltModifier);
    press(window, Qt::Key_B, Qt::ControlModifier);
    for (int smaller = 0; smaller < 3; ++smaller) {
        press(window, Qt::Key_Comma, Qt::ControlModifier);
    }
    type(window, QStringLiteral("A cloud is water that floats. How high it floats is in its name:"));
    press(window, Qt::Key_Return);
    press(window, Qt::Key_L, Qt::ControlModifier);
    for (const char *line : {"stratus: low, a grey blanket", "alto...: in the middle", "cirrus: high, made of ice"}) {
        type(window, QString::fromLatin1(line));
        press(window, Qt::Key_Return);
    }
    press(window, Qt::Key_I, Qt::ControlModifier);
    type(window, QStringLiteral("nimbus means rain"));
    m_album.takeWindow(window, "10-notes-editor", "Notes are written with formats of all kinds.");
    lookAtObjects();
    press(window, Qt::Key_Escape);
    expect(notes.isLocked() && notes.toPlainText().contains(QStringLiteral("nimbus")), "Escape stores the notes");
}

void Tour::lookAtObjects()
{
    withDialog([this] {
        auto &dialog = visible<QDialog>();
        expect(dialog.windowTitle() == QStringLiteral("Insert Object"), "pictures and files can be inserted");
        m_album.takeDialog(dialog, "17-insert-object", "Pictures and files can be inserted.");
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    press(visible<frmNotes>(), Qt::Key_O, Qt::ControlModifier);
}

void Tour::writeCards()
{
    auto &window = visible<frmNotes>();
    QTest::keyClick(&window, Qt::Key_F, Qt::AltModifier);
    auto &editor = visible<frmEditCards>();
    m_album.place(editor, {760, 560});
    expect(editor.windowTitle().endsWith(QStringLiteral("(Card 1 of 1)")), "a topic without cards opens on a new one");
    type(editor, QStringLiteral("Which clouds are made of ice?"));
    press(editor, Qt::Key_Down, Qt::AltModifier);
    type(editor, QStringLiteral("Cirrus"));
    press(editor, Qt::Key_Right, Qt::AltModifier);
    expect(editor.windowTitle().endsWith(QStringLiteral("(Card 2 of 2)")), "next goes on to a new card");
    press(editor, Qt::Key_Period, Qt::ControlModifier);
    press(editor, Qt::Key_Period, Qt::ControlModifier);
    type(editor, QStringLiteral("What does "));
    press(editor, Qt::Key_B, Qt::ControlModifier);
    type(editor, QStringLiteral("nimbus"));
    press(editor, Qt::Key_B, Qt::ControlModifier);
    type(editor, QStringLiteral(" mean?"));
    press(editor, Qt::Key_Down, Qt::AltModifier);
    type(editor, QStringLiteral("Rain"));
    m_album.takeWindow(editor, "11-card-editor", "The card editor shows both sides of a card.");
    press(editor, Qt::Key_Escape);
    expect(control<QLabel>(window, "StatusBar1").text() == QStringLiteral("This topic has 2 flash cards."),
           "the main window counts the cards that were written");
}

void Tour::readHelp()
{
    auto &window = visible<frmNotes>();
    click(window, "Image1(6)");
    QWidget *help = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == QStringLiteral("HelpWindow")) {
            help = widget;
        }
    }
    expect(help != nullptr && help->isVisible(), "the help opens");
    bringToFront(*help);
    m_album.place(*help, {900, 620});
    const auto &contents = control<QAbstractItemView>(*help, "HelpContents");
    expect(QTest::qWaitFor([&contents] { return contents.currentIndex().isValid(); }),
           "the contents show where the topic stands");
    m_album.takeWindow(*help, "12-help", "The help opens at the topic of the window that asks for it.");
    help->close();
}

void Tour::leave()
{
    auto &window = visible<frmNotes>();
    withDialog([] { answer(QMessageBox::No); });
    QTest::keyClick(&window, Qt::Key_Escape);
    expect(!window.isVisible(), "the main window closes");
}
