// What the host hands over before it shows a window: it goes to the session, and no window is needed for it.
#include "component/modMain.h"
#include "session/Session.h"
#include "session/modLogger.h"

namespace zul {

using namespace Qt::StringLiterals;

void setConnessione(_SqlConnection* connection) noexcept
{
    trapped(moduleProcedure(u"modMain"_s, u"setConnessione"_s),
            [&] { session().setConnessione(hostlib::SqlConnection(ComPtr<_SqlConnection>(connection))); });
}

void SetWhatToShow(bool showSendSms, bool showSendMail, bool showPushNotify) noexcept
{
    session().showSendSms = showSendSms;
    session().showSendMail = showSendMail;
    session().showPushNotify = showPushNotify;
}

void SetWhatToSearch(bool searchBy_Ricorrenze, bool searchBy_Classificazioni) noexcept
{
    session().searchBy_Ricorrenze = searchBy_Ricorrenze;
    session().searchBy_Classificazioni = searchBy_Classificazioni;
}

} // namespace zul
