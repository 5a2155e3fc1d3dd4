#pragma once
#include <filesystem>
#include <random>
#include <string>

namespace zul::host {

/// A folder that goes with everything in it.
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::random_device random;
        do {
            m_path = (std::filesystem::temp_directory_path() / ("zul-host-" + std::to_string(random())))
                         .generic_string();
        } while (!std::filesystem::create_directory(m_path)); // throws where it cannot
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string file(const std::string& name) const { return m_path + "/" + name; }
    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

} // namespace zul::host
