#include "platform/rtf/RtfListMark.h"

#include <gtest/gtest.h>

namespace {

struct MarkRow
{
    const char *name;
    const char *text; ///< UTF-8
    RtfListStyle hint;
    RtfListStyle style;
    int number;
    const char *before;
    const char *after;
};

void PrintTo(const MarkRow &row, std::ostream *out)
{
    *out << '"' << row.text << '"';
}

class RtfListMarkText : public testing::TestWithParam<MarkRow>
{
};

TEST_P(RtfListMarkText, IsRead)
{
    const MarkRow &row = GetParam();
    const auto mark = readListMark(QString::fromUtf8(row.text), row.hint);
    ASSERT_TRUE(mark.has_value());
    EXPECT_EQ(static_cast<int>(mark->list.style), static_cast<int>(row.style));
    EXPECT_EQ(mark->number, row.number);
    EXPECT_EQ(mark->list.start, row.number);
    EXPECT_EQ(mark->list.before.toStdString(), row.before);
    EXPECT_EQ(mark->list.after.toStdString(), row.after);
}

const auto markName = [](const auto &info) { return info.param.name; };

using enum RtfListStyle;

INSTANTIATE_TEST_SUITE_P(
    Numbers, RtfListMarkText,
    testing::Values(MarkRow{"ADigit", "1.", None, Decimal, 1, "", "."},
                    MarkRow{"DigitsAlone", "12", None, Decimal, 12, "", ""},
                    MarkRow{"DigitsInBrackets", "(7)\t", Bullet, Decimal, 7, "(", ")"},
                    MarkRow{"Zero", "0.", None, Decimal, 0, "", "."},
                    MarkRow{"ALeadingZero", "01.", None, Decimal, 1, "", "."},
                    MarkRow{"BlanksAround", " \t3) \t ", None, Decimal, 3, "", ")"},
                    MarkRow{"AWordBefore", "Chapter 4:", None, Decimal, 4, "Chapter ", ":"},
                    MarkRow{"SeveralNumbers", "2.1.", None, Decimal, 1, "", "."},
                    MarkRow{"SeveralNumbersInBrackets", "(2-b)", None, LowerLetter, 2, "(", ")"},
                    MarkRow{"AWordBeforeSeveralNumbers", "Unit 3.12", None, Decimal, 12, "Unit ", ""},
                    MarkRow{"OtherLettersAround", "\u7b2c9\u7ae0", None, Decimal, 9, "\u7b2c", "\u7ae0"},
                    MarkRow{"TheLargest", "999999999", None, Decimal, 999'999'999, "", ""}),
    markName);

INSTANTIATE_TEST_SUITE_P(Letters, RtfListMarkText,
                         testing::Values(MarkRow{"ALetter", "(a)", None, LowerLetter, 1, "(", ")"},
                                         MarkRow{"ACapital", "B.", None, UpperLetter, 2, "", "."},
                                         MarkRow{"TwoLetters", "ab)", None, LowerLetter, 28, "", ")"},
                                         MarkRow{"ARoman", "iv)", None, LowerRoman, 4, "", ")"},
                                         MarkRow{"ACapitalRoman", "IX.", None, UpperRoman, 9, "", "."},
                                         MarkRow{"TheLongestRoman", "mmmdccclxxxviii", None, LowerRoman, 3888, "", ""},
                                         MarkRow{"IByItselfIsRoman", "i.", None, LowerRoman, 1, "", "."},
                                         MarkRow{"IAmongLetters", "i.", LowerLetter, LowerLetter, 9, "", "."},
                                         MarkRow{"IAmongCapitals", "i.", UpperLetter, LowerLetter, 9, "", "."},
                                         MarkRow{"IAmongRomans", "i.", LowerRoman, LowerRoman, 1, "", "."},
                                         MarkRow{"VByItselfIsALetter", "v.", None, LowerLetter, 22, "", "."},
                                         MarkRow{"VAmongRomans", "v.", LowerRoman, LowerRoman, 5, "", "."},
                                         MarkRow{"XAmongRomans", "X.", UpperRoman, UpperRoman, 10, "", "."},
                                         MarkRow{"CAfterNumbersIsALetter", "c.", Decimal, LowerLetter, 3, "", "."},
                                         MarkRow{"TwoAmongLetters", "ii", LowerLetter, LowerLetter, 243, "", ""},
                                         MarkRow{"ALetterAmongRomans", "b.", LowerRoman, LowerLetter, 2, "", "."},
                                         MarkRow{"NoRomanOfItsLetters", "iix", None, Bullet, 1, "", ""},
                                         MarkRow{"OAmongLetters", "o", LowerLetter, LowerLetter, 15, "", ""},
                                         MarkRow{"ODotted", "o.", None, LowerLetter, 15, "", "."}),
                         markName);

INSTANTIATE_TEST_SUITE_P(Bullets, RtfListMarkText,
                         testing::Values(MarkRow{"ABullet", "\u2022\t", None, Bullet, 1, "", ""},
                                         MarkRow{"ACenteredDot", "\u00b7", Decimal, Bullet, 1, "", ""},
                                         MarkRow{"ACharacterOfASymbolFont", "\uf0b7\t", None, Bullet, 1, "", ""},
                                         MarkRow{"ADash", "-", None, Bullet, 1, "", ""},
                                         MarkRow{"AHollowOne", "o\t", None, Bullet, 1, "", ""},
                                         MarkRow{"AGreekLetter", "\u03b1)", None, Bullet, 1, "", ""},
                                         MarkRow{"ADigitOfAnotherScript", "\u0663.", None, Bullet, 1, "", ""},
                                         MarkRow{"AWord", "Note:", None, Bullet, 1, "", ""},
                                         MarkRow{"LettersAndDigits", "1st", None, Bullet, 1, "", ""},
                                         MarkRow{"MixedCase", "Ab.", None, Bullet, 1, "", ""},
                                         MarkRow{"TooManyDigits", "1234567890", None, Bullet, 1, "", ""}),
                         markName);

TEST(RtfListMark, OfNothingIsNone)
{
    EXPECT_FALSE(readListMark({}, RtfListStyle::Decimal).has_value());
    EXPECT_FALSE(readListMark(QStringLiteral(" \t "), RtfListStyle::Decimal).has_value());
}

TEST(RtfListMark, OfALongTextIsABullet)
{
    const QString text = QString(64, QLatin1Char('.')) + QLatin1Char('1');
    EXPECT_EQ(readListMark(text, RtfListStyle::None)->list, (RtfList{RtfListStyle::Bullet, 1, {}, {}}));
    EXPECT_EQ(readListMark(text.mid(1), RtfListStyle::None)->number, 1);
}

} // namespace
