#include "host/services/Services.h"

namespace zul::host {

ComPtr<IUnknown> createService(const SessionPtr& session, REFGUID service)
{
    if (service == iidOf<IIdGenerator>()) {
        return makeIdGenerator(session);
    }
    if (service == iidOf<ICustomer>()) {
        return makeCustomer(session);
    }
    if (service == iidOf<IMessageRecord>()) {
        return makeMessageRecord(session);
    }
    if (service == iidOf<ITextParser>()) {
        return makeTextParser(session);
    }
    if (service == iidOf<IAppConnector>()) {
        return makeAppConnector(session);
    }
    if (service == iidOf<ICustomerFilterSql>()) {
        return makeCustomerFilterSql();
    }
    if (service == iidOf<IAdvancedSearch>()) {
        return makeAdvancedSearch();
    }
    if (service == iidOf<IChangeTracker>()) {
        return makeChangeTracker(session);
    }
    if (service == iidOf<IEmailCheck>()) {
        return makeEmailCheck();
    }
    if (service == iidOf<IProgramStarter>()) {
        return makeProgramStarter(session);
    }
    return {};
}

} // namespace zul::host
