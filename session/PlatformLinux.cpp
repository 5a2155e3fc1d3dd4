#include "session/Platform.h"

#include "base/OperatorText.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

#include <dlfcn.h>

namespace zul::platform {

QString componentFolder()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&componentFolder), &info) == 0 || info.dli_fname == nullptr) {
        return QDir::currentPath();
    }
    return QFileInfo(QFile::decodeName(info.dli_fname)).absolutePath();
}

QString filesFolder()
{
    return componentFolder();
}

QString nativePath(const QString& path)
{
    QString native = path;
    native.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return native.isEmpty() ? native : QDir::cleanPath(native);
}

bool fileExists(const QString& path)
{
    return QFileInfo(nativePath(path)).isFile();
}

void openProgram(const QString& nativeProgramPath, const QString& parameters)
{
    // The parameter text is one text to the started program, as on the system's own command line; splitting
    // it would tear connection strings with blanks apart.
    QStringList arguments;
    if (!parameters.isEmpty()) {
        arguments << trimBlanks(parameters);
    }
    QProcess::startDetached(nativeProgramPath, arguments);
}

void prepareApplicationEnvironment()
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM",
                qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ? "wayland;xcb;offscreen" : "xcb;offscreen");
    }
}

QStringList applicationArguments()
{
    return {};
}

} // namespace zul::platform
