#include "automation/runtime/ClassRegistry.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <sstream>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <zulreg.h>

#include "base/CaseFold.h"
#include "base/Utf8.h"

namespace zul::runtime {

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t maxFileSize = 4 << 20; // a file beyond this is not ours

// A run of lines: what stands before the first section, or a section with its head line.
struct Section
{
    std::optional<CLSID> clsid;
    std::vector<std::string> lines;
};

class FileHandle
{
public:
    explicit FileHandle(int descriptor) noexcept
        : m_descriptor(descriptor)
    {}
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    ~FileHandle()
    {
        if (m_descriptor >= 0) {
            ::close(m_descriptor);
        }
    }
    int get() const noexcept { return m_descriptor; }
    bool close() noexcept
    {
        const int descriptor = std::exchange(m_descriptor, -1);
        return ::close(descriptor) == 0;
    }

private:
    int m_descriptor;
};

std::string environment(const char* name)
{
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value == nullptr ? std::string() : std::string(value);
}

std::string_view trimmed(std::string_view text) noexcept
{
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// "[{B7A0C731-…}]"
std::optional<CLSID> sectionClass(std::string_view line)
{
    line = trimmed(line);
    if (line.size() < 2 || line.front() != '[' || line.back() != ']') {
        return std::nullopt;
    }
    IID iid{};
    const std::u16string text = utf16FromUtf8(trimmed(line.substr(1, line.size() - 2)));
    return !text.empty() && SUCCEEDED(IIDFromString(text.c_str(), &iid)) ? std::optional<CLSID>(iid)
                                                                         : std::nullopt;
}

bool isSection(std::string_view line) noexcept
{
    line = trimmed(line);
    return !line.empty() && line.front() == '[';
}

HRESULT readSections(const std::string& path, std::vector<Section>& sections)
{
    sections.assign(1, Section{});
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) {
        return S_OK;
    }
    if (status.type() != fs::file_type::regular || fs::file_size(path, error) > maxFileSize || error) {
        return REGDB_E_READREGDB;
    }
    std::ifstream file(path, std::ios::binary);
    std::stringstream contents;
    contents << file.rdbuf();
    if (!file.is_open() || file.bad()) {
        return REGDB_E_READREGDB;
    }
    const std::string text = contents.str();
    if (text.find('\0') != std::string::npos) {
        return REGDB_E_READREGDB;
    }
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (isSection(line)) {
            sections.push_back({sectionClass(line), {}});
        }
        sections.back().lines.push_back(line);
    }
    return S_OK;
}

std::vector<RegisteredClass> classesOf(const std::vector<Section>& sections)
{
    std::vector<RegisteredClass> classes;
    for (const Section& section : sections) {
        if (!section.clsid) {
            continue;
        }
        RegisteredClass entry;
        entry.clsid = *section.clsid;
        for (const std::string& line : section.lines) {
            const std::size_t equals = line.find('=');
            if (equals == std::string::npos) {
                continue;
            }
            const std::string_view key = trimmed(std::string_view(line).substr(0, equals));
            const std::string value(trimmed(std::string_view(line).substr(equals + 1)));
            if (key == "ProgID") {
                entry.progId = utf16FromUtf8(value);
            } else if (key == "Description") {
                entry.description = utf16FromUtf8(value);
            } else if (key == "Library") {
                entry.library = value;
            }
        }
        classes.push_back(std::move(entry));
    }
    return classes;
}

Section sectionFor(const RegisteredClass& entry)
{
    OLECHAR text[39];
    StringFromGUID2(entry.clsid, text, 39);
    Section section;
    section.clsid = entry.clsid;
    std::string head = utf8FromUtf16(text);
    head.insert(head.begin(), '[');
    head.push_back(']');
    section.lines.push_back(std::move(head));
    if (!entry.progId.empty()) {
        section.lines.push_back("ProgID=" + utf8FromUtf16(entry.progId));
    }
    if (!entry.description.empty()) {
        section.lines.push_back("Description=" + utf8FromUtf16(entry.description));
    }
    section.lines.push_back("Library=" + entry.library);
    return section;
}

bool writeAll(int descriptor, std::string_view text) noexcept
{
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// Who may read the file: as before, and where there was none, the user alone, as with everything else that is
// his; a file that the environment names may be meant for others too.
mode_t permissionsFor(const std::string& path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) == 0) {
        return status.st_mode & 0777;
    }
    return environment("ZUL_AUTOMATION_REGISTRY").empty() ? 0600 : 0644;
}

// The files of the system's folder, in the order of their names.
std::vector<std::string> systemFiles()
{
    std::vector<std::string> files;
    std::error_code error;
    for (fs::directory_iterator entry(systemRegistryFolder(), error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->path().extension() == ".ini") {
            files.push_back(entry->path().string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

// The new file is complete on the disk before it takes the old one's name, so that a reader sees one or the
// other and a failure leaves the old one as it was.
HRESULT writeSections(const std::string& path, const std::vector<Section>& sections)
{
    std::string text;
    for (const Section& section : sections) {
        for (const std::string& line : section.lines) {
            text += line;
            text += '\n';
        }
    }
    std::string temporary = path + ".XXXXXX";
    FileHandle file(::mkstemp(temporary.data()));
    if (file.get() < 0) {
        return REGDB_E_WRITEREGDB;
    }
    const bool written = writeAll(file.get(), text) && ::fchmod(file.get(), permissionsFor(path)) == 0 &&
                         ::fsync(file.get()) == 0 && file.close() &&
                         ::rename(temporary.c_str(), path.c_str()) == 0;
    if (!written) {
        ::unlink(temporary.c_str());
        return REGDB_E_WRITEREGDB;
    }
    return S_OK;
}

// Reads, changes and writes the file while no other process does.
HRESULT changeFile(const std::function<HRESULT(std::vector<Section>&)>& change)
{
    std::error_code error;
    std::string path = registryPath();
    const fs::path folder = fs::path(path).parent_path();
    if (!folder.empty() && !fs::is_directory(folder, error)) {
        fs::create_directories(folder, error);
    }
    if (fs::is_symlink(path, error)) {
        const fs::path target = fs::canonical(path, error);
        path = error ? path : target.string();
    }
    const FileHandle lock(
        ::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, permissionsFor(path)));
    if (lock.get() < 0 || ::flock(lock.get(), LOCK_EX) != 0) {
        return REGDB_E_WRITEREGDB;
    }
    std::vector<Section> sections;
    HRESULT result = readSections(path, sections);
    if (SUCCEEDED(result)) {
        result = change(sections);
    }
    // S_FALSE: there is nothing to change.
    return result == S_OK ? writeSections(path, sections) : FAILED(result) ? result : S_OK;
}

} // namespace

std::string registryPath()
{
    std::string own = environment("ZUL_AUTOMATION_REGISTRY");
    if (!own.empty()) {
        return own;
    }
    std::string data = environment("XDG_DATA_HOME");
    if (data.empty() || data.front() != '/') {
        data = environment("HOME") + "/.local/share";
    }
    return data + "/Zul/automation-classes.ini";
}

std::string systemRegistryFolder()
{
    const std::string own = environment("ZUL_AUTOMATION_SYSTEM_REGISTRY");
    return own.empty() ? "/etc/zul-automation" : own;
}

HRESULT readClasses(std::vector<RegisteredClass>& classes)
{
    std::vector<Section> sections;
    const HRESULT result = readSections(registryPath(), sections);
    classes = classesOf(sections);
    for (const std::string& path : systemFiles()) {
        // What an administrator's file says wrong about one class says nothing about the others.
        if (SUCCEEDED(readSections(path, sections))) {
            std::vector<RegisteredClass> more = classesOf(sections);
            std::move(more.begin(), more.end(), std::back_inserter(classes));
        }
    }
    return result;
}

HRESULT writeClass(const RegisteredClass& entry)
{
    return changeFile([&](std::vector<Section>& sections) -> HRESULT {
        for (const RegisteredClass& other : classesOf(sections)) {
            if (!entry.progId.empty() && !(other.clsid == entry.clsid) &&
                equalNames(other.progId, entry.progId)) {
                return E_INVALIDARG;
            }
        }
        const auto isSame = [&](const Section& s) { return s.clsid && *s.clsid == entry.clsid; };
        const auto place = std::find_if(sections.begin(), sections.end(), isSame);
        if (place == sections.end()) {
            sections.push_back(sectionFor(entry));
            return S_OK;
        }
        *place = sectionFor(entry);
        sections.erase(std::remove_if(place + 1, sections.end(), isSame), sections.end());
        return S_OK;
    });
}

HRESULT removeClass(const CLSID& clsid)
{
    std::error_code error;
    if (fs::status(registryPath(), error).type() == fs::file_type::not_found) {
        return S_OK; // no file is made to say that nothing is in it
    }
    return changeFile([&](std::vector<Section>& sections) -> HRESULT {
        const auto end = std::remove_if(sections.begin(), sections.end(),
                                        [&](const Section& s) { return s.clsid && *s.clsid == clsid; });
        const bool found = end != sections.end();
        sections.erase(end, sections.end());
        return found ? S_OK : S_FALSE;
    });
}

} // namespace zul::runtime
