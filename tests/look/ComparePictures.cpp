#include "tests/look/PictureComparison.h"
#include "tests/look/PictureFolder.h"

#include <QDir>

#include <cstdio>

// comparepictures APPROVED NEW DIFFERENCES
//
// Compares the pictures of two folders. Says which are missing, too many or
// different, and leaves those side by side in DIFFERENCES. Exit code 1 if there
// is one, or if there are no pictures at all.

namespace {

class Comparison
{
public:
    Comparison(QString approved, QString taken, QString differences)
        : m_approved(std::move(approved))
        , m_taken(std::move(taken))
        , m_differences(std::move(differences))
    {
    }

    /// Returns how many pictures are not as approved.
    int run()
    {
        QDir(m_differences).removeRecursively();
        const QStringList approved = picturesIn(m_approved);
        const QStringList taken = picturesIn(m_taken);
        for (const QString &name : approved) {
            if (taken.contains(name)) {
                look(name);
            } else {
                tell(name, "is missing");
            }
        }
        for (const QString &name : taken) {
            if (!approved.contains(name)) {
                tell(name, "is new");
            }
        }
        std::printf("%lld pictures of %s: %d not as approved\n", static_cast<long long>(approved.size()),
                    qPrintable(m_approved), m_failures);
        return approved.isEmpty() ? 1 : m_failures;
    }

private:
    void look(const QString &name)
    {
        const QImage approved(m_approved + QLatin1Char('/') + name);
        const QImage taken(m_taken + QLatin1Char('/') + name);
        if (approved.isNull() || taken.isNull()) {
            tell(name, "cannot be read");
            return;
        }
        const PictureDifference difference = compare(approved, taken);
        if (difference.isTolerable()) {
            return;
        }
        const QString sheet = placeFor(m_differences, name);
        const bool isSaved = sideBySide(approved, taken).save(sheet);
        if (difference.hasOtherSize) {
            const QString sizes = QStringLiteral("is %1 x %2, approved is %3 x %4");
            tell(name,
                 qPrintable(sizes.arg(taken.width()).arg(taken.height()).arg(approved.width()).arg(approved.height())));
        } else {
            const QString figures = QStringLiteral("has %1 different pixels (%2 %), up to %3 in a square of %4");
            tell(name, qPrintable(figures.arg(difference.pixels)
                                      .arg(difference.share * 100, 0, 'f', 3)
                                      .arg(difference.inWorstSquare)
                                      .arg(Tolerance::squareEdge * Tolerance::squareEdge)));
        }
        std::printf("    approved | new | difference: %s\n", isSaved ? qPrintable(sheet) : "cannot be written");
    }

    void tell(const QString &name, const char *what)
    {
        ++m_failures;
        std::printf("%s %s\n", qPrintable(name), what);
    }

    QString m_approved;
    QString m_taken;
    QString m_differences;
    int m_failures = 0;
};

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: comparepictures APPROVED NEW DIFFERENCES\n");
        return 2;
    }
    Comparison comparison(QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[2]),
                          QString::fromLocal8Bit(argv[3]));
    return comparison.run() == 0 ? 0 : 1;
}
