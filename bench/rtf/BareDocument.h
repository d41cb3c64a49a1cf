#pragma once

#include <QString>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextListFormat>

#include <vector>

class QTextDocument;

/// What a document is made of, laid out flat: the least that any reader has to
/// insert to make it.
class BareDocument
{
public:
    explicit BareDocument(const QTextDocument &document);

    /// Makes \p document, an empty one, the same as the one that this is of: one
    /// insertion a run and a paragraph, as one edit without undo.
    void insertInto(QTextDocument &document) const;

    [[nodiscard]] int runs() const { return static_cast<int>(m_runs.size()); }
    [[nodiscard]] int paragraphs() const { return static_cast<int>(m_paragraphs.size()); }

private:
    struct Run
    {
        QString text;
        QTextCharFormat format;
    };
    struct Paragraph
    {
        QTextBlockFormat format; ///< without its list
        QTextCharFormat mark;
        std::size_t endOfRuns = 0; ///< of m_runs
        int list = -1;             ///< of m_lists, -1: none
    };

    std::vector<Run> m_runs;
    std::vector<Paragraph> m_paragraphs;
    std::vector<QTextListFormat> m_lists;
};
