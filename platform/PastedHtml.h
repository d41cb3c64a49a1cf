#pragma once

#include <QColor>
#include <QFont>
#include <QSize>
#include <QString>

#include <string>

/// Longer HTML, in UTF-16 units, is not read.
inline constexpr qsizetype maxHtmlLength = qsizetype{16} * 1024 * 1024;

/// \p html as RTF that suits a card: bold, italic, underline, strike, super- and
/// subscript, headings, colours that can be read on \p paper, lists, alignment,
/// links, and pictures that the HTML itself holds, none larger than \p screen
/// (document units). A row of a table becomes a line with tabs; one that holds a single cell
/// stays as it is, as do rows that only arrange a page. Fonts and sizes of a page,
/// backgrounds, scripts and everything remote are dropped: the text is set in \p font, and
/// nothing is fetched. Takes time in proportion to the length, whatever the HTML.
///
/// The last paragraph is closed only if there are several and it is a block of its own.
/// Empty if there is nothing to show, or \p html is longer than maxHtmlLength.
[[nodiscard]] std::string rtfOfHtml(const QString &html, const QColor &paper, QSize screen, const QFont &font);

/// Takes from \p rtf the colours that cannot be read on \p paper and returns the
/// rest as it was; with all colours readable, \p rtf itself. Ink that is black or close to the
/// page's own counts as not readable: it becomes the page's, which follows the paper.
[[nodiscard]] std::string withReadableColors(const std::string &rtf, const QColor &paper);
