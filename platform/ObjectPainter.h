#pragma once

#include <QCache>
#include <QImage>
#include <QObject>
#include <QTextObjectInterface>

class QTextEdit;

/// Draws the pictures and objects (RtfObject.h) of a text box's document: a
/// picture in the size that it has in the text, or smaller if the box is
/// narrower; what cannot be drawn as a frame of that size with a caption in it.
///
/// Pictures are decoded when they are first painted, for the screen's device
/// pixels, and kept within a budget of memory.
class ObjectPainter : public QObject, public QTextObjectInterface
{
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)

public:
    /// Bytes.
    static constexpr qsizetype budget = qsizetype{64} << 20;

    /// Registers itself with the document of \p box, which owns the painter.
    explicit ObjectPainter(QTextEdit &box);

    QSizeF intrinsicSize(QTextDocument *document, int position, const QTextFormat &format) override;
    void drawObject(QPainter *painter, const QRectF &rect, QTextDocument *document, int position,
                    const QTextFormat &format) override;

    /// Bytes that are kept for the next painting, at most budget.
    [[nodiscard]] qsizetype bytesKept() const { return m_kept.totalCost(); }

private:
    /// Which object, and how large in device pixels.
    struct Key
    {
        QByteArray source;
        int hash; ///< of the source
        QSize pixels;

        bool operator==(const Key &other) const;
        friend std::size_t qHash(const Key &key, std::size_t seed)
        {
            return qHashMulti(seed, key.hash, key.pixels.width(), key.pixels.height());
        }
    };
    /// What is painted: a picture, or if it is null a frame with words.
    struct Look
    {
        QImage picture;
        QString title;
        QString kind; ///< a second line under the title; may be empty
    };

    [[nodiscard]] static Look lookOf(const QByteArray &source, QSize pixels);
    void drawFrame(QPainter &painter, const QRectF &rect, const Look &look) const;

    QTextEdit &m_box;
    QCache<Key, Look> m_kept{budget};
};
