#include "platform/ReadingPlace.h"

#include <QAccessibleWidget>

namespace {

QAccessibleInterface *accessOf(const QString &, QObject *object)
{
    auto *place = qobject_cast<ReadingPlace *>(object);
    return place != nullptr ? new QAccessibleWidget(place, QAccessible::StaticText) : nullptr;
}

} // namespace

ReadingPlace::ReadingPlace(QWidget *parent)
    : QWidget(parent)
{
    QAccessible::installFactory(accessOf);
    setFocusPolicy(Qt::StrongFocus);
}

void ReadingPlace::tell(const QString &text)
{
    if (text != accessibleName()) {
        setAccessibleName(text);
    }
}
