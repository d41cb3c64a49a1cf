// Times what a writer waits for: the card editor to open on a large topic, beside
// reading the topic's keys through the engine's C API, and a letter to appear in
// long notes, beside the same letter in a bare text box with the same document.
// Both sides run in turn; the table shows medians. Exits with 1 if a bound is broken.

#include "app/Module1.h"
#include "bench/rtf/RtfSamples.h"
#include "bench/support/BareEngine.h"
#include "bench/support/LargeSubject.h"
#include "bench/support/Measure.h"
#include "forms/frmEditCards/frmEditCards.h"
#include "forms/frmNotes/frmNotes.h"
#include "platform/RichTextBox.h"
#include "store/SubjectWriting.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
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

bool everyBoundHolds = true;

void printRow(const char *thing, double ours, double floor, bool holds)
{
    everyBoundHolds = everyBoundHolds && holds;
    std::printf("| %-44s | %9.2f | %9.2f | %5.2f | %-4s |\n", thing, ours, floor, ours / floor, holds ? "ok" : "OVER");
    std::fflush(stdout);
}

/// Notices that a widget is painted.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget &widget) { widget.installEventFilter(this); }

    void waitForPaint() const
    {
        while (!m_isPainted) {
            QCoreApplication::processEvents();
        }
    }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        m_isPainted = m_isPainted || event->type() == QEvent::Paint;
        return false;
    }

private:
    bool m_isPainted = false;
};

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

double millisecondsToScan(const fs::path &path)
{
    return microseconds([&] {
               BareEngine engine(path);
               BareStatement select(engine, "SELECT \"Index\" FROM FlashCards WHERE NIndex = 1");
               require(keysOf(select).size() == cardsOfLargeTopic, "cards are missing");
           }) /
           1000;
}

void benchOpening(const fs::path &folder)
{
    const fs::path path = folder / "Large.crl";
    makeLargeSubject(path, cardsOfLargeTopic);
    Module1 module;
    module.subject = subjectAt(QString::fromStdString(path.string()));
    millisecondsToOpenEditor(module, 1);
    millisecondsToScan(path);
    std::vector<double> ours;
    std::vector<double> floor;
    for (int round = 0; round < openings; ++round) {
        ours.push_back(millisecondsToOpenEditor(module, 1));
        floor.push_back(millisecondsToScan(path));
    }
    printRow("open the editor on 100,000 cards | key scan", median(ours), median(floor),
             median(ours) <= openingBesideScan * median(floor));
}

double millisecondsOfLetter(QTextEdit &box)
{
    return microseconds([&] {
               const PaintWatch watch(*box.viewport());
               QTest::keyClick(&box, Qt::Key_X);
               watch.waitForPaint();
           }) /
           1000;
}

void benchTyping(const fs::path &folder)
{
    const fs::path path = folder / "Notes.crl";
    SubjectStore::create(path);
    const int topic = createTopic(path, "Long");
    saveNotes(path, topic, longNotes(bytesOfNotes));
    Module1 module;
    module.subject = subjectAt(QString::fromStdString(path.string()));
    auto *window = new frmNotes(module);
    window->resize(900, 620);
    window->show();
    require(QTest::qWaitForWindowActive(window), "the window does not come to the front");
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
            millisecondsOfLetter(*edit);
        }
        std::vector<double> ours;
        std::vector<double> floor;
        for (int round = 0; round < keystrokes; ++round) {
            ours.push_back(millisecondsOfLetter(box));
            floor.push_back(millisecondsOfLetter(bare));
        }
        const std::string thing = std::string("letter at the ") + where + " of 1 MB of notes | bare box";
        printRow(thing.c_str(), median(ours), median(floor), median(ours) < millisecondsOfKeystroke);
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
    const QTemporaryDir home; // the learner's own settings stay out of it
    qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    std::printf("| %-44s | %9s | %9s | %5s | %-4s |\n", "milliseconds, ours beside the floor", "ours", "floor", "ratio",
                "");
    std::printf("|%s|%s:|%s:|%s:|%s|\n", std::string(46, '-').c_str(), std::string(10, '-').c_str(),
                std::string(10, '-').c_str(), std::string(6, '-').c_str(), std::string(6, '-').c_str());
    benchOpening(home.path().toStdString());
    benchTyping(home.path().toStdString());
    return everyBoundHolds ? 0 : 1;
}
