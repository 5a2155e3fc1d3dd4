// Qt's own texts, as in the menu of a text field or the choice of a file, in the language of the windows.
#pragma once

#include <QString>

QT_FORWARD_DECLARE_CLASS(QCoreApplication)

namespace zul {

/// Has Qt speak Italian, as the windows do whatever the user's language. For the one that made the application object: a
/// guest leaves its host's as it is. The texts come with Qt (qtbase_it.qm); they are looked for in `folder`'s
/// translations, then where Qt is installed. @return false: they are in neither, and Qt speaks English
bool useItalianQtTexts(QCoreApplication& application, const QString& folder);

} // namespace zul
