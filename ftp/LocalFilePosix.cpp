#include "ftp/LocalFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace zul::ftp {

namespace {

std::string nativePath(const std::string& path)
{
    // Cut at a NUL, the system's functions would open another file than the one that was named.
    if (path.find('\0') != std::string::npos) {
        return {};
    }
    // Within a name, which may hold one here, a "\" comes as this character of the private use area.
    constexpr std::string_view BackslashInAName = "\xEF\x81\x9C"; // U+F05C
    std::string native = path;
    std::replace(native.begin(), native.end(), '\\', '/');
    for (std::size_t at = 0; (at = native.find(BackslashInAName, at)) != std::string::npos; ++at) {
        native.replace(at, BackslashInAName.size(), "\\");
    }
    return native;
}

std::string folderOf(const std::string& native)
{
    const std::size_t slash = native.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : native.substr(0, slash);
}

bool isFolder(const std::string& native)
{
    struct stat status
    {};
    return stat(native.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// The file that a path leads to through links; the path itself where there is none yet.
std::string targetOf(const std::string& native)
{
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(native.c_str(), nullptr), &std::free);
    return resolved ? resolved.get() : native;
}

LocalError fromErrno(int number, const std::string& native)
{
    switch (number) {
    case ENOENT:
        return !native.empty() && isFolder(folderOf(native)) ? LocalError::NoFile : LocalError::NoFolder;
    case ENOTDIR:
        return LocalError::NoFolder;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case ETXTBSY:
    case ENAMETOOLONG:
        return LocalError::Denied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return LocalError::Full;
    default:
        return LocalError::Fault;
    }
}

int descriptor(std::intptr_t handle)
{
    return static_cast<int>(handle);
}

} // namespace

LocalFile::~LocalFile()
{
    close();
}

LocalError LocalFile::open(const std::string& path)
{
    close();
    const std::string native = nativePath(path);
    // A pipe would wait for somebody who writes into it.
    const int file = ::open(native.c_str(), O_CLOEXEC | O_RDONLY | O_NONBLOCK);
    if (file == -1) {
        return fromErrno(errno, native);
    }
    struct stat status
    {};
    if (fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(file);
        return LocalError::Denied;
    }
    m_handle = file;
    return LocalError::None;
}

void LocalFile::close()
{
    if (isOpen()) {
        ::close(descriptor(m_handle));
    }
    m_handle = -1;
}

LocalError LocalFile::size(std::uint64_t& bytes) const
{
    struct stat status
    {};
    if (fstat(descriptor(m_handle), &status) != 0) {
        return LocalError::Fault;
    }
    bytes = static_cast<std::uint64_t>(status.st_size);
    return LocalError::None;
}

LocalError LocalFile::read(char* buffer, std::size_t wanted, std::size_t& got)
{
    got = 0;
    while (got < wanted) {
        const ssize_t count = ::read(descriptor(m_handle), buffer + got, wanted - got);
        if (count == 0) {
            break;
        }
        if (count < 0) {
            if (errno == EINTR) {
                continue;
            }
            return LocalError::Fault;
        }
        got += static_cast<std::size_t>(count);
    }
    return LocalError::None;
}

LocalError LocalFile::write(std::string_view data)
{
    while (!data.empty()) {
        const ssize_t count = ::write(descriptor(m_handle), data.data(), data.size());
        if (count < 0) {
            if (errno == EINTR) {
                continue;
            }
            return fromErrno(errno, {});
        }
        data.remove_prefix(static_cast<std::size_t>(count));
    }
    return LocalError::None;
}

bool LocalFile::exists(const std::string& path)
{
    return access(nativePath(path).c_str(), F_OK) == 0;
}

LocalReplacement::~LocalReplacement()
{
    discard();
}

LocalError LocalReplacement::probe(const std::string& path)
{
    const std::string native = targetOf(nativePath(path));
    if (native.empty()) {
        return LocalError::NoFolder;
    }
    struct stat status
    {};
    if (stat(native.c_str(), &status) == 0) {
        // A pipe or a device is not taken the place of.
        if (!S_ISREG(status.st_mode) || access(native.c_str(), W_OK) != 0) {
            return LocalError::Denied;
        }
    } else if (errno != ENOENT) {
        return fromErrno(errno, native);
    }
    const std::string folder = folderOf(native);
    if (!isFolder(folder)) {
        return LocalError::NoFolder;
    }
    return access(folder.c_str(), W_OK | X_OK) == 0 ? LocalError::None : LocalError::Denied;
}

LocalError LocalReplacement::open(const std::string& path)
{
    discard();
    if (const auto error = probe(path); error != LocalError::None) {
        return error;
    }
    m_target = targetOf(nativePath(path));
    removeLeftovers(folderOf(m_target));
    std::string beside = folderOf(m_target) + "/.zul-XXXXXX";
    const int file = mkostemp(beside.data(), O_CLOEXEC);
    if (file == -1) {
        return fromErrno(errno, m_target);
    }
    m_file.m_handle = file;
    m_written = 0;
    m_beside = beside;
    return LocalError::None;
}

LocalError LocalReplacement::commit()
{
    // Data first: a machine that stops after the renaming must not find an empty file.
    if (fsync(descriptor(m_file.m_handle)) != 0) {
        return fromErrno(errno, m_target);
    }
    m_file.close();
    if (rename(m_beside.c_str(), m_target.c_str()) != 0) {
        return fromErrno(errno, m_target);
    }
    m_beside.clear();
    return LocalError::None;
}

void LocalReplacement::discard()
{
    m_file.close();
    if (!m_beside.empty()) {
        unlink(m_beside.c_str());
    }
    m_beside.clear();
}

} // namespace zul::ftp
