// Which controls the shared appearance paints in the button-face colour. No widget is needed to ask.
#pragma once

#include <QStringView>

namespace zul {

/// True for check boxes, option buttons and frames, told by the first letters of their name in any case:
/// "chk" or "opt" (three letters), or "frame" (five letters). A shorter name is never painted.
[[nodiscard]] inline bool takesButtonFace(QStringView controlName)
{
    return controlName.startsWith(u"chk", Qt::CaseInsensitive) ||
           controlName.startsWith(u"opt", Qt::CaseInsensitive) ||
           controlName.startsWith(u"frame", Qt::CaseInsensitive);
}

} // namespace zul
