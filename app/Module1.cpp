#include "app/Module1.h"

#include "app/CommandGuard.h"
#include "platform/NotebookPage.h"
#include "platform/PaperPalette.h"

namespace {

constexpr int white = 0xffffff;

} // namespace

QString asCaption(QString text)
{
    return text.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
}

QString subjectCaption(const Subject &subject)
{
    return asCaption(QStringLiteral("Cramlet: ") + subject.name);
}

void applyBackground(NotebookPage &page, const SettingsStore &settings)
{
    runGuarded(&page, [&] {
        const double number = settings.number(QStringLiteral("Settings"), QStringLiteral("Color"), white);
        page.setPaperColor(colorOfNumber(static_cast<int>(qBound(0.0, number, double(white)))));
    });
}
