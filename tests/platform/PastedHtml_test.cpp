#include "platform/PastedHtml.h"
#include "platform/rtf/RtfObject.h"
#include "platform/rtf/RtfObjectFormat.h"
#include "tests/platform/rtf/RtfDocuments.h"
#include "tests/support/Pictures.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTextCursor>

#include <gtest/gtest.h>
#include <ostream>
#include <string>

namespace {

const QColor white = Qt::white;
const QColor darkPaper(0x20, 0x20, 0x28);
constexpr QSize screen(800, 600);

std::string pasted(const QString &html, const QColor &paper = white)
{
    return rtfOfHtml(html, paper, screen, emptyDocument()->defaultFont());
}

/// The runs of a paragraph: as they are where nothing is special about them, else
/// in braces with what is.
QString runsOf(const QTextBlock &block, const QFont &font)
{
    const QString plain = seen(QTextCharFormat(), font);
    QString text;
    for (auto run = block.begin(); !run.atEnd(); ++run) {
        const QTextCharFormat format = run.fragment().charFormat();
        QString look = seen(format, font);
        look = look.startsWith(plain) ? look.mid(plain.size()) : QLatin1Char(' ') + look;
        if (format.isAnchor()) {
            look += QStringLiteral(" to ") + format.anchorHref();
        }
        text += look.isEmpty() ? run.fragment().text() : QStringLiteral("{%1%2}").arg(run.fragment().text(), look);
    }
    return text;
}

/// All paragraphs of \p rtf, " | " between them, each behind what is special about it.
QString shown(const std::string &rtf)
{
    const auto document = documentOf(rtf);
    QStringList paragraphs;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        const QString format = seen(block);
        const QString runs = runsOf(block, document->defaultFont());
        paragraphs += format.isEmpty() ? runs : QStringLiteral("(%1) %2").arg(format, runs);
    }
    QString text = paragraphs.join(QStringLiteral(" | "));
    return text.replace(QChar(QChar::LineSeparator), QStringLiteral("<br>"))
        .replace(QLatin1Char('\t'), QStringLiteral("<tab>"))
        .replace(QChar(QChar::Nbsp), QLatin1Char('~'));
}

struct Html
{
    const char *name;
    const char *html;
    const char *expected;
};

void PrintTo(const Html &html, std::ostream *out)
{
    *out << html.name;
}

class PastedHtmlTest : public testing::TestWithParam<Html>
{
};

TEST_P(PastedHtmlTest, Shows)
{
    EXPECT_EQ(shown(pasted(QString::fromUtf8(GetParam().html))), QString::fromUtf8(GetParam().expected));
}

std::string nameOf(const testing::TestParamInfo<Html> &info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Text, PastedHtmlTest,
    testing::Values(
        Html{"PlainTextIsText", "one two", "one two"},
        Html{"BlanksAndLinesCollapse", " \n one \t\n  two \n", "one two"},
        Html{"BlanksAroundTagsCollapseToOne", "one <b> two </b> three", "one {two  bold}three"},
        Html{"ParagraphsAreParagraphs", "<p>one</p>\n<p>two</p>", "one | two"},
        Html{"AnUnclosedParagraphEndsAtTheNext", "<p>one<p>two<div>three", "one | two | three"},
        Html{"NestedBlocksMakeNoEmptyLines", "<div><section><p>one</p></section><div>two</div></div>", "one | two"},
        Html{"TextBesideBlocksIsAParagraph", "one<p>two</p>three", "one | two | three"},
        Html{"ABreakIsASoftBreak", "one<br>two<br/>three", "one<br>two<br>three"},
        Html{"ABreakAtTheEndOfAParagraphIsNotSeen", "<p>one<br></p><p>two</p>", "one | two"},
        Html{"AParagraphOfABreakIsAnEmptyLine", "<div>one</div><div><br></div><div>two</div>", "one |  | two"},
        Html{"AnEmptyParagraphIsNothing", "<p>one</p><p></p><p> </p><p>two</p>", "one | two"},
        Html{"EmptyLinesAroundThePartAreLeftOut", "<p>&nbsp;</p><p>one</p><p><br></p>", "one"},
        Html{"ARuleEndsALine", "one<hr>two", "one | two"},
        Html{"ANoBreakSpaceBetweenWordsIsABlank", "one&nbsp;two&#160;three", "one two three"},
        Html{"NoBreakSpacesInARowStay", "one&nbsp;&nbsp;two", "one~~two"},
        Html{"ANoBreakSpaceBesideABlankStays", "one &nbsp;two", "one ~two"},
        Html{"NoBreakSpacesAtTheEndGo", "<p>one&nbsp;&nbsp;</p><p>two</p>", "one | two"},
        Html{"ZeroWidthCharactersGo", "o&#8203;n\xe2\x80\x8b\x65\xef\xbb\xbf", "one"},
        Html{"EntitiesAreCharacters", "&lt;b&gt; &amp;amp; &eacute;&euro;&hearts; &#x263a;&#9786; &#150;",
             "<b> &amp; \xc3\xa9\xe2\x82\xac\xe2\x99\xa5 \xe2\x98\xba\xe2\x98\xba \xe2\x80\x93"},
        Html{"UnknownEntitiesAreText", "AT&T &nosuchname; &; & &#; R&D;", "AT&T &nosuchname; &; & \xef\xbf\xbd R&D;"},
        Html{"CharactersBeyondTheFirstPlaneStay", "&#128512; \xf0\x9f\x98\x80", "\xf0\x9f\x98\x80 \xf0\x9f\x98\x80"},
        Html{"NumbersOfNoCharacterAreMarked", "&#xd800;&#0;&#x110000;", "\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd"},
        Html{"MarksOfADocumentAreNotTakenFromText", "a&#xfdd0;b&#xfdd1;c&#xfffc;d&#x2029;e&#x2028;f", "abcd e f"},
        Html{"ALessThanSignIsText", "1 < 2 <3 a<", "1 < 2 <3 a<"},
        Html{"TagsInCapitalsAreTags", "<P ALIGN=CENTER><B>one</B></P>", "(center) {one bold}"},
        Html{"UnknownTagsAreLeftOutAndTheirTextIsNot", "<o:p>one</o:p><blink>two</blink>", "onetwo"},
        Html{"ATagThatIsCutOffIsNoText", "one<b", "one"},
        Html{"AnAttributeThatIsCutOffIsNoText", "one<a href=\"http://x", "one"},
        Html{"AGreaterThanSignInAnAttributeEndsNoTag", "<b title=\"a>b\" x='>'>one</b>", "{one bold}"},
        Html{"QuotesInPlainValuesAreNoQuotes", "<b title=it's>one</b> two's", "{one bold} two's"},
        Html{"EndTagsOfNothingAreLeftOut", "</b></div></td>one</p></ul>two", "one | two"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    LeftOut, PastedHtmlTest,
    testing::Values(Html{"Comments", "one<!-- <b> -->two<!---->three<!-->four", "onetwothreefour"},
                    Html{"AnUnclosedComment", "one<!-- two", "one"},
                    Html{"ScriptsWithTheirText", "one<script>if (a < b) alert('</b>')</script>two", "onetwo"},
                    Html{"AScriptThatPretendsToBeEmpty", "one<script/>two()</script>three", "onethree"},
                    Html{"AnUnclosedScript", "one<SCRIPT>two", "one"},
                    Html{"StyleSheets", "<style>p { color: red }</style><p>one", "one"},
                    Html{"TheHead",
                         "<html><head><title>T</title><meta charset=utf-8><link rel=stylesheet href=x></head>one",
                         "one"},
                    Html{"ConditionsOfAWordProcessor",
                         "<!--[if gte mso 9]><xml><w:x>1</w:x></xml><![endif]-->one<![if !x]>two", "onetwo"},
                    Html{"DataIslands", "<xml><o:a>1</o:a></xml>one<svg><text>2</text></svg>two", "onetwo"},
                    Html{"WhatIsHidden",
                         "one<span style='display:none'>two<b>three</b></span>four"
                         "<p style='visibility: hidden'>five</p>",
                         "onefour"},
                    Html{"FontsAndSizes",
                         "<font face=Impact size=7>one</font> <span style='font:30pt Impact'>two</span> "
                         "<big>three</big>",
                         "one two three"},
                    Html{"BackgroundsOfBlocks",
                         "<body bgcolor=red><p style='background:#ff0000'>one</p>"
                         "<table style='background-color:blue'><tr><td bgcolor=lime>two</table>",
                         "one | two"},
                    Html{"RemotePictures", "one<img src=\"http://127.0.0.1:9/a.png\" alt=logo>two", "onetwo"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Looks, PastedHtmlTest,
    testing::Values(
        Html{"BoldInBothForms", "<b>one</b><strong>two</strong>", "{onetwo bold}"},
        Html{"ItalicInBothForms", "<i>one</i><em>two</em>", "{onetwo italic}"},
        Html{"Underlined", "<u>one</u> <ins>two</ins>", "{one underline} {two underline}"},
        Html{"StruckOut", "<s>one</s><del>two</del><strike>three</strike>", "{onetwothree strike}"},
        Html{"RaisedAndLowered", "x<sup>2</sup>y<sub>i</sub>", "x{2 super}y{i sub}"},
        Html{"LooksAddUp", "<b>one<i>two</b>three</i>four", "{one bold}{two bold italic}threefour"},
        Html{"StylesSayTheSame",
             "<span style=\"font-weight:700\">a</span><span style=\"font-style: italic\">b</span>"
             "<span style=\"text-decoration: underline solid\">c</span>"
             "<span style=\"text-decoration-line:line-through\">d</span>"
             "<span style=\"VERTICAL-ALIGN:super\">e</span>",
             "{a bold}{b italic}{c underline}{d strike}{e super}"},
        Html{"StylesTakeBack", "<b style=\"font-weight:normal\">one <i style='font-style:normal'>two</i></b>",
             "one two"},
        Html{"AnImportantStyleIsAStyle", "<span style='font-weight: bold !important'>one</span>", "{one bold}"},
        Html{"HeadingsAreBoldAndLargerByStep", "<h1>one</h1><h2>two</h2><h3>three</h3><h4>four</h4>",
             "{one House Sans 18 bold} | {two House Sans 16 bold} | {three House Sans 14 bold} | {four bold}"},
        Html{"CodeKeepsAFixedPitch", "use <code>a b</code> or <tt>c</tt>", "use {a b monospace 8} or {c monospace 8}"},
        Html{"PreformattedTextKeepsItsBlanksAndLines", "<pre>\na\n  b\tc\n\nd\n</pre>",
             "{a<br>  b<tab>c<br><br>d monospace 8}"},
        Html{"AStyleKeepsBlanksToo", "<p style='white-space:pre-wrap'>a  b\nc</p>", "a  b<br>c"},
        Html{"AStyleKeepsLinesOnly", "<p style='white-space:pre-line'>a  b\nc</p>", "a b<br>c"},
        Html{"Alignment", "<p align=right>a</p><p style='text-align:center'>b</p><center>c</center><p>d",
             "(right) a | (center) b | (center) c | d"},
        Html{"TextFromRightToLeft", "<p dir=rtl>a</p>", "(rtl) a"},
        Html{"AnEndOfACellEndsNoLookOutsideIt", "<b>a<table><tr><td>b</b></td><td>c</td></tr></table></b>",
             "{a bold} | {b<tab>c bold}"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Colors, PastedHtmlTest,
    testing::Values(
        Html{"AReadableColourStays", "<span style='color:#c00000'>a</span><font color=blue>b</font>",
             "{a ink#c00000}{b ink#0000ff}"},
        Html{"AllFormsOfColours",
             "<span style='color:#c00'>a</span><span style='color:rgb(192, 0, 0)'>b</span>"
             "<span style='color:rgb(75% 0% 0% / 1)'>c</span><span style='color:#C00000ff'>d</span>"
             "<span style='color:DarkRed'>e</span>",
             "{a ink#cc0000}{b ink#c00000}{c ink#bf0000}{d ink#c00000}{e ink#8b0000}"},
        Html{"BlackIsThePagesInk",
             "<font color=black>a</font><font color=#24292f>b</font>"
             "<span style='color:rgba(0,0,0,.87)'>c</span><span style='color:windowtext'>d</span>"
             "<font color=#666666>e</font>",
             "abcde"},
        Html{"AColourThatCannotBeReadGoes",
             "<font color=white>a</font><font color=yellow>b</font>"
             "<span style='color:transparent'>c</span>",
             "abc"},
        Html{"WhatIsNoColourIsLeftToTheTextAround",
             "<font color=blue>a<span style='color:inherit'>b</span><span style='color:var(--x)'>c</span></font>",
             "{abc ink#0000ff}"},
        Html{"AMarkerStays",
             "<mark>a</mark><span style='background-color:#ffff00'>b</span>"
             "<span style='background: rgb(255, 200, 200)'>c</span>",
             "{ab marker#ffff00}{c marker#ffc8c8}"},
        Html{"TheBackgroundOfAPageIsNoMarker",
             "<span style='background-color:#ffffff'>a</span>"
             "<span style='background:#f6f8fa'>b</span>"
             "<span style='background:#222'>c</span>"
             "<span style='background:transparent'>d</span>"
             "<span style='background:url(http://127.0.0.1:9/x.png)'>e</span>",
             "abcde"},
        Html{"AMarkerThatHidesTheTextGoes", "<span style='background-color:navy;color:white'>a</span>", "a"},
        Html{"AMarkerUnderReadableInkStays", "<span style='background-color:#ffff00;color:#c00000'>a</span>",
             "{a ink#c00000 marker#ffff00}"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Lists, PastedHtmlTest,
    testing::Values(Html{"BulletsAreBullets", "<ul><li>a</li><li>b</li></ul>", "(bullet) a | (bullet) b"},
                    Html{"ItemsNeedNoEnds", "<ul><li>a<li>b</ul>c", "(bullet) a | (bullet) b | c"},
                    Html{"NumbersAreNumbers", "<ol><li>a</li><li>b</li></ol>", "(1.) a | (2.) b"},
                    Html{"StylesOfNumbers",
                         "<ol type=a><li>a</ol><ol type=I><li>b</ol><ol style='list-style-type:upper-latin'><li>c</ol>"
                         "<ol><li style='list-style-type:lower-roman'>d</ol>",
                         "(a.) a | (I.) b | (A.) c | (i.) d"},
                    Html{"InnerListsAreFurtherIn", "<ul><li>a<ul><li>b<ul><li>c</ul></ul><li>d</ul>",
                         "(bullet) a | (left24 bullet) b | (left48 bullet) c | (bullet) d"},
                    Html{"ListsInListsOutsideOfItems", "<ul><li>a</li><ul><li>b</li></ul></ul>",
                         "(bullet) a | (left24 bullet) b"},
                    Html{"ParagraphsInAnItemAreAParagraphWithoutMark", "<ul><li><p>a</p><p>b</p></li></ul>",
                         "(bullet) a | (left24) b"},
                    Html{"AListWithoutMarksHasNone", "<ul style='list-style:none outside'><li>a</ul>", "(left24) a"},
                    Html{"AnEmptyItemIsNothing", "<ul><li></li><li>a</li></ul>b", "(bullet) a | b"},
                    Html{"AnItemWithoutAListIsABullet", "<li>a</li>", "(bullet) a"},
                    Html{"Definitions", "<dl><dt>a</dt><dd>b</dd></dl>", "a | b"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Tables, PastedHtmlTest,
    testing::Values(
        Html{"ARowIsALineWithTabs", "<table><tr><td>a</td><td>b</td></tr>\n<tr><td>c</td><td>d</td></tr></table>",
             "a<tab>b | c<tab>d"},
        Html{"CellsAndRowsNeedNoEnds", "<table><tr><td>a<td>b<tr><td>c<td>d</table>e", "a<tab>b | c<tab>d | e"},
        Html{"HeadsAreBold", "<table><thead><tr><th>a</th><th>b</th></tr></thead></table>", "{a bold}<tab>{b bold}"},
        Html{"EmptyCellsKeepTheirPlace", "<table><tr><td></td><td>b</td><td></td><td>d</td></tr></table>",
             "<tab>b<tab><tab>d"},
        Html{"ACellOverTwoColumnsTakesTwoTabs", "<table><tr><td colspan=2>a</td><td>b</td></tr></table>",
             "a<tab><tab>b"},
        Html{"BlocksInACellAreInTheLine",
             "<table><tr><td><p>a</p><p>b</p></td><td><div>c<br>d</div><ul><li>e</ul></td></tr></table>",
             "a b<tab>c d e"},
        Html{"ATableInACellIsSetWithBlanks",
             "<table><tr><td>a</td><td><table><tr><td>b</td><td>c</td></tr><tr><td>d</td></tr></table></td>"
             "<td>e</td></tr></table>",
             "a<tab>b c d<tab>e"},
        Html{"ARowOfOneCellStaysAsItIs", "<table><tr><td><p>a</p><p align=center>b</p><ul><li>c</ul></td></tr></table>",
             "a | (center) b | (bullet) c"},
        Html{"CellsThatOnlyMakeRoomDoNotCount",
             "<table><tr><td width=20>&nbsp;</td><td><p>a</p><p>b</p></td><td> </td></tr></table>", "a | b"},
        Html{"ATableThatArrangesAPageMayHoldOneThatDoesNot",
             "<table><tr><td><p>a</p><table><tr><td>b</td><td>c</td></tr></table></td></tr></table>", "a | b<tab>c"},
        Html{"CellsWithoutATableAreARow", "<td>a</td><td>b</td>", "a<tab>b"},
        Html{"ATableBehindAParagraph", "<p>a<table><tr><td>b<td>c</table>d", "a | b<tab>c | d"},
        Html{"PreformattedTextInACellIsInTheLine", "<table><tr><td><pre>a\n  b</pre><td>c</table>",
             "{a b monospace 8}<tab>c"}),
    nameOf);

// What programs put on the clipboard, in their manner.
INSTANTIATE_TEST_SUITE_P(
    Programs, PastedHtmlTest,
    testing::Values(
        Html{"ABrowser",
             "<meta charset='utf-8'><span style=\"color: rgb(32, 33, 34); font-family: sans-serif; font-size: 14px; "
             "font-style: normal; font-weight: 400; text-align: start; white-space: normal; background-color: "
             "rgb(255, 255, 255); text-decoration-style: initial; display: inline !important; float: none;\">The "
             "</span><b style=\"color: rgb(32, 33, 34); background-color: rgb(255, 255, 255);\">cell</b><span "
             "style=\"color: rgb(32, 33, 34);\"><span>&nbsp;</span>is the unit of life.<sup id=\"c1\"><a "
             "href=\"/wiki/x#n1\">[1]</a></sup></span><br class=\"interchange-newline\">",
             "The {cell bold} is the unit of life.{[1] super}"},
        Html{"AWordProcessor",
             "<html xmlns:o=\"urn:x\"><head><meta name=Generator content=\"Words 15\"><!--[if gte mso 9]><xml>"
             "<w:WordDocument/></xml><![endif]--><style><!-- p.Normal {margin:0cm;} --></style></head>"
             "<body lang=EN style='tab-interval:36.0pt'><!--StartFragment-->\n\n"
             "<p class=Normal><b><span lang=EN style='font-size:16.0pt;mso-fareast:x;color:windowtext'>Mitosis<o:p>"
             "</o:p></span></b></p>\n\n<p class=Normal><span style='color:#C00000'>Four</span> phases, in\norder:"
             "<o:p></o:p></p>\n\n<p class=Normal><o:p>&nbsp;</o:p></p>\n\n"
             "<p class=Normal align=center style='text-align:center'>end</p>\n\n<!--EndFragment--></body></html>",
             "{Mitosis bold} | {Four ink#c00000} phases, in order: |  | (center) end"},
        Html{
            "ASpreadsheet",
            "<html><body><google-sheets-html-origin><style type=\"text/css\"><!--td {border: 1px solid}--></style>"
            "<table xmlns=\"x\" cellspacing=\"0\" dir=\"ltr\" border=\"1\" style=\"table-layout:fixed;font-size:10pt\">"
            "<colgroup><col width=\"100\"/><col width=\"100\"/></colgroup><tbody>"
            "<tr style=\"height:21px;\"><td style=\"font-weight:bold;\">Word</td><td style=\"font-weight:bold;\">"
            "Meaning</td></tr><tr style=\"height:21px;\"><td>cellula</td><td style=\"color:#ff0000;\">small room</td>"
            "</tr></tbody></table></body></html>",
            "{Word bold}<tab>{Meaning bold} | cellula<tab>{small room ink#ff0000}"},
        Html{
            "AnOnlineEditor",
            "<meta charset=\"utf-8\"><b style=\"font-weight:normal;\" id=\"docs-1\"><p dir=\"ltr\" style=\"line-height:"
            "1.38;\"><span style=\"font-size:11pt;color:#000000;background-color:transparent;font-weight:700;"
            "white-space:pre-wrap;\">Key:</span><span style=\"white-space:pre-wrap;\">  two</span></p><ul><li "
            "style=\"list-style-type:disc;\" aria-level=\"1\"><p role=\"presentation\"><span>a</span></p></li><ul><li "
            "style=\"list-style-type:circle;\" aria-level=\"2\"><p><span>b</span></p></li></ul></ul></b>",
            "{Key: bold}  two | (bullet) a | (left24 bullet) b"},
        Html{"AnEMail",
             "<div dir=\"ltr\">Dear all,<div><br></div><div>the <a href=\"https://example.org/a?b=1&amp;c=2\">plan</a> "
             "stands.</div><blockquote class=\"quote\" style=\"margin:0 0 0 .8ex\"><div>When?</div></blockquote>"
             "<table width=\"600\" role=\"presentation\"><tbody><tr><td style=\"background:#eeeeee\"><p>Regards</p>"
             "<p>A.</p></td></tr></tbody></table></div>",
             "Dear all, |  | the {plan underline to https://example.org/a?b=1&c=2} stands. | When? | Regards | A."},
        Html{"ACodeEditor",
             "<meta charset='utf-8'><div style=\"color: #d4d4d4;background-color: #1e1e1e;font-family: mono;"
             "white-space: pre;\"><div><span style=\"color: #569cd6;\">if</span> (a) {</div><div>    b;</div>"
             "<div>}</div></div>",
             "if (a) { |     b; | }"}),
    nameOf);

// Marks of lists.

TEST(PastedHtml, NumbersGoOnBehindAnInnerListAndFromAnyStart)
{
    const std::string rtf = pasted(QStringLiteral("<ol start=4><li>a<ul><li>b</ul><li>c<li>d</ol>"));
    EXPECT_NE(rtf.find("\\pntext\\f0 4.\\tab"), std::string::npos) << rtf;
    EXPECT_NE(rtf.find("\\pntext\\f0 5.\\tab"), std::string::npos) << rtf;
    EXPECT_NE(rtf.find("\\pntext\\f0 6.\\tab"), std::string::npos) << rtf;
}

TEST(PastedHtml, APageOfItsOwnPaperDecidesWhatCanBeRead)
{
    const QString html = QStringLiteral("<font color=#ffff80>a</font><font color=#800000>b</font>"
                                        "<font color=white>c</font><font color=black>d</font>");
    EXPECT_EQ(shown(pasted(html, darkPaper)), QStringLiteral("{a ink#ffff80}bcd"));
    EXPECT_EQ(shown(pasted(html, white)), QStringLiteral("a{b ink#800000}cd"));
}

TEST(PastedHtml, TextIsSetInTheFontThatItIsPastedInto)
{
    const std::string rtf = pasted(QStringLiteral("<span style='font-family:Impact;font-size:40px'>a</span>"));
    EXPECT_NE(rtf.find("{\\f0\\fnil\\fcharset0 House Sans;}"), std::string::npos) << rtf;
    EXPECT_NE(rtf.find("\\fs16"), std::string::npos) << rtf;
    EXPECT_EQ(rtf.find("Impact"), std::string::npos) << rtf;
}

// Links.

struct Link
{
    const char *href;
    const char *expected; ///< empty: text alone
};

class PastedLink : public testing::TestWithParam<Link>
{
};

TEST_P(PastedLink, IsKeptIfItLeadsToThePublic)
{
    const QString html = QStringLiteral("<a href=\"%1\">text</a>").arg(QString::fromUtf8(GetParam().href));
    const QString expected = QString::fromUtf8(GetParam().expected);
    EXPECT_EQ(shown(pasted(html)),
              expected.isEmpty() ? QStringLiteral("text") : QStringLiteral("{text underline to %1}").arg(expected));
}

INSTANTIATE_TEST_SUITE_P(Schemes, PastedLink,
                         testing::Values(Link{"http://example.org/", "http://example.org/"},
                                         Link{"HTTPS://example.org/a", "https://example.org/a"},
                                         Link{" https://example.org/a b ", "https://example.org/a%20b"},
                                         Link{"mailto:a@example.org", "mailto:a@example.org"},
                                         Link{"ftp://example.org/f", "ftp://example.org/f"},
                                         Link{"https://example.org/\xc3\xa4", "https://example.org/%C3%A4"},
                                         Link{"javascript:alert(1)", ""}, Link{"JavaScript:alert(1)", ""},
                                         Link{"java\nscript:alert(1)", ""}, Link{"&#106;avascript:alert(1)", ""},
                                         Link{"file:///etc/hosts", ""}, Link{"data:text/html,x", ""}, Link{"#top", ""},
                                         Link{"page.html", ""}, Link{"//example.org/", ""}, Link{"", ""}));

TEST(PastedHtml, ALinkOfMonstrousLengthIsText)
{
    const QString html =
        QStringLiteral("<a href=\"https://example.org/%1\">text</a>").arg(QString(10'000, QLatin1Char('a')));
    EXPECT_EQ(shown(pasted(html)), QStringLiteral("text"));
}

// The end of what is pasted.

TEST(PastedHtml, ASingleParagraphIsNotClosed)
{
    for (const char *html : {"one", "<p>one</p>", "<div><p>one</p></div>\n", "<ul><li>one</li></ul>",
                             "<table><tr><td>one</td></tr></table>"}) {
        EXPECT_EQ(pasted(QString::fromUtf8(html)).find("\\par\r\n"), std::string::npos) << html;
    }
}

int breaksOfInsertion(const char *html)
{
    const auto document = emptyDocument();
    QTextCursor cursor(document.get());
    insertRtf(pasted(QString::fromUtf8(html)), cursor);
    return document->blockCount() - 1;
}

TEST(PastedHtml, OfSeveralParagraphsTheLastIsClosedIfItIsABlock)
{
    EXPECT_EQ(breaksOfInsertion("<p>one</p><p>two</p>"), 2);
    EXPECT_EQ(breaksOfInsertion("<ul><li>one</li><li>two</li></ul>"), 2);
    EXPECT_EQ(breaksOfInsertion("<p>one</p>two"), 1);
    EXPECT_EQ(breaksOfInsertion("one<p>two</p>three"), 2);
}

TEST(PastedHtml, HtmlThatShowsNothingIsEmpty)
{
    for (const char *html :
         {"", " \n", "<p></p>", "<p>&nbsp;</p><br>", "<meta charset=utf-8><img src=\"https://127.0.0.1:9/a.png\">",
          "<!-- a -->", "<script>a</script>", "<img src=\"data:image/png;base64,AAAA\">"}) {
        EXPECT_EQ(pasted(QString::fromUtf8(html)), std::string()) << html;
    }
}

// Pictures.

QString pictureHtml(const QByteArray &file, const char *attributes = "")
{
    return QStringLiteral("<img %1 src=\"data:image/png;base64,%2\">")
        .arg(QLatin1String(attributes), QString::fromLatin1(file.toBase64()));
}

/// The sizes in twips of all pictures in \p rtf.
QList<QSize> pictureSizes(const std::string &rtf)
{
    QList<QSize> sizes;
    const auto document = documentOf(rtf);
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        for (auto run = block.begin(); !run.atEnd(); ++run) {
            if (run.fragment().charFormat().objectType() == rtfObjectType) {
                sizes.append(objectSizeOf(run.fragment().charFormat()));
            }
        }
    }
    return sizes;
}

TEST(PastedHtml, APictureInTheHtmlIsAPictureAmongTheText)
{
    const std::string rtf = pasted(QStringLiteral("one ") + pictureHtml(pngFile({20, 10})) + QStringLiteral(" two"));
    EXPECT_EQ(pictureSizes(rtf), QList<QSize>{QSize(300, 150)});
    EXPECT_EQ(textOf(*documentOf(rtf)), QStringLiteral("one \ufffc two"));
}

TEST(PastedHtml, APictureHasTheSizeThatTheHtmlGivesIt)
{
    EXPECT_EQ(pictureSizes(pasted(pictureHtml(pngFile({20, 10}), "width=40 height=40"))),
              QList<QSize>{QSize(600, 600)});
    EXPECT_EQ(pictureSizes(pasted(pictureHtml(pngFile({20, 10}), "width=40"))), QList<QSize>{QSize(600, 300)});
    EXPECT_EQ(pictureSizes(pasted(pictureHtml(pngFile({20, 10}), "height='100%'"))), QList<QSize>{QSize(300, 150)});
}

TEST(PastedHtml, APictureIsNoLargerThanTheScreen)
{
    EXPECT_EQ(pictureSizes(pasted(pictureHtml(pngFile({1600, 400})))), QList<QSize>{QSize(12'000, 3'000)});
    EXPECT_EQ(pictureSizes(pasted(pictureHtml(pngFile({10, 10}), "width=100000 height=50000"))),
              QList<QSize>{QSize(12'000, 6'000)});
}

TEST(PastedHtml, AHiddenPictureIsNotTaken)
{
    EXPECT_EQ(pasted(QStringLiteral("<div style='display:none'>") + pictureHtml(pngFile({9, 9}))), std::string());
}

TEST(PastedHtml, PicturesInCellsStandInTheLine)
{
    const QString picture = pictureHtml(pngFile({2, 2}));
    const std::string rtf = pasted(QStringLiteral("<table><tr><td>%1<td>%1</table>").arg(picture));
    EXPECT_EQ(textOf(*documentOf(rtf)), QStringLiteral("\ufffc\t\ufffc"));
}

// Hostile HTML.

TEST(PastedHtml, NoFileIsRead)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("secret.png"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(pngFile({5, 5}));
    file.close();
    QFile sheet(folder.filePath(QStringLiteral("secret.css")));
    ASSERT_TRUE(sheet.open(QIODevice::WriteOnly));
    sheet.write("b { font-style: italic }");
    sheet.close();
    const QString html =
        QStringLiteral("<link rel=stylesheet href=\"file://%2\"><style>@import url(file://%2);</style>"
                       "<body background=\"file://%1\"><b>a</b><img src=\"file://%1\"><img src=\"%1\">"
                       "<object data=\"file://%1\"></object><table background=\"%1\"><tr><td>b</table>")
            .arg(path, sheet.fileName());
    const std::string rtf = pasted(html);
    EXPECT_EQ(shown(rtf), QStringLiteral("{a bold} | b"));
    EXPECT_EQ(rtf.find("\\pict"), std::string::npos);
}

TEST(PastedHtml, APictureOfOnePixelIsABlankOfThePage)
{
    EXPECT_EQ(shown(pasted(QStringLiteral("a") + pictureHtml(pngFile({1, 1}), "width=50") + QStringLiteral("b"))),
              QStringLiteral("ab"));
}

TEST(PastedHtml, ManyPicturesDecodeNoMoreThanTwoOfTheLargest)
{
    QImage image(8'000, 8'000, QImage::Format_Mono);
    image.fill(0);
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    ASSERT_TRUE(image.save(&buffer, "png"));
    const QString picture = pictureHtml(file);
    EXPECT_EQ(pictureSizes(pasted(picture + QStringLiteral(" ") + picture + pictureHtml(pngFile({2, 2})))).size(), 2);
}

TEST(PastedHtml, APictureThatClaimsToBeHugeIsLeftOut)
{
    const QByteArray file = "P6 2000000000 2000000000 255 ";
    EXPECT_EQ(shown(pasted(QStringLiteral("a") + pictureHtml(file) + QStringLiteral("b"))), QStringLiteral("ab"));
}

TEST(PastedHtml, DeepNestingKeepsTheText)
{
    for (const char *tag : {"<div>", "<b>", "<ul><li>", "<table><tr><td>", "<table>", "<tr>", "<td>", "<p>"}) {
        const std::string rtf = pasted(QString::fromUtf8(tag).repeated(10'000) + QStringLiteral("text"));
        EXPECT_EQ(textOf(*documentOf(rtf)).trimmed(), QStringLiteral("text")) << tag;
        EXPECT_LT(rtf.size(), std::size_t{1'000}) << tag;
    }
}

TEST(PastedHtml, ManyRowsAndWideCellsDoNotMultiply)
{
    const QString html = QStringLiteral("<table>") + QStringLiteral("<tr><td>a").repeated(2'000) +
                         QStringLiteral("<tr>") + QStringLiteral("<td colspan=1000000000>b").repeated(200);
    EXPECT_EQ(documentOf(pasted(html))->blockCount(), 2'001);
    EXPECT_LT(pasted(html).size(), std::size_t{200'000});
}

TEST(PastedHtml, AttributesOfAMebibyteAreNoHindrance)
{
    const QString filler(1 << 20, QLatin1Char('a'));
    EXPECT_EQ(shown(pasted(QStringLiteral("<b title=\"%1\" style=\"color:%1;font-style:italic\">a</b>").arg(filler))),
              QStringLiteral("{a bold italic}"));
    EXPECT_EQ(shown(pasted(QStringLiteral("<%1>a</%1>").arg(filler))), QStringLiteral("a"));
}

TEST(PastedHtml, TheBeginningsOfThingsAreTextOrNothing)
{
    constexpr int count = 100'000;
    for (const char *part : {"<", "&", "&#", "&a", "< a"}) {
        const QString text = QString::fromUtf8(part).repeated(count);
        EXPECT_TRUE(textOf(*documentOf(pasted(text))) == text) << part;
    }
    for (const char *part : {"<a", "<!--", "<b ", "<b x='", "</b", "<script>", "<!", "<?", "<b x=", "<svg><svg/>"}) {
        EXPECT_EQ(pasted(QString::fromUtf8(part).repeated(count)), std::string()) << part;
    }
}

TEST(PastedHtml, EveryPrefixIsRead)
{
    const QString html = QStringLiteral("<!-- c --><p style=\"color:#c00000;text-align:center\">a&eacute;<b>b</b></p>"
                                        "<ol start=\"3\"><li>c<br>d</ol><table><tr><td>e<td colspan=\"2\">f</table>"
                                        "<a href='https://example.org/'>g</a><script>h</script>") +
                         pictureHtml(pngFile({2, 2}));
    for (qsizetype length = 0; length <= html.size(); ++length) {
        const std::string rtf = pasted(html.left(length));
        EXPECT_TRUE(rtf.empty() || rtf.starts_with("{\\rtf1")) << length;
    }
}

TEST(PastedHtml, HtmlBeyondTheLimitIsNotRead)
{
    EXPECT_EQ(pasted(QString(maxHtmlLength + 1, QLatin1Char('a'))), std::string());
}

// Colours of RTF.

TEST(ReadableColors, RtfWithoutColoursIsHandedBackToTheLetter)
{
    for (const char *rtf : {"", "no rtf", "{\\rtf1 a\\b  b\\foo}", "{\\rtf1{\\colortbl ;\\red192;}\\cf1 a\\foo\\par}",
                            "{\\rtf1{\\colortbl ;\\red0\\green0\\blue0;}a\\cf0  b}"}) {
        EXPECT_EQ(withReadableColors(rtf, white), rtf);
    }
}

struct Colors
{
    const char *name;
    const char *body;
    const char *onWhite;
    const char *onDark;
};

void PrintTo(const Colors &colors, std::ostream *out)
{
    *out << colors.name;
}

std::string nameOfColors(const testing::TestParamInfo<Colors> &info)
{
    return info.param.name;
}

class ReadableColorsOf : public testing::TestWithParam<Colors>
{
};

TEST_P(ReadableColorsOf, Stay)
{
    const std::string rtf = "{\\rtf1{\\fonttbl{\\f0 House Sans;}}{\\colortbl ;\\red0\\green0\\blue0;\\red255\\green255"
                            "\\blue255;\\red192\\green0\\blue0;\\red255\\green255\\blue0;\\red128\\green128\\blue255;}"
                            "\\f0\\fs16 " +
                            std::string(GetParam().body) + "}";
    EXPECT_EQ(shown(withReadableColors(rtf, white)), QString::fromUtf8(GetParam().onWhite));
    EXPECT_EQ(shown(withReadableColors(rtf, darkPaper)), QString::fromUtf8(GetParam().onDark));
}

INSTANTIATE_TEST_SUITE_P(
    All, ReadableColorsOf,
    testing::Values(Colors{"BlackIsThePagesInk", "\\cf1 a", "a", "a"}, Colors{"SoIsWhite", "\\cf2 a", "a", "a"},
                    Colors{"DarkRedOnLightPaper", "\\cf3 a", "{a ink#c00000}", "a"},
                    Colors{"YellowOnDarkPaper", "\\cf4 a", "a", "{a ink#ffff00}"},
                    Colors{"AColourThatCanBeReadOnBoth", "\\cf5 a", "{a ink#8080ff}", "{a ink#8080ff}"},
                    Colors{"AMarkerThatCanBeReadOn", "\\highlight4 a", "{a marker#ffff00}", "a"},
                    Colors{"AWhiteMarker", "\\highlight2 a\\highlight0 b", "ab", "ab"},
                    Colors{"TheRestStays", "\\b\\cf1 a\\cf3\\i  b\\par\\pard\\qc\\b0\\i0\\cf2 c\\par",
                           "{a bold}{ b bold italic ink#c00000} | (center) c",
                           "{a bold}{ b bold italic} | (center) c"}),
    nameOfColors);

TEST(ReadableColors, TheLastParagraphIsClosedIfItWas)
{
    for (const char *end : {"}", "\\par}", "\\par\\pard\\qc b}", "\\par\\pard\\qc b\\par}"}) {
        const std::string rtf = "{\\rtf1{\\colortbl ;\\red0\\green0\\blue0;}\\cf1 a" + std::string(end);
        const std::string changed = withReadableColors(rtf, white);
        EXPECT_NE(changed, rtf);
        const auto before = emptyDocument();
        const auto after = emptyDocument();
        QTextCursor beforeCursor(before.get());
        QTextCursor afterCursor(after.get());
        insertRtf(rtf, beforeCursor);
        insertRtf(changed, afterCursor);
        EXPECT_EQ(textOf(*after), textOf(*before)) << end;
    }
}

TEST(ReadableColors, PicturesStayAsTheyAre)
{
    const QByteArray png = pngFile({2, 2});
    const QByteArray source = pictureSource(png, {2, 2}, {30, 30});
    const std::string rtf = "{\\rtf1{\\colortbl ;\\red0\\green0\\blue0;}\\cf1 a " + source.toStdString() + "}";
    EXPECT_EQ(pictureSizes(withReadableColors(rtf, white)), QList<QSize>{QSize(30, 30)});
    EXPECT_NE(withReadableColors(rtf, white).find(source.toStdString()), std::string::npos);
}

} // namespace
