#include "tests/program/Learner.h"

#include <QRegularExpression>
#include <QTest>
#include <QTextEdit>
#include <QVariant>

// In the card editor.

namespace {

struct Place
{
    int card; ///< from 1; 0 without one
    int count;
};

Place placeIn(const QWidget &editor)
{
    static const QRegularExpression place(QStringLiteral("\\(Card (\\d+) of (\\d+)\\)"));
    const QRegularExpressionMatch found = place.match(editor.windowTitle());
    return {found.captured(1).toInt(), found.captured(2).toInt()};
}

QTextEdit &sideOf(const QWidget &editor, int side)
{
    return *editor.findChild<QTextEdit *>(QStringLiteral("RichTextBox1(%1)").arg(side));
}

Message sidesIn(const QWidget &editor)
{
    const auto rtf = [&](int side) { return sideOf(editor, side).property("TextRTF").toString().toStdString(); };
    return {rtf(0), rtf(1)};
}

bool isBlank(const QWidget &editor)
{
    const auto isEmpty = [&](int side) {
        return sideOf(editor, side).toPlainText().remove(QLatin1Char(' ')).isEmpty();
    };
    return isEmpty(0) && isEmpty(1);
}

} // namespace

Message Learner::shownSides()
{
    const QWidget *editor = shownWindow("frmEditCards");
    return editor != nullptr ? sidesIn(*editor) : Message{};
}

void Learner::openCards(QWidget &page)
{
    store({"open", selectedTopic(page)}, [&] { giveCommand(page, "Image1(3)", Qt::Key_F, Qt::AltModifier); });
    end(shownSides());
}

void Learner::editCards(QWidget &editor)
{
    const Place place = placeIn(editor);
    const bool isLast = place.card == place.count;
    const bool isOnlyBlank = isBlank(editor) && (place.card == 0 || place.count == 1);
    const int choice = m_isLeaving ? 0 : below(20);
    if (choice == 0) {
        leaveCard(editor, "close");
    } else if (choice < 7 || isOnlyBlank) {
        writeCard(editor);
    } else if (choice < 11 || place.card == 0) { // without a card, what is typed becomes one and stands last
        leaveCard(editor, "new");
    } else if (choice < 12) {
        deleteCard(editor);
    } else if (choice < 16) {
        leaveCard(editor, "next");
    } else if (choice < 18 && place.card > 1) {
        leaveCard(editor, "previous");
    } else if (choice < 19 && !isLast) {
        leaveCard(editor, "last");
    } else {
        leaveCard(editor, "first");
    }
}

void Learner::writeCard(QWidget &editor)
{
    give([&] { type(sideOf(editor, below(2))); });
}

void Learner::leaveCard(QWidget &editor, const char *command)
{
    struct Way
    {
        const char *command;
        const char *button;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
    };
    static constexpr Qt::KeyboardModifier alt = Qt::AltModifier;
    static const Way ways[] = {
        {"first", "Image1(0)", Qt::Key_Home, alt}, {"previous", "Image1(1)", Qt::Key_Left, alt},
        {"new", "Image1(2)", Qt::Key_Insert, alt}, {"close", "Image1(3)", Qt::Key_Escape, Qt::NoModifier},
        {"next", "Image1(5)", Qt::Key_Right, alt}, {"last", "Image1(6)", Qt::Key_End, alt},
    };
    const Place place = placeIn(editor);
    const Message sides = sidesIn(editor);
    store({"card", command, selectedTopic(*editor.parentWidget()), std::to_string(place.card),
           std::to_string(place.count), sides[0], sides[1], isBlank(editor) ? "blank" : ""},
          [&] {
              for (const Way &way : ways) {
                  if (std::string_view(way.command) == command) {
                      giveCommand(editor, way.button, way.key, way.modifiers);
                  }
              }
          });
    end(shownSides());
}

void Learner::deleteCard(QWidget &editor)
{
    const Place place = placeIn(editor);
    reply({.title = QStringLiteral("Delete Flash Card"),
           .button = QMessageBox::Yes,
           .store = {"remove", selectedTopic(*editor.parentWidget()), std::to_string(place.card),
                     std::to_string(place.count)}},
          [&] { giveCommand(editor, "Image1(4)", Qt::Key_Delete, Qt::AltModifier); });
    if (m_isStoring) {
        end(shownSides());
    }
}
