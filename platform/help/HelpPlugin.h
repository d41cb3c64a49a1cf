#pragma once

#include "platform/help/HelpViewer.h"

#include <QObject>

/// What the program finds in the plugin's file.
class HelpPlugin final : public QObject, public HelpViewerFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "cramlet.HelpViewerFactory/1")
    Q_INTERFACES(HelpViewerFactory)

public:
    [[nodiscard]] std::unique_ptr<HelpViewer> open(const QString &book) override;
};
