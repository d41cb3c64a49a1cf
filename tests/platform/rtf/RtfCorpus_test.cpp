#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfWriter.h"
#include "tests/platform/rtf/RtfDocuments.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <ctime>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>

// RTF files of many programs, with what they say, when a folder of such files is
// there: CRAMLET_RTF_CORPUS names it, or it lies beside the checkout. It is no
// part of the project. Its manifest.tsv has a line for each file.

namespace {

enum class Expectation { None, Exact, Squeezed, WithoutBlanks, Lines };

struct CorpusFile
{
    QString name;
    QByteArray rtf;
    Expectation expectation = Expectation::None;
    bool isNative = false;    ///< expected by the control that wrote such files
    bool showsMarkup = false; ///< bars between cells, addresses behind links
    QString expected;
};

QString corpusFolder()
{
    const QByteArray named = qgetenv("CRAMLET_RTF_CORPUS");
    return QString::fromLocal8Bit(named.isEmpty() ? QByteArray(RTF_CORPUS) : named);
}

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

Expectation expectationOf(const QString &kind)
{
    const auto begins = [&kind](const char *text) { return kind.startsWith(QLatin1String(text)); };
    if (begins("native") || begins("own")) {
        return Expectation::Exact;
    }
    if (begins("contains")) {
        return Expectation::Lines;
    }
    if (kind.contains(QLatin1String("without white space"))) {
        return Expectation::WithoutBlanks;
    }
    return begins("-") ? Expectation::None : Expectation::Squeezed;
}

std::vector<CorpusFile> loadCorpus()
{
    std::vector<CorpusFile> files;
    const QDir folder(corpusFolder());
    if (corpusFolder().isEmpty() || !folder.exists(QStringLiteral("manifest.tsv"))) {
        return files;
    }
    const QStringList lines = QString::fromUtf8(contentsOf(folder.filePath(QStringLiteral("manifest.tsv"))))
                                  .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const QStringList head = lines.first().split(QLatin1Char('\t'));
    const auto column = [&head](const char *name) { return head.indexOf(QLatin1String(name)); };
    for (const QString &line : lines.mid(1)) {
        const QStringList cells = line.split(QLatin1Char('\t'));
        const QString &kind = cells.at(column("expected_kind"));
        CorpusFile file;
        file.name = cells.at(column("file"));
        file.rtf = contentsOf(folder.filePath(file.name));
        file.expectation = expectationOf(kind);
        file.isNative = kind.startsWith(QLatin1String("native"));
        file.showsMarkup = kind.contains(QLatin1String("between cells"));
        if (file.expectation != Expectation::None) {
            const QString path = QFileInfo(folder.filePath(file.name)).path() + QLatin1Char('/');
            file.expected = QString::fromUtf8(contentsOf(path + cells.at(column("expected"))));
        }
        files.push_back(file);
    }
    return files;
}

std::string_view bytesOf(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

/// The text of \p document, behind each link its address.
QString textWithAddresses(const QTextDocument &document)
{
    QString text;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        QString address;
        const auto endLink = [&] { text += address.isEmpty() ? QString() : QStringLiteral("(\"%1\")").arg(address); };
        for (auto run = block.begin(); !run.atEnd(); ++run) {
            const QString next = run.fragment().charFormat().anchorHref();
            if (next != address) {
                endLink();
                address = next;
            }
            text += run.fragment().text();
        }
        endLink();
        text += QLatin1Char('\n');
    }
    return text;
}

QString withoutInvisible(QString text)
{
    static const QRegularExpression invisible(QStringLiteral(
        "[\\x{00ad}\\x{061c}\\x{200b}-\\x{200f}\\x{202a}-\\x{202e}\\x{2060}-\\x{2069}\\x{feff}\\x{fffc}]"));
    return text.remove(invisible);
}

QString squeezed(const QString &text)
{
    return withoutInvisible(text).simplified();
}

QString withoutBlanks(const QString &text)
{
    return squeezed(text).remove(QLatin1Char(' '));
}

QString withoutBars(QString text)
{
    return text.replace(QLatin1Char('|'), QLatin1Char(' '));
}

QString withPlainBreaks(QString text)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QChar::LineSeparator, QLatin1Char('\n'));
    text.replace(QLatin1Char('\v'), QLatin1Char('\n'));
    return text;
}

/// Whether \p document says what is expected of \p file.
bool agrees(const CorpusFile &file, const QTextDocument &document)
{
    const QString text = textOf(document);
    switch (file.expectation) {
    case Expectation::None: return true;
    case Expectation::Exact: return withPlainBreaks(text) == withPlainBreaks(file.expected);
    case Expectation::Squeezed:
        if (file.showsMarkup) { // the addresses of some links, of others not
            const QString expected = squeezed(withoutBars(file.expected));
            return squeezed(withoutBars(text)) == expected ||
                   squeezed(withoutBars(textWithAddresses(document))) == expected;
        }
        return squeezed(text) == squeezed(file.expected);
    case Expectation::WithoutBlanks: return withoutBlanks(text) == withoutBlanks(file.expected);
    case Expectation::Lines:
        for (const QString &line : file.expected.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            if (!squeezed(text).contains(squeezed(line))) {
                return false;
            }
        }
        return true;
    }
    return false;
}

class RtfCorpus : public testing::Test
{
protected:
    void SetUp() override
    {
        m_files = loadCorpus();
        if (m_files.empty()) {
            GTEST_SKIP() << "no corpus of RTF files here: name its folder in CRAMLET_RTF_CORPUS";
        }
    }

    /// Reads the files that \p isOne chooses; counts them and those that agree.
    void compare(const std::function<bool(const CorpusFile &)> &isOne)
    {
        for (const CorpusFile &file : m_files) {
            if (!isOne(file)) {
                continue;
            }
            ++m_compared;
            if (agrees(file, *documentOf(bytesOf(file.rtf)))) {
                ++m_agreeing;
            } else {
                std::cout << "differs: " << file.name.toStdString() << '\n';
            }
        }
        std::cout << m_agreeing << " of " << m_compared << " say what is expected\n";
    }

    std::vector<CorpusFile> m_files;
    int m_compared = 0;
    int m_agreeing = 0;
};

TEST_F(RtfCorpus, EveryFileIsReadWithinTwoSeconds)
{
    double longest = 0;
    for (const CorpusFile &file : m_files) {
        const std::clock_t before = std::clock(); // of the processor: what else the machine does is no matter
        documentOf(bytesOf(file.rtf));
        const double seconds = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
        EXPECT_LT(seconds, 2) << file.name.toStdString();
        longest = std::max(longest, seconds);
    }
    std::cout << m_files.size() << " files read, the slowest in " << longest << " s\n";
}

TEST_F(RtfCorpus, WhatWasWrittenOnceIsWrittenSoForEver)
{
    for (const CorpusFile &file : m_files) {
        const auto first = documentOf(bytesOf(file.rtf));
        const std::string written = writeRtf(*first);
        const auto second = documentOf(written);
        EXPECT_EQ(textOf(*second), textOf(*first)) << file.name.toStdString();
        EXPECT_TRUE(writeRtf(*second) == written) << file.name.toStdString();
        EXPECT_TRUE(std::ranges::all_of(written, [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
            << file.name.toStdString();
    }
    std::cout << m_files.size() << " files read, written, read and written\n";
}

TEST_F(RtfCorpus, WhatTheControlItselfSaysIsSaidToTheLetter)
{
    compare([](const CorpusFile &file) { return file.isNative; });
    EXPECT_EQ(m_agreeing, m_compared);
}

TEST_F(RtfCorpus, WholeTextsAreRead)
{
    compare([](const CorpusFile &file) {
        return file.expectation != Expectation::None && file.expectation != Expectation::Lines;
    });
    EXPECT_GE(m_agreeing * 102, m_compared * 97);
}

TEST_F(RtfCorpus, TheLinesThatMustBeThereAre)
{
    compare([](const CorpusFile &file) { return file.expectation == Expectation::Lines; });
    // One file wants the header and the footer of its pages among its text.
    EXPECT_GE(m_agreeing, m_compared - 1);
}

} // namespace
