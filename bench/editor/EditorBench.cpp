// Times what a writer waits for: the card editor to open on a large topic, beside
// reading the topic's keys through the engine's C API, and a letter to appear in
// long notes, beside the same letter in a bare text box with the same document.
// Both sides run in turn; the table shows medians. Exits with 1 if a bound is broken.

#include "app/Module1.h"
#include "bench/rtf/RtfSamples.h"
#include "bench/support/BareEngine.h"
#include "bench/support/FreshHome.h"
#include "bench/support/LargeSubject.h"
#include "bench/support/Measure.h"
#include "bench/support/PaintWatch.h"
#include "bench/support/PairTable.h"
#include "forms/frmEditCards/frmEditCards.h"
#include "forms/frmNotes/frmNotes.h"
#include "platform/RichTextBox.h"
#include "store/SubjectWriting.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTextDocument>
#include <QTimer>

#include <memory>

namespace fs = std::filesystem;

namespace {

constexpr double openingBesideScan = 1.3;
constexpr double millisecondsOfKeystroke = 16;

constexpr int cardsOfLargeTopic = 100'000;
constexpr int bytesOfNotes = 1'000'000;
constexpr int openings = 21;
constexpr int keystrokes = 101;

double millisecondsToOpenEditor(Module1 &module, int topic)
{
    module.study.cardQuery = cardsOfTopic(topic);
    std::unique_ptr<frmEditCards> editor;
    const double time = microseconds([&] {
        editor = std::make_unique<frmEditCards>(module, EditedTopic{topic, QStringLiteral("Large")}, nullptr);
        const PaintWatch watch(*editor);
        editor->show();
        watch.waitForPaint();
    });
    editor->setAttribute(Qt::WA_DeleteOnClose, false);
    editor->close();
    return time / 1000;
}

void benchOpening(PairTable &table, const fs::path &folder)
{
    const fs::path path = folder / "Large.crl";
    makeLargeSubject(path, cardsOfLargeTopic);
    Module1 module;
    module.subject = subjectAt(QString::fromStdString(path.string()));
    const PairOfTimes times = inTurn(
        openings, [&] { return millisecondsToOpenEditor(module, 1); },
        [&] {
            return millisecondsToScan(path, "SELECT \"Index\" FROM FlashCards WHERE NIndex = 1", cardsOfLargeTopic);
        });
    table.row("open the editor on 100,000 cards | key scan", median(times.ours), median(times.floor),
              median(times.ours) <= openingBesideScan * median(times.floor));
}

double millisecondsOfLetter(QTextEdit &box)
{
    return millisecondsUntilPainted(*box.viewport(), [&] { QTest::keyClick(&box, Qt::Key_X); });
}

void benchTyping(PairTable &table, const fs::path &folder)
{
    const fs::path path = folder / "Notes.crl";
    SubjectStore::create(path);
    const int topic = createTopic(path, "Long");
    saveNotes(path, topic, longNotes(bytesOfNotes));
    Module1 module;
    module.subject = subjectAt(QString::fromStdString(path.string()));
    auto *window = new frmNotes(module);
    window->show();
    require(QTest::qWaitForWindowActive(window), "the window does not come to the front");
    window->resize(900, 620); // not before: the window then takes the size that is kept for it
    QTest::keyClick(window, Qt::Key_E, Qt::AltModifier);
    auto &box = *window->findChild<RichTextBox *>(QStringLiteral("RichTextBox1"));
    require(!box.isLocked(), "the notes cannot be edited");

    QTextEdit bare;
    bare.resize(box.size());
    const std::unique_ptr<QTextDocument> document(box.document()->clone());
    bare.setDocument(document.get());
    bare.show();

    for (const auto &[where, share] : {std::pair{"start", 0.0}, {"middle", 0.5}, {"end", 1.0}}) {
        for (QTextEdit *edit : {static_cast<QTextEdit *>(&box), &bare}) {
            QTextCursor cursor = edit->textCursor();
            cursor.setPosition(static_cast<int>(share * (edit->document()->characterCount() - 1)));
            edit->setTextCursor(cursor);
            edit->ensureCursorVisible();
        }
        const PairOfTimes times = inTurn(
            keystrokes, [&] { return millisecondsOfLetter(box); }, [&] { return millisecondsOfLetter(bare); });
        table.row(std::string("letter at the ") + where + " of 1 MB of notes | bare box", median(times.ours),
                  median(times.floor), median(times.ours) < millisecondsOfKeystroke);
    }
    bare.hide();
    QTimer::singleShot(0, window, [] {
        auto *question = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        require(question != nullptr, "closing does not ask");
        question->button(QMessageBox::No)->click();
    });
    window->close();
}

} // namespace

int main(int argc, char **argv)
{
    const FreshHome home;
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    PairTable table("milliseconds, ours beside the floor");
    benchOpening(table, home.path());
    benchTyping(table, home.path());
    return table.everyBoundHolds() ? 0 : 1;
}
