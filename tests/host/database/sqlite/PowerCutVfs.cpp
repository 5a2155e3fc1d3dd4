#include "tests/host/database/sqlite/PowerCutVfs.h"

#include <sqlite3.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <new>
#include <random>
#include <stdexcept>
#include <vector>

namespace zul::host {

namespace {

constexpr std::int64_t sector = 512;

/// What a change that is not synced covered up.
struct Covered
{
    std::int64_t from = 0;
    std::vector<char> bytes;
    std::int64_t sizeBefore = 0;
};

struct Disk
{
    sqlite3_vfs* real = nullptr;
    sqlite3_vfs own{};
    std::uint64_t operations = 0;
    std::uint64_t cutAt = 0; // 0: never
    bool isCut = false;
    std::map<std::string, std::vector<Covered>> unsynced; // by path, in the order of the changes

    /// Whether the next change may happen.
    bool powered()
    {
        ++operations;
        isCut = isCut || (cutAt != 0 && operations >= cutAt);
        return !isCut;
    }
};

// SQLite knows its file systems for the time of the process; there is one disk at a time.
Disk* theDisk = nullptr;

struct File
{
    sqlite3_file base;
    sqlite3_file* real;
    std::vector<Covered>* unsynced; // null for a file without a name
};

File& fileOf(sqlite3_file* file)
{
    return *reinterpret_cast<File*>(file);
}

sqlite3_file* realOf(sqlite3_file* file)
{
    return fileOf(file).real;
}

// Remembers what stands where something is about to be written.
int cover(File& file, std::int64_t from, std::int64_t length)
{
    Covered covered;
    covered.from = from;
    sqlite3_int64 size = 0;
    const int code = file.real->pMethods->xFileSize(file.real, &size);
    if (code != SQLITE_OK) {
        return code;
    }
    covered.sizeBefore = size;
    const std::int64_t there = std::clamp<std::int64_t>(size - from, 0, length);
    covered.bytes.resize(static_cast<std::size_t>(there));
    if (there > 0) {
        const int read =
            file.real->pMethods->xRead(file.real, covered.bytes.data(), static_cast<int>(there), from);
        if (read != SQLITE_OK) {
            return read;
        }
    }
    file.unsynced->push_back(std::move(covered));
    return SQLITE_OK;
}

int closeFile(sqlite3_file* file)
{
    return realOf(file)->pMethods->xClose(realOf(file));
}

int readFile(sqlite3_file* file, void* to, int count, sqlite3_int64 from)
{
    return realOf(file)->pMethods->xRead(realOf(file), to, count, from);
}

int writeFile(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 to)
{
    if (!theDisk->powered()) {
        return SQLITE_IOERR_WRITE;
    }
    if (fileOf(file).unsynced != nullptr) {
        const int code = cover(fileOf(file), to, count);
        if (code != SQLITE_OK) {
            return code;
        }
    }
    return realOf(file)->pMethods->xWrite(realOf(file), bytes, count, to);
}

int truncateFile(sqlite3_file* file, sqlite3_int64 size)
{
    if (!theDisk->powered()) {
        return SQLITE_IOERR_TRUNCATE;
    }
    if (fileOf(file).unsynced != nullptr) {
        sqlite3_int64 before = 0;
        realOf(file)->pMethods->xFileSize(realOf(file), &before);
        const int code = cover(fileOf(file), size, std::max<std::int64_t>(before - size, 0));
        if (code != SQLITE_OK) {
            return code;
        }
    }
    return realOf(file)->pMethods->xTruncate(realOf(file), size);
}

int syncFile(sqlite3_file* file, int flags)
{
    if (!theDisk->powered()) {
        return SQLITE_IOERR_FSYNC;
    }
    if (fileOf(file).unsynced != nullptr) {
        fileOf(file).unsynced->clear();
    }
    static_cast<void>(flags); // the real disk need not be waited for
    return SQLITE_OK;
}

int sizeOfFile(sqlite3_file* file, sqlite3_int64* size)
{
    return realOf(file)->pMethods->xFileSize(realOf(file), size);
}

int lockFile(sqlite3_file* file, int level)
{
    return realOf(file)->pMethods->xLock(realOf(file), level);
}

int unlockFile(sqlite3_file* file, int level)
{
    return realOf(file)->pMethods->xUnlock(realOf(file), level);
}

int checkReserved(sqlite3_file* file, int* result)
{
    return realOf(file)->pMethods->xCheckReservedLock(realOf(file), result);
}

int controlFile(sqlite3_file* file, int operation, void* argument)
{
    return realOf(file)->pMethods->xFileControl(realOf(file), operation, argument);
}

int sectorSize(sqlite3_file*)
{
    return static_cast<int>(sector);
}

int characteristics(sqlite3_file*)
{
    return 0;
}

int mapShared(sqlite3_file* file, int region, int size, int extend, void volatile** result)
{
    return realOf(file)->pMethods->xShmMap(realOf(file), region, size, extend, result);
}

int lockShared(sqlite3_file* file, int offset, int count, int flags)
{
    return realOf(file)->pMethods->xShmLock(realOf(file), offset, count, flags);
}

void barrier(sqlite3_file* file)
{
    realOf(file)->pMethods->xShmBarrier(realOf(file));
}

int unmapShared(sqlite3_file* file, int remove)
{
    return realOf(file)->pMethods->xShmUnmap(realOf(file), remove);
}

const sqlite3_io_methods methods{2,           closeFile,   readFile,        writeFile,  truncateFile,
                                 syncFile,    sizeOfFile,  lockFile,        unlockFile, checkReserved,
                                 controlFile, sectorSize,  characteristics, mapShared,  lockShared,
                                 barrier,     unmapShared, nullptr,         nullptr};

int openFile(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags)
{
    File& own = fileOf(file);
    own.base.pMethods = nullptr;
    own.real = reinterpret_cast<sqlite3_file*>(&own + 1);
    own.unsynced = name != nullptr ? &theDisk->unsynced[name] : nullptr;
    const int code = theDisk->real->xOpen(theDisk->real, name, own.real, flags, outFlags);
    if (own.real->pMethods != nullptr) {
        own.base.pMethods = &methods;
    }
    return code;
}

// The removal of a file is taken for done at once, as a file system with a journal of its own does it in order.
int deleteFile(sqlite3_vfs*, const char* name, int syncFolder)
{
    if (!theDisk->powered()) {
        return SQLITE_IOERR_DELETE;
    }
    theDisk->unsynced[name].clear();
    return theDisk->real->xDelete(theDisk->real, name, syncFolder);
}

// Takes one change back: all of it, or the sectors that chance picks.
void uncover(int handle, const Covered& covered, std::mt19937* chance)
{
    for (std::size_t at = 0; at < covered.bytes.size(); at += sector) {
        if (chance != nullptr && (*chance)() % 2 == 0) {
            continue;
        }
        const std::size_t count = std::min<std::size_t>(sector, covered.bytes.size() - at);
        if (::pwrite(handle, covered.bytes.data() + at, count, covered.from + static_cast<std::int64_t>(at)) <
            0) {
            throw std::runtime_error("the cut cannot be simulated");
        }
    }
    const bool grew = ::lseek(handle, 0, SEEK_END) > covered.sizeBefore;
    if ((chance == nullptr || ((*chance)() % 2 == 0 && grew)) &&
        ::ftruncate(handle, covered.sizeBefore) != 0) {
        throw std::runtime_error("the cut cannot be simulated");
    }
}

} // namespace

PowerCutVfs::PowerCutVfs()
{
    theDisk = new Disk;
    theDisk->real = sqlite3_vfs_find(nullptr);
    theDisk->own = *theDisk->real;
    theDisk->own.zName = "zul-power-cut";
    theDisk->own.szOsFile += static_cast<int>(sizeof(File));
    theDisk->own.xOpen = openFile;
    theDisk->own.xDelete = deleteFile;
    sqlite3_vfs_register(&theDisk->own, 1);
}

PowerCutVfs::~PowerCutVfs()
{
    sqlite3_vfs_unregister(&theDisk->own);
    sqlite3_vfs_register(theDisk->real, 1);
    delete theDisk;
    theDisk = nullptr;
}

void PowerCutVfs::cutAt(std::uint64_t operation)
{
    theDisk->cutAt = theDisk->operations + operation;
}

bool PowerCutVfs::isCut() const
{
    return theDisk->isCut;
}

std::uint64_t PowerCutVfs::operations() const
{
    return theDisk->operations;
}

void PowerCutVfs::lose(std::uint32_t seed)
{
    theDisk->isCut = true;
    theDisk->cutAt = 1;
    std::mt19937 chance(seed);
    for (auto& [path, changes] : theDisk->unsynced) {
        const int handle = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
        if (handle < 0) {
            continue;
        }
        for (auto change = changes.rbegin(); change != changes.rend(); ++change) {
            uncover(handle, *change, seed != 0 ? &chance : nullptr);
        }
        ::close(handle);
        changes.clear();
    }
}

} // namespace zul::host
