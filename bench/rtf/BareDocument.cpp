#include "bench/rtf/BareDocument.h"

#include <QHash>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>

BareDocument::BareDocument(const QTextDocument &document)
{
    QHash<const QTextList *, int> lists;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto place = block.begin(); !place.atEnd(); ++place) {
            m_runs.push_back({place.fragment().text(), place.fragment().charFormat()});
        }
        Paragraph paragraph{block.blockFormat(), block.charFormat(), m_runs.size()};
        paragraph.format.setObjectIndex(-1);
        if (const QTextList *list = block.textList()) {
            if (!lists.contains(list)) {
                lists.insert(list, static_cast<int>(m_lists.size()));
                m_lists.push_back(list->format());
            }
            paragraph.list = lists.value(list);
        }
        m_paragraphs.push_back(paragraph);
    }
}

void BareDocument::insertInto(QTextDocument &document) const
{
    document.setUndoRedoEnabled(false);
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    std::vector<int> lists(m_lists.size(), -1); // the places that the document gives them
    std::size_t run = 0;
    bool isFirst = true;
    for (const Paragraph &paragraph : m_paragraphs) {
        QTextBlockFormat format = paragraph.format;
        int *list = paragraph.list < 0 ? nullptr : &lists[static_cast<std::size_t>(paragraph.list)];
        if (list != nullptr) {
            format.setObjectIndex(*list);
        }
        if (isFirst) {
            cursor.setBlockFormat(format);
            cursor.setBlockCharFormat(paragraph.mark);
            isFirst = false;
        } else {
            cursor.insertBlock(format, paragraph.mark);
        }
        if (list != nullptr && *list < 0) {
            *list = cursor.createList(m_lists[static_cast<std::size_t>(paragraph.list)])->objectIndex();
        }
        for (; run < paragraph.endOfRuns; ++run) {
            cursor.insertText(m_runs[run].text, m_runs[run].format);
        }
    }
    cursor.endEditBlock();
}
