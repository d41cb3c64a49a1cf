#include <QCoreApplication>
#include <QEvent>
#include <QGenericPlugin>
#include <QTimer>
#include <QWidget>

#include <unistd.h>

namespace {

/// Ends the program once its first window is painted and what came with it is done.
class FirstPaint final : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *widget = qobject_cast<QWidget *>(watched);
        if (event->type() == QEvent::Paint && widget != nullptr && widget->isWindow()) {
            QCoreApplication::instance()->removeEventFilter(this);
            QTimer::singleShot(0, this, [] { _exit(0); }); // after the paint, and without the work of leaving
        }
        return false;
    }
};

class FirstPaintPlugin final : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "firstpaint.json")

public:
    QObject *create(const QString & /*name*/, const QString & /*specification*/) override
    {
        auto *watcher = new FirstPaint;
        QCoreApplication::instance()->installEventFilter(watcher);
        return watcher;
    }
};

} // namespace

#include "FirstPaintPlugin.moc"
