#include "platform/help/HelpIndexPane.h"

#include "platform/help/HelpBook.h"

#include <QCoreApplication>
#include <QHelpIndexWidget>
#include <QHelpLink>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QUrl>
#include <QVBoxLayout>

HelpIndexPane::HelpIndexPane(HelpBook &book, QWidget *parent)
    : QWidget(parent)
    , m_filter(new QLineEdit(this))
    , m_keywords(book.index())
{
    m_filter->setObjectName(QStringLiteral("IndexFilter"));
    m_filter->setAccessibleName(QStringLiteral("Filter the index"));
    m_filter->setPlaceholderText(QStringLiteral("Filter"));
    m_filter->setClearButtonEnabled(true);
    m_filter->installEventFilter(this);
    m_keywords->setObjectName(QStringLiteral("IndexKeywords"));
    m_keywords->setAccessibleName(QStringLiteral("Index"));
    setFocusProxy(m_filter);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_filter);
    layout->addWidget(m_keywords);

    connect(qobject_cast<QHelpIndexModel *>(m_keywords->model()), &QHelpIndexModel::indexCreated, this,
            [this] { filter(m_filter->text()); });
    connect(m_filter, &QLineEdit::textChanged, this, &HelpIndexPane::filter);
    connect(m_filter, &QLineEdit::returnPressed, m_keywords, &QHelpIndexWidget::activateCurrentItem);
    connect(m_keywords, &QAbstractItemView::clicked, m_keywords, &QHelpIndexWidget::activateCurrentItem);
    connect(m_keywords, &QHelpIndexWidget::documentActivated, this,
            [this](const QHelpLink &page) { Q_EMIT chosen(page.url); });
    connect(m_keywords, &QHelpIndexWidget::documentsActivated, this, &HelpIndexPane::offer);
}

/// Up and down move in the list while the learner types.
bool HelpIndexPane::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_filter && event->type() == QEvent::KeyPress) {
        auto *pressed = static_cast<QKeyEvent *>(event);
        if (pressed->key() == Qt::Key_Down || pressed->key() == Qt::Key_Up) {
            return QCoreApplication::sendEvent(m_keywords, event);
        }
    }
    return QWidget::eventFilter(watched, event);
}

void HelpIndexPane::filter(const QString &text)
{
    m_keywords->filterIndices(text);
    if (!m_keywords->currentIndex().isValid()) {
        m_keywords->setCurrentIndex(m_keywords->model()->index(0, 0));
    }
}

void HelpIndexPane::offer(const QList<QHelpLink> &pages)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const QHelpLink &page : pages) {
        menu->addAction(page.title, this, [this, place = page.url] { Q_EMIT chosen(place); });
    }
    const QRect keyword = m_keywords->visualRect(m_keywords->currentIndex());
    menu->popup(m_keywords->viewport()->mapToGlobal(keyword.bottomLeft()));
    menu->setActiveAction(menu->actions().constFirst());
}
