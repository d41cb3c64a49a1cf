#include "store/SubjectFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;
using Reason = StoreError::Reason;

namespace {

[[noreturn]] void refuse(Reason reason, const fs::path &path, const std::string &text)
{
    throw StoreError(reason, 0, shownPath(path), text);
}

[[noreturn]] void refuseForErrno(int error, const fs::path &path)
{
    refuse(reasonOfSystemError(error), path, std::generic_category().message(error));
}

bool isAllowed(const fs::path &path, int mode)
{
    return ::faccessat(AT_FDCWD, path.c_str(), mode, AT_EACCESS) == 0;
}

fs::path folderOf(const fs::path &path)
{
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

void requireWritableFolder(const fs::path &folder, const fs::path &path)
{
    if (!isAllowed(folder, W_OK | X_OK)) {
        refuse(Reason::ReadOnly, path, "the folder is write-protected");
    }
}

} // namespace

Reason reasonOfSystemError(int error) noexcept
{
    switch (error) {
    case ENOENT:
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP: return Reason::NotFound;
    case EACCES:
    case EPERM: return Reason::NoPermission;
    case EROFS: return Reason::ReadOnly;
    case ENOSPC:
    case EDQUOT:
    case EFBIG: return Reason::DiskFull;
    default: return Reason::Engine;
    }
}

std::string shownPath(const fs::path &path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

fs::path requireSubjectPath(const fs::path &path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) {
        refuseForErrno(errno, path);
    }
    if (!S_ISREG(status.st_mode)) {
        refuse(Reason::NotAFile, path, "not a file");
    }
    if (!isAllowed(path, R_OK)) {
        refuse(Reason::NoPermission, path, "the file may not be read");
    }
    if (status.st_size == 0) {
        refuse(Reason::EmptyFile, path, "the file is empty");
    }
    if (!isAllowed(path, W_OK)) {
        refuse(Reason::ReadOnly, path, "the file is write-protected");
    }

    std::error_code error;
    fs::path real = fs::canonical(path, error);
    if (error) {
        refuseForErrno(error.value(), path);
    }
    requireWritableFolder(real.parent_path(), path);
    return real;
}

void requirePlaceForSubject(const fs::path &path)
{
    if (!path.has_filename()) {
        refuse(Reason::NotAFile, path, "no file name");
    }
    const fs::path folder = folderOf(path);
    struct stat status = {};
    if (::stat(folder.c_str(), &status) != 0) {
        refuseForErrno(errno, path);
    }
    if (::stat(path.c_str(), &status) == 0) {
        if (!S_ISREG(status.st_mode)) {
            refuse(Reason::NotAFile, path, "there is something else than a file");
        }
        if (!isAllowed(path, W_OK)) {
            refuse(Reason::ReadOnly, path, "the file is write-protected");
        }
    } else if (errno != ENOENT) {
        refuseForErrno(errno, path);
    }
    requireWritableFolder(folder, path);
}

void removeSubject(const fs::path &path)
{
    // The file goes first: without it, a journal left behind by a crash in between undoes nothing.
    for (const char *suffix : {"", "-journal", "-wal", "-shm"}) {
        std::error_code error;
        fs::remove(sideFile(path, suffix), error);
        if (error) {
            refuseForErrno(error.value(), path);
        }
    }
}

fs::path sideFile(const fs::path &path, const char *suffix)
{
    return fs::path(path) += suffix;
}

std::uint64_t fileSize(const fs::path &path) noexcept
{
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    return error ? 0 : size;
}
