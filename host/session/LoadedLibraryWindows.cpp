// Loading by Windows.
#include "host/session/LoadedLibrary.h"

#include <QDir>

#include <stdexcept>

#include <windows.h>

namespace zul::host {
namespace {
QString reason(DWORD error)
{
    wchar_t* text = nullptr;
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                                            FORMAT_MESSAGE_IGNORE_INSERTS,
                                        nullptr, error, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    const QString result = QString::fromWCharArray(text, static_cast<int>(length)).trimmed();
    LocalFree(text);
    return result.isEmpty() ? QStringLiteral("error %1").arg(error) : result;
}
} // namespace

LoadedLibrary::LoadedLibrary(const QString& file, const char* role)
    : m_file(file)
    , m_role(role)
    // What the library needs stands beside it, not beside the program.
    , m_handle(LoadLibraryExW(reinterpret_cast<const wchar_t*>(QDir::toNativeSeparators(file).utf16()),
                              nullptr, LOAD_WITH_ALTERED_SEARCH_PATH))
{
    if (m_handle == nullptr) {
        const DWORD error = GetLastError();
        throw std::runtime_error(std::string("the ") + m_role + " cannot be loaded: " + file.toStdString() +
                                 ": " + reason(error).toStdString());
    }
}

void* LoadedLibrary::address(const char* name) const
{
    auto* const found = reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(m_handle), name));
    if (found == nullptr) {
        throw std::runtime_error(m_file.toStdString() + " is no " + m_role + ": it exports no " + name);
    }
    return found;
}

QString LoadedLibrary::fileName(const QString& name)
{
    return name + QStringLiteral(".dll");
}
} // namespace zul::host
