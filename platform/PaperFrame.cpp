#include "platform/PaperFrame.h"

#include "platform/DevicePixels.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QPainter>

namespace {

class FramePainter : public QObject
{
public:
    explicit FramePainter(QAbstractScrollArea &box)
        : QObject(&box)
    {
        box.installEventFilter(this);
    }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *box = qobject_cast<QAbstractScrollArea *>(object);
        if (event->type() != QEvent::Paint || box == nullptr) {
            return false;
        }

        QPainter painter(box);
        const double line = box->frameShape() == QFrame::NoFrame ? 0 : hairline(painter);
        const QRectF frame = onDevicePixels(painter, box->rect());
        painter.fillRect(frame, box->palette().color(QPalette::Dark));
        painter.fillRect(frame.adjusted(line, line, -line, -line), box->palette().color(QPalette::Base));
        return true;
    }
};

} // namespace

void givePaperFrame(QAbstractScrollArea &box)
{
    box.setFrameStyle(static_cast<int>(QFrame::Box) | static_cast<int>(QFrame::Plain));
    box.setLineWidth(2); // keeps the contents off the line, however they are rounded
    new FramePainter(box);
}
