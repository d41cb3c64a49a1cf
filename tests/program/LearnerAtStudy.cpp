#include "tests/program/Learner.h"

#include <QAbstractButton>
#include <QLabel>
#include <QListWidget>
#include <QRegularExpression>
#include <QSlider>
#include <QTest>
#include <QVariant>

// In the wizard, a flash-card session and a test.

namespace {

/// "3 of 120", as the session shows it.
QString placeIn(const QWidget &session)
{
    static const QRegularExpression place(QStringLiteral("^\\d+ of \\d+$"));
    for (const QLabel *label : session.findChildren<QLabel *>()) {
        if (place.match(label->text()).hasMatch()) {
            return label->text();
        }
    }
    return {};
}

QWidget *selectorIn(const QWidget &test, int question)
{
    return test.findChild<QWidget *>(QStringLiteral("SelectAnswer1(%1)").arg(question));
}

/// "0,2,1": what was chosen for each question.
std::string answersIn(const QWidget &test)
{
    QStringList answers;
    for (int question = 0; const QWidget *selector = selectorIn(test, question); ++question) {
        answers << selector->property("SelectedAnswer").toString();
    }
    return answers.join(QLatin1Char(',')).toStdString();
}

std::string chosenTopics(const QListWidget &list)
{
    QStringList topics;
    for (int row = 0; row < list.count(); ++row) {
        if (list.item(row)->isSelected()) {
            topics << list.item(row)->data(Qt::UserRole).toString();
        }
    }
    return topics.join(QLatin1Char(',')).toStdString();
}

} // namespace

void Learner::chooseStudy(QWidget &wizard)
{
    const auto button = [&](const char *name) { return wizard.findChild<QAbstractButton *>(QLatin1String(name)); };
    if (m_isLeaving) {
        give([&] { press(wizard, Qt::Key_Escape); });
        return;
    }
    const bool isTest = oneIn(2);
    auto &list = *wizard.findChild<QListWidget *>(QStringLiteral("List1"));
    give([&] {
        QTest::keyClick(button(isTest ? "Option1(1)" : "Option1(0)"), Qt::Key_Space);
        for (int row = 0; row < list.count(); ++row) {
            QTest::keyClick(&list, row == 0 ? Qt::Key_Home : Qt::Key_Down);
            if (!oneIn(3)) {
                QTest::keyClick(&list, Qt::Key_Space);
            }
        }
        if (oneIn(4)) {
            QTest::keyClick(button("Check1"), Qt::Key_Space);
        }
        click(wizard, "cmdOK(2)");
        if (isTest && !oneIn(3)) {
            QTest::keyClick(wizard.findChild<QSlider *>(QStringLiteral("Slider2(0)")), Qt::Key_Home);
        }
    });
    store({isTest ? "generate" : "session", chosenTopics(list), button("Check1")->isChecked() ? "marked" : ""},
          [&] { click(wizard, "cmdOK(2)"); });
    const bool isRefused = m_isRefused;
    end({isRefused ? "refused" : ""});
    if (isRefused) {
        give([&] { press(wizard, Qt::Key_Escape); });
    }
}

void Learner::studyCards(QWidget &session)
{
    const int choice = m_isLeaving ? 0 : below(16);
    if (choice < 2) {
        give([&] { giveCommand(session, "Image1(6)", Qt::Key_Escape); });
    } else if (choice < 6) {
        toggleMark(session);
    } else if (choice < 9) {
        reply({.title = QStringLiteral("Shuffle Flash Cards"), .button = QMessageBox::Yes, .store = {"shuffle"}},
              [&] { giveCommand(session, "Image1(2)", Qt::Key_S); });
        if (m_isStoring) {
            end({m_isRefused ? "refused" : ""});
        }
    } else {
        static constexpr Qt::Key keys[] = {Qt::Key_Right, Qt::Key_Right, Qt::Key_Left, Qt::Key_Up, Qt::Key_Down};
        give([&] { choice < 15 ? press(session, keys[below(5)]) : click(session, "Image1(3)"); });
    }
}

void Learner::toggleMark(QWidget &session)
{
    store({"mark", placeIn(session).toStdString()}, [&] { giveCommand(session, "Image1(0)", Qt::Key_M); });
    end();
}

void Learner::takeTest(QWidget &test)
{
    const bool isGraded = selectorIn(test, 0)->property("Graded").toBool();
    if (m_isLeaving) {
        reply({QStringLiteral("Grade Test"), QMessageBox::No}, [&] { press(test, Qt::Key_Escape); });
        return;
    }
    const int choice = below(isGraded ? 4 : 12);
    if (isGraded ? choice == 0 : choice < 2) {
        gradeTest(test);
        return;
    }
    static constexpr Qt::Key answers[] = {Qt::Key_A, Qt::Key_B, Qt::Key_C, Qt::Key_1, Qt::Key_T, Qt::Key_Q};
    static constexpr Qt::Key walks[] = {Qt::Key_Right, Qt::Key_Right, Qt::Key_J, Qt::Key_Left};
    give([&] {
        press(test, answers[below(6)]);
        press(test, walks[below(4)]);
    });
}

/// Or leaves it without, or thinks better of it; a graded one is left.
void Learner::gradeTest(QWidget &test)
{
    const int thought = below(6);
    const auto button = thought == 0 ? QMessageBox::No : thought == 1 ? QMessageBox::Cancel : QMessageBox::Yes;
    reply({.title = QStringLiteral("Grade Test"),
           .button = button,
           .store = button == QMessageBox::Yes ? Message{"grade", answersIn(test)} : Message{}},
          [&] { giveCommand(test, "Image1(3)", Qt::Key_Escape); });
    if (m_isStoring) {
        end();
    }
}
