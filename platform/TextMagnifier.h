#pragma once

#include <memory>

class QTextDocument;
class QTextEdit;

/// Shows the text of a text box larger than its formats say: letters, margins, indents and tab
/// stops alike. The formats stay as they are, but for the side margins and first-line indents of
/// paragraphs: a document has these in the units of the device that it is laid out for, and
/// RtfUnits reckons so. Objects follow by RtfUnits::scale().
///
/// The box must outlive the magnifier, and keep its document.
class TextMagnifier
{
public:
    explicit TextMagnifier(QTextEdit &box);
    TextMagnifier(const TextMagnifier &) = delete;
    TextMagnifier &operator=(const TextMagnifier &) = delete;
    ~TextMagnifier();

    /// 1 and more; 1 shows the text as it is. What is really shown may be larger by up to one dot per inch.
    /// Text that is put in afterwards is shown so too. The document's undo history is lost if the factor is
    /// another one than before, but not whether it is modified.
    void setFactor(double factor);

private:
    class Device;

    QTextEdit &m_box;
    std::unique_ptr<Device> m_device;
};

/// While it lives, changes of the document are not laid out; afterwards all of it is, once.
class LayoutPause
{
public:
    explicit LayoutPause(QTextDocument &document);
    LayoutPause(const LayoutPause &) = delete;
    LayoutPause &operator=(const LayoutPause &) = delete;
    ~LayoutPause();

private:
    QTextDocument &m_document;
    const bool m_wasEnabled;
};

/// The size in points that most letters of \p document have, of two the smaller one; 0 without letters.
[[nodiscard]] double usualLetterSize(const QTextDocument &document);
