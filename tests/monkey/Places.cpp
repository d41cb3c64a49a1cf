#include "tests/monkey/Places.h"

#include "store/StoreError.h"
#include "tests/forms/SubjectTrouble.h"
#include "tests/monkey/World.h"
#include "tests/support/Pictures.h"
#include "tests/support/TestSubject.h"

#include <QDir>
#include <QFile>
#include <QSettings>

#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sqlite3.h>
#include <string_view>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::array subjects{"Odd Things.crl", "Using Cramlet.crl", "States and Capitals.crl"};
constexpr const char *oddSubject = subjects.front();

/// As wide as that of any other process, wherever it is shown.
fs::path rootOfProcess()
{
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), "cramlet-monkey-%08d", getpid());
    return fs::temp_directory_path() / name.data();
}

QString shown(const fs::path &path)
{
    return QString::fromStdString(path.string());
}

std::string contentsOf(const fs::path &file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<fs::path> filesIn(const fs::path &folder)
{
    std::vector<fs::path> files;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// A number that the file answers, or -1.
int ask(const fs::path &subject, const std::string &query)
{
    sqlite3 *database = nullptr;
    sqlite3_stmt *statement = nullptr;
    int answer = -1;
    if (sqlite3_open_v2(subject.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK &&
        sqlite3_prepare_v2(database, query.c_str(), -1, &statement, nullptr) == SQLITE_OK &&
        sqlite3_step(statement) == SQLITE_ROW) {
        answer = sqlite3_column_int(statement, 0);
    }
    sqlite3_finalize(statement);
    sqlite3_close(database);
    return answer;
}

/// The key of a row of \p table, or 0 if it has none.
int rowOf(const fs::path &subject, const char *table, Random &random)
{
    const int rows = ask(subject, std::string("SELECT count(*) FROM ") + table);
    if (rows <= 0) {
        return 0;
    }
    return ask(subject,
               std::string("SELECT \"Index\" FROM ") + table + " LIMIT 1 OFFSET " + std::to_string(random.below(rows)));
}

/// What another program does to a row of a table; "?" stands for its key.
struct Change
{
    const char *name;
    const char *table;
    const char *statements;
};

constexpr std::array changes{
    Change{"deletes a card", "FlashCards", "DELETE FROM FlashCards WHERE \"Index\" = ?"},
    Change{"marks a card", "FlashCards", "UPDATE FlashCards SET Marked = 1 - Marked WHERE \"Index\" = ?"},
    Change{"deletes a topic", "Topics",
           "BEGIN; DELETE FROM Topics WHERE \"Index\" = ?; DELETE FROM FlashCards WHERE nIndex = ?; COMMIT"},
    Change{"deletes a topic's cards", "Topics", "DELETE FROM FlashCards WHERE nIndex = ?"},
    Change{"adds cards", "Topics",
           "INSERT INTO FlashCards (nIndex, Front, Back) VALUES (?, '{\\rtf1 new}', 'new'), (?, '', 'back'), "
           "(?, 'front', ''), (?, '', ''), (?, '{\\rtf1 fifth}', '{\\rtf1 5th}'), (?, 'sixth', '6th')"},
    Change{"adds a topic", "Topics", "INSERT INTO Topics (Name, Notes) VALUES ('Topic after ?', '{\\rtf1 new}')"},
    Change{"shuffles", "Topics", "UPDATE FlashCards SET Shuffle = ((\"Index\" * 7 + ?) % 10) / 10.0"},
};

std::string filledIn(std::string statements, int key)
{
    for (std::size_t place = statements.find('?'); place != std::string::npos; place = statements.find('?')) {
        statements.replace(place, 1, std::to_string(key));
    }
    return statements;
}

struct BadSetting
{
    const char *key;
    const char *value;
};

constexpr std::array badSettings{
    BadSetting{"Settings/Color", "red"},      BadSetting{"Settings/Color", "-1"},
    BadSetting{"Notes/WindowState", "large"}, BadSetting{"Notes/Width", "99999999999"},
    BadSetting{"Cards/Height", "-20"},        BadSetting{"Test/Width", "1e5"},
    BadSetting{"EditCards/WindowState", "7"}, BadSetting{"Recent/Path3", "Documents"},
};

} // namespace

Places::Places()
    : m_root(rootOfProcess())
{
    fs::remove_all(m_root);
    for (const char *folder : {"home/Documents", "config", "data", "cache", "tmp", "run", "templates"}) {
        fs::create_directories(m_root / folder);
    }
    fs::permissions(m_root / "run", fs::perms::owner_all);
    const auto lead = [this](const char *variable, const char *folder) {
        qputenv(variable, QByteArray::fromStdString((m_root / folder).string()));
    };
    lead("HOME", "home");
    lead("XDG_CONFIG_HOME", "config");
    lead("XDG_DATA_HOME", "data");
    lead("XDG_CACHE_HOME", "cache");
    lead("XDG_RUNTIME_DIR", "run");
    lead("TMPDIR", "tmp");
    QDir::setCurrent(shown(m_root / "home"));

    makeFiles();
    for (const char *name : {subjects[1], subjects[2]}) {
        fs::copy_file(fs::path(SAMPLE_SUBJECTS) / name, m_root / "templates" / name);
    }
    makeOddSubject();
    beginAgain();
    makeSettings();
    fence::close(m_root.string());
}

Places::~Places()
{
    mend();
    fence::open();
    std::error_code ignored;
    fs::current_path(fs::temp_directory_path().root_path(), ignored);
    fs::remove_all(m_root, ignored);
}

QString Places::documents() const
{
    return shown(m_root / "home/Documents");
}

fs::path Places::subject(const char *name) const
{
    return m_root / "home/Documents" / name;
}

void Places::makeFiles()
{
    const fs::path home = m_root / "home";
    EXPECT_TRUE(redPicture({60, 30}).save(shown(home / "red.png")));
    EXPECT_TRUE(redPicture({900, 700}).save(shown(home / "large.jpg")));
    std::ofstream(home / "words.txt") << "Some words.\n";
    std::ofstream(home / "broken.png") << "no picture";
    std::ofstream(home / "empty.doc");
}

/// Texts of every kind that the program reads, as notes and as cards.
void Places::makeOddSubject()
{
    const fs::path file = m_root / "templates" / oddSubject;
    SubjectStore::create(file);
    const auto isText = [](const fs::path &seed) { return seed.extension() == ".rtf"; };
    std::vector<fs::path> texts = filesIn(fs::path(SEEDS) / "rtf");
    for (const fs::path &seed : filesIn(fs::path(SEEDS) / "objects")) {
        texts.push_back(seed);
    }
    std::erase_if(texts, [&](const fs::path &seed) { return !isText(seed); });

    std::string longText;
    for (int line = 0; line < 800; ++line) {
        longText += "Line " + std::to_string(line) + " of a {\\b long} text, which goes on and on.\\par ";
    }
    const std::string link = R"({\field{\*\fldinst HYPERLINK "https://example.org"}{\fldrslt a link}} )";
    const std::string heldFile = contentsOf(fs::path(SEEDS) / "objects/object.rtf");
    const std::string things = rtfOf(link + heldFile + contentsOf(fs::path(SEEDS) / "objects/picture.rtf"));
    const int pieces = addTopic(file, "Pieces [*] & <b>things</b>", things);
    const int wide = addTopic(file, std::string(maxTopicNameLength, 'w'), rtfOf(longText));
    const int foreign =
        addTopic(file, "\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d \xe2\x80\xae", contentsOf(fs::path(SEEDS) / "rtf/table.rtf"));
    const int longCards = addTopic(file, "Long", contentsOf(fs::path(SEEDS) / "rtf/note.rtf"));
    addTopic(file, "Empty", contentsOf(fs::path(SEEDS) / "rtf/list-tables.rtf"));

    SubjectStore store(file);
    CardSet cards = store.openRecordSet(cardsOfTopic(pieces));
    const auto add = [&](int topic, const std::string &front, const std::string &back) {
        cards.addNew();
        cards.setNumber(CardField::NIndex, topic);
        cards.setText(CardField::Front, front);
        cards.setText(CardField::Back, back);
        cards.update();
    };
    for (std::size_t seed = 0; seed < texts.size(); ++seed) {
        add(pieces, contentsOf(texts[seed]), contentsOf(texts[texts.size() - 1 - seed]));
    }
    for (int card = 0; card < 6; ++card) {
        add(pieces, things, rtfOf(link));
        add(wide, rtfOf("front " + std::to_string(card)), card % 2 == 0 ? "" : things);
        add(foreign, "", rtfOf("\\u1513?\\u1500? " + std::to_string(card)));
        add(longCards, rtfOf(longText.substr(0, 2000U << card)), rtfOf("back " + std::to_string(card)));
    }
}

void Places::makeSettings()
{
    QSettings settings(shown(m_root / "config/Cramlet/Cramlet.conf"), QSettings::IniFormat);
    for (std::size_t slot = 0; slot < subjects.size(); ++slot) {
        const fs::path path = subject(subjects.at(slot));
        settings.setValue(QStringLiteral("Recent/Path%1").arg(slot), shown(path));
        settings.setValue(QStringLiteral("Recent/Name%1").arg(slot), shown(path.stem()));
    }
}

void Places::beginAgain()
{
    mend();
    for (const fs::path &file : filesIn(m_root / "home/Documents")) {
        fs::remove(file);
    }
    for (const char *name : subjects) {
        fs::copy_file(m_root / "templates" / name, subject(name));
    }
}

// What is not of the program.

QString Places::damage(Random &random, const fs::path &file)
{
    const int kind = random.below(10);
    const bool isThere = m_trouble == nullptr && fs::is_regular_file(file) && fs::file_size(file) > 0;
    if (kind < 2 || !isThere) {
        const BadSetting &bad = random.oneOf(badSettings);
        QSettings(shown(m_root / "config/Cramlet/Cramlet.conf"), QSettings::IniFormat)
            .setValue(QString::fromLatin1(bad.key), QString::fromLatin1(bad.value));
        return QStringLiteral("setting %1=%2").arg(QString::fromLatin1(bad.key), QString::fromLatin1(bad.value));
    }
    if (kind < 7) {
        const Change &change = random.oneOf(changes);
        if (const int key = rowOf(file, change.table, random); key > 0) {
            OtherProgram(file).run(filledIn(change.statements, key));
        }
        return QString::fromLatin1(change.name);
    }
    if (kind < 8) {
        const fs::path copy = file.string() + ".copy";
        fs::copy_file(file, copy, fs::copy_options::overwrite_existing);
        fs::rename(copy, file);
        return QStringLiteral("replaced by a copy");
    }
    static constexpr std::array causes{locked, fullDisk, movedAway, deleted};
    const Cause &cause = random.oneOf(causes);
    m_untilMended = random.between(1, 12);
    m_trouble = cause.begin(file);
    return QStringLiteral("%1 for %2 events").arg(QString::fromLatin1(cause.name)).arg(m_untilMended);
}

void Places::goOn()
{
    if (m_trouble != nullptr && --m_untilMended <= 0) {
        m_trouble.reset();
    }
}

void Places::mend()
{
    m_trouble.reset();
}

// What the program leaves behind.

QStringList Places::complaints() const
{
    QStringList complaints;
    for (const fs::path &file : filesIn(m_root / "home/Documents")) {
        if (file.extension() != ".crl" || fs::file_size(file) == 0 || ask(file, "SELECT count(*) FROM Topics") < 0) {
            continue; // no subject, but a file that the learner saved there
        }
        if (ask(file, "SELECT count(*) FROM pragma_integrity_check WHERE integrity_check <> 'ok'") != 0) {
            complaints << shown(file.filename()) + QStringLiteral(": is damaged");
        }
        const int strays =
            ask(file, "SELECT count(*) FROM FlashCards WHERE nIndex NOT IN (SELECT \"Index\" FROM Topics)");
        if (strays != 0) {
            complaints << shown(file.filename()) + QStringLiteral(": %1 cards are without a topic").arg(strays);
        }
    }
    return complaints;
}

QStringList Places::sideFiles() const
{
    QStringList left;
    for (const fs::path &file : filesIn(m_root / "home/Documents")) {
        const std::string name = file.filename().string();
        if (name.ends_with("-journal") || name.ends_with("-wal") || name.ends_with("-shm")) {
            left << shown(file.filename());
        }
    }
    return left;
}
