#pragma once

#include <array>
#include <functional>
#include <memory>
#include <sqlite3.h>
#include <vector>

/// A call that the engine makes to the disk.
enum class DiskCall : std::uint8_t { Open, Exists, Size, Lock, LockCheck, Unlock, Read, Write, Sync, Truncate, Delete };

inline constexpr std::size_t diskCallCount = static_cast<std::size_t>(DiskCall::Delete) + 1;

/// How a call fails.
struct DiskFault
{
    const char *name;
    DiskCall call;
    int engineCode;      ///< what the engine is told
    int systemError = 5; ///< errno; EIO
};

/// The disk of every engine that is opened without another name for it, while this exists: the system's,
/// whose calls can be made to fail.
///
/// A reading that fails leaves rubbish in the buffer, and a writing that fails has written half of it: the two that a
/// careless engine could take for success. The engines must be closed before this is destroyed. There is one at a time.
class FaultyDisk
{
public:
    /// \p cachePages: for every engine, instead of its own choice. With a handful of pages a transaction
    /// that changes more of them goes to the file before it is committed.
    explicit FaultyDisk(int cachePages = 0);
    FaultyDisk(const FaultyDisk &) = delete;
    FaultyDisk &operator=(const FaultyDisk &) = delete;
    ~FaultyDisk();

    /// The name of the disk without faults.
    [[nodiscard]] const char *systemName() const { return m_system->zName; }

    /// Lets the \p nth call from now on fail (1 is the next), and \p forGood all after it too.
    void failAt(const DiskFault &fault, int nth, bool forGood);
    /// Nothing fails any more.
    void clear() { m_fault = nullptr; }
    /// How often the fault came to pass since failAt().
    [[nodiscard]] int failures() const { return m_failures; }

    /// Called instead of waiting for a lock.
    void whenWaiting(std::function<void()> action) { m_whenWaiting = std::move(action); }
    /// Milliseconds for which the engine wanted to wait since then.
    [[nodiscard]] int waited() const { return m_waited; }
    void forgetWaits() { m_waited = 0; }

    /// How often a page of the file was written before the journal of its transaction was complete.
    [[nodiscard]] int spills() const { return m_spills; }

private:
    /// A table of calls of the system's, with ours in front.
    struct Methods
    {
        sqlite3_io_methods ours;
        const sqlite3_io_methods *systems;
        bool isFile;
        bool isJournal;
    };

    [[nodiscard]] static int resultOf(DiskCall call);
    [[nodiscard]] static const Methods &methodsOf(const sqlite3_file *file);
    [[nodiscard]] const sqlite3_io_methods *methodsFor(const sqlite3_io_methods *systems, int openFlags);

    static int open(sqlite3_vfs *vfs, const char *name, sqlite3_file *file, int flags, int *flagsOut);
    static int remove(sqlite3_vfs *vfs, const char *name, int syncFolder);
    static int access(sqlite3_vfs *vfs, const char *name, int flags, int *result);
    static int sleep(sqlite3_vfs *vfs, int microseconds);
    static int read(sqlite3_file *file, void *buffer, int size, sqlite3_int64 offset);
    static int write(sqlite3_file *file, const void *buffer, int size, sqlite3_int64 offset);
    static int truncate(sqlite3_file *file, sqlite3_int64 size);
    static int sync(sqlite3_file *file, int flags);
    static int fileSize(sqlite3_file *file, sqlite3_int64 *size);
    static int lock(sqlite3_file *file, int level);
    static int unlock(sqlite3_file *file, int level);
    static int checkReservedLock(sqlite3_file *file, int *result);
    static int limitCache(sqlite3 *engine, char **error, const struct sqlite3_api_routines *api);

    static inline FaultyDisk *s_disk = nullptr;

    sqlite3_vfs *m_system;
    sqlite3_vfs m_vfs;
    std::vector<std::unique_ptr<Methods>> m_methods;
    int m_cachePages;
    const DiskFault *m_fault = nullptr;
    bool m_forGood = false;
    int m_callsLeft = 0; ///< until the fault comes to pass
    int m_failures = 0;
    std::function<void()> m_whenWaiting;
    int m_waited = 0;
    bool m_isFileWritten = false; ///< since the journal was begun
    int m_spills = 0;
};
