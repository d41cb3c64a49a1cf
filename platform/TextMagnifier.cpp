#include "platform/TextMagnifier.h"

#include <QAbstractTextDocumentLayout>
#include <QPaintDevice>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QtMath>

#include <algorithm>
#include <map>

namespace {

/// A factor of 1.5 is 144 dots per inch, and not one more because of the last bit.
constexpr double tolerance = 1e-6;

/// Margins and indents that a layout takes as they are. It scales all others to its device.
constexpr int unscaledLengths[] = {QTextFormat::BlockLeftMargin, QTextFormat::BlockRightMargin,
                                   QTextFormat::TextIndent};

void scaleLengths(QTextDocument &document, double ratio)
{
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextBlockFormat format = block.blockFormat();
        QTextBlockFormat scaled;
        for (const int length : unscaledLengths) {
            if (format.hasProperty(length)) {
                scaled.setProperty(length, format.doubleProperty(length) * ratio);
            }
        }
        if (scaled.propertyCount() > 0) {
            cursor.setPosition(block.position());
            cursor.mergeBlockFormat(scaled);
        }
    }
    cursor.endEditBlock();
}

bool isLetter(QChar c)
{
    return !c.isSpace() && !c.isLowSurrogate() && c != QChar::ObjectReplacementCharacter;
}

} // namespace

/// The box's viewport, but with more dots per inch.
class TextMagnifier::Device final : public QPaintDevice
{
public:
    explicit Device(const QWidget &viewport)
        : m_viewport(viewport)
    {
    }

    void setFactor(double factor) { m_factor = factor; }
    [[nodiscard]] QPaintEngine *paintEngine() const override { return nullptr; }

protected:
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmDpiX: return magnified(m_viewport.logicalDpiX());
        case PdmDpiY: return magnified(m_viewport.logicalDpiY());
        case PdmWidth: return m_viewport.width();
        case PdmHeight: return m_viewport.height();
        case PdmWidthMM: return m_viewport.widthMM();
        case PdmHeightMM: return m_viewport.heightMM();
        case PdmPhysicalDpiX: return m_viewport.physicalDpiX();
        case PdmPhysicalDpiY: return m_viewport.physicalDpiY();
        case PdmNumColors: return m_viewport.colorCount();
        case PdmDepth: return m_viewport.depth();
        case PdmDevicePixelRatio: return static_cast<int>(m_viewport.devicePixelRatio());
        case PdmDevicePixelRatioScaled: return qRound(m_viewport.devicePixelRatio() * devicePixelRatioFScale());
        }
        return 0;
    }

private:
    [[nodiscard]] int magnified(int dotsPerInch) const { return qCeil(dotsPerInch * m_factor - tolerance); }

    const QWidget &m_viewport;
    double m_factor = 1;
};

TextMagnifier::TextMagnifier(QTextEdit &box)
    : m_box(box)
    , m_device(std::make_unique<Device>(*box.viewport()))
{
}

TextMagnifier::~TextMagnifier()
{
    m_box.document()->documentLayout()->setPaintDevice(m_box.viewport());
}

void TextMagnifier::setFactor(double factor)
{
    const int before = m_device->logicalDpiY();
    m_device->setFactor(std::max(1.0, factor));
    const int after = m_device->logicalDpiY();
    if (after == before) {
        return;
    }
    QTextDocument &document = *m_box.document();
    const LayoutPause pause(document);
    document.documentLayout()->setPaintDevice(factor > 1 ? m_device.get()
                                                         : static_cast<QPaintDevice *>(m_box.viewport()));
    const bool wasModified = document.isModified();
    const bool hadUndo = document.isUndoRedoEnabled();
    document.setUndoRedoEnabled(false);
    scaleLengths(document, static_cast<double>(after) / before);
    document.setUndoRedoEnabled(hadUndo);
    document.setModified(wasModified);
}

LayoutPause::LayoutPause(QTextDocument &document)
    : m_document(document)
    , m_wasEnabled(document.isLayoutEnabled())
{
    // A layout that is not yet at its end would go on, with other contents, when it is asked for something.
    static_cast<void>(document.documentLayout()->documentSize());
    document.setLayoutEnabled(false);
}

LayoutPause::~LayoutPause()
{
    m_document.setLayoutEnabled(m_wasEnabled);
}

double usualLetterSize(const QTextDocument &document)
{
    std::map<double, qsizetype> lettersOfSize;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto run = block.begin(); !run.atEnd(); ++run) {
            const QTextCharFormat format = run.fragment().charFormat();
            const QString text = run.fragment().text();
            const double own = format.fontPointSize();
            lettersOfSize[own > 0 ? own : document.defaultFont().pointSizeF()] +=
                std::count_if(text.begin(), text.end(), isLetter);
        }
    }
    const auto most = std::max_element(lettersOfSize.begin(), lettersOfSize.end(),
                                       [](const auto &one, const auto &other) { return one.second < other.second; });
    return most != lettersOfSize.end() && most->second > 0 ? most->first : 0;
}
