// The pages of the main window's tab controls, and how its procedures are named in reports.
#pragma once

#include "session/modLogger.h"

namespace zul {

/// Pages of tab_Invio.
enum TabInvioPage : int
{
    PageRicerca = 0,
    PageTipoInvio = 1,
    PagePrepara = 2,
};

/// Pages of TabControlTipo.
enum TabTipoPage : int
{
    PageSmsMail = 0,
    PagePush = 1,
};

inline constexpr const char* SmsFormName = "frmSMS";

/// A procedure of the main window.
inline Procedure smsProcedure(const QString& name)
{
    return formProcedure(QString::fromLatin1(SmsFormName), name);
}

} // namespace zul
