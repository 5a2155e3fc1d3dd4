#include "session/Platform.h"

#include "automation/ModuleHandle.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace zul::platform {

namespace {

// The thread's awareness of screen resolutions in the numbers of Qt's platform option; -1 where the system is too old
// to tell. Looked up by name: Windows 7 has none of the functions.
int dpiAwareness()
{
    const HMODULE user = GetModuleHandleW(L"user32.dll");
    const auto find = [user](const char* name) {
        return reinterpret_cast<void*>(GetProcAddress(user, name));
    };
    using ThreadContext = void*(WINAPI*)();
    using AwarenessOf = int(WINAPI*)(void*);
    using AreEqual = BOOL(WINAPI*)(void*, void*);
    const auto threadContext = reinterpret_cast<ThreadContext>(find("GetThreadDpiAwarenessContext"));
    const auto awarenessOf = reinterpret_cast<AwarenessOf>(find("GetAwarenessFromDpiAwarenessContext"));
    const auto areEqual = reinterpret_cast<AreEqual>(find("AreDpiAwarenessContextsEqual"));
    if (threadContext == nullptr || awarenessOf == nullptr) {
        return -1;
    }
    void* const context = threadContext();
    constexpr std::intptr_t perMonitorTwo = -4;
    constexpr int perMonitor = 2;
    const int awareness = awarenessOf(context);
    const bool second = awareness == perMonitor && areEqual != nullptr &&
                        areEqual(context, reinterpret_cast<void*>(perMonitorTwo));
    return second ? perMonitor + 1 : awareness;
}

} // namespace

QString componentFolder()
{
    const std::wstring file = moduleFile();
    if (file.empty()) {
        return QDir::currentPath();
    }
    return QFileInfo(QString::fromStdWString(file)).absolutePath();
}

QString userFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Zul_MessageBuilder");
}

QString nativePath(const QString& path)
{
    return path.isEmpty() ? path
                          : QDir::toNativeSeparators(QDir::cleanPath(QDir::fromNativeSeparators(path)));
}

void prepareApplicationEnvironment()
{
    // Qt looks beside the host's program, and where the host's environment says; its plug-ins stand beside this
    // library.
    QCoreApplication::setLibraryPaths({componentFolder()});
}

QStringList applicationArguments()
{
    // The process keeps the awareness of resolutions that the host gave it, and no variable of its environment chooses
    // another platform.
    QString platform = QStringLiteral("windows");
    if (const int awareness = dpiAwareness(); awareness >= 0) {
        platform += QStringLiteral(":dpiawareness=%1").arg(awareness);
    }
    return {QStringLiteral("-platform"),
            platform,
            QStringLiteral("-platformpluginpath"),
            QDir::toNativeSeparators(componentFolder() + QStringLiteral("/platforms")),
            QStringLiteral("-style"),
            QStringLiteral("fusion")};
}

} // namespace zul::platform
