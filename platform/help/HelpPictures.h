#pragma once

#include <QHash>
#include <QObject>
#include <QPixmap>
#include <QTextObjectInterface>

#include <functional>

/// Draws the pictures of a text document no wider than its page, and as sharp
/// as the screen or printer can show them.
///
/// A picture has its natural size or the one that the text gives it, grows and
/// shrinks with the document's letters, and keeps its proportions when it must
/// shrink to fit.
class HelpPictures final : public QObject, public QTextObjectInterface
{
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)

public:
    /// The bytes of the picture that the text calls by this name.
    using Read = std::function<QByteArray(const QUrl &name)>;

    HelpPictures(Read read, QObject *parent);

    /// Forgets the pictures, which may have the same names on another page.
    void clear() { m_pictures.clear(); }

    QSizeF intrinsicSize(QTextDocument *document, int position, const QTextFormat &format) override;
    void drawObject(QPainter *painter, const QRectF &area, QTextDocument *document, int position,
                    const QTextFormat &format) override;

private:
    struct Picture
    {
        QByteArray bytes;
        QSize natural; ///< pixels; empty if it is no picture
        QPixmap drawn; ///< for the size that was drawn last
    };
    Picture &picture(const QTextFormat &format);

    Read m_read;
    QHash<QString, Picture> m_pictures; ///< by the name that the text gives
};
