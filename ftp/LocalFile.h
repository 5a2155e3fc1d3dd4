// The local side of a transfer: the one place where the client touches the file system.
#pragma once

#include "ftp/FtpErrors.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
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

/// A file that is read; closed by its destructor. Paths are UTF-8; "\" separates folders on every platform, and
/// U+F05C stands for one that belongs to a name.
class LocalFile
{
public:
    LocalFile() = default;
    LocalFile(const LocalFile&) = delete;
    LocalFile& operator=(const LocalFile&) = delete;
    ~LocalFile();

    LocalError open(const std::string& path);
    void close();
    bool isOpen() const { return m_handle != -1; }

    LocalError size(std::uint64_t& bytes) const;
    /// Reads up to @p wanted bytes; fewer at the end of the file only.
    LocalError read(char* buffer, std::size_t wanted, std::size_t& got);

    static bool exists(const std::string& path);

private:
    friend class LocalReplacement;

    LocalError write(std::string_view data);

    std::intptr_t m_handle = -1;
};

/// A file that takes the place of another, or of none, when it is whole: it is written beside it, under a name of
/// its own, and moved into its place by commit(). Until then the other file is as it was; without a commit nothing
/// stays behind; what a killed program left is taken away by a later replacement in the same folder. The new file belongs
/// to its owner alone.
class LocalReplacement
{
public:
    LocalReplacement() = default;
    LocalReplacement(const LocalReplacement&) = delete;
    LocalReplacement& operator=(const LocalReplacement&) = delete;
    ~LocalReplacement();

    /// Whether a replacement of @p path is likely to succeed; touches nothing.
    static LocalError probe(const std::string& path);

    /// Begins a replacement of @p path. Where that is a link, the file that it leads to is replaced.
    LocalError open(const std::string& path);
    bool isOpen() const { return m_file.isOpen(); }
    LocalError write(std::string_view data);
    /// Adds what the file at @p path, the one to be replaced, has behind as many bytes as were written.
    LocalError keepTailOf(const std::string& path);
    /// On the disk, and in its place.
    LocalError commit();

private:
    void discard();
    static void removeLeftovers(const std::filesystem::path& folder);

    LocalFile m_file;
    std::uint64_t m_written = 0;
    std::string m_beside; ///< native; empty: nothing stands beside
    std::string m_target; ///< native
};

} // namespace zul::ftp
