#include "session/Platform.h"

#include <QDir>
#include <QFileInfo>

#include <dlfcn.h>

namespace zul::platform {

namespace {

// Names on this system may hold a "\", which is a separator to the component. In a path that the system gave it is
// written as the character of the private use area that other systems use for it, until the path goes back.
constexpr char16_t BackslashInAName = 0xF05C;

QString fromSystem(QString path)
{
    return path.replace(u'\\', QChar(BackslashInAName));
}

QString ownFolder()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&componentFolder), &info) == 0 || info.dli_fname == nullptr) {
        return QDir::currentPath();
    }
    return fromSystem(QFileInfo(QFile::decodeName(info.dli_fname)).absolutePath());
}

// Asked while the library is loaded: its name may be relative, and the host may go elsewhere. Never destroyed,
// because errors may have to be written until the very end.
const QString& folderAtLoading = *new QString(ownFolder());

} // namespace

QString componentFolder()
{
    return folderAtLoading;
}

QString userFolder()
{
    // Where the desktop's standards put what a program keeps between two runs and nobody edits.
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(state)) {
        state = QDir::homePath() + QStringLiteral("/.local/state");
    }
    return fromSystem(state + QStringLiteral("/zul-messagebuilder"));
}

QString nativePath(const QString& path)
{
    QString native = path;
    native.replace(u'\\', u'/');
    if (!native.isEmpty()) {
        native = QDir::cleanPath(native);
    }
    return native.replace(QChar(BackslashInAName), u'\\');
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
