#include "platform/rtf/OleObject.h"
#include "tests/support/Bytes.h"

#include <QList>

#include <cstdint>
#include <gtest/gtest.h>
#include <ostream>
#include <string>

namespace {

std::string block(const std::string &bytes)
{
    return u32(static_cast<std::int64_t>(bytes.size())) + bytes;
}

/// A length, the text and a NUL.
std::string name(const std::string &text)
{
    return block(text + nul);
}

std::string wide(const std::u16string &text)
{
    std::string bytes = u32(static_cast<std::int64_t>(text.size()));
    for (const char16_t character : text) {
        bytes += u16(character);
    }
    return bytes;
}

const std::string absent = u32(0);
const std::string noPresentation = u32(0x501) + u32(0);

std::string embedded(const std::string &className, const std::string &native,
                     const std::string &presentation = noPresentation)
{
    return u32(0x501) + u32(2) + name(className) + absent + absent + block(native) + presentation;
}

std::string presentation(const std::string &kind, const std::string &data)
{
    return u32(0x501) + u32(5) + name(kind) + u32(847) + u32(-847) + block(data);
}

/// The native data of a package, without the names in UTF-16.
std::string package(const std::string &label, const std::string &source, const std::string &temporary,
                    const std::string &file)
{
    return u16(2) + label + nul + source + nul + u16(0) + u16(3) + name(temporary) + block(file);
}

std::string_view viewOf(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

QString fileNameOf(const std::string &source)
{
    return readOlePackage(package({}, source, {}, "data"))->fileName;
}

// Streams.

TEST(OleStream, OfAnEmbeddedObjectHasAClassAndItsData)
{
    const std::string stream = embedded("Word.Document.8", "the document");
    const auto object = readOleObject(stream);
    ASSERT_TRUE(object);
    EXPECT_FALSE(object->isLinked);
    EXPECT_EQ(object->className, QStringLiteral("Word.Document.8"));
    EXPECT_EQ(object->native, "the document");
    EXPECT_EQ(object->presentation.kind, OlePresentation::Kind::None);
}

TEST(OleStream, MayBeOfAnyVersion)
{
    EXPECT_TRUE(readOleObject(u32(0) + embedded("A", "b").substr(4)));
    EXPECT_TRUE(readOleObject(u32(0xffffffff) + embedded("A", "b").substr(4)));
}

TEST(OleStream, OfALinkedObjectNamesAFile)
{
    const std::string stream = u32(0x501) + u32(1) + name("Excel.Sheet.8") + name("C:\\Sums\\year.xls") + name("R1C1") +
                               absent + u32(0) + u32(1) + presentation("DIB", "bits");
    const auto object = readOleObject(stream);
    ASSERT_TRUE(object);
    EXPECT_TRUE(object->isLinked);
    EXPECT_EQ(object->linkedFile, QStringLiteral("C:\\Sums\\year.xls"));
    EXPECT_EQ(object->native, "");
    EXPECT_EQ(object->presentation.data, "bits");
}

TEST(OleStream, OfAnObjectLinkedAcrossANetworkMayNameTheFileThereAlone)
{
    const std::string stream = u32(0x501) + u32(1) + name("Excel.Sheet.8") + absent + absent +
                               name("\\\\host\\share\\year.xls") + u32(0) + u32(1) + noPresentation;
    EXPECT_EQ(readOleObject(stream)->linkedFile, QStringLiteral("\\\\host\\share\\year.xls"));
}

TEST(OleStream, MayHaveATopicThatIsSkipped)
{
    const std::string stream = u32(0x501) + u32(2) + name("A") + name("topic") + name("item") + block("data");
    EXPECT_EQ(readOleObject(stream)->native, "data");
}

TEST(OleStream, OfAnotherFormatIsNoObject)
{
    for (const int format : {0, 3, 4, 5}) {
        EXPECT_FALSE(readOleObject(u32(0x501) + u32(format) + name("A") + absent + absent + block("data")));
    }
    EXPECT_FALSE(readOleObject({}));
    EXPECT_FALSE(readOleObject(u32(0x501)));
    EXPECT_FALSE(readOleObject("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1 a compound file"));
}

TEST(OleStream, TakesAClassNameInWesternLetters)
{
    EXPECT_EQ(readOleObject(embedded("Caf\xe9", ""))->className, QStringLiteral("Caf\u00e9"));
}

TEST(OleStream, DropsControlCharactersFromAClassName)
{
    EXPECT_EQ(readOleObject(embedded("A\x01\x7f\nB", ""))->className, QStringLiteral("AB"));
}

TEST(OleStream, EndsAClassNameAtItsFirstNul)
{
    const std::string stream = u32(0x501) + u32(2) + block("AB" + nul + "CD") + absent + absent + block("data");
    EXPECT_EQ(readOleObject(stream)->className, QStringLiteral("AB"));
    EXPECT_EQ(readOleObject(stream)->native, "data");
}

TEST(OleStream, WithAClassNameOfFourGigabytesHasNothingElse)
{
    const auto object = readOleObject(u32(0x501) + u32(2) + u32(0xffffffff) + "Package" + nul + std::string(900, 'x'));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->className, QStringLiteral("Package"));
    EXPECT_EQ(object->native, "");
}

TEST(OleStream, ShortensAnEndlessClassName)
{
    EXPECT_LE(readOleObject(embedded(std::string(100000, 'x'), ""))->className.size(), 255);
}

TEST(OleStream, CutsDataThatClaimsMoreThanIsThere)
{
    const std::string stream = u32(0x501) + u32(2) + name("A") + absent + absent + u32(0xfffffff0) + "half";
    EXPECT_EQ(readOleObject(stream)->native, "half");
}

TEST(OleStream, HoldsWhatIsThereWhereverItIsCut)
{
    const std::string whole = embedded("PBrush", "native", presentation("METAFILEPICT", "8 bytes.data"));
    for (std::size_t size = 8; size <= whole.size(); ++size) {
        const std::string cut = whole.substr(0, size);
        const auto object = readOleObject(cut);
        ASSERT_TRUE(object);
        EXPECT_TRUE(std::string_view("native").starts_with(object->native));
        EXPECT_TRUE(std::string_view("data").starts_with(object->presentation.data));
    }
}

TEST(OlePresentations, OfAMetafileComeWithoutTheMappingBeforeIt)
{
    const std::string stream =
        embedded("A", "b", presentation("METAFILEPICT", u16(8) + u16(847) + u16(847) + u16(0) + "metafile"));
    const auto object = readOleObject(stream);
    EXPECT_EQ(object->presentation.kind, OlePresentation::Kind::Metafile);
    EXPECT_EQ(object->presentation.data, "metafile");
}

TEST(OlePresentations, OfBitmapsComeAsTheyAre)
{
    const std::string dib = embedded("A", "b", presentation("DIB", "bits"));
    EXPECT_EQ(readOleObject(dib)->presentation.kind, OlePresentation::Kind::Dib);
    EXPECT_EQ(readOleObject(dib)->presentation.data, "bits");
    const std::string bitmap = embedded("A", "b", presentation("BITMAP", "bits"));
    EXPECT_EQ(readOleObject(bitmap)->presentation.kind, OlePresentation::Kind::Bitmap);
    EXPECT_EQ(readOleObject(bitmap)->presentation.data, "bits");
}

TEST(OlePresentations, OfUnknownKindsAreNamedSo)
{
    const std::string stream = embedded("A", "b", u32(0x501) + u32(5) + name("HOLOGRAM") + u32(3) + block("bits"));
    EXPECT_EQ(readOleObject(stream)->presentation.kind, OlePresentation::Kind::Other);
}

TEST(OlePresentations, OfAMetafileShorterThanItsMappingAreEmpty)
{
    const std::string stream = embedded("A", "b", presentation("METAFILEPICT", "short"));
    EXPECT_EQ(readOleObject(stream)->presentation.data, "");
}

// Packages.

TEST(OlePackages, HoldAFileUnderItsName)
{
    const std::string native = package("My notes", "C:\\Texts\\notes.txt", "C:\\Temp\\notes.txt", "the file");
    const auto read = readOlePackage(native);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->label, QStringLiteral("My notes"));
    EXPECT_EQ(read->fileName, QStringLiteral("notes.txt"));
    EXPECT_EQ(read->data, "the file");
}

TEST(OlePackages, PreferNamesInUtf16)
{
    const std::string native = package("???.txt", "C:\\???.txt", "C:\\t\\???.txt", "the file") +
                               wide(u"C:\\t\\\u666e\u6797.txt") + wide(u"\u666e\u6797") +
                               wide(u"C:\\\u666e\u6797\u65af.txt");
    const auto read = readOlePackage(native);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->label, QStringLiteral("\u666e\u6797"));
    EXPECT_EQ(read->fileName, QStringLiteral("\u666e\u6797\u65af.txt"));
    EXPECT_EQ(read->data, "the file");
}

TEST(OlePackages, KeepTheirFirstNamesIfThoseInUtf16AreCutOrEmpty)
{
    const std::string native = package("label", "C:\\a.txt", "C:\\t\\a.txt", "x");
    const std::string names = wide(u"C:\\t\\b.txt") + wide(u"other") + wide(u"C:\\b.txt");
    for (std::size_t size = 0; size < names.size(); ++size) {
        EXPECT_EQ(readOlePackage(native + names.substr(0, size))->fileName, QStringLiteral("a.txt")) << size;
    }
    EXPECT_EQ(readOlePackage(native + names)->fileName, QStringLiteral("b.txt"));
    EXPECT_EQ(readOlePackage(native + wide(u"") + wide(u"") + wide(u""))->label, QStringLiteral("label"));
    EXPECT_EQ(readOlePackage(native + u32(0xffffffff) + names)->fileName, QStringLiteral("a.txt"));
}

TEST(OlePackages, EndNamesInUtf16AtTheirFirstNul)
{
    const std::string names = wide(u"t") + wide(std::u16string(u"two\0words", 9)) + wide(u"a.txt");
    EXPECT_EQ(readOlePackage(package("l", "s", "t", "x") + names)->label, QStringLiteral("two"));
}

TEST(OlePackages, AreNamedByTheirLabelIfTheyHaveNoPath)
{
    EXPECT_EQ(readOlePackage(package("notes.txt", "", "", "x"))->fileName, QStringLiteral("notes.txt"));
    EXPECT_EQ(readOlePackage(package("", "C:\\", "C:\\t\\notes.txt", "x"))->fileName, QStringLiteral("notes.txt"));
    EXPECT_EQ(readOlePackage(package("", "", "", "x"))->fileName, QString());
}

TEST(OlePackages, OfOtherKindsHoldNoFile)
{
    const std::string native =
        u16(2) + "link" + nul + "C:\\a.txt" + nul + u16(0) + u16(1) + name("C:\\a.txt") + block("no file");
    const auto read = readOlePackage(native);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->fileName, QStringLiteral("a.txt"));
    EXPECT_EQ(read->data, "");
}

TEST(OlePackages, BeginWithTheirSignatureAndTwoNames)
{
    EXPECT_FALSE(readOlePackage({}));
    EXPECT_FALSE(readOlePackage(u16(2)));
    EXPECT_FALSE(readOlePackage(u16(2) + "label without an end"));
    EXPECT_FALSE(readOlePackage(u16(2) + "label" + nul + "path"));
    EXPECT_FALSE(readOlePackage(u16(2) + "label" + nul + "path" + nul + u16(0)));
    EXPECT_FALSE(readOlePackage(u16(3) + package("a", "b", "c", "d").substr(2)));
}

TEST(OlePackages, HoldWhatIsThereWhereverTheyAreCut)
{
    const std::string whole = package("label", "path", "temporary", "the file");
    const std::size_t names = whole.find("path") + 5 + 4;
    for (std::size_t size = names; size <= whole.size(); ++size) {
        const std::string cut = whole.substr(0, size);
        const auto read = readOlePackage(cut);
        ASSERT_TRUE(read);
        EXPECT_TRUE(std::string_view("the file").starts_with(read->data));
    }
}

TEST(OlePackages, ClaimingMoreThanIsThereAreCut)
{
    const std::string native = u16(2) + "a" + nul + "b" + nul + u16(0) + u16(3) + name("c") + u32(0xffffffff) + "rest";
    EXPECT_EQ(readOlePackage(native)->data, "rest");
    const std::string named = u16(2) + "a" + nul + "b" + nul + u16(0) + u16(3) + u32(0xffffffff) + "rest";
    EXPECT_EQ(readOlePackage(named)->data, "");
}

TEST(OlePackageNames, LoseTheirFolders)
{
    EXPECT_EQ(fileNameOf("C:\\a\\b.txt"), QStringLiteral("b.txt"));
    EXPECT_EQ(fileNameOf("/a/b.txt"), QStringLiteral("b.txt"));
    EXPECT_EQ(fileNameOf("C:\\a/..\\b.txt"), QStringLiteral("b.txt"));
    EXPECT_EQ(fileNameOf("../../.profile"), QStringLiteral("profile"));
}

TEST(OlePackageNames, AreNeverFoldersOrHidden)
{
    EXPECT_EQ(fileNameOf("."), QString());
    EXPECT_EQ(fileNameOf(".."), QString());
    EXPECT_EQ(fileNameOf("a\\.."), QString());
    EXPECT_EQ(fileNameOf("... .. "), QString());
    EXPECT_EQ(fileNameOf(" . .hidden"), QStringLiteral("hidden"));
    EXPECT_EQ(fileNameOf("notes.txt. ."), QStringLiteral("notes.txt"));
    EXPECT_EQ(fileNameOf(std::string(1000000, '.') + "a"), QStringLiteral("a"));
}

TEST(OlePackageNames, LoseCharactersThatCannotBeSeen)
{
    EXPECT_EQ(fileNameOf("no\x01tes\x1f.t\x7fxt\n"), QStringLiteral("notes.txt"));
    const std::string native = package("", "", "", "x") + wide(u"") + wide(u"la\u202ebel\u2029") +
                               wide(u"notes\u202etxt\u200f.\u2066exe\u2028");
    EXPECT_EQ(readOlePackage(native)->fileName, QStringLiteral("notestxt.exe"));
    EXPECT_EQ(readOlePackage(native)->label, QStringLiteral("label"));
}

TEST(OlePackageNames, LoseCharactersThatFilesCannotHave)
{
    EXPECT_EQ(fileNameOf("a*b:c|d<e>f\"g.txt"), QStringLiteral("abcdefg.txt"));
}

TEST(OlePackageNames, KeepAPlaceForEachLetterThatWasLost)
{
    EXPECT_EQ(fileNameOf("C:\\????.zip"), QStringLiteral("____.zip"));
}

TEST(OlePackageNames, AreShortenedBeforeTheirEnding)
{
    const QString name = fileNameOf(std::string(5000, 'x') + ".txt");
    EXPECT_EQ(name.size(), 200);
    EXPECT_TRUE(name.endsWith(QStringLiteral("x.txt")));

    const std::string native =
        package("", "", "", "x") + wide(u"") + wide(u"") + wide(std::u16string(300, u'\u666e') + u".txt");
    const QString wideName = readOlePackage(native)->fileName;
    EXPECT_LE(wideName.toUtf8().size(), 200);
    EXPECT_TRUE(wideName.endsWith(QStringLiteral("\u666e.txt")));
}

TEST(OlePackageNames, AreNotCutWithinACharacter)
{
    std::u16string pairs;
    for (int pair = 0; pair < 120; ++pair) {
        pairs += u"\U0001f600";
    }
    const QString name = readOlePackage(package("", "", "", "x") + wide(u"") + wide(u"") + wide(pairs))->fileName;
    EXPECT_EQ(name.toUtf8().size(), 200);
    EXPECT_FALSE(name.toUcs4().contains(QChar::ReplacementCharacter));
}

// Writing.

struct WrittenName
{
    const char *name;
    QString fileName;
};

void PrintTo(const WrittenName &row, std::ostream *out)
{
    *out << row.name;
}

const auto rowName = [](const auto &info) { return info.param.name; };

class WrittenPackages : public testing::TestWithParam<WrittenName>
{
};

TEST_P(WrittenPackages, ReadBackAsTheyWere)
{
    QByteArray file("the\0file\r\n", 10);
    file += QByteArray(70000, '\xff');
    const QByteArray stream = writeOlePackage(GetParam().fileName, file);
    const auto object = readOleObject(viewOf(stream));
    ASSERT_TRUE(object);
    EXPECT_FALSE(object->isLinked);
    EXPECT_EQ(object->className, QStringLiteral("Package"));
    EXPECT_EQ(object->presentation.kind, OlePresentation::Kind::None);
    const auto read = readOlePackage(object->native);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->fileName, GetParam().fileName);
    EXPECT_EQ(read->label, GetParam().fileName);
    EXPECT_EQ(read->data, viewOf(file));
}

INSTANTIATE_TEST_SUITE_P(Names, WrittenPackages,
                         testing::Values(WrittenName{"Plain", QStringLiteral("notes.txt")},
                                         WrittenName{"None", QString()},
                                         WrittenName{"Western", QStringLiteral("r\u00e9sum\u00e9 \u20ac.pdf")},
                                         WrittenName{"OfOtherScripts", QStringLiteral("\u666e\u6797 \u0416.zip")},
                                         WrittenName{"OutsideTheBasicPlane", QStringLiteral("\U0001f600.png")}),
                         rowName);

TEST(WrittenPackage, IsLaidOutAsOtherProgramsReadIt)
{
    const QByteArray stream = writeOlePackage(QStringLiteral("n\u0416\u00e9.a"), "file");
    const std::string ansi = "n?\xe9.a" + nul;
    const std::string inUtf16 = wide(u"n\u0416\u00e9.a");
    const std::string native =
        u16(2) + ansi + ansi + u16(0) + u16(3) + u32(6) + ansi + u32(4) + "file" + inUtf16 + inUtf16 + inUtf16;
    EXPECT_EQ(stream.toStdString(),
              u32(0x501) + u32(2) + u32(8) + "Package" + nul + u32(0) + u32(0) + block(native) + u32(0x501) + u32(0));
}

TEST(WrittenPackage, HasOneQuestionMarkForACharacterOutsideTheBasicPlane)
{
    const QByteArray stream = writeOlePackage(QStringLiteral("\U0001f600.a"), "file");
    EXPECT_TRUE(stream.contains(QByteArray("\x02\0?.a\0", 6)));
}

TEST(WrittenPackage, TellsNothingOfTheFoldersOfThisMachine)
{
    const QByteArray stream = writeOlePackage(QStringLiteral("/home/someone/notes.txt"), "file");
    EXPECT_FALSE(stream.contains("someone"));
    EXPECT_EQ(readOlePackage(readOleObject(viewOf(stream))->native)->label, QStringLiteral("notes.txt"));
}

TEST(WrittenPackage, MayBeEmpty)
{
    const QByteArray stream = writeOlePackage(QStringLiteral("a.txt"), {});
    EXPECT_EQ(readOlePackage(readOleObject(viewOf(stream))->native)->data, "");
}

} // namespace
