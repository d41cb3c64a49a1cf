#include "platform/PastedPicture.h"
#include "platform/RichTextClipboard.h"
#include "platform/rtf/RtfObject.h"
#include "platform/rtf/RtfObjectFormat.h"
#include "platform/rtf/RtfWriter.h"
#include "tests/platform/rtf/RtfDocuments.h"
#include "tests/support/Pictures.h"

#include <QFile>
#include <QImage>
#include <QMimeData>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>
#include <string>

namespace {

const QString rtfFormat = QStringLiteral("text/rtf");

PasteTarget target()
{
    return {Qt::white, {800, 600}, emptyDocument()->defaultFont()};
}

QTextCursor allOf(QTextDocument &document)
{
    QTextCursor cursor(&document);
    cursor.select(QTextCursor::Document);
    return cursor;
}

/// The text of what is pasted; null if nothing is.
QString pastedText(const QMimeData &data)
{
    const auto rtf = rtfToPaste(data, target());
    return rtf ? textOf(*documentOf(*rtf)) : QString();
}

QList<QSize> pastedPictures(const QMimeData &data)
{
    QList<QSize> sizes;
    const auto rtf = rtfToPaste(data, target());
    const auto document = documentOf(rtf.value_or(std::string()));
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        for (auto run = block.begin(); !run.atEnd(); ++run) {
            for (int i = 0; i < run.fragment().length(); ++i) {
                if (run.fragment().charFormat().objectType() == rtfObjectType) {
                    sizes.append(objectSizeOf(run.fragment().charFormat()));
                }
            }
        }
    }
    return sizes;
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

// Copying.

TEST(ClipboardOf, OffersRtfHtmlAndPlainText)
{
    const auto document = documentOf(wholeRtf("one \\b two\\b0\\par three"));
    const auto data = clipboardOf(allOf(*document));
    EXPECT_EQ(data->formats(), (QStringList{rtfFormat, QStringLiteral("application/rtf"), QStringLiteral("text/html"),
                                            QStringLiteral("text/plain")}));
    EXPECT_TRUE(data->hasText());
    EXPECT_TRUE(data->hasHtml());
    EXPECT_FALSE(data->hasImage());
    EXPECT_FALSE(data->hasUrls());
}

TEST(RtfClipboardOf, OffersRtfOfTheSelectionAndNothingElse)
{
    const auto document = documentOf(wholeRtf("one \\b two\\b0\\par three"));
    QTextCursor cursor(document.get());
    cursor.setPosition(4);
    cursor.setPosition(7, QTextCursor::KeepAnchor);
    const auto data = rtfClipboardOf(cursor);
    EXPECT_EQ(data->formats(), (QStringList{rtfFormat, QStringLiteral("application/rtf")}));
    EXPECT_EQ(data->data(rtfFormat).toStdString(), writeRtf(cursor));
    EXPECT_EQ(data->data(QStringLiteral("application/rtf")), data->data(rtfFormat));
    EXPECT_TRUE(holdsRtf(*data));
    EXPECT_EQ(rtfIn(*data), writeRtf(cursor));
}

TEST(HoldsRtf, IsAboutTheFormatsThatAreOffered)
{
    QMimeData data;
    EXPECT_FALSE(holdsRtf(data));
    data.setText(QStringLiteral("{\\rtf1 text}"));
    data.setHtml(QStringLiteral("<b>text</b>"));
    EXPECT_FALSE(holdsRtf(data));
    EXPECT_TRUE(holdsRtf(*clipboardOf(allOf(*documentOf(wholeRtf("one"))))));
    for (const QString &format : {rtfFormat, QStringLiteral("application/rtf"), QStringLiteral("text/richtext")}) {
        QMimeData rich;
        rich.setData(format, "{\\rtf1 text}");
        EXPECT_TRUE(holdsRtf(rich)) << format.toStdString();
        EXPECT_EQ(rtfIn(rich), "{\\rtf1 text}");
    }
}

TEST(RtfIn, IsEmptyWhereThereIsNone)
{
    QMimeData data;
    EXPECT_EQ(rtfIn(data), "");
    data.setData(rtfFormat, "not at all");
    EXPECT_EQ(rtfIn(data), "");
    data.setData(QStringLiteral("application/rtf"), "{\\rtf1 text}");
    EXPECT_EQ(rtfIn(data), "{\\rtf1 text}") << "the next format may be better";
}

TEST(ClipboardOf, RtfIsThatOfTheSelection)
{
    const auto document = documentOf(wholeRtf("one \\b two\\b0\\par\\pard\\qc three\\par four"));
    QTextCursor cursor(document.get());
    cursor.setPosition(2);
    cursor.setPosition(10, QTextCursor::KeepAnchor);
    const auto data = clipboardOf(cursor);
    EXPECT_EQ(data->data(rtfFormat).toStdString(), writeRtf(cursor));
    EXPECT_EQ(data->data(QStringLiteral("application/rtf")), data->data(rtfFormat));
}

TEST(ClipboardOf, PlainTextHasALineForEachLine)
{
    const auto document = documentOf(wholeRtf("one\\line two\\par a\\~b\\par\\par c\\tab d"));
    EXPECT_EQ(clipboardOf(allOf(*document))->text(), QStringLiteral("one\ntwo\na\u00a0b\n\nc\td"));
}

TEST(ClipboardOf, HtmlHasTheLooksOfTheText)
{
    const auto document = documentOf(wholeRtf("one \\b two\\b0  \\cf1 red"));
    const QString html = clipboardOf(allOf(*document))->html();
    EXPECT_TRUE(html.contains(QStringLiteral("one"))) << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("font-weight:700")) || html.contains(QStringLiteral("font-weight:600")))
        << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("color:#ff0000"))) << html.toStdString();
}

TEST(ClipboardOf, ANumberedListIsOneInTheHtmlWhateverItStartsAt)
{
    const auto document = documentOf(wholeRtf(R"({\*\pn\pnlvlbody\pndec\pnstart3{\pntxta.}}a\par b\par)"));
    const QString html = clipboardOf(allOf(*document))->html();
    EXPECT_TRUE(html.contains(QStringLiteral("<ol"))) << html.toStdString();
    EXPECT_FALSE(html.contains(QStringLiteral("<ul"))) << html.toStdString();
}

TEST(ClipboardOf, AnEmptySelectionOffersNothing)
{
    const auto document = documentOf(wholeRtf("one"));
    EXPECT_TRUE(clipboardOf(QTextCursor(document.get()))->formats().isEmpty());
    EXPECT_TRUE(clipboardOf(QTextCursor())->formats().isEmpty());
}

TEST(ClipboardOf, WhatWasCopiedStaysWhenTheTextChanges)
{
    auto document = documentOf(wholeRtf("one \\b two"));
    const auto data = clipboardOf(allOf(*document));
    allOf(*document).insertText(QStringLiteral("other"));
    document.reset();
    EXPECT_EQ(data->text(), QStringLiteral("one two"));
    EXPECT_TRUE(data->html().contains(QStringLiteral("two")));
    EXPECT_EQ(pastedText(*data), QStringLiteral("one two"));
}

TEST(ClipboardOf, CopyingAndPastingKeepsTheFormat)
{
    const auto document = documentOf(wholeRtf("\\qc one \\b\\i two\\b0\\i0\\par\\pard\\fs40 three\\par four"));
    const auto rtf = rtfToPaste(*clipboardOf(allOf(*document)), target());
    ASSERT_TRUE(rtf);
    EXPECT_EQ(seen(*documentOf(*rtf)), seen(*document));
}

TEST(ClipboardOf, LinksAreLinksInAllRichForms)
{
    const auto document =
        documentOf(wholeRtf("a {\\field{\\*\\fldinst{HYPERLINK \"https://example.org/\"}}{\\fldrslt{link}}} b"));
    const auto data = clipboardOf(allOf(*document));
    EXPECT_TRUE(data->html().contains(QStringLiteral("href=\"https://example.org/\""))) << data->html().toStdString();
    EXPECT_TRUE(data->data(rtfFormat).contains("HYPERLINK \"https://example.org/\""))
        << data->data(rtfFormat).toStdString();
    EXPECT_EQ(data->text(), QStringLiteral("a link b"));
}

std::unique_ptr<QTextDocument> documentWithPicture(const QByteArray &file, QSize pixels, QSize twips)
{
    auto document = documentOf(wholeRtf("ab"));
    QTextCursor cursor(document.get());
    cursor.setPosition(1);
    insertObject(cursor, pictureSource(file, pixels, twips));
    return document;
}

TEST(ClipboardOf, AnotherProgramSeesThePicturesInTheHtml)
{
    const QByteArray file = pngFile({4, 2});
    const auto document = documentWithPicture(file, {4, 2}, {600, 300});
    const QString html = clipboardOf(allOf(*document))->html();
    EXPECT_TRUE(html.contains(QStringLiteral("src=\"data:image/png;base64,") + QString::fromLatin1(file.toBase64())))
        << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("width=\"40\""))) << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("height=\"20\""))) << html.toStdString();
    EXPECT_FALSE(html.contains(QChar(QChar::ObjectReplacementCharacter)));
}

TEST(ClipboardOf, PlainTextLeavesPicturesOut)
{
    const auto document = documentWithPicture(pngFile({4, 2}), {4, 2}, {600, 300});
    EXPECT_EQ(clipboardOf(allOf(*document))->text(), QStringLiteral("ab"));
}

TEST(ClipboardOf, APictureThatCannotBeDrawnIsNamedInTheHtml)
{
    auto document = documentOf(wholeRtf("ab"));
    QTextCursor cursor(document.get());
    cursor.setPosition(1);
    insertObject(cursor, "{\\pict\\wmetafile8\\picwgoal600\\pichgoal300 0100}");
    const QString html = clipboardOf(allOf(*document))->html();
    EXPECT_FALSE(html.contains(QStringLiteral("<img"))) << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral(">aWMFb<"))) << html.toStdString();
}

TEST(ClipboardOf, APictureIsPastedAsItWasCopied)
{
    const auto document = documentWithPicture(pngFile({4, 2}), {4, 2}, {600, 300});
    const auto data = clipboardOf(allOf(*document));
    EXPECT_EQ(pastedPictures(*data), QList<QSize>{QSize(600, 300)});
    EXPECT_EQ(pastedText(*data), QStringLiteral("a\ufffcb"));
}

// What can be pasted.

TEST(CanPaste, NothingOfNothing)
{
    EXPECT_FALSE(canPaste(QMimeData()));
    QMimeData unknown;
    unknown.setData(QStringLiteral("application/x-unknown"), "data");
    EXPECT_FALSE(canPaste(unknown));
}

TEST(CanPaste, EachFormByItself)
{
    for (const char *format :
         {"text/rtf", "application/rtf", "text/richtext", "text/html", "text/plain", "image/png", "image/jpeg",
          "text/uri-list", "application/x-qt-windows-mime;value=\"Rich Text Format\""}) {
        QMimeData data;
        data.setData(QString::fromLatin1(format), "file:///a");
        EXPECT_TRUE(canPaste(data)) << format;
    }
    QMimeData image;
    image.setImageData(QImage(2, 2, QImage::Format_RGB32));
    EXPECT_TRUE(canPaste(image));
}

// Pasting.

TEST(RtfToPaste, RtfComesFirst)
{
    QMimeData data;
    data.setText(QStringLiteral("text"));
    data.setHtml(QStringLiteral("<b>html</b>"));
    data.setImageData(QImage(2, 2, QImage::Format_RGB32));
    data.setData(rtfFormat, "{\\rtf1 rtf}");
    EXPECT_EQ(rtfToPaste(data, target()), std::string("{\\rtf1 rtf}"));
}

TEST(RtfToPaste, RtfIsFoundUnderAllItsNames)
{
    for (const char *format :
         {"text/rtf", "application/rtf", "text/richtext", "application/x-qt-windows-mime;value=\"Rich Text Format\""}) {
        QMimeData data;
        data.setData(QString::fromLatin1(format), "{\\rtf1 rtf}");
        EXPECT_EQ(pastedText(data), QStringLiteral("rtf")) << format;
    }
}

TEST(RtfToPaste, WhatIsOnlyCalledRtfIsPassedOver)
{
    QMimeData data;
    data.setData(QStringLiteral("text/richtext"), "<bold>old mail</bold>");
    data.setHtml(QStringLiteral("html"));
    EXPECT_EQ(pastedText(data), QStringLiteral("html"));
}

TEST(RtfToPaste, ColoursOfRtfAreReadable)
{
    QMimeData data;
    data.setData(rtfFormat, "{\\rtf1{\\colortbl ;\\red250\\green250\\blue250;}\\cf1 pale}");
    const auto rtf = rtfToPaste(data, target());
    ASSERT_TRUE(rtf);
    EXPECT_EQ(rtf->find("\\cf1"), std::string::npos);
}

TEST(RtfToPaste, HtmlComesBeforePicturesAndText)
{
    QMimeData data;
    data.setText(QStringLiteral("text"));
    data.setImageData(QImage(2, 2, QImage::Format_RGB32));
    data.setHtml(QStringLiteral("<p>html</p>"));
    EXPECT_EQ(pastedText(data), QStringLiteral("html"));
}

TEST(RtfToPaste, APictureOfTheWebIsTakenFromTheDataBesideItsHtml)
{
    QMimeData data;
    data.setHtml(QStringLiteral("<meta charset='utf-8'><img src=\"https://127.0.0.1:9/a.png\" alt=\"a\"/>"));
    data.setText(QStringLiteral("https://127.0.0.1:9/a.png"));
    data.setData(QStringLiteral("image/png"), pngFile({20, 10}));
    EXPECT_EQ(pastedPictures(data), QList<QSize>{QSize(300, 150)});
}

TEST(RtfToPaste, APicturesBytesStayAsTheyAre)
{
    const QByteArray file = pngFile({20, 10});
    QMimeData data;
    data.setData(QStringLiteral("image/png"), file);
    data.setText(QStringLiteral("text"));
    const auto rtf = rtfToPaste(data, target());
    ASSERT_TRUE(rtf);
    EXPECT_NE(rtf->find(sourceOfPictureFile(file, {}).toStdString()), std::string::npos);
}

TEST(RtfToPaste, AnImageIsAPicture)
{
    QMimeData data;
    data.setImageData(QImage::fromData(pngFile({1600, 10})));
    EXPECT_EQ(pastedPictures(data), QList<QSize>{QSize(12'000, 75)});
}

TEST(RtfToPaste, PictureFilesStandOneAfterTheOther)
{
    const QTemporaryDir folder;
    write(folder.filePath(QStringLiteral("a.png")), pngFile({2, 2}));
    write(folder.filePath(QStringLiteral("b without suffix")), pngFile({4, 4}));
    write(folder.filePath(QStringLiteral("c.png")), "no picture");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(folder.filePath(QStringLiteral("a.png"))),
                  QUrl::fromLocalFile(folder.filePath(QStringLiteral("c.png"))),
                  QUrl::fromLocalFile(folder.filePath(QStringLiteral("b without suffix")))});
    EXPECT_EQ(pastedPictures(data), (QList<QSize>{{30, 30}, {60, 60}}));
    EXPECT_EQ(pastedText(data), QStringLiteral("\ufffc \ufffc"));
}

TEST(RtfToPaste, FilesThatAreNoPicturesAreLeftToPlainText)
{
    const QTemporaryDir folder;
    write(folder.filePath(QStringLiteral("a.txt")), "text");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(folder.filePath(QStringLiteral("a.txt"))), QUrl::fromLocalFile(folder.path()),
                  QUrl::fromLocalFile(QStringLiteral("/nowhere/a.png")),
                  QUrl(QStringLiteral("http://127.0.0.1:9/a.png")), QUrl::fromLocalFile(QStringLiteral("/dev/zero"))});
    EXPECT_FALSE(rtfToPaste(data, target()));
    EXPECT_TRUE(textToPaste(data).contains(QStringLiteral("a.txt")));
}

TEST(RtfToPaste, APictureFileBeyondTheLimitIsNotRead)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.png"));
    write(path, pngFile({2, 2}));
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    ASSERT_TRUE(rtfToPaste(data, target()));
    QFile file(path);
    ASSERT_TRUE(file.resize(maxPictureFile + 1));
    EXPECT_FALSE(rtfToPaste(data, target()));
}

TEST(RtfToPaste, PlainTextIsToBeTyped)
{
    QMimeData data;
    data.setText(QStringLiteral("text"));
    EXPECT_FALSE(rtfToPaste(data, target()));
    EXPECT_EQ(textToPaste(data), QStringLiteral("text"));
    EXPECT_FALSE(rtfToPaste(QMimeData(), target()));
}

TEST(TextToPaste, LinesOfOtherSystemsAreLines)
{
    QMimeData data;
    data.setText(QStringLiteral("a\r\nb\rc\nd"));
    EXPECT_EQ(textToPaste(data), QStringLiteral("a\nb\nc\nd"));
}

TEST(TextToPaste, RicherFormsHaveATextToo)
{
    QMimeData rtf;
    rtf.setData(rtfFormat, "{\\rtf1 a\\b  b\\par c\\par}");
    EXPECT_EQ(textToPaste(rtf), QStringLiteral("a b\nc"));
    QMimeData html;
    html.setHtml(QStringLiteral("<ul><li>a</li><li><b>b</b><br>c</li></ul>"));
    EXPECT_EQ(textToPaste(html), QStringLiteral("a\nb\nc"));
    EXPECT_TRUE(textToPaste(QMimeData()).isEmpty());
}

TEST(TextToPaste, OfACopiedTextIsItsPlainText)
{
    const auto document = documentOf(wholeRtf("one \\b two\\par three"));
    EXPECT_EQ(textToPaste(*clipboardOf(allOf(*document))), QStringLiteral("one two\nthree"));
}

} // namespace
