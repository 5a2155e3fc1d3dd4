#include "ftp/LocalFile.h"

#include "base/Utf8.h"

#include <algorithm>
#include <string>

#include <windows.h>

namespace zul::ftp {

namespace {

std::string utf8(const std::wstring& text)
{
    return utf8FromUtf16({reinterpret_cast<const char16_t*>(text.data()), text.size()});
}

std::wstring wide(const std::string& text)
{
    const std::u16string utf16 = utf16FromUtf8(text);
    return {reinterpret_cast<const wchar_t*>(utf16.data()), utf16.size()};
}

// In the system's form: "\" between folders, and the prefix that lifts the limit of 260 characters where a path is
// longer. Empty for what can be no path.
std::wstring nativePath(const std::string& path)
{
    // Cut at a NUL, the system's functions would open another file than the one that was named.
    if (path.empty() || path.find('\0') != std::string::npos) {
        return {};
    }
    std::wstring native = wide(path);
    std::replace(native.begin(), native.end(), L'/', L'\\');
    if (native.size() < MAX_PATH || native.starts_with(L"\\\\?\\")) {
        return native;
    }
    const DWORD needed = GetFullPathNameW(native.c_str(), 0, nullptr, nullptr);
    std::wstring full(needed, L'\0');
    full.resize(GetFullPathNameW(native.c_str(), needed, full.data(), nullptr));
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC\\" + full.substr(2) : L"\\\\?\\" + full;
}

std::wstring folderOf(const std::wstring& native)
{
    const std::size_t separator = native.rfind(L'\\');
    return separator == std::wstring::npos ? L"." : native.substr(0, separator + 1);
}

bool isFolder(const std::wstring& native)
{
    const DWORD attributes = GetFileAttributesW(native.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

LocalError fromSystem(DWORD number)
{
    switch (number) {
    case ERROR_FILE_NOT_FOUND:
        return LocalError::NoFile;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_INVALID_DRIVE:
    case ERROR_DIRECTORY:
        return LocalError::NoFolder;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
    case ERROR_FILENAME_EXCED_RANGE:
        return LocalError::Denied;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        return LocalError::Full;
    default:
        return LocalError::Fault;
    }
}

/// The file that a path leads to through links; the path itself where there is none yet.
std::wstring targetOf(const std::wstring& native)
{
    const HANDLE file = CreateFileW(native.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return native;
    }
    std::wstring target(GetFinalPathNameByHandleW(file, nullptr, 0, 0), L'\0');
    target.resize(GetFinalPathNameByHandleW(file, target.data(), static_cast<DWORD>(target.size()), 0));
    CloseHandle(file);
    return target.empty() ? native : target;
}

LocalError probeTarget(const std::wstring& target)
{
    const DWORD attributes = GetFileAttributesW(target.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        // Whether a folder takes new files is told by its rights alone, which only trying can weigh.
        return isFolder(folderOf(target)) ? LocalError::None : LocalError::NoFolder;
    }
    const DWORD refused = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DEVICE;
    return (attributes & refused) != 0 ? LocalError::Denied : LocalError::None;
}

HANDLE handleOf(std::intptr_t handle)
{
    return reinterpret_cast<HANDLE>(handle);
}

} // namespace

LocalFile::~LocalFile()
{
    close();
}

LocalError LocalFile::open(const std::string& path)
{
    close();
    const std::wstring native = nativePath(path);
    if (native.empty()) {
        return LocalError::NoFolder;
    }
    if (isFolder(native)) {
        return LocalError::Denied;
    }
    const HANDLE file =
        CreateFileW(native.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return fromSystem(GetLastError());
    }
    m_handle = reinterpret_cast<std::intptr_t>(file);
    return LocalError::None;
}

void LocalFile::close()
{
    if (isOpen()) {
        CloseHandle(handleOf(m_handle));
    }
    m_handle = -1;
}

LocalError LocalFile::size(std::uint64_t& bytes) const
{
    LARGE_INTEGER length{};
    if (!GetFileSizeEx(handleOf(m_handle), &length)) {
        return LocalError::Fault;
    }
    bytes = static_cast<std::uint64_t>(length.QuadPart);
    return LocalError::None;
}

LocalError LocalFile::read(char* buffer, std::size_t wanted, std::size_t& got)
{
    constexpr std::size_t most = 1U << 30U;
    got = 0;
    while (got < wanted) {
        DWORD count = 0;
        const auto piece = static_cast<DWORD>(std::min(wanted - got, most));
        if (!ReadFile(handleOf(m_handle), buffer + got, piece, &count, nullptr)) {
            return LocalError::Fault;
        }
        if (count == 0) {
            break;
        }
        got += count;
    }
    return LocalError::None;
}

LocalError LocalFile::write(std::string_view data)
{
    constexpr std::size_t most = 1U << 30U;
    while (!data.empty()) {
        DWORD count = 0;
        const auto piece = static_cast<DWORD>(std::min(data.size(), most));
        if (!WriteFile(handleOf(m_handle), data.data(), piece, &count, nullptr)) {
            return fromSystem(GetLastError());
        }
        data.remove_prefix(count);
    }
    return LocalError::None;
}

bool LocalFile::exists(const std::string& path)
{
    const std::wstring native = nativePath(path);
    return !native.empty() && GetFileAttributesW(native.c_str()) != INVALID_FILE_ATTRIBUTES;
}

LocalReplacement::~LocalReplacement()
{
    discard();
}

LocalError LocalReplacement::probe(const std::string& path)
{
    const std::wstring native = nativePath(path);
    return native.empty() ? LocalError::NoFolder : probeTarget(targetOf(native));
}

LocalError LocalReplacement::open(const std::string& path)
{
    discard();
    const std::wstring native = nativePath(path);
    if (native.empty()) {
        return LocalError::NoFolder;
    }
    const std::wstring target = targetOf(native);
    if (const auto error = probeTarget(target); error != LocalError::None) {
        return error;
    }
    removeLeftovers(folderOf(target));
    // The name of a moment; one that is taken is passed over.
    LARGE_INTEGER moment{};
    QueryPerformanceCounter(&moment);
    for (int i = 0; i < 100; ++i) {
        const std::wstring beside =
            folderOf(target) + (target.find(L'\\') == std::wstring::npos ? L"\\" : L"") + L".zul-" +
            std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(moment.QuadPart + i);
        const HANDLE file = CreateFileW(beside.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                                        FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            m_file.m_handle = reinterpret_cast<std::intptr_t>(file);
            m_written = 0;
            m_beside = utf8(beside);
            m_target = utf8(target);
            return LocalError::None;
        }
        if (GetLastError() != ERROR_FILE_EXISTS) {
            return fromSystem(GetLastError());
        }
    }
    return LocalError::Fault;
}

LocalError LocalReplacement::commit()
{
    // Data first: a machine that stops after the renaming must not find an empty file.
    if (!FlushFileBuffers(handleOf(m_file.m_handle))) {
        return fromSystem(GetLastError());
    }
    m_file.close();
    if (!MoveFileExW(wide(m_beside).c_str(), wide(m_target).c_str(),
                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        return fromSystem(GetLastError());
    }
    m_beside.clear();
    return LocalError::None;
}

void LocalReplacement::discard()
{
    m_file.close();
    if (!m_beside.empty()) {
        DeleteFileW(wide(m_beside).c_str());
    }
    m_beside.clear();
}

} // namespace zul::ftp
