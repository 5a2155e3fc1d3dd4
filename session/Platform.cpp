#include "session/Platform.h"

#include "base/OperatorText.h"

#include <QFileInfo>
#include <QProcess>

namespace zul::platform {

bool fileExists(const QString& path)
{
    return QFileInfo(nativePath(path)).isFile();
}

void openProgram(const QString& nativeProgramPath, const QString& parameters)
{
    // No shell between. The parameter text is one text to the started program: a connection string with blanks or quotes
    // arrives whole, also where the system hands over one line that the program takes apart.
    const QString trimmed = trimBlanks(parameters);
    QProcess::startDetached(nativeProgramPath, trimmed.isEmpty() ? QStringList() : QStringList{trimmed});
}

} // namespace zul::platform
