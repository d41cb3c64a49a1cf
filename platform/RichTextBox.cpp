#include "platform/RichTextBox.h"

#include "platform/CommonDialogs.h"
#include "platform/ListNumbers.h"
#include "platform/LongWork.h"
#include "platform/NotebookPage.h"
#include "platform/ObjectOpener.h"
#include "platform/ObjectPainter.h"
#include "platform/PaperFrame.h"
#include "platform/PastedPicture.h"
#include "platform/RichTextClipboard.h"
#include "platform/TextMagnifier.h"
#include "platform/rtf/RtfObjectFormat.h"
#include "platform/rtf/RtfObjectParts.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfWriter.h"

#include <QAbstractTextDocumentLayout>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScreen>
#include <QScrollBar>
#include <QStringDecoder>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <QTextList>
#include <QToolTip>
#include <QUrl>
#include <QtMath>

#include <algorithm>
#include <utility>

namespace {

constexpr int unitsPerInch = 96;

constexpr std::ptrdiff_t noticeableText =
    1'000'000;                                 ///< bytes of RTF that take about half a second until they are shown
constexpr std::ptrdiff_t longText = 4'000'000; ///< and about two seconds

/// Tells the learner when \p rtf takes long: nothing of it can be shown before all of it is read.
void announceReading(const std::string &rtf)
{
    if (std::ssize(rtf) < noticeableText) {
        return;
    }
    // A picture is hexadecimal digits, and takes no time to speak of.
    const auto text = std::ranges::count_if(
        rtf, [](char byte) { return !(byte >= '0' && byte <= '9') && !(byte >= 'a' && byte <= 'f'); });
    if (text >= noticeableText) {
        LongWork::announce(QStringLiteral("Reading a long text..."),
                           text >= longText ? LongWork::Silence::Long : LongWork::Silence::Noticeable);
    }
}

/// Nothing if \p bytes are not UTF-8.
std::optional<QString> fromUtf8(const std::string &bytes)
{
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    QString text = decode(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    return decode.hasError() ? std::nullopt : std::optional(text);
}

// Characters of the document: objects and links.

/// The format of the character that stands at \p position; an empty one if a
/// paragraph ends there.
QTextCharFormat formatOf(QTextDocument &document, int position)
{
    const QTextBlock block = document.findBlock(position);
    if (position < 0 || !block.isValid() || position == block.position() + block.length() - 1) {
        return {};
    }
    QTextCursor cursor(&document);
    cursor.setPosition(position + 1);
    return cursor.charFormat();
}

/// Where the character at \p position is, in the document's own units.
QRectF areaOf(const QTextDocument &document, int position)
{
    const QTextBlock block = document.findBlock(position);
    if (!block.isValid()) {
        return {};
    }
    const int place = position - block.position();
    const QTextLine line = block.layout()->lineForTextPosition(place);
    if (!line.isValid()) {
        return {};
    }
    const double one = line.cursorToX(place);
    const double other = line.cursorToX(place + 1);
    const QRectF area(std::min(one, other), line.y(), std::abs(other - one), line.height());
    return area.translated(block.layout()->position());
}

/// Whether \p source is that of an object, which a picture is not.
bool isObject(const QByteArray &source)
{
    return !source.isEmpty() &&
           !findObjectParts({source.constData(), static_cast<std::size_t>(source.size())}).isPicture;
}

// Links.

/// \p address without anything that could make it look like another one.
QString shownAddress(const QString &address)
{
    const QUrl url(address);
    return QString::fromLatin1(url.isValid() ? url.toEncoded() : QUrl::toPercentEncoding(address));
}

bool mayOpen(const QUrl &url)
{
    static const QStringList schemes = {QStringLiteral("http"), QStringLiteral("https"), QStringLiteral("ftp"),
                                        QStringLiteral("mailto")};
    return url.isValid() && schemes.contains(url.scheme());
}

void openLink(QWidget *parent, const QString &address)
{
    const QUrl url(address);
    const QString title = QStringLiteral("Open Link");
    if (!mayOpen(url)) {
        const QString text = QStringLiteral("Only web and mail addresses are opened. This is none:\n\n%1");
        showInformation(parent, text.arg(shownAddress(address)), title);
        return;
    }
    const QString question = QStringLiteral("Open this address?\n\n%1").arg(shownAddress(address));
    if (askYesNo(parent, question, title) == Answer::Yes) {
        QDesktopServices::openUrl(url);
    }
}

} // namespace

RichTextBox::RichTextBox(QWidget *parent)
    : QTextEdit(parent)
{
    setFont(notebookFont(10));
    setAcceptRichText(true);
    givePaperFrame(*this);
    viewport()->setMouseTracking(true);
    new ObjectPainter(*this);
    m_magnifier = std::make_unique<TextMagnifier>(*this);
    // Only replacing the whole contents is done without undo.
    connect(document(), &QTextDocument::contentsChanged, this, [this] {
        if (!document()->isUndoRedoEnabled()) {
            m_rtf.reset();
        }
    });
}

RichTextBox::~RichTextBox() = default;

// Contents.

std::string RichTextBox::rtf() const
{
    return m_rtf && !document()->isModified() ? *m_rtf : writeRtf(*document());
}

void RichTextBox::setRtf(const std::string &rtf)
{
    announceReading(rtf);
    std::optional<RtfError> error;
    {
        std::optional<LayoutPause> pause;
        if (m_leastTextSize > 0) {
            pause.emplace(*document()); // how large the text is shown is known when it is there
        }
        error = readRtf(rtf, *document());
        magnify();
    }
    center();
    document()->clearUndoRedoStacks();
    setTextCursor(QTextCursor(document()));
    verticalScrollBar()->setValue(0);
    const bool isRtf = !rtf.empty() && (!error || error->reason != RtfError::Reason::NotRtf);
    m_rtf = isRtf ? std::optional(rtf) : std::nullopt;
}

QString RichTextBox::textRtf() const
{
    const std::optional<QString> text = fromUtf8(rtf());
    return text ? *text : QString::fromStdString(writeRtf(*document()));
}

QString RichTextBox::selRtf() const
{
    return QString::fromStdString(writeRtf(textCursor()));
}

void RichTextBox::replaceSelection(const std::string &rtf)
{
    QTextCursor cursor = textCursor();
    insertRtf(rtf, cursor);
    setTextCursor(cursor);
    ensureCursorVisible();
}

QString RichTextBox::plainText() const
{
    return toPlainText().replace(QChar::ObjectReplacementCharacter, QLatin1Char(' '));
}

void RichTextBox::resetText(const QString &text)
{
    setRtf({});
    setPlainText(text); // which takes the format at the caret
    magnify();
}

void RichTextBox::setLocked(bool locked)
{
    setReadOnly(locked);
}

void RichTextBox::scrollPage(int key)
{
    verticalScrollBar()->triggerAction(key == Qt::Key_PageUp ? QScrollBar::SliderPageStepSub
                                                             : QScrollBar::SliderPageStepAdd);
}

bool RichTextBox::isLocked() const
{
    return isReadOnly();
}

bool RichTextBox::canUndo() const
{
    return document()->isUndoAvailable();
}

void RichTextBox::insertObjectSource(const QByteArray &source)
{
    if (source.isEmpty()) {
        return;
    }
    QTextCursor cursor = textCursor();
    insertObject(cursor, source);
    setTextCursor(cursor);
    ensureCursorVisible();
}

void RichTextBox::insertPicture(const QImage &image)
{
    insertObjectSource(sourceOfImage(image, pictureLimit()));
}

QSize RichTextBox::pictureLimit() const
{
    return screen()->size() * unitsPerInch / logicalDpiX();
}

// Clipboard and dragging.

PasteTarget RichTextBox::pasteTarget() const
{
    return {.paper = palette().color(QPalette::Base), .screen = pictureLimit(), .font = document()->defaultFont()};
}

QMimeData *RichTextBox::createMimeDataFromSelection() const
{
    return clipboardOf(textCursor()).release();
}

bool RichTextBox::canInsertFromMimeData(const QMimeData *source) const
{
    return !isLocked() && source != nullptr && ::canPaste(*source);
}

void RichTextBox::insertFromMimeData(const QMimeData *source)
{
    if (isLocked() || source == nullptr) {
        return;
    }
    if (const auto rtf = rtfToPaste(*source, pasteTarget())) {
        replaceSelection(*rtf);
    } else {
        typeIn(textToPaste(*source));
    }
}

void RichTextBox::pastePlainText()
{
    const QMimeData *contents = QGuiApplication::clipboard()->mimeData();
    if (!isLocked() && contents != nullptr) {
        typeIn(textToPaste(*contents));
    }
}

void RichTextBox::typeIn(const QString &text)
{
    if (!text.isEmpty()) {
        insertPlainText(text);
        ensureCursorVisible();
    }
}

void RichTextBox::dropEvent(QDropEvent *event)
{
    QTextEdit::dropEvent(event);
    // The files of a file manager stay where they are.
    if (event->isAccepted() && event->mimeData()->hasUrls()) {
        event->setDropAction(Qt::CopyAction);
    }
}

// Objects and links.

QByteArray RichTextBox::objectAt(const QPoint &point) const
{
    const QPointF place = point + QPoint(horizontalScrollBar()->value(), verticalScrollBar()->value());
    const int nearest = cursorForPosition(point).position();
    for (const int position : {nearest, nearest - 1}) {
        if (areaOf(*document(), position).contains(place)) {
            return objectSourceOf(formatOf(*document(), position));
        }
    }
    return {};
}

QByteArray RichTextBox::objectAtCaret() const
{
    const QTextCursor cursor = textCursor();
    const int selected = cursor.selectionEnd() - cursor.selectionStart();
    QByteArray source;
    if (selected <= 1) {
        source = objectSourceOf(formatOf(*document(), cursor.selectionStart()));
    }
    return source.isEmpty() && selected == 0 ? objectSourceOf(formatOf(*document(), cursor.position() - 1)) : source;
}

QString RichTextBox::linkAtCaret() const
{
    const int position = textCursor().position();
    const QString behind = formatOf(*document(), position).anchorHref();
    return behind.isEmpty() ? formatOf(*document(), position - 1).anchorHref() : behind;
}

void RichTextBox::contextMenuEvent(QContextMenuEvent *event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    QMenu *menu = createStandardContextMenu();
    menu->setObjectName(QStringLiteral("mnuText"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    addPlainPaste(*menu);
    addObjectCommands(*menu, byKey ? objectAtCaret() : objectAt(event->pos()));
    addLinkCommands(*menu, byKey ? linkAtCaret() : anchorAt(event->pos()));
    menu->popup(byKey ? viewport()->mapToGlobal(cursorRect().bottomLeft()) : event->globalPos());
}

void RichTextBox::addPlainPaste(QMenu &menu)
{
    auto *paste = menu.findChild<QAction *>(QStringLiteral("edit-paste"));
    if (paste == nullptr) {
        return; // the box is locked
    }
    auto *plain = new QAction(QStringLiteral("Paste as Plain Text\tCtrl+Shift+V"), &menu);
    plain->setObjectName(QStringLiteral("edit-paste-plain"));
    plain->setEnabled(paste->isEnabled());
    connect(plain, &QAction::triggered, this, &RichTextBox::pastePlainText);
    const QList<QAction *> actions = menu.actions();
    menu.insertAction(actions.value(actions.indexOf(paste) + 1), plain);
}

void RichTextBox::addObjectCommands(QMenu &menu, const QByteArray &source)
{
    if (source.isEmpty() || !holdsFile(source)) {
        return;
    }
    menu.addSeparator();
    menu.addAction(QStringLiteral("Open Object..."), this, [this, source] { openObject(this, source); });
    menu.addAction(QStringLiteral("Save Object As..."), this, [this, source] { saveObject(this, source); });
}

void RichTextBox::addLinkCommands(QMenu &menu, const QString &address)
{
    if (address.isEmpty()) {
        return;
    }
    menu.addSeparator();
    menu.addAction(QStringLiteral("Open Link..."), this, [this, address] { openLink(this, address); });
    menu.addAction(QStringLiteral("Copy Link Address"), this,
                   [address] { QGuiApplication::clipboard()->setText(address); });
}

void RichTextBox::updatePointer(const QPoint &point, bool opensLinks)
{
    const bool hasHand = opensLinks && !anchorAt(point).isEmpty();
    if (hasHand != m_hasHand) {
        viewport()->setCursor(hasHand ? Qt::PointingHandCursor : Qt::IBeamCursor);
        m_hasHand = hasHand;
    }
}

// Looks.

void RichTextBox::setCentered(Qt::Orientations directions)
{
    m_centered = directions;
    if (directions) {
        connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
                &RichTextBox::center, Qt::UniqueConnection);
    }
    setViewportMargins({});
    center();
}

void RichTextBox::center()
{
    // The margins themselves change the size of the text. A box is laid out once it is seen.
    if (!m_centered || m_isCentering || !viewport()->isVisible()) {
        return;
    }
    const QScopedValueRollback<bool> centering(m_isCentering, true);
    setViewportMargins({}); // so that the text is laid out in the whole box
    if (verticalScrollBar()->maximum() > 0 && document()->size().height() < 2 * contentsRect().height()) {
        // Beside a scroll bar, the text may be higher than the box only because of the scroll bar.
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    }
    const double height = document()->size().height();
    const QSizeF room = contentsRect().size() - QSizeF(document()->idealWidth(), height);
    if (room.height() < 0) {
        return;
    }
    const int above = m_centered & Qt::Vertical ? qFloor(room.height() / 2) : 0;
    // Less the part of a pixel that a line may be wider.
    const int beside = m_centered & Qt::Horizontal ? qMax(0, qFloor(room.width() / 2) - 1) : 0;
    setViewportMargins(beside, above, beside, 0);
    if (document()->size().height() > height) {
        setViewportMargins(0, above, 0, 0); // lines that are broken at the box's width would be broken once more
    }
}

void RichTextBox::setLeastTextSize(double points)
{
    m_leastTextSize = points;
    const std::optional<std::string> rtf = m_rtf; // the contents stay the same
    magnify();
    m_rtf = rtf;
}

void RichTextBox::magnify()
{
    const double usual = m_leastTextSize > 0 ? usualLetterSize(*document()) : 0;
    m_magnifier->setFactor(usual > 0 ? m_leastTextSize / usual : 1);
}

void RichTextBox::resizeEvent(QResizeEvent *event)
{
    QTextEdit::resizeEvent(event);
    center();
}

void RichTextBox::showEvent(QShowEvent *event)
{
    QTextEdit::showEvent(event);
    center();
}

void RichTextBox::paintEvent(QPaintEvent *event)
{
    QTextEdit::paintEvent(event);
    QPainter painter(viewport());
    paintListNumbers(painter, *this, event->rect());
}

bool RichTextBox::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        if (const QString address = anchorAt(help->pos()); !address.isEmpty()) {
            const QString tip = QStringLiteral("Ctrl+click opens %1").arg(shownAddress(address));
            QToolTip::showText(help->globalPos(), tip, viewport());
            return true;
        }
    }
    return QTextEdit::viewportEvent(event);
}

// Mouse and keys.

void RichTextBox::mousePressEvent(QMouseEvent *event)
{
    const bool opensLinks = event->button() == Qt::LeftButton && event->modifiers() == Qt::ControlModifier;
    m_pressedLink = opensLinks ? anchorAt(event->position().toPoint()) : QString();
    if (m_pressedLink.isEmpty()) {
        QTextEdit::mousePressEvent(event);
    }
    Q_EMIT clicked();
}

void RichTextBox::mouseMoveEvent(QMouseEvent *event)
{
    updatePointer(event->position().toPoint(), event->modifiers().testFlag(Qt::ControlModifier));
    if (m_pressedLink.isEmpty()) {
        QTextEdit::mouseMoveEvent(event);
    }
}

void RichTextBox::mouseReleaseEvent(QMouseEvent *event)
{
    const QString pressed = std::exchange(m_pressedLink, {});
    if (pressed.isEmpty()) {
        QTextEdit::mouseReleaseEvent(event);
    } else if (anchorAt(event->position().toPoint()) == pressed) {
        openLink(this, pressed);
    }
}

void RichTextBox::mouseDoubleClickEvent(QMouseEvent *event)
{
    const QByteArray source = objectAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && isObject(source) && holdsFile(source)) {
        openObject(this, source);
        return;
    }
    QTextEdit::mouseDoubleClickEvent(event);
    Q_EMIT doubleClicked();
}

void RichTextBox::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Control) {
        updatePointer(viewport()->mapFromGlobal(QCursor::pos()), true);
    }
    // Alt with a letter is a command, and no letter to be typed.
    const bool isAltLetter = !isLocked() && event->modifiers() == Qt::AltModifier && !event->text().isEmpty();
    if (!isAltLetter && !runCommandKey(*event)) {
        QTextEdit::keyPressEvent(event);
    }
}

void RichTextBox::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Control) {
        updatePointer({}, false);
    }
    QTextEdit::keyReleaseEvent(event);
}

bool RichTextBox::runCommandKey(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const bool isEnter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (isEnter && modifiers == Qt::ControlModifier) {
        const QString address = linkAtCaret();
        if (!address.isEmpty()) {
            openLink(this, address);
        }
        return !address.isEmpty();
    }
    if (event.key() == Qt::Key_F10 && modifiers == Qt::ShiftModifier) {
        const QPoint caret = cursorRect().center();
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, caret, viewport()->mapToGlobal(caret));
        contextMenuEvent(&menu);
        return true;
    }
    if (event.key() == Qt::Key_V && modifiers == (Qt::ControlModifier | Qt::ShiftModifier)) {
        pastePlainText();
        return !isLocked();
    }
    return event.key() == Qt::Key_Backspace && modifiers == Qt::NoModifier && removeBulletByBackspace();
}

/// At the start of a paragraph with a mark Backspace takes the mark; the indent stays.
bool RichTextBox::removeBulletByBackspace()
{
    const QTextCursor cursor = textCursor();
    if (isLocked() || cursor.hasSelection() || !cursor.atBlockStart() || cursor.currentList() == nullptr) {
        return false;
    }
    setSelBullet(false);
    return true;
}

void RichTextBox::wheelEvent(QWheelEvent *event)
{
    // Zooming would change the font of text that has none of its own, and store it.
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        event->ignore();
    } else {
        QTextEdit::wheelEvent(event);
    }
}
