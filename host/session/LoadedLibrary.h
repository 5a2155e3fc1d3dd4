// A shared library loaded at run time.
#pragma once

#include <QString>

namespace zul::host {
// Loads a library and keeps it for the life of the process: objects of it may live in places that nobody sees, so
// that no moment is safe to unload it.
class LoadedLibrary
{
public:
    // The file's path in the platform's form. Throws std::runtime_error with a text for the user.
    // The role is what the texts call it.
    explicit LoadedLibrary(const QString& file, const char* role = "component");

    // The file of a library with this name: "libName.so", "Name.dll".
    [[nodiscard]] static QString fileName(const QString& name);

    // A function that the library exports. Throws std::runtime_error when there is none.
    template <typename Function>
    [[nodiscard]] Function* function(const char* name) const
    {
        return reinterpret_cast<Function*>(address(name));
    }

private:
    [[nodiscard]] void* address(const char* name) const;

    QString m_file;
    const char* m_role;
    void* m_handle = nullptr;
};
} // namespace zul::host
