// The local side of a transfer: the one place where the client touches the file system.
#pragma once

#include "ftp/FtpErrors.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zul::ftp {

enum class LocalError
{
    None,
    NoFile,
    NoFolder,
    Denied, ///< not allowed, or not a file
    Full,   ///< the disk is
    Fault   ///< any other failure
};

/// The classic run-time error number of @p error (53, 76, 75, 61, 57).
int runTimeNumber(LocalError error);
/// The transport's error code of @p error.
ErrorCode errorCode(LocalError error);

/// An open file; closed by its destructor. Paths are UTF-8; "\" separates folders on every platform.
class LocalFile
{
public:
    enum class Mode
    {
        Read,
        Update, ///< for writing from the first byte; made when missing, never cut: a longer file keeps its tail
        Replace ///< for writing; made when missing, emptied when there
    };

    LocalFile() = default;
    LocalFile(const LocalFile&) = delete;
    LocalFile& operator=(const LocalFile&) = delete;
    ~LocalFile();

    LocalError open(const std::string& path, Mode mode);
    void close();
    bool isOpen() const { return m_handle != -1; }

    LocalError size(std::uint64_t& bytes) const;
    /// Reads up to @p wanted bytes; fewer at the end of the file only.
    LocalError read(char* buffer, std::size_t wanted, std::size_t& got);
    LocalError write(std::string_view data);

    /// Whether a Replace of @p path is likely to succeed; touches nothing.
    static LocalError probeReplace(const std::string& path);
    static bool exists(const std::string& path);

private:
    std::intptr_t m_handle = -1;
};

} // namespace zul::ftp
