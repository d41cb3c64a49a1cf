#pragma once

#include "platform/rtf/RtfReader.h"
#include "store/Schema.h"
#include "store/Statements.h"
#include "store/SubjectStore.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

// What the tests of the samples share: the generator as a process, and subjects read as plain values.

struct Card
{
    std::string front;
    std::string back;
};

struct Topic
{
    std::string name;
    std::string notes;
    std::vector<Card> cards;
};

struct Outcome
{
    int exitCode;
    QString complaint;
};

inline Outcome makeSample(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(MAKESAMPLES), arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit) {
        return {.exitCode = -1, .complaint = process.errorString()};
    }
    return {.exitCode = process.exitCode(), .complaint = QString::fromUtf8(process.readAllStandardError())};
}

inline std::filesystem::path nativePath(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

inline std::vector<Card> readCards(SubjectStore &store, int topic)
{
    std::vector<Card> cards;
    CardSet set = store.openRecordSet(cardsOfTopic(topic));
    for (; !set.isEndOfSet(); set.moveNext()) {
        cards.push_back({.front = set.text(CardField::Front), .back = set.text(CardField::Back)});
    }
    return cards;
}

inline std::vector<Topic> readSubject(const QString &path)
{
    SubjectStore store(nativePath(path));
    std::vector<Topic> topics;
    TopicSet set = store.openRecordSet(allTopics());
    for (; !set.isEndOfSet(); set.moveNext()) {
        topics.push_back({.name = set.text(TopicField::Name),
                          .notes = set.text(TopicField::Notes),
                          .cards = readCards(store, set.number(TopicField::Index))});
    }
    return topics;
}

/// The text as the program would show it.
inline std::unique_ptr<QTextDocument> shown(const std::string &rtf)
{
    auto document = std::make_unique<QTextDocument>();
    document->setDefaultFont(QFont(QStringLiteral("Sans Serif"), 7)); // unlike anything that the samples use
    EXPECT_FALSE(readRtf(rtf, *document).has_value()) << rtf;
    return document;
}

inline QString plainText(const std::string &rtf)
{
    return shown(rtf)->toPlainText();
}

inline int countFragments(const QTextDocument &document, const std::function<bool(const QTextCharFormat &)> &matches)
{
    int count = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment) {
            if (matches(fragment.fragment().charFormat())) {
                ++count;
            }
        }
    }
    return count;
}

inline bool isColored(const QTextCharFormat &format)
{
    return format.foreground().style() != Qt::NoBrush;
}

inline bool isBold(const QTextCharFormat &format)
{
    return format.fontWeight() > QFont::Normal;
}

inline int countBullets(const QTextDocument &document)
{
    int count = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.textList() && block.textList()->format().style() == QTextListFormat::ListDisc) {
            ++count;
        }
    }
    return count;
}

inline void forEachText(const std::vector<Topic> &topics, const std::function<void(const std::string &)> &visit)
{
    for (const Topic &topic : topics) {
        visit(topic.notes);
        for (const Card &card : topic.cards) {
            visit(card.front);
            visit(card.back);
        }
    }
}

/// A sample made from its source for this test, so that studying the one in the
/// build tree spoils nothing.
class FreshSample
{
public:
    explicit FreshSample(const std::string &name)
        : m_path(m_folder.filePath(QString::fromStdString(name + ".crl")))
    {
        const QString source = QString::fromStdString(SAMPLE_SOURCES "/" + name + ".xml");
        const Outcome outcome = makeSample({source, m_path});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.complaint.toStdString();
    }

    [[nodiscard]] std::vector<Topic> topics() const { return readSubject(m_path); }
    [[nodiscard]] QByteArray bytes() const
    {
        QFile file(m_path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

private:
    QTemporaryDir m_folder;
    QString m_path;
};
