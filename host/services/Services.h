#pragma once
// The host's in-house objects, by the ids of Zul_Host.idl. Each is a new object that keeps the session alive.
//
// Their members take the connection object as an argument; it must not be null, and the work is done on the
// session that the object was asked of.
#include "automation/Bstr.h"
#include "automation/ComPtr.h"
#include "host/database/Session.h"

#include <Zul_Host.h>

namespace zul::host {

/// The object for a service id, null when the host has no such service.
ComPtr<IUnknown> createService(const SessionPtr& session, REFGUID service);

ComPtr<IIdGenerator> makeIdGenerator(SessionPtr session);
ComPtr<ICustomer> makeCustomer(SessionPtr session);
ComPtr<IMessageRecord> makeMessageRecord(SessionPtr session);
ComPtr<ITextParser> makeTextParser(SessionPtr session);
ComPtr<IAppConnector> makeAppConnector(SessionPtr session);
ComPtr<ICustomerFilterSql> makeCustomerFilterSql();
ComPtr<IAdvancedSearch> makeAdvancedSearch();
ComPtr<IChangeTracker> makeChangeTracker(SessionPtr session);
ComPtr<IEmailCheck> makeEmailCheck();
ComPtr<IProgramStarter> makeProgramStarter(SessionPtr session);

} // namespace zul::host
