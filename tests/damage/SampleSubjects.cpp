#include "tests/damage/SampleSubjects.h"

#include "store/SubjectStore.h"
#include "store/SubjectWriting.h"
#include "tests/damage/FileBytes.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <sqlite3.h>

namespace fs = std::filesystem;

namespace {

constexpr int topicCount = 10;
constexpr int cardsPerTopic = 30;
constexpr std::size_t smallPage = 512;

std::string bytesOfSample(const std::string &name)
{
    return bytesOf(fs::path(SAMPLE_SUBJECTS) / (name + ".crl"));
}

std::string longText(const char *word, int number, std::size_t size)
{
    std::string text;
    while (text.size() < size) {
        text.append(word).append(" ").append(std::to_string(number)).append(" ");
    }
    return rtfOf(text);
}

SQLite::Database otherProgram(const fs::path &file)
{
    return {file.string(), SQLite::OPEN_READWRITE};
}

std::string largeSubject(const fs::path &file)
{
    SubjectStore::create(file);
    for (int number = 1; number <= topicCount; ++number) {
        const std::string name = "Topic " + std::to_string(number);
        const int topic = addTopic(file, name, longText("notes", number, 300 * static_cast<std::size_t>(number)));
        SubjectStore store(file);
        CardSet cards = store.openRecordSet(cardsOfTopic(topic));
        Transaction pass(store);
        for (int card = 0; card < cardsPerTopic; ++card) {
            cards.addNew();
            cards.setNumber(CardField::NIndex, topic);
            cards.setText(CardField::Front, longText("front", card, card % 10 == 7 ? 6000 : 150));
            cards.setText(CardField::Back, longText("back", card, card % 15 == 3 ? 3000 : 150));
            cards.setFlag(CardField::Marked, card % 4 == 0);
            cards.update();
        }
        pass.commit();
    }
    otherProgram(file).exec("PRAGMA page_size = " + std::to_string(smallPage) + "; VACUUM");
    return bytesOf(file);
}

/// The subject as a program leaves it that is killed in the middle of a change.
SampleSubject withJournal(const fs::path &file, const std::string &bytes)
{
    writeBytes(file, bytes);
    SQLite::Database killed = otherProgram(file);
    killed.exec("PRAGMA cache_size = 1; BEGIN; UPDATE FlashCards SET Front = upper(Front) || Back, Marked = 1;"
                "UPDATE Topics SET Notes = upper(Notes) || Notes");
    return {"a journal", 4096, bytesOf(file), "-journal", bytesOf(file.string() + "-journal")};
}

SampleSubject withLog(const fs::path &file, const std::string &bytes)
{
    writeBytes(file, bytes);
    SQLite::Database killed = otherProgram(file);
    killed.exec(
        "PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 0;"
        "UPDATE FlashCards SET Front = Front || Back WHERE \"Index\" % 3 = 0; UPDATE Topics SET Name = Name || '.'");
    return {"a write-ahead log", 4096, bytesOf(file), "-wal", bytesOf(file.string() + "-wal")};
}

std::vector<SampleSubject> makeSamples()
{
    // Journals and logs begin with a random number: the same in every run, so that damages can be replayed.
    sqlite3_test_control(SQLITE_TESTCTRL_PRNG_SEED, 1, nullptr);
    const TestFolder folder;
    const std::string tutorial = bytesOfSample("Using Cramlet");
    const std::string states = bytesOfSample("States and Capitals");
    return {
        {"Using Cramlet", 4096, tutorial, "", ""},
        {"States and Capitals", 4096, states, "", ""},
        {"a large subject", smallPage, largeSubject(folder.file("Large.crl")), "", ""},
        withJournal(folder.file("Journal.crl"), states),
        withLog(folder.file("Log.crl"), tutorial),
    };
}

} // namespace

const std::vector<SampleSubject> &sampleSubjects()
{
    static const std::vector<SampleSubject> samples = makeSamples();
    return samples;
}
