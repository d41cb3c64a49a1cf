#include "platform/help/HelpPage.h"

#include "platform/help/HelpBook.h"
#include "platform/help/HelpPictures.h"
#include "platform/help/InkContrast.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QPagedPaintDevice>
#include <QRegularExpression>
#include <QScrollBar>
#include <QWheelEvent>

namespace {

constexpr int margin = 12; // pixels

} // namespace

HelpPage::HelpPage(HelpBook &book, QWidget *parent)
    : QTextBrowser(parent)
    , m_book(book)
    , m_pictures(new HelpPictures([this](const QUrl &name) { return read(name); }, this))
{
    document()->documentLayout()->registerHandler(QTextFormat::ImageObject, m_pictures);
    document()->setDocumentMargin(margin);
    setOpenLinks(false);
    colourLinks();
    connect(this, &QTextBrowser::anchorClicked, this, &HelpPage::openPlace);
    connect(this, &QTextBrowser::sourceChanged, this, [this] { setExtraSelections({}); });
}

void HelpPage::openPlace(const QUrl &place)
{
    if (m_book.contains(place)) {
        setSource(place);
    }
}

QVariant HelpPage::loadResource(int type, const QUrl &name)
{
    if (type == QTextDocument::HtmlResource) {
        m_loaded = name;
        m_pictures->clear();
    }
    const QByteArray bytes = read(name);
    if (bytes.isEmpty() && type == QTextDocument::HtmlResource) {
        return QStringLiteral("<h1>This page cannot be read</h1><p>The help book has changed or is damaged. Close "
                              "Cramlet and start it again; if that does not help, install it again.</p>");
    }
    return bytes;
}

QByteArray HelpPage::read(const QUrl &name) const
{
    return m_book.read(m_loaded.resolved(name));
}

void HelpPage::mark(const QStringList &words)
{
    QStringList patterns;
    for (const QString &word : words) {
        patterns.append(QRegularExpression::escape(word));
    }
    const QRegularExpression wanted(QStringLiteral("\\b(%1)\\w*").arg(patterns.join(QLatin1Char('|'))),
                                    QRegularExpression::CaseInsensitiveOption |
                                        QRegularExpression::UseUnicodePropertiesOption);
    QList<ExtraSelection> marks;
    for (QTextCursor found = document()->find(wanted); !words.isEmpty() && !found.isNull();
         found = document()->find(wanted, found)) {
        ExtraSelection marked;
        marked.cursor = found;
        marked.format.setBackground(palette().highlight());
        marked.format.setForeground(palette().highlightedText());
        marks.append(marked);
    }
    setExtraSelections(marks);
    if (!marks.isEmpty()) {
        QTextCursor first = marks.constFirst().cursor;
        first.clearSelection();
        setTextCursor(first);
        ensureCursorVisible();
    }
}

void HelpPage::enlarge(int steps)
{
    const double points = font().pointSizeF() + steps;
    if (points >= smallestLetters && points <= largestLetters) {
        zoomInF(static_cast<float>(steps));
    }
}

void HelpPage::resetLetters()
{
    setFont(QFont());
}

void HelpPage::printOn(QPagedPaintDevice &printer) const
{
    HelpPage paper(m_book, nullptr);
    paper.setPalette(QPalette(Qt::black, Qt::white, Qt::white, Qt::gray, Qt::gray, Qt::black, Qt::white));
    paper.setSource(source());
    paper.print(&printer);
}

void HelpPage::changeEvent(QEvent *event)
{
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        colourLinks();
        if (source().isValid()) {
            const int place = verticalScrollBar()->value();
            reload();
            verticalScrollBar()->setValue(place);
        }
    }
}

void HelpPage::wheelEvent(QWheelEvent *event)
{
    if (event->modifiers() == Qt::ControlModifier) {
        enlarge(event->angleDelta().y() > 0 ? 1 : -1);
        event->accept();
        return;
    }
    QTextBrowser::wheelEvent(event);
}

void HelpPage::colourLinks()
{
    const QColor ink = inkOn(palette().color(QPalette::Base), palette().color(QPalette::Link));
    document()->setDefaultStyleSheet(QStringLiteral("a { color: %1; }").arg(ink.name()));
}
