#include <QApplication>
#include <QLocale>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// The main of every test that needs an application object: no screen, no
/// sound, a fixed locale, and a home of its own for settings and data.
int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS(); // asked while building: no application object for a list of names
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("CANBERRA_DRIVER", "null");
    const QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral("config")).toUtf8());
    qputenv("XDG_DATA_HOME", home.filePath(QStringLiteral("data")).toUtf8());
    QLocale::setDefault(QLocale::c());

    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
