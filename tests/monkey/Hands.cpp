#include "tests/monkey/Hands.h"

#include "tests/forms/AccessibilityWalk.h"
#include "tests/monkey/Material.h"
#include "tests/monkey/World.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QListWidget>
#include <QMessageBox>
#include <QMimeData>
#include <QTextEdit>
#include <qpa/qwindowsysteminterface.h>

#include <algorithm>
#include <array>
#include <numeric>

using namespace std::chrono_literals;
using Desktop = QWindowSystemInterface;

namespace {

ulong stamp()
{
    return static_cast<ulong>(worldClock::now().count());
}

/// Those of a file dialog that lead out of the learner's home.
bool leadsOut(const QWidget &widget)
{
    static const QStringList names{QStringLiteral("toParentButton"), QStringLiteral("sidebar"),
                                   QStringLiteral("lookInCombo"), QStringLiteral("backButton"),
                                   QStringLiteral("forwardButton")};
    for (const QWidget *part = &widget; part != nullptr && !part->isWindow(); part = part->parentWidget()) {
        if (names.contains(part->objectName())) {
            return true;
        }
    }
    return false;
}

/// What of \p widget can be touched, in its own coordinates. A text or list is covered by what it shows.
QRect surfaceOf(const QWidget &widget)
{
    const auto *scrolled = qobject_cast<const QAbstractScrollArea *>(&widget);
    return scrolled != nullptr
               ? scrolled->viewport()->visibleRegion().boundingRect().translated(scrolled->viewport()->pos())
               : widget.visibleRegion().boundingRect();
}

bool mayBeTouched(const QWidget &widget)
{
    return widget.isVisible() && !surfaceOf(widget).isEmpty() && !leadsOut(widget);
}

QString written(int key, Qt::KeyboardModifiers modifiers)
{
    return QKeySequence(static_cast<int>(modifiers.toInt()) | key).toString(QKeySequence::PortableText);
}

/// A letter as a keyboard gives it; without a key of its own as an input method does.
int keyOf(QChar letter)
{
    if (letter == QLatin1Char('\n')) {
        return Qt::Key_Return;
    }
    if (letter == QLatin1Char('\t')) {
        return Qt::Key_Tab;
    }
    return letter.unicode() < 128 ? letter.toUpper().unicode() : 0;
}

} // namespace

std::vector<QWidget *> shownWindows()
{
    std::vector<QWidget *> shown;
    const QWidgetList widgets = QApplication::topLevelWidgets(); // in no order
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (const QWindow *window : windows) {
        const auto found = std::ranges::find(widgets, window, &QWidget::windowHandle);
        if (found != widgets.end() && (*found)->isVisible() && (*found)->windowType() != Qt::ToolTip) {
            shown.push_back(*found);
        }
    }
    return shown;
}

QWidget *windowInFront()
{
    const std::vector<QWidget *> shown = shownWindows();
    for (QWidget *window :
         {QApplication::activePopupWidget(), QApplication::activeModalWidget(), QApplication::activeWindow()}) {
        if (std::ranges::find(shown, window) != shown.end()) {
            return window;
        }
    }
    return shown.empty() ? nullptr : shown.back();
}

QString nameOf(const QWidget &widget)
{
    const QString kind = QString::fromLatin1(widget.metaObject()->className());
    const QString name = widget.objectName();
    return name.isEmpty() || name == kind ? kind : kind + QLatin1Char(' ') + name;
}

Hands::Hands(Random &random)
    : m_random(random)
{
}

const std::vector<Hands::Habit> &Hands::habits()
{
    static const std::vector<Habit> all{
        {14, &Hands::errand},   {5, &Hands::special},    {30, &Hands::click},   {4, &Hands::doubleClick},
        {4, &Hands::menuClick}, {4, &Hands::press},      {3, &Hands::hover},    {4, &Hands::wheel},
        {14, &Hands::key},      {7, &Hands::commandKey}, {8, &Hands::typing},   {6, &Hands::editingKey},
        {2, &Hands::resize},    {1, &Hands::close},      {2, &Hands::activate}, {2, &Hands::clipboard},
        {5, &Hands::wait},
    };
    return all;
}

QString Hands::act(QWidget &front)
{
    if (m_buttons != Qt::NoButton && m_random.chance(75)) {
        return m_random.chance(70) ? drag(front) : release(front);
    }
    const bool isOnTheWay =
        front.objectName() == QLatin1String("frmOptions") || front.objectName() == QLatin1String("frmOpen");
    if (isOnTheWay && m_random.chance(40)) {
        return errand(front);
    }
    QWidget *window = &front;
    if (m_random.chance(10)) {
        const std::vector<QWidget *> shown = shownWindows();
        window = m_random.oneOf(shown);
    }
    const int sum = std::accumulate(habits().begin(), habits().end(), 0,
                                    [](int all, const Habit &one) { return all + one.weight; });
    int picked = m_random.below(sum);
    auto habit = habits().begin();
    while (picked >= habit->weight) {
        picked -= habit->weight;
        ++habit;
    }
    return (this->*habit->act)(*window);
}

// The mouse.

/// Mostly in a control that does something, and sometimes just anywhere.
Hands::Place Hands::somewhere(QWidget &window)
{
    std::vector<QWidget *> controls;
    std::vector<QWidget *> all;
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        if (widget->window() == &window && mayBeTouched(*widget)) {
            all.push_back(widget);
            if (widget->isEnabled() && takesInput(*widget)) {
                controls.push_back(widget);
            }
        }
    }
    QWidget *widget = &window;
    if (!controls.empty() && m_random.chance(85)) {
        widget = m_random.oneOf(controls);
    } else if (!all.empty() && m_random.chance(80)) {
        widget = m_random.oneOf(all);
    }
    return somewhereIn(*widget, window);
}

Hands::Place Hands::somewhereIn(QWidget &widget, QWidget &window)
{
    const QRect area = surfaceOf(widget);
    if (area.isEmpty() || leadsOut(widget)) {
        return {&window, {}};
    }
    const int down = m_random.below(area.height());
    const int right = m_random.below(area.width());
    const QPoint point = widget.mapTo(&window, area.topLeft() + QPoint(right, down));
    const QWidget *hit = window.childAt(point);
    return hit != nullptr && leadsOut(*hit) ? Place{&window, {}} : Place{&widget, point};
}

Qt::KeyboardModifiers Hands::someModifiers()
{
    static const std::array<Qt::KeyboardModifiers, 5> all{Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier,
                                                          Qt::ControlModifier | Qt::ShiftModifier, Qt::MetaModifier};
    return m_random.chance(88) ? Qt::NoModifier : m_random.oneOf(all);
}

void Hands::sendMouse(QWindow *window, QPoint point, QEvent::Type type, Qt::MouseButton button,
                      Qt::KeyboardModifiers modifiers)
{
    if (type == QEvent::MouseButtonPress) {
        m_buttons |= button;
    } else if (type == QEvent::MouseButtonRelease) {
        m_buttons &= ~Qt::MouseButtons(button);
    }
    Desktop::handleMouseEvent<Desktop::AsynchronousDelivery>(window, stamp(), point, window->mapToGlobal(point),
                                                             m_buttons, button, type, modifiers);
}

void Hands::sendClick(QWindow *window, QPoint point, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    sendMouse(window, point, QEvent::MouseMove, Qt::NoButton, modifiers);
    sendMouse(window, point, QEvent::MouseButtonPress, button, modifiers);
    worldClock::pass(20ms);
    sendMouse(window, point, QEvent::MouseButtonRelease, button, modifiers);
}

namespace {

QString told(const char *deed, const QWidget &window, const QWidget &widget, QPoint point)
{
    return QStringLiteral("%1 %2 > %3 at %4,%5")
        .arg(QString::fromLatin1(deed), nameOf(window), nameOf(widget))
        .arg(point.x())
        .arg(point.y());
}

} // namespace

/// What gets on, where clicking at random would take long to.
QString Hands::errand(QWidget &window)
{
    struct Way
    {
        const char *window;
        std::vector<const char *> controls; ///< those that matter more, more often
    };
    static const std::array ways{
        Way{"frmOpen", {"Image1(2)", "Image1(2)", "List1"}},
        Way{"frmNotes", {"Image1(3)", "Image1(4)", "Image1(4)", "Image1(8)", "TabStrip1"}},
        Way{"frmOptions", {"List1", "cmdOK(2)", "cmdOK(2)", "cmdOK(2)", "cmdOK(2)", "Option1(1)", "cmdOK(0)"}},
        Way{"frmFlashCard", {"Image1(0)", "Image1(2)", "Image1(3)", "Image1(7)", "Image1(8)", "Image1(9)"}},
        Way{"frmTest", {"Image1(0)", "Image1(4)", "VScroll1", "Image1(3)"}},
        Way{"frmEditCards", {"Image1(0)", "Image1(2)", "Image1(4)", "Image1(5)", "Image1(3)"}},
        Way{"OLE1", {"cmdOK", "lstTypes", "txtFile"}},
    };
    QList<QWidget *> goals;
    for (const Way &way : ways) {
        if (window.objectName() == QLatin1String(way.window)) {
            for (const char *name : way.controls) {
                goals << window.findChildren<QWidget *>(QLatin1String(name));
            }
        }
    }
    for (const QDialogButtonBox *box : window.findChildren<QDialogButtonBox *>()) {
        for (QAbstractButton *button : box->buttons()) {
            goals << button;
        }
    }
    goals.removeIf([](const QWidget *goal) { return !goal->isEnabled() || !mayBeTouched(*goal); });
    if (goals.isEmpty()) {
        return click(window);
    }
    auto *topics = qobject_cast<QListWidget *>(goals.front()); // without any the wizard leads nowhere
    if (topics != nullptr && topics->selectionMode() == QAbstractItemView::MultiSelection &&
        topics->selectedItems().isEmpty()) {
        goals = {topics};
    }
    QWidget *goal = m_random.oneOf(goals);
    Place place = somewhereIn(*goal, window);
    const auto *list = qobject_cast<const QListWidget *>(goal);
    if (list != nullptr && list->count() > 0) { // most of a list may be empty
        const QRect row = list->visualItemRect(list->item(m_random.below(list->count())));
        place.point = list->viewport()->mapTo(&window, row.center());
    }
    worldClock::pass(500ms);
    sendClick(window.windowHandle(), place.point, Qt::LeftButton, Qt::NoModifier);
    return told("errand", window, *place.widget, place.point);
}

/// A picture, an object or a link in a text.
QString Hands::special(QWidget &window)
{
    struct Goal
    {
        QTextEdit *box;
        QPoint point; ///< in the window
    };
    std::vector<Goal> goals;
    for (QTextEdit *box : window.findChildren<QTextEdit *>()) {
        if (!mayBeTouched(*box)) {
            continue;
        }
        QTextCursor cursor(box->document());
        while (goals.size() < 20 && cursor.movePosition(QTextCursor::NextCharacter)) {
            const QTextCharFormat format = cursor.charFormat();
            const QPoint point = box->cursorRect(cursor).center() - QPoint(3, 0);
            if ((format.isAnchor() || format.objectType() != QTextFormat::NoObject) &&
                box->viewport()->rect().contains(point)) {
                goals.push_back({box, box->viewport()->mapTo(&window, point)});
            }
        }
    }
    if (goals.empty()) {
        return click(window);
    }
    const Goal goal = m_random.oneOf(goals);
    const int way = m_random.below(3);
    worldClock::pass(500ms);
    for (int clicks = 0; clicks < (way == 0 ? 2 : 1); ++clicks) {
        sendClick(window.windowHandle(), goal.point, way == 1 ? Qt::RightButton : Qt::LeftButton,
                  way == 2 ? Qt::ControlModifier : Qt::NoModifier);
    }
    return told("special", window, *goal.box, goal.point) + QStringLiteral(" %1").arg(way);
}

QString Hands::click(QWidget &window)
{
    const Place place = somewhere(window);
    static constexpr std::array buttons{Qt::LeftButton, Qt::LeftButton, Qt::LeftButton,   Qt::LeftButton,
                                        Qt::LeftButton, Qt::LeftButton, Qt::MiddleButton, Qt::BackButton};
    const Qt::MouseButton button = m_random.oneOf(buttons);
    const Qt::KeyboardModifiers modifiers = someModifiers();
    worldClock::pass(500ms); // a click of its own
    sendClick(window.windowHandle(), place.point, button, modifiers);
    return told("click", window, *place.widget, place.point) + QStringLiteral(" %1 %2").arg(button).arg(modifiers);
}

QString Hands::doubleClick(QWidget &window)
{
    const Place place = somewhere(window);
    const int clicks = m_random.between(2, 4);
    worldClock::pass(500ms);
    for (int click = 0; click < clicks; ++click) {
        sendClick(window.windowHandle(), place.point, Qt::LeftButton, Qt::NoModifier);
    }
    return told("clicks", window, *place.widget, place.point) + QStringLiteral(" %1").arg(clicks);
}

QString Hands::menuClick(QWidget &window)
{
    const Place place = somewhere(window);
    sendClick(window.windowHandle(), place.point, Qt::RightButton, Qt::NoModifier);
    return told("menu", window, *place.widget, place.point);
}

QString Hands::press(QWidget &window)
{
    const Place place = somewhere(window);
    m_dragged = window.windowHandle();
    worldClock::pass(500ms);
    sendMouse(m_dragged, place.point, QEvent::MouseMove, Qt::NoButton);
    sendMouse(m_dragged, place.point, QEvent::MouseButtonPress, Qt::LeftButton);
    return told("press", window, *place.widget, place.point);
}

QString Hands::drag(QWidget &window)
{
    const Place place = somewhere(window);
    QWindow *over =
        m_random.chance(70) && m_dragged && m_dragged->isVisible() ? m_dragged.data() : window.windowHandle();
    worldClock::pass(std::chrono::milliseconds(m_random.below(300)));
    const int steps = m_random.between(1, 4);
    for (int step = 0; step < steps; ++step) {
        sendMouse(over, place.point + QPoint(step * 5, step * 3), QEvent::MouseMove, Qt::NoButton);
    }
    return told("drag", window, *place.widget, place.point) + QStringLiteral(" %1").arg(over == window.windowHandle());
}

QString Hands::release(QWidget &window)
{
    const Place place = somewhere(window);
    QWindow *over = m_dragged && m_dragged->isVisible() ? m_dragged.data() : window.windowHandle();
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton, Qt::BackButton}) {
        if (m_buttons.testFlag(button)) {
            sendMouse(over, place.point, QEvent::MouseButtonRelease, button);
        }
    }
    return told("release", window, *place.widget, place.point);
}

QString Hands::hover(QWidget &window)
{
    const Place place = somewhere(window);
    sendMouse(window.windowHandle(), place.point, QEvent::MouseMove, Qt::NoButton);
    worldClock::pass(m_random.chance(50) ? 900ms : 10ms); // a hint comes
    return told("hover", window, *place.widget, place.point);
}

QString Hands::wheel(QWidget &window)
{
    const Place place = somewhere(window);
    const int down = 120 * m_random.between(-4, 4);
    const QPoint turn(m_random.chance(15) ? 120 : 0, down);
    const Qt::KeyboardModifiers modifiers = someModifiers();
    Desktop::handleWheelEvent(window.windowHandle(), stamp(), place.point,
                              window.windowHandle()->mapToGlobal(place.point), {}, turn, modifiers);
    return told("wheel", window, *place.widget, place.point) + QStringLiteral(" %1").arg(turn.y());
}

// The keyboard.

void Hands::sendKey(int key, Qt::KeyboardModifiers modifiers, const QString &text)
{
    QWindow *window = QGuiApplication::focusWindow();
    if (window == nullptr) {
        return;
    }
    using Delivery = Desktop::AsynchronousDelivery;
    Desktop::handleKeyEvent<Delivery>(window, stamp(), QEvent::KeyPress, key, modifiers, text);
    worldClock::pass(10ms);
    Desktop::handleKeyEvent<Delivery>(window, stamp(), QEvent::KeyRelease, key, modifiers, text);
}

QString Hands::escape()
{
    const int key = m_random.chance(60) ? Qt::Key_Escape : Qt::Key_Return;
    sendKey(key);
    return QStringLiteral("key ") + written(key, {});
}

QString Hands::key(QWidget &window)
{
    const bool isLetter = m_random.chance(35);
    const int key = isLetter ? m_random.oneOf(letterKeys) : m_random.oneOf(plainKeys);
    const Qt::KeyboardModifiers modifiers = isLetter ? Qt::NoModifier : someModifiers();
    const int times = m_random.chance(85) ? 1 : m_random.between(2, 6);
    for (int time = 0; time < times; ++time) {
        sendKey(key, modifiers,
                isLetter               ? QString(QChar(key).toLower())
                : key == Qt::Key_Space ? QStringLiteral(" ")
                                       : QString());
    }
    return QStringLiteral("key %1 times %2 in %3").arg(written(key, modifiers)).arg(times).arg(nameOf(window));
}

QString Hands::commandKey(QWidget &window)
{
    const int key = m_random.oneOf(altKeys);
    sendKey(Qt::Key_Alt);
    sendKey(key, Qt::AltModifier);
    return QStringLiteral("key %1 in %2").arg(written(key, Qt::AltModifier), nameOf(window));
}

QString Hands::editingKey(QWidget &window)
{
    const int key = m_random.oneOf(controlKeys);
    const Qt::KeyboardModifiers modifiers =
        m_random.chance(80) ? Qt::ControlModifier : Qt::ControlModifier | Qt::ShiftModifier;
    sendKey(key, modifiers);
    return QStringLiteral("key %1 in %2").arg(written(key, modifiers), nameOf(window));
}

QString Hands::typing(QWidget &window)
{
    const QString saying = m_random.oneOf(sayings());
    for (const QChar letter : saying) {
        sendKey(keyOf(letter), letter.isUpper() ? Qt::ShiftModifier : Qt::NoModifier, QString(letter));
    }
    if (m_random.chance(20)) {
        sendKey(Qt::Key_Return); // ahead of what the typing brings up
    }
    return QStringLiteral("type %1 in %2").arg(saying, nameOf(window));
}

// The desktop.

QString Hands::resize(QWidget &window)
{
    const QSize least = window.minimumSize().expandedTo(window.minimumSizeHint());
    const QSize most = window.maximumSize().boundedTo(window.screen()->size() * 2).expandedTo(least);
    const int height = m_random.between(least.height(), most.height());
    const QSize size(m_random.between(least.width(), most.width()), height);
    if (m_random.chance(20)) {
        window.setWindowState(window.windowState() ^ (m_random.chance(50) ? Qt::WindowMaximized : Qt::WindowMinimized));
        return QStringLiteral("state of %1").arg(nameOf(window));
    }
    window.windowHandle()->resize(size);
    return QStringLiteral("resize %1 to %2,%3").arg(nameOf(window)).arg(size.width()).arg(size.height());
}

QString Hands::close(QWidget &window)
{
    Desktop::handleCloseEvent<Desktop::AsynchronousDelivery>(window.windowHandle());
    return QStringLiteral("close ") + nameOf(window);
}

QString Hands::activate(QWidget &window)
{
    const bool leaves = m_random.chance(40); // for another program
    Desktop::handleWindowActivated<Desktop::AsynchronousDelivery>(leaves ? nullptr : window.windowHandle(),
                                                                  Qt::ActiveWindowFocusReason);
    return QStringLiteral("activate ") + (leaves ? QStringLiteral("none") : nameOf(window));
}

QString Hands::clipboard(QWidget & /*window*/)
{
    QString what;
    QGuiApplication::clipboard()->setMimeData(someContents(m_random, what));
    return QStringLiteral("clipboard ") + what;
}

QString Hands::wait(QWidget & /*window*/)
{
    const int time = m_random.chance(70) ? 1000 : m_random.between(20, 3000);
    worldClock::pass(std::chrono::milliseconds(time));
    return QStringLiteral("wait %1").arg(time);
}

QString Hands::leave(QWidget &front)
{
    m_buttons = Qt::NoButton;
    worldClock::pass(600ms);
    if (const auto *box = qobject_cast<QMessageBox *>(&front)) {
        const bool mayLose = box->windowTitle() == QStringLiteral("Leave Without Saving");
        for (const QMessageBox::StandardButton answer :
             {mayLose ? QMessageBox::Yes : QMessageBox::No, QMessageBox::Ok, QMessageBox::Cancel}) {
            if (const QAbstractButton *button = box->button(answer)) {
                sendClick(front.windowHandle(), button->mapTo(&front, button->rect().center()), Qt::LeftButton,
                          Qt::NoModifier);
                return QStringLiteral("answer %1").arg(button->text());
            }
        }
    }
    if (QApplication::activePopupWidget() != nullptr) {
        sendKey(Qt::Key_Escape);
        return QStringLiteral("key Esc");
    }
    return close(front);
}
