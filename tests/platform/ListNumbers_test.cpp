#include "platform/ListNumbers.h"
#include "platform/RichTextBox.h"
#include "platform/rtf/RtfFormats.h"

#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextList>

#include <gtest/gtest.h>

namespace {

class ListNumbers : public testing::Test
{
protected:
    ListNumbers()
    {
        m_box.resize(320, 240);
        m_box.setFrameShape(QFrame::NoFrame);
        m_box.setLocked(true); // no caret in the picture
        m_box.show();
    }

    /// Shows \p text, all of it in a list of the style \p style that begins at \p start.
    void show(const QString &text, QTextListFormat::Style style, int start)
    {
        m_box.setPlainText(text);
        QTextListFormat format;
        format.setStyle(style);
        format.setNumberPrefix(QStringLiteral("("));
        format.setNumberSuffix(QStringLiteral(")"));
        if (start != 1) {
            format.setProperty(RtfListStart, start);
            format.setProperty(RtfListStyleShown, style);
            format.setStyle(QTextListFormat::ListStyleUndefined);
        }
        QTextCursor cursor(m_box.document());
        cursor.select(QTextCursor::Document);
        cursor.createList(format);
    }

    QImage grab() { return m_box.viewport()->grab().toImage(); }

    /// What the box shows where a list of the document itself begins at 1 and is \p start - 1 paragraphs
    /// longer; the same lines are in sight.
    QImage expected(const QStringList &lines, QTextListFormat::Style style, int start)
    {
        show((QStringList(start - 1, QStringLiteral("x")) + lines).join(QLatin1Char('\n')), style, 1);
        for (int line = 0; line < start - 1; ++line) {
            m_box.document()->findBlockByNumber(line).setVisible(false);
        }
        m_box.document()->markContentsDirty(0, m_box.document()->characterCount());
        return grab();
    }

    RichTextBox m_box;
};

const QStringList lines = {QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("three")};

TEST_F(ListNumbers, AreWhatADocumentItselfWouldShow)
{
    for (const auto style :
         {QTextListFormat::ListDecimal, QTextListFormat::ListLowerAlpha, QTextListFormat::ListUpperAlpha,
          QTextListFormat::ListLowerRoman, QTextListFormat::ListUpperRoman}) {
        const QImage wanted = expected(lines, style, 4);
        show(lines.join(QLatin1Char('\n')), style, 4);
        EXPECT_EQ(grab(), wanted) << style;
    }
}

TEST_F(ListNumbers, AreInTheFormatOfTheParagraphsMark)
{
    const auto format = [this] {
        m_box.selectAll();
        m_box.setSelBold(true);
        m_box.setSelFontSize(20);
        m_box.setSelColor(Qt::red);
        m_box.moveCursor(QTextCursor::Start);
        return grab();
    };
    expected(lines, QTextListFormat::ListDecimal, 4);
    const QImage wanted = format();
    show(lines.join(QLatin1Char('\n')), QTextListFormat::ListDecimal, 4);
    EXPECT_EQ(format(), wanted);
}

TEST_F(ListNumbers, AreOnTheRightOfTextFromRightToLeft)
{
    const auto mirror = [this] {
        QTextBlockFormat format;
        format.setLayoutDirection(Qt::RightToLeft);
        QTextCursor cursor(m_box.document());
        cursor.select(QTextCursor::Document);
        cursor.mergeBlockFormat(format);
        return grab();
    };
    expected(lines, QTextListFormat::ListDecimal, 4);
    const QImage wanted = mirror();
    show(lines.join(QLatin1Char('\n')), QTextListFormat::ListDecimal, 4);
    EXPECT_EQ(mirror(), wanted);
}

TEST_F(ListNumbers, CountOnBelowWhatIsScrolledAway)
{
    QStringList many;
    for (int line = 0; line < 100; ++line) {
        many += QStringLiteral("line");
    }
    show(many.join(QLatin1Char('\n')), QTextListFormat::ListDecimal, 1);
    m_box.verticalScrollBar()->setValue(m_box.verticalScrollBar()->maximum());
    const QImage fromOne = grab();
    show(many.mid(5).join(QLatin1Char('\n')), QTextListFormat::ListDecimal, 6);
    m_box.verticalScrollBar()->setValue(m_box.verticalScrollBar()->maximum());
    const QImage fromSix = grab();
    const int left = 60; // the bars differ, the texts and their marks are the same
    EXPECT_EQ(fromSix.copy(0, 0, left, fromSix.height()), fromOne.copy(0, 0, left, fromOne.height()));
}

TEST_F(ListNumbers, FollowTheInkOfThePaper)
{
    show(QStringLiteral("\n"), QTextListFormat::ListDecimal, 3);
    QPalette palette = m_box.palette();
    palette.setColor(QPalette::Base, Qt::black);
    palette.setColor(QPalette::Text, Qt::yellow);
    m_box.setPalette(palette);
    const QImage image = grab();
    bool hasYellow = false;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            hasYellow = hasYellow || image.pixelColor(x, y) == QColor(Qt::yellow);
        }
    }
    EXPECT_TRUE(hasYellow);
}

TEST_F(ListNumbers, AreNotPaintedOverListsThatTheDocumentMarks)
{
    show(lines.join(QLatin1Char('\n')), QTextListFormat::ListDecimal, 1);
    QImage image = grab();
    const QImage before = image;
    QPainter painter(&image);
    paintListNumbers(painter, m_box, m_box.viewport()->rect());
    painter.end();
    EXPECT_EQ(image, before);
}

} // namespace
