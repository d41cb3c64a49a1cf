#include "platform/rtf/RtfWriter.h"
#include "samples/SampleSource.h"
#include "store/Schema.h"
#include "store/Statements.h"
#include "store/SubjectStore.h"

#include <QFile>
#include <QFont>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

// Makes a sample subject from its source: makesamples SOURCE.xml SUBJECT.crl

namespace {

/// How the texts of one kind look where the source does not say it.
struct TextStyle
{
    int pointSize;
    Qt::Alignment alignment; ///< of paragraphs that do not say theirs
    qreal spaceAfter;        ///< below a paragraph, in pixels
};

constexpr TextStyle notesStyle{.pointSize = 10, .alignment = Qt::AlignLeft, .spaceAfter = 8};
/// A card is read from an arm's length.
constexpr TextStyle cardStyle{.pointSize = 20, .alignment = Qt::AlignHCenter, .spaceAfter = 0};

/// Line breaks between the elements of the source are left as blanks at the ends of paragraphs.
void trimParagraph(const QTextBlock &block)
{
    QTextCursor cursor(block);
    while (block.text().startsWith(QLatin1Char(' '))) {
        cursor.deleteChar();
    }
    cursor.movePosition(QTextCursor::EndOfBlock);
    while (block.text().endsWith(QLatin1Char(' '))) {
        cursor.deletePreviousChar();
    }
}

void setParagraphs(QTextDocument &document, const TextStyle &style)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        trimParagraph(block);
        QTextBlockFormat format = block.blockFormat();
        const bool insideList = block.textList() && block.next().textList();
        format.setTopMargin(0);
        format.setBottomMargin(insideList ? 0 : style.spaceAfter);
        if (!format.hasProperty(QTextFormat::BlockAlignment)) {
            format.setAlignment(style.alignment);
        }
        QTextCursor cursor(block);
        cursor.setBlockFormat(format);
        // A bullet is as large as its text.
        if (block.textList()) {
            cursor.setBlockCharFormat(block.begin().fragment().charFormat());
        }
    }
}

std::string rtf(const QString &html, const TextStyle &style)
{
    QTextDocument document;
    document.setDefaultFont(QFont(QStringLiteral("Comic Sans MS"), style.pointSize));
    document.setHtml(html);
    setParagraphs(document, style);
    return writeRtf(document);
}

void addCards(SubjectStore &store, int topic, const std::vector<SampleCard> &cards)
{
    CardSet set = store.openRecordSet(cardsOfTopic(topic));
    for (const SampleCard &card : cards) {
        set.addNew();
        set.setNumber(CardField::NIndex, topic);
        set.setText(CardField::Front, rtf(card.front, cardStyle));
        set.setText(CardField::Back, rtf(card.back, cardStyle));
        set.update();
    }
}

void addTopics(SubjectStore &store, const std::vector<SampleTopic> &topics)
{
    Transaction transaction(store);
    TopicSet set = store.openRecordSet(allTopics());
    for (const SampleTopic &topic : topics) {
        set.addNew();
        set.setText(TopicField::Name, topic.name.toStdString());
        set.setText(TopicField::Notes, rtf(topic.notes, notesStyle));
        set.update();
        set.setBookmark(set.lastModified());
        addCards(store, set.number(TopicField::Index), topic.cards);
    }
    transaction.commit();
}

/// A subject that is being made. It takes its place only when it is whole, and
/// disappears if it never is.
class UnfinishedSubject
{
public:
    explicit UnfinishedSubject(std::filesystem::path place)
        : m_place(std::move(place))
        , m_path(m_place)
    {
        m_path += ".part";
        SubjectStore::create(m_path);
    }
    UnfinishedSubject(const UnfinishedSubject &) = delete;
    UnfinishedSubject &operator=(const UnfinishedSubject &) = delete;
    ~UnfinishedSubject()
    {
        std::error_code ignored; // gone already once finished
        std::filesystem::remove(m_path, ignored);
    }

    [[nodiscard]] const std::filesystem::path &path() const { return m_path; }
    void finish() { std::filesystem::rename(m_path, m_place); }

private:
    std::filesystem::path m_place;
    std::filesystem::path m_path;
};

void makeSample(const QString &source, const QString &subject)
{
    const std::vector<SampleTopic> topics = readSampleSource(source);
    UnfinishedSubject unfinished(QFile::encodeName(subject).toStdString());
    {
        SubjectStore store(unfinished.path());
        addTopics(store, topics);
    }
    unfinished.finish();
}

} // namespace

int main(int argc, char **argv)
{
    // Text documents need fonts, but neither a screen nor a session.
    const QTemporaryDir session;
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(session.path()));
    qputenv("QT_QPA_PLATFORM", "minimal");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("usage: makesamples SOURCE.xml SUBJECT.crl\n", stderr);
        return 1;
    }
    try {
        makeSample(arguments.at(1), arguments.at(2));
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}
