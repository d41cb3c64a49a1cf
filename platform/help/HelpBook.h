#pragma once

#include <QList>
#include <QTemporaryDir>
#include <QUrl>

#include <memory>
#include <optional>

class QHelpContentWidget;
class QHelpEngine;
class QHelpIndexWidget;
class QHelpSearchEngine;

/// The help book: a compressed help file, read where it lies.
///
/// What the reading needs to write, its register and its search index, it keeps
/// in a temporary folder of its own, which goes with it.
class HelpBook
{
public:
    /// Throws HelpUnavailable if \p file is missing or no help book.
    explicit HelpBook(const QString &file);
    HelpBook(const HelpBook &) = delete;
    HelpBook &operator=(const HelpBook &) = delete;
    ~HelpBook();

    [[nodiscard]] QString file() const { return m_file; }

    /// The topic with this context number, if there is one.
    [[nodiscard]] std::optional<QUrl> topic(int context) const;
    /// Whether \p place lies on a page of this book.
    [[nodiscard]] bool contains(const QUrl &place) const;
    /// A page's, picture's or style sheet's bytes; none if the book does not hold it.
    [[nodiscard]] QByteArray read(const QUrl &place) const;

    // Made with the book, empty until it is read; who shows them owns them.
    [[nodiscard]] QHelpContentWidget *contents();
    [[nodiscard]] QHelpIndexWidget *index();

    /// Finds words on the book's pages, in a thread of its own.
    [[nodiscard]] QHelpSearchEngine *searching();

private:
    QString m_file;
    QString m_space; ///< the book's part of the addresses of its pages
    QTemporaryDir m_own;
    std::unique_ptr<QHelpEngine> m_engine;
};
