#pragma once

#include "app/Module1.h"
#include "tests/support/TestSubject.h"
#include "tests/support/Windows.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <memory>

/// The opening of every window's test: fresh settings, and a subject with a
/// topic of 12 cards, one of 4 and one of none. No test leaves a window behind.
class WindowTest : public testing::Test
{
protected:
    void SetUp() override
    {
        QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)).removeRecursively();
        module = std::make_unique<Module1>();
        SubjectStore::create(file);
        large = addTopic(file, "Large");
        addCards(file, large, 12);
        small = addTopic(file, "Small & tidy");
        addCards(file, small, 4);
        empty = addTopic(file, "Empty");
        module->subject = subjectAt(QString::fromStdString(file.string()));
    }

    void TearDown() override
    {
        settle();
        for (const QWidget *left : QApplication::topLevelWidgets()) {
            EXPECT_FALSE(left->isVisible()) << "a test left a window behind: " << left->objectName().toStdString();
        }
    }

    [[nodiscard]] QString setting(const char *section, const char *key) const
    {
        return SettingsStore().text(QString::fromLatin1(section), QString::fromLatin1(key));
    }

    /// From now on no setting can be written: a file stands where the settings' folder should be.
    static void blockSettings()
    {
        const QDir config(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
        QDir(config.filePath(QStringLiteral("Cramlet"))).removeRecursively();
        ASSERT_TRUE(config.mkpath(QStringLiteral(".")));
        QFile inTheWay(config.filePath(QStringLiteral("Cramlet")));
        ASSERT_TRUE(inTheWay.open(QFile::WriteOnly));
    }

    TestFolder folder;
    std::filesystem::path file = folder.file("World History.crl");
    int large = 0;
    int small = 0;
    int empty = 0;
    std::unique_ptr<Module1> module;
};
