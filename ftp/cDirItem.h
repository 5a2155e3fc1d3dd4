// One entry of a remote directory.
#pragma once

#include <cstdint>
#include <string>

namespace zul {

/// A plain holder. The Booleans are the bits of the entry's attributes; the dates are local, in days since
/// 1899-12-30 with the time as the fraction.
struct cDirItem
{
    bool ReadOnly = false;
    bool Hidden = false;
    bool System = false;
    bool Directory = false;
    bool Archive = false;
    bool Normal = false;
    bool Temporary = false;
    bool Compressed = false;
    bool Offline = false;
    double CreationTime = 0;
    double LastAccessTime = 0;
    double LastWriteTime = 0;
    std::int32_t FileSize = 0; ///< the low 32 bits of the size: negative from 2 GiB, wrapped from 4 GiB
    std::string Filename;      ///< as the server sent it, cut before the first NUL
};

} // namespace zul
