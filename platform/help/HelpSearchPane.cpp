#include "platform/help/HelpSearchPane.h"

#include "platform/help/HelpBook.h"
#include "platform/help/SearchResultFace.h"

#include <QHBoxLayout>
#include <QHelpSearchEngine>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QTextDocument>
#include <QUrl>
#include <QVBoxLayout>

namespace {

constexpr int longestPassage = 200; // characters

QStringList wordsOf(const QString &text)
{
    static const QRegularExpression between(QStringLiteral("[^\\w]+"), QRegularExpression::UseUnicodePropertiesOption);
    return text.split(between, Qt::SkipEmptyParts);
}

/// All of the words, or words that begin with them.
QString queryFor(const QStringList &words)
{
    QStringList parts;
    for (const QString &word : words) {
        parts.append(QStringLiteral("\"%1\"*").arg(word));
    }
    return parts.join(QLatin1Char(' '));
}

} // namespace

HelpSearchPane::HelpSearchPane(HelpBook &book, QWidget *parent)
    : QWidget(parent)
    , m_book(book)
    , m_line(new QLineEdit(this))
    , m_state(new QLabel(this))
    , m_pages(new QListWidget(this))
{
    m_line->setObjectName(QStringLiteral("SearchWords"));
    m_line->setAccessibleName(QStringLiteral("Words to find"));
    m_line->setPlaceholderText(QStringLiteral("Words to find"));
    m_line->setClearButtonEnabled(true);
    auto *find = new QPushButton(QStringLiteral("&Find"), this);
    find->setObjectName(QStringLiteral("SearchButton"));
    m_state->setObjectName(QStringLiteral("SearchState"));
    m_state->setTextFormat(Qt::PlainText);
    m_state->setWordWrap(true);
    m_pages->setObjectName(QStringLiteral("SearchResults"));
    m_pages->setAccessibleName(QStringLiteral("Pages found"));
    m_pages->setItemDelegate(new SearchResultFace(m_pages));
    m_pages->setResizeMode(QListView::Adjust);
    m_pages->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pages->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setFocusProxy(m_line);

    auto *row = new QHBoxLayout;
    row->addWidget(m_line);
    row->addWidget(find);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(row);
    layout->addWidget(m_state);
    layout->addWidget(m_pages);

    connect(m_line, &QLineEdit::returnPressed, this, &HelpSearchPane::search);
    connect(find, &QPushButton::clicked, this, &HelpSearchPane::search);
    connect(m_pages, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem *page) {
        if (page != nullptr) {
            Q_EMIT shown(page->data(SearchResultFace::place).toUrl(), m_words);
        }
    });
    connect(m_pages, &QListWidget::itemClicked, this, [this](const QListWidgetItem *page) {
        Q_EMIT shown(page->data(SearchResultFace::place).toUrl(), m_words);
    });
    connect(m_pages, &QListWidget::itemActivated, this, [this](const QListWidgetItem *page) {
        Q_EMIT chosen(page->data(SearchResultFace::place).toUrl(), m_words);
    });
}

void HelpSearchPane::prepare()
{
    if (m_engine != nullptr) {
        return;
    }
    m_engine = m_book.searching();
    connect(m_engine, &QHelpSearchEngine::indexingFinished, this, [this] {
        m_ready = true;
        if (!m_words.isEmpty()) {
            search();
        }
    });
    connect(m_engine, &QHelpSearchEngine::searchingFinished, this, &HelpSearchPane::fill);
    m_engine->scheduleIndexDocumentation();
}

void HelpSearchPane::search()
{
    prepare();
    m_words = wordsOf(m_line->text());
    m_pages->clear();
    if (m_words.isEmpty()) {
        m_state->clear();
    } else if (m_ready) {
        m_engine->search(queryFor(m_words));
    } else {
        m_state->setText(QStringLiteral("Reading the book..."));
    }
}

void HelpSearchPane::fill()
{
    m_pages->clear();
    for (const QHelpSearchResult &page : m_engine->searchResults(0, m_engine->searchResultCount())) {
        auto *item = new QListWidgetItem(page.title(), m_pages);
        item->setData(SearchResultFace::place, page.url());
        const QString passage = passageOf(page);
        item->setData(SearchResultFace::passage, passage);
        item->setData(Qt::AccessibleDescriptionRole, passage);
    }
    switch (m_pages->count()) {
    case 0: m_state->setText(QStringLiteral("No page contains \"%1\".").arg(m_line->text().trimmed())); break;
    case 1: m_state->setText(QStringLiteral("1 page")); break;
    default: m_state->setText(QStringLiteral("%1 pages").arg(m_pages->count()));
    }
    if (m_pages->count() > 0) {
        m_pages->setCurrentRow(0);
        m_pages->setFocus();
    }
}

QString HelpSearchPane::passageOf(const QHelpSearchResult &page) const
{
    QString found = page.snippet().remove(QStringLiteral("<b>")).remove(QStringLiteral("</b>"));
    if (found.trimmed() == page.title()) {
        QTextDocument whole;
        whole.setHtml(QString::fromUtf8(m_book.read(page.url())));
        found = whole.toPlainText().left(longestPassage);
    }
    found = found.remove(QChar::ObjectReplacementCharacter).simplified();
    return found.startsWith(page.title()) ? found.mid(page.title().size()).trimmed() : found;
}
