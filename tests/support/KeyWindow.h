#pragma once

#include <QKeyEvent>
#include <QVector>
#include <QWidget>

/// A window that keeps the keys that its controls let through.
class KeyWindow : public QWidget
{
public:
    QVector<int> keys;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() != Qt::Key_Alt) {
            keys.append(event->key());
        }
    }
};
