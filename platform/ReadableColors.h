#pragma once

#include <QColor>

class QTextCharFormat;
class QTextDocument;

/// Decides which colours of pasted text may stay on a page: inks that can be read on its paper
/// and are not what plain text is written in anyway, and clear markers that the ink can be read on.
class ReadableColors
{
public:
    explicit ReadableColors(const QColor &paper);

    /// Takes the colours from \p format that may not stay. Whether there were any.
    bool clean(QTextCharFormat &format) const;
    /// The same of all text in \p document.
    bool clean(QTextDocument &document) const;

private:
    [[nodiscard]] bool isInk(const QColor &color) const;

    const QColor m_paper;
    const QColor m_ink; ///< of text without a colour
};
