// What the component asks of the platform it runs on. One implementation per platform stands beside this
// header, with what is the same on all; nothing else in the component knows which platform it is.
#pragma once

#include <QString>
#include <QStringList>

namespace zul::platform {

/// The folder of the component's own library file, without a separator at its end: absolute from the loading of
/// the library on, wherever the host goes afterwards. Names are appended with "\", and nativePath leads to them
/// also where the folder's own name holds a "\".
QString componentFolder();

/// The folder for what the component keeps for this user alone; nobody has made it yet. In the same form.
QString userFolder();

/// A path that was put together with "\" in the form that the file system takes. Every path passes here
/// where the file system is touched, and nowhere else.
QString nativePath(const QString& path);

/// Whether a file (not a folder) stands at a path composed with "\".
bool fileExists(const QString& path);

/// Starts a program with a parameter text, without the blanks around it, no working directory and a normal window. A
/// blank text is no parameter. Whether it could be started is not reported.
void openProgram(const QString& nativeProgramPath, const QString& parameters);

/// Prepares the environment for a QApplication that the component has to make itself, so that a machine
/// without a display does not end the host.
void prepareApplicationEnvironment();

/// What that application is told beside its program's name, as Qt's own options.
QStringList applicationArguments();

} // namespace zul::platform
