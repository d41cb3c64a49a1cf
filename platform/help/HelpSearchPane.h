#pragma once

#include <QWidget>

class HelpBook;
class QHelpSearchEngine;
class QHelpSearchResult;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QUrl;

/// Finds the pages that hold all of some words, the best first.
///
/// The book is read through for that in the background, beginning when the
/// window is first shown; a search asked for earlier waits for it.
class HelpSearchPane final : public QWidget
{
    Q_OBJECT

public:
    HelpSearchPane(HelpBook &book, QWidget *parent);

    /// Reads the book through, if that has not been begun.
    void prepare();

Q_SIGNALS:
    /// A page of the result is now current; \p words are what was looked for.
    void shown(const QUrl &place, const QStringList &words);
    /// The learner wants to read it.
    void chosen(const QUrl &place, const QStringList &words);

private:
    void search();
    void fill();
    /// Of the page's text, what is shown below its title.
    [[nodiscard]] QString passageOf(const QHelpSearchResult &page) const;

    HelpBook &m_book;
    QHelpSearchEngine *m_engine = nullptr; ///< made when it is first needed
    QLineEdit *m_line;
    QLabel *m_state; ///< how many pages there are, or what is going on
    QListWidget *m_pages;
    QStringList m_words; ///< looked for last
    bool m_ready = false;
};
