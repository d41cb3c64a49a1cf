#include "platform/ElidedLabel.h"
#include "platform/PaperPalette.h"
#include "platform/SelectAnswerFace.h"
#include "tests/forms/AccessibilityWalk.h"
#include "tests/forms/ShownWindows.h"
#include "tests/support/Contrast.h"

#include <QListWidget>
#include <QPushButton>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QStyleOptionGroupBox>

#include <optional>

namespace {

/// A text, or a sign, that is seen in a window.
struct Seen
{
    QString what;
    QRect place;               ///< in the window, without the frame around it
    std::optional<QColor> ink; ///< where the palette has it
    double wanted = readableContrast;
};

QRect inside(const QWidget &window, const QWidget &control, const QRect &place)
{
    return place.translated(control.mapTo(&window, QPoint(0, 0))).intersected(window.rect());
}

void addButton(std::vector<Seen> &all, const QWidget &window, QAbstractButton &button)
{
    if (qobject_cast<ImageButton *>(&button) != nullptr) {
        all.push_back({calling(button), inside(window, button, button.rect()), {}, visibleContrast});
        return;
    }
    if (button.text().isEmpty()) {
        return;
    }
    const QSize text = button.fontMetrics().size(Qt::TextShowMnemonic, button.text());
    QRect place = button.rect();
    if (qobject_cast<QPushButton *>(&button) != nullptr) {
        place = QRect(place.center() - QPoint(text.width(), text.height()) / 2, text);
    } else {
        QStyleOptionButton option;
        option.initFrom(&button);
        const bool isRadio = qobject_cast<QRadioButton *>(&button) != nullptr;
        place = button.style()->subElementRect(isRadio ? QStyle::SE_RadioButtonContents : QStyle::SE_CheckBoxContents,
                                               &option, &button);
    }
    all.push_back({button.text(), inside(window, button, place), button.palette().color(button.foregroundRole())});
}

void addList(std::vector<Seen> &all, const QWidget &window, const QListWidget &list)
{
    const bool isPaper = qobject_cast<const NotebookPage *>(&window) != nullptr;
    for (int row = 0; row < list.count(); ++row) {
        const QListWidgetItem &item = *list.item(row);
        const QRect place = list.visualItemRect(&item).intersected(list.viewport()->rect()).adjusted(2, 2, -2, -2);
        const bool isOurs = isPaper || !item.isSelected(); // a dialog's selection is the desktop's
        if (!item.text().isEmpty() && place.height() > 8 && isOurs && item.flags().testFlag(Qt::ItemIsEnabled)) {
            const auto role = item.isSelected() ? QPalette::HighlightedText : QPalette::Text;
            all.push_back(
                {item.text(), inside(window, *list.viewport(), place), list.palette().color(QPalette::Active, role)});
        }
    }
}

void addTabs(std::vector<Seen> &all, const QWidget &window, const QTabBar &tabs)
{
    for (int tab = 0; tab < tabs.count(); ++tab) {
        constexpr int frame = 6;
        const QRect place = tabs.tabRect(tab).adjusted(frame, frame, -frame, -frame);
        all.push_back({tabs.tabText(tab), inside(window, tabs, place), tabs.palette().color(QPalette::WindowText)});
    }
}

void addSelector(std::vector<Seen> &all, const QWidget &window, const SelectAnswer &selector)
{
    using Part = SelectAnswerFace::Part;
    for (const Part part : {Part::Number, Part::A, Part::B, Part::C, Part::Flag}) {
        const QRect area = SelectAnswerFace::area(part, selector.size(), selector.font()).toRect();
        constexpr int reach = 8; // within the circle
        const QPoint middle = area.center() - QPoint(part == Part::Flag ? 1 : 0, 0);
        const QRect place(middle - QPoint(reach, reach), QSize(2 * reach, 2 * reach));
        const QString what = QStringLiteral("%1, part %2").arg(selector.accessibleName()).arg(static_cast<int>(part));
        if (selector.visibleRegion().contains(place)) {
            all.push_back(
                {what, inside(window, selector, place), {}, part == Part::Flag ? visibleContrast : readableContrast});
        }
    }
}

/// What \p window shows on what is enabled and has a text, or is a picture to be pressed.
std::vector<Seen> everythingSeen(const QWidget &window)
{
    std::vector<Seen> all;
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        if (!widget->isVisible() || widget->window() != &window || !widget->isEnabled()) {
            continue;
        }
        if (auto *button = qobject_cast<QAbstractButton *>(widget)) {
            if (qobject_cast<QTabBar *>(button->parentWidget()) == nullptr) {
                addButton(all, window, *button);
            }
        } else if (const auto *label = qobject_cast<QLabel *>(widget)) {
            if (!label->text().isEmpty()) {
                all.push_back({label->text(), inside(window, *label, label->rect()),
                               label->palette().color(label->foregroundRole())});
            }
        } else if (const auto *list = qobject_cast<QListWidget *>(widget)) {
            addList(all, window, *list);
        } else if (const auto *tabs = qobject_cast<QTabBar *>(widget)) {
            addTabs(all, window, *tabs);
        } else if (const auto *selector = qobject_cast<SelectAnswer *>(widget)) {
            addSelector(all, window, *selector);
        } else if (const auto *text = qobject_cast<QTextEdit *>(widget)) {
            if (!text->toPlainText().trimmed().isEmpty()) {
                all.push_back({text->toPlainText().left(20),
                               inside(window, *text->viewport(), text->viewport()->rect()),
                               text->palette().color(QPalette::Text)});
            }
        } else if (const auto *group = qobject_cast<QGroupBox *>(widget)) {
            QStyleOptionGroupBox option;
            option.initFrom(group);
            option.text = group->title();
            option.subControls = QStyle::SC_GroupBoxLabel;
            const QRect place =
                group->style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, group);
            all.push_back(
                {group->title(), inside(window, *group, place), group->palette().color(QPalette::WindowText)});
        } else if (const auto *combo = qobject_cast<QComboBox *>(widget); combo && !combo->currentText().isEmpty()) {
            QStyleOptionComboBox option;
            option.initFrom(combo);
            const QRect place =
                combo->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, combo);
            all.push_back({combo->currentText(), inside(window, *combo, place.adjusted(2, 2, -2, -2)), {}});
        }
    }
    return all;
}

/// What cannot be read well in \p window: by the palette's ink on the ground that is there, and by the
/// ink that is there.
QStringList faintTexts(QWidget &window)
{
    const QImage picture = window.grab().toImage();
    const double scale = picture.devicePixelRatio();
    QStringList complaints;
    for (const Seen &seen : everythingSeen(window)) {
        const QImage part = picture.copy(QRect(seen.place.topLeft() * scale, seen.place.size() * scale));
        if (part.isNull()) {
            complaints << QStringLiteral("\"%1\" is not seen").arg(seen.what);
            continue;
        }
        const double measured = inkContrast(part);
        if (measured < seen.wanted) {
            complaints << QStringLiteral("\"%1\": contrast %2").arg(seen.what).arg(measured);
        } else if (seen.ink && contrastRatio(*seen.ink, groundOf(part)) < seen.wanted) {
            complaints << QStringLiteral("\"%1\": %2 on %3").arg(seen.what, seen.ink->name(), groundOf(part).name());
        }
    }
    return complaints;
}

QPalette darkDesktop()
{
    QPalette dark(QColor(0x3a, 0x3a, 0x3a), QColor(0x2b, 0x2b, 0x2b));
    for (const QPalette::ColorRole text : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        dark.setColor(text, QColor(0xee, 0xee, 0xee));
    }
    dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
    dark.setColor(QPalette::Highlight, QColor(0x1f, 0x5f, 0xae));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    return dark;
}

class EveryWindowInColors : public EveryScene
{
protected:
    void TearDown() override
    {
        QApplication::setPalette(m_usual);
        EveryScene::TearDown();
    }

    void chooseColors(const QPalette &desktop, const QColor &paper)
    {
        QApplication::setPalette(desktop);
        module->settings.write(QStringLiteral("Settings"), QStringLiteral("Color"),
                               QString::number(numberOfColor(paper)));
    }

    const QPalette m_usual = QApplication::palette();
};

INSTANTIATE_TEST_SUITE_P(Contrast, EveryWindowInColors, testing::ValuesIn(ShownWindows::scenes()), nameOfScene);

TEST_P(EveryWindowInColors, EveryTextCanBeRead)
{
    const QColor white = Qt::white;
    const QColor yellow(0xff, 0xfb, 0xc8);
    const QColor blue(0x10, 0x1c, 0x4a);
    for (const QPalette &desktop : {m_usual, darkDesktop()}) {
        for (const QColor &paper : {white, yellow, blue}) {
            chooseColors(desktop, paper);
            visitScene([&](QWidget &window) {
                EXPECT_FALSE(everythingSeen(window).empty());
                EXPECT_EQ(told(faintTexts(window)), "") << "on paper " << paper.name().toStdString() << ", desktop "
                                                        << desktop.color(QPalette::Window).name().toStdString();
            });
        }
    }
}

// The eye itself sees what is faint.

TEST(FaintTexts, AreSeenByTheirPaletteAndByTheirInk)
{
    QWidget window;
    window.setPalette(QPalette(Qt::white, QColor(0xf0, 0xf0, 0xf0)));
    QLabel faint(QStringLiteral("faint"), &window);
    QPalette grey = faint.palette();
    grey.setColor(QPalette::WindowText, QColor(0xa0, 0xa0, 0xa0));
    faint.setPalette(grey);
    QLabel clear(QStringLiteral("clear"), &window);
    clear.move(0, 60);
    QPalette black = clear.palette();
    black.setColor(QPalette::WindowText, Qt::black);
    clear.setPalette(black);
    window.resize(200, 100);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const QStringList found = faintTexts(window);
    ASSERT_EQ(found.size(), 1) << found.join(u'\n').toStdString();
    EXPECT_TRUE(found.front().startsWith(QStringLiteral("\"faint\"")));
}

} // namespace
