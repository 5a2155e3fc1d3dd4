// Loading by the dynamic linker of POSIX systems.
#include "host/session/LoadedLibrary.h"

#include <QFile>

#include <dlfcn.h>
#include <stdexcept>

namespace zul::host {
LoadedLibrary::LoadedLibrary(const QString& file, const char* role)
    : m_file(file)
    , m_role(role)
    , m_handle(dlopen(QFile::encodeName(file).constData(), RTLD_NOW | RTLD_LOCAL))
{
    if (m_handle == nullptr) {
        const char* why = dlerror();
        throw std::runtime_error(std::string("the ") + m_role + " cannot be loaded: " +
                                 (why == nullptr ? file.toStdString() : std::string(why)));
    }
}

void* LoadedLibrary::address(const char* name) const
{
    void* found = dlsym(m_handle, name);
    if (found == nullptr) {
        throw std::runtime_error(m_file.toStdString() + " is no " + m_role + ": it exports no " + name);
    }
    return found;
}

QString LoadedLibrary::fileName(const QString& name)
{
    return QStringLiteral("lib%1.so").arg(name);
}
} // namespace zul::host
