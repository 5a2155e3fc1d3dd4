#include "ftp/LocalFile.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace zul::ftp {

int runTimeNumber(LocalError error)
{
    switch (error) {
    case LocalError::NoFile:
        return LocalFileNotFound;
    case LocalError::NoFolder:
        return LocalPathNotFound;
    case LocalError::Denied:
        return PathFileAccessError;
    case LocalError::Full:
        return LocalDiskFull;
    case LocalError::None:
    case LocalError::Fault:
        break;
    }
    return DeviceIoError;
}

ErrorCode errorCode(LocalError error)
{
    switch (error) {
    case LocalError::None:
        return Success;
    case LocalError::NoFile:
        return FileNotFound;
    case LocalError::NoFolder:
        return PathNotFound;
    case LocalError::Denied:
        return AccessDenied;
    case LocalError::Full:
        return DiskFull;
    case LocalError::Fault:
        break;
    }
    return ReadFault;
}

/// Nobody is silent for an hour in the midst of a download.
void LocalReplacement::removeLeftovers(const std::filesystem::path& folder)
{
    namespace fs = std::filesystem;
    const auto longAgo = fs::file_time_type::clock::now() - std::chrono::hours(1);
    std::error_code ignored;
    for (fs::directory_iterator at(folder, ignored); !ignored && at != fs::directory_iterator();
         at.increment(ignored)) {
        std::error_code failure;
        const bool isOurs = at->path().filename().native().starts_with(fs::path(".zul-").native());
        if (isOurs && at->is_regular_file(failure) && at->last_write_time(failure) < longAgo && !failure) {
            fs::remove(at->path(), failure);
        }
    }
}

LocalError LocalReplacement::write(std::string_view data)
{
    const auto error = m_file.write(data);
    if (error == LocalError::None) {
        m_written += data.size();
    }
    return error;
}

LocalError LocalReplacement::keepTailOf(const std::string& path)
{
    LocalFile earlier;
    if (const auto error = earlier.open(path); error != LocalError::None) {
        return error == LocalError::NoFile ? LocalError::None : error;
    }
    std::array<char, 4096> buffer{};
    std::uint64_t passOver = m_written;
    for (;;) {
        std::size_t got = 0;
        if (const auto error = earlier.read(buffer.data(), buffer.size(), got); error != LocalError::None) {
            return error;
        }
        if (got == 0) {
            return LocalError::None;
        }
        const auto passed = static_cast<std::size_t>(std::min<std::uint64_t>(passOver, got));
        passOver -= passed;
        if (const auto error = write({buffer.data() + passed, got - passed}); error != LocalError::None) {
            return error;
        }
    }
}

} // namespace zul::ftp
