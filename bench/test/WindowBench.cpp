#include "bench/test/WindowBench.h"

#include "app/Module1.h"
#include "bench/support/BareTest.h"
#include "bench/support/KeystrokeRows.h"
#include "bench/support/Measure.h"
#include "bench/support/PaintWatch.h"
#include "bench/support/PairTable.h"
#include "bench/support/SampleCards.h"
#include "forms/frmTest/frmTest.h"
#include "platform/NotebookPage.h"
#include "platform/RichTextBox.h"
#include "platform/SelectAnswer.h"
#include "store/Statements.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>
#include <QTimer>

#include <algorithm>
#include <array>
#include <chrono>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr double millisecondsOfOpening = 500;
constexpr double millisecondsOfGrading = 100; // beside what the disk takes

constexpr int questions = 50;
constexpr int openings = 21;
constexpr int gradings = 15;
constexpr int tests = 7; // of which each question but the first is timed

constexpr QSize windowSize(900, 620);

/// The boxes in the window: the question and its choices.
constexpr std::size_t boxCount = 1 + choiceCount;

/// What the boxes show of one question.
struct Sheet
{
    struct Text
    {
        int card; ///< from 0
        bool isFront;
    };
    std::vector<Text> texts; ///< of the boxes that are seen, which are the first ones
};

std::vector<Sheet> sheetsOf(const std::vector<StoredCard> &cards)
{
    std::vector<Sheet> sheets;
    const auto cardAt = [&](int position) { return cards.at(static_cast<std::size_t>(position)).key - 1; };
    for (int position = 0; position < questions; ++position) {
        const TestQuestion &question = cards.at(static_cast<std::size_t>(position)).question;
        const bool asksFront = question.asked == Side::Front;
        std::vector<int> choices{question.wrong1, question.wrong2};
        choices.insert(choices.begin() + question.answer - 1, position);
        choices.resize(question.type == QuestionType::TrueOrFalse ? 1 : choiceCount);
        Sheet sheet{{{cardAt(position), asksFront}}};
        for (const int choice : choices) {
            sheet.texts.push_back({cardAt(choice), !asksFront});
        }
        sheets.push_back(sheet);
    }
    return sheets;
}

/// Milliseconds from the start of \p action until all of \p widgets are painted.
double millisecondsUntilAllPainted(const std::vector<QWidget *> &widgets, const Action &action)
{
    QCoreApplication::processEvents(); // what is due already is no part of it
    std::list<PaintWatch> watches;
    for (QWidget *widget : widgets) {
        watches.emplace_back(*widget);
    }
    return microseconds([&] {
               action();
               for (const PaintWatch &watch : watches) {
                   watch.waitForPaint();
               }
           }) /
           1000;
}

std::unique_ptr<frmTest> makeWindow(Module1 &module)
{
    auto window = std::make_unique<frmTest>(module);
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    return window;
}

/// Answers the next message box with \p title as soon as it is there, and calls \p first before.
void answerNext(
    QWidget &window, const QString &title, QMessageBox::StandardButton button, const Action &first = [] {})
{
    QTimer::singleShot(0, &window, [=, &window] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (box == nullptr || box->windowTitle() != title) {
            answerNext(window, title, button, first); // one before it is still closing
            return;
        }
        first();
        box->button(button)->click();
    });
}

void closeUngraded(frmTest &window)
{
    answerNext(window, QStringLiteral("Grade Test"), QMessageBox::No);
    require(window.close(), "the window does not close");
}

RichTextBox &boxOf(const frmTest &window, std::size_t box)
{
    auto *found = window.findChild<RichTextBox *>(QStringLiteral("RichTextBox1(%1)").arg(box));
    require(found != nullptr, "a box is missing");
    return *found;
}

/// A test's window, shown, that is driven by keys.
class KeyedTest
{
public:
    KeyedTest(Module1 &module, const fs::path &path)
        : m_window(makeWindow(module))
        , m_sheets(sheetsOf(storedCards(path)))
    {
        m_window->show();
        require(QTest::qWaitForWindowActive(m_window.get()), "the window does not come to the front");
        m_window->resize(windowSize); // not before: the window then takes the size that is kept for it
        QCoreApplication::processEvents();
        requireShown();
    }
    KeyedTest(const KeyedTest &) = delete;
    KeyedTest &operator=(const KeyedTest &) = delete;
    ~KeyedTest() { closeUngraded(*m_window); }

    /// Milliseconds from the key to the painted question.
    double timeNext()
    {
        ++m_question;
        std::vector<QWidget *> boxes;
        for (std::size_t box = 0; box < sheet().texts.size(); ++box) {
            boxes.push_back(boxOf(*m_window, box).viewport());
        }
        const double time =
            millisecondsUntilAllPainted(boxes, [&] { QTest::keyClick(m_window->focusWidget(), Qt::Key_Right); });
        requireShown();
        return time;
    }

    [[nodiscard]] const Sheet &sheet() const { return m_sheets.at(m_question); }
    [[nodiscard]] const frmTest &window() const { return *m_window; }

private:
    void requireShown() const
    {
        for (std::size_t box = 0; box < boxCount; ++box) {
            const RichTextBox &shown = boxOf(*m_window, box);
            require(shown.isVisible() == (box < sheet().texts.size()), "the wrong boxes are shown");
            if (shown.isVisible()) {
                const auto &[card, isFront] = sheet().texts[box];
                require(shown.toPlainText().startsWith(headOf(card, isFront)), "the wrong text is shown");
            }
        }
    }

    std::unique_ptr<frmTest> m_window;
    std::vector<Sheet> m_sheets;
    std::size_t m_question = 0;
};

/// The floor: bare text boxes.
class BareSheet
{
public:
    explicit BareSheet(const KeyedTest &test)
    {
        for (std::size_t box = 0; box < boxCount; ++box) {
            m_boxes.at(box).setParent(&m_holder);
            m_boxes.at(box).setFont(boxOf(test.window(), box).font());
            m_boxes.at(box).setFrameShape(QFrame::NoFrame);
            m_boxes.at(box).setReadOnly(true);
            m_boxes.at(box).setFocusPolicy(Qt::NoFocus);
        }
        m_holder.resize(windowSize);
        m_holder.setAttribute(Qt::WA_ShowWithoutActivating);
        m_holder.show();
    }

    /// Of what \p test shows, in the places that it gives it.
    double timeTexts(const KeyedTest &test)
    {
        const std::vector<Sheet::Text> &texts = test.sheet().texts;
        std::vector<std::string> html;
        std::vector<QWidget *> boxes;
        for (std::size_t box = 0; box < texts.size(); ++box) {
            const RichTextBox &shown = boxOf(test.window(), box);
            m_boxes.at(box).setGeometry({shown.mapTo(&test.window(), QPoint()), shown.size()});
            html.push_back(sideText(Markup::Html, texts[box].card, texts[box].isFront));
            boxes.push_back(m_boxes.at(box).viewport());
        }
        return millisecondsUntilAllPainted(boxes, [&] {
            for (std::size_t box = 0; box < boxCount; ++box) {
                m_boxes.at(box).setVisible(box < html.size());
                if (box < html.size()) {
                    m_boxes.at(box).setHtml(QString::fromStdString(html[box]));
                }
            }
        });
    }

private:
    QWidget m_holder;
    std::array<QTextEdit, boxCount> m_boxes;
};

double millisecondsToOpen(Module1 &module)
{
    std::unique_ptr<frmTest> window;
    const double time = microseconds([&] {
        window = makeWindow(module);
        const PaintWatch watch(*boxOf(*window, 0).viewport());
        window->show();
        watch.waitForPaint();
    });
    require(window->size() == windowSize, "the window has not the size that is kept for it");
    closeUngraded(*window);
    return time / 1000;
}

double millisecondsOfFloor(const fs::path &path, int cards, unsigned seed)
{
    std::unique_ptr<NotebookPage> page;
    return microseconds([&] {
               BareTest(path).generate(drawTest(cards, seed));
               page = std::make_unique<NotebookPage>(PageRuling{});
               page->resize(windowSize);
               const PaintWatch watch(*page);
               page->show();
               watch.waitForPaint();
           }) /
           1000;
}

void benchOpening(PairTable &table, Module1 &module, const fs::path &path)
{
    const fs::path barePath = path.parent_path() / "Opened.crl";
    fs::copy_file(path, barePath);
    const int cards = static_cast<int>(storedCards(barePath).size());
    unsigned seed = 1; // another one each time: the engine writes nothing where a row stays as it is
    const PairOfTimes times = inTurn(
        openings, [&] { return millisecondsToOpen(module); },
        [&] { return millisecondsOfFloor(barePath, cards, seed++); });
    table.row({"open a test of 10,000 cards", "updates and a page"}, times, atMost(millisecondsOfOpening));
}

void benchNextQuestion(PairTable &table, Module1 &module, const fs::path &path)
{
    PairOfTimes times;
    for (int test = 0; test < tests; ++test) {
        KeyedTest keyed(module, path);
        BareSheet bare(keyed);
        bare.timeTexts(keyed);
        for (int question = 1; question < questions; ++question) {
            times.ours.push_back(keyed.timeNext());
            times.floor.push_back(bare.timeTexts(keyed));
        }
    }
    addKeystrokeRows(table, {"next question", "bare boxes"}, times);
}

/// The engine writes nothing where a card is marked already.
void unmark(const fs::path &path)
{
    BareEngine(path).run("UPDATE FlashCards SET Marked = 0 WHERE Marked <> 0");
}

void requireGraded(const frmTest &window)
{
    const auto selectors = window.findChildren<SelectAnswer *>();
    require(selectors.size() == questions, "selectors are missing");
    for (const SelectAnswer *selector : selectors) {
        require(selector->isGraded(), "the test is not graded");
    }
}

/// Milliseconds to grade a test without answers, from the answer that it is to be graded to
/// the painted first question. The message with the result is confirmed as soon as it shows.
double millisecondsToGrade(Module1 &module)
{
    const std::unique_ptr<frmTest> window = makeWindow(module);
    window->show();
    require(QTest::qWaitForWindowActive(window.get()), "the window does not come to the front");
    std::optional<PaintWatch> watch;
    std::chrono::steady_clock::time_point answered;
    answerNext(*window, QStringLiteral("Grade Test"), QMessageBox::Yes, [&] {
        answerNext(*window, QStringLiteral("Test Results"), QMessageBox::Ok,
                   [&] { watch.emplace(*boxOf(*window, 0).viewport()); });
        answered = std::chrono::steady_clock::now();
    });
    require(!window->close() && watch, "the test is not graded");
    watch->waitForPaint();
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - answered;
    requireGraded(*window);
    require(window->close(), "the window does not close");
    return time.count();
}

void benchGrading(PairTable &table, Module1 &module, const fs::path &path)
{
    const fs::path barePath = path.parent_path() / "Graded.crl";
    fs::copy_file(path, barePath);
    BareTest bare(barePath);
    std::array<int, questions> keys{};
    const std::vector<StoredCard> cards = storedCards(barePath);
    std::ranges::transform(cards.begin(), cards.begin() + questions, keys.begin(), &StoredCard::key);
    const PairOfTimes times = inTurn(
        gradings,
        [&] {
            unmark(path);
            return millisecondsToGrade(module);
        },
        [&] {
            unmark(barePath);
            return microseconds([&] { bare.mark(keys); }) / 1000;
        });
    table.row({"grade a test of 50 questions", "50 updates"}, times, moreThanFloor(millisecondsOfGrading));
}

} // namespace

void benchWindow(PairTable &table, const fs::path &path)
{
    Module1 module;
    module.subject = subjectAt(QString::fromStdString(path.string()));
    module.study = {.cancelled = false,
                    .style = StudyStyle::Test,
                    .questionCount = questions,
                    .multipleChoicePercent = multipleChoicePercent,
                    .cardQuery = cardQuery(std::array{1})};
    benchNextQuestion(table, module, path); // first: it leaves the window's size in the settings
    benchOpening(table, module, path);
    benchGrading(table, module, path);
}
