#pragma once

#include <QString>
#include <QtPlugin>

#include <memory>
#include <stdexcept>

class QWidget;

/// The help cannot be shown. The text names the file that is at fault and says what to do.
class HelpUnavailable : public std::runtime_error
{
public:
    explicit HelpUnavailable(const QString &text)
        : std::runtime_error(text.toStdString())
    {
    }
};

/// An open help book and the one window that shows it.
class HelpViewer
{
public:
    virtual ~HelpViewer() = default;

    /// The window, owned by this, without a parent. It is hidden when it closes, and never keeps
    /// the program running. Its property "helpContext" is the number of the topic last asked for.
    [[nodiscard]] virtual QWidget *window() = 0;

    /// Shows the topic with this context number, before the other windows and with the keys.
    /// The help stays usable beside the program's modal windows. When it closes, the keys go to
    /// the modal window on top, or else to the window of \p asker, which may be null or gone by then.
    ///
    /// Throws HelpUnavailable if the book has no such topic.
    virtual void showTopic(int context, QWidget *asker) = 0;
};

/// What the help's plugin offers: the program itself knows neither the book's format nor printing,
/// which would cost every start, and loads them when the learner first asks for help.
class HelpViewerFactory
{
public:
    virtual ~HelpViewerFactory() = default;

    /// Opens the book in the file \p book. Throws HelpUnavailable if it is missing or damaged.
    [[nodiscard]] virtual std::unique_ptr<HelpViewer> open(const QString &book) = 0;
};

Q_DECLARE_INTERFACE(HelpViewerFactory, "cramlet.HelpViewerFactory/1")
