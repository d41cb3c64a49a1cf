#include "platform/rtf/RtfFieldReader.h"

#include <gtest/gtest.h>

namespace {

RtfFieldReader fieldOf(const char *instruction)
{
    RtfFieldReader field;
    field.begin();
    field.append(QString::fromUtf8(instruction));
    return field;
}

const auto rowName = [](const auto &info) { return info.param.name; };

struct AddressRow
{
    const char *name;
    const char *instruction; ///< UTF-8
    const char *address;     ///< UTF-8
};

void PrintTo(const AddressRow &row, std::ostream *out)
{
    *out << row.instruction;
}

class RtfFieldAddress : public testing::TestWithParam<AddressRow>
{
};

TEST_P(RtfFieldAddress, IsRead)
{
    EXPECT_EQ(fieldOf(GetParam().instruction).address().toStdString(), GetParam().address);
}

INSTANTIATE_TEST_SUITE_P(OfALink, RtfFieldAddress,
                         testing::Values(AddressRow{"MayBeInQuotes", R"(HYPERLINK "http://a.b/c")", "http://a.b/c"},
                                         AddressRow{"MayBeAWord", "HYPERLINK http://a.b/c", "http://a.b/c"},
                                         AddressRow{"HasBlanksInQuotes", R"(HYPERLINK "a file.txt")", "a file.txt"},
                                         AddressRow{"EndsAtABlankWithoutQuotes", "HYPERLINK a file.txt", "a"},
                                         AddressRow{"MayHaveBlanksAround", "  HYPERLINK \t \"a\" \n", "a"},
                                         AddressRow{"MayFollowItsNameAtOnce", R"(HYPERLINK  "a")", "a"},
                                         AddressRow{"MayHaveForeignLetters", R"(HYPERLINK "http://ü/π")", "http://ü/π"},
                                         AddressRow{"IsOfANameInSmallLetters", R"(hyperlink "a")", "a"},
                                         AddressRow{"IsTheFirstOfSeveral", R"(HYPERLINK "a" "b")", "a"}),
                         rowName);

INSTANTIATE_TEST_SUITE_P(
    WithSwitches, RtfFieldAddress,
    testing::Values(AddressRow{"HasItsPlaceBehindIt", R"(HYPERLINK "a" \l "p")", "a#p"},
                    AddressRow{"HasItsPlaceBeforeIt", R"(HYPERLINK \l "p" "a")", "a#p"},
                    AddressRow{"HasItsPlaceWithoutQuotes", R"(HYPERLINK a \l p)", "a#p"},
                    AddressRow{"HasItsPlaceByACapital", R"(HYPERLINK "a" \L "p")", "a#p"},
                    AddressRow{"IsNoneOfAPlaceAlone", R"(HYPERLINK \l "p")", ""},
                    AddressRow{"IsNoneOfAPlaceAndAFormat", R"(HYPERLINK \l "p" \* MERGEFORMAT)", ""},
                    AddressRow{"IsNoneOfAnEmptyAddressWithAPlace", R"(HYPERLINK "" \l "p")", ""},
                    AddressRow{"MayHaveAPlaceOfItsOwn", R"(HYPERLINK "a#p")", "a#p"},
                    AddressRow{"IsNotItsTip", R"(HYPERLINK \o "tip" "a")", "a"},
                    AddressRow{"IsNotItsWindow", R"(HYPERLINK \t "_blank" "a")", "a"},
                    AddressRow{"IsNotItsFormat", R"(HYPERLINK \* MERGEFORMAT "a")", "a"},
                    AddressRow{"StandsBeforeItsFormat", R"(HYPERLINK "a" \* MERGEFORMAT)", "a"},
                    AddressRow{"StandsBehindSwitchesWithoutAValue", R"(HYPERLINK \n \m "a")", "a"},
                    AddressRow{"StandsBehindASwitchThatLacksItsValue", R"(HYPERLINK \l \o "tip" "a")", "a"},
                    AddressRow{"MayHaveManySwitches", R"(HYPERLINK "a" \o "tip" \l "p" \t "_top" \* CHARFORMAT)",
                               "a#p"},
                    AddressRow{"MayHaveASwitchThatIsCutOff", R"(HYPERLINK "a" \l)", "a"}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    WithEscapes, RtfFieldAddress,
    testing::Values(AddressRow{"HasBackslashes", R"(HYPERLINK "C:\\a\\b.txt")", R"(C:\a\b.txt)"},
                    AddressRow{"OfAServerHasBackslashes", R"(HYPERLINK \\\\server\\file)", R"(\\server\file)"},
                    AddressRow{"HasQuotes", R"(HYPERLINK "say \"a\"")", R"(say "a")"},
                    AddressRow{"MayEndInABackslash", R"(HYPERLINK "a\\")", R"(a\)"},
                    AddressRow{"LosesControlCharacters", "HYPERLINK \"a\001b\nc\\\002\u2028d\"", "abcd"},
                    AddressRow{"MayLackItsClosingQuotes", R"(HYPERLINK "a b)", "a b"},
                    AddressRow{"MayLackWhatIsEscaped", R"(HYPERLINK a\)", R"(a\)"}),
    rowName);

INSTANTIATE_TEST_SUITE_P(Nonsense, RtfFieldAddress,
                         testing::Values(AddressRow{"IsNoneOfNothing", "", ""},
                                         AddressRow{"IsNoneOfBlanks", "  \t", ""},
                                         AddressRow{"IsNoneOfTheNameAlone", "HYPERLINK", ""},
                                         AddressRow{"IsNoneOfEmptyQuotes", "HYPERLINK \"\"", ""},
                                         AddressRow{"IsNoneOfAQuoteAlone", "HYPERLINK \"", ""},
                                         AddressRow{"IsNoneOfAnotherField", R"(INCLUDEPICTURE "a")", ""},
                                         AddressRow{"IsNoneOfALongerName", R"(HYPERLINKS "a")", ""},
                                         AddressRow{"IsNoneOfAnAddressAlone", R"("http://a.b")", ""},
                                         AddressRow{"IsNoneOfSwitches", R"(\l "a" \h)", ""}),
                         rowName);

struct SymbolRow
{
    const char *name;
    const char *instruction;
    std::optional<int> symbol;
};

void PrintTo(const SymbolRow &row, std::ostream *out)
{
    *out << row.instruction;
}

class RtfFieldSymbol : public testing::TestWithParam<SymbolRow>
{
};

TEST_P(RtfFieldSymbol, IsRead)
{
    EXPECT_EQ(fieldOf(GetParam().instruction).symbol(), GetParam().symbol);
}

INSTANTIATE_TEST_SUITE_P(
    RtfFieldReader, RtfFieldSymbol,
    testing::Values(SymbolRow{"MayBeDecimal", R"(SYMBOL 183 \f "Symbol" \s 10)", 183},
                    SymbolRow{"MayBeHexadecimal", R"(SYMBOL 0xF0B7 \f "Symbol")", 0xf0b7},
                    SymbolRow{"MayBeHexadecimalInCapitals", "SYMBOL 0XA7", 0xa7},
                    SymbolRow{"IsDecimalBehindANought", "SYMBOL 0100", 100},
                    SymbolRow{"MayBeInQuotes", R"(SYMBOL "183")", 183},
                    SymbolRow{"IsOfANameInSmallLetters", " symbol 65 ", 65}, SymbolRow{"MayBeNought", "SYMBOL 0", 0},
                    SymbolRow{"MayBeTheLargest", "SYMBOL 65535", 65535},
                    SymbolRow{"IsNoneBeyondTheLargest", "SYMBOL 65536", std::nullopt},
                    SymbolRow{"IsNoneBeyondAllNumbers", "SYMBOL 99999999999999999999", std::nullopt},
                    SymbolRow{"IsNoneBelowNought", "SYMBOL -1", std::nullopt},
                    SymbolRow{"IsNoneOfALetter", "SYMBOL a", std::nullopt},
                    SymbolRow{"IsNoneOfASwitch", R"(SYMBOL \f "Symbol" 183)", std::nullopt},
                    SymbolRow{"IsNoneOfTheNameAlone", "SYMBOL", std::nullopt},
                    SymbolRow{"IsNoneOfALink", R"(HYPERLINK "183")", std::nullopt},
                    SymbolRow{"IsNoneOfNothing", "", std::nullopt}),
    rowName);

TEST(RtfFieldReader, TakesItsInstructionInPieces)
{
    RtfFieldReader field = fieldOf("HYPER");
    field.append(QStringLiteral("LINK \"a"));
    field.append(QStringLiteral(" b\""));
    EXPECT_EQ(field.address(), QStringLiteral("a b"));
    field.begin();
    EXPECT_EQ(field.address(), QString());
    field.append(QStringLiteral("SYMBOL 65"));
    EXPECT_EQ(field.symbol(), 65);
}

class RtfLinkInstruction : public testing::TestWithParam<const char *>
{
};

TEST_P(RtfLinkInstruction, GivesItsAddressBack)
{
    const QString address = QString::fromUtf8(GetParam());
    EXPECT_EQ(fieldOf(linkInstruction(address).toUtf8().constData()).address(), address);
}

INSTANTIATE_TEST_SUITE_P(RtfFieldReader, RtfLinkInstruction,
                         testing::Values("a", "http://a.b/c?d=e&f#g", "a file.txt", R"(C:\a\b)", R"(\\server\x)",
                                         R"(\)", R"(a\)", R"(\")", R"("a" "b")", R"(\l "p")", "{}", "ü/π", " "));

} // namespace
