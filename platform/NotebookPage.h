#pragma once

#include "platform/PageRuling.h"

#include <QWidget>

/// A window that looks like a page of a ring-bound notebook: paper, ruled
/// lines, margin line, holes, all painted in one paint handler.
///
/// Everything on the page takes the paper's palette (PaperPalette), not the
/// desktop's, and the notebook's handwriting font.
class NotebookPage : public QWidget
{
    Q_OBJECT

public:
    /// A window also with a \p parent, which owns it and in front of which it stays.
    explicit NotebookPage(const PageRuling &ruling, QWidget *parent = nullptr);

    void setPaperColor(const QColor &color);
    [[nodiscard]] QColor paperColor() const { return m_paper; }

    void setRuling(const PageRuling &ruling);
    [[nodiscard]] const PageRuling &ruling() const { return m_ruling; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    PageRuling m_ruling;
    QColor m_paper = Qt::white;
};

/// The notebook's font: "Comic Sans MS" as asked for by name, else the nearest that is installed.
[[nodiscard]] QFont notebookFont(double points);
