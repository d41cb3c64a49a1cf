#include "samples/SampleSource.h"

#include "store/Schema.h"

#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>

namespace {

/// An element of the texts, the one attribute that it may have, and what that may say.
struct TextElement
{
    const char *name;
    const char *attribute; ///< null: none
    const char *values;    ///< a regular expression
};

constexpr auto textElements = std::to_array<TextElement>({
    {"b", nullptr, nullptr},
    {"i", nullptr, nullptr},
    {"li", nullptr, nullptr},
    {"p", "align", "left|center|right"},
    {"span", "style", R"((\s*(color\s*:\s*#[0-9a-f]{6}|font-size\s*:\s*[1-9][0-9]?pt)\s*(;|$))+\s*)"},
    {"u", nullptr, nullptr},
    {"ul", nullptr, nullptr},
});

class SourceReader
{
public:
    SourceReader(const QString &path, QIODevice &device)
        : m_path(path)
        , m_xml(&device)
    {
    }

    std::vector<SampleTopic> readSubject()
    {
        if (!nextChild() || m_xml.name() != QLatin1String("subject")) {
            fail(QStringLiteral("the source is no subject"));
        }
        refuseAttributes();
        std::vector<SampleTopic> topics;
        while (nextChild()) {
            expect(QLatin1String("topic"));
            topics.push_back(readTopic());
        }
        if (topics.empty()) {
            fail(QStringLiteral("the subject has no topics"));
        }
        // What follows the root is read too: it may be malformed.
        if (nextChild()) {
            failUnknownElement();
        }
        return topics;
    }

private:
    SampleTopic readTopic()
    {
        SampleTopic topic{.name = readTopicName(), .notes = {}, .cards = {}};
        const qint64 line = m_xml.lineNumber();
        while (nextChild()) {
            if (m_xml.name() == QLatin1String("notes")) {
                readTextOnce(topic.notes);
            } else {
                expect(QLatin1String("card"));
                topic.cards.push_back(readCard());
            }
        }
        if (topic.notes.isEmpty()) {
            fail(QStringLiteral("the topic '%1' has no notes").arg(topic.name), line);
        }
        if (topic.cards.empty()) {
            fail(QStringLiteral("the topic '%1' has no cards").arg(topic.name), line);
        }
        return topic;
    }

    QString readTopicName()
    {
        const QXmlStreamAttributes attributes = m_xml.attributes();
        QString name = attributes.value(QLatin1String("name")).toString();
        if (attributes.size() != 1 || name.trimmed().isEmpty()) {
            fail(QStringLiteral("a topic has a name, and no other attribute"));
        }
        if (name.toUcs4().size() > maxTopicNameLength) {
            fail(QStringLiteral("the topic's name is longer than %1 characters").arg(maxTopicNameLength));
        }
        return name;
    }

    SampleCard readCard()
    {
        refuseAttributes();
        const qint64 line = m_xml.lineNumber();
        SampleCard card;
        while (nextChild()) {
            if (m_xml.name() == QLatin1String("front")) {
                readTextOnce(card.front);
            } else {
                expect(QLatin1String("back"));
                readTextOnce(card.back);
            }
        }
        if (card.front.isEmpty()) {
            fail(QStringLiteral("the card has no front"), line);
        }
        if (card.back.isEmpty()) {
            fail(QStringLiteral("the card has no back"), line);
        }
        return card;
    }

    void readTextOnce(QString &text)
    {
        refuseAttributes();
        const QString name = m_xml.name().toString();
        const qint64 line = m_xml.lineNumber();
        if (!text.isEmpty()) {
            fail(QStringLiteral("a second <%1>").arg(name));
        }
        if (!readText(text)) {
            fail(QStringLiteral("<%1> is empty").arg(name), line);
        }
    }

    /// Appends the contents of the current element to \p html. Returns whether they say anything.
    bool readText(QString &html)
    {
        bool saysAnything = false;
        while (m_xml.readNext() != QXmlStreamReader::EndElement) {
            refuseMalformed();
            if (m_xml.isStartElement()) {
                const QString name = m_xml.name().toString();
                html += openingTag();
                if (readText(html)) {
                    saysAnything = true;
                }
                html += QStringLiteral("</%1>").arg(name);
            } else if (m_xml.isCharacters()) {
                html += m_xml.text().toString().toHtmlEscaped();
                if (!m_xml.text().trimmed().isEmpty()) {
                    saysAnything = true;
                }
            }
        }
        return saysAnything;
    }

    /// The tag of the current element, which must be one that the texts may use.
    QString openingTag()
    {
        const QStringView name = m_xml.name();
        const auto element = std::ranges::find_if(
            textElements, [name](const TextElement &known) { return name == QLatin1String(known.name); });
        if (element == textElements.end()) {
            failUnknownElement();
        }
        QString tag = QLatin1Char('<') + name.toString();
        for (const QXmlStreamAttribute &attribute : m_xml.attributes()) {
            if (!element->attribute || attribute.name() != QLatin1String(element->attribute)) {
                failUnknownAttribute(attribute);
            }
            const QRegularExpression values(QRegularExpression::anchoredPattern(QLatin1String(element->values)));
            if (!values.match(attribute.value().toString()).hasMatch()) {
                fail(QStringLiteral("%1=\"%2\" is not understood").arg(attribute.name(), attribute.value()));
            }
            tag += QStringLiteral(" %1=\"%2\"").arg(attribute.name(), attribute.value());
        }
        return tag + QLatin1Char('>');
    }

    /// Goes to the next child of the current element; false at its end, or at the end of the source.
    bool nextChild()
    {
        for (;;) {
            m_xml.readNext();
            refuseMalformed();
            if (m_xml.isStartElement()) {
                return true;
            }
            if (m_xml.isEndElement() || m_xml.isEndDocument()) {
                return false;
            }
            if (m_xml.isCharacters() && !m_xml.isWhitespace()) {
                fail(QStringLiteral("text stands where only elements may"));
            }
        }
    }

    void refuseMalformed()
    {
        if (m_xml.hasError()) {
            fail(m_xml.errorString());
        }
        if (m_xml.isDTD()) {
            fail(QStringLiteral("a document type is not understood"));
        }
    }

    void refuseAttributes()
    {
        if (!m_xml.attributes().isEmpty()) {
            failUnknownAttribute(m_xml.attributes().first());
        }
    }

    void expect(QLatin1String name)
    {
        if (m_xml.name() != name) {
            failUnknownElement();
        }
    }

    [[noreturn]] void failUnknownElement() { fail(QStringLiteral("<%1> is not understood here").arg(m_xml.name())); }

    [[noreturn]] void failUnknownAttribute(const QXmlStreamAttribute &attribute)
    {
        fail(QStringLiteral("the attribute %1 is not understood here").arg(attribute.name()));
    }

    [[noreturn]] void fail(const QString &reason) { fail(reason, m_xml.lineNumber()); }

    [[noreturn]] void fail(const QString &reason, qint64 line)
    {
        throw SampleError(QStringLiteral("%1:%2: %3").arg(m_path).arg(line).arg(reason).toStdString());
    }

    QString m_path;
    QXmlStreamReader m_xml;
};

} // namespace

std::vector<SampleTopic> readSampleSource(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw SampleError(QStringLiteral("%1: %2").arg(path, file.errorString()).toStdString());
    }
    return SourceReader(path, file).readSubject();
}
