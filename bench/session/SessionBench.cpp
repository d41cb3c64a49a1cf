// Times what a learner waits for in a flash-card session, each beside its floor:
// shuffling, the next card, turning a card, and opening the session. Both sides
// run in turn; the tables show medians, and for what happens at every card the
// 99th percentile too. Exits with 1 if a bound is broken.

#include "app/Module1.h"
#include "bench/session/ShuffleBench.h"
#include "bench/support/BareEngine.h"
#include "bench/support/FreshHome.h"
#include "bench/support/KeystrokeRows.h"
#include "bench/support/LargeSubject.h"
#include "bench/support/Measure.h"
#include "bench/support/PaintWatch.h"
#include "bench/support/PairTable.h"
#include "bench/support/SampleCards.h"
#include "forms/frmFlashCard/frmFlashCard.h"
#include "platform/RichTextBox.h"

#include <QApplication>
#include <QTest>
#include <QTextDocument>
#include <QUrl>

#include <array>
#include <memory>
#include <string>

namespace fs = std::filesystem;

namespace {

constexpr int cardsOfTexts = 10'000;
constexpr int moves = 1'000;
constexpr int movesToPictures = 50;
constexpr int turns = 500;
constexpr int openings = 21;

constexpr QSize windowSize(900, 620);

void choose(Module1 &module, const fs::path &path)
{
    module.subject = subjectAt(QString::fromStdString(path.string()));
    module.study.cardQuery = cardQuery(std::array{1});
    module.study.cancelled = false;
}

std::unique_ptr<frmFlashCard> makeWindow(Module1 &module)
{
    auto window = std::make_unique<frmFlashCard>(module);
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    return window;
}

RichTextBox &paneOf(const frmFlashCard &window, int side)
{
    auto *pane = window.findChild<RichTextBox *>(QStringLiteral("RichTextBox1(%1)").arg(side));
    require(pane != nullptr, "a pane is missing");
    return *pane;
}

/// A session's window, shown, that is driven by keys.
class KeyedSession
{
public:
    explicit KeyedSession(Module1 &module)
        : m_window(makeWindow(module))
    {
        m_window->show();
        require(QTest::qWaitForWindowActive(m_window.get()), "the window does not come to the front");
        m_window->resize(windowSize); // not before: the window then takes the size that is kept for it
        QCoreApplication::processEvents();
        requireShown(true);
    }
    KeyedSession(const KeyedSession &) = delete;
    KeyedSession &operator=(const KeyedSession &) = delete;
    ~KeyedSession() { m_window->close(); }

    // Milliseconds from the key to the painted card.

    double timeNext()
    {
        ++m_card;
        return timeKey(Qt::Key_Right, true);
    }
    double timeTurn(bool toFront) { return timeKey(toFront ? Qt::Key_Up : Qt::Key_Down, toFront); }

    [[nodiscard]] RichTextBox &pane(bool front) const { return paneOf(*m_window, front ? 0 : 1); }
    [[nodiscard]] int card() const { return m_card; } ///< from 0

private:
    double timeKey(Qt::Key key, bool showsFront)
    {
        const double time = millisecondsUntilPainted(*pane(showsFront).viewport(),
                                                     [&] { QTest::keyClick(m_window->focusWidget(), key); });
        requireShown(showsFront);
        return time;
    }

    void requireShown(bool front) const
    {
        require(pane(front).isVisible() && !pane(!front).isVisible(), "the wrong side is shown");
        require(pane(front).toPlainText().startsWith(headOf(m_card, front)), "the wrong card is shown");
    }

    std::unique_ptr<frmFlashCard> m_window;
    int m_card = 0;
};

/// The floor: two bare text boxes, one of which is visible.
class BareCard
{
public:
    explicit BareCard(const KeyedSession &session)
    {
        for (const bool front : {true, false}) {
            QTextEdit &box = boxOf(front);
            box.setFont(session.pane(front).font());
            box.setFrameShape(QFrame::NoFrame);
            box.setReadOnly(true);
            box.setFocusPolicy(Qt::NoFocus);
            box.setGeometry(session.pane(true).rect());
        }
        boxOf(false).hide();
        m_holder.resize(boxOf(true).size());
        m_holder.setAttribute(Qt::WA_ShowWithoutActivating);
        m_holder.show();
    }

    double timeText(const QString &html)
    {
        return millisecondsUntilPainted(*m_front.viewport(), [&] { m_front.setHtml(html); });
    }

    /// \p file is a picture that the text shows.
    double timeTextWithPicture(const QString &html, const QByteArray &file)
    {
        return millisecondsUntilPainted(*m_front.viewport(), [&] {
            m_front.document()->addResource(QTextDocument::ImageResource, QUrl(pictureName), QImage::fromData(file));
            m_front.setHtml(html);
        });
    }

    void setBack(const QString &html) { m_back.setHtml(html); }

    double timeTurn(bool toFront)
    {
        return millisecondsUntilPainted(*boxOf(toFront).viewport(), [&] {
            boxOf(toFront).show();
            boxOf(!toFront).hide();
        });
    }

private:
    QTextEdit &boxOf(bool front) { return front ? m_front : m_back; }

    QWidget m_holder;
    QTextEdit m_front{&m_holder};
    QTextEdit m_back{&m_holder};
};

QString bareText(int card, bool front)
{
    return QString::fromStdString(sideText(Markup::Html, card, front));
}

void benchMoves(PairTable &table, Module1 &module)
{
    KeyedSession session(module);
    BareCard bare(session);
    int card = 0;
    const PairOfTimes times = inTurn(
        moves, [&] { return session.timeNext(); }, [&] { return bare.timeText(bareText(++card, true)); });
    addKeystrokeRows(table, "next card | bare box", times);
}

void benchPictures(PairTable &table, const fs::path &folder)
{
    const fs::path path = folder / "Pictures.crl";
    makeSubject(path, movesToPictures + 2,
                [](int card, bool front) { return (front ? sideWithPicture : sideText)(Markup::Rtf, card, front); });
    Module1 module;
    choose(module, path);
    KeyedSession session(module);
    BareCard bare(session);
    int card = 0;
    const PairOfTimes times = inTurn(
        movesToPictures, [&] { return session.timeNext(); },
        [&] {
            const QString html = QString::fromStdString(sideWithPicture(Markup::Html, ++card, true));
            return bare.timeTextWithPicture(html, pictureOf(card));
        });
    table.row("next card, with a picture | bare box", median(times.ours), median(times.floor));
}

/// Each card is turned to its back, which was never painted, and to its front again.
void benchTurning(PairTable &table, Module1 &module)
{
    KeyedSession session(module);
    BareCard bare(session);
    PairOfTimes toBack;
    PairOfTimes toFront;
    for (int turn = 0; turn < turns; ++turn) {
        session.timeNext();
        bare.timeText(bareText(session.card(), true));
        bare.setBack(bareText(session.card(), false));
        toBack.ours.push_back(session.timeTurn(false));
        toBack.floor.push_back(bare.timeTurn(false));
        toFront.ours.push_back(session.timeTurn(true));
        toFront.floor.push_back(bare.timeTurn(true));
    }
    addKeystrokeRows(table, "turn to the back | two bare boxes", toBack);
    addKeystrokeRows(table, "turn to the front again | two bare boxes", toFront);
}

double millisecondsToOpen(Module1 &module)
{
    std::unique_ptr<frmFlashCard> window;
    const double time = microseconds([&] {
        window = makeWindow(module);
        const PaintWatch watch(*paneOf(*window, 0).viewport());
        window->show();
        watch.waitForPaint();
    });
    window->close();
    return time / 1000;
}

void benchOpening(PairTable &table, Module1 &module, const fs::path &path)
{
    const PairOfTimes times = inTurn(
        openings, [&] { return millisecondsToOpen(module); },
        [&] {
            return millisecondsToScan(path, R"(SELECT "Index" FROM FlashCards WHERE NIndex = 1 ORDER BY "Index" ASC)",
                                      cardsOfTexts);
        });
    table.row("open a session of 10,000 cards | key scan", median(times.ours), median(times.floor));
}

} // namespace

int main(int argc, char **argv)
{
    const FreshHome home;
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    PairTable shuffling("microseconds a card, ours beside the floor");
    benchShuffle(shuffling, home.path());

    PairTable waiting("milliseconds, ours beside the floor");
    const fs::path path = home.path() / "Cards.crl";
    makeSubject(path, cardsOfTexts, [](int card, bool front) { return sideText(Markup::Rtf, card, front); });
    Module1 module;
    choose(module, path);
    benchMoves(waiting, module);
    benchPictures(waiting, home.path());
    benchTurning(waiting, module);
    benchOpening(waiting, module, path);
    return shuffling.everyBoundHolds() && waiting.everyBoundHolds() ? 0 : 1;
}
