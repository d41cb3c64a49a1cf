// Times the study wizard's count of the chosen cards: from the key on "Study" to
// the closed wizard, beside the same count through the engine's C API. Both sides
// run in turn; the table shows medians. Exits with 1 if a bound is broken.

#include "app/Module1.h"
#include "bench/support/BareEngine.h"
#include "bench/support/FreshHome.h"
#include "bench/support/Measure.h"
#include "bench/support/PairTable.h"
#include "bench/support/TopicsSubject.h"
#include "forms/frmOptions/frmOptions.h"
#include "store/SqlDialect.h"
#include "study/CardSelection.h"

#include <QApplication>
#include <QCheckBox>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include <filesystem>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr double countingBesideBare = 1.5;

constexpr int cardsOfOneTopic = 10'000;
constexpr int topicsOfLarge = 100;
constexpr int cardsOfLargeTopic = 1'000;
constexpr int cardsPerMark = 10; ///< each tenth card is marked

constexpr int rounds = 31;

struct Choice
{
    fs::path subject;
    int topics; ///< all that the subject has, or none
    bool withMarked;
    int cards; ///< chosen by it
};

fs::path makeMarkedSubject(const fs::path &path, int topics, int cardsOfEach)
{
    makeSubjectOfTopics(path, topics, cardsOfEach, [](int) { return std::string(); });
    BareEngine(path).run("UPDATE FlashCards SET Marked = 1 WHERE \"Index\" % " + std::to_string(cardsPerMark) + " = 0");
    return path;
}

/// The wizard, filled in by keys up to its last page.
class KeyedWizard
{
public:
    KeyedWizard(Module1 &module, const Choice &choice)
        : m_module(module)
        , m_wizard(m_module)
    {
        m_wizard.setAttribute(Qt::WA_DeleteOnClose, false);
        m_wizard.show();
        require(QTest::qWaitForWindowActive(&m_wizard), "the wizard does not come to the front");
        auto *topics = m_wizard.findChild<QListWidget *>(QStringLiteral("List1"));
        if (choice.topics > 0) {
            QTest::keyClick(topics, Qt::Key_A, Qt::ControlModifier);
        }
        require(topics->selectedItems().size() == choice.topics, "other topics are chosen");
        if (choice.withMarked) {
            QTest::keyClick(m_wizard.findChild<QCheckBox *>(QStringLiteral("Check1")), Qt::Key_Space);
        }
        QTest::keyClick(m_wizard.focusWidget(), Qt::Key_Return);
        auto *study = m_wizard.findChild<QPushButton *>(QStringLiteral("cmdOK(2)"));
        require(study->text() == QStringLiteral("&Study"), "the last page is not shown");
        study->setFocus();
        QCoreApplication::processEvents();
    }

    /// Milliseconds from Return on "Study" to the closed wizard.
    double timeStudy()
    {
        const double time = microseconds([&] {
            QTest::keyClick(m_wizard.focusWidget(), Qt::Key_Return);
            require(!m_wizard.isVisible(), "the wizard does not close");
        });
        require(!m_module.study.cancelled, "the study is refused");
        return time / 1000;
    }

private:
    Module1 &m_module;
    frmOptions m_wizard;
};

/// The wizard's selection, but counting: the engine need not hand out a row.
std::string countOf(const Choice &choice)
{
    std::vector<int> topics(static_cast<std::size_t>(choice.topics));
    std::iota(topics.begin(), topics.end(), 1);
    const std::string selection = translateSql(selectionQuery(topics, choice.withMarked));
    constexpr std::string_view everyField = "SELECT *";
    return "SELECT count(*)" + selection.substr(everyField.size());
}

double millisecondsToCount(const Choice &choice)
{
    return microseconds([&] {
               const BareEngine engine(choice.subject);
               const BareStatement count(engine, countOf(choice));
               require(sqlite3_step(count) == SQLITE_ROW && sqlite3_column_int(count, 0) == choice.cards,
                       "cards are missing");
           }) /
           1000;
}

void benchCount(PairTable &table, const char *name, const Choice &choice, const Bound &bound = {})
{
    Module1 module;
    module.subject = subjectAt(QString::fromStdString(choice.subject.string()));
    const PairOfTimes times = inTurn(
        rounds, [&] { return KeyedWizard(module, choice).timeStudy(); }, [&] { return millisecondsToCount(choice); });
    table.row({name, "bare count of the same"}, times, bound);
}

} // namespace

int main(int argc, char **argv)
{
    const FreshHome home;
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    const fs::path one = makeMarkedSubject(home.path() / "One.crl", 1, cardsOfOneTopic);
    const fs::path large = makeMarkedSubject(home.path() / "Large.crl", topicsOfLarge, cardsOfLargeTopic);
    constexpr int allCards = topicsOfLarge * cardsOfLargeTopic;

    PairTable table("Study wizard", "ms");
    benchCount(table, "count a topic of 10,000 cards", {one, 1, false, cardsOfOneTopic});
    benchCount(table, "count 100 topics, 100,000 cards", {large, topicsOfLarge, false, allCards},
               timesFloor(countingBesideBare));
    benchCount(table, "count them and the marked ones", {large, topicsOfLarge, true, allCards},
               timesFloor(countingBesideBare));
    benchCount(table, "count 10,000 marked of 100,000 cards", {large, 0, true, allCards / cardsPerMark});
    return table.everyBoundHolds() ? 0 : 1;
}
