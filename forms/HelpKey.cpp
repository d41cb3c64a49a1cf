#include "forms/HelpKey.h"

#include "app/CommandGuard.h"
#include "platform/ClickSound.h"

#include <QShortcut>

void offerHelp(QWidget &window, HelpContext context)
{
    offerHelp(window, [&window, context] { showHelp(&window, context); });
}

void offerHelp(QWidget &window, const std::function<void()> &show)
{
    auto *key = new QShortcut(QKeySequence(Qt::Key_F1), &window);
    key->setAutoRepeat(false);
    QObject::connect(key, &QShortcut::activated, &window, guarded(&window, [show] {
                         playClick();
                         show();
                     }));
}
