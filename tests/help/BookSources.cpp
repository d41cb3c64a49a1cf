#include "BookSources.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace {

const QString place = QStringLiteral("%1");

bool isMessage(const QXmlStreamReader &xml)
{
    return xml.attributes().value(QStringLiteral("class")) == QLatin1String("message");
}

QString attribute(const QXmlStreamReader &xml, const char *name)
{
    return xml.attributes().value(QLatin1String(name)).toString();
}

/// Reads a page element by element.
class PageReader
{
public:
    explicit PageReader(const QString &text)
        : m_xml(text)
    {
    }

    Page read()
    {
        while (!m_xml.atEnd()) {
            const auto token = m_xml.readNext();
            if (token == QXmlStreamReader::StartElement) {
                start();
            } else if (token == QXmlStreamReader::EndElement) {
                end();
            } else if (token == QXmlStreamReader::Characters) {
                addText(m_xml.text().toString());
            }
        }
        if (m_xml.hasError()) {
            m_page.error = QStringLiteral("line %1: %2").arg(m_xml.lineNumber()).arg(m_xml.errorString());
        }
        return m_page;
    }

private:
    void start()
    {
        const QString name = m_xml.name().toString();
        m_page.elements << name;
        const auto attributes = m_xml.attributes();
        for (const QXmlStreamAttribute &one : attributes) {
            m_page.attributes << one.name().toString();
        }
        if (name == QLatin1String("a")) {
            readAnchor();
        } else if (name == QLatin1String("img")) {
            m_page.pictures.append({.file = attribute(m_xml, "src"),
                                    .words = attribute(m_xml, "alt"),
                                    .width = attribute(m_xml, "width").toInt()});
        } else if (name == QLatin1String("tr")) {
            m_page.rows.append({.section = m_page.names.value(m_page.names.size() - 1), .cells = {}});
        } else if (name == QLatin1String("title") || name == QLatin1String("h1") || name == QLatin1String("td")) {
            m_text.clear();
        } else if (name == QLatin1String("var")) {
            addText(place);
        } else if (name == QLatin1String("br")) {
            addText(QStringLiteral(" "));
        }
        if (isMessage(m_xml)) {
            m_message = name;
            m_messageText.clear();
        }
        m_isPlace = name == QLatin1String("var");
    }

    void readAnchor()
    {
        if (m_xml.attributes().hasAttribute(QStringLiteral("name"))) {
            m_page.names << attribute(m_xml, "name");
        }
        if (m_xml.attributes().hasAttribute(QStringLiteral("href"))) {
            m_page.links << attribute(m_xml, "href");
        }
    }

    void end()
    {
        const QString name = m_xml.name().toString();
        if (name == QLatin1String("title")) {
            m_page.title = m_text.simplified();
        } else if (name == QLatin1String("h1")) {
            m_page.headings << m_text.simplified();
        } else if (name == QLatin1String("td")) {
            m_page.rows.last().cells << m_text.simplified();
        }
        if (name == m_message) {
            m_page.messages << m_messageText.simplified();
            m_message.clear();
        }
        m_isPlace = false;
    }

    void addText(const QString &text)
    {
        if (!m_isPlace) {
            m_text += text;
            m_messageText += text;
        }
    }

    QXmlStreamReader m_xml;
    Page m_page;
    QString m_text;
    QString m_message; ///< the element that a message stands in
    QString m_messageText;
    bool m_isPlace = false;
};

QString unescaped(QString literal)
{
    return literal.replace(QLatin1String("\\n"), QLatin1String(" "))
        .replace(QLatin1String("\\\""), QLatin1String("\""))
        .replace(QLatin1String("\\\\"), QLatin1String("\\"));
}

/// Literals that only blanks part are one string.
QStringList stringsOf(const QString &source)
{
    static const QRegularExpression tokens(
        QStringLiteral(R"RE(//[^\n]*|/\*.*?\*/|'(?:[^'\\\n]|\\.)'|R"\(.*?\)"|"((?:[^"\\\n]|\\.)*)")RE"),
        QRegularExpression::DotMatchesEverythingOption);
    QStringList strings;
    qsizetype endOfLast = -1;
    for (auto found = tokens.globalMatch(source); found.hasNext();) {
        const QRegularExpressionMatch token = found.next();
        if (!token.hasCaptured(1)) {
            continue;
        }
        const bool goesOn =
            endOfLast >= 0 && QStringView(source).mid(endOfLast, token.capturedStart() - endOfLast).trimmed().isEmpty();
        if (goesOn) {
            strings.last() += unescaped(token.captured(1));
        } else {
            strings << unescaped(token.captured(1));
        }
        endOfLast = token.capturedEnd();
    }
    return strings;
}

} // namespace

QString textOfFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

Page readPage(const QString &path)
{
    return PageReader(textOfFile(path)).read();
}

QHash<QString, Page> readPages(const QString &folder)
{
    QHash<QString, Page> pages;
    const QStringList files = QDir(folder).entryList({QStringLiteral("*.html")}, QDir::Files);
    for (const QString &file : files) {
        pages.insert(file, readPage(folder + QLatin1Char('/') + file));
    }
    return pages;
}

Project readProject(const QString &path)
{
    Project project;
    QXmlStreamReader xml(textOfFile(path));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == QLatin1String("namespace")) {
            project.nameSpace = xml.readElementText();
        } else if (xml.name() == QLatin1String("section")) {
            project.contents.append({.name = attribute(xml, "title"), .id = {}, .target = attribute(xml, "ref")});
        } else if (xml.name() == QLatin1String("keyword")) {
            project.index.append(
                {.name = attribute(xml, "name"), .id = attribute(xml, "id"), .target = attribute(xml, "ref")});
        } else if (xml.name() == QLatin1String("file")) {
            project.files << xml.readElementText();
        }
    }
    if (xml.hasError()) {
        project.error = QStringLiteral("line %1: %2").arg(xml.lineNumber()).arg(xml.errorString());
    }
    return project;
}

QString asOneLine(QString text)
{
    static const QRegularExpression places(QStringLiteral("%\\d"));
    return text.replace(places, place).simplified();
}

QStringList stringsOfSources(const QString &folder)
{
    QStringList strings;
    for (QDirIterator files(folder, {QStringLiteral("*.cpp")}, QDir::Files, QDirIterator::Subdirectories);
         files.hasNext();) {
        const QStringList found = stringsOf(textOfFile(files.next()));
        for (const QString &string : found) {
            strings << asOneLine(string);
        }
    }
    return strings;
}
