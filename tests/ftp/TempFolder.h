// A folder of the test's own, and files in it.
#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <string_view>

namespace zul::test {

class TempFolder
{
public:
    TempFolder()
    {
        std::random_device random;
        do {
            m_path = std::filesystem::temp_directory_path() / ("zul-ftp-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(m_path)); // throws where it cannot
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    std::filesystem::path path() const { return m_path; }
    /// What stands in the folder under a name, which is UTF-8 on every system.
    std::filesystem::path path(const std::string& name) const
    {
        return m_path / std::u8string(name.begin(), name.end());
    }
    std::string file(const std::string& name) const { return utf8(path(name)); }

    std::string write(const std::string& name, std::string_view content) const
    {
        std::ofstream(path(name), std::ios::binary).write(content.data(), std::ssize(content));
        return file(name);
    }

    /// The content, or nothing when there is no such file.
    std::optional<std::string> read(const std::string& name) const
    {
        std::ifstream stream(path(name), std::ios::binary);
        if (!stream) {
            return std::nullopt;
        }
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }

    /// The names of what stands in the folder.
    std::set<std::string> names() const
    {
        std::set<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(m_path)) {
            found.insert(utf8(entry.path().filename()));
        }
        return found;
    }

private:
    static std::string utf8(const std::filesystem::path& path)
    {
        const std::u8string text = path.u8string();
        return {text.begin(), text.end()};
    }

    std::filesystem::path m_path;
};

/// @p size bytes that differ from their neighbours, so that a shifted or repeated piece shows.
inline std::string pattern(std::size_t size)
{
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>('!' + (i * 7 + i / 255) % 90);
    }
    return bytes;
}

} // namespace zul::test
