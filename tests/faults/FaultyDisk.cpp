#include "FaultyDisk.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

FaultyDisk::FaultyDisk(int cachePages)
    : m_system(sqlite3_vfs_find(nullptr))
    , m_vfs(*m_system)
    , m_cachePages(cachePages)
{
    s_disk = this;
    m_vfs.pNext = nullptr;
    m_vfs.zName = "faulty";
    m_vfs.xOpen = &open;
    m_vfs.xDelete = &remove;
    m_vfs.xAccess = &access;
    m_vfs.xSleep = &sleep;
    sqlite3_vfs_register(&m_vfs, 1);
    if (m_cachePages > 0) {
        sqlite3_auto_extension(reinterpret_cast<void (*)()>(&limitCache));
    }
}

FaultyDisk::~FaultyDisk()
{
    sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(&limitCache));
    sqlite3_vfs_unregister(&m_vfs);
    sqlite3_vfs_register(m_system, 1);
    s_disk = nullptr;
}

void FaultyDisk::failAt(const DiskFault &fault, int nth, bool forGood)
{
    m_fault = &fault;
    m_forGood = forGood;
    m_callsLeft = nth;
    m_failures = 0;
}

int FaultyDisk::resultOf(DiskCall call)
{
    FaultyDisk &disk = *s_disk;
    if (disk.m_fault == nullptr || disk.m_fault->call != call || (disk.m_callsLeft > 0 && --disk.m_callsLeft > 0)) {
        return SQLITE_OK;
    }
    const DiskFault &fault = *disk.m_fault;
    ++disk.m_failures;
    if (!disk.m_forGood) {
        disk.clear();
    }
    errno = fault.systemError;
    return fault.engineCode;
}

const FaultyDisk::Methods &FaultyDisk::methodsOf(const sqlite3_file *file)
{
    for (const auto &methods : s_disk->m_methods) {
        if (&methods->ours == file->pMethods) {
            return *methods;
        }
    }
    std::abort(); // a file of another disk
}

const sqlite3_io_methods *FaultyDisk::methodsFor(const sqlite3_io_methods *systems, int openFlags)
{
    const bool isFile = (openFlags & SQLITE_OPEN_MAIN_DB) != 0;
    const bool isJournal = (openFlags & SQLITE_OPEN_MAIN_JOURNAL) != 0;
    for (const auto &methods : m_methods) {
        if (methods->systems == systems && methods->isFile == isFile && methods->isJournal == isJournal) {
            return &methods->ours;
        }
    }
    sqlite3_io_methods ours = *systems;
    ours.xRead = &read;
    ours.xWrite = &write;
    ours.xTruncate = &truncate;
    ours.xSync = &sync;
    ours.xFileSize = &fileSize;
    ours.xLock = &lock;
    ours.xUnlock = &unlock;
    ours.xCheckReservedLock = &checkReservedLock;
    m_methods.push_back(std::make_unique<Methods>(Methods{ours, systems, isFile, isJournal}));
    return &m_methods.back()->ours;
}

int FaultyDisk::open(sqlite3_vfs * /*vfs*/, const char *name, sqlite3_file *file, int flags, int *flagsOut)
{
    file->pMethods = nullptr;
    int code = resultOf(DiskCall::Open);
    if (code == SQLITE_OK) {
        code = s_disk->m_system->xOpen(s_disk->m_system, name, file, flags, flagsOut);
    }
    if (file->pMethods != nullptr) {
        file->pMethods = s_disk->methodsFor(file->pMethods, flags);
    }
    return code;
}

int FaultyDisk::remove(sqlite3_vfs * /*vfs*/, const char *name, int syncFolder)
{
    const int code = resultOf(DiskCall::Delete);
    if (code != SQLITE_OK) {
        return code;
    }
    s_disk->m_isFileWritten = false;
    return s_disk->m_system->xDelete(s_disk->m_system, name, syncFolder);
}

int FaultyDisk::access(sqlite3_vfs * /*vfs*/, const char *name, int flags, int *result)
{
    const int code = resultOf(DiskCall::Exists);
    return code != SQLITE_OK ? code : s_disk->m_system->xAccess(s_disk->m_system, name, flags, result);
}

int FaultyDisk::sleep(sqlite3_vfs * /*vfs*/, int microseconds)
{
    s_disk->m_waited += microseconds / 1000;
    if (s_disk->m_whenWaiting) {
        s_disk->m_whenWaiting();
    }
    return microseconds;
}

int FaultyDisk::read(sqlite3_file *file, void *buffer, int size, sqlite3_int64 offset)
{
    const int code = resultOf(DiskCall::Read);
    if (code != SQLITE_OK) {
        std::memset(buffer, '?', static_cast<std::size_t>(size));
        return code;
    }
    return methodsOf(file).systems->xRead(file, buffer, size, offset);
}

int FaultyDisk::write(sqlite3_file *file, const void *buffer, int size, sqlite3_int64 offset)
{
    const Methods &methods = methodsOf(file);
    s_disk->m_spills += methods.isJournal && s_disk->m_isFileWritten ? 1 : 0;
    s_disk->m_isFileWritten = s_disk->m_isFileWritten || methods.isFile;
    const int code = resultOf(DiskCall::Write);
    if (code != SQLITE_OK) {
        const int error = errno;
        (void)methods.systems->xWrite(file, buffer, size / 2, offset);
        errno = error;
        return code;
    }
    return methods.systems->xWrite(file, buffer, size, offset);
}

int FaultyDisk::truncate(sqlite3_file *file, sqlite3_int64 size)
{
    const int code = resultOf(DiskCall::Truncate);
    return code != SQLITE_OK ? code : methodsOf(file).systems->xTruncate(file, size);
}

int FaultyDisk::sync(sqlite3_file *file, int flags)
{
    const int code = resultOf(DiskCall::Sync);
    return code != SQLITE_OK ? code : methodsOf(file).systems->xSync(file, flags);
}

int FaultyDisk::fileSize(sqlite3_file *file, sqlite3_int64 *size)
{
    const int code = resultOf(DiskCall::Size);
    return code != SQLITE_OK ? code : methodsOf(file).systems->xFileSize(file, size);
}

int FaultyDisk::lock(sqlite3_file *file, int level)
{
    const int code = resultOf(DiskCall::Lock);
    return code != SQLITE_OK ? code : methodsOf(file).systems->xLock(file, level);
}

int FaultyDisk::unlock(sqlite3_file *file, int level)
{
    const int code = resultOf(DiskCall::Unlock);
    return code != SQLITE_OK ? code : methodsOf(file).systems->xUnlock(file, level);
}

int FaultyDisk::checkReservedLock(sqlite3_file *file, int *result)
{
    const int code = resultOf(DiskCall::LockCheck);
    return code != SQLITE_OK ? code : methodsOf(file).systems->xCheckReservedLock(file, result);
}

int FaultyDisk::limitCache(sqlite3 *engine, char ** /*error*/, const struct sqlite3_api_routines * /*api*/)
{
    const DiskFault *fault = std::exchange(s_disk->m_fault, nullptr);
    const std::string limit = "PRAGMA cache_size = " + std::to_string(s_disk->m_cachePages);
    sqlite3_exec(engine, limit.c_str(), nullptr, nullptr, nullptr);
    s_disk->m_fault = fault;
    return SQLITE_OK;
}
