#pragma once

#include <QTextBrowser>

class HelpBook;
class HelpPictures;

/// The page of the help book that the learner reads.
///
/// Text and links are written in colours of the palette, or near them, that can
/// be read on its ground. Links lead to other pages of the book and nowhere else.
class HelpPage final : public QTextBrowser
{
    Q_OBJECT

public:
    /// Larger and smaller letters than these are not offered, points.
    static constexpr double smallestLetters = 6;
    static constexpr double largestLetters = 40;

    HelpPage(HelpBook &book, QWidget *parent);

    /// Shows the page and place; one that is not in the book is not shown.
    void openPlace(const QUrl &place);
    /// Marks \p words, and words that begin with them, until another page is opened,
    /// and scrolls to the first.
    void mark(const QStringList &words);

    void enlarge(int steps); ///< negative: shrink
    void resetLetters();

    /// Prints the page, black on white, in letters of their usual size.
    void printOn(QPagedPaintDevice &printer) const;

protected:
    QVariant loadResource(int type, const QUrl &name) override;
    void changeEvent(QEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    [[nodiscard]] QByteArray read(const QUrl &name) const;
    void colourLinks();

    HelpBook &m_book;
    HelpPictures *m_pictures;
    QUrl m_loaded; ///< the page in the document; source() is it only after the loading
};
