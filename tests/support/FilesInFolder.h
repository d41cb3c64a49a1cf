#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// A test that makes files in a folder of its own.
class FilesInFolder : public testing::Test
{
protected:
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

    QString make(const QString &name, const QByteArray &contents)
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        EXPECT_EQ(file.write(contents), contents.size());
        return path(name);
    }

    /// A file of \p size bytes that takes no room.
    QString makeLarge(const QString &name, qint64 size)
    {
        QFile file(make(name, "x"));
        EXPECT_TRUE(file.resize(size));
        return file.fileName();
    }

    QTemporaryDir m_folder;
};
