#include "platform/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <csignal>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>

namespace {

QString asText(const char *text)
{
    return QString::fromUtf8(text);
}

/// Every test has a home of its own for the settings.
class SettingsStoreTest : public testing::Test
{
protected:
    SettingsStoreTest() { qputenv("XDG_CONFIG_HOME", m_home.path().toUtf8()); }

    [[nodiscard]] QString path() const { return m_home.filePath(QStringLiteral("Cramlet/Cramlet.conf")); }

    void writeByHand(const QByteArray &contents) const
    {
        QDir(m_home.path()).mkpath(QStringLiteral("Cramlet"));
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }

    [[nodiscard]] QByteArray contents() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_home;
};

const QString recent = QStringLiteral("Recent");
const QString notes = QStringLiteral("Notes");
const QString width = QStringLiteral("Width");

TEST_F(SettingsStoreTest, AnAbsentKeyReadsAsWhatTheCallerSays)
{
    const SettingsStore store;
    EXPECT_EQ(store.text(recent, QStringLiteral("Path0"), QStringLiteral("nothing")), QStringLiteral("nothing"));
    EXPECT_EQ(store.text(recent, QStringLiteral("Path0")), QString());
    EXPECT_EQ(store.number(notes, width, 7296), 7296);
}

TEST_F(SettingsStoreTest, ReadingCreatesNoFile)
{
    EXPECT_EQ(SettingsStore().text(notes, width), QString());
    EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(SettingsStoreTest, WhatIsWrittenIsOnTheDiskAtOnceUnderSectionAndKey)
{
    SettingsStore store;
    store.write(notes, width, QStringLiteral("9600"));
    EXPECT_EQ(contents().simplified(), "[Notes] Width=9600");
}

struct StoredText
{
    std::string name;
    const char *text;
};

class StoredTexts : public SettingsStoreTest, public testing::WithParamInterface<StoredText>
{
};

TEST_P(StoredTexts, ComeBackAsTheyWereAlsoAfterReopening)
{
    const QString key = QStringLiteral("Path3");
    const QString text = asText(GetParam().text);
    SettingsStore store;
    store.write(recent, key, text);
    EXPECT_EQ(store.text(recent, key, QStringLiteral("absent")), text);

    // What a new process would see: the same file at a place that was not read before.
    const QTemporaryDir other;
    QDir(other.path()).mkpath(QStringLiteral("Cramlet"));
    ASSERT_TRUE(QFile::copy(path(), other.filePath(QStringLiteral("Cramlet/Cramlet.conf"))));
    qputenv("XDG_CONFIG_HOME", other.path().toUtf8());
    EXPECT_EQ(SettingsStore().text(recent, key, QStringLiteral("absent")), text);
}

INSTANTIATE_TEST_SUITE_P(Table, StoredTexts,
                         testing::Values(StoredText{"Path", "/home/learner/Using Cramlet.crl"}, StoredText{"Empty", ""},
                                         StoredText{"Comma", "/a,b, c.crl"},
                                         StoredText{"Quotes", R"(He said "no", 'yes')"},
                                         StoredText{"Backslashes", R"(C:\Program Files\Cramlet\x01.crl)"},
                                         StoredText{"Semicolon", "a;b # c"}, StoredText{"Equals", "a=b=c"},
                                         StoredText{"BlanksAround", "  two  "},
                                         StoredText{"NotAscii", "/Übung/日本語 ναι 🎓.crl"},
                                         StoredText{"AtSign", "@Variant(no)"}, StoredText{"PercentSign", "50%20"},
                                         StoredText{"LineBreak", "a\nb"}),
                         [](const auto &row) { return row.param.name; });

TEST_F(SettingsStoreTest, ATextWithCommasThatWasWrittenByHandIsOneText)
{
    writeByHand("[Recent]\nPath0=/a,b.crl\n");
    EXPECT_EQ(SettingsStore().text(recent, QStringLiteral("Path0")), QStringLiteral("/a,b.crl"));
}

TEST_F(SettingsStoreTest, WritingKeepsKeysThatThisProgramDoesNotKnow)
{
    writeByHand("[Notes]\nColour=mauve\n\n[Later]\nList=a, b\nx=1\n");
    SettingsStore().write(notes, width, QStringLiteral("1"));
    const QString saved = QString::fromUtf8(contents().simplified());
    EXPECT_TRUE(saved.contains(QStringLiteral("Colour=mauve"))) << saved.toStdString();
    EXPECT_TRUE(saved.contains(QStringLiteral("List=a, b"))) << saved.toStdString();
    EXPECT_TRUE(saved.contains(QStringLiteral("x=1"))) << saved.toStdString();
}

TEST_F(SettingsStoreTest, ADamagedLineHindersNeitherReadingNorWritingTheOthers)
{
    writeByHand("[Notes]\nnonsense without a value\nHeight=5\n");
    SettingsStore store;
    EXPECT_EQ(store.number(notes, QStringLiteral("Height"), 0), 5);
    store.write(notes, width, QStringLiteral("6"));
    EXPECT_TRUE(contents().contains("Width=6"));
    EXPECT_TRUE(contents().contains("Height=5"));
}

struct StoredNumber
{
    std::string name;
    const char *text;
    double value;
};

class StoredNumbers : public SettingsStoreTest, public testing::WithParamInterface<StoredNumber>
{
};

TEST_P(StoredNumbers, AreReadAsDecimalText)
{
    SettingsStore store;
    store.write(notes, width, asText(GetParam().text));
    EXPECT_EQ(store.number(notes, width, -1), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Table, StoredNumbers,
                         testing::Values(StoredNumber{"Whole", "16777215", 16777215}, StoredNumber{"Zero", "0", 0},
                                         StoredNumber{"Negative", "-3", -3}, StoredNumber{"Positive", "+3", 3},
                                         StoredNumber{"Fraction", "5064.5", 5064.5},
                                         StoredNumber{"NoWholePart", ".25", 0.25},
                                         StoredNumber{"NoFraction", "12.", 12},
                                         StoredNumber{"BlanksAround", "  42\t", 42},
                                         StoredNumber{"LeadingZeros", "007", 7}),
                         [](const auto &row) { return row.param.name; });

class TextsThatAreNoNumbers : public SettingsStoreTest, public testing::WithParamInterface<StoredText>
{
};

TEST_P(TextsThatAreNoNumbers, AreATypeMismatchThatNamesKeyValueAndFile)
{
    SettingsStore store;
    const QString text = asText(GetParam().text);
    store.write(notes, width, text);
    try {
        const double number = store.number(notes, width, 1);
        FAIL() << "read as " << number;
    } catch (const SettingTypeMismatch &mismatch) {
        EXPECT_EQ(mismatch.section, notes);
        EXPECT_EQ(mismatch.key, width);
        EXPECT_EQ(mismatch.value, text);
        EXPECT_EQ(mismatch.file, path());
        const QString what = QString::fromUtf8(mismatch.what());
        EXPECT_TRUE(what.contains(width) && what.contains(notes) && what.contains(text) && what.contains(path()));
    }
}

INSTANTIATE_TEST_SUITE_P(Table, TextsThatAreNoNumbers,
                         testing::Values(StoredText{"Word", "wide"}, StoredText{"Empty", ""}, StoredText{"Blank", " "},
                                         StoredText{"Unit", "12pt"}, StoredText{"DecimalComma", "1,5"},
                                         StoredText{"Thousands", "9,600"}, StoredText{"Hexadecimal", "0x10"},
                                         StoredText{"Exponent", "1e3"}, StoredText{"Infinity", "inf"},
                                         StoredText{"NotANumber", "nan"}, StoredText{"TwoSigns", "--1"},
                                         StoredText{"OnlyAPoint", "."}, StoredText{"TwoNumbers", "1 2"},
                                         StoredText{"ForeignDigits", "١٢"}),
                         [](const auto &row) { return row.param.name; });

TEST_F(SettingsStoreTest, AFolderThatCannotBeMadeIsNoticedAndNamed)
{
    QFile inTheWay(m_home.filePath(QStringLiteral("Cramlet")));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    SettingsStore store;
    try {
        store.write(notes, width, QStringLiteral("1"));
        FAIL() << "the failure went unnoticed";
    } catch (const std::runtime_error &failure) {
        EXPECT_TRUE(QString::fromUtf8(failure.what()).contains(path())) << failure.what();
    }
}

TEST_F(SettingsStoreTest, AFullDiskIsNoticedAndTheNextWriteWorks)
{
    SettingsStore store;
    store.write(notes, width, QStringLiteral("1"));

    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    auto *const handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit full{0, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
    EXPECT_THROW(store.write(notes, width, QStringLiteral("2")), std::runtime_error);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, handler);

    EXPECT_TRUE(contents().contains("Width=1")) << "the old settings are whole";
    EXPECT_NO_THROW(store.write(notes, QStringLiteral("Height"), QStringLiteral("3")));
    EXPECT_TRUE(contents().contains("Height=3"));
}

TEST_F(SettingsStoreTest, SeveralKeysAreWrittenAtOnce)
{
    SettingsStore settings;
    settings.write(QStringLiteral("Notes"), {{QStringLiteral("Width"), QStringLiteral("9315")},
                                             {QStringLiteral("Height"), QStringLiteral("6105")}});
    const SettingsStore reopened;
    EXPECT_EQ(reopened.text(QStringLiteral("Notes"), QStringLiteral("Width")), QStringLiteral("9315"));
    EXPECT_EQ(reopened.text(QStringLiteral("Notes"), QStringLiteral("Height")), QStringLiteral("6105"));
}

TEST_F(SettingsStoreTest, TwoStoresOfOneProgramSeeTheSameSettings)
{
    SettingsStore one;
    SettingsStore other;
    one.write(notes, width, QStringLiteral("1"));
    EXPECT_EQ(other.number(notes, width, 0), 1);
    other.write(notes, width, QStringLiteral("2"));
    EXPECT_EQ(one.number(notes, width, 0), 2);
}

} // namespace
