#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

// The help book as it was written, as plain values.

struct Picture
{
    QString file;
    QString words; ///< what it shows, for those who do not see it
    int width = 0; ///< pixels; 0 if none is given
};

/// One row of a table.
struct Row
{
    QString section; ///< name of the section it stands in
    QStringList cells;
};

struct Page
{
    QString error; ///< why it cannot be read; empty if it can
    QString title;
    QStringList headings;
    QStringList names; ///< of its sections
    QStringList links;
    QList<Picture> pictures;
    QList<Row> rows;
    QStringList messages; ///< the program's, with "%1" for each part that varies
    QStringList elements;
    QStringList attributes;
};

/// An entry of the contents or of the index.
struct Entry
{
    QString name;
    QString id; ///< by which the program asks for it; mostly none
    QString target;
};

struct Project
{
    QString error;
    QString nameSpace;
    QList<Entry> contents;
    QList<Entry> index;
    QStringList files;
};

[[nodiscard]] QString textOfFile(const QString &path);
[[nodiscard]] Page readPage(const QString &path);
[[nodiscard]] Project readProject(const QString &path);

/// All pages in \p folder, by file name.
[[nodiscard]] QHash<QString, Page> readPages(const QString &folder);

/// \p text in one line, "%1" for each place that is filled in.
[[nodiscard]] QString asOneLine(QString text);

/// Every string of the C++ sources below \p folder, in one line each.
[[nodiscard]] QStringList stringsOfSources(const QString &folder);
