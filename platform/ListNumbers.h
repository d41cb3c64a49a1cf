#pragma once

class QPainter;
class QRect;
class QTextEdit;

/// Paints the marks of numbered paragraphs whose list begins at another number
/// than 1 (RtfListStyleShown), which a document leaves out, over what \p box shows
/// in \p clip. \p painter is the viewport's; the marks look as a document's own.
void paintListNumbers(QPainter &painter, const QTextEdit &box, const QRect &clip);
