#pragma once

#include <QWidget>

class HelpBook;
class QHelpIndexWidget;
class QLineEdit;
class QUrl;
struct QHelpLink;

/// The book's keywords in the order of the alphabet, and a line to filter them with.
class HelpIndexPane final : public QWidget
{
    Q_OBJECT

public:
    HelpIndexPane(HelpBook &book, QWidget *parent);

Q_SIGNALS:
    void chosen(const QUrl &place);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void filter(const QString &text);
    /// Lets the learner choose between the pages that a keyword leads to.
    void offer(const QList<QHelpLink> &pages);

    QLineEdit *m_filter;
    QHelpIndexWidget *m_keywords;
};
