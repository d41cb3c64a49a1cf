#include "platform/help/HelpPlugin.h"

#include "platform/help/HelpWindow.h"

namespace {

class BookViewer final : public HelpViewer
{
public:
    explicit BookViewer(const QString &book)
        : m_window(book)
    {
    }

    [[nodiscard]] QWidget *window() override { return &m_window; }
    void showTopic(int context, QWidget *asker) override { m_window.showTopic(context, asker); }

private:
    HelpWindow m_window;
};

} // namespace

std::unique_ptr<HelpViewer> HelpPlugin::open(const QString &book)
{
    return std::make_unique<BookViewer>(book);
}
