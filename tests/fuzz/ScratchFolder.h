// Where a target keeps the file that what it tries reads: in memory where the system has such a place.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <unistd.h>

namespace zul::fuzz {

class ScratchFolder
{
public:
    ScratchFolder()
    {
        const std::filesystem::path memory("/dev/shm");
        std::error_code error;
        m_folder =
            std::filesystem::is_directory(memory, error) ? memory : std::filesystem::temp_directory_path();
        m_folder /= "zul-fuzz-" + std::to_string(::getpid());
        std::filesystem::create_directory(m_folder);
    }
    ~ScratchFolder()
    {
        std::error_code error;
        std::filesystem::remove_all(m_folder, error);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string path(const char* name) const { return (m_folder / name).string(); }

    /// Makes a file of exactly these bytes. @return its path
    std::string write(const char* name, std::string_view bytes) const
    {
        std::ofstream(path(name), std::ios::binary | std::ios::trunc)
            .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return path(name);
    }

    std::string read(const char* name) const
    {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    std::filesystem::path m_folder;
};

/// One for the process, gone at its end.
inline const ScratchFolder& scratch()
{
    static const ScratchFolder folder;
    return folder;
}

} // namespace zul::fuzz
