#include "capacity/read_only_vfs.h"

#include <sqlite3.h>

namespace
{

/// An open file: the system's own stands behind it in the same memory.
struct File
{
    sqlite3_file asSqlite;

    sqlite3_file* real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

sqlite3_file* real(sqlite3_file* file)
{
    return reinterpret_cast<File*>(file)->real();
}

sqlite3_vfs* real(sqlite3_vfs* vfs)
{
    return static_cast<sqlite3_vfs*>(vfs->pAppData);
}

/// Version 1 has no shared memory, without which there is no WAL.
const sqlite3_io_methods methods = {
    .iVersion = 1,
    .xClose = [](sqlite3_file* file) { return real(file)->pMethods->xClose(real(file)); },
    .xRead = [](sqlite3_file* file, void* into, int size,
                sqlite3_int64 at) { return real(file)->pMethods->xRead(real(file), into, size, at); },
    .xWrite = [](sqlite3_file*, const void*, int, sqlite3_int64) { return SQLITE_READONLY; },
    .xTruncate = [](sqlite3_file*, sqlite3_int64) { return SQLITE_READONLY; },
    .xSync = [](sqlite3_file*, int) { return SQLITE_OK; },
    .xFileSize = [](sqlite3_file* file,
                    sqlite3_int64* size) { return real(file)->pMethods->xFileSize(real(file), size); },
    .xLock = [](sqlite3_file* file, int level) { return real(file)->pMethods->xLock(real(file), level); },
    .xUnlock = [](sqlite3_file* file, int level) { return real(file)->pMethods->xUnlock(real(file), level); },
    .xCheckReservedLock = [](sqlite3_file* file,
                             int* reserved) { return real(file)->pMethods->xCheckReservedLock(real(file), reserved); },
    .xFileControl = [](sqlite3_file*, int, void*) { return SQLITE_NOTFOUND; },
    .xSectorSize = [](sqlite3_file* file) { return real(file)->pMethods->xSectorSize(real(file)); },
    .xDeviceCharacteristics =
        [](sqlite3_file* file) { return real(file)->pMethods->xDeviceCharacteristics(real(file)); },
    .xShmMap = nullptr,
    .xShmLock = nullptr,
    .xShmBarrier = nullptr,
    .xShmUnmap = nullptr,
    .xFetch = nullptr,
    .xUnfetch = nullptr,
};

/// Opens the data file, and a journal for a look at whether it is hot; nothing else, and nothing anew.
int openFile(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int flags, int* outFlags)
{
    file->pMethods = nullptr;
    const bool journalToRead = (flags & SQLITE_OPEN_MAIN_JOURNAL) != 0 && (flags & SQLITE_OPEN_READONLY) != 0;
    if ((flags & SQLITE_OPEN_CREATE) != 0 || ((flags & SQLITE_OPEN_MAIN_DB) == 0 && !journalToRead))
        return SQLITE_CANTOPEN;
    const int result = real(vfs)->xOpen(real(vfs), name, real(file), flags, outFlags);
    if (real(file)->pMethods != nullptr)
        file->pMethods = &methods;
    return result;
}

sqlite3_vfs* registered()
{
    static sqlite3_vfs vfs = *sqlite3_vfs_find(nullptr);
    vfs.pAppData = sqlite3_vfs_find(nullptr);
    vfs.pNext = nullptr;
    vfs.iVersion = 1;
    vfs.szOsFile += static_cast<int>(sizeof(File));
    vfs.zName = "reading";
    vfs.xOpen = openFile;
    vfs.xDelete = [](sqlite3_vfs*, const char*, int) { return SQLITE_IOERR_DELETE; };
    vfs.xAccess = [](sqlite3_vfs* self, const char* name, int flags, int* result) {
        return real(self)->xAccess(real(self), name, flags, result);
    };
    vfs.xFullPathname = [](sqlite3_vfs* self, const char* name, int size, char* into) {
        return real(self)->xFullPathname(real(self), name, size, into);
    };
    vfs.xRandomness = [](sqlite3_vfs* self, int size, char* into) {
        return real(self)->xRandomness(real(self), size, into);
    };
    vfs.xSleep = [](sqlite3_vfs* self, int microseconds) { return real(self)->xSleep(real(self), microseconds); };
    vfs.xCurrentTime = [](sqlite3_vfs* self, double* days) { return real(self)->xCurrentTime(real(self), days); };
    vfs.xGetLastError = [](sqlite3_vfs* self, int size, char* into) {
        return real(self)->xGetLastError(real(self), size, into);
    };
    sqlite3_vfs_register(&vfs, 0);
    return &vfs;
}

} // namespace

const char* readOnlyVfs()
{
    static const sqlite3_vfs* const vfs = registered();
    return vfs->zName;
}
