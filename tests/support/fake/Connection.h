// The connection objects of the fake host.
#pragma once

#include "tests/support/fake/State.h"

namespace zul::test {

/// The host's own connection object, which offers the services that the state says.
ComPtr<_SqlConnection> makeSqlConnection(StatePtr state);

} // namespace zul::test
