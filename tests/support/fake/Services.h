// The in-house objects of the fake host.
#pragma once

#include "tests/support/fake/State.h"

namespace zul::test {

/// Makes the object of an interface and counts it. False when the host does not offer it, or has no such thing.
bool makeService(const StatePtr& state, REFIID iid, void** object);

// The larger ones stand in files of their own.
ComPtr<ICustomer> makeCustomer(StatePtr state);
ComPtr<IMessageRecord> makeMessageRecord(StatePtr state);
ComPtr<IAppConnector> makeAppConnector(StatePtr state);
ComPtr<ICustomerFilterSql> makeCustomerFilterSql(StatePtr state);

} // namespace zul::test
