#pragma once

#include "app/Help.h"

#include <functional>

class QWidget;

/// Makes F1 show the help's topic \p context in \p window, whatever there has the focus.
void offerHelp(QWidget &window, HelpContext context);

/// The same for a window whose topic changes: \p show shows the one of the moment.
void offerHelp(QWidget &window, const std::function<void()> &show);
