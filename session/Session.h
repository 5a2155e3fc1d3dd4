// The state that the public class fills and every form reads: one copy per process, on the host's
// user-interface thread. It stands on the ground and knows no window.
#pragma once

#include "hostlib/Host.h"

#include <QString>
#include <memory>

namespace zul {

class Session
{
public:
    QString PathMainApplication;   ///< the host application's folder
    QString PathCartellaSMSSender; ///< folder of the sender program; empty when unset
    bool showSendSms = false;
    bool showSendMail = false;
    bool showPushNotify = false;
    bool searchBy_Ricorrenze = false;
    bool searchBy_Classificazioni = false;
    bool ShowTouchMode = false;
    bool isFormLoaded = false; ///< the main form was shown and its choice can be read

    /// Releases the connection object that is held and keeps a reference to another; nothing is opened,
    /// tested or copied.
    void setConnessione(hostlib::SqlConnection connection);

    /// The host's connection object. @throws Error 91 when there is none
    const hostlib::SqlConnection& connection() const;
    /// The same for procedures that report a missing one themselves: it may hold nothing.
    const hostlib::SqlConnection& connectionOrNone() const { return m_connection; }

    /// The host's sales-figure filters, kept for as long as its connection object is. @throws Error 91 without one
    std::shared_ptr<hostlib::CustomerFilterSql> customerFilterSql();

private:
    hostlib::SqlConnection m_connection;
    std::shared_ptr<hostlib::CustomerFilterSql> m_customerFilterSql;
};

Session& session();

} // namespace zul
